#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/ShellTestSupport.h"

// Round trips through the whole Convert command: a pseudo-random picture made of a mode's colours
// is converted, and the bytes are read back by a decoder written here from the packing rules
// (walk order, bit layout per mode, bit order, outer field swap), without any of the engine's
// packers. Every pixel must come back as its colour's value.

namespace {

using rm::Bitmap;
using rm::Colour;
using rm::ConversionSession;
using C = rm::OriginCorner;
using D = rm::PagingDirection;

const std::vector<D> kEveryDirection = {D::Down,    D::DownAll,    D::Up,     D::UpAll,
                                        D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll};
const std::vector<D> kWholeLines = {D::DownAll, D::UpAll, D::ToRightAll, D::ToLeftAll};
const char* const kDirectionName[] = {"Down",     "Down All",     "Up",      "Up All",
                                      "To Right", "To Right All", "To Left", "To Left All"};
const char* const kCornerName[] = {"TL", "TR", "BR", "BL"};
// By direction: the corner a direction command picks, and the one the origin button moves it to
// (left and right for vertical directions, top and bottom for horizontal ones).
const C kNormalCorner[] = {C::TL, C::TL, C::BL, C::BL, C::TL, C::TL, C::TR, C::TR};
const C kOtherCorner[] = {C::TR, C::TR, C::BR, C::BR, C::BL, C::BL, C::BR, C::BR};

int Index(D d) { return static_cast<int>(d); }
bool Vertical(D d) { return !rm::IsHorizontal(d); }
bool WholeLine(D d) { return std::count(kWholeLines.begin(), kWholeLines.end(), d) > 0; }
bool Backward(D d) { return d == D::Up || d == D::UpAll || d == D::ToLeft || d == D::ToLeftAll; }

// ---- the walk -------------------------------------------------------------------------------

struct Pos {
  int x, y;
};

// The pixels in the order the packers read them. A byte's pixels lie along the byte axis (down or
// up a column, right or left along a row). Whole-line directions read each line to its end before
// the next; sliced ones read a band `band` pixels deep across every line, then the next band. The
// normal corner takes the lines from the left (vertical) or the top (horizontal), the other corner
// from the opposite side. `pairs`: gray 16 with two horizontal pixels walked vertically reads each
// row of a column pair as one byte. Bands may reach past the picture's end (slices of 8).
std::vector<Pos> WalkOrder(D d, bool normal, int w, int h, int band, bool pairs) {
  const bool vertical = Vertical(d);
  const int along = vertical ? h : w, across = vertical ? w : h, lineStep = pairs ? 2 : 1;
  std::vector<Pos> out;
  const auto read = [&](int c, int from, int to) {
    for (int a = from; a < to; ++a)
      for (int k = 0; k < lineStep; ++k) {
        const int pa = Backward(d) ? along - 1 - a : a, pc = normal ? c + k : across - 1 - c - k;
        out.push_back(vertical ? Pos{pc, pa} : Pos{pa, pc});
      }
  };
  if (WholeLine(d)) {
    for (int c = 0; c + lineStep <= across; c += lineStep) read(c, 0, along);
  } else {
    for (int from = 0; from < along; from += band)
      for (int c = 0; c < across; ++c) read(c, from, from + band);
  }
  return out;
}

// ---- the decoder ----------------------------------------------------------------------------

std::uint32_t Reverse8(std::uint32_t b) {
  std::uint32_t r = 0;
  for (int i = 0; i < 8; ++i) r |= ((b >> i) & 1u) << (7 - i);
  return r;
}

// Wide values have their outer fields exchanged: the top f bits with the bottom f bits, bit for
// bit (11..8 with 3..0 at 12 bits, 5 bit fields at 16, 6 at 18, whole bytes at 24).
std::uint32_t SwapOuter(std::uint32_t v, int width) {
  const int f = width == 12 ? 4 : width == 16 ? 5 : width == 18 ? 6 : width == 24 ? 8 : 0;
  std::uint32_t r = v;
  for (int i = 0; i < f; ++i) {
    const int hi = width - 1 - i, lo = f - 1 - i;
    r &= ~((1u << hi) | (1u << lo));
    r |= (((v >> hi) & 1u) << lo) | (((v >> lo) & 1u) << hi);
  }
  return r;
}

struct Packing {
  // The bits of one group of bytes, most significant first: 'a' + i is a bit of the group's i-th
  // pixel (its bits most significant first), '0' a bit that must be clear.
  std::string layout;
  int width = 0;                 // 12, 16, 18, 24: a wide value whose outer fields are swapped
  bool reverseEachByte = false;  // MSB last: every byte mirrored, the bytes of wide values too
  bool swapBytes = false;        // Swap First and Last: a pixel's bytes (zero bytes aside) come reversed
  bool swapFieldsAtCut = false;  // 65536 Swap Red and Blue: the outer fields swapped once more
  bool invert = false;           // inverted monochrome
};

struct Decoded {
  std::vector<std::uint32_t> value;  // per pixel, in reading order
  std::vector<std::uint32_t> known;  // the bits of the value the data holds
  std::string error;
};

Decoded Unpack(const std::vector<std::uint8_t>& data, std::size_t pixels, const Packing& p) {
  Decoded d;
  const std::size_t groupBytes = p.layout.size() / 8;
  const int groupPixels = *std::max_element(p.layout.begin(), p.layout.end()) - 'a' + 1;
  std::size_t at = 0;
  for (std::size_t first = 0; first < pixels; first += groupPixels) {
    const int here = static_cast<int>(std::min<std::size_t>(groupPixels, pixels - first));
    // A group that the end of the walk cuts short still sends every byte that holds a bit of a
    // pixel read, the bits of the missing pixels clear: no pixel is lost.
    std::size_t bytes = here == groupPixels ? groupBytes : 0;
    for (std::size_t b = 0; b < groupBytes && here < groupPixels; ++b)
      if (std::any_of(p.layout.begin() + 8 * b, p.layout.begin() + 8 * b + 8,
                      [&](char c) { return c != '0' && c - 'a' < here; }))
        bytes = b + 1;
    if (at + bytes > data.size()) return {{}, {}, "the data ends at pixel " + std::to_string(first)};
    std::vector<std::uint32_t> g(data.begin() + at, data.begin() + at + bytes);
    at += bytes;
    for (auto& b : g) {
      if (p.invert) b ^= 0xFF;
      if (p.reverseEachByte) b = Reverse8(b);
    }
    if (p.swapBytes) {
      std::vector<std::size_t> slots;  // the bytes that are not always zero
      for (std::size_t i = 0; i < g.size(); ++i)
        if (p.layout.compare(8 * i, 8, "00000000") != 0) slots.push_back(i);
      for (std::size_t i = 0; i < slots.size() / 2; ++i) std::swap(g[slots[i]], g[slots[slots.size() - 1 - i]]);
    }
    std::vector<std::uint32_t> v(groupPixels, 0), k(groupPixels, 0);
    for (std::size_t j = 0; j < p.layout.size(); ++j) {
      const bool present = j / 8 < g.size();
      const std::uint32_t bit = present ? (g[j / 8] >> (7 - j % 8)) & 1 : 0;
      const int i = p.layout[j] - 'a';
      if (p.layout[j] == '0') {
        if (bit) return {{}, {}, "byte " + std::to_string(at - g.size() + j / 8) + " has a bit set that must be clear"};
        continue;
      }
      v[i] = (v[i] << 1) | bit;
      k[i] = (k[i] << 1) | (present ? 1 : 0);
    }
    for (int i = 0; i < here; ++i) {
      for (auto* x : {&v[i], &k[i]})
        for (int swaps = p.swapFieldsAtCut ? 2 : p.width ? 1 : 0; swaps > 0; --swaps) *x = SwapOuter(*x, p.width);
      d.value.push_back(v[i]);
      d.known.push_back(k[i]);
    }
  }
  if (at != data.size()) d.error = std::to_string(data.size() - at) + " bytes more than the walk fills";
  return d;
}

// The two plane tables back to the gray 4 byte pairs they were split from: V = first * 256 +
// second holds plane A in its odd bits and plane B in its even bits, from the top bits of the
// planes in big endian and from their bottom bits otherwise.
std::vector<std::uint8_t> MergePlanes(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b,
                                      bool bigEndian) {
  std::vector<std::uint8_t> out;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    unsigned v = 0;
    for (int k = 0; k < 8; ++k) {
      const int bit = bigEndian ? k : 7 - k;
      v |= (((a[i] >> bit) & 1u) << (2 * k + 1)) | (((b[i] >> bit) & 1u) << (2 * k));
    }
    out.push_back(static_cast<std::uint8_t>(v >> 8));
    out.push_back(static_cast<std::uint8_t>(v & 0xFF));
  }
  return out;
}

