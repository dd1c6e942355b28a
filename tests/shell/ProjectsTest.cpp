#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include "engine/HeaderTemplate.h"
#include "shell/Folders.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::TExploForm;
using rmtest::ReadFile;
using rmtest::TestProgram;

std::string Joined(const std::vector<std::string>& lines) {
  std::string s;
  for (const auto& l : lines) s += l + "\n";
  return s;
}

// A home of its own for each test, and programs started in it the way the desktop starts.
class Projects : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = rmtest::MakeTempDir();
    setenv("RASTERMILL_HOME", home_.c_str(), 1);
  }
  void TearDown() override {
    Release();
    unsetenv("RASTERMILL_HOME");
    fs::remove_all(home_);
  }
  std::string Inits() const { return home_ + "/Documents/Rastermill inits " + rm::ProgramVersionTag() + "/"; }

  std::unique_ptr<TestProgram> Start() {
    auto p = std::make_unique<TestProgram>();
    p->app.mainForm.LoadFolders();
    EXPECT_TRUE(p->app.mainForm.LoadConfigurationX());
    p->app.exploForm.UseProjectHeaderTemplate();
    return p;
  }
  // A started program whose default project is on disk, as after the first quit.
  std::unique_ptr<TestProgram> StartSaved() {
    auto p = Start();
    EXPECT_TRUE(p->app.mainForm.SaveConfigurationX());
    return p;
  }
  void Touch(const std::string& name, const std::string& text = "[S]\n") { std::ofstream(Inits() + name) << text; }
  bool Exists(const std::string& name) const { return fs::exists(Inits() + name); }
  std::string Pointer() const { return ReadFile(Inits() + "Rastermill.ini"); }

  // Holds a file the way another program would, until Release.
  void Hold(const std::string& path) {
    held_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(held_, 0);
    ASSERT_EQ(flock(held_, LOCK_EX | LOCK_NB), 0);
  }
  void Release() {
    if (held_ >= 0) close(held_);
    held_ = -1;
  }

  std::string home_;
  int held_ = -1;
};

TEST_F(Projects, FirstStartWritesTheFiveFactoryTemplates) {
  auto p = Start();
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "default.LCD");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "default.txt");
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), Joined(rm::DefaultGraphicsTemplate()));
  const struct {
    const char* file;
    std::string firstLine;
    const char* holds;  // a line the font writer needs
  } fonts[] = {
      {"default_Raw.txt", "   // FOR RAW FONTS" + std::string(41, ' '),
       "const uint8_t [&FNAME][&FNUMBEROFCHARS][&FBYTESPERCHAR] PROGMEM = {\n"},
      {"default_DMD.txt", "   // FOR DMD Struct FONTS" + std::string(33, ' '), "[&FONT BITMAPS]\n"},
      {"default_Bloc.txt", "   // FOR Bloc FONTS" + std::string(40, ' '), "const unsigned char [&FNAME][] = {)\n"},
      {"default_Struct.txt", "   // FOR Struct FONTS" + std::string(38, ' '), "[&FONT TFONT]const tfont [&FTFONT]\n"},
  };
  for (const auto& f : fonts) {
    const std::string text = ReadFile(Inits() + f.file);
    EXPECT_EQ(text.substr(0, text.find('\n')), f.firstLine) << f.file;
    EXPECT_NE(text.find(f.holds), std::string::npos) << f.file;
    EXPECT_NE(text.find("[&FONT END]\n"), std::string::npos) << f.file;
  }
  EXPECT_NE(ReadFile(Inits() + "default_Raw.txt").find("const uint8_t [&DNAME][][] PROGMEM = {\n"), std::string::npos);
}

TEST_F(Projects, GraphicsTemplateMissingAtStartIsMadeAndAnEditedOneIsKept) {
  StartSaved();
  // With the project on disk a start reads it and writes no templates but the missing one.
  fs::remove(Inits() + "default.txt");
  Touch("default_Raw.txt", "my raw template\n");
  auto second = Start();
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), Joined(rm::DefaultGraphicsTemplate()));
  EXPECT_EQ(ReadFile(Inits() + "default_Raw.txt"), "my raw template\n");

  Touch("default.txt", "// mine\n");
  auto third = Start();
  EXPECT_EQ(ReadFile(Inits() + "default.txt"), "// mine\n");
  EXPECT_EQ(third->app.session.HeaderIncludeFile, Inits() + "default.txt");
}

TEST_F(Projects, NoTemplatesWithoutTheProgramsFolders) {
  // A program that never looked for its folders must not write into whatever the working folder is.
  const std::string cwd = rmtest::MakeTempDir();
  const fs::path before = fs::current_path();
  fs::current_path(cwd);
  {
    TestProgram p;
    EXPECT_TRUE(p.app.mainForm.LoadConfigurationX());
    EXPECT_FALSE(p.app.exploForm.UseProjectHeaderTemplate());
  }
  fs::current_path(before);
  EXPECT_TRUE(fs::is_empty(cwd));
  fs::remove_all(cwd);
}

