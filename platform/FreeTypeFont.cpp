#include "platform/FreeTypeFont.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>
#include FT_BITMAP_H
#include FT_GLYPH_H
#include FT_SYNTHESIS_H
#include FT_TRUETYPE_TABLES_H

namespace rm::freetype {

namespace {

// Half a pixel in 26.6: a one-pixel pen centred on the path.
constexpr FT_Fixed kOutlinePenRadius = 32;

// The 8-bit coverage of a rasterised glyph: 1-bit pictures give 0 and 255, grey ones are scaled
// to 255 whatever their number of levels.
std::vector<std::uint8_t> CoverageOf(FT_Library library, const FT_Bitmap& bitmap) {
  const int width = static_cast<int>(bitmap.width), rows = static_cast<int>(bitmap.rows);
  std::vector<std::uint8_t> out(static_cast<std::size_t>(width) * rows, 0);
  if (bitmap.pixel_mode == FT_PIXEL_MODE_MONO) {
    for (int y = 0; y < rows; ++y) {
      const unsigned char* row = bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch;
      for (int x = 0; x < width; ++x)
        if (row[x >> 3] & (0x80 >> (x & 7))) out[static_cast<std::size_t>(y) * width + x] = 255;
    }
    return out;
  }
  FT_Bitmap gray;
  FT_Bitmap_Init(&gray);
  const FT_Bitmap* source = &bitmap;
  if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) {
    if (FT_Bitmap_Convert(library, &bitmap, &gray, 1) != 0) return out;
    source = &gray;
  }
  const int levels = std::max(2, static_cast<int>(source->num_grays));
  for (int y = 0; y < rows; ++y) {
    const unsigned char* row = source->buffer + static_cast<std::ptrdiff_t>(y) * source->pitch;
    for (int x = 0; x < width; ++x) out[static_cast<std::size_t>(y) * width + x] = row[x] * 255 / (levels - 1);
  }
  FT_Bitmap_Done(library, &gray);
  return out;
}

}  // namespace

