#include "engine/PixelPacker.h"

#include <utility>

#include "engine/BitRearrange.h"
#include "engine/ColourModes.h"

namespace rm {

// ---- pixel values -------------------------------------------------------------------------------

void PixelPacker::Prepare() {
  colourIndex_.Build(s_.PaletteSize > 0 ? s_.PaletteTable : s_.ModeColours);
  lastColour_ = kOutside;
  lastValue_ = -1;
  values_.clear();
  valuesWidth_ = 0;
  // Worth it for the large palettes only, and only while the plane stays small beside the canvas.
  const Bitmap* src = s_.Source;
  if (!src || s_.Colours16M || s_.PaletteSize <= 0) return;
  const std::size_t w = static_cast<std::size_t>(src->Width()), h = static_cast<std::size_t>(src->Height());
  if (w * h == 0 || w * h > (std::size_t{1} << 22)) return;
  values_.resize(w * h);
  for (std::size_t y = 0; y < h; ++y) colourIndex_.IndexOfRun(src->Row(static_cast<int>(y)), &values_[y * w], w);
  valuesWidth_ = static_cast<int>(w);
}

void PixelPacker::Release() {
  std::vector<std::int32_t>().swap(values_);
  valuesWidth_ = 0;
}

void PixelPacker::Advance(PixelStep step) {
  switch (step) {
    case PixelStep::Down: ++s_.CurY; break;
    case PixelStep::Up: --s_.CurY; break;
    case PixelStep::Right: ++s_.CurX; break;
    case PixelStep::Left: --s_.CurX; break;
  }
}

bool PixelPacker::ValueAt(int x, int y, int& value) {
  const Bitmap* src = s_.Source;
  if (valuesWidth_ > 0 && x >= 0 && y >= 0 && x < src->Width() && y < src->Height()) {
    const int v =
        values_[static_cast<std::size_t>(y) * static_cast<std::size_t>(valuesWidth_) + static_cast<std::size_t>(x)];
    if (v >= 0) {
      value = v;
      return true;
    }
  }
  return ValueOf(src ? src->GetPixel(x, y) : kOutside, value);
}

bool PixelPacker::ReadValue(PixelStep step, int& value) {
  const int x = s_.CurX, y = s_.CurY;
  Advance(step);
  return ValueAt(x, y, value);
}

bool PixelPacker::ValueOf(Colour c, int& value) {
  if (c == kOutside && ModeRow(s_.ModeNumber).Has(ModeFlag::OutsideIsZero)) {
    value = 0;
    return true;
  }
  int v;
  if (s_.Colours16M)
    v = c;
  else if (c == lastColour_)
    v = lastValue_;  // neighbours mostly share a colour
  else {
    v = colourIndex_.IndexOf(c);
    lastColour_ = c;
    lastValue_ = v;
  }
  if (v < 0) {
    if (s_.Gray16Slices) {
      value = -1;
      return true;
    }
    out_.ColourMissing(c);
    return false;
  }
  value = v;
  return true;
}

// ---- bit order ----------------------------------------------------------------------------------

std::uint32_t PixelPacker::Transform(std::uint32_t v, int width) const {
  // A byte's bits are mirrored here, before the rearrangement; a wide value keeps its bits and has
  // each of its bytes mirrored as it goes out (DatumOfWide).
  if (!s_.BigEndian && width == 8) v = static_cast<std::uint32_t>(ReverseByteBits(static_cast<int>(v)));
  switch (width) {
    case 12: v = Reorder4096Output(v, s_.CanvasBits); break;
    case 16: v = Reorder65kOutput(v, s_.CanvasBits); break;
    case 18: v = Reorder262kOutput(v, s_.CanvasBits); break;
    case 24: v = Reorder16MOutput(v, s_.CanvasBits); break;
    default: break;
  }
  if (s_.ReorderOn) v = ReorderOutput(v, s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits);
  return v;
}

void PixelPacker::DatumOfWide(int byte) {
  // MSB last is a bit order, the same for every byte: each byte of a pixel of 12 bits and more is
  // the byte of MSB first with its bits reversed. Mirroring the whole value as one byte would keep
  // its low 8 bits only and drop the rest of the colour.
  out_.Datum(s_.BigEndian ? byte : ReverseByteBits(byte));
}

// ---- packers ------------------------------------------------------------------------------------

void PixelPacker::Pack(PixelStep step) {
  if (s_.Monochrome)
    PackMonochrome(step);
  else if (s_.Gray4 || s_.Gray4TwoPages)
    PackGray4(step);
  else if (s_.Gray32)
    PackGray32(step);
  else if (s_.Colours8)
    PackColours8(step);
  else if (s_.Gray16 || s_.Colours16)
    PackNibbles(step);
  else
    PackWide(step);
}

void PixelPacker::PackMonochrome(PixelStep step) {
  // Bit weights in the order the pixels are read.
  static constexpr int kMsbFirst8[] = {128, 64, 32, 16, 8, 4, 2, 1};
  static constexpr int kMsbLast8[] = {1, 2, 4, 8, 16, 32, 64, 128};
  static constexpr int kMsbFirst6[] = {32, 16, 8, 4, 2, 1};
  static constexpr int kMsbLast6[] = {1, 2, 4, 8, 16, 32};
  const bool across = step == PixelStep::Right || step == PixelStep::Left;
  const bool six = !s_.Not6bit && across;
  const int* order = six ? (s_.BigEndian ? kMsbFirst6 : kMsbLast6) : (s_.BigEndian ? kMsbFirst8 : kMsbLast8);
  const int count = six ? 6 : 8;
  int byte = 0;
  for (int i = 0; i < count; ++i) {
    bool within = true;
    if (step == PixelStep::Down || step == PixelStep::Up) within = s_.CurY <= s_.CanvasHeight;
    if (step == PixelStep::Right) within = s_.CurX <= s_.CanvasWidth;
    const Colour c = s_.Source ? s_.Source->GetPixel(s_.CurX, s_.CurY) : kOutside;
    Advance(step);
    if (within && c == kBlack) {
      byte += order[i];
      out_.PixelBit(order[i]);
    }
  }
  // The byte is compared as read: the cut below and the rearrangement come after.
  if (out_.Compressed(byte)) return;
  if (across) {
    switch (s_.PixelsPerByteSetting) {
      case 4: byte &= 240; break;
      case 5: byte &= 248; break;
      case 6: byte &= 252; break;
      case 7: byte &= 254; break;
      default: break;
    }
  }
  if (s_.ReorderOn)
    byte = static_cast<int>(
        ReorderOutput(static_cast<std::uint32_t>(byte), s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits));
  out_.Datum(byte);
}

void PixelPacker::PackGray4(PixelStep step) {
  int p[8] = {0};
  if (s_.Gray4TwoPages && s_.Direction == PagingDirection::Down) {
    // Both planes' source bytes at once: eight pixels down the column.
    for (int i = 0; i < 8; ++i)
      if (!ReadValue(step, p[i])) return;
    int bytes[2] = {(p[0] << 6) + (p[1] << 4) + (p[2] << 2) + p[3], (p[4] << 6) + (p[5] << 4) + (p[6] << 2) + p[7]};
    for (int& b : bytes) {
      if (s_.ReorderOn)
        b = static_cast<int>(
            ReorderOutput(static_cast<std::uint32_t>(b), s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits));
    }
    out_.Datum(bytes[0]);
    out_.Datum(bytes[1]);
    return;
  }
  for (int i = 0; i < 4; ++i) {
    if (i > 0 && step == PixelStep::Up && s_.CurY < 0) break;
    if (!ReadValue(step, p[i])) return;
  }
  out_.Datum(
      static_cast<int>(Transform(static_cast<std::uint32_t>((p[0] << 6) + (p[1] << 4) + (p[2] << 2) + p[3]), 8)));
}

void PixelPacker::PackGray32(PixelStep step) {
  int p = 0;
  if (!ReadValue(step, p)) return;
  if (!s_.Packed) {
    out_.Datum(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32Left ? p << 3 : p), 8)));
    return;
  }
  // Three pixels of 5 bits in two bytes: aaaaa0bb bbbccccc.
  const int g = p * 8;
  s_.Gray32Counter = s_.Gray32Counter % 3 + 1;
  if (s_.Gray32Counter == 1) {
    s_.Gray32A = g;
  } else if (s_.Gray32Counter == 2) {
    out_.Datum(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32A + (g >> 6)), 8)));
    s_.Gray32C = (g * 4) & 224;
  } else {
    out_.Datum(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32C + (g >> 3)), 8)));
    s_.Gray32Counter = 0;
  }
}

