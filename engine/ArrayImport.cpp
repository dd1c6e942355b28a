#include "engine/ArrayImport.h"

#include <algorithm>
#include <array>
#include <utility>

#include "engine/BitRearrange.h"
#include "engine/ScanOrder.h"

namespace rm {

// ---- the text -----------------------------------------------------------------------------------

namespace {

bool IsWordChar(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return 99;
}

bool EndsWithNoCase(std::string_view word, std::string_view end) {
  if (end.size() > word.size()) return false;
  for (std::size_t i = 0; i < end.size(); ++i) {
    char a = word[word.size() - end.size() + i], b = end[i];
    if (a >= 'A' && a <= 'Z') a = static_cast<char>(a - 'A' + 'a');
    if (b >= 'A' && b <= 'Z') b = static_cast<char>(b - 'A' + 'a');
    if (a != b) return false;
  }
  return true;
}

const char* RadixName(int radix) { return radix == 16 ? "hex" : radix == 2 ? "binary" : "decimal"; }

}  // namespace

ArrayText ReadArrayText(std::string_view text, const ArrayTextSyntax& syntax) {
  ArrayText out;
  const int radix = syntax.radix;
  if (radix != 16 && radix != 10 && radix != 2) {
    out.error = "the digits of a datum are hex, decimal or binary, not of base " + std::to_string(radix);
    return out;
  }
  // Without a marker a hex datum cannot be told from a word (".db", "DATA", "Bitmap").
  if (radix == 16 && syntax.prefix.empty() && syntax.suffix.empty()) {
    out.error = "hex data need a prefix (0x, $) or a suffix (h) to be told from the words around them";
    return out;
  }
  const std::string_view prefix = syntax.prefix, suffix = syntax.suffix;
  std::vector<std::uint32_t> table;
  const auto endTable = [&] {
    if (!table.empty()) out.tables.push_back(std::move(table));
    table.clear();
  };
  const std::size_t n = text.size();
  const auto skipLine = [&](std::size_t& i) {
    while (i < n && text[i] != '\n') ++i;
  };
  // The characters that can start something: a line, a comment, a table's end, a datum. The
  // blanks and separators between data are passed over without a closer look.
  std::array<bool, 256> wakes{};
  for (unsigned char c : std::string_view("\n/;'!{}=[")) wakes[c] = true;
  for (int c = 0; c < 256; ++c)
    if (prefix.empty() ? IsWordChar(static_cast<char>(c)) : c == static_cast<unsigned char>(prefix[0])) wakes[c] = true;
  int line = 1;
  bool inBlockComment = false;
  std::size_t i = 0;
  while (i < n) {
    if (!inBlockComment) {
      while (i < n && !wakes[static_cast<unsigned char>(text[i])]) ++i;
      if (i == n) break;
    }
    const char c = text[i];
    if (c == '\n') {
      ++line;
      ++i;
      continue;
    }
    const char next = i + 1 < n ? text[i + 1] : '\0';
    if (inBlockComment) {
      if (c == '*' && next == '/') {
        inBlockComment = false;
        i += 2;
      } else {
        ++i;
      }
      continue;
    }
    if (c == '/' && next == '*') {
      inBlockComment = true;
      i += 2;
      continue;
    }
    if (c == '/' && next == '/') {
      skipLine(i);
      continue;
    }
    // The comments of assembler, BASIC and Fortran-like syntaxes start a word; a ";" right after
    // a datum or a brace ends a statement instead.
    if ((c == ';' || c == '\'' || c == '!') && (i == 0 || IsBlank(text[i - 1]))) {
      skipLine(i);
      continue;
    }
    if (c == '{' || c == '}' || c == '=') {
      endTable();
      ++i;
      continue;
    }
    if (c == '[') {
      // The size of an array ("[1024]") is not a datum of it.
      endTable();
      while (i < n && text[i] != ']' && text[i] != '\n') ++i;
      continue;
    }
    const bool wordStart = i == 0 || !IsWordChar(text[i - 1]);
    std::size_t digitsAt = i;
    if (!wordStart || (!prefix.empty() && text.compare(i, prefix.size(), prefix) != 0) ||
        (prefix.empty() && !IsWordChar(c))) {
      ++i;
      continue;
    }
    digitsAt = i + prefix.size();
    std::size_t end = digitsAt;
    while (end < n && IsWordChar(text[end])) ++end;
    std::string_view word = text.substr(digitsAt, end - digitsAt);
    if (word.empty()) {  // a marker alone, such as the "$" of an address
      i = digitsAt > i ? digitsAt : i + 1;
      continue;
    }
    bool ok = suffix.empty() || EndsWithNoCase(word, suffix);
    std::string_view digits = ok ? word.substr(0, word.size() - suffix.size()) : word;
    ok = ok && !digits.empty();
    std::uint64_t value = 0;
    for (std::size_t k = 0; ok && k < digits.size(); ++k) {
      const int d = DigitValue(digits[k]);
      if (d >= radix) ok = false;
      value = value * static_cast<unsigned>(radix) + static_cast<unsigned>(d);
      if (value > 0xFFFFFFFFull) {
        out.error = "line " + std::to_string(line) + ": \"" + std::string(prefix) + std::string(word) +
                    "\" is wider than 32 bits";
        return out;
      }
    }
    if (!ok) {
      // With a marker in front, a word that follows it is meant as a datum: its digits are wrong.
      if (!prefix.empty()) {
        out.error = "line " + std::to_string(line) + ": \"" + std::string(prefix) + std::string(word) + "\" is not a " +
                    RadixName(radix) + " datum";
        return out;
      }
      i = end;
      continue;
    }
    table.push_back(static_cast<std::uint32_t>(value));
    i = end;
  }
  endTable();
  return out;
}

bool WordsToBytes(const std::vector<std::uint32_t>& words, int widthBits, bool bigEndian, bool decimal,
                  std::vector<std::uint8_t>& bytes, std::string& error) {
  if (widthBits != 8 && widthBits != 16 && widthBits != 32) {
    error = "the data width is 8, 16 or 32 bits, not " + std::to_string(widthBits);
    return false;
  }
  const int n = widthBits / 8;
  const bool firstMadeFirst = bigEndian || (decimal && n == 2);
  bytes.clear();
  bytes.reserve(words.size() * static_cast<std::size_t>(n));
  for (std::size_t w = 0; w < words.size(); ++w) {
    const std::uint32_t v = words[w];
    if (n < 4 && v >> widthBits != 0) {
      error = "datum " + std::to_string(w + 1) + " (" + std::to_string(v) + ") is wider than " +
              std::to_string(widthBits) + " bits";
      return false;
    }
    for (int k = 0; k < n; ++k) {
      const int shift = firstMadeFirst ? 8 * (n - 1 - k) : 8 * k;
      bytes.push_back(static_cast<std::uint8_t>(v >> shift));
    }
  }
  return true;
}

std::vector<std::uint8_t> MergePlanes(const std::vector<std::uint8_t>& planeB, const std::vector<std::uint8_t>& planeA,
                                      bool bigEndian) {
  std::vector<std::uint8_t> out;
  const std::size_t count = std::min(planeA.size(), planeB.size());
  out.reserve(2 * count);
  for (std::size_t i = 0; i < count; ++i) {
    unsigned v = 0;
    for (int k = 0; k < 8; ++k) {
      const int bit = bigEndian ? k : 7 - k;
      v |= (((planeA[i] >> bit) & 1u) << (2 * k + 1)) | (((planeB[i] >> bit) & 1u) << (2 * k));
    }
    out.push_back(static_cast<std::uint8_t>(v >> 8));
    out.push_back(static_cast<std::uint8_t>(v & 0xFF));
  }
  return out;
}

// ---- the pixels ---------------------------------------------------------------------------------

namespace {

struct Pos {
  int x, y;
};

// The inverse of PixelPacker: each call takes the bytes one datum of the packer made and paints
// the pixels it read, in the same order and at the same places. Bytes asked for beyond the data
// read as 0 and are counted, so that one walk tells how many the canvas needs.
class PixelUnpacker {
 public:
  PixelUnpacker(ConversionSession& s, const std::vector<std::uint8_t>& data, Bitmap& out)
      : s_(s), data_(data), out_(out), table_(s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours) {}

