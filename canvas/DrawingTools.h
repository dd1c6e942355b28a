#pragma once
#include <string_view>
#include <vector>

#include "canvas/RasterCanvas.h"
#include "engine/Bitmap.h"

namespace rm {

enum class DrawingTool {
  Pen,
  Line,
  Rectangle,
  FilledRectangle,
  RoundRectangle,
  FilledRoundRectangle,
  Ellipse,
  FilledEllipse,
  CentredEllipse,
  FilledCentredEllipse,
  Triangle,
  FilledTriangle,
  Arc,
  Pie,
  Polyline,
  Polygon,
  FloodFill,
  FloodFillWithFillColour,
};

// One row per tool: its button's handler and the status text the handler shows.
struct DrawingToolInfo {
  DrawingTool tool;
  std::string_view handler;
  std::string_view status;
  bool filled;  // the handler turns the filled switch on (else the outline switch)
};

const DrawingToolInfo& ToolInfo(DrawingTool tool);

// The pixel pen's stamp at (x, y), by the pen's width (1 to 10) and shape.
void DrawPenPoint(Bitmap& bitmap, int x, int y, Colour colour, int width, bool round);

// What a shape commit draws with.
struct ShapeStyle {
  Colour penColour = kBlack;
  Colour brushColour = kWhite;
  int penWidth = 1;
  int cornerRadius = 3;
  bool filled = false;
};

// Commits a dragged shape from `start` to `end` (both pixels included) on the bitmap. Arc and
// Pie take their bounding box from the drag and their radials from `arcStart` and `arcEnd`.
void CommitShape(Bitmap& bitmap, DrawingTool tool, Point start, Point end, const ShapeStyle& style, Point arcStart = {},
                 Point arcEnd = {});

// Shift held while dragging: line tools keep to the horizontal, the vertical or the 45 degree
// diagonal, by the larger of |dx| and |dy|; box tools make a square of the shorter side.
Point ConstrainOrthogonal(DrawingTool tool, Point start, Point end);

// The four-connected area of the clicked pixel's colour within the bounds (x1, y1 included, x2,
// y2 excluded): one flag per pixel of the bounds, row by row, and the rectangle it covers.
struct FloodArea {
  int x1 = 0, y1 = 0, x2 = 0, y2 = 0;  // the bounds the marks cover
  std::vector<unsigned char> marks;
  int left = 0, top = 0, right = 0, bottom = 0;  // the marked pixels' rectangle, all included
  long long count = 0;
  bool Marked(int x, int y) const {
    return x >= x1 && x < x2 && y >= y1 && y < y2 && marks[static_cast<std::size_t>(y - y1) * (x2 - x1) + (x - x1)];
  }
};
FloodArea FloodFillArea(const Bitmap& bitmap, Point seed, int x1, int y1, int x2, int y2);
// Paints the area of the clicked pixel's colour in `colour`, within the whole bitmap.
FloodArea FloodFill(Bitmap& bitmap, Point seed, Colour colour);

}  // namespace rm
