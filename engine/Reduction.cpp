#include "engine/Reduction.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "engine/NearestColour.h"

namespace rm {

void MakeGray(Bitmap& bitmap, int x0, int y0, int x1, int y1) {
  x0 = std::max(x0, 0);
  y0 = std::max(y0, 0);
  x1 = std::min(x1, bitmap.Width());
  y1 = std::min(y1, bitmap.Height());
  for (int y = y0; y < y1; ++y) {
    std::uint32_t* row = bitmap.Row(y);
    for (int x = x0; x < x1; ++x)
      row[x] = static_cast<std::uint32_t>(GrayColour(GrayLevel(static_cast<Colour>(row[x]))));
  }
}

void MakeGray(Bitmap& bitmap) { MakeGray(bitmap, 0, 0, bitmap.Width(), bitmap.Height()); }

long double ThresholdLevelFor(int position, int maximum) {
  if (maximum <= 0) return 0;
  return static_cast<long double>(position) * (16777215.0L / maximum - 1.0L);
}

long long ApplyThreshold(const Bitmap& original, Bitmap& target, long double level, int offsetX, int offsetY,
                         int matrixWidth, int matrixHeight) {
  // The rule's loops run to the matrix size inclusive; only the pixels that exist in both
  // bitmaps can change, so the loops are cut to those.
  const int w = std::min(original.Width(), target.Width());
  const int h = std::min(original.Height(), target.Height());
  const int xFirst = std::max(offsetX, 0), xLast = std::min(offsetX + matrixWidth, w - 1);
  const int yFirst = std::max(offsetY, 0), yLast = std::min(offsetY + matrixHeight, h - 1);
  long long black = 0;
  for (int y = yFirst; y <= yLast; ++y) {
    const std::uint32_t* from = original.Row(y);
    std::uint32_t* to = target.Row(y);
    for (int x = xFirst; x <= xLast; ++x)
      if (level > static_cast<long double>(from[x] & 0xFFFFFFu)) {
        to[x] = 0;
        ++black;
      }
  }
  return black;
}

namespace {

struct Tap {
  int dx, dy, weight;
};

struct Kernel {
  int divisor;
  std::vector<Tap> taps;  // the first tap takes what integer division leaves over
};

// The published weights. Rows below the current one are listed left to right.
const Kernel& KernelOf(DitherMode mode) {
  static const std::array<Kernel, 7> kernels{{
      {1, {}},
      {16, {{1, 0, 7}, {-1, 1, 3}, {0, 1, 5}, {1, 1, 1}}},
      {42,
       {{1, 0, 8},
        {2, 0, 4},
        {-2, 1, 2},
        {-1, 1, 4},
        {0, 1, 8},
        {1, 1, 4},
        {2, 1, 2},
        {-2, 2, 1},
        {-1, 2, 2},
        {0, 2, 4},
        {1, 2, 2},
        {2, 2, 1}}},
      {32,
       {{1, 0, 5},
        {2, 0, 3},
        {-2, 1, 2},
        {-1, 1, 4},
        {0, 1, 5},
        {1, 1, 4},
        {2, 1, 2},
        {-1, 2, 2},
        {0, 2, 3},
        {1, 2, 2}}},
      {48,
       {{1, 0, 7},
        {2, 0, 5},
        {-2, 1, 3},
        {-1, 1, 5},
        {0, 1, 7},
        {1, 1, 5},
        {2, 1, 3},
        {-2, 2, 1},
        {-1, 2, 3},
        {0, 2, 5},
        {1, 2, 3},
        {2, 2, 1}}},
      {200,
       {{2, 0, 32},
        {-3, 1, 12},
        {-1, 1, 26},
        {1, 1, 30},
        {3, 1, 16},
        {-2, 2, 12},
        {0, 2, 26},
        {2, 2, 12},
        {-3, 3, 5},
        {-1, 3, 12},
        {1, 3, 12},
        {3, 3, 5}}},
      {32, {{1, 0, 8}, {2, 0, 4}, {-2, 1, 2}, {-1, 1, 4}, {0, 1, 8}, {1, 1, 4}, {2, 1, 2}}},
  }};
  const int i = static_cast<int>(mode);
  return kernels[static_cast<std::size_t>(i >= 0 && i < 7 ? i : 0)];
}

// Floor division for the rounding of negative sums.
int FloorDiv(int a, int b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

}  // namespace

// The picture is walked as a plain raster, every row left to right (no serpentine), the usual
// reference order of these kernels. Values are gray levels in 1/256 steps, so the fraction that
// the integer gray weights give is not lost before it is diffused. Each neighbour gets
// error * weight / divisor truncated toward zero and the first tap also gets what the
// truncations left over, so no error is lost inside the picture; error that would fall outside
// it is dropped. Integer arithmetic keeps the result the same on every machine.
void Dither(Bitmap& bitmap, ColorReduction reduction, DitherMode mode) {
  const int w = bitmap.Width(), h = bitmap.Height();
  if (w == 0 || h == 0) return;
  const Kernel& k = KernelOf(mode);
  constexpr int kPad = 3, kRows = 4;
  const int stride = w + 2 * kPad;
  std::vector<int> errors(static_cast<std::size_t>(stride) * kRows, 0);
  auto errorRow = [&](int y) { return errors.data() + static_cast<std::size_t>(y % kRows) * stride + kPad; };
  const bool mono = reduction == ColorReduction::Monochrome;
  for (int y = 0; y < h; ++y) {
    std::uint32_t* row = bitmap.Row(y);
    int* cur = errorRow(y);
    for (int x = 0; x < w; ++x) {
      const Colour c = static_cast<Colour>(row[x]);
      const int v = RedOf(c) * 77 + GreenOf(c) * 150 + BlueOf(c) * 29 + cur[x];
      int level;
      if (mono)
        level = v >= 127 * 256 + 128 ? 255 : 0;
      else
        level = std::clamp(FloorDiv(v + 128, 256), 0, 255);
      row[x] = static_cast<std::uint32_t>(GrayColour(level));
      const int err = v - level * 256;
      if (err == 0 || k.taps.empty()) continue;
      int given = 0;
      for (const Tap& t : k.taps) given += err * t.weight / k.divisor;
      bool first = true;
      for (const Tap& t : k.taps) {
        int share = err * t.weight / k.divisor;
        if (first) share += err - given;
        first = false;
        const int nx = x + t.dx, ny = y + t.dy;
        if (ny >= h || nx < 0 || nx >= w) continue;
        errorRow(ny)[nx] += share;
      }
    }
    std::fill(cur - kPad, cur - kPad + stride, 0);
  }
}

void ConvertTo256Colors(Bitmap& bitmap, NearestColour& nearest) {
  const int w = bitmap.Width(), h = bitmap.Height();
  // Errors per channel in 1/16 steps, for this row and the next, with a pixel of room each side.
  std::vector<int> now(static_cast<std::size_t>(w + 2) * 3, 0), next(now.size(), 0);
  for (int y = 0; y < h; ++y) {
    std::uint32_t* row = bitmap.Row(y);
    for (int x = 0; x < w; ++x) {
      const Colour c = static_cast<Colour>(row[x]);
      int wanted[3] = {RedOf(c), GreenOf(c), BlueOf(c)};
      int* e = &now[static_cast<std::size_t>(x + 1) * 3];
      for (int a = 0; a < 3; ++a) wanted[a] = std::clamp(wanted[a] + FloorDiv(e[a] + 8, 16), 0, 255);
      const Colour got = nearest.NearestColor(MakeColour(wanted[0], wanted[1], wanted[2]));
      row[x] = static_cast<std::uint32_t>(got);
      const int have[3] = {RedOf(got), GreenOf(got), BlueOf(got)};
      for (int a = 0; a < 3; ++a) {
        const int err = wanted[a] - have[a];
        now[static_cast<std::size_t>(x + 2) * 3 + a] += err * 7;
        next[static_cast<std::size_t>(x) * 3 + a] += err * 3;
        next[static_cast<std::size_t>(x + 1) * 3 + a] += err * 5;
        next[static_cast<std::size_t>(x + 2) * 3 + a] += err;
      }
    }
    now.swap(next);
    std::fill(next.begin(), next.end(), 0);
  }
}

int CountColors(const Bitmap& bitmap) {
  const std::size_t pixels = static_cast<std::size_t>(bitmap.Width()) * static_cast<std::size_t>(bitmap.Height());
  // A small picture is counted from a sorted copy: clearing the 2 MiB of one bit per colour
  // would cost more than the picture itself.
  if (pixels < (std::size_t{1} << 15)) {
    std::vector<std::uint32_t> colours;
    colours.reserve(pixels);
    for (int y = 0; y < bitmap.Height(); ++y)
      for (int x = 0; x < bitmap.Width(); ++x) colours.push_back(bitmap.Row(y)[x] & 0xFFFFFFu);
    std::sort(colours.begin(), colours.end());
    return static_cast<int>(std::unique(colours.begin(), colours.end()) - colours.begin());
  }
  std::vector<std::uint64_t> seen(std::size_t{1} << 18, 0);
  int count = 0;
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* row = bitmap.Row(y);
    for (int x = 0; x < bitmap.Width(); ++x) {
      const std::uint32_t c = row[x] & 0xFFFFFFu;
      std::uint64_t& word = seen[c >> 6];
      const std::uint64_t bit = std::uint64_t{1} << (c & 63);
      if (!(word & bit)) {
        word |= bit;
        ++count;
      }
    }
  }
  return count;
}

bool ConvertToMyColor(Bitmap& bitmap, std::vector<Colour> palette, int modeColours, UiPort& ui) {
  ui.Status("Processing Color Conversion to Color Palette ...");
  if (palette.empty()) return false;
  const auto start = std::chrono::steady_clock::now();
  std::sort(palette.begin(), palette.end());
  const std::size_t step = modeColours == 16 ? 4 : (modeColours == 256 || modeColours == 8) ? 2 : 1;
  // The used colours in ascending order of value; a colour's rank in it picks its target.
  std::vector<std::uint32_t> used;
  used.reserve(static_cast<std::size_t>(bitmap.Width()) * bitmap.Height());
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* row = bitmap.Row(y);
    for (int x = 0; x < bitmap.Width(); ++x) used.push_back(row[x] & 0xFFFFFFu);
  }
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  auto targetOf = [&](std::uint32_t c) {
    const std::size_t rank = static_cast<std::size_t>(std::lower_bound(used.begin(), used.end(), c) - used.begin());
    return static_cast<std::uint32_t>(palette[std::min(rank * step, palette.size() - 1)]);
  };
  if (!MapPixelsByRow(bitmap, ui, [&](std::uint32_t c) { return targetOf(c & 0xFFFFFFu); })) return false;
  const auto ms =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
  ui.Status("Colors Converted to Color Palette in  " + std::to_string(ms) + " ms");
  return true;
}

}  // namespace rm
