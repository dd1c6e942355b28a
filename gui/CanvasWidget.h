#pragma once
#include <QAbstractScrollArea>
#include <QImage>
#include <QPoint>
#include <QPointF>

namespace rm {
class Application;
}

namespace rmgui {

// The Work Canvas view: shows the canvas model's enlarged view bitmap as it is (the model did the
// composition, zoom, grid and paging lines) and turns mouse positions into canvas cells.
// The view bitmap is shown scaled (ViewScale): fitted to the window after each open, size or zoom
// change, or at the cell size the wheel and the zoom steps chose. The scroll bars move the view
// over the scaled picture when the window is smaller than it, and over the canvas itself (the
// model's scroll position) after "Zoom In", where the model's cut fills the window unscaled.
class CanvasWidget : public QAbstractScrollArea {
  Q_OBJECT
 public:
  explicit CanvasWidget(rm::Application& app, QWidget* parent = nullptr);

  // The canvas cell under a point of the viewport.
  QPoint CellAt(const QPoint& viewportPoint) const;
  // The centre of canvas cell (x, y) in viewport coordinates (the inverse of CellAt).
  QPoint PointOfCell(int x, int y) const;
  // The view bitmap wrapped without a copy; valid until the model's next redraw.
  QImage ViewImage() const;
  // Screen pixels per canvas pixel as the window shows them, and whether the view is fitted.
  double CellSize() const;
  bool Fitted() const { return fit_; }
  // One zoom step about a viewport point; false (and nothing changed) at the end of the steps.
  bool ZoomStep(bool in, const QPoint& anchor);
  bool CanZoomStep(bool in) const;

 public slots:
  // Re-reads the model after a command: sizes, scroll ranges, picture.
  void SyncFromModel();
  // Shows the whole display, as large as the window allows.
  void FitToWindow();

 signals:
  // The mouse is over canvas cell (x, y) (may lie outside the canvas).
  void cellHovered(int x, int y);
  // A command of this view changed the program (a paste, a moved selection).
  void modelChanged();
  // The shown cell size or the fit changed.
  void scaleChanged();
  // A file was dropped on the canvas, to be opened as a picture.
  void fileDropped(const QString& path);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  bool ModelScrolls() const;
  // After a drawing tool's step: the view and the window follow the canvas.
  void RefreshAfterTool();
  // Where the scaled view's top left corner stands in the viewport.
  QPointF Origin() const;
  double Scale() const;
  QSize ScaledSize() const;
  void UpdateScrollBars();

  rm::Application& app_;
  bool syncing_ = false;
  bool dragging_ = false;
  QPoint dragStartCell_;
  QPoint dragStartSelection_;
  bool fit_ = true;
  double scale_ = 1.0;
  // The canvas size and the model's cell size at the last sync: a new size fits the view again,
  // a new model zoom is shown as it is.
  QSize lastCanvasSize_;
  int lastZoom_ = 0;
};

}  // namespace rmgui
