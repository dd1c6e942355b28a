#pragma once
#include <string>

namespace rm {
struct JobOutcome;
}

namespace rmcli {

// A command's answer on standard output counts only once it is all out: flushes standard output
// and returns `status`, or, when anything printed could not be written (a full disk, a closed
// pipe), says so on standard error and returns 1.
int FinishStdout(int status = 0);

// Writes `data` to standard output and flushes it; false with the system's reason when any of it
// was not written.
bool PrintWhole(const std::string& data, std::string& error);

// The outcome's reason, if any, on standard error; returns its exit status.
int Report(const rm::JobOutcome& outcome);

}  // namespace rmcli
