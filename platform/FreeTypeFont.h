#pragma once
#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>
#include FT_FREETYPE_H
#include FT_STROKER_H

#include "fonts/FontEngine.h"

namespace rm::freetype {

// One FreeType library shared by the engine and every font it opened: a font may outlive the
// engine.
using LibraryPtr = std::shared_ptr<FT_LibraryRec_>;

// The installed face fontconfig picks for a family name and style.
struct FaceMatch {
  std::string file;
  int index = 0;
  std::string family;  // the matched face's family name, as asked when it has that name
  bool substituted = false;
};
std::optional<FaceMatch> MatchFamily(FcConfig* config, const std::string& family, bool bold, bool italic);
std::vector<FontFamilyInfo> ListFamilies(FcConfig* config);

// The face's kerning pairs at `pixelSize` (see Font::KerningPairs).
std::vector<KerningPair> ReadKerningPairs(FT_Face face, int pixelSize, int maxPairs, const std::u32string& candidates);

// The pixel em height of a point size at 96 dpi, rounded as MulDiv rounds.
inline int PixelsOfPoints(int points) { return (points * 96 + 36) / 72; }

// An opened face at one size. Owns the face.
class FreeTypeFont final : public Font {
 public:
  FreeTypeFont(LibraryPtr library, FT_Face face, const FontRequest& request, FontIdentity identity);
  ~FreeTypeFont() override;
  FreeTypeFont(const FreeTypeFont&) = delete;
  FreeTypeFont& operator=(const FreeTypeFont&) = delete;

  const FontIdentity& Identity() const override { return identity_; }
  const FontMetrics& Metrics() const override { return metrics_; }
  bool HasGlyph(char32_t c) const override;
  GlyphMetrics Measure(char32_t c) const override;
  int TextWidth(const std::u32string& text) const override;
  GlyphImage Render(const std::u32string& text) const override;
  std::vector<KerningPair> KerningPairs(int maxPairs, const std::u32string& candidates) const override;

 private:
  // One character rasterised, its picture placed relative to the pen and the baseline.
  struct Drawn {
    int left = 0, top = 0;  // picture's left from the pen, top above the baseline
    int width = 0, height = 0;
    int advance = 0;
    std::vector<std::uint8_t> coverage;
  };
  // Loads the character's glyph into the face's slot with the styles the face lacks made up;
  // returns false when FreeType cannot load it.
  bool LoadStyled(char32_t c) const;
  Drawn Draw(char32_t c) const;
  void ComputeMetrics();

  LibraryPtr library_;
  FT_Face face_;
  FT_Stroker stroker_ = nullptr;
  FontRequest request_;
  FontIdentity identity_;
  FontMetrics metrics_;
};

}  // namespace rm::freetype
