#pragma once
#include <sys/resource.h>

#include <string>
#include <vector>

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

}  // namespace rmtest
