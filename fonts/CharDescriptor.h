#pragma once
#include <string>
#include <vector>

#include "fonts/FontJob.h"

namespace rm {

// The values one character's descriptor can carry, in the order of its fields.
struct DescriptorValues {
  std::string address;  // the code, already formatted by the address format
  int width = 0;
  int height = 0;
  int xOffset = 0;
  std::string yOffset;  // the top void, or "0x00" when offsets are not used
  long long startAddress = 0;
  long long sizeBytes = 0;
  long long sizeBits = 0;
  int spacing = 0;
};

// The descriptor of a character (CharDescriptor): the fields switched on, in the order of their
// ranks 1 to 9; of two fields with one rank the first in field order wins.
class CharDescriptor {
 public:
  enum Field { Address, Width, Height, XOffset, YOffset, StartAddress, SizeBytes, SizeBits, Spacing };

  explicit CharDescriptor(const FontJob& job);
  const std::vector<Field>& Fields() const { return fields_; }
  bool Empty() const { return fields_.empty(); }
  // The titles joined in rank order, as the title line shows them between brackets.
  std::string Titles() const;
  // The values joined by `separator`; with `trailing` the separator follows the last one too.
  std::string Values(const DescriptorValues& v, const std::string& separator, bool trailing) const;
  // The bytes a descriptor takes: one per field, two for a size or address above 255.
  int Bytes(const DescriptorValues& v) const;

 private:
  std::vector<Field> fields_;
};

// The code as the "Char Address" field shows it: "0x41", "$41", "41H" or, with no format, the
// code in decimal.
std::string FormatCharAddress(int code, int addressFormat, bool unicode);

}  // namespace rm
