#pragma once
#include <string>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/Reduction.h"
#include "engine/UiPort.h"

namespace rm {

class TPixelForm;

// The reduction of the floating selection to the mode's colours: threshold, dither, palette.
class CanvasReduction {
 public:
  CanvasReduction(TPixelForm& canvas, UiPort& ui, ConversionSession& session)
      : canvas_(canvas), ui_(ui), session_(session) {}

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
  TPixelForm& canvas_;
  UiPort& ui_;
  ConversionSession& session_;

  void CheckMonochrome();
  void CheckGrayOrPalette(bool showMessages);
  // The mode's table and the size the one to one mapping steps by.
  std::vector<Colour> ReductionTable() const;
  int ReductionModeColours() const;
};

}  // namespace rm
