// Controller presets and the data bit options of `rastermill convert`: the bytes of small
// hand-made pictures against bytes worked out by hand from each controller's memory layout.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/Controllers.h"
#include "support/CliRunner.h"
#include "support/TestSupport.h"

namespace {

using rm::Bitmap;
using Bytes = std::vector<unsigned char>;

constexpr rm::Colour kRed = 0x0000FF, kGreen = 0x00FF00, kBlue = 0xFF0000;

// 8 x 16, white, black at (0,0), (1,1), (7,8) and (0,15): one pixel in each corner of a byte.
Bitmap MonoPicture() {
  Bitmap b(8, 16, rm::kWhite);
  b.SetPixel(0, 0, rm::kBlack);
  b.SetPixel(1, 1, rm::kBlack);
  b.SetPixel(7, 8, rm::kBlack);
  b.SetPixel(0, 15, rm::kBlack);
  return b;
}

// 4 x 1: red, green, blue, white.
Bitmap ColourPicture() {
  Bitmap b(4, 1, rm::kWhite);
  b.SetPixel(0, 0, kRed);
  b.SetPixel(1, 0, kGreen);
  b.SetPixel(2, 0, kBlue);
  return b;
}

// 4 x 1 on the 16 level ramp 255 - 17 i: white, black, level 1 (238), level 14 (17).
Bitmap GrayPicture() {
  Bitmap b(4, 1, rm::kWhite);
  b.SetPixel(1, 0, rm::kBlack);
  b.SetPixel(2, 0, 0xEEEEEE);
  b.SetPixel(3, 0, 0x111111);
  return b;
}

Bytes Complement(Bytes b) {
  for (auto& v : b) v = static_cast<unsigned char>(~v);
  return b;
}

// Page controllers: byte n of page p is column n, rows 8p .. 8p+7, bit k the row 8p+k.
const Bytes kPagesBlackSet = {0x01, 0x02, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0x01};
// Horizontal bytes, one per row of 8 pixels, bit 7 the left pixel.
const Bytes kRowsBlackSet = {0x80, 0x40, 0, 0, 0, 0, 0, 0, 0x01, 0, 0, 0, 0, 0, 0, 0x80};
// RGB565 high byte first: red F800, green 07E0, blue 001F, white FFFF.
const Bytes kRgb565 = {0xF8, 0x00, 0x07, 0xE0, 0x00, 0x1F, 0xFF, 0xFF};
const Bytes kBgr565 = {0x00, 0x1F, 0x07, 0xE0, 0xF8, 0x00, 0xFF, 0xFF};

class Controllers : public rmtest::CliFixture {
 protected:
  rmtest::CliResult Convert(std::vector<std::string> args) {
    args.insert(args.begin(), "convert");
    args.insert(args.end(), {"--output", "bin", "--yes"});
    return Run(args);
  }
};

Bytes Of(const std::string& s) { return Bytes(s.begin(), s.end()); }

TEST_F(Controllers, EachFamilyGivesTheBytesOfItsMemoryLayout) {
  const std::string mono = Png("mono.png", MonoPicture());
  const std::string colour = Png("colour.png", ColourPicture());
  const std::string gray = Png("gray.png", GrayPicture());
  struct Case {
    const char* controller;
    const std::string* picture;
    Bytes bytes;
  };
  const Case cases[] = {
      // OLED pages: a set bit is lit, so the white pixels set theirs.
      {"ssd1306", &mono, Complement(kPagesBlackSet)},
      {"sh1106", &mono, Complement(kPagesBlackSet)},
      {"SSD1309", &mono, Complement(kPagesBlackSet)},
      // LCD pages: a set bit is dark.
      {"st7565", &mono, kPagesBlackSet},
      {"uc1701", &mono, kPagesBlackSet},
      {"st7920", &mono, kRowsBlackSet},
      // E-paper: horizontal bytes, 1 = white.
      {"ssd1680", &mono, Complement(kRowsBlackSet)},
      {"uc8151", &mono, Complement(kRowsBlackSet)},
      {"st7735", &colour, kRgb565},
      {"st7789", &colour, kRgb565},
      {"ili9341", &colour, kRgb565},
      {"st7735-bgr", &colour, kBgr565},
      {"st7789-bgr", &colour, kBgr565},
      {"ili9341-bgr", &colour, kBgr565},
      // RGB666 in the top 6 bits of R, G, B bytes.
      {"ili9488", &colour, {0xFF, 0, 0, 0, 0xFF, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},
      // Left pixel in the high nibble, white the brightest level 15: F, 0 | 14, 1.
      {"ssd1322", &gray, {0xF0, 0xE1}},
      {"ssd1327", &gray, {0xF0, 0xE1}},
  };
  for (const Case& c : cases) {
    const auto r = Convert({*c.picture, "--controller", c.controller});
    ASSERT_EQ(r.status, 0) << c.controller << ": " << r.err;
    EXPECT_EQ(Of(r.out), c.bytes) << c.controller;
  }
  // Every controller of the table is covered above.
  EXPECT_EQ(std::size(cases), rm::kControllers.size());
}

TEST_F(Controllers, OptionsGivenOverrideThePresetAndSaySo) {
  const std::string mono = Png("mono.png", MonoPicture());
  // The page controller's ink stays, the direction and bit order are the user's.
  auto r = Convert({mono, "--controller", "ssd1306", "--direction", "tr", "--msb-first"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Of(r.out), Complement(kRowsBlackSet));
  EXPECT_NE(r.err.find("note: --direction tr overrides the ssd1306 setting td"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("note: --msb-first overrides the ssd1306 setting --msb-last"), std::string::npos) << r.err;
  // A direction of another corner takes its own origin, not the preset's.
  r = Convert({mono, "--controller", "st7565", "--direction", "tu"});
  ASSERT_EQ(r.status, 0) << r.err;
  // Bands from the bottom, columns from the left, the first pixel read (the lowest row) in bit 0.
  const Bytes up = {0x01, 0, 0, 0, 0, 0, 0, 0x80, 0x80, 0x40, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(Of(r.out), up);
  // Naming the preset's own mode changes nothing; another mode is the user's with its own ink.
  r = Convert({mono, "--controller", "ssd1306", "--mode", "mono"});
  EXPECT_EQ(Of(r.out), Complement(kPagesBlackSet));
  r = Convert({mono, "--controller", "ssd1306", "--mode", "mono-inv"});
  EXPECT_EQ(Of(r.out), Complement(kPagesBlackSet)) << "the inverted mode inverts binary output as it does text";
  EXPECT_NE(r.err.find("note: --mode mono-inv overrides the ssd1306 setting mono"), std::string::npos) << r.err;
  // Options that agree with the preset are not noted.
  r = Convert({mono, "--controller", "st7920", "--direction", "tr", "--msb-first"});
  EXPECT_EQ(r.err.find("overrides"), std::string::npos) << r.err;
}

TEST_F(Controllers, ListingNamesEveryControllerWithItsOptions) {
  const auto r = Run({"controllers"});
  ASSERT_EQ(r.status, 0) << r.err;
  for (const auto& c : rm::kControllers) {
    EXPECT_NE(r.out.find(std::string(c.name) + " "), std::string::npos) << c.name;
    EXPECT_NE(r.out.find(rm::ControllerOptionsText(c)), std::string::npos) << c.name;
  }
  EXPECT_NE(r.out.find("--mode c65k --direction tr --origin TL --msb-first --swap-rb"), std::string::npos);
}

TEST_F(Controllers, SwapRedBlueAndRearrangeGiveHandWorkedBytes) {
  const std::string mono = Png("mono.png", MonoPicture());
  const std::string colour = Png("colour.png", ColourPicture());
  struct Case {
    std::vector<std::string> args;
    Bytes bytes;
  };
  const Case cases[] = {
      {{mono, "--mode", "mono", "--direction", "tr", "--msb-first", "--rearrange", "7,6,5,4,3,2,1,0"}, kRowsBlackSet},
      // Each byte reversed: 80 -> 01, 40 -> 02, 01 -> 80.
      {{mono, "--mode", "mono", "--direction", "tr", "--msb-first", "--rearrange", "0,1,2,3,4,5,6,7"},
       {0x01, 0x02, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0x01}},
      {{colour, "--mode", "c65k", "--msb-first", "--swap-rb"}, kBgr565},
      // The two bytes of a pixel traded: F800 -> 00F8, 07E0 -> E007, 001F -> 1F00.
      {{colour, "--mode", "c65k", "--msb-first", "--rearrange", "7,6,5,4,3,2,1,0,15,14,13,12,11,10,9,8"},
       {0x00, 0xF8, 0xE0, 0x07, 0x1F, 0x00, 0xFF, 0xFF}},
      // BGR565 low byte first: the swap of the pixel's bytes is an option of its own.
      {{colour, "--mode", "c65k", "--msb-first", "--swap-rb", "--set", "rgb2=1"},
       {0x1F, 0x00, 0xE0, 0x07, 0x00, 0xF8, 0xFF, 0xFF}},
      // 4096 unpacked, 12 bits: red F00 -> 00F, blue 00F -> F00.
      {{colour, "--mode", "c4096u", "--msb-first", "--swap-rb"}, {0x00, 0x0F, 0x00, 0xF0, 0x0F, 0x00, 0x0F, 0xFF}},
      // 24 bits: the outer bytes traded.
      {{colour, "--mode", "c16m", "--msb-first", "--swap-rb"}, {0, 0, 0xFF, 0, 0xFF, 0, 0xFF, 0, 0, 0xFF, 0xFF, 0xFF}},
  };
  for (const Case& c : cases) {
    const auto r = Convert(c.args);
    ASSERT_EQ(r.status, 0) << c.args.back() << ": " << r.err;
    EXPECT_EQ(Of(r.out), c.bytes) << c.args[2] << " " << c.args.back();
  }
}

}  // namespace
