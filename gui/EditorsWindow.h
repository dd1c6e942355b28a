#pragma once
#include <QAbstractTableModel>
#include <QPlainTextEdit>
#include <QWidget>
#include <vector>

#include "shell/Application.h"

class QLabel;
class QTabWidget;
class QTableView;

namespace rmgui {

class SourceHighlighter;

// A plain text editor with a gutter of line numbers.
class CodeEditor : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit CodeEditor(QWidget* parent = nullptr);
  int LineNumberAreaWidth() const;
  void PaintLineNumbers(QPaintEvent* event);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void UpdateMargins();
  QWidget* lineNumbers_;
};

// The hex editor's bytes as rows of 16: offset, the 16 bytes, their ASCII. Cells are made when
// the view asks for them, so a megabyte costs nothing until it is scrolled to.
class HexTableModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  static constexpr int kBytesPerRow = 16;
  static constexpr int kAsciiColumn = kBytesPerRow + 1;
  explicit HexTableModel(const rm::HexBuffer& hex, QObject* parent = nullptr)
      : QAbstractTableModel(parent), hex_(hex) {}
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
  // The buffer changed: the view re-reads it.
  void Reset();

 private:
  const rm::HexBuffer& hex_;
};

// The editors panel: the main text (the Data Array or a loaded source), the auxiliary text, the
// report, the document of the last conversion and the hex view of the binary output.
class EditorsWindow : public QWidget {
  Q_OBJECT
 public:
  explicit EditorsWindow(rm::Application& app, QWidget* parent = nullptr);

 public slots:
  void SyncFromModel();
  // What the Load and Save actions do once their file dialog has a name.
  bool LoadFile(const QString& path);
  bool SaveFile(const QString& path);

 signals:
  void modelChanged();

 private slots:
  void LoadClicked();
  void SaveClicked();

 private:
  void ShowText(QPlainTextEdit* editor, const rm::TextLines& lines, QString& shown);
  void ShowCaret();
  void TabChanged(int index);

  rm::Application& app_;
  QTabWidget* tabs_;
  CodeEditor* mainEditor_;
  CodeEditor* auxEditor_;
  QPlainTextEdit* reportView_;
  QPlainTextEdit* documentView_;
  QTableView* hexView_;
  HexTableModel* hexModel_;
  SourceHighlighter* mainHighlighter_;
  SourceHighlighter* auxHighlighter_;
  QLabel* caretStatus_;
  QLabel* fileLabel_;
  // The library's tab number of each page, in page order.
  std::vector<int> pageTabs_;
  // What each editor was last given or last sent to the model: an unchanged model is not shown
  // again, so the caret and the scroll stay where the user left them.
  QString mainShown_, auxShown_, reportShown_, documentShown_;
  bool syncing_ = false;
};

}  // namespace rmgui
