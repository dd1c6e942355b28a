#pragma once
#include <span>
#include <string_view>

namespace rm {

// A block of the Unicode standard's Blocks.txt: a range of code points with its name, spelt as
// Unicode spells it.
struct UnicodeBlock {
  char32_t first;
  char32_t last;
  std::string_view name;
};

// Every block, ascending by first code point, from Basic Latin to Supplementary Private Use
// Area-B.
std::span<const UnicodeBlock> UnicodeBlocks();
// The block holding `c`; nullptr for a code point outside every block.
const UnicodeBlock* FindUnicodeBlock(char32_t c);
// The block of that name, compared without regard to case, blanks, "-" and "_" (the standard's
// loose matching); nullptr when there is none.
const UnicodeBlock* FindUnicodeBlock(std::string_view name);

}  // namespace rm
