#pragma once
#include <string>
#include <vector>

#include "engine/ExportDialog.h"

namespace rm {

enum class DlgType { Warning, Error, Information, Confirmation, Custom };

// Everything the headless code needs of a user: modal messages with named buttons, the status
// line and log, a progress bar, the Esc key and a beep. Front ends implement it; tests script it.
// A "\r" inside a message is a line break for the front end to render.
class UiPort {
 public:
  virtual ~UiPort() = default;

  // Shows a modal message and returns the caption of the button pressed (one of `buttons`).
  virtual std::string MessageDlg(const std::string& text, const std::string& title, DlgType type,
                                 const std::vector<std::string>& buttons) = 0;
  // A line that says what each answer of the next question does, shown beneath the question's
  // own text (which stays as it is). The next MessageDlg takes it; front ends with no room for it
  // leave it out.
  virtual void ExplainNextQuestion(const std::string& text) { (void)text; }
  // The status bar field and the log line of every step.
  virtual void Status(const std::string& text) = 0;
  // A change the program made on its own that the user must hear of even when nobody reads the
  // log (a Paging Scheme turned to fit the canvas): a front end without a status bar prints it.
  virtual void Notice(const std::string& text) { Status(text); }
  virtual void Progress(long long position, long long max) = 0;
  // Polled between bytes of long work; true aborts the work, keeping what was done.
  virtual bool EscapePressed() = 0;
  virtual void Beep() {}
  // Shows the Export dialog on `state`; false when the user cancels.
  virtual bool ExportDialog(ExportDialogState& state) {
    (void)state;
    return true;
  }
};

}  // namespace rm
