#include "gui/DesktopProgram.h"

#include <QDockWidget>
#include <QFileDialog>
#include <QGuiApplication>
#include <QScreen>

#include "gui/EditorsWindow.h"
#include "gui/ExplorerWindow.h"
#include "gui/MainWindow.h"
#include "gui/PreviewPanel.h"
#include "gui/ProgramApplication.h"
#include "gui/SettingsPanel.h"
#include "shell/StartUp.h"
#include "shell/WindowPlaces.h"

namespace rmgui {

namespace {

// Docks a panel and keeps it in step with the rest: it re-reads the program after every command
// and its own commands bring every other view up to date.
template <typename Panel>
Panel* Dock(MainWindow& window, rm::Application& app, const QString& title, const QString& objectName,
            Qt::DockWidgetArea area) {
  auto* panel = new Panel(app, &window);
  window.AddPanel(panel, title, objectName, area);
  window.AddSyncListener([panel] { panel->SyncFromModel(); });
  QObject::connect(panel, &Panel::modelChanged, &window, &MainWindow::SyncAll);
  return panel;
}

}  // namespace

DesktopProgram::DesktopProgram() : app_(ui_, clock_) { app_.codecs = &codecs_; }

DesktopProgram::~DesktopProgram() {
  // The handler reaches into this program: it must not outlive it.
  if (auto* program = qobject_cast<ProgramApplication*>(QCoreApplication::instance())) program->SetFaultHandler({});
}

bool DesktopProgram::Start(const Options& options) {
  if (QScreen* screen = QGuiApplication::primaryScreen()) {
    app_.globals.ScreenWidth = screen->geometry().width();
    app_.globals.ScreenHeight = screen->geometry().height();
  }
  app_.mainForm.ArtworkSaver = [this] { return SaveArtwork(); };
  app_.mainForm.FormPositions = [this] { StorePlaces(); };
  if (auto* program = qobject_cast<ProgramApplication*>(QCoreApplication::instance()))
    program->SetFaultHandler([this](std::exception_ptr fault) {
      app_.mainForm.MyExceptionHandler(fault);
      if (window_) window_->SyncAll();
    });

  rm::StartOptions start;
  start.firstParameterGiven = options.firstParameterGiven;
  start.singleInstance = options.singleInstance;
  // Lines logged before the log window exists wait in the model until it is made.
  app_.logWindow.Exists = false;
  start.createWindow = [this](rm::StartWindow w) {
    switch (w) {
      case rm::StartWindow::Image:
        window_ = std::make_unique<MainWindow>(app_, ui_);
        Dock<SettingsPanel>(*window_, app_, "Settings", "settingsDock", Qt::RightDockWidgetArea);
        break;
      case rm::StartWindow::LogWin: app_.logWindow.Exists = true; break;
      case rm::StartWindow::Exploform2:
        Dock<EditorsWindow>(*window_, app_, "Editors", "editorsDock", Qt::RightDockWidgetArea);
        break;
      case rm::StartWindow::Exploform: {
        auto* explorer = Dock<ExplorerWindow>(*window_, app_, "Explorer", "explorerDock", Qt::LeftDockWidgetArea);
        auto* preview = Dock<PreviewPanel>(*window_, app_, "Preview", "previewDock", Qt::LeftDockWidgetArea);
        QObject::connect(explorer, &ExplorerWindow::pictureSelected, preview, &PreviewPanel::ShowPicture);
        break;
      }
      default: break;
    }
  };
  if (rm::StartProgram(app_, start) == rm::StartOutcome::AnotherInstance) return false;
  // The first canvas: empty, at the display's size, in the project's colour mode.
  app_.mainForm.CanvasRedraw();
  // The preview stands under the explorer; the settings share the right side with the editors.
  if (QDockWidget* settings = window_->Dock("settingsDock"))
    if (QDockWidget* editors = window_->Dock("editorsDock")) {
      window_->tabifyDockWidget(editors, settings);
      editors->raise();
    }
  RestorePlaces();
  window_->SyncAll();
  return true;
}

void DesktopProgram::Show() { window_->show(); }

namespace {

struct DockRole {
  const char* objectName;
  rm::DesktopWindow window;
};
constexpr DockRole kDocks[] = {{"explorerDock", rm::DesktopWindow::Explorer},
                               {"editorsDock", rm::DesktopWindow::Editors},
                               {"settingsDock", rm::DesktopWindow::Settings},
                               {"logDock", rm::DesktopWindow::Log}};

}  // namespace

// The Work Canvas is the middle of the main window here, so the canvas window's place is the main
// window's. Panels are docks: they come back docked where they were put, at their saved size, and
// shown or hidden as they were; a panel the user floated comes back at its saved place.
void DesktopProgram::RestorePlaces() {
  MainWindow& w = *window_;
  const rm::WindowPlace canvas = rm::ReadWindowPlace(app_, rm::DesktopWindow::WorkCanvas);
  if (canvas.left >= 0 && canvas.top >= 0 && canvas.width > 0 && canvas.height > 0) {
    w.resize(canvas.width, canvas.height);
    w.move(canvas.left, canvas.top);
  } else if (QScreen* screen = QGuiApplication::primaryScreen()) {
    // Never placed (a first run): the factory size was made for the canvas alone, so the window
    // takes most of the screen instead, centred.
    const QRect free = screen->availableGeometry();
    w.resize(free.width() * 17 / 20, free.height() * 17 / 20);
    w.move(free.center() - QPoint(w.width() / 2, w.height() / 2));
  }
  for (const DockRole& role : kDocks) {
    QDockWidget* dock = w.Dock(role.objectName);
    if (!dock) continue;
    const rm::WindowPlace p = rm::ReadWindowPlace(app_, role.window);
    bool shown = p.shown;
    if (role.window == rm::DesktopWindow::Log) shown = shown && app_.logWindow.Visible;
    dock->setVisible(shown);
    // The places were made for free windows on a whole screen: a panel never takes more than a
    // fifth of the main window's width, so the canvas keeps most of it; a wider panel is one drag
    // away.
    if (p.width > 0) w.resizeDocks({dock}, {std::min(p.width, w.width() / 5)}, Qt::Horizontal);
    if (p.height > 0 && role.window == rm::DesktopWindow::Log)
      w.resizeDocks({dock}, {std::min(p.height, w.height() / 3)}, Qt::Vertical);
    if (role.window == rm::DesktopWindow::Editors && p.tab >= 0) app_.globals.EditorsPage = p.tab;
  }
}

void DesktopProgram::StorePlaces() {
  MainWindow& w = *window_;
  rm::WindowPlace canvas;
  canvas.shown = !w.isMinimized();
  canvas.left = std::max(0, w.x());
  canvas.top = std::max(0, w.y());
  canvas.width = w.width();
  canvas.height = w.height();
  rm::StoreWindowPlace(app_, rm::DesktopWindow::WorkCanvas, canvas);
  for (const DockRole& role : kDocks) {
    QDockWidget* dock = w.Dock(role.objectName);
    if (!dock) continue;
    rm::WindowPlace p = rm::ReadWindowPlace(app_, role.window);
    p.shown = dock->isVisible();
    const QPoint at = dock->mapToGlobal(QPoint(0, 0));
    p.left = std::max(0, at.x());
    p.top = std::max(0, at.y());
    p.width = dock->width();
    p.height = dock->height();
    if (role.window == rm::DesktopWindow::Editors) p.tab = app_.globals.EditorsPage;
    rm::StoreWindowPlace(app_, role.window, p);
  }
}

bool DesktopProgram::SaveArtwork() {
  const QString path =
      QFileDialog::getSaveFileName(window_.get(), "Save Artwork", QString::fromStdString(app_.globals.LastArtworkPath),
                                   "Portable Network Graphics (*.png);;Bitmaps (*.bmp)");
  if (path.isEmpty()) return false;
  std::string error;
  const bool bmp = path.endsWith(".bmp", Qt::CaseInsensitive);
  const std::string file =
      bmp || path.endsWith(".png", Qt::CaseInsensitive) ? path.toStdString() : path.toStdString() + ".png";
  const bool ok = bmp ? codecs_.SaveBmp(app_.pixelForm.WorkBitmap, file, error)
                      : codecs_.SavePng(app_.pixelForm.WorkBitmap, file, error);
  if (!ok)
    app_.ui.MessageDlg(" " + error + " ", "Error", rm::DlgType::Error, {"OK"});
  else
    app_.mainForm.StatusBarAndLog("Artwork saved to " + file);
  return ok;
}

}  // namespace rmgui
