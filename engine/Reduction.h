#pragma once
#include <string_view>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/UiPort.h"

namespace rm {

class NearestColour;

// Reduction of pictures to the colours a display can show: gray, threshold, error diffusion and
// the one to one mapping onto a palette. Everything works on whole rows.

// The gray level of a colour with integer weights that sum to 256, so that white stays 255.
constexpr int GrayLevel(Colour c) { return (RedOf(c) * 77 + GreenOf(c) * 150 + BlueOf(c) * 29) >> 8; }
constexpr Colour GrayColour(int level) { return level * 0x010101; }

// Makes every pixel of the rectangle [x0, x1) x [y0, y1) gray; the rectangle is clipped to the
// bitmap. The overload without a rectangle does the whole bitmap.
void MakeGray(Bitmap& bitmap, int x0, int y0, int x1, int y1);
void MakeGray(Bitmap& bitmap);

// The threshold slider's compare value on the 24 bit colour scale: position * (0xFFFFFF / maximum
// - 1), in long double. With a maximum of 255 a gray g stays white exactly for positions <= g.
long double ThresholdLevelFor(int position, int maximum = 255);

// The threshold rule: for x in [0, matrixWidth] and y in [0, matrixHeight] (both inclusive), the
// pixel of `original` at (offsetX + x, offsetY + y), taken as a 24 bit number with blue high,
// makes the same pixel of `target` black when `level` is strictly greater. Other pixels are left
// as they are (the caller clears `target` to white first). Pixels outside either bitmap are
// skipped. Returns the number of pixels made black.
long long ApplyThreshold(const Bitmap& original, Bitmap& target, long double level, int offsetX, int offsetY,
                         int matrixWidth, int matrixHeight);

// The error diffusion kernels, numbered as the Dithering menu lists them.
enum class DitherMode {
  Nearest = 0,
  FloydSteinberg = 1,
  Stucki = 2,
  Sierra = 3,
  JaJuNi = 4,
  SteveArche = 5,
  Burkes = 6
};
// What a dither reduces to; the numbers are those the menu stores.
enum class ColorReduction { Monochrome = 4, GrayScale = 5 };

inline constexpr std::string_view kDitherCaptions[] = {"Nearest", "Floyd Steinberg", "Stucki", "Sierra",
                                                       "JaJuNi",  "Steve Arche",     "Burkes"};
inline constexpr std::string_view kReductionCaptionMonochrome = "Color Reduction Monochrome";
inline constexpr std::string_view kReductionCaptionGray = "Color Reduction 256 Gray Shades";

// Reduces `bitmap` in place to black and white (pixels exactly 0x000000 or 0xFFFFFF) or to 256
// grays (pixels g * 0x010101), spreading each pixel's error over its neighbours by `mode`.
void Dither(Bitmap& bitmap, ColorReduction reduction, DitherMode mode);

// Reduces a picture of many colours to a palette of few (the 256 colours mode): each pixel takes
// the palette colour `nearest` gives, and the difference is spread per channel with the
// Floyd-Steinberg weights, so that areas keep their mean colour.
void ConvertTo256Colors(Bitmap& bitmap, NearestColour& nearest);

// The number of distinct colours (low 24 bits) of `bitmap`.
int CountColors(const Bitmap& bitmap);

// Maps the picture's colours one to one onto `palette`: the used colours in ascending order of
// value, the i-th to the palette entry i * step of the ascending palette, where `modeColours`
// (4, 8, 16, 32, 256, 4096, 65536 or 262144) gives the step: 4 for 16 colours, 2 for 8 and 256,
// 1 otherwise. Colours beyond the palette's end take its last entry. Logs its time; Esc stops it
// between rows (false, bitmap partly mapped). An empty palette stops at once.
bool ConvertToMyColor(Bitmap& bitmap, std::vector<Colour> palette, int modeColours, UiPort& ui);

}  // namespace rm
