#pragma once
#include <string>
#include <vector>

namespace rm {

class Application;

// The explorer's commands, headless: the projects list and the special modes' way out.
class TExploForm {
 public:
  explicit TExploForm(Application& app) : app_(app) {}

 private:
  Application& app_;
};

}  // namespace rm
