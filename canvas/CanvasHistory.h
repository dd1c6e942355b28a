#pragma once
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "engine/Bitmap.h"

namespace rm {

class TPixelForm;

// The Work Canvas history (undo and redo) and the Image Collection.
class CanvasHistory {
 public:
  explicit CanvasHistory(TPixelForm& canvas) : canvas_(canvas) {}

  // History. Entries share the rows they have in common with the entry below them.
  static constexpr int kMaxUndo = 10000;
  int UndoIndex = -1, UndoTop = -1, UndoBase = 0;
  bool UndoEnabled = false, RedoEnabled = false;
  int UndoLength() const { return static_cast<int>(undoStack_.size()); }
  void CopyCanvasToSaveTable();
  void CopySaveTableToCanvas();
  // A new start of the history: one entry, the canvas as it is.
  void ResetHistory();
  // Entry `index` as a bitmap (for tests and the front end's history view).
  Bitmap UndoEntry(int index) const;

  // Image Collection: eight slots; LastCollectionSlot 8 means none.
  static constexpr int kCollectionSlots = 8;
  static constexpr Colour kCollectionGray = 0xC0C0C0;  // an empty slot's thumbnail
  struct CollectionSlot {
    Bitmap Picture;  // empty when the slot is free
    Bitmap Thumbnail;
    std::vector<std::string> Actions{"Actions="};
    bool ActionsShown = false;  // the memo is shown in place of the thumbnail
  };
  CollectionSlot CollectionSlots[kCollectionSlots];
  Bitmap CollectionPrevious[kCollectionSlots];
  int LastCollectionSlot = kCollectionSlots;
  void StoreCollection(int slot);
  bool TakeCollection(int slot);  // false when the slot is empty
  bool UndoCollection();
  void DeleteCollection();

 private:
  TPixelForm& canvas_;
  // One history entry: bands of kBandRows rows, each shared with the entry below when equal,
  // and held as runs of one colour when that is less than half the size.
  static constexpr int kBandRows = 16;
  struct SavedBand {
    std::shared_ptr<const std::uint32_t> words;
    std::size_t count = 0;  // words held
    bool runs = false;      // (length, colour) pairs instead of the pixels
  };
  struct SavedCanvas {
    int width = 0, height = 0;
    std::vector<SavedBand> bands;
  };
  std::vector<std::uint32_t> packScratch_;  // reused by every push
  // Entry `pushedIndex_` as pixels, so a push compares with plain memory; -1 when none.
  Bitmap pushedCopy_;
  int pushedIndex_ = -1;
  std::deque<SavedCanvas> undoStack_;
};

}  // namespace rm
