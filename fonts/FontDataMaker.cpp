#include "fonts/FontDataMaker.h"

#include <algorithm>
#include <cstdio>

#include "engine/DataFormatter.h"
#include "fonts/CharDescriptor.h"
#include "fonts/CharSelection.h"
#include "fonts/FontDataText.h"
#include "fonts/FontGlyph.h"
#include "fonts/FontScan.h"

namespace rm {

bool FontDataMaker::Check(const FontDataInput& in) {
  const PagingDirection d = s_.Direction;
  if (d == PagingDirection::ToRight || d == PagingDirection::ToLeft || d == PagingDirection::Up ||
      d == PagingDirection::Down) {
    ui_.MessageDlg(
        "   Change to All Up / All Down / All Left or All Right    \r Data output direction for fonts in the Settings "
        "Panel   \r    - find the buttons with double arrows icon -         \r Current direction only available for "
        "Work Canvas graphics ",
        " Font data output direction error", DlgType::Error, {"OK"});
    return false;
  }
  if (s_.Output == OutputKind::Bits32) {
    if (!s_.Monochrome) {
      ui_.MessageDlg(" Sorry , 32 bit font available only for monochrome ! \r Change color mode to monochrome",
                     "Under Dev", DlgType::Error, {"OK"});
      return false;
    }
    if (!IsHorizontal(d)) {
      ui_.MessageDlg(" Sorry , this 32 bit font scheme is not available  ! \r Change direction to Up, Down, Left or Right",
                     "Under Dev", DlgType::Error, {"OK"});
      return false;
    }
  }
  if (in.chars.empty()) {
    ui_.MessageDlg(std::string(" List of Chars to export as Data is empty ! \r") + " Please select Chars inside the Font Grid " +
                       "\r" + " Also check help <info>",
                   "Font Export Error", DlgType::Error, {"OK"});
    return false;
  }
  if (s_.Output == OutputKind::IntelHex) {
    ui_.MessageDlg(
        " No IntelHex format available for Font ) \r Change IntelHex Setting to 8,16 or 32 bit or Binary Format \r in "
        "the settings Panel ",
        "Font Settings error", DlgType::Error, {"OK"});
    return false;
  }
  if (s_.Gray32 || s_.Colours16M || (s_.Colours4096 && s_.Packed) || s_.Colours8 || s_.Gray4TwoPages ||
      s_.Colours262kPacked || s_.Colours262kUnpacked) {
    ui_.MessageDlg(
        " Sorry , this font output scheme is under development ! \r Some of the grayscale or color modes are not "
        "supported yet\r And No Editable Font Support higher than 256 Colors yet  \r - Send us an email if feature is "
        "needed - ",
        "Project error", DlgType::Error, {"OK"});
    return false;
  }
  if (s_.Gray16) {
    // The 16 gray walks: across rows only, or with the other scheme also down the columns.
    const bool refused = in.grayHorizontalScheme ? d == PagingDirection::UpAll : !IsHorizontal(d);
    if (refused) {
      ui_.MessageDlg("This font orientation is yet not available in this grayscale mode > 2 horizontal pixels ! ",
                     "Error ", DlgType::Error, {"OK"});
      return false;
    }
  }
  if (s_.Output != OutputKind::BinaryFile) {
    s_.Output = OutputKind::Bits8;
    ui_.Status("8 bit format enabled");
  }
  return true;
}

namespace {

// One character as the run made it.
struct CharData {
  FontChar fc;
  GlyphMeasure m;
  FontScanResult r;
  std::vector<std::string> lines;
  std::vector<std::uint8_t> bytes;
  DescriptorValues d;
  long long address = 0;
};

}  // namespace

bool FontDataMaker::Make(const FontDataInput& in, TextLines& text, std::vector<std::uint8_t>& bytes) {
  sizes_ = {};
  sizes_.count = static_cast<int>(in.chars.size());
  const bool binary = s_.Output == OutputKind::BinaryFile;
  s_.FontMode = false;  // the data lines keep their separators: each row is a line of C
  s_.Abort = false;
  s_.ByteCount = 0;
  s_.WorkEol = in.fontEol;
  s_.WorkEolString = in.fontEolString;

  const GlyphRenderer renderer(font_, job_, s_);
  Bitmap image;
  std::string error;
  FontScanSettings st;
  // Binary records carry whole cells: their width and height say what the data hold.
  st.offsetsOn = job_.UseOffsets && !binary;
  st.fixed = job_.FixedChars || job_.HorizontalCharsData;
  st.maxCharHeight = job_.MaxCharHeight;
  st.filler = in.filler;

  // A fixed font needs the widest character first.
  GlyphMeasure m;
  for (const FontChar& fc : in.chars) {
    if (!renderer.Render(fc.c, in.unicode, image, m, error)) {
      ui_.MessageDlg(error, "Font Size", DlgType::Error, {"OK"});
      return false;
    }
    sizes_.maxWidthSeen = std::max(sizes_.maxWidthSeen, m.CharWidth);
    sizes_.fontHeight = std::max(sizes_.fontHeight, m.CharHeight);
  }
  st.maxWidthSeen = sizes_.maxWidthSeen;

  TextLines glyphText, aux;
  HexBuffer hex;
  DataFormatter formatter(s_, glyphText, aux, hex);
  FontScan scan(s_, formatter);
  const CharDescriptor descriptor(job_);
  std::vector<CharData> chars;
  chars.reserve(in.chars.size());
  long long address = binary ? 16 : 0;
  for (std::size_t i = 0; i < in.chars.size(); ++i) {
    ui_.Progress(static_cast<long long>(i), static_cast<long long>(in.chars.size()));
    if (ui_.EscapePressed()) {
      ui_.MessageDlg("Font generation output canceled by escape key !", "Font generation canceled", DlgType::Warning,
                     {"OK"});
      return false;
    }
    CharData cd;
    cd.fc = in.chars[i];
    renderer.Render(cd.fc.c, in.unicode, image, cd.m, error);
    glyphText.Clear();
    scan.SetBinarySink(binary ? &cd.bytes : nullptr);
    if (!scan.TranslateToDirection(image, cd.m, st, cd.r) && !s_.Monochrome) return false;
    cd.lines = glyphText.Lines();
    const bool cutColumns = st.offsetsOn && !st.fixed;
    cd.d.address = FormatCharAddress(cd.fc.code, job_.AddressFormat, in.unicode);
    cd.d.width = cutColumns ? cd.m.CharWidth - cd.m.RightVoid - cd.m.LeftVoid : cd.m.CharWidth;
    if (st.fixed) cd.d.width = std::max(cd.m.CharWidth, st.maxWidthSeen);
    cd.d.height = cd.r.scanHeight;
    cd.d.xOffset = cutColumns ? cd.m.LeftVoid : 0;
    cd.d.yOffset = st.offsetsOn ? std::to_string(cd.m.TopVoid) : "0x00";
    cd.d.startAddress = address;
    cd.d.sizeBytes = static_cast<long long>(cd.d.width) * cd.d.height;
    cd.d.sizeBits = cd.m.CharBits;
    cd.d.spacing = cd.m.RightVoid;
    cd.address = address;
    address += binary ? (cd.r.words + 15) / 16 * 16 + 16 : cd.r.words;
    sizes_.glyphBytes += cd.r.words;
    if (!job_.NoDescriptorBloc && !binary) sizes_.descriptorBytes += descriptor.Bytes(cd.d);
    ui_.Status("W/H :" + std::to_string(cd.m.CharWidth) + "/" + std::to_string(cd.m.CharHeight) +
               " / Bits : " + std::to_string(cd.m.CharBits) + "  Offs Y : " + std::to_string(cd.m.TopVoid) + " " +
               std::to_string(cd.m.BottomVoid) + "  X : " + std::to_string(cd.m.LeftVoid) + " " +
               std::to_string(cd.m.RightVoid));
    chars.push_back(std::move(cd));
  }
  ui_.Progress(static_cast<long long>(in.chars.size()), static_cast<long long>(in.chars.size()));

  if (binary) {
    // A block of 16 bytes heads the file; then each character is a record of 16 bytes, its data,
    // and bytes of 0x55 up to the next multiple of 16.
    bytes.clear();
    const std::string head = "HEADER          ";
    bytes.insert(bytes.end(), head.begin(), head.end());
    const auto decimalAsHex = [&](long long v) {
      const int n = static_cast<int>(v % 10000);
      const int digits = (n / 1000) * 0x1000 + (n / 100 % 10) * 0x100 + (n / 10 % 10) * 0x10 + n % 10;
      bytes.push_back(static_cast<std::uint8_t>(digits >> 8));
      bytes.push_back(static_cast<std::uint8_t>(digits & 0xFF));
    };
    const auto word = [&](long long v) {
      bytes.push_back(static_cast<std::uint8_t>((v >> 8) & 0xFF));
      bytes.push_back(static_cast<std::uint8_t>(v & 0xFF));
    };
    for (const CharData& cd : chars) {
      const long long count = static_cast<long long>(cd.bytes.size());
      bytes.push_back(0x55);
      bytes.push_back(0xAA);
      word(in.unicode ? 2 : 1);
      decimalAsHex(count);
      decimalAsHex(cd.d.width);
      decimalAsHex(cd.d.height);
      word(cd.fc.code);
      word(cd.address + (count + 15) / 16 * 16 + 16);
      bytes.push_back(0xAA);
      bytes.push_back(0x55);
      bytes.insert(bytes.end(), cd.bytes.begin(), cd.bytes.end());
      while (bytes.size() % 16 != 0) bytes.push_back(0x55);
    }
    return true;
  }

  FontText out(job_, s_, in, descriptor);
  for (CharData& cd : chars) out.AddChar(cd.fc, cd.m, cd.r, cd.d, cd.address, cd.lines);
  sizes_.headerBytes = out.HeaderBytes();
  text.Clear();
  for (std::string& l : out.Finish(sizes_)) text.Add(std::move(l));
  return true;
}

}  // namespace rm
