#include "gui/CanvasWidget.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "shell/Application.h"

namespace rmgui {

CanvasWidget::CanvasWidget(rm::Application& app, QWidget* parent) : QAbstractScrollArea(parent), app_(app) {
  setObjectName("workCanvas");
  viewport()->setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
}

bool CanvasWidget::ModelScrolls() const {
  // After "Zoom In" the view shows a cut of the canvas, moved in canvas cells; otherwise the
  // whole canvas is in the view, moved in screen pixels when the window is smaller than it.
  const rm::TPixelForm& c = app_.pixelForm;
  return c.VisibleColumns < c.CanvasWidth || c.VisibleRows < c.CanvasHeight;
}

QImage CanvasWidget::ViewImage() const {
  const rm::Bitmap& view = app_.pixelForm.ViewBitmap;
  if (view.Width() <= 0 || view.Height() <= 0) return {};
  // Canvas colours are 0x00BBGGRR words: in memory R, G, B and a spare byte, which is what
  // RGBX8888 reads, so the view needs no conversion.
  return QImage(reinterpret_cast<const uchar*>(view.Row(0)), view.Width(), view.Height(), view.Width() * 4,
                QImage::Format_RGBX8888);
}

QPoint CanvasWidget::SurfaceOffset() const {
  if (ModelScrolls()) return {0, 0};
  return {horizontalScrollBar()->value(), verticalScrollBar()->value()};
}

QPoint CanvasWidget::CellAt(const QPoint& viewportPoint) const {
  const QPoint surface = viewportPoint + SurfaceOffset();
  const auto cell = app_.pixelForm.CanvasMousePos(surface.x(), surface.y());
  return {cell.x, cell.y};
}

void CanvasWidget::UpdateScrollBars() {
  syncing_ = true;
  const rm::TPixelForm& c = app_.pixelForm;
  if (ModelScrolls()) {
    horizontalScrollBar()->setRange(1, std::max(1, c.CanvasWidth - c.VisibleColumns + 1));
    verticalScrollBar()->setRange(1, std::max(1, c.CanvasHeight - c.VisibleRows + 1));
    horizontalScrollBar()->setSingleStep(1);
    verticalScrollBar()->setSingleStep(1);
    horizontalScrollBar()->setPageStep(std::max(1, c.VisibleColumns));
    verticalScrollBar()->setPageStep(std::max(1, c.VisibleRows));
    horizontalScrollBar()->setValue(c.ScrollX);
    verticalScrollBar()->setValue(c.ScrollY);
  } else {
    const QSize view(c.ViewBitmap.Width(), c.ViewBitmap.Height());
    const QSize port = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, view.width() - port.width()));
    verticalScrollBar()->setRange(0, std::max(0, view.height() - port.height()));
    horizontalScrollBar()->setPageStep(port.width());
    verticalScrollBar()->setPageStep(port.height());
    horizontalScrollBar()->setSingleStep(std::max(1, c.Zoom));
    verticalScrollBar()->setSingleStep(std::max(1, c.Zoom));
  }
  syncing_ = false;
}

void CanvasWidget::SyncFromModel() {
  UpdateScrollBars();
  viewport()->update();
}

void CanvasWidget::scrollContentsBy(int, int) {
  if (syncing_) return;
  if (ModelScrolls()) {
    app_.pixelForm.ScrollTo(horizontalScrollBar()->value(), verticalScrollBar()->value());
  }
  viewport()->update();
}

void CanvasWidget::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  UpdateScrollBars();
}

void CanvasWidget::paintEvent(QPaintEvent*) {
  QPainter p(viewport());
  const QImage view = ViewImage();
  const QPoint offset = SurfaceOffset();
  p.fillRect(viewport()->rect(), palette().color(QPalette::Dark));
  if (!view.isNull()) p.drawImage(QPoint(-offset.x(), -offset.y()), view);
}

void CanvasWidget::mousePressEvent(QMouseEvent* event) {
  const QPoint cell = CellAt(event->position().toPoint());
  rm::TPixelForm& c = app_.pixelForm;
  if (!c.FloatingSelection && c.Tools.Armed) {
    c.Tools.MouseDown(event->button() == Qt::LeftButton, event->modifiers() & Qt::ShiftModifier, cell.x(), cell.y());
    RefreshAfterTool();
    return;
  }
  if (event->button() != Qt::LeftButton || !c.FloatingSelection) return;
  if (c.SelectionContains(cell.x(), cell.y())) {
    dragging_ = true;
    dragStartCell_ = cell;
    dragStartSelection_ = QPoint(c.SelectionLeft, c.SelectionTop);
    viewport()->setCursor(Qt::ClosedHandCursor);
    return;
  }
  // A click clear of the floating picture (more than one cell away) lays it down where it is.
  const bool near = cell.x() >= c.SelectionLeft - 1 && cell.y() >= c.SelectionTop - 1 &&
                    cell.x() <= c.SelectionLeft + c.SelectionBitmap.Width() &&
                    cell.y() <= c.SelectionTop + c.SelectionBitmap.Height();
  if (!near) {
    app_.imageForm.OKPasteLayerClick();
    emit modelChanged();
  }
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event) {
  const QPoint cell = CellAt(event->position().toPoint());
  rm::TPixelForm& c = app_.pixelForm;
  if (!c.FloatingSelection && c.Tools.Dragging()) {
    c.Tools.MouseMove(event->modifiers() & Qt::ShiftModifier, cell.x(), cell.y());
    // The pen paints as it goes; a shape shows on release.
    if (c.Tools.Tool == rm::DrawingTool::Pen) {
      c.CopyBitmapToCanvas();
      viewport()->update();
    }
  }
  if (dragging_) {
    const QPoint to = dragStartSelection_ + (cell - dragStartCell_);
    if (to != QPoint(c.SelectionLeft, c.SelectionTop)) {
      c.MoveSelection(to.x(), to.y());
      viewport()->update();
    }
  } else if (c.FloatingSelection) {
    viewport()->setCursor(c.SelectionContains(cell.x(), cell.y()) ? Qt::OpenHandCursor : Qt::CrossCursor);
  } else {
    viewport()->setCursor(Qt::CrossCursor);
  }
  emit cellHovered(cell.x(), cell.y());
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* event) {
  rm::TPixelForm& c = app_.pixelForm;
  if (!c.FloatingSelection && c.Tools.Dragging()) {
    const QPoint cell = CellAt(event->position().toPoint());
    c.Tools.MouseUp(event->button() == Qt::LeftButton, event->modifiers() & Qt::ShiftModifier, cell.x(), cell.y());
    RefreshAfterTool();
    return;
  }
  if (event->button() == Qt::LeftButton && dragging_) {
    dragging_ = false;
    viewport()->setCursor(Qt::OpenHandCursor);
    emit modelChanged();
  }
}

void CanvasWidget::RefreshAfterTool() {
  viewport()->update();
  emit modelChanged();
}

void CanvasWidget::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() & Qt::ControlModifier) {
    // Ctrl + wheel enlarges and shrinks the cells, as the inflate and deflate buttons do.
    const bool changed =
        event->angleDelta().y() > 0 ? app_.imageForm.BiggerButtonClick() : app_.imageForm.SmallerButtonClick();
    if (changed) emit modelChanged();
    event->accept();
    return;
  }
  QAbstractScrollArea::wheelEvent(event);
}

}  // namespace rmgui
