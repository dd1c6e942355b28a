#include <gtest/gtest.h>

#include <functional>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::PagingDirection;
using rm::TMainForm;
using rmtest::TestProgram;
using Prepare = std::function<void(TestProgram&)>;

std::string Repeat(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

// A white picture with black pixels at `black`.
Bitmap Dots(int w, int h, std::initializer_list<std::pair<int, int>> black) {
  Bitmap b(w, h);
  for (auto [x, y] : black) b.SetPixel(x, y, rm::kBlack);
  return b;
}

// A program that has converted `picture` in `mode` after `setup`.
struct Converted : TestProgram {
  bool ok;
  Converted(int mode, const Bitmap& picture, const Prepare& setup = nullptr) {
    Setup(mode, picture);
    if (setup) setup(*this);
    ok = Convert();
  }
};

TEST(ConvertRoad, SizesDoNotDependOnDirection) {
  for (auto d :
       {PagingDirection::Down, PagingDirection::DownAll, PagingDirection::Up, PagingDirection::UpAll,
        PagingDirection::ToRight, PagingDirection::ToRightAll, PagingDirection::ToLeft, PagingDirection::ToLeftAll}) {
    Converted p(1, Bitmap(128, 64), [d](TestProgram& p) { ASSERT_TRUE(p.app.mainForm.SetDirection(d)); });
    ASSERT_TRUE(p.ok);
    const auto& s = p.app.session;
    EXPECT_EQ(std::make_tuple(s.TotalBytes, s.TotalBytesPlus, s.ByteCount), std::make_tuple(1024, 1025, 1024))
        << static_cast<int>(d);
    EXPECT_EQ(p.DataLines().size(), 64u);
    EXPECT_TRUE(p.ui.messages.empty());
  }
}

// The data lines of small pictures, where the rules show that the golden files leave out: how
// many, the first and the last.
TEST(ConvertRoad, DataLines) {
  const Bitmap row8 = Dots(8, 8, {{0, 0}, {2, 0}, {4, 0}, {6, 0}});  // #_#_#_#_, then white
  const Bitmap a0 = Dots(16, 1, {{0, 0}, {2, 0}});                   // 0xA0, 0x00
  const Bitmap lowerHalf = Dots(8, 4, {{0, 2}});                     // the first row of the lower half
  const Bitmap byteRow = Dots(16, 2, {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}, {7, 0}});
  const auto onePerLine = [](void (*f)(rm::DataSyntax&)) {
    return [f](TestProgram& p) {
      p.app.mainForm.SetDataPerLine(1);
      f(p.app.session.Syntax);
    };
  };
  // Two a line with separators, as a syntax setting shows best.
  const auto twoPerLine = [](void (*f)(rm::DataSyntax&)) {
    return [f](TestProgram& p) {
      p.app.mainForm.SetDataPerLine(2);
      p.app.session.Syntax.SeparatorOn = true;
      f(p.app.session.Syntax);
    };
  };
  struct Case {
    const char* name;
    Bitmap picture;
    Prepare setup;
    std::size_t count;
    std::string first, last;  // `last` empty: the first is the only line
  } cases[] = {
      // The end of line stands before the comment's mark, never inside the comment.
      {"one per line, slashes", row8, onePerLine([](rm::DataSyntax& s) { s.Comment = rm::CommentForm::Slashes; }), 8,
       " 0xAA,  //      #_#_#_#_    ", " 0x00  //      ________    "},
      {"line numbers from 1 at one per line", Bitmap(8, 3), onePerLine([](rm::DataSyntax& s) { s.LineNumbers = true; }),
       3, "1 0x00,      /*  ________  */", "3 0x00      /*  ________  */"},
      {"decimal with affixes", a0, twoPerLine([](rm::DataSyntax& s) {
         s.DataFormatKind = "+D+";
         s.DataPrefix = "(";
         s.DataSuffix = ")";
       }),
       1, "(160) ,(0)", ""},
      {"semicolon end of line kept off the last", a0,
       twoPerLine([](rm::DataSyntax& s) { s.Eol = rm::EndOfLine::Semicolon; }), 1, " 0xA0 , 0x00", ""},
      // A partly filled last line keeps the blank that follows a datum inside a line.
      {"16 bit", byteRow, [](TestProgram& p) { p.app.mainForm.data16bitClick(); }, 1, " 0xFF00 , 0x0000 ", ""},
      {"16 bit, MSB last", byteRow,
       [](TestProgram& p) {
         p.app.mainForm.data16bitClick();
         p.app.mainForm.MsbLast();
       },
       1, " 0x00FF , 0x0000 ", ""},
      {"upper half", lowerHalf, [](TestProgram& p) { p.app.globals.ExportEntry = 1; }, 1, " 0x00 , 0x00 ", ""},
      {"lower half", lowerHalf, [](TestProgram& p) { p.app.globals.ExportEntry = 2; }, 1, " 0x80 , 0x00 ", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Converted p(1, c.picture, c.setup);
    ASSERT_TRUE(p.ok);
    const auto lines = p.DataLines();
    ASSERT_EQ(lines.size(), c.count);
    EXPECT_EQ(lines.front(), c.first);
    EXPECT_EQ(lines.back(), c.last.empty() ? c.first : c.last);
    EXPECT_TRUE(p.ui.messages.empty()) << p.ui.messages.front().text;
  }
}

TEST(ConvertRoad, CanvasThatDoesNotFitMovesDirection) {
  // 100 is no multiple of 8: To Right All moves to Down All on the way into the conversion.
  Converted p(1, Bitmap(100, 64));
  ASSERT_TRUE(p.ok);
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

TEST(ConvertRoad, StrayColoursReducedAndInvertedBinary) {
  // In a palette mode a colour not in the palette is reduced for the conversion only.
  TestProgram p;
  p.Setup(56, Bitmap(8, 8));
  p.app.pixelForm.WorkBitmap.SetPixel(3, 3, rm::MakeColour(10, 20, 30));
  const Bitmap before = p.app.pixelForm.WorkBitmap;
  EXPECT_TRUE(p.Convert());
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(p.app.pixelForm.WorkBitmap, before);

  // The machine formats carry the same inverted bytes as the text.
  Converted bin(2, Bitmap(16, 1), [](TestProgram& p) { p.app.mainForm.HexOutput1Click(); });
  ASSERT_TRUE(bin.ok);
  EXPECT_EQ(bin.app.hex.Bytes(), (std::vector<std::uint8_t>{0xFF, 0xFF}));
}

TEST(ConvertRoad, Refusals) {
  // As a stored project could hold it.
  const auto direction = [](PagingDirection d) {
    return [d](TestProgram& p) {
      p.app.session.Direction = d;
      p.app.session.Horizontal = false;
    };
  };
  const auto compressed = [](void (TMainForm::*output)()) {
    return [output](TestProgram& p) {
      (p.app.mainForm.*output)();
      p.app.session.Compression = true;
    };
  };
  const std::tuple<int, Prepare, const char*, const char*> cases[] = {
      {24, [](TestProgram& p) { p.app.pixelForm.WorkBitmap.SetPixel(3, 3, rm::MakeColour(10, 20, 30)); },
       " Color not found in Palette! \r ", "Error Message"},
      {54, direction(PagingDirection::Down), " Sorry, this 3bpp color conversion scheme \r is under development ",
       "Under Dev !"},
      {25, [](TestProgram& p) { p.app.mainForm.data16bitClick(); },
       "Sorry, the 2 pages 4bpp grayscale conversion is only allowed when :  \r8 bit mode, Hex data and no animation",
       "Error"},
      {25, direction(PagingDirection::Up),
       " The sliced paging scheme is not implemented in this mode ! \rUse all right,all left ,all up or all down "
       "direction",
       "Error"},
      {1, compressed(&TMainForm::HexOutput1Click),
       "Hex or Binay file data output is not available for animations or data compression ! \rDisable Data "
       "Compression or choose 8/16/32 bits output",
       "Error "},
      {1, compressed(&TMainForm::data16bitClick), "Sorry, Data compression only works in the 8 bit output mode !",
       "Info"},
      {27, direction(PagingDirection::Down),
       "Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal pixels", "Info"},
      {1, [](TestProgram& p) { p.app.globals.FontScriptMode = true; },
       " A Font creation mode is still active ! Plase quit/exit this mode first !", "Font creation active"},
      {1, [](TestProgram& p) { p.app.globals.TouchScriptMode = true; },
       " Touch panel script creation mode is active ! ", "Warning"},
      {1, [](TestProgram& p) { p.app.globals.BatchEditMode = true; }, " Text Post-Processing is active !", "Warning"},
      {1, [](TestProgram& p) { p.app.globals.AnimationMode = true; }, " Animation is empty ! ", "Error"},
  };
  for (const auto& [mode, setup, text, title] : cases) {
    Converted p(mode, Bitmap(16, 16), setup);
    EXPECT_FALSE(p.ok) << text;
    ASSERT_FALSE(p.ui.messages.empty()) << text;
    EXPECT_EQ(p.ui.messages.back().text + "|" + p.ui.messages.back().title, std::string(text) + "|" + title);
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

  // A layer not reduced to black and white can only abort.
  Converted bw(1, Bitmap(16, 8), [](TestProgram& p) {
    p.app.pixelForm.FloatingSelection = true;
    p.app.pixelForm.SelectionReducedToBW = false;
  });
  EXPECT_FALSE(bw.ok);
  EXPECT_EQ(bw.ui.messages.back().buttons, std::vector<std::string>{"Abort"});
}

TEST(ConvertRoad, SelectedAreaAsksAndSetsTheSize) {
  TestProgram p;
  p.Setup(1, Bitmap(32, 16));
  auto& s = p.app.session;
  s.SelectionActive = true;
  std::tie(s.ExportAreaX1, s.ExportAreaY1, s.ExportAreaX2, s.ExportAreaY2) = std::make_tuple(8, 2, 24, 5);
  p.app.globals.ExportEntry = 3;
  p.ui.answers = {"No"};
  EXPECT_FALSE(p.Convert());
  EXPECT_EQ(p.ui.messages.back().text, " Export Selected Area to Data Array ? ");
  p.ui.answers = {"Yes"};
  EXPECT_TRUE(p.Convert());
  EXPECT_EQ(std::make_tuple(s.EncodeWidth, s.EncodeHeight, s.TotalBytes), std::make_tuple(16, 3, 6));
  EXPECT_EQ(p.DataLines().size(), 1u);
}

TEST(ConvertRoad, AutoFramingRoundsToBytesAndLetsTheFrameGo) {
  Converted p(1, Dots(64, 32, {{20, 10}, {30, 12}}),
              [](TestProgram& p) { p.app.session.AutoFraming = p.app.session.CoordinatesDescriptors = true; });
  ASSERT_TRUE(p.ok);
  // Columns 16 .. 31, rows 10 .. 12.
  EXPECT_EQ(std::make_pair(p.app.session.EncodeWidth, p.app.session.EncodeHeight), std::make_pair(16, 3));
  EXPECT_EQ(p.DataLines(), std::vector<std::string>{" 0x08 , 0x00 , 0x00 , 0x00 , 0x00 , 0x02 "});
  EXPECT_FALSE(p.app.session.SelectionActive);
}

TEST(ConvertRoad, InterleaveRefusedStopsTheRun) {
  Converted p(1, Dots(8, 5, {{0, 2}}), [](TestProgram& p) {
    p.app.mainForm.SetDirection(PagingDirection::ToRight);
    p.app.session.Interleaved = true;
  });
  EXPECT_FALSE(p.ok);
  EXPECT_EQ(p.ui.messages.back().text,
            " Interlaced only with not sliced horizontal data direction scheme  \r and even number of vertical pixels");
}

}  // namespace
