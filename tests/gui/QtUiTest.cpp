// The desktop's user port: the Esc key and the progress bar during long work.
#include <QKeyEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QThread>

#include "gui/DesktopProgram.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "gui/QtUi.h"

class QtUiTest : public QObject {
  Q_OBJECT
 private slots:
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

  // The bar shows while work is under way and goes when it ends.
  void progressBarFollowsTheWork() {
    rmtest::GuiHome home;
    rmgui::DesktopProgram program;
    rmtest::StartShown(program);
    auto* bar = program.Window().findChild<QProgressBar*>("progressBar");
    QVERIFY(bar);
    program.Ui().Progress(250, 1000);
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->value(), 250);
    program.Ui().Progress(1000, 1000);
    QVERIFY(!bar->isVisible());
  }

  // The text as a dialog shows it: every "\r" a line break, blanks kept.
  void dialogTextBreaksLines() {
    QCOMPARE(rmgui::QtUi::DialogText(" a \r b \r\n c "), QString(" a \n b \n c "));
  }
};

RM_GUI_TEST(QtUiTest);
#include "QtUiTest.moc"
