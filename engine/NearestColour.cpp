#include "engine/NearestColour.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace rm {

namespace {

constexpr Colour kNoColour = 0x1000000;

int Square(int v) { return v * v; }

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
  switch (session.ModeNumber) {
    case 54:
    case 55: SetPalette(session.ModeColours); break;
    case 32:
    case 56:
    case 57:
    case 58:
    case 59:
    case 60:
    case 61: SetPalette(session.PaletteTable); break;
    default: SetPalette({}); break;
  }
}

void NearestColour::SetPalette(std::vector<Colour> palette) {
  std::sort(palette.begin(), palette.end());
  palette_ = std::move(palette);
  cache_.Clear();
}

Colour NearestColour::NearestColor(Colour c) {
  if (c == 0 || c == kNoColour) return c;
  if (palette_.empty() || c < 0 || c > 0xFFFFFF) return c;
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
  if (c < palette_[n / 4]) {
    first = 0;
    last = (n - 1) / 4;
  } else if (c < palette_[n / 2]) {
    first = n / 4;
    last = (n - 1) / 2;
  } else if (c < palette_[3 * n / 4]) {
    first = n / 2;
    last = 3 * (n - 1) / 4;
  } else {
    first = 3 * n / 4;
    last = n - 1;
  }
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

bool ConvertToNearestColor(Bitmap& bitmap, NearestColour& nearest, UiPort& ui, std::string_view name) {
  const bool quiet = IsFontTag(name);
  if (!quiet) ui.Status("Processing Color Conversion ...");
  if (nearest.PaletteSize() < 3) return false;
  const auto start = std::chrono::steady_clock::now();
  const int height = bitmap.Height();
  for (int y = 0; y < height; ++y) {
    if (ui.EscapePressed()) {
      ui.MessageDlg(" Processing interrupted by escape !", "Information", DlgType::Information, {"OK"});
      return false;
    }
    std::uint32_t* row = bitmap.Row(y);
    // Neighbouring pixels are often alike: skip the cache for a repeated colour.
    std::uint32_t lastIn = 0xFFFFFFFFu, lastOut = 0;
    for (int x = 0; x < bitmap.Width(); ++x) {
      if (row[x] != lastIn) {
        lastIn = row[x];
        lastOut = static_cast<std::uint32_t>(nearest.NearestColor(static_cast<Colour>(lastIn)));
      }
      row[x] = lastOut;
    }
    ui.Progress(y + 1, height);
  }
  if (!quiet) {
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    ui.Status("Color Conversion done in " + std::to_string(ms) + " ms");
  }
  return true;
}

}  // namespace rm
