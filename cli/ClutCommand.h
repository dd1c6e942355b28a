#pragma once
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace rmcli {

struct ClutOptions {
  std::string mode = "c256";
  std::string output;  // empty or "-": standard output
  std::string templateFile;
  std::string project;  // another project than the active one
  std::vector<std::string> settings;
  bool verbose = false;
};

void AddClutOptions(CLI::App& command, ClutOptions& options);
// Exit status: 0 written; 1 refused or not written; 2 a bad setting.
int RunClut(const ClutOptions& options);

}  // namespace rmcli
