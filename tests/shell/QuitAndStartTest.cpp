#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using Outcome = rm::TMainForm::QuitOutcome;
using rm::StartOutcome;
using rm::StartWindow;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

// Each test has a home of its own; programs started in it share one single-instance lock.
class QuitAndStart : public rmtest::HomeTest {
 protected:
  static StartOutcome Start(TestProgram& p, bool singleInstance = true) {
    rm::StartOptions o;
    o.singleInstance = singleInstance;
    return rm::StartProgram(p.app, o);
  }
  // The step lines from `first` on; the questions asked on the way (logged as "Message :") are
  // left out.
  static Lines LogFrom(const TestProgram& p, const std::string& first) {
    const auto& log = p.app.logWindow.Lines.Lines();
    Lines steps;
    for (auto it = std::find(log.begin(), log.end(), first); it != log.end(); ++it)
      if (it->rfind("Message :", 0) != 0) steps.push_back(*it);
    return steps;
  }
};

TEST_F(QuitAndStart, StartReadsTheSettingsAndMakesTheWindowsInOrder) {
  for (const bool firstParameter : {false, true}) {
    TestProgram p;
    rm::StartOptions o;
    o.firstParameterGiven = firstParameter;
    std::vector<std::pair<StartWindow, std::string>> made;
    o.createWindow = [&](StartWindow w) { made.emplace_back(w, p.app.globals.LastAction); };
    ASSERT_EQ(rm::StartProgram(p.app, o), StartOutcome::Started);
    const rm::Globals& g = p.app.globals;
    EXPECT_FALSE(g.ActiveProject.empty());
    EXPECT_TRUE(fs::exists(rm::InstanceLockPath(g.InitsFolder)));
    EXPECT_TRUE(g.StartComplete);
    EXPECT_EQ(p.app.pixelForm.MatrixWidth(), g.MatrixWidth);
    // Any first parameter: no splash, no welcome, a hidden log.
    EXPECT_EQ((std::vector<bool>{g.ShowSplash, g.ShowWelcome, g.LogWindowVisible}),
              std::vector<bool>(3, !firstParameter));

    std::vector<std::pair<StartWindow, std::string>> expected = {
        {StartWindow::ExportToData, "Create Export To Data Form"},
        {StartWindow::Grids, "Create Grids Form"},
        {StartWindow::Image, "Create Image Form"},
        {StartWindow::Adjustments, "Create Adjustments Form"},
        {StartWindow::Pixel, "Create Pixel Form"},
        {StartWindow::Welcome, "Create Welcome Form"},
        {StartWindow::LogWin, "Create LogWin Form"},
        {StartWindow::Exploform2, "Create Exploform2 Form"},
        {StartWindow::Exploform, "Create Exploform Form"},
        {StartWindow::HideSplash, "Create SplashScreen"},
        {StartWindow::AboutBox, "Create About Box"},
        {StartWindow::Presentation, "Create Presentation Form"},
    };
    if (firstParameter) expected.erase(expected.begin() + 5);
    EXPECT_EQ(made, expected) << firstParameter;
  }
}

TEST_F(QuitAndStart, ASecondInstanceEndsBeforeReadingSettingsAndLeavesTheProjectAlone) {
  TestProgram first;
  ASSERT_EQ(Start(first), StartOutcome::Started);
  ASSERT_TRUE(first.app.mainForm.SaveConfigurationX());
  const std::string project = first.app.globals.ActiveProject;
  const auto stamp = fs::last_write_time(project);

  TestProgram second;
  second.app.session.OutputFileName = "Mine.h";
  EXPECT_EQ(Start(second), StartOutcome::AnotherInstance);
  EXPECT_EQ(second.ui.messages.size(), 1u);
  EXPECT_TRUE(second.app.globals.ActiveProject.empty()) << "no folders looked up";
  EXPECT_EQ(second.app.session.OutputFileName, "Mine.h") << "no settings read";
  // Closing it saves nothing either.
  EXPECT_EQ(second.app.mainForm.FormCloseQuery(), Outcome::Quit);
  EXPECT_EQ(fs::last_write_time(project), stamp);
  // The command line may run beside the desktop program.
  TestProgram tool;
  EXPECT_EQ(Start(tool, false), StartOutcome::Started);

  // Once the first has quit, the next one starts.
  EXPECT_EQ(first.app.mainForm.FormCloseQuery(), Outcome::Quit);
  TestProgram third;
  EXPECT_EQ(Start(third), StartOutcome::Started);
}

