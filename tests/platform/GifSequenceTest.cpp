// The GIF sequence reader and writer on files made with giflib, and the composition of their
// partial frames into whole pictures.
#include <gtest/gtest.h>

#include <string>

#include "animation/GifSequence.h"
#include "platform/GifSequenceCodec.h"
#include "support/GifFiles.h"

namespace {

using rm::Bitmap;
using rm::Colour;
using rm::ComposedGif;
using rm::GifSequence;
using rmtest::Frame;
using rmtest::GifFrameSpec;
using rmtest::MakeAnimatedGif;

const std::vector<GifColorType> kMap = {{255, 255, 255}, {0, 0, 0}, {255, 0, 0}, {0, 255, 0}};
constexpr Colour W = rm::kWhite, B = rm::kBlack, R = rm::MakeColour(255, 0, 0), G = rm::MakeColour(0, 255, 0);

GifSequence Read(const std::vector<std::uint8_t>& bytes, std::string* error = nullptr,
                 std::int64_t maxPixels = rm::kMaxAnimationPixels) {
  GifSequence out;
  std::string e;
  const bool ok = rm::PlatformGifExchange(maxPixels).ReadFromMemory(bytes.data(), bytes.size(), "a.gif", out, e);
  if (error) *error = e;
  EXPECT_EQ(ok, e.empty()) << e;
  return out;
}

ComposedGif Compose(const GifSequence& file) {
  ComposedGif out;
  std::string error;
  EXPECT_TRUE(rm::ComposeGif(file, out, error)) << error;
  return out;
}

std::vector<Colour> Row(const Bitmap& b, int y = 0) {
  std::vector<Colour> row;
  for (int x = 0; x < b.Width(); ++x) row.push_back(b.GetPixel(x, y));
  return row;
}

TEST(GifSequenceReading, KeepsEveryFrameWithItsPlaceMapAndControlExtension) {
  const GifFrameSpec first = Frame(0, 0, 3, 2, {1, 1, 1, 1, 1, 1}, 7, NO_TRANSPARENT_COLOR, 1);
  GifFrameSpec second = Frame(2, 1, 2, 1, {0, 1}, 12, 1, 2);
  second.localMap = {{1, 2, 3}, {4, 5, 6}};
  GifFrameSpec third = Frame(1, 0, 1, 1, {3});
  third.control = false;
  const GifSequence s = Read(MakeAnimatedGif(5, 4, kMap, {first, second, third}, 2).bytes);
  EXPECT_EQ(s.screenWidth, 5);
  EXPECT_EQ(s.screenHeight, 4);
  EXPECT_EQ(s.backgroundIndex, 2);
  EXPECT_EQ(s.globalMap, (std::vector<Colour>{W, B, R, G}));
  ASSERT_EQ(s.frames.size(), 3u);
  const rm::GifFrame& a = s.frames[0];
  EXPECT_EQ((std::vector<int>{a.left, a.top, a.width, a.height, a.delayHundredths, a.disposal}),
            (std::vector<int>{0, 0, 3, 2, 7, 1}));
  EXPECT_TRUE(a.hasControl);
  EXPECT_FALSE(a.transparent);
  EXPECT_TRUE(a.colourMap.empty());
  const rm::GifFrame& b = s.frames[1];
  EXPECT_EQ((std::vector<int>{b.left, b.top, b.width, b.height, b.delayHundredths, b.disposal, b.transparentIndex}),
            (std::vector<int>{2, 1, 2, 1, 12, 2, 1}));
  EXPECT_TRUE(b.transparent);
  EXPECT_EQ(b.colourMap, (std::vector<Colour>{rm::MakeColour(1, 2, 3), rm::MakeColour(4, 5, 6)}));
  EXPECT_EQ(b.pixels, (std::vector<std::uint8_t>{0, 1}));
  EXPECT_FALSE(s.frames[2].hasControl);
  // Without an extension the delay is 0; the composed frames span the largest right and bottom.
  const ComposedGif c = Compose(s);
  EXPECT_EQ(c.delaysMs, (std::vector<int>{70, 120, 0}));
  EXPECT_EQ(c.width, 4);
  EXPECT_EQ(c.height, 2);
  EXPECT_EQ(c.background, R);
}

// Frame 1 is black over the whole row; frame 2 puts red and a transparent green on columns 1
// and 2; frame 3 puts red on column 3 and takes the disposal of frame 2.
TEST(GifComposition, DisposalDecidesTheBaseAndTransparencyLetsItShow) {
  struct Case {
    int disposal;
    std::vector<Colour> second, third;
  };
  const std::vector<Case> cases = {
      {0, {B, R, B, B}, {B, R, B, R}},
      {1, {B, R, B, B}, {B, R, B, R}},
      {2, {W, R, W, W}, {W, W, W, R}},
      {3, {W, R, W, W}, {W, W, W, R}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.disposal);
    const ComposedGif g = Compose(
        Read(MakeAnimatedGif(4, 1, kMap,
                             {Frame(0, 0, 4, 1, {1, 1, 1, 1}, 10, 3, 1), Frame(1, 0, 2, 1, {2, 3}, 10, 3, c.disposal),
                              Frame(3, 0, 1, 1, {2}, 10, NO_TRANSPARENT_COLOR, 2)})
                 .bytes));
    ASSERT_EQ(g.frames.size(), 3u);
    // The first frame is drawn plainly, its transparent index included.
    EXPECT_EQ(Row(g.frames[0]), (std::vector<Colour>{B, B, B, B}));
    EXPECT_EQ(Row(g.frames[1]), c.second);
    EXPECT_EQ(Row(g.frames[2]), c.third);
    EXPECT_EQ(g.disposals.back(), c.disposal);
  }
}

TEST(GifComposition, TransparencyGoesByColourAndAnIndexBeyondTheMapMeansBlack) {
  // Index 3 is transparent and index 2 has the same colour: both let the base show.
  const std::vector<GifColorType> twins = {{255, 255, 255}, {0, 0, 0}, {0, 255, 0}, {0, 255, 0}};
  ComposedGif g = Compose(
      Read(MakeAnimatedGif(3, 1, twins, {Frame(0, 0, 3, 1, {0, 0, 0}), Frame(0, 0, 3, 1, {2, 3, 1}, 0, 3, 1)}).bytes));
  EXPECT_EQ(Row(g.frames[1]), (std::vector<Colour>{W, W, B}));
  // Index 9 lies beyond a map of 4: black pixels are the transparent ones.
  g = Compose(
      Read(MakeAnimatedGif(3, 1, kMap, {Frame(0, 0, 3, 1, {2, 2, 2}), Frame(0, 0, 3, 1, {1, 3, 0}, 0, 9, 1)}).bytes));
  EXPECT_EQ(Row(g.frames[1]), (std::vector<Colour>{R, G, W}));
}

TEST(GifSequenceReading, DamagedAndHostileFilesGiveClearMessages) {
  const GifFrameSpec one = Frame(0, 0, 2, 2, {1, 2, 3, 0});
  const auto good = MakeAnimatedGif(2, 2, kMap, {one, one});

  std::string error;
  auto truncated = good.bytes;
  truncated.resize(good.frameAt[1] + 12);
  Read(truncated, &error);
  EXPECT_EQ(error, "a.gif: the file is truncated");
  // A file without its trailer keeps the frames that came whole.
  auto noTrailer = good.bytes;
  noTrailer.pop_back();
  EXPECT_EQ(Read(noTrailer).frames.size(), 2u);

  // No map at all: the reader keeps the frame, the composition refuses it.
  auto noMap = good.bytes;
  noMap[10] &= 0x7F;
  const std::size_t mapBytes = 3u << ((good.bytes[10] & 7) + 1);
  noMap.erase(noMap.begin() + 13, noMap.begin() + 13 + static_cast<long>(mapBytes));
  ComposedGif composed;
  EXPECT_FALSE(rm::ComposeGif(Read(noMap), composed, error));
  EXPECT_EQ(error, "frame 1 of the GIF file has no colour table");

  // A frame of no width is dropped, so the sequence has fewer frames than the file.
  auto zero = good.bytes;
  zero[good.frameAt[0] + 5] = 0;
  const GifSequence dropped = Read(zero);
  ASSERT_EQ(dropped.frames.size(), 2u);
  EXPECT_EQ(dropped.frames[0].width, 0);
  EXPECT_EQ(Compose(dropped).frames.size(), 1u);
  EXPECT_EQ(Compose(dropped).fileFrames, 2);

  // A frame beyond the declared screen widens the pictures; a declared screen of 65535 x 65535
  // costs nothing.
  ComposedGif outside =
      Compose(Read(MakeAnimatedGif(65535, 65535, kMap, {one, Frame(3, 1, 2, 2, {1, 1, 1, 1})}).bytes));
  EXPECT_EQ(outside.width, 5);
  EXPECT_EQ(outside.height, 3);
  EXPECT_EQ(outside.frames[1].GetPixel(4, 2), B);

  // Frames reaching far out, or too many pixels in all, are refused before they are made.
  EXPECT_FALSE(rm::ComposeGif(Read(MakeAnimatedGif(4, 4, kMap, {one, Frame(40000, 0, 2, 2, {1, 1, 1, 1})}).bytes),
                              composed, error));
  EXPECT_EQ(error.rfind("the animation is too large: 2 frames of 40002 x 2 pixels", 0), 0u) << error;
  Read(MakeAnimatedGif(64, 64, kMap, {Frame(0, 0, 64, 64, std::vector<std::uint8_t>(4096, 1))}).bytes, &error, 1000);
  EXPECT_EQ(error, "a.gif: frame 1: the frames hold more than 1000 pixels in all");
}

TEST(GifSequenceReading, TenThousandFramesLoad) {
  std::vector<GifFrameSpec> frames(10000, Frame(0, 0, 2, 1, {1, 2}, 1));
  frames[9999].pixels = {3, 3};
  const GifSequence s = Read(MakeAnimatedGif(2, 1, kMap, frames).bytes);
  ASSERT_EQ(s.frames.size(), 10000u);
  const ComposedGif c = Compose(s);
  EXPECT_EQ(Row(c.frames.back()), (std::vector<Colour>{G, G}));
}

TEST(GifExchange, SavedSequenceComesBackInOrderWithDelaysInTensOfMilliseconds) {
  std::vector<Bitmap> frames;
  for (int f = 0; f < 5; ++f) {
    Bitmap b(5, 3, W);
    b.SetPixel(f, f % 3, f % 2 ? R : B);
    frames.push_back(b);
  }
  GifSequence file;
  std::string error;
  ASSERT_TRUE(rm::MakeGifSequence(frames, {0, 15, 25, 100, 1234}, false, file, error)) << error;
  EXPECT_EQ(file.globalMap, (std::vector<Colour>{B, W, R}));
  std::string bytes;
  ASSERT_TRUE(rm::PlatformGifExchange::Encode(file, bytes, error)) << error;
  const GifSequence back = Read(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
  for (const rm::GifFrame& f : back.frames) {
    EXPECT_EQ(f.disposal, 2);
    EXPECT_FALSE(f.transparent);
  }
  const ComposedGif c = Compose(back);
  EXPECT_EQ(c.frames, frames);
  // Half a hundredth rounds to even; no delay at all plays as 30 ms.
  EXPECT_EQ(c.delaysMs, (std::vector<int>{30, 20, 20, 100, 1230}));
}

TEST(GifExchange, ColourMapsAndRefusalsOfTheWriter) {
  // Monochrome writes black and white by brightness.
  GifSequence file;
  std::string error;
  Bitmap grey(2, 1, rm::MakeColour(100, 100, 100));
  grey.SetPixel(1, 0, rm::MakeColour(200, 200, 200));
  ASSERT_TRUE(rm::MakeGifSequence({grey}, {}, true, file, error));
  EXPECT_EQ(file.globalMap, (std::vector<Colour>{B, W}));
  // Two frames of 200 colours each need a map per frame; one of 300 cannot be written.
  const auto spread = [](int first, int count) {
    Bitmap b(count, 1);
    for (int x = 0; x < count; ++x) b.SetPixel(x, 0, first + x);
    return b;
  };
  ASSERT_TRUE(rm::MakeGifSequence({spread(0, 200), spread(1000, 200)}, {}, false, file, error));
  EXPECT_TRUE(file.globalMap.empty());
  EXPECT_EQ(file.frames[1].colourMap.size(), 200u);
  std::string bytes;
  ASSERT_TRUE(rm::PlatformGifExchange::Encode(file, bytes, error)) << error;
  EXPECT_EQ(Compose(Read(std::vector<std::uint8_t>(bytes.begin(), bytes.end()))).frames[1], spread(1000, 200));
  EXPECT_FALSE(rm::MakeGifSequence({spread(0, 300)}, {}, false, file, error));
  EXPECT_EQ(error, "frame 1 holds more than 256 colours");
  EXPECT_FALSE(rm::MakeGifSequence({}, {}, false, file, error));
  EXPECT_EQ(error, "Cannot save empty GIF");
}

}  // namespace
