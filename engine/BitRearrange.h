#pragma once
#include <array>
#include <cstdint>

#include "engine/ConversionSession.h"

namespace rm {

// Fixed swap of the outer colour fields of one pixel value, by width: 12, 16, 18 or 24 bits.
// Because a palette index has blue in its high bits, this brings red to the top.
std::uint32_t SwapOuterFields(std::uint32_t value, int width, int canvasBits);

std::uint32_t Reorder4096Output(std::uint32_t value, int canvasBits);
std::uint32_t Reorder65kOutput(std::uint32_t value, int canvasBits);
std::uint32_t Reorder262kOutput(std::uint32_t value, int canvasBits);
std::uint32_t Reorder16MOutput(std::uint32_t value, int canvasBits);
inline std::uint32_t Reorder256Output(std::uint32_t value) { return value; }

// The user's table of bit swaps. Each row reads the value as it was before the table started.
std::uint32_t ReorderOutput(std::uint32_t value, const std::array<ReorderRow, 32>& table, bool swapFirstLast,
                            int canvasBits);

// Low 8 bits reversed; everything above is dropped.
inline int ReverseByteBits(int value) {
  int r = 0;
  for (int i = 0; i < 8; ++i)
    if (value & (1 << i)) r |= 0x80 >> i;
  return r;
}

}  // namespace rm
