#pragma once
#include <string>

#include "engine/Bitmap.h"

namespace rm {

class Application;

// The editors window's part of the Convert command, and its Intel HEX text sink.
class TExploForm2 {
 public:
  explicit TExploForm2(Application& app) : app_(app) {}
  bool TranslateCanvasButtons();

  // Two hex digits of one byte into the pending Intel HEX record of the main text; a full record
  // becomes a line.
  void InputHexInTextEditor(const std::string& hex);
  // Closes the pending record, however short.
  void EndIntelHex();

  // The header template's edit mode, a toggle: the mode's flags and menus.
  void EditHeaderButtonClick();

  // ---- The graphic preview of the explorer: load, crop, turns, export ----

  // ---- end of the preview ----

  // ---- Dithering in the preview ----
  // On after the preview was dithered: the import then reduces the picture the same way.
  bool PreviewDithered = false;
  // Reduces an imported picture as the preview was reduced, when it was.
  void DitherBitmap(Bitmap& bitmap);
  // "Perform Dithering" on the preview: keeps the picture as original_image_x_x.bmp and the
  // result as dithered_image_x_x.bmp in the Documents folder. False when a file could not be
  // written (the user has been told); the preview is dithered all the same.
  bool ConvertToDithered(Bitmap& preview);
  // ---- end of dithering in the preview ----

 private:
  Application& app_;
};

}  // namespace rm
