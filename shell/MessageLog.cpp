// The status field and the log seen from the main window's commands.
#include "shell/MessageLog.h"

#include <filesystem>

#include "shell/Application.h"

namespace rm {

namespace fs = std::filesystem;

// Every step of the program comes through here. The status field always shows the latest text;
// the log takes it only once however often it comes in a row. An empty text changes nothing
// on screen but lets the next text into the log even when it repeats the last one logged.
void MessageLog::StatusBarAndLog(const std::string& text) {
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

void MessageLog::LogError(const std::string& text) {
  TLogWindowForm& log = app_.logWindow;
  if (!log.Exists) return;
  const Globals& g = app_.globals;
  log.Add(text);
  log.Add(g.ExceptionFormName + "[" + g.ExceptionControlName + "])");
  log.ScrollToEnd();
}

void MessageLog::LogToLastLine() { app_.logWindow.ScrollToEnd(); }

void MessageLog::HideLogWindow1Click() { app_.logWindow.Visible = false; }
void MessageLog::ShowLogWindow1Click() { app_.logWindow.Visible = true; }

bool MessageLog::SaveLog() {
  const std::string& folder = app_.globals.InitsFolder;
  std::error_code ec;
  if (folder.empty() || !fs::is_directory(folder, ec)) return false;
  // Quitting goes on whatever happens here: the log is a convenience, not the user's work.
  return app_.logWindow.Lines.SaveToFile((fs::path(folder) / "L.LOG").string());
}

std::string MessageLog::LogFileFolder() const {
  const Globals& g = app_.globals;
  return g.DocumentsRole.empty() ? g.MyDocuments : g.DocumentsRole;
}

bool MessageLog::SaveLogtoFile1Click(const std::string& path) {
  if (path.empty()) return false;
  fs::path target(path);
  if (target.is_relative() && !LogFileFolder().empty()) target = fs::path(LogFileFolder()) / target;
  const std::string ext = target.extension().string();
  std::string name = target.string();
  if (ext.empty() || ext == ".") name += ext.empty() ? ".LOG" : "LOG";
  std::string error;
  if (!app_.logWindow.Lines.SaveToFile(name, &error)) {
    app_.mainForm.MessageDlgA(" Log data not saved to " + name + " : " + error, "Error", 0, 4, 1);
    return false;
  }
  app_.mainForm.MessageDlgA(" Log data saved to " + name, "Log file saved!", 0, 4, 2);
  return true;
}

}  // namespace rm
