#include "shell/TExploForm2.h"

#include "engine/OutputNaming.h"
#include "shell/Application.h"

namespace rm {

bool TExploForm2::TranslateCanvasButtons() {
  ConversionSession& s = app_.session;
  UiPort& ui = app_.ui;
  if (s.Compression && (s.Output == OutputKind::Bits16 || s.Output == OutputKind::Bits32)) {
    ui.MessageDlg("Sorry, Data compression only works in the 8 bit output mode !", "Info", DlgType::Information, {"OK"});
    return false;
  }
  app_.mainForm.defineOutputFileName();
  s.TableName = OutputTableName(s);
  s.InfoFilePath = s.InfoFileTarget.empty() ? InfoFileName(s) : s.InfoFileTarget;
  if (s.Gray16Horizontal && (s.Direction == PagingDirection::Up || s.Direction == PagingDirection::Down)) {
    ui.MessageDlg("Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal pixels", "Info",
                  DlgType::Information, {"OK"});
    return false;
  }
  if (!app_.mainForm.TranslateCanvas()) return false;
  // With Always Overwrite the text was saved on the way out of the conversion already. A failed
  // save keeps the data in the editor and says why; the conversion itself stands.
  const bool overwrite = app_.globals.AlwaysOverwrite;
  if (!s.OutputFolder.empty()) {
    if (s.Output == OutputKind::BinaryFile) {
      if (overwrite) app_.mainForm.SaveOutputFile(true);
    } else if (!overwrite && app_.globals.EditorUnsaved) {
      app_.mainForm.SaveOutputFile(false);
    }
  }
  return true;
}

void TExploForm2::InputHexInTextEditor(const std::string& hex) { app_.encoder.Formatter().IntelHex().InputHex(hex); }

void TExploForm2::EndIntelHex() { app_.encoder.Formatter().IntelHex().EndRecord(); }

}  // namespace rm
