// Files are never lost or half-written, whatever the output names and however many of the
// program's processes work on one project at once: the built program run as users run it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"
#include "support/TestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::Launch;
using rmtest::ReadFile;
using Result = rmtest::CliResult;

using rmtest::Args;
using rmtest::Has;
using rmtest::Names;

class FileSafety : public rmtest::CliFixture {
 protected:
  // Runs every command at once, each in a process of its own.
  std::vector<Result> RunTogether(const std::vector<Args>& commands) {
    std::vector<Result> results(commands.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < commands.size(); ++i)
      threads.emplace_back([this, i, &commands, &results] { results[i] = Run(commands[i]); });
    for (auto& t : threads) t.join();
    return results;
  }
  std::string Out(const std::string& name) const { return out_ + "/" + name; }
  std::string Picture(int w = 32, int h = 16) {
    return Png("p.png", rmtest::PatternPicture(w, h, {rm::kBlack, rm::kWhite}, 11));
  }
};

// Fifty commands changing fifty different keys of one project at once, the first of them on a
// first run: every change is kept.
TEST_F(FileSafety, SettingsChangedSideBySideAreAllKept) {
  std::vector<std::pair<std::string, std::string>> changes;
  for (const char* key : {"CHBRK", "CWBRK", "CARK", "XOFSRK", "YOFSRK", "SARK", "CHARSBRK", "CSBRK", "CSPBRK"})
    for (const char* kind : {"_r", "_s", "_b", "_d"})
      changes.emplace_back(std::string(key) + kind, std::to_string(100 + changes.size()));
  for (int i = 0; changes.size() < 50; ++i) changes.emplace_back("mru" + std::to_string(i), "/w/" + std::to_string(i));
  std::vector<Args> commands;
  for (const auto& [key, value] : changes) commands.push_back({"settings", "set", key, value});
  const std::vector<Result> results = RunTogether(commands);
  for (std::size_t i = 0; i < results.size(); ++i) EXPECT_EQ(results[i].status, 0) << results[i].err;

  const Result list = Run({"settings", "list"});
  ASSERT_EQ(list.status, 0) << list.err;
  for (const auto& [key, value] : changes) EXPECT_TRUE(Has(list.out, "] " + key + "=" + value + "\n")) << key;
  // Nothing but the project's own files (and the lock) in the folder: no temporaries left.
  for (const auto& name : Names(Inits())) EXPECT_EQ(name.find(".tmp"), std::string::npos) << name;
}

// Readers never take a project that is being rewritten for a missing one: no factory value.
TEST_F(FileSafety, ReadersSideBySideWithWritersSeeTheProjectsValue) {
  ASSERT_EQ(Run({"settings", "set", "GWI", "100"}).status, 0);
  std::vector<Args> commands;
  for (int i = 0; i < 24; ++i) {
    if (i % 3 == 0)
      commands.push_back({"settings", "set", "mru" + std::to_string(i / 3), "/w/" + std::to_string(i)});
    else
      commands.push_back({"settings", "get", "GWI"});
  }
  const std::vector<Result> results = RunTogether(commands);
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_EQ(results[i].status, 0) << results[i].err;
    if (commands[i][1] == "get") {
      EXPECT_EQ(results[i].out, "100\n") << results[i].err;
    }
    EXPECT_FALSE(Has(results[i].err, "opened by another application")) << results[i].err;
  }
}

TEST_F(FileSafety, AnswersThatCannotBePrintedAreFailures) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  ASSERT_EQ(Run({"project", "list"}).status, 0);
  Launch full;
  full.stdoutFile = "/dev/full";
  // The large picture fills the stream's buffer, so the error appears during the write, not at
  // the final flush.
  for (const Args& args : std::vector<Args>{{"settings", "list"},
                                            {"settings", "get", "GWI"},
                                            {"project", "list"},
                                            {"project", "show"},
                                            {"convert", Picture(256, 128)},
                                            {"convert", Png("small.png", rm::Bitmap(8, 1))}}) {
    const Result r = Run(args, full);
    EXPECT_EQ(r.status, 1) << args[0] << " " << args[1];
    EXPECT_TRUE(Has(r.err, "rastermill: standard output: No space left on device")) << r.err;
  }
  // A new project is made, but its name could not be told: a failure all the same.
  const Result made = Run({"project", "new"}, full);
  EXPECT_EQ(made.status, 1);
  EXPECT_TRUE(Has(made.err, "standard output")) << made.err;
}

// A project made or activated on a full disk: the command fails and nothing is half done.
TEST_F(FileSafety, ProjectsAreMadeAndActivatedWholeOrNotAtAll) {
  ASSERT_EQ(Run({"project", "list"}).status, 0);
  const std::string pointer = ReadFile(Inits() + "Rastermill.ini");
  const auto before = Names(Inits());
  Launch fullDisk;
  fullDisk.maxFileSize = 2000;  // the header template fits, the project file does not

  Result r = Run({"project", "new"}, fullDisk);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_TRUE(Has(r.err, "Project New Project.LCD could not be created : Cannot write")) << r.err;
  EXPECT_EQ(Names(Inits()), before);
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), pointer);

  ASSERT_EQ(Run({"project", "new"}).status, 0);
  const std::string other = ReadFile(Inits() + "Rastermill.ini");
  ASSERT_EQ(other, Inits() + "New Project.LCD\n");
  const std::string project = ReadFile(Inits() + "New Project.LCD");
  r = Run({"project", "activate", "default"}, fullDisk);
  EXPECT_EQ(r.status, 1);
  EXPECT_TRUE(Has(r.err, "the present project could not be saved")) << r.err;
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), other);
  EXPECT_EQ(ReadFile(Inits() + "New Project.LCD"), project);

  // The pointer itself cannot be written: not activated either.
  ASSERT_EQ(::chmod((Inits() + "Rastermill.ini").c_str(), 0444), 0);
  r = Run({"project", "activate", "default"});
  EXPECT_EQ(r.status, 1);
  EXPECT_TRUE(Has(r.err, " Init file is opened by another application or was deleted ! ")) << r.err;
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), other);
  ASSERT_EQ(::chmod((Inits() + "Rastermill.ini").c_str(), 0644), 0);
  EXPECT_EQ(Run({"project", "activate", "default"}).status, 0);
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

