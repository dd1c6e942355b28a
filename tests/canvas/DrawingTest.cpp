// The drawing primitives and tools, pixel for pixel, against pictures worked out by hand: '#' is
// the pen, 'o' the brush, '.' the white canvas.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas/DrawingTools.h"

namespace {

using rm::Bitmap;
using rm::DrawingTool;
using rm::Point;
using Art = std::vector<std::string>;

constexpr rm::Colour kBrush = 0x0000FF;

Art ArtOf(const Bitmap& b) {
  Art out;
  for (int y = 0; y < b.Height(); ++y) {
    std::string row;
    for (int x = 0; x < b.Width(); ++x) {
      const rm::Colour c = b.GetPixel(x, y);
      row += c == rm::kBlack ? '#' : c == kBrush ? 'o' : c == rm::kWhite ? '.' : '?';
    }
    out.push_back(row);
  }
  return out;
}

Art Shape(int w, int h, DrawingTool tool, Point a, Point b, Point arcA = {}, Point arcB = {}) {
  Bitmap bitmap(w, h);
  rm::ShapeStyle style;
  style.brushColour = kBrush;
  rm::CommitShape(bitmap, tool, a, b, style, arcA, arcB);
  return ArtOf(bitmap);
}

TEST(Drawing, ShapesCoverBothDraggedCornersWhicheverWayTheDragGoes) {
  const struct {
    const char* name;
    DrawingTool tool;
    Point a, b;
    Art art;
  } cases[] = {
      {"rectangle", DrawingTool::Rectangle, {1, 1}, {4, 3}, {"......", ".####.", ".#..#.", ".####.", "......"}},
      {"filled rectangle",
       DrawingTool::FilledRectangle,
       {1, 1},
       {4, 3},
       {"......", ".####.", ".#oo#.", ".####.", "......"}},
      {"one pixel rectangle",
       DrawingTool::Rectangle,
       {2, 2},
       {2, 2},
       {"......", "......", "..#...", "......", "......"}},
      {"ellipse", DrawingTool::Ellipse, {0, 0}, {4, 4}, {".###.", "#...#", "#...#", "#...#", ".###."}},
      {"filled ellipse", DrawingTool::FilledEllipse, {0, 0}, {4, 4}, {".###.", "#ooo#", "#ooo#", "#ooo#", ".###."}},
      {"round rectangle",
       DrawingTool::RoundRectangle,
       {0, 0},
       {7, 5},
       {".######.", "#......#", "#......#", "#......#", "#......#", ".######."}},
      {"line", DrawingTool::Line, {0, 0}, {4, 2}, {"#....", ".##..", "...##"}},
      {"triangle", DrawingTool::Triangle, {0, 0}, {3, 3}, {"#...", "##..", "#.#.", "####"}},
      {"filled triangle", DrawingTool::FilledTriangle, {0, 0}, {4, 4}, {"#....", "##...", "#o#..", "#oo#.", "#####"}},
      // The first point is the centre: the box runs from 2 - 2 to 2 + 2, its right and bottom
      // excluded, so the circle sits half a pixel up and left of the clicked pixel.
      {"centred ellipse", DrawingTool::CentredEllipse, {2, 2}, {4, 4}, {".##..", "#..#.", "#..#.", ".##..", "....."}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const int w = static_cast<int>(c.art[0].size()), h = static_cast<int>(c.art.size());
    EXPECT_EQ(Shape(w, h, c.tool, c.a, c.b), c.art);
    if (c.tool != DrawingTool::Line && c.tool != DrawingTool::Triangle && c.tool != DrawingTool::FilledTriangle &&
        c.tool != DrawingTool::CentredEllipse) {
      EXPECT_EQ(Shape(w, h, c.tool, c.b, c.a), c.art) << "dragged the other way";
    }
  }
}

// Arcs and pies run clockwise on the screen, from the start radial to the end radial.
TEST(Drawing, ArcsAndPiesRunClockwise) {
  // From the left to the right over the top: the upper half of the 5 x 5 circle.
  EXPECT_EQ(Shape(5, 5, DrawingTool::Arc, {0, 0}, {4, 4}, {0, 2}, {5, 2}),
            (Art{".###.", "#...#", ".....", ".....", "....."}));
  // From the right down to the bottom: the lower right quarter of the 6 x 6 circle.
  EXPECT_EQ(Shape(6, 6, DrawingTool::Pie, {0, 0}, {5, 5}, {6, 3}, {3, 6}),
            (Art{"......", "......", "......", "...###", "...##.", "...#.."}));
  // Equal radials: the whole ellipse.
  EXPECT_EQ(Shape(5, 5, DrawingTool::Arc, {0, 0}, {4, 4}, {5, 2}, {5, 2}),
            Shape(5, 5, DrawingTool::Ellipse, {0, 0}, {4, 4}));
}

TEST(Drawing, PenStampsByWidthAndShape) {
  const struct {
    int width;
    bool round;
    Point at;
    Art art;
  } cases[] = {
      {1, false, {2, 2}, {".....", ".....", "..#..", ".....", "....."}},
      {2, false, {2, 2}, {".....", ".....", "..##.", "..##.", "....."}},
      {3, false, {2, 2}, {".....", ".###.", ".###.", ".###.", "....."}},
      {4, false, {2, 2}, {"####.", "####.", "####.", "####.", "....."}},
      // Odd widths past 3: the last column and row come one pixel at a time, the corner left out.
      {5, false, {3, 3}, {".......", ".#####.", ".#####.", ".#####.", ".#####.", ".####..", "......."}},
      // A round pen's circle lies below and right of the point.
      {4, true, {1, 1}, {"......", "..##..", ".####.", ".####.", "..##..", "......"}},
      {3, true, {1, 1}, {".....", "..#..", ".###.", "..#..", "....."}},
  };
  for (const auto& c : cases) {
    Bitmap b(static_cast<int>(c.art[0].size()), static_cast<int>(c.art.size()));
    rm::DrawPenPoint(b, c.at.x, c.at.y, rm::kBlack, c.width, c.round);
    EXPECT_EQ(ArtOf(b), c.art) << "width " << c.width << (c.round ? " round" : " square");
  }
}

TEST(Drawing, PolygonsFillInsideTheirOutline) {
  Bitmap b(6, 6);
  rm::RasterCanvas canvas(b);
  canvas.brush.colour = kBrush;
  canvas.Polygon({{1, 1}, {4, 1}, {4, 4}, {1, 4}});
  EXPECT_EQ(ArtOf(b), (Art{"......", ".####.", ".#oo#.", ".#oo#.", ".####.", "......"}));
  Bitmap one(3, 3);
  rm::RasterCanvas(one).Polygon({{1, 1}});
  EXPECT_EQ(ArtOf(one), (Art{"...", ".#.", "..."}));
}

TEST(Drawing, ShiftKeepsLinesOnAxesOrDiagonalsAndBoxesSquare) {
  const struct {
    DrawingTool tool;
    Point end, constrained;
  } cases[] = {
      {DrawingTool::Line, {10, 3}, {10, 0}},       {DrawingTool::Line, {10, 7}, {10, 10}},
      {DrawingTool::Line, {-3, -10}, {0, -10}},    {DrawingTool::Line, {-6, 8}, {-8, 8}},
      {DrawingTool::Rectangle, {10, -4}, {4, -4}}, {DrawingTool::Ellipse, {-3, 9}, {-3, 3}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(rm::ConstrainOrthogonal(c.tool, {0, 0}, c.end), c.constrained) << c.end.x << "," << c.end.y;
}

TEST(Drawing, FloodFillIsFourConnected) {
  // A diagonal of black pixels is a wall for a four-connected fill.
  Bitmap b(5, 5);
  for (int i = 0; i < 5; ++i) b.SetPixel(i, i, rm::kBlack);
  const rm::FloodArea a = rm::FloodFill(b, {4, 0}, kBrush);
  EXPECT_EQ(ArtOf(b), (Art{"#oooo", ".#ooo", "..#oo", "...#o", "....#"}));
  EXPECT_EQ(a.count, 10);
  EXPECT_EQ((std::vector<int>{a.left, a.top, a.right, a.bottom}), (std::vector<int>{1, 0, 4, 3}));
  // A one-colour canvas fills whole, and a fill with its own colour marks the area all the same.
  Bitmap big(1024, 768);
  EXPECT_EQ(rm::FloodFill(big, {500, 400}, rm::kWhite).count, 1024 * 768);
  EXPECT_EQ(rm::FloodFillArea(big, {2000, 0}, 0, 0, 1024, 768).count, 0);
}

TEST(Drawing, EveryToolHasItsOwnRow) {
  for (int t = 0; t <= static_cast<int>(DrawingTool::FloodFillWithFillColour); ++t) {
    const rm::DrawingToolInfo& info = rm::ToolInfo(static_cast<DrawingTool>(t));
    EXPECT_EQ(static_cast<int>(info.tool), t) << info.handler;
    EXPECT_FALSE(info.status.empty()) << info.handler;
  }
}

}  // namespace
