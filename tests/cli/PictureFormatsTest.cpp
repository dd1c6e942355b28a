// `rastermill convert` reads every picture kind of the import, not only PNG: each small sample
// picture converts to the same bytes as a PNG holding the pixels the decoders give for it.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/PlatformImageCodecs.h"
#include "support/CliRunner.h"

namespace {

using CliPictureFormats = rmtest::CliFixture;

TEST_F(CliPictureFormats, JpegGifTiffIcoAndSvgConvertLikeTheSamePixelsInAPng) {
  const std::string samples = std::string(RM_GOLDEN_DIR) + "/../fuzz-corpus/picture/";
  rm::PlatformImageCodecs codecs;
  for (const std::string name : {"rgb.jpg", "cmyk.jpg", "interlaced.gif", "lzw.tif", "mixed.ico", "viewbox.svg"}) {
    SCOPED_TRACE(name);
    rm::Bitmap picture;
    std::string error;
    ASSERT_TRUE(codecs.Load(samples + name, picture, error)) << error;
    const std::string png = Png("same-pixels.png", picture);

    // Binary output: only the data bytes, so the file's name does not enter the comparison.
    const rmtest::CliResult fromFile = Run({"convert", samples + name, "--set", "DHec=1"});
    const rmtest::CliResult fromPng = Run({"convert", png, "--set", "DHec=1"});
    ASSERT_EQ(fromFile.status, 0) << fromFile.err;
    ASSERT_EQ(fromPng.status, 0) << fromPng.err;
    EXPECT_FALSE(fromFile.out.empty());
    EXPECT_EQ(fromFile.out, fromPng.out);
  }
  // A picture kind without a decoder on this platform is refused by name.
  const std::string emf = in_ + "/chart.emf";
  std::string header(88, '\0');
  header[0] = 1;
  header.replace(40, 4, " EMF");
  std::ofstream(emf, std::ios::binary) << header;
  ExpectRefused({"convert", emf}, 1, "chart.emf: this is an EMF picture");
}

}  // namespace
