#include <gtest/gtest.h>

#include "engine/Palette.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::OutputKind;
using rm::PagingDirection;
using rmtest::TestProgram;

std::string Repeat(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

TEST(ConvertRoad, DefaultMonochromeWhiteCanvasLines) {
  TestProgram p;
  p.Setup(1, Bitmap(128, 64));
  ASSERT_TRUE(p.Convert());
  const auto lines = p.DataLines();
  ASSERT_EQ(lines.size(), 64u);
  EXPECT_EQ(lines[0], Repeat(" 0x00 ,", 15) + " 0x00,");
  // The very last end of line comma goes.
  EXPECT_EQ(lines[63], Repeat(" 0x00 ,", 15) + " 0x00");
  EXPECT_EQ(p.TableLines().front(), "{");
  EXPECT_EQ(p.TableLines().back(), "};");
  EXPECT_EQ(p.app.session.TotalBytes, 1024);
  EXPECT_EQ(p.app.session.TotalBytesPlus, 1025);
  EXPECT_TRUE(p.ui.messages.empty());
}

TEST(ConvertRoad, SizesDoNotDependOnDirection) {
  for (auto d : {PagingDirection::Down, PagingDirection::DownAll, PagingDirection::Up, PagingDirection::UpAll,
                 PagingDirection::ToRight, PagingDirection::ToRightAll, PagingDirection::ToLeft,
                 PagingDirection::ToLeftAll}) {
    TestProgram p;
    p.Setup(1, Bitmap(128, 64));
    ASSERT_TRUE(p.app.mainForm.SetDirection(d));
    ASSERT_TRUE(p.Convert());
    EXPECT_EQ(p.app.session.TotalBytes, 1024) << static_cast<int>(d);
    EXPECT_EQ(p.app.session.TotalBytesPlus, 1025);
    EXPECT_EQ(p.app.session.ByteCount, 1024);
  }
}

TEST(ConvertRoad, OneBlackPixelBothBitOrders) {
  Bitmap b(128, 64);
  b.SetPixel(0, 0, rm::kBlack);
  TestProgram big, little;
  big.Setup(1, b);
  little.Setup(1, b);
  little.app.mainForm.MsbLast();
  ASSERT_TRUE(big.Convert());
  ASSERT_TRUE(little.Convert());
  EXPECT_EQ(big.DataLines()[0].substr(0, 6), " 0x80 ");
  EXPECT_EQ(little.DataLines()[0].substr(0, 6), " 0x01 ");
  EXPECT_EQ(big.DataLines()[1], Repeat(" 0x00 ,", 15) + " 0x00,");
}

TEST(ConvertRoad, CanvasThatDoesNotFitMovesDirection) {
  // 100 is no multiple of 8: To Right All moves to Down All on the way into the conversion.
  TestProgram p;
  p.Setup(1, Bitmap(100, 64));
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(p.app.session.Direction, PagingDirection::DownAll);
  EXPECT_EQ(p.DataLines().size(), 50u);  // 800 bytes, 16 a line

  // 60 rows refuse Down when asked, and the conversion moves to To Right All.
  TestProgram q;
  q.Setup(1, Bitmap(128, 60));
  EXPECT_FALSE(q.app.mainForm.SetDirection(PagingDirection::Down));
  ASSERT_EQ(q.ui.messages.size(), 1u);
  EXPECT_EQ(q.ui.messages[0].text,
            "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Vertical size should be a multiple "
            "of 8 for vertical conversion  \r Use a horizontal conversion direction");
  q.app.session.Direction = PagingDirection::Down;  // as a stored project could hold it
  q.app.session.Horizontal = false;
  ASSERT_TRUE(q.Convert());
  EXPECT_EQ(q.app.session.Direction, PagingDirection::ToRightAll);
}

TEST(ConvertRoad, OnePerLineCarriesThePictureComment) {
  Bitmap b(8, 8);
  for (int x = 0; x < 8; x += 2) b.SetPixel(x, 0, rm::kBlack);
  TestProgram p;
  p.Setup(1, b);
  p.app.mainForm.SetDataPerLine(1);
  ASSERT_TRUE(p.Convert());
  const auto lines = p.DataLines();
  ASSERT_EQ(lines.size(), 8u);
  // The end of line goes into the first run of four blanks, in front of the comment.
  EXPECT_EQ(lines[0], " 0xAA,      /*  #_#_#_#_  */");
  EXPECT_EQ(lines[1], " 0x00,      /*  ________  */");
  EXPECT_EQ(lines[7], " 0x00      /*  ________  */");  // the last comma goes, wherever it stands

  TestProgram s;
  s.Setup(1, b);
  s.app.mainForm.SetDataPerLine(1);
  s.app.session.Syntax.Comment = rm::CommentForm::Slashes;
  ASSERT_TRUE(s.Convert());
  // With the " //" form the first four blanks follow the slashes, so the end of line
  // lands inside the comment; the datum itself carries no separator at one per line.
  EXPECT_EQ(s.DataLines()[0], " 0xAA  //,      #_#_#_#_    ");
}

TEST(ConvertRoad, SyntaxVariants) {
  Bitmap b(16, 1);
  b.SetPixel(0, 0, rm::kBlack);
  b.SetPixel(2, 0, rm::kBlack);  // first byte 0xA0
  struct Case {
    const char* name;
    void (*setup)(rm::DataSyntax&);
    const char* line;
  } cases[] = {
      {"hex H with leading zero", [](rm::DataSyntax& s) { s.DataFormatKind = "H"; s.LeadingZero = true; },
       " 0A0h, 00h "},
      {"binary 0b", [](rm::DataSyntax& s) { s.DataFormatKind = "0B"; }, " 0b10100000,  0b00000000 "},
      {"binary b", [](rm::DataSyntax& s) { s.DataFormatKind = "B"; }, " 10100000b,  00000000b"},
      {"decimal with affixes", [](rm::DataSyntax& s) { s.DataFormatKind = "+D+"; s.DataPrefix = "("; s.DataSuffix = ")"; },
       "(160) ,(0)"},
      {"hex with affixes, no space", [](rm::DataSyntax& s) { s.DataFormatKind = "+H+"; s.DataPrefix = "$"; s.SpaceBetweenData = false; },
       "$A0,$00"},
      {"semicolon end of line kept off the last", [](rm::DataSyntax& s) { s.Eol = rm::EndOfLine::Semicolon; },
       " 0xA0 , 0x00"},
      {"line numbers and prefixes", [](rm::DataSyntax& s) { s.LineNumbers = true; s.LinePrefix = "L"; s.LinePrefix2 = ": "; },
       "L0:  0xA0 , 0x00"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.Setup(1, b);
    p.app.mainForm.SetDataPerLine(2);
    p.app.session.Syntax.SeparatorOn = true;
    c.setup(p.app.session.Syntax);
    ASSERT_TRUE(p.Convert()) << c.name;
    ASSERT_EQ(p.DataLines().size(), 1u) << c.name;
    EXPECT_EQ(p.DataLines()[0], c.line) << c.name;
  }
}

TEST(ConvertRoad, LineNumbersCount) {
  TestProgram many;
  many.Setup(1, Bitmap(128, 3));
  many.app.session.Syntax.LineNumbers = true;
  ASSERT_TRUE(many.Convert());
  auto l = many.DataLines();
  ASSERT_EQ(l.size(), 3u);
  EXPECT_EQ(l[0].substr(0, 6), "0 0x00");
  EXPECT_EQ(l[2].substr(0, 6), "2 0x00");

  TestProgram one;
  one.Setup(1, Bitmap(8, 3));
  one.app.mainForm.SetDataPerLine(1);
  one.app.session.Syntax.LineNumbers = true;
  ASSERT_TRUE(one.Convert());
  l = one.DataLines();
  ASSERT_EQ(l.size(), 3u);
  EXPECT_EQ(l[0].substr(0, 6), "1 0x00");
  EXPECT_EQ(l[2].substr(0, 6), "3 0x00");
}

TEST(ConvertRoad, PartlyFilledLastLine) {
  TestProgram p;
  p.Setup(1, Bitmap(128, 64));
  p.app.mainForm.SetDataPerLine(5);
  p.app.session.Syntax.SeparatorOn = true;
  ASSERT_TRUE(p.Convert());
  const auto l = p.DataLines();
  ASSERT_EQ(l.size(), 205u);  // 204 full lines and one of 4
  EXPECT_EQ(l[0], " 0x00 , 0x00 , 0x00 , 0x00 , 0x00,");
  EXPECT_EQ(l.back(), " 0x00 , 0x00 , 0x00 , 0x00 ");
}

TEST(ConvertRoad, WordOutputs) {
  Bitmap b(16, 2);
  for (int x = 0; x < 8; ++x) b.SetPixel(x, 0, rm::kBlack);
  TestProgram w16;
  w16.Setup(1, b);
  w16.app.mainForm.data16bitClick();
  ASSERT_TRUE(w16.Convert());
  // A partly filled last line keeps the blank that follows a datum inside a line.
  EXPECT_EQ(w16.DataLines()[0], " 0xFF00 , 0x0000 ");

  TestProgram le;
  le.Setup(1, b);
  le.app.mainForm.data16bitClick();
  le.app.mainForm.MsbLast();
  ASSERT_TRUE(le.Convert());
  EXPECT_EQ(le.DataLines()[0], " 0x00FF , 0x0000 ");

  // 32 bit output always has one datum per line, padded to ten characters.
  TestProgram w32;
  w32.Setup(1, Bitmap(32, 2));
  w32.app.mainForm.data32bitClick();
  ASSERT_TRUE(w32.Convert());
  EXPECT_EQ(w32.app.session.Syntax.DataPerLine, 1);
  EXPECT_EQ(w32.DataLines()[0], " 0x00000000,        /*  ________________________________  */");
  EXPECT_EQ(w32.DataLines().size(), 2u);
}

TEST(ConvertRoad, GroupsFrameEachRow) {
  TestProgram p;
  p.Setup(1, Bitmap(16, 2));
  p.app.session.Syntax.Groups = true;
  p.app.mainForm.SetDataPerLine(2);  // one full line per band: lines are not cut at a band's end
  ASSERT_TRUE(p.Convert());
  const std::vector<std::string> expected = {"{", "{", " 0x00 , 0x00,", "},", "{", " 0x00 , 0x00", "},", "};"};
  EXPECT_EQ(p.TableLines(), expected);
}

TEST(ConvertRoad, InvertedMonochrome) {
  TestProgram p;
  p.Setup(2, Bitmap(16, 1));
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(p.DataLines()[0], " 0xFF , 0xFF ");

  // The machine formats carry the bytes as packed, before the text's inversion.
  TestProgram bin;
  bin.Setup(2, Bitmap(16, 1));
  bin.app.mainForm.HexOutput1Click();
  ASSERT_TRUE(bin.Convert());
  EXPECT_EQ(bin.app.hex.Bytes(), (std::vector<std::uint8_t>{0x00, 0x00}));
}

TEST(ConvertRoad, EscapeStopsAndKeepsWhatWasWritten) {
  TestProgram p;
  p.Setup(1, Bitmap(128, 64));
  p.ui.escapeAfterPolls = 40;
  EXPECT_FALSE(p.Convert());
  EXPECT_TRUE(p.app.session.Abort);
  // The text ends with the begin of data and two lines of 16: nothing after the stop.
  const auto& l = p.app.mainText.Lines();
  ASSERT_GE(l.size(), 3u);
  EXPECT_EQ(l[l.size() - 3], "{");
  EXPECT_EQ(l.back(), Repeat(" 0x00 ,", 15) + " 0x00,");
  EXPECT_EQ(p.app.session.ByteCount, 40);
}

TEST(ConvertRoad, ColourNotInTheGrayTable) {
  TestProgram p;
  p.Setup(24, Bitmap(8, 8));
  p.app.pixelForm.WorkBitmap.SetPixel(3, 3, rm::MakeColour(10, 20, 30));
  EXPECT_FALSE(p.Convert());
  ASSERT_EQ(p.ui.messages.size(), 1u);
  EXPECT_EQ(p.ui.messages[0].text, " Color not found in Palette! \r ");
  EXPECT_EQ(p.ui.messages[0].title, "Error Message");
}

TEST(ConvertRoad, StrayColoursAreReducedInPaletteModes) {
  TestProgram p;
  p.Setup(56, Bitmap(8, 8));
  p.app.pixelForm.WorkBitmap.SetPixel(3, 3, rm::MakeColour(10, 20, 30));
  const Bitmap before = p.app.pixelForm.WorkBitmap;
  EXPECT_TRUE(p.Convert());
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(p.app.pixelForm.WorkBitmap, before);  // the canvas comes back as it was
}

TEST(ConvertRoad, Refusals) {
  struct Case {
    const char* name;
    int mode;
    void (*setup)(TestProgram&);
    const char* text;
    const char* title;
  } cases[] = {
      {"8 colours, sliced", 54, [](TestProgram& p) { p.app.session.Direction = PagingDirection::Down; },
       " Sorry, this 3bpp color conversion scheme \r is under development ", "Under Dev !"},
      {"two pages, 16 bit", 25, [](TestProgram& p) { p.app.mainForm.data16bitClick(); },
       "Sorry, the 2 pages 4bpp grayscale conversion is only allowed when :  \r8 bit mode, Hex data and no animation",
       "Error"},
      {"two pages, sliced up", 25, [](TestProgram& p) { p.app.session.Direction = PagingDirection::Up; p.app.session.Horizontal = false; },
       " The sliced paging scheme is not implemented in this mode ! \rUse all right,all left ,all up or all down "
       "direction",
       "Error"},
      {"binary with compression", 1, [](TestProgram& p) { p.app.mainForm.HexOutput1Click(); p.app.session.Compression = true; },
       "Hex or Binay file data output is not available for animations or data compression ! \rDisable Data "
       "Compression or choose 8/16/32 bits output",
       "Error "},
      {"compression, 16 bit", 1, [](TestProgram& p) { p.app.mainForm.data16bitClick(); p.app.session.Compression = true; },
       "Sorry, Data compression only works in the 8 bit output mode !", "Info"},
      {"gray 16 horizontal, down", 27, [](TestProgram& p) { p.app.session.Direction = PagingDirection::Down; },
       "Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal pixels", "Info"},
      {"font creation", 1, [](TestProgram& p) { p.app.globals.FontScriptMode = true; },
       " A Font creation mode is still active ! Plase quit/exit this mode first !", "Font creation active"},
      {"touch panel script", 1, [](TestProgram& p) { p.app.globals.TouchScriptMode = true; },
       " Touch panel script creation mode is active ! ", "Warning"},
      {"batch editing", 1, [](TestProgram& p) { p.app.globals.BatchEditMode = true; }, " Text Post-Processing is active !",
       "Warning"},
      {"empty animation", 1, [](TestProgram& p) { p.app.globals.AnimationMode = true; }, " Animation is empty ! ",
       "Error"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.Setup(c.mode, Bitmap(16, 16));
    c.setup(p);
    EXPECT_FALSE(p.Convert()) << c.name;
    ASSERT_FALSE(p.ui.messages.empty()) << c.name;
    EXPECT_EQ(p.ui.messages.back().text, c.text) << c.name;
    EXPECT_EQ(p.ui.messages.back().title, c.title) << c.name;
  }
}

TEST(ConvertRoad, FloatingSelectionQuestions) {
  TestProgram p;
  p.Setup(1, Bitmap(16, 8));
  p.app.pixelForm.FloatingSelection = true;
  p.ui.answers = {"Abort"};
  EXPECT_FALSE(p.Convert());
  EXPECT_EQ(p.ui.messages.back().text,
            " Floating Selection layer has not been pasted to Work Canvas !\r Paste now or Abort Conversion ? ");
  EXPECT_TRUE(p.app.mainText.Empty());

  p.ui.answers = {"Paste Now"};
  EXPECT_TRUE(p.Convert());
  EXPECT_FALSE(p.app.pixelForm.FloatingSelection);

  TestProgram bw;
  bw.Setup(1, Bitmap(16, 8));
  bw.app.pixelForm.FloatingSelection = true;
  bw.app.pixelForm.SelectionReducedToBW = false;
  EXPECT_FALSE(bw.Convert());
  EXPECT_EQ(bw.ui.messages.back().buttons, std::vector<std::string>{"Abort"});
}

TEST(ConvertRoad, SelectedAreaAsksAndSetsTheSize) {
  TestProgram p;
  p.Setup(1, Bitmap(32, 16));
  auto& s = p.app.session;
  s.SelectionActive = true;
  s.ExportAreaX1 = 8;
  s.ExportAreaY1 = 2;
  s.ExportAreaX2 = 24;
  s.ExportAreaY2 = 5;
  p.app.globals.ExportEntry = 3;
  p.ui.answers = {"No"};
  EXPECT_FALSE(p.Convert());
  EXPECT_EQ(p.ui.messages.back().text, " Export Selected Area to Data Array ? ");
  p.ui.answers = {"Yes"};
  EXPECT_TRUE(p.Convert());
  EXPECT_EQ(s.EncodeWidth, 16);
  EXPECT_EQ(s.EncodeHeight, 3);
  EXPECT_EQ(s.TotalBytes, 6);
  EXPECT_EQ(p.DataLines().size(), 1u);
}

TEST(ConvertRoad, AutoFramingRoundsToBytes) {
  Bitmap b(64, 32);
  b.SetPixel(20, 10, rm::kBlack);
  b.SetPixel(30, 12, rm::kBlack);
  TestProgram p;
  p.Setup(1, b);
  p.app.session.AutoFraming = true;
  p.app.session.CoordinatesDescriptors = true;
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(p.app.session.EncodeWidth, 16);   // columns 16 .. 31
  EXPECT_EQ(p.app.session.EncodeHeight, 3);   // rows 10 .. 12
  EXPECT_EQ(p.DataLines(), std::vector<std::string>{" 0x08 , 0x00 , 0x00 , 0x00 , 0x00 , 0x02 "});
  EXPECT_FALSE(p.app.session.SelectionActive);  // the frame it made is let go
}

TEST(ConvertRoad, HalfExportWalksOneHalf) {
  Bitmap b(8, 4);
  b.SetPixel(0, 2, rm::kBlack);  // first row of the lower half
  TestProgram upper, lower;
  upper.Setup(1, b);
  lower.Setup(1, b);
  upper.app.globals.ExportEntry = 1;
  lower.app.globals.ExportEntry = 2;
  ASSERT_TRUE(upper.Convert());
  ASSERT_TRUE(lower.Convert());
  EXPECT_EQ(upper.DataLines(), std::vector<std::string>{" 0x00 , 0x00 "});
  EXPECT_EQ(lower.DataLines(), std::vector<std::string>{" 0x80 , 0x00 "});
}

TEST(ConvertRoad, InterleavedRows) {
  Bitmap b(8, 4);
  b.SetPixel(0, 2, rm::kBlack);  // row 2 is written second: 0, 2, 1, 3
  TestProgram p;
  p.Setup(1, b);
  p.app.session.Interleaved = true;
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(p.DataLines(), std::vector<std::string>{" 0x00 , 0x80 , 0x00 , 0x00 "});

  TestProgram refused;
  refused.Setup(1, b);
  refused.app.mainForm.SetDirection(PagingDirection::ToRight);
  refused.app.session.Interleaved = true;
  ASSERT_TRUE(refused.Convert());  // goes on without it
  EXPECT_EQ(refused.ui.messages.back().text,
            " Interlaced only with not sliced horizontal data direction scheme  \r and even number of vertical pixels");
}

}  // namespace
