#include "shell/FontJobs.h"

#include <algorithm>
#include <cstdio>

#include "fonts/FontEngine.h"
#include "fonts/UnicodeBlocks.h"

namespace rm {

JobOutcome ListInstalledFonts(const FontEngine& engine, const FontListRequest& request) {
  FontFilter filter = FontFilter::None;
  if (!request.filter.empty()) {
    const std::optional<FontFilter> parsed = ParseFontFilter(request.filter);
    if (!parsed)
      return JobOutcome::Failed(
          "unknown font filter: " + request.filter + " (none, fixed, not-truetype, variable, truetype, device, raster)",
          2);
    filter = *parsed;
  }
  std::vector<FontFamilyInfo> shown;
  for (FontFamilyInfo& family : engine.Families())
    if (PassesFontFilter(family, filter)) shown.push_back(std::move(family));
  std::size_t width = 0;
  for (const FontFamilyInfo& family : shown) width = std::max(width, family.family.size());
  JobOutcome done;
  for (const FontFamilyInfo& family : shown) {
    std::string line = family.family + std::string(width - family.family.size() + 2, ' ') + FontKindLabel(family);
    if (!family.pointSizes.empty()) {
      line += " ";
      for (int size : family.pointSizes) line += " " + std::to_string(size);
    }
    done.output += line + "\n";
  }
  return done;
}

JobOutcome ListUnicodeBlocks() {
  JobOutcome done;
  for (const UnicodeBlock& block : UnicodeBlocks()) {
    char range[32];
    std::snprintf(range, sizeof range, "%04X..%04X; ", static_cast<unsigned>(block.first),
                  static_cast<unsigned>(block.last));
    done.output += range + std::string(block.name) + "\n";
  }
  return done;
}

}  // namespace rm
