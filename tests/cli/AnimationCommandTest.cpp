// 'rastermill animation': the frames of a GIF as tables, a GIF written back, and the frame list.
#include <gtest/gtest.h>

#include <fstream>

#include "support/CliRunner.h"
#include "support/GifFiles.h"
#include "support/TestSupport.h"

namespace {

using rmtest::Frame;
using rmtest::Has;

const std::vector<GifColorType> kMap = {{255, 255, 255}, {0, 0, 0}, {255, 0, 0}, {0, 255, 0}};

class AnimationCommand : public rmtest::CliFixture {
 protected:
  // `empty` names a frame whose width is set to 0 once written (giflib writes no such frame).
  std::string Gif(const std::string& name, const std::vector<rmtest::GifFrameSpec>& frames, int w = 16, int h = 8,
                  int empty = -1) {
    const std::string path = in_ + "/" + name;
    auto gif = rmtest::MakeAnimatedGif(w, h, kMap, frames);
    if (empty >= 0) gif.bytes[gif.frameAt[static_cast<std::size_t>(empty)] + 5] = 0;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(gif.bytes.data()), static_cast<std::streamsize>(gif.bytes.size()));
    return path;
  }
  // A black bar that grows from the left, over a white 16 x 8 screen: the second and third
  // frames only hold the part that changed.
  std::string Bar() {
    std::vector<std::uint8_t> full(16 * 8, 0);
    for (int y = 2; y < 6; ++y) full[static_cast<std::size_t>(y * 16)] = 1;
    return Gif("bar.gif",
               {Frame(0, 0, 16, 8, full, 10, NO_TRANSPARENT_COLOR, 1),
                Frame(1, 2, 4, 4, std::vector<std::uint8_t>(16, 1), 25, NO_TRANSPARENT_COLOR, 1),
                Frame(9, 0, 1, 1, {1}), Frame(5, 2, 3, 4, {1, 3, 1, 1, 3, 1, 1, 3, 1, 1, 3, 1}, 0, 3, 1)},
               16, 8, 2);
  }
};

TEST_F(AnimationCommand, InfoListsEveryFrameOfTheFile) {
  const rmtest::CliResult r = Run({"animation", "info", Bar()});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(rmtest::CompareGolden("animation/bar-info.txt", r.out), "");
}

TEST_F(AnimationCommand, OneTablePerFrameAfterComposition) {
  const rmtest::CliResult r = Run({"animation", Bar(), "--mode", "mono", "--size", "16x8", "--per-line", "16"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(rmtest::CompareGolden("animation/bar-frames.h", r.out), "");
}

TEST_F(AnimationCommand, FramesGoBesideTheOutputFileWithTheirParameterFile) {
  const rmtest::CliResult r = Run({"animation", Bar(), "--mode", "mono", "-o", out_ + "/bar.h"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(rmtest::Names(out_), (rmtest::Args{"bar.rtf", "bar_1.h", "bar_2.h", "bar_3.h", "clip_bar.h"}));
  EXPECT_TRUE(Has(rmtest::ReadFile(out_ + "/bar_3.h"), "Animated Sequence Part # 3 of 3"));
}

TEST_F(AnimationCommand, SavedGifKeepsTheFramesAndRoundsTheDelays) {
  rm::Bitmap a(8, 4, rm::kWhite), b(8, 4, rm::kBlack);
  const rmtest::Args args = {"animation", "--frames", Png("a.png", a), Png("b.png", b), Png("c.png", a),  "--mode",
                             "mono",      "--delay",  "125",           "--save-gif",    out_ + "/abc.gif"};
  rmtest::CliResult r = Run(args);
  ASSERT_EQ(r.status, 0) << r.err;
  r = Run({"animation", "info", out_ + "/abc.gif"});
  ASSERT_EQ(r.status, 0) << r.err;
  // 12.5 hundredths round to the even 12; each frame is whole and restores the background.
  EXPECT_TRUE(Has(r.out, "abc.gif: logical screen 8 x 4, 3 frames in the file\n")) << r.out;
  EXPECT_TRUE(Has(r.out, "    2     0     0      8      4       120  background  no           global\n")) << r.out;
  // Saved again from the GIF, the sequence is the same file.
  r = Run({"animation", out_ + "/abc.gif", "--mode", "mono", "--save-gif", out_ + "/again.gif"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(rmtest::ReadFile(out_ + "/again.gif"), rmtest::ReadFile(out_ + "/abc.gif"));
}

TEST_F(AnimationCommand, Refusals) {
  const std::string one = Gif("one.gif", {Frame(0, 0, 2, 2, {0, 1, 1, 0})}, 2, 2);
  ExpectRefused({"animation", one}, 1, " Single layered GIF loaded, no animation ! ");
  ExpectRefused({"animation", Bar(), "--mode", "c65k"}, 1, " GIF animation limit is 256 colors ! ");
  ExpectRefused({"animation"}, 2, "give either a GIF animation or --frames");
  ExpectRefused({"animation", Bar(), "--size", "8x8"}, 1, "is larger than the display (8x8); --fit resizes it");
  ExpectRefused({"animation", Bar(), "--output", "bin"}, 2, "not available for animations");
  std::ofstream(in_ + "/cut.gif") << "GIF89a\x10\x00";
  ExpectRefused({"animation", "info", in_ + "/cut.gif"}, 1, "cut.gif: the file is truncated");
}

}  // namespace
