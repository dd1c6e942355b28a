#pragma once
#include <string>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "fonts/FontEngine.h"
#include "fonts/FontJob.h"

namespace rm {

// The measure of one character as the font data take it, recomputed for every character.
struct GlyphMeasure {
  int CharWidth = 0;   // pixels across, the advance + 1 + the X shift, or the fixed width
  int CharHeight = 0;  // the text height of the font
  int CharBits = 0;    // CharWidth x CharHeight
  // Empty columns and rows around the ink; all 0 for a character without ink.
  int LeftVoid = 0, RightVoid = 0, TopVoid = 0, BottomVoid = 0;
  int TextWidth = 0;  // the character's advance, the width the voids are looked for in
};

// Where a glyph's pixels stand and how many of them one word of the mode takes.
class GlyphGeometry {
 public:
  explicit GlyphGeometry(const ConversionSession& session) : s_(session) {}
  // Pixels one word takes along a row (horizontal directions) or down a column (vertical ones).
  int PixelsPerWordAcross() const;
  int PixelsPerWordDown() const;
  // The pixels of one word in the direction of the scan; 1 across the scan.
  int VerticalPixelsPerWord() const;
  // Words across one glyph row of `width` pixels (DefineWidth).
  int WordsWide(int width, long double widthFactor) const;

 private:
  const ConversionSession& s_;
};

// Draws one character on the glyph image and measures it (BigCharDisplay): ink black on white
// in monochrome and without antialiasing, the grey levels of the mode otherwise.
class GlyphRenderer {
 public:
  GlyphRenderer(const Font& font, const FontJob& job, const ConversionSession& session)
      : font_(font), job_(job), s_(session) {}

  // False with the reason in `error` when the font is too large for font data (256 pixels).
  bool Render(char32_t c, bool unicode, Bitmap& image, GlyphMeasure& m, std::string& error) const;
  // The voids of the ink on `image` for a glyph of `m` (its width, height and text width).
  void MeasureVoids(const Bitmap& image, GlyphMeasure& m) const;

 private:
  Colour InkColour(int coverage) const;
  const Font& font_;
  const FontJob& job_;
  const ConversionSession& s_;
};

}  // namespace rm
