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
// so an entry is held as bands of 16 rows, and a band that is the same as in the entry below is
// shared with it: an unchanged push costs one pointer per band, a local edit the bands it
// touched. The changed bands of one push are copied into one block, as a single allocation is far
// cheaper than one per band on fresh memory. The index rules do not see any of this; an entry
// reads back as a whole bitmap.
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
  const int bandCount = (entry.height + kBandRows - 1) / kBandRows;
  const bool comparable = below && below->width == entry.width && below->height == entry.height;
  auto bandPixels = [&](int b) {
    return static_cast<std::size_t>(std::min(kBandRows, entry.height - b * kBandRows)) *
           static_cast<std::size_t>(entry.width);
  };
  entry.bands.resize(static_cast<std::size_t>(bandCount));
  std::size_t changed = 0;
  for (int b = 0; b < bandCount; ++b) {
    const std::size_t n = bandPixels(b);
    const auto& old = comparable ? below->bands[static_cast<std::size_t>(b)] : nullptr;
    if (old && std::memcmp(old.get(), WorkBitmap.Row(b * kBandRows), n * sizeof(std::uint32_t)) == 0)
      entry.bands[static_cast<std::size_t>(b)] = old;
    else
      changed += n;
  }
  if (changed > 0) {
    const std::shared_ptr<std::uint32_t[]> block(new std::uint32_t[changed]);
    std::size_t at = 0;
    for (int b = 0; b < bandCount; ++b) {
      if (entry.bands[static_cast<std::size_t>(b)]) continue;
      const std::size_t n = bandPixels(b);
      std::memcpy(block.get() + at, WorkBitmap.Row(b * kBandRows), n * sizeof(std::uint32_t));
      entry.bands[static_cast<std::size_t>(b)] = std::shared_ptr<const std::uint32_t>(block, block.get() + at);
      at += n;
    }
  }
  undoStack_.push_back(std::move(entry));
  UndoEnabled = UndoIndex > 0 && UndoIndex != UndoBase;
  RedoEnabled = false;
}

Bitmap TPixelForm::UndoEntry(int index) const {
  if (index < 0 || index >= static_cast<int>(undoStack_.size())) return Bitmap();
  const SavedCanvas& e = undoStack_[static_cast<std::size_t>(index)];
  Bitmap b(e.width, e.height);
  for (std::size_t i = 0; i < e.bands.size(); ++i) {
    const int y = static_cast<int>(i) * kBandRows;
    const std::size_t n = static_cast<std::size_t>(std::min(kBandRows, e.height - y)) * e.width;
    std::memcpy(b.Row(y), e.bands[i].get(), n * sizeof(std::uint32_t));
  }
  return b;
}

// An entry taken at another display size is laid at the top left of the canvas as it is now,
// the way a size change keeps the picture.
void TPixelForm::CopySaveTableToCanvas() {
  if (UndoIndex < 0 || UndoIndex >= static_cast<int>(undoStack_.size())) return;
  const SavedCanvas& e = undoStack_[static_cast<std::size_t>(UndoIndex)];
  if (e.width == WorkBitmap.Width() && e.height == WorkBitmap.Height()) {
    for (std::size_t i = 0; i < e.bands.size(); ++i) {
      const int y = static_cast<int>(i) * kBandRows;
      const std::size_t n = static_cast<std::size_t>(std::min(kBandRows, e.height - y)) * e.width;
      std::memcpy(WorkBitmap.Row(y), e.bands[i].get(), n * sizeof(std::uint32_t));
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
