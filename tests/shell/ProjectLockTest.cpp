// The lock the program's processes meet at before they read or change the settings files, with
// a second process made by fork playing the other program instance.
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>

#include "shell/ProjectLock.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::ProjectLock;
using Mode = rm::ProjectLock::Mode;
using namespace std::chrono_literals;

// A child process that holds the lock of `folder` in `mode` until told to let go (or for `hold`).
class OtherProcess {
 public:
  OtherProcess(const std::string& folder, Mode mode, std::chrono::milliseconds hold = 1h) {
    int ready[2], done[2];
    if (::pipe(ready) != 0 || ::pipe(done) != 0) return;
    pid_ = ::fork();
    if (pid_ == 0) {
      ::close(ready[0]);
      ::close(done[1]);
      ProjectLock lock(folder, mode);
      const char state = lock.Held() ? 'y' : 'n';
      if (::write(ready[1], &state, 1) != 1) ::_exit(2);
      pollfd wait{done[0], POLLIN, 0};
      ::poll(&wait, 1, static_cast<int>(std::min<long long>(hold.count(), 3600000)));
      ::_exit(0);
    }
    ::close(ready[1]);
    ::close(done[0]);
    done_ = done[1];
    char state = 0;
    held_ = ::read(ready[0], &state, 1) == 1 && state == 'y';
    ::close(ready[0]);
  }
  ~OtherProcess() { LetGo(); }
  bool Held() const { return held_; }
  void LetGo() {
    if (pid_ <= 0) return;
    ::close(done_);
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
  }

 private:
  pid_t pid_ = -1;
  int done_ = -1;
  bool held_ = false;
};

class ProjectLocks : public rmtest::HomeTest {
 protected:
  void SetUp() override {
    HomeTest::SetUp();
    folder_ = home_ + "/projects";
    fs::create_directories(folder_);
  }
  void TearDown() override {
    ProjectLock::SetPatience(patience_);
    HomeTest::TearDown();
  }
  std::string folder_;
  std::chrono::milliseconds patience_ = ProjectLock::Patience();
};

TEST_F(ProjectLocks, LocksOfOneProcessNest) {
  {
    ProjectLock outer(folder_, Mode::Exclusive);
    ASSERT_TRUE(outer.Held()) << outer.Error();
    ProjectLock inner(folder_ + "/", Mode::Shared);  // the same folder, however it is spelt
    EXPECT_TRUE(inner.Held()) << inner.Error();
  }
  {
    ProjectLock reading(folder_, Mode::Shared);
    ASSERT_TRUE(reading.Held());
    // flock would let the shared lock go while it waits for the exclusive one: refused.
    ProjectLock writing(folder_, Mode::Exclusive);
    EXPECT_FALSE(writing.Held());
    EXPECT_NE(writing.Error().find("already held for reading"), std::string::npos) << writing.Error();
  }
  // All let go: another process gets it at once.
  ProjectLock::SetPatience(0ms);
  OtherProcess other(folder_, Mode::Exclusive);
  EXPECT_TRUE(other.Held());
}

TEST_F(ProjectLocks, ReadersShareWritersWaitForEachOther) {
  ProjectLock::SetPatience(100ms);
  {
    OtherProcess reader(folder_, Mode::Shared);
    ASSERT_TRUE(reader.Held());
    EXPECT_TRUE(ProjectLock(folder_, Mode::Shared).Held());
    EXPECT_FALSE(ProjectLock(folder_, Mode::Exclusive).Held());
  }
  {
    OtherProcess writer(folder_, Mode::Exclusive);
    ASSERT_TRUE(writer.Held());
    EXPECT_FALSE(ProjectLock(folder_, Mode::Shared).Held());
    writer.LetGo();
    EXPECT_TRUE(ProjectLock(folder_, Mode::Shared).Held());
  }
  // A writer that lets go within the patience is waited for.
  ProjectLock::SetPatience(10s);
  OtherProcess brief(folder_, Mode::Exclusive, 200ms);
  ASSERT_TRUE(brief.Held());
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(ProjectLock(folder_, Mode::Exclusive).Held());
  EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
}

TEST_F(ProjectLocks, AFolderWithoutRoomForTheLockIsReadAllTheSame) {
  // Nothing of the program can write where no lock file can be made: there is nothing to wait for.
  EXPECT_TRUE(ProjectLock(home_ + "/no such folder", Mode::Shared).Held());
  EXPECT_FALSE(fs::exists(home_ + "/no such folder"));
}

// The desktop's reading of the project waits for a writer of its own kind instead of saying
// that another application has the file; a lock another program keeps on the file is still told.
TEST_F(ProjectLocks, ProjectReadWaitsForTheProgramAndTellsOfOthers) {
  {
    rmtest::TestProgram first;
    first.app.mainForm.LoadFolders();
    ASSERT_TRUE(first.app.mainForm.LoadConfigurationX());
    std::string error;
    ASSERT_TRUE(rm::ApplySetting(first.app, "GWI", "96", error)) << error;
    ASSERT_TRUE(first.app.mainForm.SaveConfigurationX(&error)) << error;
  }
  ProjectLock::SetPatience(10s);
  OtherProcess writer(Inits(), Mode::Exclusive, 300ms);
  ASSERT_TRUE(writer.Held());
  rmtest::TestProgram p;
  p.app.mainForm.LoadFolders();
  ASSERT_TRUE(p.app.mainForm.LoadConfigurationX());
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(rm::GetSetting(p.app, *rm::FindSetting("GWI")), "96");

  // The program's own writer that does not let go within the patience: nothing is read.
  ProjectLock::SetPatience(50ms);
  OtherProcess stuck(Inits(), Mode::Exclusive);
  ASSERT_TRUE(stuck.Held());
  rmtest::TestProgram q;
  q.app.globals.InitsFolder = Inits();
  q.app.globals.ActiveProject = Inits() + "default.LCD";
  EXPECT_FALSE(q.app.mainForm.LoadConfigurationX());
  EXPECT_EQ(q.ui.messages.size(), 1u);
  std::string error;
  EXPECT_FALSE(q.app.mainForm.SaveConfigurationX(&error));
  EXPECT_NE(error.find("another Rastermill process"), std::string::npos) << error;
  stuck.LetGo();

  // Another program that locks the project file itself is told at once, for reading and writing,
  // however patient the program is with its own kind; the file stays as it was.
  ProjectLock::SetPatience(10s);
  const std::string before = rmtest::ReadFile(Inits() + "default.LCD");
  const int held = ::open((Inits() + "default.LCD").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GE(held, 0);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  rmtest::TestProgram r;
  r.app.globals.InitsFolder = Inits();
  r.app.globals.ActiveProject = Inits() + "default.LCD";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(r.app.mainForm.LoadConfigurationX());
  EXPECT_FALSE(r.app.mainForm.SaveConfigurationX(&error));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
  ::close(held);
  EXPECT_EQ(r.ui.messages.size(), 2u);
  EXPECT_EQ(rmtest::ReadFile(Inits() + "default.LCD"), before);
}

}  // namespace
