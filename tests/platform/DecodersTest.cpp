// The JPEG, GIF, TIFF, ICO and SVG decoders, on pictures the tests make with the libraries'
// own encoders (ICO by hand around a BMP and a PNG), so that every expected pixel is known.
#include <gif_lib.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstdio>
// jpeglib.h needs FILE and size_t declared before it.
#include <jpeglib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/PlatformImageCodecs.h"
#include "support/DecoderChecks.h"

namespace {

using rm::Bitmap;
using rm::Colour;
using rm::MakeColour;
using rmtest::Bytes;
using rmtest::ColourFn;
using rmtest::ExpectPixels;
using rmtest::LoadPicture;
using rmtest::OnWhite;
using rmtest::Put16;
using rmtest::Put32;
using rmtest::ReadBytes;

// ---- JPEG ----

// Four flat 8 x 8 blocks, so that the lossy coding has no edges inside a block to blur.
const Colour kQuadrants[4] = {MakeColour(200, 30, 40), MakeColour(20, 180, 60), MakeColour(40, 50, 220),
                              MakeColour(250, 240, 10)};
Colour Quadrant(int x, int y) { return kQuadrants[(y / 8) * 2 + x / 8]; }

struct JpegSpec {
  J_COLOR_SPACE space = JCS_RGB;
  bool progressive = false;
  std::function<std::vector<int>(int x, int y)> samples;
};

Bytes MakeJpeg(const JpegSpec& spec, int width, int height) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &buffer, &size);
  info.image_width = width;
  info.image_height = height;
  info.input_components = spec.space == JCS_GRAYSCALE ? 1 : spec.space == JCS_CMYK ? 4 : 3;
  info.in_color_space = spec.space;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 100, TRUE);
  for (int c = 0; c < info.num_components; ++c) info.comp_info[c].h_samp_factor = info.comp_info[c].v_samp_factor = 1;
  if (spec.progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  std::vector<JSAMPLE> row(static_cast<std::size_t>(width) * info.input_components);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::vector<int> s = spec.samples(x, y);
      for (int c = 0; c < info.input_components; ++c) row[x * info.input_components + c] = static_cast<JSAMPLE>(s[c]);
    }
    JSAMPROW rows[] = {row.data()};
    jpeg_write_scanlines(&info, rows, 1);
  }
  jpeg_finish_compress(&info);
  Bytes bytes(buffer, buffer + size);
  jpeg_destroy_compress(&info);
  std::free(buffer);
  return bytes;
}

std::vector<int> RgbOf(Colour c) { return {rm::RedOf(c), rm::GreenOf(c), rm::BlueOf(c)}; }

Bytes RgbJpeg(bool progressive = false) {
  return MakeJpeg({JCS_RGB, progressive, [](int x, int y) { return RgbOf(Quadrant(x, y)); }}, 16, 16);
}

TEST(JpegDecoding, ColourGreyAndCmykPicturesComeOutAsRgbWithinTheCodingError) {
  const int grey[2] = {50, 200};
  // Adobe's convention, which the library's encoder marks: every ink sample stored inverted.
  // Left: red (no cyan, full magenta and yellow, no black); right: a mid grey from black ink alone.
  const std::vector<int> inverted[2] = {{255, 0, 0, 255}, {255, 255, 255, 128}};
  const Colour cmykColours[2] = {MakeColour(255, 0, 0), MakeColour(128, 128, 128)};
  struct Case {
    std::string name;
    Bytes jpeg;
    int width, height;
    ColourFn expect;
  };
  const std::vector<Case> cases = {
      {"RGB", RgbJpeg(), 16, 16, Quadrant},
      {"progressive", RgbJpeg(true), 16, 16, Quadrant},
      {"grey", MakeJpeg({JCS_GRAYSCALE, false, [&](int x, int) { return std::vector<int>{grey[x / 8]}; }}, 16, 8), 16,
       8, [&](int x, int) { return MakeColour(grey[x / 8], grey[x / 8], grey[x / 8]); }},
      {"CMYK", MakeJpeg({JCS_CMYK, false, [&](int x, int) { return inverted[x / 8]; }}, 16, 8), 16, 8,
       [&](int x, int) { return cmykColours[x / 8]; }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ExpectPixels(LoadPicture("photo.jpg", c.jpeg), c.width, c.height, c.expect, 3);
  }
}

// ---- GIF ----

struct GifSpec {
  int screenWidth, screenHeight;
  int left, top, width, height;
  bool interlaced = false;
  int transparent = NO_TRANSPARENT_COLOR;
  bool localMap = false;
};

const GifColorType kGifColours[4] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {10, 20, 30}};
int GifIndex(int x, int y) { return (x + 2 * y) % 4; }

