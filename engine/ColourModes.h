#pragma once
#include <array>
#include <cstdint>
#include <string_view>

namespace rm {

// A mode's switches as a set of bits. The first group are the session's mode booleans of the same
// names (ConversionSession), which a mode turns on; `Unpacked` turns its `Packed` off. The rest
// are rules of a mode that no session field holds.
using ModeFlags = std::uint32_t;
struct ModeFlag {
  enum : ModeFlags {
    Monochrome = 1u << 0,
    Grayscale = 1u << 1,
    Gray4 = 1u << 2,
    Gray4TwoPages = 1u << 3,
    Gray16 = 1u << 4,
    Gray16Horizontal = 1u << 5,
    Gray16Slices = 1u << 6,
    Gray32 = 1u << 7,
    Gray32Left = 1u << 8,
    Gray256 = 1u << 9,
    Colours8 = 1u << 10,
    Colours16 = 1u << 11,
    Colours256 = 1u << 12,
    Colours256NoPalette = 1u << 13,
    Colours4096 = 1u << 14,
    Colours65536 = 1u << 15,
    Colours262kPacked = 1u << 16,
    Colours262kUnpacked = 1u << 17,
    Colours16M = 1u << 18,
    Unpacked = 1u << 19,
    // The inverted twin of monochrome: its output is negative.
    Negative = 1u << 20,
    // A pixel outside the picture (the walk past its edge) is written as value 0, not refused.
    OutsideIsZero = 1u << 21,
    // 3 pixels in 2 bytes, packed across lines: the byte count is W*H/3*2 and the walk takes
    // every pixel whatever the canvas size, a last incomplete group included.
    ThreeInTwo = 1u << 22,
  };
};

// The palette a mode loads when it is chosen: none (monochrome, 16M colours, the gray ramps,
// whose levels are built), the file of a few colours of the 8 and 16 colours modes (their built-in
// colours when there is none), or a look-up table file: the 256 gray shades or the 2^bits colours.
enum class PaletteKind { None, Colours8, Colours16, Gray256, Lut8, Lut12, Lut16, Lut18 };

// Where the mode's colours are kept once built or loaded.
enum class ColourTable { None, ModeColours, PaletteTable };

// One row per colour mode: every decision on a mode reads its row. `colours` and `paletteSize` of
// -1 mean "the command leaves the field as it was" (the monochrome commands).
struct ColourModeInfo {
  int modeNumber;
  std::string_view command;   // the menu command's name
  std::string_view menuText;  // the menu item's text, blanks included
  long double pixelsPerByte;
  int colours;
  int paletteSize;
  int canvasBits;
  int byteClass;
  std::string_view clearName;  // X of " Clear the work canvas before to change to X mode ? "
  std::string_view logText;
  std::string_view shortName;
  std::string_view cliName;   // the name the command line uses
  std::string_view infoText;  // the mode's line in the parameter file
  ModeFlags flags;
  int grayLevels;  // the levels of a built gray ramp (4, 16 or 32); 0 for none
  PaletteKind palette;
  int pagingMultiple;                     // the canvas side along the byte direction must be a multiple of it; 1: free
  std::string_view depthTag, coloursTag;  // the Work Canvas caption's tags

