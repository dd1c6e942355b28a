#pragma once
#include "shell/ReductionCommands.h"

namespace rm {

class Application;

// The Work Canvas view's commands; here the Convert button.
class TImageForm {
 public:
  explicit TImageForm(Application& app) : app_(app), reduction_(app) {}
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

  // ---- Threshold slider and dithering commands (ReductionCommands) ----
  void BWAdjustementTool1BWTrackBarChange(int position, bool mouseButtonHeld) {
    reduction_.BWAdjustementTool1BWTrackBarChange(position, mouseButtonHeld);
  }
  void BWThresholdZeroButtonClick() { reduction_.BWThresholdZeroButtonClick(); }
  bool PerformDitheringParametersbelow1Click() { return reduction_.PerformDitheringParametersbelow1Click(); }
  bool ConvertWorkCanvasToBWByDithering() { return reduction_.ConvertWorkCanvasToBWByDithering(); }
  bool OKPasteLayerClick() { return reduction_.OKPasteLayerClick(); }

 private:
  Application& app_;
  ReductionCommands reduction_;
};

}  // namespace rm
