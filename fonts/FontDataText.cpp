#include "fonts/FontDataText.h"

#include <algorithm>
#include <cstdio>

#include "fonts/CharSelection.h"

namespace rm {

namespace {

std::string Hex(long long value, int digits) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%0*llX", digits, value);
  return buf;
}

void ReplaceAll(std::string& s, const std::string& what, const std::string& by) {
  for (std::size_t at = s.find(what); at != std::string::npos; at = s.find(what, at + by.size()))
    s.replace(at, what.size(), by);
}

std::string PadTo(std::string s, std::size_t width) {
  if (s.size() < width) s.append(width - s.size(), ' ');
  return s;
}

}  // namespace

FontText::FontText(const FontJob& job, const ConversionSession& session, const FontDataInput& in,
                   const CharDescriptor& descriptor)
    : job_(job), s_(session), in_(in), descriptor_(descriptor), template_(ParseFontTemplate(in.templateLines)) {
  switch (s_.Syntax.Comment) {
    case CommentForm::C:
      commentStart_ = " /*";
      commentEnd_ = " */";
      break;
    case CommentForm::Slashes: commentStart_ = " //"; break;
    case CommentForm::Quote: commentStart_ = " '"; break;
    case CommentForm::Semicolon: commentStart_ = " ;"; break;
    case CommentForm::Custom: commentStart_ = s_.Syntax.CustomComment; break;
  }
}

std::string FontText::Separator() const {
  return in_.structure == FontStructure::FontBloc ? job_.DataSeparator : std::string(",");
}

std::string FontText::EndOfLineText() const {
  switch (s_.WorkEol) {
    case EndOfLine::Comma: return ",";
    case EndOfLine::Semicolon: return ";";
    case EndOfLine::None: return "";
    case EndOfLine::Custom: return s_.WorkEolString;
  }
  return ",";
}

std::string FontText::CharText(char32_t c) const { return Utf8(c); }

std::string FontText::CodeName(int code) const { return in_.name + "_0x" + Hex(code, in_.unicode ? 4 : 2); }

bool FontText::HeaderRowOn() const {
  return in_.structure == FontStructure::FontBloc || (in_.structure == FontStructure::DmdStruct && job_.WithFontHeader);
}

void FontText::RemoveLastSeparator(std::vector<std::string>& lines) const {
  if (lines.empty()) return;
  const std::string eol = EndOfLineText();
  std::string& l = lines.back();
  while (!l.empty() && l.back() == ' ') l.pop_back();
  if (!eol.empty() && l.size() >= eol.size() && l.compare(l.size() - eol.size(), eol.size(), eol) == 0)
    l.erase(l.size() - eol.size());
}

