// One glyph walked into data words: the four scans and their corners, the voids left out with
// offsets, the height limit of each horizontal direction, the filler of fixed fonts; the
// descriptor's fields by rank; a blank character's measure.
#include <gtest/gtest.h>

#include "engine/DataFormatter.h"
#include "fonts/CharDescriptor.h"
#include "fonts/FontGlyph.h"
#include "fonts/FontScan.h"
#include "platform/FreeTypeFontEngine.h"

namespace {

using namespace rm;

// An 8 by 10 glyph cell: ink in rows 2 to 5, columns 1 to 3 and a dot at (6, 5).
Bitmap Glyph() {
  Bitmap b(129, 129);
  for (int y = 2; y <= 5; ++y)
    for (int x = 1; x <= 3; ++x) b.SetPixel(x, y, kBlack);
  b.SetPixel(6, 5, kBlack);
  return b;
}

GlyphMeasure Measure(const ConversionSession& s, const Bitmap& image, bool voids) {
  GlyphMeasure m;
  m.CharWidth = 8;
  m.CharHeight = 10;
  m.CharBits = 80;
  if (voids) {
    FontJob job;
    const FreeTypeFontEngine engine;
    std::string error;
    FontRequest r;
    r.family = "DejaVu Sans";
    const auto font = engine.Open(r, error);
    GlyphRenderer(*font, job, s).MeasureVoids(image, m);
  }
  return m;
}

struct Walk {
  ConversionSession s;
  TextLines text, aux;
  HexBuffer hex;
  DataFormatter formatter{s, text, aux, hex};
  FontScan scan{s, formatter};
  std::vector<std::uint8_t> bytes;
  FontScanResult result;

