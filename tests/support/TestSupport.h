#pragma once
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "engine/UiPort.h"

namespace rmtest {

// A UiPort for tests: answers come from a queue (the first button when the queue is empty) and
// every message is recorded with its title, type and buttons.
class ScriptedUi : public rm::UiPort {
 public:
  struct Message {
    std::string text;
    std::string title;
    rm::DlgType type;
    std::vector<std::string> buttons;
    std::string answer;
    std::string explanation;  // what ExplainNextQuestion gave it
  };

  std::string MessageDlg(const std::string& text, const std::string& title, rm::DlgType type,
                         const std::vector<std::string>& buttons) override;
  void ExplainNextQuestion(const std::string& text) override { nextExplanation = text; }
  void Status(const std::string& text) override { statuses.push_back(text); }
  void Notice(const std::string& text) override { notices.push_back(text); }
  void Progress(long long position, long long max) override {
    lastProgress = position;
    progressMax = max;
  }
  bool EscapePressed() override;
  void Beep() override { ++beeps; }
  bool ExportDialog(rm::ExportDialogState& state) override { return exportDialog ? exportDialog(state) : true; }

  // Plays the user's part in the Export dialog; unset, the dialog is confirmed as it opens.
  std::function<bool(rm::ExportDialogState&)> exportDialog;

  std::deque<std::string> answers;
  std::vector<Message> messages;
  std::string nextExplanation;
  std::vector<std::string> statuses;
  std::vector<std::string> notices;
  long long lastProgress = 0, progressMax = 0;
  long long escapeAfterPolls = -1;  // >= 0: Esc is "pressed" once this many polls have passed
  long long polls = 0;
  int beeps = 0;
};

std::string ReadFile(const std::string& path);
// Compares `actual` with tests/golden/<name>; UPDATE_GOLDEN=1 rewrites the file instead.
// Returns an empty string when equal, else a description of the first difference.
std::string CompareGolden(const std::string& name, const std::string& actual);
// A fresh empty folder under the system temp folder.
std::string MakeTempDir();
// A fresh folder for the life of the object, removed with it even when a test stops early.
struct TempDir {
  std::string path = MakeTempDir();
  TempDir() = default;
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir();
};
// Every message shown, as "title: text".
std::vector<std::string> ShownMessages(const ScriptedUi& ui);
// Writes `text` to `path` byte for byte.
void WriteText(const std::string& path, const std::string& text);

}  // namespace rmtest
