#include "support/ShellTestSupport.h"

namespace rmtest {

rm::Bitmap PatternPicture(int w, int h, const std::vector<rm::Colour>& colours, std::uint32_t seed) {
  rm::Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1664525u + 1013904223u;
      b.SetPixel(x, y, colours[(seed >> 16) % colours.size()]);
    }
  return b;
}

}  // namespace rmtest
