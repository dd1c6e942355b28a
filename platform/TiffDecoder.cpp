#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "platform/PictureDecoders.h"

namespace rm {
namespace {

// The file in memory as libtiff's client procedures see it. Reads past the end are remembered,
// so that a failure they cause is reported as a cut-short file.
struct MemoryFile {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t pos;
  bool readPastEnd;
  std::string firstError;
};

tmsize_t Read(thandle_t handle, void* dest, tmsize_t length) {
  auto* file = static_cast<MemoryFile*>(handle);
  if (length < 0) return -1;
  const std::size_t left = file->pos < file->size ? file->size - file->pos : 0;
  std::size_t count = static_cast<std::size_t>(length);
  if (count > left) {
    file->readPastEnd = true;
    count = left;
  }
  if (count > 0) std::memcpy(dest, file->data + file->pos, count);
  file->pos += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t Write(thandle_t, void*, tmsize_t) { return -1; }

toff_t Seek(thandle_t handle, toff_t offset, int whence) {
  auto* file = static_cast<MemoryFile*>(handle);
  std::uint64_t base = 0;
  if (whence == SEEK_CUR) base = file->pos;
  if (whence == SEEK_END) base = file->size;
  const std::uint64_t target = base + offset;
  // Seeking past the end is allowed, as with a file; reading there is what fails.
  if (target > (std::uint64_t{1} << 62)) return static_cast<toff_t>(-1);
  file->pos = static_cast<std::size_t>(target);
  return target;
}

int Close(thandle_t) { return 0; }
toff_t Size(thandle_t handle) { return static_cast<MemoryFile*>(handle)->size; }
// No mapping: every read goes through Read, so a read past the end is always seen.
int Map(thandle_t, void**, toff_t*) { return 0; }
void Unmap(thandle_t, void*, toff_t) {}

// libtiff's handlers print on stderr by default. Errors are kept for the message (the first one
// says most); warnings are dropped.
int OnError(TIFF*, void* user, const char*, const char* format, va_list args) {
  auto* file = static_cast<MemoryFile*>(user);
  if (file->firstError.empty()) {
    char text[512];
    std::vsnprintf(text, sizeof text, format, args);
    file->firstError = text;
  }
  return 1;
}

int OnWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct OptionsFree {
  void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};
struct TiffClose {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

}  // namespace

bool DecodeTiff(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error, std::int64_t maxPixels) {
  // Messages that libtiff cannot tie to an open file go to the process-wide handlers; those must
  // not print either.
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);

  MemoryFile file{data, size, 0, false, {}};
  std::unique_ptr<TIFFOpenOptions, OptionsFree> options(TIFFOpenOptionsAlloc());
  if (!options) {
    error = "there is not enough memory to read the picture";
    return false;
  }
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), OnError, &file);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), OnWarning, &file);
  // No single buffer of the library may exceed what the largest picture we accept needs.
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(),
                                      static_cast<tmsize_t>(std::max<std::int64_t>(maxPixels, 1 << 20) * 8));

  auto fail = [&](const char* what) {
    if (file.readPastEnd)
      error = kTruncatedMessage;
    else if (!file.firstError.empty())
      error = std::string("the TIFF ") + what + " (" + file.firstError + ")";
    else
      error = std::string("the TIFF ") + what;
    return false;
  };

  // "m": no memory mapping, so that Read sees every access.
  std::unique_ptr<TIFF, TiffClose> tiff(
      TIFFClientOpenExt("picture", "rm", &file, Read, Write, Seek, Close, Size, Map, Unmap, options.get()));
  if (!tiff) return fail("file cannot be read");

  std::uint32_t width = 0, height = 0;
  if (TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) != 1 ||
      TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height) != 1)
    return fail("file does not say the size of its picture");
  if (std::string reason = CheckPictureSize(width, height, maxPixels); !reason.empty()) {
    error = reason;
    return false;
  }
  char why[1024] = "";
  if (TIFFRGBAImageOK(tiff.get(), why) != 1) {
    error = std::string("this kind of TIFF picture is not supported (") + why + ")";
    return false;
  }

  std::vector<std::uint32_t> raster(static_cast<std::size_t>(width) * height);
  if (TIFFReadRGBAImageOriented(tiff.get(), width, height, raster.data(), ORIENTATION_TOPLEFT, 1) != 1)
    return fail("picture data cannot be read");

  // The raster holds alpha-premultiplied samples; on white the colour is c + (255 - a).
  Bitmap picture(static_cast<int>(width), static_cast<int>(height));
  for (std::uint32_t y = 0; y < height; ++y) {
    const std::uint32_t* source = raster.data() + static_cast<std::size_t>(y) * width;
    std::uint32_t* dest = picture.Row(static_cast<int>(y));
    for (std::uint32_t x = 0; x < width; ++x) {
      const std::uint32_t p = source[x];
      const int white = 255 - static_cast<int>(TIFFGetA(p));
      auto on = [white](std::uint32_t c) { return std::min(255, static_cast<int>(c) + white); };
      dest[x] = static_cast<std::uint32_t>(MakeColour(on(TIFFGetR(p)), on(TIFFGetG(p)), on(TIFFGetB(p))));
    }
  }
  out = std::move(picture);
  return true;
}

}  // namespace rm
