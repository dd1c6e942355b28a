#include "platform/PlatformImageCodecs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "platform/BmpDecoder.h"
#include "platform/PictureDecoders.h"
#include "platform/PngCodec.h"
#include "engine/TextLines.h"

namespace rm {
namespace {

// No picture within the size limits needs a larger file; refusing bigger ones up front keeps a
// stray disk image or video from being pulled into memory.
constexpr std::uint64_t kMaxFileSize = std::uint64_t{2} * 1024 * 1024 * 1024;

enum class Format { Png, Bmp, Jpeg, Gif, Tiff, Ico, Svg, Emf, Unknown };

std::string NameOf(const std::string& path) {
  std::string name = std::filesystem::path(path).filename().string();
  return name.empty() ? path : name;
}

bool StartsWith(std::span<const std::uint8_t> bytes, std::string_view prefix) {
  return bytes.size() >= prefix.size() && std::memcmp(bytes.data(), prefix.data(), prefix.size()) == 0;
}

// SVG is text: an optional byte order mark and blanks, then markup with an <svg element near
// the top (after the XML declaration, comments or a doctype).
bool LooksLikeSvg(std::span<const std::uint8_t> bytes) {
  std::string_view text(reinterpret_cast<const char*>(bytes.data()), std::min<std::size_t>(bytes.size(), 4096));
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos || text[first] != '<') return false;
  return text.find("<svg") != std::string_view::npos;
}

Format Identify(std::span<const std::uint8_t> bytes) {
  using namespace std::string_view_literals;
  if (StartsWith(bytes, "\x89PNG\r\n\x1A\n"sv)) return Format::Png;
  if (StartsWith(bytes, "BM"sv)) return Format::Bmp;
  if (StartsWith(bytes, "\xFF\xD8\xFF"sv)) return Format::Jpeg;
  if (StartsWith(bytes, "GIF87a"sv) || StartsWith(bytes, "GIF89a"sv)) return Format::Gif;
  if (StartsWith(bytes, "II*\0"sv) || StartsWith(bytes, "MM\0*"sv) || StartsWith(bytes, "II+\0"sv) ||
      StartsWith(bytes, "MM\0+"sv))
    return Format::Tiff;
  if (StartsWith(bytes, "\0\0\1\0"sv) && bytes.size() >= 6 && (bytes[4] | bytes[5]) != 0) return Format::Ico;
  // An enhanced metafile starts with its header record (type 1) and has " EMF" at byte 40.
  if (bytes.size() >= 44 && bytes[0] == 1 && bytes[1] == 0 && bytes[2] == 0 && bytes[3] == 0 &&
      std::memcmp(bytes.data() + 40, " EMF", 4) == 0)
    return Format::Emf;
  if (LooksLikeSvg(bytes)) return Format::Svg;
  return Format::Unknown;
}

// Reads the whole file; on failure `error` holds the reason without the file name.
bool ReadWholeFile(const std::string& path, std::vector<std::uint8_t>& bytes, std::string& error) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    error = std::string("the file cannot be opened (") + std::strerror(errno) + ")";
    return false;
  }
  struct Closer {
    int fd;
    ~Closer() { ::close(fd); }
  } closer{fd};
  struct stat info {};
  if (::fstat(fd, &info) != 0) {
    error = std::string("the file cannot be read (") + std::strerror(errno) + ")";
    return false;
  }
  if (S_ISDIR(info.st_mode)) {
    error = "this is a folder, not a picture file";
    return false;
  }
  if (S_ISREG(info.st_mode) && static_cast<std::uint64_t>(info.st_size) > kMaxFileSize) {
    error = "the file is too large to be a picture we can read";
    return false;
  }
  if (S_ISREG(info.st_mode)) bytes.reserve(static_cast<std::size_t>(info.st_size));
  std::uint8_t buffer[65536];
  for (;;) {
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got < 0) {
      if (errno == EINTR) continue;
      error = std::string("the file cannot be read (") + std::strerror(errno) + ")";
      return false;
    }
    if (got == 0) break;
    if (bytes.size() + static_cast<std::size_t>(got) > kMaxFileSize) {
      error = "the file is too large to be a picture we can read";
      return false;
    }
    bytes.insert(bytes.end(), buffer, buffer + got);
  }
  if (bytes.empty()) {
    error = "the file is empty";
    return false;
  }
  return true;
}

}  // namespace

bool PlatformImageCodecs::Load(const std::string& path, Bitmap& out, std::string& error) {
  return Load(path, LoadOptions{}, out, error);
}

bool PlatformImageCodecs::Load(const std::string& path, const LoadOptions& options, Bitmap& out, std::string& error) {
  std::vector<std::uint8_t> bytes;
  std::string reason;
  if (!ReadWholeFile(path, bytes, reason)) {
    error = NameOf(path) + ": " + reason;
    return false;
  }
  return LoadFromMemory(bytes.data(), bytes.size(), NameOf(path), options, out, error);
}

