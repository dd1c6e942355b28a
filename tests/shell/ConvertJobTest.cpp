// The library's Convert, as the desktop's Convert action and the command line call it: the
// request's words reach the same settings as the panel's buttons (the golden files of
// GoldenDataTest, made through the buttons, are the reference), and a refusal is an outcome.
#include <gtest/gtest.h>

#include <functional>

#include "shell/ConvertJob.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::ConvertRequest;
using rmtest::TestProgram;

// The black and white pattern of GoldenDataTest's monochrome cases, converted through `request`.
rm::JobOutcome ConvertCanvas(TestProgram& p, int w, int h, const std::function<void(ConvertRequest&)>& options) {
  p.Setup(1, rm::Bitmap(1, 1));
  p.app.pixelForm.SetCanvas(rmtest::PatternPicture(w, h, {rm::kWhite, rm::kBlack}));
  p.app.globals.EditorUnsaved = false;
  ConvertRequest r;
  r.currentCanvas = true;
  r.target = rm::ConvertTarget::Editors;
  options(r);
  return rm::Convert(p.app, r);
}

TEST(ConvertJob, RequestWordsGiveTheGoldenTables) {
  const std::tuple<const char*, int, int, std::function<void(ConvertRequest&)>> cases[] = {
      {"mono-down.txt", 16, 16, [](ConvertRequest& r) { r.direction = "td"; }},
      {"mono-down-all.txt", 16, 16, [](ConvertRequest& r) { r.direction = "tda"; }},
      {"mono-up.txt", 16, 16, [](ConvertRequest& r) { r.direction = "tu"; }},
      {"mono-up-all.txt", 16, 16, [](ConvertRequest& r) { r.direction = "tua"; }},
      {"mono-right.txt", 16, 16, [](ConvertRequest& r) { r.direction = "tra"; }},
      {"mono-left.txt", 16, 16, [](ConvertRequest& r) { r.direction = "tla"; }},
      {"mono-left-all.txt", 16, 16, [](ConvertRequest& r) { r.direction = "tl"; }},
      {"mono-right-all-bl.txt", 16, 16, [](ConvertRequest& r) { r.origin = "BL"; }},
      {"mono-down-tr.txt", 16, 16, [](ConvertRequest& r) { r.direction = "td", r.origin = "TR"; }},
      {"mono-down-msb-last.txt", 16, 16, [](ConvertRequest& r) { r.direction = "td", r.msbLast = true; }},
      {"syntax-per-line-5.txt", 16, 16, [](ConvertRequest& r) { r.perLine = 5; }},
      {"syntax-negative.txt", 32, 4, [](ConvertRequest& r) { r.settings = {"Neg=1"}; }},
      {"interleaved.txt", 16, 8, [](ConvertRequest& r) { r.interleave = true; }},
      {"word16-decimal.txt", 64, 2,
       [](ConvertRequest& r) {
         r.width = 16, r.settings = {"FXHB=+D+", "VALpref="};
       }},
  };
  for (const auto& [file, w, h, options] : cases) {
    SCOPED_TRACE(file);
    TestProgram p;
    const rm::JobOutcome outcome = ConvertCanvas(p, w, h, options);
    EXPECT_TRUE(outcome.Done()) << outcome.error;
    EXPECT_EQ(outcome.output, p.Text());
    EXPECT_EQ(rmtest::CompareGolden(std::string("data/") + file, p.TableText()), "");
  }
}

TEST(ConvertJob, RefusalsAreOutcomes) {
  const std::tuple<std::function<void(ConvertRequest&)>, int, const char*> cases[] = {
      {[](ConvertRequest& r) { r.area = "40,0,8,8"; }, 1, "--area 40,0,8,8 lies outside the 16x16 canvas"},
      {[](ConvertRequest& r) { r.origin = "BL", r.direction = "td"; }, 2, "the origin BL does not fit the direction"},
      {[](ConvertRequest& r) { r.outputKind = "bin", r.width = 16; }, 2,
       "--width applies to text output only, not to --output bin"},
      {[](ConvertRequest& r) { r.settings = {"Neg"}; }, 2, "--set takes KEY=VALUE, not \"Neg\""},
      {[](ConvertRequest& r) { r.controller = "hd44780"; }, 2, "unknown controller: hd44780"},
      {[](ConvertRequest& r) { r.hexOffset = "0x"; }, 2,
       "--hex-offset takes 1 to 8 hex digits (0x may lead), not \"0x\""},
  };
  for (const auto& [options, status, why] : cases) {
    TestProgram p;
    const rm::JobOutcome outcome = ConvertCanvas(p, 16, 16, options);
    EXPECT_EQ(std::make_pair(outcome.status, outcome.error), std::make_pair(status, std::string(why)));
    EXPECT_TRUE(p.app.mainText.Empty());
  }
  // The area is the one exported once the user says so.
  TestProgram p;
  p.ui.answers = {"Yes"};
  const rm::JobOutcome done = ConvertCanvas(p, 16, 16, [](ConvertRequest& r) { r.area = "0,4,8,2"; });
  ASSERT_TRUE(done.Done()) << done.error;
  EXPECT_EQ(std::make_pair(p.app.session.EncodeWidth, p.app.session.EncodeHeight), std::make_pair(8, 2));
  TestProgram words;
  ASSERT_TRUE(ConvertCanvas(words, 32, 1, [](ConvertRequest& r) { r.width = 32, r.autoFrame = true; }).Done());
  EXPECT_EQ(std::make_pair(words.app.session.Output, words.app.session.AutoFraming),
            std::make_pair(rm::OutputKind::Bits32, true));
  // Each half is 8 of the 16 rows, and they differ.
  TestProgram upper, lower;
  ASSERT_TRUE(ConvertCanvas(upper, 16, 16, [](ConvertRequest& r) { r.half = "upper"; }).Done());
  ASSERT_TRUE(ConvertCanvas(lower, 16, 16, [](ConvertRequest& r) { r.half = "lower"; }).Done());
  EXPECT_EQ(std::make_pair(upper.DataLines().size(), lower.DataLines().size()), std::make_pair(1ul, 1ul));
  EXPECT_NE(upper.DataLines(), lower.DataLines());
}

// A batch starts each run from the settings alone: the choices made for the last table stay, what
// that run left behind (its area, the canvas it read) does not.
TEST(ConvertJob, ARunFromSettingsKeepsTheChoicesAndNotTheLastRun) {
  const auto pattern = rmtest::PatternPicture(16, 16, {rm::kWhite, rm::kBlack});
  TestProgram fresh;
  ASSERT_TRUE(ConvertCanvas(fresh, 16, 16, [](ConvertRequest& r) { r.direction = "td", r.perLine = 5; }).Done());
  TestProgram p;
  p.ui.answers = {"Yes"};
  ASSERT_TRUE(ConvertCanvas(p, 16, 16, [](ConvertRequest& r) {
                r.direction = "td", r.perLine = 5, r.area = "0,8,8,8";
              }).Done());
  ASSERT_NE(p.TableText(), fresh.TableText());
  p.app.session = rm::ConversionSession(p.app.session.Settings());
  p.app.globals.ExportEntry = 0;
  p.app.pixelForm.SetCanvas(pattern);
  ConvertRequest again;
  again.currentCanvas = true;
  again.target = rm::ConvertTarget::Editors;
  p.app.globals.EditorUnsaved = false;
  ASSERT_TRUE(rm::Convert(p.app, again).Done());
  EXPECT_EQ(p.TableText(), fresh.TableText());
}

}  // namespace
