#include "gui/HelpMenu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSet>
#include <QWidget>

#include "engine/ProgramVersion.h"

namespace rmgui {

namespace {

QString Plain(const QAction* a) {
  QString text = a->text();
  text.remove('&');
  return text;
}

}  // namespace

QString HelpMenu::ShortcutList(const QList<QAction*>& actions) {
  QString list;
  QSet<QString> seen;
  for (const QAction* a : actions) {
    if (a->shortcut().isEmpty()) continue;
    const QString line = Plain(a) + '\t' + a->shortcut().toString(QKeySequence::NativeText);
    if (seen.contains(line)) continue;
    seen.insert(line);
    list += line + '\n';
  }
  return list;
}

void HelpMenu::AddShortcutToolTips(const QList<QAction*>& actions) {
  for (QAction* a : actions) {
    if (a->shortcut().isEmpty()) continue;
    const QString purpose = a->toolTip().isEmpty() || a->toolTip() == Plain(a) ? Plain(a) : a->toolTip();
    const QString key = a->shortcut().toString(QKeySequence::NativeText);
    if (!purpose.contains(key)) a->setToolTip(purpose + " (" + key + ")");
  }
}

void HelpMenu::Build(QMenuBar* bar, QWidget* window) {
  QMenu* help = bar->addMenu("&Help");
  help->setObjectName("helpMenu");
  QAction* keys = help->addAction("Keyboard Shortcuts");
  keys->setObjectName("shortcutsAction");
  QObject::connect(keys, &QAction::triggered, window, [window] {
    QMessageBox box(window);
    box.setObjectName("shortcutsBox");
    box.setWindowTitle("Keyboard Shortcuts");
    box.setText(ShortcutList(window->findChildren<QAction*>()) +
                "\nCtrl+wheel\tzoom the view about the mouse\nEnter / Esc\tlay down / discard a floating picture");
    box.exec();
  });
  QAction* about = help->addAction("About Rastermill");
  about->setObjectName("aboutAction");
  QObject::connect(about, &QAction::triggered, window, [window] {
    QMessageBox::about(window, "About Rastermill",
                       QString("Rastermill %1\n\nPictures, fonts and animations for small displays, as data a "
                               "firmware compiles.")
                           .arg(rm::ProgramVersion()));
  });
}

}  // namespace rmgui
