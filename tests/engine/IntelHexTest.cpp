#include "engine/IntelHex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using rm::IntelHexRecords;
using rm::TextLines;

std::uint8_t ByteAt(int i) { return static_cast<std::uint8_t>((i * 37 + 11) & 0xFF); }

TEST(IntelHexRecords, KnownRecords) {
  struct Case {
    int digits;
    std::uint32_t offset;
    const char* expected;
  } cases[] = {
      {4, 0x0100, ":0401000001020304F1"},
      {6, 0x0100, ":040001000001020304F1"},
      {8, 0x12345678, ":04123456700001020304E6"},
  };
  for (const auto& c : cases) {
    TextLines out;
    IntelHexRecords records(out);
    records.Start(16, c.digits, c.offset);
    for (const char* two : {"01", "02", "03", "04"}) records.InputHex(two);
    records.EndRecord();
    records.EndRecord();  // nothing pending: no second, empty record
    ASSERT_EQ(out.Count(), 1u);
    EXPECT_EQ(out[0], c.expected);
  }
}

TEST(IntelHexRecords, FourDigitsBeyond64KiBAnnounceEachSegment) {
  TextLines out;
  IntelHexRecords records(out);
  records.Start(16, 4, 0xFFE0);
  for (int i = 0; i < 64; ++i) records.InputByte(ByteAt(i));
  std::vector<std::string> heads;
  for (const auto& l : out.Lines()) heads.push_back(l.substr(0, 9));
  EXPECT_EQ(heads, (std::vector<std::string>{":10FFE000", ":10FFF000", ":02000004", ":10000000", ":10001000"}));
  EXPECT_EQ(out[2], ":020000040001F9");

  // A wide field holds the whole address: no segment records.
  TextLines wide;
  IntelHexRecords wideRecords(wide);
  wideRecords.Start(16, 6, 0xFFF0);
  for (int i = 0; i < 32; ++i) wideRecords.InputByte(ByteAt(i));
  ASSERT_EQ(wide.Count(), 2u);
  EXPECT_EQ(wide[1].substr(0, 11), ":1001000000");
}

TEST(IntelHexRecords, OffsetText) {
  struct Case {
    const char* text;
    bool ok;
    std::uint32_t value;
  } cases[] = {
      {"0000", true, 0},
      {"1234", true, 0x1234},
      {"ff", true, 0xFF},
      {"7", true, 7},
      {"FFFFFFFF", true, 0xFFFFFFFF},
      {"", false, 0},
      {"123456789", false, 0},
      {"12G4", false, 0},
      {"0x10", true, 0x10},
      {"0X8000", true, 0x8000},
      {"0x", false, 0},
      {"0x123456789", false, 0},
      {" 10", false, 0},
      {"-1", false, 0},
  };
  for (const auto& c : cases) {
    std::uint32_t v = 0xDEAD;
    EXPECT_EQ(IntelHexRecords::ParseOffset(c.text, v), c.ok) << '"' << c.text << '"';
    EXPECT_EQ(v, c.ok ? c.value : 0xDEAD) << '"' << c.text << "\": a refused text leaves the value alone";
  }
  EXPECT_EQ(IntelHexRecords::OffsetText(0), "0000");
  EXPECT_EQ(IntelHexRecords::OffsetText(0x1A0), "01A0");
  EXPECT_EQ(IntelHexRecords::OffsetText(0xABCDEF12), "ABCDEF12");
}

}  // namespace

namespace {

// What the records carry comes back, past 64 KiB too, whatever the address field.
TEST(IntelHexRecords, ReadBackTheDataWritten) {
  for (int digits : {4, 6, 8})
    for (int perLine : {16, 7}) {
      TextLines out;
      IntelHexRecords records(out);
      records.Start(perLine, digits, 0xFFF0);
      std::vector<std::uint8_t> written;
      for (int i = 0; i < 70000; ++i) {
        written.push_back(ByteAt(i));
        records.InputByte(written.back());
      }
      records.EndRecord();
      records.AddEndOfFile();
      std::vector<std::uint8_t> read;
      std::string error;
      EXPECT_TRUE(IntelHexRecords::ReadData(out.Text(), read, error)) << error;
      EXPECT_EQ(read, written) << digits << " digits, " << perLine << " a record";
    }
}

TEST(IntelHexRecords, ReadRefusesWhatIsNoRecordOfThisProgram) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {":0401000001020304F2\n", "line 1: wrong checksum"},
      {"\n0401000001020304F1\n", "line 2: an Intel HEX record starts with \":\""},
      {":0401000001020304F1\n:0401080001020304E9\n", "line 2: the data do not follow on from the record before"},
      {":020000021000EC\n", "line 1: records of type 2 are not read"},
      {":04010000010203G4F1\n", "line 1: \"G4\" is not a hex byte"},
      {":0F01000001020304F1\n", "line 1: the record is shorter than its count"},
  };
  for (const auto& c : cases) {
    std::vector<std::uint8_t> read;
    std::string error;
    EXPECT_FALSE(IntelHexRecords::ReadData(c.text, read, error)) << c.text;
    EXPECT_EQ(error, c.error);
  }
}

}  // namespace
