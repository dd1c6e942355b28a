#include <gtest/gtest.h>

#include <string>

#include "fonts/FontEngine.h"
#include "fonts/UnicodeBlocks.h"

namespace {

TEST(UnicodeBlocks, FindsTheBlockOfACodePoint) {
  struct Case {
    char32_t c;
    const char* name;  // nullptr: no block
  } cases[] = {
      {0x0000, "Basic Latin"},
      {0x007F, "Basic Latin"},
      {0x0080, "Latin-1 Supplement"},
      {0x20AC, "Currency Symbols"},
      {0x0870, "Arabic Extended-B"},
      {0x2FE0, nullptr},  // between Kangxi Radicals and Ideographic Description Characters
      {0x9FFF, "CJK Unified Ideographs"},
      {0xFFFF, "Specials"},
      {0x1F600, "Emoticons"},
      {0x2EBF0, "CJK Unified Ideographs Extension I"},
      {0x10FFFF, "Supplementary Private Use Area-B"},
      {0x110000, nullptr},
  };
  for (const Case& c : cases) {
    const rm::UnicodeBlock* block = rm::FindUnicodeBlock(c.c);
    if (c.name == nullptr) {
      EXPECT_EQ(block, nullptr) << std::hex << static_cast<unsigned>(c.c);
    } else {
      ASSERT_NE(block, nullptr) << std::hex << static_cast<unsigned>(c.c);
      EXPECT_EQ(block->name, c.name);
    }
  }
}

TEST(UnicodeBlocks, NamesMatchLooselyAsUnicodeCompares) {
  struct Case {
    const char* asked;
    char32_t first;  // 0 with `found` false: no such block
    bool found;
  } cases[] = {
      {"Latin Extended-A", 0x0100, true},
      {"latin extended a", 0x0100, true},
      {"LATIN_EXTENDED_A", 0x0100, true},
      {"Greek and Coptic", 0x0370, true},
      {"Greek", 0, false},
      {"", 0, false},
  };
  for (const Case& c : cases) {
    const rm::UnicodeBlock* block = rm::FindUnicodeBlock(std::string_view(c.asked));
    EXPECT_EQ(block != nullptr, c.found) << c.asked;
    if (block != nullptr) {
      EXPECT_EQ(block->first, c.first) << c.asked;
    }
  }
}

TEST(UnicodeBlocks, TheListIsOrderedAndInWholeColumns) {
  const auto blocks = rm::UnicodeBlocks();
  ASSERT_EQ(blocks.size(), 328u);  // Unicode 15.1
  char32_t next = 0;
  for (const rm::UnicodeBlock& b : blocks) {
    EXPECT_GE(b.first, next) << b.name;
    EXPECT_EQ(b.first % 16, 0u) << b.name;
    EXPECT_EQ(b.last % 16, 15u) << b.name;
    next = b.last + 1;
  }
}

TEST(FontFilters, KindLabelsAndFilters) {
  struct Case {
    rm::FontFamilyInfo family;
    const char* label;
    bool fixed, notTrueType, variable, trueType, device, raster;
  } cases[] = {
      {{"Sans", true, false, false, false, {}}, "TrueType Font", false, false, true, true, false, false},
      {{"Mono", true, true, false, false, {}}, "Fixed TrueType", true, false, false, true, false, false},
      {{"Fixed", false, true, true, false, {8, 10}}, "Raster Font", true, true, false, false, false, true},
      {{"Type1", false, false, false, false, {}}, "Vectorized Font", false, true, true, false, false, false},
      {{"Courier", false, true, false, false, {}}, "Fixed Font", true, true, false, false, false, false},
      {{"Printer", false, false, false, true, {}}, "Device Font", false, true, true, false, true, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.family.family);
    EXPECT_EQ(rm::FontKindLabel(c.family), c.label);
    EXPECT_TRUE(rm::PassesFontFilter(c.family, rm::FontFilter::None));
    EXPECT_EQ(rm::PassesFontFilter(c.family, rm::FontFilter::FixedPitch), c.fixed);
    EXPECT_EQ(rm::PassesFontFilter(c.family, rm::FontFilter::NotTrueType), c.notTrueType);
    EXPECT_EQ(rm::PassesFontFilter(c.family, rm::FontFilter::VariablePitch), c.variable);
    EXPECT_EQ(rm::PassesFontFilter(c.family, rm::FontFilter::TrueType), c.trueType);
    EXPECT_EQ(rm::PassesFontFilter(c.family, rm::FontFilter::Device), c.device);
    EXPECT_EQ(rm::PassesFontFilter(c.family, rm::FontFilter::Raster), c.raster);
  }
  struct Parse {
    const char* text;
    std::optional<rm::FontFilter> filter;
  } parses[] = {
      {"Fixed Pitch Only", rm::FontFilter::FixedPitch},
      {"fixed", rm::FontFilter::FixedPitch},
      {"no true type only", rm::FontFilter::NotTrueType},
      {"RASTER", rm::FontFilter::Raster},
      {"no filter", rm::FontFilter::None},
      {"bold", std::nullopt},
  };
  for (const Parse& p : parses) EXPECT_EQ(rm::ParseFontFilter(p.text), p.filter) << p.text;
  EXPECT_EQ(rm::FontFilterLabel(rm::FontFilter::VariablePitch), "Variable Pitch Only");
}

}  // namespace
