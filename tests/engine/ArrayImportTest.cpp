#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/ArrayImport.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::ArrayText;
using rm::ArrayTextSyntax;
using rm::Bitmap;
using D = rm::PagingDirection;
using C = rm::OriginCorner;
using Tables = std::vector<std::vector<std::uint32_t>>;

ArrayTextSyntax Syntax(std::string prefix, std::string suffix = "", int radix = 16) {
  return ArrayTextSyntax{std::move(prefix), std::move(suffix), radix};
}

TEST(ArrayText, DataOfTheSyntaxesTheProgramWrites) {
  const struct {
    const char* what;
    std::string text;
    ArrayTextSyntax syntax;
    Tables tables;
  } cases[] = {
      {"C array, header comments and size descriptors",
       "/* Byte width format is 8 bit / 0x99 in a comment */\n#include <avr/pgmspace.h>\n"
       "const uint8_t  NewBitmap [2] PROGMEM = {\n 0x80 , 0x0F,   // 0x77\n 0xff\n};\n"
       "const uint8_t  NewBitmapWidthPages = 2 ;\n",
       Syntax("0x"),
       {{0x80, 0x0F, 0xFF}}},
      {"a prefix $ in assembler, comments after ;",
       " ; Data 0x12\n  .db $FF, $A0 ; $01\n  .db $01\n",
       Syntax("$"),
       {{0xFF, 0xA0, 0x01}}},
      {"suffix h with a leading zero",
       "  .db FFh, 0A0h , 01h \n; NewBitmapWidthPages = 2 ;\n",
       Syntax("", "h"),
       {{0xFF, 0xA0, 0x01}}},
      {"binary digits 0b", "{ 0b10000001, 0b00000011 }", Syntax("0b", "", 2), {{0x81, 0x03}}},
      {"binary digits with b", "{ 10000001b, 00000011b }", Syntax("", "b", 2), {{0x81, 0x03}}},
      // The array's size and the descriptors after it are not data of the table.
      {"decimal, BASIC quote comments",
       "const uint8_t x [1024] = {\n 255, 0, 17, ' 9 9\n 3 };\nconst uint8_t xHeightPixels = 8 ;\n",
       Syntax("", "", 10),
       {{255, 0, 17, 3}, {8}}},
      {"two arrays are two tables", "a[] = {0x01, 0x02};\nb[] = {\n0x03\n};\n", Syntax("0x"), {{1, 2}, {3}}},
      {"16 and 32 bit data", "{ 0xABCD, 0x12345678 }", Syntax("0x"), {{0xABCD, 0x12345678}}},
      {"a marker alone is not a datum", "{ 0x01 , $+2 , 0x02 }", Syntax("$"), {}},
  };
  for (const auto& c : cases) {
    const ArrayText got = rm::ReadArrayText(c.text, c.syntax);
    EXPECT_EQ(got.error, "") << c.what;
    EXPECT_EQ(got.tables, c.tables) << c.what;
  }
}

TEST(ArrayText, BadDigitsAreNamedWithTheirLine) {
  const struct {
    std::string text;
    ArrayTextSyntax syntax;
    std::string error;
  } cases[] = {
      {"{ 0x00,\n 0x1G }", Syntax("0x"), "line 2: \"0x1G\" is not a hex datum"},
      {"{ 0b012 }", Syntax("0b", "", 2), "line 1: \"0b012\" is not a binary datum"},
      {"{ 0x123456789 }", Syntax("0x"), "line 1: \"0x123456789\" is wider than 32 bits"},
      {"{ 12 }", Syntax("", ""),
       "hex data need a prefix (0x, $) or a suffix (h) to be told from the words around them"},
  };
  for (const auto& c : cases) EXPECT_EQ(rm::ReadArrayText(c.text, c.syntax).error, c.error) << c.text;
}

TEST(ArrayText, WordsBackToTheBytesInTheOrderMade) {
  const struct {
    std::vector<std::uint32_t> words;
    int width;
    bool big, decimal;
    std::vector<std::uint8_t> bytes;
  } cases[] = {
      {{0xABCD}, 16, true, false, {0xAB, 0xCD}},
      // MSB last writes a word's last byte first.
      {{0xABCD}, 16, false, false, {0xCD, 0xAB}},
      // A 16 bit decimal is first * 256 + second in either order.
      {{0xABCD}, 16, false, true, {0xAB, 0xCD}},
      {{0x12345678}, 32, false, true, {0x78, 0x56, 0x34, 0x12}},
      {{0x12345678}, 32, true, false, {0x12, 0x34, 0x56, 0x78}},
  };
  for (const auto& c : cases) {
    std::vector<std::uint8_t> bytes;
    std::string error;
    EXPECT_TRUE(rm::WordsToBytes(c.words, c.width, c.big, c.decimal, bytes, error)) << error;
    EXPECT_EQ(bytes, c.bytes);
  }
  std::vector<std::uint8_t> bytes;
  std::string error;
  EXPECT_FALSE(rm::WordsToBytes({0x12, 0x1FF}, 8, true, false, bytes, error));
  EXPECT_EQ(error, "datum 2 (511) is wider than 8 bits");
}

