#include "shell/TExploForm2.h"

#include "shell/Application.h"

namespace rm {

bool TExploForm2::TranslateCanvasButtons() {
  ConversionSession& s = app_.session;
  UiPort& ui = app_.ui;
  if (s.Compression && (s.Output == OutputKind::Bits16 || s.Output == OutputKind::Bits32)) {
    ui.MessageDlg("Sorry, Data compression only works in the 8 bit output mode !", "Info", DlgType::Information, {"OK"});
    return false;
  }
  if (s.Gray16Horizontal && (s.Direction == PagingDirection::Up || s.Direction == PagingDirection::Down)) {
    ui.MessageDlg("Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal pixels", "Info",
                  DlgType::Information, {"OK"});
    return false;
  }
  return app_.mainForm.TranslateCanvas();
}

}  // namespace rm
