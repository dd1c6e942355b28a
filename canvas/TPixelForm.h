#pragma once
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "canvas/CanvasHistory.h"
#include "canvas/CanvasReduction.h"
#include "canvas/PaintTools.h"
#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/Reduction.h"
#include "engine/UiPort.h"

namespace rm {

// The Work Canvas: one 24 bit bitmap at the display's size, in every colour mode, and the
// floating selection that may lie over it. Its history and the reduction of the selection to
// the mode's colours are parts of their own, reached through the names below.
class TPixelForm {
  // The parts come first: the names that reach their state are bound to them.
  CanvasHistory history_;
  CanvasReduction reduction_;

 public:
  // The canvas asks the user through `ui` and reads the colour mode and palette of `session`.
  TPixelForm(UiPort& ui, ConversionSession& session)
      : history_(*this), reduction_(*this, ui, session), ui_(ui), session_(session), WorkBitmap(128, 64, kWhite) {}
  TPixelForm(const TPixelForm&) = delete;
  TPixelForm& operator=(const TPixelForm&) = delete;

  int MatrixWidth() const { return WorkBitmap.Width(); }
  int MatrixHeight() const { return WorkBitmap.Height(); }

  // Takes a picture as the canvas; the canvas takes the picture's size.
  void SetCanvas(const Bitmap& picture) { WorkBitmap = picture; }
  void ClearCanvas() { WorkBitmap.Fill(BackgroundColour); }

  // True when the canvas holds more than one colour, or one that is not the background.
  bool HasArtwork() const;
  // True when every pixel is exactly black or white.
  bool IsBlackAndWhite() const;

  // Gives the canvas a new size. What fits of the picture stays at its place from the top left
  // corner; new room takes the background colour. Nothing is scaled: a size change is a change
  // of display, and the user decides what becomes of the picture.
  // Then the whole view is rebuilt: tables, zoom, scroll, composite and view bitmaps.
  void FormRedraw(int width, int height);

  // The floating selection: a picture lying over the canvas at SelectionLeft, SelectionTop until
  // it is pasted into WorkBitmap or dropped. Parts beyond the canvas edges are clipped at paste.
  void FloatSelection(const Bitmap& picture, int left, int top);
  void FloatSelection(Bitmap&& picture, int left, int top);
  void PasteSelection();
  // True when canvas cell (x, y) lies on the floating selection.
  bool SelectionContains(int x, int y) const;
  // Moves the floating selection so that its top left corner lies on canvas cell (left, top)
  // (it may stand partly or wholly outside the canvas) and composes the view again.
  void MoveSelection(int left, int top);
  void DiscardSelection();

  // ---- Canvas model: view, zoom, history and Image Collection ----
  // The screen and Picture Mode as the shell knows them; set before each FormRedraw.
  int ScreenWidth = 1920;
  int ScreenHeight = 1080;
  bool NoMatrixMode = false;

  int CanvasWidth = 0;
  int CanvasHeight = 0;
  int Zoom = 1;          // screen pixels per canvas pixel
  int NormalZoom = 1;    // Zoom as the last rebuild computed it: target of "No Zoom"
  int SavedZoom = 1;     // Zoom before the first inflate step: target of "Normal Size"
  int InflateSteps = 0;  // extra zoom added to the window's size
  int ZoomLevel = 1;     // 1 to 7, counts "Zoom In"
  int HalfZoom = 0;
  int PaintWidth = 0, PaintHeight = 0;  // the paint surface (window) in screen pixels
  // Scroll positions start at 1; the view shows canvas columns from ScrollX - 1 on.
  int ScrollX = 1, ScrollY = 1, ScrollMaxX = 1, ScrollMaxY = 1;
  bool GridVisible = false;
  bool PagingSchemeVisible = false;
  bool SelectionAnimated = false;  // the floating selection is being moved by a motion
  bool MotionPreparing = false;    // a motion is being prepared: the canvas is not committed
  bool Frozen = false;             // the view is built but not handed to the paint surface
  // Picture Mode: a free margin around the picture, the picture scaled into what is left.
  int DisplayMargin = 0;
  double PictureScale = 1.0;