// A monochrome program of 128 x 64 in the given scheme.
struct Mono {
  rmtest::TestProgram p;
  explicit Mono(D d, bool other = false, bool big = true) {
    p.Setup(1, Bitmap(128, 64));
    EXPECT_TRUE(p.app.mainForm.SetDirection(d));
    if (other) p.app.mainForm.ToggleOriginCorner();
    big ? p.app.mainForm.MsbFirst() : p.app.mainForm.MsbLast();
  }
  // The canvas the data paint, or an empty one with the message.
  Bitmap Import(const std::vector<std::uint8_t>& data, std::string* error = nullptr) {
    Bitmap canvas(128, 64);
    const rm::ArrayImportResult r = rm::ImportArray(p.app.session, data, canvas);
    if (error) *error = r.error;
    return r.error.empty() ? canvas : Bitmap();
  }
};

// One set bit in one byte of 1024, and the one black pixel it gives: the walk of each scheme, told
// here by the examples of the paging schemes, not by the walker's code.
TEST(ArrayImport, WhereOneBitOfMonochromeLands) {
  const struct {
    D d;
    bool other, big;
    std::size_t byte;
    std::uint8_t value;
    int x, y;
  } cases[] = {
      {D::ToRightAll, false, true, 0, 0x80, 0, 0},  {D::ToRightAll, false, false, 0, 0x01, 0, 0},
      {D::ToRightAll, false, true, 16, 0x80, 0, 1}, {D::Down, false, true, 0, 0x80, 0, 0},
      {D::Down, false, true, 1, 0x01, 1, 7},        {D::Down, false, true, 128, 0x80, 0, 8},
      {D::DownAll, false, true, 1, 0x80, 0, 8},     {D::DownAll, false, true, 8, 0x80, 1, 0},
      {D::Up, false, true, 0, 0x80, 0, 63},         {D::Up, false, true, 1, 0x80, 1, 63},
      {D::ToRight, false, true, 1, 0x80, 0, 1},     {D::ToRight, false, true, 64, 0x80, 8, 0},
      {D::ToLeftAll, false, true, 0, 0x80, 127, 0}, {D::ToLeftAll, false, true, 0, 0x01, 120, 0},
      {D::ToLeftAll, true, true, 0, 0x80, 127, 63}, {D::Down, true, true, 0, 0x80, 127, 0},
      {D::ToRightAll, true, false, 0, 0x01, 0, 63},
  };
  for (const auto& c : cases) {
    Mono m(c.d, c.other, c.big);
    std::vector<std::uint8_t> data(1024, 0);
    data[c.byte] = c.value;
    const Bitmap got = m.Import(data);
    Bitmap expected(128, 64);
    expected.SetPixel(c.x, c.y, rm::kBlack);
    EXPECT_TRUE(got == expected) << "direction " << static_cast<int>(c.d) << ", byte " << c.byte << ": the pixel at ("
                                 << c.x << ", " << c.y << ") expected";
  }
}

// The table the defaults write, with the prefix "$" as an assembler writes it, and MSB last.
TEST(ArrayImport, PrefixDollarAndLittleEndian) {
  std::string text = "  .db $01";
  for (int i = 1; i < 1024; ++i) text += i % 16 == 0 ? "\n  .db $00" : ", $00";
  const ArrayText read = rm::ReadArrayText(text, Syntax("$"));
  ASSERT_EQ(read.tables.size(), 1u);
  std::vector<std::uint8_t> bytes;
  std::string error;
  ASSERT_TRUE(rm::WordsToBytes(read.tables[0], 8, false, false, bytes, error));
  Mono little(D::ToRightAll, false, false);
  const Bitmap got = little.Import(bytes);
  ASSERT_EQ(got.Width(), 128);
  EXPECT_EQ(got.GetPixel(0, 0), rm::kBlack);  // bit 0 is the first pixel
  EXPECT_EQ(got.GetPixel(7, 0), rm::kWhite);
  // The same byte read MSB first is the eighth pixel.
  Mono big(D::ToRightAll);
  const Bitmap other = big.Import(bytes);
  EXPECT_EQ(other.GetPixel(7, 0), rm::kBlack);
  EXPECT_EQ(other.GetPixel(0, 0), rm::kWhite);
}

TEST(ArrayImport, TooFewOrTooManyDataLeaveTheCanvasAlone) {
  const struct {
    std::size_t count;
    std::string error;
  } cases[] = {
      {1023, "too few data: 1023 bytes found, the canvas takes 1024"},
      {1025, "too many data: 1025 bytes found, the canvas takes 1024"},
      {0, "too few data: 0 bytes found, the canvas takes 1024"},
  };
  for (const auto& c : cases) {
    Mono m(D::ToRightAll);
    Bitmap canvas(128, 64, rm::kBlack);
    const rm::ArrayImportResult r = rm::ImportArray(m.p.app.session, std::vector<std::uint8_t>(c.count, 0), canvas);
    EXPECT_EQ(r.error, c.error);
    EXPECT_EQ(r.bytesNeeded, 1024u);
    EXPECT_TRUE(canvas == Bitmap(128, 64, rm::kBlack)) << "the canvas was painted";
  }
  // A last word of 16 bits may carry one byte beyond the data, no more.
  Mono m(D::ToRightAll);
  Bitmap canvas(128, 64);
  EXPECT_EQ(rm::ImportArray(m.p.app.session, std::vector<std::uint8_t>(1025, 0), canvas, 1).error, "");
}

// A value beyond the mode's table (a palette shorter than the mode's values) is refused.
TEST(ArrayImport, ValueWithoutAColour) {
  rmtest::TestProgram p;
  p.Setup(56, Bitmap(2, 1));
  p.app.session.PaletteTable.resize(16);
  Bitmap canvas(2, 1);
  EXPECT_EQ(rm::ImportArray(p.app.session, {3, 200}, canvas).error,
            "the value 200 has no colour in the mode's table of 16");
}

}  // namespace
