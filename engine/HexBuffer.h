#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace rm {

// The bytes behind the Binary File and Intel HEX outputs. The engine hands it pairs of hex
// characters, as a hex editor takes them; the bytes are kept as bytes.
class HexBuffer {
 public:
  void AddPair(const std::string& twoHexDigits);
  void AddByte(std::uint8_t b) { bytes_.push_back(b); }
  void Clear() { bytes_.clear(); }
  std::size_t Size() const { return bytes_.size(); }
  const std::vector<std::uint8_t>& Bytes() const { return bytes_; }
  // Writes the bytes through a temporary file and a rename, so a failed write keeps the old file.
  bool SaveToFile(const std::string& path, std::string* error = nullptr) const;

 private:
  std::vector<std::uint8_t> bytes_;
};

}  // namespace rm
