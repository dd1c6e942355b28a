#pragma once
#include <exception>
#include <string>

#include "shell/LogWindow.h"

namespace rm {

class Application;

// The failure handler: faults that reached the top of a command, sorted, counted and logged.
class ExceptionHandler {
 public:
  explicit ExceptionHandler(Application& app) : app_(app) {}

  // A fault the user is not shown: counted, and ">> " + text in the log.
  void HiddenExcept(const std::string& text);
  // Sorts a fault that reached the top of a command into the known cases, tells the user or
  // not, counts and logs it, and says how it is to be reported. Never throws. Call it from the
  // front end's catch block with std::current_exception(), which keeps the fault's own type.
  ReportKind MyExceptionHandler(std::exception_ptr fault) noexcept;

 private:
  Application& app_;
};

}  // namespace rm
