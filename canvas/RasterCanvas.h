#pragma once
#include <vector>

#include "engine/Bitmap.h"

namespace rm {

struct Point {
  int x = 0;
  int y = 0;
  bool operator==(const Point&) const = default;
};

// The pen and brush of a drawing surface, as the desktop's device context holds them.
struct Pen {
  Colour colour = kBlack;
  int width = 1;
};
struct Brush {
  Colour colour = kWhite;
  bool clear = false;  // a clear brush leaves the inside of a shape as it was
};

// The canvas primitives with the desktop's edge rules, drawn on a Bitmap, pixel for pixel:
// - the box of Rectangle, RoundRect, Ellipse, Arc and Pie excludes its right column and bottom
//   row (x2, y2), so a 1 pixel box is one pixel and an empty box draws nothing;
// - LineTo leaves out its last pixel (the next segment starts there), so a polyline paints each
//   corner once;
// - Arc and Pie run clockwise, as the screen shows them, from the radial through the start point
//   to the radial through the end point.
// A shape's outline is the set of its pixels that touch the outside on a side; the brush fills
// the rest. A pen wider than one pixel stamps a round nib of that diameter, centred on each
// pixel of the 1-pixel path. Nothing is anti-aliased.
class RasterCanvas {
 public:
  explicit RasterCanvas(Bitmap& target) : bitmap_(target) {}

  Pen pen;
  Brush brush;

  void MoveTo(int x, int y) { position_ = {x, y}; }
  Point Position() const { return position_; }
  void LineTo(int x, int y);
  void Rectangle(int x1, int y1, int x2, int y2);
  // Corners are quarters of an ellipse `rw` wide and `rh` high.
  void RoundRect(int x1, int y1, int x2, int y2, int rw, int rh);
  void Ellipse(int x1, int y1, int x2, int y2);
  void Arc(int x1, int y1, int x2, int y2, Point start, Point end);
  // The sector of Arc, closed by the two radii and filled with the brush.
  void Pie(int x1, int y1, int x2, int y2, Point start, Point end);
  // Closed by a line from the last point to the first; filled by the even-odd rule.
  void Polygon(const std::vector<Point>& points);
  void SetPixel(int x, int y, Colour c) { bitmap_.SetPixel(x, y, c); }
  // One pixel of the path, widened by the pen's nib.
  void Plot(int x, int y);

 private:
  // A shape given as the pixels inside it, within its box: filled with the brush, outlined with
  // the pen.
  template <typename Inside>
  void Shape(int x1, int y1, int x2, int y2, Inside inside);

  Bitmap& bitmap_;
  Point position_;
};

// The pixels of a segment from `a` to `b`, both included, in drawing order (Bresenham: on a tie
// the step goes along the major axis first).
std::vector<Point> LinePixels(Point a, Point b);

}  // namespace rm
