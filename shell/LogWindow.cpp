#include "shell/LogWindow.h"

#include "shell/Application.h"

namespace rm {

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

}  // namespace rm
