#include "shell/TImageForm.h"

#include "engine/IntelHex.h"
#include "shell/Application.h"

namespace rm {

bool TImageForm::EncodeButtonClick() {
  ConversionSession& s = app_.session;
  Globals& g = app_.globals;
  UiPort& ui = app_.ui;
  if (g.FontScriptMode || g.EditableFontMode || g.SegmentedFontMode) {
    ui.MessageDlg(" A Font creation mode is still active ! Plase quit/exit this mode first !", "Font creation active",
                  DlgType::Warning, {"OK"});
    return false;
  }
  // A script being made in the editors would be overwritten by the data array.
  const std::pair<bool, const char*> busy[] = {
      {g.TouchScriptMode, " Touch panel script creation mode is active ! "},
      {g.BatchEditMode, " Text Post-Processing is active !"},
  };
  for (const auto& [on, text] : busy)
    if (on) {
      ui.MessageDlg(text, "Warning", DlgType::Warning, {"OK"});
      return false;
    }
  if (g.EditorUnsaved && !app_.mainText.Empty()) {
    const std::string a = ui.MessageDlg(
        "Data in Text Editor has not been saved to File ! \rOverwrite if not Willing to Save\r< See File Explorer "
        "Window >",
        "Confirm", DlgType::Confirmation, {"Abort + Save", "Overwrite"});
    if (a != "Overwrite") return false;
  }
  const bool machine = s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex;
  if (machine && (s.Compression || g.AnimationMode)) {
    ui.MessageDlg(
        "Hex or Binay file data output is not available for animations or data compression ! \rDisable Data "
        "Compression or choose 8/16/32 bits output",
        "Error ", DlgType::Error, {"OK"});
    return false;
  }

  ExportDialogState dlg;
  dlg.entry = g.ExportEntry;
  // Halves exist only for whole rows: any other direction opens on the full canvas.
  if (!s.Horizontal && (dlg.entry == 1 || dlg.entry == 2)) {
    dlg.entry = 0;
    ui.Notice(
        "the upper or lower half is exported only with a horizontal Paging direction: the full canvas is exported");
  }
  if (s.AutoFraming) {
    if (dlg.entry != 0)
      ui.Notice("Auto Framing exports the painted part of the canvas, not the part chosen for export");
    dlg.entry = 0;
    dlg.entryListEnabled = false;
  }
  if (!s.Monochrome || machine) s.Compression = false;
  dlg.compression = s.Compression;
  dlg.compressionEnabled = s.Monochrome && !machine;
  dlg.hexBytesPerLine = s.HexBytesPerLine;
  dlg.addressDigits = s.HexAddressDigits;
  dlg.addressOffset = IntelHexRecords::OffsetText(s.HexAddressOffset);
  if (!ui.ExportDialog(dlg)) return false;
  s.Compression = dlg.compression && dlg.compressionEnabled;
  g.ExportEntry = dlg.entry;
  if (s.Output == OutputKind::IntelHex) {
    std::uint32_t offset = 0;
    if (!IntelHexRecords::ParseOffset(dlg.addressOffset, offset)) {
      ui.MessageDlg(" Address Offset must be 1 to 8 hexadecimal digits ! ", "Intel Hex", DlgType::Error, {"OK"});
      return false;
    }
    s.HexBytesPerLine = dlg.hexBytesPerLine;
    s.HexAddressDigits = dlg.addressDigits;
    s.HexAddressOffset = offset;
  }

  s.HalfExport = dlg.entry == 1 || dlg.entry == 2;
  s.LowerHalf = dlg.entry == 2;
  if (dlg.entry == 3 && !s.SelectionActive) {
    app_.mainForm.StatusBarAndLog("Export Area of Work Canvas : select the area to export first");
    return false;
  }
  if (dlg.entry == 4) {
    // Subdivisions are made in the fields editor; none can be selected before it exists.
    ui.MessageDlg(" No Work Canvas Subdivision Has Been Selected ! \r  ", "Subdivision Selection Error", DlgType::Error,
                  {"OK"});
    return false;
  }
  if (dlg.entry == 3) app_.encoder.Canvas().area = CanvasState::Area::Selected;
  const bool ok = app_.exploForm2.TranslateCanvasButtons();
  s.HalfExport = s.LowerHalf = false;
  // The user looks at what was made: the bytes of a binary output, the text of any other.
  if (ok) g.EditorsPage = s.Output == OutputKind::BinaryFile ? TExploForm2::kHexTab : TExploForm2::kMainTab;
  return ok;
}

}  // namespace rm
