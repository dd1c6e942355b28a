#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/FreeTypeFontEngine.h"
#include "support/TestSupport.h"

namespace {

using rm::FontRequest;

const std::string kDejaVuSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
const std::string kTinyBdf = std::string(RM_TEST_DATA_DIR) + "/fonts/Tiny8.bdf";

std::unique_ptr<rm::Font> OpenOrFail(const rm::FontEngine& engine, const FontRequest& request) {
  std::string error;
  auto font = engine.Open(request, error);
  EXPECT_NE(font, nullptr) << error;
  EXPECT_EQ(error, "");
  return font;
}

FontRequest DejaVu(int points) {
  FontRequest r;
  r.file = kDejaVuSans;
  r.pointSize = points;
  return r;
}

// The cell of a drawn text as rows of '#' (any ink) and '.'.
std::vector<std::string> CellRows(const rm::GlyphImage& image) {
  std::vector<std::string> rows;
  for (int y = 0; y < image.cellHeight; ++y) {
    std::string row;
    for (int x = 0; x < image.advance; ++x) row += image.At(x, y) != 0 ? '#' : '.';
    rows.push_back(row);
  }
  return rows;
}

int InkCount(const rm::GlyphImage& image) {
  int n = 0;
  for (std::uint8_t v : image.coverage) n += v != 0;
  return n;
}

TEST(FreeTypeFontEngine, MetricsFollowThePointSizeAtNinetySixDpi) {
  rm::FreeTypeFontEngine engine;
  // DejaVu Sans has win ascent 1901 and win descent 483 in 2048 units per em.
  struct Case {
    int points, pixels, ascent, descent;
  } cases[] = {{12, 16, 15, 4}, {9, 12, 11, 3}, {24, 32, 30, 8}, {72, 96, 89, 23}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.points);
    auto font = OpenOrFail(engine, DejaVu(c.points));
    if (!font) continue;
    const rm::FontMetrics& m = font->Metrics();
    EXPECT_EQ(m.pixelSize, c.pixels);
    EXPECT_EQ(m.ascent, c.ascent);
    EXPECT_EQ(m.descent, c.descent);
    EXPECT_EQ(m.height, m.ascent + m.descent);
    EXPECT_EQ(m.internalLeading, m.height - c.pixels);
    EXPECT_TRUE(m.trueType);
    EXPECT_FALSE(m.raster);
    EXPECT_FALSE(m.fixedPitch);
    EXPECT_LT(m.averageCharWidth, m.maxCharWidth);
    EXPECT_GT(m.underlineTop, m.ascent - 1) << "the underline hangs below the baseline";
    EXPECT_LT(m.strikeOutTop, m.ascent) << "the strike-out line stands above it";
    // Every character has the one text height, whatever its ink.
    EXPECT_EQ(font->Render(U"g").cellHeight, m.height);
  }
}

TEST(FreeTypeFontEngine, OneBitCapitalIIsASolidBarOnTheBaseline) {
  rm::FreeTypeFontEngine engine;
  auto font = OpenOrFail(engine, DejaVu(12));
  ASSERT_NE(font, nullptr);
  const rm::GlyphMetrics g = font->Measure(U'I');
  const rm::GlyphImage image = font->Render(U"I");
  ASSERT_FALSE(g.InkEmpty());
  EXPECT_TRUE(g.hasGlyph);
  EXPECT_EQ(g.inkBottom, font->Metrics().ascent);
  EXPECT_GE(g.inkBottom - g.inkTop, 10);
  EXPECT_LE(g.inkRight - g.inkLeft, 3);
  for (int y = g.inkTop; y < g.inkBottom; ++y)
    for (int x = g.inkLeft; x < g.inkRight; ++x) EXPECT_EQ(image.At(x, y), 255) << x << "," << y;
  for (std::uint8_t v : image.coverage) EXPECT_TRUE(v == 0 || v == 255);
  EXPECT_EQ(InkCount(image), (g.inkRight - g.inkLeft) * (g.inkBottom - g.inkTop));
}

