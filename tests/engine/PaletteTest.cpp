#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <sstream>

#include "engine/NearestColour.h"
#include "engine/Palette.h"
#include "support/TestSupport.h"

namespace {

using rm::Colour;
using rmtest::ScriptedUi;
namespace fs = std::filesystem;

const std::string kDataPalettes = std::string(RM_BUILD_DATA_DIR) + "/palettes";
const std::vector<Colour> kBuiltIn8(std::begin(rm::kBuiltInColours8), std::end(rm::kBuiltInColours8));
const std::vector<Colour> kBuiltIn16(std::begin(rm::kBuiltInColours16), std::end(rm::kBuiltInColours16));

void WriteLines(const std::string& path, const std::vector<Colour>& colours) {
  std::ofstream out(path, std::ios::binary);
  for (Colour c : colours) out << rm::FormatPaletteColour(c) << "\n";
}

// Every colour of 4 bits a component, in ascending order of value.
std::vector<Colour> Lattice4096() {
  std::vector<Colour> v;
  for (int b = 0; b < 16; ++b)
    for (int g = 0; g < 16; ++g)
      for (int r = 0; r < 16; ++r) v.push_back(rm::MakeColour(r * 17, g * 17, b * 17));
  return v;
}

std::vector<Colour> Shuffled(std::vector<Colour> v, unsigned seed) {
  std::shuffle(v.begin(), v.end(), std::mt19937(seed));
  return v;
}

// The colours 0, 1, 2 ... n-1 plus `offset`.
std::vector<Colour> Counting(int n, Colour offset = 0) {
  std::vector<Colour> v;
  for (int i = 0; i < n; ++i) v.push_back(offset + i);
  return v;
}

// A load's outcome in one line: loaded or not, origin, labels, file.
std::string Outcome(const rm::PaletteLoadResult& r) {
  const char* origins[] = {"None", "BuiltIn", "Custom", "Default"};
  return std::string(r.Loaded ? "loaded " : "not loaded ") + origins[static_cast<int>(r.Origin)] + "|" + r.LoadedLabel +
         "|" + r.CurrentLabel + "|" + r.Path;
}

class PaletteTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(dir + "/inits");
    fs::create_directories(dir + "/data");
    folders.ActiveProject = dir + "/mine.LCD";
    folders.DefaultFolders = {dir + "/inits", dir + "/data"};
  }

  rm::PaletteLoadResult Load(int mode) {
    session.ModeNumber = mode;
    return rm::SelectionPalette(session, folders, ui);
  }

  rmtest::TempDir tmp;
  const std::string dir = tmp.path;
  rm::PaletteFolders folders;
  rm::ConversionSession session;
  ScriptedUi ui;
};

TEST(PaletteGrayRamps, ExactLevelsFromWhiteDownAndInverted) {
  std::vector<int> l16, l32;
  for (int i = 0; i < 16; ++i) l16.push_back(255 - 17 * i);
  for (int i = 0; i < 31; ++i) l32.push_back(255 - 8 * i);
  l32.push_back(0);  // not 7
  const std::vector<std::pair<int, std::vector<int>>> cases = {{24, {255, 170, 85, 0}},
                                                               {25, {255, 170, 85, 0}},
                                                               {26, l16},
                                                               {27, l16},
                                                               {28, l16},
                                                               {29, l32},
                                                               {30, l32},
                                                               {31, l32}};
  for (const auto& [mode, levels] : cases) {
    for (bool invert : {false, true}) {
      rm::ConversionSession s;
      s.ModeNumber = mode;
      s.InvertGrayPalette = invert;
      rm::BuildModeColours(s);
      std::vector<Colour> expected;
      for (int level : levels) expected.push_back(level * 0x010101);
      if (invert) std::reverse(expected.begin(), expected.end());
      EXPECT_EQ(s.ModeColours, expected) << "mode " << mode << " invert " << invert;
    }
  }
}

