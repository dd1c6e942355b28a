// The data text of every colour mode and of the syntax options, compared with reviewed files in
// tests/golden/data. A change of the output shows up as a diff of these files; run the suite with
// UPDATE_GOLDEN=1 to rewrite them, and say in the commit why the bytes changed.
#include <gtest/gtest.h>

#include <array>
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
  return {rm::MakeColour(0, 0, 0),          rm::MakeColour(255, 255, 255),   rm::MakeColour(0x12, 0x34, 0x56),
          rm::MakeColour(0xA5, 0x5A, 0xC3), rm::MakeColour(0xFF, 0, 0),      rm::MakeColour(0, 0xFF, 0),
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

// Each walk of a set, from its direction's own corner and from the other one, into one file: a
// header line per walk, then its table. Group marks are on where a set asks for them, so the file
// shows where each walk opens and closes its lines or bands.
struct WalkSet {
  const char* file;
  int mode;
  int width, height;
  std::vector<PagingDirection> directions;
  std::function<void(TestProgram&)> setup;
  // With group marks: the bytes of one group (sliced vertical, whole column, sliced horizontal,
  // whole row), each group on a line of its own.
  std::array<int, 4> groupBytes = {0, 0, 0, 0};
};

void GroupMarks(TestProgram& p) {
  auto& s = p.app.session.Syntax;
  s.SeparatorOn = true;
  s.Groups = true;
  s.ColRowPrefix = "  {";
  s.ColRowSuffix = "  },";
  s.ArrayPrefix = "{{";
  s.ArraySuffix = "}};";
}

void RunWalks(const WalkSet& set) {
  static const char* const names[] = {"Down",     "Down All",     "Up",      "Up All",
                                      "To Right", "To Right All", "To Left", "To Left All"};
  std::string all;
  for (PagingDirection d : set.directions) {
    for (bool other : {false, true}) {
      TestProgram p;
      p.Setup(set.mode, Bitmap(1, 1));
      p.app.pixelForm.SetCanvas(rmtest::PatternPicture(set.width, set.height, ModeColours(p.app.session)));
      if (set.setup) set.setup(p);
      const bool sliced = d == PagingDirection::Down || d == PagingDirection::Up || d == PagingDirection::ToRight ||
                          d == PagingDirection::ToLeft;
      if (const int n = set.groupBytes[(rm::IsHorizontal(d) ? 2 : 0) + (sliced ? 0 : 1)]; n > 0)
        p.app.mainForm.SetDataPerLine(n);
      ASSERT_TRUE(p.app.mainForm.SetDirection(d)) << set.file << ": " << names[static_cast<int>(d)];
      if (other) p.app.mainForm.ToggleOriginCorner();
      const std::string walk = std::string(names[static_cast<int>(d)]) + (other ? ", other corner" : "");
      ASSERT_TRUE(p.Convert()) << set.file << ": " << walk << ": "
                               << (p.ui.messages.empty() ? "" : p.ui.messages.back().text);
      all += "---- " + walk + "\n" + p.TableText();
    }
  }
  const std::string diff = rmtest::CompareGolden(std::string("data/") + set.file, all);
  EXPECT_TRUE(diff.empty()) << diff;
}

TEST(GoldenData, EveryWalkFromBothCorners) {
  using D = PagingDirection;
  const std::vector<D> every = {D::Down,    D::DownAll,    D::Up,     D::UpAll,
                                D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll};
  const std::vector<D> across = {D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll};
  // The Export dialog's upper (1) or lower (2) half; halves exist for horizontal walks only.
  const auto half = [](int entry) { return [entry](TestProgram& p) { p.app.globals.ExportEntry = entry; }; };
  const WalkSet sets[] = {
      {"walks-groups-mono.txt", 1, 16, 16, every, GroupMarks, {16, 2, 16, 2}},
      {"walks-groups-gray16.txt", 26, 8, 4, every, GroupMarks, {8, 2, 4, 4}},
      {"walks-groups-gray4.txt", 24, 8, 8, every, GroupMarks, {8, 2, 8, 2}},
      {"walks-groups-c65k.txt", 59, 3, 2, every, GroupMarks, {6, 4, 4, 6}},
      {"walks-half-upper.txt", 1, 16, 32, across, half(1)},
      {"walks-half-lower.txt", 1, 16, 32, across, half(2)},
      {"walks-6bit.txt", 1, 18, 4, across,
       [](TestProgram& p) {
         p.app.mainForm.SetDirection(PagingDirection::ToRightAll);
         p.app.mainForm.Toggle6BitMode();
       }},
      // Horizontal monochrome bytes cut to their first 5 pixels.
      {"walks-ppb5.txt", 1, 16, 4, across, [](TestProgram& p) { p.app.session.PixelsPerByteSetting = 5; }},
  };
  for (const auto& set : sets) RunWalks(set);
}

TEST(GoldenData, SyntaxOptions) {
  auto syntax = [](std::function<void(rm::DataSyntax&)> f) { return [f](TestProgram& p) { f(p.app.session.Syntax); }; };
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
         GroupMarks(p);
       }},
      {"syntax-negative.txt", 1, 32, 4, [](TestProgram& p) { p.app.mainForm.ToggleNegativeOutput(); }},
      {"word16.txt", 59, 8, 4, [](TestProgram& p) { p.app.mainForm.data16bitClick(); }},
      {"word16-msb-last.txt", 59, 8, 4,
       [](TestProgram& p) {
         p.app.mainForm.data16bitClick();
         p.app.mainForm.MsbLast();
       }},
      {"word16-decimal.txt", 1, 64, 2,
       [](TestProgram& p) {
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
      {"swap-options.txt", 62, 4, 2, [](TestProgram& p) { p.app.session.SwapFirstLast = true; }},
      {"swap-nibble-gray16h.txt", 27, 8, 2, [](TestProgram& p) { p.app.session.SwapNibble = true; }},
  };
  for (const auto& c : cases) RunCase(c);
}

}  // namespace
