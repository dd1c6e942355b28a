#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::TExploForm;
using rm::TExploForm2;
using rmtest::ReadFile;
using rmtest::TestProgram;
using Hl = rm::TExploForm2::Highlighter;

using rmtest::WriteText;

void SetTime(const std::string& path, std::time_t t) {
  fs::last_write_time(path, std::chrono::file_clock::from_sys(std::chrono::system_clock::from_time_t(t)));
}

bool Logged(const rm::Application& app, const std::string& line) {
  const auto& lines = app.logWindow.Lines.Lines();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

class Explorer : public rmtest::HomeTest {
 protected:
  void SetUp() override {
    HomeTest::SetUp();
    dir_ = home_ + "/files/";
    fs::create_directories(dir_);
  }
  std::string dir_;
  TestProgram p;
};

TEST(ExplorerTypes, TypeColumnNamesTheProgramsKindsAndTheRestByExtension) {
  const std::vector<std::pair<std::string, std::string>> cases = {{"a.rmv", "Rastermill Vectors"},
                                                                  {"x.c.bak", "Source File Backup"},
                                                                  {"out.HEX", "HEX File"},
                                                                  {"p.tif", "TIF Graphic"},
                                                                  {"p.tiff", "TIFF Graphic"},
                                                                  {"default.lcd", "Rastermill Project"},
                                                                  {"main.c", "C File"},
                                                                  {"pic.jpeg", "JPEG File"},
                                                                  {"Makefile", "File"}};
  for (const auto& [name, type] : cases) EXPECT_EQ(TExploForm::FileTypeText(name), type) << name;
  EXPECT_EQ(TExploForm::FileTypeText("Fonts", true), "DIRECTORY");
}

TEST(ExplorerTypes, FilterWordsTakeTheirExtensionsOnly) {
  struct Case {
    const char* filter;
    const char* name;
    bool shown;
  };
  const Case cases[] = {
      {"", "anything.xyz", true}, {"ALL GRAPHICS", "v.RMV", true}, {"ALL GRAPHICS", "a.c", false},
      {"FONTS", "e.eff", true},   {"FONTS", "e.gif_old", false},   {"EFONTS", "e.gif_old", true},
      {"BATCH", "b.SPP", true},   {"SOURCES", "README", true},     {"SOURCES", "x.txt", false},
      {".JPG", "p.jpeg", true},   {".JPEG", "p.jpg", false},       {".TIFF", "p.tif", true},
      {".TIF", "p.tiff", false},  {".BMP", "p.bmp.bak", false},    {"VIDEO", "m.mpg", true},
      {"TOUCH", "t.tsc", true},
  };
  for (const Case& c : cases)
    EXPECT_EQ(TExploForm::FilterAccepts(c.filter, c.name), c.shown) << c.filter << " " << c.name;
}

TEST(ExplorerTypes, SizeInKilobytesRoundedUpWithThousandsSeparators) {
  const std::vector<std::pair<unsigned long long, std::string>> cases = {
      {0, "0 KB"}, {1024, "1 KB"}, {1025, "2 KB"}, {999ull * 1024, "999 KB"}, {1024000ull * 1024, "1,024,000 KB"}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(TExploForm::SizeText(bytes), text) << bytes;
  std::tm tm{};
  tm.tm_year = 2024 - 1900;
  tm.tm_mon = 2;
  tm.tm_mday = 5;
  tm.tm_hour = 7;
  tm.tm_min = 9;
  tm.tm_isdst = -1;
  EXPECT_EQ(TExploForm::DateText(std::mktime(&tm)), "05/03/2024 07:09");
}

TEST(ExplorerTypes, HighlighterByExtension) {
  const std::vector<std::tuple<std::string, std::string, Hl>> cases = {
      {"a.asm", "lib", Hl::Assembler}, {"a.C", "lib", Hl::Cpp},           {"a.xyz", "xyz", Hl::Cpp},
      {"a.lib", "xyz", Hl::None},      {"a.bas", "lib", Hl::VisualBasic}, {"L.LOG", "lib", Hl::General},
      {"a.html", "lib", Hl::Html},     {"a.hex", "lib", Hl::None},        {"a.pas", "lib", Hl::Pascal},
      {"a.xml", "lib", Hl::Xml}};
  for (const auto& [name, lib, hl] : cases) EXPECT_EQ(TExploForm2::Highlighters(name, lib), hl) << name;
}

TEST_F(Explorer, ListingPutsFoldersFirstAndCountsWhatTheFilterLets) {
  fs::create_directories(dir_ + "zeta");
  fs::create_directories(dir_ + "Alpha");
  WriteText(dir_ + "b.c", "int b;\n");
  WriteText(dir_ + "A.BMP", std::string(2048, 'x'));
  WriteText(dir_ + "pic.jpeg", "");
  WriteText(dir_ + ".hidden", "");
  auto& explorer = p.app.exploForm;

  auto names = [](const TExploForm::FileListing& l) {
    std::vector<std::string> n;
    for (const auto& r : l.rows) n.push_back(r.name);
    return n;
  };
  auto all = explorer.ListeLesFichiers(dir_, "");
  ASSERT_TRUE(all.ok);
  EXPECT_EQ(names(all), (std::vector<std::string>{"Alpha", "zeta", "A.BMP", "b.c", "pic.jpeg"}));
  EXPECT_EQ(all.footer, "5 element(s)");
  EXPECT_EQ(all.rows[2].size, "2 KB");

  p.app.globals.ExplorerShowFolders = false;
  auto noFolders = explorer.ListeLesFichiers(dir_, "");
  EXPECT_EQ(names(noFolders), (std::vector<std::string>{"A.BMP", "b.c", "pic.jpeg"}));
  EXPECT_EQ(noFolders.footer, "3 element(s) [No Folders]");

  // The program's clock says "today": only the file changed on that day stays.
  SetTime(dir_ + "b.c", p.clock.Now());
  SetTime(dir_ + "A.BMP", p.clock.Now() - 3 * 86400);
  SetTime(dir_ + "pic.jpeg", p.clock.Now() + 3 * 86400);
  p.app.globals.ExplorerTodayOnly = true;
  auto today = explorer.ListeLesFichiers(dir_, "");
  EXPECT_EQ(names(today), (std::vector<std::string>{"b.c"}));
  EXPECT_EQ(today.footer, "1 NOT FILTERED OUT element(s) [No Folders]");

  EXPECT_FALSE(explorer.ListeLesFichiers(dir_ + "gone", "").ok);
}

TEST_F(Explorer, FolderRolesAndTheAutomaticFilterOfTheFolderEntered) {
  auto& g = p.app.globals;
  g.FontsRole = dir_ + "Fonts";
  g.BatchRole = dir_ + "Batch Files";
  fs::create_directories(g.FontsRole);
  const auto roles = p.app.exploForm.FolderRoles();
  EXPECT_EQ(roles.at(1).path, g.FontsRole);
  EXPECT_EQ(roles.at(5).path, g.BatchRole);

  // Off: entering a role's folder keeps the filter.
  ASSERT_TRUE(p.app.exploForm.EnterFolder(g.FontsRole + "/"));
  EXPECT_EQ(g.ExplorerFilter, "");
  g.AutoFolderFilters = true;
  ASSERT_TRUE(p.app.exploForm.EnterFolder(g.FontsRole + "/"));
  EXPECT_EQ(g.ExplorerFilter, "FONTS");
  EXPECT_EQ(p.app.exploForm.FilterLabel(), "Filter = Font Script Files  (FSC)");
  // A folder that is no role's keeps what was chosen.
  ASSERT_TRUE(p.app.exploForm.EnterFolder(dir_));
  EXPECT_EQ(g.ExplorerFilter, "FONTS");

  EXPECT_FALSE(p.app.exploForm.EnterFolder(g.BatchRole));
  EXPECT_EQ(ShownMessages(p.ui).back(), "Error: This Disk or Folder no longer exists !");
  EXPECT_EQ(g.ExplorerFolder, dir_);
}

TEST_F(Explorer, SourceFilesGoToTheMainTextWithTheirHighlighter) {
  WriteText(dir_ + "font.c", "const char a[] = {\r\n0x00};\r\n");
  auto& g = p.app.globals;
  g.EditorsPage = TExploForm2::kHexTab;
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "font.c"));
  EXPECT_EQ(p.app.mainText.Text(), "const char a[] = {\n0x00};\n");
  EXPECT_EQ(g.EditorsPage, TExploForm2::kMainTab);
  EXPECT_EQ(p.app.exploForm2.MainHighlighter, Hl::Cpp);
  EXPECT_EQ(g.EditorFileName, dir_ + "font.c");
  EXPECT_TRUE(Logged(p.app, "Load Editor with " + dir_ + "font.c"));
  EXPECT_EQ(g.RecentFiles.front(), dir_ + "font.c");
}

