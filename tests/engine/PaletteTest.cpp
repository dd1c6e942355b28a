#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "engine/NearestColour.h"
#include "engine/Palette.h"
#include "support/TestSupport.h"

namespace {

using rm::Colour;
using rmtest::ScriptedUi;
namespace fs = std::filesystem;

const std::string kDataPalettes = std::string(RM_BUILD_DATA_DIR) + "/palettes";

void WriteLines(const std::string& path, const std::vector<Colour>& colours) {
  std::ofstream out(path, std::ios::binary);
  for (Colour c : colours) out << rm::FormatPaletteColour(c) << "\n";
}

std::vector<Colour> Lattice4096() {
  std::vector<Colour> v;
  for (int b = 0; b < 16; ++b)
    for (int g = 0; g < 16; ++g)
      for (int r = 0; r < 16; ++r) v.push_back(rm::MakeColour(r * 17, g * 17, b * 17));
  return v;
}

class PaletteTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = rmtest::MakeTempDir();
    ASSERT_FALSE(dir.empty());
    fs::create_directories(dir + "/inits");
    fs::create_directories(dir + "/data");
    folders.ActiveProject = dir + "/mine.LCD";
    folders.DefaultFolders = {dir + "/inits", dir + "/data"};
  }
  void TearDown() override { fs::remove_all(dir); }

  void SetMode(int mode) { session.ModeNumber = mode; }

  std::string dir;
  rm::PaletteFolders folders;
  rm::ConversionSession session;
  ScriptedUi ui;
};

TEST(PaletteGrayRamps, ExactLevelsFromWhiteDownAndInverted) {
  struct Case {
    int mode;
    std::vector<int> levels;
  };
  std::vector<int> l16, l32;
  for (int i = 0; i < 16; ++i) l16.push_back(255 - 17 * i);
  for (int i = 0; i < 31; ++i) l32.push_back(255 - 8 * i);
  l32.push_back(0);
  ASSERT_EQ(l32[30], 15);
  const std::vector<Case> cases = {{24, {255, 170, 85, 0}}, {25, {255, 170, 85, 0}}, {26, l16}, {27, l16},
                                   {28, l16},               {29, l32},              {30, l32}, {31, l32}};
  for (const Case& c : cases) {
    for (bool invert : {false, true}) {
      rm::ConversionSession s;
      s.ModeNumber = c.mode;
      s.InvertGrayPalette = invert;
      rm::BuildModeColours(s);
      std::vector<Colour> expected;
      for (int level : c.levels) expected.push_back(level * 0x010101);
      if (invert) std::reverse(expected.begin(), expected.end());
      EXPECT_EQ(s.ModeColours, expected) << "mode " << c.mode << " invert " << invert;
    }
  }
}

TEST(PaletteParse, ColourTextForms) {
  struct Case {
    const char* text;
    std::optional<Colour> value;
  };
  const std::vector<Case> cases = {
      {"$00FF0000", 0xFF0000}, {"$ff", 0xFF},         {"0x00ff00", 0x00FF00}, {"0X10", 16},
      {"  255 \t", 255},       {"16777215", 0xFFFFFF}, {"$00000000", 0},      {"", std::nullopt},
      {"$", std::nullopt},     {"0x", std::nullopt},   {"12a", std::nullopt}, {"$01000000", std::nullopt},
      {"16777216", std::nullopt}, {"-1", std::nullopt}, {"1 2", std::nullopt}, {"clRed", std::nullopt},
      {"$$10", std::nullopt},
  };
  for (const Case& c : cases) EXPECT_EQ(rm::ParsePaletteColour(c.text), c.value) << "[" << c.text << "]";
  EXPECT_EQ(rm::FormatPaletteColour(0x0A0B0C), "$000A0B0C");
}

