#pragma once
#include <csignal>
#include <string>

namespace CLI {
class App;
}

namespace rmcli {

struct BatchOptions {
  std::string batchFile, textFile;
  std::string output;  // -o: empty or "-": standard output
  std::string report;  // --report: the batch report's file
  std::string project;
  bool verbose = false;
  // grid run
  bool single = false;
};

// rastermill batch BATCH.SPP TEXTFILE [-o OUT] [--report FILE]
CLI::App* AddBatchCommand(CLI::App& app, BatchOptions& options);
// rastermill grid run TEXTFILE [--project F] [--single] [-o OUT]
CLI::App* AddGridCommand(CLI::App& app, BatchOptions& options);
// Exit status: 0 done; 1 refused or not written.
int RunBatchCommand(const BatchOptions& options, const volatile std::sig_atomic_t& interrupted);
int RunGridCommand(const BatchOptions& options);

}  // namespace rmcli
