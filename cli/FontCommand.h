#pragma once
#include <string>
#include <vector>

#include "shell/FontDataJob.h"
#include "shell/KerningJob.h"

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
  // rastermill font --font NAME|FILE ... [-o OUT]: the font data
  rm::FontDataRequest data;
  std::string output;
  bool yes = false;
  std::vector<std::string> answers;
  // rastermill font list [--filter KIND] | font blocks
  bool list = false, blocks = false;
  std::string filter;
};

void AddFontCommands(CLI::App& font, FontOptions& options);
// Exit status: 0 done; 1 refused, not written or standard output failed; 2 a bad setting or
// option, an unknown filter, or neither a script nor a font.
int RunFont(const FontOptions& options);

// rastermill kerning --font NAME|FILE --size PT [-o OUT]
struct KerningOptions {
  rm::KerningRequest request;
  std::string output;
};
void AddKerningCommand(CLI::App& kerning, KerningOptions& options);
// Exit status as for font.
int RunKerning(const KerningOptions& options);

}  // namespace rmcli