int WriteToBytes(GifFileType* gif, const GifByteType* data, int length) {
  auto* out = static_cast<Bytes*>(gif->UserData);
  out->insert(out->end(), data, data + length);
  return length;
}

Bytes MakeGif(const GifSpec& s) {
  Bytes bytes;
  int error = 0;
  GifFileType* gif = EGifOpen(&bytes, WriteToBytes, &error);
  ColorMapObject* map = GifMakeMapObject(4, kGifColours);
  EGifSetGifVersion(gif, true);
  EGifPutScreenDesc(gif, s.screenWidth, s.screenHeight, 2, 0, s.localMap ? nullptr : map);
  if (s.transparent != NO_TRANSPARENT_COLOR) {
    GraphicsControlBlock control{};
    control.TransparentColor = s.transparent;
    GifByteType extension[4];
    const std::size_t length = EGifGCBToExtension(&control, extension);
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(length), extension);
  }
  EGifPutImageDesc(gif, s.left, s.top, s.width, s.height, s.interlaced, s.localMap ? map : nullptr);
  // Interlaced rows go out in the order of the four passes.
  static constexpr int kStart[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
  std::vector<int> order;
  if (s.interlaced) {
    for (int pass = 0; pass < 4; ++pass)
      for (int y = kStart[pass]; y < s.height; y += kStep[pass]) order.push_back(y);
  } else {
    for (int y = 0; y < s.height; ++y) order.push_back(y);
  }
  std::vector<GifPixelType> line(s.width);
  for (int y : order) {
    for (int x = 0; x < s.width; ++x) line[x] = static_cast<GifPixelType>(GifIndex(x, y));
    EGifPutLine(gif, line.data(), s.width);
  }
  EGifCloseFile(gif, &error);
  GifFreeMapObject(map);
  return bytes;
}

TEST(GifDecoding, TheFirstFrameLiesOnTheScreenWithWhiteAroundAndWhereTransparent) {
  const std::vector<GifSpec> cases = {
      {4, 3, 0, 0, 4, 3},
      {6, 5, 1, 2, 3, 2, false, 2},                            // a frame inside the screen, index 2 transparent
      {5, 11, 0, 0, 5, 11, true, NO_TRANSPARENT_COLOR, true},  // interlaced, local colour table
      {4, 4, 2, 2, 4, 4},                                      // the frame runs past the screen's edge
  };
  for (const GifSpec& s : cases) {
    SCOPED_TRACE(testing::Message() << s.screenWidth << "x" << s.screenHeight << " frame at " << s.left << "," << s.top
                                    << (s.interlaced ? " interlaced" : ""));
    ExpectPixels(LoadPicture("anim.gif", MakeGif(s)), s.screenWidth, s.screenHeight, [&](int x, int y) -> Colour {
      const int fx = x - s.left, fy = y - s.top;
      if (fx < 0 || fy < 0 || fx >= s.width || fy >= s.height) return rm::kWhite;
      const int index = GifIndex(fx, fy);
      if (index == s.transparent) return rm::kWhite;
      return MakeColour(kGifColours[index].Red, kGifColours[index].Green, kGifColours[index].Blue);
    });
  }
}

// ---- TIFF ----

