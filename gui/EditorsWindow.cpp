#include "gui/EditorsWindow.h"

#include <QAction>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTextBlock>
#include <QVBoxLayout>

#include "gui/SourceHighlighter.h"

namespace rmgui {

namespace {

class LineNumberArea : public QWidget {
 public:
  explicit LineNumberArea(CodeEditor* editor) : QWidget(editor), editor_(editor) {}
  QSize sizeHint() const override { return {editor_->LineNumberAreaWidth(), 0}; }

 protected:
  void paintEvent(QPaintEvent* event) override { editor_->PaintLineNumbers(event); }

 private:
  CodeEditor* editor_;
};

// The model's lines as an editor shows them: no empty line after the last one.
QString DisplayText(const rm::TextLines& lines) {
  QString text = QString::fromStdString(lines.Text());
  if (text.endsWith('\n')) text.chop(1);
  return text;
}

QPlainTextEdit* MakeReadOnlyView(const QString& name) {
  auto* view = new QPlainTextEdit;
  view->setObjectName(name);
  view->setReadOnly(true);
  view->setLineWrapMode(QPlainTextEdit::NoWrap);
  view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  return view;
}

}  // namespace

CodeEditor::CodeEditor(QWidget* parent) : QPlainTextEdit(parent), lineNumbers_(new LineNumberArea(this)) {
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { UpdateMargins(); });
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
    if (dy != 0)
      lineNumbers_->scroll(0, dy);
    else
      lineNumbers_->update(0, rect.y(), lineNumbers_->width(), rect.height());
  });
  UpdateMargins();
}

int CodeEditor::LineNumberAreaWidth() const {
  int digits = 1;
  for (int max = std::max(1, blockCount()); max >= 10; max /= 10) ++digits;
  return 8 + fontMetrics().horizontalAdvance(QLatin1Char('9')) * std::max(digits, 3);
}

void CodeEditor::UpdateMargins() { setViewportMargins(LineNumberAreaWidth(), 0, 0, 0); }

void CodeEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  const QRect cr = contentsRect();
  lineNumbers_->setGeometry(QRect(cr.left(), cr.top(), LineNumberAreaWidth(), cr.height()));
}

void CodeEditor::PaintLineNumbers(QPaintEvent* event) {
  QPainter painter(lineNumbers_);
  painter.fillRect(event->rect(), palette().window());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  QTextBlock block = firstVisibleBlock();
  int top = qRound(blockBoundingGeometry(block).translated(contentOffset()).top());
  while (block.isValid() && top <= event->rect().bottom()) {
    const int height = qRound(blockBoundingRect(block).height());
    if (block.isVisible() && top + height >= event->rect().top())
      painter.drawText(0, top, lineNumbers_->width() - 4, fontMetrics().height(), Qt::AlignRight,
                       QString::number(block.blockNumber() + 1));
    block = block.next();
    top += height;
  }
}

int HexTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return static_cast<int>((hex_.Size() + kBytesPerRow - 1) / kBytesPerRow);
}

int HexTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kAsciiColumn + 1; }

QVariant HexTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  const std::size_t rowStart = static_cast<std::size_t>(index.row()) * kBytesPerRow;
  const auto& bytes = hex_.Bytes();
  if (index.column() == 0) return QString("%1").arg(rowStart, 8, 16, QLatin1Char('0')).toUpper();
  if (index.column() == kAsciiColumn) {
    QString ascii;
    for (std::size_t i = rowStart; i < std::min(bytes.size(), rowStart + kBytesPerRow); ++i)
      ascii += bytes[i] >= 0x20 && bytes[i] < 0x7F ? QChar(bytes[i]) : QChar('.');
    return ascii;
  }
  const std::size_t at = rowStart + static_cast<std::size_t>(index.column() - 1);
  if (at >= bytes.size()) return {};
  return QString("%1").arg(bytes[at], 2, 16, QLatin1Char('0')).toUpper();
}

