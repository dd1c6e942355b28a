#pragma once
#include <string>

namespace rm {

class Application;

// The editors window's part of the Convert command, and its Intel HEX text sink.
class TExploForm2 {
 public:
  explicit TExploForm2(Application& app) : app_(app) {}
  bool TranslateCanvasButtons();

  // Two hex digits of one byte into the pending Intel HEX record of the main text; a full record
  // becomes a line.
  void InputHexInTextEditor(const std::string& hex);
  // Closes the pending record, however short.
  void EndIntelHex();

  // The header template's edit mode, a toggle: the mode's flags and menus.
  void EditHeaderButtonClick();

 private:
  Application& app_;
};

}  // namespace rm
