// The frame sequence: numbering from 1, stepping, insertion and deletion with their delay rules,
// pastes over many frames and the linear motion.
#include <gtest/gtest.h>

#include "animation/AnimationSequence.h"
#include "engine/ImportGeometry.h"

namespace {

using rm::AnimationSequence;
using rm::Bitmap;

// Frame n is a 4 x 2 picture whose pixel (0, 0) holds n, so each frame can be told by it.
Bitmap Marked(int n) {
  Bitmap b(4, 2, rm::kWhite);
  b.SetPixel(0, 0, n);
  return b;
}

AnimationSequence Numbered(int count, std::vector<int> delays) {
  std::vector<Bitmap> frames;
  for (int n = 1; n <= count; ++n) frames.push_back(Marked(n));
  return AnimationSequence(frames, delays);
}

std::vector<int> Marks(const AnimationSequence& s) {
  std::vector<int> marks;
  for (int n = 1; n <= s.FrameCount(); ++n) marks.push_back(s.Frame(n).GetPixel(0, 0));
  return marks;
}

TEST(AnimationSequence, StartsWithOneWhiteFrameAndStepsAround) {
  AnimationSequence one(8, 4);
  EXPECT_EQ(one.FrameCount(), 1);
  EXPECT_EQ(one.Delay(1), 300);
  EXPECT_EQ(one.Frame(1), Bitmap(8, 4, rm::kWhite));
  one.Next(Marked(5));
  // One frame: Next stores the canvas and comes back to it.
  EXPECT_EQ(one.CurrentFrame(), 1);
  EXPECT_EQ(one.Frame(1), Marked(5));

  AnimationSequence s = Numbered(3, {10, 20, 30});
  s.Previous(s.Frame(1));
  EXPECT_EQ(s.CurrentFrame(), 3);
  s.Next(Marked(33));
  EXPECT_EQ(s.CurrentFrame(), 1);
  EXPECT_EQ(Marks(s), (std::vector<int>{1, 2, 33}));
  s.Select(s.Frame(1), 2);
  EXPECT_EQ(s.CurrentFrame(), 2);
  s.Select(s.Frame(2), 9);
  EXPECT_EQ(s.CurrentFrame(), 1);
  s.Last(s.Frame(1));
  EXPECT_EQ(s.CurrentFrame(), 3);
  s.First(s.Frame(3));
  EXPECT_EQ(s.CurrentFrame(), 1);
}

TEST(AnimationSequence, InsertionGivesEveryMovedFrameTheNewDelay) {
  struct Case {
    int current;
    bool clear;
    std::vector<int> marks, delays;
    int currentAfter;
    std::string log;
  };
  const int white = rm::kWhite;
  const std::vector<Case> cases = {
      // The canvas (mark 99) is stored in the current frame, then copied, or a white frame put, after it.
      {2, false, {1, 99, 99, 3, 4}, {10, 20, 300, 300, 300}, 3, "Image #3 of 5 insertion done"},
      {1, true, {99, white, 2, 3, 4}, {10, 300, 300, 300, 300}, 2, "Image #2 of 5 insertion done"},
      // After the last frame it is an append: no delay changes.
      {4, true, {1, 2, 3, 99, white}, {10, 20, 30, 40, 300}, 5, "Image #5 of 5 insertion done"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.log);
    AnimationSequence s = Numbered(4, {10, 20, 30, 40});
    s.Select(s.Frame(1), c.current);
    EXPECT_EQ(s.Insert(Marked(99), c.clear), c.log);
    EXPECT_EQ(Marks(s), c.marks);
    EXPECT_EQ(s.Delays(), c.delays);
    EXPECT_EQ(s.CurrentFrame(), c.currentAfter);
  }
  AnimationSequence s = Numbered(2, {10, 20});
  EXPECT_EQ(s.Append(Marked(7)), "Image #3 of 3 insertion done");
  EXPECT_EQ(Marks(s), (std::vector<int>{7, 2, 7}));
  EXPECT_EQ(s.Delays(), (std::vector<int>{10, 20, 300}));
}

TEST(AnimationSequence, DeletionKeepsTheDelaysOfTheFramesThatMoveDown) {
  AnimationSequence s = Numbered(4, {10, 20, 30, 40});
  s.Select(s.Frame(1), 2);
  EXPECT_EQ(s.DeleteCurrent(), "Image #2 deletion done");
  EXPECT_EQ(Marks(s), (std::vector<int>{1, 3, 4}));
  EXPECT_EQ(s.Delays(), (std::vector<int>{10, 30, 40}));
  EXPECT_EQ(s.CurrentFrame(), 2);
  s.Last(s.Frame(2));
  EXPECT_EQ(s.DeleteCurrent(), "Previous image #2 deletion done");
  EXPECT_EQ(Marks(s), (std::vector<int>{1, 3}));
  EXPECT_EQ(s.CurrentFrame(), 2);
  s.DeleteCurrent();
  // The only frame left is cleared, not removed.
  EXPECT_EQ(s.DeleteCurrent(), "Deletion done , animation sequence void");
  EXPECT_EQ(s.FrameCount(), 1);
  EXPECT_EQ(s.Frame(1), Bitmap(4, 2, rm::kWhite));
}

TEST(AnimationSequence, PastesOnTheFramesFromTheCurrentOne) {
  AnimationSequence s = Numbered(3, {});
  s.Select(s.Frame(1), 2);
  Bitmap piece(2, 1, rm::kBlack);
  piece.SetPixel(1, 0, rm::kWhite);
  s.PasteOnAllFrames(s.Frame(2), piece, 2, 1, true);
  EXPECT_EQ(s.Frame(1).GetPixel(2, 1), rm::kWhite);
  for (int n : {2, 3}) {
    EXPECT_EQ(s.Frame(n).GetPixel(2, 1), rm::kBlack);
    EXPECT_EQ(s.Frame(n).GetPixel(3, 1), rm::kWhite);
  }
  s.PasteOnAllFrames(s.Frame(2), piece, 2, 1, false);
  EXPECT_EQ(s.Frame(3).GetPixel(3, 1), rm::kWhite);
  // Plain copy: the white pixel of the piece covers what was there.
  Bitmap black(4, 2, rm::kBlack);
  AnimationSequence dark({black, black}, {});
  dark.PasteOnAllFrames(black, piece, 0, 0, false);
  EXPECT_EQ(dark.Frame(2).GetPixel(1, 0), rm::kWhite);
}

TEST(AnimationSequence, LinearMotionStepsTheCentreAndAddsFramesAtTheEnd) {
  std::vector<Bitmap> frames(2, Bitmap(12, 3, rm::kWhite));
  AnimationSequence s(frames, {});
  const Bitmap dot(1, 1, rm::kBlack);
  std::string error;
  EXPECT_FALSE(s.PasteLinearMotion(s.Frame(1), dot, 0, 1, 9, 1, 1, error));
  EXPECT_EQ(error, " Incorrect number of frames !");
  // From x 0 to x 10 over 4 frames: steps of 10 / 3 = 3, so the dot lands on 3, 6 and 9.
  ASSERT_TRUE(s.PasteLinearMotion(s.Frame(1), dot, 0, 1, 10, 1, 4, error));
  EXPECT_EQ(s.FrameCount(), 4);
  EXPECT_EQ(s.CurrentFrame(), 4);
  EXPECT_EQ(s.Delays(), (std::vector<int>{300, 300, 300, 300}));
  for (int n = 2; n <= 4; ++n)
    for (int x = 0; x < 12; ++x)
      EXPECT_EQ(s.Frame(n).GetPixel(x, 1) == rm::kBlack, x == 3 * (n - 1)) << "frame " << n << " x " << x;
}

TEST(AnimationSequence, CircularMotionWritesNineFramesFirstAndLastTheOriginal) {
  // An L: its turns differ from one another, and a half turn puts its foot on the other side.
  Bitmap piece(3, 3, rm::kWhite);
  for (int y = 0; y < 3; ++y) piece.SetPixel(0, y, rm::kBlack);
  piece.SetPixel(1, 2, rm::kBlack);
  piece.SetPixel(2, 2, rm::kBlack);
  const Bitmap blank(11, 11, rm::kWhite);
  for (bool clockwise : {true, false}) {
    SCOPED_TRACE(clockwise);
    AnimationSequence s({blank, blank}, {});
    s.PasteCircularMotion(blank, piece, 5, 5, clockwise);
    EXPECT_EQ(s.FrameCount(), 9);
    EXPECT_EQ(s.CurrentFrame(), 9);
    Bitmap expected = blank;
    rm::PastePiece(expected, piece, 4, 4, false);
    EXPECT_EQ(s.Frame(1), expected);
    EXPECT_EQ(s.Frame(9), expected);
    const Bitmap half = rm::RotateBitmap(piece, 180, rm::kWhite, true);
    expected = blank;
    rm::PastePiece(expected, half, 5 - (half.Width() - 1) / 2, 5 - (half.Height() - 1) / 2, false);
    EXPECT_EQ(s.Frame(5), expected);
    EXPECT_NE(s.Frame(3), s.Frame(7));
    // The two ways round meet the same turns in reverse order.
    const Bitmap quarter = rm::RotateBitmap(piece, clockwise ? 90 : 270, rm::kWhite, true);
    expected = blank;
    rm::PastePiece(expected, quarter, 5 - (quarter.Width() - 1) / 2, 5 - (quarter.Height() - 1) / 2, false);
    EXPECT_EQ(s.Frame(3), expected);
  }
}

TEST(AnimationSequence, GhostShowsTheFrameBeforeAndBackupRestores) {
  AnimationSequence s = Numbered(2, {});
  EXPECT_EQ(s.Ghost(0x808080), Bitmap(4, 2, rm::kWhite));
  s.Next(s.Frame(1));
  Bitmap expected(4, 2, rm::kWhite);
  expected.SetPixel(0, 0, 0x808080);
  EXPECT_EQ(s.Ghost(0x808080), expected);
  s.SaveAnimation();
  s.Insert(Marked(50), false);
  s.RestoreAnimation();
  EXPECT_EQ(Marks(s), (std::vector<int>{1, 2}));
  EXPECT_EQ(s.CurrentFrame(), 2);
}

}  // namespace
