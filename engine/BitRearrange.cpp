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
