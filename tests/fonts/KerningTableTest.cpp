// A kerning table in the data syntax: the pair lines with their comment at column 20, the last
// pair without its comma, the size of the declaration, a font without pairs.
#include <gtest/gtest.h>

#include "fonts/KerningTable.h"

namespace {

using namespace rm;

TEST(KerningTable, PairLinesCarryTheirCharactersAndTheLastHasNoComma) {
  ConversionSettings s;
  const std::vector<KerningPair> pairs = {{U'A', U'V', -2}, {U'T', U'\\', 1}, {0x2013, U'y', -10}};
  const auto lines = KerningTable(pairs, "F_12", "F, 12", KerningSyntax{}, s, "1.0", "01/02/2026 03:04:05");
  const std::vector<std::string> expected = {
      "/* Kerning Pairs Table exported with rastermill 1.0 */",
      "/* 01/02/2026 03:04:05 */",
      "/* Font name, size and style  = F, 12 */",
      "",
      "int  F_12 [3][3]= ",
      "",
      "{",
      "{65,86,-2},         //  A V",
      "{84,92,1},          //  T \\ (backslash)",
      "{8211,121,-10}      //  \xE2\x80\x93 y",
      "};",
  };
  EXPECT_EQ(lines, expected);

  // Without pairs only the opening and closing lines; other comment forms and no data comments.
  s.Syntax.Comment = CommentForm::Semicolon;
  s.Syntax.NoDataComments = true;
  s.Syntax.DeleteVeryLastOne = false;
  const auto none = KerningTable({}, "F_12", "F, 12", KerningSyntax{}, s, "1.0", "d");
  EXPECT_EQ(none[2], " ; Font name, size and style = F, 12");
  EXPECT_EQ(std::vector<std::string>(none.end() - 2, none.end()), (std::vector<std::string>{"{", "};"}));
  const auto one = KerningTable({{U'L', U'T', -3}}, "F", "F", KerningSyntax{}, s, "1.0", "d");
  EXPECT_EQ(one[one.size() - 2], "{76,84,-3},         ") << "the comma stays with Very Last Separator on";
}

}  // namespace
