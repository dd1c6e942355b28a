// Quitting the program: the questions that can stop it, then the project and the pointer file
// written. Window places, minimising the main window and moving the others out of sight while
// the files are written, and the desktop's icons belong to the front end, which acts on the
// outcome returned here.
#include "shell/Application.h"

namespace rm {

namespace {

// A mode that the explorer's exit button knows how to leave.
bool AnyModeToLeave(const Globals& g) {
  return g.BatchEditMode || g.FontScriptMode || g.FieldsScriptMode || g.TouchScriptMode || g.EditableFontMode ||
         g.HeaderEditMode || g.AnimationMode || g.VectorMode;
}

}  // namespace

QuitSequence::QuitOutcome QuitSequence::FormCloseQuery() {
  Globals& g = app_.globals;
  // The windows close as part of a quit that has been decided: nothing more is asked.
  if (g.QuitInProgress) return QuitOutcome::Quit;
  // Closed while starting: nothing has been read that could be saved.
  if (!g.ExplorerExists) return QuitOutcome::Quit;
  if (app_.exploForm.CheckMode(0) &&
      app_.ui.MessageDlg(" Quit Rastermill ?", "Quit ?", DlgType::Confirmation, {"Yes", "Cancel"}) == "Cancel") {
    g.LastAction = "Main Form close query 2";
    return QuitOutcome::Refused;
  }
  // The exit button would only say that no mode is active.
  if (AnyModeToLeave(g)) app_.exploForm.QuitModeButtonClick();
  return FileExit1Execute();
}

QuitSequence::QuitOutcome QuitSequence::FileExit1Execute() {
  app_.mainForm.StatusBarAndLog("Quit Rastermill Main Menu Item");
  if (app_.exploForm.CheckMode(0) &&
      app_.ui.MessageDlg(" Quit Rastermill ? ", "Quit ?", DlgType::Confirmation, {"Yes", "Cancel"}) == "Cancel")
    return QuitOutcome::Refused;
  if (app_.pixelForm.FloatingSelection) {
    app_.mainForm.StatusBarAndLog("Quit Rastermill Main Menu Item 2");
    if (app_.ui.MessageDlg(" Selection Layer has not been pasted ! \r Discard Selection ? ", "Error", DlgType::Error,
                           {"Yes", "Cancel"}) == "Cancel")
      return QuitOutcome::Refused;
    // The user sees the canvas without the selection before deciding to quit again.
    app_.pixelForm.DiscardSelection();
    return QuitOutcome::StaysOpen;
  }
  return PMSys_Quitter();
}

QuitSequence::QuitOutcome QuitSequence::PMSys_Quitter() {
  Globals& g = app_.globals;
  g.LastAction = "Quit Program";
  if (FormPositions) FormPositions();
  app_.mainForm.StatusBarAndLog("Quit Rastermill");
  if (!g.ArtworkSaved) {
    const std::string a = app_.ui.MessageDlg(" Quit rastermill ? \r Artwork has not been saved ! ", "Confirm",
                                             DlgType::Confirmation, {"Save+Quit", "Cancel", "Quit"});
    if (a == "Cancel") {
      app_.mainForm.StatusBarAndLog("Cancel Quit Rastermill");
      return QuitOutcome::Refused;
    }
    if (a == "Save+Quit") {
      app_.mainForm.StatusBarAndLog("Save & Quit Rastermill");
      // The artwork would be lost by quitting now: the program stays open instead.
      if (!SavebitmapClick()) {
        app_.mainForm.StatusBarAndLog("Artwork not saved");
        return QuitOutcome::Refused;
      }
      app_.mainForm.StatusBarAndLog("Artwork Saved");
    }
  }
  app_.mainForm.StatusBarAndLog("Do not save and Quit Rastermill");
  g.QuitInProgress = true;
  // A settings file that cannot be written is reported by the writers; the quit goes on.
  app_.mainForm.SaveConfigurationX();
  app_.mainForm.SaveFolders();
  app_.mainForm.SaveLog();
  app_.mainForm.WriteQuitInRegistry();
  app_.instanceLock.Release();
  return QuitOutcome::Quit;
}

void QuitSequence::FormClose() { app_.globals.QuitInProgress = false; }

bool QuitSequence::SavebitmapClick() {
  if (!ArtworkSaver || !ArtworkSaver()) return false;
  app_.globals.ArtworkSaved = true;
  return true;
}

}  // namespace rm
