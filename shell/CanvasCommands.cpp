// The Work Canvas window's commands: zoom, history, Image Collection, reload of the last
// artwork; and the canvas size helpers of the main window (combo, custom sizes, caption).
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "engine/BitRearrange.h"
#include "shell/Application.h"

namespace rm {

namespace fs = std::filesystem;

// ---- main window: size, caption ----------------------------------------------------------------

bool TMainForm::FitCanvasToPicture(int width, int height) {
  Globals& g = app_.globals;
  if (!g.NoMatrixMode || width <= 0 || height <= 0) return false;
  g.MatrixWidth = width;
  g.MatrixHeight = height;
  CanvasRedraw();
  return true;
}

std::vector<std::string> TMainForm::MatrixComboItems() {
  std::vector<std::string> items;
  for (const auto& [w, h] : MatrixPresets()) items.push_back(std::to_string(w) + "X" + std::to_string(h));
  return items;
}

bool TMainForm::MatrixComboChange(const std::string& text) {
  for (const auto& [w, h] : MatrixPresets())
    if (text == std::to_string(w) + "X" + std::to_string(h)) return MatrixPresetClick(w, h);
  return false;
}

std::vector<std::string> TMainForm::CustomSizeMenuItems() const {
  const Globals& g = app_.globals;
  std::vector<std::string> items;
  for (int i = 0; i < 16; ++i)
    if (g.CustomWidths[i] != 0)
      items.push_back("Custom " + std::to_string(g.CustomWidths[i]) + " x " + std::to_string(g.CustomHeights[i]));
  return items;
}

bool TMainForm::CustomSizeMenuClick(int index) {
  const Globals& g = app_.globals;
  int seen = 0;
  for (int i = 0; i < 16; ++i) {
    if (g.CustomWidths[i] == 0) continue;
    if (seen++ == index) return UserMatrixClick(std::to_string(g.CustomWidths[i]), std::to_string(g.CustomHeights[i]));
  }
  return false;
}

SizeKeyResult TMainForm::CustomSizeKeyPress(const std::string& typed, int pending, bool isWidth) {
  const ConversionSession& s = app_.session;
  // The multiple binds the width in a horizontal scheme and the height in a vertical one.
  const bool bound = isWidth == IsHorizontal(s.Direction);
  const SizeKeyResult r = CustomSizeKey(typed, pending, isWidth, bound ? PagingMultiple(s.ModeNumber) : 1);
  if (r.beep) app_.ui.Beep();
  if (!r.message.empty()) app_.ui.MessageDlg(r.message, "Error", DlgType::Error, {"OK"});
  return r;
}

void TMainForm::WorkCanvasSizeClick() {
  app_.ui.MessageDlg(" Use the LCD Matrix Item in the Main Menu to define \r Work Canvas Height and Width ",
                     "Information", DlgType::Information, {"OK"});
}

std::string TMainForm::CanvasCaption() const {
  const Globals& g = app_.globals;
  TPixelForm::CaptionState c;
  c.modeNumber = app_.session.ModeNumber;
  c.fileName = app_.session.LastBitmapName;
  c.vectorMode = g.VectorMode;
  c.animationMode = g.AnimationMode;
  return app_.pixelForm.FormCaption(c);
}

std::string TMainForm::StatusPanel1() const {
  const Globals& g = app_.globals;
  if (g.FontScriptMode || g.EditableFontMode) return "Font Creation";
  if (g.TouchScriptMode) return "Touch panel creation";
  if (g.BatchEditMode) return "batch creation";
  return "";
}

std::string TMainForm::StatusPanel2() const { return app_.globals.AnimationMode ? "animation" : "static"; }

PagingPanel TMainForm::PagingPanelNow() const {
  return PagingPanelText(PagingMultiple(app_.session.ModeNumber), IsHorizontal(app_.session.Direction));
}

// ---- Work Canvas window: zoom ------------------------------------------------------------------

bool TImageForm::ZoomInButtonClick() { return app_.pixelForm.ZoomIn(); }
bool TImageForm::ZoomOutButtonClick() { return app_.pixelForm.ZoomOut(); }
void TImageForm::ZoomOffButtonClick() { app_.pixelForm.NoZoom(); }
bool TImageForm::BiggerButtonClick() { return app_.pixelForm.Inflate(); }
bool TImageForm::SmallerButtonClick() { return app_.pixelForm.Deflate(); }
bool TImageForm::NormalSizeButtonClick() { return app_.pixelForm.NormalSize(); }
bool TImageForm::InflatefactorButtonClick(int steps) { return app_.pixelForm.InflateFactor(steps); }

// ---- history -----------------------------------------------------------------------------------

bool TImageForm::UndoButtonClick() {
  TPixelForm& c = app_.pixelForm;
  if (app_.globals.AnimationPlaying) return false;
  c.DiscardSelection();
  app_.session.SelectionActive = false;
  app_.mainForm.StatusBarAndLog("Last canvas reloaded from stack");
  c.UndoIndex = std::max(0, c.UndoIndex - 1);
  c.UndoEnabled = !(c.UndoIndex == 0 || c.UndoIndex == c.UndoBase);
  c.RedoEnabled = true;
  c.CopySaveTableToCanvas();
  return true;
}

bool TImageForm::RedoButtonClick() {
  TPixelForm& c = app_.pixelForm;
  if (c.UndoIndex >= c.UndoTop) {
    c.RedoEnabled = false;
    return false;
  }
  ++c.UndoIndex;
  c.RedoEnabled = c.UndoIndex < c.UndoTop;
  c.UndoEnabled = c.UndoIndex > 0 && c.UndoIndex != c.UndoBase;
  app_.mainForm.StatusBarAndLog("Next canvas status reloaded from stack");
  c.CopySaveTableToCanvas();
  return true;
}

bool TImageForm::ReloadOriginalImageClick() {
  TPixelForm& c = app_.pixelForm;
  if (c.InputBitmap.Empty()) return false;
  c.DiscardSelection();
  c.WorkBitmap.Fill(c.BackgroundColour);
  const int w = std::min(c.InputBitmap.Width(), c.WorkBitmap.Width());
  const int h = std::min(c.InputBitmap.Height(), c.WorkBitmap.Height());
  for (int y = 0; y < h; ++y) std::copy(c.InputBitmap.Row(y), c.InputBitmap.Row(y) + w, c.WorkBitmap.Row(y));
  app_.mainForm.StatusBarAndLog("Original image reloaded from stack ");
  c.CopyCanvasToSaveTable();
  app_.globals.ArtworkSaved = false;
  return true;
}

// ---- Image Collection --------------------------------------------------------------------------

void TImageForm::StoreImageCollection(int slot) {
  if (slot < 1 || slot > TPixelForm::kCollectionSlots) return;
  app_.mainForm.StatusBarAndLog("Copy Work Canvas to Image Collection " + std::to_string(slot));
  app_.pixelForm.StoreCollection(slot - 1);
}

bool TImageForm::TakeImageCollection(int slot) {
  if (slot < 1 || slot > TPixelForm::kCollectionSlots || app_.globals.AnimationMode) return false;
  if (app_.pixelForm.CollectionSlots[slot - 1].Picture.Empty()) return false;
  app_.mainForm.StatusBarAndLog("Copy Image Collection " + std::to_string(slot) + " to Work Canvas");
  app_.pixelForm.TakeCollection(slot - 1);
  app_.globals.ArtworkSaved = false;
  return true;
}

bool TImageForm::UndoIMCClick() { return app_.pixelForm.UndoCollection(); }

void TImageForm::DeleteImageCollection() { app_.pixelForm.DeleteCollection(); }

void TImageForm::LoadImageCollectionMemos() {
  const std::string& project = app_.globals.ActiveProject;
  if (project.empty()) return;
  const fs::path folder = fs::path(project).parent_path() / fs::path(project).stem();
  for (int n = 0; n < TPixelForm::kCollectionSlots; ++n) {
    std::ifstream in(folder / ("Image" + std::to_string(n) + ".act"), std::ios::binary);
    if (!in) continue;
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines.push_back(line);
    }
    app_.pixelForm.CollectionSlots[n].Actions = std::move(lines);
  }
}

