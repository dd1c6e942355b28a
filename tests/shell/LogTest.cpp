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
using Lines = std::vector<std::string>;

Lines LogLines(const rm::Application& app) { return app.logWindow.Lines.Lines(); }

// ---- status and log -------------------------------------------------------------------------

TEST(StatusAndLog, RepeatsReachTheLogOnceButTheStatusEveryTime) {
  // Steps are texts for StatusBarAndLog; "!x" adds x to the log by another route (a message, a
  // fault), which the repeat rule does not remember.
  const struct {
    Lines steps, log;
  } cases[] = {
      {{"A", "A"}, {"A"}},
      {{"A", "B", "A"}, {"A", "B", "A"}},
      {{"A", "", "A"}, {"A"}},
      // Between two A: a line added by another route, then also an empty text.
      {{"A", "!x", "A"}, {"A", "x"}},
      {{"A", "!x", "", "A"}, {"A", "x", "A"}},
      {{"!x", "x"}, {"x"}},
      {{"A", "A ", " A"}, {"A", "A ", " A"}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    Lines statuses;
    for (const auto& s : c.steps) {
      if (!s.empty() && s[0] == '!')
        p.app.logWindow.Add(s.substr(1));
      else
        p.app.mainForm.StatusBarAndLog(s);
      if (!s.empty() && s[0] != '!') statuses.push_back(s);  // an empty text leaves the status as it was
    }
    const std::string name = ::testing::PrintToString(c.steps);
    EXPECT_EQ(LogLines(p.app), c.log) << name;
    EXPECT_EQ(p.ui.statuses, statuses) << name;
  }
}

TEST(StatusAndLog, NothingIsLoggedBeforeTheWindowAndLogErrorTellsWhere) {
  TestProgram p;
  p.app.logWindow.Exists = false;
  p.app.mainForm.StatusBarAndLog("Create Pixel Form");
  p.app.mainForm.LogError("early");
  EXPECT_EQ(p.app.globals.StatusText, "Create Pixel Form");
  EXPECT_TRUE(p.app.logWindow.Lines.Empty());
  // Not remembered as logged, so it is logged once the window is there.
  p.app.logWindow.Exists = true;
  p.app.mainForm.StatusBarAndLog("Create Pixel Form");
  p.app.globals.ExceptionFormName = "ExploForm";
  p.app.globals.ExceptionControlName = "FileListBox1";
  p.app.mainForm.LogError("Picture not read");
  EXPECT_EQ(LogLines(p.app), (Lines{"Create Pixel Form", "Picture not read", "ExploForm[FileListBox1])"}));
}

// ---- message dialogs ------------------------------------------------------------------------

TEST(MessageDlgA, ButtonMaskKindAndResultCodesAnsweredClosedOrInAConsole) {
  // Closed without a button, or in a console session where nobody is asked, the answer is the
  // one Esc gives (`safe`).
  const struct {
    int buttons, kind;
    const char* answer;
    int result, safe;
    Lines captions;
    rm::DlgType type;
  } cases[] = {
      {3, 3, "Yes", 6, 7, {"Yes", "No"}, rm::DlgType::Confirmation},
      {9, 0, "Cancel", 2, 2, {"Yes", "Cancel"}, rm::DlgType::Warning},
      {15, 1, "OK", 1, 2, {"Yes", "No", "OK", "Cancel"}, rm::DlgType::Error},
      {0, 2, "OK", 1, 1, {"OK"}, rm::DlgType::Information},
  };
  for (const auto& c : cases) {
    for (const std::string answer : {c.answer, ""}) {
      TestProgram p;
      p.ui.answers.push_back(answer);
      const std::string label = std::to_string(c.buttons) + " " + answer;
      EXPECT_EQ(p.app.mainForm.MessageDlgA(" Overwrite file ? ", "Confirm", 0, c.buttons, c.kind),
                answer.empty() ? c.safe : c.result)
          << label;
      EXPECT_EQ(p.ui.messages.at(0).buttons, c.captions) << label;
      EXPECT_EQ(p.ui.messages[0].type, c.type) << label;
      EXPECT_EQ(LogLines(p.app), Lines{"Message : Overwrite file ? "});
    }
    TestProgram p;
    p.app.globals.ConsoleMode = true;
    EXPECT_EQ(p.app.mainForm.MessageDlgA("Batch done", "Information", 0, c.buttons, 2), c.safe) << c.buttons;
    EXPECT_TRUE(p.ui.messages.empty());
    EXPECT_EQ(LogLines(p.app), (Lines{"Message :Batch done", ">> Message Dialog :Batch done"}));
  }
}

TEST(MessageDlgA, ConsoleModeAnswersAloneForEveryCommand) {
  TestProgram p;
  p.app.globals.ConsoleMode = true;
  const Lines quit{"Save+Quit", "Cancel", "Quit"};
  EXPECT_EQ(p.app.mainForm.MyMessageDialog(" Quit ? ", rm::DlgType::Confirmation, 4, quit), 4);
  EXPECT_EQ(p.app.mainForm.MyMessageDialog(" Quit ? ", rm::DlgType::Confirmation, 4, quit, 3), 2);  // default hidden
  EXPECT_TRUE(p.ui.messages.empty());

  // Any command's question goes through the same rules: here the factory restore's.
  const std::string q = " Are you sure to want to quit and restore the factory settings ? ";
  for (const bool console : {false, true}) {
    TestProgram r;
    r.app.globals.ConsoleMode = console;
    r.ui.answers = {"No"};
    EXPECT_FALSE(r.app.mainForm.RestoreDefaultSettings1Click());
    EXPECT_EQ(r.ui.messages.size(), console ? 0u : 1u);
    EXPECT_EQ(LogLines(r.app).back() == ">> Message Dialog :" + q, console);
  }
}

TEST(MessageDlgA, RepeatGuardHoldsBackWhatTheStatusShows) {
  const struct {
    bool guard;
    const char* status;
    bool shown;
  } cases[] = {{false, " File not found ", true}, {true, " File not found ", false}, {true, " File not found", true}};
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.RepeatGuard = c.guard;
    p.app.mainForm.StatusBarAndLog(c.status);
    p.ui.answers.push_back("Yes");
    EXPECT_EQ(p.app.mainForm.MessageDlgA(" File not found ", "Error", 0, 9, 1), c.shown ? 6 : 2) << c.status;
    EXPECT_EQ(p.ui.messages.size(), c.shown ? 1u : 0u) << c.guard << "[" << c.status << "]";
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
  const Lines quit{"Save+Quit", "Cancel", "Quit"};
  const Lines selection{"Paste Now", "Move", "Cancel"};
  const Lines lower{"Paste now", "Discard", "Cancel"};
  const struct {
    Lines captions;
    int buttons;
    const char* answer;
    Lines shown;
    int result;
    const char* buttonLine;  // the line after "Message Dialog :..." or nullptr
  } cases[] = {
      {quit, 0, "Cancel", quit, 2, "Dialog Button Cancel"},
      {quit, 5, "Quit", {"Save+Quit", "Quit"}, 4, nullptr},
      {selection, 0, "Move", selection, 2, "Dialog Button Move "},
      {lower, 0, "Paste now", lower, 1, "Dialog Button Paste Now"},
      {{"Quit", "Cancel", "No Saves", "Extra"}, 0, "No Saves", {"Quit", "Cancel", "No Saves"}, 4, nullptr},
      {quit, 0, "", quit, 0, nullptr},  // closed without a button
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.ui.answers.push_back(c.answer);
    const int r =
        p.app.mainForm.MyMessageDialog(" Quit rastermill ? ", rm::DlgType::Confirmation, 1, c.captions, c.buttons);
    EXPECT_EQ(r, c.result) << c.answer;
    EXPECT_EQ(p.ui.messages.at(0).buttons, c.shown) << c.answer;
    Lines log{"Message Dialog : Quit rastermill ? "};
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
fs::filesystem_error FsError(std::errc code) {
  return fs::filesystem_error("open", "/data/pic.bmp", std::make_error_code(code));
}
std::exception_ptr SysError(int code, const char* what = "") {
  return Fault(std::system_error(code, std::generic_category(), what));
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
    // Handled faults: the message shown, logged as ">> " + text + where first. Others: the log
    // line, and nothing is shown.
    std::string text;
  } cases[] = {
      {"bad_alloc", Fault(std::bad_alloc()), K, 1, "Out of memory !"},
      {"string too long", Thrown([] {
         std::string s;
         s.resize(s.max_size() + 1);
       }),
       K, 1, "Out of memory !"},
      {"ENOMEM", SysError(ENOMEM), K, 1, "Out of memory !"},
      {"EACCES", Fault(FsError(std::errc::permission_denied)), K, 1, "File access refused !"},
      {"EPERM", SysError(EPERM), K, 1, "File access refused !"},
      {"EROFS", Fault(FsError(std::errc::read_only_file_system)), K, 1, "File access refused !"},
      {"ENAMETOOLONG", Fault(FsError(std::errc::filename_too_long)), K, 0, "Invalid File Name !"},
      {"EILSEQ", Fault(FsError(std::errc::illegal_byte_sequence)), K, 0, "Invalid File Name !"},
      {"EINVAL on a path", Fault(FsError(std::errc::invalid_argument)), K, 0, "Invalid File Name !"},
      {"empty path", Thrown([] { (void)fs::file_size(""); }), K, 0, "Invalid File Name !"},
      {"focus", Fault(rm::WindowFocusError()), H, 1, ">> Cannot focus a disabled or invisible window"},
      {"scan line", Fault(rm::ScanLineError()), H, 1, ">> Scan line index out of range : Rotate Canvas"},
      {"index", Thrown([] { (void)std::vector<int>(2).at(5); }), X, 1, ">> LI Error =" + where},
      {"missing file", Fault(FsError(std::errc::no_such_file_or_directory)), X, 1,
       ">> " + std::string(FsError(std::errc::no_such_file_or_directory).what()) + where},
      {"EINVAL without a path", SysError(EINVAL, "ioctl"), X, 1,
       ">> ioctl: " + std::generic_category().message(EINVAL) + where},
      {"other", Fault(std::runtime_error("Palette table empty")), X, 1, ">> Palette table empty" + where},
      {"not a std::exception", Fault(42), X, 1, ">> Unknown exception" + where},
      {"no fault at all", std::exception_ptr(), X, 1, ">> Unknown exception" + where},
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
    if (c.kind != K) {
      EXPECT_TRUE(p.ui.messages.empty()) << c.name;
      EXPECT_EQ(p.app.logWindow.LastLine(), c.text) << c.name;
    } else {
      EXPECT_EQ(ShownMessages(p.ui), Lines{"Error: " + c.text}) << c.name;
      EXPECT_EQ(LogLines(p.app).at(0), ">> " + c.text + where) << c.name;
    }
  }
}

// A front end that fails while showing the message.
class BrokenUi : public rmtest::ScriptedUi {
 public:
  std::string MessageDlg(const std::string&, const std::string&, rm::DlgType, const Lines&) override {
    throw std::runtime_error("no display");
  }
};

TEST(ExceptionHandler, NeverThrowsAndStillCounts) {
  for (const auto& [fault, counted] :
       {std::pair{Fault(std::bad_alloc()), 1}, {Fault(FsError(std::errc::filename_too_long)), 0}}) {
    BrokenUi ui;
    rm::FixedClock clock{0};
    rm::Application app{ui, clock};
    rm::ReportKind kind{};
    EXPECT_NO_THROW(kind = app.mainForm.MyExceptionHandler(fault));
    EXPECT_EQ(kind, rm::ReportKind::Except);
    EXPECT_EQ(app.globals.ErrorCount, counted);
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
  rmtest::TempDir tmp_;
  const std::string dir_ = tmp_.path;
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

  // No inits folder (or none yet): nothing is written anywhere.
  for (const std::string& missing : {std::string(), dir_ + "/gone/"}) {
    TestProgram q;
    q.app.globals.InitsFolder = missing;
    q.app.mainForm.StatusBarAndLog("x");
    EXPECT_FALSE(q.app.mainForm.SaveLog()) << missing;
  }
  EXPECT_FALSE(fs::exists(dir_ + "/gone"));
}

TEST_F(SaveLog, SaveLogToFileGivesTheExtensionWhenMissing) {
  const std::string docs = dir_ + "/Documents";
  fs::create_directories(docs);
  fs::create_directories(dir_ + "/a.b");
  const struct {
    std::string chosen, written;
  } cases[] = {
      {"session.", docs + "/session.LOG"},
      {"old.run.txt", docs + "/old.run.txt"},
      {dir_ + "/a.b/log", dir_ + "/a.b/log.LOG"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.globals.DocumentsRole = docs;
    p.app.mainForm.StatusBarAndLog("Step one");
    EXPECT_TRUE(p.app.mainForm.SaveLogtoFile1Click(c.chosen)) << c.chosen;
    EXPECT_EQ(rmtest::ReadFile(c.written), "Step one\n") << c.chosen;
  }

  TestProgram p;
  p.app.globals.DocumentsRole = docs;
  EXPECT_FALSE(p.app.mainForm.SaveLogtoFile1Click(""));  // the user cancelled the file dialog
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_FALSE(p.app.mainForm.SaveLogtoFile1Click(dir_ + "/no such folder/x"));
  ASSERT_EQ(p.ui.messages.size(), 1u);
}

}  // namespace
