#include "platform/BmpDecoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>
#include <vector>

#include "platform/PictureLimits.h"

namespace rm {
namespace {

constexpr std::size_t kFileHeaderSize = 14;

// Compression codes of the Windows headers. The OS/2 2.x header reuses 3 and 4 for its own
// Huffman and RLE24 schemes, which we do not read.
enum : std::uint32_t {
  kRgb = 0,
  kRle8 = 1,
  kRle4 = 2,
  kBitFields = 3,
  kJpeg = 4,
  kPng = 5,
  kAlphaBitFields = 6,
};

std::uint16_t U16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | (p[1] << 8)); }
std::uint32_t U32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
         (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

// One colour channel described by a bit mask, e.g. 0x07E0 for the green of a 565 pixel.
struct Channel {
  std::uint32_t mask = 0;
  int shift = 0;
  int bits = 0;

  // Expands the channel's value to 0..255; narrow channels are scaled with rounding so that
  // their largest value becomes 255.
  int Extract(std::uint32_t pixel) const {
    if (bits == 0) return 0;
    std::uint32_t v = (pixel & mask) >> shift;
    if (bits >= 8) return static_cast<int>(v >> (bits - 8));
    const std::uint32_t max = (1u << bits) - 1;
    return static_cast<int>((v * 255 + max / 2) / max);
  }
};

bool MakeChannel(std::uint32_t mask, Channel& channel) {
  channel = Channel{};
  if (mask == 0) return true;
  channel.mask = mask;
  channel.shift = std::countr_zero(mask);
  channel.bits = std::countr_one(mask >> channel.shift);
  return channel.bits == std::popcount(mask);
}

struct Layout {
  std::int64_t width = 0;
  std::int64_t height = 0;
  bool topDown = false;
  int bitCount = 0;
  std::uint32_t compression = kRgb;
  std::uint32_t imageSize = 0;
  std::uint32_t coloursUsed = 0;
  std::size_t paletteOffset = 0;
  std::size_t paletteEntrySize = 4;
  std::size_t pixelOffset = 0;
  std::array<std::uint32_t, 4> masks{};  // red, green, blue, alpha
  bool useAlpha = false;
};

class Reader {
 public:
  Reader(const std::uint8_t* data, std::size_t size, std::int64_t maxPixels)
      : data_(data), size_(size), maxPixels_(maxPixels) {}

  bool Run(Bitmap& out, std::string& error) {
    if (!ReadHeaders() || !ReadPalette() || !PrepareChannels()) {
      error = error_;
      return false;
    }
    Bitmap picture(static_cast<int>(layout_.width), static_cast<int>(layout_.height), kWhite);
    const bool ok =
        (layout_.compression == kRle8 || layout_.compression == kRle4) ? DecodeRle(picture) : DecodePlain(picture);
    if (!ok) {
      error = error_;
      return false;
    }
    out = std::move(picture);
    return true;
  }

 private:
  bool Fail(std::string message) {
    error_ = std::move(message);
    return false;
  }

  bool ReadHeaders() {
    if (size_ < kFileHeaderSize + 4) return Fail(kTruncatedMessage);
    const std::uint32_t pixelOffset = U32(data_ + 10);
    const std::uint32_t headerSize = U32(data_ + kFileHeaderSize);
    if (headerSize < 12 || headerSize > 4096)
      return Fail("the BMP header has an unknown size (" + std::to_string(headerSize) + " bytes)");
    if (size_ < kFileHeaderSize + headerSize) return Fail(kTruncatedMessage);
    const std::uint8_t* h = data_ + kFileHeaderSize;
    Layout& l = layout_;

    // The OS/2 2.x header may be cut short anywhere after its first 16 bytes; the Windows
    // headers have fixed sizes.
    const bool core = headerSize == 12;
    const bool windows = headerSize == 40 || headerSize == 52 || headerSize == 56 || headerSize >= 108;
    const bool os2 = !core && !windows;
    if (os2 && headerSize < 16)
      return Fail("the BMP header has an unknown size (" + std::to_string(headerSize) + " bytes)");

    if (core) {
      l.width = U16(h + 4);
      l.height = U16(h + 6);
      l.bitCount = U16(h + 10);
      l.paletteEntrySize = 3;
    } else {
      l.width = static_cast<std::int32_t>(U32(h + 4));
      l.height = static_cast<std::int32_t>(U32(h + 8));
      l.bitCount = U16(h + 14);
      if (headerSize >= 20) l.compression = U32(h + 16);
      if (headerSize >= 24) l.imageSize = U32(h + 20);
      if (headerSize >= 36) l.coloursUsed = U32(h + 32);
    }
    if (l.height < 0) {
      l.topDown = true;
      l.height = -l.height;
    }

    if (os2 && (l.compression == 3 || l.compression == 4))
      return Fail(std::string("OS/2 bitmaps with ") + (l.compression == 3 ? "Huffman" : "RLE24") +
                  " compression are not supported");
    switch (l.compression) {
      case kRgb: break;
      case kRle8:
      case kRle4:
        if (l.bitCount != (l.compression == kRle8 ? 8 : 4))
          return Fail(std::string("the BMP header is inconsistent (") + (l.compression == kRle8 ? "RLE8" : "RLE4") +
                      " compression with " + std::to_string(l.bitCount) + " bits per pixel)");
        break;
      case kBitFields:
      case kAlphaBitFields:
        if (l.bitCount != 16 && l.bitCount != 24 && l.bitCount != 32)
          return Fail("the BMP header is inconsistent (bit fields with " + std::to_string(l.bitCount) +
                      " bits per pixel)");
        break;
      case kJpeg:
      case kPng:
        return Fail(std::string("BMP files holding a ") + (l.compression == kJpeg ? "JPEG" : "PNG") +
                    " picture are not supported");
      default: return Fail("BMP compression type " + std::to_string(l.compression) + " is not supported");
    }
    switch (l.bitCount) {
      case 1:
      case 2:
      case 4:
      case 8:
      case 16:
      case 24:
      case 32: break;
      default: return Fail("BMP files with " + std::to_string(l.bitCount) + " bits per pixel are not supported");
    }
    if (std::string reason = CheckPictureSize(l.width, l.height, maxPixels_); !reason.empty()) return Fail(reason);

    // Bit masks live inside the V2 and later headers; a plain BITMAPINFOHEADER is followed by them.
    std::size_t afterHeader = kFileHeaderSize + headerSize;
    const bool bitFields = l.compression == kBitFields || l.compression == kAlphaBitFields;
    if (windows && headerSize >= 52) {
      for (int i = 0; i < 3; ++i) l.masks[i] = U32(h + 40 + 4 * i);
      if (headerSize >= 56) l.masks[3] = U32(h + 52);
    } else if (windows && bitFields) {
      const int count = l.compression == kAlphaBitFields ? 4 : 3;
      if (size_ < afterHeader + 4 * count) return Fail(kTruncatedMessage);
      for (int i = 0; i < count; ++i) l.masks[i] = U32(data_ + afterHeader + 4 * i);
      afterHeader += 4 * count;
    }
    if (!bitFields) {
      if (l.bitCount == 16) l.masks = {0x7C00, 0x03E0, 0x001F, 0};
      if (l.bitCount == 24 || l.bitCount == 32) l.masks = {0xFF0000, 0xFF00, 0xFF, 0};
    }
    // Many writers leave the fourth byte of a 32 bit pixel as zero or junk, so alpha counts only
    // when the header declares an alpha mask for bit-field pixels.
    l.useAlpha = bitFields && l.masks[3] != 0;

    l.paletteOffset = afterHeader;
    l.pixelOffset = pixelOffset;
    return true;
  }

  bool ReadPalette() {
    Layout& l = layout_;
    if (l.bitCount > 8) {
      if (l.pixelOffset == 0) l.pixelOffset = l.paletteOffset;
      return true;
    }
    std::size_t count = std::size_t{1} << l.bitCount;
    if (l.coloursUsed != 0) count = std::min<std::size_t>(count, l.coloursUsed);
    // Some writers store a shorter palette than the depth allows and say so only through the
    // offset of the pixel data.
    if (l.pixelOffset >= l.paletteOffset + l.paletteEntrySize)
      count = std::min(count, (l.pixelOffset - l.paletteOffset) / l.paletteEntrySize);
    if (size_ < l.paletteOffset || (size_ - l.paletteOffset) / l.paletteEntrySize < count)
      return Fail(kTruncatedMessage);
    palette_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint8_t* e = data_ + l.paletteOffset + i * l.paletteEntrySize;
      palette_[i] = MakeColour(e[2], e[1], e[0]);
    }
    if (l.pixelOffset == 0) l.pixelOffset = l.paletteOffset + count * l.paletteEntrySize;
    return true;
  }

  bool PrepareChannels() {
    for (int i = 0; i < 4; ++i)
      if (!MakeChannel(layout_.masks[i], channels_[i]))
        return Fail("the BMP colour masks are invalid (the bits of a mask must be adjacent)");
    return true;
  }

  // Indices past the end of the palette show black.
  Colour PaletteColour(unsigned index) const { return index < palette_.size() ? palette_[index] : kBlack; }

  int RowToY(std::int64_t fileRow) const {
    return static_cast<int>(layout_.topDown ? fileRow : layout_.height - 1 - fileRow);
  }

  bool DecodePlain(Bitmap& picture) {
    const Layout& l = layout_;
    const std::uint64_t rowBits = static_cast<std::uint64_t>(l.width) * l.bitCount;
    const std::uint64_t stride = (rowBits + 31) / 32 * 4;
    // The padding after the last row is often left out, so it is not required.
    const std::uint64_t needed = stride * (l.height - 1) + (rowBits + 7) / 8;
    if (l.pixelOffset > size_ || size_ - l.pixelOffset < needed) return Fail(kTruncatedMessage);
    const std::uint8_t* base = data_ + l.pixelOffset;

    const bool compose = l.useAlpha && AnyAlpha(base, stride);
    const int bytesPerPixel = l.bitCount / 8;
    for (std::int64_t r = 0; r < l.height; ++r) {
      const std::uint8_t* row = base + r * stride;
      std::uint32_t* dest = picture.Row(RowToY(r));
      if (l.bitCount <= 8) {
        const unsigned mask = (1u << l.bitCount) - 1;
        const int perByte = 8 / l.bitCount;
        for (std::int64_t x = 0; x < l.width; ++x) {
          const int shift = 8 - l.bitCount * static_cast<int>(x % perByte + 1);
          const unsigned index = (row[x / perByte] >> shift) & mask;
          dest[x] = static_cast<std::uint32_t>(PaletteColour(index));
        }
        continue;
      }
      for (std::int64_t x = 0; x < l.width; ++x) {
        const std::uint32_t pixel = ReadPixel(row + x * bytesPerPixel, bytesPerPixel);
        int r8 = channels_[0].Extract(pixel), g8 = channels_[1].Extract(pixel), b8 = channels_[2].Extract(pixel);
        if (compose) {
          const int a = channels_[3].Extract(pixel);
          r8 = OnWhite(r8, a);
          g8 = OnWhite(g8, a);
          b8 = OnWhite(b8, a);
        }
        dest[x] = static_cast<std::uint32_t>(MakeColour(r8, g8, b8));
      }
    }
    return true;
  }

  static std::uint32_t ReadPixel(const std::uint8_t* p, int bytes) {
    std::uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
    return v;
  }

  static int OnWhite(int c, int a) { return (c * a + 255 * (255 - a) + 127) / 255; }

  // A picture whose alpha is zero everywhere was written by a program that did not fill the
  // alpha bits in; showing it fully transparent would lose it, so it is read as opaque.
  bool AnyAlpha(const std::uint8_t* base, std::uint64_t stride) const {
    const int bytesPerPixel = layout_.bitCount / 8;
    for (std::int64_t r = 0; r < layout_.height; ++r)
      for (std::int64_t x = 0; x < layout_.width; ++x)
        if (ReadPixel(base + r * stride + x * bytesPerPixel, bytesPerPixel) & layout_.masks[3]) return true;
    return false;
  }

  // Pixels that the stream skips (with a delta or an early end of line) are transparent and so
  // keep the white background.
  bool DecodeRle(Bitmap& picture) {
    const Layout& l = layout_;
    const bool rle8 = l.compression == kRle8;
    if (l.pixelOffset > size_) return Fail(kTruncatedMessage);
    std::size_t end = size_;
    if (l.imageSize != 0 && l.imageSize <= size_ - l.pixelOffset) end = l.pixelOffset + l.imageSize;
    std::size_t pos = l.pixelOffset;
    std::int64_t x = 0, fileRow = 0;

    auto put = [&](unsigned index) {
      if (fileRow >= l.height) return false;
      if (x < l.width) picture.Row(RowToY(fileRow))[x] = static_cast<std::uint32_t>(PaletteColour(index));
      ++x;
      return true;
    };
    const std::string overrun = "the compressed picture data runs past the end of the picture";

    for (;;) {
      if (end - pos < 2) {
        // Some writers end the last line without an end-of-bitmap marker.
        if (fileRow >= l.height || (fileRow == l.height - 1 && x >= l.width)) return true;
        return Fail(kTruncatedMessage);
      }
      const unsigned count = data_[pos], value = data_[pos + 1];
      pos += 2;
      if (count > 0) {
        for (unsigned i = 0; i < count; ++i)
          if (!put(rle8 ? value : (i % 2 == 0 ? value >> 4 : value & 0x0F))) return Fail(overrun);
        continue;
      }
      switch (value) {
        case 0:  // end of line
          x = 0;
          ++fileRow;
          break;
        case 1:  // end of bitmap
          return true;
        case 2:  // move right and up
          if (end - pos < 2) return Fail(kTruncatedMessage);
          x += data_[pos];
          fileRow += data_[pos + 1];
          pos += 2;
          break;
        default: {  // a literal run, padded to a 16 bit boundary
          const std::size_t bytes = rle8 ? value : (value + 1) / 2;
          if (end - pos < bytes) return Fail(kTruncatedMessage);
          for (unsigned i = 0; i < value; ++i) {
            const unsigned b = data_[pos + (rle8 ? i : i / 2)];
            if (!put(rle8 ? b : (i % 2 == 0 ? b >> 4 : b & 0x0F))) return Fail(overrun);
          }
          pos += std::min(end - pos, bytes + (bytes & 1));
          break;
        }
      }
    }
  }

  const std::uint8_t* data_;
  std::size_t size_;
  std::int64_t maxPixels_;
  Layout layout_;
  std::vector<Colour> palette_;
  std::array<Channel, 4> channels_{};
  std::string error_;
};

}  // namespace

bool BmpDecoder::Decode(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
                        std::int64_t maxPixels) {
  return Reader(data, size, maxPixels).Run(out, error);
}

}  // namespace rm
