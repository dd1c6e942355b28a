// The desktop view's scale: fitting any display into a window and the zoom steps.
#include <gtest/gtest.h>

#include "canvas/ViewScale.h"

namespace rm {
namespace {

TEST(ViewScale, FitsTheWholeImageAndCapsTinyDisplays) {
  struct Case {
    int w, h, pw, ph, zoom;
    double scale;
  } const cases[] = {
      {128, 64, 1000, 700, 1, 1000.0 / 128},   // width decides
      {1024, 768, 1000, 700, 1, 700.0 / 768},  // height decides, below one pixel per cell
      {64, 32, 1000, 700, 4, 1000.0 / 64},     // the model's cells already in the image
      {1, 1, 1000, 700, 1, ViewScale::kMaxCell},
      {2, 2, 1000, 700, 8, ViewScale::kMaxCell / 8},
      {0, 64, 1000, 700, 1, 1.0},
      {128, 64, 0, 700, 1, 1.0},
  };
  for (const Case& c : cases)
    EXPECT_DOUBLE_EQ(ViewScale::FitScale(c.w, c.h, c.pw, c.ph, c.zoom), c.scale) << c.w << "x" << c.h;
}

TEST(ViewScale, StepsLandOnTheLadderAndStopAtItsEnds) {
  struct Case {
    double cell;
    bool up;
    double next;
  } const cases[] = {
      {1, true, 1.5},  {1, false, 0.75}, {0.91, true, 1},       {0.91, false, 0.75}, {2.5, true, 3},
      {2.5, false, 2}, {64, true, 64},   {0.125, false, 0.125}, {100, false, 64},    {0.01, true, 0.125},
  };
  for (const Case& c : cases) EXPECT_DOUBLE_EQ(ViewScale::Step(c.cell, c.up), c.next) << c.cell << c.up;
  EXPECT_FALSE(ViewScale::CanStep(ViewScale::kMaxCell, true));
  EXPECT_TRUE(ViewScale::CanStep(ViewScale::kMaxCell, false));
}

TEST(ViewScale, AnchorKeepsTheImagePointUnderTheMouse) {
  // Image point under the anchor: (offset + anchor) / scale, the same before and after.
  const double offset = 40, anchor = 300;
  const double moved = ViewScale::AnchoredOffset(offset, anchor, 2, 3);
  EXPECT_DOUBLE_EQ((moved + anchor) / 3, (offset + anchor) / 2);
}

}  // namespace
}  // namespace rm
