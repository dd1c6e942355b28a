#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Globals;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

const std::string kAnimation = "Animation creation mode is active ! \rQuit Animation or Cancel ";
const std::string kVectorProgramming = "Vector Programming mode is active ! \rQuit Vector Programming or Cancel ";
const std::string kFontScript = "Font Script creation mode is active ! \rQuit script creation or Cancel ";
const std::string kSegmented = "Segmented Font creation mode is active ! \rQuit script creation or Cancel ";

bool Logged(const TestProgram& p, const std::string& line) {
  const auto& log = p.app.logWindow.Lines.Lines();
  return std::find(log.begin(), log.end(), line) != log.end();
}

TEST(SpecialModes, CheckModeStopsEachCallerButTheModesOwn) {
  const struct {
    bool Globals::*mode;
    int caller;
    std::string text;  // empty: the caller passes
    Lines buttons;
  } cases[] = {
      // Animation stops only callers that name a mode.
      {&Globals::AnimationMode, 0, "", {}},
      {&Globals::AnimationMode, 7, kAnimation, {"Quit", "Cancel"}},
      // Vector mode: every caller but 7 meets the first vector row; 7 meets the last one.
      {&Globals::VectorMode, 6, kVectorProgramming, {"Quit Script", "Cancel"}},
      {&Globals::VectorMode,
       7,
       "Vectors Work Canvas mode is active ! \rQuit Vector Design Mode or Cancel ",
       {"Quit Vectors", "Cancel", "No Saves"}},
      {&Globals::TouchScriptMode, 1, "", {}},
      {&Globals::TouchScriptMode,
       0,
       "Touch panel script creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Script", "Cancel"}},
      {&Globals::FontScriptMode, 2, "", {}},
      {&Globals::FontScriptMode, 1, kFontScript, {"Quit Script", "Cancel", "No Saves"}},
      {&Globals::SegmentedFontMode, 4, "", {}},
      {&Globals::EditableFontMode, 5, "", {}},
      {&Globals::EditableFontMode,
       2,
       "Editable Font creation mode is active ! \rQuit script creation or Cancel ",
       {"Quit Font", "Cancel", "No Saves"}},
      // Modes outside the table never stop a caller.
      {&Globals::BatchEditMode, 0, "", {}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.*c.mode = true;
    p.ui.answers = {"Cancel"};
    const std::string name = "caller " + std::to_string(c.caller) + " " + c.text;
    EXPECT_EQ(p.app.exploForm.CheckMode(c.caller), !c.text.empty()) << name;
    EXPECT_EQ(ShownMessages(p.ui), c.text.empty() ? Lines{} : Lines{"Warning: " + c.text}) << name;
    if (!c.text.empty() && !p.ui.messages.empty()) {
      EXPECT_EQ(p.ui.messages[0].buttons, c.buttons) << name;
    }
    EXPECT_TRUE(p.app.globals.*c.mode) << "Cancel keeps the mode: " << name;
  }
}

TEST(SpecialModes, LeavingAScriptOffersToSaveItUnlessNoSaves) {
  const struct {
    Lines answers;
    bool saver;  // an editor has given the script a way to be saved
    int saves;
    bool left;
  } cases[] = {
      {{"No Saves"}, true, 0, true},
      {{"Quit Script", "Yes"}, true, 1, true},
      {{"Quit Script", "No"}, true, 0, true},
      {{"Quit Script", "Cancel"}, true, 0, false},
      {{"Quit Script", "Yes"}, false, 0, false},  // "Yes" must not lose a script that cannot be saved
  };
  for (const auto& c : cases) {
    TestProgram p;
    int saves = 0;
    p.app.globals.FontScriptMode = true;
    p.app.mainForm.FontScript = {"/fonts/Big.FSC", true, [&] { return ++saves > 0; }};
    if (!c.saver) p.app.mainForm.FontScript.Save = nullptr;
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    const std::string name = c.answers.back() + (c.saver ? "" : " without a saver");
    EXPECT_TRUE(p.app.exploForm.CheckMode(0)) << name;
    EXPECT_EQ(p.app.globals.FontScriptMode, !c.left) << name;
    EXPECT_EQ(saves, c.saves) << name;
    Lines said{"Warning: " + kFontScript};
    const std::string saveQuestion = "Font Script not saved !: /fonts/Big.FSC Save Font script to file ? \r \r";
    if (c.answers.size() > 1) said.push_back(saveQuestion);
    EXPECT_EQ(ShownMessages(p.ui), said) << name;
  }
}

TEST(SpecialModes, SegmentedFontCannotBeLeftSoTheRefusalRepeats) {
  TestProgram p;
  p.app.globals.SegmentedFontMode = true;
  p.ui.answers = {"Quit Font", "OK", "Quit Font", "OK"};
  EXPECT_TRUE(p.app.exploForm.CheckMode(0));
  EXPECT_TRUE(p.app.exploForm.CheckMode(0));
  EXPECT_TRUE(p.app.globals.SegmentedFontMode);
  EXPECT_EQ(ShownMessages(p.ui), (Lines{"Warning: " + kSegmented, "Information: No special mode active",
                                        "Warning: " + kSegmented, "Information: No special mode active"}));
}