QVariant HexTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  if (section == 0) return QStringLiteral("Offset");
  if (section == kAsciiColumn) return QStringLiteral("ASCII");
  return QString("%1").arg(section - 1, 2, 16, QLatin1Char('0')).toUpper();
}

void HexTableModel::Reset() {
  beginResetModel();
  endResetModel();
}

EditorsWindow::EditorsWindow(rm::Application& app, QWidget* parent) : QWidget(parent), app_(app) {
  setObjectName("editorsWindow");
  tabs_ = new QTabWidget;
  tabs_->setObjectName("editorTabs");

  mainEditor_ = new CodeEditor;
  mainEditor_->setObjectName("mainEditor");
  mainHighlighter_ = new SourceHighlighter(mainEditor_->document());
  mainHighlighter_->setObjectName("mainHighlighter");
  auxEditor_ = new CodeEditor;
  auxEditor_->setObjectName("auxEditor");
  auxHighlighter_ = new SourceHighlighter(auxEditor_->document());
  reportView_ = MakeReadOnlyView("reportView");
  auto* reportHighlighter = new SourceHighlighter(reportView_->document());
  reportHighlighter->SetLanguage(SourceHighlighter::Language::General);
  documentView_ = MakeReadOnlyView("documentView");

  hexModel_ = new HexTableModel(app_.hex, this);
  hexView_ = new QTableView;
  hexView_->setObjectName("hexView");
  hexView_->setModel(hexModel_);
  hexView_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  hexView_->verticalHeader()->hide();
  hexView_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  hexView_->verticalHeader()->setDefaultSectionSize(hexView_->fontMetrics().height() + 4);
  hexView_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  hexView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  hexView_->setShowGrid(false);

  using rm::TExploForm2;
  tabs_->addTab(mainEditor_, "Text Editor");
  tabs_->addTab(auxEditor_, "Auxiliary Editor");
  tabs_->addTab(reportView_, "Report");
  tabs_->addTab(documentView_, "Document");
  tabs_->addTab(hexView_, "Hex");
  pageTabs_ = {TExploForm2::kMainTab, TExploForm2::kAuxTab, TExploForm2::kReportTab, TExploForm2::kDocumentTab,
               TExploForm2::kHexTab};

  auto* loadAction = new QAction("Load File...", this);
  loadAction->setObjectName("loadAction");
  auto* saveAction = new QAction("Save File...", this);
  saveAction->setObjectName("saveAction");
  saveAction->setShortcut(QKeySequence::Save);
  saveAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  addAction(loadAction);
  addAction(saveAction);
  connect(loadAction, &QAction::triggered, this, &EditorsWindow::LoadClicked);
  connect(saveAction, &QAction::triggered, this, &EditorsWindow::SaveClicked);
  auto* loadButton = new QPushButton("Load");
  loadButton->setObjectName("loadButton");
  auto* saveButton = new QPushButton("Save");
  saveButton->setObjectName("saveButton");
  connect(loadButton, &QPushButton::clicked, loadAction, &QAction::trigger);
  connect(saveButton, &QPushButton::clicked, saveAction, &QAction::trigger);

  caretStatus_ = new QLabel;
  caretStatus_->setObjectName("caretStatus");
  fileLabel_ = new QLabel;
  fileLabel_->setObjectName("fileLabel");

  auto* bar = new QHBoxLayout;
  bar->addWidget(loadButton);
  bar->addWidget(saveButton);
  bar->addWidget(fileLabel_, 1);
  bar->addWidget(caretStatus_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(bar);
  layout->addWidget(tabs_, 1);

  // What the user types goes into the model at once: a command run next reads the text as shown.
  connect(mainEditor_, &QPlainTextEdit::textChanged, this, [this] {
    if (syncing_) return;
    mainShown_ = mainEditor_->toPlainText();
    app_.exploForm2.MainTextEdited(mainShown_.toStdString());
  });
  connect(auxEditor_, &QPlainTextEdit::textChanged, this, [this] {
    if (syncing_) return;
    auxShown_ = auxEditor_->toPlainText();
    app_.auxLines.SetText(auxShown_.toStdString());
  });
  connect(mainEditor_, &QPlainTextEdit::cursorPositionChanged, this, &EditorsWindow::ShowCaret);
  connect(auxEditor_, &QPlainTextEdit::cursorPositionChanged, this, &EditorsWindow::ShowCaret);
  connect(tabs_, &QTabWidget::currentChanged, this, &EditorsWindow::TabChanged);

  SyncFromModel();
}

void EditorsWindow::ShowText(QPlainTextEdit* editor, const rm::TextLines& lines, QString& shown) {
  const QString text = DisplayText(lines);
  if (text == shown) return;
  shown = text;
  editor->setPlainText(text);
}

void EditorsWindow::SyncFromModel() {
  syncing_ = true;
  const rm::Globals& g = app_.globals;
  mainHighlighter_->SetLanguage(app_.exploForm2.MainHighlighter);
  auxHighlighter_->SetLanguage(app_.exploForm2.MainHighlighter);
  ShowText(mainEditor_, app_.mainText, mainShown_);
  ShowText(auxEditor_, app_.auxLines, auxShown_);
  ShowText(reportView_, app_.reportText, reportShown_);
  ShowText(documentView_, app_.infoText, documentShown_);
  hexModel_->Reset();
  for (std::size_t i = 0; i < pageTabs_.size(); ++i)
    if (pageTabs_[i] == g.EditorsPage) tabs_->setCurrentIndex(static_cast<int>(i));
  fileLabel_->setText(QString::fromStdString(g.EditorFileName));
  syncing_ = false;
  ShowCaret();
}

void EditorsWindow::TabChanged(int index) {
  if (syncing_ || index < 0 || static_cast<std::size_t>(index) >= pageTabs_.size()) return;
  app_.globals.EditorsPage = pageTabs_[static_cast<std::size_t>(index)];
  ShowCaret();
}

void EditorsWindow::ShowCaret() {
  auto* editor = tabs_->currentWidget() == auxEditor_ ? auxEditor_ : mainEditor_;
  const QTextCursor cursor = editor->textCursor();
  caretStatus_->setText("Col: " + QString::number(cursor.positionInBlock() + 1) +
                        " Line: " + QString::number(cursor.blockNumber() + 1));
}

bool EditorsWindow::LoadFile(const QString& path) {
  const bool ok = app_.exploForm.Loadfile(path.toStdString());
  SyncFromModel();
  emit modelChanged();
  return ok;
}

bool EditorsWindow::SaveFile(const QString& path) {
  TabChanged(tabs_->currentIndex());
  const bool ok = app_.exploForm.SaveEditor(path.toStdString());
  SyncFromModel();
  emit modelChanged();
  return ok;
}

void EditorsWindow::LoadClicked() {
  const QString start = QString::fromStdString(app_.globals.ExplorerFolder);
  const QString path = QFileDialog::getOpenFileName(
      this, "Load File", start,
      "Sources and data (*.c *.h *.asm *.bas *.pas *.txt *.lib *.hex *.bin *.rtf);;All files (*)");
  if (!path.isEmpty()) LoadFile(path);
}

void EditorsWindow::SaveClicked() {
  const rm::Globals& g = app_.globals;
  const bool hex = tabs_->currentWidget() == hexView_;
  const std::string& current = hex ? g.HexFileName : g.EditorFileName;
  const QString start =
      current.empty() ? QString::fromStdString(app_.session.OutputFolder) : QString::fromStdString(current);
  const QString filter = hex ? "Binary (*.bin *.hex)" : "Sources (*.h *.c *.bas *.asm *.txt *.rtf)";
  // The library asks about replacing a file itself, and keeps a backup of it.
  const QString path =
      QFileDialog::getSaveFileName(this, "Save File", start, filter, nullptr, QFileDialog::DontConfirmOverwrite);
  if (!path.isEmpty()) SaveFile(path);
}

}  // namespace rmgui
