#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "shell/Folders.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::TestProgram;

// A home of its own for each test: RASTERMILL_HOME points at a fresh folder.
class Folders : public rmtest::HomeTest {};

TEST_F(Folders, FirstRunCreatesEverythingThenTheNextRunReadsThePointer) {
  TestProgram first;
  first.app.mainForm.LoadFolders();
  EXPECT_TRUE(first.app.globals.FirstRun);
  EXPECT_EQ(first.app.globals.InitsFolder, Inits());
  EXPECT_EQ(rmtest::ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
  for (const char* sub : rm::kProjectSubfolders)
    EXPECT_TRUE(fs::is_directory(home_ + "/Documents/Rastermill Project/" + sub)) << sub;
  EXPECT_EQ(first.app.globals.GraphicsRole, home_ + "/Pictures");
  // The factory project keeps the roles just made: the data array is saved in the Output files
  // folder, not wherever the program was started.
  first.app.mainForm.LoadConfigurationX();
  const std::string output = home_ + "/Documents/Rastermill Project/" + rm::kProjectSubfolders[0];
  EXPECT_EQ(first.app.session.OutputFolder, output);

  // The default project does not exist yet: the next start falls back to it.
  TestProgram second;
  second.app.mainForm.LoadFolders();
  EXPECT_FALSE(second.app.globals.FirstRun);
  EXPECT_TRUE(second.app.globals.ProjectFellBack);
  second.app.mainForm.LoadConfigurationX();
  EXPECT_EQ(second.app.session.OutputFolder, output);

  // A pointer to an existing project is followed; the root folder names none.
  const struct {
    std::string pointer, active;
    bool fellBack;
  } cases[] = {
      {Inits() + "board.LCD", Inits() + "board.LCD", false},
      {"/", Inits() + "default.LCD", true},
      {home_ + "/gone.LCD", Inits() + "default.LCD", true},
  };
  std::ofstream(Inits() + "board.LCD") << "[S]\n";
  for (const auto& c : cases) {
    std::ofstream(Inits() + "Rastermill.ini") << c.pointer << "\r\n";
    TestProgram p;
    p.app.mainForm.LoadFolders();
    EXPECT_EQ(p.app.globals.ActiveProject, c.active) << c.pointer;
    EXPECT_EQ(p.app.globals.ProjectFellBack, c.fellBack) << c.pointer;
  }
}

TEST_F(Folders, TransferFolderAndUserDirectories) {
  const std::string transfer = home_ + "/Documents/Rastermill inits xfer";
  fs::create_directories(transfer);
  std::ofstream(transfer + "/Rastermill.ini") << transfer.substr(0, transfer.size() - 4) << "handed.LCD\n";
  std::ofstream(transfer + "/handed.LCD") << "[S]\n";
  TestProgram p;
  p.app.mainForm.LoadFolders();
  EXPECT_FALSE(fs::exists(transfer));
  EXPECT_TRUE(fs::exists(Inits() + "handed.LCD"));

  fs::create_directories(home_ + "/.config");
  std::ofstream(home_ + "/.config/user-dirs.dirs") << "# written by xdg-user-dirs-update\n"
                                                      "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                                                      "XDG_PICTURES_DIR=\"$HOME/\"\n";
  EXPECT_EQ(rm::UserDirectory(home_, "XDG_DOCUMENTS_DIR", "Documents"), home_ + "/Dokumente");
  EXPECT_EQ(rm::UserDirectory(home_, "XDG_PICTURES_DIR", "Pictures"), home_ + "/Pictures");
  EXPECT_EQ(rm::UserDirectory(home_, "XDG_MUSIC_DIR", "Music"), home_ + "/Music");
}

TEST_F(Folders, SaveFoldersWritesThePointerOrBlocksTheQuit) {
  TestProgram p;
  p.app.mainForm.LoadFolders();
  p.app.globals.ActiveProject = Inits() + "board.LCD";
  EXPECT_TRUE(p.app.mainForm.SaveFolders());
  EXPECT_EQ(rmtest::ReadFile(Inits() + "Rastermill.ini"), Inits() + "board.LCD\n");
  fs::remove(Inits() + "Rastermill.ini");
  EXPECT_FALSE(p.app.mainForm.SaveFolders());
  EXPECT_TRUE(p.app.globals.QuitBlocked);
}

}  // namespace
