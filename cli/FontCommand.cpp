#include "cli/FontCommand.h"

#include <CLI/CLI.hpp>

#include "cli/StdoutCheck.h"
#include "platform/FreeTypeFontEngine.h"
#include "shell/FontJobs.h"

namespace rmcli {

using namespace rm;

void AddFontCommands(CLI::App& c, FontOptions& o) {
  c.require_subcommand(1);
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

int RunFont(const FontOptions& o) {
  JobOutcome outcome;
  if (o.list) {
    const FreeTypeFontEngine engine;
    outcome = ListInstalledFonts(engine, {o.filter});
  } else {
    outcome = ListUnicodeBlocks();
  }
  if (!outcome.Done()) return Report(outcome);
  std::string error;
  if (!PrintWhole(outcome.output, error)) return Report(JobOutcome::Failed("standard output: " + error));
  return 0;
}

}  // namespace rmcli
