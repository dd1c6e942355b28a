#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "fonts/AsciiChildWin.h"
#include "shell/IniFile.h"
#include "shell/ProjectStore.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::FontSource;
using PD = rm::PagingDirection;

struct Panel {
  rmtest::ScriptedUi ui;
  rm::ConversionSession session;
  rm::TasciiChild win{ui, session};
};

TEST(FontPanel, SizeEntriesAndTheirMessages) {
  struct Case {
    const char* typed;
    bool accepted;
    int size;
  };
  const Case cases[] = {{"0", false, 8}, {"-4", false, 8},    {"abc", false, 8},
                        {"", false, 8},  {"301", false, 300}, {"1000", false, 300},
                        {"1", true, 1},  {"300", true, 300},  {"12", true, 12}};
  for (const Case& c : cases) {
    Panel p;
    p.win.CreateFontButtonClick();
    EXPECT_EQ(p.win.FontSizeChange(c.typed), c.accepted) << c.typed;
    EXPECT_EQ(p.win.job.FontSize, c.size) << c.typed;
    EXPECT_EQ(p.win.choice.SizeBoxText(), std::to_string(c.size)) << c.typed;
    if (c.accepted) {
      EXPECT_TRUE(p.ui.messages.empty());
      EXPECT_EQ(p.win.script[2], "Font Size :[" + std::to_string(c.size) + "]");
    } else {
      EXPECT_EQ(rmtest::ShownMessages(p.ui), std::vector<std::string>{"Font Size:  Incorrect Size (1-300) !"});
      EXPECT_EQ(p.win.script[2], "Font Size :[10]") << "a refused size leaves the script";
    }
  }
}

TEST(FontPanel, MeasuredSizeAndLimitEntries) {
  Panel p;
  EXPECT_TRUE(p.win.choice.CheckMeasuredSize(255, 255));
  EXPECT_FALSE(p.win.choice.CheckMeasuredSize(256, 10));
  EXPECT_FALSE(p.win.choice.CheckMeasuredSize(10, 256));
  EXPECT_EQ(rmtest::ShownMessages(p.ui),
            (std::vector<std::string>{"Font Size:  Font Size To Large ! ", "Font Size:  Font Size To Large ! "}));

  struct Case {
    const char* entry;
    bool height;
    bool accepted;
  };
  const Case cases[] = {{"16", true, true}, {"0", false, true},    {"x", true, false},
                        {"", false, false}, {"1.5", false, false}, {" 3", true, false}};
  for (const Case& c : cases) {
    Panel q;
    q.win.CreateFontButtonClick();
    const bool ok = c.height ? q.win.MaximalFontHeight(c.entry) : q.win.MaximalFontWidth(c.entry);
    EXPECT_EQ(ok, c.accepted) << c.entry;
    if (c.accepted) {
      EXPECT_EQ(c.height ? q.win.job.MaxCharHeight : q.win.job.MaxCharWidth, std::stoi(c.entry));
      EXPECT_TRUE(q.ui.messages.empty());
    } else {
      // The width's dialog carries the height's caption too.
      EXPECT_EQ(rmtest::ShownMessages(q.ui), std::vector<std::string>{"Height definition:  Incorrect Entry !"});
    }
  }
}

TEST(FontPanel, ShiftsAndLimitsGoToTheirScriptLineAndClearTogether) {
  Panel p;
  p.win.CreateFontButtonClick();
  p.win.ShiftButtonClick(-1, 0);
  p.win.ShiftButtonClick(0, 2);
  p.win.MaximalFontHeight("12");
  p.win.CharsLengthChange(true);
  EXPECT_EQ(p.win.script[11], "Font Size :[FIXED][12][0][-1][2]");
  p.win.ClearFontShiftsAndSizeLimits();
  EXPECT_EQ(p.win.script[11], "Font Size :[FIXED][0][0][0][0]");
  // Horizontal chars data needs fixed cells.
  p.win.placement.SetHorizontalCharsData(true);
  p.win.CharsLengthChange(false);
  EXPECT_TRUE(p.win.job.FixedChars);
}

