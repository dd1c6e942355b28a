#include "gui/SourceHighlighter.h"

#include <QFont>

namespace rmgui {

namespace {

const QStringList kCWords = {"auto",      "bool",     "break",    "case",      "char",     "class",    "const",
                             "constexpr", "continue", "default",  "delete",    "do",       "double",   "else",
                             "enum",      "extern",   "false",    "float",     "for",      "goto",     "if",
                             "inline",    "int",      "long",     "namespace", "new",      "nullptr",  "private",
                             "protected", "public",   "register", "return",    "short",    "signed",   "sizeof",
                             "static",    "struct",   "switch",   "template",  "this",     "true",     "typedef",
                             "typename",  "union",    "unsigned", "virtual",   "void",     "volatile", "while",
                             "int8_t",    "int16_t",  "int32_t",  "uint8_t",   "uint16_t", "uint32_t", "PROGMEM"};

const QStringList kAsmWords = {
    "db",      "dw",    "dd",   "dq",  "ds",   "dcb",   "dc",   "equ",  "org", "end",  "include", "section",
    "segment", "macro", "endm", "if",  "else", "endif", "byte", "word", "mov", "ld",   "ldi",     "lds",
    "sts",     "lpm",   "push", "pop", "call", "rcall", "ret",  "reti", "jmp", "rjmp", "jp",      "jr",
    "nop",     "add",   "adc",  "sub", "sbc",  "and",   "or",   "xor",  "cmp", "cp",   "inc",     "dec",
    "brne",    "breq",  "bne",  "beq", "lsl",  "lsr",   "rol",  "ror",  "out", "in"};

const QStringList kBasicWords = {"and",     "as",     "byte",    "case",   "const",    "data",  "dim",    "do",
                                 "else",    "elseif", "end",     "for",    "function", "gosub", "goto",   "if",
                                 "integer", "let",    "long",    "loop",   "mod",      "next",  "not",    "or",
                                 "print",   "read",   "restore", "return", "select",   "step",  "string", "sub",
                                 "then",    "to",     "wend",    "while",  "word",     "xor"};

const QStringList kPascalWords = {
    "and",     "array",     "begin",   "boolean", "byte",   "cardinal", "case",     "char",      "const",
    "div",     "do",        "downto",  "else",    "end",    "for",      "function", "if",        "implementation",
    "integer", "interface", "longint", "mod",     "not",    "of",       "or",       "procedure", "program",
    "record",  "repeat",    "shl",     "shr",     "string", "then",     "to",       "type",      "unit",
    "until",   "uses",      "var",     "while",   "word",   "xor"};

// The words of the batch language's report stand out; some are bracketed, so the boundaries are
// "no word character", not \b.
const QStringList kReportWords = {"[FIXED]",      "[VARIABLE]", "DONE", "FALSE",   "FILE_NOT_FOUND",
                                  "NO_HEX_VALUE", "NOT_FOUND",  "OK",   "SUCCESS", "TRUE"};

}  // namespace

SourceHighlighter::SourceHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {
  keywordFormat.setForeground(QColor(0, 0, 160));
  keywordFormat.setFontWeight(QFont::Bold);
  numberFormat.setForeground(QColor(160, 0, 160));
  stringFormat.setForeground(QColor(0, 128, 0));
  commentFormat.setForeground(QColor(128, 128, 128));
  commentFormat.setFontItalic(true);
  directiveFormat.setForeground(QColor(0, 128, 128));
}

void SourceHighlighter::SetLanguage(Language language) {
  if (language == language_) return;
  language_ = language;
  BuildRules();
  rehighlight();
}

void SourceHighlighter::AddKeywords(const QStringList& words, Qt::CaseSensitivity cs, bool wholeWordBoundaries) {
  QStringList escaped;
  for (const QString& w : words) escaped << QRegularExpression::escape(w);
  const QString body = "(?:" + escaped.join('|') + ")";
  const QString pattern = wholeWordBoundaries ? "\\b" + body + "\\b" : "(?<![\\w\\[])" + body + "(?![\\w\\]])";
  QRegularExpression re(pattern, cs == Qt::CaseInsensitive ? QRegularExpression::CaseInsensitiveOption
                                                           : QRegularExpression::NoPatternOption);
  rules_.push_back({re, &keywordFormat});
}

void SourceHighlighter::BuildRules() {
  rules_.clear();
  blockStart_ = QRegularExpression();
  blockEnd_ = QRegularExpression();
  const QRegularExpression cNumber("\\b(?:0[xX][0-9A-Fa-f]+|0[bB][01]+|\\d+(?:\\.\\d+)?)[uUlL]*\\b");
  const QRegularExpression dquoted("\"(?:[^\"\\\\]|\\\\.)*\"");
  const QRegularExpression squoted("'(?:[^'\\\\]|\\\\.)*'");
  auto add = [&](const QString& pattern, const QTextCharFormat* format,
                 QRegularExpression::PatternOptions options = QRegularExpression::NoPatternOption) {
    rules_.push_back({QRegularExpression(pattern, options), format});
  };
  switch (language_) {
    case Language::None: return;
    case Language::Cpp:
      AddKeywords(kCWords, Qt::CaseSensitive);
      rules_.push_back({cNumber, &numberFormat});
      add("^\\s*#\\s*\\w+", &directiveFormat);
      rules_.push_back({dquoted, &stringFormat});
      rules_.push_back({squoted, &stringFormat});
      add("//.*$", &commentFormat);
      blockStart_ = QRegularExpression("/\\*");
      blockEnd_ = QRegularExpression("\\*/");
      return;
    case Language::Assembler:
      AddKeywords(kAsmWords, Qt::CaseInsensitive);
      add("\\.\\w+\\b", &directiveFormat);
      add("(?:\\b0[xX][0-9A-Fa-f]+\\b|\\$[0-9A-Fa-f]+\\b|\\b[0-9][0-9A-Fa-f]*[hH]\\b|%[01]+\\b|\\b0[bB][01]+\\b|\\b\\d+"
          "\\b)",
          &numberFormat);
      rules_.push_back({dquoted, &stringFormat});
      rules_.push_back({squoted, &stringFormat});
      add(";.*$", &commentFormat);
      return;
    case Language::VisualBasic:
      AddKeywords(kBasicWords, Qt::CaseInsensitive);
      add("(?:&[hH][0-9A-Fa-f]+\\b|\\b0[xX][0-9A-Fa-f]+\\b|\\$[0-9A-Fa-f]+\\b|\\b\\d+(?:\\.\\d+)?\\b)", &numberFormat);
      add("\"[^\"]*\"", &stringFormat);
      add("(?:'|\\bREM\\b).*$", &commentFormat, QRegularExpression::CaseInsensitiveOption);
      return;
    case Language::Pascal:
      AddKeywords(kPascalWords, Qt::CaseInsensitive);
      add("(?:\\$[0-9A-Fa-f]+\\b|\\b\\d+(?:\\.\\d+)?\\b)", &numberFormat);
      add("'(?:[^']|'')*'", &stringFormat);
      add("//.*$", &commentFormat);
      add("\\{[^}]*\\}", &commentFormat);
      blockStart_ = QRegularExpression("\\(\\*");
      blockEnd_ = QRegularExpression("\\*\\)");
      return;
    case Language::General:
      AddKeywords(kReportWords, Qt::CaseInsensitive, false);
      rules_.push_back({cNumber, &numberFormat});
      rules_.push_back({dquoted, &stringFormat});
      add("//.*$", &commentFormat);
      blockStart_ = QRegularExpression("/\\*");
      blockEnd_ = QRegularExpression("\\*/");
      return;
    case Language::Html:
    case Language::Xml:
      add("</?[\\w:.-]+|/?>", &keywordFormat);
      add("\\b[\\w:-]+(?==)", &directiveFormat);
      rules_.push_back({dquoted, &stringFormat});
      blockStart_ = QRegularExpression("<!--");
      blockEnd_ = QRegularExpression("-->");
      return;
  }
}

void SourceHighlighter::highlightBlock(const QString& text) {
  for (const Rule& rule : rules_) {
    auto it = rule.pattern.globalMatch(text);
    while (it.hasNext()) {
      const auto m = it.next();
      setFormat(static_cast<int>(m.capturedStart()), static_cast<int>(m.capturedLength()), *rule.format);
    }
  }
  setCurrentBlockState(0);
  if (!blockStart_.isValid() || blockStart_.pattern().isEmpty()) return;
  // Comments that span lines: state 1 means the block before ended inside one.
  qsizetype start = -1, openLength = 0;
  if (previousBlockState() == 1) {
    start = 0;
  } else if (const auto m = blockStart_.match(text); m.hasMatch()) {
    start = m.capturedStart();
    openLength = m.capturedLength();
  }
  while (start >= 0) {
    const auto end = blockEnd_.match(text, start + openLength);
    const qsizetype length = end.hasMatch() ? end.capturedEnd() - start : text.length() - start;
    setFormat(static_cast<int>(start), static_cast<int>(length), commentFormat);
    if (!end.hasMatch()) {
      setCurrentBlockState(1);
      break;
    }
    const auto next = blockStart_.match(text, start + length);
    start = next.hasMatch() ? next.capturedStart() : -1;
    openLength = next.hasMatch() ? next.capturedLength() : 0;
  }
}

}  // namespace rmgui
