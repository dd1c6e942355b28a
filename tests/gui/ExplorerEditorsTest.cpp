#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableView>
#include <QTextBlock>
#include <QTextLayout>
#include <QTreeWidget>
#include <QtTest>

#include <fstream>
#include <memory>

#include "gui/EditorsWindow.h"
#include "gui/ExplorerWindow.h"
#include "gui/GuiTestSupport.h"
#include "gui/SourceHighlighter.h"
#include "support/ShellTestSupport.h"

namespace {

void Write(const QString& path, const std::string& text) {
  std::ofstream(path.toStdString(), std::ios::binary) << text;
}

QTreeWidgetItem* Row(QTreeWidget* list, const QString& name) {
  for (int i = 0; i < list->topLevelItemCount(); ++i)
    if (list->topLevelItem(i)->text(0) == name) return list->topLevelItem(i);
  return nullptr;
}

QListWidgetItem* Project(QListWidget* list, const QString& name) {
  const auto found = list->findItems(name, Qt::MatchExactly);
  return found.isEmpty() ? nullptr : found.front();
}

// The formats the highlighter gave to the first line of a document.
bool HasFormatAt(QPlainTextEdit* editor, int position, const QTextCharFormat& wanted) {
  const QTextBlock block = editor->document()->firstBlock();
  for (const QTextLayout::FormatRange& r : block.layout()->formats())
    if (r.start <= position && position < r.start + r.length && r.format.foreground() == wanted.foreground() &&
        r.format.fontWeight() == wanted.fontWeight() && r.format.fontItalic() == wanted.fontItalic())
      return true;
  return false;
}

}  // namespace

class ExplorerEditorsTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<rmtest::GuiHome> home_;  // a fresh one for each test
  QString files_;

 private slots:
  void init() {
    home_ = std::make_unique<rmtest::GuiHome>();
    files_ = QString::fromStdString(home_->Path()) + "/files";
    QVERIFY(QDir().mkpath(files_));
  }
  void cleanup() { home_.reset(); }

  void doubleClickOnACFileShowsItInTheEditorWithTheCHighlighter() {
    Write(files_ + "/main.c", "int x = 0x1F; // note\n");
    Write(files_ + "/other.txt", "x\n");
    rmtest::TestProgram prog;
    prog.app.globals.ExplorerFolder = files_.toStdString();
    rmgui::ExplorerWindow explorer(prog.app);
    rmgui::EditorsWindow editors(prog.app);
    QObject::connect(&explorer, &rmgui::ExplorerWindow::modelChanged, &editors, &rmgui::EditorsWindow::SyncFromModel);
    explorer.resize(800, 500);
    explorer.show();

    auto* list = explorer.findChild<QTreeWidget*>("fileList");
    QVERIFY(list);
    QTreeWidgetItem* row = Row(list, "main.c");
    QVERIFY(row);
    QCOMPARE(row->text(1), QString("C File"));
    list->scrollToItem(row);
    const QPoint at = list->visualItemRect(row).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);

    auto* editor = editors.findChild<QPlainTextEdit*>("mainEditor");
    QVERIFY(editor);
    QCOMPARE(editor->toPlainText(), QString("int x = 0x1F; // note"));
    auto* highlighter = editors.findChild<rmgui::SourceHighlighter*>("mainHighlighter");
    QVERIFY(highlighter);
    QCOMPARE(highlighter->language(), rmgui::SourceHighlighter::Language::Cpp);
    QVERIFY(HasFormatAt(editor, 0, highlighter->keywordFormat));    // int
    QVERIFY(HasFormatAt(editor, 9, highlighter->numberFormat));     // 0x1F
    QVERIFY(HasFormatAt(editor, 16, highlighter->commentFormat));   // // note
    QVERIFY(!HasFormatAt(editor, 4, highlighter->keywordFormat));   // x
  }

  void typingGoesIntoTheMainTextAndMarksItUnsaved() {
    rmtest::TestProgram prog;
    rmgui::EditorsWindow editors(prog.app);
    editors.show();
    auto* editor = editors.findChild<QPlainTextEdit*>("mainEditor");
    QVERIFY(editor);
    editor->setFocus();
    QTest::keyClicks(editor, "ab");
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::keyClicks(editor, "cde");
    QCOMPARE(QString::fromStdString(prog.app.mainText.Text()), QString("ab\ncde\n"));
    QVERIFY(prog.app.globals.EditorUnsaved);
    QCOMPARE(editors.findChild<QLabel*>("caretStatus")->text(), QString("Col: 4 Line: 2"));
  }

  void filterMenuFiltersTheList() {
    for (const char* name : {"a.c", "b.bmp", "c.png", "d.jpeg"}) Write(files_ + "/" + name, "x");
    QVERIFY(QDir().mkpath(files_ + "/sub"));
    rmtest::TestProgram prog;
    prog.app.globals.ExplorerFolder = files_.toStdString();
    rmgui::ExplorerWindow explorer(prog.app);
    auto* list = explorer.findChild<QTreeWidget*>("fileList");
    auto* footer = explorer.findChild<QLabel*>("footerLabel");
    QCOMPARE(list->topLevelItemCount(), 5);
    QCOMPARE(footer->text(), QString("5 element(s)"));
    QCOMPARE(explorer.findChild<QLabel*>("filterLabel")->text(), QString("Filter = All files *.*"));

    auto* menu = explorer.findChild<QMenu*>("filterMenu");
    QVERIFY(menu);
    QAction* jpeg = nullptr;
    for (QAction* a : menu->actions())
      if (a->text() == "JPEG Pictures (JPG,JPEG)") jpeg = a;
    QVERIFY(jpeg);
    jpeg->trigger();
    QCOMPARE(list->topLevelItemCount(), 2);
    QVERIFY(Row(list, "sub"));
    QVERIFY(Row(list, "d.jpeg"));
    QCOMPARE(footer->text(), QString("2 NOT FILTERED OUT element(s)"));
    QCOMPARE(explorer.findChild<QLabel*>("filterLabel")->text(), QString("Filter = JPEG Pictures (JPG,JPEG)"));
    QVERIFY(jpeg->isChecked());
  }

  void projectCreatedThenActivatedFromTheList() {
    rmtest::TestProgram prog;
    prog.app.mainForm.LoadFolders();
    QVERIFY(prog.app.mainForm.LoadConfigurationX());
    QVERIFY(prog.app.mainForm.SaveConfigurationX());
    rmgui::ExplorerWindow explorer(prog.app);
    QSignalSpy changed(&explorer, &rmgui::ExplorerWindow::modelChanged);
    auto* projects = explorer.findChild<QListWidget*>("projectList");
    QVERIFY(projects);
    QVERIFY(Project(projects, "default.LCD"));
    QVERIFY(!Project(projects, "New Project.LCD"));

    QTest::mouseClick(explorer.findChild<QPushButton*>("newProjectButton"), Qt::LeftButton);
    QVERIFY(Project(projects, "New Project.LCD"));
    QVERIFY(QString::fromStdString(prog.app.globals.ActiveProject).endsWith("/New Project.LCD"));
    QCOMPARE(changed.count(), 1);

    projects->setCurrentItem(Project(projects, "default.LCD"));
    QTest::mouseClick(explorer.findChild<QPushButton*>("activateProjectButton"), Qt::LeftButton);
    QVERIFY(QString::fromStdString(prog.app.globals.ActiveProject).endsWith("/default.LCD"));
    QVERIFY(Project(projects, "default.LCD")->font().bold());
    QVERIFY(!Project(projects, "New Project.LCD")->font().bold());
    QCOMPARE(changed.count(), 2);
  }

  void projectRenamedInPlace() {
    rmtest::TestProgram prog;
    prog.app.mainForm.LoadFolders();
    QVERIFY(prog.app.mainForm.LoadConfigurationX());
    QVERIFY(prog.app.mainForm.SaveConfigurationX());
    rmgui::ExplorerWindow explorer(prog.app);
    explorer.show();
    auto* projects = explorer.findChild<QListWidget*>("projectList");
    QTest::mouseClick(explorer.findChild<QPushButton*>("newProjectButton"), Qt::LeftButton);
    QListWidgetItem* item = Project(projects, "New Project.LCD");
    QVERIFY(item);
    projects->setCurrentItem(item);
    QTest::mouseClick(explorer.findChild<QPushButton*>("renameProjectButton"), Qt::LeftButton);
    QVERIFY(projects->findChild<QLineEdit*>() != nullptr);  // the edit in place is open
    item->setText("Board");  // what the editor commits
    QTRY_VERIFY(Project(projects, "Board.LCD") != nullptr);
    QVERIFY(!Project(projects, "New Project.LCD"));
    QVERIFY(QFile::exists(QString::fromStdString(prog.app.exploForm.ProjectsFolder()) + "Board.LCD"));
  }

  // One line of each language and what some of its pieces must look like.
  void highlighterColoursEachLanguage_data() {
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("keywordAt");
    QTest::addColumn<int>("numberAt");
    QTest::addColumn<int>("commentAt");
    using L = rmgui::SourceHighlighter::Language;
    QTest::newRow("asm") << int(L::Assembler) << "  mov r0, $FF ; load" << 2 << 10 << 15;
    QTest::newRow("basic") << int(L::VisualBasic) << "DATA &H1F, 2 ' table" << 0 << 6 << 14;
    QTest::newRow("pascal") << int(L::Pascal) << "const A = $0F; { mask }" << 0 << 10 << 17;
    QTest::newRow("report") << int(L::General) << "Line 3 [FIXED] OK // done" << 8 << 5 << 20;
  }
  void highlighterColoursEachLanguage() {
    QFETCH(int, language);
    QFETCH(QString, line);
    QFETCH(int, keywordAt);
    QFETCH(int, numberAt);
    QFETCH(int, commentAt);
    QPlainTextEdit editor;
    auto* highlighter = new rmgui::SourceHighlighter(editor.document());
    editor.setPlainText(line);
    highlighter->SetLanguage(static_cast<rmgui::SourceHighlighter::Language>(language));
    QVERIFY(HasFormatAt(&editor, keywordAt, highlighter->keywordFormat));
    QVERIFY(HasFormatAt(&editor, numberAt, highlighter->numberFormat));
    QVERIFY(HasFormatAt(&editor, commentAt, highlighter->commentFormat));
    QVERIFY(!HasFormatAt(&editor, 1, highlighter->commentFormat));
  }

  void hexViewShowsTheBytesOfTheHexBuffer() {
    rmtest::TestProgram prog;
    for (int b = 0; b < 16; ++b) prog.app.hex.AddByte(static_cast<std::uint8_t>(b * 17));
    for (char c : std::string("Hi!")) prog.app.hex.AddByte(static_cast<std::uint8_t>(c));
    rmgui::EditorsWindow editors(prog.app);
    auto* view = editors.findChild<QTableView*>("hexView");
    QVERIFY(view);
    QAbstractItemModel* model = view->model();
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->data(model->index(0, 0)).toString(), QString("00000000"));
    QCOMPARE(model->data(model->index(0, 1)).toString(), QString("00"));
    QCOMPARE(model->data(model->index(0, 16)).toString(), QString("FF"));
    QCOMPARE(model->data(model->index(1, 0)).toString(), QString("00000010"));
    QCOMPARE(model->data(model->index(1, 1)).toString(), QString("48"));
    QCOMPARE(model->data(model->index(1, 4)).toString(), QString());
    QCOMPARE(model->data(model->index(1, 17)).toString(), QString("Hi!"));
    QCOMPARE(model->headerData(16, Qt::Horizontal).toString(), QString("0F"));

    // A binary conversion fills the buffer afterwards: the view follows on the next sync.
    prog.app.hex.Clear();
    for (int i = 0; i < 1 << 20; ++i) prog.app.hex.AddByte(static_cast<std::uint8_t>(i));
    prog.app.globals.EditorsPage = rm::TExploForm2::kHexTab;
    editors.SyncFromModel();
    QCOMPARE(model->rowCount(), 65536);
    QCOMPARE(model->data(model->index(65535, 0)).toString(), QString("000FFFF0"));
    QCOMPARE(editors.findChild<QTabWidget*>("editorTabs")->currentWidget(), view);
  }
};

RM_GUI_TEST(ExplorerEditorsTest);

#include "ExplorerEditorsTest.moc"