void FontText::AddChar(const FontChar& fc, const GlyphMeasure& m, const FontScanResult& r, const DescriptorValues& d,
                       long long address, std::vector<std::string> lines) {
  const bool first = chars_ == 0;
  const bool last = chars_ + 1 == static_cast<int>(in_.chars.size());
  ++chars_;
  maxBytesPerChar_ = std::max(maxBytesPerChar_, r.words);
  if (job_.HorizontalCharsData && !lines.empty()) {
    std::string joined;
    for (const std::string& l : lines) joined += l;
    lines.assign(1, joined);
  }
  const std::string c = CharText(fc.c);
  if (!first && !job_.HorizontalCharsData) {
    if (in_.structure == FontStructure::FontBloc && !job_.FontSuffix.empty()) body_.push_back(job_.FontSuffix);
    if (!job_.CharsSeparator.empty()) body_.push_back(job_.CharsSeparator);
    if (!job_.FontPrefix.empty()) body_.push_back(job_.FontPrefix);
  }
  const std::string values = descriptor_.Values(d, Separator(), false);
  for (CharDescriptor::Field f : descriptor_.Fields()) {
    if (f == CharDescriptor::StartAddress) widestDescriptorValue_ = std::max(widestDescriptorValue_, d.startAddress);
    if (f == CharDescriptor::SizeBytes) widestDescriptorValue_ = std::max(widestDescriptorValue_, d.sizeBytes);
    if (f == CharDescriptor::SizeBits) widestDescriptorValue_ = std::max(widestDescriptorValue_, d.sizeBits);
  }
  switch (in_.structure) {
    case FontStructure::RawData: {
      if (job_.WithCharComment && !job_.HorizontalCharsData) {
        const std::string at = " @ " + std::to_string(address);
        if (in_.unicode)
          body_.push_back(Comment(at + " Char: " + Hex(fc.code, 4) + "' " + c + "' Width in bits :" +
                                  std::to_string(d.width)));
        else
          body_.push_back(Comment(at + " Char:'" + c + "' Width in bits :" + std::to_string(d.width)));
      }
      // Each character is a row of the two-dimensional array in its own braces: a narrower
      // character is then filled up with zeros by the compiler instead of shifting the ones behind.
      RemoveLastSeparator(lines);
      body_.push_back("{");
      for (std::string& l : lines) body_.push_back(std::move(l));
      body_.push_back("},");
      std::string line = job_.WithBraces ? " {" + values + "}" : "  " + values + " ";
      if (!last) line += EndOfLineText() + std::string(27, ' ');
      if (in_.unicode)
        line = PadTo(line, 35) + Comment(" " + Hex(fc.code, 4) + "H" + " '" + c + "'");
      else
        line = PadTo(line, line.size() + 2) + Comment(" '" + c + "'");
      descriptorLines_.push_back(line);
      break;
    }
    case FontStructure::FontBloc:
      body_.push_back(Comment(" '" + c + "'"));
      if (DescriptorsOn()) body_.push_back(" " + descriptor_.Values(d, Separator(), true));
      for (std::string& l : lines) body_.push_back(std::move(l));
      break;
    case FontStructure::DmdStruct: {
      // The descriptor of a DMD font is a run of plain values behind the header row.
      std::string line = " " + descriptor_.Values(d, ",", true);
      std::erase_if(line, [](char ch) { return ch == '{' || ch == '}' || ch == '\n' || ch == '\r'; });
      descriptorLines_.push_back(line);
      for (std::string& l : lines) body_.push_back(std::move(l));
      break;
    }
    case FontStructure::Structured: {
      const std::string name = CodeName(fc.code);
      RemoveLastSeparator(lines);
      body_.push_back(template_.imageDataPrefix + name + "[" + std::to_string(r.words) + "] = {");
      for (std::string& l : lines) body_.push_back(std::move(l));
      body_.push_back("};");
      body_.push_back("");
      // The image record points at the array by its name alone: the prefix's type words belong
      // to the declaration, not to a reference.
      std::string prefix = template_.imageDataPrefix;
      while (!prefix.empty() && prefix.back() == ' ') prefix.pop_back();
      const std::size_t blank = prefix.find_last_of(' ');
      const std::string dataName = (blank == std::string::npos ? prefix : prefix.substr(blank + 1)) + name;
      imageLines_.push_back(CComments() ? "// character : '" + c + "'" : commentStart_ + " character : '" + c + "'");
      imageLines_.push_back(template_.timagePrefix + name + " ={ " + dataName + " ," + std::to_string(r.wordsPerLine) +
                            " ," + std::to_string(r.lines) + " };");
      entries_.push_back("{" + (values.empty() ? std::string("0") : values) + " , &" + name + (last ? "}" : "},"));
      break;
    }
  }
  (void)m;
}

long long FontText::HeaderBytes() const {
  if (!HeaderRowOn()) return 0;
  long long n = 0;
  for (const std::string* h : {&job_.FontHeader1, &job_.FontHeader2, &job_.FontHeader3, &job_.FontHeader4,
                               &job_.FontHeader5, &job_.FontHeader6}) {
    if (*h == "Font Size (2)")
      n += 2;
    else if (*h == "Chars Width" || *h == "Chars Height" || *h == "n Chars" || *h == "0x00" || *h == "First Char")
      ++n;
  }
  return n;
}

std::string FontText::HeaderRow(const FontDataSizes& sizes) const {
  const std::string sep = Separator();
  std::string row;
  const std::string size = Hex(sizes.Total() & 0xFFFF, 4);
  for (const std::string* h : {&job_.FontHeader1, &job_.FontHeader2, &job_.FontHeader3, &job_.FontHeader4,
                               &job_.FontHeader5, &job_.FontHeader6}) {
    if (*h == "Font Size (2)")
      row += "0x" + size.substr(0, 2) + sep + "0x" + size.substr(2, 2) + sep;
    else if (*h == "Chars Width")
      row += std::to_string(sizes.maxWidthSeen) + sep;
    else if (*h == "Chars Height")
      row += std::to_string(sizes.fontHeight) + sep;
    else if (*h == "n Chars")
      row += std::to_string(sizes.count) + sep;
    else if (*h == "0x00")
      row += "0x00" + sep;
    else if (*h == "First Char")
      row += "0x" + Hex(in_.chars.empty() ? 0 : in_.chars.front().code, in_.unicode ? 4 : 2) + sep;
  }
  return row;
}

