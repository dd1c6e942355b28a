#include "cli/BatchCommand.h"

#include <CLI/CLI.hpp>

#include "cli/StdoutCheck.h"
#include "engine/TextLines.h"
#include "shell/Application.h"
#include "shell/BatchJob.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;

namespace {

void AddCommon(CLI::App& c, BatchOptions& o) {
  c.add_option("-o,--output", o.output, "Write the text to this file; '-' or no option prints it");
  c.add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
}

int Deliver(const JobOutcome& outcome, const std::string& output) {
  if (!outcome.Done()) return Report(outcome);
  std::string error;
  if (output.empty() || output == "-") {
    if (!PrintWhole(outcome.output, error)) return Report(JobOutcome::Failed("standard output: " + error));
    return 0;
  }
  if (!WriteFileAtomically(output, outcome.output, &error)) return Report(JobOutcome::Failed(output + ": " + error));
  return 0;
}

}  // namespace

CLI::App* AddBatchCommand(CLI::App& app, BatchOptions& o) {
  CLI::App* c = app.add_subcommand("batch", "Run a text batch (.SPP) over a text file");
  c->add_option("BATCH", o.batchFile, "The batch file")->required();
  c->add_option("TEXTFILE", o.textFile, "The text to rewrite")->required()->check(CLI::ExistingFile);
  c->add_option("--report", o.report, "Write the batch report to this file");
  AddCommon(*c, o);
  return c;
}

CLI::App* AddGridCommand(CLI::App& app, BatchOptions& o) {
  CLI::App* grid = app.add_subcommand("grid", "The project's search and replace grid");
  grid->require_subcommand(1);
  CLI::App* run = grid->add_subcommand("run", "Run the grid's rows over a text file");
  run->add_option("TEXTFILE", o.textFile, "The text to rewrite")->required()->check(CLI::ExistingFile);
  run->add_flag("--single", o.single, "Each row acts on its first hit only");
  AddCommon(*run, o);
  return grid;
}

int RunBatchCommand(const BatchOptions& o, const volatile std::sig_atomic_t& interrupted) {
  ConsoleUi ui(stderr, &interrupted);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  const JobOutcome outcome = RunTextBatch(app, {o.batchFile, o.textFile, o.project});
  if (!o.report.empty() && outcome.status != 2) {
    std::string error;
    if (!WriteFileAtomically(o.report, app.reportText.Text(), &error))
      return Report(JobOutcome::Failed(o.report + ": " + error));
  }
  return Deliver(outcome, o.output);
}

int RunGridCommand(const BatchOptions& o) {
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  return Deliver(RunSearchReplaceGrid(app, {o.textFile, o.project, o.single}), o.output);
}

}  // namespace rmcli
