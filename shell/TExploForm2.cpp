#include "shell/TExploForm2.h"

#include "engine/OutputNaming.h"
#include "shell/Application.h"
#include "shell/FileKinds.h"

namespace rm {

bool TExploForm2::TranslateCanvasButtons() {
  ConversionSession& s = app_.session;
  UiPort& ui = app_.ui;
  if (s.Compression && (s.Output == OutputKind::Bits16 || s.Output == OutputKind::Bits32)) {
    ui.MessageDlg("Sorry, Data compression only works in the 8 bit output mode !", "Info", DlgType::Information,
                  {"OK"});
    return false;
  }
  app_.mainForm.defineOutputFileName();
  s.TableName = OutputTableName(s);
  s.InfoFilePath = s.InfoFileTarget.empty() ? InfoFileName(s) : s.InfoFileTarget;
  if (s.Gray16Horizontal && (s.Direction == PagingDirection::Up || s.Direction == PagingDirection::Down)) {
    ui.MessageDlg("Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal pixels",
                  "Info", DlgType::Information, {"OK"});
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

void TExploForm2::EditHeaderButtonClick() {
  Globals& g = app_.globals;
  g.HeaderEditMode = !g.HeaderEditMode;
  if (g.HeaderEditMode)
    app_.mainForm.DisableModeChange();
  else
    app_.mainForm.EnableModeChange();
}

// ---- the editors' highlighters and typing ----------------------------------------------------

TExploForm2::Highlighter TExploForm2::Highlighters(const std::string& fileName, const std::string& libraryExtension) {
  const std::string ext = UpperExt(fileName);
  if (ext == ".ASM") return Highlighter::Assembler;
  if (ext == ".C" || ext == ".H" || (!libraryExtension.empty() && ext == "." + UpperText(libraryExtension)))
    return Highlighter::Cpp;
  if (ext == ".PAS") return Highlighter::Pascal;
  if (ext == ".BAS") return Highlighter::VisualBasic;
  if (OneOf(ext, {".TXT", ".FSC", ".RTF", ".LOG"})) return Highlighter::General;
  if (ext == ".HTM" || ext == ".HTML") return Highlighter::Html;
  if (ext == ".XML") return Highlighter::Xml;
  return Highlighter::None;
}

TExploForm2::Highlighter TExploForm2::Highlighters(const std::string& fileName) const {
  return Highlighters(fileName, app_.session.LibraryExtension);
}

void TExploForm2::MainTextEdited(const std::string& text) {
  app_.mainText.SetText(text);
  app_.globals.EditorUnsaved = true;
}

}  // namespace rm