void PixelPacker::PackColours8(PixelStep step) {
  int p[8] = {0};
  for (int i = 0; i < 8; ++i)
    if (!ReadValue(step, p[i])) return;
  const int bytes[3] = {(p[0] << 5) + (p[1] << 2) + (p[2] >> 1),
                        ((p[2] << 7) & 255) + (p[3] << 4) + (p[4] << 1) + (p[5] >> 2),
                        ((p[5] << 6) & 255) + (p[6] << 3) + p[7]};
  for (int i = 0; i < 3; ++i) {
    if (i > 0) out_.NextDatumComment();
    out_.Datum(static_cast<int>(Transform(static_cast<std::uint32_t>(bytes[i]), 8)));
  }
}

void PixelPacker::PackNibbles(PixelStep step) {
  int p[2] = {0, 0};
  if (s_.Gray16Slices && step == PixelStep::Down) {
    // Four bytes of a column's slice of 8 pixels; a slice reaching below the area reads 0.
    if (s_.ExportAreaY2 % 8 != 0) ++s_.ExportAreaY2;
    for (int b = 0; b < 4; ++b) {
      int v0 = 0, v1 = 0;
      ReadValue(step, v0);
      ReadValue(step, v1);
      int byte = 0;
      if (v0 >= 0 && v1 >= 0) byte = s_.SwapNibble ? (v1 << 4) + v0 : (v0 << 4) + v1;
      out_.Datum(static_cast<int>(Transform(static_cast<std::uint32_t>(byte), 8)));
      out_.NextDatumComment();
    }
    ++s_.CurY;
    return;
  }
  const bool vertical = step == PixelStep::Down || step == PixelStep::Up;
  if (s_.Gray16Horizontal && vertical) {
    // Two pixels side by side, the first on the side the walk starts from.
    const int x = s_.CurX;
    const bool forward = step == PixelStep::Down ? s_.Origin == OriginCorner::TL : s_.Origin == OriginCorner::BL;
    if (!ValueAt(x, s_.CurY, p[0])) return;
    if (!ValueAt(forward ? x + 1 : x - 1, s_.CurY, p[1])) return;
    Advance(step);
  } else {
    if (!ReadValue(step, p[0])) return;
    if (!(step == PixelStep::Up && s_.CurY < 0))
      if (!ReadValue(step, p[1])) return;
  }
  const int byte = s_.SwapNibble ? (p[1] << 4) + p[0] : (p[0] << 4) + p[1];
  out_.Datum(static_cast<int>(Transform(static_cast<std::uint32_t>(byte), 8)));
}

