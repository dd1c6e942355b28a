#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>

#include "gui/GuiTestSupport.h"
#include "gui/SettingsPanel.h"
#include "support/ShellTestSupport.h"

namespace {

std::string LastLog(const rm::Application& app) {
  const auto& l = app.logWindow.Lines.Lines();
  return l.empty() ? std::string() : l.back();
}

// The program as the desktop starts it: folders, the default project on disk, its template.
void Start(rmtest::TestProgram& p) {
  p.app.mainForm.LoadFolders();
  QVERIFY(p.app.mainForm.LoadConfigurationX());
  p.app.exploForm.UseProjectHeaderTemplate();
  QVERIFY(p.app.mainForm.SaveConfigurationX());
}

}  // namespace

class SettingsPanelTest : public QObject {
  Q_OBJECT

 private slots:
  void typingIntoASyntaxFieldChangesTheSessionAtOnce() {
    rmtest::TestProgram prog;
    rmgui::SettingsPanel panel(prog.app);
    QSignalSpy changed(&panel, &rmgui::SettingsPanel::modelChanged);

    auto* prefix = panel.findChild<QLineEdit*>("field_VALpref");
    QVERIFY(prefix);
    prefix->selectAll();
    QTest::keyClicks(prefix, "(u8)");
    QCOMPARE(prog.app.session.Syntax.DataPrefix, std::string("(u8)"));
    QCOMPARE(LastLog(prog.app), std::string("Data Format Prefix (a) : (u8)"));
    QCOMPARE(changed.count(), 4);  // one per key

    // The control holds no more than the setting does.
    auto* eol = panel.findChild<QLineEdit*>("field_eolst");
    QVERIFY(eol);
    eol->selectAll();
    QTest::keyClicks(eol, "abcdefg");
    QCOMPARE(prog.app.session.Syntax.EolString, std::string("abcde"));

    auto* space = panel.findChild<QCheckBox*>("field_WithSp");
    QVERIFY(space && space->isChecked());
    space->click();
    QVERIFY(!prog.app.session.Syntax.SpaceBetweenData);
    QCOMPARE(LastLog(prog.app), std::string("Space Between Data : OFF"));

    auto* format = panel.findChild<QComboBox*>("field_FXHB");
    QVERIFY(format);
    QCOMPARE(format->currentText(), QString("0x+data"));
    QTest::keyClick(format, Qt::Key_Down);
    QCOMPARE(prog.app.session.Syntax.DataFormatKind, std::string("H"));
  }

  void oneDatumPerLineShowsTheSeparatorItTurnedOff() {
    rmtest::TestProgram prog;
    rmgui::SettingsPanel panel(prog.app);
    auto* perLine = panel.findChild<QSpinBox*>("field_ORGC");
    auto* separator = panel.findChild<QComboBox*>("field_COMA");
    QVERIFY(perLine && separator);
    QCOMPARE(separator->currentText(), QString(","));
    perLine->setValue(1);
    QCOMPARE(prog.app.session.Syntax.DataPerLine, 1);
    QVERIFY(!prog.app.session.Syntax.SeparatorOn);
    QCOMPARE(separator->currentText(), QString("none"));
  }

