#pragma once
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace rmcli {

struct FontOptions {
  // rastermill font --script FILE [--save-script FILE]
  std::string script;
  std::string saveScript;
  std::string project;
  std::vector<std::string> settings;
  bool verbose = false;
  // rastermill font list [--filter KIND] | font blocks
  bool list = false, blocks = false;
  std::string filter;
};

void AddFontCommands(CLI::App& font, FontOptions& options);
// Exit status: 0 done; 1 refused, not written or standard output failed; 2 a bad setting,
// an unknown filter or no script.
int RunFont(const FontOptions& options);

}  // namespace rmcli
