#include "engine/HexBuffer.h"

#include "engine/TextLines.h"

namespace rm {

namespace {
int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return 0;
}
}  // namespace

void HexBuffer::AddPair(const std::string& two) {
  if (two.size() < 2) return;
  bytes_.push_back(static_cast<std::uint8_t>(HexDigit(two[0]) * 16 + HexDigit(two[1])));
}

bool HexBuffer::SaveToFile(const std::string& path, std::string* error) const {
  return WriteFileAtomically(path, std::string(bytes_.begin(), bytes_.end()), error);
}

}  // namespace rm