  void syncAfterAProjectSwitchShowsTheNewValuesAndSendsNothing() {
    rmtest::GuiHome home;
    rmtest::TestProgram prog;
    Start(prog);
    rmgui::SettingsPanel panel(prog.app);
    QVERIFY(!prog.app.exploForm.SaveAsNewProject().empty());  // now the active project

    auto* prefix = panel.findChild<QLineEdit*>("field_VALpref");
    auto* lineNumbers = panel.findChild<QCheckBox*>("field_LineN");
    auto* comment = panel.findChild<QComboBox*>("field_COM");
    QVERIFY(prefix && lineNumbers && comment);
    prefix->selectAll();
    QTest::keyClicks(prefix, "np");
    lineNumbers->click();
    QTest::keyClick(comment, Qt::Key_Down);
    QCOMPARE(comment->currentText(), QString("//"));

    QVERIFY(prog.app.exploForm.ActivateProject("default.LCD"));
    QSignalSpy changed(&panel, &rmgui::SettingsPanel::modelChanged);
    const std::size_t logged = prog.app.logWindow.Lines.Count();
    panel.SyncFromModel();
    QCOMPARE(prefix->text(), QString("0x"));
    QVERIFY(!lineNumbers->isChecked());
    QCOMPARE(comment->currentText(), QString("/* */"));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(prog.app.logWindow.Lines.Count(), logged);
    QCOMPARE(prog.app.session.Syntax.DataPrefix, std::string("0x"));

    QVERIFY(prog.app.exploForm.ActivateProject("New Project.LCD"));
    panel.SyncFromModel();
    QCOMPARE(prefix->text(), QString("np"));
    QVERIFY(lineNumbers->isChecked());
    QCOMPARE(comment->currentText(), QString("//"));
  }

  void headerTemplateEditSaveRoundTrip() {
    rmtest::GuiHome home;
    rmtest::TestProgram prog;
    Start(prog);
    rmgui::SettingsPanel panel(prog.app);
    auto* text = panel.findChild<QPlainTextEdit*>("templateText");
    auto* edit = panel.findChild<QPushButton*>("editHeaderButton");
    auto* save = panel.findChild<QPushButton*>("saveHeaderButton");
    QVERIFY(text && edit && save);
    QVERIFY(text->isReadOnly());
    QVERIFY(!save->isEnabled());
    QVERIFY(text->toPlainText().startsWith("// FOR GRAPHICS exported from WORK CANVAS"));

    QTest::mouseClick(edit, Qt::LeftButton);
    QVERIFY(prog.app.globals.HeaderEditMode);
    QVERIFY(!text->isReadOnly());
    text->moveCursor(QTextCursor::End);
    QTest::keyClicks(text, "// mine");
    QTest::mouseClick(save, Qt::LeftButton);

    QVERIFY(!prog.app.globals.HeaderEditMode);
    QVERIFY(text->isReadOnly());
    const std::string path = prog.app.configWin.HeaderTemplatePath(0);
    const std::string file = rmtest::ReadFile(path);
    QVERIFY(file.size() > 8);
    QCOMPARE(file.substr(file.size() - 8), std::string("// mine\n"));
    QCOMPARE(prog.app.session.HeaderIncludeFile, path);
    QVERIFY(text->toPlainText().endsWith("// mine"));

    // Leaving the edit mode without saving brings the file's text back.
    QTest::mouseClick(edit, Qt::LeftButton);
    text->setPlainText("thrown away");
    QTest::mouseClick(edit, Qt::LeftButton);
    QVERIFY(!prog.app.globals.HeaderEditMode);
    QVERIFY(text->toPlainText().endsWith("// mine"));
    QCOMPARE(rmtest::ReadFile(path), file);
  }

  void rearrangeGridWritesTheTable() {
    rmtest::TestProgram prog;
    rmgui::SettingsPanel panel(prog.app);
    auto* grid = panel.findChild<QTableWidget*>("reorderGrid");
    auto* on = panel.findChild<QCheckBox*>("field_dore");
    QVERIFY(grid && on);
    QCOMPARE(grid->rowCount(), 32);
    grid->item(2, 0)->setText("swap bits");
    grid->item(2, 1)->setText("1");
    QCOMPARE(prog.app.session.ReorderTable[2].function, std::string("swap bits"));
    QCOMPARE(prog.app.session.ReorderTable[2].bitA, std::string("1"));
    on->click();
    QVERIFY(prog.app.session.ReorderOn);
    QVERIFY(panel.findChild<QLabel*>("reorderState")->text().contains("[ON]"));

    prog.app.session.ReorderTable[3].bitB = "6";
    panel.SyncFromModel();
    QCOMPARE(grid->item(3, 2)->text(), QString("6"));
  }
};

RM_GUI_TEST(SettingsPanelTest);
#include "SettingsPanelTest.moc"
