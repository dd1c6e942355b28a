#include "gui/CanvasWidget.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "canvas/ViewScale.h"

#include "shell/Application.h"

namespace rmgui {

CanvasWidget::CanvasWidget(rm::Application& app, QWidget* parent) : QAbstractScrollArea(parent), app_(app) {
  setObjectName("workCanvas");
  viewport()->setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
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

double CanvasWidget::Scale() const { return ModelScrolls() ? 1.0 : scale_; }

double CanvasWidget::CellSize() const { return std::max(1, app_.pixelForm.Zoom) * Scale(); }

QSize CanvasWidget::ScaledSize() const {
  const rm::Bitmap& view = app_.pixelForm.ViewBitmap;
  return {qRound(view.Width() * Scale()), qRound(view.Height() * Scale())};
}

QPointF CanvasWidget::Origin() const {
  if (ModelScrolls()) return {0, 0};
  // A view smaller than the window stands in its middle; a larger one moves with the bars.
  const QSize scaled = ScaledSize();
  const QSize port = viewport()->size();
  const double x =
      scaled.width() < port.width() ? (port.width() - scaled.width()) / 2 : -horizontalScrollBar()->value();
  const double y =
      scaled.height() < port.height() ? (port.height() - scaled.height()) / 2 : -verticalScrollBar()->value();
  return {x, y};
}

QPoint CanvasWidget::CellAt(const QPoint& viewportPoint) const {
  const QPointF surface = (QPointF(viewportPoint) - Origin()) / Scale();
  const auto cell = app_.pixelForm.CanvasMousePos(static_cast<int>(std::floor(surface.x())),
                                                  static_cast<int>(std::floor(surface.y())));
  return {cell.x, cell.y};
}

QPoint CanvasWidget::PointOfCell(int x, int y) const {
  const rm::TPixelForm& c = app_.pixelForm;
  const double z = std::max(1, c.Zoom);
  const QPointF surface((x - c.ScrollX + 1 + 0.5) * z, (y - c.ScrollY + 1 + 0.5) * z);
  const QPointF point = Origin() + surface * Scale();
  return {static_cast<int>(std::floor(point.x())), static_cast<int>(std::floor(point.y()))};
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
    if (fit_) {
      const QSize port = viewport()->size();
      scale_ =
          rm::ViewScale::FitScale(c.ViewBitmap.Width(), c.ViewBitmap.Height(), port.width(), port.height(), c.Zoom);
    }
    const QSize view = ScaledSize();
    const QSize port = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, view.width() - port.width()));
    verticalScrollBar()->setRange(0, std::max(0, view.height() - port.height()));
    horizontalScrollBar()->setPageStep(port.width());
    verticalScrollBar()->setPageStep(port.height());
    const int step = std::max(1, qRound(CellSize()));
    horizontalScrollBar()->setSingleStep(step);
    verticalScrollBar()->setSingleStep(step);
  }
  syncing_ = false;
}

void CanvasWidget::SyncFromModel() {
  const rm::TPixelForm& c = app_.pixelForm;
  const QSize canvas(c.CanvasWidth, c.CanvasHeight);
  if (canvas != lastCanvasSize_) {
    // A new display size or another picture's size: show all of it.
    fit_ = true;
  } else if (c.Zoom != lastZoom_ && !fit_) {
    // Inflate, Deflate and Normal Size chose a cell size: show exactly that.
    scale_ = 1.0;
  }
  lastCanvasSize_ = canvas;
  lastZoom_ = c.Zoom;
  UpdateScrollBars();
  viewport()->update();
  emit scaleChanged();
}

void CanvasWidget::FitToWindow() {
  fit_ = true;
  UpdateScrollBars();
  viewport()->update();
  emit scaleChanged();
}

bool CanvasWidget::CanZoomStep(bool in) const {
  return !ModelScrolls() && app_.pixelForm.ViewBitmap.Width() > 0 && rm::ViewScale::CanStep(CellSize(), in);
}

bool CanvasWidget::ZoomStep(bool in, const QPoint& anchor) {
  if (!CanZoomStep(in)) return false;
  const double from = scale_;
  const double to = rm::ViewScale::Step(CellSize(), in) / std::max(1, app_.pixelForm.Zoom);
  const QPointF offset = -Origin();
  fit_ = false;
  scale_ = to;
  UpdateScrollBars();
  horizontalScrollBar()->setValue(qRound(rm::ViewScale::AnchoredOffset(offset.x(), anchor.x(), from, to)));
  verticalScrollBar()->setValue(qRound(rm::ViewScale::AnchoredOffset(offset.y(), anchor.y(), from, to)));
  viewport()->update();
  emit scaleChanged();
  return true;
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
  if (fit_) emit scaleChanged();
}

void CanvasWidget::paintEvent(QPaintEvent*) {
  QPainter p(viewport());
  const QImage view = ViewImage();
  p.fillRect(viewport()->rect(), palette().color(QPalette::Dark));
  if (view.isNull()) return;
  const double scale = Scale();
  const QPointF origin = Origin();
  // Only the part of the view that falls in the window is scaled, so a deep zoom on a large
  // canvas costs what the window shows. Enlarged cells stay sharp; a reduced view is smoothed
  // so that one-pixel lines do not vanish between the sampled ones.
  const QRectF visible(-origin / scale, QSizeF(viewport()->size()) / scale);
  const QRect source = visible.toAlignedRect().intersected(view.rect());
  if (source.isEmpty()) return;
  const QRectF target(origin + QPointF(source.topLeft()) * scale, QSizeF(source.size()) * scale);
  p.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1.0);
  p.drawImage(target, view, source);
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

void CanvasWidget::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && event->mimeData()->urls().front().isLocalFile()) event->acceptProposedAction();
}

// One picture at a time: the first local file of the drop is opened as Open Graphic would.
void CanvasWidget::dropEvent(QDropEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.isEmpty() || !urls.front().isLocalFile()) return;
  event->acceptProposedAction();
  emit fileDropped(urls.front().toLocalFile());
}

// A floating picture is laid down with Enter and discarded with Esc, as the status line says;
// otherwise Esc ends the drawing tool's step in progress.
void CanvasWidget::keyPressEvent(QKeyEvent* event) {
  rm::TPixelForm& c = app_.pixelForm;
  const int key = event->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    if (!c.FloatingSelection) return QAbstractScrollArea::keyPressEvent(event);
    app_.imageForm.OKPasteLayerClick();
  } else if (key == Qt::Key_Escape) {
    if (c.FloatingSelection) {
      c.DiscardSelection();
      c.CopyBitmapToCanvas();
    } else {
      c.Escape();
    }
  } else {
    return QAbstractScrollArea::keyPressEvent(event);
  }
  event->accept();
  viewport()->update();
  emit modelChanged();
}

void CanvasWidget::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() & Qt::ControlModifier) {
    // Ctrl + wheel zooms the view in steps about the point under the mouse.
    if (event->angleDelta().y() != 0) ZoomStep(event->angleDelta().y() > 0, event->position().toPoint());
    event->accept();
    return;
  }
  QAbstractScrollArea::wheelEvent(event);
}

}  // namespace rmgui
