#pragma once
#include <string>

#include "canvas/PixelGrid.h"
#include "engine/ConversionSession.h"
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
  // Everything that decides the next conversion's bytes on one line: display size, colour mode,
  // Paging Scheme, bit order, output kind and project, e.g.
  // "128 x 64 | Monochrome bitmap (1bpp) | Down | MSB first | 8 bit output | project: factory".
  std::string InForceText() const;
  // The Output Format menu's text of an output kind ("8 bit output" ...).
  static const char* OutputKindText(OutputKind kind);
  // The size rule panel of the current mode and scheme.
  PagingPanel PagingPanelNow() const;

 private:
  Application& app_;
  // The palette's index, kept between calls so that its room is reused as the mouse moves.
  mutable ColourIndex paletteIndex_;
};

}  // namespace rm
