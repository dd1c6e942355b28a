#include "gui/MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "gui/CanvasWidget.h"
#include "gui/LogView.h"
#include "gui/QtUi.h"
#include "shell/Application.h"

namespace rmgui {

MainWindow::MainWindow(rm::Application& app, QtUi& ui, QWidget* parent) : QMainWindow(parent), app_(app), ui_(ui) {
  setObjectName("mainWindow");
  setDockNestingEnabled(true);
  canvas_ = new CanvasWidget(app_, this);
  setCentralWidget(canvas_);
  connect(canvas_, &CanvasWidget::cellHovered, this, &MainWindow::ShowCell);
  connect(canvas_, &CanvasWidget::modelChanged, this, [this] { SyncAll(); });
  connect(canvas_, &CanvasWidget::fileDropped, this, [this](const QString& path) {
    Run([&] { app_.mainForm.OpenPic(path.toStdString()); });
    canvas_->FitToWindow();
  });

  log_ = new LogView(app_, this);
  QDockWidget* logDock = AddPanel(log_, "Log", "logDock", Qt::BottomDockWidgetArea);
  // "Show Log Window" and "Hide Log Window" are the dock's own toggle.
  logDock->toggleViewAction()->setText("Show Log Window");
  connect(logDock->toggleViewAction(), &QAction::toggled, this, [this](bool shown) {
    Run([&] { shown ? app_.mainForm.ShowLogWindow1Click() : app_.mainForm.HideLogWindow1Click(); });
  });

  BuildMenus();
  BuildToolBars();
  BuildStatusBar();
  BuildCollectionDock();
  connect(&ui_, &QtUi::statusChanged, statusText_, &QLabel::setText);
  connect(&ui_, &QtUi::progressChanged, this, [this](long long position, long long max) {
    if (max <= 0 || position >= max) {
      progress_->hide();
      return;
    }
    // The bar counts in thousandths so that byte counts beyond an int fit.
    progress_->setRange(0, 1000);
    progress_->setValue(static_cast<int>(position * 1000 / max));
    progress_->show();
  });
  ui_.SetDialogParent(this);
}

QDockWidget* MainWindow::AddPanel(QWidget* panel, const QString& title, const QString& objectName,
                                  Qt::DockWidgetArea area) {
  auto* dock = new QDockWidget(title, this);
  dock->setObjectName(objectName);
  dock->setWidget(panel);
  addDockWidget(area, dock);
  return dock;
}

QDockWidget* MainWindow::Dock(const QString& objectName) const { return findChild<QDockWidget*>(objectName); }

void MainWindow::Run(const std::function<void()>& command) {
  try {
    command();
  } catch (...) {
    app_.mainForm.MyExceptionHandler(std::current_exception());
  }
  SyncAll();
}

QAction* MainWindow::Add(QMenu* menu, const QString& text, const std::function<void()>& command,
                         const QKeySequence& shortcut) {
  QAction* a = menu->addAction(text);
  if (!shortcut.isEmpty()) a->setShortcut(shortcut);
  connect(a, &QAction::triggered, this, [this, command] { Run(command); });
  return a;
}

QAction* MainWindow::FindAction(const QString& text) const {
  for (QAction* a : findChildren<QAction*>()) {
    QString plain = a->text();
    plain.remove('&');
    if (plain == text) return a;
  }
  return nullptr;
}

void MainWindow::ShowCell(int x, int y) {
  const std::string colour = app_.mainForm.PixelStatusText(x, y);
  if (colour.empty()) {
    pixelInfo_->clear();
    return;
  }
  pixelInfo_->setText(QString::fromStdString(rm::TMainForm::PixelPositionText(x, y) + colour));
}

void MainWindow::SyncAll() {
  if (syncing_) return;
  syncing_ = true;
  const rm::ConversionSession& s = app_.session;
  const rm::TPixelForm& c = app_.pixelForm;
  setWindowTitle(QString::fromStdString(app_.mainForm.CanvasCaption()));
  for (auto& [action, mode] : modeActions_) action->setChecked(s.ModeNumber == mode);
  for (auto& [action, d] : directionActions_) action->setChecked(static_cast<int>(s.Direction) == d);
  for (auto& [action, kind] : outputActions_) action->setChecked(static_cast<int>(s.Output) == kind);
  for (auto& [action, mode] : ditherActions_) action->setChecked(static_cast<int>(c.DitherChoice) == mode);
  for (auto& [action, size] : presetActions_)
    action->setChecked(!app_.globals.NoMatrixMode && size.first == app_.globals.MatrixWidth &&
                       size.second == app_.globals.MatrixHeight);
  reduceMono_->setChecked(c.ColorReductionChoice == rm::ColorReduction::Monochrome);
  reduceGray_->setChecked(c.ColorReductionChoice == rm::ColorReduction::GrayScale);
  msbFirst_->setChecked(s.BigEndian);
  msbLast_->setChecked(!s.BigEndian);
  pictureMode_->setChecked(app_.globals.NoMatrixMode);
  modeMenu_->setEnabled(app_.globals.ColourMenuEnabled);
  gridAction_->setChecked(c.GridVisible);
  pagingLinesAction_->setChecked(c.PagingSchemeVisible);
  undo_->setEnabled(c.UndoEnabled);
  redo_->setEnabled(c.RedoEnabled);
  threshold_->blockSignals(true);
  threshold_->setValue(c.BWTrackBar);
  threshold_->blockSignals(false);
  if (!thresholdValue_->hasFocus()) thresholdValue_->setText(QString::fromStdString(c.BlackWhiteEdit));
  const QString size = QString("%1X%2").arg(app_.globals.MatrixWidth).arg(app_.globals.MatrixHeight);
  sizeCombo_->blockSignals(true);
  sizeCombo_->setCurrentIndex(sizeCombo_->findText(size));
  sizeCombo_->blockSignals(false);
  panel1_->setText(QString::fromStdString(app_.mainForm.StatusPanel1()));
  panel2_->setText(QString::fromStdString(app_.mainForm.StatusPanel2()));
  inForce_->setText(QString::fromStdString(app_.mainForm.InForceText()));
  // A floating picture is not yet part of the artwork: say so, and how to place it.
  panel4_->setText(c.FloatingSelection ? QString::fromStdString(c.StatusPanel4) +
                                             "   Floating picture: drag to place, Enter or click outside to lay "
                                             "it down, Esc to discard"
                                       : QString());
  for (int i = 0; i < static_cast<int>(collectionButtons_.size()); ++i) {
    const rm::Bitmap& thumb = c.CollectionSlots[i].Thumbnail;
    QToolButton* b = collectionButtons_[static_cast<std::size_t>(i)];
    if (thumb.Width() > 0 && thumb.Height() > 0) {
      const QImage image(reinterpret_cast<const uchar*>(thumb.Row(0)), thumb.Width(), thumb.Height(), thumb.Width() * 4,
                         QImage::Format_RGBX8888);
      b->setIcon(QIcon(QPixmap::fromImage(image)));
    } else {
      b->setIcon(QIcon());
    }
  }
  // The lists themselves are rebuilt as their menu opens: a command run from one of their items
  // must not delete the item under its own feet.
  recentMenu_->setEnabled(!app_.globals.RecentFiles.empty());
  customSizeMenu_->setEnabled(!app_.mainForm.CustomSizeMenuItems().empty());
  canvas_->SyncFromModel();
  log_->SyncFromModel();
  for (const auto& listener : listeners_) listener();
  syncing_ = false;
}

bool MainWindow::QuitRequested() {
  rm::TMainForm::QuitOutcome outcome = rm::TMainForm::QuitOutcome::Refused;
  Run([&] { outcome = app_.mainForm.FormCloseQuery(); });
  if (outcome != rm::TMainForm::QuitOutcome::Quit) return false;
  emit quitConfirmed();
  return true;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (app_.globals.QuitInProgress || QuitRequested()) {
    event->accept();
  } else {
    event->ignore();
  }
}

}  // namespace rmgui