  Walk(PagingDirection d, OriginCorner o) {
    s.Direction = d;
    s.Origin = o;
    s.WorkEol = EndOfLine::Comma;
    scan.SetBinarySink(&bytes);
  }
  std::vector<std::uint8_t> Run(const GlyphMeasure& m, const FontScanSettings& st) {
    bytes.clear();
    EXPECT_TRUE(scan.TranslateToDirection(Glyph(), m, st, result));
    return bytes;
  }
};

using B = std::vector<std::uint8_t>;

TEST(FontScan, EachDirectionWalksFromItsCorner) {
  struct Case {
    PagingDirection d;
    OriginCorner o;
    B expected;
  } cases[] = {
      // Row by row from the top, bits from the left.
      {PagingDirection::ToRightAll, OriginCorner::TL, {0, 0, 0x70, 0x70, 0x70, 0x72, 0, 0, 0, 0}},
      // From the bottom row up.
      {PagingDirection::ToRightAll, OriginCorner::BL, {0, 0, 0, 0, 0x72, 0x70, 0x70, 0x70, 0, 0}},
      // Right to left: the first bit is the rightmost pixel.
      {PagingDirection::ToLeftAll, OriginCorner::TR, {0, 0, 0x0E, 0x0E, 0x0E, 0x4E, 0, 0, 0, 0}},
      // Column by column, two pages of 8 rows each, from the top.
      {PagingDirection::DownAll, OriginCorner::TL, {0, 0, 0x3C, 0, 0x3C, 0, 0x3C, 0, 0, 0, 0, 0, 0x04, 0, 0, 0}},
      // From the bottom up: the first bit is the last row.
      {PagingDirection::UpAll, OriginCorner::BL, {0, 0, 0x0F, 0, 0x0F, 0, 0x0F, 0, 0, 0, 0, 0, 0x08, 0, 0, 0}},
      // The last column first.
      {PagingDirection::UpAll, OriginCorner::BR, {0, 0, 0x08, 0, 0, 0, 0, 0, 0x0F, 0, 0x0F, 0, 0x0F, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    Walk w(c.d, c.o);
    const GlyphMeasure m = Measure(w.s, Glyph(), false);
    EXPECT_EQ(w.Run(m, {}), c.expected) << static_cast<int>(c.d) << "/" << static_cast<int>(c.o);
  }
}

TEST(FontScan, OffsetsLeaveOutTheVoidsAndEachDirectionTakesItsHeightLimit) {
  Walk w(PagingDirection::ToRightAll, OriginCorner::TL);
  const GlyphMeasure m = Measure(w.s, Glyph(), true);
  EXPECT_EQ(m.LeftVoid, 1);
  EXPECT_EQ(m.RightVoid, 1);
  EXPECT_EQ(m.TopVoid, 2);
  EXPECT_EQ(m.BottomVoid, 4);
  FontScanSettings st;
  st.offsetsOn = true;
  // The ink's rows only, from its first column: 6 columns in one byte.
  EXPECT_EQ(w.Run(m, st), (B{0xE0, 0xE0, 0xE0, 0xE4}));
  // A limit equal to the ink's height: "to right" applies it below the top void...
  st.maxCharHeight = 6;
  w.Run(m, st);
  EXPECT_EQ(w.result.scanHeight, 6);
  // ...and "to left" takes only a smaller one.
  Walk left(PagingDirection::ToLeftAll, OriginCorner::TR);
  left.Run(m, st);
  EXPECT_EQ(left.result.scanHeight, 4);
}

TEST(FontScan, FixedFontsWriteTheFillerPastTheGlyph) {
  Walk w(PagingDirection::ToRightAll, OriginCorner::TL);
  const GlyphMeasure m = Measure(w.s, Glyph(), false);
  FontScanSettings st;
  st.fixed = true;
  st.maxWidthSeen = 20;  // three words a row
  st.filler = 0x5A;
  const B got = w.Run(m, st);
  ASSERT_EQ(got.size(), 30u);
  for (std::size_t row = 0; row < 10; ++row) {
    EXPECT_EQ(got[row * 3 + 1], 0x5A);
    EXPECT_EQ(got[row * 3 + 2], 0x5A);
  }
  EXPECT_EQ(got[2 * 3], 0x70);
  // To the left the filler words come first.
  Walk left(PagingDirection::ToLeftAll, OriginCorner::TR);
  const B l = left.Run(m, st);
  EXPECT_EQ(B(l.begin() + 6, l.begin() + 9), (B{0x5A, 0x5A, 0x0E}));
}

TEST(FontScan, TextLinesAreRowsOfTheGlyph) {
  Walk w(PagingDirection::ToRightAll, OriginCorner::TL);
  w.scan.SetBinarySink(nullptr);
  const GlyphMeasure m = Measure(w.s, Glyph(), false);
  FontScanSettings st;
  st.fixed = true;
  st.maxWidthSeen = 16;
  w.Run(m, st);
  ASSERT_EQ(w.text.Count(), 10u);
  EXPECT_EQ(w.text[2], " 0x70 , 0xAA,");
}

TEST(CharDescriptor, FieldsFollowTheirRanksAndOneRankShowsOneField) {
  FontJob job;
  job.CharAddressRank = "2";
  job.CharWidthRank = "1";
  job.CharHeightRank = "1";  // the same rank as the width: the width, first in field order, wins
  job.XOffset = job.YOffset = job.StartAddress = job.CharSizeBytes = job.CharSpacing = false;
  job.CharSizeBitsRank = "3";
  const CharDescriptor d(job);
  EXPECT_EQ(d.Titles(), " Width in bits  Char Adress  Size in bits ");
  DescriptorValues v;
  v.address = "0x41";
  v.width = 7;
  v.sizeBits = 300;
  EXPECT_EQ(d.Values(v, ",", false), "7,0x41,300");
  EXPECT_EQ(d.Values(v, ";", true), "7;0x41;300;");
  EXPECT_EQ(d.Bytes(v), 4) << "a size above 255 takes two bytes";
  v.sizeBits = 255;
  EXPECT_EQ(d.Bytes(v), 3);
  EXPECT_EQ(FormatCharAddress(0x41, 1, false), "$41");
  EXPECT_EQ(FormatCharAddress(0x141, 2, true), "0141H");
}

TEST(GlyphRenderer, ASpaceHasNoVoidsAndIsItsAdvancePlusOneWide) {
  const FreeTypeFontEngine engine;
  std::string error;
  FontRequest r;
  r.family = "DejaVu Sans";
  r.pointSize = 12;
  const auto font = engine.Open(r, error);
  ASSERT_TRUE(font) << error;
  ConversionSession s;
  FontJob job;
  Bitmap image;
  GlyphMeasure m;
  ASSERT_TRUE(GlyphRenderer(*font, job, s).Render(U' ', false, image, m, error));
  EXPECT_EQ(m.CharWidth, font->TextWidth(U" ") + 1);
  EXPECT_EQ(m.CharHeight, font->Metrics().height);
  EXPECT_EQ(m.LeftVoid + m.RightVoid + m.TopVoid + m.BottomVoid, 0);
  // The text extent of "&" is its own.
  ASSERT_TRUE(GlyphRenderer(*font, job, s).Render(U'&', false, image, m, error));
  EXPECT_EQ(m.CharWidth, font->TextWidth(U"&") + 1);
}

}  // namespace
