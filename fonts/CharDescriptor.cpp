#include "fonts/CharDescriptor.h"

#include <array>
#include <cstdio>

namespace rm {

namespace {

int Rank(const std::string& text) {
  try {
    return std::stoi(text);
  } catch (...) {
    return 0;
  }
}

}  // namespace

CharDescriptor::CharDescriptor(const FontJob& job) {
  const std::array<std::pair<bool, int>, 9> on = {{
      {job.CharAddress, Rank(job.CharAddressRank)},
      {job.CharWidthBits, Rank(job.CharWidthRank)},
      {job.CharHeightBits, Rank(job.CharHeightRank)},
      {job.XOffset, Rank(job.XOffsetRank)},
      {job.YOffset, Rank(job.YOffsetRank)},
      {job.StartAddress, Rank(job.StartAddressRank)},
      {job.CharSizeBytes, Rank(job.CharSizeBytesRank)},
      {job.CharSizeBits, Rank(job.CharSizeBitsRank)},
      {job.CharSpacing, Rank(job.CharSpacingRank)},
  }};
  for (int rank = 1; rank <= 9; ++rank)
    for (std::size_t f = 0; f < on.size(); ++f)
      if (on[f].first && on[f].second == rank) {
        fields_.push_back(static_cast<Field>(f));
        break;
      }
}

std::string CharDescriptor::Titles() const {
  static constexpr const char* kTitles[] = {" Char Adress ", " Width in bits ",  " Height in bits ",
                                            " X Offset ",    " Y Offset ",       " Start adress ",
                                            " Char Bytes ",  " Size in bits ",   " Char Spacing bits "};
  std::string t;
  for (Field f : fields_) t += kTitles[f];
  return t;
}

std::string CharDescriptor::Values(const DescriptorValues& v, const std::string& separator, bool trailing) const {
  std::string out;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (i > 0) out += separator;
    switch (fields_[i]) {
      case Address: out += v.address; break;
      case Width: out += std::to_string(v.width); break;
      case Height: out += std::to_string(v.height); break;
      case XOffset: out += std::to_string(v.xOffset); break;
      case YOffset: out += v.yOffset; break;
      case StartAddress: out += std::to_string(v.startAddress); break;
      case SizeBytes: out += std::to_string(v.sizeBytes); break;
      case SizeBits: out += std::to_string(v.sizeBits); break;
      case Spacing: out += std::to_string(v.spacing); break;
    }
  }
  if (trailing && !fields_.empty()) out += separator;
  return out;
}

int CharDescriptor::Bytes(const DescriptorValues& v) const {
  int n = static_cast<int>(fields_.size());
  for (Field f : fields_) {
    if (f == SizeBytes && v.sizeBytes > 255) ++n;
    if (f == SizeBits && v.sizeBits > 255) ++n;
    if (f == StartAddress && v.startAddress > 255) ++n;
  }
  return n;
}

std::string FormatCharAddress(int code, int addressFormat, bool unicode) {
  char hex[8];
  std::snprintf(hex, sizeof hex, unicode ? "%04X" : "%02X", code & (unicode ? 0xFFFF : 0xFF));
  switch (addressFormat) {
    case 0: return std::string("0x") + hex;
    case 1: return std::string("$") + hex;
    case 2: return std::string(hex) + "H";
    default:
      // No mark at all would read as a decimal number of other value: the decimal code is the
      // same number without one.
      return std::to_string(code);
  }
}

}  // namespace rm
