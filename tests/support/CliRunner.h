#pragma once
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>
#include <vector>

#include "engine/Bitmap.h"

namespace rmtest {

struct CliResult {
  int status = -1;  // the exit status; minus the signal number when killed
  std::string out, err;
};

// How to start the program beyond its arguments.
struct Launch {
  std::string cwd;
  std::string stdoutFile;              // stdout goes here instead of the capture pipe
  rlim_t maxFileSize = RLIM_INFINITY;  // RLIMIT_FSIZE, with SIGXFSZ ignored so writes fail instead
  std::vector<std::string> env;        // NAME=VALUE added to (or replacing in) the environment
};

// Runs the built rastermill with `args`, stdout and stderr captured through pipes, with `home`
// as its home folder (RASTERMILL_HOME) and SOURCE_DATE_EPOCH pinned to the clock the library
// tests use.
CliResult RunCli(const std::vector<std::string>& args, const std::string& home, const Launch& how = {});

using Args = std::vector<std::string>;
bool Has(const std::string& text, const std::string& part);
std::string Join(const Args& args);
Args Concat(Args a, const Args& b);
// The names in `folder`, sorted.
Args Names(const std::string& folder);

// A test of the built program in a home folder of its own, with folders for its pictures (in_)
// and outputs (out_), removed after.
class CliFixture : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  CliResult Run(const Args& args, const Launch& how = {}) { return RunCli(args, dir_ + "/home", how); }
  // A run that must fail with `status`, print nothing and say `why` on stderr.
  void ExpectRefused(const Args& args, int status, const std::string& why, const Launch& how = {});
  // `picture` saved as in_/name.
  std::string Png(const std::string& name, const rm::Bitmap& picture);
  // The program's inits folder in this home.
  std::string Inits() const;

  std::string dir_, in_, out_;
};

}  // namespace rmtest
