#include "engine/ColourModes.h"

namespace rm {

namespace {
constexpr ColourModeInfo kNoMode{0, "", "", 0, -1, -1, 0, 0, "", "", "", "", "", 0, 0, PaletteKind::None, 1, "", ""};
}  // namespace

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

const ColourModeInfo& ModeRow(int modeNumber) {
  const ColourModeInfo* m = FindColourMode(modeNumber);
  return m ? *m : kNoMode;
}

const ColourModeInfo* FindColourModeByFlags(ModeFlags flags) {
  for (const auto& m : kColourModes)
    if (m.flags == flags) return &m;
  return nullptr;
}

const ColourModeInfo* ModeWithFlag(const ColourModeInfo& m, ModeFlags flag, bool on) {
  return FindColourModeByFlags(on ? (m.flags | flag) : (m.flags & ~flag));
}

int MonochromeMode(bool negative) {
  return FindColourModeByFlags(ModeFlag::Monochrome | (negative ? ModeFlags{ModeFlag::Negative} : ModeFlags{0}))
      ->modeNumber;
}

}  // namespace rm
