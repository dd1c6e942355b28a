#include "postpro/HexValue.h"

#include <algorithm>
#include <cctype>

namespace rm {

namespace {

constexpr const char* kHexDigits = "0123456789ABCDEF";

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

std::size_t RunEnd(const std::string& u, std::size_t from) {
  while (from < u.size() && std::isxdigit(static_cast<unsigned char>(u[from]))) ++from;
  return from;
}

// Built from the lowest bit upward; 0 gives the empty text. Padded with zeros to `bits`.
std::string Binary(std::uint32_t v, int bits, bool rotate) {
  std::string text;
  for (std::uint32_t x = v; x != 0; x >>= 1) text.insert(text.begin(), (x & 1) ? '1' : '0');
  if (text.empty() && rotate) text = "00000000";
  if (static_cast<int>(text.size()) < bits) text.insert(0, static_cast<std::size_t>(bits) - text.size(), '0');
  return text;
}

std::string HexText(std::uint32_t v, int digits, bool keepLast) {
  std::string text;
  for (std::uint32_t x = v; x != 0; x >>= 4) text.insert(text.begin(), kHexDigits[x & 15]);
  const std::size_t width = static_cast<std::size_t>(std::max(digits, 2));
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  if (keepLast && digits > 0 && text.size() > static_cast<std::size_t>(digits))
    text.erase(0, text.size() - static_cast<std::size_t>(digits));
  return text;
}

}  // namespace

HexRead ReadHexValue(const std::string& line, const std::string& prefix, const std::string& suffix, int ordinal) {
  HexRead read;
  if (prefix.empty() && suffix.empty()) {
    read.noMarks = true;
    return read;
  }
  const std::string u = Upper(line), p = Upper(prefix), s = Upper(suffix);
  std::string digits;
  if (!p.empty()) {
    std::size_t pos = 0;
    for (int k = 0; k <= ordinal; ++k) {
      const std::size_t at = u.find(p, pos);
      if (at == std::string::npos) return read;  // the line is spent
      read.foundPos = static_cast<int>(at) + 1;
      pos = at + p.size();
    }
    const std::size_t start = u.find_first_of(kHexDigits, pos);
    if (start == std::string::npos) return read;
    digits = u.substr(start, RunEnd(u, start) - start);
  } else {
    int count = 0;
    for (std::size_t pos = 0;;) {
      const std::size_t start = u.find_first_of(kHexDigits, pos);
      if (start == std::string::npos) return read;
      const std::size_t end = RunEnd(u, start);
      if (u.compare(end, s.size(), s) == 0) {
        if (count++ == ordinal) {
          digits = u.substr(start, end - start);
          read.foundPos = static_cast<int>(start) + 1;
          break;
        }
        pos = end + s.size();
      } else {
        pos = end;
      }
    }
  }
  if (digits.size() == 1) digits.insert(0, "0");
  if (digits.size() * 4 >= 33) {
    read.tooLong = true;
    return read;
  }
  read.value = digits;
  return read;
}

bool HexInLine(const std::string& line, const std::string& prefix, const std::string& suffix) {
  const std::string u = Upper(line);
  const std::size_t p = prefix.empty() ? std::string::npos : u.find(Upper(prefix));
  const std::size_t s = suffix.empty() ? std::string::npos : u.find(Upper(suffix));
  if (suffix.empty()) return p != std::string::npos;
  if (prefix.empty()) return s != std::string::npos;
  return p != std::string::npos && s != std::string::npos && s > p;
}

std::string RunBitCommand(HexValueState& st, const std::string& command, long long argument, bool& changed) {
  changed = false;
  const bool bitCommand = command == "set bit" || command == "clear bit" || command == "toggle bit";
  if (st.value.empty()) return bitCommand ? " GOT_No_Hex_Value" : "";
  if (bitCommand && (argument < 0 || argument > 31)) return " Bit Number > 31";
  const std::uint32_t old = static_cast<std::uint32_t>(std::stoul(st.value, nullptr, 16));
  const std::uint32_t arg = static_cast<std::uint32_t>(argument);
  const unsigned n = static_cast<unsigned>(argument) & 31u;
  const int bits = st.bits();
  const std::uint32_t mask = bits >= 32 ? 0xFFFFFFFFu : ((1u << bits) - 1u);
  const bool rotate = command.rfind("rotate", 0) == 0;
  std::uint32_t v = old;
  bool keepLast = false;
  if (command == "AND") {
    v = old & arg;
  } else if (command == "OR" || command == "XOR") {
    v = old | arg;  // the language has no exclusive-or: XOR is an OR, as users' batches expect
  } else if (command == "NOT") {
    v = ~old & mask;
  } else if (command == "shift left" || command == "shift right") {
    v = command == "shift left" ? old << n : old >> n;
    keepLast = true;
  } else if (rotate) {
    const unsigned back = static_cast<unsigned>(bits - static_cast<int>(n)) & 31u;
    v = command == "rotate bits to right" ? (old >> n) + (old << back) : (old << n) + (old >> back);
    keepLast = true;
  } else if (command == "set bit") {
    v = old | (1u << n);
  } else if (command == "clear bit") {
    v = old & ~(1u << n);
  } else if (command == "toggle bit") {
    v = old ^ (1u << n);
  } else {
    return "";
  }
  st.value = HexText(v, st.digits, keepLast);
  changed = true;
  const std::uint32_t shown = static_cast<std::uint32_t>(std::stoul(st.value, nullptr, 16));
  return "  >> " + Binary(old, bits, rotate) + " >> " + Binary(shown, bits, rotate) + " " + st.prefix + st.value +
         st.suffix;
}

std::string TestBit(const HexValueState& st, long long bit, bool wantSet, bool& result) {
  if (st.value.empty()) return " GOT_No_Hex_Value";
  if (bit < 0 || bit > 31) return " Bit Number > 31";
  const std::uint32_t v = static_cast<std::uint32_t>(std::stoul(st.value, nullptr, 16));
  const bool set = (v >> bit) & 1u;
  result = set == wantSet;
  return "";
}

}  // namespace rm
