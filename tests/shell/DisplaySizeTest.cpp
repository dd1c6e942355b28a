#include <gtest/gtest.h>

#include "support/ShellTestSupport.h"

namespace {

using Dir = rm::PagingDirection;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

const std::string kWidthQuestion =
    "Confirm: Dot matrix size not compatible with horizontal paging scheme !\rDo you want to change paging scheme "
    "orientation to vertical ?";
const std::string kHeightQuestion =
    "Confirm: Dot matrix size not compatible with vertical paging scheme !\rDo you want to change paging scheme "
    "orientation to horizontal ?";

int CountLogged(const TestProgram& p, const std::string& prefix) {
  int n = 0;
  for (const auto& l : p.app.logWindow.Lines.Lines()) n += l.rfind(prefix, 0) == 0;
  return n;
}
// Every message shown, as "title: text".
Lines Said(const rmtest::ScriptedUi& ui) {
  Lines said;
  for (const auto& m : ui.messages) said.push_back(m.title + ": " + m.text);
  return said;
}

// A program whose display and canvas are W x H in `scheme`, as after a start.
void SetSize(TestProgram& p, int w, int h, Dir scheme = Dir::ToRightAll) {
  p.app.globals.MatrixWidth = w;
  p.app.globals.MatrixHeight = h;
  p.app.mainForm.CanvasRedraw();
  ASSERT_TRUE(p.app.mainForm.SetDirection(scheme));
  p.ui.messages.clear();
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
    Dir before, after;
  } cases[] = {
      {100, Dir::ToRight, Dir::Down},    {100, Dir::ToLeftAll, Dir::Down}, {122, Dir::ToRightAll, Dir::Down},
      {122, Dir::ToLeft, Dir::Down},     {100, Dir::Up, Dir::Up},          {100, Dir::DownAll, Dir::DownAll},
      {120, Dir::ToRight, Dir::ToRight},
  };
  for (const auto& c : cases) {
    TestProgram p;
    SetSize(p, 128, 64, c.before);
    EXPECT_TRUE(p.app.mainForm.MatrixPresetClick(c.w, 32)) << c.w;
    EXPECT_EQ(p.app.session.Direction, c.after) << c.w;
    const bool told = c.after != c.before;
    EXPECT_EQ(Said(p.ui), told ? Lines{"Warning: This dot matrix size not compatible with horizontal paging scheme "
                                       "!\r Scheme will be changed to vertical ! "}
                               : Lines{});
    for (const auto& m : p.ui.messages) EXPECT_EQ(m.buttons, Lines{"OK"});
    EXPECT_EQ(p.app.globals.RedrawFullMatrix, c.w != 120);
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), c.w);
  }
}

TEST(DisplaySize, TheCanvasKeepsWhatFitsFromTheTopLeft) {
  TestProgram p;
  SetSize(p, 128, 64);
  rm::Bitmap& b = p.app.pixelForm.WorkBitmap;
  for (const auto& [x, y] : {std::pair{0, 0}, {95, 39}, {96, 10}}) b.SetPixel(x, y, rm::kBlack);
  ASSERT_TRUE(p.app.mainForm.MatrixPresetClick(96, 40));
  EXPECT_EQ(std::pair(b.Width(), b.Height()), std::pair(96, 40));
  EXPECT_EQ(b.GetPixel(0, 0), rm::kBlack);
  ASSERT_TRUE(p.app.mainForm.MatrixPresetClick(128, 64));
  EXPECT_EQ(b.GetPixel(96, 10), rm::kWhite) << "cut off is gone, new room is background";
  EXPECT_EQ(b.GetPixel(95, 39), rm::kBlack);
}

TEST(DisplaySize, UserSizeAsksWhenTheSchemeCannotPackIt) {
  const struct {
    const char* name;
    int mode;
    Dir scheme;
    std::string w, h;
    std::vector<std::string> answers;
    Lines then;  // the messages after the information
    bool taken;
    Dir after;
  } cases[] = {
      {"fits", 1, Dir::ToRight, "96", "30", {}, {}, true, Dir::ToRight},
      {"width unfit, yes", 1, Dir::ToRight, "100", "64", {"OK", "Yes"}, {kWidthQuestion}, true, Dir::Down},
      {"width unfit, no", 1, Dir::ToLeft, "100", "64", {"OK", "No"}, {kWidthQuestion}, false, Dir::ToLeft},
      {"height unfit, yes", 1, Dir::Down, "64", "30", {"OK", "Yes"}, {kHeightQuestion}, true, Dir::ToRight},
      {"height unfit, no", 1, Dir::Up, "64", "30", {"OK", "No"}, {kHeightQuestion}, false, Dir::Up},
      // Whole-canvas schemes are not asked about.
      {"all right", 1, Dir::ToRightAll, "100", "30", {}, {}, true, Dir::ToRightAll},
      {"4 gray divides by 4", 24, Dir::ToRight, "98", "64", {"OK", "Yes"}, {kWidthQuestion}, true, Dir::Down},
      {"16 colours divide by 2", 55, Dir::ToRight, "98", "64", {}, {}, true, Dir::ToRight},
      {"65536 colours need nothing", 59, Dir::Down, "99", "31", {}, {}, true, Dir::Down},
      // Neither orientation packs 100 x 30: the turned scheme refuses and the size is undone.
      {"nothing fits",
       1,
       Dir::ToRight,
       "100",
       "30",
       {"OK", "Yes"},
       {kWidthQuestion,
        "Warning:   Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Vertical size "
        "should be a multiple of 8 for vertical conversion  \r Use a horizontal conversion direction"},
       false,
       Dir::ToRight},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.mainForm.SetColourMode(c.mode, true);
    SetSize(p, 128, 64, c.scheme);
    p.app.pixelForm.WorkBitmap.SetPixel(120, 60, rm::kBlack);
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    EXPECT_EQ(p.app.mainForm.UserMatrixClick(c.w, c.h), c.taken) << c.name;
    Lines said{"Information:  User Dot Matrix Size has been defined ! "};
    said.insert(said.end(), c.then.begin(), c.then.end());
    EXPECT_EQ(Said(p.ui), said) << c.name;
    EXPECT_EQ(p.app.session.Direction, c.after) << c.name;
    EXPECT_EQ(p.app.globals.UserMatrix, c.taken) << c.name;
    const int w = c.taken ? std::stoi(c.w) : 128, h = c.taken ? std::stoi(c.h) : 64;
    EXPECT_EQ(p.app.globals.MatrixWidth, w) << c.name;
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), w) << c.name;
    EXPECT_EQ(p.app.pixelForm.MatrixHeight(), h) << c.name;
    EXPECT_TRUE(c.taken || p.app.pixelForm.WorkBitmap.GetPixel(120, 60) == rm::kBlack) << "undone whole: " << c.name;
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
  const struct { int sw, sh, w, h; } cases[] = {{1920, 1080, 960, 540}, {1367, 769, 683, 384}, {801, 601, 400, 300}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.ScreenWidth = c.sw;
    p.app.globals.ScreenHeight = c.sh;
    p.app.mainForm.NoMatrix1Click();
    EXPECT_EQ(p.app.globals.MatrixWidth, c.w);
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), c.w);
    EXPECT_EQ(p.app.pixelForm.MatrixHeight(), c.h);
    EXPECT_TRUE(p.app.globals.NoMatrixMode && p.app.globals.ExplorerNoMatrixMode);
    EXPECT_FALSE(p.app.globals.ColourMenuEnabled);
    EXPECT_EQ(p.app.session.ModeNumber, 62);
  }
}

}  // namespace
