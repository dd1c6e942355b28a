#pragma once
#include <string>

namespace CLI {
class App;
}

namespace rmcli {

struct ProjectOptions {
  std::string project;  // --project: work from this project file instead of the active one
  bool yes = false;
  bool verbose = false;
  std::string action;  // list, new, activate, rename, delete or show
  std::string name, newName;
};

// rastermill project list | new | activate NAME | rename OLD NEW | delete NAME | show, on the
// projects of the active project's folder (or of --project's folder).
void AddProjectCommands(CLI::App& project, ProjectOptions& options);
// Exit status: 0 done; 1 refused by the program, or a file could not be read or written.
int RunProject(const ProjectOptions& options);

}  // namespace rmcli
