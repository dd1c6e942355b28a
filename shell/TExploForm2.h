#pragma once
#include <string>

#include "engine/Bitmap.h"
#include "shell/Preview.h"

namespace rm {

class Application;

// The editors window's part of the Convert command, and its Intel HEX text sink.
class TExploForm2 {
  // The preview comes first: the names that reach its state are bound to it.
  Preview preview_;

 public:
  explicit TExploForm2(Application& app) : preview_(app), app_(app) {}
  TExploForm2(const TExploForm2&) = delete;
  TExploForm2& operator=(const TExploForm2&) = delete;
  bool TranslateCanvasButtons();

  // Two hex digits of one byte into the pending Intel HEX record of the main text; a full record
  // becomes a line.
  void InputHexInTextEditor(const std::string& hex);
  // Closes the pending record, however short.
  void EndIntelHex();

  // The header template's edit mode, a toggle: the mode's flags and menus.
  void EditHeaderButtonClick();

  // ---- The graphic preview of the explorer (Preview) ----
  bool LoadPreview(const std::string& fileName) { return preview_.LoadPreview(fileName); }
  void PreviewTurnRight() { preview_.PreviewTurnRight(); }
  void PreviewTurnLeft() { preview_.PreviewTurnLeft(); }
  void PreviewHalfTurn() { preview_.PreviewHalfTurn(); }
  bool SelectPreviewArea(int left, int top, int right, int bottom) {
    return preview_.SelectPreviewArea(left, top, right, bottom);
  }
  void ClearPreviewArea() { preview_.ClearPreviewArea(); }
  bool ReloadOriginalPreview() { return preview_.ReloadOriginalPreview(); }
  bool ResizePreviewToFit() { return preview_.ResizePreviewToFit(); }
  bool ExportGraphic() { return preview_.ExportGraphic(); }
  void DitherBitmap(Bitmap& bitmap) { preview_.DitherBitmap(bitmap); }
  bool ConvertToDithered(Bitmap& preview) { return preview_.ConvertToDithered(preview); }
  std::string& PreviewFileName = preview_.PreviewFileName;
  Bitmap& PreviewBitmap = preview_.PreviewBitmap;
  Bitmap& PreviewOriginal = preview_.PreviewOriginal;
  bool& PreviewCropActive = preview_.PreviewCropActive;
  int& PreviewCropLeft = preview_.PreviewCropLeft;
  int& PreviewCropTop = preview_.PreviewCropTop;
  int& PreviewCropRight = preview_.PreviewCropRight;
  int& PreviewCropBottom = preview_.PreviewCropBottom;
  bool& PreviewDithered = preview_.PreviewDithered;

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
