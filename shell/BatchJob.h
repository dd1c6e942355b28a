#pragma once
#include <string>

#include "shell/JobOutcome.h"

namespace rm {

class Application;

// A text batch run over a text file, as "Run Active processing Batch on Editor" runs it over the
// main editor: the file is loaded into the editor, the batch rewrites it, the report goes to the
// editors' report text (`Application::reportText`). Files the batch saves or loads are named
// relative to the project's Output folder and never lie outside it.
struct BatchRequest {
  std::string batchFile;  // the .SPP file
  std::string textFile;   // the text to rewrite
  std::string project;    // another project file than the active one
  std::string outputDir;  // the Output folder of this run; empty: the project's
};
// The output is the rewritten text; the files the batch wrote are listed. A missing batch is
// refused with the program's own message (status 1, no reason).
JobOutcome RunTextBatch(Application& app, const BatchRequest& request);

// The post-processing of a conversion: the batch (a path, found already) rewrites the main text
// in place, and the parameter file hears of it. The files the batch wrote are listed; a batch
// stopped by Esc is a failure.
JobOutcome PostprocessText(Application& app, const std::string& batchFile);

// The search and replace grid the project keeps, run over a text file.
struct GridRequest {
  std::string textFile;
  std::string project;
  bool singleOccurrence = false;
};
// The output is the text after the grid's rows; the counter's label goes to the notices.
JobOutcome RunSearchReplaceGrid(Application& app, const GridRequest& request);

}  // namespace rm
