#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "engine/NearestColour.h"
#include "engine/Reduction.h"
#include "support/TestSupport.h"

namespace {

using rm::Bitmap;
using rm::Colour;
using rm::DitherMode;

// The dither goldens are small text pictures: a line "mono W H" or "gray W H", then one line per
// row, "#" black and "." white for mono, two hex digits per pixel for gray. What a golden holds is
// checked on the picture that matched it.
std::string WritePicture(const Bitmap& b, bool mono) {
  std::ostringstream out;
  out << (mono ? "mono " : "gray ") << b.Width() << " " << b.Height() << "\n";
  for (int y = 0; y < b.Height(); ++y) {
    for (int x = 0; x < b.Width(); ++x) {
      const Colour c = b.GetPixel(x, y);
      if (mono) {
        out << (c == 0 ? '#' : c == 0xFFFFFF ? '.' : '?');
      } else {
        static const char* hex = "0123456789abcdef";
        const int g = c & 0xFF;
        out << (c == rm::GrayColour(g) ? hex[g >> 4] : '?') << (c == rm::GrayColour(g) ? hex[g & 15] : '?');
      }
    }
    out << "\n";
  }
  return out.str();
}

double MeanGray(const Bitmap& b) {
  double sum = 0;
  for (int y = 0; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x) {
      const Colour c = b.GetPixel(x, y);
      sum += (rm::RedOf(c) * 77 + rm::GreenOf(c) * 150 + rm::BlueOf(c) * 29) / 256.0;
    }
  return sum / (static_cast<double>(b.Width()) * b.Height());
}

// Dark on the left to light on the right, a little lighter down the rows, so that every kernel's
// lower rows matter.
Bitmap Gradient() {
  Bitmap b(64, 16);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 64; ++x) b.SetPixel(x, y, rm::GrayColour(std::min(255, x * 4 + y)));
  return b;
}

TEST(ReductionGray, IntegerWeightsOnEveryPixelOfTheRectangle) {
  struct Case {
    Colour in;
    int gray;
  };
  const Case cases[] = {{0xFFFFFF, 255},
                        {0, 0},
                        {rm::MakeColour(255, 0, 0), 76},
                        {rm::MakeColour(0, 255, 0), 149},
                        {rm::MakeColour(0, 0, 255), 28},
                        {rm::MakeColour(10, 20, 30), 18}};
  for (const Case& c : cases) EXPECT_EQ(rm::GrayLevel(c.in), c.gray) << std::hex << c.in;

  Bitmap b(4, 3, rm::MakeColour(255, 0, 0));
  rm::MakeGray(b, 1, -5, 3, 2);  // clipped to the bitmap
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x) {
      const bool inside = x >= 1 && x < 3 && y < 2;
      EXPECT_EQ(b.GetPixel(x, y), inside ? rm::GrayColour(76) : rm::MakeColour(255, 0, 0)) << x << "," << y;
    }
}

TEST(ReductionDither, EachKernelOnAGradientMatchesItsGolden) {
  const Bitmap input = Gradient();
  const double inputMean = MeanGray(input);
  const char* names[] = {"nearest", "floyd-steinberg", "stucki", "sierra", "jajuni", "steve-arche", "burkes"};
  for (int m = 0; m < 7; ++m) {
    Bitmap out = input;
    rm::Dither(out, rm::ColorReduction::Monochrome, static_cast<DitherMode>(m));
    const std::string text = WritePicture(out, true);
    ASSERT_EQ(text.find('?'), std::string::npos) << names[m] << ": a pixel is neither black nor white";
    const std::string golden = std::string("dither/") + names[m] + ".txt";
    EXPECT_EQ(rmtest::CompareGolden(golden, text), "");
    if (m == 0) {
      // No diffusion: a plain threshold at the middle gray.
      for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 64; ++x)
          ASSERT_EQ(out.GetPixel(x, y), rm::GrayLevel(input.GetPixel(x, y)) >= 128 ? rm::kWhite : rm::kBlack);
    } else {
      // Diffusion keeps the picture's mean brightness; only error leaving the edges is lost.
      EXPECT_NEAR(MeanGray(out), inputMean, 3.0) << names[m];
    }
  }
}

