#pragma once
#include <QToolBar>

namespace rm {
class Application;
}

namespace rmgui {

// The drawing tools as a tool bar: one checkable button per tool, one tool at a time, with the
// pixel editors' usual keys (B pen, L line, R rectangle, E ellipse, G fill). Choosing a tool
// arms the canvas: until then a click on the canvas draws nothing.
class DrawToolBar : public QToolBar {
  Q_OBJECT
 public:
  DrawToolBar(rm::Application& app, QWidget* parent = nullptr);

 signals:
  void toolChosen();

 private:
  // Pen width, pen shape and corner radius, as the pen menu's items.
  void AddPenMenu();

  rm::Application& app_;
};

}  // namespace rmgui
