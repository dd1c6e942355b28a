#pragma once
#include <vector>

#include "canvas/DrawingTools.h"
#include "engine/Bitmap.h"
#include "engine/UiPort.h"

namespace rm {

class TPixelForm;

// The drawing tools as the mouse drives them on the Work Canvas: the tool in force with its pen
// and fill settings, the drag, the clicks of polylines and arcs. Positions are canvas pixels
// (the paint surface turns screen positions into them). Every commit lands in WorkBitmap and
// in the history, so Undo takes it back.
class PaintTools {
 public:
  PaintTools(TPixelForm& form, UiPort& ui) : form_(form), ui_(ui) {}

  DrawingTool Tool = DrawingTool::Pen;
  // No tool is in force until one is chosen: a click on a fresh canvas changes nothing.
  bool Armed = false;
  int PenWidth = 1;  // 1 to 10
  bool RoundPen = false;
  int CornerRadius = 3;  // 1 to 10
  bool Filled = false;   // the filled switch (else outline only)
  bool AutoSwapPaintingColor = false;
  Colour PenColor = kBlack;
  Colour BrushColor = kWhite;
  Colour LeftButtonColor = kBlack;
  Colour RightButtonColor = kWhite;

  // The pen menu's "Size = N" (1 to 10, shown as "Pen width = N") and "Corner Radius = N"
  // (1 to 10); values beyond the menu are taken at its ends.
  void SetPenWidth(int width);
  void SetCornerRadius(int radius);
  // The tool's button: clears the drag and shows the tool's status text.
  void SelectTool(DrawingTool tool);
  void MouseDown(bool left, bool shift, int x, int y);
  void MouseMove(bool shift, int x, int y);
  void MouseUp(bool left, bool shift, int x, int y);
  // Drops the drag in progress; the canvas keeps what was committed.
  void Escape();
  // True while a shape is being dragged or a figure clicked: the view draws its band.
  bool Dragging() const { return dragging_ || !points_.empty() || arcStep_ > 0; }
  Point DragStart() const { return start_; }
  Point DragEnd() const { return end_; }

 private:
  ShapeStyle Style() const;
  void Commit(const char* status = nullptr);

  TPixelForm& form_;
  UiPort& ui_;
  bool dragging_ = false;
  bool leftButton_ = true;
  Point start_, end_, last_;
  std::vector<Point> points_;  // the clicks of a polyline or polygon so far
  int arcStep_ = 0;            // 1: the box is dragged, the start is due; 2: the end is due
  Point arcBoxStart_, arcBoxEnd_, arcStart_;
};

}  // namespace rm
