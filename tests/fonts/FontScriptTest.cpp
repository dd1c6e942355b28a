#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fonts/FontScript.h"
#include "support/TestSupport.h"

namespace {

using rm::FontScriptFields;
using rm::FontSource;
using PD = rm::PagingDirection;
using OC = rm::OriginCorner;

// Everything a script carries, as one comparable text (the corner is left out: a new script has
// none; the file name is ignored by the reader).
std::string Describe(const FontScriptFields& f) {
  return f.fontName + "|" + std::to_string(f.fontSize) + "|" + std::to_string(f.bold) + std::to_string(f.italic) +
         std::to_string(f.underline) + std::to_string(f.strikeOut) + std::to_string(f.outline) + "|" +
         std::to_string(static_cast<int>(f.source)) + "|" + f.codePage + "|" + f.blockName + "|" +
         std::to_string(f.subblock) + "|" + std::to_string(static_cast<int>(f.direction)) + "|" +
         std::to_string(f.msbFirst) + "|" + std::to_string(f.fixed) + "|" + std::to_string(f.maxHeight) + "," +
         std::to_string(f.maxWidth) + "," + std::to_string(f.shiftX) + "," + std::to_string(f.shiftY) + "|" + f.prefix +
         "|" + f.suffix + "|" + f.list;
}

// Fields that differ from the defaults in every value, so a field the reader skips shows.
FontScriptFields Other() {
  FontScriptFields o;
  o.fontName = "Other";
  o.fontSize = 99;
  o.bold = o.italic = o.underline = o.strikeOut = o.outline = true;
  o.source = FontSource::Vector;
  o.codePage = "0";
  o.blockName = "none";
  o.subblock = 7;
  o.direction = PD::Down;
  o.corner = OC::BR;
  o.msbFirst = false;
  o.fixed = true;
  o.maxHeight = o.maxWidth = o.shiftX = o.shiftY = 77;
  o.prefix = o.suffix = o.list = "other";
  return o;
}

FontScriptFields Job(FontSource source, PD direction) {
  FontScriptFields f;
  f.fileName = "Arial_10_.FSC";
  f.fontName = "DejaVu Sans Mono";
  f.fontSize = 12;
  f.bold = true;
  f.strikeOut = true;
  f.source = source;
  f.codePage = "1250";
  f.blockName = "Latin Extended-B";
  f.subblock = 2;
  f.subblockCount = 2;
  f.direction = direction;
  f.msbFirst = false;
  f.fixed = true;
  f.maxHeight = 16;
  f.maxWidth = 9;
  f.shiftX = -2;
  f.shiftY = 3;
  f.prefix = "{ ";
  f.suffix = " },";
  f.list = source == FontSource::Unicode ? "41/42/7F/" : "ABC]xyz";
  return f;
}

// What reading `written` into Other() gives: the fields a source does not write stay.
FontScriptFields ReadBackIntoOther(const FontScriptFields& written) {
  FontScriptFields expected = written;
  if (written.source != FontSource::Unicode) expected.blockName = "none", expected.subblock = 7;
  if (written.source != FontSource::Ansi) expected.codePage = "0";
  return expected;
}

TEST(FontScript, NewScriptReadsBackAsWrittenForEverySourceAndDirectionButDownAll) {
  for (FontSource source : {FontSource::Ansi, FontSource::Unicode, FontSource::Vector})
    for (PD d : {PD::ToRightAll, PD::ToLeftAll, PD::ToRight, PD::ToLeft, PD::Up, PD::Down, PD::UpAll}) {
      const FontScriptFields written = Job(source, d);
      std::vector<std::string> lines = rm::WriteNewFontScript(written);
      ASSERT_EQ(lines.size(), 15u);
      FontScriptFields read = Other();
      rm::ReadFontScript(lines, read);
      EXPECT_EQ(Describe(read), Describe(ReadBackIntoOther(written)))
          << static_cast<int>(source) << " " << static_cast<int>(d);
      EXPECT_EQ(read.corner, OC::BR) << "a new script has no corner: the one in force stays";
    }
}

TEST(FontScript, NewScriptTextIsTheGoldenOne) {
  FontScriptFields unicode = Job(FontSource::Unicode, PD::ToRightAll);
  FontScriptFields ansi = Job(FontSource::Ansi, PD::UpAll);
  ansi.sizeListed = false;
  FontScriptFields vector = Job(FontSource::Vector, PD::DownAll);
  std::string text;
  for (const FontScriptFields* f : {&unicode, &ansi, &vector}) {
    for (const std::string& line : rm::WriteNewFontScript(*f)) text += line + "\n";
    text += "----\n";
  }
  EXPECT_EQ(rmtest::CompareGolden("fontscript/new-scripts.txt", text), "");
}

// A script created with tda has no orientation line: every line below it stands one higher and
// is read as the line before it. The session's values stay where a line does not fit them.
TEST(FontScript, DownAllScriptShiftsTheLinesBelowAndKeepsTheSessionsDirection) {
  FontScriptFields session = Job(FontSource::Ansi, PD::DownAll);
  session.prefix = "P[";
  session.suffix = "S]";
  session.list = "AB";
  std::vector<std::string> lines = rm::WriteNewFontScript(session);
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_EQ(lines[9], "Font Endian : Most Significant Bit [Last]");

  FontScriptFields read = session;
  rm::ReadFontScript(lines, read);
  EXPECT_EQ(read.direction, PD::DownAll) << "the endian line's \"Last\" is no direction";
  EXPECT_FALSE(read.msbFirst) << "\"VARIABLE\"/\"FIXED\" is neither First nor Last";
  EXPECT_FALSE(read.fixed) << "the prefix line is read as Fixed/Variable";
  EXPECT_EQ(read.maxHeight, 16);
  EXPECT_EQ(read.prefix, "S]") << "the suffix line is read as the prefix";
  EXPECT_EQ(read.suffix, "AB") << "the list line is read as the suffix";
  EXPECT_EQ(read.list, "AB") << "no line is left for the list";

  FontScriptFields fresh;
  rm::ReadFontScript(lines, fresh);
  EXPECT_EQ(fresh.direction, PD::ToRightAll) << "a reader without the session has no Down All to keep";
}

// The direction buttons write the horizontal words the other way round from creation, so a
// rewritten line reads back as the other flag of its pair; the vertical ones come back as they are.
TEST(FontScript, ButtonOrientationLineReadsBackWithTheOtherHorizontalFlag) {
  struct Case {
    PD written;
    const char* line;
    PD read;
  };
  const Case cases[] = {
      {PD::ToRightAll, "Font Orientation :[To Right All][TR]", PD::ToRight},
      {PD::ToLeftAll, "Font Orientation :[To Left All][TR]", PD::ToLeft},
      {PD::ToRight, "Font Orientation :[To Right][TR]", PD::ToRightAll},
      {PD::ToLeft, "Font Orientation :[To Left][TR]", PD::ToLeftAll},
      {PD::Up, "Font Orientation :[Up][TR]", PD::Up},
      {PD::Down, "Font Orientation :[Down][TR]", PD::Down},
      {PD::UpAll, "Font Orientation :[Up All][TR]", PD::UpAll},
      {PD::DownAll, "Font Orientation :[Down All][TR]", PD::DownAll},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(rm::OrientationButtonLine(c.written, OC::TR), c.line);
    std::vector<std::string> lines = rm::WriteNewFontScript(Job(FontSource::Ansi, PD::Up));
    lines[9] = rm::OrientationButtonLine(c.written, OC::TR);
    FontScriptFields read = Other();
    rm::ReadFontScript(lines, read);
    EXPECT_EQ(read.direction, c.read) << c.line;
    EXPECT_EQ(read.corner, OC::TR) << c.line;
  }
}

// One line of a good script changed; only the named field may differ from what was written.
TEST(FontScript, DamagedLinesLeaveTheirFieldsAsTheyWere) {
  struct Case {
    int line;
    const char* text;  // nullptr: the script ends before this line
    std::string FontScriptFields::*field;
    const char* expected;  // the field's value after reading; nullptr: as it was before
  };
  const Case text[] = {
      {1, "Font Name :[Courier", &FontScriptFields::fontName, nullptr},
      {1, "Font Name :Courier]", &FontScriptFields::fontName, nullptr},
      {1, "Font Name :[Cou]rier]", &FontScriptFields::fontName, "Cou"},
      {8, "Font Type :[ANSI] [Codepage : 1252", &FontScriptFields::codePage, nullptr},
      {8, "Font Type :[UNICODE Cyrillic{0400,04FF}][1]", &FontScriptFields::blockName, "Cyrillic"},
      {12, "Font Prefix :[a]b]", &FontScriptFields::prefix, "a]b"},
      {12, "Font Prefix :a", &FontScriptFields::prefix, nullptr},
      {13, "Font Suffix [", &FontScriptFields::suffix, nullptr},
      {14, "Selected Chars List :[]]", &FontScriptFields::list, "]"},
      {14, "Selected Chars List :[", &FontScriptFields::list, nullptr},
      {14, nullptr, &FontScriptFields::list, nullptr},
  };
  for (const Case& c : text) {
    const FontScriptFields written = Job(FontSource::Ansi, PD::Up);
    std::vector<std::string> lines = rm::WriteNewFontScript(written);
    if (c.text)
      lines[c.line] = c.text;
    else
      lines.resize(c.line);
    FontScriptFields read = Other();
    rm::ReadFontScript(lines, read);
    EXPECT_EQ(read.*c.field, c.expected ? c.expected : Other().*c.field) << c.line << ": " << (c.text ? c.text : "");
  }
}

TEST(FontScript, SizeAndNumbersThatDoNotParse) {
  struct Case {
    const char* sizeLine;
    int size;
  };
  const Case cases[] = {{"Font Size :[SIZE]", 8}, {"Font Size :[12x]", 8}, {"Font Size :[]", 8},
                        {"Font Size :[-3]", -3},  {"Font Size :[24]", 24}, {"Font Size 24", 99}};
  for (const Case& c : cases) {
    std::vector<std::string> lines = rm::WriteNewFontScript(Job(FontSource::Ansi, PD::Up));
    lines[2] = c.sizeLine;
    FontScriptFields read = Other();
    rm::ReadFontScript(lines, read);
    EXPECT_EQ(read.fontSize, c.size) << c.sizeLine;
  }
  // The limits and shifts each need both brackets and a whole number.
  std::vector<std::string> lines = rm::WriteNewFontScript(Job(FontSource::Ansi, PD::Up));
  lines[11] = "Font Size :[fixed][5][x][-1][4";
  FontScriptFields read = Other();
  read.fixed = false;
  rm::ReadFontScript(lines, read);
  EXPECT_TRUE(read.fixed);
  EXPECT_EQ(read.maxHeight, 5);
  EXPECT_EQ(read.maxWidth, 77);
  EXPECT_EQ(read.shiftX, -1);
  EXPECT_EQ(read.shiftY, 77);
}

TEST(FontScript, ScriptWithoutOutlineLineGetsOneAndReadsOn) {
  std::vector<std::string> lines = rm::WriteNewFontScript(Job(FontSource::Ansi, PD::Up));
  lines.erase(lines.begin() + 7);
  FontScriptFields read = Other();
  rm::FontScriptReadNotes notes;
  rm::ReadFontScript(lines, read, &notes);
  EXPECT_TRUE(notes.outlineLineAdded);
  ASSERT_EQ(lines.size(), 15u);
  EXPECT_EQ(lines[7], "Font style Outline :[False]");
  EXPECT_FALSE(read.outline);
  EXPECT_EQ(Describe(read), Describe(ReadBackIntoOther(Job(FontSource::Ansi, PD::Up))))
      << "the lines after it are read in their places";
}

TEST(FontScript, ExtraPrefixAndSuffixPairBeforeTheList) {
  std::vector<std::string> lines = rm::WriteNewFontScript(Job(FontSource::Ansi, PD::Up));
  lines.insert(lines.begin() + 14, {"Font Prefix :[p2]", "Font Suffix :[s2]"});
  FontScriptFields read = Other();
  rm::ReadFontScript(lines, read);
  EXPECT_EQ(read.prefix, "p2");
  EXPECT_EQ(read.suffix, "s2");
  EXPECT_EQ(read.list, "ABC]xyz");
}

TEST(FontScript, RangeListsAreRecognised) {
  struct Case {
    const char* list;
    bool address;
    const char* first;
    const char* last;
    bool star;
    int sub1, low1, sub2, low2;
  };
  const Case cases[] = {
      {"RANGE=0041 00FF", true, "0041", "00FF", false, 1, 0, 1, 0},
      {"RANGE=0041", true, "0041", "", false, 1, 0, 1, 0},
      {"*1/F0*3/0F", false, "", "", true, 1, 0xF0, 3, 0x0F},
      {"*x/F0*2/zz", false, "", "", true, 1, 0xF0, 2, 0},
      {"*1/F0", false, "", "", false, 1, 0, 1, 0},
  };
  for (const Case& c : cases) {
    std::vector<std::string> lines = rm::WriteNewFontScript(Job(FontSource::Unicode, PD::Up));
    lines[14] = rm::SelectedCharsLine(c.list);
    FontScriptFields read;
    rm::FontScriptReadNotes n;
    rm::ReadFontScript(lines, read, &n);
    EXPECT_EQ(read.list, c.list);
    EXPECT_EQ(n.addressRange, c.address) << c.list;
    EXPECT_EQ(n.rangeFirst, c.first) << c.list;
    EXPECT_EQ(n.rangeLast, c.last) << c.list;
    EXPECT_EQ(n.starRange, c.star) << c.list;
    EXPECT_EQ(std::vector<int>({n.rangeFirstSubblock, n.rangeFirstLow, n.rangeLastSubblock, n.rangeLastLow}),
              std::vector<int>({c.sub1, c.low1, c.sub2, c.low2}))
        << c.list;
  }
}

}  // namespace
