#pragma once

namespace rmcli {

// A command's answer on standard output counts only once it is all out: flushes standard output
// and returns `status`, or, when anything printed could not be written (a full disk, a closed
// pipe), says so on standard error and returns 1.
int FinishStdout(int status = 0);

}  // namespace rmcli