// The bytes of each data table of an 8 bit text output; a table opens with its "{" line.
std::vector<std::vector<std::uint8_t>> TextTables(const std::vector<std::string>& lines) {
  static const std::regex hex("0x([0-9A-F]{2})");
  std::vector<std::vector<std::uint8_t>> tables;
  for (const auto& line : lines) {
    if (line == "{") tables.emplace_back();
    if (tables.empty()) continue;
    for (std::sregex_iterator m(line.begin(), line.end(), hex), end; m != end; ++m)
      tables.back().push_back(static_cast<std::uint8_t>(std::stoi((*m)[1].str(), nullptr, 16)));
  }
  return tables;
}

// ---- the families of modes --------------------------------------------------------------------

struct Variant {
  const char* label;
  void (*apply)(ConversionSession&);
  std::string layout;
  bool swapBytes = false;
  bool swapFieldsAtCut = false;
};

struct Family {
  const char* name;
  int mode;
  std::vector<std::pair<int, int>> sizes;
  std::vector<D> directions;
  int along;  // the picture's size along the byte axis must be a multiple of this
  int band;   // the depth of a sliced band
  int width;  // 0, or the bit width of a wide value
  bool pairs;
  // The direction commands refuse these modes at some or all sizes (8 colours: no whole number is a
  // multiple of 2.66666666; slices: odd heights), yet a stored project still holds a direction.
  bool storedDirection;
  std::vector<Variant> variants;
};

