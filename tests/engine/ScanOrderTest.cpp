#include "engine/ScanOrder.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/ShellTestSupport.h"

// The scan order alone, without packing: the data it starts, each taking its pixels along the
// step, must cover the area once, starting at the origin corner.

namespace {

using C = rm::OriginCorner;
using D = rm::PagingDirection;

struct Pixel {
  int x, y;
};

// The pixels of every datum in the order visited, `along` pixels a datum.
std::vector<Pixel> Visit(const rm::ScanOrder& o, int along) {
  const int sx = o.step == rm::PixelStep::Right ? 1 : o.step == rm::PixelStep::Left ? -1 : 0;
  const int sy = o.step == rm::PixelStep::Down ? 1 : o.step == rm::PixelStep::Up ? -1 : 0;
  std::vector<Pixel> out;
  for (int g = 0; g < o.groups; ++g) {
    const int gx = o.x + g * o.groupDx, gy = o.y + g * o.groupDy;
    if (g > 0 && o.sliced && !o.BandTaken(gx, gy)) break;
    for (int i = 0; i < o.data; ++i) {
      // Sliced data start at their own pixel; along a whole line each starts where the last ended.
      const int x = o.sliced ? gx + i * o.datumDx : gx + i * along * sx;
      const int y = o.sliced ? gy + i * o.datumDy : gy + i * along * sy;
      if (o.sliced && !o.StartsInside(x, y)) break;
      for (int k = 0; k < along; ++k) out.push_back({x + k * sx, y + k * sy});
    }
  }
  return out;
}

TEST(ScanOrder, EveryPixelOnceFromTheOriginCorner) {
  const struct {
    D direction;
    C corners[2];
  } walks[] = {{D::Down, {C::TL, C::TR}},   {D::DownAll, {C::TL, C::TR}},  {D::Up, {C::BL, C::BR}},
               {D::UpAll, {C::BL, C::BR}},  {D::ToRight, {C::TL, C::BL}},  {D::ToRightAll, {C::TL, C::BL}},
               {D::ToLeft, {C::TR, C::BR}}, {D::ToLeftAll, {C::TR, C::BR}}};
  // Mode and the pixels of one datum: monochrome 8, gray 4 levels 4, 16 levels in pairs 2, 256 colours 1.
  const std::pair<int, int> modes[] = {{1, 8}, {24, 4}, {26, 2}, {56, 1}};
  for (auto [mode, along] : modes)
    for (const auto& walk : walks)
      for (C corner : walk.corners)
        for (bool lowerHalf : {false, true}) {
          if (lowerHalf && !rm::IsHorizontal(walk.direction)) continue;  // halves are rows
          rmtest::TestProgram p;
          p.Setup(mode, rm::Bitmap(16, 16));
          rm::ConversionSession& s = p.app.session;
          s.Direction = walk.direction;
          s.Origin = corner;
          // A half export of a 16 x 32 canvas: the walk's area is 16 rows high.
          s.CanvasWidth = s.ExportAreaX2 = 16;
          s.CanvasHeight = s.ExportAreaY2 = 16;
          s.ExportAreaX1 = s.ExportAreaY1 = 0;
          s.HalfExport = s.LowerHalf = lowerHalf;
          const int top = lowerHalf ? 16 : 0;

          const std::vector<Pixel> seen = Visit(rm::ScanOrderOf(s), along);
          const std::string what = "mode " + std::to_string(mode) + ", direction " +
                                   std::to_string(static_cast<int>(walk.direction)) + ", corner " +
                                   std::to_string(static_cast<int>(corner)) + (lowerHalf ? ", lower half" : "");
          ASSERT_EQ(seen.size(), 256u) << what;
          std::vector<int> count(256, 0);
          for (const Pixel& px : seen) {
            ASSERT_TRUE(px.x >= 0 && px.x < 16 && px.y >= top && px.y < top + 16) << what;
            ++count[(px.y - top) * 16 + px.x];
          }
          for (int c : count) ASSERT_EQ(c, 1) << what;
          const bool right = corner == C::TR || corner == C::BR, bottom = corner == C::BL || corner == C::BR;
          EXPECT_EQ(seen[0].x, right ? 15 : 0) << what;
          EXPECT_EQ(seen[0].y, top + (bottom ? 15 : 0)) << what;
        }
}

}  // namespace
