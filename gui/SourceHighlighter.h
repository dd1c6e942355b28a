#pragma once
#include <QRegularExpression>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <QVector>

#include "shell/TExploForm2.h"

namespace rmgui {

// Colours the editors' text by the language the library chose for the file
// (rm::TExploForm2::Highlighters): C/C++, assembler, BASIC, Pascal, HTML/XML and the general one
// of the reports and scripts. Block comments that span lines are followed through the block state.
class SourceHighlighter : public QSyntaxHighlighter {
  Q_OBJECT
 public:
  using Language = rm::TExploForm2::Highlighter;
  explicit SourceHighlighter(QTextDocument* document);

  // Re-colours the whole document when the language changes.
  void SetLanguage(Language language);
  Language language() const { return language_; }

  // The formats, so that views and tests can tell what a piece of text was given.
  QTextCharFormat keywordFormat, numberFormat, stringFormat, commentFormat, directiveFormat;

 protected:
  void highlightBlock(const QString& text) override;

 private:
  struct Rule {
    QRegularExpression pattern;
    const QTextCharFormat* format;
  };
  void BuildRules();
  void AddKeywords(const QStringList& words, Qt::CaseSensitivity cs, bool wholeWordBoundaries = true);

  Language language_ = Language::None;
  QVector<Rule> rules_;
  // A comment that may span lines: its opening and closing texts (empty when the language has none).
  QRegularExpression blockStart_, blockEnd_;
};

}  // namespace rmgui
