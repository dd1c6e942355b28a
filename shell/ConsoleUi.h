#pragma once
#include <csignal>
#include <cstdio>
#include <deque>
#include <map>
#include <string>

#include "engine/UiPort.h"

namespace rm {

// The UiPort of the command line. Messages go to stderr with their title; questions are answered
// from the queued answers, else by `--yes`, else by the button that keeps the user's data safe.
// It never waits for input, so it can run in a build.
class ConsoleUi : public UiPort {
 public:
  // `interrupted` is raised by the front end's SIGINT handler and read as the Esc key.
  ConsoleUi(std::FILE* err, const volatile std::sig_atomic_t* interrupted) : err_(err), interrupted_(interrupted) {}

  std::string MessageDlg(const std::string& text, const std::string& title, DlgType type,
                         const std::vector<std::string>& buttons) override;
  void Status(const std::string& text) override;
  void Notice(const std::string& text) override;
  void Progress(long long position, long long max) override;
  bool EscapePressed() override { return interrupted_ && *interrupted_ != 0; }

  void QueueAnswer(std::string answer) { answers_.push_back(std::move(answer)); }
  // Answers one particular question whenever it is asked, before any other rule.
  void PresetAnswer(std::string question, std::string answer) { presets_[std::move(question)] = std::move(answer); }
  void SetYes(bool yes) { yes_ = yes; }
  void SetVerbose(bool verbose) { verbose_ = verbose; }
  void SetShowProgress(bool show) { showProgress_ = show; }
  // Ends a progress line that is still open.
  void FinishProgress();

  // The button a careful user presses to stay safe: Cancel, No, Abort ... else the first one.
  static std::string SafeButton(const std::vector<std::string>& buttons);

 private:
  std::FILE* err_;
  const volatile std::sig_atomic_t* interrupted_;
  std::deque<std::string> answers_;
  std::map<std::string, std::string> presets_;
  bool yes_ = false;
  bool verbose_ = false;
  bool showProgress_ = false;
  bool progressOpen_ = false;
  int lastPercent_ = -1;
};

// "\r" in a message is a line break; blanks stay as they are.
std::string MessageForConsole(const std::string& text);

}  // namespace rm