TEST_F(PaletteTest, RandomOrderFileGivesTheSameValuesAsSorted) {
  std::vector<Colour> sorted = Lattice4096();
  std::vector<Colour> shuffled = sorted;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
  ASSERT_NE(shuffled, sorted);
  SetMode(57);

  WriteLines(dir + "/data/default_4096_Colors_palette.pal", sorted);
  ASSERT_TRUE(rm::SelectionPalette(session, folders, ui).Loaded);
  const std::vector<Colour> fromSorted = session.PaletteTable;

  WriteLines(dir + "/data/default_4096_Colors_palette.pal", shuffled);
  session.PaletteTable.clear();
  ASSERT_TRUE(rm::SelectionPalette(session, folders, ui).Loaded);
  EXPECT_EQ(session.PaletteTable, fromSorted);
  EXPECT_EQ(session.PaletteTable, sorted);
  // Blue in the high bits of the value, red in the low ones.
  EXPECT_EQ(rm::PaletteIndexOf(session.PaletteTable, rm::MakeColour(0x11, 0x22, 0x33)), (3 << 8) | (2 << 4) | 1);
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(PaletteTest, MissingAndCorruptFilesAreToldAndLeaveTheTable) {
  struct Case {
    int mode;
    int colours;
    std::string missing;
    std::string corrupt;
  };
  const std::vector<Case> cases = {
      {56, 256, " 8 bit/pixel color Palette not found ! ", " 8 bit palette file seem to be corrupted ! "},
      {58, 4096, " 12 bit/pixel color Palette not found ! ", " 12 bit palette file seem to be corrupted ! "},
      {59, 65536, " 16 bit/pixel color Palette not found ! ", " 16 bit palette file seem to be corrupted ! "},
      {61, 262144, " 18 bit/pixel color Palette not found ! ", " 18 bit palette file seem to be corrupted ! "},
  };
  const std::vector<Colour> before = {1, 2, 3};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.colours);
    SetMode(c.mode);
    session.PaletteTable = before;
    ui.messages.clear();

    rm::PaletteLoadResult r = rm::SelectionPalette(session, folders, ui);
    EXPECT_FALSE(r.Loaded);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, c.missing);
    EXPECT_EQ(ui.messages[0].title, "Color Palette Error");
    EXPECT_EQ(session.PaletteTable, before);

    // One line short, then the right count with one line that is no colour.
    std::vector<Colour> colours(static_cast<std::size_t>(c.colours - 1));
    for (std::size_t i = 0; i < colours.size(); ++i) colours[i] = static_cast<Colour>(i);
    const std::string custom = rm::CustomPaletteName(folders.ActiveProject, c.colours);
    WriteLines(custom, colours);
    r = rm::SelectionPalette(session, folders, ui);
    EXPECT_FALSE(r.Loaded);
    EXPECT_EQ(r.Path, custom);
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, c.corrupt);
    EXPECT_EQ(ui.messages[1].title, "Color Palette Error");
    EXPECT_EQ(session.PaletteTable, before);

    std::ofstream(custom, std::ios::app) << "$00GG0000\n";
    EXPECT_FALSE(rm::SelectionPalette(session, folders, ui).Loaded);
    ASSERT_EQ(ui.messages.size(), 3u);
    EXPECT_EQ(ui.messages[2].text, c.corrupt);
    EXPECT_EQ(session.PaletteTable, before);
  }
}

