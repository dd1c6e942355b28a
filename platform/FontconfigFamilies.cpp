#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>

#include "platform/FreeTypeFont.h"

namespace rm::freetype {

namespace {

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string StringOf(FcPattern* pattern, const char* object, int n = 0) {
  FcChar8* value = nullptr;
  if (FcPatternGetString(pattern, object, n, &value) != FcResultMatch || value == nullptr) return {};
  return reinterpret_cast<const char*>(value);
}

}  // namespace

std::optional<FaceMatch> MatchFamily(FcConfig* config, const std::string& family, bool bold, bool italic) {
  FcPattern* pattern = FcPatternCreate();
  if (!family.empty()) FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  // The system's aliases ("sans-serif", a missing name) and defaults, as every program here sees them.
  FcConfigSubstitute(config, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* match = FcFontMatch(config, pattern, &result);
  FcPatternDestroy(pattern);
  if (match == nullptr) return std::nullopt;
  FaceMatch found;
  found.file = StringOf(match, FC_FILE);
  int index = 0;
  if (FcPatternGetInteger(match, FC_INDEX, 0, &index) == FcResultMatch) found.index = index;
  // A face can carry its family name in several forms ("DejaVu Sans", "DejaVu Sans Condensed");
  // any of them answers the name asked for.
  found.family = StringOf(match, FC_FAMILY);
  found.substituted = true;
  for (int n = 0;; ++n) {
    const std::string name = StringOf(match, FC_FAMILY, n);
    if (name.empty()) break;
    if (Lower(name) == Lower(family)) {
      found.family = name;
      found.substituted = false;
      break;
    }
  }
  FcPatternDestroy(match);
  if (found.file.empty()) return std::nullopt;
  return found;
}

std::vector<FontFamilyInfo> ListFamilies(FcConfig* config) {
  FcPattern* all = FcPatternCreate();
  FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, FC_SPACING, FC_SCALABLE, FC_FONTFORMAT, FC_PIXEL_SIZE, nullptr);
  FcFontSet* set = FcFontList(config, all, objects);
  FcObjectSetDestroy(objects);
  FcPatternDestroy(all);

  struct Gathered {
    FontFamilyInfo info;
    bool anyScalable = false;
    bool anyVariable = false;
  };
  std::map<std::string, Gathered> families;
  for (int i = 0; set != nullptr && i < set->nfont; ++i) {
    FcPattern* face = set->fonts[i];
    const std::string name = StringOf(face, FC_FAMILY);
    if (name.empty()) continue;
    Gathered& g = families[Lower(name)];
    if (g.info.family.empty()) g.info.family = name;
    FcBool scalable = FcFalse;
    FcPatternGetBool(face, FC_SCALABLE, 0, &scalable);
    int spacing = FC_PROPORTIONAL;
    FcPatternGetInteger(face, FC_SPACING, 0, &spacing);
    const std::string format = StringOf(face, FC_FONTFORMAT);
    if (scalable) {
      g.anyScalable = true;
      if (format == "TrueType" || format == "CFF") g.info.trueType = true;
    } else {
      double pixels = 0;
      for (int n = 0; FcPatternGetDouble(face, FC_PIXEL_SIZE, n, &pixels) == FcResultMatch; ++n)
        g.info.pointSizes.push_back(static_cast<int>(std::lround(pixels * 72.0 / 96.0)));
    }
    if (spacing < FC_MONO) g.anyVariable = true;
  }
  if (set != nullptr) FcFontSetDestroy(set);

  std::vector<FontFamilyInfo> out;
  for (auto& [key, g] : families) {
    g.info.raster = !g.anyScalable;
    g.info.fixedPitch = !g.anyVariable;
    if (!g.info.raster) g.info.pointSizes.clear();
    std::sort(g.info.pointSizes.begin(), g.info.pointSizes.end());
    g.info.pointSizes.erase(std::unique(g.info.pointSizes.begin(), g.info.pointSizes.end()), g.info.pointSizes.end());
    out.push_back(std::move(g.info));
  }
  return out;  // the map's lower-case keys already sort them without regard to case
}

}  // namespace rm::freetype