TEST(FreeTypeFontEngine, SmoothingGivesGreyLevelsAndOutlineGrowsTheFill) {
  rm::FreeTypeFontEngine engine;
  FontRequest plain = DejaVu(12);
  FontRequest grey = plain;
  grey.antialiased = true;
  FontRequest outline = plain;
  outline.outline = true;
  auto plainFont = OpenOrFail(engine, plain);
  auto greyFont = OpenOrFail(engine, grey);
  auto outlineFont = OpenOrFail(engine, outline);
  ASSERT_TRUE(plainFont && greyFont && outlineFont);
  const rm::GlyphImage greyO = greyFont->Render(U"O");
  int between = 0;
  for (std::uint8_t v : greyO.coverage) between += v > 0 && v < 255;
  EXPECT_GT(between, 8);

  const rm::GlyphImage filled = plainFont->Render(U"O");
  const rm::GlyphImage outlined = outlineFont->Render(U"O");
  EXPECT_GT(InkCount(outlined), InkCount(filled));
  for (int y = 0; y < filled.cellHeight; ++y)
    for (int x = 0; x < filled.advance; ++x)
      if (filled.At(x, y) != 0) {
        EXPECT_NE(outlined.At(x, y), 0) << x << "," << y;
      }
  // The counter of the O stays open: the pen is one pixel wide, not a fill of the whole letter.
  const rm::GlyphMetrics o = outlineFont->Measure(U'O');
  EXPECT_EQ(outlined.At((o.inkLeft + o.inkRight) / 2, (o.inkTop + o.inkBottom) / 2), 0);
}

TEST(FreeTypeFontEngine, UnderlineAndStrikeOutSpanTheAdvance) {
  rm::FreeTypeFontEngine engine;
  struct Case {
    bool underline, strikeOut;
  } cases[] = {{false, false}, {true, false}, {false, true}, {true, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.underline << c.strikeOut);
    FontRequest r = DejaVu(12);
    r.underline = c.underline;
    r.strikeOut = c.strikeOut;
    auto font = OpenOrFail(engine, r);
    ASSERT_NE(font, nullptr);
    const rm::FontMetrics& m = font->Metrics();
    const rm::GlyphImage space = font->Render(U" ");
    const std::vector<std::string> rows = CellRows(space);
    const std::string full(static_cast<std::size_t>(space.advance), '#');
    const std::string none(static_cast<std::size_t>(space.advance), '.');
    ASSERT_GT(space.advance, 0);
    for (int y = 0; y < m.height; ++y) {
      const bool under = c.underline && y >= m.underlineTop && y < m.underlineTop + m.underlineThickness;
      const bool strike = c.strikeOut && y >= m.strikeOutTop && y < m.strikeOutTop + m.strikeOutThickness;
      EXPECT_EQ(rows[y], under || strike ? full : none) << "row " << y;
    }
    EXPECT_EQ(font->Measure(U' ').InkEmpty(), !c.underline && !c.strikeOut);
  }
}

TEST(FreeTypeFontEngine, BitmapFontGivesItsOwnPixels) {
  rm::FreeTypeFontEngine engine;
  FontRequest r;
  r.file = kTinyBdf;
  r.pointSize = 6;  // 8 pixels, the font's one size
  auto font = OpenOrFail(engine, r);
  ASSERT_NE(font, nullptr);
  const rm::FontMetrics& m = font->Metrics();
  EXPECT_EQ(font->Identity().family, "Tiny Test");
  EXPECT_EQ(m.height, 8);
  EXPECT_EQ(m.ascent, 6);
  EXPECT_EQ(m.descent, 2);
  EXPECT_TRUE(m.raster);
  EXPECT_FALSE(m.trueType);
  EXPECT_TRUE(m.fixedPitch);
  struct Case {
    char32_t c;
    std::vector<std::string> rows;
  } cases[] = {
      {U'A', {"..#..", ".#.#.", "#...#", "#####", "#...#", "#...#", ".....", "....."}},
      {U'g', {".....", ".....", ".###.", "#..#.", "#..#.", ".###.", "...#.", "###.."}},
      {U'x', {".....", ".....", ".#.#.", "..#..", ".#.#.", ".....", ".....", "....."}},
      {U' ', {".....", ".....", ".....", ".....", ".....", ".....", ".....", "....."}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.c));
    EXPECT_EQ(CellRows(font->Render(std::u32string(1, c.c))), c.rows);
    EXPECT_TRUE(font->HasGlyph(c.c));
  }
  EXPECT_FALSE(font->HasGlyph(U'B'));
  const rm::GlyphMetrics x = font->Measure(U'x');
  EXPECT_EQ((std::vector<int>{x.advance, x.inkLeft, x.inkTop, x.inkRight, x.inkBottom}),
            (std::vector<int>{5, 1, 2, 4, 5}));
  EXPECT_EQ(font->TextWidth(U"Ax g"), 20);
}

