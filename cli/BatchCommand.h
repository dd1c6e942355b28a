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
  // A graphic batch: on one picture, or on the pictures of a folder.
  std::string graphic;
  std::string folder;
  std::string extension;
  int jobs = 0;
  std::string outputDir;
  bool terminal = false;  // stderr is a terminal: show the progress of a folder run
};

// rastermill batch BATCH.SPP TEXTFILE [-o OUT] [--report FILE]
// rastermill batch BATCH[.SIP|.SPP] --graphic PICTURE [-o OUT] [--output-dir DIR]
// rastermill batch BATCH --folder DIR [--ext .png] [-j N] [--output-dir DIR]
CLI::App* AddBatchCommand(CLI::App& app, BatchOptions& options);
// rastermill grid run TEXTFILE [--project F] [--single] [-o OUT]
CLI::App* AddGridCommand(CLI::App& app, BatchOptions& options);
// Exit status: 0 done; 1 refused or not written, or a file of a folder failed; 2 a usage error.
int RunBatchCommand(const BatchOptions& options, const volatile std::sig_atomic_t& interrupted);
int RunGridCommand(const BatchOptions& options);
// rastermill console [--project F] [--output-dir DIR]: the console session on stdin and stdout.
// Exit status: 0 when every run of the session went well, 1 otherwise.
CLI::App* AddConsoleCommand(CLI::App& app, BatchOptions& options);
int RunConsoleCommand(const BatchOptions& options, const volatile std::sig_atomic_t& interrupted);

}  // namespace rmcli
