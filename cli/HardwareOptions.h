#pragma once
#include <string>

namespace rmcli {

// The convert options that fit the data to a display controller: a preset and the rearrangement
// of the data bits.
struct HardwareOptions {
  std::string controller;  // a name of the controller table; empty: none
  bool swapRedBlue = false;
  std::string rearrange;   // "7,6,5,4,3,2,1,0": the bit each bit takes, highest first
};

}  // namespace rmcli
