#pragma once
#include <QAbstractScrollArea>
#include <QImage>
#include <QPoint>

namespace rm {
class Application;
}

namespace rmgui {

// The Work Canvas view: shows the canvas model's enlarged view bitmap as it is (the model did the
// composition, zoom, grid and paging lines) and turns mouse positions into canvas cells.
// The scroll bars move the view over the paint surface when the window is smaller than it, and
// over the canvas itself (the model's scroll position) after "Zoom In".
class CanvasWidget : public QAbstractScrollArea {
  Q_OBJECT
 public:
  explicit CanvasWidget(rm::Application& app, QWidget* parent = nullptr);

  // The canvas cell under a point of the viewport.
  QPoint CellAt(const QPoint& viewportPoint) const;
  // The view bitmap wrapped without a copy; valid until the model's next redraw.
  QImage ViewImage() const;

 public slots:
  // Re-reads the model after a command: sizes, scroll ranges, picture.
  void SyncFromModel();

 signals:
  // The mouse is over canvas cell (x, y) (may lie outside the canvas).
  void cellHovered(int x, int y);
  // A command of this view changed the program (a paste, a moved selection).
  void modelChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  bool ModelScrolls() const;
  // After a drawing tool's step: the view and the window follow the canvas.
  void RefreshAfterTool();
  QPoint SurfaceOffset() const;
  void UpdateScrollBars();

  rm::Application& app_;
  bool syncing_ = false;
  bool dragging_ = false;
  QPoint dragStartCell_;
  QPoint dragStartSelection_;
};

}  // namespace rmgui