// The output names a link, a device, a FIFO or a read-only file.
TEST_F(FileSafety, ConvertOutputsOfEveryKind) {
  const std::string picture = Picture();
  ASSERT_EQ(Run({"convert", picture, "-o", Out("plain.h")}).status, 0);
  // The same table, but for the closing comment, which names the parameter file written beside
  // a regular file.
  const auto table = [](std::string text) {
    const std::size_t at = text.find("/* Save table and see info file ");
    return at == std::string::npos ? text : text.erase(at, text.find('\n', at) - at);
  };
  const std::string expected = table(ReadFile(Out("plain.h")));

  // A link: its target gets the data, the link stays, the parameter file goes beside the link.
  fs::create_directories(dir_ + "/real");
  std::ofstream(dir_ + "/real/target.h") << "old\n";
  fs::create_symlink(dir_ + "/real/target.h", Out("link.h"));
  Result r = Run({"convert", picture, "-o", Out("link.h")});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(fs::is_symlink(Out("link.h")));
  EXPECT_EQ(table(ReadFile(dir_ + "/real/target.h")), expected);
  EXPECT_NE(ReadFile(dir_ + "/real/target.h").find("see info file " + Out("link.rtf")), std::string::npos);
  EXPECT_EQ(Names(dir_ + "/real"), Args{"target.h"});

  // /dev/null takes the data and stays what it is; no parameter file beside it.
  struct stat before {
  }, after{};
  ASSERT_EQ(::stat("/dev/null", &before), 0);
  r = Run({"convert", picture, "-o", "/dev/null"});
  EXPECT_EQ(r.status, 0) << r.err;
  ASSERT_EQ(::stat("/dev/null", &after), 0);
  EXPECT_TRUE(S_ISCHR(after.st_mode));
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_FALSE(fs::exists("/dev/null.rtf"));

  // A FIFO is written into while another program reads it.
  ASSERT_EQ(::mkfifo(Out("pipe.h").c_str(), 0600), 0);
  std::string received;
  std::thread reader([&] { received = ReadFile(Out("pipe.h")); });
  r = Run({"convert", picture, "-o", Out("pipe.h")});
  // Should the program never have opened the FIFO, the reader is let go rather than left waiting.
  const int unblock = ::open(Out("pipe.h").c_str(), O_WRONLY | O_NONBLOCK);
  if (unblock >= 0) ::close(unblock);
  reader.join();
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(table(received), expected);
  EXPECT_FALSE(fs::exists(Out("pipe.rtf")));
  EXPECT_EQ(received.find("pipe.rtf"), std::string::npos);

  // A read-only file is refused and left as it was.
  std::ofstream(Out("ro.h")) << "keep\n";
  ASSERT_EQ(::chmod(Out("ro.h").c_str(), 0444), 0);
  r = Run({"convert", picture, "-o", Out("ro.h")});
  EXPECT_EQ(r.status, 1);
  EXPECT_TRUE(Has(r.err, Out("ro.h") + ": the file is read-only")) << r.err;
  EXPECT_EQ(ReadFile(Out("ro.h")), "keep\n");
  EXPECT_FALSE(fs::exists(Out("ro.rtf")));

  EXPECT_EQ(Names(dir_ + "/out"), (Args{"link.h", "link.rtf", "pipe.h", "plain.h", "plain.rtf", "ro.h"}));
}

// The settings of a conversion are kept only once its output is whole.
TEST_F(FileSafety, SavedSettingsFollowTheOutput) {
  const std::string picture = Picture(256, 128);
  ASSERT_EQ(Run({"project", "list"}).status, 0);
  const std::string project = ReadFile(Inits() + "default.LCD");
  ASSERT_GT(project.size(), 4000u);
  const std::string outputFolder = Run({"settings", "get", "OFP"}).out;
  Launch fullDisk;
  fullDisk.maxFileSize = project.size() + 4000;  // room for the project, not for the output
  Result r = Run({"convert", picture, "-o", Out("big.h"), "--direction", "td", "--save-settings"}, fullDisk);
  EXPECT_EQ(r.status, 1);
  EXPECT_FALSE(fs::exists(Out("big.h")));
  EXPECT_EQ(ReadFile(Inits() + "default.LCD"), project);

  r = Run({"convert", picture, "-o", Out("big.h"), "--direction", "td", "--save-settings"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"settings", "get", "td"}).out, "1\n");
  // The project keeps its own Output files folder, not the one the parameter file went to.
  EXPECT_EQ(Run({"settings", "get", "OFP"}).out, outputFolder);
  EXPECT_TRUE(fs::exists(Out("big.rtf")));
}

}  // namespace
