#include "gui/ProgramApplication.h"

namespace rmgui {

bool ProgramApplication::notify(QObject* receiver, QEvent* event) {
  if (!faultHandler_) return QApplication::notify(receiver, event);
  try {
    return QApplication::notify(receiver, event);
  } catch (...) {
    faultHandler_(std::current_exception());
    return false;
  }
}

}  // namespace rmgui
