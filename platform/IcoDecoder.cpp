// No Debian library reads icon files without pulling in a desktop toolkit, so this is a small
// reader of our own. It only walks the icon directory and picks one entry; the pictures inside
// are ordinary BMP (a DIB without its file header) or PNG data and go to those decoders.
#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/BmpDecoder.h"
#include "platform/PictureDecoders.h"
#include "platform/PngCodec.h"

namespace rm {
namespace {

constexpr std::size_t kDirectoryHeaderSize = 6;
constexpr std::size_t kEntrySize = 16;
constexpr std::size_t kBmpFileHeaderSize = 14;

std::uint16_t U16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | (p[1] << 8)); }
std::uint32_t U32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
         (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}
std::uint32_t BE32(const std::uint8_t* p) {
  return (static_cast<std::uint32_t>(p[0]) << 24) | (static_cast<std::uint32_t>(p[1]) << 16) |
         (static_cast<std::uint32_t>(p[2]) << 8) | static_cast<std::uint32_t>(p[3]);
}
void Put32(std::uint8_t* p, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}

struct Entry {
  const std::uint8_t* data = nullptr;
  std::size_t size = 0;
  bool png = false;
  std::int64_t width = 0, height = 0;
  int depth = 0;
};

// Declared sides are clamped so that a damaged entry cannot overflow the product; such an entry
// is refused by the size check once chosen.
std::int64_t Area(const Entry& e) {
  auto side = [](std::int64_t v) { return std::clamp<std::int64_t>(v, 0, std::int64_t{1} << 30); };
  return side(e.width) * side(e.height);
}

// Reads the size and depth from the entry's own data: the directory's bytes are often wrong
// (0 for 256, no depth given).
bool Describe(Entry& e) {
  static constexpr std::uint8_t kPngSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (e.size >= 26 && std::memcmp(e.data, kPngSignature, 8) == 0) {
    e.png = true;
    e.width = BE32(e.data + 16);
    e.height = BE32(e.data + 20);
    static constexpr int kChannels[] = {1, 0, 3, 1, 2, 0, 4};
    const int colourType = e.data[25];
    e.depth = e.data[24] * (colourType <= 6 ? kChannels[colourType] : 0);
    return true;
  }
  if (e.size < 16) return false;
  const std::uint32_t headerSize = U32(e.data);
  if (headerSize > e.size || headerSize > 4096) return false;
  if (headerSize == 12) {
    e.width = U16(e.data + 4);
    e.height = U16(e.data + 6) / 2;
    e.depth = U16(e.data + 10);
  } else if (headerSize >= 40) {
    e.width = static_cast<std::int32_t>(U32(e.data + 4));
    e.height = static_cast<std::int32_t>(U32(e.data + 8)) / 2;
    e.depth = U16(e.data + 14);
  } else {
    return false;
  }
  return true;
}

// Makes a BMP file of the entry's DIB: a file header in front, the height halved to the colour
// part, and 32 bit pixels marked as carrying alpha. The AND mask after the colour rows is left
// for the caller.
std::vector<std::uint8_t> DibAsBmpFile(const Entry& e, bool withAlpha) {
  const std::uint32_t headerSize = U32(e.data);
  // Sized whole and filled by copies: growing a 14-byte vector by insert() trips a false
  // out-of-bounds warning of GCC 12's optimiser.
  std::vector<std::uint8_t> file(kBmpFileHeaderSize + headerSize);
  file[0] = 'B';
  file[1] = 'M';
  std::copy(e.data, e.data + headerSize, file.begin() + kBmpFileHeaderSize);
  std::uint8_t* header = file.data() + kBmpFileHeaderSize;
  if (headerSize == 12)
    header[6] = static_cast<std::uint8_t>(e.height), header[7] = static_cast<std::uint8_t>(e.height >> 8);
  else
    Put32(header + 8, static_cast<std::uint32_t>(e.height));
  static constexpr std::uint32_t kMasks[] = {0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000};
  if (withAlpha) {
    Put32(header + 16, 6);  // bit fields with alpha
    if (headerSize >= 56) {
      for (int i = 0; i < 4; ++i) Put32(header + 40 + 4 * i, kMasks[i]);
    } else {
      for (std::uint32_t m : kMasks) {
        const std::size_t at = file.size();
        file.resize(at + 4);
        Put32(file.data() + at, m);
      }
    }
  }
  const std::size_t pixelsAt = file.size();
  file.resize(pixelsAt + (e.size - headerSize));
  std::copy(e.data + headerSize, e.data + e.size, file.begin() + static_cast<std::ptrdiff_t>(pixelsAt));
  Put32(file.data() + 2, static_cast<std::uint32_t>(file.size()));
  // The pixel offset stays 0: the BMP reader then finds the pixels right after the palette.
  return file;
}