TEST(FontPanel, ModeChangeIsRefusedWhileAFontIsCreated) {
  Panel p;
  EXPECT_TRUE(p.win.ChangeMode(FontSource::Unicode));
  p.win.CreateFontButtonClick();
  EXPECT_FALSE(p.win.ChangeMode(FontSource::Ansi));
  EXPECT_EQ(p.win.job.Source, FontSource::Unicode);
  EXPECT_EQ(rmtest::ShownMessages(p.ui), std::vector<std::string>{"Warning: Denied : Font Creation Active !"});
}

TEST(FontPanel, ScriptNameFollowsTheJob) {
  struct Case {
    FontSource source;
    const char* font;
    int size;
    int styles;  // bits: Bold, Italic, Underline, Strike Out
    const char* block;
    int subblock;
    const char* name;
  };
  const Case cases[] = {
      {FontSource::Ansi, "Arial", 10, 0, "", 1, "Arial_10_.FSC"},
      {FontSource::Ansi, "Courier New", 8, 0b1111, "", 1, "Courier New_8_BIUS.FSC"},
      {FontSource::Ansi, "A:b/c*d?", 8, 0b0101, "", 1, "Abcd_8_BU.FSC"},
      {FontSource::Unicode, "Arial", 12, 0b0010, "Basic Latin", 1, "Arial_12_IUBasic_Latin.FSC"},
      {FontSource::Unicode, "Arial", 12, 0, "Latin Extended-B", 2, "Arial_12_ULatin_Extended-B_2.FSC"},
      {FontSource::Unicode, "Arial", 12, 0, "Cyrillic", 1, "Arial_12_UCyril_.FSC"},
      {FontSource::Vector, "Sans", 12, 0b0001, "", 1, "Sans_Vector_B.FSC"},
  };
  for (const Case& c : cases) {
    Panel p;
    p.win.job.Source = c.source;
    p.win.job.FontName = c.font;
    p.win.job.FontSize = c.size;
    for (int s = 0; s < 4; ++s) p.win.choice.SetStyle(s, (c.styles >> s) & 1);
    if (*c.block) {
      ASSERT_TRUE(p.win.ComboBoxBlockChange(c.block));
      p.win.selection.ShowSubblockNumber(c.subblock);
    }
    EXPECT_EQ(p.win.DefaultScriptName(), c.name);
  }
}

TEST(FontPanel, ScriptLinesFollowThePanelsControls) {
  Panel p;
  p.win.job.Source = FontSource::Unicode;
  p.win.ComboBoxBlockChange("Latin Extended-B");
  p.win.CreateFontButtonClick();
  EXPECT_EQ(p.win.script[0], "Font script filename :[Arial_10_ULatin_Extended-B_1.FSC]");
  EXPECT_EQ(p.win.script[14], "Selected Chars List :[41/]") << "an empty selection starts with the A cell";
  p.win.NextSubblock();
  EXPECT_EQ(p.win.script[8], "Font Type :[UNICODE Latin Extended-B][2]");
  EXPECT_EQ(p.win.script[0], "Font Script Filename :[Arial_10_ULatin_Extended-B_2.FSC]");
  p.win.ComboBoxBlockChange("Basic Latin");
  EXPECT_EQ(p.win.script[8], "Font Type :[UNICODE Basic Latin]") << "one subblock: no bracket";
  p.win.DirectionButtonClick(PD::Down);
  p.win.CornerButtonClick(rm::OriginCorner::BL);
  EXPECT_EQ(p.win.script[9], "Font Orientation :[Down][BL]");
  p.win.MsbButtonClick(false);
  EXPECT_EQ(p.win.script[10], "Font Endian : Most Significant Bit [Last]");
  p.win.StyleButtonClick(4, true);
  EXPECT_EQ(p.win.script[7], "Font style Outline :[True]");
  p.win.GridClick(2, 4);
  EXPECT_EQ(p.win.script[14], "Selected Chars List :[41/42/]");
  p.win.ClearSelection();
  EXPECT_EQ(p.win.script[14], "Selected Chars List :[]");
  p.win.FontNameChange("Mono", false);
  EXPECT_EQ(p.win.script[1], "Font Name :[Mono]");
  EXPECT_EQ(p.win.script[2], "Font Size :[SIZE]");
  EXPECT_EQ(p.win.choice.RecentFonts(), std::vector<std::string>{"UnicodeMono"});
}

