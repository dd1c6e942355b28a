#include "engine/Controllers.h"

#include <algorithm>
#include <cctype>

namespace rm {

const ControllerPreset* FindController(std::string_view name) {
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const auto& c : kControllers)
    if (c.name == lower) return &c;
  return nullptr;
}

namespace {

std::string BitOrderText(int order) { return order > 0 ? "--msb-first" : "--msb-last"; }

}  // namespace

std::vector<std::string> MergeControllerPreset(const ControllerPreset& p, ControllerChoices& c) {
  std::vector<std::string> notes;
  const std::string name(p.name);
  auto take = [&](std::string& chosen, std::string_view preset, const char* option) {
    if (chosen.empty()) {
      chosen = preset;
    } else if (chosen != preset) {
      notes.push_back(std::string(option) + " " + chosen + " overrides the " + name + " setting " +
                      std::string(preset));
    }
  };
  const bool ownDirection = !c.direction.empty() && c.direction != p.direction;
  take(c.mode, p.mode, "--mode");
  take(c.direction, p.direction, "--direction");
  if (!ownDirection) take(c.origin, p.origin, "--origin");
  const int order = p.msbFirst ? 1 : -1;
  if (c.bitOrder == 0) {
    c.bitOrder = order;
  } else if (c.bitOrder != order) {
    notes.push_back(BitOrderText(c.bitOrder) + " overrides the " + name + " setting " + BitOrderText(order));
  }
  return notes;
}

std::string ControllerOptionsText(const ControllerPreset& p) {
  std::string text = "--mode " + std::string(p.mode) + " --direction " + std::string(p.direction) + " --origin " +
                     std::string(p.origin) + " " + BitOrderText(p.msbFirst ? 1 : -1);
  if (p.swapRedBlue) text += " --swap-rb";
  return text;
}

}  // namespace rm
