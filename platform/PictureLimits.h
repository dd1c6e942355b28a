#pragma once
#include <cstdint>
#include <string>

namespace rm {

// The largest picture the decoders accept. The check runs on the declared size, before any
// pixel memory is allocated, so a damaged or hostile header cannot make us reserve gigabytes.
constexpr std::int64_t kMaxPictureSide = 32768;
constexpr std::int64_t kMaxPicturePixels = std::int64_t{256} * 1024 * 1024;

// Returns an empty string when a picture of this size may be decoded, else the reason. A caller
// with less memory to spare (the fuzz target) may lower the number of pixels allowed.
inline std::string CheckPictureSize(std::int64_t width, std::int64_t height,
                                    std::int64_t maxPixels = kMaxPicturePixels) {
  if (width <= 0 || height <= 0)
    return "the picture has an invalid size (" + std::to_string(width) + " x " + std::to_string(height) + " pixels)";
  if (width > kMaxPictureSide || height > kMaxPictureSide || width * height > kMaxPicturePixels)
    return "the picture is too large (" + std::to_string(width) + " x " + std::to_string(height) +
           " pixels; the limit is 32768 on a side and 268435456 pixels in all)";
  if (width * height > maxPixels)
    return "the picture is too large (" + std::to_string(width) + " x " + std::to_string(height) +
           " pixels; the limit here is " + std::to_string(maxPixels) + " pixels)";
  return {};
}

// A decoder reports "the file is truncated" through this text so that every format words it alike.
inline constexpr const char* kTruncatedMessage = "the file is truncated";

}  // namespace rm