bool PlatformImageCodecs::LoadFromMemory(const std::uint8_t* data, std::size_t size, const std::string& name,
                                         const LoadOptions& options, Bitmap& out, std::string& error) const {
  const std::span<const std::uint8_t> bytes(data, size);
  std::string reason;
  bool ok = false;
  if (size == 0) {
    reason = "the file is empty";
  } else {
    switch (Identify(bytes)) {
      case Format::Png: ok = PngCodec::Decode(data, size, out, reason, maxPixels_); break;
      case Format::Bmp: ok = BmpDecoder::Decode(data, size, out, reason, maxPixels_); break;
      case Format::Jpeg: ok = DecodeJpeg(data, size, out, reason, maxPixels_); break;
      case Format::Gif: ok = DecodeGif(data, size, out, reason, maxPixels_); break;
      case Format::Tiff: ok = DecodeTiff(data, size, out, reason, maxPixels_); break;
      case Format::Ico: ok = DecodeIco(data, size, out, reason, maxPixels_); break;
      case Format::Svg: ok = RenderSvg(data, size, options.svgWidth, options.svgHeight, out, reason, maxPixels_); break;
      case Format::Emf:
        reason =
            "this is an EMF picture, and there is no EMF player on this platform; "
            "save it as PNG, BMP or SVG and import that";
        break;
      case Format::Unknown:
        reason = "the file is not a picture of a known kind (BMP, PNG, JPEG, GIF, TIFF, ICO or SVG)";
        break;
    }
  }
  if (!ok) error = name + ": " + reason;
  return ok;
}

bool PlatformImageCodecs::SavePng(const Bitmap& bitmap, const std::string& path, std::string& error) {
  const std::string prefix = NameOf(path) + ": ";
  if (bitmap.Empty()) {
    error = prefix + "an empty picture cannot be saved";
    return false;
  }
  // Writing next to the target and renaming keeps an existing file intact until the new one is
  // complete; the process id keeps two programs saving the same file from sharing a temporary.
  const std::string temporary = path + ".tmp" + std::to_string(::getpid());
  std::FILE* file = std::fopen(temporary.c_str(), "wb");
  if (file == nullptr) {
    error = prefix + "the file cannot be created (" + std::strerror(errno) + ")";
    return false;
  }
  std::string reason;
  bool ok = PngCodec::Encode(bitmap, file, reason);
  if (ok && (std::fflush(file) != 0 || ::fsync(::fileno(file)) != 0)) {
    reason = std::string("the file cannot be written (") + std::strerror(errno) + ")";
    ok = false;
  }
  if (std::fclose(file) != 0 && ok) {
    reason = std::string("the file cannot be written (") + std::strerror(errno) + ")";
    ok = false;
  }
  if (ok && std::rename(temporary.c_str(), path.c_str()) != 0) {
    reason = std::string("the file cannot be replaced (") + std::strerror(errno) + ")";
    ok = false;
  }
  if (!ok) {
    std::remove(temporary.c_str());
    error = prefix + reason;
  }
  return ok;
}

std::string PlatformImageCodecs::EncodeBmp(const Bitmap& bitmap) {
  const std::uint32_t w = static_cast<std::uint32_t>(bitmap.Width());
  const std::uint32_t h = static_cast<std::uint32_t>(bitmap.Height());
  const std::uint32_t stride = (w * 3 + 3) & ~3u;  // rows are padded to whole 32 bit words
  const std::uint32_t dataSize = stride * h;
  std::string out(54 + static_cast<std::size_t>(dataSize), '\0');
  auto put16 = [&](std::size_t at, std::uint32_t v) {
    out[at] = static_cast<char>(v & 0xFF);
    out[at + 1] = static_cast<char>((v >> 8) & 0xFF);
  };
  auto put32 = [&](std::size_t at, std::uint32_t v) {
    put16(at, v & 0xFFFF);
    put16(at + 2, v >> 16);
  };
  out[0] = 'B';
  out[1] = 'M';
  put32(2, 54 + dataSize);
  put32(10, 54);  // pixels follow the two headers
  put32(14, 40);  // BITMAPINFOHEADER
  put32(18, w);
  put32(22, h);  // positive: bottom-up
  put16(26, 1);
  put16(28, 24);
  put32(34, dataSize);
  put32(38, 3780);  // 96 dpi
  put32(42, 3780);
  for (std::uint32_t y = 0; y < h; ++y) {
    const std::uint32_t* row = bitmap.Row(static_cast<int>(h - 1 - y));
    std::size_t at = 54 + static_cast<std::size_t>(y) * stride;
    for (std::uint32_t x = 0; x < w; ++x) {
      const std::uint32_t c = row[x];  // 0x00BBGGRR; the file wants blue, green, red
      out[at++] = static_cast<char>((c >> 16) & 0xFF);
      out[at++] = static_cast<char>((c >> 8) & 0xFF);
      out[at++] = static_cast<char>(c & 0xFF);
    }
  }
  return out;
}

bool PlatformImageCodecs::SaveBmp(const Bitmap& bitmap, const std::string& path, std::string& error) {
  if (bitmap.Empty()) {
    error = NameOf(path) + ": an empty picture cannot be saved";
    return false;
  }
  std::string reason;
  if (!WriteFileAtomically(path, EncodeBmp(bitmap), &reason)) {
    error = NameOf(path) + ": " + (reason.empty() ? "the file cannot be written" : reason);
    return false;
  }
  return true;
}

}  // namespace rm
