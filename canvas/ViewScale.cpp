#include "canvas/ViewScale.h"

#include <algorithm>
#include <iterator>

namespace rm {

double ViewScale::FitScale(int imageW, int imageH, int portW, int portH, int zoom) {
  if (imageW <= 0 || imageH <= 0 || portW <= 0 || portH <= 0) return 1.0;
  const double fit = std::min(static_cast<double>(portW) / imageW, static_cast<double>(portH) / imageH);
  // A tiny display would otherwise get cells the size of the window.
  return std::min(fit, kMaxCell / std::max(1, zoom));
}

double ViewScale::Step(double cell, bool up) {
  // A small tolerance so that a size reached by steps counts as that step.
  constexpr double kEps = 1e-9;
  if (up) {
    for (double s : kSteps)
      if (s > cell + kEps) return s;
  } else {
    for (auto it = std::rbegin(kSteps); it != std::rend(kSteps); ++it)
      if (*it < cell - kEps) return *it;
  }
  return cell;
}

double ViewScale::AnchoredOffset(double offset, double anchor, double from, double to) {
  if (from <= 0) return offset;
  return (offset + anchor) * to / from - anchor;
}

}  // namespace rm
