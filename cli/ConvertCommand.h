#pragma once
#include <csignal>
#include <string>

#include "shell/ConvertJob.h"

namespace CLI {
class App;
}

namespace rmcli {

struct ConvertOptions {
  rm::ConvertRequest request;
  std::string output;  // -o: empty or "-": standard output
  bool verbose = false;
};

void AddConvertOptions(CLI::App& command, ConvertOptions& options);
// Every option of a conversion but its input: the display, the reduction, the data and -o.
void AddPictureOptions(CLI::App& command, ConvertOptions& options);
// The data scheme of a table: --mode, --direction, --origin, --msb-first/--msb-last, --width.
void AddSchemeOptions(CLI::App& command, rm::ConvertRequest& request);
// Exit status: 0 done; 1 refused or failed; 2 a usage error found after parsing (a bad --set,
// --area, --origin or --hex-offset, conflicting options), the same status the parser gives its
// own usage errors.
int RunConvert(const ConvertOptions& options, const volatile std::sig_atomic_t& interrupted, bool terminal);
const char* VersionText();

}  // namespace rmcli
