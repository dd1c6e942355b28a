#include "cli/FontCommand.h"

#include <CLI/CLI.hpp>

#include "cli/StdoutCheck.h"
#include "platform/FreeTypeFontEngine.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"
#include "shell/FontJobs.h"
#include "shell/FontScriptJob.h"

namespace rmcli {

using namespace rm;

void AddFontCommands(CLI::App& c, FontOptions& o) {
  c.require_subcommand(0, 1);
  c.add_option("--script", o.script, "Font Script (.FSC) to read into the font job")->check(CLI::ExistingFile);
  c.add_option("--save-script", o.saveScript,
               "Write the job as read as a new Font Script to this file; '-' or no option prints it");
  c.add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_option("--set", o.settings, "Any project setting by its key, e.g. SFONS=12 (repeatable)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
  auto* list = c.add_subcommand("list",
                                "The installed font families, each with its kind (TrueType Font, Fixed "
                                "TrueType, Raster Font with its sizes in points, ...)");
  list->callback([&o] { o.list = true; });
  list->add_option("--filter", o.filter,
                   "Only the families of one kind: fixed, not-truetype, variable, truetype, device, raster (or the "
                   "Font Panel's names, e.g. \"Fixed Pitch Only\")");
  c.add_subcommand("blocks", "The Unicode blocks a Unicode font is chosen from, as FIRST..LAST; Name")->callback([&o] {
    o.blocks = true;
  });
}

namespace {

int Print(const JobOutcome& outcome, bool toStdout) {
  if (!outcome.Done()) return Report(outcome);
  std::string error;
  if (toStdout && !PrintWhole(outcome.output, error)) return Report(JobOutcome::Failed("standard output: " + error));
  return 0;
}

}  // namespace

int RunFont(const FontOptions& o) {
  if (o.list) {
    const FreeTypeFontEngine engine;
    return Print(ListInstalledFonts(engine, {o.filter}), true);
  }
  if (o.blocks) return Print(ListUnicodeBlocks(), true);
  if (o.script.empty()) return Report(JobOutcome::Failed("font needs --script FILE, or the list or blocks command", 2));
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  const JobOutcome outcome = RunFontScriptJob(app, {o.script, o.saveScript, o.project, o.settings});
  return Print(outcome, outcome.filesWritten.empty());
}

}  // namespace rmcli
