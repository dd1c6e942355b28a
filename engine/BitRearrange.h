#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

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

// The width of the value the rearrangement table works on in the current mode: a pixel of 12, 16,
// 18 or 24 bits in the modes from 4096 colours up, a data byte in all others.
int RearrangedValueBits(const ConversionSession& s);

// "7,6,5,4,3,2,1,0": for each bit of the value, from the highest down to bit 0, the bit of the
// packed value it takes. So that list leaves a byte as it is and "0,1,2,3,4,5,6,7" reverses it.
// False with the reason when the text is not a list of every bit from 0 to n-1 exactly once.
bool ParseBitPermutation(const std::string& text, std::vector<int>& sources, std::string& error);

// What the user asks of the rearrangement: red and blue traded, and a permutation of the bits.
struct RearrangeRequest {
  bool swapRedBlue = false;
  std::string permutation;  // the text of ParseBitPermutation; empty: none
};

// Writes the request into the session's `ReorderTable` as "swap bits" rows and turns the table
// on; a request with nothing asked leaves the session alone. Each row reads the value as it was
// before the table, so the table can trade bits in pairs but not move three or more round a
// cycle: such a permutation is refused. Red and blue are traded after the per-width swap has put
// red on top, so a BGR panel gets blue in the top bits; a user permutation applies to that
// result. False with the reason (the session untouched) when the mode has no red and blue fields,
// the list does not fit the mode's value or cannot be made of pairs.
bool SetDataRearrangement(ConversionSession& s, const RearrangeRequest& request, std::string& error);

// Low 8 bits reversed; everything above is dropped.
inline int ReverseByteBits(int value) {
  int r = 0;
  for (int i = 0; i < 8; ++i)
    if (value & (1 << i)) r |= 0x80 >> i;
  return r;
}

}  // namespace rm
