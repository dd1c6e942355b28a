// Dithering of the explorer's graphic preview, and of the import that follows it.
#include "shell/Application.h"

namespace rm {

void TExploForm2::DitherBitmap(Bitmap& bitmap) {
  (void)bitmap;
  if (!PreviewDithered) return;
}

}  // namespace rm
