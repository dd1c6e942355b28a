#pragma once
#include <QMainWindow>
#include <functional>
#include <vector>

class QAction;
class QActionGroup;
class QComboBox;
class QDockWidget;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QSlider;
class QToolButton;

namespace rm {
class Application;
}

namespace rmgui {

class CanvasWidget;
class LogView;
class QtUi;

// The main window: menus and tool bars of the commands the library offers, the Work Canvas in the
// middle, the panels (explorer, editors, settings, log, Image Collection) docked around it.
// Every command goes through Run(), which catches a fault for the failure handler and brings
// every view up to date afterwards.
class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  MainWindow(rm::Application& app, QtUi& ui, QWidget* parent = nullptr);

  CanvasWidget* Canvas() const { return canvas_; }
  // Runs one user command: faults go to the program's failure handler, then all views sync.
  void Run(const std::function<void()>& command);
  // The first action whose text (without "&") is `text`, anywhere in the menus; for tests and
  // scripting.
  QAction* FindAction(const QString& text) const;
  // Docks a panel at `area`; `objectName` names the dock for tests and for the saved places.
  QDockWidget* AddPanel(QWidget* panel, const QString& title, const QString& objectName, Qt::DockWidgetArea area);
  QDockWidget* Dock(const QString& objectName) const;

  // The state of every view from the model: caption, status panels, ticks, enabled commands.
  void SyncAll();
  // Views besides the main window's own that want SyncAll (the docked panels).
  void AddSyncListener(std::function<void()> listener) { listeners_.push_back(std::move(listener)); }

  // The quit sequence's answer, for the close box and "Quit Rastermill".
  bool QuitRequested();

 signals:
  void quitConfirmed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private slots:
  void ShowCell(int x, int y);

 private:
  void BuildMenus();
  void BuildFileMenu();
  void BuildCanvasMenu();
  void BuildDisplayMenu();
  void BuildModeMenu();
  void BuildOutputMenu();
  void BuildReductionMenu();
  void BuildWindowMenu();
  void BuildToolBars();
  void BuildStatusBar();
  void BuildCollectionDock();
  void RebuildRecentMenu();
  void RebuildCustomSizeMenu();
  QAction* Add(QMenu* menu, const QString& text, const std::function<void()>& command,
               const QKeySequence& shortcut = {});
  void OpenPicture(bool directly);
  void ChooseCustomSize();

  rm::Application& app_;
  QtUi& ui_;
  CanvasWidget* canvas_ = nullptr;
  LogView* log_ = nullptr;
  std::vector<std::function<void()>> listeners_;
  std::vector<std::pair<QAction*, int>> modeActions_;
  std::vector<std::pair<QAction*, int>> directionActions_;
  std::vector<std::pair<QAction*, int>> outputActions_;
  std::vector<std::pair<QAction*, int>> ditherActions_;
  std::vector<std::pair<QAction*, std::pair<int, int>>> presetActions_;
  std::vector<QToolButton*> collectionButtons_;
  QAction* msbFirst_ = nullptr;
  QAction* msbLast_ = nullptr;
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  QAction* pictureMode_ = nullptr;
  QAction* gridAction_ = nullptr;
  QAction* pagingLinesAction_ = nullptr;
  QAction* reduceMono_ = nullptr;
  QAction* reduceGray_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QMenu* customSizeMenu_ = nullptr;
  QMenu* modeMenu_ = nullptr;
  QComboBox* sizeCombo_ = nullptr;
  QSlider* threshold_ = nullptr;
  QLineEdit* thresholdValue_ = nullptr;
  QLabel* panel1_ = nullptr;
  QLabel* panel2_ = nullptr;
  QLabel* statusText_ = nullptr;
  QLabel* panel4_ = nullptr;
  QLabel* pixelInfo_ = nullptr;
  QLabel* cellSize_ = nullptr;
  QLabel* inForce_ = nullptr;
  QProgressBar* progress_ = nullptr;
  bool syncing_ = false;
};

}  // namespace rmgui
