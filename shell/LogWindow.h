#pragma once
#include <cstddef>
#include <stdexcept>
#include <string>

#include "engine/TextLines.h"

namespace rm {

// The log window: the list of the user's steps, in the order they happened. The window itself
// belongs to the front end; this is its model. The status field and the repeat rule that feeds
// it are in MessageLog::StatusBarAndLog.
class TLogWindowForm {
 public:
  // Adds a line as it is and scrolls the list to it. Nothing happens while the window does not
  // exist: there is nowhere to show the line.
  void Add(const std::string& line);
  // Adds `text` unless it repeats the last line added by this rule (`LastLogged`) or the line the
  // list ends with, so that a step reported over and over fills the log once.
  // True when the line was added.
  bool AddUnlessRepeated(const std::string& text);
  // Scrolls the list to its last line.
  void ScrollToEnd();
  const std::string& LastLine() const;

  // False until the start-up has created the window; the front end's start sequence clears it
  // at first and sets it when it reaches the log window.
  bool Exists = true;
  bool Visible = true;
  TextLines Lines;
  // The line the list is scrolled to; -1 while the list is empty.
  std::ptrdiff_t ItemIndex = -1;
  // The last text given to the status and log, shown or not.
  std::string LastMessage;
  // The last text really added by the status and log rule; an empty text clears it.
  std::string LastLogged;
};

// What a failure report says about a fault, for the statistics the program may send.
enum class ReportKind { HandledExcept, HidExcept, AvExcept, OleExcept, Except };
// "Handled_Except", "Hid Except", "AV Except", "OLE Except", "Except".
const char* ReportKindName(ReportKind kind);

// Faults a front end may raise from its views; the failure handler swallows both, because
// they only mean that a repaint or a focus change came at the wrong moment.
// A window that cannot take the focus (hidden, disabled, or not yet shown).
class WindowFocusError : public std::runtime_error {
 public:
  WindowFocusError() : std::runtime_error("Cannot focus a disabled or invisible window") {}
  using std::runtime_error::runtime_error;
};
// A pixel row asked of a bitmap outside its height, mostly while it is being resized.
class ScanLineError : public std::out_of_range {
 public:
  ScanLineError() : std::out_of_range("Scan line index out of range") {}
  using std::out_of_range::out_of_range;
};

}  // namespace rm
