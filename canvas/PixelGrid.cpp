#include "canvas/PixelGrid.h"

namespace rm {

bool TPixelForm::HasArtwork() const {
  for (int y = 0; y < WorkBitmap.Height(); ++y) {
    const std::uint32_t* row = WorkBitmap.Row(y);
    for (int x = 0; x < WorkBitmap.Width(); ++x)
      if (static_cast<Colour>(row[x]) != BackgroundColour) return true;
  }
  return false;
}

bool TPixelForm::IsBlackAndWhite() const {
  for (int y = 0; y < WorkBitmap.Height(); ++y) {
    const std::uint32_t* row = WorkBitmap.Row(y);
    for (int x = 0; x < WorkBitmap.Width(); ++x)
      if (row[x] != 0u && row[x] != 0xFFFFFFu) return false;
  }
  return true;
}

}  // namespace rm
