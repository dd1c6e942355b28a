#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "platform/PlatformImageCodecs.h"
#include "support/DecoderChecks.h"

namespace {

using rm::Bitmap;
using rm::Colour;
using rm::MakeColour;
using PixelFn = std::function<std::uint32_t(int x, int y)>;
using rmtest::Bytes;
using rmtest::ColourFn;
using rmtest::ExpectPixels;
using rmtest::LoadPicture;
using rmtest::Put16;
using rmtest::Put32;
using rmtest::TempDir;

void Append(Bytes& b, const Bytes& more) { b.insert(b.end(), more.begin(), more.end()); }

// Composing colour c with alpha a on white, worked out by hand: (c*a + 255*(255-a)) / 255 rounded.
struct AlphaCase {
  int c, a, expected;
};
constexpr std::array<AlphaCase, 6> kAlpha{
    {{100, 50, 225}, {0, 128, 127}, {255, 0, 255}, {200, 255, 200}, {0, 0, 255}, {10, 200, 63}}};
const AlphaCase& AlphaAt(int x, int y) { return kAlpha[(x + 2 * y) % kAlpha.size()]; }

const std::vector<Colour> kPalette = [] {
  std::vector<Colour> p;
  for (int i = 0; i < 256; ++i) p.push_back(MakeColour((i * 37) & 0xFF, (i * 91 + 11) & 0xFF, (255 - i * 13) & 0xFF));
  return p;
}();

// A BMP writer of its own, byte by byte, so the reader is checked against an independent encoding.

struct BmpFormat {
  int headerSize = 40;  // 12 core, 40 info, 64 OS/2 2.x, 108 V4, 124 V5
  int bitCount = 24;
  std::uint32_t compression = 0;
  bool topDown = false;
  std::array<std::uint32_t, 4> masks{};  // inside a header of 52 bytes or more, else after it
  int paletteSize = 0;                   // entries of kPalette written
  std::uint32_t coloursUsed = 0;
};

// Rows of stored values (palette indices or packed pixel bits), padded to 4 bytes, in file order.
Bytes PackBmpRows(int bitCount, int width, int height, bool topDown, const PixelFn& raw) {
  Bytes out;
  for (int r = 0; r < height; ++r) {
    const int y = topDown ? r : height - 1 - r;
    Bytes row;
    if (bitCount < 8) {
      row.assign((width * bitCount + 7) / 8, 0);
      for (int x = 0; x < width; ++x) row[x * bitCount / 8] |= raw(x, y) << (8 - bitCount - (x * bitCount) % 8);
    } else {
      for (int x = 0; x < width; ++x)
        for (int i = 0; i < bitCount / 8; ++i) row.push_back((raw(x, y) >> (8 * i)) & 0xFF);
    }
    row.resize((row.size() + 3) / 4 * 4, 0);
    Append(out, row);
  }
  return out;
}

Bytes MakeBmp(const BmpFormat& f, int width, int height, const Bytes& pixels) {
  Bytes dib;
  Put32(dib, f.headerSize);
  if (f.headerSize == 12) {
    Put16(dib, width);
    Put16(dib, height);
    Put16(dib, 1);
    Put16(dib, f.bitCount);
  } else {
    Put32(dib, width);
    Put32(dib, f.topDown ? -height : height);
    Put16(dib, 1);
    Put16(dib, f.bitCount);
    Put32(dib, f.compression);
    Put32(dib, pixels.size());
    Put32(dib, 2835);
    Put32(dib, 2835);
    Put32(dib, f.coloursUsed);
    Put32(dib, 0);
    if (f.headerSize >= 52 && f.headerSize != 64)
      for (std::uint32_t m : f.masks) Put32(dib, m);
    dib.resize(f.headerSize, 0);
    const int masksAfter = f.compression == 3 ? 3 : f.compression == 6 ? 4 : 0;
    if (f.headerSize == 40)
      for (int i = 0; i < masksAfter; ++i) Put32(dib, f.masks[i]);
  }
  for (int i = 0; i < f.paletteSize; ++i) {
    const Colour c = kPalette[i];
    dib.push_back(rm::BlueOf(c));
    dib.push_back(rm::GreenOf(c));
    dib.push_back(rm::RedOf(c));
    if (f.headerSize != 12) dib.push_back(0);
  }
  Bytes file{'B', 'M'};
  Put32(file, 14 + dib.size() + pixels.size());
  Put32(file, 0);
  Put32(file, 14 + dib.size());
  Append(file, dib);
  Append(file, pixels);
  return file;
}

Bytes MakePlainBmp(const BmpFormat& f, int width, int height, const PixelFn& raw) {
  return MakeBmp(f, width, height, PackBmpRows(f.bitCount, width, height, f.topDown, raw));
}

// PNG pictures come from libpng's writer, as the other decoders' tests take their libraries'
// encoders; what is checked is how the program asks the library for its pixels.

std::uint32_t Crc32(const std::uint8_t* p, std::size_t n) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (std::size_t i = 0; i < n; ++i) {
    crc ^= p[i];
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1)));
  }
  return crc ^ 0xFFFFFFFFu;
}

