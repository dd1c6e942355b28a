// The editors' files: loading the main text and the hex editor, and saving what the active tab
// holds.
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "shell/Application.h"
#include "shell/FileKinds.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kRecentFilesKept = 21;

// Sources and binaries join the recent files, which the main window reopens by kind. They are
// kept out of AddMRUF: that one also names the picture the canvas reloads.
void RememberRecent(Globals& g, const std::string& path) {
  auto& list = g.RecentFiles;
  if (path.empty() || std::find(list.begin(), list.end(), path) != list.end()) return;
  list.insert(list.begin(), path);
  if (list.size() > kRecentFilesKept) list.resize(kRecentFilesKept);
}

}  // namespace

bool EditorFiles::LoadSyneditor(const std::string& path) {
  Globals& g = app_.globals;
  // A script mode or the batch editor keeps its own tab in front.
  const bool modeHoldsTab = g.FontScriptMode || g.TouchScriptMode || g.FieldsScriptMode || g.VectorMode ||
                            g.EditableFontMode || g.BatchEditMode;
  if (!modeHoldsTab) g.EditorsPage = TExploForm2::kMainTab;
  // The program's own files (settings, temporaries) are loaded without filling the log.
  if (path.find(".tmp") == std::string::npos && path.find("Rastermill inits") == std::string::npos)
    app_.mainForm.StatusBarAndLog("Load Editor with " + path);
  std::error_code ec;
  if (!fs::is_regular_file(path, ec)) return false;
  TextLines lines;
  if (!lines.LoadFromFile(path)) return false;
  app_.mainText = std::move(lines);
  return true;
}

bool EditorFiles::LoadSource(const std::string& path) {
  if (!LoadSyneditor(path)) return false;
  Globals& g = app_.globals;
  app_.exploForm2.MainHighlighter = app_.exploForm2.Highlighters(path);
  g.EditorFileName = path;
  g.EditorUnsaved = false;
  RememberRecent(g, path);
  return true;
}

bool EditorFiles::LoadHex(const std::string& path) {
  Globals& g = app_.globals;
  app_.mainForm.StatusBarAndLog("Load Hex Editor with " + path);
  std::ifstream in(path, std::ios::binary);
  std::error_code ec;
  if (!in || !fs::is_regular_file(path, ec)) return false;
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return false;
  app_.hex.Clear();
  for (char c : bytes) app_.hex.AddByte(static_cast<std::uint8_t>(c));
  g.HexFileName = path;
  g.EditorsPage = TExploForm2::kHexTab;
  RememberRecent(g, path);
  return true;
}

bool EditorFiles::SaveEditor(const std::string& path) {
  Globals& g = app_.globals;
  g.LastAction = "Save Editor";
  if (g.HeaderEditMode) {
    app_.ui.MessageDlg("Please save/close Header Editor with Header Editor Button !", "Warning", DlgType::Warning,
                       {"OK"});
    return false;
  }
  if (g.EditorsPage == TExploForm2::kDocumentTab) {
    app_.ui.MessageDlg("The Document Editor Tab is Active \rSelect Script Editor or Text Editor !", "Warning",
                       DlgType::Warning, {"OK"});
    return false;
  }
  if (g.EditorsPage == TExploForm2::kMainTab || g.EditorsPage == TExploForm2::kHexTab)
    return SaveFN(path, g.EditorsPage == TExploForm2::kHexTab);
  // The other tabs have savers of their own (batch, scripts) or nothing to save.
  app_.mainForm.StatusBarAndLog("File not saved");
  return false;
}

bool EditorFiles::SaveFN(const std::string& path, bool hexTab) {
  Globals& g = app_.globals;
  TMainForm& main = app_.mainForm;
  auto notSaved = [&] {
    main.StatusBarAndLog("File not saved");
    return false;
  };
  auto denied = [&] {
    app_.ui.MessageDlg("Access to this file denied ! Check for read only status", "Error", DlgType::Error, {"OK"});
    return notSaved();
  };
  if (path.empty()) return notSaved();
  const std::string ext = UpperExt(path);
  if (!hexTab && !OneOf(ext, {".H", ".C", ".BAS", ".ASM", ".TXT", ".RTF"})) {
    app_.ui.MessageDlg("File Ext can only be one of these : H,C,BAS,ASM,TXT or RTF ! ", "Error", DlgType::Error,
                       {"OK"});
    return notSaved();
  }
  // Bytes under a source's name would be mistaken for text by every tool that opens it.
  if (hexTab && !OneOf(ext, {".BIN", ".HEX"})) {
    app_.ui.MessageDlg("File Ext can only be one of these : BIN or HEX ! ", "Error", DlgType::Error, {"OK"});
    return notSaved();
  }
  std::error_code ec;
  if (fs::exists(path, ec)) {
    if (app_.ui.MessageDlg(" File Exists,  Overwrite ?", "Confirm", DlgType::Confirmation, {"Yes", "No"}) != "Yes")
      return notSaved();
    if (IsFileInUse(path) || ::access(path.c_str(), W_OK) != 0) return denied();
    // The replaced file stays one step back, beside it: "name.c" keeps "name.c.bak", so that two
    // sources of one stem do not share a backup.
    fs::copy_file(path, path + ".bak", fs::copy_options::overwrite_existing, ec);
    if (ec) return denied();
  }
  const bool written = hexTab ? app_.hex.SaveToFile(path) : app_.mainText.SaveToFile(path);
  if (!written) return denied();
  if (hexTab) {
    g.HexFileName = path;
    app_.ui.MessageDlg("Hex file : " + path, "Information", DlgType::Information, {"OK"});
  } else {
    g.EditorFileName = path;
    g.EditorUnsaved = false;
    app_.exploForm2.MainHighlighter = app_.exploForm2.Highlighters(path);
    app_.ui.MessageDlg("File in editor saved to disk ! \r" + path, "Information", DlgType::Information, {"OK"});
  }
  RememberRecent(g, path);
  return true;
}

}  // namespace rm
