// The per-channel tables that answer for a lattice palette must give exactly what the quarter
// search gives, ties and the quarter bound included.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "engine/NearestColour.h"

namespace {

using rm::Colour;

// A component of `bits` bits widened to 8 by repeating its bits, as the default palette files do.
int Widen(int v, int bits) {
  int out = 0;
  for (int shift = 8 - bits; shift > -bits; shift -= bits) out |= shift >= 0 ? v << shift : v >> -shift;
  return out;
}

std::vector<Colour> Lattice(int redBits, int greenBits, int blueBits) {
  std::vector<Colour> colours;
  for (int b = 0; b < (1 << blueBits); ++b)
    for (int g = 0; g < (1 << greenBits); ++g)
      for (int r = 0; r < (1 << redBits); ++r)
        colours.push_back(Widen(b, blueBits) << 16 | Widen(g, greenBits) << 8 | Widen(r, redBits));
  return colours;
}

struct LatticeCase {
  const char* name;
  int red, green, blue;
};
constexpr LatticeCase kDefaultLattices[] = {
    {"256", 3, 3, 2}, {"4096", 4, 4, 4}, {"65536", 5, 6, 5}, {"262144", 6, 6, 6}};

TEST(LatticeNearest, TablesGiveTheSearchAnswerOnEveryChannelSweep) {
  for (const LatticeCase& l : kDefaultLattices) {
    SCOPED_TRACE(l.name);
    rm::NearestColour tables, search;
    tables.SetPalette(Lattice(l.red, l.green, l.blue));
    search.SetPalette(Lattice(l.red, l.green, l.blue), false);
    ASSERT_TRUE(tables.IsLattice());
    ASSERT_FALSE(search.IsLattice());
    // Every value of one channel against a few of the other two, the quarter edges among them,
    // then random colours.
    std::vector<Colour> asked;
    const int others[] = {0, 1, 50, 51, 52, 127, 128, 129, 200, 254, 255};
    for (int axis = 0; axis < 3; ++axis)
      for (int v = 0; v < 256; ++v)
        for (int o1 : others)
          for (int o2 : {0, 100, 255})
            asked.push_back(axis == 0   ? (o2 << 16 | o1 << 8 | v)
                            : axis == 1 ? (o2 << 16 | v << 8 | o1)
                                        : (v << 16 | o1 << 8 | o2));
    std::mt19937 rng(7);
    std::uniform_int_distribution<Colour> pick(1, 0xFFFFFF);
    for (int k = 0; k < 20000; ++k) asked.push_back(pick(rng));
    for (Colour c : asked) ASSERT_EQ(tables.NearestColor(c), search.Search(c)) << std::hex << c;
  }
}

// Hand-worked answers, independent of both implementations.
TEST(LatticeNearest, TiesTakeTheLowerLevelAndBlueStaysInItsQuarter) {
  struct Case {
    int lattice;  // index into kDefaultLattices
    Colour colour, expected;
    const char* why;
  };
  const Case cases[] = {
      {2, 0x000004, 0x000000, "red 4 lies halfway between the 5-bit levels 0 and 8"},
      {2, 0x000005, 0x000008, "red 5 is nearer 8"},
      {2, 0x000200, 0x000000, "green 2 lies halfway between the 6-bit levels 0 and 4"},
      {3, 0x000002, 0x000000, "red 2 lies halfway between the 6-bit levels 0 and 4"},
      {0, 0x000012, 0x000000, "red 18 lies halfway between the 3-bit levels 0 and 36"},
      {1, 0x000008, 0x000000, "red 8 is nearer 0 than 17"},
      {1, 0x000009, 0x000011, "red 9 is nearer 17 than 0"},
      // Blue 60 is nearest the level 68, but 0x3CFFFF sorts below 0x440000, the first entry of the
      // second quarter, so the search looks only among the blue levels 0 to 51.
      {1, 0x3CFFFF, 0x33FFFF, "blue kept in the first quarter"},
      {1, 0x440000, 0x440000, "the first entry of the second quarter"},
      {1, 0x43FFFF, 0x33FFFF, "just below the second quarter"},
      {2, 0x80FFFF, 0x7BFFFF, "65536: blue 128 is nearest 132 but sorts below 0x840000, so 123"},
  };
  rm::NearestColour nearest[4];
  for (int i = 0; i < 4; ++i) {
    const LatticeCase& l = kDefaultLattices[i];
    nearest[i].SetPalette(Lattice(l.red, l.green, l.blue));
  }
  for (const Case& c : cases)
    EXPECT_EQ(nearest[c.lattice].NearestColor(c.colour), c.expected)
        << kDefaultLattices[c.lattice].name << ": " << c.why;
}

TEST(LatticeNearest, OnlyWholeLatticesWithQuartersOnBlueLevelsUseTables) {
  std::vector<Colour> gapped = Lattice(4, 4, 4);
  gapped.erase(gapped.begin() + 100);
  std::vector<Colour> doubled = Lattice(4, 4, 4);
  doubled[5] = doubled[4];
  const std::vector<Colour> forward = Lattice(4, 4, 4);
  const std::vector<Colour> backward(forward.rbegin(), forward.rend());
  std::vector<Colour> extra = Lattice(4, 4, 4);
  extra.push_back(0x123456);
  const struct {
    const char* name;
    std::vector<Colour> palette;
    bool lattice;
  } cases[] = {
      {"4096", forward, true},
      {"4096 in reverse order", backward, true},
      {"one entry missing", gapped, false},
      {"one entry twice", doubled, false},
      {"one entry more", extra, false},
      {"8 colours: quarters of two entries split blue levels", Lattice(1, 1, 1), false},
      {"2 x 2 x 8: two blue levels a quarter", Lattice(1, 1, 3), true},
  };
  for (const auto& c : cases) {
    rm::NearestColour nearest;
    nearest.SetPalette(c.palette);
    EXPECT_EQ(nearest.IsLattice(), c.lattice) << c.name;
  }
}

}  // namespace
