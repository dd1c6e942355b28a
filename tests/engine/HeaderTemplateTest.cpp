// The header template as users write it: each case is a template and the text it gives. The
// default template, the pointer table's header and the second page's name line are checked in
// the golden files of whole tables.
#include <gtest/gtest.h>

#include "engine/HeaderTemplate.h"

namespace {

using rm::FillTemplate;
using rm::HeaderTagValues;
using Lines = std::vector<std::string>;

HeaderTagValues Values() {
  HeaderTagValues v;
  v.name = "Logo";
  v.dataSize = 1024;
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

TEST(HeaderTemplate, TagsAndTheirOptions) {
  struct Case {
    const char* name;
    Lines lines;
    void (*setup)(HeaderTagValues&);
    Lines header;
  } cases[] = {
      {"tags in any case", {"char [&name][&Size];"}, nullptr, {"char  Logo [1024];"}},
      {"no name: the size still fills its brackets", {"char tab[&SIZE];"}, nullptr, {"char tab[1024];"}},
      {"the size before the name goes into its own brackets",
       {"[&SIZE] x [&NAME]"},
       [](HeaderTagValues& v) { v.name = "LongName"; },
       {"[1024] x  LongName "}},
      {"an animation frame's name",
       {"[&NAME][&SIZE]"},
       [](HeaderTagValues& v) { v.name = "Logo_3"; },
       {" Logo_3 [1024]"}},
      {"compression leaves the brackets empty", {"t[&SIZE]"}, [](HeaderTagValues& v) { v.dataSize = -1; }, {"t[]"}},
      {"the colour table's fixed size",
       {"t[&SIZE]"},
       [](HeaderTagValues& v) {
         v.dataSize = -1;
         v.size = "256";
       },
       {"t[256]"}},
      {"size and position in data, counted in the size",
       {"t[&SIZE]", "[&XPOS],[&YPOS],[&WIDTH],[&HEIGHT]"},
       [](HeaderTagValues& v) {
         v.sizeInData = v.positionInData = true;
         v.linePrefix = "DB";
       },
       {"t[1028]", "DB 8,DB 4,DB 128,DB 64,"}},
      {"numbers above 255 take two bytes each, high byte first",
       {"t[&SIZE]", "[&WIDTH],[&HEIGHT]"},
       [](HeaderTagValues& v) {
         v.sizeInData = true;
         v.splitNumbers = true;
         v.width = 300;
       },
       {"t[1028]", " 1, 44, 0, 64,"}},
      {"little endian puts the low byte first",
       {"[&WIDTH]"},
       [](HeaderTagValues& v) {
         v.sizeInData = true;
         v.splitNumbers = true;
         v.bigEndian = false;
         v.width = 300;
       },
       {" 44, 1,"}},
      {"only the tags in the template count",
       {"t[&SIZE]", "[&WIDTH]"},
       [](HeaderTagValues& v) { v.sizeInData = v.positionInData = true; },
       {"t[1025]", " 128,"}},
      {"numbers on the declaration line take no separator",
       {"[&NAME]: ; [&WIDTH] [&HEIGHT]"},
       [](HeaderTagValues& v) { v.sizeInData = true; },
       {" Logo : ;  128  64"}},
      {"a removed tag keeps its line end",
       {"// [&WIDTH]", "const char t[&SIZE];"},
       nullptr,
       {"// ", "const char t[1024];"}},
      {"true origin from the bottom right",
       {"[&TRUEORG][&XPOS],[&YPOS]"},
       [](HeaderTagValues& v) {
         v.positionInData = true;
         v.originRight = v.originBottom = true;
       },
       {" 104, 52,"}},
      {"origin corner ignored without the true origin tag",
       {"[&XPOS],[&YPOS]"},
       [](HeaderTagValues& v) {
         v.positionInData = true;
         v.originRight = v.originBottom = true;
       },
       {" 8, 4,"}},
      {"font include block removed", {"a[&FONT INCLUDE]", "#include x", "[&/FONT INCLUDE]b"}, nullptr, {"ab"}},
  };
  for (const auto& c : cases) {
    HeaderTagValues v = Values();
    if (c.setup) c.setup(v);
    EXPECT_EQ(FillTemplate(c.lines, v).header, c.header) << c.name;
  }
}

TEST(HeaderTemplate, CommentLinesAndPointerTemplate) {
  const auto t =
      FillTemplate({"//** a note", "head", "x [&COMPRESSION] y", "ptr [&CName]&CSIZE;", "[&FONT BITMAPS] z"}, Values());
  EXPECT_EQ(t.commentLines, Lines{"//** a note"});
  EXPECT_EQ(t.header, (Lines{"head", "x "}));
  EXPECT_EQ(t.pointerHeader, (Lines{" y", "ptr x_Logo;", ""}));
  EXPECT_FALSE(t.hasName);
}

TEST(HeaderTemplate, TableNameIsAnIdentifier) {
  const std::pair<const char*, const char*> cases[] = {
      {"/pics/logo.png", "logo"},   {"my-logo.bmp", "mylogo"}, {"logo[v2].png", "logo"},
      {"a-b[x]c.d.png", "abc_d"},   {"noext", "noext"},        {"dir\\win.bmp", "win"},
      {"my logo.png", "my_logo"},   {"1logo.png", "_1logo"},   {"line\nend.png", "line_end"},
      {"caf\xc3\xa9.png", "caf__"}, {"a+b(c).png", "a_b_c_"},  {"_x9.png", "_x9"},
  };
  for (const auto& [in, out] : cases) EXPECT_EQ(rm::TableNameFromFile(in), out) << in;
}

}  // namespace