TEST(FreeTypeFontEngine, SaysWhichFamilyStandsInForAMissingOne) {
  rm::FreeTypeFontEngine engine;
  struct Case {
    std::string asked;
    bool substituted;
    std::string family;  // empty: any installed family
  } cases[] = {
      {"DejaVu Sans", false, "DejaVu Sans"},
      {"dejavu sans mono", false, "DejaVu Sans Mono"},
      {"No Such Family Anywhere", true, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.asked);
    FontRequest r;
    r.family = c.asked;
    r.pointSize = 10;
    auto font = OpenOrFail(engine, r);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->Identity().requestedFamily, c.asked);
    EXPECT_EQ(font->Identity().substituted, c.substituted);
    EXPECT_FALSE(font->Identity().family.empty());
    if (!c.family.empty()) {
      EXPECT_EQ(font->Identity().family, c.family);
    }
    EXPECT_TRUE(std::filesystem::exists(font->Identity().file));
  }
  // A bold face that is installed is used as it is; a style no face has is made up.
  FontRequest bold;
  bold.family = "DejaVu Sans";
  bold.bold = true;
  auto font = OpenOrFail(engine, bold);
  ASSERT_NE(font, nullptr);
  EXPECT_NE(font->Identity().style.find("Bold"), std::string::npos);
  EXPECT_FALSE(font->Identity().syntheticBold);
  FontRequest boldFile = DejaVu(12);
  boldFile.bold = true;
  auto made = OpenOrFail(engine, boldFile);
  auto regular = OpenOrFail(engine, DejaVu(12));
  ASSERT_TRUE(made && regular);
  EXPECT_TRUE(made->Identity().syntheticBold);
  EXPECT_GT(InkCount(made->Render(U"I")), InkCount(regular->Render(U"I")));
}

TEST(FreeTypeFontEngine, RefusesWhatIsNotAFont) {
  rmtest::TempDir dir;
  const std::string text = dir.path + "/notes.ttf";
  rmtest::WriteText(text, "These are notes, not glyphs.\n");
  const std::string cut = dir.path + "/cut.ttf";
  {
    const std::string whole = rmtest::ReadFile(kDejaVuSans);
    rmtest::WriteText(cut, whole.substr(0, whole.size() / 2));
  }
  // Whole tables, but the glyph outlines overwritten with noise.
  const std::string garbled = dir.path + "/garbled.ttf";
  {
    std::string bytes = rmtest::ReadFile(kDejaVuSans);
    const int tables = (static_cast<unsigned char>(bytes[4]) << 8) | static_cast<unsigned char>(bytes[5]);
    for (int i = 0; i < tables; ++i)
      if (bytes.compare(12 + 16 * i, 4, "glyf") == 0) {
        std::size_t offset = 0;
        for (int k = 0; k < 4; ++k) offset = offset << 8 | static_cast<unsigned char>(bytes[12 + 16 * i + 8 + k]);
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), 200000, '\x7f');
      }
    rmtest::WriteText(garbled, bytes);
  }
  const std::string cutBdf = dir.path + "/cut.bdf";
  {
    const std::string whole = rmtest::ReadFile(kTinyBdf);
    rmtest::WriteText(cutBdf, whole.substr(0, whole.find("STARTCHAR g")));
  }
  struct Case {
    std::string file, message;
  } cases[] = {
      {text, text + ": not a font file (TTF, OTF, TTC, BDF or PCF)"},
      {cut, cut + ": the font file is damaged or incomplete"},
      {cutBdf, cutBdf + ": the font file is damaged or incomplete"},
      {garbled, garbled + ": the font file is damaged or incomplete"},
      {dir.path + "/missing.ttf", dir.path + "/missing.ttf: no such font file"},
      {dir.path, dir.path + ": no such font file"},
  };
  rm::FreeTypeFontEngine engine;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    FontRequest r;
    r.file = c.file;
    std::string error;
    EXPECT_EQ(engine.Open(r, error), nullptr);
    EXPECT_EQ(error, c.message);
  }
}

// DejaVu Sans with its kern table's tag renamed, so that only its OpenType positioning is left.
std::string WithoutKernTable(const std::string& folder) {
  std::string bytes = rmtest::ReadFile(kDejaVuSans);
  const int tables = (static_cast<unsigned char>(bytes[4]) << 8) | static_cast<unsigned char>(bytes[5]);
  for (int i = 0; i < tables; ++i)
    if (bytes.compare(12 + 16 * i, 4, "kern") == 0) bytes.replace(12 + 16 * i, 4, "xern");
  const std::string path = folder + "/NoKern.ttf";
  rmtest::WriteText(path, bytes);
  return path;
}

