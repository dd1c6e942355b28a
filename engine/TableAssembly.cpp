// The parts of a table around its data: the header template, the comments above, the second
// plane of the two page mode, the descriptors and the closing comment below.
#include <cmath>

#include "engine/DataEncoder.h"
#include "engine/ProgramVersion.h"

namespace rm {

namespace {

std::string TrimRight(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.pop_back();
  return s;
}

// A text that goes into a comment, a file name for instance, must stay inside it: a line end
// would put the rest of it outside, and "*/" would close a C comment early.
std::string CommentSafe(std::string t, bool cBlock) {
  for (char& c : t)
    if (static_cast<unsigned char>(c) < 32 && c != '\t') c = '_';
  if (cBlock)
    for (std::size_t pos = t.find("*/"); pos != std::string::npos; pos = t.find("*/", pos)) t.replace(pos, 2, "*_/");
  return t;
}

std::string ReplaceAll(std::string s, const std::string& from, const std::string& to) {
  for (std::size_t pos = s.find(from); pos != std::string::npos; pos = s.find(from, pos + to.size()))
    s.replace(pos, from.size(), to);
  return s;
}

}  // namespace

std::string DataEncoder::Comment(const std::string& text) const {
  if (s_.Syntax.Comment == CommentForm::C) return "/*" + CommentSafe(text, true) + " */";
  return formatter_.CommentPrefix() + CommentSafe(text, false);
}

std::string DataEncoder::DataSeparatorText() const {
  const DataSyntax& syn = s_.Syntax;
  if (syn.SeparatorOn && syn.SeparatorCustom && !syn.SeparatorString.empty()) return syn.SeparatorString;
  return ",";
}

long long DataEncoder::DataSize() const {
  // TotalBytes is what the walk writes; a last word or plane filled up with zero bytes counts
  // whole, as the formatter writes it.
  long long size = s_.TotalBytes;
  if (s_.Output == OutputKind::Bits32)
    size = (size + 3) / 4;
  else if (s_.Output == OutputKind::Bits16)
    size = (size + 1) / 2;
  if (s_.Gray4TwoPages && s_.Direction != PagingDirection::Down) size = (size + 1) / 2;
  return size;
}

long long DataEncoder::CountWalkBytes() {
  // What the walkers and packers change on their way, put back afterwards.
  const long double byteCount = s_.ByteCount, ppb = s_.PixelsPerByte;
  const int curX = s_.CurX, curY = s_.CurY, currentByte = s_.CurrentByte, canvasW = s_.CanvasWidth,
            canvasH = s_.CanvasHeight, x1 = s_.ExportAreaX1, y1 = s_.ExportAreaY1, x2 = s_.ExportAreaX2,
            y2 = s_.ExportAreaY2, g32Counter = s_.Gray32Counter, g32A = s_.Gray32A, g32C = s_.Gray32C,
            phase4096 = s_.Packed4096Phase, first4096 = s_.Packed4096First;
  const bool abort = s_.Abort;
  counting_ = true;
  counted_ = 0;
  formatter_.SetMuted(true);
  Walk();
  formatter_.SetMuted(false);
  counting_ = false;
  const long long n = s_.Abort ? -1 : counted_;
  s_.ByteCount = byteCount;
  s_.PixelsPerByte = ppb;
  s_.CurX = curX;
  s_.CurY = curY;
  s_.CurrentByte = currentByte;
  s_.CanvasWidth = canvasW;
  s_.CanvasHeight = canvasH;
  s_.ExportAreaX1 = x1;
  s_.ExportAreaY1 = y1;
  s_.ExportAreaX2 = x2;
  s_.ExportAreaY2 = y2;
  s_.Gray32Counter = g32Counter;
  s_.Gray32A = g32A;
  s_.Gray32C = g32C;
  s_.Packed4096Phase = phase4096;
  s_.Packed4096First = first4096;
  s_.Abort = abort;
  return n;
}

FilledTemplate DataEncoder::LoadHeaderTemplate(const std::string* fixedName, const std::string* fixedSize) {
  std::vector<std::string> lines;
  if (s_.HeaderIncludeFile.empty()) {
    lines = DefaultGraphicsTemplate();
  } else {
    TextLines file;
    if (file.LoadFromFile(s_.HeaderIncludeFile))
      lines = file.Lines();
    else
      ui_.MessageDlg(" File " + s_.HeaderIncludeFile + " not found ! No table header will be add... ", "Warning",
                     DlgType::Warning, {"OK"});
  }
  HeaderTagValues v;
  const bool animation = s_.AnimationFrame > 0;
  v.name = animation ? s_.TableName + s_.Underscore + std::to_string(s_.AnimationFrame) : s_.TableName;
  if (!s_.Compression) v.dataSize = DataSize();
  if (fixedName) v.name = *fixedName;
  if (fixedSize) {
    v.size = *fixedSize;
    v.dataSize = -1;
  }
  // A byte table holds numbers above 255 as two bytes; a 16 or 32 bit table holds each in one
  // datum.
  v.splitNumbers = (s_.EncodeWidth > 255 || s_.EncodeHeight > 255) && s_.Output == OutputKind::Bits8;
  v.bigEndian = s_.BigEndian;
  v.numberSeparator = DataSeparatorText();
  v.numbersLineEnd = formatter_.EndOfLineText().empty() ? DataSeparatorText() : formatter_.EndOfLineText();
  v.sizeInData = s_.GraphicSizeInData;
  v.positionInData = s_.GraphicPositionInData;
  v.linePrefix = s_.Syntax.LinePrefix + s_.Syntax.LinePrefix2;
  v.width = s_.EncodeWidth;
  v.height = s_.EncodeHeight;
  v.x1 = s_.ExportAreaX1;
  v.y1 = s_.ExportAreaY1;
  v.x2 = s_.ExportAreaX2;
  v.y2 = s_.ExportAreaY2;
  v.canvasWidth = s_.CanvasWidth;
  v.canvasHeight = s_.CanvasHeight;
  v.originRight = s_.Origin == OriginCorner::TR || s_.Origin == OriginCorner::BR;
  v.originBottom = s_.Origin == OriginCorner::BL || s_.Origin == OriginCorner::BR;
  v.pointerName = "x" + s_.Underscore + v.name;
  return FillTemplate(lines, v);
}

std::string DataEncoder::CompressionTitle() const {
  // Closed the right way round: "/*" as a closing mark would leave the comment open and the
  // pointer table inside it.
  return s_.Syntax.Comment == CommentForm::C ? "/* Compression informations */"
                                             : formatter_.CommentPrefix() + "Compression informations ";
}

void DataEncoder::WriteTopComments(bool clut) {
  const std::string version = ProgramVersion();
  const bool c = s_.Syntax.Comment == CommentForm::C;
  if (clut)
    text_.Add(Comment(" Color Look-Up Table generated with rastermill " + version));
  else if (s_.Compression)
    text_.Add(c ? "/* COMPRESSED Data generated with rastermill " + version + "*/"
                : Comment(" COMPRESSED Data generated with rastermill " + version));
  else
    text_.Add(Comment(" Data generated with rastermill " + version));
  if (s_.AnimationFrame > 0)
    text_.Add(Comment(" Animated Sequence Part # " + std::to_string(s_.AnimationFrame) + " of " +
                      std::to_string(s_.AnimationFrames) + " "));
  text_.Add(Comment(" " + s_.LastInfoDateText));
  text_.Add(Comment(" Bitmap Source file : " + s_.SourceFileName));
  std::string width;
  switch (clut ? OutputKind::Bits32 : s_.Output) {
    case OutputKind::Bits16: width = " Word width format is 16 bit "; break;
    case OutputKind::Bits32: width = " Word width format is 32 bit "; break;
    default: width = " Byte width format is 8 bit "; break;
  }
  width += s_.BigEndian ? "/ Big endian" : "/ Little endian";
  if (s_.Monochrome && !s_.Not6bit) width += " / 6 bit T6963 Mode ";
  text_.Add(Comment(width));
  if (s_.PostProcessing) text_.Add(Comment(" Postprocessing is ENABLED "));
  text_.Add("");
}

void DataEncoder::WriteTableHead(const FilledTemplate& head, bool clut) {
  const DataSyntax& syn = s_.Syntax;
  text_.Clear();
  for (const std::string& l : head.commentLines) text_.Add(l);
  if (!syn.NoComments) WriteTopComments(clut);
  // A colour look-up table holds 24 bit values: its entries are 32 bit wide whatever the output.
  const OutputKind width = clut ? OutputKind::Bits32 : s_.Output;
  const bool widen = syn.ConvertUint8 && (width == OutputKind::Bits16 || width == OutputKind::Bits32);
  const std::string wide = width == OutputKind::Bits32 ? "uint32_t" : "uint16_t";
  if (!syn.NoHeader) {
    for (const std::string& raw : head.header) {
      const std::string l = TrimRight(widen ? ReplaceAll(raw, "uint8_t", wide) : raw);
      if (l.empty() && !text_.Empty() && text_.Last().empty()) continue;  // one blank line, not two
      text_.Add(l);
    }
  } else if (!syn.Groups) {
    text_.Add(syn.BeginOfData);
  }
  if (syn.Groups) text_.Add(syn.ArrayPrefix);

  // The pointer table of a compressed run is built beside the data, under the header the template
  // gives it. Without a header the pointer table has no declaration either: it follows the begin
  // of data under its plain title line, as with a template that has no compression part.
  if (s_.Compression && !clut) {
    aux_.Clear();
    if (!syn.NoHeader && head.hasCompressionTag) {
      for (const std::string& l : head.pointerHeader) aux_.Add(TrimRight(l));
    } else if (!syn.NoHeader && head.hasName) {
      // The template has no part for the pointer table: it is declared like the data table,
      // under its own name, or it would stand as bare data after the table's end.
      aux_.Add("");
      aux_.Add(CompressionTitle());
      aux_.Add(TrimRight(head.NameLineFor(head.pointerName)));
    }
  }
}

void DataEncoder::WriteTableTail(const FilledTemplate& head, const std::string& endString) {
  const DataSyntax& syn = s_.Syntax;
  if (s_.Gray4TwoPages) {
    // The second plane, under the declaration line of the first.
    formatter_.TreatLastLine(true);
    text_.Add("");
    const bool declared = !syn.NoHeader && !head.nameLine.empty();
    // Two tables under one name would not compile: the second plane's name says which it is.
    if (declared) text_.Add(TrimRight(head.NameLineFor(head.name + "_P2")));
    if (syn.Groups)
      text_.Add(syn.ArrayPrefix);
    else if (!declared)
      text_.Add(syn.BeginOfData);
    for (const auto& l : aux_.Lines()) text_.Add(l);
    text_.Add(endString);
  }

  // The descriptors take the type words of the declaration. A template without a name gives
  // none, and a declaration without a type does not compile: they are left out, as the name is.
  const auto descriptor = [&](const std::string& text, long long value) {
    if (!head.hasName) return;
    if (text_.Empty() || !text_.Last().empty()) text_.Add("");
    std::string type = head.beforeName;
    // A byte type cannot hold a value above 255.
    if (value > 255) type = ReplaceAll(type, "uint8_t", "uint16_t");
    text_.Add(type + " " + s_.TableName + text + std::to_string(value) + " " + s_.DescriptorsEol);
    text_.Add("");
  };
  const long double ppb = s_.PixelsPerByte;
  if (s_.SizeDescriptors) {
    if (s_.Horizontal) {
      descriptor("WidthPages = ", static_cast<long long>(std::trunc(s_.EncodeWidth / ppb)));
      descriptor("HeightPixels = ", s_.EncodeHeight);
    } else {
      descriptor("WidthPixels = ", s_.EncodeWidth);
      descriptor("HeightPages = ", static_cast<long long>(std::trunc(s_.EncodeHeight / ppb)));
    }
  }
  if (s_.CoordinatesDescriptors) {
    descriptor("X = ", head.x);
    descriptor("Y = ", head.y);
  }

  if (syn.NoComments) return;
  long double count = s_.ByteCount;
  const bool words = s_.Output == OutputKind::Bits16 || s_.Output == OutputKind::Bits32;
  // The count is of what the table holds; a last word filled up with zero bytes counts whole.
  if (s_.Output == OutputKind::Bits16) count = std::ceil(count / 2);
  if (s_.Output == OutputKind::Bits32) count = std::ceil(count / 4);
  const std::string number = std::to_string(static_cast<long long>(std::trunc(count)));
  const std::string unit = words ? " Words" : " Bytes";
  const std::string info =
      CommentSafe(s_.InfoFilePath.empty() ? s_.TableName + ".rtf" : s_.InfoFilePath, syn.Comment == CommentForm::C);
  if (syn.Comment == CommentForm::C) {
    text_.Add("/*****************/");
    text_.Add("/* " + number + unit + " */");
    text_.Add("/* End of LCD Pattern           */");
    text_.Add("");
    text_.Add("/* Save table and see info file " + info + " */");
  } else {
    const std::string t = formatter_.CommentPrefix();
    text_.Add(t + " ******************");
    text_.Add(t + number + unit + " ");
    text_.Add(t + "  End of LCD Pattern  ");
    text_.Add("");
    text_.Add(t + "  Save table and see info file " + info);
  }
  text_.Add("");
}

bool DataEncoder::EncodeColorLutTable() {
  if (canvas_.floatingSelection) {
    ui_.MessageDlg(" Please paste selected area before doing the canvas encoding ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  formatter_.Reset();
  const DataSyntax& syn = s_.Syntax;
  const std::string name = "COLORLUT";
  const std::string size = std::to_string(s_.PaletteSize);
  const FilledTemplate head = LoadHeaderTemplate(&name, &size);
  WriteTableHead(head, true);

  std::string prefix, suffix;
  bool decimal = false;
  const std::string& kind = syn.DataFormatKind;
  if (kind == "H") {
    suffix = "h";
  } else if (kind == "+H+") {
    prefix = syn.DataPrefix;
    suffix = syn.DataSuffix;
  } else if (kind == "B" || kind == "0B" || kind == "+B+" || kind == "+D+") {
    decimal = true;  // 24 bit binary numbers would not be read by anyone: binary kinds give decimal
    if (kind == "+B+" || kind == "+D+") {
      prefix = syn.DataPrefix;
      suffix = syn.DataSuffix;
    }
  } else {
    prefix = "0x";
  }
  std::string eol;
  switch (s_.WorkEol) {
    case EndOfLine::Comma: eol = ","; break;
    case EndOfLine::Semicolon: eol = ";"; break;
    case EndOfLine::None: break;
    case EndOfLine::Custom: eol = s_.WorkEolString; break;
  }
  const int n = static_cast<int>(
      std::min<std::size_t>(static_cast<std::size_t>(std::max(s_.PaletteSize, 0)), s_.PaletteTable.size()));
  for (int i = 0; i < n; ++i) {
    const std::uint32_t entry = static_cast<std::uint32_t>(s_.PaletteTable[static_cast<std::size_t>(i)]) & 0xFFFFFFu;
    std::string value;
    if (decimal) {
      value = std::to_string(entry);
    } else {
      static constexpr char kDigits[] = "0123456789ABCDEF";
      for (int shift = 20; shift >= 0; shift -= 4) value += kDigits[(entry >> shift) & 0xF];
    }
    std::string line = prefix + value + suffix + (i < n - 1 ? eol : std::string());
    if (!syn.NoDataComments && !syn.NoComments) {
      if (syn.Comment == CommentForm::C)
        line += "   //" + std::to_string(i);
      else
        line += "   " + formatter_.CommentPrefix() + std::to_string(i);
    }
    text_.Add(line);
  }
  text_.Add(syn.Groups ? syn.ArraySuffix : syn.EndOfData);
  if (!syn.NoComments) {
    text_.Add(syn.Comment == CommentForm::C ? "/* End of Color Look-Up Table (CLUT)  */"
                                            : formatter_.CommentPrefix() + " End of Color Look-Up Table (CLUT)  ");
    text_.Add("");
  }
  return true;
}

}  // namespace rm
