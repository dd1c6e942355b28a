#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "engine/Reduction.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::Colour;
using rmtest::TestProgram;

Bitmap GrayPattern(int w, int h, const std::vector<int>& levels) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      b.SetPixel(x, y, rm::GrayColour(levels[static_cast<std::size_t>(x + y) % levels.size()]));
  return b;
}

Bitmap ColourPattern(int w, int h, int colours) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int i = (x + y * w) % colours;
      b.SetPixel(x, y, rm::MakeColour(13 + i * 11, 200 - i * 7, 60 + i * 5));
    }
  return b;
}

Bitmap Photo(int w, int h) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) b.SetPixel(x, y, rm::MakeColour(x * 255 / w, y * 255 / h, (x * y) % 256));
  return b;
}

bool AllIn(const Bitmap& b, const std::vector<Colour>& table) {
  for (int y = 0; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x)
      if (std::find(table.begin(), table.end(), b.GetPixel(x, y)) == table.end()) return false;
  return true;
}

// An imported picture floats over the canvas in the given mode and is checked.
void Import(TestProgram& p, int mode, const Bitmap& picture, std::deque<std::string> answers = {}) {
  p.app.mainForm.SetColourMode(mode, true);
  p.app.pixelForm.SetCanvas(Bitmap(picture.Width(), picture.Height(), rm::kWhite));
  p.ui.answers = std::move(answers);
  p.ui.messages.clear();
  p.ui.statuses.clear();
  p.app.pixelForm.FloatSelection(picture, 0, 0);
  p.app.pixelForm.CheckColorsSelection(true);
}

