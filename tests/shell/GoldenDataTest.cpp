// The data text of every colour mode and of the syntax options, compared with reviewed files in
// tests/golden/data. A change of the output shows up as a diff of these files; run the suite with
// UPDATE_GOLDEN=1 to rewrite them, and say in the commit why the bytes changed.
#include <gtest/gtest.h>

#include <functional>

#include "engine/ColourModes.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::PagingDirection;
using rmtest::TestProgram;

// The colours a picture of the current mode may hold: the mode's own short table, else the
// palette, else (the direct colour modes) a spread of colours that sets every bit position.
std::vector<rm::Colour> ModeColours(const rm::ConversionSession& s) {
  if (s.Monochrome) return {rm::kWhite, rm::kBlack};
  if (!s.ModeColours.empty() && s.PaletteSize == 0) return s.ModeColours;
  if (!s.PaletteTable.empty()) {
    std::vector<rm::Colour> picked;
    const std::size_t step = std::max<std::size_t>(1, s.PaletteTable.size() / 61);
    for (std::size_t i = 0; i < s.PaletteTable.size(); i += step) picked.push_back(s.PaletteTable[i]);
    picked.push_back(s.PaletteTable.back());
    return picked;
  }
  if (!s.ModeColours.empty()) return s.ModeColours;
  return {rm::MakeColour(0, 0, 0),       rm::MakeColour(255, 255, 255), rm::MakeColour(0x12, 0x34, 0x56),
          rm::MakeColour(0xA5, 0x5A, 0xC3), rm::MakeColour(0xFF, 0, 0),     rm::MakeColour(0, 0xFF, 0),
          rm::MakeColour(0, 0, 0xFF),       rm::MakeColour(0x80, 0x40, 0x01)};
}

struct GoldenCase {
  const char* file;
  int mode;
  int width, height;
  std::function<void(TestProgram&)> setup;
};

void Direction(TestProgram& p, PagingDirection d) { ASSERT_TRUE(p.app.mainForm.SetDirection(d)); }

void RunCase(const GoldenCase& c) {
  TestProgram p;
  p.Setup(c.mode, Bitmap(1, 1));
  p.app.pixelForm.SetCanvas(rmtest::PatternPicture(c.width, c.height, ModeColours(p.app.session)));
  if (c.setup) c.setup(p);
  ASSERT_TRUE(p.Convert()) << c.file << ": " << (p.ui.messages.empty() ? "" : p.ui.messages.back().text);
  const std::string diff = rmtest::CompareGolden(std::string("data/") + c.file, p.TableText());
  EXPECT_TRUE(diff.empty()) << diff;
}

TEST(GoldenData, EveryModeWithItsDefaults) {
  for (const auto& m : rm::kColourModes) {
    // Two odd sizes would make some modes refuse; 16 x 16 suits every packer.
    const std::string file = std::string(m.cliName) + ".txt";
    RunCase({file.c_str(), m.modeNumber, 16, 16, nullptr});
  }
}

