// The one write routine of the program against what a name may stand for: a file, a link, a
// FIFO, a device, a read-only file, and a write killed half way.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "engine/TextLines.h"
#include "support/TestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::ReadFile;
using Names = std::vector<std::string>;

class FileWrite : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
  }
  void TearDown() override {
    std::error_code ec;
    fs::permissions(dir_, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(dir_);
  }
  std::string Path(const std::string& name) const { return dir_ + "/" + name; }
  Names Listing(const std::string& folder = "") const {
    Names names;
    for (const auto& e : fs::directory_iterator(folder.empty() ? dir_ : Path(folder)))
      names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  void Put(const std::string& name, const std::string& text) { std::ofstream(Path(name), std::ios::binary) << text; }
  static mode_t Mode(const std::string& path) {
    struct stat st {};
    EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
    return st.st_mode & 07777;
  }

  std::string dir_;
};

TEST_F(FileWrite, ReplacesAFileWholeKeepingItsPermissions) {
  Put("a.h", "old\n");
  ASSERT_EQ(::chmod(Path("a.h").c_str(), 0640), 0);
  std::string error;
  ASSERT_TRUE(rm::WriteFileAtomically(Path("a.h"), "new\n", &error)) << error;
  EXPECT_EQ(ReadFile(Path("a.h")), "new\n");
  EXPECT_EQ(Mode(Path("a.h")), 0640u);
  // A new name gets the ordinary permissions of a new file.
  const mode_t mask = ::umask(022);
  ASSERT_TRUE(rm::WriteFileAtomically(Path("b.h"), "b\n", &error)) << error;
  ::umask(mask);
  EXPECT_EQ(Mode(Path("b.h")), 0644u);
  // The streaming writer of the text editors takes the same road.
  rm::TextLines lines;
  lines.SetText("one\ntwo\n");
  ASSERT_TRUE(lines.SaveToFile(Path("a.h"), &error)) << error;
  EXPECT_EQ(ReadFile(Path("a.h")), "one\ntwo\n");
  EXPECT_EQ(Mode(Path("a.h")), 0640u);
  EXPECT_EQ(Listing(), (Names{"a.h", "b.h"}));
}

TEST_F(FileWrite, FollowsSymbolicLinksAndReplacesTheirTarget) {
  fs::create_directories(Path("real"));
  Put("real/t.h", "old\n");
  fs::create_symlink("real/t.h", Path("rel.h"));       // relative to the link's folder
  fs::create_symlink(Path("rel.h"), Path("chain.h"));  // a link to a link
  fs::create_symlink("real/new.h", Path("dangling.h"));
  std::string error;
  ASSERT_TRUE(rm::WriteFileAtomically(Path("chain.h"), "through the chain\n", &error)) << error;
  EXPECT_TRUE(fs::is_symlink(Path("chain.h")));
  EXPECT_TRUE(fs::is_symlink(Path("rel.h")));
  EXPECT_EQ(ReadFile(Path("real/t.h")), "through the chain\n");
  // A link to nothing makes its target.
  ASSERT_TRUE(rm::WriteFileAtomically(Path("dangling.h"), "made\n", &error)) << error;
  EXPECT_TRUE(fs::is_symlink(Path("dangling.h")));
  EXPECT_EQ(ReadFile(Path("real/new.h")), "made\n");
  // The target's folder holds no temporary, the link's folder nothing new.
  EXPECT_EQ(Listing(), (Names{"chain.h", "dangling.h", "real", "rel.h"}));
  EXPECT_EQ(Listing("real"), (Names{"new.h", "t.h"}));
  // A loop of links is refused.
  fs::create_symlink(Path("loop2"), Path("loop1"));
  fs::create_symlink(Path("loop1"), Path("loop2"));
  EXPECT_FALSE(rm::WriteFileAtomically(Path("loop1"), "x", &error));
  EXPECT_FALSE(error.empty());
}

TEST_F(FileWrite, WritesIntoAFifoThatIsReadMeanwhile) {
  const std::string fifo = Path("pipe");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  std::string data(3 << 20, '\0');  // more than a pipe holds: the writer must wait for the reader
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>('a' + i % 23);
  std::string received;
  std::thread reader([&] { received = ReadFile(fifo); });
  std::string error;
  const bool written = rm::WriteFileAtomically(fifo, data, &error);
  reader.join();
  EXPECT_TRUE(written) << error;
  EXPECT_TRUE(received == data) << received.size() << " bytes received";
  struct stat st {};
  ASSERT_EQ(::lstat(fifo.c_str(), &st), 0);
  EXPECT_TRUE(S_ISFIFO(st.st_mode));
  EXPECT_EQ(Listing(), Names{"pipe"});
}

TEST_F(FileWrite, DevNullIsWrittenIntoNotReplaced) {
  struct stat before {
  }, after{};
  ASSERT_EQ(::stat("/dev/null", &before), 0);
  std::string error;
  EXPECT_TRUE(rm::WriteFileAtomically("/dev/null", "nothing\n", &error)) << error;
  ASSERT_EQ(::stat("/dev/null", &after), 0);
  EXPECT_TRUE(S_ISCHR(after.st_mode));
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(before.st_rdev, after.st_rdev);
  if (fs::exists("/dev/full")) {
    EXPECT_FALSE(rm::WriteFileAtomically("/dev/full", "x", &error));
    EXPECT_EQ(error, std::strerror(ENOSPC));
  }
}

TEST_F(FileWrite, ReadOnlyFilesAndFoldersAreRefusedAndLeftAlone) {
  Put("ro.h", "keep\n");
  ASSERT_EQ(::chmod(Path("ro.h").c_str(), 0444), 0);
  std::string error;
  // Refused even where the system would allow it (tests often run as the administrator).
  EXPECT_FALSE(rm::WriteFileAtomically(Path("ro.h"), "new\n", &error));
  EXPECT_EQ(error, "the file is read-only");
  rm::TextLines lines;
  lines.Add("new");
  EXPECT_FALSE(lines.SaveToFile(Path("ro.h"), &error));
  EXPECT_EQ(ReadFile(Path("ro.h")), "keep\n");
  EXPECT_EQ(Mode(Path("ro.h")), 0444u);
  // The same through a link.
  fs::create_symlink(Path("ro.h"), Path("link.h"));
  EXPECT_FALSE(rm::WriteFileAtomically(Path("link.h"), "new\n", &error));
  EXPECT_EQ(ReadFile(Path("ro.h")), "keep\n");
  // A folder is no file.
  fs::create_directories(Path("dir.h"));
  EXPECT_FALSE(rm::WriteFileAtomically(Path("dir.h"), "x", &error));
  EXPECT_EQ(error, std::strerror(EISDIR));
  EXPECT_EQ(Listing(), (Names{"dir.h", "link.h", "ro.h"}));
}

TEST_F(FileWrite, AKilledWriteLeavesTheOldFileAndNoTemporary) {
  Put("big.h", "old\n");
  const std::string data(4 << 20, 'x');
  // The child writes more than it may: the system kills it half way, as a user or a crash would.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_DFL);
    const rlimit limit{1 << 20, 1 << 20};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    rm::WriteFileAtomically(Path("big.h"), data);
    ::_exit(0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status)) << "the write was not killed";
  EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
  EXPECT_EQ(ReadFile(Path("big.h")), "old\n");
  EXPECT_EQ(Listing(), Names{"big.h"});
}

