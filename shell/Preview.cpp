// The explorer's graphic preview: a picture looked at, turned and cropped before it is imported.
#include <algorithm>
#include <filesystem>

#include "engine/ImportGeometry.h"
#include "shell/Application.h"

namespace rm {

bool Preview::LoadPreview(const std::string& fileName) {
  if (app_.codecs == nullptr) {
    app_.mainForm.MessageDlgA(fileName + ": this program has no picture decoders, the file cannot be shown.",
                              "Loading a Graphic Error", 0, 4, 1);
    return false;
  }
  Bitmap picture;
  std::string error;
  if (!app_.codecs->Load(fileName, picture, error)) {
    app_.mainForm.MessageDlgA(error, "Loading a Graphic Error", 0, 4, 1);
    return false;
  }
  PreviewFileName = fileName;
  PreviewOriginal = picture;
  PreviewBitmap = std::move(picture);
  PreviewCropActive = false;
  PreviewDithered = false;
  return true;
}

// A turn changes which pixels the crop rectangle covers, so it is dropped.
void Preview::PreviewTurnRight() {
  PreviewBitmap = RotateBitmap(PreviewBitmap, 90, kDefaultBackground, true);
  PreviewCropActive = false;
}

void Preview::PreviewTurnLeft() {
  PreviewBitmap = RotateBitmap(PreviewBitmap, 270, kDefaultBackground, true);
  PreviewCropActive = false;
}

void Preview::PreviewHalfTurn() {
  PreviewBitmap = RotateBitmap(PreviewBitmap, 180, kDefaultBackground, true);
  PreviewCropActive = false;
}

bool Preview::SelectPreviewArea(int left, int top, int right, int bottom) {
  // The user may drag in any direction and beyond the picture.
  if (left > right) std::swap(left, right);
  if (top > bottom) std::swap(top, bottom);
  left = std::max(left, 0);
  top = std::max(top, 0);
  right = std::min(right, PreviewBitmap.Width());
  bottom = std::min(bottom, PreviewBitmap.Height());
  if (left >= right || top >= bottom) {
    PreviewCropActive = false;
    return false;
  }
  PreviewCropLeft = left, PreviewCropTop = top, PreviewCropRight = right, PreviewCropBottom = bottom;
  PreviewCropActive = true;
  app_.mainForm.StatusBarAndLog("Select/Crop an Area inside Preview");
  return true;
}

bool Preview::ReloadOriginalPreview() {
  if (PreviewOriginal.Empty()) return false;
  PreviewBitmap = PreviewOriginal;
  PreviewCropActive = false;
  PreviewDithered = false;
  app_.mainForm.StatusBarAndLog("Original image reloaded");
  return true;
}

bool Preview::ResizePreviewToFit() {
  if (PreviewBitmap.Empty()) return false;
  const PictureSize size = PropotionalResizeSize(PreviewBitmap.Width(), PreviewBitmap.Height(),
                                                 app_.pixelForm.MatrixWidth(), app_.pixelForm.MatrixHeight());
  if (size.width <= 0 || size.height <= 0) return false;  // too thin to keep a pixel
  PreviewBitmap = StretchBitmap(PreviewBitmap, size.width, size.height);
  PreviewCropActive = false;
  return true;
}

bool Preview::ExportGraphic() {
  if (PreviewBitmap.Empty()) return false;
  TMainForm& main = app_.mainForm;
  if (main.IsSelectionActive()) return false;
  Globals& g = app_.globals;
  Bitmap picture = PreviewBitmap;
  if (PreviewCropActive)
    picture = CropBitmap(picture, {PreviewCropLeft, PreviewCropTop, PreviewCropRight, PreviewCropBottom});
  // The preview's picture is already turned, cropped and dithered as the user sees it; it goes
  // straight to the fitting.
  g.ImportFileName = PreviewFileName;
  g.ImportKeepsOffsets = false;
  g.ImportOffsetX = g.ImportOffsetY = 0;
  main.AddMRUF(PreviewFileName);
  app_.pixelForm.StoreOriginalImage(picture);
  g.ImportedBitmap = std::move(picture);
  return main.AssignInPutBitmap();
}

}  // namespace rm
