// `rastermill convert` reads every picture kind of the import, not only PNG: each small sample
// picture converts to the same bytes as a PNG holding the pixels the decoders give for it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/PlatformImageCodecs.h"
#include "support/CliRunner.h"
#include "support/TestSupport.h"

namespace {

TEST(CliPictureFormats, JpegGifTiffIcoAndSvgConvertLikeTheSamePixelsInAPng) {
  const std::string samples = std::string(RM_GOLDEN_DIR) + "/../fuzz-corpus/picture/";
  const rmtest::TempDir tmp;
  const std::string& dir = tmp.path;
  std::filesystem::create_directories(dir + "/home");
  rm::PlatformImageCodecs codecs;
  for (const std::string name : {"rgb.jpg", "cmyk.jpg", "interlaced.gif", "lzw.tif", "mixed.ico", "viewbox.svg"}) {
    SCOPED_TRACE(name);
    rm::Bitmap picture;
    std::string error;
    ASSERT_TRUE(codecs.Load(samples + name, picture, error)) << error;
    const std::string png = dir + "/same-pixels.png";
    ASSERT_TRUE(codecs.SavePng(picture, png, error)) << error;

    // Binary output: only the data bytes, so the file's name does not enter the comparison.
    const rmtest::CliResult fromFile = rmtest::RunCli({"convert", samples + name, "--set", "DHec=1"}, dir + "/home");
    const rmtest::CliResult fromPng = rmtest::RunCli({"convert", png, "--set", "DHec=1"}, dir + "/home");
    ASSERT_EQ(fromFile.status, 0) << fromFile.err;
    ASSERT_EQ(fromPng.status, 0) << fromPng.err;
    EXPECT_FALSE(fromFile.out.empty());
    EXPECT_EQ(fromFile.out, fromPng.out);
  }
  // A picture kind without a decoder on this platform is refused by name.
  const std::string emf = dir + "/chart.emf";
  std::string header(88, '\0');
  header[0] = 1;
  header.replace(40, 4, " EMF");
  std::ofstream(emf, std::ios::binary) << header;
  const rmtest::CliResult refused = rmtest::RunCli({"convert", emf}, dir + "/home");
  EXPECT_NE(refused.status, 0);
  EXPECT_NE(refused.err.find("chart.emf: this is an EMF picture"), std::string::npos) << refused.err;
}

}  // namespace