TEST_F(PaletteTest, CustomFileBeforeDefaultAndFoldersInOrder) {
  SetMode(58);
  std::vector<Colour> lattice = Lattice4096();
  std::vector<Colour> second(4096), custom(4096);
  for (int i = 0; i < 4096; ++i) {
    second[static_cast<std::size_t>(i)] = i;
    custom[static_cast<std::size_t>(i)] = 0x100000 + i;
  }
  WriteLines(dir + "/inits/default_4096_Colors_palette.pal", lattice);
  WriteLines(dir + "/data/default_4096_Colors_palette.pal", second);
  WriteLines(dir + "/mine_4096.pal", custom);

  rm::PaletteLoadResult r = rm::SelectionPalette(session, folders, ui);
  EXPECT_TRUE(r.Loaded);
  EXPECT_EQ(r.Origin, rm::PaletteOrigin::Custom);
  EXPECT_EQ(r.LoadedLabel, "Custom Color Palette loaded");
  EXPECT_EQ(r.CurrentLabel, "Current Palette is Custom");
  EXPECT_EQ(session.PaletteTable, custom);
  ASSERT_FALSE(ui.statuses.empty());
  EXPECT_EQ(ui.statuses.back(), "Custom Color Palette loaded");

  fs::remove(dir + "/mine_4096.pal");
  r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.Origin, rm::PaletteOrigin::Default);
  EXPECT_EQ(r.Path, dir + "/inits/default_4096_Colors_palette.pal");
  EXPECT_EQ(r.LoadedLabel, "Default Color Palette Loaded");
  EXPECT_EQ(r.CurrentLabel, "Current Palette is Default");
  EXPECT_EQ(session.PaletteTable, lattice);

  fs::remove(dir + "/inits/default_4096_Colors_palette.pal");
  r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.Path, dir + "/data/default_4096_Colors_palette.pal");
  EXPECT_EQ(session.PaletteTable, second);
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(PaletteTest, Gray256TakesTheGrayscaleDefault) {
  std::vector<Colour> grays, colours;
  for (int i = 0; i < 256; ++i) {
    grays.push_back(i * 0x010101);
    colours.push_back(i * 0x000101);
  }
  WriteLines(dir + "/data/default_grayscale_256_Colors_palette.pal", grays);
  WriteLines(dir + "/data/default_256_Colors_palette.pal", colours);

  SetMode(32);
  rm::PaletteLoadResult r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.LoadedLabel, "Default Grayscale Color Palette Loaded");
  EXPECT_EQ(session.PaletteTable, grays);

  SetMode(56);
  r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.LoadedLabel, "Default Color Palette Loaded");
  EXPECT_EQ(session.PaletteTable, colours);
}

TEST_F(PaletteTest, RevertOptionReversesAfterTheSort) {
  std::vector<Colour> lattice = Lattice4096();
  std::vector<Colour> shuffled = lattice;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(3));
  WriteLines(dir + "/mine_4096.pal", shuffled);
  SetMode(57);
  session.RevertPaletteOnLoading = true;
  ASSERT_TRUE(rm::SelectionPalette(session, folders, ui).Loaded);
  std::vector<Colour> expected(lattice.rbegin(), lattice.rend());
  EXPECT_EQ(session.PaletteTable, expected);
  EXPECT_EQ(rm::PaletteIndexOf(session.PaletteTable, rm::kWhite), 0);
  EXPECT_EQ(rm::PaletteIndexOf(session.PaletteTable, rm::kBlack), 4095);
}

TEST_F(PaletteTest, EightAndSixteenColoursKeepFileOrderOrFallBackSilently) {
  const std::vector<Colour> builtIn8(std::begin(rm::kBuiltInColours8), std::end(rm::kBuiltInColours8));
  const std::vector<Colour> builtIn16(std::begin(rm::kBuiltInColours16), std::end(rm::kBuiltInColours16));
  ASSERT_EQ(builtIn8[1], 0xFFFF00);
  ASSERT_EQ(builtIn16[4], 0xC0C0C0);
  ASSERT_EQ(builtIn16[14], 0x000080);

  // No files: the built-in tables, in their order.
  SetMode(54);
  rm::PaletteLoadResult r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.Origin, rm::PaletteOrigin::BuiltIn);
  EXPECT_FALSE(r.Loaded);
  EXPECT_EQ(session.ModeColours, builtIn8);
  SetMode(55);
  rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(session.ModeColours, builtIn16);

  // A file in an order of its own is used as it stands, not sorted.
  std::vector<Colour> own = {0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0x00FFFF, 0xFF00FF, 0xFFFF00, 0xFFFFFF};
  const std::vector<Colour> fileOrder = {own[3], own[0], own[5], own[1], own[7], own[2], own[6], own[4]};
  WriteLines(dir + "/data/default_8_Colors_palette.pal", fileOrder);
  SetMode(54);
  r = rm::SelectionPalette(session, folders, ui);
  EXPECT_TRUE(r.Loaded);
  EXPECT_EQ(r.LoadedLabel, "Default Color Palette Loaded");
  EXPECT_EQ(session.ModeColours, fileOrder);
  EXPECT_EQ(rm::ModeColourIndexOf(session.ModeColours, own[5]), 2);

  // A short file falls back to the built-ins without a message.
  WriteLines(dir + "/data/default_8_Colors_palette.pal", {0xFFFFFF, 0});
  r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.Origin, rm::PaletteOrigin::BuiltIn);
  EXPECT_EQ(session.ModeColours, builtIn8);
  EXPECT_TRUE(ui.messages.empty());
}

