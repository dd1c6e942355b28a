#pragma once
#include <QList>
#include <QString>

class QAction;
class QMenuBar;
class QWidget;

namespace rmgui {

// The Help menu: the list of keyboard shortcuts, made from the window's own actions so it cannot
// go stale, and the About box. Also gives every action with a shortcut a tool tip that names it.
class HelpMenu {
 public:
  static void Build(QMenuBar* bar, QWidget* window);
  // "Text<TAB>Shortcut" lines of every action that has a shortcut, in menu order, without repeats.
  static QString ShortcutList(const QList<QAction*>& actions);
  static void AddShortcutToolTips(const QList<QAction*>& actions);
};

}  // namespace rmgui
