#include "canvas/PixelGrid.h"

#include <algorithm>

namespace rm {

bool TPixelForm::HasArtwork() const {
  for (int y = 0; y < WorkBitmap.Height(); ++y) {
    const std::uint32_t* row = WorkBitmap.Row(y);
    for (int x = 0; x < WorkBitmap.Width(); ++x)
      if (static_cast<Colour>(row[x]) != BackgroundColour) return true;
  }
  return false;
}

bool TPixelForm::IsBlackAndWhite() const {
  for (int y = 0; y < WorkBitmap.Height(); ++y) {
    const std::uint32_t* row = WorkBitmap.Row(y);
    for (int x = 0; x < WorkBitmap.Width(); ++x)
      if (row[x] != 0u && row[x] != 0xFFFFFFu) return false;
  }
  return true;
}

void TPixelForm::FloatSelection(const Bitmap& picture, int left, int top) {
  FloatSelection(Bitmap(picture), left, top);
}

void TPixelForm::FloatSelection(Bitmap&& picture, int left, int top) {
  SelectionOriginal = picture;
  SelectionBitmap = std::move(picture);
  SelectionLeft = left;
  SelectionTop = top;
  FloatingSelection = true;
}

bool TPixelForm::SelectionContains(int x, int y) const {
  return FloatingSelection && x >= SelectionLeft && y >= SelectionTop && x < SelectionLeft + SelectionBitmap.Width() &&
         y < SelectionTop + SelectionBitmap.Height();
}

void TPixelForm::MoveSelection(int left, int top) {
  if (!FloatingSelection || (left == SelectionLeft && top == SelectionTop)) return;
  SelectionLeft = left;
  SelectionTop = top;
  CopyBitmapToCanvas();
}

void TPixelForm::PasteSelection() {
  if (FloatingSelection) {
    const int x0 = std::max(0, SelectionLeft);
    const int x1 = std::min(WorkBitmap.Width(), SelectionLeft + SelectionBitmap.Width());
    for (int y = std::max(0, SelectionTop); y < std::min(WorkBitmap.Height(), SelectionTop + SelectionBitmap.Height());
         ++y) {
      if (x0 >= x1) break;
      const std::uint32_t* from = SelectionBitmap.Row(y - SelectionTop) + (x0 - SelectionLeft);
      std::copy(from, from + (x1 - x0), WorkBitmap.Row(y) + x0);
    }
  }
  DiscardSelection();
}

void TPixelForm::DiscardSelection() {
  SelectionBitmap = Bitmap();
  SelectionOriginal = Bitmap();
  SelectionLeft = SelectionTop = 0;
  FloatingSelection = false;
}

}  // namespace rm
