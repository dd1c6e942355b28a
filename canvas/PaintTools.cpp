#include "canvas/PaintTools.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "canvas/TPixelForm.h"

namespace rm {

void PaintTools::SelectTool(DrawingTool tool) {
  Escape();
  Tool = tool;
  Armed = true;
  ui_.Status(std::string(ToolInfo(tool).status));
}

void PaintTools::SetPenWidth(int width) {
  PenWidth = std::clamp(width, 1, 10);
  ui_.Status("Pen width = " + std::to_string(PenWidth));
}

void PaintTools::SetCornerRadius(int radius) { CornerRadius = std::clamp(radius, 1, 10); }

ShapeStyle PaintTools::Style() const {
  ShapeStyle s;
  s.penColour = PenColor;
  s.brushColour = BrushColor;
  s.penWidth = PenWidth;
  s.cornerRadius = CornerRadius;
  s.filled = Filled;
  return s;
}

void PaintTools::Commit(const char* status) {
  form_.CopyCanvasToSaveTable();
  form_.CopyBitmapToCanvas();
  if (status) ui_.Status(status);
}

void PaintTools::MouseDown(bool left, bool shift, int x, int y) {
  (void)shift;
  if (!Armed) return;
  Bitmap& canvas = form_.WorkBitmap;
  leftButton_ = left;
  if (AutoSwapPaintingColor) {
    // Clicking a pixel of the button's own colour paints the other one: a click toggles it.
    const Colour under = canvas.GetPixel(x, y);
    const bool swap = (left && under == LeftButtonColor) || (!left && under == RightButtonColor);
    BrushColor = swap ? LeftButtonColor : RightButtonColor;
    PenColor = swap ? RightButtonColor : LeftButtonColor;
  }
  switch (Tool) {
    case DrawingTool::Pen:
      dragging_ = true;
      last_ = start_ = {x, y};
      DrawPenPoint(canvas, x, y, left ? PenColor : RightButtonColor, PenWidth, RoundPen);
      return;
    case DrawingTool::FloodFill:
    case DrawingTool::FloodFillWithFillColour:
      if (x < 0 || y < 0 || x >= canvas.Width() || y >= canvas.Height()) return;
      FloodFill(canvas, {x, y}, Tool == DrawingTool::FloodFill ? PenColor : BrushColor);
      return Commit("Area filled");
    case DrawingTool::Polyline:
    case DrawingTool::Polygon:
      if (!left) {
        // The right button ends the figure: a polygon is closed and filled.
        if (Tool == DrawingTool::Polygon && points_.size() >= 2) {
          RasterCanvas painter(canvas);
          painter.pen = {PenColor, PenWidth};
          painter.brush = {BrushColor, false};
          painter.Polygon(points_);
          Commit();
        }
        points_.clear();
        return;
      }
      if (!points_.empty()) {
        CommitShape(canvas, DrawingTool::Line, points_.back(), {x, y}, Style());
        Commit();
      }
      points_.push_back({x, y});
      ui_.Status("Draw a polyline or a polygon");
      return;
    case DrawingTool::Arc:
    case DrawingTool::Pie:
      if (arcStep_ == 1) {
        arcStart_ = {x, y};
        arcStep_ = 2;
        ui_.Status("Click end point on ellipse or circle (arc/pie traced clock wise)");
        return;
      }
      if (arcStep_ == 2) {
        CommitShape(canvas, Tool, arcBoxStart_, arcBoxEnd_, Style(), arcStart_, {x, y});
        arcStep_ = 0;
        return Commit("Arc of ellipse or circle painted");
      }
      break;
    default: break;
  }
  dragging_ = true;
  start_ = end_ = {x, y};
}

void PaintTools::MouseMove(bool shift, int x, int y) {
  if (!dragging_) return;
  if (Tool == DrawingTool::Pen) {
    // A fast mouse jumps pixels between two moves: a line joins them, so a stroke has no gaps.
    const Colour colour = leftButton_ ? PenColor : RightButtonColor;
    for (const Point& p : LinePixels(last_, {x, y}))
      DrawPenPoint(form_.WorkBitmap, p.x, p.y, colour, PenWidth, RoundPen);
    last_ = {x, y};
    return;
  }
  end_ = shift ? ConstrainOrthogonal(Tool, start_, {x, y}) : Point{x, y};
}

void PaintTools::MouseUp(bool left, bool shift, int x, int y) {
  (void)left;
  if (!dragging_) return;
  dragging_ = false;
  if (Tool == DrawingTool::Pen) return Commit();
  end_ = shift ? ConstrainOrthogonal(Tool, start_, {x, y}) : Point{x, y};
  // A shape is drawn within the canvas: a point dragged beyond it is taken at the edge.
  Bitmap& canvas = form_.WorkBitmap;
  auto clamp = [&canvas](Point p) {
    return Point{std::clamp(p.x, 0, std::max(0, canvas.Width() - 1)),
                 std::clamp(p.y, 0, std::max(0, canvas.Height() - 1))};
  };
  start_ = clamp(start_), end_ = clamp(end_);
  if (Tool == DrawingTool::Arc || Tool == DrawingTool::Pie) {
    arcBoxStart_ = start_, arcBoxEnd_ = end_;
    arcStep_ = 1;
    ui_.Status("Click start and end points on ellipse or cicle (arc/pie traced clock wise)");
    return;
  }
  CommitShape(canvas, Tool, start_, end_, Style());
  Commit();
}

void PaintTools::Escape() {
  const bool busy = Dragging();
  dragging_ = false;
  points_.clear();
  arcStep_ = 0;
  if (busy) ui_.Status("Action aborted by escape");
}

}  // namespace rm
