#include "cli/BatchCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "cli/StdoutCheck.h"
#include "engine/TextLines.h"
#include "shell/Application.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/BatchJob.h"
#include "shell/FolderBatchJob.h"
#include "shell/GraphicBatchJob.h"
#include "shell/ConsoleSession.h"
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

// The files of the folder in name order: a line for each that failed (and, with -v, what the
// program said), the progress on a terminal, a summary at the end.
int RunFolder(const BatchOptions& o, const volatile std::sig_atomic_t& interrupted) {
  if (!o.textFile.empty() || !o.output.empty() || !o.report.empty())
    return Report(JobOutcome::Failed("batch --folder writes into the Output folder: no TEXTFILE, -o or --report", 2));
  SystemClock clock;
  PlatformImageCodecs codecs;
  FolderBatchRequest request{o.batchFile, o.folder, o.extension, o.project, o.outputDir, o.jobs};
  bool progressOpen = false;
  const FolderBatchResult result =
      RunBatchOverFolder(request, codecs, clock, &interrupted, [&](int done, int total, const FolderFileResult& f) {
        if (!o.terminal) return;
        std::fprintf(stderr, "\r[%d/%d] %s\033[K", done, total, f.name.c_str());
        progressOpen = true;
      });
  if (progressOpen) std::fprintf(stderr, "\r\033[K");
  if (!result.outcome.Done()) return Report(result.outcome);
  int written = 0;
  for (const FolderFileResult& f : result.files) {
    written += static_cast<int>(f.outcome.filesWritten.size());
    if (f.outcome.Done() && !o.verbose) continue;
    if (!f.outcome.Done()) std::fprintf(stderr, "%s: failed: %s\n", f.name.c_str(), f.outcome.error.c_str());
    for (const std::string& m : f.messages)
      std::fprintf(stderr, "%s:   %s\n", f.name.c_str(), MessageForConsole(m).c_str());
  }
  const int total = static_cast<int>(result.files.size());
  std::fprintf(stderr, "%d files: %d done, %d failed, %d files written%s\n", total, total - result.failed,
               result.failed, written, result.interrupted ? "; interrupted, the rest not started" : "");
  return result.failed > 0 || result.interrupted ? 1 : 0;
}

}  // namespace

CLI::App* AddBatchCommand(CLI::App& app, BatchOptions& o) {
  CLI::App* c = app.add_subcommand(
      "batch", "Run a batch (.SPP) over a text file, or a graphic batch (.SIP, .SPP) over a picture or a folder");
  c->add_option("BATCH", o.batchFile,
                "The batch file; without an extension BATCH.sip, then BATCH.spp, here or in the Batch folder")
      ->required();
  auto* text = c->add_option("TEXTFILE", o.textFile, "The text to rewrite")->check(CLI::ExistingFile);
  auto* graphic = c->add_option("--graphic", o.graphic,
                                "The picture the batch's 'load graphic' loads; its data file goes to the Output "
                                "folder under the picture's name");
  auto* folder =
      c->add_option("--folder", o.folder,
                    "Run the batch on every file of this folder: on pictures when it drives the canvas, else on texts "
                    "(each rewritten text goes to the Output folder under its name)");
  text->excludes(graphic)->excludes(folder);
  graphic->excludes(folder);
  c->add_option("--ext", o.extension,
                "With --folder: the files taken (default: the project's, .bmp for pictures, .txt for texts)")
      ->needs(folder);
  c->add_option("-j,--jobs", o.jobs, "With --folder: pictures converted at once (default: one per processor)")
      ->check(CLI::Range(1, 256))
      ->needs(folder);
  c->add_option("--output-dir", o.outputDir,
                "The folder the batch writes into, instead of the project's Output folder");
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
  if (!o.folder.empty()) return RunFolder(o, interrupted);
  if (o.graphic.empty() && o.textFile.empty())
    return Report(JobOutcome::Failed("batch: give a TEXTFILE, --graphic PICTURE or --folder DIR", 2));
  ConsoleUi ui(stderr, &interrupted);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  PlatformImageCodecs codecs;
  app.codecs = &codecs;
  const JobOutcome outcome = o.graphic.empty() ? RunTextBatch(app, {o.batchFile, o.textFile, o.project, o.outputDir})
                                               : RunGraphicBatch(app, {o.batchFile, o.graphic, o.project, o.outputDir});
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

CLI::App* AddConsoleCommand(CLI::App& app, BatchOptions& o) {
  CLI::App* c = app.add_subcommand(
      "console", "A text session: lines \"RASTERMILL BATCH FILE\" run a batch on a file, \"?\" helps, \"EXIT\" ends");
  c->add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c->add_option("--output-dir", o.outputDir,
                "The folder the batches write into, instead of the project's Output folder");
  c->add_flag("-v,--verbose", o.verbose, "Print every step of the log");
  return c;
}

int RunConsoleCommand(const BatchOptions& o, const volatile std::sig_atomic_t& interrupted) {
  ConsoleUi ui(stderr, &interrupted);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  PlatformImageCodecs codecs;
  return RunConsoleSession(std::cin, std::cout, ui, clock, codecs, {o.project, o.outputDir}) == 0 ? 0 : 1;
}

}  // namespace rmcli