std::string FontText::Declaration(const std::string& line, const FontDataSizes& sizes) const {
  std::string l = line;
  const std::string& usco = s_.Underscore;
  ReplaceAll(l, "[&FNAME]", in_.name + usco + "Bitmaps");
  ReplaceAll(l, "[&DNAME]", in_.name + usco + "Descriptors");
  ReplaceAll(l, "&FNUMBEROFCHARS", std::to_string(sizes.count));
  ReplaceAll(l, "&FBYTESPERCHAR", std::to_string(std::max<long long>(maxBytesPerChar_, 1)));
  // A table of two dimensions needs its second size in C, and a declaration ends with its brace:
  // what templates leave open or put behind it would not compile.
  ReplaceAll(l, "[][]", "[][" + std::to_string(std::max<std::size_t>(descriptor_.Fields().size(), 1)) + "]");
  const std::size_t brace = l.rfind("{)");
  if (brace != std::string::npos && l.find_first_not_of(" \t", brace + 2) == std::string::npos) l.erase(brace + 1);
  return l;
}

std::vector<std::string> FontText::DescriptionHeader(const FontDataSizes& sizes) const {
  std::vector<std::string> t;
  t.push_back(" >>> Description Header  ");
  t.push_back("Font generated with rastermill " + in_.version);
  t.push_back(in_.dateText);
  if (!in_.unicode) t.push_back("System Codepage :[ " + in_.codePage + " ] ");
  t.push_back("Font Name :[" + job_.FontName + "] ");
  t.push_back("Font Size :[" + std::to_string(job_.FontSize) + "] ");
  if (job_.StretchOn && (job_.WidthFactor != 1.0L || job_.HeightFactor != 1.0L)) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%g", static_cast<double>(job_.WidthFactor));
    t.push_back(std::string("Width Stretch Factor : ") + buf);
    std::snprintf(buf, sizeof buf, "%g", static_cast<double>(job_.HeightFactor));
    t.push_back(std::string("Height Stretch Factor : ") + buf);
    t.push_back("Height Shift Factor : " + std::to_string(job_.StretchHeightShift));
  }
  t.push_back(job_.Antialiased ? "Font Smooting : Antialiased " : "Font Smooting : None ");
  if (in_.unicode) {
    std::string type = "Font Type :[UNICODE " + job_.UnicodeBlockName + "]";
    if (job_.SubblockCount > 1) type += "[" + std::to_string(job_.SubblockHigh - (job_.UnicodeBlockFirst >> 8) + 1) + "]";
    t.push_back(type);
  }
  switch (in_.structure) {
    case FontStructure::FontBloc: t.push_back("Raw Block Output "); break;
    case FontStructure::DmdStruct: t.push_back("DMD Structure Data Output "); break;
    case FontStructure::RawData: t.push_back("Raw Data Output "); break;
    case FontStructure::Structured: t.push_back("Structured Data Output "); break;
  }
  switch (s_.Direction) {
    case PagingDirection::ToLeftAll: t.push_back("Right To left "); break;
    case PagingDirection::UpAll: t.push_back("Upwards "); break;
    case PagingDirection::DownAll: t.push_back("Downwards "); break;
    default: t.push_back("Left To Right "); break;
  }
  if (s_.Gray16) t.push_back(s_.Gray16Horizontal ? "2 Horizontal pixels " : "2 Vertical pixels ");
  t.push_back("Font Shift in X = " + std::to_string(job_.ShiftX));
  t.push_back("Font Shift in Y = " + std::to_string(job_.ShiftY));
  t.push_back("Width Limitation  = " + std::to_string(job_.MaxCharWidth));
  t.push_back("Height Limitation = " + std::to_string(job_.MaxCharHeight));
  if (in_.unicode)
    t.push_back("Characters : " + in_.charactersText);
  else
    t.push_back("Characters : '" + in_.charactersText + "' ");
  t.push_back("Character Count = " + std::to_string(sizes.count) + " ");
  t.push_back(in_.unicode ? "Unicode Font    " : "ANSI Font       ");
  t.push_back(job_.FixedChars || job_.HorizontalCharsData ? "Fixed Length    " : "Variable Length ");
  t.push_back("Font Height = " + std::to_string(sizes.fontHeight));
  std::string depth;
  if (s_.Monochrome)
    depth = s_.NegativeOutput ? "1 bpp inverted " : "1 bpp ";
  else if (s_.Gray16 || s_.Colours16)
    depth = "4 bpp ";
  else if (s_.Colours8)
    depth = "3 bpp ";
  else if (s_.Gray32)
    depth = "5 bpp ";
  else if (s_.Gray4 || s_.Gray4TwoPages)
    depth = "2 bpp ";
  else if (s_.Colours4096)
    depth = "4096 colors ";
  else if (s_.Colours65536)
    depth = "65535 colors ";
  else if (s_.Colours262kPacked || s_.Colours262kUnpacked)
    depth = "262144 colors ";
  else if (s_.Colours16M)
    depth = "16M colors ";
  else
    depth = "256 colors ";
  t.push_back("Pixel depth = " + depth);
  if (s_.Monochrome && s_.PixelsPerByteSetting != 8)
    t.push_back(std::to_string(s_.PixelsPerByteSetting) + " PIXELS PER BYTE ");
  t.push_back("Byte width format is 8 bit  ");
  std::vector<std::string> lines;
  for (const std::string& text : t) lines.push_back(CComments() ? "/* " + text : commentStart_ + " " + text);
  return lines;
}