  // Off in a program without a window, such as the command line: the layers are then never
  // composed or enlarged, which spares two canvas-sized pictures and their copies on every change.
  // What is drawn must then go to WorkBitmap itself.
  bool ViewShown = true;
  Bitmap CompositeBitmap;  // WorkBitmap with every layer over it, at canvas size
  // The enlarged view. It covers the visible cut only: from canvas column ScrollX - 1 and row
  // ScrollY - 1, VisibleColumns x VisibleRows cells of Zoom x Zoom screen pixels. At ZoomLevel 1
  // that is the whole canvas.
  Bitmap ViewBitmap;
  int VisibleColumns = 0, VisibleRows = 0;

  // Byte per pixel tables indexed [x][y], (CanvasWidth + 1) x (CanvasHeight + 1).
  std::vector<std::uint8_t> SelectedPixelTable, ItemSelectionTable, SavedItemSelectionTable;
  std::uint8_t& TableCell(std::vector<std::uint8_t>& table, int x, int y) {
    return table[static_cast<std::size_t>(x) * static_cast<std::size_t>(CanvasHeight + 1) +
                 static_cast<std::size_t>(y)];
  }

  // The transfer layer: absent until created, drawn at its own offset.
  bool TransferLayerExists = false;
  bool TransferLayerVisible = false;
  // Lowest: the layer lies under WorkBitmap, which is laid over it by AND (white shows it).
  // Otherwise it is laid by AND over WorkBitmap.
  bool TransferLayerLowest = true;
  Bitmap TransferLayerBitmap;
  int TransferLeft = 0, TransferTop = 0;
  bool CopyTransparent = false;  // the floating selection is laid by AND: its white is clear
  std::string StatusPanel4;      // the selection's bounds while one floats

  // The paint colours of the view.
  static constexpr Colour kGridColour = 0xC0C0C0;
  static constexpr Colour kPagingLineColour = 0xFF0000;     // blue
  static constexpr Colour kItemSelectionColour = 0x00A5FF;  // orange

  // Rebuilds at the current WorkBitmap size; FormRedraw(w, h) rebuilds at a new one.
  void FormRedraw();
  // Sizes the paint surface to Zoom times the canvas; `keepHeight` leaves its height as it is
  // (the window is only widened or narrowed).
  void ResizeImageForm(bool keepHeight);
  // The redraw: composes CompositeBitmap and enlarges it into ViewBitmap.
  void CopyBitmapToCanvas();
  // Commits what was drawn on CompositeBitmap into WorkBitmap, never baking a visible transfer
  // layer in.
  void CopyCanvasToBitmap();
  // Multiple of pixels of the page lines: 6 in the 6-bit monochrome mode, else PagingMultiple.
  int PageLineMultiple() const;

  // Zoom commands. False when refused or when nothing changed.
  bool Inflate();
  bool Deflate();
  bool InflateFactor(int steps);  // the popup: 15, 10, 5 or 1 steps at once
  void InflateCanvas();
  bool NormalSize();
  bool ZoomIn();
  bool ZoomOut();
  void NoZoom();
  // Moves the view over the canvas; positions are clamped to 1 .. ScrollMaxX / ScrollMaxY.
  void ScrollTo(int x, int y);
  // Screen position on the paint surface to canvas position (may be outside the canvas).
  struct CanvasPoint {
    int x, y;
  };
  CanvasPoint CanvasMousePos(int screenX, int screenY) const;
  // " Scale = x " and the Picture Mode ratio with 3 decimals.
  std::string ScaleText() const;

