// The drawing tools as the mouse drives them: each commit reaches the canvas and the history.
#include <gtest/gtest.h>

#include "support/ShellTestSupport.h"

namespace {

using rm::DrawingTool;

TEST(PaintTools, DraggedShapesAndStrokesAreCommittedAndUndone) {
  rmtest::TestProgram p;
  p.Setup(1, rm::Bitmap(16, 8));
  p.app.pixelForm.ResetHistory();
  rm::PaintTools& tools = p.app.pixelForm.Tools;
  const rm::Bitmap blank = p.app.pixelForm.WorkBitmap;

  tools.SelectTool(DrawingTool::Rectangle);
  EXPECT_EQ(p.ui.statuses.back(), "Draw square (with shift) or rectangle in canvas");
  tools.MouseDown(true, false, 10, 6);
  tools.MouseMove(true, 2, 1);  // Shift: a square of the shorter side
  tools.MouseUp(true, true, 2, 1);
  const rm::Bitmap& canvas = p.app.pixelForm.WorkBitmap;
  EXPECT_EQ(canvas.GetPixel(5, 1), rm::kBlack);
  EXPECT_EQ(canvas.GetPixel(4, 1), rm::kWhite);  // the square runs from x 5 to 10
  const rm::Bitmap square = canvas;

  // A fast stroke: the pen joins the two far apart positions.
  tools.SelectTool(DrawingTool::Pen);
  tools.MouseDown(true, false, 0, 7);
  tools.MouseMove(false, 15, 7);
  tools.MouseUp(true, false, 15, 7);
  for (int x = 0; x < 16; ++x) EXPECT_EQ(canvas.GetPixel(x, 7), rm::kBlack) << x;

  // A drag beyond the canvas is drawn to its edge; Esc drops a drag in progress.
  tools.SelectTool(DrawingTool::Line);
  tools.MouseDown(true, false, 0, 0);
  tools.Escape();
  EXPECT_EQ(p.ui.statuses.back(), "Action aborted by escape");
  tools.MouseUp(true, false, 40, 0);
  EXPECT_EQ(canvas.GetPixel(15, 0), rm::kWhite);

  ASSERT_TRUE(p.app.imageForm.UndoButtonClick());
  EXPECT_EQ(canvas, square);
  ASSERT_TRUE(p.app.imageForm.UndoButtonClick());
  EXPECT_EQ(canvas, blank);
}

TEST(PaintTools, ArcsTakeThreeStepsAndFillsOneClick) {
  rmtest::TestProgram p;
  p.Setup(1, rm::Bitmap(5, 5));
  rm::PaintTools& tools = p.app.pixelForm.Tools;
  tools.SelectTool(DrawingTool::Arc);
  tools.MouseDown(true, false, 0, 0);
  tools.MouseUp(true, false, 4, 4);
  EXPECT_EQ(p.ui.statuses.back(), "Click start and end points on ellipse or cicle (arc/pie traced clock wise)");
  tools.MouseDown(true, false, 0, 2);
  EXPECT_EQ(p.ui.statuses.back(), "Click end point on ellipse or circle (arc/pie traced clock wise)");
  tools.MouseDown(true, false, 5, 2);
  EXPECT_EQ(p.ui.statuses.back(), "Arc of ellipse or circle painted");
  const rm::Bitmap& canvas = p.app.pixelForm.WorkBitmap;
  EXPECT_EQ(canvas.GetPixel(2, 0), rm::kBlack);
  EXPECT_EQ(canvas.GetPixel(2, 4), rm::kWhite);  // the lower half is not on the clockwise sweep

  tools.SelectTool(DrawingTool::FloodFill);
  tools.MouseDown(true, false, 2, 4);
  EXPECT_EQ(p.ui.statuses.back(), "Area filled");
  EXPECT_EQ(canvas.GetPixel(2, 4), rm::kBlack);
  EXPECT_EQ(canvas.GetPixel(2, 1), rm::kBlack);  // the arc is open below: its inside fills too
  EXPECT_EQ(canvas.GetPixel(0, 0), rm::kWhite);  // the corner the arc walls off

  // A wider pen, with the menu's ends kept: a 3 pixel pen paints the block around the point.
  tools.SetPenWidth(12);
  EXPECT_EQ(p.ui.statuses.back(), "Pen width = 10");
  tools.SetPenWidth(3);
  tools.SelectTool(DrawingTool::Pen);
  tools.MouseDown(false, false, 1, 1);  // the right button paints the right button's colour
  tools.MouseUp(false, false, 1, 1);
  EXPECT_EQ(canvas.GetPixel(0, 0), tools.RightButtonColor);
  EXPECT_EQ(canvas.GetPixel(2, 2), tools.RightButtonColor);
}

}  // namespace