std::vector<std::string> FontText::Finish(const FontDataSizes& sizes) {
  std::vector<std::string> out;
  if (!job_.NoDescriptionHeaders) out = DescriptionHeader(sizes);
  const auto sizeLine = [&](const std::string& text, long long n) {
    out.push_back((CComments() ? "/*" : commentStart_) + text + std::to_string(n) + (CComments() ? " " : ""));
  };
  sizeLine(" Descriptors Size in Bytes = ", sizes.descriptorBytes);
  sizeLine(" Font Header Size in Bytes = ", sizes.headerBytes);
  sizeLine(" Glyphs Size in Bytes = ", sizes.glyphBytes);
  sizeLine(" Font size in bytes = ", sizes.Total());
  if (CComments()) out.push_back("*/");
  out.push_back("");
  if (!job_.NoCodeHeader && !job_.NoCodeHeaderComment)
    for (const std::string& l : template_.include) out.push_back(Declaration(l, sizes));

  const std::string titles = Comment(" (" + descriptor_.Titles() + ") ");
  const std::string optional = Comment("  >>> Optional Char Descriptors  ");
  const auto moveBody = [&] {
    for (std::string& l : body_) out.push_back(std::move(l));
    body_.clear();
  };
  switch (in_.structure) {
    case FontStructure::RawData:
      out.push_back(Declaration(template_.bitmapsLine, sizes));
      moveBody();
      out.push_back(job_.EndOfData);
      // The descriptors follow as a table of their own: inside the glyphs' array they would be
      // taken for glyph data.
      if (DescriptorsOn()) {
        out.push_back("");
        out.push_back(optional);
        out.push_back(titles);
        // A value above 255 does not fit the byte of a uint8_t table: the table is made of words then.
        std::string declaration = Declaration(template_.descriptorsLine, sizes);
        if (widestDescriptorValue_ > 255) ReplaceAll(declaration, "uint8_t", "uint16_t");
        out.push_back(declaration);
        for (std::string& l : descriptorLines_) out.push_back(std::move(l));
        out.push_back("};");
      }
      break;
    case FontStructure::FontBloc:
      out.push_back(Declaration(template_.blocLine, sizes));
      out.push_back(HeaderRow(sizes));
      if (DescriptorsOn()) {
        out.push_back(optional);
        out.push_back(titles);
      }
      moveBody();
      out.push_back(job_.EndOfData);
      if (!in_.terminatorCode.empty()) out.push_back(in_.terminatorCode);
      break;
    case FontStructure::DmdStruct:
      out.push_back(Declaration(template_.bitmapsLine, sizes));
      if (HeaderRowOn()) out.push_back(HeaderRow(sizes));
      if (DescriptorsOn()) {
        out.push_back(titles);
        for (std::string& l : descriptorLines_) out.push_back(std::move(l));
      }
      moveBody();
      out.push_back(job_.EndOfData);
      break;
    case FontStructure::Structured:
      moveBody();
      for (std::string& l : imageLines_) out.push_back(std::move(l));
      out.push_back("");
      out.push_back(optional);
      out.push_back(titles);
      // One name for the list, where it is made and where the font points at it.
      out.push_back(template_.tcharPrefix + in_.name + "_array[] = {");
      for (std::string& l : entries_) out.push_back(std::move(l));
      out.push_back("};");
      out.push_back(template_.tfontPrefix + " " + in_.name + " = { " + std::to_string(sizes.count) + " , " + in_.name +
                    "_array" + " };");
      break;
  }
  return out;
}

}  // namespace rm