TEST(SpecialModes, QuitModeButtonLeavesOneModeAtATimeInItsOrder) {
  TestProgram p;
  Globals& g = p.app.globals;
  bool Globals::*const order[] = {&Globals::BatchEditMode,   &Globals::FontScriptMode,   &Globals::FieldsScriptMode,
                                  &Globals::TouchScriptMode, &Globals::EditableFontMode, &Globals::HeaderEditMode,
                                  &Globals::AnimationMode,   &Globals::VectorMode};
  for (auto flag : order) g.*flag = true;
  // Editable font asks to save, animation asks to leave, vectors ask to save.
  p.ui.answers = {"No", "Yes", "No"};
  for (std::size_t i = 0; i < std::size(order); ++i) {
    EXPECT_TRUE(p.app.exploForm.QuitModeButtonClick()) << i;
    for (std::size_t j = 0; j < std::size(order); ++j) EXPECT_EQ(g.*order[j], j > i) << i << " " << j;
  }
  EXPECT_FALSE(p.app.exploForm.QuitModeButtonClick());
}

TEST(SpecialModes, LeadTheEyeOnlyWhileTheExitButtonShows) {
  TestProgram p;
  int led = 0;
  p.app.exploForm.LeadTheEye = [&] { ++led; };
  p.app.exploForm.CheckMode(0);
  EXPECT_EQ(led, 0);
  p.app.globals.TouchScriptMode = true;
  p.app.mainForm.DisableModeChange();
  p.ui.answers = {"Cancel"};
  p.app.exploForm.CheckMode(0);
  EXPECT_EQ(led, 1);
}

// ---- the batch editor ----

class BatchEditor : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = rmtest::MakeTempDir();
    p_.app.globals.BatchRole = folder_;
  }
  void TearDown() override { fs::remove_all(folder_); }
  std::string Path(const std::string& name) const { return folder_ + "/" + name; }
  std::string folder_;
  TestProgram p_;
};

TEST_F(BatchEditor, NewBatchNamesFollowTheRulesAndAnExistingBatchIsLoaded) {
  Globals& g = p_.app.globals;
  std::ofstream(Path("NewTextPro[1].SPP")) << "x\n";
  std::ofstream(Path("NewTextPro[3].SPP")) << "x\n";
  std::ofstream(Path("logo.SPP")) << "FIND x\r\nREPLACE y\n";
  p_.app.session.LastBitmapName = "logo.bmp";
  const struct {
    bool fromEdit;
    std::string activeBatch, expected;
    Lines text;
  } cases[] = {
      {false, "< No batch file selected >", "NewTextPro[2].SPP", {}},
      {true, "< No batch file selected >", "logo.SPP", {"FIND x", "REPLACE y"}},
      {true, "", "logo.SPP", {"FIND x", "REPLACE y"}},
      {true, "Mine.SPP", "NewTextPro[2].SPP", {}},
  };
  for (const auto& c : cases) {
    g.ActiveBatch = c.activeBatch;
    p_.app.batchText.SetText("left over\n");
    p_.app.mainForm.CreatePostProClick(c.fromEdit);
    EXPECT_EQ(g.BatchFileName, c.expected) << c.fromEdit << " " << c.activeBatch;
    EXPECT_EQ(p_.app.batchText.Lines(), c.text) << c.fromEdit << " " << c.activeBatch;
    EXPECT_TRUE(g.BatchEditMode && !g.ModeMenuEnabled);
  }
}

TEST_F(BatchEditor, LeavingAsksToSaveANewBatch) {
  for (const bool yes : {true, false}) {
    TestProgram p;
    p.app.globals.BatchRole = folder_;
    p.app.mainForm.CreatePostProClick(false);
    const std::string path = p.app.mainForm.BatchFilePath();
    p.app.batchText.SetText("FIND a\nREPLACE b\n");
    p.ui.answers = {yes ? "Yes" : "No"};
    EXPECT_TRUE(p.app.mainForm.QuitPostClick()) << yes;
    EXPECT_EQ(fs::exists(path) ? rmtest::ReadFile(path) : "none", yes ? "FIND a\nREPLACE b\n" : "none");
    EXPECT_EQ(Logged(p, "REPLACE b"), yes) << "the saved batch is copied into the log";
    EXPECT_FALSE(p.app.globals.BatchEditMode);
    EXPECT_TRUE(p.app.globals.ModeMenuEnabled);
    fs::remove(path);
  }
}

