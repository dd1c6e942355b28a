// Feeds arbitrary text to the Data Array reader, with a syntax chosen by the first byte, and
// checks what must hold for any text: nothing crashes; the tables read, written again as plain
// data of the same syntax, read back the same; and their bytes painted on a small monochrome
// canvas either fill it exactly or are refused with the count the canvas takes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/ArrayImport.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

std::string Digits(std::uint32_t v, int radix) {
  if (v == 0) return "0";
  std::string s;
  for (; v != 0; v /= static_cast<std::uint32_t>(radix)) s.insert(s.begin(), "0123456789ABCDEF"[v % radix]);
  return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const rm::ArrayTextSyntax kSyntaxes[] = {{"0x", "", 16}, {"$", "", 16}, {"", "h", 16}, {"0b", "", 2},
                                                  {"", "b", 2},   {"", "", 10},  {"#", "u", 10}};
  const rm::ArrayTextSyntax& syntax = kSyntaxes[data[0] % (sizeof kSyntaxes / sizeof kSyntaxes[0])];
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  const rm::ArrayText read = rm::ReadArrayText(text, syntax);
  if (!read.error.empty()) return 0;

  // Written again as plain tables, the data read back the same.
  std::string again;
  for (const auto& table : read.tables) {
    Check(!table.empty());
    again += "{";
    for (std::uint32_t v : table) again += " " + syntax.prefix + Digits(v, syntax.radix) + syntax.suffix + ",";
    again += " };\n";
  }
  const rm::ArrayText back = rm::ReadArrayText(again, syntax);
  Check(back.error.empty() && back.tables == read.tables);

  // The bytes of the first table on a canvas of 16 x 4 pixels, 8 bytes in monochrome.
  if (read.tables.empty()) return 0;
  std::vector<std::uint8_t> bytes;
  std::string error;
  const int width = 8 << (data[0] % 3);
  if (!rm::WordsToBytes(read.tables[0], width, (data[0] & 8) != 0, syntax.radix == 10, bytes, error)) return 0;
  Check(bytes.size() == read.tables[0].size() * static_cast<std::size_t>(width / 8));
  rm::ConversionSession s;
  s.Monochrome = true;
  s.BigEndian = (data[0] & 16) != 0;
  rm::Bitmap canvas(16, 4, rm::kWhite);
  const rm::ArrayImportResult r = rm::ImportArray(s, bytes, canvas);
  Check(r.bytesNeeded == 8);
  Check(r.error.empty() == (bytes.size() == 8));
  if (!r.error.empty()) Check(canvas == rm::Bitmap(16, 4, rm::kWhite));
  return 0;
}
