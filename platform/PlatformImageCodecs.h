#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/ImageCodecs.h"
#include "platform/PictureLimits.h"

namespace rm {

// The ImageCodecs port on top of the image libraries. The format of a file is told by its first
// bytes, never by its name. Every message starts with the file's name.
class PlatformImageCodecs : public ImageCodecs {
 public:
  PlatformImageCodecs() = default;
  // A smaller pixel budget than the usual limits, for callers short of memory (the fuzz target).
  explicit PlatformImageCodecs(std::int64_t maxPixels) : maxPixels_(maxPixels) {}

  bool Load(const std::string& path, Bitmap& out, std::string& error) override;
  bool Load(const std::string& path, const LoadOptions& options, Bitmap& out, std::string& error) override;
  // Decodes a whole file held in memory; `name` starts the message as the file's name would.
  bool LoadFromMemory(const std::uint8_t* data, std::size_t size, const std::string& name, const LoadOptions& options,
                      Bitmap& out, std::string& error) const;
  bool SavePng(const Bitmap& bitmap, const std::string& path, std::string& error) override;
  bool SaveBmp(const Bitmap& bitmap, const std::string& path, std::string& error) override;
  // The bytes of a 24 bit bottom-up BMP file of `bitmap`.
  static std::string EncodeBmp(const Bitmap& bitmap);

 private:
  std::int64_t maxPixels_ = kMaxPicturePixels;
};

}  // namespace rm
