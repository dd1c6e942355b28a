#pragma once
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace rmcli {

struct FontOptions {
  std::string script;
  std::string saveScript;
  std::string project;
  std::vector<std::string> settings;
  bool verbose = false;
};

void AddFontOptions(CLI::App& command, FontOptions& options);
// Exit status: 0 done; 1 refused or not written; 2 a bad setting.
int RunFont(const FontOptions& options);

}  // namespace rmcli
