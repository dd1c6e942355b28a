#pragma once

namespace rm {

class Application;

// The editors window's part of the Convert command.
class TExploForm2 {
 public:
  explicit TExploForm2(Application& app) : app_(app) {}
  bool TranslateCanvasButtons();

 private:
  Application& app_;
};

}  // namespace rm
