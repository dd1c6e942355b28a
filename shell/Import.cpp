// Graphics import: a picture file becomes a floating selection over the Work Canvas.
#include "shell/Application.h"

namespace rm {

bool TMainForm::OpenPic(const std::string& fileName) {
  if (!app_.codecs) return false;
  Bitmap picture;
  std::string error;
  if (!app_.codecs->Load(fileName, picture, error)) {
    app_.ui.MessageDlg(error, "Loading a Graphic Error", DlgType::Error, {"OK"});
    return false;
  }
  app_.pixelForm.FloatSelection(picture, 0, 0);
  app_.pixelForm.CheckColorsSelection(true);
  return true;
}

}  // namespace rm
