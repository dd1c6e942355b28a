#include "cli/ClutCommand.h"

#include <CLI/CLI.hpp>

#include "cli/StdoutCheck.h"
#include "engine/ColourModes.h"
#include "engine/TextLines.h"
#include "shell/Application.h"
#include "shell/CommandJobs.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;

void AddClutOptions(CLI::App& c, ClutOptions& o) {
  // The modes with a colour look-up table.
  std::vector<std::string> modes;
  for (const auto& m : kColourModes)
    if (m.Table() == ColourTable::PaletteTable) modes.emplace_back(m.cliName);
  c.add_option("--mode", o.mode, "Colour mode whose palette is written")->check(CLI::IsMember(modes));
  c.add_option("-o,--output", o.output, "Write the table to this file; '-' or no option prints it");
  c.add_option("--template", o.templateFile, "Header Include template to fill instead of the default one");
  c.add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_option("--set", o.settings, "Any project setting by its key, e.g. FXHB=H (repeatable)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
}

int RunClut(const ClutOptions& o) {
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  const JobOutcome outcome = ExportClut(app, {o.mode, o.project, o.settings, o.templateFile});
  if (!outcome.Done()) return Report(outcome);
  std::string error;
  if (o.output.empty() || o.output == "-") {
    if (!PrintWhole(outcome.output, error)) return Report(JobOutcome::Failed("standard output: " + error));
    return 0;
  }
  if (!WriteFileAtomically(o.output, outcome.output, &error))
    return Report(JobOutcome::Failed(o.output + ": " + error));
  return 0;
}

}  // namespace rmcli
