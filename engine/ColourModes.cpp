#include "engine/ColourModes.h"

namespace rm {

const ColourModeInfo* FindColourMode(int modeNumber) {
  for (const auto& m : kColourModes)
    if (m.modeNumber == modeNumber) return &m;
  return nullptr;
}

const ColourModeInfo* FindColourModeByCliName(std::string_view name) {
  for (const auto& m : kColourModes)
    if (m.cliName == name) return &m;
  return nullptr;
}

}  // namespace rm
