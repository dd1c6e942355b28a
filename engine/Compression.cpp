#include "engine/Compression.h"

#include <cstdio>

namespace rm {

void CompressionState::Reset() {
  d_ = p_ = i_ = f_ = 0;
  r_ = l_ = v_ = 0;
  run_ = literal_ = false;
}

long double CompressionState::ByteStep(const ConversionSession& s) {
  if (s.Colours4096) return s.Packed ? 1.5L : 2;
  if (s.Colours65536) return 2;
  if (s.Colours262kPacked || s.Colours262kUnpacked) return 3;
  if (s.Colours16M) return s.Packed ? 3 : 4;
  return 1;
}

void CompressionState::WritePointer(int count, bool consecutive, long double byteCount) {
  const long double n = s_.ByteCount;
  s_.ByteCount = byteCount;
  formatter_.AppendCompressionPointer(count, consecutive);
  s_.ByteCount = n;
}

bool CompressionState::Take(int b) {
  const long double n = s_.ByteCount;
  const bool last = n == static_cast<long double>(s_.TotalBytesPlus - 1);

  if (b == v_ && n > 1) {
    // A repeat: the copy block before it ends, without the byte before this one, which is the
    // run's data byte.
    if (literal_) {
      ++p_;
      if (l_ > 0) WritePointer(l_, false, n);
      f_ += l_;
      l_ = 0;
      literal_ = false;
    }
    if (r_ == 0) r_ = 1;
    ++r_;
    run_ = true;
    if (r_ != kMaxBlock && !last) return true;
    l_ = -1;
    if (r_ == kMaxBlock) {
      // The run is full: the next byte, equal or not, starts a block of its own. Remembering a
      // neighbouring value instead (b + 1) would take a following byte of that value for a
      // repeat of a data byte that was never written; no byte equals -1.
      run_ = false;
      v_ = -1;
    }
    WritePointer(r_, true, n);
    i_ += r_;
    r_ = 0;
    return true;
  }

  if (run_) {
    // The run ended at the byte before: its pointer is not the stream's last datum yet.
    WritePointer(r_, true, n - 1);
    ++p_;
    if (last) {
      WritePointer(1, false, n);
      ++f_;
      ++p_;
    }
    l_ = 0;
    i_ += r_;
    ++d_;
    v_ = b;
    run_ = false;
    r_ = 0;
    return false;
  }

  literal_ = true;
  if (n > 1) ++l_;
  if (l_ == kMaxBlock) {
    ++p_;
    WritePointer(kMaxBlock, false, n);
    f_ += kMaxBlock;
    l_ = 0;
  }
  ++d_;
  r_ = 0;
  v_ = b;
  // The last byte closes the copy block, itself included. With l_ 0 it stands alone (a one byte
  // table, or the byte after a full block), and still needs its pointer, or a decoder would
  // lose it.
  if (last) {
    WritePointer(l_ + 1, false, n);
    f_ += l_ + 1;
    ++p_;
  }
  return false;
}

std::string CompressionState::RatioText(long double ratio) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15Lg", ratio);
  std::string t = buf;
  const std::size_t point = t.find('.');
  if (point != std::string::npos && t.find('e') == std::string::npos && t.size() > point + 3) t.resize(point + 3);
  return t;
}

std::vector<std::string> CompressionState::StatisticsLines() const {
  const long long saved = Saved();
  const long double ratio =
      s_.TotalBytesPlus != 0 ? static_cast<long double>(saved) * 100 / static_cast<long double>(s_.TotalBytesPlus) : 0;
  return {
      " Compression statistics",
      " --------------------------",
      " Number of bytes saved : " + std::to_string(saved),
      " Number of data bytes : " + std::to_string(d_),
      " Number of consecutive pointers : " + std::to_string(p_),
      " Number of identical bytes :" + std::to_string(i_),
      " Number of different bytes : " + std::to_string(f_),
      " Number of bytes in compression: " + std::to_string(i_ + f_),
      " Compression ratio : " + RatioText(ratio) + "%",
  };
}

}  // namespace rm
