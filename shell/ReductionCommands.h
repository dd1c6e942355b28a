#pragma once

namespace rm {

class Application;

// The Work Canvas window's threshold slider and dithering commands.
class ReductionCommands {
 public:
  explicit ReductionCommands(Application& app) : app_(app) {}

  // The threshold slider moved to `position` (0 to 255). While the mouse button is held only the
  // number follows; on release the selection (the whole canvas when there is none) is
  // thresholded at that position.
  void BWAdjustementTool1BWTrackBarChange(int position, bool mouseButtonHeld);
  // ">MID": the slider to the middle, applied.
  void BWThresholdZeroButtonClick();
  // "Dithering": dithers the selection by the Dithering menu; with no selection asks whether to
  // take the whole canvas. False when nothing was dithered.
  bool PerformDitheringParametersbelow1Click();
  // "Convert Work Canvas to Black and White by Dithering": the whole canvas, without asking.
  bool ConvertWorkCanvasToBWByDithering();
  // "OK Paste Layer": pastes the selection, asking first when a monochrome conversion is
  // pending. True when it was pasted.
  bool OKPasteLayerClick();

 private:
  Application& app_;
};

}  // namespace rm