  // The walk's visitor.
  void GroupStart(const ScanOrder&) {}
  bool BeforeDatum() { return true; }
  void Datum(PixelStep step) { Unpack(step); }
  void GroupEnd(const ScanOrder&) {}

  void Unpack(PixelStep step) {
    if (s_.Monochrome)
      UnpackMonochrome(step);
    else if (s_.Gray4 || s_.Gray4TwoPages)
      UnpackGray4(step);
    else if (s_.Gray32)
      UnpackGray32(step);
    else if (s_.Colours8)
      UnpackColours8(step);
    else if (s_.Gray16 || s_.Colours16)
      UnpackNibbles(step);
    else
      UnpackWide(step);
  }
  bool Holding() const { return (s_.Gray32 && s_.Packed && counter_ != 0) || (s_.Colours4096 && s_.Packed && phase_); }
  void Flush();

  std::size_t Taken() const { return at_; }
  const std::string& Error() const { return error_; }

 private:
  int NextByte() {
    const int b = at_ < data_.size() ? data_[at_] : 0;
    ++at_;
    return s_.Monochrome && s_.NegativeOutput ? 255 - b : b;
  }
  // The byte of a pixel of 12 bits and more: each is mirrored on its own in MSB last.
  int NextWideByte() {
    const int b = NextByte();
    return s_.BigEndian ? b : ReverseByteBits(b);
  }
  Pos Take(PixelStep step) {
    const Pos p{s_.CurX, s_.CurY};
    switch (step) {
      case PixelStep::Down: ++s_.CurY; break;
      case PixelStep::Up: --s_.CurY; break;
      case PixelStep::Right: ++s_.CurX; break;
      case PixelStep::Left: --s_.CurX; break;
    }
    return p;
  }