TEST(FontPanel, ScriptWritesOnlyLinesItHas) {
  struct Case {
    FontSource source;
    bool range;
    int index;
    const char* text;
    bool written;
  };
  const Case cases[] = {
      {FontSource::Ansi, false, 13, "Font Suffix :[x]", true},
      {FontSource::Unicode, false, 13, "Font Suffix :[x]", false},
      {FontSource::Unicode, false, 13, "Font Suffix :[x/]", true},
      {FontSource::Unicode, false, 13, "Selected Chars List :[]", true},
      {FontSource::Unicode, true, 13, "Font Suffix :[x]", true},
      {FontSource::Ansi, false, 15, "beyond", false},
  };
  for (const Case& c : cases) {
    Panel p;
    p.win.job.Source = c.source;
    p.win.CreateFontButtonClick();
    p.win.job.AddressRangeMode = c.range;
    const std::size_t lines = p.win.script.Count();
    p.win.Script(c.index, c.text);
    EXPECT_EQ(p.win.script.Count(), lines);
    EXPECT_EQ(c.index < static_cast<int>(lines) && p.win.script[c.index] == c.text, c.written) << c.text;
  }
  Panel p;
  p.win.CreateFontButtonClick();
  p.win.AnsiListChange("cba");
  EXPECT_EQ(p.win.listEditor, "abc") << "the list line goes to the editor under the grid";
}

TEST(FontPanel, OpenedScriptSetsTheJobAndTheSession) {
  Panel made;
  made.win.job.FontName = "Mono";
  made.win.FontSizeChange("14");
  made.win.choice.SetStyle(1, true);
  made.session.Direction = PD::Down;
  made.session.BigEndian = false;
  made.win.job.FontPrefix = "{";
  made.win.AnsiListChange("XYZ");
  made.win.CreateFontButtonClick();

  Panel p;
  ASSERT_TRUE(p.win.OpenFontScript(made.win.script.Lines(), false));
  EXPECT_TRUE(p.win.FontScriptMode);
  EXPECT_EQ(p.win.job.FontName, "Mono");
  EXPECT_EQ(p.win.job.FontSize, 14);
  EXPECT_TRUE(p.win.job.FontStyleItalic);
  EXPECT_EQ(p.session.Direction, PD::Down);
  EXPECT_FALSE(p.session.Horizontal);
  EXPECT_FALSE(p.session.BigEndian);
  EXPECT_EQ(p.win.job.FontPrefix, "{");
  EXPECT_EQ(p.win.job.SelectedChars, "XYZ");
  EXPECT_EQ(p.win.listEditor, "XYZ");
  // A script opened from a file keeps its name when a control rewrites a line.
  p.win.MsbButtonClick(true);
  EXPECT_EQ(p.win.script[0], made.win.script[0]);

  Panel refused;
  EXPECT_FALSE(refused.win.OpenFontScript(made.win.script.Lines(), true));
  EXPECT_FALSE(refused.win.FontScriptMode);
  EXPECT_EQ(rmtest::ShownMessages(refused.ui),
            std::vector<std::string>{
                "Font script edition error: Animation mode is still active, no font script edition in this mode"});
}

