#include "shell/ConsoleUi.h"

#include <algorithm>
#include <cctype>

namespace rm {

namespace {
bool SameButton(const std::string& a, const std::string& b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}
}  // namespace

std::string MessageForConsole(const std::string& text) {
  std::string out = text;
  std::replace(out.begin(), out.end(), '\r', '\n');
  return out;
}

std::string ConsoleUi::SafeButton(const std::vector<std::string>& buttons) {
  static constexpr const char* kSafeOrder[] = {"Cancel", "No", "Abort", "Abort + Save", "No Action", "OK"};
  for (const char* safe : kSafeOrder)
    for (const auto& b : buttons)
      if (SameButton(b, safe)) return b;
  return buttons.empty() ? std::string() : buttons.front();
}

std::string ConsoleUi::MessageDlg(const std::string& text, const std::string& title, DlgType,
                                  const std::vector<std::string>& buttons) {
  FinishProgress();
  std::string answer;
  std::string how = "safe choice";
  if (auto it = presets_.find(text); it != presets_.end()) {
    for (const auto& b : buttons)
      if (SameButton(b, it->second)) answer = b;
    how = "asked for on the command line";
  }
  // A box with one button informs and asks nothing: it must not use up an answer meant for the
  // next question.
  while (answer.empty() && buttons.size() > 1 && !answers_.empty()) {
    std::string wanted = answers_.front();
    answers_.pop_front();
    for (const auto& b : buttons)
      if (SameButton(b, wanted)) answer = b;
    if (answer.empty())
      std::fprintf(err_, "rastermill: answer \"%s\" fits no button of this question\n", wanted.c_str());
    how = "--answer";
  }
  if (answer.empty() && yes_) {
    for (const char* y : {"Yes", "OK"})
      for (const auto& b : buttons)
        if (answer.empty() && SameButton(b, y)) answer = b;
    if (!answer.empty()) how = "--yes";
  }
  if (answer.empty()) {
    answer = SafeButton(buttons);
    how = "safe choice";
  }
  std::fprintf(err_, "%s: %s\n", title.c_str(), MessageForConsole(text).c_str());
  if (buttons.size() > 1) {
    std::string list;
    for (const auto& b : buttons) list += (list.empty() ? "" : " / ") + b;
    std::fprintf(err_, "  [%s] -> %s (%s)\n", list.c_str(), answer.c_str(), how.c_str());
  }
  return answer;
}

void ConsoleUi::Status(const std::string& text) {
  if (!verbose_) return;
  FinishProgress();
  std::fprintf(err_, "%s\n", text.c_str());
}

void ConsoleUi::Notice(const std::string& text) {
  FinishProgress();
  std::fprintf(err_, "rastermill: note: %s\n", text.c_str());
}

void ConsoleUi::Progress(long long position, long long max) {
  if (!showProgress_ || max <= 0) return;
  const int percent = static_cast<int>(std::clamp(position * 100 / max, 0LL, 100LL));
  if (percent == lastPercent_) return;
  lastPercent_ = percent;
  const int filled = percent * 40 / 100;
  std::fprintf(err_, "\r[%s%s] %3d%%", std::string(static_cast<std::size_t>(filled), '#').c_str(),
               std::string(static_cast<std::size_t>(40 - filled), ' ').c_str(), percent);
  std::fflush(err_);
  progressOpen_ = true;
}

void ConsoleUi::FinishProgress() {
  if (!progressOpen_) return;
  std::fprintf(err_, "\n");
  progressOpen_ = false;
  lastPercent_ = -1;
}

}  // namespace rm