TEST(ReductionDither, GrayOutputDiffusesTheFractionOfColourPixels) {
  Bitmap input(64, 16);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 64; ++x) input.SetPixel(x, y, rm::MakeColour(x * 4, y * 16, 200 - x));
  Bitmap out = input;
  rm::Dither(out, rm::ColorReduction::GrayScale, DitherMode::FloydSteinberg);
  const std::string text = WritePicture(out, false);
  ASSERT_EQ(text.find('?'), std::string::npos) << "a pixel is not a gray";
  EXPECT_NEAR(MeanGray(out), MeanGray(input), 0.05);
  EXPECT_EQ(rmtest::CompareGolden("dither/floyd-steinberg-gray.txt", text), "");
  // Without diffusion each pixel is its own rounded gray.
  Bitmap nearest = input;
  rm::Dither(nearest, rm::ColorReduction::GrayScale, DitherMode::Nearest);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 64; ++x) {
      const Colour c = input.GetPixel(x, y);
      const int exact = rm::RedOf(c) * 77 + rm::GreenOf(c) * 150 + rm::BlueOf(c) * 29;
      ASSERT_EQ(nearest.GetPixel(x, y), rm::GrayColour((exact + 128) / 256)) << x << "," << y;
    }
}

// The answer of the quarter rule, by walking the quarter of the sorted palette.
Colour WalkQuarter(const std::vector<Colour>& palette, Colour c) {
  const std::size_t n = palette.size();
  std::size_t first = 3 * n / 4, last = n - 1;
  if (c < palette[n / 4])
    first = 0, last = (n - 1) / 4;
  else if (c < palette[n / 2])
    first = n / 4, last = (n - 1) / 2;
  else if (c < palette[3 * n / 4])
    first = n / 2, last = 3 * (n - 1) / 4;
  int best = 0x1000000;
  Colour found = c;
  for (std::size_t i = first; i <= last; ++i) {
    const Colour p = palette[i];
    const int dr = rm::RedOf(c) - rm::RedOf(p), dg = rm::GreenOf(c) - rm::GreenOf(p),
              db = rm::BlueOf(c) - rm::BlueOf(p);
    const int d = dr * dr + dg * dg + db * db;
    if (d < best) best = d, found = p;
  }
  return found;
}

TEST(ReductionNearest, LargePalettesGiveTheAnswerOfTheQuarterWalk) {
  std::mt19937 rng(11);
  std::vector<Colour> lattice;  // 16 levels a component: quarters split on blue
  for (int b = 0; b < 16; ++b)
    for (int g = 0; g < 16; ++g)
      for (int r = 0; r < 16; ++r) lattice.push_back(rm::MakeColour(r * 17, g * 17, b * 17));
  std::vector<Colour> scattered;  // clustered and duplicated entries, where ties happen
  for (int i = 0; i < 3000; ++i) scattered.push_back(static_cast<Colour>(rng() & 0xF0F0F0) | 0x080808);
  std::sort(scattered.begin(), scattered.end());
  // Small palettes, where the quarters' ends round: 0x0001FE lies between entries 2 and 3 of
  // the first, so only entry 2 is looked at although 0x0000FF is far closer.
  const std::vector<Colour> four = {0x000001, 0x0000FF, 0x000100, 0x00FFFF};
  const std::vector<Colour> eight = {0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70, 0x80};
  const std::vector<Colour> five = {0x000001, 0x0000FF, 0x000100, 0x00FFFF, 0xFF0000};
  const std::vector<Colour>* palettes[] = {&lattice, &scattered, &four, &five, &eight};
  for (const auto* palette : palettes) {
    rm::NearestColour nearest;
    nearest.SetPalette(*palette);
    for (int i = 0; i < 4000; ++i) {
      const Colour c = static_cast<Colour>(rng() & (palette->size() < 10 ? 0x0101FF : 0xFFFFFF));
      ASSERT_EQ(nearest.Search(c), WalkQuarter(*palette, c)) << std::hex << c;
    }
  }
  // Just below the second quarter's first entry (blue 68): the colour with blue 68 is one step
  // away, but only the first quarter (blue up to 51) is searched.
  rm::NearestColour nearest;
  nearest.SetPalette(lattice);
  EXPECT_EQ(nearest.NearestColor(rm::MakeColour(255, 255, 67)), rm::MakeColour(255, 255, 51));
  EXPECT_EQ(nearest.NearestColor(rm::MakeColour(255, 255, 68)), rm::MakeColour(255, 255, 68));
}

