#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>

#include "engine/Palette.h"
#include "shell/TConfigChildWin.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::ConfigField;
using rm::ConfigFieldKind;
using rm::TConfigChildWin;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

bool Logged(const TestProgram& p, const std::string& line) {
  const auto& log = p.app.logWindow.Lines.Lines();
  return std::find(log.begin(), log.end(), line) != log.end();
}

// A white monochrome picture of 128 x 2: 32 bytes, two lines of 16 by default.
TestProgram& Ready(TestProgram& p) {
  p.Setup(1, rm::Bitmap(128, 2, rm::kWhite));
  return p;
}

TEST(ConfigPanel, SyntaxFieldsChangeTheNextConversion) {
  const struct {
    std::vector<std::pair<std::string, std::string>> set;  // field id, value
    Lines data;                                            // the data lines that follow
  } cases[] = {
      {{},
       {" 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , "
        "0x00 , 0x00,",
        " 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , "
        "0x00 , 0x00"}},
      {{{"ORGC", "8"}, {"FXHB", "data+H"}},
       {" 00h, 00h , 00h , 00h , 00h , 00h , 00h , 00h ,", " 00h, 00h , 00h , 00h , 00h , 00h , 00h , 00h ,",
        " 00h, 00h , 00h , 00h , 00h , 00h , 00h , 00h ,", " 00h, 00h , 00h , 00h , 00h , 00h , 00h , 00h "}},
      // 8 data per line, separator none, end of line ";" (the very last one deleted).
      {{{"ORGC", "16"}, {"COMA", "none"}, {"Eol", ";"}, {"ORGC", "8"}},
       {" 0x00  0x00  0x00  0x00  0x00  0x00  0x00  0x00;", " 0x00  0x00  0x00  0x00  0x00  0x00  0x00  0x00;",
        " 0x00  0x00  0x00  0x00  0x00  0x00  0x00  0x00;", " 0x00  0x00  0x00  0x00  0x00  0x00  0x00  0x00"}},
      // a+DEC+b with a prefix cut to 10 characters and a custom separator. The last line loses
      // everything from its last separator on, as a custom separator asks.
      {{{"ORGC", "8"},
        {"FXHB", "a+DEC+b"},
        {"VALpref", "(uint8_t)xyz"},
        {"VALSUF", "u"},
        {"COMA", "custom string"},
        {"sepst", "|"},
        {"WithSp", "0"}},
       {"(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u,",
        "(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u,",
        "(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u,",
        "(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u|(uint8_t)x0u"}},
      // Line numbers between the two prefixes, custom end of line cut to 5.
      {{{"ORGC", "16"}, {"LineN", "1"}, {"CPRE", "L"}, {"cpfr", ":"}, {"Eol", "custom string"}, {"eolst", " /*x*/ 12"}},
       {"L0: 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , "
        "0x00 , 0x00 /*x*",
        "L1: 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , "
        "0x00 , 0x00 /*x"}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    Ready(p);
    for (const auto& [id, value] : c.set) EXPECT_TRUE(p.app.configWin.SetValue(id, value)) << id << "=" << value;
    ASSERT_TRUE(p.Convert());
    EXPECT_EQ(p.DataLines(), c.data) << (c.set.empty() ? "defaults" : c.set.back().first);
  }
}

TEST(ConfigPanel, OneDatumPerLineDropsTheSeparatorAndCommentFormFollows) {
  TestProgram p;
  Ready(p);
  p.app.session.Syntax.NoDataComments = true;
  EXPECT_TRUE(p.app.configWin.SetValue("ORGC", "1"));
  EXPECT_EQ(p.app.configWin.Value(*TConfigChildWin::FindField("COMA")), "none");
  EXPECT_TRUE(Logged(p, "1 data per line is set !"));
  EXPECT_TRUE(Logged(p, "Data Bytes per line : 1"));
  EXPECT_TRUE(p.app.configWin.SetValue("COM", "//"));
  EXPECT_TRUE(p.app.configWin.SetValue("Noonts", "0"));
  p.app.session.Syntax.NoHeader = false;
  ASSERT_TRUE(p.Convert());
  EXPECT_NE(p.Text().find(" // Data generated with rastermill"), std::string::npos);
  EXPECT_EQ(p.Text().find("/*"), std::string::npos);
}

TEST(ConfigPanel, RefusedValuesChangeNothingAndLogNothing) {
  TestProgram p;
  rm::TConfigChildWin& w = p.app.configWin;
  const std::size_t logged = p.app.logWindow.Lines.Count();
  const struct {
    std::string id, value;
  } refused[] = {{"ORGC", "abc"}, {"ORGC", ""},      {"FXHB", "hex"},        {"COMA", ";"},       {"Eol", "custom"},
                 {"COM", "!"},    {"WithSp", "yes"}, {"SwapRedGreen", "on"}, {"NoSuchField", "1"}};
  for (const auto& r : refused) {
    const ConfigField* f = TConfigChildWin::FindField(r.id);
    const std::string before = f ? w.Value(*f) : "";
    EXPECT_FALSE(w.SetValue(r.id, r.value)) << r.id;
    if (f) {
      EXPECT_EQ(w.Value(*f), before) << r.id;
    }
  }
  EXPECT_EQ(p.app.logWindow.Lines.Count(), logged);
  // A custom count is held to a line that can be written.
  const std::pair<std::string, std::string> clamped[] = {{"0", "2"}, {"-3", "2"}, {"151", "150"}, {"5", "5"}};
  for (const auto& [typed, held] : clamped) {
    EXPECT_TRUE(w.SetValue("ORGC", typed));
    EXPECT_EQ(p.app.session.Syntax.DataPerLine, std::stoi(held)) << typed;
  }
}

// A value for a field unlike the one it has, so that a field wired to the wrong variable shows.
std::string OtherValue(const rm::TConfigChildWin& w, const ConfigField& f, int salt) {
  const std::string now = w.Value(f);
  switch (f.kind) {
    case ConfigFieldKind::Switch: return now == "1" ? "0" : "1";
    case ConfigFieldKind::Number: return std::to_string(3 + salt % 7 == std::stoi(now) ? 4 : 3 + salt % 7);
    case ConfigFieldKind::Choice: {
      for (std::size_t i = f.choices.size(); i-- > 0;)
        if (f.choices[i] != now) return std::string(f.choices[i]);
      return now;
    }
    case ConfigFieldKind::Text: break;
  }
  std::string t = "v" + std::to_string(salt) + "xyzwvutsrqponm";
  if (f.maxLength > 0) t.resize(static_cast<std::size_t>(f.maxLength));
  return t;
}

class ConfigPanelProjects : public rmtest::HomeTest {
 protected:
  std::unique_ptr<TestProgram> Start() {
    auto p = std::make_unique<TestProgram>();
    p->app.mainForm.LoadFolders();
    EXPECT_TRUE(p->app.mainForm.LoadConfigurationX());
    p->app.exploForm.UseProjectHeaderTemplate();
    EXPECT_TRUE(p->app.mainForm.SaveConfigurationX());
    return p;
  }
};

TEST_F(ConfigPanelProjects, EveryFieldReadsBackWhatItWroteAndTheProjectKeepsIt) {
  // Set one field at a time, each to a value unlike the others', and all are read back after.
  auto p = Start();
  rm::TConfigChildWin& w = p->app.configWin;
  std::vector<std::pair<const ConfigField*, std::string>> wanted;
  int salt = 0;
  for (const ConfigField& f : TConfigChildWin::Fields()) {
    // The front end names its controls by id and files them under their tab.
    EXPECT_EQ(TConfigChildWin::FindField(f.id), &f) << f.id << " is not unique";
    const auto& tabs = TConfigChildWin::Tabs();
    EXPECT_NE(std::find(tabs.begin(), tabs.end(), f.tab), tabs.end()) << f.id;
    // Data per line 1 would turn the separator off behind the separator's back.
    const std::string v = OtherValue(w, f, ++salt);
    ASSERT_TRUE(w.SetValue(f, v)) << f.id;
    wanted.emplace_back(&f, v);
  }
  for (const auto& [f, v] : wanted) EXPECT_EQ(w.Value(*f), v) << f->id;
  // The project file holds every field that has a key; the flags with no key start afresh, and
  // the end of data reads back as the font's end string, which the writer puts last.
  ASSERT_TRUE(p->app.mainForm.SaveConfigurationX());
  TestProgram reader;
  reader.app.globals.ActiveProject = p->app.globals.ActiveProject;
  ASSERT_TRUE(reader.app.mainForm.LoadConfigurationX());
  for (const auto& [f, v] : wanted) {
    if (f->id == "SwapRedGreen" || f->id == "RevertPalette" || f->id == "Endst") continue;
    EXPECT_EQ(reader.app.configWin.Value(*f), v) << f->id;
  }
}

TEST(ConfigPanel, EachChangeIsLoggedOnceWithItsValue) {
  TestProgram p;
  rm::TConfigChildWin& w = p.app.configWin;
  EXPECT_TRUE(w.SetValue("WithSp", "0"));
  EXPECT_TRUE(w.SetValue("VALpref", "0x"));
  EXPECT_TRUE(w.SetValue("snib", "1"));
  EXPECT_TRUE(w.SetValue("snib", "0"));
  w.TabEntered(TConfigChildWin::kRearrangeTab);
  const Lines& log = p.app.logWindow.Lines.Lines();
  const Lines tail(log.end() - 5, log.end());
  EXPECT_EQ(tail, (Lines{"Space Between Data : OFF", "Data Format Prefix (a) : 0x", "Swap Nibble ON", "Swap Nibble OFF",
                         "Rearrange Tab"}));
}

TEST(ConfigPanel, RearrangeGridSwapsBitsAndFollowsTheModesWidth) {
  TestProgram p;
  // Black in the leftmost pixel of each byte: 0x80 with MSB first.
  rm::Bitmap b(16, 1, rm::kWhite);
  b.SetPixel(0, 0, rm::kBlack);
  b.SetPixel(8, 0, rm::kBlack);
  p.Setup(1, b);
  rm::TConfigChildWin& w = p.app.configWin;
  EXPECT_EQ(w.ReorderBitNumbers().size(), 8u);
  w.SetReorderCell(0, 0, "swap bits");
  w.SetReorderCell(0, 1, "7");
  w.SetReorderCell(0, 2, "0");
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(p.DataLines(), (Lines{" 0x80 , 0x80 "})) << "the grid works only when switched on";
  EXPECT_EQ(w.ReorderStateText(), "[OFF]");
  ASSERT_TRUE(w.SetValue("dore", "1"));
  EXPECT_EQ(w.ReorderStateText(), "[ON]");
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(p.DataLines(), (Lines{" 0x01 , 0x01 "}));
  EXPECT_TRUE(Logged(p, "Rearrange row 0 : swap bits 7 0"));

  p.app.mainForm.SetColourMode(59, true);
  EXPECT_EQ(w.ReorderBitNumbers().size(), 16u);
  EXPECT_EQ(w.ReorderBitNumbers().back(), "15");
}

TEST_F(ConfigPanelProjects, RearrangeGridKeepsItsFirstRowsInTheProject) {
  auto p = Start();
  rm::TConfigChildWin& w = p->app.configWin;
  w.SetReorderCell(0, 0, "swap bits");
  w.SetReorderCell(0, 1, "3");
  w.SetReorderCell(0, 2, "4");
  w.SetReorderCell(16, 0, "swap bytes 16 bits");
  w.SetReorderCell(17, 0, "swap bits");  // beyond the rows a project keeps
  ASSERT_TRUE(p->app.mainForm.SaveConfigurationX());
  TestProgram reader;
  reader.app.globals.ActiveProject = p->app.globals.ActiveProject;
  reader.app.session.ReorderTable[5].function = "left over";
  ASSERT_TRUE(reader.app.mainForm.LoadConfigurationX());
  const rm::TConfigChildWin& r = reader.app.configWin;
  EXPECT_EQ(r.ReorderCell(0, 0), "swap bits");
  EXPECT_EQ(r.ReorderCell(0, 1), "3");
  EXPECT_EQ(r.ReorderCell(0, 2), "4");
  EXPECT_EQ(r.ReorderCell(16, 0), "swap bytes 16 bits");
  EXPECT_EQ(r.ReorderCell(17, 0), "");
  EXPECT_EQ(r.ReorderCell(5, 0), "");
  const std::string file = rmtest::ReadFile(p->app.globals.ActiveProject);
  EXPECT_NE(file.find("[BS0]"), std::string::npos);
  EXPECT_NE(file.find("s161=swap bytes 16 bits"), std::string::npos);
}

TEST_F(ConfigPanelProjects, HeaderTemplateEditSaveRoundTrip) {
  auto p = Start();
  rm::TConfigChildWin& w = p->app.configWin;
  const std::string path = w.HeaderTemplatePath(0);
  EXPECT_EQ(path, rm::TExploForm::ProjectStem(p->app.globals.ActiveProject) + ".txt");
  EXPECT_EQ(w.LoadHeaderTemplate(0), TConfigChildWin::FactoryHeaderTemplate(0));
  EXPECT_EQ(w.HeaderTemplatePath(3), rm::TExploForm::ProjectStem(p->app.globals.ActiveProject) + "_DMD.txt");
  EXPECT_EQ(TConfigChildWin::HeaderTemplateNames().size(), 5u);

  EXPECT_TRUE(w.EditHeaderButtonClick());
  EXPECT_TRUE(p->app.globals.HeaderEditMode);
  EXPECT_FALSE(p->app.globals.ModeMenuEnabled);
  const Lines edited = {"// my own header", "const char [&NAME][] = {"};
  ASSERT_TRUE(w.SaveHeaderTemplate(0, edited));
  EXPECT_FALSE(p->app.globals.HeaderEditMode) << "saving leaves the edit mode";
  EXPECT_TRUE(p->app.globals.ModeMenuEnabled);
  EXPECT_EQ(rmtest::ReadFile(path), "// my own header\nconst char [&NAME][] = {\n");
  EXPECT_EQ(w.LoadHeaderTemplate(0), edited);

  // The next conversion uses it.
  p->Setup(1, rm::Bitmap(16, 1, rm::kWhite), true);
  ASSERT_TRUE(p->Convert());
  EXPECT_NE(p->Text().find("// my own header\nconst char  NewBitmap [] = {"), std::string::npos) << p->Text();
}

TEST_F(ConfigPanelProjects, HeaderEditWaitsForAnotherModeAndRefusesAHeldFile) {
  auto p = Start();
  rm::TConfigChildWin& w = p->app.configWin;
  p->app.globals.FontScriptMode = true;
  p->ui.answers = {"Cancel"};
  EXPECT_FALSE(w.EditHeaderButtonClick());
  EXPECT_FALSE(p->app.globals.HeaderEditMode);
  ASSERT_EQ(p->ui.messages.size(), 1u);
  p->app.globals.FontScriptMode = false;

  ASSERT_TRUE(w.EditHeaderButtonClick());
  EXPECT_FALSE(w.EditHeaderButtonClick()) << "the button leaves the mode again";

  p->app.globals.ActiveProject.clear();
  EXPECT_FALSE(w.SaveHeaderTemplate(0, {"x"}));
  EXPECT_EQ(p->ui.messages.back().title, "Error");
}

TEST_F(ConfigPanelProjects, PaletteCommands) {
  auto p = Start();
  rm::TConfigChildWin& w = p->app.configWin;
  const std::string out = rmtest::MakeTempDir();
  // Monochrome has no table to export.
  EXPECT_FALSE(w.ExportPaletteText(out + "/mono.pal"));
  EXPECT_EQ(p->ui.messages.back().text, " The current color mode has no color palette ! ");

  // The default project may not own a custom palette.
  EXPECT_FALSE(w.LoadCustomPalette(out + "/none.png"));
  EXPECT_EQ(p->ui.messages.back().title, "Load Custom Color Palette Error");

  ASSERT_FALSE(p->app.exploForm.SaveAsNewProject().empty());
  p->app.mainForm.SetColourMode(56, true);
  ASSERT_EQ(w.PaletteColourCount(), 256);
  EXPECT_EQ(w.PaletteLabel(), "Current Palette is Default");
  ASSERT_TRUE(w.ExportPaletteText(out + "/default256.pal"));
  const auto exported = rm::ReadPaletteFile(out + "/default256.pal");
  ASSERT_TRUE(exported);
  EXPECT_EQ(*exported, p->app.session.PaletteTable);

  // A custom palette: the default one upside down. The revert switch reads the table again.
  std::vector<rm::Colour> reversed(exported->rbegin(), exported->rend());
  std::string error;
  const std::string custom = rm::CustomPaletteName(p->app.globals.ActiveProject, 256);
  ASSERT_TRUE(rm::ExportPaletteToText(reversed, custom, error)) << error;
  ASSERT_TRUE(w.SetValue("RevertPalette", "1"));
  EXPECT_EQ(w.PaletteLabel(), "Current Palette is Custom");
  EXPECT_EQ(p->app.session.PaletteTable, reversed) << "sorted, then reversed";

  p->ui.answers = {"No"};
  EXPECT_FALSE(w.UseDefaultPalette());
  EXPECT_TRUE(fs::exists(custom));
  p->ui.answers = {"Yes"};
  EXPECT_TRUE(w.UseDefaultPalette());
  EXPECT_FALSE(fs::exists(custom));
  EXPECT_EQ(w.PaletteLabel(), "Current Palette is Default");
  EXPECT_FALSE(w.UseDefaultPalette()) << "nothing left to drop";

  ASSERT_TRUE(w.ExportClut());
  EXPECT_NE(p->Text().find(" COLORLUT "), std::string::npos);
  EXPECT_NE(p->Text().find("   //255\n"), std::string::npos) << "one line per colour";
  EXPECT_EQ(p->Text().find("   //256"), std::string::npos);
  fs::remove_all(out);
}

}  // namespace
