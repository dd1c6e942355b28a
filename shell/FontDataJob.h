#pragma once
#include <optional>
#include <string>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Application;
class FontEngine;

// One font data run as a user asks for it: the font and characters, the data options over the
// project's (and a Font Script's) settings, and where the data go. Empty texts and unset values
// keep what the project or the script says; the style switches only turn a style on.
struct FontDataRequest {
  std::string script;                 // a Font Script (.FSC) read into the job first
  std::string project;                // another project file than the active one
  std::vector<std::string> settings;  // KEY=VALUE over the project's settings

  std::string font;  // an installed family, or a font file (TTF, OTF, BDF, PCF ...)
  std::optional<int> size;
  bool bold = false, italic = false, underline = false, strikeOut = false, outline = false;
  bool antialias = false;

  // The characters: a text, hexadecimal ranges "FIRST-LAST", or a Unicode block and subblock.
  std::string chars;
  std::vector<std::string> ranges;
  std::string unicodeBlock;
  int subblock = 0;  // from 1; 0: the first
  std::string codePage;

  std::string structure;  // raw, bloc, struct or dmd
  bool fixed = false;
  std::optional<int> maxWidth, maxHeight;
  std::string shift;      // "X,Y"
  std::string stretch;    // "W,H[,SHIFT]"
  std::string mode;       // a colour mode by its command line name
  std::string direction;  // tr, tl, tda, tua
  bool msbFirst = false, msbLast = false;
  std::string outputKind;  // text or bin

  std::string outputFile;  // empty or "-": the data are the outcome's output only
};

// Makes the font data (the Font Panel's Translate command) in `app`, whose project is opened
// first. The refusals and questions of the run go to the user interface; the outcome holds the
// text or the bytes made, and the file written.
JobOutcome MakeFontData(Application& app, const FontEngine& engine, const FontDataRequest& request);

}  // namespace rm