TEST_F(Explorer, UnsavedTextIsOfferedForSavingBeforeItIsReplaced) {
  WriteText(dir_ + "a.c", "old\n");
  WriteText(dir_ + "b.h", "new\n");
  auto& g = p.app.globals;
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "a.c"));
  p.app.exploForm2.MainTextEdited("edited");
  EXPECT_TRUE(g.EditorUnsaved);

  // No: the edit is dropped.
  p.ui.answers = {"No"};
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "b.h"));
  EXPECT_EQ(ShownMessages(p.ui), (std::vector<std::string>{"Confirm: Previous editor content not saved ! Save ? "}));
  EXPECT_EQ(ReadFile(dir_ + "a.c"), "old\n");
  EXPECT_EQ(p.app.mainText.Text(), "new\n");

  // Yes: the text goes back to its own file (with its backup) before the next one comes in.
  p.app.exploForm2.MainTextEdited("changed b");
  p.ui.messages.clear();
  p.ui.answers = {"Yes", "Yes"};
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "a.c"));
  EXPECT_EQ(ReadFile(dir_ + "b.h"), "changed b\n");
  EXPECT_EQ(ReadFile(dir_ + "b.h.bak"), "new\n");
  EXPECT_EQ(p.app.mainText.Text(), "old\n");

  // Yes, but the save is refused: nothing replaces the text.
  p.app.exploForm2.MainTextEdited("keep me");
  p.ui.answers = {"Yes", "No"};
  EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + "b.h"));
  EXPECT_EQ(p.app.mainText.Text(), "keep me\n");
  EXPECT_EQ(g.EditorFileName, dir_ + "a.c");
}

