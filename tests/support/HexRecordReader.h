#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace rmtest {

// One Intel HEX record read back by the rules of the format, independent of the writer.
struct HexRecord {
  int length = -1;  // -1: malformed (not ":" and upper case hex pairs, or a wrong length)
  std::uint64_t address = 0;
  int type = -1;
  std::vector<std::uint8_t> data;
  int byteSum = 0;  // every byte after the colon, checksum included: 0 mod 256 when it is right
};

// Reads a record whose address field has `digits` digits.
inline HexRecord ParseHexRecord(const std::string& line, int digits) {
  auto digit = [](char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
  };
  HexRecord r;
  if (line.empty() || line[0] != ':' || (line.size() - 1) % 2 != 0) return r;
  std::vector<int> bytes;
  for (std::size_t i = 1; i + 1 < line.size(); i += 2) {
    const int hi = digit(line[i]), lo = digit(line[i + 1]);
    if (hi < 0 || lo < 0) return r;
    bytes.push_back(hi * 16 + lo);
  }
  const std::size_t addressBytes = static_cast<std::size_t>(digits / 2);
  if (bytes.size() < addressBytes + 3) return r;
  const std::size_t first = addressBytes + 2;
  if (bytes.size() != first + static_cast<std::size_t>(bytes[0]) + 1) return r;
  for (int b : bytes) r.byteSum += b;
  r.length = bytes[0];
  for (std::size_t i = 0; i < addressBytes; ++i) r.address = r.address * 256 + static_cast<std::uint64_t>(bytes[1 + i]);
  r.type = bytes[1 + addressBytes];
  for (std::size_t i = first; i < first + static_cast<std::size_t>(r.length); ++i)
    r.data.push_back(static_cast<std::uint8_t>(bytes[i]));
  return r;
}

}  // namespace rmtest
