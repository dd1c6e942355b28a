#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fonts/CharSelection.h"
#include "support/TestSupport.h"

namespace {

using rm::FontSource;

struct Panel {
  rmtest::ScriptedUi ui;
  rm::FontJob job;
  rm::CharSelection sel{job, ui};
  explicit Panel(FontSource source) { job.Source = source; }
  // Clicks cells given by their code in the subblock on show (Unicode) or as bytes (ANSI).
  void Click(int code) {
    const int cell = job.Source == FontSource::Ansi ? code - 32 : code & 0xFF;
    sel.GridClick(cell % 16, cell / 16);
  }
};

TEST(CharSelection, CellCodes) {
  struct Case {
    FontSource source;
    int subblockHigh, col, row, code;
  };
  const Case cases[] = {
      {FontSource::Ansi, 0, 0, 0, 32},          {FontSource::Ansi, 0, 15, 13, 255},
      {FontSource::Ansi, 0, 0, 14, -1},         {FontSource::Ansi, 0, 16, 0, -1},
      {FontSource::Unicode, 0x04, 0, 0, 0x400}, {FontSource::Unicode, 0x04, 15, 15, 0x4FF},
      {FontSource::Unicode, 0x04, 3, 2, 0x423}, {FontSource::ExcelList, 0x01, 1, 0, 0x101},
      {FontSource::Unicode, 0, -1, 0, -1},
  };
  for (const Case& c : cases) {
    Panel p(c.source);
    p.job.SubblockHigh = c.subblockHigh;
    EXPECT_EQ(p.sel.CellCode(c.col, c.row), c.code) << c.col << "," << c.row;
  }
}

// Clicks in order, and the list they leave.
TEST(CharSelection, ClicksToggleAndTheListStaysSortedWithoutRepeats) {
  struct Case {
    FontSource source;
    std::vector<int> clicks;
    const char* list;
  };
  const Case cases[] = {
      {FontSource::Ansi, {'C', 'A', 'B'}, "ABC"},
      {FontSource::Ansi, {'A', 'A'}, ""},
      {FontSource::Ansi, {'z', 'A', 'z', '!'}, "!A"},
      {FontSource::Ansi, {0xE9, 'e'}, "e\xC3\xA9"},
      {FontSource::Unicode, {0x42, 0x0A, 0x41}, "0A/41/42/"},
      {FontSource::Unicode, {0x41, 0x42, 0x41}, "42/"},
      {FontSource::Unicode, {0xFF, 0x00}, "00/FF/"},
  };
  for (const Case& c : cases) {
    Panel p(c.source);
    for (int code : c.clicks) p.Click(code);
    EXPECT_EQ(p.job.SelectedChars, c.list);
    EXPECT_EQ(p.job.SelectedCharsScriptForm, c.list);
  }
}

TEST(CharSelection, MakeTheListSortsAndDropsRepeatsOfATypedList) {
  struct Case {
    FontSource source;
    const char* typed;
    const char* list;
  };
  const Case cases[] = {
      {FontSource::Ansi, "dcba", "abcd"},
      {FontSource::Ansi, "abcabc", "abc"},
      {FontSource::Ansi,
       "\xC3\xA9"
       "a\xC3\xA9",
       "a\xC3\xA9"},
      {FontSource::Unicode, "42/41/42/", "41/42/"},
      {FontSource::Unicode, "7F/7/", "07/7F/"},
      {FontSource::Unicode, "", ""},
  };
  for (const Case& c : cases) {
    Panel p(c.source);
    p.sel.SetAnsiList(c.typed);
    EXPECT_EQ(p.job.SelectedChars, c.list) << c.typed;
  }
}

TEST(CharSelection, TwoClickRange) {
  struct Case {
    FontSource source;
    std::vector<std::pair<int, int>> clicks;  // subblock number, code
    const char* before;
    const char* list;
  };
  const Case cases[] = {
      {FontSource::Ansi, {{1, 'C'}, {1, 'F'}}, "", "CDEF"},
      {FontSource::Ansi, {{1, 'F'}, {1, 'C'}}, "", "CDEF"},
      {FontSource::Ansi, {{1, 'B'}, {1, 'B'}}, "Z", "BZ"},
      {FontSource::Ansi, {{1, 'B'}, {1, 'D'}}, "C", "BCD"},
      {FontSource::Unicode, {{1, 0xF0}, {2, 0x0F}}, "", "*1/F0*2/0F"},
      {FontSource::Unicode, {{2, 0x0F}, {1, 0xF0}}, "", "*1/F0*2/0F"},
      {FontSource::Unicode, {{1, 0x20}, {1, 0x05}}, "", "*1/05*1/20"},
  };
  for (const Case& c : cases) {
    Panel p(c.source);
    ASSERT_TRUE(p.sel.SelectBlock("Latin Extended-B"));
    p.sel.SetAnsiList(c.before);
    p.sel.StartRange();
    for (const auto& [subblock, code] : c.clicks) {
      p.sel.ShowSubblockNumber(subblock);
      p.Click(code);
    }
    EXPECT_EQ(p.job.SelectedChars, c.list);
    EXPECT_FALSE(p.sel.RangeInProgress());
    EXPECT_EQ(p.ui.statuses, (std::vector<std::string>{"Select First Char", "Select Last Char"}));
  }
}

TEST(CharSelection, AddressRangeFieldsTakeHexDigitsOnly) {
  Panel p(FontSource::Unicode);
  p.job.SubblockHigh = 0x04;
  p.sel.SetAddressRangeMode(true);
  EXPECT_FALSE(p.sel.ValidAdress()) << "both fields are needed";
  p.Click(0x410);
  p.Click(0x44F);
  EXPECT_EQ(p.sel.FirstAddress(), "0410");
  EXPECT_EQ(p.sel.LastAddress(), "044F");
  EXPECT_EQ(p.sel.SelectedCountLabel(), "Selected = 64");
  EXPECT_EQ(p.job.SelectedChars, "") << "a click in range mode only fills the fields";
  ASSERT_TRUE(p.sel.ValidAdress());
  EXPECT_EQ(p.job.SelectedChars, "RANGE=0410 044F");

  struct Case {
    const char* typed;
    const char* field;
  };
  const Case cases[] = {{"0x41", "041"}, {"ghij", ""}, {"abcdef", "ABCD"}, {" 1 f", "1F"}};
  for (const Case& c : cases) {
    p.sel.SetFirstAddress(c.typed);
    EXPECT_EQ(p.sel.FirstAddress(), c.field) << c.typed;
  }
  p.sel.SetFirstAddress("0500");
  EXPECT_EQ(p.sel.SelectedCountLabel(), "Selected = 0") << "last before first";
  p.sel.SetFirstAddress("41");
  ASSERT_TRUE(p.sel.ValidAdress());
  EXPECT_EQ(p.job.SelectedChars, "RANGE=0041 044F");
  // Out of range mode, a click starts a list of its own.
  p.sel.SetAddressRangeMode(false);
  p.Click(0x442);
  EXPECT_EQ(p.job.SelectedChars, "42/");
}

TEST(CharSelection, SubblocksOfABlock) {
  struct Case {
    const char* block;
    int count;
    int firstHigh;
  };
  const Case cases[] = {{"Basic Latin", 1, 0x00}, {"Latin Extended-B", 2, 0x01}, {"cjk unified ideographs", 82, 0x4E}};
  for (const Case& c : cases) {
    Panel p(FontSource::Unicode);
    ASSERT_TRUE(p.sel.SelectBlock(c.block)) << c.block;
    EXPECT_EQ(p.job.SubblockCount, c.count);
    EXPECT_EQ(p.job.SubblockHigh, c.firstHigh);
    EXPECT_EQ(p.sel.SubblockLabel(), "Subblock 1 of " + std::to_string(c.count));
    EXPECT_EQ(p.sel.SubblockCountLabel(), "Number of subblocks (max 256)  = " + std::to_string(c.count));
    p.sel.PreviousSubblock();
    EXPECT_EQ(p.sel.SubblockNumber(), 1) << "no subblock before the first";
    p.sel.LastSubblock();
    EXPECT_EQ(p.sel.SubblockNumber(), c.count);
    p.sel.NextSubblock();
    EXPECT_EQ(p.sel.SubblockNumber(), c.count) << "no subblock after the last";
    p.sel.FirstSubblock();
    EXPECT_EQ(p.job.SubblockHigh, c.firstHigh);
    // The subblock grid: cell index = high byte; cells outside the block are refused.
    EXPECT_FALSE(p.sel.SubblockGridClick(15, 15));
    EXPECT_TRUE(p.sel.SubblockGridClick(c.firstHigh % 16, c.firstHigh / 16));
  }
  Panel p(FontSource::Unicode);
  EXPECT_FALSE(p.sel.SelectBlock("No Such Block"));
  EXPECT_EQ(p.job.UnicodeBlockName, "Basic Latin");
}

TEST(CharSelection, UnmappedCharactersReadAsZeroButTheRealQuestionMark) {
  Panel p(FontSource::Ansi);
  // A code page that leaves 0x81 undefined, and a font without "x" whose missing glyph is "?".
  p.sel.SetCodePageMap([](std::uint8_t b) -> std::optional<char32_t> {
    if (b == 0x81) return std::nullopt;
    return b == 0x80 ? U'\u20AC' : char32_t{b};
  });
  p.sel.SetGlyphTest([](char32_t c) { return c != U'x' && c != U'?'; });
  struct Case {
    int code;
    char32_t c;
  };
  const Case cases[] = {{0x80, U'\u20AC'}, {0x81, 0}, {'x', 0}, {'?', U'?'}, {'y', U'y'}};
  for (const Case& c : cases) {
    const int cell = c.code - 32;
    EXPECT_EQ(p.sel.AsciiGridGetChar(cell % 16, cell / 16, true), c.c) << c.code;
    EXPECT_EQ(p.sel.CurrentChar(), c.c) << "stored outside Unicode mode";
  }
  p.Click(0x81);
  p.Click(0x80);
  EXPECT_EQ(p.job.SelectedChars, "\xE2\x82\xAC") << "an unmapped cell is not chosen";
}

}  // namespace