void NoOption(ConversionSession&) {}
void SwapNibble(ConversionSession& s) { s.SwapNibble = true; }
void SwapFirstLast(ConversionSession& s) { s.SwapFirstLast = true; }
void Rgba(ConversionSession& s) { s.Rgba = true; }
void SwapAndRgba(ConversionSession& s) { s.SwapFirstLast = s.Rgba = true; }
void SwapRedBlue(ConversionSession& s) { s.SwapRedGreen = true; }

std::vector<Variant> Plain(const std::string& layout) { return {{"", NoOption, layout}}; }
std::vector<Variant> Swappable(const std::string& layout) {
  return {{"", NoOption, layout}, {"swap first and last", SwapFirstLast, layout, true}};
}

const std::vector<Family>& Families() {
  const std::vector<std::pair<int, int>> any = {{13, 11}, {16, 8}};
  const std::vector<Variant> nibbles = {{"", NoOption, "aaaabbbb"}, {"swap nibble", SwapNibble, "bbbbaaaa"}};
  const std::string rgb(24, 'a'), zero8(8, '0'), pair4096 = std::string(12, 'a') + std::string(12, 'b');
  static const std::vector<Family> families = {
      {"monochrome", 1, {{16, 8}, {13, 16}, {24, 13}}, kEveryDirection, 8, 8, 0, false, false, Plain("abcdefgh")},
      {"monochrome inverted",
       2,
       {{16, 8}, {13, 16}, {24, 13}},
       kEveryDirection,
       8,
       8,
       0,
       false,
       false,
       Plain("abcdefgh")},
      {"gray 4", 24, {{16, 8}, {13, 12}, {12, 13}}, kEveryDirection, 4, 4, 0, false, false, Plain("aabbccdd")},
      // Down reads eight pixels for both planes at once; the other walks pair up gray 4 bytes.
      {"gray 4 two pages",
       25,
       {{16, 8}, {13, 8}, {8, 13}},
       {D::Down, D::DownAll, D::UpAll, D::ToRightAll, D::ToLeftAll},
       4,
       8,
       0,
       false,
       false,
       Plain("aabbccdd")},
      {"gray 16", 26, {{16, 8}, {13, 10}, {10, 13}}, kEveryDirection, 2, 2, 0, false, false, nibbles},
      {"gray 16 horizontal pixels",
       27,
       {{16, 8}, {10, 13}, {14, 6}},
       {D::DownAll, D::UpAll, D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll},
       2,
       2,
       0,
       true,
       false,
       nibbles},
      {"gray 16 slices of 8", 28, {{13, 11}, {16, 8}, {8, 16}}, {D::Down}, 1, 8, 0, false, true, nibbles},
      // 120, 128 and 130 pixels leave 0, 2 and 1 pixels of the last triple.
      {"gray 32 packed",
       29,
       {{12, 10}, {16, 8}, {13, 10}, {10, 13}},
       kWholeLines,
       2,
       1,
       0,
       false,
       false,
       Plain("aaaaa0bbbbbccccc")},
      {"gray 32 right aligned", 30, any, kWholeLines, 1, 1, 0, false, false, Plain("000aaaaa")},
      {"gray 32 left aligned", 31, any, kWholeLines, 1, 1, 0, false, false, Plain("aaaaa000")},
      {"gray 256", 32, any, kEveryDirection, 1, 1, 0, false, false, Plain("aaaaaaaa")},
      {"8 colours",
       54,
       {{16, 8}, {13, 16}, {16, 11}},
       kWholeLines,
       8,
       8,
       0,
       false,
       true,
       Plain("aaabbbcccdddeeefffggghhh")},
      {"16 colours", 55, {{16, 8}, {13, 10}, {10, 13}}, kEveryDirection, 2, 2, 0, false, false, nibbles},
      {"256 colours", 56, any, kEveryDirection, 1, 1, 0, false, false, Plain("aaaaaaaa")},
      // Swap First and Last has no effect on packed pairs; 143 pixels leave the last one half sent.
      {"4096 packed",
       57,
       any,
       kEveryDirection,
       1,
       1,
       12,
       false,
       false,
       {{"", NoOption, pair4096}, {"swap first and last", SwapFirstLast, pair4096}}},
      {"4096 unpacked", 58, any, kEveryDirection, 1, 1, 12, false, false, Swappable("0000" + std::string(12, 'a'))},
      {"65536",
       59,
       any,
       kEveryDirection,
       1,
       1,
       16,
       false,
       false,
       {{"", NoOption, std::string(16, 'a')}, {"swap red and blue", SwapRedBlue, std::string(16, 'a'), false, true}}},
      {"262k packed", 60, any, kEveryDirection, 1, 1, 18, false, false, Swappable("000000" + std::string(18, 'a'))},
      {"262k unpacked", 61, any, kEveryDirection, 1, 1, 18, false, false, Swappable("00aaaaaa00aaaaaa00aaaaaa")},
      {"16M", 62, any, kEveryDirection, 1, 1, 24, false, false, Swappable(rgb)},
      // The zero byte leads, or trails with RGBA; with RGBA and the swap there is none.
      {"16M with alpha",
       63,
       any,
       kEveryDirection,
       1,
       1,
       24,
       false,
       false,
       {{"", NoOption, zero8 + rgb},
        {"swap first and last", SwapFirstLast, zero8 + rgb, true},
        {"RGBA", Rgba, rgb + zero8},
        {"RGBA, swap first and last", SwapAndRgba, rgb, true}}},
  };
  return families;
}

