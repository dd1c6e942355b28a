#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/Bitmap.h"
#include "platform/PictureLimits.h"

namespace rm {

// The decoders behind PlatformImageCodecs, one per file kind, each on a whole file held in memory.
// All of them give a 24 bit picture with any transparency composed on white. On failure they
// return false, leave `out` untouched and put the reason, without the file name, into `error`.
// A declared size is checked against `maxPixels` before any pixel memory is allocated.

// JPEG through libjpeg-turbo: baseline, progressive and arithmetic coded; grey, RGB, YCbCr, CMYK
// and YCCK.
bool DecodeJpeg(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
                std::int64_t maxPixels = kMaxPicturePixels);

// The first frame of a GIF through giflib, laid on the logical screen.
bool DecodeGif(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
               std::int64_t maxPixels = kMaxPicturePixels);

// The first page of a TIFF through libtiff's RGBA interface.
bool DecodeTiff(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
                std::int64_t maxPixels = kMaxPicturePixels);

// The largest, then deepest, picture of a Windows icon file.
bool DecodeIco(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
               std::int64_t maxPixels = kMaxPicturePixels);

// Renders an SVG drawing through librsvg. With `width` and `height` both above 0 the drawing is
// fitted into that size in proportion and centred; otherwise it takes its own size (256 x 256
// when it declares none).
bool RenderSvg(const std::uint8_t* data, std::size_t size, int width, int height, Bitmap& out, std::string& error,
               std::int64_t maxPixels = kMaxPicturePixels);

}  // namespace rm
