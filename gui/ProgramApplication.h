#pragma once
#include <QApplication>
#include <exception>
#include <functional>

namespace rmgui {

// The desktop program's application object: a fault that escapes any window's handler reaches
// the program's failure handler, which tells the user or logs it, and the program goes on.
class ProgramApplication : public QApplication {
  Q_OBJECT
 public:
  using QApplication::QApplication;
  void SetFaultHandler(std::function<void(std::exception_ptr)> handler) { faultHandler_ = std::move(handler); }
  bool notify(QObject* receiver, QEvent* event) override;

 private:
  std::function<void(std::exception_ptr)> faultHandler_;
};

}  // namespace rmgui
