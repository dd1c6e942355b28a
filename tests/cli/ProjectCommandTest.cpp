#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/ProgramVersion.h"
#include "shell/Folders.h"
#include "support/TestSupport.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using rmtest::ReadFile;

struct Result {
  int status = -1;
  std::string out, err;
};

// The built program run in a home folder of the test's own.
class ProjectCli : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
    fs::create_directories(dir_ + "/home");
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string Inits() const {
    return dir_ + "/home/Documents/Rastermill inits " + rm::ProgramVersionTag() + "/";
  }

  Result Run(std::vector<std::string> args) {
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e)
      if (std::string(*e).rfind("RASTERMILL_HOME=", 0) != 0) env.emplace_back(*e);
    env.push_back("RASTERMILL_HOME=" + dir_ + "/home");
    args.insert(args.begin(), RM_CLI_PATH);
    std::vector<char*> argv, envp;
    for (auto& a : args) argv.push_back(a.data());
    for (auto& e : env) envp.push_back(e.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);

    Result r;
    int outPipe[2], errPipe[2];
    if (pipe(outPipe) != 0 || pipe(errPipe) != 0) {
      ADD_FAILURE() << "pipe: " << std::strerror(errno);
      return r;
    }
    const pid_t pid = fork();
    if (pid == 0) {
      if (dup2(outPipe[1], 1) < 0 || dup2(errPipe[1], 2) < 0) _exit(126);
      for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) close(fd);
      execve(argv[0], argv.data(), envp.data());
      _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    std::string* sinks[2] = {&r.out, &r.err};
    for (int open = 2; open > 0;) {
      if (poll(fds, 2, -1) < 0) {
        if (errno == EINTR) continue;
        break;
      }
      for (int i = 0; i < 2; ++i) {
        if (fds[i].fd < 0 || fds[i].revents == 0) continue;
        char buf[4096];
        const ssize_t n = read(fds[i].fd, buf, sizeof buf);
        if (n > 0) {
          sinks[i]->append(buf, static_cast<std::size_t>(n));
        } else if (n == 0 || errno != EINTR) {
          close(fds[i].fd);
          fds[i].fd = -1;
          --open;
        }
      }
    }
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid) {
      ADD_FAILURE() << "could not start " << RM_CLI_PATH;
      return r;
    }
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    EXPECT_NE(r.status, 127) << "could not run " << RM_CLI_PATH;
    return r;
  }

  std::string dir_;
};

