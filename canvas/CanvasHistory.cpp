// The canvas history (undo and redo) and the Image Collection.
#include <algorithm>
#include <cstring>

#include "canvas/PixelGrid.h"

namespace rm {

namespace {

// Draws `from` over `to` from the top left corner, clipped to `to`.
void DrawTopLeft(const Bitmap& from, Bitmap& to) {
  const int w = std::min(from.Width(), to.Width());
  const int h = std::min(from.Height(), to.Height());
  for (int y = 0; y < h; ++y) std::copy(from.Row(y), from.Row(y) + w, to.Row(y));
}

}  // namespace

// Ten thousand full copies of a 1024 x 768 canvas would take 30 GB. Most edits touch a few rows,
// so an entry holds its rows by shared pointer and takes over every row that is the same as in
// the entry below it: an unchanged push costs one pointer per row, a local edit the rows it
// touched. The index rules do not see this; an entry reads back as a whole bitmap.
void TPixelForm::CopyCanvasToSaveTable() {
  CopyBitmapToCanvas();
  ++UndoIndex;
  UndoTop = UndoIndex;
  // Redo entries above the new one are dropped.
  while (static_cast<int>(undoStack_.size()) > UndoIndex) undoStack_.pop_back();
  if (UndoIndex >= kMaxUndo) {
    // Full: the oldest entry goes, so the stack keeps its 10000 entries and the index its top.
    undoStack_.pop_front();
    UndoIndex = UndoTop = kMaxUndo - 1;
    UndoBase = std::max(0, UndoBase - 1);
  }
  const SavedCanvas* below = undoStack_.empty() ? nullptr : &undoStack_.back();
  SavedCanvas entry;
  entry.width = WorkBitmap.Width();
  entry.height = WorkBitmap.Height();
  entry.rows.reserve(static_cast<std::size_t>(entry.height));
  const std::size_t rowBytes = static_cast<std::size_t>(entry.width) * sizeof(std::uint32_t);
  for (int y = 0; y < entry.height; ++y) {
    const std::uint32_t* row = WorkBitmap.Row(y);
    if (below && below->width == entry.width && y < below->height &&
        std::memcmp(below->rows[static_cast<std::size_t>(y)]->data(), row, rowBytes) == 0)
      entry.rows.push_back(below->rows[static_cast<std::size_t>(y)]);
    else
      entry.rows.push_back(std::make_shared<const std::vector<std::uint32_t>>(row, row + entry.width));
  }
  undoStack_.push_back(std::move(entry));
  UndoEnabled = UndoIndex > 0 && UndoIndex != UndoBase;
  RedoEnabled = false;
}

Bitmap TPixelForm::UndoEntry(int index) const {
  if (index < 0 || index >= static_cast<int>(undoStack_.size())) return Bitmap();
  const SavedCanvas& e = undoStack_[static_cast<std::size_t>(index)];
  Bitmap b(e.width, e.height);
  for (int y = 0; y < e.height; ++y) {
    const auto& row = *e.rows[static_cast<std::size_t>(y)];
    std::copy(row.begin(), row.end(), b.Row(y));
  }
  return b;
}

// An entry taken at another display size is laid at the top left of the canvas as it is now,
// the way a size change keeps the picture.
void TPixelForm::CopySaveTableToCanvas() {
  if (UndoIndex < 0 || UndoIndex >= static_cast<int>(undoStack_.size())) return;
  const SavedCanvas& e = undoStack_[static_cast<std::size_t>(UndoIndex)];
  if (e.width == WorkBitmap.Width() && e.height == WorkBitmap.Height()) {
    for (int y = 0; y < e.height; ++y) {
      const auto& row = *e.rows[static_cast<std::size_t>(y)];
      std::copy(row.begin(), row.end(), WorkBitmap.Row(y));
    }
  } else {
    WorkBitmap.Fill(BackgroundColour);
    DrawTopLeft(UndoEntry(UndoIndex), WorkBitmap);
  }
  CopyBitmapToCanvas();
}

void TPixelForm::ResetHistory() {
  undoStack_.clear();
  UndoIndex = -1;
  UndoBase = 0;
  CopyCanvasToSaveTable();
  UndoEnabled = RedoEnabled = false;
}

// ---- Image Collection ------------------------------------------------------------------------

void TPixelForm::StoreCollection(int slot) {
  if (slot < 0 || slot >= kCollectionSlots) return;
  CopyCanvasToSaveTable();
  CollectionSlot& s = CollectionSlots[slot];
  // What the slot held comes back on "undo"; a slot that was free becomes free again.
  CollectionPrevious[slot] = s.Picture;
  s.Picture = WorkBitmap;
  s.Thumbnail = WorkBitmap;
  LastCollectionSlot = slot;
}

bool TPixelForm::TakeCollection(int slot) {
  if (slot < 0 || slot >= kCollectionSlots || CollectionSlots[slot].Picture.Empty()) return false;
  DrawTopLeft(CollectionSlots[slot].Picture, WorkBitmap);
  CopyBitmapToCanvas();
  return true;
}

bool TPixelForm::UndoCollection() {
  if (LastCollectionSlot < 0 || LastCollectionSlot >= kCollectionSlots) return false;
  CollectionSlot& s = CollectionSlots[LastCollectionSlot];
  s.Picture = CollectionPrevious[LastCollectionSlot];
  s.Thumbnail = s.Picture.Empty() ? Bitmap(WorkBitmap.Width(), WorkBitmap.Height(), kCollectionGray) : s.Picture;
  LastCollectionSlot = kCollectionSlots;
  return true;
}

void TPixelForm::DeleteCollection() {
  for (int i = 0; i < kCollectionSlots; ++i) {
    CollectionSlots[i].Picture = Bitmap();
    CollectionSlots[i].Thumbnail = Bitmap(WorkBitmap.Width(), WorkBitmap.Height(), kCollectionGray);
    CollectionSlots[i].Actions = {"Actions="};
    CollectionPrevious[i] = Bitmap();
  }
  LastCollectionSlot = kCollectionSlots;
}

}  // namespace rm
