// Compressed monochrome tables, through the whole Convert command. The data table and the pointer
// table are read back from the text and expanded by a decoder written here from the pointer rule
// alone (bit 7 set: repeat the next data byte (p & 127) times; clear: copy the next p data
// bytes); the result must be the byte stream of the same picture converted without compression.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "engine/Compression.h"
#include "platform/PlatformImageCodecs.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::TestProgram;
using Bytes = std::vector<int>;

const char kRefused[] = "No efficient data compression possible with this frame ! Uncompressed data generated ";

// A picture whose To Right All walk (the default) gives `bytes`, most significant bit leftmost.
Bitmap PictureOf(const Bytes& bytes, int bytesPerRow) {
  EXPECT_EQ(bytes.size() % static_cast<std::size_t>(bytesPerRow), 0u) << "no whole number of rows";
  const int rows = static_cast<int>(bytes.size()) / bytesPerRow;
  Bitmap b(bytesPerRow * 8, rows);
  for (int i = 0; i < static_cast<int>(bytes.size()); ++i)
    for (int bit = 0; bit < 8; ++bit)
      if (bytes[static_cast<std::size_t>(i)] & (0x80 >> bit))
        b.SetPixel((i % bytesPerRow) * 8 + bit, i / bytesPerRow, rm::kBlack);
  return b;
}

Bytes Repeat(int value, int count) { return Bytes(static_cast<std::size_t>(count), value); }
Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const auto& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}
// `count` bytes of which no two neighbours are equal.
Bytes Alternating(int count, int a = 0x55, int b = 0xAA) {
  Bytes v;
  for (int i = 0; i < count; ++i) v.push_back(i % 2 ? b : a);
  return v;
}

Bytes HexValues(const std::vector<std::string>& lines) {
  static const std::regex datum("0x([0-9A-F]{2})");
  Bytes v;
  for (const auto& l : lines)
    for (auto it = std::sregex_iterator(l.begin(), l.end(), datum); it != std::sregex_iterator(); ++it)
      v.push_back(std::stoi((*it)[1].str(), nullptr, 16));
  return v;
}

// The lines after the first line that `opens` starts, up to the next "};".
std::vector<std::string> Block(const std::vector<std::string>& lines, const std::string& opens) {
  std::vector<std::string> out;
  std::size_t i = 0;
  while (i < lines.size() && lines[i].rfind(opens, 0) != 0) ++i;
  for (++i; i < lines.size() && lines[i] != "};"; ++i) out.push_back(lines[i]);
  return out;
}

struct Tables {
  Bytes data, pointers;
};

Tables ReadTables(const TestProgram& p) {
  const auto& lines = p.app.mainText.Lines();
  return {HexValues(Block(lines, "{")), HexValues(Block(lines, "/* Compression informations"))};
}

// The firmware's side of the format.
Bytes Expand(const Tables& t) {
  Bytes out;
  std::size_t next = 0;
  for (int p : t.pointers) {
    if (p & 0x80) {
      if (next >= t.data.size()) {
        ADD_FAILURE() << "a repeat pointer past the end of the data table";
        return out;
      }
      out.insert(out.end(), static_cast<std::size_t>(p & 0x7F), t.data[next++]);
    } else {
      for (int k = 0; k < p; ++k) {
        if (next >= t.data.size()) {
          ADD_FAILURE() << "a copy pointer past the end of the data table";
          return out;
        }
        out.push_back(t.data[next++]);
      }
    }
  }
  EXPECT_EQ(next, t.data.size()) << "data bytes no pointer uses";
  return out;
}

using Tweak = std::function<void(TestProgram&)>;

struct Outcome {
  std::string text;
  std::vector<std::string> messages;
  Tables tables;
  bool refused = false;
  std::vector<std::string> statistics;
};

Outcome Convert(int mode, const Bitmap& picture, bool compress, const Tweak& setup = nullptr) {
  TestProgram p;
  p.Setup(mode, picture);
  if (setup) setup(p);
  p.app.session.Compression = compress;
  EXPECT_TRUE(p.Convert());
  Outcome r;
  r.text = p.Text();
  for (const auto& m : p.ui.messages) r.messages.push_back(m.title + ": " + m.text);
  r.tables = ReadTables(p);
  r.refused = p.app.encoder.CompressionRefused();
  r.statistics = p.app.encoder.CompressionStatisticsLines();
  return r;
}

