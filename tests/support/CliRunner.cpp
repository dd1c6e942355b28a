#include "support/CliRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "shell/Folders.h"
#include "platform/PlatformImageCodecs.h"
#include "support/TestSupport.h"

extern char** environ;

namespace rmtest {

namespace {

std::string NameOf(const std::string& assignment) { return assignment.substr(0, assignment.find('=') + 1); }

}  // namespace

CliResult RunCli(const std::vector<std::string>& args, const std::string& home, const Launch& how) {
  std::vector<std::string> added = {"SOURCE_DATE_EPOCH=1700000000", "RASTERMILL_HOME=" + home};
  added.insert(added.end(), how.env.begin(), how.env.end());
  std::vector<std::string> env;
  for (char** e = environ; *e; ++e) {
    const std::string v = *e;
    bool replaced = false;
    for (const auto& a : added) replaced = replaced || v.rfind(NameOf(a), 0) == 0;
    if (!replaced) env.push_back(v);
  }
  env.insert(env.end(), added.begin(), added.end());
  std::vector<std::string> argStrings{RM_CLI_PATH};
  argStrings.insert(argStrings.end(), args.begin(), args.end());
  std::vector<char*> argv, envp;
  for (auto& a : argStrings) argv.push_back(a.data());
  for (auto& e : env) envp.push_back(e.data());
  argv.push_back(nullptr);
  envp.push_back(nullptr);

  CliResult r;
  int outPipe[2], errPipe[2];
  if (pipe(outPipe) != 0 || pipe(errPipe) != 0) {
    ADD_FAILURE() << "pipe: " << std::strerror(errno);
    return r;
  }
  const pid_t pid = fork();
  if (pid == 0) {
    int out = outPipe[1];
    if (!how.stdoutFile.empty()) out = open(how.stdoutFile.c_str(), O_WRONLY);
    if (out < 0 || dup2(out, 1) < 0 || dup2(errPipe[1], 2) < 0) _exit(126);
    for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) close(fd);
    if (!how.cwd.empty() && chdir(how.cwd.c_str()) != 0) _exit(126);
    if (how.maxFileSize != RLIM_INFINITY) {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{how.maxFileSize, how.maxFileSize};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(126);
    }
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
      char buf[8192];
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
  EXPECT_NE(r.status, 126) << "the child could not be set up";
  EXPECT_NE(r.status, 127) << "could not run " << RM_CLI_PATH;
  return r;
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string Join(const Args& args) {
  std::string s;
  for (const auto& a : args) s += (s.empty() ? "" : " ") + a;
  return s;
}

Args Concat(Args a, const Args& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Args Names(const std::string& folder) {
  Args names;
  for (const auto& e : std::filesystem::directory_iterator(folder)) names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

void CliFixture::SetUp() {
  dir_ = MakeTempDir();
  ASSERT_FALSE(dir_.empty());
  in_ = dir_ + "/in";
  out_ = dir_ + "/out";
  for (const auto& d : {in_, out_, dir_ + "/home"}) std::filesystem::create_directories(d);
}

void CliFixture::TearDown() { std::filesystem::remove_all(dir_); }

void CliFixture::ExpectRefused(const Args& args, int status, const std::string& why, const Launch& how) {
  SCOPED_TRACE(Join(args));
  const CliResult r = Run(args, how);
  EXPECT_EQ(r.status, status) << r.err;
  EXPECT_EQ(r.out, "");
  EXPECT_TRUE(Has(r.err, why)) << r.err;
}

std::string CliFixture::Png(const std::string& name, const rm::Bitmap& picture) {
  const std::string path = in_ + "/" + name;
  std::string error;
  EXPECT_TRUE(rm::PlatformImageCodecs().SavePng(picture, path, error)) << error;
  return path;
}

std::string CliFixture::Inits() const {
  return dir_ + "/home/Documents/Rastermill inits " + rm::ProgramVersionTag() + "/";
}

}  // namespace rmtest
