#include <gtest/gtest.h>

#include "engine/BitRearrange.h"

namespace {

using rm::ReorderRow;

std::array<ReorderRow, 32> Table(std::initializer_list<ReorderRow> rows) {
  std::array<ReorderRow, 32> t{};
  std::size_t i = 0;
  for (const auto& r : rows) t[i++] = r;
  return t;
}

TEST(BitRearrange, OuterFieldsSwapPerWidth) {
  struct Case {
    std::uint32_t in;
    int width;
    std::uint32_t out;
  } cases[] = {
      {0xF00, 12, 0x00F},                           // 4 bit fields at the ends change places
      {0x0F0, 12, 0x0F0},                           // the middle stays
      {0xF800, 16, 0x001F},                         // 5 bit fields
      {0x07E0, 16, 0x07E0},                         // green stays
      {0x3F000, 18, 0x0003F},                       // 6 bit fields
      {0xFF0000, 24, 0x0000FF},                     // outer bytes
      {0x123456, 24, 0x563412}, {0xABC, 8, 0xABC},  // no swap for other widths
  };
  for (const auto& c : cases) EXPECT_EQ(rm::SwapOuterFields(c.in, c.width, 24), c.out) << std::hex << c.in;
}

TEST(BitRearrange, ReverseByteBitsDropsHighBits) {
  EXPECT_EQ(rm::ReverseByteBits(0x01), 0x80);
  EXPECT_EQ(rm::ReverseByteBits(0xC0), 0x03);
  EXPECT_EQ(rm::ReverseByteBits(0x1F0), 0x0F);
}

TEST(BitRearrange, ReorderTableRules) {
  // An empty first row changes nothing, even with rows behind it.
  EXPECT_EQ(rm::ReorderOutput(0x01, Table({{"", "", ""}, {"swap bits", "0", "7"}}), false, 8), 0x01u);
  // Swap bits, compared without regard to case.
  EXPECT_EQ(rm::ReorderOutput(0x01, Table({{"Swap Bits", "0", "7"}}), false, 8), 0x80u);
  // "swap bytes 16 bits" ends the table: later rows are not looked at.
  EXPECT_EQ(rm::ReorderOutput(0x1234, Table({{"swap bytes 16 bits", "", ""}, {"swap bits", "0", "1"}}), false, 16),
            0x3412u);
  // A bit beyond the limit skips the row; with Swap First and Last the limit is the canvas bits + 1.
  EXPECT_EQ(rm::ReorderOutput(0x200, Table({{"swap bits", "9", "40"}}), false, 16), 0x200u);
  EXPECT_EQ(rm::ReorderOutput(0x200, Table({{"swap bits", "9", "20"}}), true, 16), 0x200u);
  EXPECT_EQ(rm::ReorderOutput(0x200, Table({{"swap bits", "9", "20"}}), false, 16), 0x100000u);
  // Two rows touching one bit: each reads the value from before the table, so the
  // second row writes bit 1 from the untouched bit 2 and undoes the first row's move.
  EXPECT_EQ(rm::ReorderOutput(0x01, Table({{"swap bits", "0", "1"}, {"swap bits", "1", "2"}}), false, 8), 0x00u);
  EXPECT_EQ(rm::ReorderOutput(0x01, Table({{"swap bits", "0", "1"}, {"swap bits", "2", "3"}}), false, 8), 0x02u);
  // Rows with a text that is no number are skipped.
  EXPECT_EQ(rm::ReorderOutput(0x01, Table({{"swap bits", "x", "1"}}), false, 8), 0x01u);
}

}  // namespace

namespace {

rm::ConversionSession Mode65k() {
  rm::ConversionSession s;
  s.Colours65536 = true;
  s.CanvasBits = 16;
  return s;
}

// The rows written are the table's own "swap bits" rows, so the grid shows them and the project
// keeps them; applied by the table, they give the permutation asked for.
TEST(DataRearrangement, RequestsBecomeSwapRowsThatGiveThePermutation) {
  struct Case {
    bool swapRedBlue;
    const char* permutation;
    std::uint32_t in, out;
    std::size_t rows;
  } cases[] = {
      {true, "", 0xF800, 0x001F, 5},                                        // red to the bottom
      {true, "", 0x07E0, 0x07E0, 5},                                        // green stays
      {false, "7,6,5,4,3,2,1,0,15,14,13,12,11,10,9,8", 0xF800, 0x00F8, 8},  // the bytes traded
      {false, "15,14,13,12,11,10,9,8,7,6,5,4,3,2,1,0", 0x1234, 0x1234, 0},  // unchanged: no rows
      {true, "15,14,13,12,11,10,9,8,7,6,5,4,3,2,1,0", 0xF800, 0x001F, 5},   // the swap alone
      // The swap and, on its result, green's end bits 10 and 5 traded: one row more.
      {true, "15,14,13,12,11,5,9,8,7,6,10,4,3,2,1,0", 0xF820, 0x041F, 6},
  };
  for (const auto& c : cases) {
    rm::ConversionSession s = Mode65k();
    std::string error;
    ASSERT_TRUE(rm::SetDataRearrangement(s, {c.swapRedBlue, c.permutation}, error)) << error;
    EXPECT_TRUE(s.ReorderOn);
    std::size_t rows = 0;
    while (rows < s.ReorderTable.size() && !s.ReorderTable[rows].function.empty()) ++rows;
    EXPECT_EQ(rows, c.rows) << c.permutation;
    EXPECT_EQ(rm::ReorderOutput(c.in, s.ReorderTable, false, 16), c.out) << std::hex << c.in << " " << c.permutation;
  }
}

TEST(DataRearrangement, NothingAskedLeavesTheProjectsTable) {
  rm::ConversionSession s = Mode65k();
  s.ReorderTable[0] = {"swap bits", "1", "2"};
  std::string error;
  ASSERT_TRUE(rm::SetDataRearrangement(s, {}, error));
  EXPECT_FALSE(s.ReorderOn);
  EXPECT_EQ(s.ReorderTable[0].bitB, "2");
  // A refused request leaves it too.
  EXPECT_FALSE(rm::SetDataRearrangement(s, {false, "1,0"}, error));
  EXPECT_EQ(s.ReorderTable[0].bitB, "2");
  EXPECT_FALSE(s.ReorderOn);
}

}  // namespace
