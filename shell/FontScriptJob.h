#pragma once
#include <string>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Application;

// A Font Script read into the font job as the explorer opens one, and the job written back.
struct FontScriptRequest {
  std::string script;                 // the ".FSC" file to read
  std::string saveScript;             // empty: nothing is written; "-": the output is the script
  std::string project;                // another project file than the active one
  std::vector<std::string> settings;  // KEY=VALUE over the project's settings, before the script
};
// Reads the script over the project's settings (the paging direction, corner and bit order a
// script leaves out, or cannot carry, stay as the project has them), then writes the job as a
// new script of the Font Panel. The output is the new script's text.
JobOutcome RunFontScriptJob(Application& app, const FontScriptRequest& request);

}  // namespace rm