TEST_F(BatchEditor, LeavingAnExistingBatchAsksToOverwriteAndNoStays) {
  const std::string path = Path("Mine.SPP");
  Globals& g = p_.app.globals;
  g.BatchEditMode = g.BatchChanged = true;
  g.BatchFileName = "Mine.SPP";
  std::ofstream(path) << "old\n";
  p_.app.batchText.SetText("new\n");

  p_.ui.answers = {"No"};
  EXPECT_FALSE(p_.app.mainForm.QuitPostClick());
  EXPECT_TRUE(g.BatchEditMode);
  EXPECT_EQ(rmtest::ReadFile(path), "old\n");
  // Held by another program: refused before the question.
  const int fd = ::open(path.c_str(), O_RDWR);
  ASSERT_EQ(::flock(fd, LOCK_EX), 0);
  EXPECT_FALSE(p_.app.mainForm.QuitPostClick());
  ::close(fd);
  EXPECT_TRUE(g.BatchEditMode);
  EXPECT_EQ(ShownMessages(p_.ui), (Lines{"Confirm: Overwrite Processing batch to file ?\r" + path,
                                         "Error: Access to this file denied ! Check for read only status"}));

  p_.ui.answers = {"Yes"};
  EXPECT_TRUE(p_.app.mainForm.QuitPostClick());
  EXPECT_EQ(rmtest::ReadFile(path), "new\n");
  EXPECT_FALSE(g.BatchEditMode);
  // Unchanged since: left without a question.
  const auto asked = p_.ui.messages.size();
  g.BatchEditMode = true;
  EXPECT_TRUE(p_.app.mainForm.QuitPostClick());
  EXPECT_EQ(p_.ui.messages.size(), asked);
}

// ---- colour mode refusals and the floating selection ----

TEST(SpecialModes, ColourModeChangeRefusedWhileAModeRuns) {
  const struct {
    bool Globals::*mode;
    Lines answers;
    bool changed;
  } cases[] = {
      {&Globals::AnimationMode, {"OK"}, false},
      {&Globals::AnimationMode, {"Quit Mode", "Yes"}, true},
      {&Globals::AnimationMode, {"Quit Mode", "No"}, false},  // not left after all
      {&Globals::TouchScriptMode, {"Quit Mode"}, true},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.*c.mode = true;
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    EXPECT_EQ(p.app.mainForm.SetColourMode(55), c.changed) << c.answers.front();
    EXPECT_EQ(p.app.session.ModeNumber, c.changed ? 55 : 1);
    EXPECT_EQ(p.app.globals.*c.mode, !c.changed);
  }
}

TEST(SpecialModes, AFloatingSelectionIsPastedDroppedOrStopsTheCommand) {
  // A colour mode change always abandons it: nothing is pasted, and only Discard drops it.
  for (const std::string answer : {"No Action", "Discard", "Cancel"}) {
    TestProgram p;
    p.app.pixelForm.FloatSelection(rm::Bitmap(2, 2, rm::kBlack), 1, 1);
    p.ui.answers = {answer};
    EXPECT_FALSE(p.app.mainForm.SetColourMode(55)) << answer;
    EXPECT_EQ(p.app.session.ModeNumber, 1);
    EXPECT_EQ(p.app.pixelForm.FloatingSelection, answer != "Discard") << answer;
    EXPECT_FALSE(p.app.pixelForm.HasArtwork()) << answer;
  }
  const struct {
    std::string answer;
    bool stop, pasted;
  } cases[] = {{"Paste now", false, true}, {"Discard", false, false}, {"Cancel", true, false}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.pixelForm.FloatSelection(rm::Bitmap(3, 3, rm::kBlack), 126, 62);
    p.ui.answers = {c.answer};
    EXPECT_EQ(p.app.mainForm.IsSelectionActive(), c.stop) << c.answer;
    EXPECT_EQ(p.app.pixelForm.FloatingSelection, c.stop) << c.answer;
    EXPECT_EQ(p.app.pixelForm.WorkBitmap.GetPixel(127, 63), c.pasted ? rm::kBlack : rm::kWhite) << c.answer;
    EXPECT_EQ(p.app.globals.ArtworkSaved, !c.pasted) << c.answer;
  }
}

TEST(SelectionLayer, PasteClipsAtEveryEdge) {
  // A 4x4 layer pasted on a 6x5 canvas at each of these places.
  const std::pair<int, int> places[] = {{-2, 0}, {0, -3}, {4, 3}, {-4, 0}, {-1, -1}};
  for (const auto& [left, top] : places) {
    TestProgram p;
    rm::TPixelForm& canvas = p.app.pixelForm;
    canvas.WorkBitmap = rm::Bitmap(6, 5);
    canvas.FloatSelection(rm::Bitmap(4, 4, rm::kBlack), left, top);
    canvas.PasteSelection();
    for (int y = 0; y < 5; ++y)
      for (int x = 0; x < 6; ++x) {
        const bool inside = x >= left && x < left + 4 && y >= top && y < top + 4;
        EXPECT_EQ(canvas.WorkBitmap.GetPixel(x, y), inside ? rm::kBlack : rm::kWhite) << left << "," << top;
      }
    EXPECT_FALSE(canvas.FloatingSelection);
  }
}

}  // namespace
