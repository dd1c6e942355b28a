#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::TestProgram;

std::vector<std::string> LogLines(const rm::Application& app) { return app.logWindow.Lines.Lines(); }

// ---- status and log -------------------------------------------------------------------------

TEST(StatusAndLog, RepeatsReachTheLogOnceButTheStatusEveryTime) {
  // A step is either a text for StatusBarAndLog or, with `direct`, a line added to the log by
  // another route (a message, a fault), which the repeat rule does not remember.
  struct Step {
    std::string text;
    bool direct = false;
  };
  const struct {
    const char* name;
    std::vector<Step> steps;
    std::vector<std::string> log;
  } cases[] = {
      {"same twice", {{"A"}, {"A"}}, {"A"}},
      {"something between", {{"A"}, {"B"}, {"A"}}, {"A", "B", "A"}},
      {"empty between, still the last line", {{"A"}, {""}, {"A"}}, {"A"}},
      {"other line between, still the last logged", {{"A"}, {"x", true}, {"A"}}, {"A", "x"}},
      {"other line and an empty text between", {{"A"}, {"x", true}, {""}, {"A"}}, {"A", "x", "A"}},
      {"same as the last line added by another route", {{"x", true}, {"x"}}, {"x"}},
      {"empty first", {{""}, {"A"}}, {"A"}},
      {"empty last", {{"A"}, {""}}, {"A"}},
      {"blanks count", {{"A"}, {"A "}, {" A"}}, {"A", "A ", " A"}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    std::vector<std::string> statuses;
    for (const auto& s : c.steps) {
      if (s.direct) {
        p.app.logWindow.Add(s.text);
        continue;
      }
      p.app.mainForm.StatusBarAndLog(s.text);
      if (!s.text.empty()) statuses.push_back(s.text);
    }
    EXPECT_EQ(LogLines(p.app), c.log) << c.name;
    // An empty text leaves the status field as it was.
    EXPECT_EQ(p.ui.statuses, statuses) << c.name;
    EXPECT_EQ(p.app.globals.StatusText, statuses.empty() ? "" : statuses.back()) << c.name;
    EXPECT_EQ(p.app.logWindow.LastMessage, p.app.globals.StatusText) << c.name;
    EXPECT_EQ(p.app.logWindow.ItemIndex, static_cast<std::ptrdiff_t>(c.log.size()) - 1) << c.name;
  }
}

TEST(StatusAndLog, BeforeTheLogWindowExistsOnlyTheStatusMoves) {
  TestProgram p;
  p.app.logWindow.Exists = false;
  p.app.mainForm.StatusBarAndLog("Create Pixel Form");
  p.app.globals.ExceptionFormName = "F";
  p.app.mainForm.LogError("early");
  EXPECT_EQ(p.app.globals.StatusText, "Create Pixel Form");
  EXPECT_EQ(p.app.logWindow.LastMessage, "Create Pixel Form");
  EXPECT_TRUE(p.app.logWindow.Lines.Empty());
  // Not remembered as logged, so it is logged once the window is there.
  p.app.logWindow.Exists = true;
  p.app.mainForm.StatusBarAndLog("Create Pixel Form");
  EXPECT_EQ(LogLines(p.app), std::vector<std::string>{"Create Pixel Form"});
}

TEST(StatusAndLog, LogErrorAddsTheTextAndWhereTheFaultWas) {
  TestProgram p;
  p.app.globals.ExceptionFormName = "ExploForm";
  p.app.globals.ExceptionControlName = "FileListBox1";
  p.app.mainForm.StatusBarAndLog("Load Picture");
  p.app.mainForm.LogError("Picture not read");
  EXPECT_EQ(LogLines(p.app), (std::vector<std::string>{"Load Picture", "Picture not read", "ExploForm[FileListBox1])"}));
  EXPECT_EQ(p.app.logWindow.ItemIndex, 2);
  EXPECT_EQ(p.app.globals.StatusText, "Load Picture");
}

// ---- message dialogs ------------------------------------------------------------------------

TEST(MessageDlgA, ButtonMaskKindAndResultCodes) {
  const struct {
    int buttons, kind;
    const char* answer;  // "" closes the dialog without a button
    std::vector<std::string> captions;
    rm::DlgType type;
    int result;
  } cases[] = {
      {4, 2, "OK", {"OK"}, rm::DlgType::Information, 1},
      {3, 3, "Yes", {"Yes", "No"}, rm::DlgType::Confirmation, 6},
      {3, 3, "No", {"Yes", "No"}, rm::DlgType::Confirmation, 7},
      {9, 0, "Yes", {"Yes", "Cancel"}, rm::DlgType::Warning, 6},
      {9, 0, "Cancel", {"Yes", "Cancel"}, rm::DlgType::Warning, 2},
      {15, 1, "OK", {"Yes", "No", "OK", "Cancel"}, rm::DlgType::Error, 1},
      {12, 1, "Cancel", {"OK", "Cancel"}, rm::DlgType::Error, 2},
      {0, 2, "OK", {"OK"}, rm::DlgType::Information, 1},
      // Closed without a button: the answer Esc gives.
      {9, 0, "", {"Yes", "Cancel"}, rm::DlgType::Warning, 2},
      {3, 3, "", {"Yes", "No"}, rm::DlgType::Confirmation, 7},
      {4, 1, "", {"OK"}, rm::DlgType::Error, 1},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.ui.answers.push_back(c.answer);
    const int r = p.app.mainForm.MessageDlgA(" Overwrite file ? ", "Confirm", 0, c.buttons, c.kind);
    const std::string label = std::to_string(c.buttons) + " " + c.answer;
    EXPECT_EQ(r, c.result) << label;
    ASSERT_EQ(p.ui.messages.size(), 1u) << label;
    EXPECT_EQ(p.ui.messages[0].text, " Overwrite file ? ");
    EXPECT_EQ(p.ui.messages[0].title, "Confirm");
    EXPECT_EQ(p.ui.messages[0].buttons, c.captions) << label;
    EXPECT_EQ(p.ui.messages[0].type, c.type) << label;
    EXPECT_EQ(LogLines(p.app), std::vector<std::string>{"Message : Overwrite file ? "});
  }
}

TEST(MessageDlgA, ConsoleModeNeverAsksAndTakesTheSafeAnswer) {
  const struct {
    int buttons, result;
  } cases[] = {{4, 1}, {3, 7}, {9, 2}, {15, 2}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.ConsoleMode = true;
    EXPECT_EQ(p.app.mainForm.MessageDlgA("Batch done", "Information", 0, c.buttons, 2), c.result) << c.buttons;
    EXPECT_TRUE(p.ui.messages.empty());
    EXPECT_EQ(LogLines(p.app), (std::vector<std::string>{"Message :Batch done", ">> Message Dialog :Batch done"}));
  }
  TestProgram p;
  p.app.globals.ConsoleMode = true;
  const std::vector<std::string> quit{"Save+Quit", "Cancel", "Quit"};
  EXPECT_EQ(p.app.mainForm.MyMessageDialog(" Quit ? ", rm::DlgType::Confirmation, 4, quit), 4);
  EXPECT_EQ(p.app.mainForm.MyMessageDialog(" Quit ? ", rm::DlgType::Confirmation, 4, quit, 3), 2);  // default hidden
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(p.app.logWindow.LastLine(), ">> Message Dialog : Quit ? ");
}

TEST(MessageDlgA, EveryCommandsQuestionIsLoggedAndConsoleModeAnswersAlone) {
  // Any command's question goes through the same rules: here the factory restore's.
  const std::string q = " Are you sure to want to quit and restore the factory settings ? ";
  for (const bool console : {false, true}) {
    TestProgram p;
    p.app.globals.ConsoleMode = console;
    p.ui.answers = {"No"};
    EXPECT_FALSE(p.app.mainForm.RestoreDefaultSettings1Click()) << "unattended, the answer is No";
    const auto log = LogLines(p.app);
    EXPECT_NE(std::find(log.begin(), log.end(), "Message :" + q), log.end()) << console;
    EXPECT_EQ(p.ui.messages.size(), console ? 0u : 1u);
    EXPECT_EQ(log.back() == ">> Message Dialog :" + q, console);
  }
}

TEST(MessageDlgA, RepeatGuardHoldsBackWhatTheStatusShows) {
  const struct {
    bool guard;
    const char* status;
    bool shown;
  } cases[] = {
      {false, " File not found ", true},
      {true, " File not found ", false},
      {true, " File not found", true},
      {true, "", true},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.RepeatGuard = c.guard;
    p.app.mainForm.StatusBarAndLog(c.status);
    p.ui.answers.push_back("Yes");
    const int r = p.app.mainForm.MessageDlgA(" File not found ", "Error", 0, 9, 1);
    EXPECT_EQ(p.ui.messages.size(), c.shown ? 1u : 0u) << c.guard << "[" << c.status << "]";
    EXPECT_EQ(r, c.shown ? 6 : 2) << c.guard << "[" << c.status << "]";
    EXPECT_EQ(p.app.logWindow.LastLine(), "Message : File not found ");
  }
  // The question is held back only while its text stands in the status field.
  TestProgram p;
  p.app.globals.RepeatGuard = true;
  p.app.mainForm.StatusBarAndLog("Busy");
  EXPECT_EQ(p.app.mainForm.MyMessageDialog("Busy", rm::DlgType::Warning, 2, {"Go", "Stop"}), 2);
  p.app.mainForm.StatusBarAndLog("Idle");
  EXPECT_EQ(p.app.mainForm.MyMessageDialog("Busy", rm::DlgType::Warning, 2, {"Go", "Stop"}), 1);
  EXPECT_EQ(p.ui.messages.size(), 1u);
}

TEST(MyMessageDialog, CaptionsReturnOneTwoFourAndLogTheSelectionAnswers) {
  const std::vector<std::string> quit{"Save+Quit", "Cancel", "Quit"};
  const std::vector<std::string> selection{"Paste Now", "Move", "Cancel"};
  const struct {
    std::vector<std::string> captions;
    int buttons;
    const char* answer;
    std::vector<std::string> shown;
    int result;
    const char* buttonLine;  // the line after "Message Dialog :..." or nullptr
  } cases[] = {
      {quit, 0, "Save+Quit", quit, 1, nullptr},
      {quit, 0, "Cancel", quit, 2, "Dialog Button Cancel"},
      {quit, 0, "Quit", quit, 4, nullptr},
      {quit, 5, "Quit", {"Save+Quit", "Quit"}, 4, nullptr},
      {selection, 0, "Paste Now", selection, 1, "Dialog Button Paste Now"},
      {selection, 0, "Move", selection, 2, "Dialog Button Move "},
      {{"Paste now", "Discard", "Cancel"}, 0, "Paste now", {"Paste now", "Discard", "Cancel"}, 1,
       "Dialog Button Paste Now"},
      {{"Paste now", "Discard", "Cancel"}, 0, "Discard", {"Paste now", "Discard", "Cancel"}, 2, nullptr},
      {{"Quit", "Cancel", "No Saves", "Extra"}, 0, "No Saves", {"Quit", "Cancel", "No Saves"}, 4, nullptr},
      {quit, 0, "", quit, 0, nullptr},  // closed without a button
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.ui.answers.push_back(c.answer);
    const int r = p.app.mainForm.MyMessageDialog(" Quit rastermill ? ", rm::DlgType::Confirmation, 1, c.captions,
                                                 c.buttons);
    EXPECT_EQ(r, c.result) << c.answer;
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(p.ui.messages[0].buttons, c.shown) << c.answer;
    EXPECT_EQ(p.ui.messages[0].title, "Confirm");
    std::vector<std::string> log{"Message Dialog : Quit rastermill ? "};
    if (c.buttonLine) log.push_back(c.buttonLine);
    EXPECT_EQ(LogLines(p.app), log) << c.answer;
  }
}

// ---- failure handler ------------------------------------------------------------------------

template <typename E>
std::exception_ptr Fault(E e) {
  return std::make_exception_ptr(std::move(e));
}
std::exception_ptr Thrown(void (*f)()) {
  try {
    f();
  } catch (...) {
    return std::current_exception();
  }
  return nullptr;
}
std::exception_ptr FsError(std::errc code, const char* path = "/data/pic.bmp") {
  return Fault(fs::filesystem_error("open", path, std::make_error_code(code)));
}

TEST(ExceptionHandler, SortsFaultsIntoTheKnownCases) {
  const std::string where = "(ImageForm[PaintBox])";
  const auto K = rm::ReportKind::HandledExcept;
  const auto H = rm::ReportKind::HidExcept;
  const auto X = rm::ReportKind::Except;
  const struct {
    const char* name;
    std::exception_ptr fault;
    rm::ReportKind kind;
    int counted;
    std::string shown;  // the message the user sees, empty for none
    std::string logged; // the last line of the log
  } cases[] = {
      {"bad_alloc", Fault(std::bad_alloc()), K, 1, "Out of memory !", ">> Out of memory !" + where},
      {"string too long", Thrown([] { std::string s; s.resize(s.max_size() + 1); }), K, 1, "Out of memory !",
       ">> Out of memory !" + where},
      {"ENOMEM", Fault(std::system_error(ENOMEM, std::generic_category())), K, 1, "Out of memory !",
       ">> Out of memory !" + where},
      {"EACCES", FsError(std::errc::permission_denied), K, 1, "File access refused !",
       ">> File access refused !" + where},
      {"EPERM", Fault(std::system_error(EPERM, std::generic_category())), K, 1, "File access refused !",
       ">> File access refused !" + where},
      {"EROFS", FsError(std::errc::read_only_file_system), K, 1, "File access refused !",
       ">> File access refused !" + where},
      {"ENAMETOOLONG", FsError(std::errc::filename_too_long), K, 0, "Invalid File Name !",
       ">> Invalid File Name !" + where},
      {"EILSEQ", FsError(std::errc::illegal_byte_sequence), K, 0, "Invalid File Name !",
       ">> Invalid File Name !" + where},
      {"EINVAL on a path", FsError(std::errc::invalid_argument), K, 0, "Invalid File Name !",
       ">> Invalid File Name !" + where},
      {"empty path", Thrown([] { (void)fs::file_size(""); }), K, 0, "Invalid File Name !",
       ">> Invalid File Name !" + where},
      {"focus", Fault(rm::WindowFocusError()), H, 1, "", ">> Cannot focus a disabled or invisible window"},
      {"scan line", Fault(rm::ScanLineError()), H, 1, "", ">> Scan line index out of range : Rotate Canvas"},
      {"index", Thrown([] { (void)std::vector<int>(2).at(5); }), X, 1, "", ">> LI Error =" + where},
      {"missing file", FsError(std::errc::no_such_file_or_directory), X, 1, "",
       ">> " + std::string(fs::filesystem_error("open", "/data/pic.bmp",
                                                std::make_error_code(std::errc::no_such_file_or_directory))
                               .what()) +
           where},
      {"EINVAL without a path", Fault(std::system_error(EINVAL, std::generic_category(), "ioctl")), X, 1, "",
       ">> ioctl: " + std::generic_category().message(EINVAL) + where},
      {"other", Fault(std::runtime_error("Palette table empty")), X, 1, "", ">> Palette table empty" + where},
      {"not a std::exception", Fault(42), X, 1, "", ">> Unknown exception" + where},
      {"no fault at all", std::exception_ptr(), X, 1, "", ">> Unknown exception" + where},
  };
  for (const auto& c : cases) {
    TestProgram p;
    rm::Globals& g = p.app.globals;
    g.ErrorCount = 3;
    g.ActiveFormName = "ImageForm";
    g.ActiveControlName = "PaintBox";
    g.LastAction = "Rotate Canvas";
    EXPECT_EQ(p.app.mainForm.MyExceptionHandler(c.fault), c.kind) << c.name;
    EXPECT_EQ(g.ErrorCount, 3 + c.counted) << c.name;
    EXPECT_TRUE(g.ExceptionSeen) << c.name;
    EXPECT_EQ(g.ExceptionFormName, "ImageForm");
    EXPECT_EQ(g.ExceptionControlName, "PaintBox");
    if (c.shown.empty()) {
      EXPECT_TRUE(p.ui.messages.empty()) << c.name;
      EXPECT_EQ(p.app.logWindow.LastLine(), c.logged) << c.name;
    } else {
      ASSERT_EQ(p.ui.messages.size(), 1u) << c.name;
      EXPECT_EQ(p.ui.messages[0].text, c.shown) << c.name;
      EXPECT_EQ(p.ui.messages[0].title, "Error");
      EXPECT_EQ(p.ui.messages[0].buttons, std::vector<std::string>{"OK"});
      EXPECT_EQ(LogLines(p.app), (std::vector<std::string>{c.logged, "Message :" + c.shown})) << c.name;
    }
  }
}

TEST(ExceptionHandler, ConsoleModeLogsTranslatedFaultsWithoutAsking) {
  TestProgram p;
  p.app.globals.ConsoleMode = true;
  EXPECT_EQ(p.app.mainForm.MyExceptionHandler(FsError(std::errc::permission_denied)), rm::ReportKind::HandledExcept);
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(LogLines(p.app), (std::vector<std::string>{">> File access refused !([])", "Message :File access refused !",
                                                       ">> Message Dialog :File access refused !"}));
}

// A front end that fails while showing the message.
class BrokenUi : public rmtest::ScriptedUi {
 public:
  std::string MessageDlg(const std::string&, const std::string&, rm::DlgType, const std::vector<std::string>&) override {
    throw std::runtime_error("no display");
  }
};

TEST(ExceptionHandler, NeverThrowsAndStillCounts) {
  const struct {
    std::exception_ptr fault;
    int counted;
  } cases[] = {
      {Fault(std::bad_alloc()), 1},
      {FsError(std::errc::filename_too_long), 0},
  };
  for (const auto& c : cases) {
    BrokenUi ui;
    rm::FixedClock clock{0};
    rm::Application app{ui, clock};
    rm::ReportKind kind{};
    EXPECT_NO_THROW(kind = app.mainForm.MyExceptionHandler(c.fault));
    EXPECT_EQ(kind, rm::ReportKind::Except);
    EXPECT_EQ(app.globals.ErrorCount, c.counted);
  }
  // Before the log window exists only the counter moves.
  TestProgram p;
  p.app.logWindow.Exists = false;
  p.app.mainForm.MyExceptionHandler(Fault(std::runtime_error("early")));
  p.app.mainForm.MyExceptionHandler(Fault(rm::WindowFocusError()));
  EXPECT_EQ(p.app.globals.ErrorCount, 2);
  EXPECT_TRUE(p.app.logWindow.Lines.Empty());
}

// ---- saving the log -------------------------------------------------------------------------

class SaveLog : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = rmtest::MakeTempDir(); }
  void TearDown() override { fs::remove_all(dir_); }
  std::string dir_;
};

