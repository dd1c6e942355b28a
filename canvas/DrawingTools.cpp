#include "canvas/DrawingTools.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace rm {

namespace {

using T = DrawingTool;

constexpr std::array<DrawingToolInfo, 18> kTools{{
    {T::Pen, "PointButtonClick", "Paint pixels in canvas", false},
    {T::Line, "LineButtonClick", "Draw line in canvas", false},
    {T::Rectangle, "RectangleButtonClick", "Draw square (with shift) or rectangle in canvas", false},
    {T::FilledRectangle, "RERectangleClick", "Draw and fill a square (with shift) or rectangle in canvas", true},
    {T::RoundRectangle, "RoundRectangleButtonClick", "Draw rounded square (with shift) or rectangle in canvas", false},
    {T::FilledRoundRectangle, "FRectangleClick", "Draw and fill a rounded square (with shift) or rectangle in canvas",
     true},
    {T::Ellipse, "CircleButtonClick", "Draw circle (with shift) or ellipse in canvas", false},
    {T::FilledEllipse, "CircleFillButtonClick", "Draw and fill circle (with shift) or ellipse in canvas", true},
    {T::CentredEllipse, "CenterCircleButtonClick", "Draw a first point centered circle (with shift) or ellipse", false},
    {T::FilledCentredEllipse, "CircleFill2ButtonClick",
     "Draw and fill a first point centered circle (with shift) or ellipse", true},
    {T::Triangle, "TriangleButtonClick", "Draw triangle in canvas", false},
    {T::FilledTriangle, "FillTriangleButtonClick", "Fill triangle in canvas", true},
    {T::Arc, "ArcButtonClick", "Draw an arc of ellipse or circle or a filled pie in canvas", false},
    {T::Pie, "PieButtonClick", "Draw a filled pie in the canvas", true},
    {T::Polyline, "PolylineButtonClick", "Draw a polyline or a filled polygon in canvas -> End = right click", false},
    {T::Polygon, "PolygonButtonClick", "Draw and fill a polyline or a filled polygon in canvas -> End = right click",
     true},
    {T::FloodFill, "FillButtonClick", "Click inside the area to be filled", false},
    {T::FloodFillWithFillColour, "FillBGButtonClick", "Click inside the area to be filled", false},
}};

bool IsBoxTool(DrawingTool t) {
  return t == T::Rectangle || t == T::FilledRectangle || t == T::RoundRectangle || t == T::FilledRoundRectangle ||
         t == T::Ellipse || t == T::FilledEllipse || t == T::CentredEllipse || t == T::FilledCentredEllipse ||
         t == T::Arc || t == T::Pie;
}

}  // namespace

const DrawingToolInfo& ToolInfo(DrawingTool tool) { return kTools[static_cast<std::size_t>(tool)]; }

void DrawPenPoint(Bitmap& bitmap, int x, int y, Colour colour, int width, bool round) {
  if (width <= 1) return bitmap.SetPixel(x, y, colour);
  RasterCanvas canvas(bitmap);
  canvas.pen.colour = canvas.brush.colour = colour;
  if (round) return canvas.Ellipse(x, y, x + width, y + width);
  if (width == 2) {
    for (Point p : {Point{x, y}, Point{x + 1, y}, Point{x + 1, y + 1}, Point{x, y + 1}})
      bitmap.SetPixel(p.x, p.y, colour);
    return;
  }
  if (width == 3) return canvas.Rectangle(x - 1, y - 1, x + 2, y + 2);
  const int h = width / 2;
  canvas.Rectangle(x - h, y - h, x + h, y + h);
  if (width % 2 == 0) return;
  // An odd pen's stamp gets its last column and row one pixel at a time, w - 1 each: the
  // corner between them stays as it was, as the pen has always painted it.
  for (int i = 0; i < width - 1; ++i) {
    bitmap.SetPixel(x + h, y - h + i, colour);
    bitmap.SetPixel(x - h + i, y + h, colour);
  }
}

