// The Work Canvas window's commands: zoom, history, Image Collection, reload of the last
// artwork.
#include <filesystem>
#include <fstream>

#include "shell/Application.h"

namespace rm {

namespace fs = std::filesystem;

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

}  // namespace rm
