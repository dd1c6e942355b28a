#include "canvas/PixelCleaners.h"

#include <array>
#include <unordered_set>

namespace rm {

namespace {

using C = PixelCleaner;

constexpr std::array<PixelCleanerInfo, 6> kCleaners{{
    {C::Neighbours, "1. Correct Single Pixel Color Surrounded by 5-8 Pixels Same Color", "Neighbour Pixels"},
    {C::NeighboursUntilStable, "2. Perform successive 1. Until no more changes left", "Neighbour Pixels"},
    {C::Horizontal, "3. Correct Single Pixel Color Horizontal Lines", "Horizontal Pixels"},
    {C::Vertical, "4. Correct Single Pixel Color Vertical Lines", "Vertical Pixels"},
    {C::Orthogonal, "5. Correct Single Pixel Color Horizontal and Vertical Lines", "Ortogonal Pixels"},
    {C::LinesUntilStable, "4. Perform successive 2. Until no more changes left", "Neighbour Pixels"},
}};

int CountColours(const Bitmap& b) {
  std::unordered_set<Colour> seen;
  for (int y = 0; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x) seen.insert(b.GetPixel(x, y));
  return static_cast<int>(seen.size());
}

long long NeighboursPass(Bitmap& b) {
  long long changed = 0;
  for (int y = 1; y + 1 < b.Height(); ++y)
    for (int x = 1; x + 1 < b.Width(); ++x) {
      const Colour here = b.GetPixel(x, y);
      if (here == kWhite) continue;
      std::array<Colour, 8> around{};
      int n = 0;
      for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
          if (dx || dy) around[n++] = b.GetPixel(x + dx, y + dy);
      // At least 5 of 8: no other colour can reach the count, so the first to reach it wins.
      for (Colour c : around) {
        if (c == kWhite || c == here) continue;
        int count = 0;
        for (Colour o : around) count += o == c;
        if (count >= 5) {
          b.SetPixel(x, y, c);
          ++changed;
          break;
        }
      }
    }
  return changed;
}

long long LinePass(Bitmap& b, int dx, int dy) {
  long long changed = 0;
  for (int y = dy; y + dy < b.Height(); ++y)
    for (int x = dx; x + dx < b.Width(); ++x) {
      const Colour a = b.GetPixel(x - dx, y - dy), c = b.GetPixel(x + dx, y + dy);
      if (a == c && b.GetPixel(x, y) != a) {
        b.SetPixel(x, y, a);
        ++changed;
      }
    }
  return changed;
}

long long Pass(Bitmap& b, PixelCleaner cleaner) {
  switch (cleaner) {
    case C::Neighbours: return NeighboursPass(b);
    case C::Horizontal: return LinePass(b, 1, 0);
    case C::Vertical: return LinePass(b, 0, 1);
    case C::Orthogonal: return LinePass(b, 1, 0) + LinePass(b, 0, 1);
    case C::NeighboursUntilStable: return Pass(b, C::Neighbours);
    case C::LinesUntilStable: return Pass(b, C::Orthogonal);
  }
  return 0;
}

}  // namespace

const PixelCleanerInfo& CleanerInfo(PixelCleaner cleaner) { return kCleaners[static_cast<std::size_t>(cleaner)]; }

CleanResult CleanPixels(Bitmap& bitmap, PixelCleaner cleaner) {
  CleanResult r;
  r.coloursBefore = CountColours(bitmap);
  const bool repeat = cleaner == C::NeighboursUntilStable || cleaner == C::LinesUntilStable;
  // A pass corrects in place, so a settled pixel is seen by the next ones and the runs settle
  // quickly; the bound only guards against a picture that would never settle.
  constexpr int kMaxPasses = 1000;
  const int limit = repeat ? kMaxPasses : 1;
  for (int i = 0; i < limit; ++i) {
    const long long changed = Pass(bitmap, cleaner);
    r.changed += changed;
    if (changed == 0) break;
  }
  r.coloursAfter = CountColours(bitmap);
  return r;
}

void TraceContour(Bitmap& bitmap, const FloodArea& marks, Colour pen, Colour fill) {
  for (int y = marks.y1; y < marks.y2; ++y) {
    bool atEdge = true;
    for (int x = marks.x1; x < marks.x2; ++x) {
      if (!marks.Marked(x, y)) continue;
      const bool inner =
          marks.Marked(x - 1, y) && marks.Marked(x + 1, y) && marks.Marked(x, y - 1) && marks.Marked(x, y + 1);
      if (!atEdge && inner) {
        bitmap.SetPixel(x, y, fill);
        continue;
      }
      bitmap.SetPixel(x, y, pen);
      atEdge = !marks.Marked(x + 1, y);
    }
  }
}

}  // namespace rm