  constexpr bool Has(ModeFlags f) const { return (flags & f) != 0; }
  constexpr ColourTable Table() const {
    if (grayLevels > 0 || palette == PaletteKind::Colours8 || palette == PaletteKind::Colours16)
      return ColourTable::ModeColours;
    return palette == PaletteKind::None ? ColourTable::None : ColourTable::PaletteTable;
  }
};

// The 8 colours mode packs 8 pixels into 3 bytes; the literal is kept as it is, not 8/3.
constexpr long double kPpb8Colours = 2.66666666L;

inline constexpr std::array<ColourModeInfo, 21> kColourModes{{
    {1, "MonochromeMenu", "Monochrome  bitmap (1bpp)                           8 pixels/byte", 8, -1, -1, 8, 0, "",
     "Monochrome mode activated", "Monochrome", "mono", "Monochrome mode", ModeFlag::Monochrome, 0, PaletteKind::None,
     8, "[ Monochrome 1bpp ]", "[ Black & White ]"},
    {2, "MonochromeMenuInverted", "Monochrome  bitmap (1bpp)   Inverted          8 pixels/byte", 8, -1, -1, 8, 0, "",
     "Negative output mode", "Monochrome", "mono-inv", "Monochrome mode", ModeFlag::Monochrome | ModeFlag::Negative, 0,
     PaletteKind::None, 8, "[ Monochrome 1bpp ]", "[ Black & White ]"},
    {24, "grayscalemenu4", "4 gray levels bitmap (2bpp)  Single Page         4 pixels/byte", 4, 4, 0, 8, 0,
     "2bpp grayscale", "4 levels grayscale mode activated", "4 levels grayscale", "gray4", "Grayscale 2bpp mode",
     ModeFlag::Grayscale | ModeFlag::Gray4, 4, PaletteKind::None, 4, "[ Grayscale 2bpp ]", "[ 4 Gray ]"},
    {25, "grayscalemenu4TwoPages", "4 gray levels bitmap (2bpp)  Two Pages           8 half pixels/byte", 4, 4, 0, 8, 0,
     "2bpp grayscale", "4 levels grayscale two pages mode activated", "4 levels grayscale 2P", "gray4-2p",
     "Grayscale 2bpp 2 Pages mode", ModeFlag::Grayscale | ModeFlag::Gray4TwoPages, 4, PaletteKind::None, 4,
     "[ Grayscale 2bpp 2P ]", "[ 4 Gray ]"},
    {26, "grayscaleMenu16", "16 gray levels bitmap (4bpp) 2 vertical pixels        2 pixels/byte", 2, 16, 0, 8, 0,
     "4bpp grayscale", "16 levels Vertical grayscale mode activated", "16 levels grayscale Vert.", "gray16",
     "Grayscale 4bpp mode", ModeFlag::Grayscale | ModeFlag::Gray16 | ModeFlag::OutsideIsZero, 16, PaletteKind::None, 2,
     "[ Grayscale 4bpp]", "[ 16 Gray ]"},
    {27, "grayscaleMenu16H", "16 gray levels bitmap (4bpp) 2 horizontal pixels    2 pixels/byte ", 2, 16, 0, 8, 0,
     "4bpp grayscale", "16 levels Horizontal grayscale mode activated", "16 levels grayscale Horiz.", "gray16h",
     "Grayscale 4bpp mode",
     ModeFlag::Grayscale | ModeFlag::Gray16 | ModeFlag::Gray16Horizontal | ModeFlag::OutsideIsZero, 16,
     PaletteKind::None, 2, "[ Grayscale 4bpp]", "[ 16 Gray ]"},
    {28, "grayscaleMenu16Slices8", "16 gray levels bitmap (4bpp) slices of 8 vertical pixels", 2, 16, 0, 8, 0,
     "4bpp grayscale", "16 levels Vertical grayscale mode activated", "16 gray 8 Pix Slices", "gray16-st7528",
     "Grayscale 4bpp mode", ModeFlag::Grayscale | ModeFlag::Gray16 | ModeFlag::Gray16Slices | ModeFlag::OutsideIsZero,
     16, PaletteKind::None, 2, "[ Grayscale 4bpp]", "[ 16 Gray ]"},
    {29, "grayscaleMenu32", "32 gray levels bitmap (5bpp) 2B3P packed       3 pixels = 2 bytes", 2, 32, 0, 8, 0,
     "5bpp grayscale", "32 levels grayscale packed mode activated", "32 levels grayscale", "gray32",
     "Grayscale 5bpp Packed mode", ModeFlag::Grayscale | ModeFlag::Gray32 | ModeFlag::ThreeInTwo, 32, PaletteKind::None,
     4, "[ Grayscale 5bpp ]", "[ 32 Gray ]"},
    {30, "GrayscaleMenu32Unpacked", "32 gray levels bitmap (5bpp) 3B3P R-Unpacked    1 pixel/byte", 1, 32, 0, 8, 0,
     "5bpp grayscale", "32 levels grayscale unpacked mode activated", "32 levels grayscale", "gray32r",
     "Grayscale 5bpp unpacked mode Al. Right", ModeFlag::Grayscale | ModeFlag::Gray32 | ModeFlag::Unpacked, 32,
     PaletteKind::None, 4, "[ Grayscale 5bpp ]", "[ 32 Gray ]"},
    {31, "GrayscaleMenu32LeftUnpacked", "32 gray levels bitmap (5bpp) 3B3P L-Unpacked    1 pixel/byte", 1, 32, 0, 8, 0,
     "5bpp grayscale", "32 levels grayscale unpacked mode activated", "32 levels grayscale", "gray32l",
     "Grayscale 5bpp unpacked mode Al. Left",
     ModeFlag::Grayscale | ModeFlag::Gray32 | ModeFlag::Gray32Left | ModeFlag::Unpacked, 32, PaletteKind::None, 4,
     "[ Grayscale 5bpp ]", "[ 32 Gray ]"},
    {32, "Gray256Menu", "256 gray shades (8 bpp)                                1 pixel/byte", 1, 256, 256, 8, 0,
     "256 colors", "256 colors mode activated", "256 grayscale", "gray256", "256 Colors 8bpp mode", ModeFlag::Gray256,
     0, PaletteKind::Gray256, 1, "[ Grayscale 8bpp ]", "[ 256 Gray Shades ]"},
    {54, "Colors8Menu", "8 colors (3bpp) packed                                 8 pixels/ 3 bytes", kPpb8Colours, 8, 0,
     8, 0, "8 colors", "8 colors mode activated", "8 colors", "c8", "8 Colors 3bpp mode",
     ModeFlag::Colours8 | ModeFlag::OutsideIsZero, 0, PaletteKind::Colours8, 2, "[ Color 3bpp ]", "[ 8 Colors ]"},
    {55, "Colors16Menu", "16 colors (4bpp)                                             2 pixels/byte", 2, 16, 0, 8, 0,
     "16 colors", "16 colors mode activated", "16 colors", "c16", "16 Colors 4bpp mode",
     ModeFlag::Colours16 | ModeFlag::OutsideIsZero, 0, PaletteKind::Colours16, 2, "[ Color 4bpp ]", "[ 16 Colors ]"},
    {56, "Colors256NPMenu", "256 colors (8 bpp)                                          1 pixel/byte", 1, 256, 256, 8,
     0, "256 colors", "256 colors mode activated", "256 colors", "c256", "256 Colors 8bpp mode",
     ModeFlag::Colours256 | ModeFlag::Colours256NoPalette, 0, PaletteKind::Lut8, 1, "[ Color 8bpp ]", "[ 256 Colors ]"},
    {57, "Colors4096Menu", "4096 colors (12bpp) packed                            2 pixel = 3 bytes", 1, 4096, 4096, 16,
     1, "4096 colors", "4096 colors packed mode activated", "4096 colors", "c4096", "4096 Colors 12bpp P mode",
     ModeFlag::Colours4096, 0, PaletteKind::Lut12, 1, "[ Color 12bpp ]", "[ 4096 Colors ]"},
    {58, "colors4096colorsUnpackedMenu", "4096 colors (12bpp) unpacked                        1 pixel = 2 bytes", 1,
     4096, 4096, 16, 1, "4096 colors", "4096 colors unpacked mode activated", "4096 colors", "c4096u",
     "4096 Colors 12bpp U mode", ModeFlag::Colours4096 | ModeFlag::Unpacked, 0, PaletteKind::Lut12, 1,
     "[ Color 12bpp ]", "[ 4096 Colors ]"},
    {59, "Colors65535Menu", "65536 colors (16bpp) R5 G6 B5                        1 pixel = 2 bytes", 1, 65535, 65536,
     16, 1, "65536 colors", "65536 colors mode activated", "65536 colors", "c65k", "65k Colors 16bpp mode",
     ModeFlag::Colours65536, 0, PaletteKind::Lut16, 1, "[ Color 16bpp ]", "[ 65536 Colors ]"},
    {60, "Colors262144Menu", "262k colors (18bpp)  packed                        1 pixel = 3 byte", 1, 262144, 262144,
     18, 2, "262k colors", "262144 colors mode activated", "262144 colors", "c262k", "262k Colors 18bpp",
     ModeFlag::Colours262kPacked, 0, PaletteKind::Lut18, 1, "[ Color 18bpp ]", "[ 262144 Colors ]"},
    {61, "Colors262144MenuUnpacked", "262k colors (18bpp) unpacked                     1 pixel = 3 byte", 1, 262144,
     262144, 18, 2, "262k colors", "262144 colors unpacked mode activated", "262144 colors Unpacked", "c262ku",
     "262k Colors 18bpp", ModeFlag::Colours262kUnpacked, 0, PaletteKind::Lut18, 1, "[ Color 18bpp ]",
     "[ 262144 Colors ]"},
    {62, "Colors16MilPackedMenu", "16M colors (24bpp) RGB                                 1 pixel = 3 bytes", 1,
     16777215, 0, 24, 2, "", "16M colors packed mode activated", "16M colors", "c16m", "16M Colors 24bpp P mode",
     ModeFlag::Colours16M, 0, PaletteKind::None, 1, "[ Color 24bpp ]", "[ 16 Million Colors ]"},
    {63, "Colors16MilMenu", "16M colors (32bpp) Alpha + RGB                  1 pixel = 4 bytes", 1, 16777215, 0, 24, 2,
     "", "16M colors unpacked mode activated", "16M colors", "c16m-alpha", "16M Colors 32bpp U mode",
     ModeFlag::Colours16M | ModeFlag::Unpacked, 0, PaletteKind::None, 1, "[ Color 32bpp ]", "[ 16 Million Colors ]"},
}};

// nullptr when no mode has that number or name.
const ColourModeInfo* FindColourMode(int modeNumber);
const ColourModeInfo* FindColourModeByCliName(std::string_view name);
// The row of a mode number; an unknown number has an empty row: no text, no switch, no table, any
// size packs.
const ColourModeInfo& ModeRow(int modeNumber);
// The mode with exactly these switches; nullptr when none has them (no two modes share them).
const ColourModeInfo* FindColourModeByFlags(ModeFlags flags);
// The mode whose switches are `m`'s with `flag` on or off; nullptr when no mode has them. It pairs
// the 16 gray levels mode with its slices of 8 pixels.
const ColourModeInfo* ModeWithFlag(const ColourModeInfo& m, ModeFlags flag, bool on);
// The number of the monochrome mode, positive or its inverted twin.
int MonochromeMode(bool negative);

}  // namespace rm