TEST_F(FileWrite, NamedTemporariesWhereNamelessFilesAreMissing) {
  Put("a.h", "old\n");
  ASSERT_EQ(::chmod(Path("a.h").c_str(), 0600), 0);
  // Left by writers that were killed: a process that is gone and one that still runs.
  const std::string gone = Path("a.h.tmp2147483646"), running = Path("a.h.tmp1"), other = Path("b.h.tmp2147483646");
  for (const auto& stale : {gone, running, other}) std::ofstream(stale) << "half";
  const std::time_t hourAgo = std::time(nullptr) - 3600;
  const timespec times[2] = {{hourAgo, 0}, {hourAgo, 0}};
  for (const auto& stale : {gone, running, other}) ASSERT_EQ(::utimensat(AT_FDCWD, stale.c_str(), times, 0), 0);
  EXPECT_EQ(rm::StaleTemporaries(Path("a.h")), Names{gone});
  std::string error;
  ASSERT_TRUE(rm::detail::WriteFileThroughTemporaryName(Path("a.h"), "new\n", &error)) << error;
  EXPECT_EQ(ReadFile(Path("a.h")), "new\n");
  EXPECT_EQ(Mode(Path("a.h")), 0600u);
  // The dead writer's leftover went; the living one's, and another file's, stay.
  EXPECT_EQ(Listing(), (Names{"a.h", "a.h.tmp1", "b.h.tmp2147483646"}));
  // The ordinary road cleans up as well.
  std::ofstream(gone) << "half";
  ASSERT_EQ(::utimensat(AT_FDCWD, gone.c_str(), times, 0), 0);
  ASSERT_TRUE(rm::WriteFileAtomically(Path("a.h"), "newer\n", &error)) << error;
  EXPECT_EQ(Listing(), (Names{"a.h", "a.h.tmp1", "b.h.tmp2147483646"}));
}

