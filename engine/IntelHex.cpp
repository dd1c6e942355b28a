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

bool IntelHexRecords::ReadData(std::string_view text, std::vector<std::uint8_t>& bytes, std::string& error) {
  bytes.clear();
  std::uint64_t next = 0;
  std::uint32_t upper = 0;
  bool first = true;
  int lineNumber = 0;
  std::vector<std::uint8_t> record;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = text.find('\n', at);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(at, end - at);
    at = end + 1;
    ++lineNumber;
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
    if (line.empty()) continue;
    const auto bad = [&](const std::string& why) {
      error = "line " + std::to_string(lineNumber) + ": " + why;
      return false;
    };
    if (line[0] != ':') return bad("an Intel HEX record starts with \":\"");
    if (line.size() % 2 == 0) return bad("a record holds whole bytes");
    record.clear();
    for (std::size_t i = 1; i + 1 < line.size(); i += 2) {
      const int hi = HexValue(line[i]), lo = HexValue(line[i + 1]);
      if (hi < 0 || lo < 0) return bad("\"" + std::string(line.substr(i, 2)) + "\" is not a hex byte");
      record.push_back(static_cast<std::uint8_t>(hi * 16 + lo));
    }
    // Count, address, type, data, checksum: the address takes what the count leaves.
    if (record.size() < 5) return bad("the record is too short");
    const std::size_t count = record[0];
    if (record.size() < count + 5) return bad("the record is shorter than its count");
    const std::size_t addressBytes = record.size() - count - 3;
    if (addressBytes != 2 && addressBytes != 3 && addressBytes != 4)
      return bad("the record's length does not match its count");
    unsigned sum = 0;
    for (std::uint8_t b : record) sum += b;
    if ((sum & 0xFF) != 0) return bad("wrong checksum");
    std::uint32_t field = 0;
    for (std::size_t i = 0; i < addressBytes; ++i) field = (field << 8) | record[1 + i];
    const int type = record[1 + addressBytes];
    const std::uint8_t* data = record.data() + 2 + addressBytes;
    if (type == 0x01) return true;
    if (type == 0x04) {
      if (count != 2) return bad("an extended linear address record holds 2 bytes");
      upper = static_cast<std::uint32_t>((data[0] << 8) | data[1]) << 16;
      continue;
    }
    if (type != 0x00) return bad("records of type " + std::to_string(type) + " are not read");
    const std::uint64_t address = addressBytes == 2 ? std::uint64_t{upper} + field : field;
    if (!first && address != next) return bad("the data do not follow on from the record before");
    first = false;
    next = address + count;
    bytes.insert(bytes.end(), data, data + count);
  }
  return true;
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