// The colours a picture of the mode is made of, each with the value it must come back as: its
// first place in the mode's table, found by a plain search; in monochrome black is 1, in 16M the
// colour is its own value.
std::map<Colour, std::uint32_t> PictureColours(const ConversionSession& s, int mode) {
  if (mode <= 2) return {{rm::kWhite, 0}, {rm::kBlack, 1}};
  std::uint32_t seed = 12345u + static_cast<std::uint32_t>(mode);
  const auto next = [&] { return (seed = seed * 1664525u + 1013904223u) >> 8; };
  std::map<Colour, std::uint32_t> out;
  if (mode >= 62) {
    for (Colour c : {rm::kWhite, rm::kBlack}) out[c] = static_cast<std::uint32_t>(c);
    for (int i = 0; i < 64; ++i) {
      const Colour c = static_cast<Colour>(next() & 0xFFFFFF);
      out[c] = static_cast<std::uint32_t>(c);
    }
    return out;
  }
  const auto& table = s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours;
  if (table.size() <= 256) {
    for (Colour c : table) out[c] = 0;
  } else {
    out[table.front()] = out[table.back()] = 0;
    for (int i = 0; i < 98; ++i) out[table[next() % table.size()]] = 0;
  }
  // Walking the table backwards leaves each colour at the first place it holds.
  for (std::size_t i = table.size(); i-- > 0;)
    if (const auto it = out.find(table[i]); it != out.end()) it->second = static_cast<std::uint32_t>(i);
  return out;
}

