#include "cli/FontCommand.h"

#include <CLI/CLI.hpp>

#include "cli/StdoutCheck.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"
#include "shell/FontScriptJob.h"

namespace rmcli {

using namespace rm;

void AddFontOptions(CLI::App& c, FontOptions& o) {
  c.add_option("--script", o.script, "Font Script (.FSC) to read into the font job")
      ->required()
      ->check(CLI::ExistingFile);
  c.add_option("--save-script", o.saveScript,
               "Write the job as read as a new Font Script to this file; '-' or no option prints it");
  c.add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_option("--set", o.settings, "Any project setting by its key, e.g. SFONS=12 (repeatable)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
}

int RunFont(const FontOptions& o) {
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  const JobOutcome outcome = RunFontScriptJob(app, {o.script, o.saveScript, o.project, o.settings});
  if (!outcome.Done()) return Report(outcome);
  std::string error;
  if (outcome.filesWritten.empty() && !PrintWhole(outcome.output, error))
    return Report(JobOutcome::Failed("standard output: " + error));
  return 0;
}

}  // namespace rmcli
