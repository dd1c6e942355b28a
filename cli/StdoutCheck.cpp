#include "cli/StdoutCheck.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "shell/JobOutcome.h"

namespace rmcli {

int FinishStdout(int status) {
  errno = 0;
  // A failed write can empty the stream's buffer, after which fflush succeeds: the error flag
  // is the only trace left, so it is asked for as well.
  const bool flushed = std::fflush(stdout) == 0;
  const int err = errno;
  if (flushed && !std::ferror(stdout)) return status;
  std::fprintf(stderr, "rastermill: standard output: %s\n", std::strerror(err ? err : EIO));
  return 1;
}

bool PrintWhole(const std::string& data, std::string& error) {
  // As above, the error flag is the only trace left of a full disk once fflush has emptied the
  // buffer; the reason is the first failure's.
  const bool whole = std::fwrite(data.data(), 1, data.size(), stdout) == data.size();
  if (std::fflush(stdout) == 0 && whole && !std::ferror(stdout)) return true;
  error = std::strerror(errno ? errno : EIO);
  return false;
}

int Report(const rm::JobOutcome& outcome) {
  if (!outcome.error.empty()) std::fprintf(stderr, "rastermill: %s\n", outcome.error.c_str());
  return outcome.status;
}

}  // namespace rmcli
