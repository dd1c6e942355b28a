#include "cli/ClutCommand.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/ProjectContext.h"
#include "engine/ColourModes.h"
#include "engine/TextLines.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"
#include "shell/SettingsTable.h"

namespace rmcli {

using namespace rm;

void AddClutOptions(CLI::App& c, ClutOptions& o) {
  c.add_option("--mode", o.mode, "Colour mode whose palette is written")
      ->check(CLI::IsMember({"gray256", "c256", "c4096", "c4096u", "c65k", "c262k", "c262ku"}));
  c.add_option("-o,--output", o.output, "Write the table to this file; '-' or no option prints it");
  c.add_option("--template", o.templateFile, "Header Include template to fill instead of the default one");
  c.add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_option("--set", o.settings, "Any project setting by its key, e.g. FXHB=H (repeatable)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
}

int RunClut(const ClutOptions& o) {
  auto fail = [](const std::string& text, int status) {
    std::fprintf(stderr, "rastermill: %s\n", text.c_str());
    return status;
  };
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  const ColourModeInfo* info = FindColourModeByCliName(o.mode);
  if (!info) return fail("unknown mode: " + o.mode, 2);
  std::string error;
  // The project's syntax, palettes and template; read only.
  if (!OpenProject(app, o.project, error)) return fail(error, 1);
  app.mainForm.SetColourMode(info->modeNumber, true);
  for (const auto& kv : o.settings) {
    const std::size_t eq = kv.find('=');
    if (eq == std::string::npos || eq == 0) return fail("--set takes KEY=VALUE, not \"" + kv + "\"", 2);
    if (!ApplySetting(app, kv.substr(0, eq), kv.substr(eq + 1), error)) return fail(error, 2);
  }
  if (!o.templateFile.empty()) app.session.HeaderIncludeFile = o.templateFile;
  if (app.session.PaletteTable.empty()) return fail("the " + o.mode + " palette could not be loaded", 1);
  if (!app.mainForm.ExportColorPaletteAsArray3Click()) return fail("no colour table was written", 1);

  const std::string data = app.mainText.Text();
  if (o.output.empty() || o.output == "-") {
    const bool whole = std::fwrite(data.data(), 1, data.size(), stdout) == data.size();
    if (std::fflush(stdout) != 0 || !whole || std::ferror(stdout))
      return fail(std::string("standard output: ") + std::strerror(errno ? errno : EIO), 1);
    return 0;
  }
  if (!WriteFileAtomically(o.output, data, &error)) return fail(o.output + ": " + error, 1);
  return 0;
}

}  // namespace rmcli
