#pragma once
#include <string>

namespace CLI {
class App;
}

namespace rmcli {

struct SettingsOptions {
  std::string project;  // the project file (.LCD)
  std::string key, value;
  bool list = false, get = false, set = false;
};

// rastermill settings list | get KEY | set KEY VALUE, on the project file given by --project.
void AddSettingsCommands(CLI::App& settings, SettingsOptions& options);
// Exit status: 0 done; 1 the file could not be read or written; 2 an unknown key or bad value.
int RunSettings(const SettingsOptions& options);

}  // namespace rmcli
