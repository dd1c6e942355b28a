// The Work Canvas view: rebuild at a size, zoom arithmetic, composition of the layers and the
// enlarged view with its grid.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "canvas/PixelGrid.h"
#include "engine/ColourModes.h"

namespace rm {

namespace {

constexpr int kMaxZoomLevel = 7;
constexpr int kMaxInflateSteps = 15;
constexpr int kMarginStep = 10;
// Room the window frame, panels and tool bars take around the paint surface.
constexpr int kFrameWidth = 70;
constexpr int kFrameHeight = 150;

}  // namespace

void TPixelForm::FormRedraw(int width, int height) {
  if (width != WorkBitmap.Width() || height != WorkBitmap.Height()) {
    Bitmap resized(width, height, BackgroundColour);
    const int w = std::min(width, WorkBitmap.Width());
    const int h = std::min(height, WorkBitmap.Height());
    for (int y = 0; y < h; ++y) std::copy(WorkBitmap.Row(y), WorkBitmap.Row(y) + w, resized.Row(y));
    WorkBitmap = std::move(resized);
  }
  FormRedraw();
}

void TPixelForm::FormRedraw() {
  const int mw = std::max(1, WorkBitmap.Width());
  const int mh = std::max(1, WorkBitmap.Height());
  if (NoMatrixMode) {
    Zoom = NormalZoom = 1;
  } else {
    // The largest enlargement up to 6 that fits the screen, at least 1 however large the canvas.
    int z = std::clamp(ScreenWidth / mw, 1, 6);
    while (z > 1 && z * mh > ScreenHeight - kFrameHeight) --z;
    z += InflateSteps;
    NormalZoom = z;
    if (z > 1 && ScreenWidth < z * mw + kFrameWidth) --z;
    Zoom = z;
  }
  CanvasWidth = WorkBitmap.Width();
  CanvasHeight = WorkBitmap.Height();
  ZoomLevel = 1;
  HalfZoom = Zoom / 2;

  ResizeImageForm(false);
  const std::size_t cells = static_cast<std::size_t>(CanvasWidth + 1) * static_cast<std::size_t>(CanvasHeight + 1);
  SelectedPixelTable.assign(cells, 0);
  ItemSelectionTable.assign(cells, 0);
  SavedItemSelectionTable.assign(cells, 0);

  ScrollX = ScrollY = 1;
  ScrollMaxX = std::max(1, CanvasWidth);
  ScrollMaxY = std::max(1, CanvasHeight);

  CompositeBitmap = ViewShown ? Bitmap(CanvasWidth, CanvasHeight, kWhite) : Bitmap();
  // SelectionOriginal is held at the floating selection's own size and lives as long as the
  // selection: a rebuild that finds one floating (the view following a canvas replaced under
  // it) must not wipe the picture the threshold starts from.
  if (!FloatingSelection) SelectionOriginal = Bitmap();
  CutView();
  if (NoMatrixMode) PictureModeScale();
}

// "Zoom In" is a fixed window moving over a fixed-scale view: the paint surface keeps the size
// the rebuild gave it, and a larger Zoom shows fewer canvas cells in it. ViewBitmap holds only
// the cells that fall in the window (a partly visible last cell included), starting at the
// scroll position, so a deep zoom on a large canvas never enlarges the whole canvas.
void TPixelForm::CutView() {
  const int z = std::max(1, Zoom);
  VisibleColumns = std::min(CanvasWidth, (PaintWidth + z - 1) / z);
  VisibleRows = std::min(CanvasHeight, (PaintHeight + z - 1) / z);
  ScrollX = std::clamp(ScrollX, 1, std::max(1, CanvasWidth - VisibleColumns + 1));
  ScrollY = std::clamp(ScrollY, 1, std::max(1, CanvasHeight - VisibleRows + 1));
  if (!ViewShown)
    ViewBitmap = Bitmap();
  else if (ViewBitmap.Width() != VisibleColumns * z || ViewBitmap.Height() != VisibleRows * z)
    ViewBitmap = Bitmap(VisibleColumns * z, VisibleRows * z, kWhite);
  else
    ViewBitmap.Fill(kWhite);
}

void TPixelForm::ResizeImageForm(bool keepHeight) {
  PaintWidth = Zoom * WorkBitmap.Width();
  if (!keepHeight) PaintHeight = Zoom * WorkBitmap.Height();
}

void TPixelForm::ScrollTo(int x, int y) {
  ScrollX = x;
  ScrollY = y;
  CutView();
  CopyBitmapToCanvas();
}

void TPixelForm::PictureModeScale() {
  const int areaW = ScreenWidth - kFrameWidth - 2 * DisplayMargin;
  const int areaH = ScreenHeight - kFrameHeight - 2 * DisplayMargin;
  const int mw = std::max(1, WorkBitmap.Width());
  const int mh = std::max(1, WorkBitmap.Height());
  PictureScale = std::max(0.0, std::min(static_cast<double>(areaW) / mw, static_cast<double>(areaH) / mh));
}

std::string TPixelForm::ScaleText() const {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%.3f", PictureScale);
  return std::string(" Scale = x ") + buf;
}

// ---- zoom commands ---------------------------------------------------------------------------

bool TPixelForm::Inflate() {
  if (FloatingSelection || SelectionAnimated || InflateSteps >= kMaxInflateSteps) return false;
  if (InflateSteps == 0) SavedZoom = Zoom;
  ++InflateSteps;
  FormRedraw();
  CopyBitmapToCanvas();
  return true;
}

bool TPixelForm::Deflate() {
  if (FloatingSelection || SelectionAnimated || InflateSteps <= 0) return false;
  --InflateSteps;
  FormRedraw();
  CopyBitmapToCanvas();
  return true;
}

bool TPixelForm::InflateFactor(int steps) {
  if (FloatingSelection || SelectionAnimated) return false;
  if (steps != 15 && steps != 10 && steps != 5 && steps != 1) return false;
  if (InflateSteps == 0) SavedZoom = Zoom;
  InflateSteps = steps;
  FormRedraw();
  CopyBitmapToCanvas();
  return true;
}

// Grows the window to most of the screen's height. The steps stay within Inflate's own limit, so
// a flat canvas (a few rows) does not make a view of hundreds of megabytes.
void TPixelForm::InflateCanvas() {
  if (FloatingSelection || SelectionAnimated) return;
  const int mh = std::max(1, WorkBitmap.Height());
  const int before = InflateSteps;
  while ((Zoom + InflateSteps) * mh < ScreenHeight - 400 && InflateSteps + 2 <= kMaxInflateSteps) InflateSteps += 2;
  if (InflateSteps == before) return;
  if (before == 0) SavedZoom = Zoom;
  FormRedraw();
  CopyBitmapToCanvas();
}

// The rebuild without steps gives back the enlargement saved at the first inflate step; when the
// screen or the display size changed since, the rebuild's value is the one that fits now.
bool TPixelForm::NormalSize() {
  if (FloatingSelection || SelectionAnimated) return false;
  InflateSteps = 0;
  FormRedraw();
  CopyBitmapToCanvas();
  return true;
}

bool TPixelForm::ZoomIn() {
  if (NoMatrixMode) {
    if (DisplayMargin <= 0) return false;
    DisplayMargin = std::max(0, DisplayMargin - kMarginStep);
    PictureModeScale();
    return true;
  }
  if (ZoomLevel >= kMaxZoomLevel) return false;
  ++ZoomLevel;
  ++Zoom;
  HalfZoom = Zoom / 2;
  CutView();
  CopyBitmapToCanvas();
  return true;
}

bool TPixelForm::ZoomOut() {
  if (NoMatrixMode) {
    // The margin grows while some picture is left to show.
    const int areaW = ScreenWidth - kFrameWidth - 2 * (DisplayMargin + kMarginStep);
    const int areaH = ScreenHeight - kFrameHeight - 2 * (DisplayMargin + kMarginStep);
    if (areaW <= 0 || areaH <= 0) return false;
    DisplayMargin += kMarginStep;
    PictureModeScale();
    return true;
  }
  if (ZoomLevel <= 1 || Zoom <= 1) return false;
  --ZoomLevel;
  --Zoom;
  HalfZoom = Zoom / 2;
  CutView();
  CopyBitmapToCanvas();
  return true;
}

void TPixelForm::NoZoom() {
  if (NoMatrixMode) {
    DisplayMargin = 0;
    PictureModeScale();
    return;
  }
  ZoomLevel = 1;
  Zoom = NormalZoom;
  HalfZoom = Zoom / 2;
  ScrollX = ScrollY = 1;
  CutView();
  CopyBitmapToCanvas();
}

TPixelForm::CanvasPoint TPixelForm::CanvasMousePos(int screenX, int screenY) const {
  const int z = std::max(1, Zoom);
  // Division truncates toward zero; a point left of or above the surface belongs to the cell
  // before it, so the cell is put right by the boundary test.
  auto cell = [z](int s) {
    int c = s / z;
    if (s < c * z) --c;
    if (s >= (c + 1) * z) ++c;
    return c;
  };
  return {cell(screenX) + ScrollX - 1, cell(screenY) + ScrollY - 1};
}

// ---- the redraw ------------------------------------------------------------------------------

void TPixelForm::LayBitmap(const Bitmap& from, int left, int top, bool andMode) {
  const int x0 = std::max(0, left), x1 = std::min(CompositeBitmap.Width(), left + from.Width());
  const int y0 = std::max(0, top), y1 = std::min(CompositeBitmap.Height(), top + from.Height());
  if (x0 >= x1) return;
  const std::size_t n = static_cast<std::size_t>(x1 - x0);
  for (int y = y0; y < y1; ++y) {
    const std::uint32_t* src = from.Row(y - top) + (x0 - left);
    std::uint32_t* dst = CompositeBitmap.Row(y) + x0;
    if (andMode)
      for (std::size_t i = 0; i < n; ++i) dst[i] &= src[i];
    else
      std::memcpy(dst, src, n * sizeof(std::uint32_t));
  }
}

void TPixelForm::CopyBitmapToCanvas() {
  if (!ViewShown) return;
  if (CompositeBitmap.Width() != WorkBitmap.Width() || CompositeBitmap.Height() != WorkBitmap.Height() ||
      ItemSelectionTable.empty())
    FormRedraw();  // the picture was replaced at another size: the view follows it
  if (FloatingSelection)
    StatusPanel4 = std::to_string(SelectionLeft) + "," + std::to_string(SelectionTop) + "," +
                   std::to_string(SelectionLeft + SelectionBitmap.Width() - 1) + "," +
                   std::to_string(SelectionTop + SelectionBitmap.Height() - 1);

  const bool transferShown = TransferLayerExists && TransferLayerVisible && !TransferLayerBitmap.Empty();
  if (transferShown && TransferLayerLowest) {
    // The layer's uncovered rest is white, which lets WorkBitmap through unchanged.
    CompositeBitmap.Fill(kWhite);
    LayBitmap(TransferLayerBitmap, TransferLeft, TransferTop, false);
    LayBitmap(WorkBitmap, 0, 0, true);
  } else {
    LayBitmap(WorkBitmap, 0, 0, false);
    if (transferShown) LayBitmap(TransferLayerBitmap, TransferLeft, TransferTop, true);
  }
  // Layers still to come lie here, in this order: the touch or field background (plain copy of
  // WorkBitmap over it), the text layer and speech bubble (AND), the animation ghost (AND).
  if (FloatingSelection && !SelectionBitmap.Empty())
    LayBitmap(SelectionBitmap, SelectionLeft, SelectionTop, CopyTransparent);

  EnlargeIntoView();
  // The contiguous selection, cell by cell, inside the visible cut.
  const int z = std::max(1, Zoom);
  const int cx0 = ScrollX - 1, cy0 = ScrollY - 1;
  for (int c = 0; c < VisibleColumns; ++c)
    for (int r = 0; r < VisibleRows; ++r) {
      if (TableCell(ItemSelectionTable, cx0 + c, cy0 + r) == 0) continue;
      for (int y = r * z; y < (r + 1) * z; ++y)
        std::fill_n(ViewBitmap.Row(y) + c * z, z, static_cast<std::uint32_t>(kItemSelectionColour));
    }
  // Frames and numbers of touch regions and canvas subdivisions are drawn here once they exist.
  DrawGrid();
}

// One rectangle fill per cell: each canvas row is enlarged once, then the enlarged row is copied
// to the other Zoom - 1 screen rows of the cell.
void TPixelForm::EnlargeIntoView() {
  const int z = std::max(1, Zoom);
  const int cx0 = ScrollX - 1, cy0 = ScrollY - 1;
  const std::size_t viewW = static_cast<std::size_t>(ViewBitmap.Width());
  for (int r = 0; r < VisibleRows; ++r) {
    const std::uint32_t* src = CompositeBitmap.Row(cy0 + r) + cx0;
    std::uint32_t* first = ViewBitmap.Row(r * z);
    if (z == 1) {
      std::memcpy(first, src, viewW * sizeof(std::uint32_t));
      continue;
    }
    std::uint32_t* d = first;
    for (int c = 0; c < VisibleColumns; ++c, d += z) std::fill_n(d, z, src[c]);
    for (int k = 1; k < z; ++k) std::memcpy(ViewBitmap.Row(r * z + k), first, viewW * sizeof(std::uint32_t));
  }
}

int TPixelForm::PageLineMultiple() const {
  if (session_.Monochrome && !session_.Not6bit) return 6;
  return PagingMultiple(session_.ModeNumber);
}

// Grid lines lie on the first screen column and row of every cell but the first, so the picture's
// outer edge stays free; page lines lie where a data unit of the Paging Scheme begins.
void TPixelForm::DrawGrid() {
  if (NoMatrixMode) return;
  const int z = std::max(1, Zoom);
  const int vw = ViewBitmap.Width(), vh = ViewBitmap.Height();
  auto column = [&](int vx, Colour colour) {
    for (int y = 0; y < vh; ++y) ViewBitmap.Row(y)[vx] = static_cast<std::uint32_t>(colour);
  };
  auto row = [&](int vy, Colour colour) { std::fill_n(ViewBitmap.Row(vy), vw, static_cast<std::uint32_t>(colour)); };
  if (GridVisible && Zoom + InflateSteps > 2) {
    for (int c = 1; c < VisibleColumns; ++c) column(c * z, kGridColour);
    for (int r = 1; r < VisibleRows; ++r) row(r * z, kGridColour);
  }
  if (PagingSchemeVisible) {
    const int m = PageLineMultiple();
    if (m <= 1) return;
    const int cx0 = ScrollX - 1, cy0 = ScrollY - 1;
    if (IsHorizontal(session_.Direction)) {
      for (int c = 1; c < VisibleColumns; ++c)
        if ((cx0 + c) % m == 0) column(c * z, kPagingLineColour);
    } else {
      for (int r = 1; r < VisibleRows; ++r)
        if ((cy0 + r) % m == 0) row(r * z, kPagingLineColour);
    }
  }
}

void TPixelForm::CopyCanvasToBitmap() {
  if (MotionPreparing || !ViewShown) return;
  const bool shown = TransferLayerVisible;
  TransferLayerVisible = false;
  CopyBitmapToCanvas();
  WorkBitmap = CompositeBitmap;
  TransferLayerVisible = shown;
  CopyBitmapToCanvas();
}

// ---- size rules and caption ------------------------------------------------------------------

int PagingMultiple(int modeNumber) { return ModeRow(modeNumber).pagingMultiple; }

PagingPanel PagingPanelText(int multiple, bool horizontal) {
  PagingPanel p;
  p.scheme = horizontal ? "Horizontal paging scheme" : "Vertical paging scheme";
  const std::string n = std::to_string(multiple);
  if (multiple <= 1)
    p.rule = "( Width = free , Height = free )";
  else if (horizontal)
    p.rule = "( Width = multiple of " + n + " , Height = free )";
  else
    p.rule = "( Height = multiple of " + n + " , Width = free )";
  return p;
}

std::string_view DepthTag(int modeNumber) { return ModeRow(modeNumber).depthTag; }

std::string_view ColoursTag(int modeNumber) { return ModeRow(modeNumber).coloursTag; }

std::string TPixelForm::FormCaption(const CaptionState& state) const {
  std::string c = "Work Canvas > Graphic LCD Size > W x H = " + std::to_string(MatrixWidth()) + " x " +
                  std::to_string(MatrixHeight());
  c += " ";
  c += DepthTag(state.modeNumber);
  c += " ";
  c += ColoursTag(state.modeNumber);
  c += " ";
  if (state.vectorMode)
    c += " - Vector Output - ";
  else if (NoMatrixMode)
    c += ScaleText();
  else
    c += state.fileName;
  if (state.vectorMode) c += "   Vector Design Mode ";
  if (state.animationMode) c += "   Animation Mode ";
  return c;
}

SizeKeyResult CustomSizeKey(const std::string& typed, int pending, bool isWidth, int multiple) {
  SizeKeyResult r;
  long long v = 0;
  std::size_t i = 0;
  bool negative = false;
  if (i < typed.size() && (typed[i] == '-' || typed[i] == '+')) negative = typed[i++] == '-';
  const std::size_t digits = i;
  for (; i < typed.size() && typed[i] >= '0' && typed[i] <= '9'; ++i)
    v = std::min(v * 10 + (typed[i] - '0'), 1000000000LL);
  if (i == digits || i != typed.size()) {
    r.value = pending;
    r.fieldText = std::to_string(pending);
    return r;
  }
  if (negative) v = -v;
  const int limit = isWidth ? kMaxCustomWidth : kMaxCustomHeight;
  if (v > limit) {
    r.value = limit;
    r.fieldText = std::to_string(limit);
    r.beep = true;
    if (multiple > 1 && v % multiple != 0)
      r.message =
          isWidth ? " In horizontal mode, width must be a multiple of " + std::to_string(multiple) + " and <= 1024 !"
                  : " In vertical mode, height must be a multiple of " + std::to_string(multiple) + " and <= 768 !";
    return r;
  }
  r.value = static_cast<int>(v);
  r.fieldText = typed;
  return r;
}

}  // namespace rm
