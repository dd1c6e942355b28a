// The explorer's picture preview: a picture chosen in the list is shown, turned and sent to the
// canvas by the preview's buttons.
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <filesystem>

#include "gui/DesktopProgram.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "support/ShellTestSupport.h"

class PreviewPanelTest : public QObject {
  Q_OBJECT
 private slots:
  void choosePictureTurnAndExport() {
    rmtest::GuiHome home;
    rmgui::DesktopProgram program;
    rmtest::StartShown(program);
    rm::Application& app = program.App();
    const std::string folder = home.Path() + "/pictures";
    std::filesystem::create_directories(folder);
    std::string error;
    QVERIFY(app.codecs->SavePng(rm::Bitmap(20, 10, rm::kBlack), folder + "/bar.png", error));
    app.exploForm.EnterFolder(folder);
    program.Window().SyncAll();

    auto* list = program.Window().findChild<QTreeWidget*>("fileList");
    const auto found = list->findItems("bar.png", Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list->setCurrentItem(found.front());
    auto* size = program.Window().findChild<QLabel*>("previewSize");
    QCOMPARE(size->text(), QString("W : 20  H : 10"));

    QTest::mouseClick(program.Window().findChild<QPushButton*>("previewTurnRight"), Qt::LeftButton);
    QCOMPARE(size->text(), QString("W : 10  H : 20"));
    QTest::mouseClick(program.Window().findChild<QPushButton*>("previewExport"), Qt::LeftButton);
    QVERIFY(app.pixelForm.FloatingSelection);
    QCOMPARE(QSize(app.pixelForm.SelectionBitmap.Width(), app.pixelForm.SelectionBitmap.Height()), QSize(10, 20));
  }
};

RM_GUI_TEST(PreviewPanelTest);
#include "PreviewPanelTest.moc"