void PixelPacker::PackWide(PixelStep step) {
  // One pixel per datum from here on.
  int p = 0;
  if (!ReadValue(step, p)) return;
  const std::uint32_t raw = static_cast<std::uint32_t>(p);

  if (s_.Colours256 || s_.Gray256 || s_.Colours256NoPalette) {
    out_.Datum(static_cast<int>(Transform(raw, 8)));
    return;
  }
  if (s_.Colours4096) {
    const std::uint32_t v = Transform(raw, 12);
    if (!s_.Packed) {
      int b[2] = {static_cast<int>((v >> 8) & 15), static_cast<int>(v & 255)};
      if (s_.SwapFirstLast) std::swap(b[0], b[1]);
      DatumOfWide(b[0]);
      out_.NextDatumComment();
      DatumOfWide(b[1]);
      return;
    }
    // Two pixels in three bytes: the first pixel's top 8 bits, its low 4 with the second's top 4,
    // the second's low 8.
    if (s_.Packed4096Phase == 0) {
      s_.Packed4096First = static_cast<int>(v);
      DatumOfWide((s_.Packed4096First >> 4) & 255);
      s_.Packed4096Phase = 1;
    } else {
      DatumOfWide(((s_.Packed4096First << 4) & 240) + static_cast<int>((v >> 8) & 15));
      out_.NextDatumComment();
      DatumOfWide(static_cast<int>(v & 255));
      s_.Packed4096Phase = 0;
    }
    return;
  }
  int b[4] = {0, 0, 0, 0};
  int n = 0;
  if (s_.Colours65536) {
    const std::uint32_t v = Transform(raw, 16);
    b[0] = static_cast<int>((v >> 8) & 255);
    b[1] = static_cast<int>(v & 255);
    if (s_.SwapRedGreen) {
      b[0] = static_cast<int>((((v << 11) & 0xF800) + (v & 0x7E0)) >> 8) & 255;
      b[1] = static_cast<int>(((v >> 11) & 31) + (v & 0x7E0)) & 255;
    }
    if (s_.SwapFirstLast) std::swap(b[0], b[1]);
    n = 2;
  } else if (s_.Colours262kPacked || s_.Colours262kUnpacked) {
    const std::uint32_t v = Transform(raw, 18);
    if (s_.Colours262kUnpacked) {
      b[0] = static_cast<int>((v >> 12) & 63);
      b[1] = static_cast<int>((v >> 6) & 63);
      b[2] = static_cast<int>(v & 63);
    } else {
      b[0] = static_cast<int>((v >> 16) & 3);
      b[1] = static_cast<int>((v >> 8) & 255);
      b[2] = static_cast<int>(v & 255);
    }
    if (s_.SwapFirstLast) std::swap(b[0], b[2]);
    n = 3;
  } else if (s_.Colours16M) {
    const std::uint32_t v = Transform(raw, 24);
    int rgb[3] = {static_cast<int>((v >> 16) & 255), static_cast<int>((v >> 8) & 255), static_cast<int>(v & 255)};
    if (s_.SwapFirstLast) std::swap(rgb[0], rgb[2]);
    // The alpha byte of 32 bit pixels is 0: it leads, or trails with RGBA, and is left out with
    // RGBA and the swap.
    const bool alpha = !s_.Packed;
    if (alpha && !s_.Rgba) ++n;
    for (int c : rgb) b[n++] = c;
    if (alpha && s_.Rgba && !s_.SwapFirstLast) ++n;
  }
  for (int i = 0; i < n; ++i) {
    if (i > 0) out_.NextDatumComment();
    DatumOfWide(b[i]);
  }
}

bool PixelPacker::Holding() const {
  return (s_.Gray32 && s_.Packed && s_.Gray32Counter != 0) || (s_.Colours4096 && s_.Packed && s_.Packed4096Phase != 0);
}

void PixelPacker::Flush() {
  // Packed gray 32: the byte that holds the bits of the last one or two pixels of a triple.
  if (s_.Gray32 && s_.Packed && s_.Gray32Counter != 0) {
    out_.Datum(
        static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32Counter == 1 ? s_.Gray32A : s_.Gray32C), 8)));
    s_.Gray32Counter = 0;
  }
  // Packed 4096 colours: an odd last pixel's low four bits.
  if (s_.Colours4096 && s_.Packed && s_.Packed4096Phase != 0) {
    DatumOfWide((s_.Packed4096First << 4) & 240);
    s_.Packed4096Phase = 0;
  }
}

}  // namespace rm