  // `f` is the writer's swap: its own inverse where it trades bits in pairs. One that is not (a
  // table of rows that reach the same bit twice) cannot be taken back, and the import says so.
  template <class F>
  std::uint32_t Undo(F f, std::uint32_t w) {
    const std::uint32_t v = f(w);
    if (f(v) != w && error_.empty()) error_ = "the bit rearrangement of the data cannot be undone";
    return v;
  }
  std::uint32_t UndoRearrangement(std::uint32_t w) {
    if (!s_.ReorderOn) return w;
    return Undo([this](std::uint32_t v) { return ReorderOutput(v, s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits); },
                w);
  }
  // The inverse of the packer's byte transform: the rearrangement, then the bit order.
  int Byte8() {
    const std::uint32_t v = UndoRearrangement(static_cast<std::uint32_t>(NextByte()));
    return s_.BigEndian ? static_cast<int>(v & 255) : ReverseByteBits(static_cast<int>(v));
  }
  // The inverse of the packer's transform of a pixel value of `width` bits. Up to 18 bits it is
  // worked out once for every value, on the first pixel, and looked up after.
  std::uint32_t UndoWide(std::uint32_t v, int width) {
    if (width > 18) return UndoWideOnce(v, width);
    if (undoWidth_ != width) {
      undoWidth_ = width;
      undoTable_.resize(std::size_t{1} << width);
      const std::string keep = error_;
      for (std::uint32_t w = 0; w < undoTable_.size(); ++w) {
        error_.clear();
        const std::uint32_t u = UndoWideOnce(w, width);
        undoTable_[w] = error_.empty() ? u : kCannotUndo;
      }
      error_ = keep;
    }
    const std::uint32_t u = undoTable_[v & ((1u << width) - 1)];
    if (u != kCannotUndo) return u;
    UndoWideOnce(v, width);  // says why
    return 0;
  }
  std::uint32_t UndoWideOnce(std::uint32_t v, int width) {
    v = UndoRearrangement(v);
    const int bits = s_.CanvasBits;
    switch (width) {
      case 12: return Undo([bits](std::uint32_t x) { return Reorder4096Output(x, bits); }, v);
      case 16: return Undo([bits](std::uint32_t x) { return Reorder65kOutput(x, bits); }, v);
      case 18: return Undo([bits](std::uint32_t x) { return Reorder262kOutput(x, bits); }, v);
      case 24: return Undo([bits](std::uint32_t x) { return Reorder16MOutput(x, bits); }, v);
      default: return v;
    }
  }

  void Paint(Pos p, std::uint32_t value) {
    Colour c;
    if (s_.Colours16M) {
      c = static_cast<Colour>(value & 0xFFFFFF);
    } else if (value < table_.size()) {
      c = table_[value];
    } else {
      if (error_.empty())
        error_ = "the value " + std::to_string(value) + " has no colour in the mode's table of " +
                 std::to_string(table_.size());
      return;
    }
    out_.SetPixel(p.x, p.y, c);
  }

