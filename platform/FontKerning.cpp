#include <hb-ft.h>
#include <hb-ot.h>
#include <hb.h>

#include <cmath>
#include <map>
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H

#include "platform/FreeTypeFont.h"

namespace rm::freetype {

namespace {

int U16(const std::vector<FT_Byte>& b, std::size_t at) { return (b[at] << 8) | b[at + 1]; }

// The lowest code point of the Basic Multilingual Plane that maps to each glyph: kerning pairs
// name characters, and a firmware table holds 16-bit codes.
std::map<FT_UInt, char32_t> CharsOfGlyphs(FT_Face face) {
  std::map<FT_UInt, char32_t> chars;
  FT_UInt index = 0;
  for (FT_ULong code = FT_Get_First_Char(face, &index); index != 0 && code <= 0xFFFF;
       code = FT_Get_Next_Char(face, code, &index))
    chars.emplace(index, static_cast<char32_t>(code));
  return chars;
}

// The first horizontal kerning subtable of format 0 in the face's kern table, in its order.
// nullopt when the face has no such table.
std::optional<std::vector<KerningPair>> KernTablePairs(FT_Face face, int pixelSize, int maxPairs) {
  FT_ULong length = 0;
  if (FT_Load_Sfnt_Table(face, TTAG_kern, 0, nullptr, &length) != 0 || length < 4) return std::nullopt;
  std::vector<FT_Byte> table(length);
  if (FT_Load_Sfnt_Table(face, TTAG_kern, 0, table.data(), &length) != 0) return std::nullopt;
  if (U16(table, 0) != 0) return std::nullopt;  // Apple's layout: no pairs read from it
  const int subtables = U16(table, 2);
  std::size_t at = 4;
  for (int s = 0; s < subtables && at + 6 <= length; ++s) {
    const std::size_t size = U16(table, at + 2);
    const int coverage = U16(table, at + 4);
    const bool horizontalPairs = (coverage & 0x0F) == 0x01 && (coverage >> 8) == 0;
    if (!horizontalPairs || at + 14 > length) {
      at += size;
      continue;
    }
    const std::map<FT_UInt, char32_t> chars = CharsOfGlyphs(face);
    const int count = U16(table, at + 6);
    std::vector<KerningPair> pairs;
    for (int i = 0; i < count && static_cast<int>(pairs.size()) < maxPairs; ++i) {
      const std::size_t p = at + 14 + static_cast<std::size_t>(i) * 6;
      if (p + 6 > length) break;
      const auto first = chars.find(U16(table, p)), second = chars.find(U16(table, p + 2));
      if (first == chars.end() || second == chars.end()) continue;
      const int units = static_cast<std::int16_t>(U16(table, p + 4));
      pairs.push_back({first->second, second->second,
                       static_cast<int>(std::lround(static_cast<double>(units) * pixelSize / face->units_per_EM))});
    }
    return pairs;
  }
  return std::nullopt;
}

// The printable characters of Windows-1252.
std::u32string DefaultCandidates() {
  std::u32string chars;
  for (char32_t c = 0x20; c < 0x7F; ++c) chars += c;
  chars +=
      U"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D"
      U"\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178";
  for (char32_t c = 0xA0; c <= 0xFF; ++c) chars += c;
  return chars;
}

// Pairs among `candidates` whose OpenType positioning moves the second character, found by
// shaping each pair and comparing with the plain advances.
std::vector<KerningPair> PositioningPairs(FT_Face face, int pixelSize, int maxPairs, std::u32string candidates) {
  std::vector<KerningPair> pairs;
  hb_face_t* hbFace = hb_ft_face_create_referenced(face);
  if (!hb_ot_layout_has_positioning(hbFace)) {
    hb_face_destroy(hbFace);
    return pairs;
  }
  hb_font_t* font = hb_font_create(hbFace);
  const int upem = static_cast<int>(hb_face_get_upem(hbFace));
  hb_font_set_scale(font, upem, upem);  // amounts in font units, scaled once at the end
  std::erase_if(candidates, [face](char32_t c) { return FT_Get_Char_Index(face, c) == 0; });
  // Kerning only: ligatures and contextual forms would change which glyphs stand there.
  const hb_feature_t features[] = {{HB_TAG('l', 'i', 'g', 'a'), 0, 0, ~0u},
                                   {HB_TAG('c', 'l', 'i', 'g'), 0, 0, ~0u},
                                   {HB_TAG('c', 'a', 'l', 't'), 0, 0, ~0u}};
  hb_buffer_t* buffer = hb_buffer_create();
  for (char32_t first : candidates) {
    const hb_codepoint_t firstGlyph = FT_Get_Char_Index(face, first);
    const hb_position_t firstAdvance = hb_font_get_glyph_h_advance(font, firstGlyph);
    for (char32_t second : candidates) {
      if (static_cast<int>(pairs.size()) >= maxPairs) break;
      const hb_codepoint_t secondGlyph = FT_Get_Char_Index(face, second);
      hb_buffer_clear_contents(buffer);
      const std::uint32_t text[2] = {first, second};
      hb_buffer_add_utf32(buffer, text, 2, 0, 2);
      hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
      hb_buffer_guess_segment_properties(buffer);
      hb_shape(font, buffer, features, 3);
      unsigned count = 0;
      const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer, &count);
      const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(buffer, nullptr);
      if (count != 2 || info[0].codepoint != firstGlyph || info[1].codepoint != secondGlyph) continue;
      // How far the second glyph moved from where the plain advance would put it.
      const int units = (pos[0].x_advance - firstAdvance) + (pos[1].x_offset - pos[0].x_offset);
      const int amount = static_cast<int>(std::lround(static_cast<double>(units) * pixelSize / upem));
      if (amount != 0) pairs.push_back({first, second, amount});
    }
  }
  hb_buffer_destroy(buffer);
  hb_font_destroy(font);
  hb_face_destroy(hbFace);
  return pairs;
}

}  // namespace

std::vector<KerningPair> ReadKerningPairs(FT_Face face, int pixelSize, int maxPairs, const std::u32string& candidates) {
  if (maxPairs <= 0) return {};
  if (auto pairs = KernTablePairs(face, pixelSize, maxPairs)) return *pairs;
  return PositioningPairs(face, pixelSize, maxPairs, candidates.empty() ? DefaultCandidates() : candidates);
}

}  // namespace rm::freetype
