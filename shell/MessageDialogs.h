#pragma once
#include <string>
#include <vector>

#include "engine/UiPort.h"

namespace rm {

class Application;

// The two ways the program asks the user something, both logged first.
class MessageDialogs {
 public:
  explicit MessageDialogs(Application& app) : app_(app) {}

  // A message with standard buttons. `buttons` is a mask: 1 Yes, 2 No, 4 OK, 8 Cancel; `kind`
  // 0 warning, 1 error, 2 information, 3 confirmation. Returns 1 OK, 2 Cancel, 6 Yes, 7 No.
  // `help` is unused and always 0.
  int MessageDlgA(const std::string& text, const std::string& title, int help, int buttons, int kind);
  // A message with up to three buttons of the caller's captions; `buttons` chooses which of
  // them are shown (1 first, 2 second, 4 third; 0 all). Returns 1, 2 or 4 for the button
  // pressed; `defaultButton` is the one Enter presses and the answer when nobody is asked.
  int MyMessageDialog(const std::string& text, DlgType type, int defaultButton,
                      const std::vector<std::string>& captions, int buttons = 0);

 private:
  Application& app_;
};

}  // namespace rm
