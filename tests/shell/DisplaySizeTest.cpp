#include <gtest/gtest.h>

#include "support/ShellTestSupport.h"

namespace {

using rm::PagingDirection;
using rmtest::TestProgram;

const char* const kRowsUnfit =
    "This dot matrix size not compatible with horizontal paging scheme !\r Scheme will be changed to vertical ! ";
const char* const kWidthQuestion =
    "Dot matrix size not compatible with horizontal paging scheme !\rDo you want to change paging scheme orientation "
    "to vertical ?";
const char* const kHeightQuestion =
    "Dot matrix size not compatible with vertical paging scheme !\rDo you want to change paging scheme orientation to "
    "horizontal ?";

int CountLogged(const TestProgram& p, const std::string& prefix) {
  int n = 0;
  for (const auto& l : p.app.logWindow.Lines.Lines()) n += l.rfind(prefix, 0) == 0;
  return n;
}

// A program whose display and canvas are W x H, as after a start.
void SetSize(TestProgram& p, int w, int h) {
  p.app.globals.MatrixWidth = w;
  p.app.globals.MatrixHeight = h;
  p.app.mainForm.CanvasRedraw();
}

TEST(DisplaySize, PresetEqualToTheSizeInForceDoesNothingUnlessInPictureMode) {
  TestProgram p;
  SetSize(p, 128, 64);
  p.app.pixelForm.WorkBitmap.SetPixel(5, 5, rm::kBlack);
  EXPECT_FALSE(p.app.mainForm.MatrixPresetClick(128, 64));
  EXPECT_EQ(CountLogged(p, "LCD Matrix"), 0);
  EXPECT_EQ(p.app.pixelForm.WorkBitmap.GetPixel(5, 5), rm::kBlack);

  p.app.globals.NoMatrixMode = true;
  p.app.globals.ColourMenuEnabled = false;
  p.app.mainForm.SetColourMode(62, true);
  EXPECT_TRUE(p.app.mainForm.MatrixPresetClick(128, 64));
  EXPECT_FALSE(p.app.globals.NoMatrixMode);
  EXPECT_TRUE(p.app.globals.ColourMenuEnabled);
  EXPECT_EQ(p.app.session.ModeNumber, 1);
  EXPECT_FALSE(p.app.globals.UserMatrix);
  EXPECT_EQ(p.app.logWindow.Lines.Lines().back(), "LCD Matrix H:64 W:128");
}

TEST(DisplaySize, NarrowPresetsTurnAHorizontalSchemeWithoutAsking) {
  const struct {
    int w;
    PagingDirection before, after;
    bool told;
  } cases[] = {
      {100, PagingDirection::ToRight, PagingDirection::Down, true},
      {100, PagingDirection::ToLeftAll, PagingDirection::Down, true},
      {122, PagingDirection::ToRightAll, PagingDirection::Down, true},
      {122, PagingDirection::ToLeft, PagingDirection::Down, true},
      {100, PagingDirection::Up, PagingDirection::Up, false},
      {100, PagingDirection::DownAll, PagingDirection::DownAll, false},
      {120, PagingDirection::ToRight, PagingDirection::ToRight, false},
  };
  for (const auto& c : cases) {
    TestProgram p;
    SetSize(p, 128, 64);
    ASSERT_TRUE(p.app.mainForm.SetDirection(c.before));
    p.ui.messages.clear();
    EXPECT_TRUE(p.app.mainForm.MatrixPresetClick(c.w, 32)) << c.w;
    EXPECT_EQ(p.app.session.Direction, c.after) << c.w;
    ASSERT_EQ(p.ui.messages.size(), c.told ? 1u : 0u) << c.w;
    if (c.told) {
      EXPECT_EQ(p.ui.messages[0].text, kRowsUnfit);
      EXPECT_EQ(p.ui.messages[0].buttons, std::vector<std::string>{"OK"});
    }
    EXPECT_EQ(p.app.globals.RedrawFullMatrix, c.w != 120);
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), c.w);
  }
}

TEST(DisplaySize, TheCanvasKeepsWhatFitsFromTheTopLeft) {
  TestProgram p;
  SetSize(p, 128, 64);
  p.app.pixelForm.WorkBitmap.SetPixel(0, 0, rm::kBlack);
  p.app.pixelForm.WorkBitmap.SetPixel(95, 39, rm::kBlack);
  p.app.pixelForm.WorkBitmap.SetPixel(96, 10, rm::kBlack);
  ASSERT_TRUE(p.app.mainForm.MatrixPresetClick(96, 40));
  const rm::Bitmap& b = p.app.pixelForm.WorkBitmap;
  EXPECT_EQ(b.Width(), 96);
  EXPECT_EQ(b.Height(), 40);
  EXPECT_EQ(b.GetPixel(0, 0), rm::kBlack);
  EXPECT_EQ(b.GetPixel(95, 39), rm::kBlack);
  ASSERT_TRUE(p.app.mainForm.MatrixPresetClick(128, 64));
  EXPECT_EQ(p.app.pixelForm.WorkBitmap.GetPixel(96, 10), rm::kWhite) << "cut off is gone, new room is background";
  EXPECT_EQ(p.app.pixelForm.WorkBitmap.GetPixel(95, 39), rm::kBlack);
}

