// Where the settings and the projects are: the pointer file Rastermill.ini in the inits folder
// names the active project; the project root holds the user's working folders.
#include <filesystem>
#include <fstream>
#include <optional>

#include "shell/Application.h"
#include "shell/Folders.h"
#include "shell/ProjectLock.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

// Makes the working folders and gives the folder roles their defaults; a project read next puts
// its own in their place, and the factory project (none on disk yet) keeps these.
void CreateProjectRoot(Application& app) {
  Globals& g = app.globals;
  std::error_code ec;
  for (const char* sub : kProjectSubfolders) fs::create_directories(g.ProjectRoot + sub, ec);
  g.OutputRole = g.ProjectRoot + kProjectSubfolders[0];
  g.FontsRole = g.ProjectRoot + kProjectSubfolders[1];
  g.TouchRole = g.ProjectRoot + kProjectSubfolders[2];
  g.BatchRole = g.ProjectRoot + kProjectSubfolders[4];
  // Documents and pictures are the user's own folders until a project says otherwise.
  g.DocumentsRole = g.MyDocuments;
  g.GraphicsRole = g.MyPictures;
  // The output folder key stands for the session's folder.
  app.session.OutputFolder = g.OutputRole;
}

}  // namespace

std::string ProgramInitsFolder() {
  return UserDirectory(HomeFolder(), "XDG_DOCUMENTS_DIR", "Documents") + "/Rastermill inits " + ProgramVersionTag() +
         "/";
}

void FolderSetup::LoadFolders() {
  Globals& g = app_.globals;
  g.LastAction = "load folders";
  const std::string home = HomeFolder();
  g.MyDocuments = UserDirectory(home, "XDG_DOCUMENTS_DIR", "Documents");
  g.MyPictures = UserDirectory(home, "XDG_PICTURES_DIR", "Pictures");
  g.InitsFolder = ProgramInitsFolder();
  g.ProjectRoot = g.MyDocuments + "/Rastermill Project/";
  const std::string pointer = g.InitsFolder + "Rastermill.ini";
  std::error_code ec;

  // The pointer is read under a shared lock; the first run, which writes it, holds the folder
  // alone and looks again once it does, as another process may have made it meanwhile.
  fs::create_directories(g.InitsFolder, ec);
  std::optional<ProjectLock> lock;
  for (int attempt = 0; attempt < 2; ++attempt) {
    const bool writes = !fs::exists(pointer, ec);
    lock.reset();
    lock.emplace(g.InitsFolder, writes ? ProjectLock::Mode::Exclusive : ProjectLock::Mode::Shared);
    if (!lock->Held() || writes || fs::exists(pointer, ec)) break;
  }
  if (!lock->Held()) {
    CreateProjectRoot(app_);
    app_.mainForm.StatusBarAndLog(lock->Error());
    app_.ui.MessageDlg(" Init file is opened by another application ! ", "Error", DlgType::Error, {"OK"});
    g.ActiveProject.clear();
    return;
  }

  // An installer or an older version hands its settings over in a transfer folder.
  if (!fs::exists(pointer, ec)) {
    const std::string transfer = g.MyDocuments + "/Rastermill inits xfer";
    if (fs::is_directory(transfer, ec)) {
      fs::create_directories(g.InitsFolder, ec);
      fs::copy(transfer, g.InitsFolder, fs::copy_options::recursive | fs::copy_options::overwrite_existing, ec);
      fs::remove_all(transfer, ec);
    }
  }

  CreateProjectRoot(app_);
  if (fs::exists(pointer, ec)) {
    if (IsFileInUse(pointer, FileUse::Read)) {
      app_.ui.MessageDlg(" Init file is opened by another application ! ", "Error", DlgType::Error, {"OK"});
      g.ActiveProject.clear();
      return;
    }
    std::ifstream in(pointer);
    std::getline(in, g.ActiveProject);
    if (!g.ActiveProject.empty() && g.ActiveProject.back() == '\r') g.ActiveProject.pop_back();
    // The root folder is this platform's "C:\": a pointer to it names no project, and a pointer to
    // a project that is gone falls back to the default project as well.
    const bool exists = fs::exists(g.ActiveProject, ec);
    const bool root = g.ActiveProject == "/";
    if (exists == root) {
      g.ActiveProject = g.InitsFolder + "default.LCD";
      g.ProjectFellBack = true;
    }
    return;
  }

  g.FirstRun = true;
  g.ActiveProject = g.InitsFolder;
  fs::create_directories(g.InitsFolder, ec);
  std::string error;
  if (!WriteFileAtomically(pointer, g.InitsFolder + "default.LCD\n", &error))
    app_.mainForm.StatusBarAndLog("Init file not written : " + error);
}

bool FolderSetup::SaveFolders() {
  Globals& g = app_.globals;
  const std::string pointer = g.InitsFolder + "Rastermill.ini";
  std::error_code ec;
  std::string error;
  ProjectLock lock(g.InitsFolder, ProjectLock::Mode::Exclusive);
  if (!lock.Held()) app_.mainForm.StatusBarAndLog(lock.Error());
  if (!lock.Held() || IsFileInUse(pointer) || !fs::exists(pointer, ec) ||
      !WriteFileAtomically(pointer, g.ActiveProject + "\n", &error)) {
    app_.ui.MessageDlg(" Init file is opened by another application or was deleted ! ", "Error", DlgType::Error,
                       {"OK"});
    g.QuitBlocked = true;
    return false;
  }
  return true;
}

}  // namespace rm
