#include "engine/ScanOrder.h"

#include <algorithm>
#include <cmath>

namespace rm {

namespace {

int TruncDiv(long double a, long double b) { return static_cast<int>(std::trunc(a / b)); }

// The bands of a sliced vertical walk, or (`all`) the data of one whole column; `ppb` the pixels of
// a byte down a column.
int VerticalPages(const ConversionSession& s, long double ppb, bool all) {
  const int w = s.ExportAreaX2 - s.ExportAreaX1;
  const int h = s.ExportAreaY2 - s.ExportAreaY1;
  int pages = TruncDiv(h, ppb);
  if (s.Gray16Slices) return static_cast<int>(std::ceil(h / 8.0));
  if (s.Colours8) return h / 8;
  if (s.Gray32) return h;
  if (!all) return pages;
  if (s.Monochrome && !s.Not6bit) pages = h / 6 + (w % 6 != 0 ? 1 : 0);
  if (s.Gray16) pages = s.Gray16Horizontal ? h : h / 2;
  if (s.Gray4 || s.Gray4TwoPages) pages = h / 4;
  return pages;
}

// The bands of a sliced horizontal walk, or the data of one whole row.
int HorizontalPages(const ConversionSession& s, bool sliced) {
  const int w = s.ExportAreaX2 - s.ExportAreaX1;
  int pages = TruncDiv(w, s.PixelsPerByte);
  if (s.Monochrome && !s.Not6bit) pages = w / 6 + (w % 6 != 0 ? 1 : 0);
  if (s.Colours8) pages = w / 8;
  if (s.Gray16) pages = w / 2;
  if (sliced && (s.Gray4 || s.Gray4TwoPages)) pages = w / 4;
  if (s.Gray32) pages = w;
  return pages;
}

// How far a sliced horizontal walk moves from one band to the next.
int BandWidth(const ConversionSession& s) {
  if (s.Monochrome) return s.Not6bit ? 8 : 6;
  if (s.Gray16 || s.Colours16) return 2;
  if (s.Gray4 || s.Gray4TwoPages) return 4;
  return 1;  // gray 32 and the modes from 256 colours up
}

}  // namespace

ScanOrder ScanOrderOf(const ConversionSession& s) {
  const int ax1 = s.ExportAreaX1, ay1 = s.ExportAreaY1, ax2 = s.ExportAreaX2, ay2 = s.ExportAreaY2;
  const int w = ax2 - ax1, h = ay2 - ay1;
  // The rows of horizontal walks: the lower half of a half export lies below the canvas height.
  int ry1 = ay1, ry2 = ay2;
  if (s.HalfExport && s.LowerHalf) {
    ry1 = s.CanvasHeight;
    ry2 = 2 * s.CanvasHeight;
  }
  const OriginCorner corner = s.Origin;
  ScanOrder o;
  switch (s.Direction) {
    case PagingDirection::Down: {
      // The two pages read the eight pixels of both planes' bytes at once.
      const long double ppb = s.Gray4TwoPages ? 8 : s.PixelsPerByte;
      const bool tl = corner == OriginCorner::TL;
      o.step = PixelStep::Down;
      o.sliced = true;
      o.groups = VerticalPages(s, ppb, false);
      o.data = w;
      o.x = tl ? ax1 : ax2 - 1;
      o.y = ay1;
      o.datumDx = tl ? 1 : -1;
      o.groupDy = s.Gray16Slices ? 8 : static_cast<int>(std::trunc(ppb));
      o.x1 = ax1;
      o.x2 = ax2;
      o.nextTo = ay2;
      o.marks = tl ? ScanOrder::Marks::None : ScanOrder::Marks::Lines;
      o.resetCanvasSize = !tl;
      break;
    }
    case PagingDirection::Up: {
      const bool bl = corner == OriginCorner::BL;
      o.step = PixelStep::Up;
      o.sliced = true;
      // 8 colours leave out the band at the top.
      o.groups = std::max(0, TruncDiv(h, s.PixelsPerByte) - (s.Colours8 ? 1 : 0));
      o.data = w;
      o.x = bl ? ax1 : ax2 - 1;
      o.y = ay2 - 1;
      o.datumDx = bl ? 1 : -1;
      o.groupDy = -static_cast<int>(std::trunc(s.PixelsPerByte));
      o.x1 = ax1;
      o.x2 = ax2;
      o.nextFrom = 0;
      o.marks = bl ? ScanOrder::Marks::None : ScanOrder::Marks::Lines;
      break;
    }
    case PagingDirection::DownAll:
    case PagingDirection::UpAll: {
      const bool down = s.Direction == PagingDirection::DownAll;
      const bool normal = corner == (down ? OriginCorner::TL : OriginCorner::BL);
      // Two horizontal pixels of 16 gray levels make a byte of each row of a column pair.
      const int columns = s.Gray16Horizontal ? 2 : 1;
      o.step = down ? PixelStep::Down : PixelStep::Up;
      o.groups = w / columns;
      o.data = VerticalPages(s, s.PixelsPerByte, true);
      // Down with the top left origin starts the columns at the area's top edge value, not its
      // left edge; for a full canvas both are 0.
      o.x = normal ? (down ? ay1 : ax1) : ax2 - 1;
      o.y = down ? ay1 : ay2 - 1;
      o.groupDx = normal ? columns : -columns;
      break;
    }
    case PagingDirection::ToRightAll:
    case PagingDirection::ToLeftAll: {
      const bool right = s.Direction == PagingDirection::ToRightAll;
      const bool normal = corner == (right ? OriginCorner::TL : OriginCorner::TR);
      o.step = right ? PixelStep::Right : PixelStep::Left;
      o.groups = ry2 - ry1;
      o.data = HorizontalPages(s, false);
      o.x = right ? ax1 : ax2 - 1;
      o.y = normal ? ry1 : ry2 - 1;
      o.groupDy = normal ? 1 : -1;
      // Leftwards from another corner than the top right a row opens with its prefix only: the
      // suffix of the row before waits to the end.
      o.flushSuffixAtOpen = right || normal;
      break;
    }
    case PagingDirection::ToRight:
    case PagingDirection::ToLeft: {
      const bool right = s.Direction == PagingDirection::ToRight;
      const bool normal = corner == (right ? OriginCorner::TL : OriginCorner::TR);
      const int band = BandWidth(s);
      o.step = right ? PixelStep::Right : PixelStep::Left;
      o.sliced = true;
      o.groups = HorizontalPages(s, true);
      o.data = ry2 - ry1;
      o.x = right ? ax1 : ax2 - 1;
      o.y = normal ? ry1 : ry2 - 1;
      o.groupDx = right ? band : -band;
      o.datumDy = normal ? 1 : -1;
      if (right)
        o.x2 = ax2;
      else
        o.x1 = ax1;
      o.y2 = ry2;
      if (right && !normal) o.nextTo = ax2 + 1;
      o.marks = normal ? ScanOrder::Marks::Lines : ScanOrder::Marks::LinesSuffixNow;
      o.resetCanvasSize = !normal;
      break;
    }
  }
  return o;
}

}  // namespace rm