TEST(GoldenData, DirectionsOriginsAndBitOrder) {
  const GoldenCase cases[] = {
      {"mono-down.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::Down); }},
      {"mono-down-all.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::DownAll); }},
      {"mono-up.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::Up); }},
      {"mono-up-all.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::UpAll); }},
      {"mono-right.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::ToRight); }},
      {"mono-left.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::ToLeft); }},
      {"mono-left-all.txt", 1, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::ToLeftAll); }},
      {"mono-right-all-bl.txt", 1, 16, 16, [](TestProgram& p) { p.app.mainForm.ToggleOriginCorner(); }},
      {"mono-down-tr.txt", 1, 16, 16,
       [](TestProgram& p) {
         Direction(p, PagingDirection::Down);
         p.app.mainForm.ToggleOriginCorner();
       }},
      {"mono-msb-last.txt", 1, 16, 16, [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"mono-down-msb-last.txt", 1, 16, 16,
       [](TestProgram& p) {
         Direction(p, PagingDirection::Down);
         p.app.mainForm.MsbLast();
       }},
      {"mono-6bit.txt", 1, 18, 4, [](TestProgram& p) { p.app.mainForm.Toggle6BitMode(); }},
      {"gray4-down.txt", 24, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::Down); }},
      {"gray4-msb-last.txt", 24, 16, 16, [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"gray4-2p-down.txt", 25, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::Down); }},
      {"gray16-down.txt", 26, 16, 16, [](TestProgram& p) { Direction(p, PagingDirection::Down); }},
      {"gray16-st7528-down.txt", 28, 16, 12, [](TestProgram& p) { Direction(p, PagingDirection::Down); }},
      {"gray32-odd.txt", 29, 7, 5, nullptr},
      {"c8-msb-last.txt", 54, 16, 4, [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"c16-left-all.txt", 55, 16, 8, [](TestProgram& p) { Direction(p, PagingDirection::ToLeftAll); }},
      {"c4096-msb-last.txt", 57, 8, 4, [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"c65k-msb-last.txt", 59, 8, 4, [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"c65k-down-all.txt", 59, 8, 4, [](TestProgram& p) { Direction(p, PagingDirection::DownAll); }},
      {"c262k-msb-last.txt", 60, 8, 4, [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"c16m-up-all.txt", 62, 8, 4, [](TestProgram& p) { Direction(p, PagingDirection::UpAll); }},
  };
  for (const auto& c : cases) RunCase(c);
}

TEST(GoldenData, SyntaxOptions) {
  auto syntax = [](std::function<void(rm::DataSyntax&)> f) {
    return [f](TestProgram& p) { f(p.app.session.Syntax); };
  };
  const GoldenCase cases[] = {
      {"syntax-hex-h-leading-zero.txt", 1, 32, 4, syntax([](rm::DataSyntax& s) {
         s.DataFormatKind = "H";
         s.LeadingZero = true;
       })},
      {"syntax-binary-0b.txt", 1, 32, 4, syntax([](rm::DataSyntax& s) { s.DataFormatKind = "0B"; })},
      {"syntax-binary-b.txt", 1, 32, 4, syntax([](rm::DataSyntax& s) { s.DataFormatKind = "B"; })},
      {"syntax-affix-hex.txt", 1, 32, 4, syntax([](rm::DataSyntax& s) {
         s.DataFormatKind = "+H+";
         s.DataPrefix = "$";
         s.DataSuffix = "";
       })},
      {"syntax-affix-bin.txt", 1, 32, 4, syntax([](rm::DataSyntax& s) {
         s.DataFormatKind = "+B+";
         s.DataPrefix = "%";
         s.SpaceBetweenData = false;
       })},
      {"syntax-affix-dec.txt", 1, 32, 4, syntax([](rm::DataSyntax& s) {
         s.DataFormatKind = "+D+";
         s.DataPrefix = "";
       })},
      {"syntax-one-per-line-c.txt", 1, 8, 8, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(1); }},
      {"syntax-one-per-line-semicolon.txt", 1, 8, 8,
       [](TestProgram& p) {
         p.app.mainForm.SetDataPerLine(1);
         p.app.session.Syntax.Comment = rm::CommentForm::Semicolon;
         p.app.session.Syntax.Eol = rm::EndOfLine::None;
         p.app.session.Syntax.DataFormatKind = "H";
       }},
      {"syntax-one-per-line-quote-dec.txt", 1, 8, 8,
       [](TestProgram& p) {
         p.app.mainForm.SetDataPerLine(1);
         p.app.session.Syntax.Comment = rm::CommentForm::Quote;
         p.app.session.Syntax.DataFormatKind = "+D+";
         p.app.session.Syntax.DataPrefix = "";
       }},
      {"syntax-no-data-comments.txt", 1, 8, 8,
       [](TestProgram& p) {
         p.app.mainForm.SetDataPerLine(1);
         p.app.session.Syntax.NoDataComments = true;
       }},
      {"syntax-line-numbers.txt", 1, 64, 4, syntax([](rm::DataSyntax& s) {
         s.LineNumbers = true;
         s.LinePrefix = "  DB ";
         s.LinePrefix2 = ": ";
       })},
      {"syntax-per-line-5.txt", 1, 16, 16, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(5); }},
      {"syntax-custom-separator-eol.txt", 1, 32, 8, syntax([](rm::DataSyntax& s) {
         s.SeparatorCustom = true;
         s.SeparatorComma = false;
         s.SeparatorString = ";;";
         s.Eol = rm::EndOfLine::Custom;
         s.EolString = " \\";
       })},
      {"syntax-delete-all-last.txt", 1, 32, 8, syntax([](rm::DataSyntax& s) { s.DeleteAllLastOnes = true; })},
      {"syntax-keep-very-last.txt", 1, 32, 8, syntax([](rm::DataSyntax& s) { s.DeleteVeryLastOne = false; })},
      // Lines are not cut at a band's end, so groups are used with one row's bytes per line.
      {"syntax-groups.txt", 1, 32, 4,
       [](TestProgram& p) {
         p.app.mainForm.SetDataPerLine(4);
         auto& s = p.app.session.Syntax;
         s.SeparatorOn = true;
         s.Groups = true;
         s.ColRowPrefix = "  {";
         s.ColRowSuffix = "  },";
         s.ArrayPrefix = "{{";
         s.ArraySuffix = "}};";
       }},
      {"syntax-negative.txt", 1, 32, 4, [](TestProgram& p) { p.app.mainForm.ToggleNegativeOutput(); }},
      {"word16.txt", 59, 8, 4, [](TestProgram& p) { p.app.mainForm.data16bitClick(); }},
      {"word16-msb-last.txt", 59, 8, 4,
       [](TestProgram& p) {
         p.app.mainForm.data16bitClick();
         p.app.mainForm.MsbLast();
       }},
      {"word16-decimal.txt", 1, 64, 2, [](TestProgram& p) {
         p.app.mainForm.data16bitClick();
         p.app.session.Syntax.DataFormatKind = "+D+";
         p.app.session.Syntax.DataPrefix = "";
       }},
      {"word32.txt", 62, 4, 4, [](TestProgram& p) { p.app.mainForm.data32bitClick(); }},
      {"word32-slashes.txt", 1, 64, 2,
       [](TestProgram& p) {
         p.app.mainForm.data32bitClick();
         p.app.session.Syntax.Comment = rm::CommentForm::Slashes;
       }},
      {"interleaved.txt", 1, 16, 8, [](TestProgram& p) { p.app.session.Interleaved = true; }},
      // A controller wired with its colour bits in another order: the 16 bit pixels' outer
      // fields swap, then the user's table moves two bits and swaps the bytes.
      {"reorder-table-c65k.txt", 59, 8, 2,
       [](TestProgram& p) {
         p.app.session.ReorderOn = true;
         p.app.session.ReorderTable[0] = {"swap bits", "0", "15"};
         p.app.session.ReorderTable[1] = {"Swap Bits", "5", "10"};
         p.app.session.ReorderTable[2] = {"swap bytes 16 bits", "", ""};
       }},
      {"reorder-table-mono.txt", 1, 16, 4,
       [](TestProgram& p) {
         p.app.session.ReorderOn = true;
         p.app.session.ReorderTable[0] = {"swap bits", "0", "7"};
       }},
      {"swap-options.txt", 62, 4, 2,
       [](TestProgram& p) { p.app.session.SwapFirstLast = true; }},
      {"swap-nibble-gray16h.txt", 27, 8, 2, [](TestProgram& p) { p.app.session.SwapNibble = true; }},
  };
  for (const auto& c : cases) RunCase(c);
}

}  // namespace
