#pragma once
#include <functional>

namespace rm {

class Application;

// Quitting the program: the questions that can stop it, then the project, the pointer file, the
// log and the usage counters written.
class QuitSequence {
 public:
  explicit QuitSequence(Application& app) : app_(app) {}

  // Quit. `Quit`: the program ends now; `Refused`: the user said no; `StaysOpen`: something was
  // put right (a floating selection dropped) and the user must quit again.
  enum class QuitOutcome { Quit, Refused, StaysOpen };
  QuitOutcome FormCloseQuery();
  QuitOutcome FileExit1Execute();
  QuitOutcome PMSys_Quitter();
  void FormClose();
  bool SavebitmapClick();

  // Collects the places of the windows into the settings at quit, before the project is written;
  // set by the front end that has windows.
  std::function<void()> FormPositions;
  // Saves the Work Canvas picture; set by the owner of the picture files. False when not saved.
  std::function<bool()> ArtworkSaver;

 private:
  Application& app_;
};

}  // namespace rm