// ---- reload of the last artwork ----------------------------------------------------------------

bool TImageForm::ReloadLastWorkCanvasBitmapClick() {
  const std::string& path = app_.globals.LastArtworkPath;
  std::error_code ec;
  if (path.empty() || !fs::is_regular_file(path, ec)) {
    app_.ui.MessageDlg("No Recent Artwork to load ", "Information", DlgType::Information, {"OK"});
    return false;
  }
  if (app_.ui.MessageDlg("Load Most Recent Artwork Into Work Canvas ?", "Confirm", DlgType::Confirmation,
                         {"Yes", "No"}) != "Yes")
    return false;
  return app_.mainForm.OpenPic(path);
}

std::string TMainForm::PixelStatusText(int x, int y) const {
  const Bitmap& b = app_.pixelForm.WorkBitmap;
  if (x < 0 || y < 0 || x >= b.Width() || y >= b.Height()) return {};
  const Colour c = b.GetPixel(x, y) & 0xFFFFFF;
  const unsigned r = c & 0xFF, g = (c >> 8) & 0xFF, bl = (c >> 16) & 0xFF;
  char hex[8];
  std::snprintf(hex, sizeof hex, "%02X%02X%02X", r, g, bl);
  const ConversionSession& s = app_.session;
  if (s.PaletteSize <= 0) return std::string("   RGB Hex=#") + hex;
  // The data value is the colour's place in the palette, turned by the mode's bit order the way
  // the conversion writes it; a colour the palette lacks has none.
  strayIndex_.Build(s.PaletteTable);
  const int index = strayIndex_.IndexOf(c);
  std::string text = " (RGB=" + std::to_string(r) + "-" + std::to_string(g) + "-" + std::to_string(bl) + ") (Dec=";
  if (index < 0) return text + "-)(RGB Hex=" + hex + ")";
  std::uint32_t value = static_cast<std::uint32_t>(index);
  switch (s.PaletteSize) {
    case 4096: value = Reorder4096Output(value, s.CanvasBits); break;
    case 65536: value = Reorder65kOutput(value, s.CanvasBits); break;
    case 262144: value = Reorder262kOutput(value, s.CanvasBits); break;
    default: value = Reorder256Output(value); break;
  }
  char code[16];
  std::snprintf(code, sizeof code, "%X", value);
  return text + std::to_string(value) + ")(RGB Hex=" + hex + ")  0x" + code;
}

std::string TMainForm::PixelPositionText(int x, int y) { return "X = " + std::to_string(x) + "  Y = " + std::to_string(y); }

}  // namespace rm
