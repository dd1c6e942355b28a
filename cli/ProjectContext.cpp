#include "cli/ProjectContext.h"

#include <filesystem>

#include "shell/Application.h"

namespace rmcli {

bool OpenProject(rm::Application& app, const std::string& projectFile, std::string& error, bool forWriting) {
  app.mainForm.LoadFolders();
  if (!projectFile.empty()) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(projectFile, ec)) {
      error = "project file not found: " + projectFile;
      return false;
    }
    app.globals.ActiveProject = projectFile;
  }
  if (!app.mainForm.LoadConfigurationX(forWriting)) {
    error = "project file is held by another program: " + app.globals.ActiveProject;
    return false;
  }
  app.exploForm.UseProjectHeaderTemplate();
  return true;
}

}  // namespace rmcli