TEST(DisplaySize, UserSizeAsksWhenTheSchemeCannotPackIt) {
  const struct {
    const char* name;
    int mode;
    PagingDirection scheme;
    std::string w, h;
    std::vector<std::string> answers;
    const char* question;  // the first question after the information, if any
    bool taken;
    PagingDirection after;
  } cases[] = {
      {"fits", 1, PagingDirection::ToRight, "96", "30", {}, nullptr, true, PagingDirection::ToRight},
      {"width unfit, yes", 1, PagingDirection::ToRight, "100", "64", {"OK", "Yes"}, kWidthQuestion, true,
       PagingDirection::Down},
      {"width unfit, no", 1, PagingDirection::ToLeft, "100", "64", {"OK", "No"}, kWidthQuestion, false,
       PagingDirection::ToLeft},
      {"height unfit, yes", 1, PagingDirection::Down, "64", "30", {"OK", "Yes"}, kHeightQuestion, true,
       PagingDirection::ToRight},
      {"height unfit, no", 1, PagingDirection::Up, "64", "30", {"OK", "No"}, kHeightQuestion, false,
       PagingDirection::Up},
      // Whole-canvas schemes are not asked about.
      {"all right", 1, PagingDirection::ToRightAll, "100", "30", {}, nullptr, true, PagingDirection::ToRightAll},
      {"4 gray divides by 4", 24, PagingDirection::ToRight, "98", "64", {"OK", "Yes"}, kWidthQuestion, true,
       PagingDirection::Down},
      {"16 colours divide by 2", 55, PagingDirection::ToRight, "98", "64", {}, nullptr, true,
       PagingDirection::ToRight},
      {"65536 colours need nothing", 59, PagingDirection::Down, "99", "31", {}, nullptr, true,
       PagingDirection::Down},
      // Neither orientation packs 100 x 30: the turned scheme refuses and the size is undone.
      {"nothing fits", 1, PagingDirection::ToRight, "100", "30", {"OK", "Yes"}, kWidthQuestion, false,
       PagingDirection::ToRight},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.mainForm.SetColourMode(c.mode, true);
    SetSize(p, 128, 64);
    ASSERT_TRUE(p.app.mainForm.SetDirection(c.scheme)) << c.name;
    p.app.pixelForm.WorkBitmap.SetPixel(120, 60, rm::kBlack);
    p.ui.messages.clear();
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    EXPECT_EQ(p.app.mainForm.UserMatrixClick(c.w, c.h), c.taken) << c.name;
    ASSERT_GE(p.ui.messages.size(), 1u) << c.name;
    EXPECT_EQ(p.ui.messages[0].text, " User Dot Matrix Size has been defined ! ");
    EXPECT_EQ(p.ui.messages[0].title, "Information");
    if (c.question) {
      ASSERT_GE(p.ui.messages.size(), 2u) << c.name;
      EXPECT_EQ(p.ui.messages[1].text, c.question) << c.name;
    } else {
      EXPECT_EQ(p.ui.messages.size(), 1u) << c.name;
    }
    EXPECT_EQ(p.app.session.Direction, c.after) << c.name;
    EXPECT_EQ(p.app.globals.UserMatrix, c.taken) << c.name;
    const int w = c.taken ? std::stoi(c.w) : 128, h = c.taken ? std::stoi(c.h) : 64;
    EXPECT_EQ(p.app.globals.MatrixWidth, w) << c.name;
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), w) << c.name;
    EXPECT_EQ(p.app.pixelForm.MatrixHeight(), h) << c.name;
    if (!c.taken) {
      EXPECT_EQ(p.app.pixelForm.WorkBitmap.GetPixel(120, 60), rm::kBlack) << "undone whole: " << c.name;
    }
    EXPECT_EQ(CountLogged(p, "H:=" + c.h + " W:=" + c.w), 1) << c.name;
    EXPECT_EQ(CountLogged(p, "Dot matrix size = User defined"), 1) << c.name;
  }
}

TEST(DisplaySize, UserSizeEmptyEndsAndLargeIsBounded) {
  TestProgram p;
  EXPECT_FALSE(p.app.mainForm.UserMatrixClick("", "64"));
  EXPECT_FALSE(p.app.mainForm.UserMatrixClick("96", "x"));
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_TRUE(p.app.logWindow.Lines.Lines().empty());
  EXPECT_TRUE(p.app.mainForm.UserMatrixClick("2000", "800"));
  EXPECT_EQ(p.app.pixelForm.MatrixWidth(), 1024);
  EXPECT_EQ(p.app.pixelForm.MatrixHeight(), 768);
}

TEST(DisplaySize, PictureModeTakesHalfTheScreenRoundedDown) {
  const struct {
    int sw, sh, w, h;
  } cases[] = {{1920, 1080, 960, 540}, {1367, 769, 683, 384}, {801, 601, 400, 300}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.ScreenWidth = c.sw;
    p.app.globals.ScreenHeight = c.sh;
    p.app.mainForm.NoMatrix1Click();
    EXPECT_EQ(p.app.globals.MatrixWidth, c.w);
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), c.w);
    EXPECT_EQ(p.app.pixelForm.MatrixHeight(), c.h);
    EXPECT_TRUE(p.app.globals.NoMatrixMode);
    EXPECT_FALSE(p.app.globals.ColourMenuEnabled);
    EXPECT_TRUE(p.app.globals.ExplorerNoMatrixMode);
    EXPECT_EQ(p.app.session.ModeNumber, 62);
    EXPECT_TRUE(p.app.session.Colours16M);
    EXPECT_FALSE(p.app.session.Monochrome);
  }
}

}  // namespace