TEST(ReductionCheck, EachModeAsksAndReducesAsItShould) {
  struct Case {
    const char* name;
    int mode;
    Bitmap picture;
    std::deque<std::string> answers;
    std::string question;  // "" when none is asked
    std::string status;    // the last status line
    bool pending;
    std::function<void(const Bitmap&, const rm::ConversionSession&)> check;
  };
  const std::vector<int> four = {10, 90, 170, 250};
  std::vector<int> hundred;
  for (int i = 0; i < 100; ++i) hundred.push_back(i * 2 + 30);
  const Case cases[] = {
      {"mono gray picture",
       1,
       GrayPattern(8, 4, four),
       {},
       "",
       "Use trackbar, move and then paste selection...",
       true,
       nullptr},
      {"mono black and white", 1, GrayPattern(8, 4, {0, 255}), {}, "", "", false, nullptr},
      {"16 grays, reduce",
       26,
       GrayPattern(8, 4, four),
       {"Reduce"},
       "Convert or Reduce to Grayscale Palette \r4 gray levels",
       " Picture has been converted to 4 grey levels",
       false,
       [](const Bitmap& b, const rm::ConversionSession&) {
         // Ascending grays onto every fourth entry of the ascending ramp.
         EXPECT_EQ(b.GetPixel(0, 0), rm::GrayColour(0));
         EXPECT_EQ(b.GetPixel(1, 0), rm::GrayColour(68));
         EXPECT_EQ(b.GetPixel(2, 0), rm::GrayColour(136));
         EXPECT_EQ(b.GetPixel(3, 0), rm::GrayColour(204));
       }},
      {"16 grays, convert",
       26,
       GrayPattern(8, 4, four),
       {"Convert"},
       "Convert or Reduce to Grayscale Palette \r4 gray levels",
       " Picture has been converted to 4 grey levels",
       false,
       [](const Bitmap& b, const rm::ConversionSession&) {
         EXPECT_EQ(b.GetPixel(0, 0), rm::GrayColour(17));
         EXPECT_EQ(b.GetPixel(1, 0), rm::GrayColour(85));
         EXPECT_EQ(b.GetPixel(2, 0), rm::GrayColour(170));
         EXPECT_EQ(b.GetPixel(3, 0), rm::GrayColour(255));
       }},
      {"4 grays, many levels",
       24,
       GrayPattern(100, 2, hundred),
       {},
       "",
       " Picture has been converted to 4 grey levels",
       false,
       [](const Bitmap& b, const rm::ConversionSession& s) { EXPECT_TRUE(AllIn(b, s.ModeColours)); }},
      {"256 gray shades, colour photo",
       32,
       Photo(32, 16),
       {"Convert"},
       "Convert or Reduce to Grayscale Palette \r198 gray levels",
       "",
       false,
       [](const Bitmap& b, const rm::ConversionSession& s) { EXPECT_TRUE(AllIn(b, s.PaletteTable)); }},
      {"256 colours, 20 colours",
       56,
       ColourPattern(10, 4, 20),
       {"Convert"},
       "Convert or Reduce to Color Palette \r20 colors",
       "",
       false,
       [](const Bitmap& b, const rm::ConversionSession& s) { EXPECT_TRUE(AllIn(b, s.PaletteTable)); }},
      {"256 colours, photo",
       56,
       Photo(32, 16),
       {},
       "",
       "",
       false,
       [](const Bitmap& b, const rm::ConversionSession& s) { EXPECT_TRUE(AllIn(b, s.PaletteTable)); }},
      {"16 colours, photo",
       55,
       Photo(32, 16),
       {},
       "",
       "",
       false,
       [](const Bitmap& b, const rm::ConversionSession& s) { EXPECT_TRUE(AllIn(b, s.ModeColours)); }},
      {"4096 colours, photo",
       57,
       Photo(32, 16),
       {"Convert"},
       "Convert or Reduce to Color Palette \r512 colors",
       "",
       false,
       [](const Bitmap& b, const rm::ConversionSession& s) { EXPECT_TRUE(AllIn(b, s.PaletteTable)); }},
      {"16M leaves it",
       62,
       Photo(32, 16),
       {},
       "",
       "",
       false,
       [](const Bitmap& b, const rm::ConversionSession&) { EXPECT_EQ(b, Photo(32, 16)); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TestProgram p;
    Import(p, c.mode, c.picture, c.answers);
    const rm::TPixelForm& canvas = p.app.pixelForm;
    if (c.question.empty()) {
      EXPECT_TRUE(p.ui.messages.empty()) << p.ui.messages.front().text;
    } else {
      ASSERT_EQ(p.ui.messages.size(), 1u);
      EXPECT_EQ(p.ui.messages[0].text, c.question);
      // The question alone leaves a user guessing: what each answer does stands beneath it.
      EXPECT_NE(p.ui.messages[0].explanation.find("Reduce: "), std::string::npos) << c.name;
    }
    if (!c.status.empty()) {
      ASSERT_FALSE(p.ui.statuses.empty());
      EXPECT_EQ(p.ui.statuses.back(), c.status);
    }
    EXPECT_EQ(canvas.ThresholdPending, c.pending);
    EXPECT_EQ(canvas.ThresholdVisible, c.pending);
    if (c.check) c.check(canvas.SelectionBitmap, p.app.session);
  }
}

TEST(ReductionCheck, PaletteStatusTellsWhatHappened) {
  TestProgram p;
  Import(p, 56, ColourPattern(10, 4, 20), {"Reduce"});
  EXPECT_EQ(p.ui.statuses.back().rfind(" Picture has been converted from 20 to ", 0), 0u) << p.ui.statuses.back();
  // A picture already in the palette is left as it is.
  TestProgram q;
  q.app.mainForm.SetColourMode(56, true);
  const std::vector<Colour>& table = q.app.session.PaletteTable;
  Bitmap own(6, 1);
  for (int x = 0; x < 6; ++x) own.SetPixel(x, 0, table[static_cast<std::size_t>(x) * 40]);
  Import(q, 56, own);
  EXPECT_EQ(q.ui.statuses.back(), " Picture has 6 colors");
  EXPECT_EQ(q.app.pixelForm.SelectionBitmap, own);
}

TEST(ReductionSlider, ThresholdsTheWholeCanvasOnRelease) {
  TestProgram p;
  p.app.mainForm.SetColourMode(1, true);
  Bitmap canvas(16, 4);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 16; ++x) canvas.SetPixel(x, y, rm::GrayColour(x * 16 + y));
  p.app.pixelForm.SetCanvas(canvas);
  rm::TPixelForm& pf = p.app.pixelForm;

  p.app.imageForm.BWAdjustementTool1BWTrackBarChange(200, true);
  EXPECT_EQ(pf.BlackWhiteEdit, "200");
  EXPECT_FALSE(pf.FloatingSelection) << "a held button only moves the number";

  struct Step {
    int position;
    int blackBelow;  // grays below this turn black
  };
  for (const Step s : {Step{128, 128}, Step{0, 0}, Step{255, 255}}) {
    p.app.imageForm.BWAdjustementTool1BWTrackBarChange(s.position, false);
    ASSERT_TRUE(pf.FloatingSelection);
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 16; ++x)
        ASSERT_EQ(pf.SelectionBitmap.GetPixel(x, y), x * 16 + y < s.blackBelow ? rm::kBlack : rm::kWhite)
            << "p=" << s.position << " at " << x << "," << y;
  }
  EXPECT_EQ(pf.WorkBitmap, canvas) << "the canvas changes only at paste";
  EXPECT_TRUE(p.app.imageForm.OKPasteLayerClick());
  EXPECT_TRUE(pf.IsBlackAndWhite());
}

TEST(ReductionSlider, SelectionOffTheLeftIsReadFromItsFirstPixelOverTheCanvas) {
  TestProgram p;
  p.app.mainForm.SetColourMode(1, true);
  p.app.pixelForm.SetCanvas(Bitmap(8, 4, rm::kWhite));
  rm::TPixelForm& pf = p.app.pixelForm;
  pf.FloatSelection(Bitmap(12, 4, rm::GrayColour(50)), -2, 0);
  p.app.imageForm.BWAdjustementTool1BWTrackBarChange(100, false);
  // From column 2 through 2 + the canvas width, inclusive.
  for (int x = 0; x < 12; ++x)
    EXPECT_EQ(pf.SelectionBitmap.GetPixel(x, 0), x >= 2 && x <= 10 ? rm::kBlack : rm::kWhite) << x;
}

