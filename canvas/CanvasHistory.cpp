// The canvas history (undo and redo) and the Image Collection.
#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "canvas/CanvasHistory.h"
#include "canvas/TPixelForm.h"

namespace rm {

namespace {

// Draws `from` over `to` from the top left corner, clipped to `to`.
void DrawTopLeft(const Bitmap& from, Bitmap& to) {
  const int w = std::min(from.Width(), to.Width());
  const int h = std::min(from.Height(), to.Height());
  for (int y = 0; y < h; ++y) std::copy(from.Row(y), from.Row(y) + w, to.Row(y));
}

// Runs of one colour as (length, colour) pairs into `out`. False when they would take more
// than half the room of the pixels: such a band is kept as it is.
bool PackRuns(const std::uint32_t* pixels, std::size_t n, std::uint32_t* out, std::size_t& words) {
  const std::size_t limit = n / 2;
  words = 0;
  for (std::size_t i = 0; i < n;) {
    std::size_t j = i + 1;
    while (j < n && pixels[j] == pixels[i]) ++j;
    if (words + 2 > limit) return false;
    out[words++] = static_cast<std::uint32_t>(j - i);
    out[words++] = pixels[i];
    i = j;
  }
  return true;
}

void UnpackBand(const std::uint32_t* words, std::size_t count, bool runs, std::uint32_t* pixels) {
  if (!runs) {
    std::memcpy(pixels, words, count * sizeof(std::uint32_t));
    return;
  }
  for (std::size_t k = 0; k < count; k += 2) pixels = std::fill_n(pixels, words[k], words[k + 1]);
}

// A block for one push. A large block is aligned to 2 MiB and marked for huge pages, where the
// system offers them: memory that is new to the process is otherwise paid for at the first
// write, page by page, which costs more than the copy itself (about 10 ms for a 1024 x 768
// canvas of new colours, against well under 1 ms with huge pages).
std::shared_ptr<std::uint32_t[]> NewHistoryBlock(std::size_t words) {
  constexpr std::size_t kHuge = std::size_t{2} << 20;
  const std::size_t bytes = words * sizeof(std::uint32_t);
  if (bytes < kHuge / 2) return std::shared_ptr<std::uint32_t[]>(new std::uint32_t[words]);
  const std::size_t rounded = (bytes + kHuge - 1) / kHuge * kHuge;
  void* memory = std::aligned_alloc(kHuge, rounded);
  if (memory == nullptr) throw std::bad_alloc();
  madvise(memory, rounded, MADV_HUGEPAGE);  // a hint: refused, the block still works
  return std::shared_ptr<std::uint32_t[]>(static_cast<std::uint32_t*>(memory), [](std::uint32_t* p) { std::free(p); });
}

}  // namespace

// Ten thousand full copies of a 1024 x 768 canvas would take 30 GB. Most edits touch a few rows,
// so an entry is held as bands of 16 rows, and a band that is the same as in the entry below is
// shared with it: an unchanged push costs one pointer per band, a local edit the bands it
// touched. A changed band of few colours (the usual display artwork) is held as runs. All that
// one push keeps goes into one block: on fresh memory a single allocation is far cheaper than
// one per band. The index rules do not see any of this; an entry reads back as a whole bitmap.
void CanvasHistory::CopyCanvasToSaveTable() {
  canvas_.CopyBitmapToCanvas();
  ++UndoIndex;
  UndoTop = UndoIndex;
  // Redo entries above the new one are dropped.
  while (static_cast<int>(undoStack_.size()) > UndoIndex) undoStack_.pop_back();
  if (pushedIndex_ >= UndoIndex) pushedIndex_ = -1;
  if (UndoIndex >= kMaxUndo) {
    // Full: the oldest entry goes, so the stack keeps its 10000 entries and the index its top.
    undoStack_.pop_front();
    UndoIndex = UndoTop = kMaxUndo - 1;
    UndoBase = std::max(0, UndoBase - 1);
    --pushedIndex_;
  }
  const int belowIndex = static_cast<int>(undoStack_.size()) - 1;
  const SavedCanvas* below = belowIndex >= 0 ? &undoStack_.back() : nullptr;
  SavedCanvas entry;
  entry.width = canvas_.WorkBitmap.Width();
  entry.height = canvas_.WorkBitmap.Height();
  const int bandCount = (entry.height + kBandRows - 1) / kBandRows;
  const bool comparable = below && below->width == entry.width && below->height == entry.height;
  if (comparable && pushedIndex_ != belowIndex) {
    // After an undo the entry below is not the last one pushed: read it out once.
    pushedCopy_ = UndoEntry(belowIndex);
    pushedIndex_ = belowIndex;
  }
  auto bandPixels = [&](int b) {
    return static_cast<std::size_t>(std::min(kBandRows, entry.height - b * kBandRows)) *
           static_cast<std::size_t>(entry.width);
  };
  const std::size_t total = static_cast<std::size_t>(entry.width) * static_cast<std::size_t>(entry.height);
  if (packScratch_.size() < total) packScratch_.resize(total);
  entry.bands.resize(static_cast<std::size_t>(bandCount));
  // First the bands that stay and the room the others need; packed bands wait in the scratch.
  std::vector<std::size_t> packedAt(static_cast<std::size_t>(bandCount), 0);
  std::size_t scratchUsed = 0, needed = 0;
  for (int b = 0; b < bandCount; ++b) {
    const std::size_t n = bandPixels(b);
    const std::uint32_t* pixels = canvas_.WorkBitmap.Row(b * kBandRows);
    SavedBand& band = entry.bands[static_cast<std::size_t>(b)];
    if (comparable && std::memcmp(pushedCopy_.Row(b * kBandRows), pixels, n * sizeof(std::uint32_t)) == 0) {
      band = below->bands[static_cast<std::size_t>(b)];
      continue;
    }
    std::size_t words = 0;
    if (PackRuns(pixels, n, packScratch_.data() + scratchUsed, words)) {
      band.runs = true;
      band.count = words;
      packedAt[static_cast<std::size_t>(b)] = scratchUsed;
      scratchUsed += words;
    } else {
      band.count = n;
    }
    needed += band.count;
  }
  if (needed > 0) {
    const std::shared_ptr<std::uint32_t[]> block = NewHistoryBlock(needed);
    std::size_t at = 0;
    for (int b = 0; b < bandCount; ++b) {
      SavedBand& band = entry.bands[static_cast<std::size_t>(b)];
      if (band.words) continue;
      const std::uint32_t* from = band.runs ? packScratch_.data() + packedAt[static_cast<std::size_t>(b)]
                                            : canvas_.WorkBitmap.Row(b * kBandRows);
      std::memcpy(block.get() + at, from, band.count * sizeof(std::uint32_t));
      band.words = std::shared_ptr<const std::uint32_t>(block, block.get() + at);
      at += band.count;
      if (comparable)
        std::memcpy(pushedCopy_.Row(b * kBandRows), canvas_.WorkBitmap.Row(b * kBandRows),
                    bandPixels(b) * sizeof(std::uint32_t));
    }
  }
  if (!comparable) pushedCopy_ = canvas_.WorkBitmap;
  pushedIndex_ = UndoIndex;
  undoStack_.push_back(std::move(entry));
  UndoEnabled = UndoIndex > 0 && UndoIndex != UndoBase;
  RedoEnabled = false;
}

Bitmap CanvasHistory::UndoEntry(int index) const {
  if (index < 0 || index >= static_cast<int>(undoStack_.size())) return Bitmap();
  const SavedCanvas& e = undoStack_[static_cast<std::size_t>(index)];
  Bitmap b(e.width, e.height);
  for (std::size_t i = 0; i < e.bands.size(); ++i)
    UnpackBand(e.bands[i].words.get(), e.bands[i].count, e.bands[i].runs, b.Row(static_cast<int>(i) * kBandRows));
  return b;
}

// An entry taken at another display size is laid at the top left of the canvas as it is now,
// the way a size change keeps the picture.
void CanvasHistory::CopySaveTableToCanvas() {
  if (UndoIndex < 0 || UndoIndex >= static_cast<int>(undoStack_.size())) return;
  const SavedCanvas& e = undoStack_[static_cast<std::size_t>(UndoIndex)];
  if (e.width == canvas_.WorkBitmap.Width() && e.height == canvas_.WorkBitmap.Height()) {
    for (std::size_t i = 0; i < e.bands.size(); ++i)
      UnpackBand(e.bands[i].words.get(), e.bands[i].count, e.bands[i].runs,
                 canvas_.WorkBitmap.Row(static_cast<int>(i) * kBandRows));
  } else {
    canvas_.WorkBitmap.Fill(canvas_.BackgroundColour);
    DrawTopLeft(UndoEntry(UndoIndex), canvas_.WorkBitmap);
  }
  canvas_.CopyBitmapToCanvas();
}

void CanvasHistory::ResetHistory() {
  undoStack_.clear();
  pushedIndex_ = -1;
  UndoIndex = -1;
  UndoBase = 0;
  CopyCanvasToSaveTable();
  UndoEnabled = RedoEnabled = false;
}

// ---- Image Collection ------------------------------------------------------------------------

void CanvasHistory::StoreCollection(int slot) {
  if (slot < 0 || slot >= kCollectionSlots) return;
  CopyCanvasToSaveTable();
  CollectionSlot& s = CollectionSlots[slot];
  // What the slot held comes back on "undo"; a slot that was free becomes free again.
  CollectionPrevious[slot] = s.Picture;
  s.Picture = canvas_.WorkBitmap;
  s.Thumbnail = canvas_.WorkBitmap;
  LastCollectionSlot = slot;
}

bool CanvasHistory::TakeCollection(int slot) {
  if (slot < 0 || slot >= kCollectionSlots || CollectionSlots[slot].Picture.Empty()) return false;
  DrawTopLeft(CollectionSlots[slot].Picture, canvas_.WorkBitmap);
  canvas_.CopyBitmapToCanvas();
  return true;
}

bool CanvasHistory::UndoCollection() {
  if (LastCollectionSlot < 0 || LastCollectionSlot >= kCollectionSlots) return false;
  CollectionSlot& s = CollectionSlots[LastCollectionSlot];
  s.Picture = CollectionPrevious[LastCollectionSlot];
  s.Thumbnail =
      s.Picture.Empty() ? Bitmap(canvas_.WorkBitmap.Width(), canvas_.WorkBitmap.Height(), kCollectionGray) : s.Picture;
  LastCollectionSlot = kCollectionSlots;
  return true;
}

void CanvasHistory::DeleteCollection() {
  for (int i = 0; i < kCollectionSlots; ++i) {
    CollectionSlots[i].Picture = Bitmap();
    CollectionSlots[i].Thumbnail = Bitmap(canvas_.WorkBitmap.Width(), canvas_.WorkBitmap.Height(), kCollectionGray);
    CollectionSlots[i].Actions = {"Actions="};
    CollectionPrevious[i] = Bitmap();
  }
  LastCollectionSlot = kCollectionSlots;
}

}  // namespace rm
