// The two ways the program asks the user something. Both log the question first, so the log
// tells the whole story even when nobody was there to answer.
#include <algorithm>
#include <cctype>
#include <string_view>

#include "shell/Application.h"
#include "shell/ConsoleUi.h"

namespace rm {

namespace {

struct StandardButton {
  int bit;
  const char* caption;
  int result;
};
// In the order the buttons stand in the dialog.
constexpr StandardButton kStandardButtons[] = {{1, "Yes", 6}, {2, "No", 7}, {4, "OK", 1}, {8, "Cancel", 2}};

DlgType TypeOfKind(int kind) {
  switch (kind) {
    case 0: return DlgType::Warning;
    case 1: return DlgType::Error;
    case 2: return DlgType::Information;
    case 3: return DlgType::Confirmation;
    default: return DlgType::Custom;
  }
}

const char* TitleOfType(DlgType type) {
  switch (type) {
    case DlgType::Warning: return "Warning";
    case DlgType::Error: return "Error";
    case DlgType::Information: return "Information";
    case DlgType::Confirmation: return "Confirm";
    case DlgType::Custom: break;
  }
  return "Rastermill";
}

bool SameCaption(const std::string& a, const char* b) {
  const std::string_view v(b);
  return a.size() == v.size() && std::equal(a.begin(), a.end(), v.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

}  // namespace

// Nobody is asked in a console session, nor when RepeatGuard holds back a message that already
// stands in the status field. The answer is then the one Esc would give: Cancel, else No, else
// OK, so an unattended run never agrees to something by itself.
int MessageDialogs::MessageDlgA(const std::string& text, const std::string& title, int /*help*/, int buttons,
                                int kind) {
  const Globals& g = app_.globals;
  TLogWindowForm& log = app_.logWindow;
  const bool standing = text == log.LastMessage;
  log.Add("Message :" + text);

  std::vector<std::string> captions;
  for (const auto& b : kStandardButtons)
    if (buttons & b.bit) captions.emplace_back(b.caption);
  if (captions.empty()) captions.emplace_back("OK");  // a dialog needs a way to close it
  const auto resultOf = [&](const std::string& caption) {
    for (const auto& b : kStandardButtons)
      if (caption == b.caption) return b.result;
    return -1;
  };
  const int unattended = resultOf(ConsoleUi::SafeButton(captions));

  if (g.ConsoleMode) {
    log.Add(">> Message Dialog :" + text);
    return unattended;
  }
  if (g.RepeatGuard && standing) return unattended;
  const int result = resultOf(app_.frontUi.MessageDlg(text, title, TypeOfKind(kind), captions));
  return result < 0 ? unattended : result;  // closed without a button: as Esc
}

// The same rules with the caller's captions. Unattended, the answer is the default button (or,
// when that is not shown, the one Esc would give); a dialog closed without a button gives 0.
int MessageDialogs::MyMessageDialog(const std::string& text, DlgType type, int defaultButton,
                                    const std::vector<std::string>& captions, int buttons) {
  const Globals& g = app_.globals;
  TLogWindowForm& log = app_.logWindow;
  const bool standing = text == log.LastMessage;
  log.Add("Message Dialog :" + text);

  std::vector<std::string> shown;
  std::vector<int> bits;
  for (std::size_t i = 0; i < std::min<std::size_t>(captions.size(), 3); ++i) {
    const int bit = 1 << i;
    if (buttons != 0 && !(buttons & bit)) continue;
    shown.push_back(captions[i]);
    bits.push_back(bit);
  }
  if (shown.empty()) {
    shown.emplace_back("OK");
    bits.push_back(1);
  }
  const auto bitOf = [&](const std::string& caption) {
    for (std::size_t i = 0; i < shown.size(); ++i)
      if (shown[i] == caption) return bits[i];
    return 0;
  };
  const auto unattended = [&] {
    if (std::find(bits.begin(), bits.end(), defaultButton) != bits.end()) return defaultButton;
    return bitOf(ConsoleUi::SafeButton(shown));
  };

  if (g.ConsoleMode) {
    log.Add(">> Message Dialog :" + text);
    return unattended();
  }
  if (g.RepeatGuard && standing) return unattended();
  const std::string answer = app_.frontUi.MessageDlg(text, TitleOfType(type), type, shown);
  // The answers to a floating selection are worth a line of their own: they decide what became
  // of the user's pixels.
  if (SameCaption(answer, "Paste Now"))
    log.Add("Dialog Button Paste Now");
  else if (SameCaption(answer, "Move"))
    log.Add("Dialog Button Move ");
  else if (SameCaption(answer, "Cancel"))
    log.Add("Dialog Button Cancel");
  return bitOf(answer);
}

}  // namespace rm
