#pragma once
#include <string>

#include "engine/Bitmap.h"

namespace rm {

// How a picture is to be decoded. Only drawings without a pixel size of their own (SVG) use it.
struct LoadOptions {
  // The size to render a drawing at, kept in proportion and centred on white. 0 in either means
  // the drawing's own size.
  int svgWidth = 0;
  int svgHeight = 0;
};

// Reading and writing picture files. The platform layer implements it with the image libraries;
// the headless code only sees this port.
class ImageCodecs {
 public:
  virtual ~ImageCodecs() = default;
  // Decodes the file into `out` (24 bit, alpha composed on white). On failure returns false,
  // leaves `out` untouched and puts a message for the user into `error`.
  virtual bool Load(const std::string& path, Bitmap& out, std::string& error) = 0;
  // The same with options; a port that has no use for them reads the file as above.
  virtual bool Load(const std::string& path, const LoadOptions& options, Bitmap& out, std::string& error) {
    (void)options;
    return Load(path, out, error);
  }
  // Writes a 24 bit PNG through a temporary file and a rename.
  virtual bool SavePng(const Bitmap& bitmap, const std::string& path, std::string& error) = 0;
  // Writes an uncompressed 24 bit BMP through a temporary file and a rename. A port without a
  // writer refuses.
  virtual bool SaveBmp(const Bitmap& bitmap, const std::string& path, std::string& error) {
    (void)bitmap;
    error = path + ": BMP files cannot be written here";
    return false;
  }
};

}  // namespace rm
