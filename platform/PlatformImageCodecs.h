#pragma once
#include <string>

#include "engine/ImageCodecs.h"

namespace rm {

// The ImageCodecs port on top of the image libraries. The format of a file is told by its first
// bytes, never by its name. Every message starts with the file's name.
class PlatformImageCodecs : public ImageCodecs {
 public:
  bool Load(const std::string& path, Bitmap& out, std::string& error) override;
  bool SavePng(const Bitmap& bitmap, const std::string& path, std::string& error) override;
};

}  // namespace rm
