#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>

#include "engine/HeaderTemplate.h"
#include "engine/Palette.h"
#include "shell/Folders.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::ReadFile;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

std::string Joined(const Lines& lines) {
  std::string s;
  for (const auto& l : lines) s += l + "\n";
  return s;
}
// A home of its own for each test, and programs started in it the way the desktop starts.
class Projects : public rmtest::HomeTest {
 protected:
  void TearDown() override {
    Release();
    HomeTest::TearDown();
  }

  // `saved`: the default project is on disk, as after the first quit.
  std::unique_ptr<TestProgram> Start(bool saved = true) {
    auto p = std::make_unique<TestProgram>();
    p->app.mainForm.LoadFolders();
    EXPECT_TRUE(p->app.mainForm.LoadConfigurationX());
    p->app.exploForm.UseProjectHeaderTemplate();
    EXPECT_TRUE(!saved || p->app.mainForm.SaveConfigurationX());
    return p;
  }
  // What another program reads from the project file.
  std::unique_ptr<TestProgram> Read(const std::string& project) {
    auto reader = std::make_unique<TestProgram>();
    reader->app.globals.ActiveProject = Inits() + project;
    EXPECT_TRUE(reader->app.mainForm.LoadConfigurationX());
    return reader;
  }
  void Touch(const std::string& name, const std::string& text = "[S]\n") { std::ofstream(Inits() + name) << text; }
  bool Exists(const std::string& name) const { return fs::exists(Inits() + name); }
  std::string Pointer() const { return ReadFile(Inits() + "Rastermill.ini"); }

  // Holds a file the way another program would, until Release.
  void Hold(const std::string& name) {
    held_ = open((Inits() + name).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(held_, 0);
    ASSERT_EQ(flock(held_, LOCK_EX | LOCK_NB), 0);
  }
  void Release() {
    if (held_ >= 0) close(held_);
    held_ = -1;
  }

  int held_ = -1;
};

TEST_F(Projects, FirstStartWritesTheFiveFactoryTemplatesAndKeepsEditedOnes) {
  auto p = Start(false);
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "default.LCD");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "default.txt");
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), Joined(rm::DefaultGraphicsTemplate()));
  // The four font templates, each headed by the kind of font it is for.
  for (const char* f : {"default_Raw.txt", "default_DMD.txt", "default_Bloc.txt", "default_Struct.txt"})
    EXPECT_NE(ReadFile(Inits() + f).find(" FONTS"), std::string::npos) << f;

  // With the project on disk a start reads it and writes no templates but the missing one.
  p->app.mainForm.SaveConfigurationX();
  fs::remove(Inits() + "default.txt");
  Touch("default_Raw.txt", "my raw template\n");
  Start(false);
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), Joined(rm::DefaultGraphicsTemplate()));
  EXPECT_EQ(ReadFile(Inits() + "default_Raw.txt"), "my raw template\n");
  Touch("default.txt", "// mine\n");
  EXPECT_EQ(Start(false)->app.session.HeaderIncludeFile, Inits() + "default.txt");
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), "// mine\n");

  // Without the project (every run of a command that saves no settings) the templates there
  // are kept and only the missing ones are written.
  fs::remove(Inits() + "default.LCD");
  fs::remove(Inits() + "default_DMD.txt");
  Start(false);
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), "// mine\n");
  EXPECT_EQ(ReadFile(Inits() + "default_Raw.txt"), "my raw template\n");
  EXPECT_NE(ReadFile(Inits() + "default_DMD.txt").find(" FONTS"), std::string::npos);
}

TEST_F(Projects, NoTemplatesWithoutTheProgramsFolders) {
  // A program that never looked for its folders must not write into whatever the working folder is.
  const rmtest::TempDir tmp;
  const std::string& cwd = tmp.path;
  const fs::path before = fs::current_path();
  fs::current_path(cwd);
  {
    TestProgram p;
    EXPECT_TRUE(p.app.mainForm.LoadConfigurationX());
    EXPECT_FALSE(p.app.exploForm.UseProjectHeaderTemplate());
  }
  fs::current_path(before);
  EXPECT_TRUE(fs::is_empty(cwd));
}

TEST_F(Projects, DefaultTemplateOnDiskGivesTheSameFileAsTheBuiltInOne) {
  Start(false);
  TestProgram p;
  p.Setup(1, rm::Bitmap(128, 64), true);
  p.app.session.LastInfoDateText = "23/11/2026 10:00:00";
  p.app.session.HeaderIncludeFile = Inits() + "default.txt";
  ASSERT_TRUE(p.Convert());
  EXPECT_TRUE(p.ui.messages.empty());
  const std::string diff = rmtest::CompareGolden("file/default.h.txt", p.Text());
  EXPECT_TRUE(diff.empty()) << diff;
}