void CommitShape(Bitmap& bitmap, DrawingTool tool, Point start, Point end, const ShapeStyle& style, Point arcStart,
                 Point arcEnd) {
  RasterCanvas canvas(bitmap);
  canvas.pen = {style.penColour, style.penWidth};
  canvas.brush = {style.brushColour, !(style.filled || ToolInfo(tool).filled)};
  // The primitives leave out the box's right column and bottom row: the larger corner moves
  // out by one so that both dragged pixels are drawn. The arc and the pie take the box of the
  // ellipse they were clicked on, which was dragged the same way.
  const int x1 = std::min(start.x, end.x), y1 = std::min(start.y, end.y);
  const int x2 = std::max(start.x, end.x) + 1, y2 = std::max(start.y, end.y) + 1;
  switch (tool) {
    case T::Line:
    case T::Polyline:
      canvas.MoveTo(start.x, start.y);
      canvas.LineTo(end.x, end.y);
      canvas.SetPixel(end.x, end.y, style.penColour);
      break;
    case T::Rectangle:
    case T::FilledRectangle: canvas.Rectangle(x1, y1, x2, y2); break;
    case T::RoundRectangle:
    case T::FilledRoundRectangle: canvas.RoundRect(x1, y1, x2, y2, style.cornerRadius, style.cornerRadius); break;
    case T::Ellipse:
    case T::FilledEllipse: canvas.Ellipse(x1, y1, x2, y2); break;
    case T::CentredEllipse:
    case T::FilledCentredEllipse: {
      // The first point is the centre; the box runs from centre - radius to centre + radius
      // with the usual exclusive right and bottom.
      const int rx = std::abs(end.x - start.x), ry = std::abs(end.y - start.y);
      canvas.Ellipse(start.x - rx, start.y - ry, start.x + rx, start.y + ry);
      break;
    }
    case T::Triangle:
      // The right triangle over the drag: its third corner is the first point carried to the
      // end point's row.
      canvas.MoveTo(start.x, start.y);
      canvas.LineTo(end.x, end.y);
      canvas.LineTo(start.x, end.y);
      canvas.LineTo(start.x, start.y);
      break;
    case T::FilledTriangle: canvas.Polygon({start, end, {start.x, end.y}}); break;
    case T::Arc: canvas.Arc(x1, y1, x2, y2, arcStart, arcEnd); break;
    case T::Pie: canvas.Pie(x1, y1, x2, y2, arcStart, arcEnd); break;
    case T::Polygon:
    case T::Pen:
    case T::FloodFill:
    case T::FloodFillWithFillColour: break;  // not dragged shapes: their own commands draw them
  }
}

Point ConstrainOrthogonal(DrawingTool tool, Point start, Point end) {
  const int dx = end.x - start.x, dy = end.y - start.y;
  const int ax = std::abs(dx), ay = std::abs(dy);
  auto sign = [](int v) { return v < 0 ? -1 : 1; };
  if (IsBoxTool(tool)) {
    const int side = std::min(ax, ay);
    return {start.x + sign(dx) * side, start.y + sign(dy) * side};
  }
  // Within half of the larger move the other is taken as none; beyond it, the diagonal.
  const int big = std::max(ax, ay), small = std::min(ax, ay);
  if (2 * small < big) return ax >= ay ? Point{end.x, start.y} : Point{start.x, end.y};
  return {start.x + sign(dx) * big, start.y + sign(dy) * big};
}

FloodArea FloodFillArea(const Bitmap& bitmap, Point seed, int x1, int y1, int x2, int y2) {
  FloodArea a;
  a.x1 = std::max(0, x1), a.y1 = std::max(0, y1);
  a.x2 = std::min(bitmap.Width(), x2), a.y2 = std::min(bitmap.Height(), y2);
  if (a.x2 <= a.x1 || a.y2 <= a.y1) return a;
  const int w = a.x2 - a.x1;
  a.marks.assign(static_cast<std::size_t>(w) * (a.y2 - a.y1), 0);
  if (seed.x < a.x1 || seed.x >= a.x2 || seed.y < a.y1 || seed.y >= a.y2) return a;
  const Colour target = bitmap.GetPixel(seed.x, seed.y);
  a.left = a.right = seed.x, a.top = a.bottom = seed.y;
  auto open = [&](int x, int y) {
    return !a.marks[static_cast<std::size_t>(y - a.y1) * w + (x - a.x1)] && bitmap.GetPixel(x, y) == target;
  };
  // Runs of a row are filled whole; a run of the row above or below is pushed once, at its start.
  std::vector<Point> stack{seed};
  while (!stack.empty()) {
    const Point p = stack.back();
    stack.pop_back();
    if (!open(p.x, p.y)) continue;
    int lx = p.x, rx = p.x;
    while (lx > a.x1 && open(lx - 1, p.y)) --lx;
    while (rx + 1 < a.x2 && open(rx + 1, p.y)) ++rx;
    std::fill_n(a.marks.begin() + static_cast<std::ptrdiff_t>(p.y - a.y1) * w + (lx - a.x1), rx - lx + 1, 1);
    a.count += rx - lx + 1;
    a.left = std::min(a.left, lx), a.right = std::max(a.right, rx);
    a.top = std::min(a.top, p.y), a.bottom = std::max(a.bottom, p.y);
    for (int ny : {p.y - 1, p.y + 1}) {
      if (ny < a.y1 || ny >= a.y2) continue;
      for (int x = lx; x <= rx; ++x)
        if (open(x, ny) && (x == lx || !open(x - 1, ny))) stack.push_back({x, ny});
    }
  }
  return a;
}

FloodArea FloodFill(Bitmap& bitmap, Point seed, Colour colour) {
  FloodArea a = FloodFillArea(bitmap, seed, 0, 0, bitmap.Width(), bitmap.Height());
  for (int y = a.top; a.count && y <= a.bottom; ++y)
    for (int x = a.left; x <= a.right; ++x)
      if (a.Marked(x, y)) bitmap.SetPixel(x, y, colour);
  return a;
}

}  // namespace rm
