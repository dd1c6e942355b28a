#pragma once
#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Clock;
class ImageCodecs;

// One batch run over every file of a folder, each as `RunGraphicBatch` runs it on one picture
// (a batch that drives the canvas), or as `RunTextBatch` runs it on one text, whose rewritten
// text goes to the output folder under its own name: the same files come out whether the files
// go one by one or side by side.
struct FolderBatchRequest {
  std::string batchFile;
  std::string folder;
  std::string extension;  // ".png": the files taken, compared without case; empty: the project's
                          // (mgex for pictures, mext for texts)
  std::string project;
  std::string outputDir;  // empty: the project's Output folder
  int jobs = 0;           // pictures converted at once; 0: one per processor
};

struct FolderFileResult {
  std::string name;  // the file name in the folder
  JobOutcome outcome;
  std::vector<std::string> messages;  // what the program said during the file's run, in order
};

struct FolderBatchResult {
  JobOutcome outcome;                   // a refusal of the whole run (no batch, no folder); else done
  std::vector<FolderFileResult> files;  // in name order; a file not started (interrupted) is absent
  int failed = 0;
  bool interrupted = false;
};

// Hears of each file as it ends: how many are done of how many, and the one just done.
using FolderProgress = std::function<void(int done, int total, const FolderFileResult& file)>;

// Runs the batch over the folder's files in name order. A file that fails is reported and the run
// goes on. `codecs` decodes for every worker; `interrupted` (the front end's Esc) stops the run
// before the next file.
FolderBatchResult RunBatchOverFolder(const FolderBatchRequest& request, ImageCodecs& codecs, Clock& clock,
                                     const volatile std::sig_atomic_t* interrupted,
                                     const FolderProgress& progress = {});

}  // namespace rm
