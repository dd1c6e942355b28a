#pragma once
#include "engine/Bitmap.h"

namespace rm {

// The Work Canvas: one 24 bit bitmap at the display's size, in every colour mode, and the
// floating selection that may lie over it.
class TPixelForm {
 public:
  TPixelForm() : WorkBitmap(128, 64, kWhite) {}

  int MatrixWidth() const { return WorkBitmap.Width(); }
  int MatrixHeight() const { return WorkBitmap.Height(); }

  // Takes a picture as the canvas; the canvas takes the picture's size.
  void SetCanvas(const Bitmap& picture) { WorkBitmap = picture; }
  void ClearCanvas() { WorkBitmap.Fill(BackgroundColour); }

  // True when the canvas holds more than one colour, or one that is not the background.
  bool HasArtwork() const;
  // True when every pixel is exactly black or white.
  bool IsBlackAndWhite() const;

  Bitmap WorkBitmap;
  Colour BackgroundColour = kWhite;
  bool FloatingSelection = false;
  bool SelectionReducedToBW = true;
  bool ColourPickerActive = false;
};

}  // namespace rm
