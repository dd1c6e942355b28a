#include "fonts/FontEngine.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace rm {

namespace {

struct FilterName {
  FontFilter filter;
  const char* label;
  const char* word;
};

constexpr std::array<FilterName, 7> kFilterNames{{
    {FontFilter::None, "no filter", "none"},
    {FontFilter::FixedPitch, "Fixed Pitch Only", "fixed"},
    {FontFilter::NotTrueType, "No True Type Only", "not-truetype"},
    {FontFilter::VariablePitch, "Variable Pitch Only", "variable"},
    {FontFilter::TrueType, "True Type Only", "truetype"},
    {FontFilter::Device, "Device Type Only", "device"},
    {FontFilter::Raster, "Raster Type Only", "raster"},
}};

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

}  // namespace

std::string FontKindLabel(const FontFamilyInfo& family) {
  if (family.raster) return "Raster Font";
  if (family.device) return "Device Font";
  if (family.trueType) return family.fixedPitch ? "Fixed TrueType" : "TrueType Font";
  return family.fixedPitch ? "Fixed Font" : "Vectorized Font";
}

std::string FontFilterLabel(FontFilter filter) {
  for (const FilterName& n : kFilterNames)
    if (n.filter == filter) return n.label;
  return "no filter";
}

std::optional<FontFilter> ParseFontFilter(const std::string& text) {
  const std::string key = Lower(text);
  for (const FilterName& n : kFilterNames)
    if (key == n.word || key == Lower(n.label)) return n.filter;
  return std::nullopt;
}

bool PassesFontFilter(const FontFamilyInfo& family, FontFilter filter) {
  switch (filter) {
    case FontFilter::None: return true;
    case FontFilter::FixedPitch: return family.fixedPitch;
    case FontFilter::NotTrueType: return !family.trueType;
    case FontFilter::VariablePitch: return !family.fixedPitch;
    case FontFilter::TrueType: return family.trueType;
    case FontFilter::Device: return family.device;
    case FontFilter::Raster: return family.raster;
  }
  return true;
}

}  // namespace rm