// The plain table's bytes, as the walk emits them.
Bytes PlainStream(int mode, const Bitmap& picture, const Tweak& setup = nullptr) {
  TestProgram p;
  p.Setup(mode, picture);
  if (setup) setup(p);
  EXPECT_TRUE(p.Convert());
  return HexValues(p.DataLines());
}

std::string Statistic(const std::vector<std::string>& lines, int index) {
  return index < static_cast<int>(lines.size()) ? lines[static_cast<std::size_t>(index)] : "";
}

void ExpectRebuilds(const char* name, int mode, const Bitmap& picture, const Tweak& setup = nullptr) {
  SCOPED_TRACE(name);
  const Outcome r = Convert(mode, picture, true, setup);
  ASSERT_TRUE(r.messages.empty()) << r.messages.front();
  ASSERT_FALSE(r.tables.pointers.empty()) << r.text;
  const Bytes plain = PlainStream(mode, picture, setup);
  EXPECT_EQ(Expand(r.tables), plain);
  // The statistics describe the tables that were written.
  EXPECT_EQ(Statistic(r.statistics, 3), " Number of data bytes : " + std::to_string(r.tables.data.size()));
  EXPECT_EQ(Statistic(r.statistics, 7), " Number of bytes in compression: " + std::to_string(plain.size()));
}

TEST(Compression, PointerAndDataTablesRebuildThePlainStream) {
  struct Case {
    const char* name;
    Bytes bytes;
    int bytesPerRow;
  } cases[] = {
      {"all white", Repeat(0x00, 1024), 16},
      {"all black", Repeat(0xFF, 1024), 16},
      {"runs of 127, 128 and 129",
       Join({Repeat(0xAA, 127), Repeat(0x55, 128), Repeat(0x0F, 129), Alternating(9), Repeat(0x0F, 127),
             Repeat(0xF0, 128), Repeat(0x00, 129), Repeat(0x01, 7)}),
       8},
      {"a long copy block between runs",
       Join({Repeat(0, 500), Alternating(300), Repeat(0x33, 400), {1, 2, 3, 4, 5, 6, 7, 8}}), 8},
      {"one differing byte at the end", Join({Repeat(0x00, 1023), {0x01}}), 16},
      {"the table ends on the byte after a full run", Repeat(0x00, 128), 2},
      {"the table ends on the byte after a full copy block", Join({Repeat(0, 600), Alternating(128)}), 8},
      // A full run leaves no byte to compare with: its neighbouring values are no repeats.
      {"a full run of 0x00 and then 0x01", Join({Repeat(0x00, 127), Repeat(0x01, 5), Repeat(0x00, 124)}), 4},
      {"a full run of 0xFF and then 0xFE", Join({Repeat(0xFF, 127), Repeat(0xFE, 5), Repeat(0xFF, 124)}), 4},
      {"a full run and then a single 0x01", Join({Repeat(0x00, 127), {0x01, 0x40}, Repeat(0x00, 127)}), 4},
  };
  for (const auto& c : cases) ExpectRebuilds(c.name, 1, PictureOf(c.bytes, c.bytesPerRow));
}

TEST(Compression, WalksAndBitOptionsRebuildThePlainStream) {
  Bitmap picture(64, 64);
  for (int y = 8; y < 40; ++y)
    for (int x = 5; x < 50; ++x)
      if ((x / 7 + y / 5) % 3 == 0) picture.SetPixel(x, y, rm::kBlack);
  picture.SetPixel(63, 63, rm::kBlack);
  struct Case {
    const char* name;
    int mode;
    Tweak setup;
  } cases[] = {
      {"To Right All", 1, nullptr},
      {"inverted output: data inverted, pointers not", 2, nullptr},
      {"Down", 1, [](TestProgram& p) { ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::Down)); }},
      {"Up All, msb last", 1,
       [](TestProgram& p) {
         ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::UpAll));
         p.app.mainForm.MsbLast();
       }},
      {"To Left, bottom right", 1,
       [](TestProgram& p) {
         ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::ToLeft));
         p.app.mainForm.ToggleOriginCorner();
       }},
      // Bytes are compared before the cut: equal bytes stay equal, and unequal ones are copied.
      {"4 pixels per byte", 1, [](TestProgram& p) { p.app.session.PixelsPerByteSetting = 4; }},
      {"one datum per line", 1, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(1); }},
      {"5 data per line", 1, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(5); }},
  };
  for (const auto& c : cases) ExpectRebuilds(c.name, c.mode, picture, c.setup);
}

