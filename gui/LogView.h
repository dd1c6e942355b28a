#pragma once
#include <QListWidget>

namespace rm {
class Application;
}

namespace rmgui {

// The log window: the program's log lines as the library keeps them, added to the list as they
// come so that a long session's log is not rebuilt on every command.
class LogView : public QListWidget {
  Q_OBJECT
 public:
  explicit LogView(rm::Application& app, QWidget* parent = nullptr);
 public slots:
  void SyncFromModel();

 private:
  rm::Application& app_;
};

}  // namespace rmgui
