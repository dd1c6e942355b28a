#include "cli/SettingsCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

#include "cli/StdoutCheck.h"
#include "shell/Application.h"
#include "shell/CommandJobs.h"
#include "shell/ConsoleUi.h"
#include "shell/ProjectContext.h"
#include "shell/ProjectStore.h"
#include "shell/SettingsTable.h"

namespace rmcli {

using namespace rm;

void AddSettingsCommands(CLI::App& c, SettingsOptions& o) {
  c.add_option("--project", o.project,
               "Project file to read and change instead of the active project (created by 'set' when missing)");
  c.add_flag("--yes", o.yes, "Answer Yes to the program's questions (restore-factory asks one)");
  c.require_subcommand(1);
  // --yes and --project may follow the command word too: "settings restore-factory --yes".
  c.fallthrough();
  c.add_subcommand("list", "Every setting as [SECTION] KEY=VALUE, in reading order")->callback([&o] { o.list = true; });
  c.add_subcommand("diff", "Every setting that differs from the factory's, as [SECTION] KEY=VALUE (factory: X)")
      ->callback([&o] { o.diff = true; });
  auto* get = c.add_subcommand("get", "One setting's value");
  get->add_option("KEY", o.key, "Setting key, without regard to case; SECTION/KEY for a name in two sections")
      ->required();
  get->callback([&o] { o.get = true; });
  auto* set = c.add_subcommand("set", "Change one setting and save the project file");
  set->add_option("KEY", o.key, "Setting key, without regard to case; SECTION/KEY for a name in two sections")
      ->required();
  set->add_option("VALUE", o.value, "New value; booleans are 0 or 1")->required();
  set->callback([&o] { o.set = true; });
  c.add_subcommand("restore-factory",
                   "Back up the active project's folder and forget the active project: the next start is a "
                   "first run with every setting at its factory value")
      ->callback([&o] { o.restoreFactory = true; });
}

int RunSettings(const SettingsOptions& o) {
  auto fail = [](const std::string& text, int status) {
    std::fprintf(stderr, "rastermill: %s\n", text.c_str());
    return status;
  };
  ConsoleUi ui(stderr, nullptr);
  ui.SetYes(o.yes);
  SystemClock clock;
  Application app(ui, clock);
  std::string error;
  const bool writes = o.set || o.restoreFactory;
  if (o.set && !o.project.empty()) {
    // A new project file may be started by setting its first key.
    std::error_code ec;
    if (!std::filesystem::exists(o.project, ec) && !CreateNewFile(o.project, &error) &&
        !std::filesystem::exists(o.project, ec))
      return fail(o.project + ": " + error, 1);
  }
  if (!OpenProject(app, o.project, error, writes)) return fail(error, 1);

  if (o.list) {
    for (const std::string& line : ListSettings(app)) std::printf("%s\n", line.c_str());
    return FinishStdout();
  }
  if (o.diff) {
    Application factory(ui, clock);
    ProjectRead(factory, IniFile());
    for (const std::string& line : DiffSettings(app, factory)) std::printf("%s\n", line.c_str());
    return 0;
  }
  if (o.restoreFactory) {
    const JobOutcome restored = RestoreFactorySettings(app);
    if (!restored.Done()) return Report(restored);
    std::fprintf(stderr, "rastermill: settings backed up to %s\n", restored.output.c_str());
    return 0;
  }
  const SettingDef* def = FindSetting(o.key);
  if (!def) return fail("unknown setting key: " + o.key, 2);
  if (o.get) {
    std::printf("%s\n", GetSetting(app, *def).c_str());
    return FinishStdout();
  }
  if (!StoreSetting(app, o.key, o.value, error)) return fail(error, 2);
  return Report(SaveProjectSettings(app));
}

}  // namespace rmcli
