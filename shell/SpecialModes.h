#pragma once
#include <functional>
#include <string>

namespace rm {

class Application;

// The special modes: the lock on the mode menus while one runs, the ways out of each mode, and
// the batch editor's way in and out.
class SpecialModes {
 public:
  explicit SpecialModes(Application& app) : app_(app) {}

  // A script that a special mode edits. The mode's editor fills it in when the mode is entered;
  // `Save` writes the script and returns false when it was not saved. Without an editor nothing
  // can be saved, and a leave that was told to save stays in the mode.
  struct ModeScript {
    std::string Path;
    bool Changed = false;
    std::function<bool()> Save;
  };
  ModeScript FontScript, FieldsScript, TouchScript, EditableFont, VectorDesign;

  // Lock and unlock the colour mode and output format items while a special mode runs.
  void DisableModeChange();
  void EnableModeChange();
  // The leaving commands of the special modes. Each returns false when the user chose to stay.
  bool QuitPostClick();
  bool QuitFontscriptClick();
  bool QuitFieldsScriptClick();
  bool QuittouchpanelscriptClick();
  bool QuitAnEditableFontClick();
  bool QuitVectorDesign();
  // Leaves the animation mode; asks first unless `ask` is false.
  bool QuitAnimationMode(bool ask = true);
  // Enters the batch editor on a new or existing .SPP in the Batch folder role. `fromEdit`: the
  // command came from "edit", which names a new batch after the current picture.
  void CreatePostProClick(bool fromEdit);
  // The first "NewTextPro[n].SPP" that is not in the Batch folder role.
  std::string NewBatchFileName() const;
  std::string BatchFilePath() const;

  // True when a floating selection is there and the user cancels; else it is pasted or dropped.
  bool IsSelectionActive();

 private:
  Application& app_;
};

}  // namespace rm
