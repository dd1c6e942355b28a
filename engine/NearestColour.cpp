#include "engine/NearestColour.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <string>

#include "engine/ColourModes.h"
#include "engine/Reduction.h"

namespace rm {

namespace {

constexpr Colour kNoColour = 0x1000000;

int Square(int v) { return v * v; }

int Component(Colour c, int axis) { return (c >> (8 * axis)) & 0xFF; }

int Distance(Colour a, Colour b) {
  return Square(RedOf(a) - RedOf(b)) + Square(GreenOf(a) - GreenOf(b)) + Square(BlueOf(a) - BlueOf(b));
}

bool IsFontTag(std::string_view name) {
  if (name.size() != 4) return false;
  for (std::size_t i = 0; i < 4; ++i) {
    char ch = name[i];
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
    if (ch != "FONT"[i]) return false;
  }
  return true;
}

}  // namespace

bool NearestColour::Cache::Find(std::uint32_t key, Colour& value) const {
  if (slots_.empty()) return false;
  for (std::size_t i = IndexOf(key);; i = (i + 1) & (slots_.size() - 1)) {
    const Slot& s = slots_[i];
    if (s.key == key) {
      value = s.value;
      return true;
    }
    if (s.key == kEmpty) return false;
  }
}

void NearestColour::Cache::Insert(std::uint32_t key, Colour value) {
  if ((size_ + 1) * 2 > slots_.size()) Grow();
  for (std::size_t i = IndexOf(key);; i = (i + 1) & (slots_.size() - 1)) {
    Slot& s = slots_[i];
    if (s.key == key) {
      s.value = value;
      return;
    }
    if (s.key == kEmpty) {
      s = {key, value};
      ++size_;
      return;
    }
  }
}

void NearestColour::Cache::Clear() {
  slots_.clear();
  slots_.shrink_to_fit();
  size_ = 0;
  shift_ = 0;
}

std::size_t NearestColour::Cache::IndexOf(std::uint32_t key) const {
  // Fibonacci hashing spreads neighbouring colours over the whole table.
  return static_cast<std::size_t>((key * 0x9E3779B1u) >> shift_);
}

void NearestColour::Cache::Grow() {
  std::vector<Slot> old = std::move(slots_);
  int bits = 10;
  while ((std::size_t{1} << bits) < old.size() * 2) ++bits;
  slots_.assign(std::size_t{1} << bits, Slot{kEmpty, 0});
  shift_ = 32 - bits;
  size_ = 0;
  for (const Slot& s : old)
    if (s.key != kEmpty) Insert(s.key, s.value);
}

void NearestColour::Configure(const ConversionSession& session) {
  const ColourModeInfo& mode = ModeRow(session.ModeNumber);
  // A gray ramp is reached by gray level (CanvasReduction), not by colour: the search leaves
  // colours as they are there.
  const ColourTable table = mode.grayLevels > 0 ? ColourTable::None : mode.Table();
  if (table == ColourTable::ModeColours)
    SetPalette(session.ModeColours);
  else if (table == ColourTable::PaletteTable)
    SetPalette(session.PaletteTable);
  else
    SetPalette({});
}

void NearestColour::SetPalette(std::vector<Colour> palette, bool latticeTables) {
  if (!std::is_sorted(palette.begin(), palette.end())) std::sort(palette.begin(), palette.end());
  palette_ = std::move(palette);
  cache_.Clear();
  const std::size_t n = palette_.size();
  grids_ = {};
  lattice_ = Lattice();
  if (latticeTables && lattice_.Build(palette_)) return;  // the tables answer: no grid to build
  if (n / 4 >= kGridFrom) {
    grids_[0].Build(palette_, 0, (n - 1) / 4);
    grids_[1].Build(palette_, n / 4, (n - 1) / 2);
    grids_[2].Build(palette_, n / 2, 3 * (n - 1) / 4);
    grids_[3].Build(palette_, 3 * n / 4, n - 1);
  }
}

int NearestColour::QuarterOf(Colour c, std::size_t& first, std::size_t& last) const {
  const std::size_t n = palette_.size();
  if (c < palette_[n / 4]) {
    first = 0;
    last = (n - 1) / 4;
    return 0;
  }
  if (c < palette_[n / 2]) {
    first = n / 4;
    last = (n - 1) / 2;
    return 1;
  }
  if (c < palette_[3 * n / 4]) {
    first = n / 2;
    last = 3 * (n - 1) / 4;
    return 2;
  }
  first = 3 * n / 4;
  last = n - 1;
  return 3;
}

bool NearestColour::Lattice::Build(const std::vector<Colour>& sorted) {
  *this = Lattice();
  const std::size_t n = sorted.size();
  if (n < 8) return false;
  // The levels of each channel, then the lattice test: no entry twice and as many entries as
  // level combinations means every combination is there once.
  std::array<std::array<bool, 256>, 3> used{};
  for (std::size_t i = 0; i < n; ++i) {
    if (i > 0 && sorted[i] == sorted[i - 1]) return false;
    for (int a = 0; a < 3; ++a) used[a][static_cast<std::size_t>(Component(sorted[i], a))] = true;
  }
  std::array<std::vector<int>, 3> values;
  for (int a = 0; a < 3; ++a)
    for (int v = 0; v < 256; ++v)
      if (used[a][static_cast<std::size_t>(v)]) values[a].push_back(v);
  if (values[0].size() * values[1].size() * values[2].size() != n) return false;
  const std::size_t plane = values[0].size() * values[1].size();
  const std::size_t firsts[4] = {0, n / 4, n / 2, 3 * n / 4};
  const std::size_t lasts[4] = {(n - 1) / 4, (n - 1) / 2, 3 * (n - 1) / 4, n - 1};
  for (int q = 0; q < 4; ++q) {
    if (firsts[q] % plane != 0 || (lasts[q] + 1) % plane != 0 || lasts[q] < firsts[q]) return false;
    blueLow_[static_cast<std::size_t>(q)] = static_cast<int>(firsts[q] / plane);
    blueHigh_[static_cast<std::size_t>(q)] = static_cast<int>(lasts[q] / plane);
  }
  for (int a = 0; a < 3; ++a) {
    const std::vector<int>& lv = values[static_cast<std::size_t>(a)];
    levels_[static_cast<std::size_t>(a)] = static_cast<int>(lv.size());
    std::size_t k = 0;
    for (int v = 0; v < 256; ++v) {
      // Move up only while the next level is strictly nearer: a tie keeps the lower level.
      while (k + 1 < lv.size() && std::abs(lv[k + 1] - v) < std::abs(lv[k] - v)) ++k;
      level_[static_cast<std::size_t>(a)][static_cast<std::size_t>(v)] = static_cast<std::uint8_t>(k);
    }
  }
  planeSize_ = plane;
  return true;
}

Colour NearestColour::Lattice::Nearest(const std::vector<Colour>& sorted, Colour c, int quarter) const {
  const auto q = static_cast<std::size_t>(quarter);
  const int r = level_[0][static_cast<std::size_t>(Component(c, 0))];
  const int g = level_[1][static_cast<std::size_t>(Component(c, 1))];
  const int b = std::clamp<int>(level_[2][static_cast<std::size_t>(Component(c, 2))], blueLow_[q], blueHigh_[q]);
  return sorted[static_cast<std::size_t>((b * levels_[1] + g) * levels_[0] + r)];
}

void NearestColour::QuarterGrid::Build(const std::vector<Colour>& palette, std::size_t first, std::size_t last) {
  int hi[3] = {0, 0, 0};
  for (int a = 0; a < 3; ++a) min_[a] = 255;
  for (std::size_t i = first; i <= last; ++i)
    for (int a = 0; a < 3; ++a) {
      min_[a] = std::min(min_[a], Component(palette[i], a));
      hi[a] = std::max(hi[a], Component(palette[i], a));
    }
  // About 16 cells a side over the box the quarter's colours fill.
  for (int a = 0; a < 3; ++a) {
    shift_[a] = 0;
    while (((hi[a] - min_[a]) >> shift_[a]) >= 16) ++shift_[a];
    cells_[a] = ((hi[a] - min_[a]) >> shift_[a]) + 1;
  }
  auto cellOf = [&](Colour c) {
    std::size_t cell = 0;
    for (int a = 2; a >= 0; --a) cell = cell * cells_[a] + ((Component(c, a) - min_[a]) >> shift_[a]);
    return cell;
  };
  const std::size_t total = static_cast<std::size_t>(cells_[0]) * cells_[1] * cells_[2];
  start_.assign(total + 1, 0);
  for (std::size_t i = first; i <= last; ++i) ++start_[cellOf(palette[i]) + 1];
  for (std::size_t c = 0; c < total; ++c) start_[c + 1] += start_[c];
  entries_.assign(last - first + 1, 0);
  std::vector<std::uint32_t> fill(start_.begin(), start_.end() - 1);
  for (std::size_t i = first; i <= last; ++i) entries_[fill[cellOf(palette[i])]++] = static_cast<std::uint32_t>(i);
}

std::size_t NearestColour::QuarterGrid::Nearest(const std::vector<Colour>& palette, Colour c) const {
  int q[3], qc[3];
  for (int a = 0; a < 3; ++a) {
    q[a] = Component(c, a);
    qc[a] = std::clamp((q[a] - min_[a]) >> shift_[a], 0, cells_[a] - 1);
    if (q[a] < min_[a]) qc[a] = 0;
  }
  int best = std::numeric_limits<int>::max();
  std::size_t bestIndex = 0;
  // The least squared distance from the colour to the colours a cell can hold on one axis.
  auto gap = [&](int a, int cell) {
    const int lo = min_[a] + (cell << shift_[a]);
    const int hi = lo + (1 << shift_[a]) - 1;
    const int d = q[a] < lo ? lo - q[a] : (q[a] > hi ? q[a] - hi : 0);
    return d * d;
  };
  // Shells of cells around the colour's own, nearest first. A tie with a lower index may lie in
  // a farther cell, so the search stops only once every unseen cell is strictly farther.
  for (int r = 0;; ++r) {
    bool covered = true;
    int bound = std::numeric_limits<int>::max();
    for (int a = 0; a < 3; ++a) {
      if (qc[a] - r > 0) {
        covered = false;
        const int d = q[a] - (min_[a] + ((qc[a] - r) << shift_[a])) + 1;
        bound = std::min(bound, d * d);
      }
      if (qc[a] + r < cells_[a] - 1) {
        covered = false;
        const int d = min_[a] + ((qc[a] + r + 1) << shift_[a]) - q[a];
        bound = std::min(bound, d * d);
      }
    }
    const int z0 = std::max(qc[2] - r, 0), z1 = std::min(qc[2] + r, cells_[2] - 1);
    const int y0 = std::max(qc[1] - r, 0), y1 = std::min(qc[1] + r, cells_[1] - 1);
    const int x0 = std::max(qc[0] - r, 0), x1 = std::min(qc[0] + r, cells_[0] - 1);
    for (int z = z0; z <= z1; ++z) {
      const int gz = gap(2, z);
      if (gz > best) continue;
      for (int y = y0; y <= y1; ++y) {
        const int gy = gz + gap(1, y);
        if (gy > best) continue;
        const bool edgeZY = z == qc[2] - r || z == qc[2] + r || y == qc[1] - r || y == qc[1] + r;
        for (int x = x0; x <= x1; ++x) {
          // Only the cells of this shell; the inner ones were searched before.
          if (!edgeZY && x != qc[0] - r && x != qc[0] + r) continue;
          if (gy + gap(0, x) > best) continue;
          const std::size_t cell = (static_cast<std::size_t>(z) * cells_[1] + y) * cells_[0] + x;
          for (std::uint32_t k = start_[cell]; k < start_[cell + 1]; ++k) {
            const std::size_t i = entries_[k];
            const int d = Distance(c, palette[i]);
            if (d < best || (d == best && i < bestIndex)) {
              best = d;
              bestIndex = i;
            }
          }
        }
      }
    }
    if (covered || bound > best) break;
  }
  return bestIndex;
}

Colour NearestColour::NearestColor(Colour c) {
  if (c == 0 || c == kNoColour) return c;
  if (palette_.empty() || c < 0 || c > 0xFFFFFF) return c;
  if (!lattice_.Empty()) return Search(c);
  Colour found;
  if (cache_.Find(static_cast<std::uint32_t>(c), found)) return found;
  found = Search(c);
  cache_.Insert(static_cast<std::uint32_t>(c), found);
  return found;
}

Colour NearestColour::Search(Colour c) const {
  const std::size_t n = palette_.size();
  if (n == 0) return c;
  std::size_t first, last;
  const int quarter = QuarterOf(c, first, last);
  if (!lattice_.Empty()) return lattice_.Nearest(palette_, c, quarter);
  if (!grids_[0].Empty()) return palette_[grids_[static_cast<std::size_t>(quarter)].Nearest(palette_, c)];
  int best = kNoColour;
  Colour found = c;
  for (std::size_t i = first; i <= last; ++i) {
    int d = Distance(c, palette_[i]);
    if (d < best) {
      best = d;
      found = palette_[i];
      if (d == 0) break;
    }
  }
  return found;
}

bool ConvertToNearestColor(Bitmap& bitmap, NearestColour& nearest, UiPort& ui, std::string_view name, bool grayFilter) {
  const bool quiet = IsFontTag(name);
  if (!quiet) ui.Status("Processing Color Conversion ...");
  if (grayFilter) {
    MakeGray(bitmap);
    return true;
  }
  if (nearest.PaletteSize() < 3) return false;
  const auto start = std::chrono::steady_clock::now();
  if (!MapPixelsByRow(bitmap, ui, [&](std::uint32_t c) {
        return static_cast<std::uint32_t>(nearest.NearestColor(static_cast<Colour>(c)));
      }))
    return false;
  if (!quiet) {
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    ui.Status("Color Conversion done in " + std::to_string(ms) + " ms");
  }
  return true;
}

}  // namespace rm
