#include "gui/DrawToolBar.h"

#include <QAction>
#include <QActionGroup>

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
}

}  // namespace rmgui
