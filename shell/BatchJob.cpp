#include "shell/BatchJob.h"

#include <filesystem>

#include "postpro/BatchRunner.h"
#include "postpro/SearchReplaceGrid.h"
#include "shell/Application.h"
#include "shell/ProjectContext.h"
#include "shell/ProjectStore.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

JobOutcome LoadText(Application& app, const std::string& project, const std::string& textFile) {
  std::string error;
  if (!OpenProject(app, project, error)) return JobOutcome::Failed(error);
  std::error_code ec;
  if (!fs::is_regular_file(textFile, ec) || !app.mainText.LoadFromFile(textFile))
    return JobOutcome::Failed("cannot read the text file: " + textFile);
  return {};
}

// Runs the batch over the main text and says how it went in the words of `done` (the count
// follows them) under `title`.
JobOutcome RunOverMainText(Application& app, const std::string& batchFile, const std::string& done,
                           const std::string& title, int& occurrences, const std::string& outputDir = "") {
  const std::string output = outputDir.empty() ? app.globals.OutputRole : outputDir;
  BatchMemory memory;
  BatchRunner runner(app.mainText, app.reportText, app.ui, BatchFolders{output}, memory);
  runner.now = app.clock.Now();
  const fs::path batch(batchFile);
  const BatchRunResult result = runner.RunBatch({batch.parent_path().generic_string(), batch.filename().string()});
  if (!result.ran) return JobOutcome::Failed("", 1);
  for (const std::string& name : result.refused)
    app.ui.Notice("Batch file refused, it lies outside the Output folder " + output + ": " + name);
  if (result.aborted) return JobOutcome::Failed("the batch was stopped; the text was not written");
  occurrences = result.occurrences;
  app.ui.MessageDlg(done + std::to_string(result.occurrences) + " successful occurences found", title,
                    DlgType::Information, {"OK"});
  JobOutcome outcome;
  outcome.filesWritten = result.filesWritten;
  return outcome;
}

}  // namespace

JobOutcome RunTextBatch(Application& app, const BatchRequest& r) {
  if (JobOutcome loaded = LoadText(app, r.project, r.textFile); !loaded.Done()) return loaded;
  int occurrences = 0;
  JobOutcome done = RunOverMainText(app, r.batchFile, " Source file Processing done !\r ", "Processing information",
                                    occurrences, r.outputDir);
  if (done.Done()) done.output = app.mainText.Text();
  return done;
}

JobOutcome PostprocessText(Application& app, const std::string& batchFile) {
  int occurrences = 0;
  JobOutcome done =
      RunOverMainText(app, batchFile, " Text Postprocessing done !\r ", " Processing information", occurrences);
  if (done.Done()) {
    app.globals.PostProcessingFile = fs::path(batchFile).filename().string();
    app.globals.PostProcessingCount = occurrences;
  }
  return done;
}

JobOutcome RunSearchReplaceGrid(Application& app, const GridRequest& r) {
  if (JobOutcome loaded = LoadText(app, r.project, r.textFile); !loaded.Done()) return loaded;
  SearchReplaceGrid grid;
  // The grid's cells are the third of its sections.
  for (const auto& [section, keys] : app.globals.SearchReplaceSections)
    if (section == kSearchReplaceSections[2]) grid = SearchReplaceGrid::FromKeys(keys);
  const int counter = grid.Run(app.mainText, r.singleOccurrence);
  app.ui.Notice(OccurrencesLabel(counter));
  JobOutcome done;
  done.output = app.mainText.Text();
  return done;
}

}  // namespace rm
