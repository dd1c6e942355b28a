#include "canvas/RasterCanvas.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace rm {

namespace {

// A pixel belongs to a closed shape when its centre lies inside; rectangles and polygons take
// their geometry on the pixel edges. An ellipse is taken through the centres of its box's outer
// pixels, widened by 0.4 pixel: so a 2 x 2 box gives four pixels, a 3 x 3 box a plus and not a
// square, and larger ones the round outline a pixel artist expects. A mirrored drag gives the
// mirrored pixels.
double Sq(double v) { return v * v; }

constexpr double kEllipseWidening = 0.4;

struct EllipseBox {
  double cx, cy, ra, rb;  // centre and radii, in pixel-centre coordinates
  EllipseBox(int x1, int y1, int x2, int y2)
      : cx((x1 + x2 - 1) / 2.0),
        cy((y1 + y2 - 1) / 2.0),
        ra((x2 - x1 - 1) / 2.0 + kEllipseWidening),
        rb((y2 - y1 - 1) / 2.0 + kEllipseWidening) {}
  bool Inside(int x, int y) const { return Sq((x - cx) / ra) + Sq((y - cy) / rb) <= 1.0; }
  // The angle of a point as the screen shows it: counter-clockwise from the right, y going up.
  // Points are in pixel-edge coordinates (a pixel's centre is x + 0.5).
  double Angle(double x, double y) const { return std::atan2(cy + 0.5 - y, x - cx - 0.5); }
};

// Whether angle `a` lies on the clockwise sweep from `from` to `to`; equal radials sweep the
// whole turn, as a full ellipse.
bool OnClockwiseSweep(double a, double from, double to) {
  constexpr double kTurn = 2 * std::numbers::pi;
  auto wrap = [](double v) { return std::fmod(std::fmod(v, kTurn) + kTurn, kTurn); };
  const double sweep = wrap(from - to);
  return sweep == 0 || wrap(from - a) <= sweep;
}

void Normalise(int& x1, int& y1, int& x2, int& y2) {
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
}

}  // namespace

std::vector<Point> LinePixels(Point a, Point b) {
  std::vector<Point> out;
  const int dx = std::abs(b.x - a.x), dy = -std::abs(b.y - a.y);
  const int sx = a.x < b.x ? 1 : -1, sy = a.y < b.y ? 1 : -1;
  int err = dx + dy;
  out.reserve(std::max(dx, -dy) + 1);
  for (Point p = a;;) {
    out.push_back(p);
    if (p == b) break;
    const int e2 = 2 * err;
    if (e2 >= dy) err += dy, p.x += sx;
    if (e2 <= dx) err += dx, p.y += sy;
  }
  return out;
}

void RasterCanvas::Plot(int x, int y) {
  const int w = std::max(1, pen.width);
  if (w == 1) return bitmap_.SetPixel(x, y, pen.colour);
  // A round nib of diameter w: the pixels whose centres lie within w/2 of the path pixel's
  // centre (an even nib is centred on the pixel's top left corner).
  const double r = w / 2.0, centre = (w % 2) ? 0.0 : -0.5;
  const int lo = -(w / 2), hi = (w - 1) / 2;
  for (int dy = lo; dy <= hi; ++dy)
    for (int dx = lo; dx <= hi; ++dx)
      if (Sq(dx - centre) + Sq(dy - centre) <= Sq(r)) bitmap_.SetPixel(x + dx, y + dy, pen.colour);
}

void RasterCanvas::LineTo(int x, int y) {
  std::vector<Point> pixels = LinePixels(position_, {x, y});
  pixels.pop_back();
  for (const Point& p : pixels) Plot(p.x, p.y);
  position_ = {x, y};
}

template <typename Inside>
void RasterCanvas::Shape(int x1, int y1, int x2, int y2, Inside inside) {
  Normalise(x1, y1, x2, y2);
  if (x2 <= x1 || y2 <= y1) return;
  auto in = [&](int x, int y) { return x >= x1 && x < x2 && y >= y1 && y < y2 && inside(x, y); };
  std::vector<Point> outline;
  for (int y = y1; y < y2; ++y)
    for (int x = x1; x < x2; ++x) {
      if (!in(x, y)) continue;
      if (!in(x - 1, y) || !in(x + 1, y) || !in(x, y - 1) || !in(x, y + 1))
        outline.push_back({x, y});
      else if (!brush.clear)
        bitmap_.SetPixel(x, y, brush.colour);
    }
  for (const Point& p : outline) Plot(p.x, p.y);
}

