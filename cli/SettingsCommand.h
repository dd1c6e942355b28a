#pragma once
#include <string>

namespace CLI {
class App;
}

namespace rmcli {

struct SettingsOptions {
  std::string project;  // another project file (.LCD) than the active one
  std::string key, value;
  bool list = false, diff = false, get = false, set = false, restoreFactory = false;
  bool yes = false;
};

// rastermill settings list | get KEY | set KEY VALUE | restore-factory, on the active project
// or the one given by --project.
void AddSettingsCommands(CLI::App& settings, SettingsOptions& options);
// Exit status: 0 done; 1 the file could not be read or written, or the restore was refused;
// 2 an unknown key or bad value.
int RunSettings(const SettingsOptions& options);

}  // namespace rmcli