struct TiffSpec {
  int samples = 3;  // 1 grey, 3 RGB, 4 RGB with unassociated alpha
  int orientation = ORIENTATION_TOPLEFT;
};

std::vector<int> TiffSample(int x, int y) { return {x * 60, y * 50, 255 - x * 20, (x * 85 + y * 40) % 256}; }

Bytes MakeTiff(const TiffSpec& s, int width, int height) {
  const std::string path = rmtest::SharedTemp() + "/made.tif";
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, s.samples);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, s.samples == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, s.orientation);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 2);
  if (s.samples == 4) {
    const std::uint16_t extra[] = {EXTRASAMPLE_UNASSALPHA};
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extra);
  }
  std::vector<std::uint8_t> row(static_cast<std::size_t>(width) * s.samples);
  for (int y = 0; y < height; ++y) {
    // Stored rows run bottom-up for the bottom-left orientation.
    const int shown = s.orientation == ORIENTATION_BOTLEFT ? height - 1 - y : y;
    for (int x = 0; x < width; ++x)
      for (int c = 0; c < s.samples; ++c) row[x * s.samples + c] = static_cast<std::uint8_t>(TiffSample(x, shown)[c]);
    TIFFWriteScanline(tiff, row.data(), y, 0);
  }
  TIFFClose(tiff);
  return ReadBytes(path);
}

TEST(TiffDecoding, GreyRgbAlphaAndBottomUpPicturesComeOutExactly) {
  const std::vector<TiffSpec> cases = {{1}, {3}, {4}, {3, ORIENTATION_BOTLEFT}};
  for (const TiffSpec& s : cases) {
    SCOPED_TRACE(testing::Message() << s.samples << " samples, orientation " << s.orientation);
    ExpectPixels(LoadPicture("scan.tiff", MakeTiff(s, 4, 5)), 4, 5, [&](int x, int y) {
      const std::vector<int> v = TiffSample(x, y);
      if (s.samples == 1) return MakeColour(v[0], v[0], v[0]);
      if (s.samples == 3) return MakeColour(v[0], v[1], v[2]);
      return MakeColour(OnWhite(v[0], v[3]), OnWhite(v[1], v[3]), OnWhite(v[2], v[3]));
    });
  }
}

// Rewrites the value of a one-value tag of the first directory of a little-endian TIFF as a LONG.
Bytes PatchTiffTag(Bytes tiff, std::uint16_t tag, std::uint32_t value) {
  auto u16 = [&](std::size_t at) { return tiff[at] | (tiff[at + 1] << 8); };
  const std::size_t ifd = tiff[4] | (tiff[5] << 8) | (tiff[6] << 16) | (tiff[7] << 24);
  for (int i = 0; i < u16(ifd); ++i) {
    const std::size_t entry = ifd + 2 + 12 * i;
    if (u16(entry) != tag) continue;
    const std::uint8_t bytes[10] = {4,
                                    0,
                                    1,
                                    0,
                                    0,
                                    0,
                                    std::uint8_t(value),
                                    std::uint8_t(value >> 8),
                                    std::uint8_t(value >> 16),
                                    std::uint8_t(value >> 24)};
    std::memcpy(&tiff[entry + 2], bytes, 10);
  }
  return tiff;
}

// ---- ICO ----

// One pixel as a DIB stores it. (push_back rather than an insert of a list: GCC 12's optimiser
// takes the latter on an empty vector for an overflow.)
void PushBgr(Bytes& b, Colour c) {
  b.push_back(static_cast<std::uint8_t>(rm::BlueOf(c)));
  b.push_back(static_cast<std::uint8_t>(rm::GreenOf(c)));
  b.push_back(static_cast<std::uint8_t>(rm::RedOf(c)));
}

Colour IconColour(int x, int y) { return MakeColour(30 + x * 50, 200 - y * 40, (x * y * 37) & 0xFF); }
int IconAlpha(int x, int y) {
  static constexpr int kAlpha[] = {0, 255, 128, 40};
  return kAlpha[(x + y) % 4];
}
bool IconMasked(int x, int y) { return (x + 2 * y) % 3 == 0; }

