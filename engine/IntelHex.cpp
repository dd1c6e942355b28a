#include "engine/IntelHex.h"

#include <algorithm>

namespace rm {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

char* PutByte(char* p, unsigned v) {
  p[0] = kDigits[(v >> 4) & 0xF];
  p[1] = kDigits[v & 0xF];
  return p + 2;
}

}  // namespace

void IntelHexRecords::Start(int bytesPerLine, int addressDigits, std::uint32_t offset) {
  bytesPerLine_ = std::clamp(bytesPerLine, 1, 255);
  addressDigits_ = addressDigits <= 4 ? 4 : (addressDigits <= 6 ? 6 : 8);
  address_ = offset & ~std::uint32_t{0xF};
  segment_ = 0;
  pendingCount_ = 0;
}

void IntelHexRecords::InputHex(std::string_view two) {
  if (two.size() < 2) return;
  const int hi = HexValue(two[0]), lo = HexValue(two[1]);
  if (hi < 0 || lo < 0) return;
  InputByte(static_cast<std::uint8_t>(hi * 16 + lo));
}

void IntelHexRecords::EndRecord() {
  if (pendingCount_ == 0) return;
  const auto address = static_cast<std::uint32_t>(address_);  // 8 digits wrap at 4 GiB
  if (addressDigits_ == 4) {
    const std::uint32_t segment = address >> 16;
    if (segment != segment_) {
      const std::uint8_t upper[2] = {static_cast<std::uint8_t>(segment >> 8), static_cast<std::uint8_t>(segment)};
      AddRecord(0x04, 0, upper, 2);
      segment_ = segment;
    }
    AddRecord(0x00, address & 0xFFFF, pending_.data(), pendingCount_);
  } else {
    AddRecord(0x00, addressDigits_ == 6 ? address & 0xFFFFFF : address, pending_.data(), pendingCount_);
  }
  pendingCount_ = 0;
}

void IntelHexRecords::AddRecord(std::uint8_t type, std::uint32_t field, const std::uint8_t* data, int count) {
  const int addressBytes = addressDigits_ / 2;
  std::string line(static_cast<std::size_t>(1 + 2 + addressDigits_ + 2 + 2 * count + 2), ':');
  char* p = line.data() + 1;
  unsigned sum = static_cast<unsigned>(count) + type;
  p = PutByte(p, static_cast<unsigned>(count));
  for (int i = addressBytes - 1; i >= 0; --i) {
    const unsigned b = (field >> (8 * i)) & 0xFF;
    sum += b;
    p = PutByte(p, b);
  }
  p = PutByte(p, type);
  for (int i = 0; i < count; ++i) {
    sum += data[i];
    p = PutByte(p, data[i]);
  }
  PutByte(p, (0x100 - (sum & 0xFF)) & 0xFF);
  out_.Add(std::move(line));
}

bool IntelHexRecords::ParseOffset(std::string_view text, std::uint32_t& value) {
  // Addresses are written as in C as often as bare: "0x8000" is the same offset as "8000".
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) text.remove_prefix(2);
  if (text.empty() || text.size() > 8) return false;
  std::uint32_t v = 0;
  for (char c : text) {
    const int d = HexValue(c);
    if (d < 0) return false;
    v = v * 16 + static_cast<std::uint32_t>(d);
  }
  value = v;
  return true;
}

std::string IntelHexRecords::OffsetText(std::uint32_t value) {
  std::string t;
  do {
    t.insert(t.begin(), kDigits[value & 0xF]);
    value >>= 4;
  } while (value != 0);
  if (t.size() < 4) t.insert(0, 4 - t.size(), '0');
  return t;
}

}  // namespace rm
