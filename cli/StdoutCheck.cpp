#include "cli/StdoutCheck.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

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

}  // namespace rmcli
