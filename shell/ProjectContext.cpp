#include "shell/ProjectContext.h"

#include <filesystem>
#include <memory>
#include <vector>

#include "shell/Application.h"
#include "shell/ProjectLock.h"
#include "shell/SettingsTable.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

// The locks a command that changes the settings holds from its first read to its end, so that
// its read-change-write is one step for the program's other processes.
// Never destroyed: the system lets go of them when the process ends, whatever the order in
// which the program's statics go.
std::vector<std::unique_ptr<ProjectLock>>& CommandLocks() {
  static auto* locks = new std::vector<std::unique_ptr<ProjectLock>>;
  return *locks;
}

bool HoldForCommand(const std::string& folder, std::string& error) {
  auto lock = std::make_unique<ProjectLock>(folder, ProjectLock::Mode::Exclusive);
  if (!lock->Held()) {
    error = lock->Error();
    return false;
  }
  CommandLocks().push_back(std::move(lock));
  return true;
}

}  // namespace

bool OpenProject(Application& app, const std::string& projectFile, std::string& error, bool forWriting) {
  if (forWriting) {
    // The pointer file's folder first, then the project's: the order every change keeps.
    const std::string inits = ProgramInitsFolder();
    std::error_code ec;
    fs::create_directories(inits, ec);
    if (!HoldForCommand(inits, error)) return false;
  }
  app.mainForm.LoadFolders();
  // The desktop goes on with the factory settings when the pointer is held; a command that then
  // wrote would put them over the user's project.
  if (app.globals.ActiveProject.empty()) {
    error = "the pointer file is held by another program: " + app.globals.InitsFolder + "Rastermill.ini";
    return false;
  }
  if (!projectFile.empty()) {
    std::error_code ec;
    if (!fs::is_regular_file(projectFile, ec)) {
      error = "project file not found: " + projectFile;
      return false;
    }
    app.globals.ActiveProject = projectFile;
  }
  if (forWriting) {
    const std::string folder = fs::path(app.globals.ActiveProject).parent_path().string();
    if (!HoldForCommand(folder.empty() ? "." : folder, error)) return false;
  }
  if (!app.mainForm.LoadConfigurationX(forWriting)) {
    error = "project file is held by another program: " + app.globals.ActiveProject;
    return false;
  }
  app.exploForm.UseProjectHeaderTemplate();
  return true;
}

JobOutcome ApplySettingOverrides(Application& app, const std::vector<std::string>& settings) {
  std::string error;
  for (const auto& kv : settings) {
    const std::size_t eq = kv.find('=');
    if (eq == std::string::npos || eq == 0) return JobOutcome::Failed("--set takes KEY=VALUE, not \"" + kv + "\"", 2);
    if (!ApplySetting(app, kv.substr(0, eq), kv.substr(eq + 1), error)) return JobOutcome::Failed(error, 2);
  }
  return {};
}

}  // namespace rm