// Test names and failure output show the family by its name.
void PrintTo(const Family& f, std::ostream* os) { *os << f.name; }

// Inverted monochrome is read from the 8 bit text, the form its inversion is made for; the two
// page mode exists only as 8 bit text. The others are read from the Binary output.
bool ReadFromText(const Family& f) { return f.mode == 2 || f.mode == 25; }

// Sets one Paging Scheme, converts, and reads every pixel back. Empty when all came back, else
// what went wrong, up to the first pixel that did not.
std::string ConvertAndReadBack(rmtest::TestProgram& p, const Family& f, const Variant& variant, const Bitmap& picture,
                               const std::map<Colour, std::uint32_t>& values, D d, bool other, bool big) {
  ConversionSession& s = p.app.session;
  if (f.storedDirection) {
    s.Direction = d;
    s.Horizontal = rm::IsHorizontal(d);
    s.Origin = kNormalCorner[Index(d)];
  } else if (!p.app.mainForm.SetDirection(d)) {
    return "the direction command refused";
  }
  if (other) p.app.mainForm.ToggleOriginCorner();
  const C corner = (other ? kOtherCorner : kNormalCorner)[Index(d)];
  if (s.Origin != corner) return std::string("the origin is ") + kCornerName[static_cast<int>(s.Origin)];
  big ? p.app.mainForm.MsbFirst() : p.app.mainForm.MsbLast();

  if (!p.Convert()) return "the conversion failed" + (p.ui.messages.empty() ? "" : ": " + p.ui.messages.back().text);
  if (s.Direction != d) return std::string("walked ") + kDirectionName[Index(s.Direction)] + " instead";

  std::vector<std::uint8_t> data = p.app.hex.Bytes();
  if (ReadFromText(f)) {
    const auto tables = TextTables(p.app.mainText.Lines());
    const std::size_t expectedTables = f.mode == 25 ? 2 : 1;
    if (tables.size() != expectedTables || tables[0].size() != tables.back().size())
      return std::to_string(tables.size()) + " data tables where " + std::to_string(expectedTables) +
             " of one size were due";
    // Plane B is the first table, plane A the second.
    data = f.mode == 25 ? MergePlanes(tables[1], tables[0], big) : tables[0];
  }

  const bool twoPagesDown = f.mode == 25 && d == D::Down;
  Packing packing;
  // Down in two pages assembles eight pixels into two bytes at once, without mirroring them.
  packing.layout = twoPagesDown ? "aabbccddeeffgghh" : variant.layout;
  packing.width = f.width;
  packing.reverseEachByte = !big && !twoPagesDown;
  packing.swapBytes = variant.swapBytes;
  packing.swapFieldsAtCut = variant.swapFieldsAtCut;
  packing.invert = f.mode == 2;

  const std::vector<Pos> walk = WalkOrder(d, !other, picture.Width(), picture.Height(), f.band, f.pairs && Vertical(d));
  const Decoded got = Unpack(data, walk.size(), packing);
  std::ostringstream out;
  out << data.size() << " bytes for " << walk.size() << " pixels: " << std::hex;
  if (!got.error.empty()) return out.str() + got.error;
  for (std::size_t i = 0; i < walk.size(); ++i) {
    const Colour c = picture.GetPixel(walk[i].x, walk[i].y);
    std::uint32_t expected = c == rm::kOutside ? 0 : values.at(c);  // below the picture reads as 0
    if (((got.value[i] ^ expected) & got.known[i]) == 0) continue;
    out << "pixel " << std::dec << i << " at (" << walk[i].x << ", " << walk[i].y << "), colour " << std::hex << c
        << ", should read " << expected << ", the data gives " << got.value[i] << " in the bits " << got.known[i];
    return out.str();
  }
  return "";
}