TEST_F(Projects, DefaultTemplateOnDiskGivesTheSameFileAsTheBuiltInOne) {
  Start();
  TestProgram p;
  p.Setup(1, rm::Bitmap(128, 64), true);
  p.app.session.LastInfoDateText = "23/11/2026 10:00:00";
  p.app.session.HeaderIncludeFile = Inits() + "default.txt";
  ASSERT_TRUE(p.Convert());
  EXPECT_TRUE(p.ui.messages.empty());
  const std::string diff = rmtest::CompareGolden("file/default.h", p.Text());
  EXPECT_TRUE(diff.empty()) << diff;
}

TEST_F(Projects, ListIsSortedAsWordsWithNumbers) {
  auto p = StartSaved();
  for (const char* name : {"b.LCD", "a.lcd", "New Project.LCD", "New Project(10).LCD", "New Project(2).LCD",
                           "New Project(1).LCD", "Zeta.Lcd", "board 010.LCD", "board 9.LCD"})
    Touch(name);
  // Not projects: other extensions, a backup, a folder, an extension alone.
  for (const char* name : {"notes.txt", "a.LCD.bak", ".LCD"}) Touch(name);
  fs::create_directories(Inits() + "folder.LCD");
  const std::vector<std::string> expected = {"a.lcd",
                                             "b.LCD",
                                             "board 9.LCD",
                                             "board 010.LCD",
                                             "default.LCD",
                                             "New Project.LCD",
                                             "New Project(1).LCD",
                                             "New Project(2).LCD",
                                             "New Project(10).LCD",
                                             "Zeta.Lcd"};
  EXPECT_EQ(p->app.exploForm.ListAllProjects(), expected);
}

TEST_F(Projects, SaveAsNewProjectNamesMessagesAndCopies) {
  auto p = StartSaved();
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
    ASSERT_EQ(p->ui.messages.size(), 1u) << e.file;
    EXPECT_EQ(p->ui.messages[0].text, e.message);
    EXPECT_EQ(p->ui.messages[0].title, "Warning");
    EXPECT_EQ(p->app.globals.StatusText, std::string(" PROJECT: ") + e.file);
    EXPECT_EQ(p->app.globals.ActiveProject, Inits() + e.file);
    EXPECT_EQ(Pointer(), Inits() + e.file + "\n");
  }
  // The copy holds the present settings and graphics template, under the new stem.
  EXPECT_EQ(ReadFile(Inits() + "New Project.txt"), "// the present template\n");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "New Project(2).txt");
  TestProgram reader;
  reader.app.globals.ActiveProject = Inits() + "New Project.LCD";
  ASSERT_TRUE(reader.app.mainForm.LoadConfigurationX());
  EXPECT_EQ(reader.app.session.Syntax.DataFormatKind, "H");

  // A free number below the last one is taken first.
  fs::remove(Inits() + "New Project(1).LCD");
  EXPECT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project(1).LCD");
}

TEST_F(Projects, RenameRefusals) {
  auto p = StartSaved();
  Touch("a.LCD");
  Touch("b.LCD");
  const struct {
    const char* oldName;
    const char* newName;
    const char* message;
    const char* title;
    bool hold;
  } cases[] = {
      {"", "x", "Please select the project to rename in the list !", "Selection error", false},
      {"default.LCD", "x", "This default project can not be renamed !", "Error", false},
      {"DEFAULT.lcd", "x.LCD", "This default project can not be renamed !", "Error", false},
      {"a.LCD", "b", "There is already another project named like this !", "Error", false},
      {"a.LCD", "b.LCD", "There is already another project named like this !", "Error", false},
      {"a.LCD", "x", "File is in use (or acess was denied) and can not be renamed !", "Error", true},
      {"a.LCD", "sub/x", "Error while trying to rename project !", "Error", false},
      {"gone.LCD", "x", "Error while trying to rename project !", "Error", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.oldName) + " -> " + c.newName);
    if (c.hold) Hold(Inits() + c.oldName);
    p->ui.messages.clear();
    EXPECT_FALSE(p->app.exploForm.ProjectViewEdited(c.oldName, c.newName));
    Release();
    ASSERT_EQ(p->ui.messages.size(), 1u);
    EXPECT_EQ(p->ui.messages[0].text, c.message);
    EXPECT_EQ(p->ui.messages[0].title, c.title);
  }
  EXPECT_EQ(p->app.exploForm.ListAllProjects(), (std::vector<std::string>{"a.LCD", "b.LCD", "default.LCD"}));
  // An edit left as it was, or emptied, renames nothing and says nothing.
  p->ui.messages.clear();
  EXPECT_FALSE(p->app.exploForm.ProjectViewEdited("a.LCD", "a"));
  EXPECT_FALSE(p->app.exploForm.ProjectViewEdited("a.LCD", ""));
  EXPECT_TRUE(p->ui.messages.empty());
}

