#pragma once
#include <QWidget>

class QLabel;

namespace rm {
class Application;
}

namespace rmgui {

// The preview of the picture chosen in the explorer: turned, reloaded or fitted before it goes to
// the Work Canvas. The picture and every command are the library's (TExploForm2's preview).
class PreviewPanel : public QWidget {
  Q_OBJECT
 public:
  explicit PreviewPanel(rm::Application& app, QWidget* parent = nullptr);

 public slots:
  void SyncFromModel();
  // Loads `path` into the preview (the library tells the user when it cannot be read).
  void ShowPicture(const QString& path);

 signals:
  void modelChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Command(bool (*changed)(rm::Application&));

  rm::Application& app_;
  QLabel* picture_ = nullptr;
  QLabel* size_ = nullptr;
};

}  // namespace rmgui