// A DIB as icons hold it: the height doubled, colour rows and then the AND mask, both bottom-up.
// 8 bit pictures use a palette of their own colours; 32 bit ones carry IconAlpha.
Bytes MakeIconDib(int width, int height, int bitCount) {
  Bytes dib;
  Put32(dib, 40);
  Put32(dib, width);
  Put32(dib, 2 * height);
  Put16(dib, 1);
  Put16(dib, bitCount);
  for (int i = 0; i < 6; ++i) Put32(dib, 0);
  if (bitCount == 8)
    for (int i = 0; i < 256; ++i) {
      const Colour c = i < width * height ? IconColour(i % width, i / width) : rm::kBlack;
      PushBgr(dib, c);
      dib.push_back(0);
    }
  for (int y = height - 1; y >= 0; --y) {
    Bytes row;
    for (int x = 0; x < width; ++x) {
      const Colour c = IconColour(x, y);
      if (bitCount == 8) {
        row.push_back(static_cast<std::uint8_t>(y * width + x));
        continue;
      }
      PushBgr(row, c);
      if (bitCount == 32) row.push_back(static_cast<std::uint8_t>(IconAlpha(x, y)));
    }
    row.resize((row.size() + 3) / 4 * 4);
    dib.insert(dib.end(), row.begin(), row.end());
  }
  for (int y = height - 1; y >= 0; --y) {
    Bytes row((width + 31) / 32 * 4);
    for (int x = 0; x < width; ++x)
      if (IconMasked(x, y)) row[x / 8] |= 0x80 >> (x % 8);
    dib.insert(dib.end(), row.begin(), row.end());
  }
  return dib;
}

Bytes MakePngFile(int width, int height) {
  Bitmap picture(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) picture.SetPixel(x, y, IconColour(x, y));
  const std::string path = rmtest::SharedTemp() + "/made.png";
  std::string error;
  EXPECT_TRUE(rm::PlatformImageCodecs().SavePng(picture, path, error)) << error;
  return ReadBytes(path);
}

// An icon directory around the given pictures; the directory's own size bytes are left 0, as
// many writers do for 256, so only the data can tell the sizes.
Bytes MakeIco(const std::vector<Bytes>& pictures) {
  Bytes ico;
  Put16(ico, 0);
  Put16(ico, 1);
  Put16(ico, static_cast<std::uint32_t>(pictures.size()));
  std::size_t offset = 6 + 16 * pictures.size();
  for (const Bytes& p : pictures) {
    for (int i = 0; i < 4; ++i) ico.push_back(0);
    Put16(ico, 1);
    Put16(ico, 0);
    Put32(ico, static_cast<std::uint32_t>(p.size()));
    Put32(ico, static_cast<std::uint32_t>(offset));
    offset += p.size();
  }
  for (const Bytes& p : pictures) ico.insert(ico.end(), p.begin(), p.end());
  return ico;
}

TEST(IcoDecoding, TheLargestThenDeepestPictureIsTakenWithItsTransparencyOnWhite) {
  const ColourFn masked = [](int x, int y) { return IconMasked(x, y) ? rm::kWhite : IconColour(x, y); };
  const ColourFn alpha = [](int x, int y) {
    const Colour c = IconColour(x, y);
    const int a = IconAlpha(x, y);
    return MakeColour(OnWhite(rm::RedOf(c), a), OnWhite(rm::GreenOf(c), a), OnWhite(rm::BlueOf(c), a));
  };
  struct Case {
    std::string name;
    Bytes ico;
    int width, height;
    ColourFn expect;
  };
  const std::vector<Case> cases = {
      {"24 bit with a mask", MakeIco({MakeIconDib(5, 3, 24)}), 5, 3, masked},
      {"8 bit with a mask", MakeIco({MakeIconDib(3, 4, 8)}), 3, 4, masked},
      {"32 bit with alpha", MakeIco({MakeIconDib(4, 4, 32)}), 4, 4, alpha},
      {"deepest of equal sizes", MakeIco({MakeIconDib(4, 4, 8), MakeIconDib(4, 4, 32), MakeIconDib(4, 4, 24)}), 4, 4,
       alpha},
      {"largest first", MakeIco({MakeIconDib(4, 4, 32), MakeIconDib(6, 5, 24), MakePngFile(3, 3)}), 6, 5, masked},
      {"a PNG entry", MakeIco({MakeIconDib(4, 4, 32), MakePngFile(7, 6)}), 7, 6, IconColour},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ExpectPixels(LoadPicture("app.ico", c.ico), c.width, c.height, c.expect);
  }
}

