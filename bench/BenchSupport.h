#pragma once
#include <string>
#include <vector>

#include "engine/UiPort.h"

namespace rmbench {

// A user who answers every question with its first button and never presses Esc: benchmarks
// measure the work, not the dialogs.
class QuietUi : public rm::UiPort {
 public:
  std::string MessageDlg(const std::string&, const std::string&, rm::DlgType,
                         const std::vector<std::string>& buttons) override {
    return buttons.empty() ? std::string() : buttons.front();
  }
  void Status(const std::string&) override {}
  void Progress(long long, long long) override {}
  bool EscapePressed() override { return false; }
};

}  // namespace rmbench
