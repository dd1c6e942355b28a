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

  // ---- Editors: loading, highlighters, saving ----
  // The tabs of the editors window, by number (Globals::EditorsPage).
  static constexpr int kMainTab = 0, kAuxTab = 1, kScriptTab = 2, kReportTab = 3, kBatchTab = 4, kDocumentTab = 5,
                       kHexTab = 6, kSerialTab = 7;
  enum class Highlighter { None, Cpp, Assembler, Pascal, VisualBasic, General, Html, Xml };
  // The highlighter of a file by its extension; `libraryExtension` (without its point) counts as C.
  // The member form takes it from the settings.
  static Highlighter Highlighters(const std::string& fileName, const std::string& libraryExtension);
  Highlighter Highlighters(const std::string& fileName) const;
  // The main text's highlighter, chosen when a file is loaded; none for converted data.
  Highlighter MainHighlighter = Highlighter::None;
  // A change typed by the user in the main text: the model takes it and the text is unsaved.
  void MainTextEdited(const std::string& text);

  // ---- end of editors ----

 private:
  Application& app_;
};

}  // namespace rm
