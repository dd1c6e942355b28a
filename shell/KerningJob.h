#pragma once
#include <string>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Application;
class FontEngine;

// A font's kerning pairs exported as a table (the Font Panel's Export Kerning Table button).
struct KerningRequest {
  std::string font;  // an installed family, or a font file
  int size = 10;     // points
  bool bold = false, italic = false;
  std::string project;
  std::vector<std::string> settings;  // KEY=VALUE over the project's settings
  std::string outputFile;             // empty or "-": the table is the outcome's output only
};

// At most 600 pairs, in the order the font gives them; a font without pairs gives a table with
// only its opening and closing lines.
JobOutcome MakeKerningTable(Application& app, const FontEngine& engine, const KerningRequest& request);

}  // namespace rm
