#pragma once
#include <string>

namespace rm {

class Application;

// The active project's settings file: read into the program and written from it.
class ProjectConfig {
 public:
  explicit ProjectConfig(Application& app) : app_(app) {}

  // Reads the active project into the program: the factory state when there is no such file
  // (ActiveProject then names the default project). False, after telling the user, when the file
  // is held by another program; nothing is read then.
  // `testInUse` off is for readers that never write the project, such as conversions run side
  // by side: the file is only ever replaced whole, so a reader cannot see half of it, and the
  // test itself would make such readers refuse one another.
  bool LoadConfigurationX(bool testInUse = true);
  // Writes the program's settings into the active project. False when it is held by another
  // program or cannot be written, with the reason in `error`; the file on disk then stays as it
  // was.
  bool SaveConfigurationX(std::string* error = nullptr);

 private:
  Application& app_;
};

}  // namespace rm