TEST_F(Projects, RenameTakesTheGraphicsTemplateAndOrphansTheRest) {
  auto p = StartSaved();
  Touch("board.LCD", "[S]\nFXHB=D\n");
  const char* left[] = {"board_Raw.txt", "board_Struct.txt", "board_DMD.txt", "board_Bloc.txt",
                        "board_256.pal", "board_4096.pal", "board_65536.pal", "board_262144.pal"};
  for (const char* f : left) Touch(f, f);
  Touch("board.txt", "// board template\n");

  EXPECT_TRUE(p->app.exploForm.ProjectViewEdited("board.LCD", "panel"));
  ASSERT_EQ(p->ui.messages.size(), 1u);
  EXPECT_EQ(p->ui.messages[0].text, "Project has been renamed");
  EXPECT_EQ(ReadFile(Inits() + "panel.LCD"), "[S]\nFXHB=D\n");
  EXPECT_EQ(ReadFile(Inits() + "panel.txt"), "// board template\n");
  EXPECT_FALSE(Exists("board.LCD"));
  EXPECT_FALSE(Exists("board.txt"));
  for (const char* f : left) {
    EXPECT_EQ(ReadFile(Inits() + f), f) << f;
    const std::string moved = "panel" + std::string(f).substr(5);
    EXPECT_FALSE(Exists(moved)) << moved;
  }
  // The program still works in the project it had.
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "default.LCD");
  EXPECT_EQ(Pointer(), Inits() + "default.LCD\n");
}

TEST_F(Projects, RenamingTheActiveProjectMovesTheProgramWithIt) {
  auto p = StartSaved();
  ASSERT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project.LCD");
  EXPECT_TRUE(p->app.exploForm.ProjectViewEdited("New Project.LCD", "lcd 128x64.LCD"));
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "lcd 128x64.LCD");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "lcd 128x64.txt");
  EXPECT_EQ(Pointer(), Inits() + "lcd 128x64.LCD\n");
  // The next save goes to the new name and makes no file of the old one.
  EXPECT_TRUE(p->app.mainForm.SaveConfigurationX());
  EXPECT_FALSE(Exists("New Project.LCD"));
}

TEST_F(Projects, DeleteRefusalsAndConfirmation) {
  auto p = StartSaved();
  ASSERT_EQ(p->app.exploForm.SaveAsNewProject(), "New Project.LCD");  // now the active one
  Touch("kept.LCD");
  const struct {
    const char* name;
    const char* message;
    const char* title;
  } refusals[] = {
      {"", "Select a project to delete first!", "Selection error"},
      {"default.LCD", "This project can not be deleted !", "Error"},
      {"Default.lcd", "This project can not be deleted !", "Error"},
      {"New Project.LCD", "Active project can not be deleted !", "Error"},
      {"gone.LCD", "Select a project to delete first!", "Selection error"},
  };
  for (const auto& r : refusals) {
    SCOPED_TRACE(r.name);
    p->ui.messages.clear();
    EXPECT_FALSE(p->app.exploForm.MenuItem6Click(r.name));
    ASSERT_EQ(p->ui.messages.size(), 1u);  // refused before any question
    EXPECT_EQ(p->ui.messages[0].text, r.message);
    EXPECT_EQ(p->ui.messages[0].title, r.title);
  }

  p->ui.messages.clear();
  p->ui.answers.push_back("No");
  EXPECT_FALSE(p->app.exploForm.MenuItem6Click("kept.LCD"));
  ASSERT_EQ(p->ui.messages.size(), 1u);
  EXPECT_EQ(p->ui.messages[0].text, "Please confirm to delete this project  !");
  EXPECT_TRUE(Exists("kept.LCD"));

  Hold(Inits() + "kept.LCD");
  p->ui.answers.push_back("Yes");
  EXPECT_FALSE(p->app.exploForm.MenuItem6Click("kept.LCD"));
  Release();
  EXPECT_TRUE(Exists("kept.LCD"));
  p->ui.answers.clear();
  EXPECT_EQ(p->app.exploForm.ListAllProjects(),
            (std::vector<std::string>{"default.LCD", "kept.LCD", "New Project.LCD"}));
}

