#pragma once
#include <QObject>
#include <QString>

#include "engine/UiPort.h"

class QWidget;

namespace rmgui {

// The desktop's user: real modal dialogs with the program's own titles and button captions, the
// status line, a progress bar and the Esc key during long work.
class QtUi : public QObject, public rm::UiPort {
  Q_OBJECT
 public:
  explicit QtUi(QObject* parent = nullptr) : QObject(parent) {}

  // The window dialogs are centred on; none: the active window.
  void SetDialogParent(QWidget* parent) { dialogParent_ = parent; }
  // Nobody at the screen (a screenshot run): every question takes its first button, the one
  // Enter would press, and is written to stderr instead of shown.
  void SetUnattended(bool unattended) { unattended_ = unattended; }

  void ExplainNextQuestion(const std::string& text) override { explanation_ = text; }
  std::string MessageDlg(const std::string& text, const std::string& title, rm::DlgType type,
                         const std::vector<std::string>& buttons) override;
  void Status(const std::string& text) override { emit statusChanged(QString::fromStdString(text)); }
  void Progress(long long position, long long max) override;
  // Long work polls this between steps: it keeps the windows painted, swallows the user's clicks
  // and keys (a command is never re-entered) and reports an Esc pressed since the last poll.
  bool EscapePressed() override;
  void Beep() override;
  bool ExportDialog(rm::ExportDialogState& state) override;

  // A message's text as a dialog shows it: "\r" is a line break.
  static QString DialogText(const std::string& text);

 signals:
  void statusChanged(const QString& text);
  // max 0: no work in hand, the bar goes away.
  void progressChanged(long long position, long long max);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Lets the windows paint while long work runs; the user's input is held back, Esc noted.
  void PumpEvents();

  QWidget* dialogParent_ = nullptr;
  std::string explanation_;  // for the next question only
  bool unattended_ = false;
  bool escapeSeen_ = false;
  qint64 lastPollMs_ = 0;
};

}  // namespace rmgui
