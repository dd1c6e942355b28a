#pragma once
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/Reduction.h"
#include "engine/UiPort.h"

namespace rm {

// The Work Canvas: one 24 bit bitmap at the display's size, in every colour mode, and the
// floating selection that may lie over it.
class TPixelForm {
 public:
  // The canvas asks the user through `ui` and reads the colour mode and palette of `session`.
  TPixelForm(UiPort& ui, ConversionSession& session) : ui_(ui), session_(session), WorkBitmap(128, 64, kWhite) {}

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
    return table[static_cast<std::size_t>(x) * static_cast<std::size_t>(CanvasHeight + 1) + static_cast<std::size_t>(y)];
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
  static constexpr Colour kPagingLineColour = 0xFF0000;      // blue
  static constexpr Colour kItemSelectionColour = 0x00A5FF;   // orange

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

  // History. Entries share the rows they have in common with the entry below them.
  static constexpr int kMaxUndo = 10000;
  int UndoIndex = -1, UndoTop = -1, UndoBase = 0;
  bool UndoEnabled = false, RedoEnabled = false;
  int UndoLength() const { return static_cast<int>(undoStack_.size()); }
  void CopyCanvasToSaveTable();
  void CopySaveTableToCanvas();
  // A new start of the history: one entry, the canvas as it is.
  void ResetHistory();
  // The picture as it was imported, for "Reload Original Image".
  void StoreOriginalImage(const Bitmap& picture) { InputBitmap = picture; }
  Bitmap InputBitmap;
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

  // ---- Reduction to the mode's colours: threshold, dither, palette ----
  // Decides what the floating selection needs in the current colour mode: in monochrome it
  // raises ThresholdPending (and the threshold slider) when the selection holds other colours
  // than black and white; in the gray and palette modes it reduces the selection to the mode's
  // colours, asking whether to convert or reduce when the picture has few colours.
  void CheckColorsSelection(bool showMessages);
  bool ThresholdPending = false;
  bool DitherDone = false;
  // The first colour the monochrome check found that is neither black nor white.
  Colour PendingColour = kWhite;

  // The threshold slider: its position (0 to 255), the same as text, and the compare value.
  int BWTrackBar = 127;
  std::string BlackWhiteEdit = "127";
  long double ThresholdLevel = 127 * 65792.0L;
  bool ThresholdVisible = false;
  // True once the slider has been applied to the current selection.
  bool ThresholdApplied = false;
  // SelectionOriginal has already been made gray for the current selection.
  bool SelectionOriginalGray = false;
  long long ThresholdBlackPixels = 0;
  // The Dithering menu's choices.
  DitherMode DitherChoice = DitherMode::FloydSteinberg;
  ColorReduction ColorReductionChoice = ColorReduction::Monochrome;

  // Shows or hides the slider; ThresholdON refuses while the transfer layer is visible.
  bool ThresholdON();
  void ThresholdOFF();
  // Thresholds the gray of SelectionOriginal into SelectionBitmap at ThresholdLevel
  // (monochrome); other modes take SelectionOriginal back unchanged.
  void BalanceGreyScale();
  // Makes `bitmap` gray; `partial` limits it to the part of the selection over the canvas.
  void DoGrayscale(Bitmap& bitmap, bool partial);
  // The whole canvas becomes the floating selection (the source of the threshold).
  void SelectionIsFullImage();
  // Dithers the selection with the menu's choices, without questions.
  void DitherSelectionBitmap();
  // Reduces `bitmap` to the mode's palette or gray table: nearest colour, unless `reduce`, which
  // maps its colours one to one. False when Esc stopped it or the mode has no table.
  bool ReduceToPalette(Bitmap& bitmap, bool reduce);
  // The paste command of the front ends. In monochrome with a conversion pending and neither
  // threshold nor dither done, asks first: "Ok" pastes as it stands, "Cancel" drops the
  // selection, "Dithering" dithers it and leaves it floating.
  enum class PasteOutcome { Pasted, Cancelled, Dithered, NothingToPaste };
  PasteOutcome PasteLayerButtonClick();

 private:
  void CheckMonochrome();
  void CheckGrayOrPalette(bool showMessages);
  // The mode's table and the size the one to one mapping steps by.
  std::vector<Colour> ReductionTable() const;
  int ReductionModeColours() const;

 public:
  // ---- end of the reduction ----
};

// ---- Canvas model: size rules ----
// The size a colour mode packs by: a width (horizontal scheme) or height (vertical scheme) that
// is not a multiple of it cannot be packed into whole data units. 1 when any size packs.
int PagingMultiple(int modeNumber);
// The panel lines telling the size rule: the scheme's name and the rule, e.g. "Vertical paging
// scheme" and "( Height = multiple of 8 , Width = free )".
struct PagingPanel {
  std::string scheme;
  std::string rule;
};
PagingPanel PagingPanelText(int multiple, bool horizontal);
// The depth and colour tags of a colour mode in the caption; empty for an unknown mode.
std::string_view DepthTag(int modeNumber);
std::string_view ColoursTag(int modeNumber);

// One keystroke in a custom size field. `typed` is the field's new text, `pending` the value it
// held. Text that is no number puts the pending value back; a value above `limit` becomes the
// limit with a beep, and with `message` when the paging multiple holds for this side and the
// typed value is no multiple of it.
struct SizeKeyResult {
  int value = 0;
  std::string fieldText;
  bool beep = false;
  std::string message;  // empty: none; shown with the title "Error"
};
// `multiple` is the paging multiple in force for this side (1 when the side is free).
SizeKeyResult CustomSizeKey(const std::string& typed, int pending, bool isWidth, int multiple);
constexpr int kMaxCustomWidth = 1024;
constexpr int kMaxCustomHeight = 768;
// ---- end of the size rules ----

}  // namespace rm
