#pragma once
#include <string>

#include "engine/Bitmap.h"

namespace rm {

// Reading and writing picture files. The platform layer implements it with the image libraries;
// the headless code only sees this port.
class ImageCodecs {
 public:
  virtual ~ImageCodecs() = default;
  // Decodes the file into `out` (24 bit, alpha composed on white). On failure returns false,
  // leaves `out` untouched and puts a message for the user into `error`.
  virtual bool Load(const std::string& path, Bitmap& out, std::string& error) = 0;
  // Writes a 24 bit PNG through a temporary file and a rename.
  virtual bool SavePng(const Bitmap& bitmap, const std::string& path, std::string& error) = 0;
};

}  // namespace rm
