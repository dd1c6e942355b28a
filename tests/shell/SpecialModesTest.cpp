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

const char* const kAnimation = "Animation creation mode is active ! \rQuit Animation or Cancel ";
const char* const kVectorProgramming = "Vector Programming mode is active ! \rQuit Vector Programming or Cancel ";
const char* const kTouch = "Touch panel script creation mode is active ! \rQuit script creation or Cancel ";
const char* const kFontScript = "Font Script creation mode is active ! \rQuit script creation or Cancel ";
const char* const kSegmented = "Segmented Font creation mode is active ! \rQuit script creation or Cancel ";
const char* const kEditable = "Editable Font creation mode is active ! \rQuit script creation or Cancel ";
const char* const kVectors = "Vectors Work Canvas mode is active ! \rQuit Vector Design Mode or Cancel ";

bool Logged(const TestProgram& p, const std::string& line) {
  const auto& log = p.app.logWindow.Lines.Lines();
  return std::find(log.begin(), log.end(), line) != log.end();
}

TEST(SpecialModes, CheckModeStopsEachCallerButTheModesOwn) {
  const struct {
    bool Globals::*mode;
    int caller;
    const char* text;  // nullptr: the caller passes
    std::vector<std::string> buttons;
  } cases[] = {
      // Animation stops only callers that name a mode.
      {&Globals::AnimationMode, 0, nullptr, {}},
      {&Globals::AnimationMode, 1, kAnimation, {"Quit", "Cancel"}},
      {&Globals::AnimationMode, 7, kAnimation, {"Quit", "Cancel"}},
      // Vector mode: every caller but 7 meets the first vector row; 7 meets the last one.
      {&Globals::VectorMode, 0, kVectorProgramming, {"Quit Script", "Cancel"}},
      {&Globals::VectorMode, 6, kVectorProgramming, {"Quit Script", "Cancel"}},
      {&Globals::VectorMode, 7, kVectors, {"Quit Vectors", "Cancel", "No Saves"}},
      {&Globals::TouchScriptMode, 1, nullptr, {}},
      {&Globals::TouchScriptMode, 0, kTouch, {"Quit Script", "Cancel"}},
      {&Globals::FontScriptMode, 2, nullptr, {}},
      {&Globals::FontScriptMode, 1, kFontScript, {"Quit Script", "Cancel", "No Saves"}},
      {&Globals::SegmentedFontMode, 4, nullptr, {}},
      {&Globals::SegmentedFontMode, 0, kSegmented, {"Quit Font", "Cancel"}},
      {&Globals::EditableFontMode, 5, nullptr, {}},
      {&Globals::EditableFontMode, 2, kEditable, {"Quit Font", "Cancel", "No Saves"}},
      // Modes outside the table never stop a caller.
      {&Globals::BatchEditMode, 0, nullptr, {}},
      {&Globals::HeaderEditMode, 0, nullptr, {}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.*c.mode = true;
    p.ui.answers = {"Cancel"};
    const bool stopped = p.app.exploForm.CheckMode(c.caller);
    const std::string name = "caller " + std::to_string(c.caller) + (c.text ? std::string(" ") + c.text : " passes");
    EXPECT_EQ(stopped, c.text != nullptr) << name;
    if (!c.text) {
      EXPECT_TRUE(p.ui.messages.empty()) << name;
      continue;
    }
    ASSERT_EQ(p.ui.messages.size(), 1u) << name;
    EXPECT_EQ(p.ui.messages[0].text, c.text) << name;
    EXPECT_EQ(p.ui.messages[0].buttons, c.buttons) << name;
    EXPECT_TRUE(p.app.globals.*c.mode) << "Cancel keeps the mode: " << name;
  }
}

TEST(SpecialModes, NoSavesLeavesWithoutTheSaveQuestion) {
  const struct {
    std::string answer;
    std::vector<std::string> then;  // answers to the questions that follow
    bool saved;
    std::size_t questions;
  } cases[] = {
      {"No Saves", {}, false, 1},
      {"Quit Script", {"Yes"}, true, 2},
      {"Quit Script", {"No"}, false, 2},
  };
  for (const auto& c : cases) {
    TestProgram p;
    int saves = 0;
    p.app.globals.FontScriptMode = true;
    p.app.mainForm.FontScript = {"/fonts/Big.FSC", true, [&] { return ++saves > 0; }};
    p.ui.answers = {c.answer};
    for (const auto& a : c.then) p.ui.answers.push_back(a);
    EXPECT_TRUE(p.app.exploForm.CheckMode(0)) << c.answer;
    EXPECT_FALSE(p.app.globals.FontScriptMode) << c.answer;
    EXPECT_EQ(saves, c.saved ? 1 : 0) << c.answer;
    ASSERT_EQ(p.ui.messages.size(), c.questions) << c.answer;
    if (c.questions == 2) {
      EXPECT_EQ(p.ui.messages[1].text, "/fonts/Big.FSC Save Font script to file ? \r \r");
      EXPECT_EQ(p.ui.messages[1].title, "Font Script not saved !");
    }
    // "No Saves" holds for that one leave only.
    EXPECT_FALSE(p.app.globals.NoSaveOnQuit) << c.answer;
  }
}

TEST(SpecialModes, AScriptThatCannotBeSavedKeepsItsMode) {
  // No editor has given the script a way to be saved: "Yes" must not lose it.
  TestProgram p;
  p.app.globals.FontScriptMode = true;
  p.app.mainForm.FontScript.Changed = true;
  p.ui.answers = {"Yes"};
  EXPECT_FALSE(p.app.mainForm.QuitFontscriptClick());
  EXPECT_TRUE(p.app.globals.FontScriptMode);
  p.ui.answers = {"Cancel"};
  EXPECT_FALSE(p.app.mainForm.QuitFontscriptClick());
  EXPECT_TRUE(p.app.globals.FontScriptMode);
  p.ui.answers = {"No"};
  EXPECT_TRUE(p.app.mainForm.QuitFontscriptClick());
  EXPECT_FALSE(p.app.globals.FontScriptMode);
}

TEST(SpecialModes, SegmentedFontCannotBeLeftSoTheRefusalRepeats) {
  TestProgram p;
  p.app.globals.SegmentedFontMode = true;
  p.ui.answers = {"Quit Font", "OK", "Quit Font", "OK"};
  EXPECT_TRUE(p.app.exploForm.CheckMode(0));
  EXPECT_TRUE(p.app.globals.SegmentedFontMode);
  EXPECT_EQ(p.ui.messages.back().text, "No special mode active");
  EXPECT_TRUE(p.app.exploForm.CheckMode(0));
  EXPECT_EQ(p.ui.messages[2].text, kSegmented);
}

TEST(SpecialModes, QuitModeButtonLeavesOneModeAtATimeInItsOrder) {
  TestProgram p;
  Globals& g = p.app.globals;
  bool Globals::*const order[] = {&Globals::BatchEditMode,    &Globals::FontScriptMode, &Globals::FieldsScriptMode,
                                  &Globals::TouchScriptMode,  &Globals::EditableFontMode, &Globals::HeaderEditMode,
                                  &Globals::AnimationMode,    &Globals::VectorMode};
  for (auto flag : order) g.*flag = true;
  // Editable font asks to save, animation asks to leave, vectors ask to save.
  p.ui.answers = {"No", "Yes", "No"};
  for (std::size_t i = 0; i < std::size(order); ++i) {
    p.app.logWindow.Lines.Clear();
    p.app.logWindow.LastLogged.clear();
    EXPECT_TRUE(p.app.exploForm.QuitModeButtonClick()) << i;
    ASSERT_FALSE(p.app.logWindow.Lines.Empty()) << i;
    EXPECT_EQ(p.app.logWindow.Lines[0], "Quit Special Mode Button");
    for (std::size_t j = 0; j < std::size(order); ++j) EXPECT_EQ(g.*order[j], j > i) << i << " " << j;
  }
  EXPECT_FALSE(p.app.exploForm.QuitModeButtonClick());
  EXPECT_EQ(p.ui.messages.back().text, "No special mode active");
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

TEST_F(BatchEditor, NewBatchNamesFollowTheRules) {
  Globals& g = p_.app.globals;
  std::ofstream(Path("NewTextPro[1].SPP")) << "x\n";
  std::ofstream(Path("NewTextPro[3].SPP")) << "x\n";
  p_.app.session.LastBitmapName = "logo.png";
  const struct {
    bool fromEdit;
    std::string activeBatch, expected;
  } cases[] = {
      {false, "< No batch file selected >", "NewTextPro[2].SPP"},
      {true, "< No batch file selected >", "logo.SPP"},
      {true, "", "logo.SPP"},
      {true, "Mine.SPP", "NewTextPro[2].SPP"},
  };
  for (const auto& c : cases) {
    g.ActiveBatch = c.activeBatch;
    p_.app.mainForm.CreatePostProClick(c.fromEdit);
    EXPECT_EQ(g.BatchFileName, c.expected) << c.fromEdit << " " << c.activeBatch;
    EXPECT_TRUE(g.BatchEditMode && g.SpecialModeActive && g.BatchChanged && !g.ModeMenuEnabled);
    EXPECT_EQ(g.EditorsPage, 4);
  }
}

TEST_F(BatchEditor, AnExistingBatchIsLoadedAndANewOneStartsEmpty) {
  p_.app.session.LastBitmapName = "logo.bmp";
  std::ofstream(Path("logo.SPP")) << "FIND x\r\nREPLACE y\n";
  p_.app.batchText.Add("left over");
  p_.app.mainForm.CreatePostProClick(true);
  EXPECT_EQ(p_.app.batchText.Lines(), (std::vector<std::string>{"FIND x", "REPLACE y"}));
  p_.app.mainForm.CreatePostProClick(false);
  EXPECT_TRUE(p_.app.batchText.Empty());
}

TEST_F(BatchEditor, LeavingAsksToSaveANewBatch) {
  const struct {
    std::string answer;
    bool written;
  } cases[] = {{"Yes", true}, {"No", false}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.BatchRole = folder_;
    p.app.mainForm.CreatePostProClick(false);
    const std::string path = p.app.mainForm.BatchFilePath();
    p.app.batchText.SetText("FIND a\nREPLACE b\n");
    p.ui.answers = {c.answer};
    EXPECT_TRUE(p.app.mainForm.QuitPostClick()) << c.answer;
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(p.ui.messages[0].text, " Save batch to file ? ");
    EXPECT_EQ(p.ui.messages[0].title, "Batch not saved !");
    EXPECT_EQ(fs::exists(path), c.written) << c.answer;
    EXPECT_EQ(Logged(p, "Save batch : " + path), c.written);
    EXPECT_EQ(Logged(p, "REPLACE b"), c.written) << "the saved batch is copied into the log";
    if (c.written) {
      EXPECT_EQ(rmtest::ReadFile(path), "FIND a\nREPLACE b\n");
    }
    EXPECT_FALSE(p.app.globals.BatchEditMode || p.app.globals.SpecialModeActive);
    EXPECT_EQ(p.app.globals.BatchEditorLabel, "View Mode");
    EXPECT_TRUE(p.app.globals.ModeMenuEnabled);
    fs::remove(path);
  }
}

TEST_F(BatchEditor, LeavingAnExistingBatchAsksToOverwriteAndNoStays) {
  const std::string path = Path("Mine.SPP");
  p_.app.globals.BatchEditMode = p_.app.globals.BatchChanged = true;
  p_.app.globals.BatchFileName = "Mine.SPP";
  std::ofstream(path) << "old\n";
  p_.app.batchText.SetText("new\n");

  p_.ui.answers = {"No"};
  EXPECT_FALSE(p_.app.mainForm.QuitPostClick());
  EXPECT_TRUE(p_.app.globals.BatchEditMode);
  EXPECT_EQ(p_.ui.messages.back().text, "Overwrite Processing batch to file ?\r" + path);
  EXPECT_EQ(rmtest::ReadFile(path), "old\n");

  // Held by another program: refused before the question.
  const int fd = ::open(path.c_str(), O_RDWR);
  ASSERT_EQ(::flock(fd, LOCK_EX), 0);
  EXPECT_FALSE(p_.app.mainForm.QuitPostClick());
  EXPECT_EQ(p_.ui.messages.back().text, "Access to this file denied ! Check for read only status");
  EXPECT_TRUE(p_.app.globals.BatchEditMode);
  ::close(fd);

  p_.ui.answers = {"Yes"};
  EXPECT_TRUE(p_.app.mainForm.QuitPostClick());
  EXPECT_EQ(rmtest::ReadFile(path), "new\n");
  EXPECT_TRUE(Logged(p_, "Overwrite batch : " + path));
  EXPECT_FALSE(p_.app.globals.BatchEditMode);

  // Unchanged since: left without a question.
  const auto asked = p_.ui.messages.size();
  p_.app.globals.BatchEditMode = true;
  EXPECT_TRUE(p_.app.mainForm.QuitPostClick());
  EXPECT_EQ(p_.ui.messages.size(), asked);
}

// ---- colour mode refusals and the floating selection ----

TEST(SpecialModes, ColourModeChangeRefusedWhileAModeRuns) {
  const struct {
    bool Globals::*mode;
    std::vector<std::string> answers;
    bool changed;
  } cases[] = {
      {&Globals::AnimationMode, {"OK"}, false},
      {&Globals::AnimationMode, {"Quit Mode", "Yes"}, true},
      {&Globals::AnimationMode, {"Quit Mode", "No"}, false},  // not left after all
      {&Globals::BatchEditMode, {"Quit Mode"}, true},
      {&Globals::FontScriptMode, {"OK"}, false},
      {&Globals::TouchScriptMode, {"Quit Mode"}, true},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.*c.mode = true;
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    EXPECT_EQ(p.app.mainForm.SetColourMode(55), c.changed) << c.answers.front();
    EXPECT_EQ(p.app.session.ModeNumber, c.changed ? 55 : 1);
    EXPECT_EQ(p.app.globals.*c.mode, !c.changed);
    EXPECT_EQ(p.ui.messages[0].buttons, (std::vector<std::string>{"OK", "Quit Mode"}));
  }
}

rm::Bitmap Square(int size, rm::Colour c) { return rm::Bitmap(size, size, c); }

TEST(SpecialModes, ColourModeChangeWithAFloatingSelectionIsAlwaysAbandoned) {
  for (const std::string answer : {"No Action", "Discard", "Cancel"}) {
    TestProgram p;
    p.app.pixelForm.FloatSelection(Square(2, rm::kBlack), 1, 1);
    p.ui.answers = {answer};
    EXPECT_FALSE(p.app.mainForm.SetColourMode(55)) << answer;
    EXPECT_EQ(p.app.session.ModeNumber, 1);
    EXPECT_EQ(p.app.pixelForm.FloatingSelection, answer != "Discard") << answer;
    EXPECT_FALSE(p.app.pixelForm.HasArtwork()) << "nothing is pasted: " << answer;
  }
}

TEST(SpecialModes, IsSelectionActivePastesDropsOrStops) {
  const struct {
    std::string answer;
    bool stop, pasted;
  } cases[] = {{"Paste now", false, true}, {"Discard", false, false}, {"Cancel", true, false}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.pixelForm.FloatSelection(Square(3, rm::kBlack), 126, 62);
    p.ui.answers = {c.answer};
    EXPECT_EQ(p.app.mainForm.IsSelectionActive(), c.stop) << c.answer;
    EXPECT_EQ(p.app.pixelForm.FloatingSelection, c.stop) << c.answer;
    EXPECT_EQ(p.app.pixelForm.WorkBitmap.GetPixel(127, 63), c.pasted ? rm::kBlack : rm::kWhite) << c.answer;
    EXPECT_EQ(p.app.globals.ArtworkSaved, !c.pasted) << c.answer;
  }
}

TEST(SelectionLayer, PasteClipsAtEveryEdge) {
  const struct {
    int left, top;
    int blacks;  // pixels of the 4x4 layer that land on the 6x5 canvas
  } cases[] = {{1, 1, 16}, {-2, 0, 8}, {0, -3, 4}, {4, 3, 4}, {-4, 0, 0}, {6, 0, 0}, {-1, -1, 9}};
  for (const auto& c : cases) {
    rm::TPixelForm canvas;
    canvas.WorkBitmap = rm::Bitmap(6, 5);
    canvas.FloatSelection(Square(4, rm::kBlack), c.left, c.top);
    canvas.PasteSelection();
    int blacks = 0;
    for (int y = 0; y < 5; ++y)
      for (int x = 0; x < 6; ++x) {
        const bool inside = x >= c.left && x < c.left + 4 && y >= c.top && y < c.top + 4;
        EXPECT_EQ(canvas.WorkBitmap.GetPixel(x, y), inside ? rm::kBlack : rm::kWhite);
        blacks += canvas.WorkBitmap.GetPixel(x, y) == rm::kBlack;
      }
    EXPECT_EQ(blacks, c.blacks) << c.left << "," << c.top;
    EXPECT_FALSE(canvas.FloatingSelection);
  }
}

}  // namespace
