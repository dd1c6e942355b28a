// Which Paging directions a mode and canvas take, and the interleave rule: what the rules allow
// converts, what they refuse stops the run with its reason.
#include <gtest/gtest.h>

#include <string>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::PagingDirection;
using rmtest::TestProgram;

constexpr rm::Colour kRed = 0x0000FF, kGreen = 0x00FF00, kBlue = 0xFF0000;

// The 8 colour mode's lines hold groups of 8 pixels in 3 bytes: a canvas whose side along the
// byte direction is a multiple of 8 takes the All directions; the sliced ones are not made.
TEST(DirectionRules, EightColoursTakeTheDirectionsTheirLinesFit) {
  struct Case {
    PagingDirection direction;
    int width, height;
    bool accepted;  // by the direction command
    bool converts;  // the whole run
  } cases[] = {
      {PagingDirection::ToRightAll, 16, 8, true, true},    {PagingDirection::ToLeftAll, 16, 8, true, true},
      {PagingDirection::DownAll, 16, 8, true, true},       {PagingDirection::UpAll, 16, 8, true, true},
      {PagingDirection::Down, 16, 8, true, false},         {PagingDirection::ToRight, 16, 8, true, false},
      {PagingDirection::ToRightAll, 12, 8, false, true},  // moved to Down All, which fits
      {PagingDirection::DownAll, 16, 12, false, true},    // moved to To Right All
      {PagingDirection::ToRightAll, 12, 12, false, false},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.Setup(54, Bitmap(c.width, c.height, rm::kBlack));
    // The default direction is kept when the new one is refused.
    EXPECT_EQ(p.app.mainForm.SetDirection(c.direction), c.accepted)
        << static_cast<int>(c.direction) << " " << c.width << "x" << c.height;
    EXPECT_EQ(p.Convert(), c.converts) << static_cast<int>(c.direction) << " " << c.width << "x" << c.height;
    if (c.converts) {
      // All black: value 7 everywhere, so every byte is FF, 3 per 8 pixels.
      EXPECT_EQ(p.app.session.ByteCount, c.width * c.height * 3 / 8);
    }
  }
}

TEST(DirectionRules, EightColoursToTheRightPacksHandWorkedBytes) {
  TestProgram p;
  Bitmap b(8, 8, rm::kBlack);
  // Values 7, 0, 6, 5, 3, 7, 7, 7: E3 (7<<5 | 0<<2 | 6>>1), 57 (0 | 5<<4 | 3<<1 | 7>>2), FF.
  b.SetPixel(1, 0, rm::kWhite);
  b.SetPixel(2, 0, kRed);
  b.SetPixel(3, 0, kGreen);
  b.SetPixel(4, 0, kBlue);
  p.Setup(54, b);
  ASSERT_TRUE(p.app.mainForm.SetDirection(PagingDirection::ToRightAll));
  ASSERT_TRUE(p.Convert());
  EXPECT_NE(p.TableText().find("0xE3 , 0x57 , 0xFF"), std::string::npos) << p.TableText();
}

// An odd height keeps every row: the first half has the extra row.
TEST(DirectionRules, InterleaveOfAnOddHeightKeepsEveryRow) {
  TestProgram p;
  Bitmap b(8, 5, rm::kWhite);
  b.SetPixel(0, 1, rm::kBlack);                              // row 1 goes to output row 2
  for (int x = 0; x < 8; ++x) b.SetPixel(x, 4, rm::kBlack);  // row 4, the last, to output row 3
  p.Setup(1, b);
  ASSERT_TRUE(p.app.mainForm.SetDirection(PagingDirection::ToRightAll));
  p.app.session.Interleaved = true;
  ASSERT_TRUE(p.Convert());
  EXPECT_NE(p.TableText().find("0x00 , 0x00 , 0x80 , 0xFF , 0x00"), std::string::npos) << p.TableText();
}

}  // namespace

// A canvas that does not fit the direction turns to the other axis when that one fits, and says
// so; when neither fits no table is made, rather than one that drops the last pixels of every line.
TEST(DirectionRules, AMonochromeCanvasTurnsOrStopsButNeverLosesPixels) {
  const struct {
    int width, height;
    PagingDirection direction;  // in force when the conversion ends
    bool converts;
    std::string notice;
  } cases[] = {
      {16, 8, PagingDirection::ToRightAll, true, ""},
      {100, 32, PagingDirection::DownAll, true,
       "the canvas width 100 is not a multiple of 8 for the Paging Scheme All horizontal From left to right: turned "
       "to the Paging Scheme All vertical downwards"},
      {13, 11, PagingDirection::ToRightAll, false, ""},
      {3, 2, PagingDirection::ToRightAll, false, ""},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.Setup(1, Bitmap(c.width, c.height, rm::kBlack));
    EXPECT_EQ(p.Convert(), c.converts) << c.width << "x" << c.height;
    EXPECT_EQ(p.app.session.Direction, c.direction) << c.width << "x" << c.height;
    EXPECT_EQ(p.ui.notices, c.notice.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.notice})
        << c.width << "x" << c.height;
    if (c.converts) {
      EXPECT_EQ(p.app.session.ByteCount, c.width * c.height / 8);
    }
  }
}
