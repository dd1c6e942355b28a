#pragma once

namespace rm {

// How the desktop window shows the canvas model's view bitmap. The model draws whole cells (its
// Zoom, with the grid and paging lines); the window scales that bitmap once more, so a display
// of any size can be seen whole ("Fit to Window") and the wheel can zoom in fine steps about the
// mouse. The scale is for the eye only: the model's cells, tools and output do not change.
class ViewScale {
 public:
  // Cell sizes (screen pixels per canvas pixel) the zoom steps go through.
  static constexpr double kSteps[] = {0.125, 0.25, 0.5, 0.75, 1, 1.5, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64};
  static constexpr double kMinCell = kSteps[0];
  static constexpr double kMaxCell = kSteps[sizeof kSteps / sizeof kSteps[0] - 1];

  // The scale at which an image of imageW x imageH stands whole in a port of portW x portH,
  // as large as the port allows but with cells no larger than kMaxCell (`zoom` is the model's
  // cell size already in the image). 1 for an empty image or port.
  static double FitScale(int imageW, int imageH, int portW, int portH, int zoom);

  // The cell size one step above (up) or below `cell`: the first step of the ladder beyond it,
  // so a step from a fitted size in between always lands on a round size. `cell` itself when
  // there is no such step.
  static double Step(double cell, bool up);
  static bool CanStep(double cell, bool up) { return Step(cell, up) != cell; }

  // The scroll offset that keeps the image point under `anchor` (a port coordinate) where it is
  // when the scale goes from `from` to `to`.
  static double AnchoredOffset(double offset, double anchor, double from, double to);
};

}  // namespace rm