TEST(ReductionSlider, RefusedOverAVisibleTransferLayer) {
  TestProgram p;
  p.app.mainForm.SetColourMode(1, true);
  rm::TPixelForm& pf = p.app.pixelForm;
  pf.TransferLayerVisible = true;
  p.app.imageForm.BWAdjustementTool1BWTrackBarChange(100, false);
  EXPECT_FALSE(pf.FloatingSelection);
  pf.FloatSelection(GrayPattern(4, 4, {100}), 0, 0);
  pf.CheckColorsSelection(true);
  EXPECT_TRUE(pf.ThresholdPending);
  EXPECT_FALSE(pf.ThresholdVisible);
}

TEST(ReductionPaste, PendingConversionAsksWithThreeAnswers) {
  struct Case {
    std::string answer;
    bool pasted;
    bool floating;
    int dithers;
  };
  const Case cases[] = {{"Ok", true, false, 0}, {"Cancel", false, false, 0}, {"Dithering", false, true, 1}};
  const Bitmap gray = GrayPattern(8, 4, {60, 200});
  for (const Case& c : cases) {
    SCOPED_TRACE(c.answer);
    TestProgram p;
    Import(p, 1, gray, {c.answer});
    rm::TPixelForm& pf = p.app.pixelForm;
    ASSERT_TRUE(pf.ThresholdPending);
    EXPECT_EQ(p.app.imageForm.OKPasteLayerClick(), c.pasted);
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(pf.FloatingSelection, c.floating);
    EXPECT_EQ(pf.WorkBitmap == gray, c.pasted);
    EXPECT_EQ(p.app.usage.Get("idith"), c.dithers);
    if (c.answer == "Dithering") {
      Bitmap expected = gray;
      rm::Dither(expected, rm::ColorReduction::Monochrome, pf.DitherChoice);
      EXPECT_EQ(pf.SelectionBitmap, expected);
      // Dithered: the next paste asks nothing.
      EXPECT_TRUE(p.app.imageForm.OKPasteLayerClick());
      EXPECT_EQ(p.ui.messages.size(), 1u);
      EXPECT_EQ(pf.WorkBitmap, expected);
    }
  }
}

TEST(ReductionDithering, NoSelectionAsksThenTakesTheCanvasInMonochrome) {
  TestProgram p;
  p.app.mainForm.SetColourMode(56, true);
  const Bitmap picture = GrayPattern(8, 8, {30, 140, 220});
  p.app.pixelForm.SetCanvas(picture);
  p.ui.answers = {"No"};
  EXPECT_FALSE(p.app.imageForm.PerformDitheringParametersbelow1Click());
  EXPECT_EQ(p.ui.messages.size(), 1u);
  EXPECT_FALSE(p.app.pixelForm.FloatingSelection);

  p.ui.answers = {"Yes"};
  p.app.pixelForm.DitherChoice = rm::DitherMode::Stucki;
  EXPECT_TRUE(p.app.imageForm.PerformDitheringParametersbelow1Click());
  EXPECT_TRUE(p.app.session.Monochrome);
  const rm::TPixelForm& pf = p.app.pixelForm;
  ASSERT_TRUE(pf.FloatingSelection);
  Bitmap expected = picture;
  rm::Dither(expected, rm::ColorReduction::Monochrome, rm::DitherMode::Stucki);
  EXPECT_EQ(pf.SelectionBitmap, expected);
  EXPECT_EQ(p.app.usage.Get("idith"), 1);
}

TEST(ReductionPreview, DitheredPreviewKeepsBothPicturesInDocuments) {
  TestProgram p;
  const rmtest::TempDir tmp;
  const std::string& docs = tmp.path;
  p.app.globals.MyDocuments = docs;
  Bitmap preview(13, 5);  // odd width: rows of the file are padded
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 13; ++x) preview.SetPixel(x, y, rm::MakeColour(x * 19, y * 50, 90));
  const Bitmap original = preview;
  ASSERT_TRUE(p.app.exploForm2.ConvertToDithered(preview));
  Bitmap expected = original;
  rm::Dither(expected, rm::ColorReduction::Monochrome, p.app.pixelForm.DitherChoice);
  EXPECT_EQ(preview, expected);
  Bitmap read;
  std::string error;
  ASSERT_TRUE(p.codecs.Load(docs + "/original_image_x_x.bmp", read, error)) << error;
  EXPECT_EQ(read, original);
  ASSERT_TRUE(p.codecs.Load(docs + "/dithered_image_x_x.bmp", read, error)) << error;
  EXPECT_EQ(read, expected);

  // The import then reduces the picture the same way.
  Bitmap imported = original;
  p.app.exploForm2.DitherBitmap(imported);
  EXPECT_EQ(imported, expected);
}

}  // namespace
