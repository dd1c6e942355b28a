// Dithering of the explorer's graphic preview, and of the import that follows it.
#include "engine/Reduction.h"
#include "shell/Application.h"

namespace rm {

namespace {

// Writes `picture` into the Documents folder; tells the user when it cannot.
bool KeepInDocuments(Application& app, const Bitmap& picture, const std::string& name) {
  std::string error;
  if (!app.codecs) {
    error = name + ": no picture writer";
  } else if (app.codecs->SaveBmp(picture, app.globals.MyDocuments + "/" + name, error)) {
    return true;
  }
  app.ui.MessageDlg(error, "Error", DlgType::Error, {"OK"});
  return false;
}

}  // namespace

bool Preview::ConvertToDithered(Bitmap& preview) {
  const TPixelForm& canvas = app_.pixelForm;
  // The original is kept so that "Reload Original Image" can undo the dither.
  bool ok = KeepInDocuments(app_, preview, "original_image_x_x.bmp");
  Dither(preview, canvas.ColorReductionChoice, canvas.DitherChoice);
  ok = KeepInDocuments(app_, preview, "dithered_image_x_x.bmp") && ok;
  PreviewDithered = true;
  return ok;
}

void Preview::DitherBitmap(Bitmap& bitmap) {
  if (!PreviewDithered) return;
  const TPixelForm& canvas = app_.pixelForm;
  KeepInDocuments(app_, bitmap, "original_image_x_x.bmp");
  // The preview was dithered at the picture's own size; the import does the same before it
  // resizes, so the canvas shows what the preview showed.
  Dither(bitmap, canvas.ColorReductionChoice, canvas.DitherChoice);
}

}  // namespace rm