// ---- SVG ----

// Red left half, blue right half, in a 4 x 2 view box; the edges fall on whole pixels at every
// size used below, so no pixel is blended.
const std::string kHalves =
    R"(<rect width="2" height="2" fill="#ff0000"/><rect x="2" width="2" height="2" fill="#0000ff"/></svg>)";
Bytes Svg(const std::string& rootAttributes) {
  const std::string text = R"(<?xml version="1.0"?>)"
                           "\n<svg xmlns=\"http://www.w3.org/2000/svg\" " +
                           rootAttributes + ">" + kHalves;
  return Bytes(text.begin(), text.end());
}

TEST(SvgRendering, TheDrawingIsFittedInProportionAndCentredOnWhite) {
  // The drawing's content occupies [x0, x0 + w) x [y0, y0 + h) of the result.
  struct Case {
    std::string name, attributes;
    int svgWidth, svgHeight;
    int width, height, x0, y0, w, h;
  };
  const std::vector<Case> cases = {
      {"own size", R"(width="4" height="2" viewBox="0 0 4 2")", 0, 0, 4, 2, 0, 0, 4, 2},
      {"own size in another unit", R"(width="3pt" height="1.5pt" viewBox="0 0 4 2")", 0, 0, 4, 2, 0, 0, 4, 2},
      {"view box only", R"(viewBox="0 0 4 2")", 0, 0, 4, 2, 0, 0, 4, 2},
      {"no size at all", "", 0, 0, 256, 256, 0, 0, 4, 2},
      {"taller target: centred vertically", R"(width="4" height="2" viewBox="0 0 4 2")", 8, 8, 8, 8, 0, 2, 8, 4},
      {"wider target: centred horizontally", R"(width="4" height="2" viewBox="0 0 4 2")", 12, 4, 12, 4, 2, 0, 8, 4},
      {"a zero in the request means the own size", R"(width="4" height="2" viewBox="0 0 4 2")", 10, 0, 4, 2, 0, 0, 4,
       2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ExpectPixels(LoadPicture("logo.svg", Svg(c.attributes), {c.svgWidth, c.svgHeight}), c.width, c.height,
                 [&](int x, int y) {
                   if (x < c.x0 || y < c.y0 || x >= c.x0 + c.w || y >= c.y0 + c.h) return rm::kWhite;
                   return x - c.x0 < c.w / 2 ? MakeColour(255, 0, 0) : MakeColour(0, 0, 255);
                 });
  }
}

// ---- Bad input, every format ----

// Overwrites bytes at `at`; `at` counts from the position of `marker` when one is given.
Bytes Patch(Bytes bytes, const Bytes& with, std::size_t at, const Bytes& marker = {}) {
  if (!marker.empty()) at += std::search(bytes.begin(), bytes.end(), marker.begin(), marker.end()) - bytes.begin();
  std::copy(with.begin(), with.end(), bytes.begin() + at);
  return bytes;
}

TEST(PictureDecoding, BadFilesFailWithTheFileNamedAndLeaveTheBitmapAlone) {
  const Bytes jpeg = RgbJpeg();
  const Bytes gif = MakeGif({6, 5, 1, 2, 3, 2, true, 2});
  const Bytes tiff = MakeTiff({3}, 4, 5);
  const Bytes ico = MakeIco({MakeIconDib(5, 3, 24)});
  const Bytes icoPng = MakeIco({MakePngFile(7, 6)});
  const Bytes svg = Svg(R"(width="4" height="2")");
  const Bytes text = {'j', 'u', 's', 't', ' ', 't', 'e', 'x', 't', '\n'};
  // The screen's colour table (4 colours, 12 bytes) taken out, and its flag cleared.
  Bytes noColours = gif;
  noColours[10] = 0;
  noColours.erase(noColours.begin() + 13, noColours.begin() + 25);
  const std::string notSvg = "<html><!-- <svg --></html>";
  Bytes emf(88, 0);
  emf[0] = 1;
  std::memcpy(&emf[40], " EMF", 4);

  std::vector<rmtest::RefusedPicture> cases = {
      {"text.jpg", text, "the file is not a picture of a known kind"},
      {"drawing.emf", emf, "this is an EMF picture, and there is no EMF player on this platform"},
      // Declared sizes beyond the limits (JPEG cannot declare more than 65500, GIF 65535).
      {"huge.jpg", Patch(jpeg, {0xFF, 0xDC, 0xFF, 0xDC}, 5, {0xFF, 0xC0}), "the picture is too large (65500 x 65500"},
      {"huge.gif", Patch(gif, {0xFF, 0xFF, 0xFF, 0xFF}, 6), "the picture is too large (65535 x 65535"},
      {"huge.tif", PatchTiffTag(PatchTiffTag(tiff, 256, 100000), 257, 100000),
       "the picture is too large (100000 x 100000"},
      {"huge.ico", Patch(ico, {0xA0, 0x86, 0x01, 0, 0x40, 0x0D, 0x03, 0}, 22 + 4),
       "the picture is too large (100000 x 100000"},
      {"huge-png.ico", Patch(icoPng, {0, 1, 0x86, 0xA0, 0, 1, 0x86, 0xA0}, 22 + 16),
       "the picture is too large (100000 x 100000"},
      {"zero.gif", Patch(gif, {0, 0}, 5, {0x2C, 1, 0, 2, 0, 3, 0}), "the picture has an invalid size (0 x 2"},
      // Damaged headers.
      {"precision.jpg", Patch(jpeg, {12}, 4, {0xFF, 0xC0}),
       "the JPEG data is damaged (Unsupported JPEG data precision 12)"},
      {"photometric.tif", PatchTiffTag(tiff, 262, 77),
       "this kind of TIFF picture is not supported (Sorry, can not handle image with PhotometricInterpretation=77)"},
      {"magic.tif", Patch(tiff, {0xFF, 0xFF}, 2), "the file is not a picture of a known kind"},
      {"no-colours.gif", noColours, "the GIF picture has no colour table"},
      {"count.ico", Patch(ico, {9, 0}, 4), rm::kTruncatedMessage},
      {"depth.ico", Patch(ico, {7, 0}, 22 + 14), "icon pictures with 7 bits per pixel are not supported"},
      {"unclosed.svg", Bytes(svg.begin(), svg.end() - 6), "the SVG drawing cannot be read ("},
      {"not-svg.svg", Bytes(notSvg.begin(), notSvg.end()), "the SVG drawing cannot be read ("},
  };
  rmtest::AddCuts(cases, "jpg", jpeg, {4, 30, jpeg.size() / 2, jpeg.size() - 2});
  rmtest::AddCuts(cases, "gif", gif, {8, 13, 30, gif.size() - 3});
  rmtest::AddCuts(cases, "tif", tiff, {6, 60, tiff.size() / 2, tiff.size() - 1});
  rmtest::AddCuts(cases, "ico", ico, {6, 21, 40, ico.size() - 1});
  rmtest::AddCuts(cases, "ico", icoPng, {30, icoPng.size() - 1});
  rmtest::ExpectRefused(cases);
}

}  // namespace