TEST_F(Projects, ListIsSortedAsWordsWithNumbers) {
  auto p = Start();
  for (const char* name :
       {"b.LCD", "a.lcd", "New Project(10).LCD", "New Project(2).LCD", "board 010.LCD", "board 9.LCD"})
    Touch(name);
  // Not projects: other extensions, a backup, a folder, an extension alone.
  for (const char* name : {"notes.txt", "a.LCD.bak", ".LCD"}) Touch(name);
  fs::create_directories(Inits() + "folder.LCD");
  EXPECT_EQ(p->app.exploForm.ListAllProjects(), (Lines{"a.lcd", "b.LCD", "board 9.LCD", "board 010.LCD", "default.LCD",
                                                       "New Project(2).LCD", "New Project(10).LCD"}));
}

TEST_F(Projects, SaveAsNewProjectNamesMessagesAndCopies) {
  auto p = Start();
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(p->app, "FXHB", "H", error)) << error;
  Touch("default.txt", "// the present template\n");
  const struct {
    const char* file;
    const char* message;
  } expected[] = {
      {"New Project.LCD", "Project named \"New Project\" was created !"},
      {"New Project(1).LCD", " Project named \"New Project (1)\" was created !"},
      {"New Project(2).LCD", " Project named \"New Project (2)\" was created !"},
  };
  for (const auto& e : expected) {
    p->ui.messages.clear();
    EXPECT_EQ(p->app.exploForm.SaveAsNewProject(), e.file);
    EXPECT_EQ(ShownMessages(p->ui), Lines{std::string("Warning: ") + e.message});
    EXPECT_EQ(Pointer(), Inits() + e.file + "\n");
  }
  // The copy holds the present settings and graphics template, under the new stem.
  EXPECT_EQ(ReadFile(Inits() + "New Project.txt"), "// the present template\n");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "New Project(2).txt");
  EXPECT_EQ(Read("New Project.LCD")->app.session.Syntax.DataFormatKind, "H");
  // A free number below the last one is taken first.
  fs::remove(Inits() + "New Project(1).LCD");
  EXPECT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project(1).LCD");
}

TEST_F(Projects, RenameRefusesThenTakesTheGraphicsTemplateAndTheActiveProjectAlong) {
  auto p = Start();
  ASSERT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project.LCD");
  Touch("a.LCD");
  Touch("b.LCD");
  const struct {
    const char *oldName, *newName, *said;
    bool held = false;
  } cases[] = {
      {"", "x", "Selection error: Please select the project to rename in the list !"},
      {"DEFAULT.lcd", "x.LCD", "Error: This default project can not be renamed !"},
      {"a.LCD", "b", "Error: There is already another project named like this !"},
      {"a.LCD", "x", "Error: File is in use (or acess was denied) and can not be renamed !", true},
      {"a.LCD", "sub/x", "Error: Error while trying to rename project !"},
      {"gone.LCD", "x", "Error: Error while trying to rename project !"},
      // An edit left as it was, or emptied, renames nothing and says nothing.
      {"a.LCD", "a", nullptr},
      {"a.LCD", "", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.oldName) + " -> " + c.newName);
    if (c.held) Hold(c.oldName);
    p->ui.messages.clear();
    EXPECT_FALSE(p->app.exploForm.ProjectViewEdited(c.oldName, c.newName));
    Release();
    EXPECT_EQ(ShownMessages(p->ui), c.said ? Lines{c.said} : Lines{});
  }
  EXPECT_EQ(p->app.exploForm.ListAllProjects(), (Lines{"a.LCD", "b.LCD", "default.LCD", "New Project.LCD"}));

  Touch("board.LCD", "[S]\nFXHB=D\n");
  const char* left[] = {"board_Raw.txt", "board_Struct.txt", "board_DMD.txt",   "board_Bloc.txt",
                        "board_256.pal", "board_4096.pal",   "board_65536.pal", "board_262144.pal"};
  for (const char* f : left) Touch(f, f);
  Touch("board.txt", "// board template\n");

  p->ui.messages.clear();
  EXPECT_TRUE(p->app.exploForm.ProjectViewEdited("board.LCD", "panel"));
  EXPECT_EQ(ShownMessages(p->ui), Lines{"Information: Project has been renamed"});
  EXPECT_EQ(ReadFile(Inits() + "panel.LCD"), "[S]\nFXHB=D\n");
  EXPECT_EQ(ReadFile(Inits() + "panel.txt"), "// board template\n");
  EXPECT_FALSE(Exists("board.LCD") || Exists("board.txt"));
  // The font templates and the palettes keep the old stem.
  for (const char* f : left) EXPECT_EQ(ReadFile(Inits() + f), f) << f;
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "New Project.LCD");

  // Renaming the active project moves the program with it.
  EXPECT_TRUE(p->app.exploForm.ProjectViewEdited("New Project.LCD", "lcd 128x64.LCD"));
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "lcd 128x64.txt");
  EXPECT_EQ(Pointer(), Inits() + "lcd 128x64.LCD\n");
  // The next save goes to the new name and makes no file of the old one.
  EXPECT_TRUE(p->app.mainForm.SaveConfigurationX());
  EXPECT_FALSE(Exists("New Project.LCD"));
}

