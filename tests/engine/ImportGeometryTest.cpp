#include "engine/ImportGeometry.h"

#include <gtest/gtest.h>

namespace {

using rm::Bitmap;
using rm::PictureRect;
using rm::PictureSize;

constexpr rm::Colour kRed = 0x0000FF;

// A picture whose every pixel has a colour of its own, so that a mapping can be read back.
Bitmap Numbered(int w, int h) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) b.SetPixel(x, y, (y * w + x + 1) * 0x010101 % 0xFFFFFF);
  return b;
}

TEST(ImportGeometry, ProportionalResizeSizes) {
  struct Case {
    int w, h, targetW, targetH;
    PictureSize expected;
  };
  const Case cases[] = {
      {128, 64, 128, 64, {128, 64}},                                     // fits exactly: unchanged
      {20, 10, 128, 64, {20, 10}},                                       // smaller: unchanged, never enlarged
      {256, 128, 128, 64, {128, 64}},   {300, 100, 128, 64, {128, 42}},  // 128 * 100 / 300 in integers
      {100, 300, 128, 64, {21, 64}},    {10, 1000, 128, 64, {0, 64}},    // so thin the integer width is 0
      {300, 200, 200, 100, {150, 100}},                                  // wide, then too high: truncate(100 * 1.5)
      {30, 40, 20, 100, {20, 26}},                                       // tall, then too wide: truncate(20 * 1.333...)
      {100, 100, 30, 50, {30, 30}},                                      // square takes the tall branch
      {1000, 999, 50, 100, {50, 49}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(rm::PropotionalResizeSize(c.w, c.h, c.targetW, c.targetH), c.expected)
        << c.w << "x" << c.h << " into " << c.targetW << "x" << c.targetH;
}

TEST(ImportGeometry, SelectionResizeTakesTheCanvasWidthInItsFirstOverflow) {
  // Tall and too wide for the frame: the width is the canvas's, the height follows it.
  EXPECT_EQ(rm::PropotionalResizeToSelectionSize(30, 40, 20, 100, 128), (PictureSize{128, 170}));
  // The other branches are those of the canvas fit, on the frame.
  EXPECT_EQ(rm::PropotionalResizeToSelectionSize(300, 200, 200, 100, 128), (PictureSize{150, 100}));
  EXPECT_EQ(rm::PropotionalResizeToSelectionSize(100, 300, 50, 60, 128), (PictureSize{20, 60}));
  EXPECT_EQ(rm::PropotionalResizeToSelectionSize(40, 30, 50, 60, 128), (PictureSize{40, 30}));
}

TEST(ImportGeometry, NewBitmapSizeRoundsEachCorner) {
  struct Case {
    int w, h;
    double angle;
    PictureSize expected;
  };
  const Case cases[] = {
      {10, 20, 0, {10, 20}},  {10, 20, 90, {20, 10}}, {10, 20, 180, {10, 20}}, {10, 20, 270, {20, 10}},
      {10, 10, 45, {14, 14}}, {4, 2, 30, {4, 4}},     {3, 1, 180, {3, 1}},     {0, 0, 45, {0, 0}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(rm::NewBitmapSize(c.w, c.h, c.angle), c.expected) << c.w << "x" << c.h << " at " << c.angle;
}

TEST(ImportGeometry, QuarterTurnsKeepEveryPixel) {
  const Bitmap p = Numbered(3, 2);
  const Bitmap cw = rm::RotateBitmap(p, 90, rm::kDefaultBackground, true);
  ASSERT_EQ(cw.Width(), 2);
  ASSERT_EQ(cw.Height(), 3);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) EXPECT_EQ(cw.GetPixel(1 - y, x), p.GetPixel(x, y)) << x << "," << y;
  const Bitmap half = rm::RotateBitmap(p, 180, rm::kDefaultBackground, false);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) EXPECT_EQ(half.GetPixel(2 - x, 1 - y), p.GetPixel(x, y));
  EXPECT_EQ(rm::RotateBitmap(p, 360, rm::kDefaultBackground, true), p);
}

TEST(ImportGeometry, RotationFillsTheCornersWithTheBackground) {
  const Bitmap black(10, 10, rm::kBlack);
  const Bitmap fit = rm::RotateBitmap(black, 45, rm::kDefaultBackground, true);
  EXPECT_EQ(fit.Width(), 14);
  EXPECT_EQ(fit.Height(), 14);
  EXPECT_EQ(fit.GetPixel(0, 0), rm::kWhite);  // the default background is white
  EXPECT_EQ(fit.GetPixel(7, 7), rm::kBlack);
  const Bitmap same = rm::RotateBitmap(black, 45, kRed, false);
  EXPECT_EQ(same.Width(), 10);
  EXPECT_EQ(same.GetPixel(0, 0), kRed);
  EXPECT_EQ(same.GetPixel(5, 5), rm::kBlack);
}

TEST(ImportGeometry, CloseCrop) {
  Bitmap b(8, 8);
  b.SetPixel(2, 3, rm::kBlack);
  b.SetPixel(5, 1, kRed);
  PictureRect rect{9, 9, 9, 9};
  EXPECT_FALSE(rm::CalcCloseCrop(b, rm::kWhite, "0", rect));
  EXPECT_EQ(rect, (PictureRect{9, 9, 9, 9}));  // angle "0": nothing done
  ASSERT_TRUE(rm::CalcCloseCrop(b, rm::kWhite, "15", rect));
  EXPECT_EQ(rect, (PictureRect{2, 1, 6, 4}));
  ASSERT_TRUE(rm::CalcCloseCrop(Bitmap(5, 4), rm::kWhite, "15", rect));
  EXPECT_EQ(rect, (PictureRect{0, 0, 5, 4}));  // nothing differs: the whole bitmap
  ASSERT_TRUE(rm::CalcCloseCrop(b, rm::kDefaultBackground, "15", rect));
  EXPECT_EQ(rect, (PictureRect{2, 1, 6, 4}));
  EXPECT_EQ(rm::CropBitmap(b, rect).GetPixel(3, 0), kRed);
}

TEST(ImportGeometry, TurnOnTheSquareIsTheUsedRectanglePlusTwo) {
  // A quarter turn of a solid picture: exactly its turned size, one white pixel all round.
  const Bitmap q = rm::RotateOnSquare(Bitmap(4, 2, rm::kBlack), 90);
  ASSERT_EQ(q.Width(), 2 + 2);
  ASSERT_EQ(q.Height(), 4 + 2);
  for (int y = 0; y < q.Height(); ++y)
    for (int x = 0; x < q.Width(); ++x) {
      const bool border = x == 0 || y == 0 || x == q.Width() - 1 || y == q.Height() - 1;
      EXPECT_EQ(q.GetPixel(x, y), border ? rm::kWhite : rm::kBlack) << x << "," << y;
    }
  // Any angle: the outer ring is white and the next ring touches the picture on every side.
  for (double angle : {30.0, 45.0, 200.0}) {
    const Bitmap r = rm::RotateOnSquare(Numbered(20, 7), angle);
    PictureRect used;
    ASSERT_TRUE(rm::CalcCloseCrop(r, rm::kWhite, "1", used));
    EXPECT_EQ(used, (PictureRect{1, 1, r.Width() - 1, r.Height() - 1})) << angle;
  }
}

TEST(ImportGeometry, StretchIsNearestNeighbour) {
  EXPECT_TRUE(rm::StretchBitmap(Numbered(4, 4), 0, 64).Empty());
  EXPECT_TRUE(rm::StretchBitmap(Numbered(4, 4), 5, -1).Empty());
  const Bitmap p = Numbered(4, 1);
  const Bitmap down = rm::StretchBitmap(p, 2, 1);
  EXPECT_EQ(down.GetPixel(0, 0), p.GetPixel(1, 0));
  EXPECT_EQ(down.GetPixel(1, 0), p.GetPixel(3, 0));
  const Bitmap up = rm::StretchBitmap(Numbered(2, 2), 4, 4);
  const Bitmap src = Numbered(2, 2);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) EXPECT_EQ(up.GetPixel(x, y), src.GetPixel(x / 2, y / 2));
}

TEST(ImportGeometry, AngleText) {
  double a = -1;
  EXPECT_TRUE(rm::ParseAngle(" 45 ", a));
  EXPECT_EQ(a, 45);
  EXPECT_TRUE(rm::ParseAngle("12.5", a));
  EXPECT_EQ(a, 12.5);
  EXPECT_FALSE(rm::ParseAngle("", a));
  EXPECT_FALSE(rm::ParseAngle("4x", a));
}

}  // namespace
