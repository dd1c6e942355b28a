#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"

namespace rm {

// How the data of a table are written in its text: the marker in front of each datum ("0x", "$",
// "0b" or the user's own), the one behind it ("h", "b" or the user's own) and the digits' base.
// A datum is the marker, one or more digits and the closing marker, standing as a word of its own.
struct ArrayTextSyntax {
  std::string prefix = "0x";
  std::string suffix;
  int radix = 16;  // 16, 10 or 2
};

// The data of a text, table by table, in the order written. Comments (/* */, //, and ; ' ! at
// the start of a word) hold no data. A table ends where a declaration or a brace stands: at "{",
// "}", "=" or "[" after some data; so the lines of a C array, of an assembler table or of BASIC
// DATA statements are one table each, and two arrays in a file are two tables.
struct ArrayText {
  std::vector<std::vector<std::uint32_t>> tables;
  std::string error;  // empty when the text was read whole
};
ArrayText ReadArrayText(std::string_view text, const ArrayTextSyntax& syntax);

// The data bytes of a table written in words of `widthBits` (8, 16 or 32), in the order the packer
// made them. A word's text holds its bytes from the first made when the session is big endian,
// from the last made otherwise; a 16 bit decimal word is always first byte * 256 + second. False
// with the reason when a datum does not fit the width.
bool WordsToBytes(const std::vector<std::uint32_t>& words, int widthBits, bool bigEndian, bool decimal,
                  std::vector<std::uint8_t>& bytes, std::string& error);

// The gray 4 bytes that two plane tables were split from (plane B the first table, plane A the
// second): the 16 bit pair V = first * 256 + second holds A in its odd bits and B in its even
// bits, from the planes' top bits in big endian and from their bottom bits otherwise.
std::vector<std::uint8_t> MergePlanes(const std::vector<std::uint8_t>& planeB, const std::vector<std::uint8_t>& planeA,
                                      bool bigEndian);

// What an import made of the data.
struct ArrayImportResult {
  std::string error;            // empty when the data filled the canvas exactly
  std::size_t bytesNeeded = 0;  // the bytes the session's walk takes for the canvas
  std::size_t bytesFound = 0;
};

// Paints `data` (the bytes as the packer made them, after any inversion of the output has been
// taken back) onto `canvas` by the session's colour mode, Paging Scheme, bit order and options:
// the walk of the writer, each datum unpacked by the exact inverse of its packer, each value
// given the colour of its place in the mode's table. The session's export area is the whole
// `canvas` unless a selection is active. `padding` is the count of zero bytes a last word of 16 or
// 32 bits may add beyond the walk's data. On a count that does not match, a value the mode's
// table has no colour for or a rearrangement that cannot be undone, the canvas is left as it was.
ArrayImportResult ImportArray(ConversionSession& s, const std::vector<std::uint8_t>& data, Bitmap& canvas,
                              std::size_t padding = 0);

}  // namespace rm