TEST(Compression, RandomRunsAndCopiesRebuild) {
  std::mt19937 rng(20240611);
  int compressed = 0;
  constexpr int kStreams = 60;
  for (int s = 0; s < kStreams; ++s) {
    Bytes bytes;
    while (bytes.size() < 1500) {
      // Values next to each other and at the ends of the range are the likely mistakes.
      static constexpr int kValues[] = {0x00, 0x01, 0x02, 0x7F, 0x80, 0xFE, 0xFF};
      const int value = rng() % 3 ? kValues[rng() % 7] : static_cast<int>(rng() % 256);
      const int length = static_cast<int>(rng() % 3 ? rng() % 300 + 1 : rng() % 4 + 1);
      bytes.insert(bytes.end(), static_cast<std::size_t>(length), value);
    }
    bytes.resize(bytes.size() / 4 * 4);
    const Bitmap picture = PictureOf(bytes, 4);
    SCOPED_TRACE("stream " + std::to_string(s));
    const Outcome r = Convert(1, picture, true);
    if (r.refused) {
      EXPECT_EQ(r.text, Convert(1, picture, false).text);
      continue;
    }
    ++compressed;
    EXPECT_EQ(Expand(r.tables), bytes);
  }
  // The streams are made mostly of runs: nearly all of them must compress.
  EXPECT_GE(compressed, kStreams * 9 / 10);
}

TEST(Compression, The128thEqualByteStartsANewRun) {
  const Outcome r = Convert(1, PictureOf(Join({Repeat(0x00, 200), Repeat(0xFF, 56)}), 4), true);
  EXPECT_EQ(r.tables.data, (Bytes{0x00, 0x00, 0xFF}));
  EXPECT_EQ(r.tables.pointers, (Bytes{0xFF, 0x80 + 73, 0x80 + 56}));
}

// A refused compression gives the plain table with the statistics of the attempt after its end
// (a blank line and nine comment lines): the text without them.
std::string WithoutStatistics(std::string text) {
  const std::size_t at = text.find("\n\n/*  Compression statistics */\n");
  if (at == std::string::npos) return text;
  std::size_t end = at + 1;
  for (int i = 0; i < 10 && end != std::string::npos; ++i) end = text.find('\n', end) + 1;
  return text.erase(at + 1, end - at - 1);
}

TEST(Compression, NoRepeatedByteGivesThePlainTableAndAWarning) {
  const Bitmap picture = PictureOf(Alternating(1024), 16);
  TestProgram p;
  p.Setup(1, picture);
  p.app.session.Compression = true;
  ASSERT_TRUE(p.Convert());
  ASSERT_EQ(p.ui.messages.size(), 1u);
  EXPECT_EQ(p.ui.messages[0].text, kRefused);
  EXPECT_EQ(p.ui.messages[0].title, "Warning");
  EXPECT_TRUE(p.app.encoder.CompressionRefused());
  EXPECT_TRUE(p.app.session.Compression) << "the setting is the user's: only that table was made without it";
  EXPECT_EQ(WithoutStatistics(p.Text()), Convert(1, picture, false).text);
  EXPECT_NE(p.Text().find("};\n\n/*  Compression statistics */\n"), std::string::npos) << p.Text();
  // What the refused attempt found: copy blocks of 127 and one for the rest, more pointers than
  // repeats saved.
  std::vector<std::string> pointerLines(p.app.auxLines.Lines().begin() + 2, p.app.auxLines.Lines().end());
  EXPECT_EQ(HexValues(pointerLines), Join({Repeat(0x7F, 8), {0x08}}));
  const auto statistics = p.app.encoder.CompressionStatisticsLines();
  EXPECT_EQ(Statistic(statistics, 2), " Number of bytes saved : -8");
  EXPECT_EQ(Statistic(statistics, 8), " Compression ratio : -0.78%");

  // The next table is compressed again when it pays.
  p.app.pixelForm.SetCanvas(Bitmap(128, 64));
  ASSERT_TRUE(p.Convert());
  EXPECT_FALSE(p.app.encoder.CompressionRefused());
  EXPECT_EQ(ReadTables(p).pointers, Join({Repeat(0xFF, 8), {0x88}}));
}

