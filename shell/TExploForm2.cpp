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
  if (!app_.mainForm.TranslateCanvas()) return false;
  // The hex editor is saved only when the user wants every conversion on disk at once; otherwise
  // the bytes wait in the editor for an explicit save.
  if (s.Output == OutputKind::BinaryFile && app_.globals.AlwaysOverwrite) {
    const std::string path = BinaryOutputPath();
    std::string error;
    if (!app_.hex.SaveToFile(path, &error)) {
      ui.MessageDlg(" File could not be saved to disk, access denied ! \r Reason = " + error, "Error", DlgType::Error,
                    {"OK"});
      return false;
    }
    app_.mainForm.StatusBarAndLog("Hex file : " + path);
  }
  return true;
}

void TExploForm2::InputHexInTextEditor(const std::string& hex) { app_.encoder.Formatter().IntelHex().InputHex(hex); }

void TExploForm2::EndIntelHex() { app_.encoder.Formatter().IntelHex().EndRecord(); }

std::string TExploForm2::BinaryOutputPath() const {
  const Globals& g = app_.globals;
  std::string name = g.OutputName;
  const std::size_t slash = name.find_last_of('/');
  const std::size_t dot = name.find_last_of('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) name.erase(dot);
  name += ".bin";
  return g.OutputFolder.empty() ? name : g.OutputFolder + "/" + name;
}

}  // namespace rm