TEST_F(Explorer, ConvertedTableIsNoLongerTheLoadedFile) {
  WriteText(dir_ + "a.c", "old\n");
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "a.c"));
  p.Setup(1, rmtest::PatternPicture(8, 8, {rm::kBlack, rm::kWhite}));
  ASSERT_TRUE(p.Convert());
  EXPECT_TRUE(p.app.globals.EditorFileName.empty());
  EXPECT_TRUE(p.app.globals.EditorUnsaved);
  // Saying yes now saves the table as an output (here: no output folder, so it is refused and
  // the table stays), never into a.c.
  WriteText(dir_ + "b.c", "b\n");
  p.ui.answers = {"Yes"};
  EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + "b.c"));
  EXPECT_EQ(ReadFile(dir_ + "a.c"), "old\n");
  EXPECT_NE(p.app.mainText.Text(), "b\n");
}

TEST_F(Explorer, BinariesDocumentsAndProjectsGoWhereTheyBelong) {
  auto& g = p.app.globals;
  const std::string bytes("\x00\x01\xFF:10", 6);
  WriteText(dir_ + "data.bin", bytes);
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "data.bin"));
  EXPECT_EQ(std::string(p.app.hex.Bytes().begin(), p.app.hex.Bytes().end()), bytes);
  EXPECT_EQ(g.EditorsPage, TExploForm2::kHexTab);

  p.app.mainText.Add("table");
  WriteText(dir_ + "doc.rtf", "{\\rtf1 Parameters}\n");
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "doc.rtf"));
  EXPECT_EQ(p.app.infoText.Text(), "{\\rtf1 Parameters}\n");
  EXPECT_EQ(p.app.mainText.Text(), "table\n");

  WriteText(dir_ + "other.LCD", "[S]\n");
  EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + "other.LCD"));
  EXPECT_TRUE(p.ui.messages.empty());

  fs::create_directories(dir_ + "sub");
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "sub"));
  EXPECT_EQ(g.ExplorerFolder, dir_ + "sub");
}