TEST_F(FileWrite, RegularTargetsAndNewFiles) {
  Put("f.h", "x");
  fs::create_symlink(Path("f.h"), Path("l.h"));
  ASSERT_EQ(::mkfifo(Path("fifo").c_str(), 0600), 0);
  fs::create_directories(Path("d"));
  const std::pair<std::string, bool> cases[] = {
      {Path("f.h"), true}, {Path("l.h"), true},  {Path("new.h"), true}, {Path("fifo"), false},
      {Path("d"), false},  {"/dev/null", false}, {"-", false},          {"", false},
  };
  for (const auto& [path, regular] : cases) EXPECT_EQ(rm::IsRegularTarget(path), regular) << path;

  std::string error;
  EXPECT_TRUE(rm::CreateNewFile(Path("n.LCD"), &error)) << error;
  EXPECT_EQ(ReadFile(Path("n.LCD")), "");
  EXPECT_FALSE(rm::CreateNewFile(Path("f.h"), &error));
  EXPECT_EQ(error, std::strerror(EEXIST));
  EXPECT_EQ(ReadFile(Path("f.h")), "x");
}

TEST_F(FileWrite, InUseTellsReadersOnlyOfExclusiveLocks) {
  Put("p.LCD", "[S]\n");
  const std::string path = Path("p.LCD");
  EXPECT_FALSE(rm::IsFileInUse(path, rm::FileUse::Read));
  EXPECT_FALSE(rm::IsFileInUse(path, rm::FileUse::Write));
  EXPECT_FALSE(rm::IsFileInUse(Path("missing.LCD")));
  // Another reader (a shared lock) keeps nobody from reading, but a writer out.
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(fd, LOCK_SH), 0);
  EXPECT_FALSE(rm::IsFileInUse(path, rm::FileUse::Read));
  EXPECT_TRUE(rm::IsFileInUse(path, rm::FileUse::Write));
  ASSERT_EQ(::flock(fd, LOCK_EX), 0);
  EXPECT_TRUE(rm::IsFileInUse(path, rm::FileUse::Read));
  EXPECT_TRUE(rm::IsFileInUse(path, rm::FileUse::Write));
  ::close(fd);
  EXPECT_FALSE(rm::IsFileInUse(path, rm::FileUse::Read));
}

}  // namespace
