#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/TextLines.h"

namespace rm {

// Cuts a stream of data bytes into Intel HEX data records and adds them, one per line, to a text.
//
// Record: ":" LL AAAA 00 DD... CC, every digit upper case. LL is the count of data bytes, AAAA the
// address in 4, 6 or 8 digits, CC the two's complement of the low byte of the sum of LL, the
// address bytes and the data bytes. 6 and 8 digit addresses make records longer than the
// published format allows; loaders of our own read them, general tools do not.
//
// With 4 digits the published format reaches beyond 64 KiB through extended linear address
// records (type 04, the upper 16 bits of the address). One is written before the first record of
// each new 64 KiB segment, so a picture of any size loads into a standard tool at the right
// place; data that stays below 64 KiB gets none. Wider fields carry the whole address and wrap
// at their width.
class IntelHexRecords {
 public:
  static constexpr std::string_view kEndOfFile = ":00000001FF";

  explicit IntelHexRecords(TextLines& out) : out_(out) {}

  // A new run: `bytesPerLine` data bytes per record (1 to 255, the range of LL), `addressDigits`
  // 4, 6 or 8, and the first address, rounded down to a multiple of 16.
  void Start(int bytesPerLine, int addressDigits, std::uint32_t offset);

  void InputByte(std::uint8_t b) {
    pending_[pendingCount_++] = b;
    if (pendingCount_ == bytesPerLine_) {
      EndRecord();
      address_ += static_cast<std::uint64_t>(bytesPerLine_);
    }
  }
  // Two hex digits, as the text sinks pass a byte. Anything else is ignored.
  void InputHex(std::string_view twoDigits);

  // Closes the record in progress, however short; nothing when no byte is pending. The address
  // does not move: the next byte would continue the same record address.
  void EndRecord();
  // The end of file record.
  void AddEndOfFile() { out_.Add(std::string(kEndOfFile)); }

  int PendingBytes() const { return pendingCount_; }
  // The address of the next record, before it is cut to the field's width.
  std::uint64_t Address() const { return address_; }

  // The data bytes of records as this class writes them, in order: data records (type 00) with
  // 4, 6 or 8 address digits, each starting where the one before ended; extended linear address
  // records (04) place the 4 digit ones; the end of file record (01) ends the data. False with the
  // reason and its line for a line that is no record, a wrong checksum, a gap in the addresses or
  // another record type.
  static bool ReadData(std::string_view text, std::vector<std::uint8_t>& bytes, std::string& error);

  // Reads an address offset as typed: 1 to 8 hex digits, either case, nothing else.
  static bool ParseOffset(std::string_view text, std::uint32_t& value);
  // The offset as the Export dialog shows it: upper case, at least 4 digits.
  static std::string OffsetText(std::uint32_t value);

 private:
  void AddRecord(std::uint8_t type, std::uint32_t addressField, const std::uint8_t* data, int count);

  TextLines& out_;
  int bytesPerLine_ = 16;
  int addressDigits_ = 4;
  std::uint64_t address_ = 0;
  std::uint32_t segment_ = 0;  // upper 16 bits last announced by a type 04 record (4 digits only)
  std::array<std::uint8_t, 255> pending_{};
  int pendingCount_ = 0;
};

}  // namespace rm