  void UnpackMonochrome(PixelStep step);
  void UnpackGray4(PixelStep step);
  void UnpackGray32(PixelStep step);
  void UnpackColours8(PixelStep step);
  void UnpackNibbles(PixelStep step);
  void UnpackWide(PixelStep step);

  ConversionSession& s_;
  const std::vector<std::uint8_t>& data_;
  Bitmap& out_;
  const std::vector<Colour>& table_;
  std::size_t at_ = 0;
  std::string error_;
  static constexpr std::uint32_t kCannotUndo = 0xFFFFFFFFu;
  int undoWidth_ = 0;
  std::vector<std::uint32_t> undoTable_;
  // Packed gray 32: the place in the triple, the pixels waiting for their bits.
  int counter_ = 0;
  Pos held_[2]{};
  std::uint32_t heldBits_ = 0;
  // Packed 4096 colours: the first pixel of a pair waiting for its low bits.
  bool phase_ = false;
  Pos heldPixel_{};
  std::uint32_t heldHigh_ = 0;
};

void PixelUnpacker::UnpackMonochrome(PixelStep step) {
  static constexpr int kMsbFirst8[] = {128, 64, 32, 16, 8, 4, 2, 1};
  static constexpr int kMsbLast8[] = {1, 2, 4, 8, 16, 32, 64, 128};
  static constexpr int kMsbFirst6[] = {32, 16, 8, 4, 2, 1};
  static constexpr int kMsbLast6[] = {1, 2, 4, 8, 16, 32};
  const bool across = step == PixelStep::Right || step == PixelStep::Left;
  const bool six = !s_.Not6bit && across;
  const int* order = six ? (s_.BigEndian ? kMsbFirst6 : kMsbLast6) : (s_.BigEndian ? kMsbFirst8 : kMsbLast8);
  const int count = six ? 6 : 8;
  // The bit order is the pixel order here; only the rearrangement comes between. The bits the
  // Pixels per Byte setting cuts off read as white, as they were written.
  const int byte = static_cast<int>(UndoRearrangement(static_cast<std::uint32_t>(NextByte())));
  for (int i = 0; i < count; ++i) {
    bool within = true;
    if (step == PixelStep::Down || step == PixelStep::Up) within = s_.CurY <= s_.CanvasHeight;
    if (step == PixelStep::Right) within = s_.CurX <= s_.CanvasWidth;
    const Pos p = Take(step);
    if (within) out_.SetPixel(p.x, p.y, (byte & order[i]) ? kBlack : kWhite);
  }
}

void PixelUnpacker::UnpackGray4(PixelStep step) {
  if (s_.Gray4TwoPages && s_.Direction == PagingDirection::Down) {
    // Eight pixels down the column in two bytes, neither mirrored.
    Pos p[8];
    for (Pos& q : p) q = Take(step);
    const std::uint32_t bytes[2] = {UndoRearrangement(static_cast<std::uint32_t>(NextByte())),
                                    UndoRearrangement(static_cast<std::uint32_t>(NextByte()))};
    for (int i = 0; i < 8; ++i) Paint(p[i], (bytes[i / 4] >> (6 - 2 * (i % 4))) & 3);
    return;
  }
  Pos p[4];
  int count = 0;
  for (int i = 0; i < 4; ++i, ++count) {
    if (i > 0 && step == PixelStep::Up && s_.CurY < 0) break;
    p[i] = Take(step);
  }
  const int byte = Byte8();
  for (int i = 0; i < count; ++i) Paint(p[i], static_cast<std::uint32_t>(byte >> (6 - 2 * i)) & 3);
}

void PixelUnpacker::UnpackGray32(PixelStep step) {
  const Pos p = Take(step);
  if (!s_.Packed) {
    const int byte = Byte8();
    Paint(p, static_cast<std::uint32_t>(s_.Gray32Left ? byte >> 3 : byte & 31));
    return;
  }
  // aaaaa0bb bbbccccc: a pixel is painted once the byte with its last bits has come.
  counter_ = counter_ % 3 + 1;
  if (counter_ == 1) {
    held_[0] = p;
  } else if (counter_ == 2) {
    const int byte = Byte8();
    Paint(held_[0], static_cast<std::uint32_t>(byte >> 3));
    heldBits_ = static_cast<std::uint32_t>(byte & 3) << 3;
    held_[1] = p;
  } else {
    const int byte = Byte8();
    Paint(held_[1], heldBits_ | static_cast<std::uint32_t>(byte >> 5));
    Paint(p, static_cast<std::uint32_t>(byte & 31));
    counter_ = 0;
  }
}

void PixelUnpacker::UnpackColours8(PixelStep step) {
  Pos p[8];
  for (Pos& q : p) q = Take(step);
  std::uint32_t bits = 0;
  for (int i = 0; i < 3; ++i) bits = (bits << 8) | static_cast<std::uint32_t>(Byte8());
  for (int i = 0; i < 8; ++i) Paint(p[i], (bits >> (21 - 3 * i)) & 7);
}

void PixelUnpacker::UnpackNibbles(PixelStep step) {
  const auto paintPair = [this](Pos a, Pos b, bool second, int byte) {
    const std::uint32_t high = static_cast<std::uint32_t>(byte >> 4) & 15, low = static_cast<std::uint32_t>(byte) & 15;
    Paint(a, s_.SwapNibble ? low : high);
    if (second) Paint(b, s_.SwapNibble ? high : low);
  };
  if (s_.Gray16Slices && step == PixelStep::Down) {
    // Four bytes of a column's slice of 8 pixels; those below the canvas are not painted.
    for (int i = 0; i < 4; ++i) {
      const Pos a = Take(step), b = Take(step);
      paintPair(a, b, true, Byte8());
    }
    ++s_.CurY;
    return;
  }
  const bool vertical = step == PixelStep::Down || step == PixelStep::Up;
  Pos a, b{};
  bool second = true;
  if (s_.Gray16Horizontal && vertical) {
    const bool forward = step == PixelStep::Down ? s_.Origin == OriginCorner::TL : s_.Origin == OriginCorner::BL;
    a = {s_.CurX, s_.CurY};
    b = {forward ? s_.CurX + 1 : s_.CurX - 1, s_.CurY};
    Take(step);
  } else {
    a = Take(step);
    second = !(step == PixelStep::Up && s_.CurY < 0);
    if (second) b = Take(step);
  }
  paintPair(a, b, second, Byte8());
}

void PixelUnpacker::UnpackWide(PixelStep step) {
  const Pos p = Take(step);
  if (s_.Colours256 || s_.Gray256 || s_.Colours256NoPalette) {
    Paint(p, static_cast<std::uint32_t>(Byte8()));
    return;
  }
  if (s_.Colours4096) {
    if (!s_.Packed) {
      int b[2] = {NextWideByte(), NextWideByte()};
      if (s_.SwapFirstLast) std::swap(b[0], b[1]);
      Paint(p, UndoWide((static_cast<std::uint32_t>(b[0] & 15) << 8) | static_cast<std::uint32_t>(b[1]), 12));
      return;
    }
    if (!phase_) {
      heldPixel_ = p;
      heldHigh_ = static_cast<std::uint32_t>(NextWideByte());
      phase_ = true;
    } else {
      const std::uint32_t middle = static_cast<std::uint32_t>(NextWideByte());
      const std::uint32_t last = static_cast<std::uint32_t>(NextWideByte());
      Paint(heldPixel_, UndoWide((heldHigh_ << 4) | (middle >> 4), 12));
      Paint(p, UndoWide(((middle & 15) << 8) | last, 12));
      phase_ = false;
    }
    return;
  }
  if (s_.Colours65536) {
    int b[2] = {NextWideByte(), NextWideByte()};
    if (s_.SwapFirstLast) std::swap(b[0], b[1]);
    std::uint32_t v = (static_cast<std::uint32_t>(b[0]) << 8) | static_cast<std::uint32_t>(b[1]);
    // Red and blue traded at the cut: the same trade takes it back.
    if (s_.SwapRedGreen) v = ((v & 31) << 11) | (v & 0x7E0) | ((v >> 11) & 31);
    Paint(p, UndoWide(v, 16));
    return;
  }
  if (s_.Colours262kPacked || s_.Colours262kUnpacked) {
    int b[3] = {NextWideByte(), NextWideByte(), NextWideByte()};
    if (s_.SwapFirstLast) std::swap(b[0], b[2]);
    std::uint32_t v;
    if (s_.Colours262kUnpacked)
      v = (static_cast<std::uint32_t>(b[0] & 63) << 12) | (static_cast<std::uint32_t>(b[1] & 63) << 6) |
          static_cast<std::uint32_t>(b[2] & 63);
    else
      v = (static_cast<std::uint32_t>(b[0] & 3) << 16) | (static_cast<std::uint32_t>(b[1]) << 8) |
          static_cast<std::uint32_t>(b[2]);
    Paint(p, UndoWide(v, 18));
    return;
  }
  if (s_.Colours16M) {
    // The alpha byte of 32 bit pixels leads, or trails with RGBA; with RGBA and the swap there is none.
    const bool alpha = !s_.Packed;
    if (alpha && !s_.Rgba) NextWideByte();
    int rgb[3] = {NextWideByte(), NextWideByte(), NextWideByte()};
    if (alpha && s_.Rgba && !s_.SwapFirstLast) NextWideByte();
    if (s_.SwapFirstLast) std::swap(rgb[0], rgb[2]);
    const std::uint32_t v = (static_cast<std::uint32_t>(rgb[0]) << 16) | (static_cast<std::uint32_t>(rgb[1]) << 8) |
                            static_cast<std::uint32_t>(rgb[2]);
    Paint(p, UndoWide(v, 24));
  }
}

void PixelUnpacker::Flush() {
  if (s_.Gray32 && s_.Packed && counter_ != 0) {
    const int byte = Byte8();
    if (counter_ == 1)
      Paint(held_[0], static_cast<std::uint32_t>(byte >> 3));
    else
      Paint(held_[1], heldBits_ | static_cast<std::uint32_t>(byte >> 5));
    counter_ = 0;
  }
  if (s_.Colours4096 && s_.Packed && phase_) {
    const std::uint32_t low = static_cast<std::uint32_t>(NextWideByte());
    Paint(heldPixel_, UndoWide((heldHigh_ << 4) | (low >> 4), 12));
    phase_ = false;
  }
}

}  // namespace

// The pixels are placed by the writer's own walk, so that whatever a table holds comes back where
// it was read. A reader of its own would fall short of that: one that starts each row of the
// leftward walk at a fixed column (127) paints outside a narrower canvas and loses the right part
// of a wider one, and one that takes a 16 or 32 bit word from characters at fixed places drops
// digits of it. Words are therefore read whole (ReadArrayText) and cut into bytes by the order the
// formatter joined them in (WordsToBytes).
ArrayImportResult ImportArray(ConversionSession& s, const std::vector<std::uint8_t>& data, Bitmap& canvas,
                              std::size_t padding) {
  ArrayImportResult result;
  result.bytesFound = data.size();
  // The walk reads the session's canvas limits and position; they are the session's again after.
  const int keepW = s.CanvasWidth, keepH = s.CanvasHeight, keepX = s.CurX, keepY = s.CurY;
  const int area[4] = {s.ExportAreaX1, s.ExportAreaY1, s.ExportAreaX2, s.ExportAreaY2};
  s.CanvasWidth = canvas.Width();
  s.CanvasHeight = canvas.Height();
  if (!s.SelectionActive) {
    s.ExportAreaX1 = s.ExportAreaY1 = 0;
    s.ExportAreaX2 = canvas.Width();
    s.ExportAreaY2 = canvas.Height();
  }
  s.Abort = false;
  Bitmap painted = canvas;
  PixelUnpacker unpacker(s, data, painted);
  const ScanOrder order = ScanOrderOf(s);
  RunScanOrder(s, order, unpacker);
  if (unpacker.Holding()) unpacker.Flush();
  s.CanvasWidth = keepW;
  s.CanvasHeight = keepH;
  s.CurX = keepX;
  s.CurY = keepY;
  s.ExportAreaX1 = area[0];
  s.ExportAreaY1 = area[1];
  s.ExportAreaX2 = area[2];
  s.ExportAreaY2 = area[3];

  result.bytesNeeded = unpacker.Taken();
  if (result.bytesNeeded == 0)
    result.error = "the canvas is smaller than one datum of this mode and paging scheme";
  else if (data.size() < result.bytesNeeded)
    result.error = "too few data: " + std::to_string(data.size()) + " bytes found, the canvas takes " +
                   std::to_string(result.bytesNeeded);
  else if (data.size() > result.bytesNeeded + padding)
    result.error = "too many data: " + std::to_string(data.size()) + " bytes found, the canvas takes " +
                   std::to_string(result.bytesNeeded);
  else
    result.error = unpacker.Error();
  if (result.error.empty()) canvas = std::move(painted);
  return result;
}

}  // namespace rm
