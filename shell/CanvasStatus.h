#pragma once
#include <string>

#include "canvas/PixelGrid.h"
#include "engine/Palette.h"

namespace rm {

class Application;

// The Work Canvas caption and the words of the status panels.
class CanvasStatus {
 public:
  explicit CanvasStatus(Application& app) : app_(app) {}

  // The Work Canvas caption and the two status panel words.
  std::string CanvasCaption() const;
  std::string StatusPanel1() const;
  std::string StatusPanel2() const;
  // The pixel under the mouse for the status panels: its colour as "(RGB=R-G-B) (Dec=code)(RGB
  // Hex=RRGGBB)  0x.." with its data value in the palette modes, "   RGB Hex=#RRGGBB" in the
  // others; empty outside the canvas.
  std::string PixelStatusText(int x, int y) const;
  // The cell's position for the status bar: "X = x  Y = y".
  static std::string PixelPositionText(int x, int y);
  // The size rule panel of the current mode and scheme.
  PagingPanel PagingPanelNow() const;

 private:
  Application& app_;
  // The palette's index, kept between calls so that its room is reused as the mouse moves.
  mutable ColourIndex paletteIndex_;
};

}  // namespace rm