struct PngFormat {
  int bitDepth = 8;
  int colourType = 2;  // 0 gray, 2 RGB, 3 palette, 4 gray+alpha, 6 RGBA
  bool interlaced = false;
  int paletteSize = 0;                 // entries of kPalette written as PLTE
  std::array<std::uint8_t, 6> trns{};  // the tRNS chunk's bytes
  int trnsSize = 0;
  bool breakChecksum = false;  // flips a bit of the zlib checksum (and mends the chunk's CRC)
};

// Gives every sample, one byte each (two, high first, at 16 bits); none: the picture's header alone.
using SampleFn = std::function<unsigned(int x, int y, int channel)>;

void AppendPng(png_structp png, png_bytep data, png_size_t size) {
  auto* out = static_cast<Bytes*>(png_get_io_ptr(png));
  out->insert(out->end(), data, data + size);
}

Bytes MakePng(const PngFormat& f, int width, int height, const SampleFn& sample) {
  static constexpr int kChannels[] = {1, 0, 3, 1, 2, 0, 4};
  const int channels = kChannels[f.colourType], bytes = f.bitDepth == 16 ? 2 : 1;
  Bytes out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &out, AppendPng, nullptr);
  png_set_IHDR(png, info, width, height, f.bitDepth, f.colourType, f.interlaced, 0, 0);
  std::vector<png_color> plte;
  for (int i = 0; i < f.paletteSize; ++i)
    plte.push_back(
        {png_byte(rm::RedOf(kPalette[i])), png_byte(rm::GreenOf(kPalette[i])), png_byte(rm::BlueOf(kPalette[i]))});
  if (f.paletteSize > 0) png_set_PLTE(png, info, plte.data(), f.paletteSize);
  auto trns16 = [&](int i) { return png_uint_16(f.trns[2 * i] << 8 | f.trns[2 * i + 1]); };
  png_color_16 trnsColour{0, trns16(0), trns16(1), trns16(2), trns16(0)};
  if (f.trnsSize > 0 && f.colourType == 3) png_set_tRNS(png, info, f.trns.data(), f.trnsSize, nullptr);
  if (f.trnsSize > 0 && f.colourType != 3) png_set_tRNS(png, info, nullptr, 1, &trnsColour);
  png_write_info(png, info);
  if (sample) {
    if (f.bitDepth < 8) png_set_packing(png);
    std::vector<Bytes> rows(height, Bytes(static_cast<std::size_t>(width) * channels * bytes));
    std::vector<png_bytep> rowPointers;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x)
        for (int c = 0; c < channels; ++c)
          for (int b = 0; b < bytes; ++b)
            rows[y][(x * channels + c) * bytes + b] = (sample(x, y, c) >> (8 * (bytes - 1 - b))) & 0xFF;
      rowPointers.push_back(rows[y].data());
    }
    png_write_image(png, rowPointers.data());
    png_write_end(png, nullptr);
  }
  png_destroy_write_struct(&png, &info);
  if (f.breakChecksum) {
    const std::size_t type = std::search(out.begin(), out.end(), "IDAT", "IDAT" + 4) - out.begin();
    const std::size_t end = type + 4 + (out[type - 4] << 24 | out[type - 3] << 16 | out[type - 2] << 8 | out[type - 1]);
    out[end - 1] ^= 1;
    const std::uint32_t crc = Crc32(&out[type], end - type);
    for (int i = 0; i < 4; ++i) out[end + i] = (crc >> (24 - 8 * i)) & 0xFF;
  }
  return out;
}

