#pragma once
#include <string>

namespace rm {

class Application;

// The main window's side of the log: the status field and its repeat rule, the failure lines,
// showing and hiding the log window and saving the log to a file. The lines themselves are the
// log window's (TLogWindowForm).
class MessageLog {
 public:
  explicit MessageLog(Application& app) : app_(app) {}

  void StatusBarAndLog(const std::string& text);
  // Adds `text` and the form and control of the last fault to the log; nothing before the log
  // window exists.
  void LogError(const std::string& text);
  // Scrolls the log to its last line.
  void LogToLastLine();
  // At quit: the whole log as "L.LOG" in the inits folder, when that folder exists.
  bool SaveLog();
  // "Save Log to File": `path` is the name the user chose (empty when cancelled); a name without
  // a folder goes to the Documents role, one without an extension gets ".LOG".
  bool SaveLogtoFile1Click(const std::string& path);
  // The folder the front end's file dialog starts in for "Save Log to File".
  std::string LogFileFolder() const;
  void HideLogWindow1Click();
  void ShowLogWindow1Click();

 private:
  Application& app_;
};

}  // namespace rm