FreeTypeFont::FreeTypeFont(LibraryPtr library, FT_Face face, const FontRequest& request, FontIdentity identity)
    : library_(std::move(library)), face_(face), request_(request), identity_(std::move(identity)) {
  if (request_.outline && FT_IS_SCALABLE(face_) && FT_Stroker_New(library_.get(), &stroker_) == 0)
    FT_Stroker_Set(stroker_, kOutlinePenRadius, FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
  ComputeMetrics();
}

FreeTypeFont::~FreeTypeFont() {
  if (stroker_ != nullptr) FT_Stroker_Done(stroker_);
  FT_Done_Face(face_);
}

void FreeTypeFont::ComputeMetrics() {
  FontMetrics& m = metrics_;
  m.trueType = FT_IS_SCALABLE(face_) && FT_IS_SFNT(face_);
  m.raster = !FT_IS_SCALABLE(face_);
  m.fixedPitch = FT_IS_FIXED_WIDTH(face_);
  if (FT_IS_SCALABLE(face_)) {
    m.pixelSize = face_->size->metrics.y_ppem;
    const double scale = static_cast<double>(m.pixelSize) / face_->units_per_EM;
    const auto px = [scale](long units) { return static_cast<int>(std::lround(units * scale)); };
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face_, FT_SFNT_OS2));
    const auto* hhea = static_cast<const TT_HoriHeader*>(FT_Get_Sfnt_Table(face_, FT_SFNT_HHEA));
    const bool winMetrics = os2 != nullptr && os2->version != 0xFFFF && os2->usWinAscent + os2->usWinDescent > 0;
    const long ascent = winMetrics ? os2->usWinAscent : face_->ascender;
    const long descent = winMetrics ? os2->usWinDescent : -face_->descender;
    m.ascent = px(ascent);
    m.descent = px(descent);
    if (hhea != nullptr)
      m.externalLeading = std::max(0, px(hhea->Line_Gap - ((ascent + descent) - (hhea->Ascender - hhea->Descender))));
    m.averageCharWidth = os2 != nullptr && os2->version != 0xFFFF ? px(os2->xAvgCharWidth) : 0;
    m.maxCharWidth = px(face_->max_advance_width);
    m.underlineThickness = std::max(1, px(face_->underline_thickness));
    m.underlineTop = m.ascent - px(face_->underline_position) - m.underlineThickness / 2;
    if (os2 != nullptr && os2->version != 0xFFFF && os2->yStrikeoutSize > 0) {
      m.strikeOutThickness = std::max(1, px(os2->yStrikeoutSize));
      m.strikeOutTop = m.ascent - px(os2->yStrikeoutPosition);
    } else {
      m.strikeOutThickness = m.underlineThickness;
      m.strikeOutTop = m.ascent - (m.ascent + 2) / 3;
    }
  } else {
    // A bitmap strike: its own ascent and descent, whole pixels.
    const FT_Size_Metrics& s = face_->size->metrics;
    m.pixelSize = s.y_ppem;
    m.ascent = static_cast<int>((s.ascender + 32) >> 6);
    m.descent = static_cast<int>((-s.descender + 32) >> 6);
    m.maxCharWidth = static_cast<int>((s.max_advance + 32) >> 6);
    m.underlineThickness = 1;
    m.underlineTop = m.ascent + 1;
    m.strikeOutThickness = 1;
    m.strikeOutTop = m.ascent - (m.ascent + 2) / 3;
  }
  m.height = m.ascent + m.descent;
  m.internalLeading = std::max(0, m.height - m.pixelSize);
  // The lines stay inside the cell, as the cell is all a character is drawn in.
  m.underlineTop = std::clamp(m.underlineTop, 0, std::max(0, m.height - m.underlineThickness));
  m.strikeOutTop = std::clamp(m.strikeOutTop, 0, std::max(0, m.height - m.strikeOutThickness));

  FT_UInt index = 0;
  FT_ULong code = FT_Get_First_Char(face_, &index);
  m.firstChar = index != 0 ? static_cast<int>(code) : 0;
  while (index != 0) {
    m.lastChar = static_cast<int>(code);
    code = FT_Get_Next_Char(face_, code, &index);
  }
  if (m.averageCharWidth == 0) {
    // No OS/2 figure: the mean advance of the printable ASCII the face has.
    int sum = 0, count = 0;
    for (char32_t c = 0x20; c < 0x7F; ++c)
      if (HasGlyph(c) && LoadStyled(c)) {
        sum += static_cast<int>((face_->glyph->advance.x + 32) >> 6);
        ++count;
      }
    m.averageCharWidth = count > 0 ? (sum + count / 2) / count : m.maxCharWidth;
  }
}

bool FreeTypeFont::HasGlyph(char32_t c) const { return FT_Get_Char_Index(face_, c) != 0; }

bool FreeTypeFont::LoadStyled(char32_t c) const {
  const FT_Int32 flags = request_.antialiased ? FT_LOAD_TARGET_NORMAL : FT_LOAD_TARGET_MONO;
  if (FT_Load_Glyph(face_, FT_Get_Char_Index(face_, c), flags) != 0) return false;
  if (identity_.syntheticItalic) FT_GlyphSlot_Oblique(face_->glyph);
  if (identity_.syntheticBold) FT_GlyphSlot_Embolden(face_->glyph);
  return true;
}

FreeTypeFont::Drawn FreeTypeFont::Draw(char32_t c) const {
  Drawn d;
  if (!LoadStyled(c)) return d;
  d.advance = static_cast<int>((face_->glyph->advance.x + 32) >> 6);
  FT_Glyph glyph = nullptr;
  if (FT_Get_Glyph(face_->glyph, &glyph) != 0) return d;
  if (stroker_ != nullptr && glyph->format == FT_GLYPH_FORMAT_OUTLINE) {
    // The outside border of the stroke encloses the fill and the pen's outer half.
    FT_Glyph_StrokeBorder(&glyph, stroker_, 0, 1);
  }
  if (glyph->format != FT_GLYPH_FORMAT_BITMAP &&
      FT_Glyph_To_Bitmap(&glyph, request_.antialiased ? FT_RENDER_MODE_NORMAL : FT_RENDER_MODE_MONO, nullptr, 1) != 0) {
    FT_Done_Glyph(glyph);
    return d;
  }
  const auto* bitmapGlyph = reinterpret_cast<FT_BitmapGlyph>(glyph);
  d.left = bitmapGlyph->left;
  d.top = bitmapGlyph->top;
  d.width = static_cast<int>(bitmapGlyph->bitmap.width);
  d.height = static_cast<int>(bitmapGlyph->bitmap.rows);
  d.coverage = CoverageOf(library_.get(), bitmapGlyph->bitmap);
  FT_Done_Glyph(glyph);
  return d;
}