class RoundTrip : public ::testing::TestWithParam<Family> {};

TEST_P(RoundTrip, EveryPixelComesBack) {
  const Family& f = GetParam();
  std::map<D, int> walked;
  for (const Variant& variant : f.variants) {
    for (auto [w, h] : f.sizes) {
      rmtest::TestProgram p;
      p.Setup(f.mode, Bitmap(w, h));
      variant.apply(p.app.session);
      const auto values = PictureColours(p.app.session, f.mode);
      ASSERT_FALSE(values.empty()) << f.name << ": the mode's colour table is empty";
      std::vector<Colour> colours;
      for (const auto& [c, v] : values) colours.push_back(c);
      const Bitmap picture = rmtest::PatternPicture(w, h, colours, static_cast<std::uint32_t>(w * 31 + h + f.mode));
      p.app.pixelForm.SetCanvas(picture);
      if (!ReadFromText(f)) p.app.mainForm.HexOutput1Click();

      for (D d : f.directions) {
        const int along = (f.mode == 25 && d == D::Down) ? 8 : f.along;
        if ((Vertical(d) ? h : w) % along != 0 || (f.pairs && Vertical(d) && w % 2 != 0)) continue;
        ++walked[d];
        for (bool other : {false, true}) {
          if (f.mode == 25 && d == D::Down && other) continue;  // two pages go down from the left only
          for (bool big : {true, false}) {
            const std::string failure = ConvertAndReadBack(p, f, variant, picture, values, d, other, big);
            EXPECT_EQ(failure, "") << f.name << " (mode " << f.mode << ") " << variant.label << ", " << w << "x" << h
                                   << ", " << kDirectionName[Index(d)] << ", origin "
                                   << kCornerName[static_cast<int>((other ? kOtherCorner : kNormalCorner)[Index(d)])]
                                   << (big ? ", MSB first" : ", MSB last");
          }
        }
      }
    }
  }
  for (D d : f.directions) EXPECT_GT(walked[d], 0) << f.name << ": no size fits " << kDirectionName[Index(d)];
}

std::string CaseName(const ::testing::TestParamInfo<Family>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return "Mode" + std::to_string(info.param.mode) + "_" + name;
}

INSTANTIATE_TEST_SUITE_P(Modes, RoundTrip, ::testing::ValuesIn(Families()), CaseName);

}  // namespace