TEST(FontPanel, AddressRangeScriptTurnsTheRangeModeOn) {
  Panel made;
  made.win.job.Source = FontSource::Unicode;
  made.win.CreateFontButtonClick();
  made.win.SetAddressRangeMode(true);
  made.win.selection.SetFirstAddress("20");
  made.win.selection.SetLastAddress("7e");
  made.win.ValidAdress();
  EXPECT_EQ(made.win.script[14], "Selected Chars List :[RANGE=0020 007E]");

  Panel p;
  ASSERT_TRUE(p.win.OpenFontScript(made.win.script.Lines(), false));
  EXPECT_TRUE(p.win.job.AddressRangeMode);
  EXPECT_EQ(p.win.selection.FirstAddress(), "0020");
  EXPECT_EQ(p.win.selection.LastAddress(), "007E");
  EXPECT_EQ(p.win.addressRangeButton, "Disable Adress Range Selection");
  EXPECT_EQ(p.win.addressRangeLabel, "Adress Range Selection Mode");
  EXPECT_NE(std::find(p.ui.statuses.begin(), p.ui.statuses.end(), "Address List Enable"), p.ui.statuses.end());
}

TEST(FontPanel, QuitAsksToSaveAChangedScript) {
  const std::string folder = rmtest::MakeTempDir();
  struct Case {
    const char* answer;
    bool quits;
    bool saved;
  };
  const Case cases[] = {{"Yes", true, true}, {"No", true, false}, {"Cancel", false, false}};
  for (const Case& c : cases) {
    Panel p;
    p.win.CreateFontButtonClick();
    p.win.ShiftButtonClick(1, 1);
    const std::string path = folder + "/" + p.win.scriptName;
    std::filesystem::remove(path);
    p.ui.answers.push_back(c.answer);
    EXPECT_EQ(p.win.QuitFontscriptClick(folder), c.quits) << c.answer;
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(p.ui.messages[0].text, path + " Save Font script to file ? \r \r");
    EXPECT_EQ(p.ui.messages[0].title, "Font Script not saved !");
    EXPECT_EQ(std::filesystem::exists(path), c.saved) << c.answer;
    EXPECT_EQ(p.win.FontScriptMode, !c.quits);
    EXPECT_EQ(p.win.job.ShiftX, c.quits ? 0 : 1) << "quitting clears the shifts";
  }
  std::filesystem::remove_all(folder);
}

// A font whose text is twice its point size high and which lacks "x"; a code page 1252 that
// knows only 0x80 beyond ISO 8859-1 and leaves 0x81 undefined.
class FakeFont : public rm::Font {
 public:
  explicit FakeFont(const rm::FontRequest& r) { metrics_.height = 2 * r.pointSize; }
  const rm::FontIdentity& Identity() const override { return identity_; }
  const rm::FontMetrics& Metrics() const override { return metrics_; }
  bool HasGlyph(char32_t c) const override { return c != U'x'; }
  rm::GlyphMetrics Measure(char32_t) const override { return {true, metrics_.height / 2}; }
  int TextWidth(const std::u32string& t) const override { return static_cast<int>(t.size()); }
  rm::GlyphImage Render(const std::u32string&) const override { return {}; }
  std::vector<rm::KerningPair> KerningPairs(int, const std::u32string&) const override { return {}; }

 private:
  rm::FontIdentity identity_;
  rm::FontMetrics metrics_;
};

class FakeEngine : public rm::FontEngine {
 public:
  std::unique_ptr<rm::Font> Open(const rm::FontRequest& r, std::string& error) const override {
    if (r.family == "Broken") {
      error = "not a font";
      return nullptr;
    }
    return std::make_unique<FakeFont>(r);
  }
  std::vector<rm::FontFamilyInfo> Families() const override { return {}; }
  std::vector<rm::CodePageInfo> CodePages() const override { return {}; }
  std::optional<char32_t> ToUnicode(int page, std::uint8_t b) const override {
    if (page != 1252 || b == 0x81) return std::nullopt;
    return b == 0x80 ? U'\u20AC' : char32_t{b};
  }
};