GlyphImage FreeTypeFont::Render(const std::u32string& text) const {
  const FontMetrics& m = metrics_;
  std::vector<std::pair<int, Drawn>> placed;
  int pen = 0;
  int x0 = 0, y0 = 0, x1 = 0, y1 = m.height;
  for (char32_t c : text) {
    Drawn d = Draw(c);
    if (d.width > 0 && d.height > 0) {
      x0 = std::min(x0, pen + d.left);
      x1 = std::max(x1, pen + d.left + d.width);
      y0 = std::min(y0, m.ascent - d.top);
      y1 = std::max(y1, m.ascent - d.top + d.height);
    }
    const int advance = d.advance;
    placed.emplace_back(pen, std::move(d));
    pen += advance;
  }
  x1 = std::max(x1, pen);

  GlyphImage image;
  image.x = x0;
  image.y = y0;
  image.width = x1 - x0;
  image.height = y1 - y0;
  image.advance = pen;
  image.cellHeight = m.height;
  image.coverage.assign(static_cast<std::size_t>(image.width) * image.height, 0);
  const auto plot = [&image](int cellX, int cellY, std::uint8_t value) {
    std::uint8_t& p = image.coverage[static_cast<std::size_t>(cellY - image.y) * image.width + (cellX - image.x)];
    p = std::max(p, value);
  };
  for (const auto& [origin, d] : placed)
    for (int y = 0; y < d.height; ++y)
      for (int x = 0; x < d.width; ++x)
        if (const std::uint8_t v = d.coverage[static_cast<std::size_t>(y) * d.width + x]; v != 0)
          plot(origin + d.left + x, m.ascent - d.top + y, v);
  const auto line = [&](bool on, int top, int thickness) {
    if (!on) return;
    for (int y = top; y < top + thickness; ++y)
      for (int x = 0; x < pen; ++x) plot(x, y, 255);
  };
  line(request_.underline, m.underlineTop, m.underlineThickness);
  line(request_.strikeOut, m.strikeOutTop, m.strikeOutThickness);
  return image;
}

GlyphMetrics FreeTypeFont::Measure(char32_t c) const {
  const GlyphImage image = Render(std::u32string(1, c));
  GlyphMetrics g;
  g.hasGlyph = HasGlyph(c);
  g.advance = image.advance;
  int left = INT_MAX, top = INT_MAX, right = INT_MIN, bottom = INT_MIN;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x)
      if (image.coverage[static_cast<std::size_t>(y) * image.width + x] != 0) {
        left = std::min(left, x + image.x);
        right = std::max(right, x + image.x + 1);
        top = std::min(top, y + image.y);
        bottom = std::max(bottom, y + image.y + 1);
      }
  if (right > left) {
    g.inkLeft = left;
    g.inkTop = top;
    g.inkRight = right;
    g.inkBottom = bottom;
  }
  return g;
}

int FreeTypeFont::TextWidth(const std::u32string& text) const {
  int width = 0;
  for (char32_t c : text)
    if (LoadStyled(c)) width += static_cast<int>((face_->glyph->advance.x + 32) >> 6);
  return width;
}

std::vector<KerningPair> FreeTypeFont::KerningPairs(int maxPairs, const std::u32string& candidates) const {
  if (!FT_IS_SFNT(face_)) return {};
  return ReadKerningPairs(face_, metrics_.pixelSize, maxPairs, candidates);
}

}  // namespace rm::freetype
