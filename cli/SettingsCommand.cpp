#include "cli/SettingsCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "shell/Application.h"
#include "shell/ConsoleUi.h"
#include "shell/ProjectStore.h"
#include "shell/SettingsTable.h"

namespace rmcli {

using namespace rm;

void AddSettingsCommands(CLI::App& c, SettingsOptions& o) {
  c.add_option("--project", o.project, "Project file to read and change (created by 'set' when missing)")->required();
  c.require_subcommand(1);
  c.add_subcommand("list", "Every setting as [SECTION] KEY=VALUE, in the order the program writes them")->callback([&o] { o.list = true; });
  auto* get = c.add_subcommand("get", "One setting's value");
  get->add_option("KEY", o.key, "Setting key, without regard to case")->required();
  get->callback([&o] { o.get = true; });
  auto* set = c.add_subcommand("set", "Change one setting and save the project file");
  set->add_option("KEY", o.key, "Setting key, without regard to case")->required();
  set->add_option("VALUE", o.value, "New value; booleans are 0 or 1")->required();
  set->callback([&o] { o.set = true; });
}

int RunSettings(const SettingsOptions& o) {
  auto fail = [](const std::string& text, int status) {
    std::fprintf(stderr, "rastermill: %s\n", text.c_str());
    return status;
  };
  ConsoleUi ui(stderr, nullptr);
  SystemClock clock;
  Application app(ui, clock);
  IniFile project;
  std::string error;
  if (!project.Load(o.project, &error)) return fail(error, 1);
  ProjectRead(app, project);

  if (o.list) {
    for (const SettingDef& def : SettingsTable())
      std::printf("[%s] %s=%s\n", std::string(def.section).c_str(), std::string(def.key).c_str(),
                  GetSetting(app, def).c_str());
    return 0;
  }
  const SettingDef* def = FindSetting(o.key);
  if (!def) return fail("unknown setting key: " + o.key, 2);
  if (o.get) {
    std::printf("%s\n", GetSetting(app, *def).c_str());
    return 0;
  }
  if (!ApplySetting(app, o.key, o.value, error)) return fail(error, 2);
  ProjectWrite(app, project);
  if (!project.Save(&error)) return fail(error, 1);
  return 0;
}

}  // namespace rmcli