TEST(FreeTypeFontEngine, KerningPairsFromTheKernTableOrFromPositioning) {
  rmtest::TempDir dir;
  rm::FreeTypeFontEngine engine;
  for (const std::string& file : {kDejaVuSans, WithoutKernTable(dir.path)}) {
    SCOPED_TRACE(file);
    FontRequest r = DejaVu(12);
    r.file = file;
    auto font = OpenOrFail(engine, r);
    ASSERT_NE(font, nullptr);
    const std::vector<rm::KerningPair> pairs = font->KerningPairs(600);
    EXPECT_GT(pairs.size(), 20u);
    EXPECT_LE(pairs.size(), 600u);
    int av = 0, ao = 0;
    for (const rm::KerningPair& p : pairs) {
      if (p.first == U'A' && p.second == U'V') av = p.amount;
      if (p.first == U'A' && p.second == U'o') ao = p.amount;
    }
    EXPECT_LT(av, 0);
    EXPECT_EQ(ao, 0) << "A and o do not kern";
    EXPECT_EQ(font->KerningPairs(5).size(), 5u);
    EXPECT_TRUE(font->KerningPairs(0).empty());
  }
  // Without a kern table only the characters asked about are tried, first character outer.
  FontRequest r = DejaVu(12);
  r.file = WithoutKernTable(dir.path);
  auto font = OpenOrFail(engine, r);
  ASSERT_NE(font, nullptr);
  const std::u32string asked = U"oVTA";
  const std::vector<rm::KerningPair> few = font->KerningPairs(600, asked);
  ASSERT_GE(few.size(), 3u);
  for (std::size_t i = 0; i < few.size(); ++i) {
    EXPECT_NE(asked.find(few[i].second), std::u32string::npos);
    if (i > 0) {
      EXPECT_LE(asked.find(few[i - 1].first), asked.find(few[i].first));
    }
  }
}

TEST(FreeTypeFontEngine, CodePagesMapBytesToUnicode) {
  rm::FreeTypeFontEngine engine;
  struct Case {
    int page;
    std::uint8_t byte;
    std::optional<char32_t> expected;
  } cases[] = {
      {1252, 0x80, U'\u20AC'}, {1252, 0x41, U'A'},      {1252, 0x81, std::nullopt}, {1252, 0xE9, U'\u00E9'},
      {437, 0xB0, U'\u2591'},  {850, 0x9B, U'\u00F8'},  {852, 0xA5, U'\u0105'},     {866, 0x80, U'\u0410'},
      {874, 0xA1, U'\u0E01'},  {1250, 0x8A, U'\u0160'}, {1251, 0xC0, U'\u0410'},    {1253, 0xC1, U'\u0391'},
      {1254, 0xD0, U'\u011E'}, {1255, 0xE0, U'\u05D0'}, {1256, 0xC7, U'\u0627'},    {1257, 0xC0, U'\u0104'},
      {1258, 0x41, U'A'},      {1258, 0xC3, U'\u0102'}, {9999, 0x41, std::nullopt},
  };
  for (const Case& c : cases)
    EXPECT_EQ(engine.ToUnicode(c.page, c.byte), c.expected) << c.page << " " << static_cast<int>(c.byte);
  std::vector<int> numbers;
  for (const rm::CodePageInfo& page : engine.CodePages()) numbers.push_back(page.number);
  for (int page : {437, 850, 852, 866, 874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258})
    EXPECT_NE(std::find(numbers.begin(), numbers.end(), page), numbers.end()) << page;
  EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
}

TEST(FreeTypeFontEngine, InstalledFamiliesWithTheirKind) {
  rm::FreeTypeFontEngine engine;
  const std::vector<rm::FontFamilyInfo> families = engine.Families();
  const auto find = [&](const std::string& name) -> const rm::FontFamilyInfo* {
    for (const rm::FontFamilyInfo& f : families)
      if (f.family == name) return &f;
    return nullptr;
  };
  const rm::FontFamilyInfo* sans = find("DejaVu Sans");
  const rm::FontFamilyInfo* mono = find("DejaVu Sans Mono");
  ASSERT_TRUE(sans && mono);
  EXPECT_EQ(rm::FontKindLabel(*sans), "TrueType Font");
  EXPECT_EQ(rm::FontKindLabel(*mono), "Fixed TrueType");
  EXPECT_TRUE(rm::PassesFontFilter(*mono, rm::FontFilter::FixedPitch));
  EXPECT_FALSE(rm::PassesFontFilter(*sans, rm::FontFilter::FixedPitch));
  EXPECT_FALSE(rm::PassesFontFilter(*sans, rm::FontFilter::Raster));
  EXPECT_EQ(find("DejaVu Sans Condensed"), nullptr) << "a face's second family name is not a family of its own";
}

}  // namespace