bool DecodeDib(const Entry& e, Bitmap& out, std::string& error, std::int64_t maxPixels) {
  const std::uint32_t headerSize = U32(e.data);
  if (headerSize >= 40 && U32(e.data + 16) != 0) {
    error = "compressed icon pictures are not supported";
    return false;
  }
  if (std::string reason = CheckPictureSize(e.width, e.height, maxPixels); !reason.empty()) {
    error = reason;
    return false;
  }
  if (e.depth != 1 && e.depth != 2 && e.depth != 4 && e.depth != 8 && e.depth != 16 && e.depth != 24 && e.depth != 32) {
    error = "icon pictures with " + std::to_string(e.depth) + " bits per pixel are not supported";
    return false;
  }
  // Where the colour rows end and the AND mask starts.
  const std::size_t paletteCount = e.depth <= 8 ? (headerSize >= 40 && U32(e.data + 32) != 0
                                                       ? std::min<std::uint32_t>(U32(e.data + 32), 1u << e.depth)
                                                       : (1u << e.depth))
                                                : 0;
  const std::size_t colourStart = headerSize + paletteCount * (headerSize == 12 ? 3 : 4);
  const std::size_t colourStride = (static_cast<std::size_t>(e.width) * e.depth + 31) / 32 * 4;
  const std::size_t maskStart = colourStart + colourStride * static_cast<std::size_t>(e.height);
  const std::size_t maskStride = (static_cast<std::size_t>(e.width) + 31) / 32 * 4;
  if (colourStart > e.size || (e.size - colourStart) / colourStride < static_cast<std::size_t>(e.height)) {
    error = kTruncatedMessage;
    return false;
  }

  // A 32 bit icon with any alpha says its transparency there; the others by the AND mask.
  bool alpha = false;
  if (e.depth == 32 && (headerSize == 40 || headerSize >= 56))
    for (std::size_t i = colourStart + 3; i < maskStart && !alpha; i += 4) alpha = e.data[i] != 0;
  const bool maskPresent = e.size - maskStart >= maskStride * static_cast<std::size_t>(e.height);
  if (!alpha && !maskPresent) {
    error = kTruncatedMessage;
    return false;
  }
  const std::vector<std::uint8_t> file = DibAsBmpFile(e, alpha);
  Bitmap picture;
  if (!BmpDecoder::Decode(file.data(), file.size(), picture, error, maxPixels)) return false;
  if (!alpha) {
    // Rows of the mask run bottom-up like the colour rows; a set bit is a transparent pixel.
    for (int y = 0; y < picture.Height(); ++y) {
      const std::uint8_t* mask = e.data + maskStart + maskStride * static_cast<std::size_t>(picture.Height() - 1 - y);
      std::uint32_t* dest = picture.Row(y);
      for (int x = 0; x < picture.Width(); ++x)
        if (mask[x / 8] & (0x80 >> (x % 8))) dest[x] = static_cast<std::uint32_t>(kWhite);
    }
  }
  out = std::move(picture);
  return true;
}

}  // namespace

bool DecodeIco(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error, std::int64_t maxPixels) {
  if (size < kDirectoryHeaderSize) {
    error = kTruncatedMessage;
    return false;
  }
  const std::size_t count = U16(data + 4);
  if (count == 0) {
    error = "the icon file holds no picture";
    return false;
  }
  if ((size - kDirectoryHeaderSize) / kEntrySize < count) {
    error = kTruncatedMessage;
    return false;
  }
  // The largest picture wins, and of equal sizes the deepest; entries whose data lies outside
  // the file are passed over.
  Entry best;
  bool any = false, outside = false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* d = data + kDirectoryHeaderSize + i * kEntrySize;
    const std::uint32_t length = U32(d + 8), offset = U32(d + 12);
    if (offset > size || size - offset < length) {
      outside = true;
      continue;
    }
    Entry e;
    e.data = data + offset;
    e.size = length;
    if (!Describe(e)) continue;
    if (!any || Area(e) > Area(best) || (Area(e) == Area(best) && e.depth > best.depth)) best = e;
    any = true;
  }
  if (!any) {
    error = outside ? kTruncatedMessage : "the icon file holds no picture that can be read";
    return false;
  }
  if (best.png) return PngCodec::Decode(best.data, best.size, out, error, maxPixels);
  return DecodeDib(best, out, error, maxPixels);
}

}  // namespace rm
