#pragma once

namespace rm {

class Application;

// The Work Canvas view's commands; here the Convert button.
class TImageForm {
 public:
  explicit TImageForm(Application& app) : app_(app) {}
  // The Convert command. False when it stopped before or during the conversion.
  bool EncodeButtonClick();

  // ---- Canvas view commands: zoom, history, Image Collection ----
  // (CanvasCommands.cpp) False when refused or when nothing changed.
  bool UndoButtonClick();
  bool RedoButtonClick();
  bool ZoomInButtonClick();
  bool ZoomOutButtonClick();
  void ZoomOffButtonClick();
  bool BiggerButtonClick();
  bool SmallerButtonClick();
  bool NormalSizeButtonClick();
  bool InflatefactorButtonClick(int steps);  // 15, 10, 5 or 1
  // Puts back the picture stored at the last import.
  bool ReloadOriginalImageClick();
  // Image Collection slots are numbered 1 to 8.
  void StoreImageCollection(int slot);
  bool TakeImageCollection(int slot);
  bool UndoIMCClick();
  void DeleteImageCollection();
  // Reads the slots' action memos "Image0.act" .. "Image7.act" from the folder named after the
  // active project, beside it. A missing file leaves its memo as it was.
  void LoadImageCollectionMemos();
  // Opens the last artwork again after asking. False when there is none or the user said no.
  bool ReloadLastWorkCanvasBitmapClick();

  // ---- end of the canvas view commands ----

  // ---- Threshold slider and dithering commands ----
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

  // ---- end of the threshold and dithering commands ----

 private:
  Application& app_;
};

}  // namespace rm
