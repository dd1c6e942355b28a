#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/Bitmap.h"
#include "platform/PictureLimits.h"

namespace rm {

// Reads Windows and OS/2 bitmaps from memory: the OS/2 core header, the OS/2 2.x header, and
// BITMAPINFOHEADER with its later versions (V2 to V5); 1, 2, 4, 8, 16, 24 and 32 bits per pixel;
// uncompressed, RLE4, RLE8 and bit fields; rows stored bottom-up or top-down.
class BmpDecoder {
 public:
  // `data` holds the whole file. On success fills `out`; on failure returns false and puts the
  // reason (without the file name) into `error`, leaving `out` untouched.
  static bool Decode(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
                     std::int64_t maxPixels = kMaxPicturePixels);
};

}  // namespace rm