TEST_F(Projects, DeleteRemovesTheProjectItsTemplateAndPalettesOnly) {
  auto p = StartSaved();
  Touch("old.LCD");
  const char* gone[] = {"old.txt", "old_256.pal", "old_4096.pal", "old_65536.pal", "old_262144.pal"};
  const char* kept[] = {"old_Raw.txt", "old_Struct.txt", "old_DMD.txt", "old_Bloc.txt", "old_16.pal", "older.txt"};
  for (const char* f : gone) Touch(f, f);
  for (const char* f : kept) Touch(f, f);

  p->ui.answers.push_back("Yes");
  EXPECT_TRUE(p->app.exploForm.MenuItem6Click("old.LCD"));
  ASSERT_EQ(p->ui.messages.size(), 2u);
  EXPECT_EQ(p->ui.messages[1].text, "Project has been deleted !");
  EXPECT_EQ(p->ui.messages[1].title, "Project Deleted");
  EXPECT_EQ(p->ui.messages[1].type, rm::DlgType::Information);
  EXPECT_FALSE(Exists("old.LCD"));
  for (const char* f : gone) EXPECT_FALSE(Exists(f)) << f;
  for (const char* f : kept) EXPECT_TRUE(Exists(f)) << f;
}

// A custom palette of 256 colours, all distinct from the default one.
std::vector<rm::Colour> CustomPalette() {
  std::vector<rm::Colour> colours;
  for (rm::Colour i = 0; i < 256; ++i) colours.push_back(0x010000 * (i % 7) + 0x000100 * (i / 7) + 3);
  std::sort(colours.begin(), colours.end());
  return colours;
}

TEST_F(Projects, ActivationSavesReadsTheOtherProjectAndClearsTheEditors) {
  std::string error;
  {
    // Another project, saved with its own settings and palette.
    auto other = StartSaved();
    ASSERT_EQ(other->app.exploForm.SaveAsNewProject(), "New Project.LCD");
    ASSERT_TRUE(rm::ApplySetting(other->app, "FXHB", "B", error)) << error;
    ASSERT_TRUE(rm::ApplySetting(other->app, "ORGC", "4", error)) << error;
    other->app.mainForm.SetColourMode(56, true);  // 256 colours: the palette comes from the project
    ASSERT_TRUE(other->app.mainForm.SaveConfigurationX());
    ASSERT_TRUE(other->app.exploForm.ActivateProject("default.LCD"));
  }
  std::ofstream pal(Inits() + "New Project_256.pal");
  for (rm::Colour c : CustomPalette()) {
    char line[16];
    std::snprintf(line, sizeof line, "$%08X\n", c);
    pal << line;
  }
  pal.close();
  fs::remove(Inits() + "New Project.txt");

  auto p = Start();
  ASSERT_EQ(p->app.globals.ActiveProject, Inits() + "default.LCD");
  p->app.mainForm.SetColourMode(56, true);  // 256 colours: the palette comes from the project
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
  EXPECT_FALSE(p->app.globals.EditorUnsaved);
  EXPECT_EQ(p->app.session.Syntax.DataFormatKind, "B");
  EXPECT_EQ(rm::GetSetting(p->app, *rm::FindSetting("ORGC")), "4");
  EXPECT_EQ(p->app.session.PaletteTable, CustomPalette());
  const auto& log = p->app.logWindow.Lines.Lines();
  EXPECT_NE(std::find(log.begin(), log.end(), "Project New Project.LCD Activated"), log.end());
  EXPECT_EQ(Pointer(), Inits() + "New Project.LCD\n");
  EXPECT_EQ(p->app.session.HeaderIncludeFile, Inits() + "New Project.txt");
  EXPECT_EQ(ReadFile(Inits() + "New Project.txt"), Joined(rm::DefaultGraphicsTemplate()));

  // The project left was written first.
  TestProgram reader;
  reader.app.globals.ActiveProject = Inits() + "default.LCD";
  ASSERT_TRUE(reader.app.mainForm.LoadConfigurationX());
  EXPECT_EQ(reader.app.session.DescriptorsEol, "; // left behind");

  // And back: the default project's palette again.
  EXPECT_TRUE(p->app.exploForm.ActivateProject("default.LCD"));
  EXPECT_EQ(p->app.session.PaletteTable, defaultPalette);
  EXPECT_EQ(p->app.session.DescriptorsEol, "; // left behind");
}

TEST_F(Projects, ActivationWithoutANameIsRefused) {
  auto p = StartSaved();
  EXPECT_FALSE(p->app.exploForm.ActivateProject(""));
  ASSERT_EQ(p->ui.messages.size(), 1u);
  EXPECT_EQ(p->ui.messages[0].text, "Please select a project first ");
  EXPECT_EQ(p->ui.messages[0].title, "Warning");
  EXPECT_EQ(p->app.globals.ActiveProject, Inits() + "default.LCD");
}

}  // namespace
