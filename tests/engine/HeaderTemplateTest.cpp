#include <gtest/gtest.h>

#include "engine/HeaderTemplate.h"

namespace {

using rm::FillTemplate;
using rm::HeaderTagValues;

HeaderTagValues Values() {
  HeaderTagValues v;
  v.name = "Logo";
  v.size = "1024";
  v.width = 128;
  v.height = 64;
  v.x1 = 8;
  v.y1 = 4;
  v.x2 = 24;
  v.y2 = 12;
  v.canvasWidth = 128;
  v.canvasHeight = 64;
  v.pointerName = "x_Logo";
  return v;
}

TEST(HeaderTemplate, DefaultTemplateFilled) {
  const auto t = FillTemplate(rm::DefaultGraphicsTemplate(), Values());
  ASSERT_GE(t.header.size(), 5u);
  EXPECT_EQ(t.header[4], "const uint8_t  Logo [1024] PROGMEM = {   ");
  EXPECT_EQ(t.nameLine, t.header[4]);
  EXPECT_EQ(t.beforeName, "const uint8_t ");
  EXPECT_TRUE(t.trueOrigin);
  EXPECT_TRUE(t.hasCompressionTag);
  // The position and size line loses every tag with its separator: only padding is left.
  EXPECT_EQ(t.header[7].find_first_not_of(' '), std::string::npos);
  ASSERT_GE(t.pointerHeader.size(), 2u);
  EXPECT_EQ(t.pointerHeader[1].substr(0, 35), "const uint8_t x_Logo[] PROGMEM = { ");
}

TEST(HeaderTemplate, TagsAndTheirOptions) {
  struct Case {
    const char* name;
    std::vector<std::string> lines;
    void (*setup)(HeaderTagValues&);
    std::vector<std::string> header;
  } cases[] = {
      {"tags in any case", {"char [&name][&Size];"}, nullptr, {"char  Logo [1024];"}},
      {"no name: the size still fills its brackets", {"char tab[&SIZE];"}, nullptr, {"char tab[1024];"}},
      // The size's place comes from the text before the name went in, moved by the name's growth.
      {"size before the name lands shifted",
       {"[&SIZE] x [&NAME]"},
       [](HeaderTagValues& v) { v.name = "LongName"; },
       {"[&SI1024  LongName "}},
      {"compression leaves the brackets empty", {"t[&SIZE]"}, [](HeaderTagValues& v) { v.size.clear(); }, {"t[]"}},
      {"size and position in data",
       {"[&XPOS],[&YPOS],[&WIDTH],[&HEIGHT]"},
       [](HeaderTagValues& v) {
         v.sizeInData = v.positionInData = true;
         v.linePrefix = "DB";
       },
       {"DB 8,DB 4,DB 128,DB 64"}},
      {"true origin from the bottom right",
       {"[&TRUEORG][&XPOS],[&YPOS]"},
       [](HeaderTagValues& v) {
         v.positionInData = true;
         v.originRight = v.originBottom = true;
       },
       {" 104, 52"}},
      {"origin corner ignored without the true origin tag",
       {"[&XPOS],[&YPOS]"},
       [](HeaderTagValues& v) {
         v.positionInData = true;
         v.originRight = v.originBottom = true;
       },
       {" 8, 4"}},
      {"font include block removed", {"a[&FONT INCLUDE]", "#include x", "[&/FONT INCLUDE]b"}, nullptr, {"ab"}},
      {"animation name skews the size by the underscore",
       {"[&NAME][&SIZE]"},
       [](HeaderTagValues& v) {
         v.name = "Logo_3";
         v.nameLengthSkew = -1;
       },
       {" Logo_3 1024E]"}},
  };
  for (const auto& c : cases) {
    HeaderTagValues v = Values();
    if (c.setup) c.setup(v);
    EXPECT_EQ(FillTemplate(c.lines, v).header, c.header) << c.name;
  }
}

TEST(HeaderTemplate, CommentLinesAndPointerTemplate) {
  const auto t = FillTemplate({"//** a note", "head", "x [&COMPRESSION] y", "ptr [&CName]&CSIZE;", "[&FONT BITMAPS] z"},
                              Values());
  EXPECT_EQ(t.commentLines, std::vector<std::string>{"//** a note"});
  EXPECT_EQ(t.header, (std::vector<std::string>{"head", "x "}));
  EXPECT_EQ(t.pointerHeader, (std::vector<std::string>{" y", "ptr x_Logo;", ""}));
}

TEST(HeaderTemplate, TableNameFromFile) {
  const std::pair<const char*, const char*> cases[] = {
      {"/pics/logo.png", "logo"},     {"my-logo.bmp", "mylogo"},    {"logo[v2].png", "logo"},
      {"a-b[x]c.d.png", "abc.d"},     {"noext", "noext"},           {"dir\\win.bmp", "win"},
  };
  for (const auto& [in, out] : cases) EXPECT_EQ(rm::TableNameFromFile(in), out) << in;
}

}  // namespace
