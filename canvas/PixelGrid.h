#pragma once
#include <string>
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
  void FormRedraw(int width, int height);

  // The floating selection: a picture lying over the canvas at SelectionLeft, SelectionTop until
  // it is pasted into WorkBitmap or dropped. Parts beyond the canvas edges are clipped at paste.
  void FloatSelection(const Bitmap& picture, int left, int top);
  void PasteSelection();
  void DiscardSelection();

  // ---- Canvas model: view, zoom, history and Image Collection ----

  // ---- end of the canvas model ----

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
  // The transfer layer is shown; the threshold slider is not offered over it.
  bool TransferLayerVisible = false;
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
  // Where a change of the selection is shown; the view's redraw comes here.
  void ReductionRedraw();
  void CheckMonochrome();
  void CheckGrayOrPalette(bool showMessages);
  // The mode's table and the size the one to one mapping steps by.
  std::vector<Colour> ReductionTable() const;
  int ReductionModeColours() const;

 public:
  // ---- end of the reduction ----
};

}  // namespace rm
