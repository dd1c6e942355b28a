#include "gui/DrawToolBar.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QToolButton>

#include "shell/Application.h"

namespace rmgui {

namespace {

struct ToolButton {
  const char* text;
  rm::DrawingTool tool;
  const char* key;  // empty: no shortcut
};

constexpr ToolButton kButtons[] = {
    {"Pen", rm::DrawingTool::Pen, "B"},
    {"Line", rm::DrawingTool::Line, "L"},
    {"Rectangle", rm::DrawingTool::Rectangle, "R"},
    {"Filled Rectangle", rm::DrawingTool::FilledRectangle, ""},
    {"Rounded Rectangle", rm::DrawingTool::RoundRectangle, ""},
    {"Ellipse", rm::DrawingTool::Ellipse, "E"},
    {"Filled Ellipse", rm::DrawingTool::FilledEllipse, ""},
    {"Centred Ellipse", rm::DrawingTool::CentredEllipse, ""},
    {"Triangle", rm::DrawingTool::Triangle, ""},
    {"Filled Triangle", rm::DrawingTool::FilledTriangle, ""},
    {"Arc", rm::DrawingTool::Arc, ""},
    {"Pie", rm::DrawingTool::Pie, ""},
    {"Polyline", rm::DrawingTool::Polyline, ""},
    {"Polygon", rm::DrawingTool::Polygon, ""},
    {"Flood Fill", rm::DrawingTool::FloodFill, "G"},
    {"Flood Fill with Fill Colour", rm::DrawingTool::FloodFillWithFillColour, ""},
};

}  // namespace

DrawToolBar::DrawToolBar(rm::Application& app, QWidget* parent) : QToolBar("Draw", parent), app_(app) {
  setObjectName("drawToolBar");
  auto* group = new QActionGroup(this);
  group->setExclusive(true);
  for (const ToolButton& b : kButtons) {
    QAction* a = addAction(b.text);
    a->setCheckable(true);
    a->setObjectName(QString("tool") + QString(b.text).remove(' '));
    const QString status = QString::fromUtf8(rm::ToolInfo(b.tool).status.data(), rm::ToolInfo(b.tool).status.size());
    if (*b.key) {
      a->setShortcut(QKeySequence(b.key));
      a->setToolTip(QString("%1 (%2)").arg(status, b.key));
    } else {
      a->setToolTip(status);
    }
    group->addAction(a);
    const rm::DrawingTool tool = b.tool;
    connect(a, &QAction::triggered, this, [this, tool] {
      app_.pixelForm.Tools.SelectTool(tool);
      emit toolChosen();
    });
  }
  AddPenMenu();
}

void DrawToolBar::AddPenMenu() {
  auto* menu = new QMenu("Pen", this);
  menu->setObjectName("penMenu");
  rm::PaintTools& tools = app_.pixelForm.Tools;
  auto* sizes = new QActionGroup(menu);
  for (int w = 1; w <= 10; ++w) {
    QAction* a = menu->addAction(QString("Size = %1").arg(w));
    a->setCheckable(true);
    a->setChecked(w == tools.PenWidth);
    sizes->addAction(a);
    connect(a, &QAction::triggered, this, [&tools, w] { tools.SetPenWidth(w); });
  }
  menu->addSeparator();
  auto* shapes = new QActionGroup(menu);
  for (bool round : {false, true}) {
    QAction* a = menu->addAction(round ? "Round shape" : "Square shape");
    a->setCheckable(true);
    a->setChecked(round == tools.RoundPen);
    shapes->addAction(a);
    connect(a, &QAction::triggered, this, [&tools, round] { tools.RoundPen = round; });
  }
  menu->addSeparator();
  QMenu* radius = menu->addMenu(QString("Current corner Radius (%1)").arg(tools.CornerRadius));
  auto* radii = new QActionGroup(radius);
  for (int r = 1; r <= 10; ++r) {
    QAction* a = radius->addAction(QString("Corner Radius = %1").arg(r));
    a->setCheckable(true);
    a->setChecked(r == tools.CornerRadius);
    radii->addAction(a);
    connect(a, &QAction::triggered, this, [&tools, radius, r] {
      tools.SetCornerRadius(r);
      radius->setTitle(QString("Current corner Radius (%1)").arg(r));
    });
  }
  auto* button = new QToolButton(this);
  button->setText("Pen");
  button->setToolTip("Pen width, pen shape and the corner radius of rounded rectangles");
  button->setMenu(menu);
  button->setPopupMode(QToolButton::InstantPopup);
  addWidget(button);
}

}  // namespace rmgui
