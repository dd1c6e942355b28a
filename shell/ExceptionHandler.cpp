// The last stop of a fault that no command caught. The program goes on after it: a fault becomes
// a line in the log and, when the user can do something about it, a message.
#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>

#include "shell/Application.h"

namespace rm {

const char* ReportKindName(ReportKind kind) {
  switch (kind) {
    case ReportKind::HandledExcept: return "Handled_Except";
    case ReportKind::HidExcept: return "Hid Except";
    case ReportKind::AvExcept: return "AV Except";
    case ReportKind::OleExcept: return "OLE Except";
    case ReportKind::Except: break;
  }
  return "Except";
}

namespace {

enum class Outcome { OutOfMemory, AccessRefused, InvalidName, FocusFault, ScanLineFault, IndexFault, Other };

struct Sorted {
  Outcome outcome;
  std::string text;
};

bool IsOutOfMemory(std::error_code c) { return c == std::errc::not_enough_memory; }
bool IsAccessRefused(std::error_code c) {
  return c == std::errc::permission_denied || c == std::errc::operation_not_permitted ||
         c == std::errc::read_only_file_system;
}

// By the fault's type first, and for system errors by their code, which is what the operating
// system said; the text of a fault differs between library versions and is only shown.
Sorted Sort(const std::exception_ptr& fault) {
  if (!fault) return {Outcome::Other, "Unknown exception"};
  try {
    std::rethrow_exception(fault);
  } catch (const WindowFocusError& e) {
    return {Outcome::FocusFault, e.what()};
  } catch (const ScanLineError& e) {
    return {Outcome::ScanLineFault, e.what()};
  } catch (const std::bad_alloc& e) {
    return {Outcome::OutOfMemory, e.what()};
  } catch (const std::length_error& e) {
    // The standard containers throw it when asked for more than they can ever hold.
    return {Outcome::OutOfMemory, e.what()};
  } catch (const std::filesystem::filesystem_error& e) {
    const std::error_code c = e.code();
    if (IsOutOfMemory(c)) return {Outcome::OutOfMemory, e.what()};
    if (IsAccessRefused(c)) return {Outcome::AccessRefused, e.what()};
    // Codes the system gives for a name it cannot take; an empty name is reported as missing.
    if (c == std::errc::filename_too_long || c == std::errc::illegal_byte_sequence ||
        c == std::errc::invalid_argument || (c == std::errc::no_such_file_or_directory && e.path1().empty()))
      return {Outcome::InvalidName, e.what()};
    return {Outcome::Other, e.what()};
  } catch (const std::system_error& e) {
    // Without a path, an invalid argument or a bad byte sequence need not be about a name.
    const std::error_code c = e.code();
    if (IsOutOfMemory(c)) return {Outcome::OutOfMemory, e.what()};
    if (IsAccessRefused(c)) return {Outcome::AccessRefused, e.what()};
    if (c == std::errc::filename_too_long) return {Outcome::InvalidName, e.what()};
    return {Outcome::Other, e.what()};
  } catch (const std::out_of_range& e) {
    return {Outcome::IndexFault, e.what()};
  } catch (const std::exception& e) {
    return {Outcome::Other, e.what()};
  } catch (...) {
    return {Outcome::Other, "Unknown exception"};
  }
}

}  // namespace

void ExceptionHandler::HiddenExcept(const std::string& text) {
  ++app_.globals.ErrorCount;
  app_.logWindow.Add(">> " + text);
}

// The translated faults (out of memory, file access refused, invalid file name) are shown to the
// user as well as logged: each asks the user to act (close something, check the file's rights,
// choose another name), and a silent log line would leave a failed command unexplained. A
// console session only logs them, through MessageDlgA. The others only go to the log: the user
// could do nothing about them, and the command that failed has already stopped.
ReportKind ExceptionHandler::MyExceptionHandler(std::exception_ptr fault) noexcept {
  Globals& g = app_.globals;
  g.ExceptionSeen = true;
  bool counted = false;  // the count has been settled, stepped or not
  try {
    g.ExceptionFormName = g.ActiveFormName;
    g.ExceptionControlName = g.ActiveControlName;
    const Sorted s = Sort(fault);
    const std::string where = "(" + g.ExceptionFormName + "[" + g.ExceptionControlName + "])";
    switch (s.outcome) {
      case Outcome::OutOfMemory:
      case Outcome::AccessRefused:
      case Outcome::InvalidName: {
        const char* message = s.outcome == Outcome::OutOfMemory     ? "Out of memory !"
                              : s.outcome == Outcome::AccessRefused ? "File access refused !"
                                                                    : "Invalid File Name !";
        // A name the user typed wrong is not a fault of the program and is not counted.
        if (s.outcome != Outcome::InvalidName) ++g.ErrorCount;
        counted = true;
        app_.logWindow.Add(">> " + std::string(message) + where);
        app_.mainForm.MessageDlgA(message, "Error", 0, 4, 1);
        return ReportKind::HandledExcept;
      }
      case Outcome::FocusFault:
        counted = true;
        HiddenExcept(s.text);
        return ReportKind::HidExcept;
      case Outcome::ScanLineFault:
        // The last action tells which command was drawing when the row went out of range.
        counted = true;
        HiddenExcept(s.text + " : " + g.LastAction);
        return ReportKind::HidExcept;
      case Outcome::IndexFault:
        ++g.ErrorCount;
        counted = true;
        app_.logWindow.Add(">> LI Error =" + where);
        return ReportKind::Except;
      case Outcome::Other:
        ++g.ErrorCount;
        counted = true;
        app_.logWindow.Add(">> " + s.text + where);
        return ReportKind::Except;
    }
  } catch (...) {
    // Out of memory again, or a front end that failed to show the message: the fault is still
    // counted, and nothing more can safely be done.
  }
  if (!counted) ++g.ErrorCount;
  return ReportKind::Except;
}

}  // namespace rm