// Channel values for narrow bit fields and what they expand to, worked out by hand.
constexpr int k5[] = {0, 1, 15, 16, 31}, k5x8[] = {0, 8, 123, 132, 255};
constexpr int k6[] = {0, 1, 31, 32, 63}, k6x8[] = {0, 4, 125, 130, 255};

TEST(BmpDecoding, EveryHeaderDepthAndLayoutGivesExactPixels) {
  constexpr int W = 5, H = 3;  // odd width, so rows need padding
  auto paletted = [](int n) -> PixelFn { return [n](int x, int y) { return (x * 7 + y * 3) % n; }; };
  auto fromPalette = [](int n) -> ColourFn { return [n](int x, int y) { return kPalette[(x * 7 + y * 3) % n]; }; };
  auto r8 = [](int x, int) { return (x * 50 + 7) & 0xFF; };
  auto g8 = [](int x, int y) { return (y * 90 + x) & 0xFF; };
  auto b8 = [](int x, int y) { return (255 - x * y * 19) & 0xFF; };
  const PixelFn rgb24 = [&](int x, int y) { return std::uint32_t(r8(x, y) << 16 | g8(x, y) << 8 | b8(x, y)); };
  const ColourFn rgb = [&](int x, int y) { return MakeColour(r8(x, y), g8(x, y), b8(x, y)); };
  auto i5 = [](int x, int y, int k) { return (x + y * k) % 5; };
  const PixelFn p555 = [&](int x, int y) {
    return std::uint32_t(k5[i5(x, y, 1)] << 10 | k5[i5(x, y, 2)] << 5 | k5[i5(x, y, 3)]);
  };
  const PixelFn p565 = [&](int x, int y) {
    return std::uint32_t(k5[i5(x, y, 1)] << 11 | k6[i5(x, y, 2)] << 5 | k5[i5(x, y, 3)]);
  };
  const ColourFn c555 = [&](int x, int y) {
    return MakeColour(k5x8[i5(x, y, 1)], k5x8[i5(x, y, 2)], k5x8[i5(x, y, 3)]);
  };
  const ColourFn c565 = [&](int x, int y) {
    return MakeColour(k5x8[i5(x, y, 1)], k6x8[i5(x, y, 2)], k5x8[i5(x, y, 3)]);
  };
  // Alpha in the top byte, red in the low byte; green 0 and blue 255 show the order of the channels.
  const PixelFn argb = [](int x, int y) { return std::uint32_t(AlphaAt(x, y).a) << 24 | 0xFF0000u | AlphaAt(x, y).c; };
  const ColourFn onWhite = [](int x, int y) { return MakeColour(AlphaAt(x, y).expected, 255 - AlphaAt(x, y).a, 255); };

  struct Case {
    const char* name;
    BmpFormat format;
    PixelFn raw;
    ColourFn expect;
  };
  const std::vector<Case> cases = {
      {"core 1 bit", {.headerSize = 12, .bitCount = 1, .paletteSize = 2}, paletted(2), fromPalette(2)},
      {"core 4 bit", {.headerSize = 12, .bitCount = 4, .paletteSize = 16}, paletted(16), fromPalette(16)},
      {"core 24 bit", {.headerSize = 12, .bitCount = 24}, rgb24, rgb},
      {"info 1 bit", {.bitCount = 1, .paletteSize = 2}, paletted(2), fromPalette(2)},
      {"info 2 bit", {.bitCount = 2, .paletteSize = 4}, paletted(4), fromPalette(4)},
      {"info 4 bit", {.bitCount = 4, .paletteSize = 16}, paletted(16), fromPalette(16)},
      {"info 8 bit, 20 colours", {.bitCount = 8, .paletteSize = 20, .coloursUsed = 20}, paletted(20), fromPalette(20)},
      {"info 8 bit top-down", {.bitCount = 8, .topDown = true, .paletteSize = 256}, paletted(256), fromPalette(256)},
      {"info 16 bit 555", {.bitCount = 16}, p555, c555},
      {"info 16 bit 565 fields", {.bitCount = 16, .compression = 3, .masks = {0xF800, 0x07E0, 0x001F}}, p565, c565},
      {"info 24 bit", {.bitCount = 24}, rgb24, rgb},
      {"info 24 bit top-down", {.bitCount = 24, .topDown = true}, rgb24, rgb},
      {"info 32 bit, fourth byte ignored",
       {.bitCount = 32},
       [&](int x, int y) { return rgb24(x, y) | 0x5A000000u; },
       rgb},
      {"info 32 bit, reversed fields",
       {.bitCount = 32, .compression = 3, .masks = {0xFF, 0xFF00, 0xFF0000}},
       [&](int x, int y) { return std::uint32_t(b8(x, y) << 16 | g8(x, y) << 8 | r8(x, y)); },
       rgb},
      {"info 32 bit alpha fields",
       {.bitCount = 32, .compression = 6, .masks = {0xFF, 0xFF00, 0xFF0000, 0xFF000000}},
       argb,
       onWhite},
      {"OS/2 2.x 8 bit", {.headerSize = 64, .bitCount = 8, .paletteSize = 30}, paletted(30), fromPalette(30)},
      {"V4 32 bit alpha",
       {.headerSize = 108, .bitCount = 32, .compression = 3, .masks = {0xFF, 0xFF00, 0xFF0000, 0xFF000000}},
       argb,
       onWhite},
      {"V4 32 bit, alpha all zero reads as opaque",
       {.headerSize = 108, .bitCount = 32, .compression = 3, .masks = {0xFF0000, 0xFF00, 0xFF, 0xFF000000}},
       rgb24,
       rgb},
      {"V5 16 bit 565",
       {.headerSize = 124, .bitCount = 16, .compression = 3, .masks = {0xF800, 0x07E0, 0x001F}},
       p565,
       c565},
      {"V5 24 bit top-down", {.headerSize = 124, .bitCount = 24, .topDown = true}, rgb24, rgb},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ExpectPixels(LoadPicture("variant.bmp", MakePlainBmp(c.format, W, H, c.raw)), W, H, c.expect);
  }
}