TEST_F(Projects, DeleteRefusesFirstThenAsksAndRemovesTheTemplateAndPalettes) {
  auto p = Start();
  ASSERT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project.LCD");  // now the active one
  Touch("old.LCD");
  const struct {
    const char *name, *said;
    bool held = false;
  } refusals[] = {
      {"", "Selection error: Select a project to delete first!"},
      {"Default.lcd", "Error: This project can not be deleted !"},
      {"New Project.LCD", "Error: Active project can not be deleted !"},
      {"gone.LCD", "Selection error: Select a project to delete first!"},
      {"old.LCD", "Error: Project file is in use by another program and can not be deleted !", true},
  };
  for (const auto& r : refusals) {
    if (r.held) Hold(r.name);
    p->ui.messages.clear();
    EXPECT_FALSE(p->app.exploForm.MenuItem6Click(r.name)) << r.name;
    Release();
    EXPECT_EQ(ShownMessages(p->ui), Lines{r.said}) << "refused before any question: " << r.name;
  }

  const char* gone[] = {"old.txt", "old_256.pal", "old_4096.pal", "old_65536.pal", "old_262144.pal"};
  const char* kept[] = {"old_Raw.txt", "old_Struct.txt", "old_DMD.txt", "old_Bloc.txt", "old_16.pal", "older.txt"};
  for (const char* f : gone) Touch(f, f);
  for (const char* f : kept) Touch(f, f);
  p->ui.messages.clear();
  p->ui.answers = {"No", "Yes"};
  EXPECT_FALSE(p->app.exploForm.MenuItem6Click("old.LCD"));
  EXPECT_TRUE(Exists("old.LCD"));
  EXPECT_TRUE(p->app.exploForm.MenuItem6Click("old.LCD"));
  EXPECT_EQ(p->ui.messages.size(), 3u);
  EXPECT_FALSE(Exists("old.LCD"));
  for (const char* f : gone) EXPECT_FALSE(Exists(f)) << f;
  for (const char* f : kept) EXPECT_TRUE(Exists(f)) << f;
}

TEST_F(Projects, ActivationSavesTheProjectLeftReadsTheOtherAndClearsTheEditors) {
  std::string error;
  auto p = Start();
  // Another project with settings of its own; 256 colours take the palette from the project.
  ASSERT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project.LCD");
  ASSERT_TRUE(rm::ApplySetting(p->app, "FXHB", "B", error)) << error;
  ASSERT_TRUE(rm::ApplySetting(p->app, "ORGC", "4", error)) << error;
  p->app.mainForm.SetColourMode(56, true);
  ASSERT_TRUE(p->app.exploForm.ActivateProject("default.LCD"));
  EXPECT_EQ(Pointer(), Inits() + "default.LCD\n");
  // Its palette: 256 colours, all distinct from the default one.
  std::vector<rm::Colour> custom;
  for (rm::Colour i = 0; i < 256; ++i) custom.push_back(0x010000 * (i % 7) + 0x000100 * (i / 7) + 3);
  std::sort(custom.begin(), custom.end());
  std::string pal;
  for (rm::Colour c : custom) pal += rm::FormatPaletteColour(c) + "\n";
  ASSERT_TRUE(rm::WriteFileAtomically(Inits() + "New Project_256.pal", pal));
  fs::remove(Inits() + "New Project.txt");

  p->app.mainForm.SetColourMode(56, true);
  const std::vector<rm::Colour> defaultPalette = p->app.session.PaletteTable;
  ASSERT_EQ(defaultPalette.size(), 256u);
  ASSERT_TRUE(rm::ApplySetting(p->app, "EODS", "; // left behind", error)) << error;
  p->app.mainText.SetText("unsaved data\n");
  p->app.hex.AddByte(0x55);
  p->app.globals.EditorUnsaved = true;
  p->ui.messages.clear();

  EXPECT_TRUE(p->app.exploForm.ActivateProject("New Project.LCD"));
  EXPECT_TRUE(p->ui.messages.empty());  // the text in hand goes without a question
  EXPECT_TRUE(p->app.mainText.Empty());
  EXPECT_EQ(p->app.hex.Size(), 0u);
  EXPECT_EQ(p->app.session.Syntax.DataFormatKind, "B");
  EXPECT_EQ(p->app.session.PaletteTable, custom);
  EXPECT_EQ(Pointer(), Inits() + "New Project.LCD\n");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "New Project.txt");
  EXPECT_EQ(ReadFile(Inits() + "New Project.txt"), Joined(rm::DefaultGraphicsTemplate()));
  // The project left was written first.
  EXPECT_EQ(Read("default.LCD")->app.session.DescriptorsEol, "; // left behind");

  // And back: the default project's palette again.
  EXPECT_TRUE(p->app.exploForm.ActivateProject("default.LCD"));
  EXPECT_EQ(p->app.session.PaletteTable, defaultPalette);
  EXPECT_EQ(p->app.session.DescriptorsEol, "; // left behind");
  EXPECT_FALSE(p->app.exploForm.ActivateProject(""));  // without a name nothing is activated
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "default.LCD");
}

}  // namespace
