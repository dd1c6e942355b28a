// The threshold slider and the dithering commands of the Work Canvas view.
#include <algorithm>

#include "engine/Reduction.h"
#include "shell/Application.h"

namespace rm {

void ReductionCommands::BWAdjustementTool1BWTrackBarChange(int position, bool mouseButtonHeld) {
  TPixelForm& canvas = app_.pixelForm;
  if (canvas.TransferLayerVisible) return;
  position = std::clamp(position, 0, 255);
  canvas.BWTrackBar = position;
  canvas.BlackWhiteEdit = std::to_string(position);
  // Dragging only moves the number; the picture follows when the button is let go, so a long
  // drag does not threshold the picture at every step.
  if (mouseButtonHeld) return;
  if (!canvas.FloatingSelection) canvas.SelectionIsFullImage();
  canvas.ThresholdON();
  canvas.ThresholdLevel = ThresholdLevelFor(position, 255);
  canvas.BalanceGreyScale();
  app_.mainForm.StatusBarAndLog("Black/white balance changed, paste selection when ready");
}

void ReductionCommands::BWThresholdZeroButtonClick() { BWAdjustementTool1BWTrackBarChange(255 / 2, false); }

namespace {

// The whole canvas becomes the selection, in monochrome when the dither makes black and white.
// The canvas is taken first: the change to monochrome may clear it.
bool SelectWholeCanvasForDithering(Application& app) {
  TPixelForm& canvas = app.pixelForm;
  const Bitmap whole = canvas.WorkBitmap;
  if (canvas.ColorReductionChoice == ColorReduction::Monochrome && !app.session.Monochrome) {
    app.mainForm.SetColourMode(1);
    if (!app.session.Monochrome) return false;
  }
  canvas.SelectionIsFullImage();
  canvas.FloatSelection(whole, 0, 0);
  return true;
}

}  // namespace

bool ReductionCommands::PerformDitheringParametersbelow1Click() {
  // An animation dithers its frames through its own commands.
  if (app_.globals.AnimationMode) return false;
  TPixelForm& canvas = app_.pixelForm;
  if (!canvas.FloatingSelection) {
    const std::string answer =
        app_.ui.MessageDlg(" No area selected \r Select Whole Work Canvas and perform Dithering ? ", "Dithering",
                           DlgType::Confirmation, {"Yes", "No"});
    if (answer != "Yes") return false;
    if (!SelectWholeCanvasForDithering(app_)) return false;
  }
  app_.usage.Add("idith");
  canvas.DitherSelectionBitmap();
  return true;
}

bool ReductionCommands::ConvertWorkCanvasToBWByDithering() {
  if (app_.globals.AnimationMode) return false;
  TPixelForm& canvas = app_.pixelForm;
  if (canvas.FloatingSelection) {
    app_.ui.MessageDlg(" Please paste selection layer first ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  if (!SelectWholeCanvasForDithering(app_)) return false;
  app_.usage.Add("idith");
  canvas.DitherSelectionBitmap();
  return true;
}

bool ReductionCommands::OKPasteLayerClick() {
  const TPixelForm::PasteOutcome outcome = app_.pixelForm.PasteLayerButtonClick();
  if (outcome == TPixelForm::PasteOutcome::Dithered) app_.usage.Add("idith");
  if (outcome != TPixelForm::PasteOutcome::Pasted) return false;
  // A pasted picture is an edit the user can take back.
  app_.pixelForm.CopyCanvasToSaveTable();
  app_.globals.ArtworkSaved = false;
  return true;
}

}  // namespace rm
