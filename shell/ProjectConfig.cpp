// Reading and writing the active project as a whole: the project file named by ActiveProject,
// read into the program at start and on activation, written at quit and when a project is saved.
#include <filesystem>
#include <optional>

#include "shell/Application.h"
#include "shell/IniFile.h"
#include "shell/ProjectLock.h"
#include "shell/ProjectStore.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

// A project folder marked read-only would make every later save fail; the program owns that
// folder, so it takes the mark away rather than lose the settings at quit.
void ClearReadOnlyFolder(const std::string& projectPath) {
  std::error_code ec;
  const fs::path folder = fs::path(projectPath).parent_path();
  if (folder.empty() || !fs::is_directory(folder, ec)) return;
  const auto perms = fs::status(folder, ec).permissions();
  if (!ec && (perms & fs::perms::owner_write) == fs::perms::none)
    fs::permissions(folder, fs::perms::owner_write, fs::perm_options::add, ec);
}

}  // namespace

bool ProjectConfig::LoadConfigurationX(bool testInUse) {
  Globals& g = app_.globals;
  g.LastAction = "Load Configuration";
  // Read under the folder's shared lock: no process of the program replaces the file meanwhile,
  // and a writer of ours is waited for rather than taken for another application.
  std::optional<ProjectLock> lock;
  if (!g.ActiveProject.empty()) lock.emplace(ProjectLock::ForFile(g.ActiveProject, ProjectLock::Mode::Shared));
  std::error_code ec;
  const bool exists = !g.ActiveProject.empty() && fs::is_regular_file(g.ActiveProject, ec);
  if ((lock && !lock->Held()) || (exists && testInUse && IsFileInUse(g.ActiveProject, FileUse::Read))) {
    if (lock && !lock->Held()) app_.mainForm.StatusBarAndLog(lock->Error());
    app_.ui.MessageDlg(" Settings file is opened by another application ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  ClearReadOnlyFolder(g.ActiveProject);
  IniFile project;
  if (exists) {
    std::string error;
    if (!project.Load(g.ActiveProject, &error)) app_.mainForm.StatusBarAndLog(error);
  } else {
    // No project yet (first run, or the pointer led nowhere): the factory state, saved as the
    // default project at the next write. The reads below all take their defaults, even when a
    // default.LCD lies in the folder, as the model stays empty.
    app_.ui.Beep();
    g.ActiveProject = g.InitsFolder + "default.LCD";
    app_.session.OutputFileName = "NewBitmap.h";
    app_.exploForm.WriteDefaultHeaderTemplates();
  }
  ProjectRead(app_, project);
  LoadSearchReplaceData(app_, project);
  app_.configWin.Reloadreorder();
  app_.imageForm.LoadImageCollectionMemos();
  return true;
}

bool ProjectConfig::SaveConfigurationX(std::string* error) {
  Globals& g = app_.globals;
  g.LastAction = "Save Configuration";
  std::string why;
  auto fail = [&](const std::string& reason) {
    app_.mainForm.StatusBarAndLog(reason);
    if (error) *error = reason;
    return false;
  };
  if (g.ActiveProject.empty()) return fail("no active project");
  // The file is read, changed and written back under the folder's exclusive lock, so that the
  // keys another process of the program has just written are not lost to an older copy.
  ProjectLock lock = ProjectLock::ForFile(g.ActiveProject, ProjectLock::Mode::Exclusive);
  std::error_code ec;
  if (!lock.Held() || (fs::exists(g.ActiveProject, ec) && IsFileInUse(g.ActiveProject))) {
    app_.ui.MessageDlg(" Settings file is opened by another application ! ", "Error", DlgType::Error, {"OK"});
    return fail(lock.Held() ? "the settings file is held by another program: " + g.ActiveProject : lock.Error());
  }
  ClearReadOnlyFolder(g.ActiveProject);
  IniFile project;
  if (!project.Load(g.ActiveProject, &why)) return fail(why);
  ProjectWrite(app_, project);
  if (!project.Save(&why)) return fail(why);
  g.LastAction = "Config Saved";
  return true;
}

}  // namespace rm