TEST(PaletteIndex, LowestIndexOfEqualEntriesAsALinearSearchWould) {
  std::mt19937 rng(11);
  std::uniform_int_distribution<Colour> pick(0, 40);
  for (int round = 0; round < 200; ++round) {
    std::vector<Colour> table(1 + round % 37);
    for (Colour& c : table) c = pick(rng);
    std::sort(table.begin(), table.end());
    if (round % 2) std::reverse(table.begin(), table.end());
    for (Colour c = -1; c <= 42; ++c) {
      auto it = std::find(table.begin(), table.end(), c);
      int linear = it == table.end() ? -1 : static_cast<int>(it - table.begin());
      ASSERT_EQ(rm::PaletteIndexOf(table, c), linear) << "round " << round << " colour " << c;
    }
  }
  // The hash index answers the same for tables in any order, with colours spread over 24 bits.
  std::uniform_int_distribution<Colour> wide(0, 0xFFFFFF);
  for (int round = 0; round < 50; ++round) {
    std::vector<Colour> table(1 + round * 97);
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = (i % 3 == 0 && i > 0) ? table[i / 2] : wide(rng);
    rm::ColourIndex index;
    index.Build(table);
    for (std::size_t i = 0; i < table.size(); ++i) {
      const auto first = std::find(table.begin(), table.end(), table[i]) - table.begin();
      ASSERT_EQ(index.IndexOf(table[i]), first) << "round " << round;
    }
    for (int k = 0; k < 200; ++k) {
      const Colour c = wide(rng);
      auto it = std::find(table.begin(), table.end(), c);
      ASSERT_EQ(index.IndexOf(c), it == table.end() ? -1 : static_cast<int>(it - table.begin()));
    }
  }
  rm::ColourIndex empty;
  empty.Build({});
  EXPECT_EQ(empty.IndexOf(0), -1);
  const std::vector<Colour> twice = {5, 9, 9, 12};
  EXPECT_EQ(rm::PaletteIndexOf(twice, 9), 1);
  EXPECT_EQ(rm::ModeColourIndexOf({7, 3, 3, 7}, 7), 0);
  EXPECT_EQ(rm::ModeColourIndexOf({7, 3, 3, 7}, 3), 1);
  EXPECT_EQ(rm::PaletteIndexOf({}, 0), -1);
}

TEST(PaletteNearest, SearchesOnlyTheQuarterTheColourFallsIn) {
  rm::NearestColour nearest;
  // Sorted: 0x000001, 0x0000FF, 0x000100, 0x00FFFF. 0x0001FE lies numerically between entries 2
  // and 3, so only entry 2 (green 1, red 0) is looked at, although 0x0000FF is far closer.
  nearest.SetPalette({0x00FFFF, 0x000100, 0x000001, 0x0000FF});
  const Colour c = rm::MakeColour(254, 1, 0);
  EXPECT_EQ(nearest.NearestColor(c), 0x000100);
  auto dist = [](Colour a, Colour b) {
    int dr = rm::RedOf(a) - rm::RedOf(b), dg = rm::GreenOf(a) - rm::GreenOf(b), db = rm::BlueOf(a) - rm::BlueOf(b);
    return dr * dr + dg * dg + db * db;
  };
  EXPECT_LT(dist(c, 0x0000FF), dist(c, 0x000100));

  // Below entry n/4: the first quarter only.
  EXPECT_EQ(nearest.NearestColor(0x000000 + 0), 0);  // black is always itself
  nearest.SetPalette({0x000010, 0x000020, 0x000030, 0x000040, 0x000050, 0x000060, 0x000070, 0x000080});
  // 0x00000F < entry 2: quarter [0, 1]; 0x000018 ties between 0x10 and 0x20: the first one wins.
  EXPECT_EQ(nearest.NearestColor(0x000018), 0x000010);
  // Equal to entry n/2 = 4: its own quarter starts there.
  EXPECT_EQ(nearest.NearestColor(0x000050), 0x000050);
  // Far above the last entry: the last quarter.
  EXPECT_EQ(nearest.NearestColor(0xFFFFFF), 0x000080);
}