TEST_F(QuitAndStart, AFloatingSelectionIsDroppedAtTheFirstQuitAndTheSecondQuits) {
  TestProgram p;
  ASSERT_EQ(Start(p), StartOutcome::Started);
  p.app.pixelForm.FloatSelection(rm::Bitmap(4, 4, rm::kBlack), 2, 2);
  p.ui.answers = {"Cancel", "Yes"};
  EXPECT_EQ(p.app.mainForm.FormCloseQuery(), Outcome::Refused);
  EXPECT_TRUE(p.app.pixelForm.FloatingSelection);
  p.app.logWindow.Lines.Clear();
  EXPECT_EQ(p.app.mainForm.FormCloseQuery(), Outcome::StaysOpen);
  EXPECT_EQ(p.ui.messages.size(), 2u);
  EXPECT_FALSE(p.app.pixelForm.FloatingSelection);
  EXPECT_FALSE(p.app.pixelForm.HasArtwork());
  EXPECT_EQ(LogFrom(p, "Quit Rastermill Main Menu Item"),
            (Lines{"Quit Rastermill Main Menu Item", "Quit Rastermill Main Menu Item 2"}));
  EXPECT_FALSE(fs::exists(p.app.globals.ActiveProject)) << "nothing saved yet";

  EXPECT_EQ(p.app.mainForm.FormCloseQuery(), Outcome::Quit);
  EXPECT_TRUE(p.app.globals.QuitInProgress);
  EXPECT_EQ(rmtest::ReadFile(p.app.globals.InitsFolder + "Rastermill.ini"), p.app.globals.ActiveProject + "\n");
  // The log and the end of the session are on disk.
  EXPECT_NE(rmtest::ReadFile(p.app.globals.InitsFolder + "L.LOG").find("Do not save and Quit Rastermill\n"),
            std::string::npos);
  rm::UsageCounters usage;
  usage.Load(rm::UsageCounters::DefaultPath());
  EXPECT_EQ(usage.Get("nq"), 1);
  // The windows closing now ask nothing more, not even about unsaved artwork.
  const auto asked = p.ui.messages.size();
  p.app.globals.ArtworkSaved = false;
  EXPECT_EQ(p.app.mainForm.FormCloseQuery(), Outcome::Quit);
  EXPECT_EQ(p.ui.messages.size(), asked);
  p.app.mainForm.FormClose();
  EXPECT_FALSE(p.app.globals.QuitInProgress);
}

TEST_F(QuitAndStart, UnsavedArtworkQuestion) {
  const struct {
    std::string answer;
    bool saverWorks;
    Outcome outcome;
    Lines log;  // from "Quit Rastermill"
  } cases[] = {
      {"Cancel", true, Outcome::Refused, {"Quit Rastermill", "Cancel Quit Rastermill"}},
      {"Quit", true, Outcome::Quit, {"Quit Rastermill", "Do not save and Quit Rastermill"}},
      {"Save+Quit",
       true,
       Outcome::Quit,
       {"Quit Rastermill", "Save & Quit Rastermill", "Artwork Saved", "Do not save and Quit Rastermill"}},
      // A save that fails keeps the program open rather than lose the artwork.
      {"Save+Quit", false, Outcome::Refused, {"Quit Rastermill", "Save & Quit Rastermill", "Artwork not saved"}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    ASSERT_EQ(Start(p), StartOutcome::Started);
    const std::string picture = home_ + "/art.png";
    p.app.mainForm.ArtworkSaver = [&] { return c.saverWorks && rm::WriteFileAtomically(picture, "picture"); };
    p.app.globals.ArtworkSaved = false;
    fs::remove(p.app.globals.ActiveProject);  // an earlier case's quit wrote it
    p.ui.answers = {c.answer};
    EXPECT_EQ(p.app.mainForm.FormCloseQuery(), c.outcome) << c.answer;
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(LogFrom(p, "Quit Rastermill"), c.log) << c.answer;
    EXPECT_EQ(fs::exists(picture), c.answer == "Save+Quit" && c.saverWorks) << c.answer;
    EXPECT_EQ(fs::exists(p.app.globals.ActiveProject), c.outcome == Outcome::Quit) << c.answer;
    fs::remove(picture);
  }
}

TEST_F(QuitAndStart, AModeAtQuitIsOfferedForLeavingFirst) {
  const std::string fontScript = "Font Script creation mode is active ! \rQuit script creation or Cancel ";
  const struct {
    bool rm::Globals::*mode;
    Lines answers;
    Outcome outcome;
    std::string firstQuestion;
  } cases[] = {
      {&rm::Globals::FontScriptMode, {"Cancel", "Cancel"}, Outcome::Refused, fontScript},
      {&rm::Globals::FontScriptMode, {"Quit Script", "Yes"}, Outcome::Quit, fontScript},
      // A plain quit is not stopped by an animation; the exit button still leaves it.
      {&rm::Globals::AnimationMode, {"Yes"}, Outcome::Quit, "Are you sure to want to leave the animation mode  !"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    ASSERT_EQ(Start(p), StartOutcome::Started);
    p.app.globals.*c.mode = true;
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    EXPECT_EQ(p.app.mainForm.FormCloseQuery(), c.outcome) << c.firstQuestion;
    ASSERT_FALSE(p.ui.messages.empty()) << c.firstQuestion;
    EXPECT_EQ(p.ui.messages[0].text, c.firstQuestion);
    EXPECT_EQ(p.app.globals.*c.mode, c.outcome == Outcome::Refused) << c.firstQuestion;
  }
}

TEST_F(QuitAndStart, ClosedBeforeTheExplorerExistsQuitsWithoutSaving) {
  TestProgram p;
  p.app.mainForm.LoadFolders();
  p.app.globals.ArtworkSaved = false;
  EXPECT_EQ(p.app.mainForm.FormCloseQuery(), Outcome::Quit);
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_FALSE(fs::exists(p.app.globals.InitsFolder + "default.LCD"));
}

}  // namespace
