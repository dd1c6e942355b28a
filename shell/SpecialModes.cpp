// The special modes: the lock on the mode menus while one runs, the ways out of each mode, and the
// batch editor's way in and out.
#include <filesystem>

#include "shell/Application.h"

namespace rm {

namespace fs = std::filesystem;

void SpecialModes::DisableModeChange() {
  Globals& g = app_.globals;
  g.ModeMenuEnabled = false;
  g.ExitSpecialModeEnabled = true;
  g.ExitModeButtonVisible = true;
}

void SpecialModes::EnableModeChange() {
  Globals& g = app_.globals;
  g.ModeMenuEnabled = true;
  g.ExitSpecialModeEnabled = false;
  g.ExitModeButtonVisible = false;
}

namespace {

// The save question of a mode's script on the way out. False when the mode must stay: the user
// cancelled, or chose to save and the script was not saved.
bool OfferScriptSave(Application& app, SpecialModes::ModeScript& script, const std::string& text,
                     const std::string& title, const std::vector<std::string>& buttons) {
  const std::string a = app.ui.MessageDlg(text, title, DlgType::Confirmation, buttons);
  if (a == "Cancel") return false;
  if (a != "Yes") return true;
  if (!script.Save || !script.Save()) {
    app.mainForm.StatusBarAndLog("Not saved !");
    return false;
  }
  script.Changed = false;
  app.mainForm.StatusBarAndLog("Saved !");
  return true;
}

// How a script mode is left: the question (asked when the script changed, or always), the
// flag it clears and the log lines after it.
struct ScriptModeExit {
  SpecialModes::ModeScript& script;
  bool& flag;
  bool askAlways;
  std::string text, title;
  std::vector<std::string> buttons;
  std::vector<const char*> logLines;
};

bool LeaveScriptMode(Application& app, const ScriptModeExit& e) {
  Globals& g = app.globals;
  if ((e.script.Changed || e.askAlways) && !g.NoSaveOnQuit &&
      !OfferScriptSave(app, e.script, e.text, e.title, e.buttons))
    return false;
  e.script.Changed = false;
  e.flag = false;
  g.NoSaveOnQuit = false;
  for (const char* line : e.logLines) app.mainForm.StatusBarAndLog(line);
  app.mainForm.EnableModeChange();
  return true;
}

}  // namespace

bool SpecialModes::QuitFontscriptClick() {
  return LeaveScriptMode(app_, {FontScript,
                                app_.globals.FontScriptMode,
                                false,
                                FontScript.Path + " Save Font script to file ? \r \r",
                                "Font Script not saved !",
                                {"Yes", "No", "Cancel"},
                                {"Quit Font Script", "Normal Mode"}});
}

bool SpecialModes::QuitFieldsScriptClick() {
  return LeaveScriptMode(app_, {FieldsScript,
                                app_.globals.FieldsScriptMode,
                                false,
                                " Save Fields script to file ? ",
                                "Fields Script not saved !",
                                {"Yes", "No"},
                                {"Normal Mode"}});
}

bool SpecialModes::QuittouchpanelscriptClick() {
  return LeaveScriptMode(app_, {TouchScript,
                                app_.globals.TouchScriptMode,
                                false,
                                " Save Touch Panel script to file ? ",
                                "Touch Panel Script not saved !",
                                {"Yes", "No"},
                                {"Normal Mode"}});
}

bool SpecialModes::QuitAnEditableFontClick() {
  // The font is offered for saving whether or not it changed, unless saving is off.
  return LeaveScriptMode(app_, {EditableFont,
                                app_.globals.EditableFontMode,
                                true,
                                EditableFont.Path + ".EFF" + " Save recent changes on editable font to file ?\r",
                                "Save Editable Font",
                                {"Yes", "No"},
                                {"Normal Mode"}});
}

bool SpecialModes::QuitVectorDesign() {
  if (!LeaveScriptMode(app_, {VectorDesign,
                              app_.globals.VectorMode,
                              true,
                              "Quit Vector Design Mode ..\r Save Vector Design in Work Canvas to File ? ",
                              "Confirm",
                              {"Yes", "No", "Cancel"},
                              {}}))
    return false;
  app_.globals.SpecialModeActive = false;
  return true;
}

bool SpecialModes::QuitAnimationMode(bool ask) {
  Globals& g = app_.globals;
  if (ask && app_.ui.MessageDlg("Are you sure to want to leave the animation mode  !", "Confirm", DlgType::Confirmation,
                                {"Yes", "No"}) == "No")
    return false;
  g.AnimationMode = false;
  app_.mainForm.StatusBarAndLog("Static mode enabled");
  EnableModeChange();
  return true;
}

// ---- the batch editor ------------------------------------------------------------------------

std::string SpecialModes::BatchFilePath() const {
  const Globals& g = app_.globals;
  return g.BatchRole + "/" + g.BatchFileName;
}

std::string SpecialModes::NewBatchFileName() const {
  std::error_code ec;
  for (int n = 1;; ++n) {
    std::string name = "NewTextPro[" + std::to_string(n) + "].SPP";
    if (!fs::exists(app_.globals.BatchRole + "/" + name, ec)) return name;
  }
}

void SpecialModes::CreatePostProClick(bool fromEdit) {
  Globals& g = app_.globals;
  g.EditorsPage = 4;
  g.BatchEditorEditable = true;
  g.BatchEditMode = true;
  g.SpecialModeActive = true;
  DisableModeChange();
  if (fromEdit && (g.ActiveBatch == "< No batch file selected >" || g.ActiveBatch.empty())) {
    g.BatchFileName = fs::path(app_.session.LastBitmapName).filename().replace_extension(".SPP").string();
  } else {
    g.BatchFileName = NewBatchFileName();
  }
  std::error_code ec;
  const std::string path = BatchFilePath();
  if (!fs::is_regular_file(path, ec) || !app_.batchText.LoadFromFile(path)) app_.batchText.Clear();
  g.BatchChanged = true;
}

bool SpecialModes::QuitPostClick() {
  Globals& g = app_.globals;
  if (g.BatchChanged) {
    const std::string path = BatchFilePath();
    auto denied = [&] {
      app_.ui.MessageDlg("Access to this file denied ! Check for read only status", "Error", DlgType::Error, {"OK"});
      return false;
    };
    // The batch goes into the log as it was saved, so that a run can be told from its script.
    auto saveAndLog = [&](const std::string& what) {
      if (IsFileInUse(path) || !app_.batchText.SaveToFile(path)) return false;
      for (const auto& line : app_.batchText.Lines()) app_.mainForm.StatusBarAndLog(line);
      app_.mainForm.StatusBarAndLog(what + path);
      g.BatchChanged = false;
      return true;
    };
    std::error_code ec;
    if (fs::exists(path, ec)) {
      if (IsFileInUse(path)) return denied();
      if (app_.ui.MessageDlg("Overwrite Processing batch to file ?\r" + path, "Confirm", DlgType::Confirmation,
                             {"Yes", "No"}) != "Yes")
        return false;
      if (!saveAndLog("Overwrite batch : ")) return denied();
    } else if (app_.ui.MessageDlg(" Save batch to file ? ", "Batch not saved !", DlgType::Confirmation,
                                  {"Yes", "No"}) == "Yes") {
      if (!saveAndLog("Save batch : ")) return denied();
      app_.mainForm.StatusBarAndLog("Saved !");
    }
  }
  g.BatchEditMode = false;
  g.SpecialModeActive = false;
  g.BatchEditorEditable = false;
  g.BatchEditorLabel = "View Mode";
  EnableModeChange();
  return true;
}

// ---- the floating selection ------------------------------------------------------------------

bool SpecialModes::IsSelectionActive() {
  TPixelForm& canvas = app_.pixelForm;
  if (!canvas.FloatingSelection) return false;
  const std::string a = app_.ui.MessageDlg(
      " Floating Selection layer has not been pasted to Work Canvas !\r Paste now, Discard selection or Cancel ? ",
      "Confirm", DlgType::Confirmation, {"Paste now", "Discard", "Cancel"});
  if (a == "Cancel") return true;
  if (a == "Discard") {
    canvas.DiscardSelection();
  } else {
    canvas.PasteSelection();
    app_.globals.ArtworkSaved = false;
  }
  return false;
}

}  // namespace rm
