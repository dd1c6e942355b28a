#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
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

  // A double click on a C file shows it in the editor with the C highlighter; typing goes into the
  // main text and marks it unsaved; the filter menu filters the list, folders always shown.
  void openTypeAndFilter() {
    Write(files_ + "/main.c", "int x = 0x1F; // note\n");
    for (const char* name : {"other.txt", "c.png", "d.jpeg"}) Write(files_ + "/" + name, "x");
    QVERIFY(QDir().mkpath(files_ + "/sub"));
    rmtest::TestProgram prog;
    prog.app.globals.ExplorerFolder = files_.toStdString();
    rmgui::ExplorerWindow explorer(prog.app);
    rmgui::EditorsWindow editors(prog.app);
    QObject::connect(&explorer, &rmgui::ExplorerWindow::modelChanged, &editors, &rmgui::EditorsWindow::SyncFromModel);
    explorer.resize(800, 500);
    explorer.show();
    editors.show();

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
    // What the C highlighter makes of it is checked with the other languages below.
    auto* highlighter = editors.findChild<rmgui::SourceHighlighter*>("mainHighlighter");
    QVERIFY(highlighter);
    QCOMPARE(highlighter->language(), rmgui::SourceHighlighter::Language::Cpp);

    QVERIFY(!prog.app.globals.EditorUnsaved);
    editor->setFocus();
    editor->moveCursor(QTextCursor::End);
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::keyClicks(editor, "cde");
    QCOMPARE(QString::fromStdString(prog.app.mainText.Text()), QString("int x = 0x1F; // note\ncde\n"));
    QVERIFY(prog.app.globals.EditorUnsaved);
    QCOMPARE(editors.findChild<QLabel*>("caretStatus")->text(), QString("Col: 4 Line: 2"));

    auto* footer = explorer.findChild<QLabel*>("footerLabel");
    auto* filter = explorer.findChild<QLabel*>("filterLabel");
    QCOMPARE(list->topLevelItemCount(), 5);
    QCOMPARE(footer->text(), QString("5 element(s)"));
    QCOMPARE(filter->text(), QString("Filter = All files *.*"));
    auto* menu = explorer.findChild<QMenu*>("filterMenu");
    QVERIFY(menu);
    QAction* jpeg = nullptr;
    for (QAction* a : menu->actions())
      if (a->text() == "JPEG Pictures (JPG,JPEG)") jpeg = a;
    QVERIFY(jpeg);
    jpeg->trigger();
    QCOMPARE(list->topLevelItemCount(), 2);
    QVERIFY(Row(list, "sub") && Row(list, "d.jpeg"));
    QCOMPARE(footer->text(), QString("2 NOT FILTERED OUT element(s)"));
    QCOMPARE(filter->text(), QString("Filter = JPEG Pictures (JPG,JPEG)"));
    QVERIFY(jpeg->isChecked());
  }

  // One line of each language and what some of its pieces must look like.
  void highlighterColoursEachLanguage_data() {
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("keywordAt");
    QTest::addColumn<int>("numberAt");
    QTest::addColumn<int>("commentAt");
    QTest::addColumn<int>("plainAt");
    using L = rmgui::SourceHighlighter::Language;
    QTest::newRow("c") << int(L::Cpp) << "int x = 0x1F; // note" << 0 << 9 << 16 << 4;
    QTest::newRow("asm") << int(L::Assembler) << "  mov r0, $FF ; load" << 2 << 10 << 15 << 1;
    QTest::newRow("basic") << int(L::VisualBasic) << "DATA &H1F, 2 ' table" << 0 << 6 << 14 << 9;
    QTest::newRow("pascal") << int(L::Pascal) << "const A = $0F; { mask }" << 0 << 10 << 17 << 6;
    QTest::newRow("report") << int(L::General) << "Line 3 [FIXED] OK // done" << 8 << 5 << 20 << 4;
  }
  void highlighterColoursEachLanguage() {
    QFETCH(int, language);
    QFETCH(QString, line);
    QFETCH(int, keywordAt);
    QFETCH(int, numberAt);
    QFETCH(int, commentAt);
    QFETCH(int, plainAt);
    QPlainTextEdit editor;
    auto* highlighter = new rmgui::SourceHighlighter(editor.document());
    editor.setPlainText(line);
    highlighter->SetLanguage(static_cast<rmgui::SourceHighlighter::Language>(language));
    QVERIFY(HasFormatAt(&editor, keywordAt, highlighter->keywordFormat));
    QVERIFY(HasFormatAt(&editor, numberAt, highlighter->numberFormat));
    QVERIFY(HasFormatAt(&editor, commentAt, highlighter->commentFormat));
    QVERIFY(!HasFormatAt(&editor, plainAt, highlighter->commentFormat));
    QVERIFY(!HasFormatAt(&editor, plainAt, highlighter->keywordFormat));
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
