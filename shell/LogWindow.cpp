#include "shell/LogWindow.h"

#include <filesystem>

#include "shell/Application.h"

namespace rm {

namespace fs = std::filesystem;

void TLogWindowForm::Add(const std::string& line) {
  if (!Exists) return;
  Lines.Add(line);
  ScrollToEnd();
}

bool TLogWindowForm::AddUnlessRepeated(const std::string& text) {
  if (!Exists || text == LastLogged || (!Lines.Empty() && text == Lines.Last())) return false;
  Add(text);
  LastLogged = text;
  return true;
}

void TLogWindowForm::ScrollToEnd() { ItemIndex = static_cast<std::ptrdiff_t>(Lines.Count()) - 1; }

const std::string& TLogWindowForm::LastLine() const {
  static const std::string kNone;
  return Lines.Empty() ? kNone : Lines.Last();
}

// Every step of the program comes through here. The status field always shows the latest text;
// the log takes it only once however often it comes in a row. An empty text changes nothing
// on screen but lets the next text into the log even when it repeats the last one logged.
void TMainForm::StatusBarAndLog(const std::string& text) {
  TLogWindowForm& log = app_.logWindow;
  if (text.empty()) {
    log.LastLogged.clear();
    return;
  }
  app_.globals.StatusText = text;
  log.LastMessage = text;
  app_.ui.Status(text);
  log.AddUnlessRepeated(text);
}

void TMainForm::LogError(const std::string& text) {
  TLogWindowForm& log = app_.logWindow;
  if (!log.Exists) return;
  const Globals& g = app_.globals;
  log.Add(text);
  log.Add(g.ExceptionFormName + "[" + g.ExceptionControlName + "])");
  log.ScrollToEnd();
}

void TMainForm::LogToLastLine() { app_.logWindow.ScrollToEnd(); }

void TMainForm::HideLogWindow1Click() { app_.logWindow.Visible = false; }
void TMainForm::ShowLogWindow1Click() { app_.logWindow.Visible = true; }

bool TMainForm::SaveLog() {
  const std::string& folder = app_.globals.InitsFolder;
  std::error_code ec;
  if (folder.empty() || !fs::is_directory(folder, ec)) return false;
  // Quitting goes on whatever happens here: the log is a convenience, not the user's work.
  return app_.logWindow.Lines.SaveToFile((fs::path(folder) / "L.LOG").string());
}

std::string TMainForm::LogFileFolder() const {
  const Globals& g = app_.globals;
  return g.DocumentsRole.empty() ? g.MyDocuments : g.DocumentsRole;
}

bool TMainForm::SaveLogtoFile1Click(const std::string& path) {
  if (path.empty()) return false;
  fs::path target(path);
  if (target.is_relative() && !LogFileFolder().empty()) target = fs::path(LogFileFolder()) / target;
  const std::string ext = target.extension().string();
  std::string name = target.string();
  if (ext.empty() || ext == ".") name += ext.empty() ? ".LOG" : "LOG";
  std::string error;
  if (!app_.logWindow.Lines.SaveToFile(name, &error)) {
    MessageDlgA(" Log data not saved to " + name + " : " + error, "Error", 0, 4, 1);
    return false;
  }
  MessageDlgA(" Log data saved to " + name, "Log file saved!", 0, 4, 2);
  return true;
}

}  // namespace rm
