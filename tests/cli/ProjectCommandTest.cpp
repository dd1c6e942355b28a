#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/CliRunner.h"
#include "support/TestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::ReadFile;
using Result = rmtest::CliResult;

using rmtest::Has;
using ProjectCli = rmtest::CliFixture;

TEST_F(ProjectCli, FirstRunListsTheDefaultProjectWithItsTemplates) {
  const Result r = Run({"project", "list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "* default.LCD\n");
  EXPECT_EQ(r.err, "");
  for (const char* f :
       {"default.LCD", "default.txt", "default_Raw.txt", "default_Struct.txt", "default_DMD.txt", "default_Bloc.txt"})
    EXPECT_TRUE(fs::exists(Inits() + f)) << f;
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

TEST_F(ProjectCli, NewActivateRenameDeleteRoundTrip) {
  Result r = Run({"project", "new"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "New Project.LCD\n");
  EXPECT_TRUE(Has(r.err, "Warning: Project named \"New Project\" was created !")) << r.err;
  EXPECT_EQ(Run({"project", "new"}).out, "New Project(1).LCD\n");

  // The new project is the active one from then on.
  EXPECT_EQ(Run({"project", "list"}).out, "  default.LCD\n  New Project.LCD\n* New Project(1).LCD\n");
  r = Run({"project", "show"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "project: " + Inits() + "New Project(1).LCD");
  EXPECT_TRUE(Has(r.out, "header template: " + Inits() + "New Project(1).txt\n")) << r.out;
  EXPECT_EQ(Run({"project", "activate", "New Project"}).status, 0);
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "New Project.LCD\n");

  r = Run({"project", "rename", "New Project", "board"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Has(r.err, "Project has been renamed")) << r.err;
  EXPECT_EQ(Run({"project", "list"}).out, "* board.LCD\n  default.LCD\n  New Project(1).LCD\n");

  // Deleting asks; without --yes the safe answer keeps the project.
  r = Run({"project", "delete", "New Project(1).LCD"});
  EXPECT_EQ(r.status, 1);
  EXPECT_TRUE(Has(r.err, "Please confirm to delete this project  !")) << r.err;
  EXPECT_TRUE(fs::exists(Inits() + "New Project(1).LCD"));
  r = Run({"project", "delete", "New Project(1).LCD", "--yes"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Has(r.err, "Project Deleted: Project has been deleted !")) << r.err;
  EXPECT_FALSE(fs::exists(Inits() + "New Project(1).LCD"));
}

TEST_F(ProjectCli, RefusalsAndUsage) {
  ASSERT_EQ(Run({"project", "new"}).status, 0);  // "New Project.LCD", now active
  const std::tuple<rmtest::Args, int, std::string> cases[] = {
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
  for (const auto& [args, status, why] : cases) ExpectRefused(args, status, why);
  EXPECT_EQ(Run({"project", "list"}).out, "  default.LCD\n* New Project.LCD\n");
}

TEST_F(ProjectCli, AnotherProjectFileAndItsFolder) {
  const std::string other = dir_ + "/elsewhere";
  fs::create_directories(other);
  std::ofstream(other + "/panel.LCD") << "[S]\nFXHB=D\n";
  std::ofstream(other + "/spare.lcd") << "[S]\n";
  const Result r = Run({"project", "--project", other + "/panel.LCD", "list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "* panel.LCD\n  spare.lcd\n");
  const std::string shown = Run({"project", "show", "--project", other + "/panel.LCD"}).out;
  EXPECT_EQ(shown.substr(0, shown.find('\n')), "project: " + other + "/panel.LCD");
  EXPECT_TRUE(fs::exists(other + "/panel.txt"));  // the graphics template, made when missing
  // The pointer still names the home's own default project.
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

TEST_F(ProjectCli, ConversionsReadTheActiveProjectAndWriteItOnlyWhenAsked) {
  rm::Bitmap b(8, 2, rm::kWhite);
  b.SetPixel(0, 0, rm::kBlack);
  const std::string png = Png("p.png", b);
  // The first row of the picture is one byte, 0x80 in the factory's hexadecimal.
  EXPECT_TRUE(Has(Run({"convert", png}).out, "0x80"));
  ASSERT_EQ(Run({"settings", "set", "FXHB", "+D+"}).status, 0);
  const Result decimal = Run({"convert", png});
  EXPECT_EQ(decimal.status, 0) << decimal.err;
  EXPECT_TRUE(Has(decimal.out, "128")) << decimal.out;
  // Options change this run only, unless --save-settings keeps them.
  ASSERT_EQ(Run({"convert", png, "--set", "ORGC=3"}).status, 0);
  EXPECT_EQ(Run({"settings", "get", "ORGC"}).out, "16\n");
  ASSERT_EQ(Run({"convert", png, "--set", "ORGC=3", "--save-settings"}).status, 0);
  EXPECT_EQ(Run({"settings", "get", "ORGC"}).out, "3\n");
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "+D+\n");
}

TEST_F(ProjectCli, FactoryRestoreAsksThenBacksUp) {
  ASSERT_EQ(Run({"settings", "set", "FXHB", "B"}).status, 0);
  const Result refused = Run({"settings", "restore-factory"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(Has(refused.err, "Are you sure to want to quit and restore the factory settings ?"));
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "B\n");
  const Result done = Run({"settings", "restore-factory", "--yes"});
  EXPECT_EQ(done.status, 0) << done.err;
  EXPECT_TRUE(Has(done.err, "backed up to"));
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "X\n");
  EXPECT_EQ(Run({"settings", "get", "FXHB"}).out, "X\n") << "the factory state lasts beyond one run";
}

TEST_F(ProjectCli, ASettingIsKeptOrRefusedWithItsReason) {
  const Result mode = Run({"settings", "set", "Monc", "1"});
  EXPECT_EQ(mode.status, 2);
  EXPECT_TRUE(Has(mode.err, "Monc is the colour mode: use --mode mono")) << mode.err;
  EXPECT_EQ(Run({"settings", "set", "GWI", "2000"}).status, 2);
  EXPECT_EQ(Run({"settings", "get", "GWI"}).out, "128\n");
  // A monochrome inversion kept by an earlier run does not outlive a mode named on the command line.
  const std::string png = Png("p.png", rm::Bitmap(8, 2, rm::kWhite));
  ASSERT_EQ(Run({"convert", png, "--mode", "mono-inv", "--save-settings"}).status, 0);
  EXPECT_EQ(Run({"settings", "get", "Neg"}).out, "1\n");
  ASSERT_EQ(Run({"convert", png, "--mode", "mono", "--save-settings"}).status, 0);
  EXPECT_EQ(Run({"settings", "get", "Neg"}).out, "0\n");
}

}  // namespace