TEST(PaletteNearest, FixedAnswersAndPassThroughModes) {
  rm::NearestColour nearest;
  nearest.SetPalette({0x0000FF, 0x00FF00, 0xFF0000});
  EXPECT_EQ(nearest.NearestColor(0), 0);
  EXPECT_EQ(nearest.NearestColor(0x1000000), 0x1000000);
  EXPECT_EQ(nearest.NearestColor(0x0000FE), 0x0000FF);

  for (int mode : {1, 24, 26, 29, 31, 62, 63}) {
    rm::ConversionSession s;
    s.ModeNumber = mode;
    rm::BuildModeColours(s);
    s.PaletteTable = {0x0000FF, 0x00FF00, 0xFF0000};
    nearest.Configure(s);
    EXPECT_EQ(nearest.NearestColor(0x123456), 0x123456) << "mode " << mode;
  }
  rm::ConversionSession s;
  s.ModeNumber = 55;
  rm::BuildModeColours(s);
  nearest.Configure(s);
  // Sorted, the 16 colours have 0x008080, 0x800080 and 0xFF0000 at 4, 8 and 12: 0x818181 is
  // searched among 8..11 and finds its gray; 0x7F7F7F, just below 0x800080, only among 4..7.
  EXPECT_EQ(nearest.NearestColor(0x818181), 0x808080);
  EXPECT_EQ(nearest.NearestColor(0x7F7F7F), 0x008080);
}

TEST(PaletteNearest, EveryEntryOfALatticeFindsItself) {
  rm::NearestColour nearest;
  std::vector<Colour> lattice = Lattice4096();
  std::shuffle(lattice.begin(), lattice.end(), std::mt19937(5));
  nearest.SetPalette(lattice);
  for (Colour c : lattice) ASSERT_EQ(nearest.NearestColor(c), c) << std::hex << c;
}

TEST(PaletteNearest, CacheGivesTheSameAnswersAndIsClearedWithThePalette) {
  rm::NearestColour nearest;
  nearest.SetPalette(Lattice4096());
  std::mt19937 rng(17);
  std::uniform_int_distribution<Colour> pick(1, 0xFFFFFF);
  std::vector<Colour> asked(10000);
  for (Colour& c : asked) c = pick(rng);
  std::vector<Colour> first;
  for (Colour c : asked) first.push_back(nearest.NearestColor(c));
  EXPECT_GT(nearest.CachedColours(), 9000u);
  for (std::size_t i = 0; i < asked.size(); ++i) {
    ASSERT_EQ(nearest.NearestColor(asked[i]), first[i]);
    ASSERT_EQ(nearest.Search(asked[i]), first[i]);
  }
  // The answers of the old palette must not survive a change.
  nearest.SetPalette({0x0000FF, 0x00FF00, 0xFF0000});
  EXPECT_EQ(nearest.CachedColours(), 0u);
  for (Colour c : asked) {
    Colour n = nearest.NearestColor(c);
    ASSERT_TRUE(n == 0x0000FF || n == 0x00FF00 || n == 0xFF0000);
  }
}