TEST_F(ProjectCli, FirstRunListsTheDefaultProjectWithItsTemplates) {
  const Result r = Run({"project", "list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "* default.LCD\n");
  EXPECT_EQ(r.err, "");
  for (const char* f : {"default.LCD", "default.txt", "default_Raw.txt", "default_Struct.txt", "default_DMD.txt",
                        "default_Bloc.txt"})
    EXPECT_TRUE(fs::exists(Inits() + f)) << f;
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

TEST_F(ProjectCli, NewActivateRenameDeleteRoundTrip) {
  Result r = Run({"project", "new"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "New Project.LCD\n");
  EXPECT_NE(r.err.find("Warning: Project named \"New Project\" was created !"), std::string::npos) << r.err;
  r = Run({"project", "new"});
  EXPECT_EQ(r.out, "New Project(1).LCD\n");
  EXPECT_NE(r.err.find("Warning:  Project named \"New Project (1)\" was created !"), std::string::npos) << r.err;

  // The new project is the active one from then on.
  EXPECT_EQ(Run({"project", "list"}).out, "  default.LCD\n  New Project.LCD\n* New Project(1).LCD\n");
  r = Run({"project", "show"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "project: " + Inits() + "New Project(1).LCD");
  EXPECT_NE(r.out.find("header template: " + Inits() + "New Project(1).txt\n"), std::string::npos) << r.out;

  // A settings change of the active project follows it through activation and back.
  EXPECT_EQ(Run({"settings", "--project", Inits() + "New Project.LCD", "set", "FXHB", "B"}).status, 0);
  EXPECT_EQ(Run({"project", "activate", "New Project"}).status, 0);
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "New Project.LCD\n");
  EXPECT_EQ(Run({"settings", "--project", Inits() + "New Project.LCD", "get", "FXHB"}).out, "B\n");

  r = Run({"project", "rename", "New Project", "board"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.err.find("Project has been renamed"), std::string::npos) << r.err;
  EXPECT_EQ(Run({"project", "list"}).out, "* board.LCD\n  default.LCD\n  New Project(1).LCD\n");
  EXPECT_TRUE(fs::exists(Inits() + "board.txt"));

  // Deleting asks; without --yes the safe answer keeps the project.
  r = Run({"project", "delete", "New Project(1).LCD"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("Please confirm to delete this project  !"), std::string::npos) << r.err;
  EXPECT_TRUE(fs::exists(Inits() + "New Project(1).LCD"));
  r = Run({"project", "delete", "New Project(1).LCD", "--yes"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.err.find("Project Deleted: Project has been deleted !"), std::string::npos) << r.err;
  EXPECT_FALSE(fs::exists(Inits() + "New Project(1).LCD"));
  EXPECT_FALSE(fs::exists(Inits() + "New Project(1).txt"));
}

TEST_F(ProjectCli, RefusalsAndUsage) {
  ASSERT_EQ(Run({"project", "new"}).status, 0);  // "New Project.LCD", now active
  const struct {
    std::vector<std::string> args;
    int status;
    const char* stderrHas;
  } cases[] = {
      {{"project", "delete", "default", "--yes"}, 1, "This project can not be deleted !"},
      {{"project", "delete", "New Project", "--yes"}, 1, "Active project can not be deleted !"},
      {{"project", "rename", "default.LCD", "x"}, 1, "This default project can not be renamed !"},
      {{"project", "rename", "New Project", "default"}, 1, "There is already another project named like this !"},
      {{"project", "activate", "nowhere"}, 1, "no project named \"nowhere.LCD\""},
      {{"project", "delete", "nowhere"}, 1, "no project named"},
      {{"project", "--project", dir_ + "/missing.LCD", "list"}, 1, "missing.LCD"},
      {{"project"}, 2, "subcommand"},
      {{"project", "rename", "only-one"}, 2, "NEW"},
      {{"project", "activate"}, 2, "NAME"},
      {{"project", "sideways"}, 2, "subcommand"},
  };
  for (const auto& c : cases) {
    std::string line;
    for (const auto& a : c.args) line += a + " ";
    SCOPED_TRACE(line);
    const Result r = Run(c.args);
    EXPECT_EQ(r.status, c.status) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find(c.stderrHas), std::string::npos) << r.err;
  }
  EXPECT_EQ(Run({"project", "list"}).out, "  default.LCD\n* New Project.LCD\n");
}

TEST_F(ProjectCli, AnotherProjectFileAndItsFolder) {
  const std::string other = dir_ + "/elsewhere";
  fs::create_directories(other);
  std::ofstream(other + "/panel.LCD") << "[S]\nFXHB=D\n";
  std::ofstream(other + "/spare.lcd") << "[S]\n";
  Result r = Run({"project", "--project", other + "/panel.LCD", "list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "* panel.LCD\n  spare.lcd\n");
  r = Run({"project", "show", "--project", other + "/panel.LCD"});
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "project: " + other + "/panel.LCD");
  EXPECT_TRUE(fs::exists(other + "/panel.txt"));  // the graphics template, made when missing
  // The pointer still names the home's own default project.
  EXPECT_EQ(ReadFile(Inits() + "Rastermill.ini"), Inits() + "default.LCD\n");
}

TEST_F(ProjectCli, HelpListsEveryCommandAndOption) {
  const Result r = Run({"project", "--help"});
  EXPECT_EQ(r.status, 0);
  for (const char* word : {"list", "new", "activate", "rename", "delete", "show", "--project", "--yes", "--verbose"})
    EXPECT_NE(r.out.find(word), std::string::npos) << word;
  EXPECT_NE(Run({"--help"}).out.find("project"), std::string::npos);
}

}  // namespace
