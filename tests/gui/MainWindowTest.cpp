// The main window driven as a user drives it: menus, dialogs, the canvas under the mouse, the
// explorer's picture preview, and the user port (Esc and the progress bar) during long work.
#include <QAction>
#include <QDialog>
#include <QFileDialog>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWheelEvent>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeWidget>
#include <filesystem>

#include "canvas/ViewScale.h"
#include "gui/CanvasWidget.h"
#include "gui/DesktopProgram.h"
#include "gui/HelpMenu.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "gui/QtUi.h"
#include "engine/OutputNaming.h"
#include "shell/WindowPlaces.h"
#include "support/ShellTestSupport.h"

using rmtest::AnswerNextMessage;

namespace {

// Accepts the next file dialog with `path` chosen.
void ChooseFileNext(const QString& path) {
  QTimer::singleShot(0, [path] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    QVERIFY2(dialog, "no file dialog");
    dialog->selectFile(path);
    static_cast<QDialog*>(dialog)->accept();
  });
}

// A mouse move without a button, straight to the widget: the window may stand partly off the
// small offscreen screen, where the platform would not deliver a move.
void MoveMouse(QWidget* widget, const QPoint& at) {
  QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(widget, &move);
}

// Confirms the next Export dialog as it opens.
void ConfirmExportNext() {
  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    QVERIFY2(dialog && dialog->objectName() == "exportDialog", "no export dialog");
    dialog->accept();
  });
}

// A picture twice the default display in each direction, so that opening it asks about resizing.
std::string WriteLargePicture(const std::string& folder) {
  const rm::Bitmap picture = rmtest::PatternPicture(256, 128, {rm::kBlack, rm::kWhite});
  const std::string path = folder + "/large.png";
  rm::PlatformImageCodecs codecs;
  std::string error;
  if (!codecs.SavePng(picture, path, error)) qFatal("cannot write %s: %s", path.c_str(), error.c_str());
  return path;
}