TEST(PaletteConvert, ReducesTheBitmapWithStatusAndLog) {
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
  EXPECT_EQ(ui.lastProgress, 2);
  EXPECT_EQ(ui.progressMax, 2);

  ScriptedUi fontUi;
  rm::Bitmap glyph(2, 2, 0x0F0F0F);
  ASSERT_TRUE(rm::ConvertToNearestColor(glyph, nearest, fontUi, "Font"));
  EXPECT_TRUE(fontUi.statuses.empty());
  EXPECT_EQ(glyph.GetPixel(1, 1), 0x111111);
}

TEST(PaletteConvert, EscapeStopsAndTooSmallPaletteDoesNothing) {
  rm::NearestColour nearest;
  nearest.SetPalette({0x0000FF, 0x00FF00, 0xFF0000});
  rm::Bitmap bmp(2, 3, 0x0000F0);
  ScriptedUi ui;
  ui.escapeAfterPolls = 1;
  EXPECT_FALSE(rm::ConvertToNearestColor(bmp, nearest, ui));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text, " Processing interrupted by escape !");
  EXPECT_EQ(ui.messages[0].title, "Information");
  EXPECT_EQ(bmp.GetPixel(1, 0), 0x0000FF);  // the first row was done
  EXPECT_EQ(bmp.GetPixel(1, 1), 0x0000F0);

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

  struct Case {
    int r, g, b, gray;
  };
  // 0.3 R + 0.59 G + 0.11 B: 150.45, 28.05, 18.1, 100, 255, 0, 176.8, 89.09
  const std::vector<Case> cases = {{0, 255, 0, 150},     {0, 0, 255, 28}, {10, 20, 30, 18},   {100, 100, 100, 100},
                                   {255, 255, 255, 255}, {0, 0, 0, 0},    {255, 170, 0, 177}, {0, 151, 0, 89}};
  rm::Bitmap g(static_cast<int>(cases.size()), 1);
  for (std::size_t i = 0; i < cases.size(); ++i)
    g.SetPixel(static_cast<int>(i), 0, rm::MakeColour(cases[i].r, cases[i].g, cases[i].b));
  rm::Get24bitGrayscale(g);
  for (std::size_t i = 0; i < cases.size(); ++i)
    EXPECT_EQ(g.GetPixel(static_cast<int>(i), 0), cases[i].gray * 0x010101) << "case " << i;
}

TEST_F(PaletteTest, ExportWritesAReadablePalette) {
  const std::string path = dir + "/out.pal";
  std::string error;
  ASSERT_TRUE(rm::ExportPaletteToText({0xFF0000, 0x00000A, 0x123456}, path, error)) << error;
  EXPECT_EQ(rmtest::ReadFile(path), "$00FF0000\n$0000000A\n$00123456\n");
  EXPECT_FALSE(rm::ExportPaletteToText({1}, dir + "/no/such/folder/x.pal", error));
  EXPECT_FALSE(error.empty());
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

rm::Bitmap PictureWithColours(int n) {
  rm::Bitmap bmp(64, (n + 63) / 64 + 1, 0x000000);
  for (int i = 0; i < n; ++i) bmp.SetPixel(i % 64, i / 64, (n - i) * 37);
  return bmp;
}

TEST_F(PaletteTest, CustomPaletteFromAPicture) {
  FakeCodecs codecs;
  // 255 colours counting black, which fills the rest of the picture.
  codecs.picture = PictureWithColours(254);
  ASSERT_EQ(rm::CountandListColors(codecs.picture, nullptr), 255);
  EXPECT_FALSE(rm::LoadColorPalette("pic.png", folders.ActiveProject, codecs, ui));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text,
            "Please load a JPG,PNG or BMP Graphic with 256,4096,65536 or 262144 colors to create new a color palette\r"
            " Loaded graphic colors count is 255");
  EXPECT_EQ(ui.messages[0].title, "Number of Colors");
  EXPECT_FALSE(fs::exists(dir + "/mine_255.pal"));

  codecs.picture = PictureWithColours(255);
  std::optional<std::string> written = rm::LoadColorPalette("pic.png", folders.ActiveProject, codecs, ui);
  ASSERT_TRUE(written);
  EXPECT_EQ(*written, dir + "/mine_256.pal");
  ASSERT_EQ(ui.messages.size(), 2u);
  EXPECT_EQ(ui.messages[1].text, " New 256 color palette created for this project mine.LCD");
  EXPECT_EQ(ui.messages[1].title, "New Palette");
  std::vector<Colour> firstSeen;
  rm::CountandListColors(codecs.picture, &firstSeen);
  EXPECT_EQ(rm::ReadPaletteFile(*written), firstSeen);

  // The project now loads it in the 256 colour mode.
  SetMode(56);
  rm::PaletteLoadResult r = rm::SelectionPalette(session, folders, ui);
  EXPECT_EQ(r.Origin, rm::PaletteOrigin::Custom);
  std::sort(firstSeen.begin(), firstSeen.end());
  EXPECT_EQ(session.PaletteTable, firstSeen);

  EXPECT_FALSE(rm::LoadColorPalette("pic.png", dir + "/default.LCD", codecs, ui));
  EXPECT_EQ(ui.messages.back().text, " The current project name is default.LCD  \r Custom Palette Load aborted");
  EXPECT_EQ(ui.messages.back().title, "Load Custom Color Palette Error");
  EXPECT_FALSE(fs::exists(dir + "/default_256.pal"));
}

