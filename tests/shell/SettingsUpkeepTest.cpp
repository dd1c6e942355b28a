#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "shell/Folders.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;

class SteppingClock : public rm::Clock {
 public:
  std::time_t Now() const override { return now; }
  std::time_t now = 1700000000;
};

// A program on a home of its own, with a clock the test moves.
struct Program {
  rmtest::ScriptedUi ui;
  SteppingClock& clock;
  rm::Application app{ui, clock};
  explicit Program(SteppingClock& c) : clock(c) {}
};

class SettingsUpkeep : public rmtest::HomeTest {
 protected:
  SteppingClock clock_;
};

TEST_F(SettingsUpkeep, CountersTellLaunchesQuitsAndSessionsThatDidNotEnd) {
  struct Step {
    bool quits;      // the session ends through the quit sequence
    int la, sc, nq;  // counters after the start (la, sc) and after the session (nq)
    bool firstLaunches;
  };
  const Step steps[] = {
      {true, 1, 0, 1, true},   // first start: file made, then a clean quit
      {false, 2, 0, 1, true},  // a session that never quits (a crash)
      {true, 3, 1, 2, false},  // the next start sees the mark of the crash
      {true, 4, 1, 3, false},
  };
  for (const Step& s : steps) {
    Program p(clock_);
    p.app.mainForm.ReadInfoFromRegistry();
    EXPECT_EQ(p.app.usage.Get("la"), s.la);
    EXPECT_EQ(p.app.usage.Get("sc"), s.sc);
    EXPECT_EQ(p.app.usage.Get("st"), 1);
    EXPECT_EQ(p.app.globals.FirstLaunches, s.firstLaunches);
    clock_.now += 3725;  // 1 h 2 min 5 s
    if (s.quits) p.app.mainForm.WriteQuitInRegistry();
    rm::UsageCounters disk;
    disk.Load(rm::UsageCounters::DefaultPath());
    EXPECT_EQ(disk.Get("nq"), s.nq);
    EXPECT_EQ(disk.Get("st"), s.quits ? 0 : 1);
  }
  rm::UsageCounters disk;
  disk.Load(rm::UsageCounters::DefaultPath());
  EXPECT_EQ(disk.Created(), rm::FormatDateTime(1700000000));
  // Three sessions of 3725 s were counted: 3 h 6 min 15 s.
  EXPECT_EQ(disk.Get("dud"), 0);
  EXPECT_EQ(disk.Get("duh"), 3);
  EXPECT_EQ(disk.Get("dum"), 6);
  EXPECT_EQ(disk.Get("dus"), 15);
  EXPECT_EQ(disk.Get("icm"), 0) << "every counter is present from the first start";
  EXPECT_TRUE(rmtest::ReadFile(rm::UsageCounters::DefaultPath()).find("icm=0") != std::string::npos);
}

TEST_F(SettingsUpkeep, FactoryRestoreBacksUpThenRemovesThePointer) {
  Program p(clock_);
  p.app.mainForm.LoadFolders();
  ASSERT_TRUE(p.app.mainForm.LoadConfigurationX());
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(p.app, "FXHB", "H", error));
  ASSERT_TRUE(p.app.mainForm.SaveConfigurationX());
  const std::string pointer = p.app.globals.InitsFolder + "Rastermill.ini";
  const std::string other = p.app.globals.InitsFolder + "other.LCD";
  std::ofstream(other) << "[S]\nFXHB=B\n";

  p.ui.answers = {"No"};
  EXPECT_FALSE(p.app.mainForm.RestoreDefaultSettings1Click());
  EXPECT_TRUE(fs::exists(pointer));

  p.ui.answers = {"Yes"};
  ASSERT_TRUE(p.app.mainForm.RestoreDefaultSettings1Click());
  EXPECT_FALSE(fs::exists(pointer));
  const std::string backup = p.app.globals.FactoryBackupFolder;
  EXPECT_NE(backup.find("/Rastermill inits  " + rm::ProgramVersionTag() + " "), std::string::npos) << backup;
  EXPECT_NE(rmtest::ReadFile(backup + "/default.LCD").find("FXHB=H"), std::string::npos);

  // The next start is a first run with every key at its default, and so is the one after, even
  // when the first never quit (a command line run saves nothing). Other projects stay.
  for (int start = 0; start < 2; ++start) {
    Program next(clock_);
    next.app.mainForm.LoadFolders();
    EXPECT_EQ(next.app.globals.FirstRun, start == 0);
    ASSERT_TRUE(next.app.mainForm.LoadConfigurationX());
    EXPECT_EQ(next.app.session.Syntax.DataFormatKind, "X") << start;
  }
  EXPECT_TRUE(fs::exists(other));
}

TEST_F(SettingsUpkeep, ReportsNameTheSettingsInForce) {
  Program p(clock_);
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(p.app, "INCSYN", "#import ", error));
  ASSERT_TRUE(rm::ApplySetting(p.app, "rs48", "1", error, rm::SettingUse::Session));
  ASSERT_TRUE(rm::ApplySetting(p.app, "DELAY", "1", error));
  const auto lines = p.app.mainForm.ConfChildSettings();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.front(), " *** Config Strings ***");
  EXPECT_EQ(lines.back(), " *** end ***");
  auto has = [&lines](const std::string& l) { return std::find(lines.begin(), lines.end(), l) != lines.end(); };
  EXPECT_TRUE(has("IncludeEdit=#import "));
  EXPECT_TRUE(has("Col/Row Prefix= {"));
  EXPECT_TRUE(has("PostProFile=< No batch file selected >"));
  EXPECT_TRUE(has("Delay Checked"));
  EXPECT_TRUE(has("Monochrome mode"));
  EXPECT_TRUE(has("Rs485 : Yes"));
  EXPECT_TRUE(has("Predefined Matrix"));
}

}  // namespace
