#include "shell/ControllerSetup.h"

#include "shell/Application.h"

namespace rm {

bool ApplyControllerRequest(Application& app, const ControllerRequest& request, std::string& error) {
  ConversionSession& s = app.session;
  if (!SetDataRearrangement(s, request.rearrange, error)) return false;
  const ControllerPreset* p = request.preset;
  if (!p) return true;
  if (!request.widthChosen && (s.Output == OutputKind::Bits16 || s.Output == OutputKind::Bits32))
    app.mainForm.Data8bitClick();
  if (request.modeChosen) return true;
  s.NegativeOutput = false;
  if (!p->whiteIsOn) {
    if (s.InvertGrayPalette) app.mainForm.InvertGrayscalePalette();
    return true;
  }
  if (s.Monochrome) {
    Bitmap& b = app.pixelForm.WorkBitmap;
    for (int y = 0; y < b.Height(); ++y) {
      std::uint32_t* row = b.Row(y);
      for (int x = 0; x < b.Width(); ++x) row[x] = row[x] == kBlack ? kWhite : kBlack;
    }
  } else if (s.Grayscale && !s.InvertGrayPalette) {
    app.mainForm.InvertGrayscalePalette();
  }
  return true;
}

}  // namespace rm
