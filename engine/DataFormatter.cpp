#include "engine/DataFormatter.h"

#include <array>
#include <initializer_list>
#include <string_view>

#include "engine/Compression.h"

namespace rm {

namespace {

// The two upper case hex digits of every byte, one table look-up per datum.
constexpr std::array<char, 512> kHexPairs = [] {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::array<char, 512> t{};
  for (int v = 0; v < 256; ++v) {
    t[static_cast<std::size_t>(2 * v)] = kDigits[v >> 4];
    t[static_cast<std::size_t>(2 * v + 1)] = kDigits[v & 0xF];
  }
  return t;
}();

}  // namespace

DataFormatter::Kind DataFormatter::KindOf(const std::string& k) {
  if (k == "H") return Kind::H;
  if (k == "B") return Kind::B;
  if (k == "0B") return Kind::ZeroB;
  if (k == "+H+") return Kind::AffixH;
  if (k == "+B+") return Kind::AffixB;
  if (k == "+D+") return Kind::AffixD;
  return Kind::X;  // "X" and anything unknown: C hex
}

void DataFormatter::Reset() {
  kind_ = KindOf(s_.Syntax.DataFormatKind);
  main_ = {};
  page2_ = {};
  pointers_ = {};
  dataPerLine_ = s_.WorkDataPerLine;
  dataText_.clear();
  for (auto& b : b_) b.clear();
  wordIndex_ = 0;
  leadZero_.clear();
  gap_ = " ";
  comment_.clear();
  commentActive_ = false;
  suffixPending_ = false;
  holdingFirstPlane_ = false;
  firstPlaneByte_ = 0;
  intelHex_.Start(s_.HexBytesPerLine, s_.HexAddressDigits, s_.HexAddressOffset);
}

int DataFormatter::WordBytes() const {
  switch (s_.Output) {
    case OutputKind::Bits16: return 2;
    case OutputKind::Bits32: return 4;
    default: return 1;
  }
}

std::string DataFormatter::ByteToBinaryText(int value, int digits) {
  std::string t(static_cast<std::size_t>(digits), '0');
  for (int i = 0; i < digits; ++i)
    if (value & (1 << (digits - 1 - i))) t[static_cast<std::size_t>(i)] = '1';
  return t;
}

void DataFormatter::SetByteText(std::string& out, int value) const {
  if (Binary())
    out = ByteToBinaryText(value, 8);
  else if (kind_ == Kind::AffixD)
    out = std::to_string(value);
  else
    out.assign(&kHexPairs[static_cast<std::size_t>(2 * (value & 0xFF))], 2);
}

std::string DataFormatter::CommentPrefix() const {
  switch (s_.Syntax.Comment) {
    case CommentForm::C: return "/* ";
    case CommentForm::Slashes: return " //";
    case CommentForm::Quote: return " '";
    case CommentForm::Semicolon: return " ;";
    case CommentForm::Custom: return s_.Syntax.CustomComment;
  }
  return "/* ";
}

std::string DataFormatter::CommentSuffix() const { return s_.Syntax.Comment == CommentForm::C ? " */" : ""; }

std::string DataFormatter::EndOfLineText() const {
  switch (s_.WorkEol) {
    case EndOfLine::Comma: return ",";
    case EndOfLine::Semicolon: return ";";
    case EndOfLine::None: return "";
    case EndOfLine::Custom: return s_.WorkEolString;
  }
  return ",";
}

void DataFormatter::StartDataComment() {
  if (muted_) return;
  // Later bytes of a 16 or 32 bit word share the word's comment.
  if (wordIndex_ != 0) return;
  comment_.clear();
  commentActive_ = false;
  // The picture comment only ever shows with one datum per line; other lines never hold it.
  if (dataPerLine_ != 1 || s_.Syntax.NoDataComments || s_.Syntax.NoComments || s_.Output == OutputKind::BinaryFile ||
      s_.Output == OutputKind::IntelHex)
    return;
  const std::string u(static_cast<std::size_t>(8 * WordBytes()), '_');
  switch (s_.Syntax.Comment) {
    case CommentForm::C: comment_ = "     /*  " + u + "  */"; break;
    case CommentForm::Slashes: comment_ = " //      " + u + "    "; break;
    default: comment_ = CommentPrefix() + "       " + u + "    "; break;
  }
  markBase_ = comment_.find('_');
  commentActive_ = true;
}

void DataFormatter::MarkBit(int bitValue) {
  if (muted_ || !commentActive_ || dataPerLine_ != 1) return;
  int bit = 0;
  while (bit < 7 && (1 << bit) != bitValue) ++bit;
  const int n = WordBytes();
  // The picture reads like the datum's text: in little endian order the first byte stands last.
  const int byteSlot = s_.BigEndian ? wordIndex_ : (n - 1 - wordIndex_);
  const std::size_t pos = markBase_ + static_cast<std::size_t>(8 * byteSlot + (7 - bit));
  if (pos < comment_.size() && comment_[pos] == '_') comment_[pos] = '#';
}

void DataFormatter::MarkDataComment(int value) {
  for (int bit = 0; bit < 8; ++bit)
    if (value & (1 << bit)) MarkBit(1 << bit);
}

void DataFormatter::EmitDataByte(bool /*lastOfPixel*/) {
  // A compressing walk counts its bytes before they get here, swallowed ones included.
  if (!CompressesBytes(s_)) s_.ByteCount += 1;
  int value = s_.CurrentByte & 0xFF;

  // Monochrome marks its comment pixel by pixel as it reads them; the other modes from the value.
  if (!s_.Monochrome && commentActive_) MarkDataComment(value);

  // Inverted output is the data the display wants, whatever the kind of output: the binary and
  // Intel HEX bytes are the same as the text's.
  if (s_.Monochrome && s_.NegativeOutput) value = 255 - value;
  if (s_.Output == OutputKind::BinaryFile || s_.Output == OutputKind::IntelHex) {
    if (s_.Output == OutputKind::IntelHex)
      intelHex_.InputByte(static_cast<std::uint8_t>(value));
    else
      hex_.AddByte(static_cast<std::uint8_t>(value));
    return;
  }

  if (s_.Gray4TwoPages && s_.Output == OutputKind::Bits8) {
    if (!holdingFirstPlane_) {
      holdingFirstPlane_ = true;
      firstPlaneByte_ = value;
      return;
    }
    holdingFirstPlane_ = false;
    EmitTwoPlanes(firstPlaneByte_, value);
    return;
  }

  const int n = WordBytes();
  wordValues_[wordIndex_] = value;
  if (wordIndex_ < n - 1) {
    SetByteText(b_[wordIndex_], value);
    ++wordIndex_;
    return;
  }
  MakeDataText(value);
  if (n > 1) {
    if (kind_ == Kind::AffixD) {
      long long v = 0;
      if (n == 2) {
        v = (static_cast<long long>(wordValues_[0]) << 8) + wordValues_[1];
      } else if (s_.BigEndian) {
        v = (static_cast<long long>(wordValues_[0]) << 24) + (wordValues_[1] << 16) + (wordValues_[2] << 8) +
            wordValues_[3];
      } else {
        v = (static_cast<long long>(wordValues_[3]) << 24) + (wordValues_[2] << 16) + (wordValues_[1] << 8) +
            wordValues_[0];
      }
      dataText_ = std::to_string(v);
    } else {
      std::string& joined = joined_;  // kept between data, so that its memory is reused
      joined.clear();
      if (s_.BigEndian) {
        for (int i = 0; i < n - 1; ++i) joined += b_[i];
        joined += dataText_;
      } else {
        joined = dataText_;
        for (int i = n - 2; i >= 0; --i) joined += b_[i];
      }
      dataText_.swap(joined);
    }
    if (n == 4 && dataText_.size() < 10) dataText_.append(10 - dataText_.size(), ' ');
    // The leading zero looks at the first byte of the text as written.
    const int firstShown = s_.BigEndian ? wordValues_[0] : wordValues_[n - 1];
    leadZero_.clear();
    if (HexH() && s_.Syntax.LeadingZero && firstShown >= 0xA0) leadZero_ = "0";
  }
  gap_ = " ";
  if (!leadZero_.empty()) {
    ++main_.zerosInserted;
    if (n == 2 && !s_.BigEndian) gap_.clear();
  }
  wordIndex_ = 0;

  AppendDatumToLine(main_, comment_);
  FlushLine(main_, text_, comment_);
  leadZero_.clear();
  if (n == 4)
    for (auto& b : b_) b.clear();
}

void DataFormatter::FinishWord() {
  if (s_.Output == OutputKind::BinaryFile || s_.Output == OutputKind::IntelHex) return;
  if (holdingFirstPlane_) {
    holdingFirstPlane_ = false;
    EmitTwoPlanes(firstPlaneByte_, 0);
  }
  while (wordIndex_ != 0) {
    s_.CurrentByte = s_.Monochrome && s_.NegativeOutput ? 255 : 0;  // written as 0
    EmitDataByte();
  }
}

void DataFormatter::MakeDataText(int value) {
  SetByteText(dataText_, value);
  leadZero_.clear();
  if (HexH() && s_.Syntax.LeadingZero && value >= 0xA0) leadZero_ = "0";
}

void DataFormatter::EmitTwoPlanes(int first, int second) {
  const int v = first * 256 + second;
  int a = 0, b = 0;
  for (int i = 0; i < 8; ++i) {
    const int oddBit = (v >> (15 - 2 * i)) & 1;   // bits 15, 13 ... 1
    const int evenBit = (v >> (14 - 2 * i)) & 1;  // bits 14, 12 ... 0
    const int target = s_.BigEndian ? 7 - i : i;
    a |= oddBit << target;
    b |= evenBit << target;
  }
  MakeDataText(b);
  gap_ = " ";
  if (!leadZero_.empty()) ++main_.zerosInserted;
  AppendDatumToLine(main_, comment_);
  FlushLine(main_, text_, comment_);

  MakeDataText(a);
  if (!leadZero_.empty()) ++page2_.zerosInserted;
  AppendDatumToLine(page2_, comment_);
  FlushLine(page2_, aux_, comment_);
  leadZero_.clear();
}

namespace {

// Appends the pieces in order: one datum's text is built in place, without temporaries.
void Append(std::string& out, std::initializer_list<std::string_view> pieces) {
  for (std::string_view p : pieces) out.append(p.data(), p.size());
}

}  // namespace

void DataFormatter::AppendDatumToLine(LineState& line, const std::string& comment, std::string_view lead) {
  const DataSyntax& syn = s_.Syntax;
  const int n = dataPerLine_;
  ++line.linePosition;
  const int p = line.linePosition;
  if (syn.LineNumbers && p == n) ++line.lineNumber;
  const Kind kind = kind_;
  const bool binary = Binary();
  std::string_view S;
  if (syn.SeparatorOn)
    S = binary ? std::string_view(", ") : (syn.SeparatorCustom ? std::string_view(syn.SeparatorString) : ",");
  if (s_.FontMode && n > 1) S = {};
  // With one datum per line the end of line stands between two data: a separator beside it
  // would make two in a row ("0x80,,"), which no compiler takes. The separator serves only
  // when there is no end of line.
  if (n == 1 && !EndOfLineText().empty()) S = {};
  const bool more = More();
  const std::string_view moreS = more ? S : std::string_view();
  const std::string& D = dataText_;
  const std::string& LZ = leadZero_;
  const bool word16 = s_.Output == OutputKind::Bits16;
  std::string& out = line.dataLine;

  // The line prefix P: prefix, line number, prefix end. Only the first datum of a line has it.
  std::string P;
  if (p == 1 || n == 1) {
    P = lead;
    P += syn.LinePrefix;
    if (syn.LineNumbers) P += std::to_string(line.lineNumber);
    P += syn.LinePrefix2;
  }

  // Each datum is its text, then what follows it; the end of the text is kept for the deletion
  // of the last separators.
  const auto datum = [&](std::initializer_list<std::string_view> text, std::initializer_list<std::string_view> after) {
    Append(out, text);
    // The blanks that pad a 32 bit datum to its column are no part of it.
    line.dataEnd = out.size();
    while (line.dataEnd > 0 && out[line.dataEnd - 1] == ' ') --line.dataEnd;
    Append(out, after);
  };

  if (n > 1) {
    line.commentStart = std::string::npos;
    if (kind == Kind::H) {
      if (p == 1)
        datum({P, word16 ? "" : " ", LZ, D, "h"}, {S});
      else if (p < n)
        datum({" ", LZ, D, "h"}, {" ", moreS});
      else
        datum({" ", LZ, D, "h"}, {" "});
    } else if (kind == Kind::ZeroB) {
      if (p == 1)
        datum({P, " 0b", D}, {moreS});
      else if (p < n)
        datum({" 0b", D}, {" ", S});
      else
        datum({" 0b", D}, {" "});
    } else if (kind == Kind::B) {
      if (p == 1)
        datum({P, " ", D, "b"}, {moreS});
      else if (p < n)
        datum({" ", D, "b"}, {S});
      else
        datum({" ", D, "b"}, {});
    } else if (Affix()) {
      const std::string_view space = syn.SpaceBetweenData ? " " : "";
      const std::string_view lz = kind == Kind::AffixH ? std::string_view(LZ) : std::string_view();
      if (p == 1)
        datum({P, syn.DataPrefix, lz, D, syn.DataSuffix}, {space, moreS});
      else if (p < n)
        datum({syn.DataPrefix, lz, D, syn.DataSuffix}, {space, moreS});
      else
        datum({syn.DataPrefix, lz, D, syn.DataSuffix}, {});
    } else {  // "X"
      if (p == 1)
        datum({P, " 0x", D}, {" ", moreS});
      else if (p < n)
        datum({" 0x", D}, {" ", S});
      else
        datum({" 0x", D}, {});
    }
    return;
  }

  // One datum per line: the picture comment follows the datum.
  out.clear();
  std::string_view after;
  if (kind == Kind::H) {
    if (syn.SeparatorOn && more && !S.empty()) {
      datum({P, " ", LZ, D, "h"}, {" ,", gap_});
    } else {
      datum({P, " ", LZ, D, "h"}, {" ", gap_});
    }
  } else if (Affix()) {
    std::string pad;
    if (kind == Kind::AffixD) {
      const std::size_t width = word16 ? 5 : (s_.Output == OutputKind::Bits32 ? 0 : 3);
      if (D.size() < width) pad.assign(width - D.size(), ' ');
    }
    const std::string_view lz = kind == Kind::AffixH ? std::string_view(LZ) : std::string_view();
    // Without an end of line the separator is the only thing between two lines' data.
    datum({P, syn.DataPrefix, lz, D, syn.DataSuffix}, {moreS, pad});
  } else if (kind == Kind::ZeroB) {
    datum({P, " 0b", D}, {" ", moreS});
  } else if (kind == Kind::B) {
    datum({P, " ", D, "b"}, {moreS});
  } else {  // "X"
    if (syn.SeparatorOn && more && !S.empty())
      datum({P, " 0x", D}, {S});
    else
      datum({P, " 0x", D}, {" ", S});
  }
  line.commentStart = comment.empty() ? std::string::npos : out.size();
  out += comment;
}

void DataFormatter::FlushDataLine() { FlushLine(main_, text_, comment_); }

void DataFormatter::FlushLine(LineState& line, TextLines& target, const std::string& comment) {
  if (wordIndex_ != 0) return;
  if (line.linePosition != dataPerLine_) return;
  std::string& l = line.dataLine;
  const std::string e = EndOfLineText();
  // The end of line goes before the picture comment: at the start of the blanks in front of the
  // comment's mark, so that the columns of the comments stay. A comment that starts with its
  // mark (" //", " ;") has its blanks behind the mark, where the end of line would be commented
  // out; and blanks in the data (a line prefix) are no place for it either.
  std::size_t at = l.size();
  if (line.commentStart != std::string::npos && line.commentStart <= l.size()) {
    at = l.find_first_not_of(' ', line.commentStart);
    if (at == std::string::npos) at = l.size();
    while (at > line.dataEnd && l[at - 1] == ' ') --at;
  }
  l.insert(at, e);
  if (line.commentStart != std::string::npos && at <= line.commentStart) line.commentStart += e.size();
  if (!l.empty() && l.back() == '#') l.pop_back();
  if (line.zerosInserted > 0 && comment.size() > 5) {
    const std::size_t found = l.find(comment.substr(5));
    const std::size_t z = static_cast<std::size_t>(line.zerosInserted);
    if (found != std::string::npos && found >= z) {
      l.erase(found - z, z);
      if (line.commentStart != std::string::npos && found - z < line.commentStart)
        line.commentStart -= std::min(z, line.commentStart - (found - z));
    }
  }
  line.zerosInserted = 0;
  if (s_.Syntax.DeleteAllLastOnes) DeleteLastOnes(l, line.dataEnd, line.commentStart);
  target.Add(l);  // a copy of the exact size; the working line keeps its capacity
  line.lastDataEnd = line.dataEnd;
  line.lastCommentStart = line.commentStart;
  l.clear();
  line.linePosition = 0;
  line.commentStart = std::string::npos;
  line.dataEnd = 0;
  ++line.linesAdded;
}

void DataFormatter::DeleteLastOnes(std::string& line, std::size_t dataEnd, std::size_t commentStart) const {
  // Only what stands between the last datum and the comment is looked at: a separator character
  // inside a datum (a custom suffix) or a comment's mark (" ;") is no separator to delete.
  dataEnd = std::min(dataEnd, line.size());
  const std::size_t tailEnd = commentStart == std::string::npos ? line.size() : std::min(commentStart, line.size());
  if (tailEnd < dataEnd) return;
  std::string tail = line.substr(dataEnd, tailEnd - dataEnd);
  const DataSyntax& syn = s_.Syntax;
  const bool commaSeparator = syn.SeparatorOn && !syn.SeparatorCustom;
  if (commaSeparator || s_.WorkEol == EndOfLine::Comma) {
    const std::size_t pos = tail.rfind(',');
    if (pos != std::string::npos && (dataPerLine_ == 1 || pos + 2 >= tail.size())) tail.erase(pos, 1);
  }
  if (s_.WorkEol == EndOfLine::Semicolon) {
    const std::size_t pos = tail.rfind(';');
    if (pos != std::string::npos) tail.erase(pos, 1);
  }
  if (s_.WorkEol == EndOfLine::Custom && !s_.WorkEolString.empty()) {
    const std::size_t pos = tail.rfind(s_.WorkEolString.back());
    if (pos != std::string::npos) tail.erase(pos);
  }
  if (syn.SeparatorOn && syn.SeparatorCustom && !syn.SeparatorString.empty()) {
    const std::size_t pos = tail.find_last_of(syn.SeparatorString);
    if (pos != std::string::npos) tail.erase(pos);
  }
  line.replace(dataEnd, tailEnd - dataEnd, tail);
}

void DataFormatter::TreatLastLine(bool page2) {
  if (page2)
    TreatLast(page2_, aux_);
  else
    TreatLast(main_, text_);
}

void DataFormatter::AppendCompressionPointer(int count, bool consecutive) {
  const int value = (count & 127) | (consecutive ? 128 : 0);
  // A pointer is no picture: it takes no comment, and the inversion of the data never applies.
  MakeDataText(value);
  gap_ = " ";
  if (!leadZero_.empty()) ++pointers_.zerosInserted;
  const DataSyntax& syn = s_.Syntax;
  const bool prefixed = !syn.LinePrefix.empty() || !syn.LinePrefix2.empty();
  AppendDatumToLine(pointers_, std::string(), prefixed ? std::string_view(syn.PointerPrefix) : std::string_view());
  leadZero_.clear();
  FlushPointerLine();
}

void DataFormatter::FlushPointerLine() { FlushLine(pointers_, aux_, std::string()); }

void DataFormatter::FinishPointerLines() { TreatLast(pointers_, aux_); }

void DataFormatter::TreatLast(LineState& line, TextLines& target) {
  std::string last;
  std::size_t dataEnd = 0, commentStart = std::string::npos;
  if (dataPerLine_ > 1 && line.linePosition > 0) {
    last = std::move(line.dataLine);
    dataEnd = line.dataEnd;
    commentStart = line.commentStart;
    line.dataLine.clear();
    line.linePosition = 0;
  } else if (line.linesAdded > 0 && !target.Empty()) {
    last = target.TakeLast();
    dataEnd = line.lastDataEnd;
    commentStart = line.lastCommentStart;
    --line.linesAdded;
  } else {
    return;
  }
  if (s_.Syntax.DeleteVeryLastOne) DeleteLastOnes(last, dataEnd, commentStart);
  target.Add(std::move(last));
}

void DataFormatter::GroupStart(bool flushPendingSuffix) {
  if (muted_ || !s_.Syntax.Groups) return;
  if (flushPendingSuffix) TakePendingSuffix();
  text_.Add(s_.Syntax.ColRowPrefix);
}

void DataFormatter::GroupEnd() {
  if (!muted_ && s_.Syntax.Groups) suffixPending_ = true;
}

void DataFormatter::GroupSuffixNow() {
  if (!muted_ && s_.Syntax.Groups) text_.Add(s_.Syntax.ColRowSuffix);
}

void DataFormatter::TakePendingSuffix() {
  if (muted_) return;
  if (suffixPending_) text_.Add(s_.Syntax.ColRowSuffix);
  suffixPending_ = false;
}

}  // namespace rm
