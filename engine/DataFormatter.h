#pragma once
#include <string>
#include <string_view>

#include "engine/ConversionSession.h"
#include "engine/HexBuffer.h"
#include "engine/IntelHex.h"
#include "engine/TextLines.h"

namespace rm {

// Turns the stream of byte values into the lines of the Data Array under the Data Syntax
// settings, or into pairs for the Binary and Intel HEX sinks.
class DataFormatter {
 public:
  DataFormatter(ConversionSession& session, TextLines& text, TextLines& aux, HexBuffer& hex)
      : s_(session), text_(text), aux_(aux), hex_(hex), intelHex_(text) {}

  // All line state empty, Data per line from the working value.
  void Reset();
  // While muted the calls of a walk that only counts its bytes leave the text alone.
  void SetMuted(bool muted) { muted_ = muted; }
  // After the walk: a 16 or 32 bit word, or a pair of planes, that the bytes did not fill is
  // filled up with zero bytes and written, so that no byte is lost.
  void FinishWord();

  // Formats `CurrentByte`. `lastOfPixel` only matters to the font encoder.
  void EmitDataByte(bool lastOfPixel = false);
  // The empty picture comment of the next byte.
  void StartDataComment();
  // Puts a "#" for the bit with weight `bitValue` (1..128) of the current byte.
  void MarkBit(int bitValue);
  void MarkDataComment(int value);
  void FlushDataLine();

  // Column/row groups: a band starts (pending suffix, then prefix) and ends (suffix pending).
  void GroupStart(bool flushPendingSuffix = true);
  void GroupEnd();
  void GroupSuffixNow();
  bool SuffixPending() const { return suffixPending_; }
  void TakePendingSuffix();

  // The treatment of the table's last line, after the walk. With `page2` the second table.
  void TreatLastLine(bool page2 = false);

  // One pointer byte of a compressed table (bit 7 set for a repeat block) into the pointer
  // table in `aux`, under the same text rules as data, `PointerPrefix` leading the line prefix
  // when there is one. A full line is added at once.
  void AppendCompressionPointer(int count, bool consecutive);
  // Adds the pointer line once it holds Data per line pointers.
  void FlushPointerLine();
  // The end of the pointer table: its last line, partly filled or not, gets the last-line
  // treatment of the data table.
  void FinishPointerLines();

  // The comment prefix of the chosen form ("/* ", " //", " '", " ;" or the custom string).
  std::string CommentPrefix() const;
  std::string CommentSuffix() const;  // " */" for C comments, else empty
  static std::string ByteToBinaryText(int value, int digits);
  // The end of line text in force (the working copy of the setting).
  std::string EndOfLineText() const;

  // Data per line in force for this table.
  int DataPerLine() const { return dataPerLine_; }
  // The records of Intel HEX output, written into the main text.
  IntelHexRecords& IntelHex() { return intelHex_; }

 private:
  // The data format kind, read once per table: comparing the setting's text per byte is slow.
  enum class Kind { X, H, B, ZeroB, AffixH, AffixB, AffixD };
  static Kind KindOf(const std::string& text);
  bool Binary() const { return kind_ == Kind::B || kind_ == Kind::ZeroB || kind_ == Kind::AffixB; }
  bool Affix() const { return kind_ == Kind::AffixH || kind_ == Kind::AffixB || kind_ == Kind::AffixD; }
  bool HexH() const { return kind_ == Kind::H || kind_ == Kind::AffixH; }

  struct LineState {
    std::string dataLine;
    int linePosition = 0;
    int lineNumber = 0;
    int zerosInserted = 0;
    int linesAdded = 0;
    // In the line under construction: where the last datum's text ends, and where the picture
    // comment starts (npos without one). The deletion of the last separators works between the
    // two, so that it never takes a datum or opens a comment.
    std::size_t dataEnd = 0;
    std::size_t commentStart = std::string::npos;
    // The same for the last line added, which the last-line treatment takes back.
    std::size_t lastDataEnd = 0;
    std::size_t lastCommentStart = std::string::npos;
  };

  bool More() const { return static_cast<long double>(s_.TotalBytesPlus) > s_.ByteCount + 1; }
  int WordBytes() const;
  // The text of one byte in the data format, into `out`.
  void SetByteText(std::string& out, int value) const;
  void MakeDataText(int value);
  // `lead` stands in front of the line prefix on the first datum of a line.
  void AppendDatumToLine(LineState& line, const std::string& comment, std::string_view lead = {});
  void FlushLine(LineState& line, TextLines& target, const std::string& comment);
  void EmitTwoPlanes(int first, int second);
  void DeleteLastOnes(std::string& line, std::size_t dataEnd, std::size_t commentStart) const;
  void TreatLast(LineState& line, TextLines& target);

  ConversionSession& s_;
  TextLines& text_;
  TextLines& aux_;
  HexBuffer& hex_;
  IntelHexRecords intelHex_;

  LineState main_;
  LineState page2_;
  LineState pointers_;
  int dataPerLine_ = 16;
  Kind kind_ = Kind::X;
  std::string dataText_;
  std::string joined_;
  std::string b_[3];
  int wordValues_[4] = {0, 0, 0, 0};
  int wordIndex_ = 0;  // bytes of the current 16 or 32 bit word received so far
  std::string leadZero_;
  std::string gap_ = " ";
  std::string comment_;
  bool commentActive_ = false;
  std::size_t markBase_ = 0;  // where the underscores of the picture comment start
  bool suffixPending_ = false;
  bool muted_ = false;
  bool holdingFirstPlane_ = false;
  int firstPlaneByte_ = 0;
};

}  // namespace rm
