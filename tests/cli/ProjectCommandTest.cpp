#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ProgramVersion.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/Folders.h"
#include "support/CliRunner.h"
#include "support/TestSupport.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using rmtest::ReadFile;

using Result = rmtest::CliResult;

// The built program run in a home folder of the test's own.
class ProjectCli : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
    fs::create_directories(dir_ + "/home");
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string Inits() const {
    return dir_ + "/home/Documents/Rastermill inits " + rm::ProgramVersionTag() + "/";
  }

  Result Run(const std::vector<std::string>& args) { return rmtest::RunCli(args, dir_ + "/home"); }

  std::string dir_;
};

TEST_F(ProjectCli, FirstRunListsTheDefaultProjectWithItsTemplates) {
  const Result r = Run({"project", "list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "* default.LCD\n");
  EXPECT_EQ(r.err, "");
  for (const char* f : {"default.LCD", "default.txt", "default_Raw.txt", "default_Struct.txt", "default_DMD.txt",
                        "default_Bloc.txt"})
    EXPECT_TRUE(fs::exists(Inits() + f)) << f;
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

TEST_F(ProjectCli, NewActivateRenameDeleteRoundTrip) {
  Result r = Run({"project", "new"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "New Project.LCD\n");
  EXPECT_NE(r.err.find("Warning: Project named \"New Project\" was created !"), std::string::npos) << r.err;
  r = Run({"project", "new"});
  EXPECT_EQ(r.out, "New Project(1).LCD\n");
  EXPECT_NE(r.err.find("Warning:  Project named \"New Project (1)\" was created !"), std::string::npos) << r.err;

  // The new project is the active one from then on.
  EXPECT_EQ(Run({"project", "list"}).out, "  default.LCD\n  New Project.LCD\n* New Project(1).LCD\n");
  r = Run({"project", "show"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "project: " + Inits() + "New Project(1).LCD");
  EXPECT_NE(r.out.find("header template: " + Inits() + "New Project(1).txt\n"), std::string::npos) << r.out;

  // A settings change of the active project follows it through activation and back.
  EXPECT_EQ(Run({"settings", "--project", Inits() + "New Project.LCD", "set", "FXHB", "B"}).status, 0);
  EXPECT_EQ(Run({"project", "activate", "New Project"}).status, 0);
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "New Project.LCD\n");
  EXPECT_EQ(Run({"settings", "--project", Inits() + "New Project.LCD", "get", "FXHB"}).out, "B\n");

  r = Run({"project", "rename", "New Project", "board"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.err.find("Project has been renamed"), std::string::npos) << r.err;
  EXPECT_EQ(Run({"project", "list"}).out, "* board.LCD\n  default.LCD\n  New Project(1).LCD\n");
  EXPECT_TRUE(fs::exists(Inits() + "board.txt"));

  // Deleting asks; without --yes the safe answer keeps the project.
  r = Run({"project", "delete", "New Project(1).LCD"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("Please confirm to delete this project  !"), std::string::npos) << r.err;
  EXPECT_TRUE(fs::exists(Inits() + "New Project(1).LCD"));
  r = Run({"project", "delete", "New Project(1).LCD", "--yes"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.err.find("Project Deleted: Project has been deleted !"), std::string::npos) << r.err;
  EXPECT_FALSE(fs::exists(Inits() + "New Project(1).LCD"));
  EXPECT_FALSE(fs::exists(Inits() + "New Project(1).txt"));
}

TEST_F(ProjectCli, RefusalsAndUsage) {
  ASSERT_EQ(Run({"project", "new"}).status, 0);  // "New Project.LCD", now active
  const struct {
    std::vector<std::string> args;
    int status;
    const char* stderrHas;
  } cases[] = {
      {{"project", "delete", "default", "--yes"}, 1, "This project can not be deleted !"},
      {{"project", "delete", "New Project", "--yes"}, 1, "Active project can not be deleted !"},
      {{"project", "rename", "default.LCD", "x"}, 1, "This default project can not be renamed !"},
      {{"project", "rename", "New Project", "default"}, 1, "There is already another project named like this !"},
      {{"project", "activate", "nowhere"}, 1, "no project named \"nowhere.LCD\""},
      {{"project", "delete", "nowhere"}, 1, "no project named"},
      {{"project", "--project", dir_ + "/missing.LCD", "list"}, 1, "missing.LCD"},
      {{"project"}, 2, "subcommand"},
      {{"project", "rename", "only-one"}, 2, "NEW"},
      {{"project", "activate"}, 2, "NAME"},
      {{"project", "sideways"}, 2, "subcommand"},
  };
  for (const auto& c : cases) {
    std::string line;
    for (const auto& a : c.args) line += a + " ";
    SCOPED_TRACE(line);
    const Result r = Run(c.args);
    EXPECT_EQ(r.status, c.status) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find(c.stderrHas), std::string::npos) << r.err;
  }
  EXPECT_EQ(Run({"project", "list"}).out, "  default.LCD\n* New Project.LCD\n");
}

TEST_F(ProjectCli, AnotherProjectFileAndItsFolder) {
  const std::string other = dir_ + "/elsewhere";
  fs::create_directories(other);
  std::ofstream(other + "/panel.LCD") << "[S]\nFXHB=D\n";
  std::ofstream(other + "/spare.lcd") << "[S]\n";
  Result r = Run({"project", "--project", other + "/panel.LCD", "list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "* panel.LCD\n  spare.lcd\n");
  r = Run({"project", "show", "--project", other + "/panel.LCD"});
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "project: " + other + "/panel.LCD");
  EXPECT_TRUE(fs::exists(other + "/panel.txt"));  // the graphics template, made when missing
  // The pointer still names the home's own default project.
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

TEST_F(ProjectCli, HelpListsEveryCommandAndOption) {
  const Result r = Run({"project", "--help"});
  EXPECT_EQ(r.status, 0);
  for (const char* word : {"list", "new", "activate", "rename", "delete", "show", "--project", "--yes", "--verbose"})
    EXPECT_NE(r.out.find(word), std::string::npos) << word;
  EXPECT_NE(Run({"--help"}).out.find("project"), std::string::npos);
}

}  // namespace

namespace {

class ActiveProjectCli : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = rmtest::MakeTempDir(); }
  void TearDown() override { fs::remove_all(dir_); }
  rmtest::CliResult Run(const std::vector<std::string>& args) { return rmtest::RunCli(args, dir_ + "/home"); }
  std::string Picture() {
    const std::string path = dir_ + "/p.png";
    rm::Bitmap b(8, 2, rm::kWhite);
    b.SetPixel(0, 0, rm::kBlack);
    std::string error;
    EXPECT_TRUE(rm::PlatformImageCodecs().SavePng(b, path, error)) << error;
    return path;
  }
  std::string dir_;
};

TEST_F(ActiveProjectCli, ConversionsReadTheActiveProjectAndWriteItOnlyWhenAsked) {
  const std::string png = Picture();
  // The first row of the picture is one byte, 0x80 in the factory's hexadecimal.
  EXPECT_NE(Run({"convert", png}).out.find("0x80"), std::string::npos);
  ASSERT_EQ(Run({"settings", "set", "FXHB", "+D+"}).status, 0);
  const auto decimal = Run({"convert", png});
  EXPECT_EQ(decimal.status, 0) << decimal.err;
  EXPECT_NE(decimal.out.find("128"), std::string::npos) << decimal.out;

  // Options change this run only, unless --save-settings keeps them.
  ASSERT_EQ(Run({"convert", png, "--set", "ORGC=3"}).status, 0);
  EXPECT_EQ(Run({"settings", "get", "ORGC"}).out, "16\n");
  ASSERT_EQ(Run({"convert", png, "--set", "ORGC=3", "--save-settings"}).status, 0);
  EXPECT_EQ(Run({"settings", "get", "ORGC"}).out, "3\n");
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "+D+\n");
}

TEST_F(ActiveProjectCli, FactoryRestoreAsksThenBacksUp) {
  ASSERT_EQ(Run({"settings", "set", "FXHB", "B"}).status, 0);
  const auto refused = Run({"settings", "restore-factory"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("Are you sure to want to quit and restore the factory settings ?"), std::string::npos);
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "B\n");

  const auto done = Run({"settings", "restore-factory", "--yes"});
  EXPECT_EQ(done.status, 0) << done.err;
  EXPECT_NE(done.err.find("backed up to"), std::string::npos);
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "X\n");
  EXPECT_EQ(Run({"settings", "get", "tla/missing"}).status, 2);
}

}  // namespace