TEST_F(SaveLog, AtQuitReplacesLLogInTheInitsFolder) {
  const std::string inits = dir_ + "/inits/";
  fs::create_directories(inits);
  std::ofstream(inits + "L.LOG") << "last run\nwith more lines than this one\nand more\n";
  TestProgram p;
  p.app.globals.InitsFolder = inits;
  p.app.mainForm.StatusBarAndLog("Application has started");
  p.app.mainForm.StatusBarAndLog("Quit Rastermill");
  EXPECT_TRUE(p.app.mainForm.SaveLog());
  EXPECT_EQ(rmtest::ReadFile(inits + "L.LOG"), "Application has started\nQuit Rastermill\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(inits), fs::directory_iterator()), 1);  // no temporary left

  // No inits folder (or none yet): nothing is written anywhere.
  for (const std::string& missing : {std::string(), dir_ + "/gone/"}) {
    TestProgram q;
    q.app.globals.InitsFolder = missing;
    q.app.mainForm.StatusBarAndLog("x");
    EXPECT_FALSE(q.app.mainForm.SaveLog()) << missing;
  }
  EXPECT_FALSE(fs::exists(dir_ + "/gone"));
  EXPECT_FALSE(fs::exists("L.LOG"));
}

TEST_F(SaveLog, SaveLogToFileGivesTheExtensionWhenMissing) {
  const std::string docs = dir_ + "/Documents";
  fs::create_directories(docs);
  const struct {
    std::string chosen, written;
  } cases[] = {
      {"session", docs + "/session.LOG"},
      {"session.", docs + "/session.LOG"},
      {"session.log", docs + "/session.log"},
      {"old.run.txt", docs + "/old.run.txt"},
      {dir_ + "/elsewhere", dir_ + "/elsewhere.LOG"},
      {dir_ + "/a.b/log", dir_ + "/a.b/log.LOG"},
  };
  fs::create_directories(dir_ + "/a.b");
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.DocumentsRole = docs;
    p.app.mainForm.StatusBarAndLog("Step one");
    EXPECT_EQ(p.app.mainForm.LogFileFolder(), docs);
    EXPECT_TRUE(p.app.mainForm.SaveLogtoFile1Click(c.chosen)) << c.chosen;
    EXPECT_EQ(rmtest::ReadFile(c.written), "Step one\n") << c.chosen;
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(p.ui.messages[0].text, " Log data saved to " + c.written);
    EXPECT_EQ(p.ui.messages[0].title, "Log file saved!");
  }

  TestProgram p;
  p.app.globals.DocumentsRole = docs;
  EXPECT_FALSE(p.app.mainForm.SaveLogtoFile1Click(""));  // the user cancelled the file dialog
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_FALSE(p.app.mainForm.SaveLogtoFile1Click(dir_ + "/no such folder/x"));
  ASSERT_EQ(p.ui.messages.size(), 1u);
  EXPECT_EQ(p.ui.messages[0].title, "Error");
  EXPECT_EQ(p.ui.messages[0].text.rfind(" Log data not saved to " + dir_ + "/no such folder/x.LOG : ", 0), 0u);
}

}  // namespace
