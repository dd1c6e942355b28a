#pragma once
#include <string>

#include "shell/JobOutcome.h"

namespace rm {

class FontEngine;

// The installed font families the Font Panel would list.
struct FontListRequest {
  // One of the panel's type filters, by its label ("Fixed Pitch Only") or short word ("fixed");
  // empty lists every family.
  std::string filter;
};
// One family a line: its name, padded, then its kind, and for a raster family its sizes in
// points ("Raster Font  8 10 12"). A filter the panel does not have is a usage error (status 2).
JobOutcome ListInstalledFonts(const FontEngine& engine, const FontListRequest& request);

// The Unicode blocks, one a line as "0000..007F; Basic Latin".
JobOutcome ListUnicodeBlocks();

}  // namespace rm
