// The guard that keeps other commands out of a running special mode, and the explorer's exit
// button that leaves the mode.
#include "shell/ModeGuard.h"

#include "shell/Application.h"

namespace rm {

bool ModeGuard::CheckMode(int caller) {
  Globals& g = app_.globals;
  if (g.ExitModeButtonVisible && LeadTheEye) LeadTheEye();
  struct Row {
    bool hit;
    const char* text;
    std::vector<std::string> buttons;
  };
  // Animation stops only a caller that names a mode: a plain command (0) passes it. The last
  // row is reached only by caller 7, as the second row takes every other caller first.
  const Row rows[] = {
      {g.AnimationMode && caller != 0,
       "Animation creation mode is active ! \rQuit Animation or Cancel ",
       {"Quit", "Cancel"}},
      {g.VectorMode && caller != 7,
       "Vector Programming mode is active ! \rQuit Vector Programming or Cancel ",
       {"Quit Script", "Cancel"}},
      {g.TouchScriptMode && caller != 1,
       "Touch panel script creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Script", "Cancel"}},
      {g.FontScriptMode && caller != 2,
       "Font Script creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Script", "Cancel", "No Saves"}},
      {g.SegmentedFontMode && caller != 4,
       "Segmented Font creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Font", "Cancel"}},
      {g.EditableFontMode && caller != 5,
       "Editable Font creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Font", "Cancel", "No Saves"}},
      {g.VectorMode && caller != 6,
       "Vectors Work Canvas mode is active ! \rQuit Vector Design Mode or Cancel ",
       {"Quit Vectors", "Cancel", "No Saves"}},
  };
  for (const Row& r : rows) {
    if (!r.hit) continue;
    const std::string a = app_.ui.MessageDlg(r.text, "Warning", DlgType::Warning, r.buttons);
    if (a != "Cancel") {
      if (r.buttons.size() == 3) g.NoSaveOnQuit = a == "No Saves";
      QuitModeButtonClick();
    }
    return true;
  }
  return false;
}

bool ModeGuard::QuitModeButtonClick() {
  Globals& g = app_.globals;
  TMainForm& m = app_.mainForm;
  m.StatusBarAndLog("Quit Special Mode Button");
  if (g.BatchEditMode)
    m.QuitPostClick();
  else if (g.FontScriptMode)
    m.QuitFontscriptClick();
  else if (g.FieldsScriptMode)
    m.QuitFieldsScriptClick();
  else if (g.TouchScriptMode)
    m.QuittouchpanelscriptClick();
  else if (g.EditableFontMode)
    m.QuitAnEditableFontClick();
  else if (g.HeaderEditMode)
    app_.exploForm2.EditHeaderButtonClick();
  else if (g.AnimationMode)
    m.QuitAnimationMode();
  else if (g.VectorMode)
    m.QuitVectorDesign();
  else {
    app_.ui.MessageDlg("No special mode active", "Information", DlgType::Information, {"OK"});
    return false;
  }
  return true;
}

}  // namespace rm