TEST(PaletteDefaultFiles, GeneratedLatticesAndTables) {
  struct Case {
    const char* name;
    std::size_t count;
    std::vector<std::string> present;  // widened by hand: bits repeated from the top
  };
  const std::vector<Case> cases = {
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
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = kDataPalettes + "/" + c.name;
    std::string text = rmtest::ReadFile(path);
    ASSERT_FALSE(text.empty());
    std::set<std::string> lines;
    std::size_t count = 0;
    for (std::size_t start = 0; start < text.size();) {
      std::size_t end = text.find('\n', start);
      ASSERT_NE(end, std::string::npos);
      std::string line = text.substr(start, end - start);
      ASSERT_EQ(line.size(), 9u) << line;
      ASSERT_EQ(line.rfind("$00", 0), 0u) << line;
      ASSERT_EQ(line.find_first_not_of("0123456789ABCDEF", 1), std::string::npos) << line;
      lines.insert(line);
      ++count;
      start = end + 1;
    }
    EXPECT_EQ(count, c.count);
    EXPECT_EQ(lines.size(), c.count) << "colours repeat";
    for (const std::string& p : c.present) EXPECT_TRUE(lines.count(p)) << p;
    EXPECT_FALSE(lines.count("$000000F8")) << "a 5 bit component was widened by a plain shift";
  }
}

TEST(PaletteDefaultFiles, DefaultInstallBehavesAsTheBuiltIns) {
  rm::PaletteFolders folders;
  folders.DefaultFolders = {kDataPalettes};
  ScriptedUi ui;
  for (int mode : {54, 55}) {
    rm::ConversionSession s;
    s.ModeNumber = mode;
    rm::PaletteLoadResult r = rm::SelectionPalette(s, folders, ui);
    EXPECT_TRUE(r.Loaded);
    if (mode == 54)
      EXPECT_EQ(s.ModeColours, std::vector<Colour>(std::begin(rm::kBuiltInColours8), std::end(rm::kBuiltInColours8)));
    else
      EXPECT_EQ(s.ModeColours, std::vector<Colour>(std::begin(rm::kBuiltInColours16), std::end(rm::kBuiltInColours16)));
  }
  rm::ConversionSession s;
  s.ModeNumber = 59;
  ASSERT_TRUE(rm::SelectionPalette(s, folders, ui).Loaded);
  ASSERT_EQ(s.PaletteTable.size(), 65536u);
  // Sorted as numbers, the value is b5 g6 r5 from the top bit down.
  EXPECT_EQ(rm::PaletteIndexOf(s.PaletteTable, 0x088284), (1 << 11) | (32 << 5) | 16);
  EXPECT_TRUE(ui.messages.empty());
}

}  // namespace
