#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/PlatformImageCodecs.h"
#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::Args;
using rmtest::Concat;
using Cli = rmtest::CliFixture;

Bitmap LoadPng(const std::string& path) {
  rm::PlatformImageCodecs codecs;
  Bitmap b;
  std::string error;
  EXPECT_TRUE(codecs.Load(path, b, error)) << error;
  return b;
}

void WriteText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// The colours of a mode's table, as the program in this process has them.
std::vector<rm::Colour> ModeColours(int mode) {
  rmtest::TestProgram p;
  p.Setup(mode, Bitmap(1, 1));
  const auto& table = p.app.session.PaletteSize > 0 ? p.app.session.PaletteTable : p.app.session.ModeColours;
  std::vector<rm::Colour> out;
  for (std::size_t i = 0; i < table.size(); i += 1 + table.size() / 40) out.push_back(table[i]);
  return out;
}

// Convert with the options, import the output with the same ones: the picture comes back.
TEST_F(Cli, ConvertThenImportGivesThePictureBack) {
  const struct {
    int mode;
    std::string ext;
    Args scheme;
  } cases[] = {
      {1, ".h", {"--mode", "mono"}},
      {2, ".h", {"--mode", "mono-inv", "--direction", "td", "--msb-last"}},
      {26, ".h", {"--mode", "gray16", "--direction", "tua", "--origin", "BR", "--width", "16"}},
      {59, ".bin", {"--mode", "c65k", "--direction", "tla", "--msb-last"}},
      {24, ".hex", {"--mode", "gray4", "--direction", "td", "--origin", "TR"}},
      {62, ".h", {"--mode", "c16m", "--direction", "tl", "--width", "32", "--msb-last"}},
      // The rearrangements trade bits in pairs: the same trade takes them back.
      {59, ".h", {"--mode", "c65k", "--swap-rb", "--width", "16"}},
      {1, ".h", {"--mode", "mono", "--rearrange", "0,1,2,3,4,5,6,7", "--direction", "tda"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(rmtest::Join(c.scheme));
    std::vector<rm::Colour> colours = c.mode <= 2    ? std::vector<rm::Colour>{rm::kBlack, rm::kWhite}
                                      : c.mode == 62 ? std::vector<rm::Colour>{0x123456, 0xABCDEF, rm::kWhite, 0x00FF00}
                                                     : ModeColours(c.mode);
    const Bitmap picture = rmtest::PatternPicture(32, 16, colours, 3);
    const std::string png = Png("picture.png", picture), table = out_ + "/table" + c.ext, back = out_ + "/back.png";
    Args convert = Concat({"convert", png, "--size", "32x16", "-o", table, "--no-info"}, c.scheme);
    if (c.ext != ".h") convert = Concat(convert, {"--output", c.ext.substr(1)});
    const auto converted = Run(convert);
    ASSERT_EQ(converted.status, 0) << converted.err;
    const auto imported = Run(Concat({"import-array", table, "--size", "32x16", "-o", back}, c.scheme));
    ASSERT_EQ(imported.status, 0) << imported.err;
    EXPECT_TRUE(LoadPng(back) == picture);
  }
}

TEST_F(Cli, ImportArrayRefusesBadDataAndWritesNothing) {
  const std::string few = in_ + "/few.h", digits = in_ + "/digits.h", odd = in_ + "/odd.bin", none = in_ + "/none.h",
                    good = in_ + "/good.h";
  WriteText(few, "{ 0x00, 0x01, 0x02 };");
  WriteText(digits, "{ 0x00, 0xZ1 };");
  WriteText(odd, std::string(3, '\0'));
  WriteText(none, "{ 1, 2, 3 };");
  WriteText(good, "{ " + std::string(15, ' ') + "0x80, 0x00, 0x00, 0x00 };");
  const std::string png = out_ + "/back.png";
  const Args size = {"--size", "16x2", "-o", png};
  ExpectRefused(Concat({"import-array", few}, size), 1, "too few data: 3 bytes found, the canvas takes 4");
  ExpectRefused(Concat({"import-array", good}, {"--size", "8x2", "-o", png}), 1,
                "too many data: 4 bytes found, the canvas takes 2");
  ExpectRefused(Concat({"import-array", digits}, size), 1, "line 1: \"0xZ1\" is not a hex datum");
  ExpectRefused(Concat({"import-array", odd, "--width", "16"}, size), 1,
                "3 bytes are not a whole number of 16 bit words");
  ExpectRefused(Concat({"import-array", none}, size), 1, "no data found");
  ExpectRefused({"import-array", good, "-o", png}, 2, "--size");
  EXPECT_FALSE(std::filesystem::exists(png));

  // The data in the right number paint their pixel.
  const auto r = Run(Concat({"import-array", good}, size));
  ASSERT_EQ(r.status, 0) << r.err;
  Bitmap expected(16, 2);
  expected.SetPixel(0, 0, rm::kBlack);
  EXPECT_TRUE(LoadPng(png) == expected);
}

}  // namespace
