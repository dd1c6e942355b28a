// Reduction of the floating selection to the colours of the current mode.
#include "canvas/PixelGrid.h"

namespace rm {

void TPixelForm::CheckColorsSelection(bool showMessages) {
  (void)showMessages;
  ThresholdPending = false;
  if (!FloatingSelection) return;
  if (session_.Monochrome) {
    for (int y = 0; y < SelectionBitmap.Height() && !ThresholdPending; ++y) {
      const std::uint32_t* row = SelectionBitmap.Row(y);
      for (int x = 0; x < SelectionBitmap.Width(); ++x)
        if (row[x] != 0u && row[x] != 0xFFFFFFu) {
          ThresholdPending = true;
          break;
        }
    }
  }
}

}  // namespace rm
