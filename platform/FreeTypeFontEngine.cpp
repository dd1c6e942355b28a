#include "platform/FreeTypeFontEngine.h"

#include <filesystem>
#include <fstream>

#include "platform/FreeTypeFont.h"

namespace rm {

struct FreeTypeFontEngine::State {
  freetype::LibraryPtr library;
  FcConfig* fontconfig = nullptr;
};

namespace {

// Every glyph of a font file loads, outline or bitmap: a file cut short or damaged inside its
// glyph data is refused when opened, not found out character by character.
bool AllGlyphsLoad(FT_Face face) {
  for (FT_Long g = 0; g < face->num_glyphs; ++g)
    if (FT_Load_Glyph(face, static_cast<FT_UInt>(g), FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING) != 0) return false;
  return true;
}

// The file begins as a font file FreeType reads would: a TrueType or OpenType font or collection,
// a BDF or a PCF font. Such a file FreeType cannot open is damaged, not something else.
bool BeginsLikeAFont(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  char head[9] = {};
  in.read(head, sizeof head);
  const std::string start(head, static_cast<std::size_t>(in.gcount()));
  for (const std::string& magic : {std::string("\0\1\0\0", 4), std::string("OTTO"), std::string("true"),
                                   std::string("ttcf"), std::string("\1fcp"), std::string("STARTFONT")})
    if (start.compare(0, magic.size(), magic) == 0) return true;
  return false;
}

// A bitmap face's strike nearest to the pixel size; the smaller of two as near.
int NearestStrike(FT_Face face, int pixels) {
  int best = 0;
  for (int i = 1; i < face->num_fixed_sizes; ++i) {
    const long d = std::labs(((face->available_sizes[i].y_ppem + 32) >> 6) - pixels);
    const long bestD = std::labs(((face->available_sizes[best].y_ppem + 32) >> 6) - pixels);
    if (d < bestD || (d == bestD && face->available_sizes[i].y_ppem < face->available_sizes[best].y_ppem)) best = i;
  }
  return best;
}

}  // namespace

FreeTypeFontEngine::FreeTypeFontEngine() : state_(std::make_unique<State>()) {
  FT_Library library = nullptr;
  if (FT_Init_FreeType(&library) == 0) state_->library = freetype::LibraryPtr(library, FT_Done_FreeType);
  state_->fontconfig = FcInitLoadConfigAndFonts();
}

FreeTypeFontEngine::~FreeTypeFontEngine() {
  if (state_->fontconfig != nullptr) FcConfigDestroy(state_->fontconfig);
}

std::unique_ptr<Font> FreeTypeFontEngine::Open(const FontRequest& request, std::string& error) const {
  if (!state_->library) {
    error = "The font rasteriser could not be started";
    return nullptr;
  }
  if (request.pointSize < 1) {
    error = "Font size " + std::to_string(request.pointSize) + " is too small: the least is 1 point";
    return nullptr;
  }
  FontIdentity identity;
  std::string path = request.file;
  int index = request.faceIndex;
  const bool fromFile = !request.file.empty();
  if (fromFile) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
      error = path + ": no such font file";
      return nullptr;
    }
  } else {
    identity.requestedFamily = request.family;
    const auto match = state_->fontconfig != nullptr
                           ? freetype::MatchFamily(state_->fontconfig, request.family, request.bold, request.italic)
                           : std::nullopt;
    if (!match) {
      error = request.family + ": no font is installed on this system to draw it with";
      return nullptr;
    }
    path = match->file;
    index = match->index;
    identity.family = match->family;
    identity.substituted = match->substituted;
  }

  FT_Face face = nullptr;
  const FT_Error opened = FT_New_Face(state_->library.get(), path.c_str(), index, &face);
  if (opened != 0) {
    error = opened == FT_Err_Unknown_File_Format && !BeginsLikeAFont(path)
                ? path + ": not a font file (TTF, OTF, TTC, BDF or PCF)"
                : path + ": the font file is damaged or incomplete";
    return nullptr;
  }
  if (fromFile && !AllGlyphsLoad(face)) {
    FT_Done_Face(face);
    error = path + ": the font file is damaged or incomplete";
    return nullptr;
  }
  const int pixels = freetype::PixelsOfPoints(request.pointSize);
  const FT_Error sized = FT_IS_SCALABLE(face)        ? FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(pixels))
                         : face->num_fixed_sizes > 0 ? FT_Select_Size(face, NearestStrike(face, pixels))
                                                     : FT_Err_Invalid_Pixel_Size;
  if (sized != 0) {
    FT_Done_Face(face);
    error = path + ": the font cannot be drawn at " + std::to_string(request.pointSize) + " points";
    return nullptr;
  }
  if (identity.family.empty() && face->family_name != nullptr) identity.family = face->family_name;
  if (face->style_name != nullptr) identity.style = face->style_name;
  identity.file = path;
  identity.syntheticBold = request.bold && (face->style_flags & FT_STYLE_FLAG_BOLD) == 0;
  identity.syntheticItalic = request.italic && (face->style_flags & FT_STYLE_FLAG_ITALIC) == 0 && FT_IS_SCALABLE(face);
  return std::make_unique<freetype::FreeTypeFont>(state_->library, face, request, std::move(identity));
}

std::vector<FontFamilyInfo> FreeTypeFontEngine::Families() const {
  return state_->fontconfig != nullptr ? freetype::ListFamilies(state_->fontconfig) : std::vector<FontFamilyInfo>{};
}

}  // namespace rm
