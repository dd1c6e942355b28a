#pragma once
#include <string>
#include <utility>
#include <vector>

namespace rm {

// What one of the program's jobs (a conversion, a project or settings command) came to, for a
// front end to show: what it made, or why it stopped.
struct JobOutcome {
  // 0 done; 1 refused or failed; 2 the request itself is wrong (a bad value, options that
  // conflict), the status a command line gives a usage error.
  int status = 0;
  std::string error;   // the reason, in the user's words; empty when done or when the program said it already
  std::string output;  // the text (or the bytes of a binary) made for the user
  std::vector<std::string> filesWritten;

  bool Done() const { return status == 0; }
  static JobOutcome Failed(std::string why, int status = 1) {
    JobOutcome o;
    o.status = status;
    o.error = std::move(why);
    return o;
  }
};

}  // namespace rm
