// The special modes: the guard that keeps other commands out of a running mode, the ways out of
// each mode, and the batch editor's way in and out.
#include <filesystem>

#include "shell/Application.h"

namespace rm {

namespace fs = std::filesystem;

void TMainForm::DisableModeChange() {
  Globals& g = app_.globals;
  g.ModeMenuEnabled = false;
  g.ExitSpecialModeEnabled = true;
  g.ExitModeButtonVisible = true;
}

void TMainForm::EnableModeChange() {
  Globals& g = app_.globals;
  g.ModeMenuEnabled = true;
  g.ExitSpecialModeEnabled = false;
  g.ExitModeButtonVisible = false;
}

namespace {

// The save question of a mode's script on the way out. False when the mode must stay: the user
// cancelled, or chose to save and the script was not saved.
bool OfferScriptSave(Application& app, TMainForm::ModeScript& script, const std::string& text,
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
  TMainForm::ModeScript& script;
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

bool TMainForm::QuitFontscriptClick() {
  return LeaveScriptMode(app_, {FontScript, app_.globals.FontScriptMode, false,
                                FontScript.Path + " Save Font script to file ? \r \r", "Font Script not saved !",
                                {"Yes", "No", "Cancel"}, {"Quit Font Script", "Normal Mode"}});
}

bool TMainForm::QuitFieldsScriptClick() {
  return LeaveScriptMode(app_, {FieldsScript, app_.globals.FieldsScriptMode, false, " Save Fields script to file ? ",
                                "Fields Script not saved !", {"Yes", "No"}, {"Normal Mode"}});
}

bool TMainForm::QuittouchpanelscriptClick() {
  return LeaveScriptMode(app_, {TouchScript, app_.globals.TouchScriptMode, false,
                                " Save Touch Panel script to file ? ", "Touch Panel Script not saved !", {"Yes", "No"},
                                {"Normal Mode"}});
}

bool TMainForm::QuitAnEditableFontClick() {
  // The font is offered for saving whether or not it changed, unless saving is off.
  return LeaveScriptMode(app_, {EditableFont, app_.globals.EditableFontMode, true,
                                EditableFont.Path + ".EFF" + " Save recent changes on editable font to file ?\r",
                                "Save Editable Font", {"Yes", "No"}, {"Normal Mode"}});
}

bool TMainForm::QuitVectorDesign() {
  if (!LeaveScriptMode(app_, {VectorDesign, app_.globals.VectorMode, true,
                              "Quit Vector Design Mode ..\r Save Vector Design in Work Canvas to File ? ", "Confirm",
                              {"Yes", "No", "Cancel"}, {}}))
    return false;
  app_.globals.SpecialModeActive = false;
  return true;
}

bool TMainForm::QuitAnimationMode(bool ask) {
  Globals& g = app_.globals;
  if (ask && app_.ui.MessageDlg("Are you sure to want to leave the animation mode  !", "Confirm",
                                DlgType::Confirmation, {"Yes", "No"}) == "No")
    return false;
  g.AnimationMode = false;
  StatusBarAndLog("Static mode enabled");
  EnableModeChange();
  return true;
}

void TExploForm2::EditHeaderButtonClick() {
  Globals& g = app_.globals;
  g.HeaderEditMode = !g.HeaderEditMode;
  if (g.HeaderEditMode)
    app_.mainForm.DisableModeChange();
  else
    app_.mainForm.EnableModeChange();
}

// ---- the batch editor ------------------------------------------------------------------------

std::string TMainForm::BatchFilePath() const {
  const Globals& g = app_.globals;
  return g.BatchRole + "/" + g.BatchFileName;
}

std::string TMainForm::NewBatchFileName() const {
  std::error_code ec;
  for (int n = 1;; ++n) {
    std::string name = "NewTextPro[" + std::to_string(n) + "].SPP";
    if (!fs::exists(app_.globals.BatchRole + "/" + name, ec)) return name;
  }
}

void TMainForm::CreatePostProClick(bool fromEdit) {
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

bool TMainForm::QuitPostClick() {
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
      for (const auto& line : app_.batchText.Lines()) StatusBarAndLog(line);
      StatusBarAndLog(what + path);
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
      StatusBarAndLog("Saved !");
    }
  }
  g.BatchEditMode = false;
  g.SpecialModeActive = false;
  g.BatchEditorEditable = false;
  g.BatchEditorLabel = "View Mode";
  EnableModeChange();
  return true;
}

// ---- the guard and the way out ---------------------------------------------------------------

bool TExploForm::CheckMode(int caller) {
  Globals& g = app_.globals;
  if (g.ExitModeButtonVisible && LeadTheEye) LeadTheEye();
  struct Row {
    bool hit;
    const char* text;
    std::vector<std::string> buttons;
  };
  // Animation stops only a caller that names a mode: a plain command (0) passes it. The last
  // row is reached only by caller 7, as the second row takes every other caller first.
  const Row rows[] = {
      {g.AnimationMode && caller != 0, "Animation creation mode is active ! \rQuit Animation or Cancel ",
       {"Quit", "Cancel"}},
      {g.VectorMode && caller != 7, "Vector Programming mode is active ! \rQuit Vector Programming or Cancel ",
       {"Quit Script", "Cancel"}},
      {g.TouchScriptMode && caller != 1,
       "Touch panel script creation mode is active ! \rQuit script creation or Cancel ", {"Quit Script", "Cancel"}},
      {g.FontScriptMode && caller != 2, "Font Script creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Script", "Cancel", "No Saves"}},
      {g.SegmentedFontMode && caller != 4,
       "Segmented Font creation mode is active ! \rQuit script creation or Cancel ", {"Quit Font", "Cancel"}},
      {g.EditableFontMode && caller != 5,
       "Editable Font creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Font", "Cancel", "No Saves"}},
      {g.VectorMode && caller != 6, "Vectors Work Canvas mode is active ! \rQuit Vector Design Mode or Cancel ",
       {"Quit Vectors", "Cancel", "No Saves"}},
  };
  for (const Row& r : rows) {
    if (!r.hit) continue;
    const std::string a = app_.ui.MessageDlg(r.text, "Warning", DlgType::Warning, r.buttons);
    if (a != "Cancel") {
      if (r.buttons.size() == 3) g.NoSaveOnQuit = a == "No Saves";
      QuitModeButtonClick();
    }
    return true;
  }
  return false;
}

bool TExploForm::QuitModeButtonClick() {
  Globals& g = app_.globals;
  TMainForm& m = app_.mainForm;
  m.StatusBarAndLog("Quit Special Mode Button");
  if (g.BatchEditMode)
    m.QuitPostClick();
  else if (g.FontScriptMode)
    m.QuitFontscriptClick();
  else if (g.FieldsScriptMode)
    m.QuitFieldsScriptClick();
  else if (g.TouchScriptMode)
    m.QuittouchpanelscriptClick();
  else if (g.EditableFontMode)
    m.QuitAnEditableFontClick();
  else if (g.HeaderEditMode)
    app_.exploForm2.EditHeaderButtonClick();
  else if (g.AnimationMode)
    m.QuitAnimationMode();
  else if (g.VectorMode)
    m.QuitVectorDesign();
  else {
    app_.ui.MessageDlg("No special mode active", "Information", DlgType::Information, {"OK"});
    return false;
  }
  return true;
}

// ---- the floating selection ------------------------------------------------------------------

bool TMainForm::IsSelectionActive() {
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
