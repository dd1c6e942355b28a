#pragma once
#include <string>

#include "engine/Bitmap.h"

namespace rm {

class Application;

// The graphic preview of the explorer: load, crop, turns, dithering and the export to the Work
// Canvas.
class Preview {
 public:
  explicit Preview(Application& app) : app_(app) {}

  // Decodes a picture into the preview. False, after telling the user, when it cannot be read.
  bool LoadPreview(const std::string& fileName);
  // Quarter turns (clockwise, counter-clockwise) and the half turn of the preview picture.
  void PreviewTurnRight();
  void PreviewTurnLeft();
  void PreviewHalfTurn();
  // "Select an Area inside the Preview": the rectangle (right and bottom exclusive) that the
  // import takes of the picture. False when it holds no pixel of it.
  bool SelectPreviewArea(int left, int top, int right, int bottom);
  void ClearPreviewArea() { PreviewCropActive = false; }
  // "Reload Original Image": the picture as loaded, without turns, crop or dithering.
  bool ReloadOriginalPreview();
  // "Resize to fit in Work Canvas": the preview picture resized as an import would be.
  bool ResizePreviewToFit();
  // "Export Previewed Graphic to Work Canvas": the preview's picture, cropped, goes the import's
  // way from the fitting on. False when there is none or the user cancelled.
  bool ExportGraphic();
  std::string PreviewFileName;
  Bitmap PreviewBitmap;    // what the preview shows
  Bitmap PreviewOriginal;  // as it was loaded
  bool PreviewCropActive = false;
  int PreviewCropLeft = 0, PreviewCropTop = 0, PreviewCropRight = 0, PreviewCropBottom = 0;

  // Dithering in the preview.
  // On after the preview was dithered: the import then reduces the picture the same way.
  bool PreviewDithered = false;
  // Reduces an imported picture as the preview was reduced, when it was.
  void DitherBitmap(Bitmap& bitmap);
  // "Perform Dithering" on the preview: keeps the picture as original_image_x_x.bmp and the
  // result as dithered_image_x_x.bmp in the Documents folder. False when a file could not be
  // written (the user has been told); the preview is dithered all the same.
  bool ConvertToDithered(Bitmap& preview);

 private:
  Application& app_;
};

}  // namespace rm