TEST(PaletteParse, ColourTextForms) {
  const std::pair<const char*, std::optional<Colour>> cases[] = {
      {"$00FF0000", 0xFF0000},    {"$ff", 0xFF},          {"0x00ff00", 0x00FF00}, {"0X10", 16},
      {"  255 \t", 255},          {"16777215", 0xFFFFFF}, {"$00000000", 0},       {"", std::nullopt},
      {"$", std::nullopt},        {"0x", std::nullopt},   {"12a", std::nullopt},  {"$01000000", std::nullopt},
      {"16777216", std::nullopt}, {"-1", std::nullopt},   {"1 2", std::nullopt},  {"clRed", std::nullopt},
      {"$$10", std::nullopt},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(rm::ParsePaletteColour(text), value) << "[" << text << "]";
  EXPECT_EQ(rm::FormatPaletteColour(0x0A0B0C), "$000A0B0C");
}

TEST_F(PaletteTest, FileLinesInEveryFormAndTheFirstBadLineRefusesTheFile) {
  using Colours = std::vector<Colour>;
  const std::pair<const char*, std::optional<Colours>> cases[] = {
      {"$00FF0000\n$0000FF00\n", Colours{0xFF0000, 0x00FF00}},
      {"$00ff0000\r\n\n  $10 \n255", Colours{0xFF0000, 16, 255}},
      {"$00FF0000\n$000000FF", Colours{0xFF0000, 0xFF}},  // no line feed after the last
      {"$00000001\n$01000000\n", std::nullopt},           // beyond 24 bits
      {"$0000000G\n", std::nullopt},
      {"$00000001\n$0000001\n$00000002\n", Colours{1, 1, 2}},
      {"$000000 1\n", std::nullopt},
      {"", Colours{}},
  };
  for (const auto& [text, colours] : cases) {
    const std::string path = dir + "/p.pal";
    std::ofstream(path, std::ios::binary) << text;
    EXPECT_EQ(rm::ReadPaletteFile(path), colours) << text;
  }
}

TEST_F(PaletteTest, FileOrderDoesNotMatterAndRevertReversesAfterTheSort) {
  const std::vector<Colour> lattice = Lattice4096();
  const std::vector<Colour> reversed(lattice.rbegin(), lattice.rend());
  WriteLines(dir + "/data/default_4096_Colors_palette.pal", Shuffled(lattice, 7));
  // Blue in the high bits of the value, red in the low ones.
  const int index = (3 << 8) | (2 << 4) | 1;
  for (bool revert : {false, true}) {
    session.RevertPaletteOnLoading = revert;
    ASSERT_TRUE(Load(57).Loaded);
    EXPECT_EQ(session.PaletteTable, revert ? reversed : lattice);
    EXPECT_EQ(rm::PaletteIndexOf(session.PaletteTable, rm::MakeColour(0x11, 0x22, 0x33)),
              revert ? 4095 - index : index);
  }
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(PaletteTest, MissingAndCorruptFilesAreToldAndLeaveTheTable) {
  const std::tuple<int, int, std::string> cases[] = {
      {56, 256, "8"}, {58, 4096, "12"}, {59, 65536, "16"}, {61, 262144, "18"}};
  const std::vector<Colour> before = {1, 2, 3};
  for (const auto& [mode, colours, bits] : cases) {
    const std::string custom = rm::CustomPaletteName(folders.ActiveProject, colours);
    // Nothing there; one line short; the right count with one line that is no colour.
    const std::function<void()> states[] = {[] {}, [&] { WriteLines(custom, Counting(colours - 1)); },
                                            [&] { std::ofstream(custom, std::ios::app) << "$00GG0000\n"; }};
    for (int i = 0; i < 3; ++i) {
      states[i]();
      session.PaletteTable = before;
      ui.messages.clear();
      EXPECT_EQ(Outcome(Load(mode)), "not loaded None|||" + (i == 0 ? "" : custom));
      const char* said = i == 0 ? " bit/pixel color Palette not found ! " : " bit palette file seem to be corrupted ! ";
      EXPECT_EQ(rmtest::ShownMessages(ui), std::vector<std::string>{"Color Palette Error:  " + bits + said});
      EXPECT_EQ(session.PaletteTable, before);
    }
  }
}

TEST_F(PaletteTest, CustomFileBeforeDefaultAndFoldersInOrder) {
  const std::vector<Colour> lattice = Lattice4096(), second = Counting(4096), custom = Counting(4096, 0x100000);
  const std::string inits = dir + "/inits/default_4096_Colors_palette.pal", mine = dir + "/mine_4096.pal";
  const std::string data = dir + "/data/default_4096_Colors_palette.pal";
  WriteLines(inits, lattice);
  WriteLines(data, second);
  WriteLines(mine, custom);
  EXPECT_EQ(Outcome(Load(58)), "loaded Custom|Custom Color Palette loaded|Current Palette is Custom|" + mine);
  EXPECT_EQ(session.PaletteTable, custom);
  EXPECT_EQ(ui.statuses, std::vector<std::string>{"Custom Color Palette loaded"});
  fs::remove(mine);
  EXPECT_EQ(Outcome(Load(58)), "loaded Default|Default Color Palette Loaded|Current Palette is Default|" + inits);
  EXPECT_EQ(session.PaletteTable, lattice);
  fs::remove(inits);
  EXPECT_EQ(Outcome(Load(58)), "loaded Default|Default Color Palette Loaded|Current Palette is Default|" + data);
  EXPECT_EQ(session.PaletteTable, second);
  // 256 grays take the grayscale default, 256 colours the colour one.
  const std::vector<Colour> grays = Counting(256, 0x100000), colours = Counting(256, 0x200000);
  WriteLines(dir + "/data/default_grayscale_256_Colors_palette.pal", grays);
  WriteLines(dir + "/data/default_256_Colors_palette.pal", colours);
  EXPECT_EQ(Load(32).LoadedLabel, "Default Grayscale Color Palette Loaded");
  EXPECT_EQ(session.PaletteTable, grays);
  EXPECT_EQ(Load(56).LoadedLabel, "Default Color Palette Loaded");
  EXPECT_EQ(session.PaletteTable, colours);
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(PaletteTest, EightAndSixteenColoursKeepFileOrderOrFallBackSilently) {
  // No files: the built-in tables, in their order.
  EXPECT_EQ(Outcome(Load(54)), "not loaded BuiltIn||Current Palette is Default|");
  EXPECT_EQ(session.ModeColours, kBuiltIn8);
  Load(55);
  EXPECT_EQ(session.ModeColours, kBuiltIn16);

  // A file in an order of its own is used as it stands, not sorted.
  const std::string file = dir + "/data/default_8_Colors_palette.pal";
  const std::vector<Colour> fileOrder = {0xFF0000, 0x000000, 0xFF00FF, 0x0000FF,
                                         0xFFFFFF, 0x00FF00, 0xFFFF00, 0x00FFFF};
  WriteLines(file, fileOrder);
  EXPECT_EQ(Outcome(Load(54)), "loaded Default|Default Color Palette Loaded|Current Palette is Default|" + file);
  EXPECT_EQ(session.ModeColours, fileOrder);
  EXPECT_EQ(rm::ModeColourIndexOf(session.ModeColours, 0xFF00FF), 2);

  // A short file falls back to the built-ins without a message.
  WriteLines(file, {0xFFFFFF, 0});
  EXPECT_EQ(Outcome(Load(54)), "not loaded BuiltIn||Current Palette is Default|" + file);
  EXPECT_EQ(session.ModeColours, kBuiltIn8);
  EXPECT_TRUE(ui.messages.empty());
}

int LinearIndexOf(const std::vector<Colour>& table, Colour c) {
  const auto it = std::find(table.begin(), table.end(), c);
  return it == table.end() ? -1 : static_cast<int>(it - table.begin());
}

TEST(PaletteIndex, LowestIndexOfEqualEntriesAsALinearSearchWould) {
  // Sorted tables, ascending and descending, with repeated entries.
  std::mt19937 rng(11);
  std::uniform_int_distribution<Colour> pick(0, 40);
  for (int round = 0; round < 200; ++round) {
    std::vector<Colour> table(1 + round % 37);
    for (Colour& c : table) c = pick(rng);
    std::sort(table.begin(), table.end());
    if (round % 2) std::reverse(table.begin(), table.end());
    for (Colour c = -1; c <= 42; ++c)
      ASSERT_EQ(rm::PaletteIndexOf(table, c), LinearIndexOf(table, c)) << "round " << round << " colour " << c;
  }
  // The hash index answers the same for tables in any order, with colours spread over 24 bits.
  std::uniform_int_distribution<Colour> wide(0, 0xFFFFFF);
  for (int round = 0; round < 50; ++round) {
    std::vector<Colour> table(1 + round * 97);
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = (i % 3 == 0 && i > 0) ? table[i / 2] : wide(rng);
    rm::ColourIndex index;
    index.Build(table);
    for (Colour c : table) ASSERT_EQ(index.IndexOf(c), LinearIndexOf(table, c)) << "round " << round;
    for (int k = 0; k < 200; ++k) {
      const Colour c = wide(rng);
      ASSERT_EQ(index.IndexOf(c), LinearIndexOf(table, c));
    }
  }
  // A whole lattice in ascending order is answered from per-channel tables; the same lattice
  // descending, with an entry missing or with one colour twice takes the hash.
  std::vector<Colour> lattice = Lattice4096();
  std::vector<Colour> missing = lattice;
  missing.erase(missing.begin() + 1000);
  std::vector<Colour> twice = lattice;
  twice[1001] = twice[1000];
  for (const auto& table : {lattice, std::vector<Colour>(lattice.rbegin(), lattice.rend()), missing, twice}) {
    rm::ColourIndex index;
    index.Build(table);
    for (Colour c : lattice) ASSERT_EQ(index.IndexOf(c), LinearIndexOf(table, c));
    for (Colour c : {Colour{0x010000}, Colour{0x000011 | 0x1000000}, Colour{-1}, Colour{0x123456}})
      ASSERT_EQ(index.IndexOf(c), LinearIndexOf(table, c));
    std::vector<std::int32_t> run(table.size());
    std::vector<std::uint32_t> pixels(lattice.begin(), lattice.end());
    index.IndexOfRun(pixels.data(), run.data(), run.size());
    for (std::size_t i = 0; i < run.size(); ++i) ASSERT_EQ(run[i], LinearIndexOf(table, lattice[i]));
  }
  rm::ColourIndex empty;
  empty.Build({});
  EXPECT_EQ(empty.IndexOf(0), -1);
  EXPECT_EQ(rm::PaletteIndexOf({}, 0), -1);
  EXPECT_EQ(rm::ModeColourIndexOf({7, 3, 3, 7}, 7), 0);
  EXPECT_EQ(rm::ModeColourIndexOf({7, 3, 3, 7}, 3), 1);
}

TEST(PaletteNearest, FixedAnswersAndPassThroughModes) {
  rm::NearestColour nearest;
  nearest.SetPalette({0x0000FF, 0x00FF00, 0xFF0000});
  EXPECT_EQ(nearest.NearestColor(0), 0);  // black is always itself
  EXPECT_EQ(nearest.NearestColor(0x1000000), 0x1000000);
  EXPECT_EQ(nearest.NearestColor(0x0000FE), 0x0000FF);

  // 16 colours last: they stay configured for the checks below.
  for (int mode : {1, 24, 26, 29, 31, 62, 63, 55}) {
    rm::ConversionSession s;
    s.ModeNumber = mode;
    rm::BuildModeColours(s);
    s.PaletteTable = {0x0000FF, 0x00FF00, 0xFF0000};
    nearest.Configure(s);
    if (mode != 55) {
      EXPECT_EQ(nearest.NearestColor(0x123456), 0x123456) << "mode " << mode;
    }
  }
  // Sorted, the 16 colours have 0x008080, 0x800080 and 0xFF0000 at 4, 8 and 12: 0x818181 is
  // searched among 8..11 and finds its gray; 0x7F7F7F, just below 0x800080, only among 4..7.
  EXPECT_EQ(nearest.NearestColor(0x818181), 0x808080);
  EXPECT_EQ(nearest.NearestColor(0x7F7F7F), 0x008080);
}

TEST(PaletteNearest, EveryEntryFindsItselfAndTheCacheIsClearedWithThePalette) {
  rm::NearestColour nearest;
  // One entry short of the lattice, so that the search and its cache answer, not the tables.
  std::vector<Colour> lattice = Shuffled(Lattice4096(), 5);
  lattice.pop_back();
  nearest.SetPalette(lattice);
  ASSERT_FALSE(nearest.IsLattice());
  for (Colour c : lattice) ASSERT_EQ(nearest.NearestColor(c), c) << std::hex << c;
  // The cache gives the answers a search gives.
  std::mt19937 rng(17);
  std::uniform_int_distribution<Colour> pick(1, 0xFFFFFF);
  std::vector<Colour> asked(10000), first;
  for (Colour& c : asked) c = pick(rng);
  for (Colour c : asked) first.push_back(nearest.NearestColor(c));
  for (std::size_t i = 0; i < asked.size(); ++i) {
    ASSERT_EQ(nearest.NearestColor(asked[i]), first[i]);
    ASSERT_EQ(nearest.Search(asked[i]), first[i]);
  }
  // The answers of the old palette must not survive a change.
  nearest.SetPalette({0x0000FF, 0x00FF00, 0xFF0000});
  for (Colour c : asked) {
    const Colour n = nearest.NearestColor(c);
    ASSERT_TRUE(n == 0x0000FF || n == 0x00FF00 || n == 0xFF0000);
  }
}

TEST(PaletteConvert, ReducesTheBitmapStopsOnEscapeAndNeedsThreeColours) {
  rm::NearestColour nearest;
  nearest.SetPalette(Lattice4096());
  rm::Bitmap bmp(3, 2);
  bmp.SetPixel(0, 0, 0x123456);
  bmp.SetPixel(1, 1, 0x010203);
  ScriptedUi ui;
  ASSERT_TRUE(rm::ConvertToNearestColor(bmp, nearest, ui));
  EXPECT_EQ(bmp.GetPixel(0, 0), nearest.Search(0x123456));
  EXPECT_EQ(bmp.GetPixel(1, 1), 0);
  EXPECT_EQ(bmp.GetPixel(2, 1), rm::kWhite);
  ASSERT_EQ(ui.statuses.size(), 2u);
  EXPECT_EQ(ui.statuses[0], "Processing Color Conversion ...");
  EXPECT_EQ(ui.statuses[1].rfind("Color Conversion done in ", 0), 0u);
  EXPECT_EQ(std::make_pair(ui.lastProgress, ui.progressMax), std::make_pair(2LL, 2LL));

  // A font's glyphs are converted without a word.
  ScriptedUi fontUi;
  rm::Bitmap glyph(2, 2, 0x0F0F0F);
  ASSERT_TRUE(rm::ConvertToNearestColor(glyph, nearest, fontUi, "Font"));
  EXPECT_TRUE(fontUi.statuses.empty());
  EXPECT_EQ(glyph.GetPixel(1, 1), 0x111111);

  nearest.SetPalette({0x0000FF, 0x00FF00, 0xFF0000});
  rm::Bitmap blue(2, 3, 0x0000F0);
  ScriptedUi esc;
  esc.escapeAfterPolls = 1;
  EXPECT_FALSE(rm::ConvertToNearestColor(blue, nearest, esc));
  EXPECT_EQ(rmtest::ShownMessages(esc), std::vector<std::string>{"Information:  Processing interrupted by escape !"});
  EXPECT_EQ(blue.GetPixel(1, 0), 0x0000FF);  // the first row was done
  EXPECT_EQ(blue.GetPixel(1, 1), 0x0000F0);

  nearest.SetPalette({0x0000FF, 0x00FF00});
  rm::Bitmap untouched(2, 2, 0x0000F0);
  ScriptedUi ui2;
  EXPECT_FALSE(rm::ConvertToNearestColor(untouched, nearest, ui2));
  EXPECT_EQ(untouched, rm::Bitmap(2, 2, 0x0000F0));
  EXPECT_TRUE(ui2.messages.empty());
}

TEST(PaletteColours, CountInOrderOfFirstAppearanceAndGrayscale) {
  rm::Bitmap bmp(3, 2, 0x000005);
  bmp.SetPixel(2, 0, 0x00FF00);
  bmp.SetPixel(0, 1, 0xFFFFFF);
  bmp.SetPixel(1, 1, 0x00FF00);
  std::vector<Colour> list;
  EXPECT_EQ(rm::CountandListColors(bmp, &list), 3);
  EXPECT_EQ(list, (std::vector<Colour>{0x000005, 0x00FF00, 0xFFFFFF}));
  EXPECT_EQ(rm::CountandListColors(rm::Bitmap(), &list), 0);
  EXPECT_TRUE(list.empty());

  // 0.3 R + 0.59 G + 0.11 B: 150.45, 28.05, 18.1, 100, 255, 0, 176.8, 89.09
  const std::pair<Colour, int> cases[] = {{rm::MakeColour(0, 255, 0), 150},
                                          {rm::MakeColour(0, 0, 255), 28},
                                          {rm::MakeColour(10, 20, 30), 18},
                                          {rm::MakeColour(100, 100, 100), 100},
                                          {rm::kWhite, 255},
                                          {rm::kBlack, 0},
                                          {rm::MakeColour(255, 170, 0), 177},
                                          {rm::MakeColour(0, 151, 0), 89}};
  rm::Bitmap g(static_cast<int>(std::size(cases)), 1);
  for (int i = 0; i < g.Width(); ++i) g.SetPixel(i, 0, cases[i].first);
  rm::Get24bitGrayscale(g);
  for (int i = 0; i < g.Width(); ++i) EXPECT_EQ(g.GetPixel(i, 0), cases[i].second * 0x010101) << "case " << i;
}

class FakeCodecs : public rm::ImageCodecs {
 public:
  bool Load(const std::string&, rm::Bitmap& out, std::string&) override {
    out = picture;
    return true;
  }
  bool SavePng(const rm::Bitmap&, const std::string&, std::string&) override { return false; }
  rm::Bitmap picture;
};

// `n` colours besides the black that fills the rest of the picture.
rm::Bitmap PictureWithColours(int n) {
  rm::Bitmap bmp(64, (n + 63) / 64 + 1, 0x000000);
  for (int i = 0; i < n; ++i) bmp.SetPixel(i % 64, i / 64, (n - i) * 37);
  return bmp;
}

TEST_F(PaletteTest, ExportAndCustomPaletteFromAPicture) {
  std::string error;
  ASSERT_TRUE(rm::ExportPaletteToText({0xFF0000, 0x00000A, 0x123456}, dir + "/out.pal", error)) << error;
  EXPECT_EQ(rmtest::ReadFile(dir + "/out.pal"), "$00FF0000\n$0000000A\n$00123456\n");
  EXPECT_FALSE(rm::ExportPaletteToText({1}, dir + "/no/such/folder/x.pal", error));
  EXPECT_FALSE(error.empty());

  FakeCodecs codecs;
  codecs.picture = PictureWithColours(254);
  EXPECT_FALSE(rm::LoadColorPalette("pic.png", folders.ActiveProject, codecs, ui));  // 255 colours
  EXPECT_FALSE(fs::exists(dir + "/mine_255.pal"));

  codecs.picture = PictureWithColours(255);
  std::optional<std::string> written = rm::LoadColorPalette("pic.png", folders.ActiveProject, codecs, ui);
  ASSERT_TRUE(written);
  EXPECT_EQ(*written, dir + "/mine_256.pal");
  std::vector<Colour> firstSeen;
  rm::CountandListColors(codecs.picture, &firstSeen);
  EXPECT_EQ(rm::ReadPaletteFile(*written), firstSeen);

  // The project now loads it in the 256 colour mode.
  EXPECT_EQ(Load(56).Origin, rm::PaletteOrigin::Custom);
  std::sort(firstSeen.begin(), firstSeen.end());
  EXPECT_EQ(session.PaletteTable, firstSeen);

  EXPECT_FALSE(rm::LoadColorPalette("pic.png", dir + "/default.LCD", codecs, ui));
  EXPECT_FALSE(fs::exists(dir + "/default_256.pal"));
  EXPECT_EQ(
      rmtest::ShownMessages(ui),
      (std::vector<std::string>{"Number of Colors: Please load a JPG,PNG or BMP Graphic with 256,4096,65536 or "
                                "262144 colors to create new a color palette\r Loaded graphic colors count is 255",
                                "New Palette:  New 256 color palette created for this project mine.LCD",
                                "Load Custom Color Palette Error:  The current project name is default.LCD  \r "
                                "Custom Palette Load aborted"}));
}

TEST(PaletteDefaultFiles, GeneratedLatticesAndTables) {
  const std::tuple<const char*, std::size_t, std::vector<std::string>> cases[] = {
      // The last column: colours widened by hand, bits repeated from the top.
      {"default_8_Colors_palette.pal", 8, {"$00FFFFFF", "$000000FF"}},
      {"default_16_Colors_palette.pal", 16, {"$00C0C0C0", "$00000080"}},
      // r 101 -> 10110110, g 010 -> 01001001, b 01 -> 01010101
      {"default_256_Colors_palette.pal", 256, {"$005549B6", "$00FFFFFF", "$00000000"}},
      {"default_grayscale_256_Colors_palette.pal", 256, {"$00808080", "$00010101"}},
      // 1010 -> 10101010, 0011 -> 00110011
      {"default_4096_Colors_palette.pal", 4096, {"$003300AA", "$00FFFFFF"}},
      // r 10000 -> 10000100, g 100000 -> 10000010, b 00001 -> 00001000; r 11110 -> 11110111
      {"default_65536_Colors_palette.pal", 65536, {"$00088284", "$000000F7", "$00FFFFFF"}},
      // 6 bits: 100000 -> 10000010, 000001 -> 00000100
      {"default_262144_Colors_palette.pal", 262144, {"$00FF0482", "$00000004", "$00FFFFFF"}},
  };
  for (const auto& [name, count, present] : cases) {
    SCOPED_TRACE(name);
    const std::string all = rmtest::ReadFile(kDataPalettes + "/" + name);
    ASSERT_TRUE(!all.empty() && all.back() == '\n');
    std::istringstream text(all);
    std::set<std::string> lines;
    std::size_t read = 0;
    for (std::string line; std::getline(text, line); ++read) {
      ASSERT_TRUE(line.size() == 9 && line.rfind("$00", 0) == 0 &&
                  line.find_first_not_of("0123456789ABCDEF", 1) == std::string::npos)
          << line;
      lines.insert(line);
    }
    EXPECT_EQ(read, count);
    EXPECT_EQ(lines.size(), count) << "colours repeat";
    for (const std::string& p : present) EXPECT_TRUE(lines.count(p)) << p;
    EXPECT_FALSE(lines.count("$000000F8")) << "a 5 bit component was widened by a plain shift";
    // The installed 8 and 16 colour files are the built-in tables, in their order.
    if (count <= 16) {
      EXPECT_EQ(rm::ReadPaletteFile(kDataPalettes + "/" + name), count == 8 ? kBuiltIn8 : kBuiltIn16);
    }
  }
}

}  // namespace
