#pragma once
#include <functional>

namespace rm {

class Application;

// The explorer's guard that keeps other commands out of a running special mode, and its exit
// button.
class ModeGuard {
 public:
  explicit ModeGuard(Application& app) : app_(app) {}

  // True when a special mode stands in the way of the caller. `caller` names the mode that may
  // stay: 0 none, 1 touch script, 2 font script, 4 segmented font, 5 editable font, 6 vectors,
  // 7 vector programming. The user is asked to leave the mode; true is returned either way.
  bool CheckMode(int caller);
  // Leaves the first active mode in a fixed order; false when no mode was active.
  bool QuitModeButtonClick();
  // Called before CheckMode's question while the exit button shows, so that the front end can
  // lead the user's eye to it (show the explorer, flash the button).
  std::function<void()> LeadTheEye;

 private:
  Application& app_;
};

}  // namespace rm
