#include "engine/BitRearrange.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace rm {

std::uint32_t SwapOuterFields(std::uint32_t value, int width, int canvasBits) {
  int pairs = 0;
  switch (width) {
    case 12: pairs = 4; break;
    case 16: pairs = 5; break;
    case 18: pairs = 6; break;
    case 24: pairs = 8; break;
    default: return value;
  }
  std::uint32_t result = value;
  for (int i = 0; i < pairs; ++i) {
    const int hi = width - 1 - i;
    const int lo = pairs - 1 - i;
    if (canvasBits + 1 < hi || canvasBits + 1 < lo + 1) continue;
    const std::uint32_t hiBit = (value >> hi) & 1u;
    const std::uint32_t loBit = (value >> lo) & 1u;
    result = (result & ~(1u << hi) & ~(1u << lo)) | (loBit << hi) | (hiBit << lo);
  }
  return result;
}

std::uint32_t Reorder4096Output(std::uint32_t v, int canvasBits) { return SwapOuterFields(v, 12, canvasBits); }
std::uint32_t Reorder65kOutput(std::uint32_t v, int canvasBits) { return SwapOuterFields(v, 16, canvasBits); }
std::uint32_t Reorder262kOutput(std::uint32_t v, int canvasBits) { return SwapOuterFields(v, 18, canvasBits); }
std::uint32_t Reorder16MOutput(std::uint32_t v, int canvasBits) { return SwapOuterFields(v, 24, canvasBits); }

namespace {

std::string Upper(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return s;
}

// A whole non-negative number, or -1.
int BitNumber(const std::string& text) {
  std::size_t b = text.find_first_not_of(' ');
  std::size_t e = text.find_last_not_of(' ');
  if (b == std::string::npos) return -1;
  int v = 0;
  for (std::size_t i = b; i <= e; ++i) {
    if (!std::isdigit(static_cast<unsigned char>(text[i]))) return -1;
    v = v * 10 + (text[i] - '0');
    if (v > 1000) return -1;
  }
  return v;
}

}  // namespace

std::uint32_t ReorderOutput(std::uint32_t value, const std::array<ReorderRow, 32>& table, bool swapFirstLast,
                            int canvasBits) {
  const int limit = swapFirstLast ? canvasBits + 1 : 32;
  const std::uint32_t original = value;
  std::uint32_t r = value;
  for (const ReorderRow& row : table) {
    const std::string f = Upper(row.function);
    if (f == "SWAP BYTES 16 BITS") {
      r = (r & 0xFFFF0000u) | ((r & 0xFFu) << 8) | ((r >> 8) & 0xFFu);
      break;
    }
    if (f.empty()) break;
    if (f != "SWAP BITS") continue;
    const int a = BitNumber(row.bitA);
    const int b = BitNumber(row.bitB);
    if (a < 0 || b < 0 || a >= limit || b >= limit || a > 31 || b > 31) continue;
    const std::uint32_t bitA = (original >> a) & 1u;
    const std::uint32_t bitB = (original >> b) & 1u;
    r = (r & ~(1u << b)) | (bitA << b);
    r = (r & ~(1u << a)) | (bitB << a);
  }
  return r;
}

}  // namespace rm

namespace rm {

int RearrangedValueBits(const ConversionSession& s) {
  if (s.Colours4096) return 12;
  if (s.Colours65536) return 16;
  if (s.Colours262kPacked || s.Colours262kUnpacked) return 18;
  if (s.Colours16M) return 24;
  return 8;
}

bool ParseBitPermutation(const std::string& text, std::vector<int>& sources, std::string& error) {
  sources.clear();
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = text.find(',', start);
    const std::string item = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    const int bit = BitNumber(item);
    if (bit < 0 || bit > 31) {
      error = "--rearrange takes bit numbers 0 to 31 separated by commas, not \"" + item + "\"";
      return false;
    }
    sources.push_back(bit);
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  const int n = static_cast<int>(sources.size());
  std::vector<bool> seen(static_cast<std::size_t>(n), false);
  for (const int bit : sources) {
    if (bit >= n || seen[static_cast<std::size_t>(bit)]) {
      error = "--rearrange must name every bit from 0 to " + std::to_string(n - 1) + " once: " + text;
      return false;
    }
    seen[static_cast<std::size_t>(bit)] = true;
  }
  return true;
}

namespace {

// source[b]: the input bit that output bit b takes.
std::vector<int> Identity(int width) {
  std::vector<int> v(static_cast<std::size_t>(width));
  for (int b = 0; b < width; ++b) v[static_cast<std::size_t>(b)] = b;
  return v;
}

// The outer fields of a pixel traded: red and blue, whatever the width.
std::vector<int> RedBlueSwap(int width) {
  const int field = width == 12 ? 4 : width == 16 ? 5 : width == 18 ? 6 : 8;
  std::vector<int> v = Identity(width);
  for (int i = 0; i < field; ++i) {
    v[static_cast<std::size_t>(i)] = width - field + i;
    v[static_cast<std::size_t>(width - field + i)] = i;
  }
  return v;
}

}  // namespace

bool SetDataRearrangement(ConversionSession& s, const RearrangeRequest& request, std::string& error) {
  if (!request.swapRedBlue && request.permutation.empty()) return true;
  const int width = RearrangedValueBits(s);
  std::vector<int> source = Identity(width);
  if (request.swapRedBlue) {
    if (width == 8) {
      error = "--swap-rb trades the red and blue fields of a pixel: it needs a colour mode of 4096 colours or more";
      return false;
    }
    source = RedBlueSwap(width);
  }
  if (!request.permutation.empty()) {
    std::vector<int> listed;
    if (!ParseBitPermutation(request.permutation, listed, error)) return false;
    if (static_cast<int>(listed.size()) != width) {
      error = "--rearrange lists " + std::to_string(listed.size()) + " bits, but a value of this mode has " +
              std::to_string(width) + " bits";
      return false;
    }
    // Listed from the highest bit down; applied to the value the red and blue swap made.
    std::vector<int> combined(static_cast<std::size_t>(width));
    for (int b = 0; b < width; ++b) {
      const int from = listed[static_cast<std::size_t>(width - 1 - b)];
      combined[static_cast<std::size_t>(b)] = source[static_cast<std::size_t>(from)];
    }
    source = combined;
  }
  std::array<ReorderRow, 32> table{};
  std::size_t row = 0;
  for (int b = 0; b < width; ++b) {
    const int from = source[static_cast<std::size_t>(b)];
    if (source[static_cast<std::size_t>(from)] != b) {
      error = "--rearrange: bit " + std::to_string(b) + " takes bit " + std::to_string(from) +
              ", which does not take bit " + std::to_string(b) +
              " in return; the rearrangement table trades bits in pairs only";
      return false;
    }
    if (from > b) table[row++] = ReorderRow{"swap bits", std::to_string(b), std::to_string(from)};
  }
  s.ReorderTable = table;
  s.ReorderOn = true;
  return true;
}

}  // namespace rm
