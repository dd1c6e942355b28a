#pragma once
#include <array>
#include <string_view>

namespace rm {

// One row per colour mode. `colours` and `paletteSize` of -1 mean "the command leaves the field
// as it was" (the monochrome commands).
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
  std::string_view cliName;  // the name the command line uses
};

// The 8 colours mode packs 8 pixels into 3 bytes; the literal is kept as it is, not 8/3.
constexpr long double kPpb8Colours = 2.66666666L;

inline constexpr std::array<ColourModeInfo, 21> kColourModes{{
    {1, "MonochromeMenu", "Monochrome  bitmap (1bpp)                           8 pixels/byte", 8, -1, -1, 8, 0, "",
     "Monochrome mode activated", "Monochrome", "mono"},
    {2, "MonochromeMenuInverted", "Monochrome  bitmap (1bpp)   Inverted          8 pixels/byte", 8, -1, -1, 8, 0, "",
     "Negative output mode", "Monochrome", "mono-inv"},
    {24, "grayscalemenu4", "4 gray levels bitmap (2bpp)  Single Page         4 pixels/byte", 4, 4, 0, 8, 0,
     "2bpp grayscale", "4 levels grayscale mode activated", "4 levels grayscale", "gray4"},
    {25, "grayscalemenu4TwoPages", "4 gray levels bitmap (2bpp)  Two Pages           8 half pixels/byte", 4, 4, 0, 8, 0,
     "2bpp grayscale", "4 levels grayscale two pages mode activated", "4 levels grayscale 2P", "gray4-2p"},
    {26, "grayscaleMenu16", "16 gray levels bitmap (4bpp) 2 vertical pixels        2 pixels/byte", 2, 16, 0, 8, 0,
     "4bpp grayscale", "16 levels Vertical grayscale mode activated", "16 levels grayscale Vert.", "gray16"},
    {27, "grayscaleMenu16H", "16 gray levels bitmap (4bpp) 2 horizontal pixels    2 pixels/byte ", 2, 16, 0, 8, 0,
     "4bpp grayscale", "16 levels Horizontal grayscale mode activated", "16 levels grayscale Horiz.", "gray16h"},
    {28, "grayscaleMenu16Slices8", "16 gray levels bitmap (4bpp) slices of 8 vertical pixels", 2, 16, 0, 8, 0,
     "4bpp grayscale", "16 levels Vertical grayscale mode activated", "16 gray 8 Pix Slices", "gray16-st7528"},
    {29, "grayscaleMenu32", "32 gray levels bitmap (5bpp) 2B3P packed       3 pixels = 2 bytes", 2, 32, 0, 8, 0,
     "5bpp grayscale", "32 levels grayscale packed mode activated", "32 levels grayscale", "gray32"},
    {30, "GrayscaleMenu32Unpacked", "32 gray levels bitmap (5bpp) 3B3P R-Unpacked    1 pixel/byte", 1, 32, 0, 8, 0,
     "5bpp grayscale", "32 levels grayscale unpacked mode activated", "32 levels grayscale", "gray32r"},
    {31, "GrayscaleMenu32LeftUnpacked", "32 gray levels bitmap (5bpp) 3B3P L-Unpacked    1 pixel/byte", 1, 32, 0, 8, 0,
     "5bpp grayscale", "32 levels grayscale unpacked mode activated", "32 levels grayscale", "gray32l"},
    {32, "Gray256Menu", "256 gray shades (8 bpp)                                1 pixel/byte", 1, 256, 256, 8, 0,
     "256 colors", "256 colors mode activated", "256 grayscale", "gray256"},
    {54, "Colors8Menu", "8 colors (3bpp) packed                                 8 pixels/ 3 bytes", kPpb8Colours, 8, 0,
     8, 0, "8 colors", "8 colors mode activated", "8 colors", "c8"},
    {55, "Colors16Menu", "16 colors (4bpp)                                             2 pixels/byte", 2, 16, 0, 8, 0,
     "16 colors", "16 colors mode activated", "16 colors", "c16"},
    {56, "Colors256NPMenu", "256 colors (8 bpp)                                          1 pixel/byte", 1, 256, 256, 8,
     0, "256 colors", "256 colors mode activated", "256 colors", "c256"},
    {57, "Colors4096Menu", "4096 colors (12bpp) packed                            2 pixel = 3 bytes", 1, 4096, 4096, 16,
     1, "4096 colors", "4096 colors packed mode activated", "4096 colors", "c4096"},
    {58, "colors4096colorsUnpackedMenu", "4096 colors (12bpp) unpacked                        1 pixel = 2 bytes", 1,
     4096, 4096, 16, 1, "4096 colors", "4096 colors unpacked mode activated", "4096 colors", "c4096u"},
    {59, "Colors65535Menu", "65536 colors (16bpp) R5 G6 B5                        1 pixel = 2 bytes", 1, 65535, 65536,
     16, 1, "65536 colors", "65536 colors mode activated", "65536 colors", "c65k"},
    {60, "Colors262144Menu", "262k colors (18bpp)  packed                        1 pixel = 3 byte", 1, 262144, 262144,
     18, 2, "262k colors", "262144 colors mode activated", "262144 colors", "c262k"},
    {61, "Colors262144MenuUnpacked", "262k colors (18bpp) unpacked                     1 pixel = 3 byte", 1, 262144,
     262144, 18, 2, "262k colors", "262144 colors unpacked mode activated", "262144 colors Unpacked", "c262ku"},
    {62, "Colors16MilPackedMenu", "16M colors (24bpp) RGB                                 1 pixel = 3 bytes", 1,
     16777215, 0, 24, 2, "", "16M colors packed mode activated", "16M colors", "c16m"},
    {63, "Colors16MilMenu", "16M colors (32bpp) Alpha + RGB                  1 pixel = 4 bytes", 1, 16777215, 0, 24, 2,
     "", "16M colors unpacked mode activated", "16M colors", "c16m-alpha"},
}};

// nullptr when no mode has that number or name.
const ColourModeInfo* FindColourMode(int modeNumber);
const ColourModeInfo* FindColourModeByCliName(std::string_view name);

}  // namespace rm
