#include "gui/QtUi.h"

#include <utility>
#include <QApplication>
#include <QDateTime>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>

#include "gui/ExportDialogBox.h"

namespace rmgui {

QString QtUi::DialogText(const std::string& text) {
  QString shown = QString::fromStdString(text);
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  return shown;
}

namespace {

QMessageBox::Icon IconOf(rm::DlgType type) {
  switch (type) {
    case rm::DlgType::Warning: return QMessageBox::Warning;
    case rm::DlgType::Error: return QMessageBox::Critical;
    case rm::DlgType::Information: return QMessageBox::Information;
    case rm::DlgType::Confirmation: return QMessageBox::Question;
    case rm::DlgType::Custom: break;
  }
  return QMessageBox::NoIcon;
}

// Esc presses the button that leaves everything as it was, when there is one.
bool IsCancelCaption(const QString& caption) {
  QString plain = caption;
  plain.remove('&');
  return plain.compare("Cancel", Qt::CaseInsensitive) == 0 || plain.compare("No", Qt::CaseInsensitive) == 0;
}

}  // namespace

std::string QtUi::MessageDlg(const std::string& text, const std::string& title, rm::DlgType type,
                             const std::vector<std::string>& buttons) {
  const QString explanation = QString::fromStdString(std::exchange(explanation_, {}));
  if (unattended_) {
    std::fprintf(stderr, "%s: %s [%s]\n", title.c_str(), DialogText(text).toStdString().c_str(),
                 buttons.empty() ? "OK" : buttons.front().c_str());
    return buttons.empty() ? std::string("OK") : buttons.front();
  }
  QMessageBox box(dialogParent_ ? dialogParent_ : QApplication::activeWindow());
  box.setObjectName("messageDialog");
  box.setWindowTitle(QString::fromStdString(title));
  box.setText(DialogText(text));
  if (!explanation.isEmpty()) box.setInformativeText(explanation);
  box.setIcon(IconOf(type));
  std::vector<QPushButton*> made;
  const std::vector<std::string> captions = buttons.empty() ? std::vector<std::string>{"OK"} : buttons;
  for (const std::string& caption : captions) {
    QPushButton* b = box.addButton(QString::fromStdString(caption), QMessageBox::ActionRole);
    made.push_back(b);
    if (IsCancelCaption(b->text())) box.setEscapeButton(b);
  }
  box.setDefaultButton(made.front());
  box.exec();
  for (std::size_t i = 0; i < made.size(); ++i)
    if (box.clickedButton() == made[i]) return captions[i];
  // Closed by the window's close box: the answer Esc would have given.
  for (const std::string& caption : captions)
    if (IsCancelCaption(QString::fromStdString(caption))) return caption;
  return captions.back();
}

void QtUi::Progress(long long position, long long max) {
  emit progressChanged(position, max);
  // The bar only moves if the window gets to paint it; an Esc seen meanwhile waits for the
  // work's next poll.
  PumpEvents();
}

void QtUi::PumpEvents() {
  // Painting forty times a second is enough to look alive and costs the work nothing.
  const qint64 now = QDateTime::currentMSecsSinceEpoch();
  if (now - lastPollMs_ < 25) return;
  lastPollMs_ = now;
  qApp->installEventFilter(this);
  QApplication::processEvents(QEventLoop::AllEvents, 5);
  qApp->removeEventFilter(this);
}

bool QtUi::EscapePressed() {
  PumpEvents();
  const bool seen = escapeSeen_;
  escapeSeen_ = false;
  return seen;
}

bool QtUi::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) escapeSeen_ = true;
      return true;
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::Close: return true;
    default: return QObject::eventFilter(watched, event);
  }
}

void QtUi::Beep() { QApplication::beep(); }

bool QtUi::ExportDialog(rm::ExportDialogState& state) {
  ExportDialogBox box(state, dialogParent_ ? dialogParent_ : QApplication::activeWindow());
  if (box.exec() != QDialog::Accepted) return false;
  state = box.State();
  return true;
}

}  // namespace rmgui