TEST(Compression, TablesTooSmallToGainAreMadePlain) {
  struct Case {
    const char* name;
    Bitmap picture;
  } cases[] = {
      // One byte needs a data byte and a pointer: nothing is saved.
      {"8 x 1", PictureOf({0x5A}, 1)},
      {"one short run", PictureOf({1, 1, 2, 3, 4, 5, 6, 7}, 1)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Outcome r = Convert(1, c.picture, true);
    EXPECT_EQ(r.messages, std::vector<std::string>{std::string("Warning: ") + kRefused});
    EXPECT_EQ(WithoutStatistics(r.text), Convert(1, c.picture, false).text);
  }

  // In an animation the frame is only marked: no message, the table made plain all the same.
  const Bitmap picture = PictureOf(Alternating(64), 8);
  const Outcome frame = Convert(1, picture, true, [](TestProgram& p) {
    p.app.globals.AnimationMode = true;
    p.app.globals.FrameCount = 1;
  });
  EXPECT_TRUE(frame.messages.empty()) << frame.messages.front();
  EXPECT_TRUE(frame.refused);
  EXPECT_EQ(frame.text, Convert(1, picture, false).text);
}

// The pointer table takes the data table's text rules; the compression prefix leads a line only
// when the data lines have a prefix (with a line prefix, see the assembler golden below).
TEST(Compression, PointerLinesFollowTheDataSyntax) {
  const Bitmap white(128, 64);  // pointers 0xFF eight times, then 0x88
  auto syntax = [](std::function<void(rm::DataSyntax&)> f) -> Tweak {
    return [f](TestProgram& p) { f(p.app.session.Syntax); };
  };
  struct Case {
    const char* name;
    Tweak setup;
    std::vector<std::string> lines;
  } cases[] = {
      {"defaults", nullptr, {" 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0x88 "}},
      {"prefix without line prefix",
       syntax([](rm::DataSyntax& s) { s.PointerPrefix = "P:"; }),
       {" 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0x88 "}},
      {"one per line: no picture comment",
       [](TestProgram& p) { p.app.mainForm.SetDataPerLine(1); },
       {" 0xFF ,", " 0xFF ,", " 0xFF ,", " 0xFF ,", " 0xFF ,", " 0xFF ,", " 0xFF ,", " 0xFF ,", " 0x88 "}},
      {"prefix end only",
       syntax([](rm::DataSyntax& s) {
         s.LinePrefix2 = "> ";
         s.PointerPrefix = "p";
       }),
       {"p>  0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0xFF , 0x88 "}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TestProgram p;
    p.Setup(1, white);
    if (c.setup) c.setup(p);
    p.app.session.Compression = true;
    ASSERT_TRUE(p.Convert());
    EXPECT_EQ(Block(p.app.mainText.Lines(), "/* Compression informations */"), c.lines) << p.Text();
  }
}

TEST(Compression, RatioIsCutNotRounded) {
  struct Case {
    long double ratio;
    const char* text;
  } cases[] = {
      {98.24390243902439L, "98.24"},   {99.999L, "99.99"}, {50, "50"},   {12.5L, "12.5"},
      {-0.7804878048780488L, "-0.78"}, {0.001L, "0.00"},   {100, "100"},
  };
  for (const auto& c : cases) EXPECT_EQ(rm::CompressionState::RatioText(c.ratio), c.text) << c.text;
}

void ExpectGolden(const char* file, const Bitmap& picture, const Tweak& setup = nullptr) {
  TestProgram p;
  p.Setup(1, picture);
  if (setup) setup(p);
  p.app.session.Compression = true;
  ASSERT_TRUE(p.Convert());
  const std::string diff = rmtest::CompareGolden(std::string("compression/") + file, p.Text());
  EXPECT_TRUE(diff.empty()) << diff;
}

TEST(Compression, GoldenTexts) {
  Bitmap logo;
  std::string error;
  ASSERT_TRUE(rm::PlatformImageCodecs().Load(std::string(RM_GOLDEN_DIR) + "/../../examples/logo.png", logo, error))
      << error;
  ExpectGolden("logo.txt", logo);
  // No byte repeats its neighbour: the plain table comes out.
  ExpectGolden("no-repeat.txt", PictureOf(Alternating(256), 8));
  ExpectGolden("logo-assembler.txt", logo, [](TestProgram& p) {
    auto& s = p.app.session.Syntax;
    s.DataFormatKind = "H";
    s.LeadingZero = true;
    s.LinePrefix = "  DB ";
    s.PointerPrefix = "PTR";
    s.Comment = rm::CommentForm::Semicolon;
    s.Eol = rm::EndOfLine::None;
    s.SeparatorOn = true;
    p.app.mainForm.SetDataPerLine(8);
  });
}

}  // namespace
