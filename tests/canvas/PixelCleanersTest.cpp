// The corrections of isolated pixels and the contour tracing, on pictures worked out by hand:
// '.' white, '#' black, 'r' red.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas/PixelCleaners.h"

namespace {

using rm::Bitmap;
using rm::PixelCleaner;
using Art = std::vector<std::string>;

constexpr rm::Colour kRed = 0x0000FF;

Bitmap FromArt(const Art& art) {
  Bitmap b(static_cast<int>(art[0].size()), static_cast<int>(art.size()));
  for (int y = 0; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x)
      b.SetPixel(x, y, art[y][x] == '#' ? rm::kBlack : art[y][x] == 'r' ? kRed : rm::kWhite);
  return b;
}

Art ArtOf(const Bitmap& b) {
  Art out(b.Height(), std::string(b.Width(), '.'));
  for (int y = 0; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x)
      if (b.GetPixel(x, y) != rm::kWhite) out[y][x] = b.GetPixel(x, y) == rm::kBlack ? '#' : 'r';
  return out;
}

TEST(PixelCleaners, CorrectIsolatedPixels) {
  const struct {
    const char* why;
    PixelCleaner cleaner;
    Art before, after;
    long long changed;
  } cases[] = {
      {"eight of one colour", PixelCleaner::Neighbours, {"###", "#r#", "###"}, {"###", "###", "###"}, 1},
      {"five are enough", PixelCleaner::Neighbours, {"##.", "#r.", "##."}, {"##.", "##.", "##."}, 1},
      {"four are not", PixelCleaner::Neighbours, {"##.", "#r.", "#..", "..."}, {"##.", "#r.", "#..", "..."}, 0},
      {"a white pixel stays", PixelCleaner::Neighbours, {"###", "#.#", "###"}, {"###", "#.#", "###"}, 0},
      {"white does not spread", PixelCleaner::Neighbours, {"...", ".r.", "..."}, {"...", ".r.", "..."}, 0},
      {"the outer ring stays", PixelCleaner::Neighbours, {"r##", "###", "###"}, {"r##", "###", "###"}, 0},
      // The pass corrects in place: the second red pixel settles before the first can.
      {"one pass", PixelCleaner::Neighbours, {".####", ".rr##", ".####"}, {".####", ".r###", ".####"}, 1},
      {"until stable",
       PixelCleaner::NeighboursUntilStable,
       {".####", ".rr##", ".####"},
       {".####", ".####", ".####"},
       2},
      {"between equal pixels on the row", PixelCleaner::Horizontal, {"#r#", "#r.", "..."}, {"###", "#r.", "..."}, 1},
      {"between equal pixels on the column", PixelCleaner::Vertical, {"#r#", ".r.", "#.."}, {"#r#", "#r.", "#.."}, 1},
      // White counts as any colour here: the red between two white pixels turns white.
      {"rows then columns", PixelCleaner::Orthogonal, {"#r#", ".r.", "#.."}, {"###", "#..", "#.."}, 3},
  };
  for (const auto& c : cases) {
    Bitmap b = FromArt(c.before);
    const rm::CleanResult r = rm::CleanPixels(b, c.cleaner);
    EXPECT_EQ(ArtOf(b), c.after) << c.why;
    EXPECT_EQ(r.changed, c.changed) << c.why;
  }
  Bitmap b = FromArt({"###", "#r#", "###"});
  const rm::CleanResult r = rm::CleanPixels(b, PixelCleaner::Neighbours);
  EXPECT_EQ(std::make_pair(r.coloursBefore, r.coloursAfter), std::make_pair(2, 1));
}

TEST(PixelCleaners, ContourKeepsTheEdgeAndFillsTheInside) {
  Bitmap b = FromArt({".......", ".#####.", ".#####.", ".#####.", ".#####.", ".#####.", "......."});
  const rm::FloodArea marks = rm::FloodFillArea(b, {3, 3}, 0, 0, b.Width(), b.Height());
  rm::TraceContour(b, marks, rm::kBlack, kRed);
  EXPECT_EQ(ArtOf(b), (Art{".......", ".#####.", ".#rrr#.", ".#rrr#.", ".#rrr#.", ".#####.", "......."}));
}

}  // namespace