TEST(BmpDecoding, RunLengthStreamsWithDeltasLiteralsAndSkippedPixels) {
  const Colour W = rm::kWhite;  // pixels the stream skips
  auto p = [](int i) { return kPalette[i]; };
  struct Case {
    const char* name;
    int bitCount, compression, width, height;
    Bytes stream;                             // bottom row first
    std::vector<std::vector<Colour>> expect;  // top row first
  };
  const std::vector<Case> cases = {
      {"RLE8",
       8,
       1,
       5,
       3,
       {3, 1, 2, 2, 0, 0,  // B B B C C, end of line
        0, 3, 0, 1, 2, 0,  // literal A B C, padded to an even length
        0, 2, 1, 1,        // delta: 1 right, 1 up
        1, 3, 0, 1},       // D, end of picture
       {{W, W, W, W, p(3)}, {p(0), p(1), p(2), W, W}, {p(1), p(1), p(1), p(2), p(2)}}},
      {"RLE4",
       4,
       2,
       5,
       2,
       {5, 0x12, 0, 0,              // 1 2 1 2 1, end of line
        0, 5, 0x34, 0x56, 0x70, 0,  // literal 3 4 5 6 7, padded
        0, 1},
       {{p(3), p(4), p(5), p(6), p(7)}, {p(1), p(2), p(1), p(2), p(1)}}},
      {"RLE8 ending without an end marker", 8, 1, 2, 1, {2, 4}, {{p(4), p(4)}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const BmpFormat f{.bitCount = c.bitCount, .compression = std::uint32_t(c.compression), .paletteSize = 16};
    ExpectPixels(LoadPicture("rle.bmp", MakeBmp(f, c.width, c.height, c.stream)), c.width, c.height,
                 [&](int x, int y) { return c.expect[y][x]; });
  }
}

TEST(PngDecoding, EveryColourTypeDepthAndInterlaceGivesExactPixels) {
  constexpr int W = 7, H = 5;  // big enough for all seven interlace passes
  // 16 bit samples are scaled with rounding: 0x12FF is 18.9 in 8 bits.
  constexpr unsigned k16[] = {0x0000, 0x12FF, 0x8080, 0xFFFF}, k16x8[] = {0, 19, 128, 255};
  auto gray = [](int g) { return MakeColour(g, g, g); };
  auto idx = [](int n) { return [n](int x, int y, int) { return unsigned(x * 5 + y * 3) % n; }; };
  auto fromPalette = [](int n) -> ColourFn { return [n](int x, int y) { return kPalette[(x * 5 + y * 3) % n]; }; };
  auto rgbSample = [](int scale) -> SampleFn {
    return [scale](int x, int y, int c) { return unsigned(c == 0 ? x * 36 : c == 1 ? y * 60 : 255 - x * 10) * scale; };
  };
  const ColourFn rgb = [](int x, int y) { return MakeColour(x * 36, y * 60, 255 - x * 10); };
  auto rgbaSample = [](int scale) -> SampleFn {
    return [scale](int x, int y, int c) {
      return unsigned(c == 0 ? AlphaAt(x, y).c : c == 1 ? 0 : c == 2 ? 255 : AlphaAt(x, y).a) * scale;
    };
  };
  auto grayAlphaSample = [](int scale) -> SampleFn {
    return [scale](int x, int y, int c) { return unsigned(c == 0 ? AlphaAt(x, y).c : AlphaAt(x, y).a) * scale; };
  };
  const ColourFn rgbaOnWhite = [](int x, int y) {
    return MakeColour(AlphaAt(x, y).expected, 255 - AlphaAt(x, y).a, 255);
  };
  const ColourFn grayOnWhite = [&](int x, int y) { return gray(AlphaAt(x, y).expected); };
  // Palette entries 0..2 carry alpha 0, 128 and 50; the others are opaque.
  const ColourFn paletteOnWhite = [](int x, int y) {
    const int i = (x * 5 + y * 3) % 10;
    const int alpha = i == 0 ? 0 : i == 1 ? 128 : i == 2 ? 50 : 255;
    const Colour c = kPalette[i];
    return MakeColour(rmtest::OnWhite(rm::RedOf(c), alpha), rmtest::OnWhite(rm::GreenOf(c), alpha),
                      rmtest::OnWhite(rm::BlueOf(c), alpha));
  };

  struct Case {
    const char* name;
    PngFormat format;
    SampleFn sample;
    ColourFn expect;
  };
  const std::vector<Case> cases = {
      {"gray 1",
       {.bitDepth = 1, .colourType = 0},
       [](int x, int y, int) { return unsigned(x + y) % 2; },
       [&](int x, int y) { return gray((x + y) % 2 * 255); }},
      {"gray 2",
       {.bitDepth = 2, .colourType = 0},
       [](int x, int y, int) { return unsigned(x + y) % 4; },
       [&](int x, int y) { return gray((x + y) % 4 * 85); }},
      {"gray 4",
       {.bitDepth = 4, .colourType = 0},
       [](int x, int y, int) { return unsigned(x * 3 + y) % 16; },
       [&](int x, int y) { return gray((x * 3 + y) % 16 * 17); }},
      {"gray 8",
       {.bitDepth = 8, .colourType = 0},
       [](int x, int y, int) { return unsigned(x * 30 + y); },
       [&](int x, int y) { return gray(x * 30 + y); }},
      {"gray 16",
       {.bitDepth = 16, .colourType = 0},
       [&](int x, int y, int) { return k16[(x + y) % 4]; },
       [&](int x, int y) { return gray(k16x8[(x + y) % 4]); }},
      {"gray 8 with a transparent level",
       {.bitDepth = 8, .colourType = 0, .trns = {0, 60}, .trnsSize = 2},
       [](int x, int y, int) { return unsigned(x * 30 + y); },
       [&](int x, int y) { return x * 30 + y == 60 ? rm::kWhite : gray(x * 30 + y); }},
      {"gray+alpha 8", {.bitDepth = 8, .colourType = 4}, grayAlphaSample(1), grayOnWhite},
      {"gray+alpha 16", {.bitDepth = 16, .colourType = 4}, grayAlphaSample(257), grayOnWhite},
      {"RGB 8", {.bitDepth = 8, .colourType = 2}, rgbSample(1), rgb},
      {"RGB 16", {.bitDepth = 16, .colourType = 2}, rgbSample(257), rgb},
      {"RGB 8 with a transparent colour",
       {.bitDepth = 8, .colourType = 2, .trns = {0, 72, 0, 120, 0, 235}, .trnsSize = 6},
       rgbSample(1),
       [&](int x, int y) { return x == 2 && y == 2 ? rm::kWhite : rgb(x, y); }},
      {"RGBA 8", {.bitDepth = 8, .colourType = 6}, rgbaSample(1), rgbaOnWhite},
      {"RGBA 16", {.bitDepth = 16, .colourType = 6}, rgbaSample(257), rgbaOnWhite},
      {"palette 1", {.bitDepth = 1, .colourType = 3, .paletteSize = 2}, idx(2), fromPalette(2)},
      {"palette 2", {.bitDepth = 2, .colourType = 3, .paletteSize = 4}, idx(4), fromPalette(4)},
      {"palette 4", {.bitDepth = 4, .colourType = 3, .paletteSize = 16}, idx(16), fromPalette(16)},
      {"palette 8", {.bitDepth = 8, .colourType = 3, .paletteSize = 256}, idx(256), fromPalette(256)},
      {"palette 8 with alpha",
       {.bitDepth = 8, .colourType = 3, .paletteSize = 10, .trns = {0, 128, 50}, .trnsSize = 3},
       idx(10),
       paletteOnWhite},
      {"interlaced gray 2",
       {.bitDepth = 2, .colourType = 0, .interlaced = true},
       [](int x, int y, int) { return unsigned(x + y) % 4; },
       [&](int x, int y) { return gray((x + y) % 4 * 85); }},
      {"interlaced palette 4",
       {.bitDepth = 4, .colourType = 3, .interlaced = true, .paletteSize = 16},
       idx(16),
       fromPalette(16)},
      {"interlaced RGB 8", {.bitDepth = 8, .colourType = 2, .interlaced = true}, rgbSample(1), rgb},
      {"interlaced RGBA 16", {.bitDepth = 16, .colourType = 6, .interlaced = true}, rgbaSample(257), rgbaOnWhite},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ExpectPixels(LoadPicture("variant.png", MakePng(c.format, W, H, c.sample)), W, H, c.expect);
  }
}

Bytes BmpHeaderOnly(int width, int height, int bitCount = 24, std::uint32_t compression = 0) {
  return MakeBmp({.bitCount = bitCount, .compression = compression}, width, height, {});
}

TEST(ImageLoading, BadInputFailsWithAMessageAndLeavesTheBitmapAlone) {
  const PixelFn any = [](int x, int y) { return std::uint32_t(x * 40 + y); };
  const Bytes bmp24 = MakePlainBmp({.bitCount = 24}, 4, 3, any);  // rows need no padding
  const Bytes bmp8 = MakePlainBmp({.bitCount = 8, .paletteSize = 256}, 4, 3, any);
  const Bytes rle8 = MakeBmp({.bitCount = 8, .compression = 1, .paletteSize = 4}, 3, 2, {3, 1, 0, 0, 1, 2, 0, 1});
  const Bytes png = MakePng({.interlaced = true}, 7, 5, [](int x, int y, int c) { return unsigned(x + y + c); });
  Bytes badCrc = png;
  badCrc[29] ^= 1;  // the CRC of IHDR
  const Bytes badAdler =
      MakePng({.breakChecksum = true}, 7, 5, [](int x, int y, int c) { return unsigned(x + y + c); });
  Bytes badMasks = MakePlainBmp({.bitCount = 16, .compression = 3, .masks = {0xF00F, 0x07E0, 0x001F}}, 2, 2, any);

  std::vector<rmtest::RefusedPicture> cases = {
      {"empty.bmp", {}, "the file is empty"},
      {"text.png", Bytes{'h', 'e', 'l', 'l', 'o', '\n'}, "the file is not a picture of a known kind"},
      {"huge.bmp", BmpHeaderOnly(100000, 100000), "the picture is too large (100000 x 100000 pixels"},
      {"top-down.bmp", BmpHeaderOnly(20000, -20000), "the picture is too large (20000 x 20000 pixels"},
      {"zero.bmp", BmpHeaderOnly(0, 5), "the picture has an invalid size (0 x 5 pixels)"},
      {"huge.png", MakePng({}, 100000, 100000, nullptr), "the picture is too large (100000 x 100000 pixels"},
      {"wide.png", MakePng({}, 40000, 1, nullptr), "the picture is too large (40000 x 1 pixels"},
      {"7-bit.bmp", BmpHeaderOnly(2, 2, 7), "BMP files with 7 bits per pixel are not supported"},
      {"jpeg.bmp", BmpHeaderOnly(2, 2, 0, 4), "BMP files holding a JPEG picture are not supported"},
      {"rle8-4-bit.bmp", BmpHeaderOnly(2, 2, 4, 1), "the BMP header is inconsistent (RLE8 compression with 4"},
      {"split-mask.bmp", badMasks, "the BMP colour masks are invalid"},
      {"rle8-past.bmp", MakeBmp({.bitCount = 8, .compression = 1, .paletteSize = 2}, 2, 1, {2, 1, 0, 0, 1, 1, 0, 1}),
       "the compressed picture data runs past the end of the picture"},
      {"delta-past.bmp", MakeBmp({.bitCount = 8, .compression = 1, .paletteSize = 2}, 2, 2, {0, 2, 0, 2, 1, 1, 0, 1}),
       "the compressed picture data runs past the end of the picture"},
      {"rle4-literal.bmp", MakeBmp({.bitCount = 4, .compression = 2, .paletteSize = 2}, 8, 1, {0, 6, 0x11}),
       "the file is truncated"},
      {"header-crc.png", badCrc, "the PNG data is damaged ("},
      {"zlib-checksum.png", badAdler, "the PNG data is damaged ("},
  };
  for (const Bytes* base : {&bmp24, &bmp8, &rle8})
    rmtest::AddCuts(cases, "bmp", *base, {16, 30, 54, 70, base->size() - 1});
  rmtest::AddCuts(cases, "png", png, {16, 30, 54, 70, png.size() - 1});
  rmtest::ExpectRefused(cases);
}

TEST(ImageLoading, MissingFilesAndFoldersAreNamedInTheMessage) {
  rm::PlatformImageCodecs codecs;
  const TempDir temp;
  const std::string& dir = temp.path;
  Bitmap out;
  std::string error;
  EXPECT_FALSE(codecs.Load(dir + "/nothere.png", out, error));
  EXPECT_EQ(error, "nothere.png: the file cannot be opened (No such file or directory)");
  std::filesystem::create_directory(dir + "/art.bmp");
  EXPECT_FALSE(codecs.Load(dir + "/art.bmp", out, error));
  EXPECT_EQ(error, "art.bmp: this is a folder, not a picture file");
  EXPECT_TRUE(out.Empty());
}

TEST(ImageLoading, FormatComesFromTheContentNotTheName) {
  const Bytes bmp = MakePlainBmp({.bitCount = 24}, 1, 1, [](int, int) { return 0x102030u; });
  EXPECT_EQ(LoadPicture("photo.png", bmp).GetPixel(0, 0), MakeColour(0x10, 0x20, 0x30));
  const Bytes png = MakePng({}, 1, 1, [](int, int, int c) { return unsigned(0x10 * (c + 1)); });
  EXPECT_EQ(LoadPicture("photo.bmp", png).GetPixel(0, 0), MakeColour(0x10, 0x20, 0x30));
}

std::vector<std::string> FilesIn(const std::string& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

TEST(PngSaving, RoundTripsExactlyAsEightBitRgbAndReplacesTheOldFile) {
  const TempDir temp;
  const std::string& dir = temp.path;
  const std::string path = dir + "/logo.png";
  std::ofstream(path) << "an older file";
  Bitmap picture(9, 4);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 9; ++x) picture.SetPixel(x, y, MakeColour(x * 31, y * 80, (x * y * 13) & 0xFF));
  picture.SetPixel(8, 3, rm::kBlack);

  rm::PlatformImageCodecs codecs;
  std::string error;
  ASSERT_TRUE(codecs.SavePng(picture, path, error)) << error;
  EXPECT_EQ(FilesIn(dir), std::vector<std::string>{"logo.png"});
  const std::string bytes = rmtest::ReadFile(path);
  ASSERT_GT(bytes.size(), 26u);
  EXPECT_EQ(bytes[24], 8) << "bit depth";
  EXPECT_EQ(bytes[25], 2) << "colour type RGB";
  EXPECT_EQ(bytes[28], 0) << "not interlaced";
  Bitmap loaded;
  ASSERT_TRUE(codecs.Load(path, loaded, error)) << error;
  EXPECT_EQ(loaded, picture);
}

TEST(PngSaving, FailuresLeaveNoTemporaryFileBehind) {
  const TempDir temp;
  const std::string& dir = temp.path;
  std::filesystem::create_directory(dir + "/taken.png");
  struct Case {
    std::string path;
    Bitmap picture;
    std::string message;
  };
  const std::vector<Case> cases = {
      {dir + "/missing/out.png", Bitmap(2, 2), "out.png: the file cannot be created (No such file or directory)"},
      {dir + "/taken.png", Bitmap(2, 2), "taken.png: the file cannot be replaced (Is a directory)"},
      {dir + "/empty.png", Bitmap(), "empty.png: an empty picture cannot be saved"},
  };
  rm::PlatformImageCodecs codecs;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    std::string error;
    EXPECT_FALSE(codecs.SavePng(c.picture, c.path, error));
    EXPECT_EQ(error, c.message);
  }
  EXPECT_EQ(FilesIn(dir), std::vector<std::string>{"taken.png"});
}

}  // namespace
