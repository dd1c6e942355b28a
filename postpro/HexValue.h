#pragma once
#include <cstdint>
#include <string>

namespace rm {

// The hexadecimal value a batch works on: the digits last read from the text and the marks that
// stand around such a value there.
struct HexValueState {
  std::string prefix, suffix;  // kept from run to run
  std::string value;           // the digits, upper case; empty when none
  int digits = 0;
  int bits() const { return digits * 4; }
};

// One value read from a line.
struct HexRead {
  std::string value;      // empty when none was found or it was too long
  int foundPos = 0;       // 1-based place of the prefix (or, without one, of the digits)
  bool tooLong = false;   // more than 32 bits
  bool noMarks = false;   // neither a prefix nor a suffix is set
};

// Reads the value of ordinal `ordinal` (from 0) of `line`: behind a prefix when one is set, else a
// run of digits directly followed by the suffix. A single digit gets a leading "0".
HexRead ReadHexValue(const std::string& line, const std::string& prefix, const std::string& suffix, int ordinal);

// True when the line holds a marked value: the prefix alone, the suffix alone, or the suffix
// behind the prefix.
bool HexInLine(const std::string& line, const std::string& prefix, const std::string& suffix);

// Runs one of the bit commands ("AND", "OR", "XOR", "NOT", "shift left", "shift right", "rotate bits
// to left", "rotate bits to right", "set bit", "clear bit", "toggle bit") on `state.value` and
// returns the report's words. Without a value the operations do nothing and the bit commands say
// so. `changed` tells whether anything was done.
std::string RunBitCommand(HexValueState& state, const std::string& command, long long argument, bool& changed);

// The bit test of the conditions "bit is set" and "bit is cleared": the report's words, and
// `result` when there is a value to test.
std::string TestBit(const HexValueState& state, long long bit, bool wantSet, bool& result);

}  // namespace rm