struct Started {
  rmtest::GuiHome home;
  rmgui::DesktopProgram program;
  Started() { rmtest::StartShown(program); }
  rm::Application& app() { return program.App(); }
  rmgui::MainWindow& window() { return program.Window(); }
  void Trigger(const QString& text) {
    QAction* a = window().FindAction(text);
    QVERIFY2(a, qPrintable("no action " + text));
    a->trigger();
  }
};

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT
 private slots:
  void initTestCase() { qputenv("SOURCE_DATE_EPOCH", "1700000000"); }

  // The whole road: the file action, the resize question answered, Convert with its dialog; the
  // text is what the same steps give without windows.
  void openResizeAndConvert() {
    Started s;
    const std::string picture = WriteLargePicture(s.home.Path());
    QString asked;
    ChooseFileNext(QString::fromStdString(picture));
    AnswerNextMessage("Yes", &asked);
    s.Trigger("Open Graphic...");
    QVERIFY(asked.contains("Resize graphic to fit Work Canvas ?"));
    QVERIFY2(!asked.contains('\r'), "a \\r must be shown as a line break");
    QVERIFY(s.app().pixelForm.FloatingSelection);
    s.Trigger("OK Paste Layer");
    ConfirmExportNext();
    s.Trigger("Convert Work Canvas to Data");
    const std::string shown = s.app().mainText.Text();

    rmtest::TestProgram expected;
    expected.app.mainForm.LoadFolders();
    expected.app.mainForm.LoadConfigurationX();
    expected.app.mainForm.CanvasRedraw();
    expected.ui.answers = {"Yes"};
    QVERIFY(expected.app.mainForm.OpenPic(picture));
    expected.app.imageForm.OKPasteLayerClick();
    QVERIFY(expected.app.imageForm.EncodeButtonClick());
    QVERIFY(!shown.empty());
    QCOMPARE(QString::fromStdString(shown), QString::fromStdString(expected.app.mainText.Text()));
    // The editors show the text, on their first tab.
    auto* editor = s.window().findChild<QPlainTextEdit*>("mainEditor");
    QVERIFY(editor);
    QCOMPARE(editor->toPlainText() + "\n", QString::fromStdString(shown));
    QCOMPARE(s.window().findChild<QTabWidget*>("editorTabs")->currentWidget(), editor);

    // The factory project saves the table in the Output files folder as it is made; saving it
    // again asks before replacing.
    const std::string saved = rm::OutputPath(s.app().session);
    QVERIFY(saved.find("/Output Files/") != std::string::npos);
    QCOMPARE(QString::fromStdString(rmtest::ReadFile(saved)), QString::fromStdString(shown));
    QString replace;
    AnswerNextMessage("No", &replace);
    s.Trigger("Save Data Array");
    QCOMPARE(replace, QString(" File already exits,  Overwrite ?"));

    // The opened picture comes first in the recent files and opens again from there, twice in a
    // row (the list is rebuilt in between).
    auto* recent = s.window().findChild<QMenu*>("recentMenu");
    QVERIFY(recent && recent->isEnabled());
    for (int round = 0; round < 2; ++round) {
      QMetaObject::invokeMethod(recent, "aboutToShow");
      QVERIFY(!recent->actions().isEmpty());
      QCOMPARE(recent->actions().front()->text(), "&0 " + QString::fromStdString(picture));
      AnswerNextMessage("Yes");
      recent->actions().front()->trigger();
      QVERIFY(s.app().pixelForm.FloatingSelection);
      s.app().pixelForm.DiscardSelection();
    }
  }

  // A canvas stored in the Image Collection shows as its slot's thumbnail and comes back by a
  // click on it.
  void imageCollection() {
    Started s;
    s.app().pixelForm.WorkBitmap.SetPixel(1, 1, rm::kBlack);
    QMenu* store = nullptr;
    for (QMenu* m : s.window().findChildren<QMenu*>())
      if (m->title() == "Copy Work Canvas to Image Collection") store = m;
    QVERIFY(store);
    store->actions().front()->trigger();
    auto* slot = s.window().findChild<QToolButton*>("collectionSlot1");
    QVERIFY(slot && !slot->icon().isNull());
    QVERIFY(s.window().findChild<QToolButton*>("collectionSlot2")->icon().isNull());
    s.app().pixelForm.ClearCanvas();
    QTest::mouseClick(slot, Qt::LeftButton);
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(1, 1), rm::kBlack);
  }

  // Activating another project in the explorer's list brings its display size to the canvas,
  // the size menu and the combo, and empties the text editor; a project renamed in place keeps
  // its settings, and the active one is shown bold.
  void projectSwitch() {
    Started s;
    auto newProject = [&] {
      QString said;
      AnswerNextMessage("OK", &said);
      QTest::mouseClick(s.window().findChild<QPushButton*>("newProjectButton"), Qt::LeftButton);
      QVERIFY(said.contains("was created"));
    };
    s.Trigger("160 x 100");
    newProject();  // "New Project.LCD" at 160 x 100
    s.Trigger("96 x 40");
    newProject();  // "New Project(1).LCD" at 96 x 40
    s.app().mainText.Add("unsaved data");
    s.window().SyncAll();

    auto* projects = s.window().findChild<QListWidget*>("projectList");
    auto project = [&](const QString& name) {
      const auto found = projects->findItems(name, Qt::MatchExactly);
      return found.size() == 1 ? found.front() : nullptr;
    };
    auto activate = [&](const QString& name) {
      QVERIFY2(project(name), qPrintable("no project " + name));
      projects->setCurrentItem(project(name));
      QTest::mouseClick(s.window().findChild<QPushButton*>("activateProjectButton"), Qt::LeftButton);
      QVERIFY(QString::fromStdString(s.app().globals.ActiveProject).endsWith("/" + name));
      QVERIFY(project(name)->font().bold());
    };
    auto* combo = s.window().findChild<QComboBox*>("sizeCombo");
    activate("New Project.LCD");
    QCOMPARE(QSize(s.app().pixelForm.MatrixWidth(), s.app().pixelForm.MatrixHeight()), QSize(160, 100));
    QCOMPARE(combo->currentText(), QString("160X100"));
    QVERIFY(s.window().FindAction("160 x 100")->isChecked());
    QCOMPARE(s.window().findChild<QPlainTextEdit*>("mainEditor")->toPlainText(), QString());

    projects->setCurrentItem(project("New Project(1).LCD"));
    QTest::mouseClick(s.window().findChild<QPushButton*>("renameProjectButton"), Qt::LeftButton);
    QVERIFY(projects->findChild<QLineEdit*>() != nullptr);  // the edit in place is open
    QString renamed;
    AnswerNextMessage("OK", &renamed);
    project("New Project(1).LCD")->setText("Board");  // what the editor commits
    QCOMPARE(renamed, QString("Project has been renamed"));
    QTRY_VERIFY(project("Board.LCD") != nullptr);
    QVERIFY(!project("New Project(1).LCD"));
    QVERIFY(QFile::exists(QString::fromStdString(s.app().exploForm.ProjectsFolder()) + "Board.LCD"));
    activate("Board.LCD");
    QVERIFY(!project("New Project.LCD")->font().bold());
    QCOMPARE(QSize(s.app().pixelForm.MatrixWidth(), s.app().pixelForm.MatrixHeight()), QSize(96, 40));
    QCOMPARE(combo->currentText(), QString("96X40"));
  }

  // A colour mode change over artwork asks whether to clear the canvas; "No" keeps both the
  // artwork and the mode, "Yes" clears and changes.
  void modeChangeAsksAboutClearing() {
    Started s;
    s.app().pixelForm.WorkBitmap.SetPixel(3, 3, rm::kBlack);
    const QString mode16 = "16 colors (4bpp)                                             2 pixels/byte";
    QString asked;
    AnswerNextMessage("No", &asked);
    s.Trigger(mode16);
    QCOMPARE(asked, QString(" Clear the work canvas before to change to 16 colors mode ? "));
    QCOMPARE(s.app().session.ModeNumber, 1);
    QVERIFY(!s.window().FindAction(mode16)->isChecked());
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(3, 3), rm::kBlack);

    AnswerNextMessage("Yes");
    s.Trigger(mode16);
    QCOMPARE(s.app().session.ModeNumber, 55);
    QVERIFY(s.window().FindAction(mode16)->isChecked());
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(3, 3), rm::kWhite);
    QVERIFY(s.window().windowTitle().contains("16"));
  }

  // The view fits the whole display into the window at the first start and after each new
  // display size, from a few cells to fractions of a pixel per cell; the cell under the mouse
  // follows the scale.
  void fitToWindowForEachSize() {
    Started s;
    rmgui::CanvasWidget* canvas = s.window().Canvas();
    auto* cellSize = s.window().findChild<QLabel*>("cellSize");
    for (const char* size : {"128X64", "320X240", "1024X768"}) {
      s.app().mainForm.MatrixComboChange(size);
      s.window().SyncAll();
      const rm::TPixelForm& c = s.app().pixelForm;
      QVERIFY2(canvas->Fitted(), size);
      const QRect port = canvas->viewport()->rect();
      QVERIFY2(port.contains(canvas->PointOfCell(0, 0)), size);
      QVERIFY2(port.contains(canvas->PointOfCell(c.CanvasWidth - 1, c.CanvasHeight - 1)), size);
      // As large as the window allows: one side fills it.
      const double filled = std::max(canvas->CellSize() * c.CanvasWidth / port.width(),
                                     canvas->CellSize() * c.CanvasHeight / port.height());
      QVERIFY2(filled > 0.98 && filled <= 1.0, size);
      QVERIFY2(cellSize->text().endsWith(" (fit)"), qPrintable(cellSize->text()));
      // Below a pixel per cell a screen pixel covers several cells: the one found is among them.
      const QPoint cell(c.CanvasWidth / 2, c.CanvasHeight / 3);
      const QPoint found = canvas->CellAt(canvas->PointOfCell(cell.x(), cell.y()));
      const int slack = static_cast<int>(std::ceil(1 / canvas->CellSize())) - 1;
      QVERIFY2(std::abs(found.x() - cell.x()) <= slack && std::abs(found.y() - cell.y()) <= slack, size);
    }
    QVERIFY(canvas->CellSize() < 1.0);
  }

  // Ctrl + wheel zooms in steps about the mouse: the cell under it stays under it, and at the
  // ends of the steps the wheel changes nothing. The model's own inflate shows its cells as they
  // are; Fit to Window takes the view back.
  void zoomStepsAboutTheMouse() {
    Started s;
    s.app().pixelForm.WorkBitmap.SetPixel(10, 5, rm::kBlack);
    s.app().pixelForm.CopyBitmapToCanvas();
    rmgui::CanvasWidget* canvas = s.window().Canvas();
    auto* info = s.window().findChild<QLabel*>("pixelInfo");
    MoveMouse(canvas->viewport(), canvas->PointOfCell(10, 5));
    QCOMPARE(info->text(), QString("X = 10  Y = 5   RGB Hex=#000000"));

    auto wheel = [&](int delta, const QPoint& at) {
      QWheelEvent event(at, canvas->viewport()->mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton,
                        Qt::ControlModifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(canvas->viewport(), &event);
    };
    // While the view is smaller than the window it stays in the middle; beyond, the cell under
    // the mouse stays under it.
    while (canvas->CellSize() < 16) wheel(120, canvas->PointOfCell(20, 10));
    const QPoint anchor = canvas->PointOfCell(20, 10);
    wheel(120, anchor);
    QCOMPARE(canvas->CellAt(anchor), QPoint(20, 10));
    double before = canvas->CellSize();
    for (int i = 0; i < 30; ++i) wheel(120, anchor);
    QCOMPARE(canvas->CellSize(), rm::ViewScale::kMaxCell);
    QVERIFY(!canvas->CanZoomStep(true));
    QVERIFY(!canvas->Fitted());
    QCOMPARE(canvas->CellAt(anchor), QPoint(20, 10));
    for (int i = 0; i < 30; ++i) {
      before = canvas->CellSize();
      wheel(-120, anchor);
      QVERIFY(canvas->CellSize() < before || !canvas->CanZoomStep(false));
    }
    QCOMPARE(canvas->CellSize(), rm::ViewScale::kMinCell);

    s.Trigger("Fit to Window");
    QVERIFY(canvas->Fitted());
    s.Trigger("Inflate Canvas");
    const int bigger = s.app().pixelForm.Zoom;
    s.Trigger("Inflate Canvas");
    QVERIFY(s.app().pixelForm.Zoom > bigger || canvas->CellSize() == s.app().pixelForm.Zoom);
    QCOMPARE(canvas->CellAt(canvas->PointOfCell(10, 5)), QPoint(10, 5));
    const int z = s.app().pixelForm.Zoom;
    // The model's view shows the cell enlarged: its screen pixels are black.
    QCOMPARE(canvas->ViewImage().pixel(10 * z + 1, 5 * z + 1) & 0xFFFFFFu, 0u);
    QCOMPARE(canvas->ViewImage().pixel(12 * z + 1, 5 * z + 1) & 0xFFFFFFu, 0xFFFFFFu);
    s.Trigger("No Zoom");
    QCOMPARE(s.app().pixelForm.Zoom, s.app().pixelForm.NormalZoom);
  }

  // A floating picture is dragged with the mouse and laid down by a click beside it; Undo takes
  // the canvas back before the paste and Redo puts the paste back, the actions enabled as the
  // history allows.
  void dragPasteUndoAndRedo() {
    Started s;
    s.app().pixelForm.FloatSelection(rm::Bitmap(4, 4, rm::kBlack), 0, 0);
    s.app().pixelForm.CopyBitmapToCanvas();
    s.window().SyncAll();
    rmgui::CanvasWidget* canvas = s.window().Canvas();
    QTest::mousePress(canvas->viewport(), Qt::LeftButton, {}, canvas->PointOfCell(1, 1));
    MoveMouse(canvas->viewport(), canvas->PointOfCell(11, 6));
    QTest::mouseRelease(canvas->viewport(), Qt::LeftButton, {}, canvas->PointOfCell(11, 6));
    QCOMPARE(QPoint(s.app().pixelForm.SelectionLeft, s.app().pixelForm.SelectionTop), QPoint(10, 5));
    QTest::mouseClick(canvas->viewport(), Qt::LeftButton, {}, canvas->PointOfCell(60, 40));
    QVERIFY(!s.app().pixelForm.FloatingSelection);
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(10, 5), rm::kBlack);
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(0, 0), rm::kWhite);
    QAction* undo = s.window().FindAction("Undo");
    QVERIFY(undo->isEnabled());
    undo->trigger();
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(10, 5), rm::kWhite);
    QAction* redo = s.window().FindAction("Redo");
    QVERIFY(redo->isEnabled());
    redo->trigger();
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(10, 5), rm::kBlack);
  }

  // A floating picture says what it is and how to place it; Enter lays it down and Esc throws it
  // away. A picture file dropped on the canvas opens as Open Graphic would.
  void floatingPictureKeysAndDrop() {
    Started s;
    rmgui::CanvasWidget* canvas = s.window().Canvas();
    auto* panel = s.window().findChild<QLabel*>("selectionPanel");
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
      const int at = key == Qt::Key_Return ? 2 : 20;
      s.app().pixelForm.FloatSelection(rm::Bitmap(4, 4, rm::kBlack), at, at);
      s.app().pixelForm.CopyBitmapToCanvas();
      s.window().SyncAll();
      QVERIFY(panel->text().contains("Floating picture: drag to place"));
      QTest::keyClick(canvas, key);
      QVERIFY(!s.app().pixelForm.FloatingSelection);
      QVERIFY(panel->text().isEmpty());
      QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(at + 1, at + 1), key == Qt::Key_Return ? rm::kBlack : rm::kWhite);
    }

    const std::string picture = WriteLargePicture(s.home.Path());
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(picture))});
    const QPoint at = canvas->viewport()->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(canvas->viewport(), &enter);
    QVERIFY(enter.isAccepted());
    AnswerNextMessage("Yes");
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(canvas->viewport(), &drop);
    QVERIFY(s.app().pixelForm.FloatingSelection);
    QVERIFY(canvas->Fitted());

    // The shortcuts list is made from the actions themselves; Ctrl+S saves the data array.
    QCOMPARE(s.window().FindAction("Save Data Array")->shortcut(), QKeySequence(QKeySequence::Save));
    QVERIFY(rmgui::HelpMenu::ShortcutList(s.window().findChildren<QAction*>()).contains("Fit to Window\tCtrl+0"));
    QVERIFY(s.window().FindAction("Fit to Window")->toolTip().endsWith("(Ctrl+0)"));
  }

  // A rectangle dragged with the mouse after its tool button (key R) lands on the canvas and
  // Undo takes it away; before a tool is chosen a click draws nothing.
  void drawRectangleAndUndo() {
    Started s;
    rmgui::CanvasWidget* canvas = s.window().Canvas();
    QTest::mouseClick(canvas->viewport(), Qt::LeftButton, {}, canvas->PointOfCell(3, 3));
    QCOMPARE(s.app().pixelForm.WorkBitmap.GetPixel(3, 3), rm::kWhite);
    auto* tool = s.window().findChild<QAction*>("toolRectangle");
    QVERIFY(tool && tool->shortcut() == QKeySequence("R"));
    tool->trigger();
    QTest::mousePress(canvas->viewport(), Qt::LeftButton, {}, canvas->PointOfCell(2, 2));
    MoveMouse(canvas->viewport(), canvas->PointOfCell(9, 6));
    QTest::mouseRelease(canvas->viewport(), Qt::LeftButton, {}, canvas->PointOfCell(9, 6));
    const rm::Bitmap& work = s.app().pixelForm.WorkBitmap;
    QCOMPARE(work.GetPixel(2, 2), rm::kBlack);
    QCOMPARE(work.GetPixel(9, 6), rm::kBlack);
    QCOMPARE(work.GetPixel(5, 4), rm::kWhite);
    const int z = s.app().pixelForm.Zoom;
    QCOMPARE(canvas->ViewImage().pixel(9 * z + 1, 6 * z + 1) & 0xFFFFFFu, 0u);
    s.window().FindAction("Undo")->trigger();
    QCOMPARE(work.GetPixel(2, 2), rm::kWhite);
  }

  // A threshold typed beside the slider is applied as the slider would apply it: a gray pixel
  // turns white under a low threshold and black under a high one.
  void typedThreshold() {
    Started s;
    s.app().pixelForm.WorkBitmap.SetPixel(4, 4, 0x808080);
    auto* edit = s.window().findChild<QLineEdit*>("thresholdEdit");
    QVERIFY(edit);
    const std::pair<const char*, rm::Colour> cases[] = {{"100", rm::kWhite}, {"200", rm::kBlack}};
    for (const auto& [typed, colour] : cases) {
      edit->clear();
      QTest::keyClicks(edit, typed);
      QTest::keyClick(edit, Qt::Key_Return);
      QCOMPARE(s.app().pixelForm.BWTrackBar, QString(typed).toInt());
      QVERIFY(s.app().pixelForm.FloatingSelection);
      QCOMPARE(s.app().pixelForm.SelectionBitmap.GetPixel(4, 4), colour);
    }
  }

  // A second desktop program on the same settings says so and ends before reading anything.
  void singleInstance() {
    rmtest::GuiHome home;
    rmgui::DesktopProgram first;
    QVERIFY(first.Start({}));
    rmgui::DesktopProgram second;
    QString said;
    AnswerNextMessage("OK", &said);
    QVERIFY(!second.Start({}));
    QCOMPARE(said, QString(" Another instance of Rastermill is already running !"));
  }

  // Quitting with unsaved artwork asks first; the window's place is in the project the next
  // start reads.
  void quitStoresWindowPlaces() {
    rmtest::GuiHome home;
    {
      rmgui::DesktopProgram program;
      rmtest::StartShown(program, QSize(1500, 950));
      program.App().globals.ArtworkSaved = false;
      QString asked;
      AnswerNextMessage("Cancel", &asked);
      QVERIFY(!program.Window().close());
      QVERIFY(asked.contains("Artwork has not been saved !"));
      AnswerNextMessage("Quit");
      QVERIFY(program.Window().close());
    }
    rmgui::DesktopProgram again;
    rmtest::StartShown(again, QSize());
    const rm::WindowPlace place = rm::ReadWindowPlace(again.App(), rm::DesktopWindow::WorkCanvas);
    QCOMPARE(place.width, 1500);
    QCOMPARE(place.height, 950);
    QCOMPARE(again.Window().size(), QSize(1500, 950));
  }

  // A picture chosen in the explorer's list is shown in the preview, turned and sent to the
  // canvas by the preview's buttons.
  void previewTurnAndExport() {
    Started s;
    const std::string folder = s.home.Path() + "/pictures";
    std::filesystem::create_directories(folder);
    std::string error;
    QVERIFY(s.app().codecs->SavePng(rm::Bitmap(20, 10, rm::kBlack), folder + "/bar.png", error));
    s.app().exploForm.EnterFolder(folder);
    s.window().SyncAll();
    auto* list = s.window().findChild<QTreeWidget*>("fileList");
    const auto found = list->findItems("bar.png", Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list->setCurrentItem(found.front());
    auto* size = s.window().findChild<QLabel*>("previewSize");
    QCOMPARE(size->text(), QString("W : 20  H : 10"));
    QTest::mouseClick(s.window().findChild<QPushButton*>("previewTurnRight"), Qt::LeftButton);
    QCOMPARE(size->text(), QString("W : 10  H : 20"));
    QTest::mouseClick(s.window().findChild<QPushButton*>("previewExport"), Qt::LeftButton);
    QVERIFY(s.app().pixelForm.FloatingSelection);
    const rm::Bitmap& sent = s.app().pixelForm.SelectionBitmap;
    QCOMPARE(QSize(sent.Width(), sent.Height()), QSize(10, 20));
  }

  // Long work polls Esc between its steps: an Esc typed meanwhile is seen once, and clicks that
  // come with it are swallowed so no command starts in the middle of another.
  void escapeIsSeenOnceAndClicksWait() {
    rmgui::QtUi ui;
    QPushButton button("elsewhere");
    int clicks = 0;
    connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QThread::msleep(30);  // past the poll's pacing
    QCoreApplication::postEvent(&button, new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " "));
    QCoreApplication::postEvent(&button, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, " "));
    QCoreApplication::postEvent(&button, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    ui.Progress(1, 10);  // the bar's repaint sees the Esc but keeps it for the work's poll
    QVERIFY(ui.EscapePressed());
    QCOMPARE(clicks, 0);
    QThread::msleep(30);
    QVERIFY(!ui.EscapePressed());
  }

  // The progress bar shows while work is under way and goes when it ends.
  void progressBarFollowsTheWork() {
    Started s;
    auto* bar = s.window().findChild<QProgressBar*>("progressBar");
    QVERIFY(bar);
    s.program.Ui().Progress(250, 1000);
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->value(), 250);
    s.program.Ui().Progress(1000, 1000);
    QVERIFY(!bar->isVisible());
  }
};

RM_GUI_TEST(MainWindowTest);
#include "MainWindowTest.moc"