TEST(ReductionMyColor, IthUsedColourGoesToTheIthPaletteStep) {
  struct Case {
    int modeColours;
    std::vector<int> expectedIndex;  // palette index of the used colours in ascending order
  };
  const Case cases[] = {{16, {0, 4, 8}}, {8, {0, 2, 4}}, {256, {0, 2, 4}}, {4096, {0, 1, 2}}, {4, {0, 1, 2}}};
  std::vector<Colour> palette;
  for (int i = 0; i < 16; ++i) palette.push_back(0x100000 * (15 - i) + 5);  // given in descending order
  std::vector<Colour> sorted = palette;
  std::sort(sorted.begin(), sorted.end());
  const Colour used[] = {0x300, 0x10, 0x2000};  // ascending: 0x10, 0x300, 0x2000
  for (const Case& c : cases) {
    Bitmap b(3, 2);
    for (int x = 0; x < 3; ++x) {
      b.SetPixel(x, 0, used[x]);
      b.SetPixel(2 - x, 1, used[x]);
    }
    rmtest::ScriptedUi ui;
    ASSERT_TRUE(rm::ConvertToMyColor(b, palette, c.modeColours, ui));
    const Colour want[] = {sorted[c.expectedIndex[1]], sorted[c.expectedIndex[0]], sorted[c.expectedIndex[2]]};
    for (int x = 0; x < 3; ++x) {
      EXPECT_EQ(b.GetPixel(x, 0), want[x]) << c.modeColours << " x=" << x;
      EXPECT_EQ(b.GetPixel(2 - x, 1), want[x]) << c.modeColours << " x=" << x;
    }
    EXPECT_EQ(ui.statuses.front(), "Processing Color Conversion to Color Palette ...");
    EXPECT_EQ(ui.statuses.back().rfind("Colors Converted to Color Palette in  ", 0), 0u);
  }
  // More used colours than steps: the rest take the last entry.
  Bitmap many(8, 1);
  for (int x = 0; x < 8; ++x) many.SetPixel(x, 0, x + 1);
  rmtest::ScriptedUi ui;
  ASSERT_TRUE(rm::ConvertToMyColor(many, palette, 16, ui));
  EXPECT_EQ(many.GetPixel(3, 0), sorted[12]);
  EXPECT_EQ(many.GetPixel(4, 0), sorted[15]);
  EXPECT_EQ(many.GetPixel(7, 0), sorted[15]);
}

TEST(ReductionMyColor, EscapeStopsBetweenRowsAndAnEmptyPaletteAtOnce) {
  Bitmap b(2, 3, 0x123456);
  const Bitmap before = b;
  rmtest::ScriptedUi ui;
  ui.escapeAfterPolls = 1;
  EXPECT_FALSE(rm::ConvertToMyColor(b, {1, 2, 3}, 256, ui));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text, " Processing interrupted by escape !");
  EXPECT_EQ(ui.messages[0].title, "Information");
  EXPECT_EQ(b.GetPixel(0, 0), 1);  // the first row was done
  EXPECT_EQ(b.GetPixel(0, 1), 0x123456);

  rmtest::ScriptedUi quiet;
  Bitmap untouched = before;
  EXPECT_FALSE(rm::ConvertToMyColor(untouched, {}, 256, quiet));
  EXPECT_EQ(untouched, before);
}

TEST(ReductionNearest, GrayFilterOnlyMakesGray) {
  rm::NearestColour nearest;
  nearest.SetPalette({0x000010, 0x100000, 0x001000, 0xFFFFFF});
  Bitmap b(2, 1, rm::MakeColour(255, 0, 0));
  rmtest::ScriptedUi ui;
  ASSERT_TRUE(rm::ConvertToNearestColor(b, nearest, ui, "", true));
  EXPECT_EQ(b.GetPixel(1, 0), rm::GrayColour(76));
}

TEST(ReductionCount, DistinctColoursIgnoringTheHighByte) {
  Bitmap b(4, 4, 0x010203);
  EXPECT_EQ(rm::CountColors(b), 1);
  b.SetPixel(0, 0, 0);
  b.SetPixel(3, 3, 0xFFFFFF);
  b.SetPixel(2, 2, 0xFFFFFF);
  EXPECT_EQ(rm::CountColors(b), 3);
  EXPECT_EQ(rm::CountColors(Bitmap()), 0);
}

}  // namespace