  // History and Image Collection (CanvasHistory).
  static constexpr int kMaxUndo = CanvasHistory::kMaxUndo;
  int& UndoIndex = history_.UndoIndex;
  int& UndoTop = history_.UndoTop;
  int& UndoBase = history_.UndoBase;
  bool& UndoEnabled = history_.UndoEnabled;
  bool& RedoEnabled = history_.RedoEnabled;
  int UndoLength() const { return history_.UndoLength(); }
  void CopyCanvasToSaveTable() { history_.CopyCanvasToSaveTable(); }
  void CopySaveTableToCanvas() { history_.CopySaveTableToCanvas(); }
  void ResetHistory() { history_.ResetHistory(); }
  Bitmap UndoEntry(int index) const { return history_.UndoEntry(index); }
  // The picture as it was imported, for "Reload Original Image".
  void StoreOriginalImage(const Bitmap& picture) { InputBitmap = picture; }
  Bitmap InputBitmap;
  static constexpr int kCollectionSlots = CanvasHistory::kCollectionSlots;
  static constexpr Colour kCollectionGray = CanvasHistory::kCollectionGray;
  using CollectionSlot = CanvasHistory::CollectionSlot;
  CollectionSlot (&CollectionSlots)[kCollectionSlots] = history_.CollectionSlots;
  Bitmap (&CollectionPrevious)[kCollectionSlots] = history_.CollectionPrevious;
  int& LastCollectionSlot = history_.LastCollectionSlot;
  void StoreCollection(int slot) { history_.StoreCollection(slot); }
  bool TakeCollection(int slot) { return history_.TakeCollection(slot); }
  bool UndoCollection() { return history_.UndoCollection(); }
  void DeleteCollection() { history_.DeleteCollection(); }
  // The window caption: "Work Canvas > Graphic LCD Size > W x H = " W " x " H, the mode's
  // depth and colour tags, then the file name (" - Vector Output - " in vector mode, the scale
  // in Picture Mode) and the words of an active vector or animation mode.
  struct CaptionState {
    int modeNumber = 1;
    std::string fileName;
    bool vectorMode = false;
    bool animationMode = false;
  };
  std::string FormCaption(const CaptionState& state) const;
  // ---- end of the canvas model ----

 private:
  void LayBitmap(const Bitmap& from, int left, int top, bool andMode);
  void EnlargeIntoView();
  void DrawGrid();
  void CutView();
  void PictureModeScale();

 public:
 private:
  UiPort& ui_;
  ConversionSession& session_;

 public:
  Bitmap WorkBitmap;
  Colour BackgroundColour = kWhite;
  bool FloatingSelection = false;
  Bitmap SelectionBitmap;
  int SelectionLeft = 0;
  int SelectionTop = 0;
  bool SelectionReducedToBW = true;
  bool ColourPickerActive = false;
  // The floating selection as it was imported or cut, before any threshold or dither: the
  // threshold slider always starts again from it.
  Bitmap SelectionOriginal;

  // ---- Reduction to the mode's colours: threshold, dither, palette (CanvasReduction) ----
  void CheckColorsSelection(bool showMessages) { reduction_.CheckColorsSelection(showMessages); }
  bool& ThresholdPending = reduction_.ThresholdPending;
  bool& DitherDone = reduction_.DitherDone;
  Colour& PendingColour = reduction_.PendingColour;
  int& BWTrackBar = reduction_.BWTrackBar;
  std::string& BlackWhiteEdit = reduction_.BlackWhiteEdit;
  long double& ThresholdLevel = reduction_.ThresholdLevel;
  bool& ThresholdVisible = reduction_.ThresholdVisible;
  bool& ThresholdApplied = reduction_.ThresholdApplied;
  bool& SelectionOriginalGray = reduction_.SelectionOriginalGray;
  long long& ThresholdBlackPixels = reduction_.ThresholdBlackPixels;
  DitherMode& DitherChoice = reduction_.DitherChoice;
  ColorReduction& ColorReductionChoice = reduction_.ColorReductionChoice;
  bool ThresholdON() { return reduction_.ThresholdON(); }
  void ThresholdOFF() { reduction_.ThresholdOFF(); }
  void BalanceGreyScale() { reduction_.BalanceGreyScale(); }
  void DoGrayscale(Bitmap& bitmap, bool partial) { reduction_.DoGrayscale(bitmap, partial); }
  void SelectionIsFullImage() { reduction_.SelectionIsFullImage(); }
  void DitherSelectionBitmap() { reduction_.DitherSelectionBitmap(); }
  bool ReduceToPalette(Bitmap& bitmap, bool reduce) { return reduction_.ReduceToPalette(bitmap, reduce); }
  using PasteOutcome = CanvasReduction::PasteOutcome;
  PasteOutcome PasteLayerButtonClick() { return reduction_.PasteLayerButtonClick(); }
  // ---- end of the reduction ----

  // The drawing tools, driven by the paint surface's mouse (PaintTools).
  PaintTools Tools{*this, ui_};
  void Escape() { Tools.Escape(); }
};

}  // namespace rm