TEST(FontPanel, TheFontEngineMapsCodesAndMeasuresTheSize) {
  Panel p;
  FakeEngine engine;
  p.win.SetFontEngine(&engine);
  ASSERT_NE(p.win.JobFont(), nullptr);
  const int euro = 0x80 - 32, undefined = 0x81 - 32, x = 'x' - 32;
  EXPECT_EQ(p.win.selection.AsciiGridGetChar(euro % 16, euro / 16, false), U'\u20AC');
  EXPECT_EQ(p.win.selection.AsciiGridGetChar(undefined % 16, undefined / 16, false), 0u);
  EXPECT_EQ(p.win.selection.AsciiGridGetChar(x % 16, x / 16, false), 0u) << "the font has no x";
  p.win.job.CodePage = "1250";
  EXPECT_EQ(p.win.selection.AsciiGridGetChar(euro % 16, euro / 16, false), 0u) << "a page the engine lacks";

  EXPECT_TRUE(p.win.FontSizeChange("127"));
  EXPECT_TRUE(p.ui.messages.empty()) << "254 pixels high";
  EXPECT_TRUE(p.win.FontSizeChange("128"));
  EXPECT_EQ(rmtest::ShownMessages(p.ui), std::vector<std::string>{"Font Size:  Font Size To Large ! "});

  p.win.FontNameChange("Broken");
  EXPECT_EQ(p.win.JobFont(), nullptr);
  EXPECT_NE(std::find(p.ui.statuses.begin(), p.ui.statuses.end(), "not a font"), p.ui.statuses.end());
}

// The font keys of the project file fill the job, and the job is what is written.
TEST(FontSettings, ProjectKeysFillTheFontJob) {
  rmtest::TestProgram t;
  const rm::FontJob factory;
  EXPECT_EQ(t.app.asciiChild.job.FontName, factory.FontName);
  rm::IniFile ini;
  ini.SetText(
      "[S2]\nSFONT=Courier\n[I2]\nSFONS=301\n[B7]\nnde=1\nwsta2b=1\n[B10]\nDEA=2\nAOF=32\n[S7]\nfonpr=<\n"
      "[S8]\nEndstF=END\n[S]\nCSBRK=7\nFHE1=0x00\n[B1]\nRawd2=0\nDMDs=1\n");
  rm::ProjectRead(t.app, ini);
  const rm::FontJob& job = t.app.asciiChild.job;
  EXPECT_EQ(job.FontName, "Courier");
  EXPECT_EQ(job.FontSize, 10) << "a size beyond 300 gives the default";
  EXPECT_TRUE(job.NoDescriptorBloc);
  EXPECT_TRUE(job.StartAddress2Bytes);
  EXPECT_EQ(job.AddressFormat, 2);
  EXPECT_EQ(job.AsciiOffset, 32);
  EXPECT_EQ(job.FontPrefix, "<");
  EXPECT_EQ(job.EndOfData, "END");
  EXPECT_EQ(job.CharSizeBitsRank, "7");
  EXPECT_EQ(job.FontHeader1, "0x00");
  EXPECT_FALSE(job.FontBloc);
  EXPECT_TRUE(job.DmdStruct);

  t.app.asciiChild.job.FontSize = 42;
  t.app.asciiChild.job.WithCharComment = false;
  rm::IniFile out;
  rm::ProjectWrite(t.app, out);
  EXPECT_EQ(out.ReadString("I2", "SFONS", ""), "42");
  EXPECT_EQ(out.ReadString("B7", "rdcc", ""), "0");
  EXPECT_EQ(out.ReadString("S8", "Endst", ""), "END") << "the font's end string is written last under Endst";
}

}  // namespace
