#pragma once
#include <string>
#include <vector>

#include "engine/ConversionSession.h"
#include "engine/DataFormatter.h"

namespace rm {

// Whether a walk compresses its bytes: only monochrome tables do, and fonts never.
inline bool CompressesBytes(const ConversionSession& s) { return s.Compression && s.Monochrome && !s.FontMode; }

// Run length compression of a monochrome text table. The byte stream is split in two: the data
// table keeps every byte that cannot be rebuilt from the one before it, and the pointer table
// says how to rebuild the stream. A pointer with bit 7 set repeats the next data byte
// (pointer & 127) times; one with bit 7 clear copies the next (pointer) data bytes. A block holds
// at most 127 bytes. A firmware decoder needs nothing more than that rule.
class CompressionState {
 public:
  static constexpr int kMaxBlock = 127;

  CompressionState(ConversionSession& session, DataFormatter& formatter) : s_(session), formatter_(formatter) {}

  // All counters 0, no block open: the state at the start of a table.
  void Reset();
  // Takes byte `b`, the `ByteCount`-th of the stream (the count is advanced before the call).
  // True when the byte is swallowed: a repeat that a pointer rebuilds, so it stays out of the
  // data table. Pointers are written to the formatter as blocks close.
  bool Take(int b);

  // How far one packer call moves `ByteCount`: the bytes of one pixel in the modes whose pixel
  // takes more than a byte, else 1.
  static long double ByteStep(const ConversionSession& s);

  long long DataBytes() const { return d_; }
  long long Pointers() const { return p_; }
  long long IdenticalBytes() const { return i_; }
  long long DifferentBytes() const { return f_; }
  // What the two tables save against the plain one; below 1 the compression does not pay.
  long long Saved() const { return s_.TotalBytesPlus - d_ - p_; }

  // The nine statistics lines, without comment marks.
  std::vector<std::string> StatisticsLines() const;
  // A ratio as its shortest decimal text, cut (not rounded) two digits after the point.
  static std::string RatioText(long double ratio);

 private:
  // `byteCount` is the stream position the text rules see for this pointer: it decides whether
  // a separator follows it.
  void WritePointer(int count, bool consecutive, long double byteCount);

  ConversionSession& s_;
  DataFormatter& formatter_;
  long long d_ = 0;  // data bytes
  long long p_ = 0;  // pointers, as counted for the statistics
  long long i_ = 0;  // bytes rebuilt by repeat pointers
  long long f_ = 0;  // bytes rebuilt by copy pointers
  int r_ = 0;        // length of the open run, its data byte included
  // Bytes of the open copy block, the current byte not included (it may yet become a run's data
  // byte). -1 after a full run, so that the byte after it counts as the current one again.
  int l_ = 0;
  int v_ = 0;  // the byte before; -1 after a full run, so that no byte repeats it
  bool run_ = false;
  bool literal_ = false;
};

}  // namespace rm
