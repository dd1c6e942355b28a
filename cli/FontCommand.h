#pragma once
#include <string>

namespace CLI {
class App;
}

namespace rmcli {

struct FontOptions {
  bool list = false, blocks = false;
  std::string filter;
};

// rastermill font list [--filter KIND] | font blocks
void AddFontCommands(CLI::App& font, FontOptions& options);
// Exit status: 0 printed; 1 standard output could not be written; 2 an unknown filter.
int RunFont(const FontOptions& options);

}  // namespace rmcli
