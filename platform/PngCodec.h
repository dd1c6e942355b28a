#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "engine/Bitmap.h"
#include "platform/PictureLimits.h"

namespace rm {

// PNG through libpng. Errors come back as text without the file name; the caller adds it.
class PngCodec {
 public:
  // Decodes a whole PNG file held in memory: every bit depth and colour type, palettes,
  // transparency chunks and interlacing. 16 bit samples are scaled to 8 bits with rounding and
  // alpha is composed on white. On failure returns false and leaves `out` untouched.
  static bool Decode(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
                     std::int64_t maxPixels = kMaxPicturePixels);

  // Writes `bitmap` as an 8 bit RGB PNG, not interlaced, with no extra chunks, so that equal
  // pictures give equal files.
  static bool Encode(const Bitmap& bitmap, std::FILE* file, std::string& error);
};

}  // namespace rm