void RasterCanvas::Rectangle(int x1, int y1, int x2, int y2) {
  Shape(x1, y1, x2, y2, [](int, int) { return true; });
}

void RasterCanvas::RoundRect(int x1, int y1, int x2, int y2, int rw, int rh) {
  Normalise(x1, y1, x2, y2);
  rw = std::clamp(rw, 0, x2 - x1);
  rh = std::clamp(rh, 0, y2 - y1);
  if (rw == 0 || rh == 0) return Rectangle(x1, y1, x2, y2);
  // Each corner is the matching quarter of an ellipse rw x rh put in that corner of the box.
  const EllipseBox corner(0, 0, rw, rh);
  Shape(x1, y1, x2, y2, [&](int x, int y) {
    const int cxo = x - x1 < rw / 2 ? x - x1 : (x2 - 1 - x < rw / 2 ? rw - 1 - (x2 - 1 - x) : -1);
    const int cyo = y - y1 < rh / 2 ? y - y1 : (y2 - 1 - y < rh / 2 ? rh - 1 - (y2 - 1 - y) : -1);
    return cxo < 0 || cyo < 0 || corner.Inside(cxo, cyo);
  });
}

void RasterCanvas::Ellipse(int x1, int y1, int x2, int y2) {
  Normalise(x1, y1, x2, y2);
  const EllipseBox e(x1, y1, x2, y2);
  Shape(x1, y1, x2, y2, [&](int x, int y) { return e.Inside(x, y); });
}

void RasterCanvas::Pie(int x1, int y1, int x2, int y2, Point start, Point end) {
  Normalise(x1, y1, x2, y2);
  const EllipseBox e(x1, y1, x2, y2);
  const double from = e.Angle(start.x, start.y), to = e.Angle(end.x, end.y);
  Shape(x1, y1, x2, y2, [&](int x, int y) {
    const double px = x + 0.5, py = y + 0.5;
    const bool centre = std::abs(px - 0.5 - e.cx) < 0.5 && std::abs(py - 0.5 - e.cy) < 0.5;
    return e.Inside(x, y) && (centre || OnClockwiseSweep(e.Angle(px, py), from, to));
  });
}

void RasterCanvas::Arc(int x1, int y1, int x2, int y2, Point start, Point end) {
  Normalise(x1, y1, x2, y2);
  if (x2 <= x1 || y2 <= y1) return;
  const EllipseBox e(x1, y1, x2, y2);
  const double from = e.Angle(start.x, start.y), to = e.Angle(end.x, end.y);
  auto in = [&](int x, int y) { return x >= x1 && x < x2 && y >= y1 && y < y2 && e.Inside(x, y); };
  for (int y = y1; y < y2; ++y)
    for (int x = x1; x < x2; ++x)
      if (in(x, y) && (!in(x - 1, y) || !in(x + 1, y) || !in(x, y - 1) || !in(x, y + 1)) &&
          OnClockwiseSweep(e.Angle(x + 0.5, y + 0.5), from, to))
        Plot(x, y);
}

void RasterCanvas::Polygon(const std::vector<Point>& points) {
  if (points.empty()) return;
  if (!brush.clear && points.size() >= 3) {
    int x1 = points[0].x, y1 = points[0].y, x2 = x1, y2 = y1;
    for (const Point& p : points) {
      x1 = std::min(x1, p.x), y1 = std::min(y1, p.y);
      x2 = std::max(x2, p.x), y2 = std::max(y2, p.y);
    }
    for (int y = y1; y < y2; ++y) {
      const double py = y + 0.5;
      std::vector<double> crossings;
      for (std::size_t i = 0; i < points.size(); ++i) {
        const Point a = points[i], b = points[(i + 1) % points.size()];
        if ((a.y <= py) != (b.y <= py)) crossings.push_back(a.x + (py - a.y) * (b.x - a.x) / double(b.y - a.y));
      }
      std::sort(crossings.begin(), crossings.end());
      for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
        for (int x = static_cast<int>(std::ceil(crossings[i] - 0.5)); x + 0.5 < crossings[i + 1]; ++x)
          bitmap_.SetPixel(x, y, brush.colour);
    }
  }
  MoveTo(points[0].x, points[0].y);
  for (std::size_t i = 1; i < points.size(); ++i) LineTo(points[i].x, points[i].y);
  LineTo(points[0].x, points[0].y);
  if (points.size() == 1) Plot(points[0].x, points[0].y);
}

}  // namespace rm
