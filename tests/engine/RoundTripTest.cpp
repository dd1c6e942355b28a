#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "engine/ArrayImport.h"
#include "support/ShellTestSupport.h"

// Round trips through the whole Convert command and back: a pseudo-random picture made of a
// mode's colours is converted, the output (the bytes of a binary, or the text of 8, 16 and 32 bit
// tables) is read by the program's array import with the same settings, and the canvas it paints
// must be the picture, pixel for pixel.

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

std::uint32_t Reverse8(std::uint32_t b) {
  std::uint32_t r = 0;
  for (int i = 0; i < 8; ++i) r |= ((b >> i) & 1u) << (7 - i);
  return r;
}

// ---- the families of modes --------------------------------------------------------------------

struct Variant {
  const char* label;
  void (*apply)(ConversionSession&);
};

struct Family {
  const char* name;
  int mode;
  std::vector<std::pair<int, int>> sizes;
  std::vector<D> directions;
  int along;   // the picture's size along the byte axis must be a multiple of this
  bool pairs;  // two horizontal pixels a byte: vertical walks need an even width
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

const std::vector<Variant> kPlain = {{"", NoOption}};
const std::vector<Variant> kSwappable = {{"", NoOption}, {"swap first and last", SwapFirstLast}};
const std::vector<Variant> kNibbles = {{"", NoOption}, {"swap nibble", SwapNibble}};

const std::vector<Family>& Families() {
  const std::vector<std::pair<int, int>> any = {{13, 11}, {16, 8}};
  static const std::vector<Family> families = {
      {"monochrome", 1, {{16, 8}, {13, 16}, {24, 13}}, kEveryDirection, 8, false, false, kPlain},
      {"monochrome inverted", 2, {{16, 8}, {13, 16}, {24, 13}}, kEveryDirection, 8, false, false, kPlain},
      {"gray 4", 24, {{16, 8}, {13, 12}, {12, 13}}, kEveryDirection, 4, false, false, kPlain},
      // Down reads eight pixels for both planes at once; the other walks pair up gray 4 bytes.
      {"gray 4 two pages",
       25,
       {{16, 8}, {13, 8}, {8, 13}},
       {D::Down, D::DownAll, D::UpAll, D::ToRightAll, D::ToLeftAll},
       4,
       false,
       false,
       kPlain},
      {"gray 16", 26, {{16, 8}, {13, 10}, {10, 13}}, kEveryDirection, 2, false, false, kNibbles},
      {"gray 16 horizontal pixels",
       27,
       {{16, 8}, {10, 13}, {14, 6}},
       {D::DownAll, D::UpAll, D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll},
       2,
       true,
       false,
       kNibbles},
      {"gray 16 slices of 8", 28, {{13, 11}, {16, 8}, {8, 16}}, {D::Down}, 1, false, true, kNibbles},
      // 120, 128 and 130 pixels leave 0, 2 and 1 pixels of the last triple.
      {"gray 32 packed", 29, {{12, 10}, {16, 8}, {13, 10}, {10, 13}}, kWholeLines, 2, false, false, kPlain},
      {"gray 32 right aligned", 30, any, kWholeLines, 1, false, false, kPlain},
      {"gray 32 left aligned", 31, any, kWholeLines, 1, false, false, kPlain},
      {"gray 256", 32, any, kEveryDirection, 1, false, false, kPlain},
      {"8 colours", 54, {{16, 8}, {13, 16}, {16, 11}}, kWholeLines, 8, false, true, kPlain},
      {"16 colours", 55, {{16, 8}, {13, 10}, {10, 13}}, kEveryDirection, 2, false, false, kNibbles},
      {"256 colours", 56, any, kEveryDirection, 1, false, false, kPlain},
      // Swap First and Last has no effect on packed pairs; 143 pixels leave the last one half sent.
      {"4096 packed", 57, any, kEveryDirection, 1, false, false, kSwappable},
      {"4096 unpacked", 58, any, kEveryDirection, 1, false, false, kSwappable},
      {"65536",
       59,
       any,
       kEveryDirection,
       1,
       false,
       false,
       {{"", NoOption}, {"swap first and last", SwapFirstLast}, {"swap red and blue", SwapRedBlue}}},
      {"262k packed", 60, any, kEveryDirection, 1, false, false, kSwappable},
      {"262k unpacked", 61, any, kEveryDirection, 1, false, false, kSwappable},
      {"16M", 62, any, kEveryDirection, 1, false, false, kSwappable},
      // The zero byte leads, or trails with RGBA; with RGBA and the swap there is none.
      {"16M with alpha",
       63,
       any,
       kEveryDirection,
       1,
       false,
       false,
       {{"", NoOption},
        {"swap first and last", SwapFirstLast},
        {"RGBA", Rgba},
        {"RGBA, swap first and last", SwapAndRgba}}},
  };
  return families;
}

// The colours a picture of the mode is made of: all of a small table, a sample of a large one
// with its ends, black, white and random colours in 16M.
std::vector<Colour> PictureColours(const ConversionSession& s, int mode) {
  if (mode <= 2) return {rm::kWhite, rm::kBlack};
  std::uint32_t seed = 12345u + static_cast<std::uint32_t>(mode);
  const auto next = [&] { return (seed = seed * 1664525u + 1013904223u) >> 8; };
  std::vector<Colour> out;
  if (mode >= 62) {
    out = {rm::kWhite, rm::kBlack};
    for (int i = 0; i < 64; ++i) out.push_back(static_cast<Colour>(next() & 0xFFFFFF));
    return out;
  }
  const auto& table = s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours;
  if (table.size() <= 256) return table;
  out = {table.front(), table.back()};
  for (int i = 0; i < 98; ++i) out.push_back(table[next() % table.size()]);
  return out;
}

// Test names and failure output show the family by its name.
void PrintTo(const Family& f, std::ostream* os) { *os << f.name; }

// How the output is read back: the bytes of a binary, or the text of a table in words of 8, 16
// or 32 bits.
enum class Route { Binary, Text8, Text16, Text32 };
const char* const kRouteName[] = {"binary", "8 bit text", "16 bit text", "32 bit text"};

// Sets one Paging Scheme, converts, imports the output with the same settings. Empty when the
// picture came back, else what went wrong, up to the first pixel that did not.
std::string ConvertAndReadBack(rmtest::TestProgram& p, const Family& f, const Bitmap& picture, D d, bool other,
                               bool big, Route route) {
  ConversionSession& s = p.app.session;
  switch (route) {
    case Route::Binary: p.app.mainForm.HexOutput1Click(); break;
    case Route::Text8: p.app.mainForm.Data8bitClick(); break;
    case Route::Text16: p.app.mainForm.data16bitClick(); break;
    case Route::Text32: p.app.mainForm.data32bitClick(); break;
  }
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
  std::size_t padding = 0;
  if (route != Route::Binary) {
    const int width = route == Route::Text8 ? 8 : route == Route::Text16 ? 16 : 32;
    const rm::ArrayText text = rm::ReadArrayText(p.app.mainText.Text(), {});
    if (!text.error.empty()) return "the text was not read: " + text.error;
    // The two page mode writes plane B, then plane A, a table each.
    const std::size_t tables = f.mode == 25 ? 2 : 1;
    if (text.tables.size() != tables)
      return std::to_string(text.tables.size()) + " tables read where " + std::to_string(tables) + " were due";
    std::vector<std::uint8_t> bytes[2];
    std::string error;
    for (std::size_t t = 0; t < tables; ++t)
      if (!rm::WordsToBytes(text.tables[t], width, big, false, bytes[t], error)) return error;
    data = f.mode == 25 ? rm::MergePlanes(bytes[0], bytes[1], big) : bytes[0];
    padding = static_cast<std::size_t>(width / 8 - 1) + (f.mode == 25 ? 1 : 0);
  }

  Bitmap back(picture.Width(), picture.Height());
  const rm::ArrayImportResult got = rm::ImportArray(s, data, back, padding);
  if (!got.error.empty()) return got.error;
  for (int y = 0; y < picture.Height(); ++y)
    for (int x = 0; x < picture.Width(); ++x)
      if (back.GetPixel(x, y) != picture.GetPixel(x, y)) {
        std::ostringstream out;
        out << "pixel (" << x << ", " << y << ") came back " << std::hex << back.GetPixel(x, y) << " for "
            << picture.GetPixel(x, y);
        return out.str();
      }
  return "";
}

class RoundTrip : public ::testing::TestWithParam<Family> {};

TEST_P(RoundTrip, EveryPixelComesBack) {
  const Family& f = GetParam();
  std::map<D, int> walked;
  for (const Variant& variant : f.variants) {
    for (std::size_t size = 0; size < f.sizes.size(); ++size) {
      const auto [w, h] = f.sizes[size];
      rmtest::TestProgram p;
      p.Setup(f.mode, Bitmap(w, h));
      variant.apply(p.app.session);
      const auto colours = PictureColours(p.app.session, f.mode);
      ASSERT_FALSE(colours.empty()) << f.name << ": the mode's colour table is empty";
      const Bitmap picture = rmtest::PatternPicture(w, h, colours, static_cast<std::uint32_t>(w * 31 + h + f.mode));
      p.app.pixelForm.SetCanvas(picture);

      for (D d : f.directions) {
        const int along = (f.mode == 25 && d == D::Down) ? 8 : f.along;
        if ((Vertical(d) ? h : w) % along != 0 || (f.pairs && Vertical(d) && w % 2 != 0)) continue;
        ++walked[d];
        // The binary for every size; the text of the first size in one width a direction. The two
        // page mode exists as 8 bit text only.
        std::vector<Route> routes = {Route::Binary};
        if (size == 0) routes.push_back(static_cast<Route>(1 + Index(d) % 3));
        if (f.mode == 25) routes = {Route::Text8};
        for (Route route : routes)
          for (bool other : {false, true}) {
            if (f.mode == 25 && d == D::Down && other) continue;  // two pages go down from the left only
            for (bool big : {true, false}) {
              const std::string failure = ConvertAndReadBack(p, f, picture, d, other, big, route);
              EXPECT_EQ(failure, "") << f.name << " (mode " << f.mode << ") " << variant.label << ", " << w << "x" << h
                                     << ", " << kDirectionName[Index(d)] << ", origin "
                                     << kCornerName[static_cast<int>((other ? kOtherCorner : kNormalCorner)[Index(d)])]
                                     << (big ? ", MSB first, " : ", MSB last, ") << kRouteName[static_cast<int>(route)];
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
    const std::vector<Colour> colours = PictureColours(probe.app.session, c.mode);
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
    const std::vector<Colour> colours = PictureColours(probe.app.session, mode);
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
