#pragma once
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fonts/FontEngine.h"

namespace rm {

// The FontEngine port on FreeType 2 (outlines, hinting, both rasterisers, the stroker),
// fontconfig (installed families, substitution), HarfBuzz (OpenType kerning) and iconv (code
// pages). Every message starts with the file's name or the family asked for.
class FreeTypeFontEngine : public FontEngine {
 public:
  FreeTypeFontEngine();
  ~FreeTypeFontEngine() override;
  FreeTypeFontEngine(const FreeTypeFontEngine&) = delete;
  FreeTypeFontEngine& operator=(const FreeTypeFontEngine&) = delete;

  std::unique_ptr<Font> Open(const FontRequest& request, std::string& error) const override;
  std::vector<FontFamilyInfo> Families() const override;
  std::vector<CodePageInfo> CodePages() const override;
  std::optional<char32_t> ToUnicode(int codePage, std::uint8_t byte) const override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace rm