namespace {

std::vector<std::uint8_t> BinaryOf(int mode, const Bitmap& picture, void (*options)(ConversionSession&), bool big) {
  rmtest::TestProgram p;
  p.Setup(mode, picture);
  options(p.app.session);
  p.app.mainForm.HexOutput1Click();
  big ? p.app.mainForm.MsbFirst() : p.app.mainForm.MsbLast();
  EXPECT_TRUE(p.Convert()) << "mode " << mode << (p.ui.messages.empty() ? "" : ": " + p.ui.messages.back().text);
  return p.app.hex.Bytes();
}

// MSB last is a bit order: in the modes of 12 bits a pixel and more each byte is the byte of MSB
// first mirrored, so every bit of the colour is kept.
TEST(BitOrder, MsbLastMirrorsEveryByteOfWidePixels) {
  const struct {
    int mode;
    void (*options)(ConversionSession&);
  } cases[] = {{57, NoOption}, {58, NoOption}, {58, SwapFirstLast}, {59, NoOption}, {59, SwapRedBlue},
               {60, NoOption}, {61, NoOption}, {62, NoOption},      {63, NoOption}, {63, Rgba}};
  for (const auto& c : cases) {
    rmtest::TestProgram probe;
    probe.Setup(c.mode, Bitmap(1, 1));
    std::vector<Colour> colours;
    for (const auto& [colour, value] : PictureColours(probe.app.session, c.mode)) colours.push_back(colour);
    const Bitmap picture = rmtest::PatternPicture(5, 3, colours, 99);
    const auto first = BinaryOf(c.mode, picture, c.options, true), last = BinaryOf(c.mode, picture, c.options, false);
    ASSERT_EQ(first.size(), last.size()) << "mode " << c.mode;
    for (std::size_t i = 0; i < first.size(); ++i)
      ASSERT_EQ(Reverse8(first[i]), last[i]) << "mode " << c.mode << ", byte " << i;
  }
}

// A half export of a horizontal walk gives the bytes of the half made into a picture of its own, from
// either corner: the walk takes the half's rows, whatever the corner.
TEST(HalfExport, TheHalfAsItsOwnPicture) {
  for (int mode : {1, 26, 59}) {
    rmtest::TestProgram probe;
    probe.Setup(mode, Bitmap(1, 1));
    std::vector<Colour> colours;
    for (const auto& [colour, value] : PictureColours(probe.app.session, mode)) colours.push_back(colour);
    const Bitmap picture = rmtest::PatternPicture(16, 12, colours, 5);
    for (int entry : {1, 2}) {
      Bitmap half(16, 6);
      for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 16; ++x) half.SetPixel(x, y, picture.GetPixel(x, entry == 2 ? y + 6 : y));
      for (D d : {D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll})
        for (bool other : {false, true}) {
          std::vector<std::uint8_t> bytes[2];
          for (int whole : {0, 1}) {
            rmtest::TestProgram p;
            p.Setup(mode, whole ? half : picture);
            p.app.globals.ExportEntry = whole ? 0 : entry;
            p.app.mainForm.HexOutput1Click();
            ASSERT_TRUE(p.app.mainForm.SetDirection(d));
            if (other) p.app.mainForm.ToggleOriginCorner();
            ASSERT_TRUE(p.Convert()) << (p.ui.messages.empty() ? "" : p.ui.messages.back().text);
            bytes[whole] = p.app.hex.Bytes();
          }
          EXPECT_EQ(bytes[0], bytes[1]) << "mode " << mode << (entry == 2 ? ", lower half, " : ", upper half, ")
                                        << kDirectionName[Index(d)] << (other ? ", other corner" : "");
        }
    }
  }
}

// The red pixel of the README's table of bit and byte orders.
TEST(BitOrder, RedPixelIn65536Colours) {
  const struct {
    void (*options)(ConversionSession&);
    bool big;
    std::vector<std::uint8_t> bytes;
  } cases[] = {{NoOption, true, {0xF8, 0x00}},
               {SwapFirstLast, true, {0x00, 0xF8}},
               {SwapRedBlue, true, {0x00, 0x1F}},
               {NoOption, false, {0x1F, 0x00}}};
  for (const auto& c : cases)
    EXPECT_EQ(BinaryOf(59, Bitmap(1, 1, rm::MakeColour(255, 0, 0)), c.options, c.big), c.bytes);
}

}  // namespace
