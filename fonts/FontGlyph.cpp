#include "fonts/FontGlyph.h"

#include <algorithm>
#include <cmath>

namespace rm {

int GlyphGeometry::PixelsPerWordAcross() const {
  if (s_.Monochrome) return !s_.Not6bit ? 6 : std::clamp(s_.PixelsPerByteSetting, 1, 8);
  if (s_.Gray4 || s_.Gray4TwoPages) return 4;
  if (s_.Gray16 || s_.Colours16) return 2;
  return 1;
}

int GlyphGeometry::PixelsPerWordDown() const {
  if (s_.Monochrome) return 8;
  if (s_.Gray4 || s_.Gray4TwoPages) return 4;
  if ((s_.Gray16 || s_.Colours16) && !s_.Gray16Horizontal) return 2;
  return 1;
}

int GlyphGeometry::VerticalPixelsPerWord() const {
  return IsHorizontal(s_.Direction) ? 1 : PixelsPerWordDown();
}

int GlyphGeometry::WordsWide(int width, long double widthFactor) const {
  const int w = static_cast<int>(std::ceil(static_cast<long double>(width) * widthFactor));
  if (s_.Monochrome) {
    // The remainder is tested on 8 whatever the cut of a byte: a byte cut to fewer pixels takes
    // one word more only when the width is no multiple of 8. Never fewer words than the pixels
    // need, though, or the ink of the last ones would be lost.
    const int ppb = PixelsPerWordAcross();
    const int words = w / ppb + (w % 8 != 0 ? 1 : 0);
    return std::max(words, (w + ppb - 1) / ppb);
  }
  if (s_.Gray16 || s_.Colours16) return (w + 1) / 2;
  if (s_.Gray4 || s_.Gray4TwoPages) return (w + 3) / 4;
  if (s_.Colours4096) {
    // Round half to even, as the desktop's arithmetic does.
    return static_cast<int>(std::nearbyint(static_cast<double>(w) * 1.5));
  }
  return w;
}

Colour GlyphRenderer::InkColour(int coverage) const {
  // Black ink on white: full coverage is black, none is white.
  if (coverage >= 255) return kBlack;
  if (s_.Monochrome || !job_.Antialiased) return coverage >= 128 ? kBlack : kWhite;
  const int grey = 255 - coverage;
  const std::vector<Colour>& table = s_.PaletteSize > 0 ? s_.PaletteTable : s_.ModeColours;
  if (table.empty()) return static_cast<Colour>(grey * 0x010101);
  // The nearest colour of the mode, by the distance of the three components to the grey.
  Colour best = table.front();
  long bestDistance = -1;
  for (Colour c : table) {
    const long r = (c & 0xFF) - grey, g = ((c >> 8) & 0xFF) - grey, b = ((c >> 16) & 0xFF) - grey;
    const long d = r * r + g * g + b * b;
    if (bestDistance < 0 || d < bestDistance) {
      bestDistance = d;
      best = c;
    }
  }
  return best;
}

bool GlyphRenderer::Render(char32_t c, bool unicode, Bitmap& image, GlyphMeasure& m, std::string& error) const {
  m = {};
  const FontMetrics& fm = font_.Metrics();
  const int wWidth = font_.TextWidth(U"W");
  if (fm.height >= 256 || wWidth >= 256) {
    error = " Font Size To Large ! ";
    return false;
  }
  const int side = std::max({129, fm.height, wWidth});
  image.Resize(side, side, kWhite);
  const std::u32string text(1, c);
  const GlyphImage g = font_.Render(text);
  for (int py = 0; py < g.height; ++py)
    for (int px = 0; px < g.width; ++px) {
      const int cov = g.coverage[static_cast<std::size_t>(py) * g.width + px];
      if (cov == 0) continue;
      const Colour ink = InkColour(cov);
      if (ink != kWhite) image.SetPixel(g.x + px + job_.ShiftX, g.y + py + job_.ShiftY, ink);
    }

  // The text extent in a box of 150: the advance, clipped to the box. A lone "&" is measured as
  // "&&", which draws one "&": its own advance.
  m.TextWidth = font_.TextWidth(text);
  const int right = std::min(m.TextWidth, 150);
  m.CharWidth = right == 150 ? 0 : right + 1 + job_.ShiftX;
  if (job_.MaxCharWidth != 0 && job_.FixedChars) m.CharWidth = job_.MaxCharWidth;
  if (unicode) {
    // A wide glyph that overhangs its advance is not cut.
    int last = -1;
    for (int y = 0; y < image.Height(); ++y)
      for (int x = image.Width() - 1; x > last; --x)
        if (image.GetPixel(x, y) != kWhite) {
          last = x;
          break;
        }
    if (last >= 0 && last + 3 > m.CharWidth) m.CharWidth = last + 3;
  }
  m.CharHeight = fm.height;

  if (job_.StretchOn && (job_.WidthFactor != 1.0L || job_.HeightFactor != 1.0L || job_.StretchHeightShift != 0)) {
    // Resampled by the nearest pixel, which keeps the mode's colours as they are; the measure
    // follows the picture, so that the scan takes every stretched pixel.
    const int w = std::max(1, static_cast<int>(std::ceil(image.Width() * job_.WidthFactor)));
    const int h = std::max(1, static_cast<int>(std::ceil(image.Height() * job_.HeightFactor)));
    Bitmap stretched(w, h, kWhite);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const int sx = static_cast<int>(x / job_.WidthFactor), sy = static_cast<int>(y / job_.HeightFactor);
        stretched.SetPixel(x, y - job_.StretchHeightShift, image.GetPixel(sx, sy));
      }
    image = std::move(stretched);
    m.CharWidth = static_cast<int>(std::ceil(m.CharWidth * job_.WidthFactor));
    m.CharHeight = static_cast<int>(std::ceil(m.CharHeight * job_.HeightFactor));
    m.TextWidth = static_cast<int>(std::ceil(m.TextWidth * job_.WidthFactor));
  }
  if (m.CharWidth == 0) m.CharWidth = 1;
  m.CharBits = m.CharHeight * m.CharWidth;
  MeasureVoids(image, m);
  return true;
}

void GlyphRenderer::MeasureVoids(const Bitmap& image, GlyphMeasure& m) const {
  m.LeftVoid = m.RightVoid = m.TopVoid = m.BottomVoid = 0;
  // The voids are looked for in the cell the data take: ink that a shift moved past the advance
  // is data too, and a void must not cut it off.
  const int w = std::min(m.CharWidth, image.Width()), h = std::min(m.CharHeight, image.Height());
  int left = w, right = -1, top = h, bottom = -1;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if (image.GetPixel(x, y) != kWhite) {
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
      }
  if (right < 0) return;  // no ink: nothing to take away
  const GlyphGeometry geometry(s_);
  if (geometry.VerticalPixelsPerWord() == 1) {
    m.LeftVoid = left;
    m.RightVoid = m.CharWidth - 1 - right;
  }
  if (geometry.VerticalPixelsPerWord() == 1 || IsHorizontal(s_.Direction)) {
    m.TopVoid = top;
    m.BottomVoid = m.CharHeight - 1 - bottom;
  }
}

}  // namespace rm