TEST_F(Explorer, KindsWithoutTheirFeatureSaySoAndOpenNothing) {
  p.app.mainText.Add("table");
  for (const char* name : {"s.fsc", "s.TSC", "e.eff", "b.spp", "v.rmv", "clip.avi", "clip.WMV", "clip.mpg"}) {
    WriteText(dir_ + name, "x\n");
    p.ui.messages.clear();
    EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + name)) << name;
    ASSERT_EQ(p.ui.messages.size(), 1u) << name;
    EXPECT_EQ(p.ui.messages[0].text.rfind(std::string(name) + " : ", 0), 0u) << p.ui.messages[0].text;
  }
  EXPECT_EQ(p.app.mainText.Text(), "table\n");
  EXPECT_EQ(p.app.hex.Size(), 0u);
}

TEST_F(Explorer, PicturesAreCheckedThenImported) {
  WriteText(dir_ + "bad.bmp", "not a bitmap");
  WriteText(dir_ + "bad.jpeg", "not a jpeg");
  EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + "bad.bmp"));
  EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + "bad.jpeg"));
  EXPECT_EQ(ShownMessages(p.ui),
            (std::vector<std::string>{
                "Error: This is not a valid bitmap file !\r" + dir_ + "bad.bmp\rBitmap file format check failed",
                "Error: This is not a valid Jpeg file !\r" + dir_ + "bad.jpeg\rJPG file format check failed"}));
  EXPECT_FALSE(p.app.pixelForm.FloatingSelection);

  std::string error;
  ASSERT_TRUE(p.codecs.SavePng(rmtest::PatternPicture(16, 8, {rm::kBlack, rm::kWhite}), dir_ + "ok.png", error))
      << error;
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "ok.png"));
  EXPECT_TRUE(p.app.pixelForm.FloatingSelection);
}

TEST_F(Explorer, BatchWaitChoosesTheActiveBatchInsteadOfOpening) {
  auto& g = p.app.globals;
  WriteText(dir_ + "fix.SPP", "x\n");
  WriteText(dir_ + "a.c", "x\n");
  g.BatchSelectWait = true;
  EXPECT_FALSE(p.app.exploForm.Loadfile(dir_ + "a.c"));
  EXPECT_EQ(ShownMessages(p.ui).back(), "Warning: Processing batch file was not selected correctly ! ");
  EXPECT_TRUE(p.app.mainText.Empty());
  g.BatchSelectWait = true;
  ASSERT_TRUE(p.app.exploForm.Loadfile(dir_ + "fix.SPP"));
  EXPECT_EQ(g.ActiveBatch, "fix.SPP");
  EXPECT_FALSE(g.BatchSelectWait);
}

TEST_F(Explorer, EditorLoadKeepsTheProgramsOwnFilesOutOfTheLogAndTheModesTab) {
  auto& g = p.app.globals;
  const std::string inits = dir_ + "Rastermill inits 1/";
  fs::create_directories(inits);
  WriteText(inits + "default.txt", "template\n");
  ASSERT_TRUE(p.app.exploForm.LoadSyneditor(inits + "default.txt"));
  EXPECT_EQ(p.app.mainText.Text(), "template\n");
  EXPECT_TRUE(p.app.logWindow.Lines.Empty());

  g.FontScriptMode = true;
  g.EditorsPage = TExploForm2::kScriptTab;
  WriteText(dir_ + "x.txt", "x\n");
  ASSERT_TRUE(p.app.exploForm.LoadSyneditor(dir_ + "x.txt"));
  EXPECT_EQ(g.EditorsPage, TExploForm2::kScriptTab);
  EXPECT_TRUE(Logged(p.app, "Load Editor with " + dir_ + "x.txt"));

  EXPECT_FALSE(p.app.exploForm.LoadSyneditor(dir_ + "missing.c"));
  EXPECT_EQ(p.app.mainText.Text(), "x\n");
}

TEST_F(Explorer, SavingTheTextTabChecksTheNameAndKeepsABackup) {
  auto& g = p.app.globals;
  auto& explorer = p.app.exploForm;
  p.app.exploForm2.MainTextEdited("line 1\nline 2");
  for (const char* bad : {"out.cpp", "out.bin", "out"}) {
    p.ui.messages.clear();
    EXPECT_FALSE(explorer.SaveEditor(dir_ + bad));
    EXPECT_EQ(ShownMessages(p.ui),
              (std::vector<std::string>{"Error: File Ext can only be one of these : H,C,BAS,ASM,TXT or RTF ! "}));
  }
  EXPECT_TRUE(g.EditorUnsaved);

  p.ui.messages.clear();
  ASSERT_TRUE(explorer.SaveEditor(dir_ + "out.h"));
  EXPECT_EQ(ReadFile(dir_ + "out.h"), "line 1\nline 2\n");
  EXPECT_FALSE(fs::exists(dir_ + "out.h.bak"));
  EXPECT_FALSE(g.EditorUnsaved);

  p.app.exploForm2.MainTextEdited("second");
  p.ui.messages.clear();
  p.ui.answers = {"No"};
  EXPECT_FALSE(explorer.SaveEditor(dir_ + "out.h"));
  EXPECT_EQ(ShownMessages(p.ui), (std::vector<std::string>{"Confirm:  File Exists,  Overwrite ?"}));
  EXPECT_EQ(ReadFile(dir_ + "out.h"), "line 1\nline 2\n");
  p.ui.answers = {"Yes"};
  ASSERT_TRUE(explorer.SaveEditor(dir_ + "out.h"));
  EXPECT_EQ(ReadFile(dir_ + "out.h"), "second\n");
  EXPECT_EQ(ReadFile(dir_ + "out.h.bak"), "line 1\nline 2\n");

  // A folder that does not exist.
  p.ui.messages.clear();
  EXPECT_FALSE(explorer.SaveEditor(dir_ + "none/out.c"));
  EXPECT_EQ(ShownMessages(p.ui),
            (std::vector<std::string>{"Error: Access to this file denied ! Check for read only status"}));
}

TEST_F(Explorer, SavingTheHexTabWritesTheBytesAndOtherTabsRefuse) {
  auto& g = p.app.globals;
  auto& explorer = p.app.exploForm;
  for (int b : {0x00, 0x7F, 0xFF}) p.app.hex.AddByte(static_cast<std::uint8_t>(b));
  g.EditorsPage = TExploForm2::kHexTab;
  EXPECT_FALSE(explorer.SaveEditor(dir_ + "out.c"));
  EXPECT_EQ(ShownMessages(p.ui).back(), "Error: File Ext can only be one of these : BIN or HEX ! ");
  ASSERT_TRUE(explorer.SaveEditor(dir_ + "out.BIN"));
  EXPECT_EQ(ReadFile(dir_ + "out.BIN"), std::string("\x00\x7F\xFF", 3));

  p.ui.messages.clear();
  g.EditorsPage = TExploForm2::kDocumentTab;
  EXPECT_FALSE(explorer.SaveEditor(dir_ + "doc.rtf"));
  g.EditorsPage = TExploForm2::kMainTab;
  g.HeaderEditMode = true;
  EXPECT_FALSE(explorer.SaveEditor(dir_ + "x.c"));
  EXPECT_EQ(p.ui.messages.size(), 2u);
  EXPECT_FALSE(fs::exists(dir_ + "doc.rtf"));
  EXPECT_FALSE(fs::exists(dir_ + "x.c"));
}

}  // namespace
