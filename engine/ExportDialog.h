#pragma once
#include <string>

namespace rm {

// The fields of the Export dialog; each is the setting it shows.
struct ExportDialogState {
  // 0 "Export Full size Work Canvas", 1 "Export Upper Half of Work Canvas",
  // 2 "Export Lower Half of Work Canvas", 3 "Export Area of Work Canvas",
  // 4 "Export Selected Subdivision >".
  int entry = 0;
  bool entryListEnabled = true;
  bool compression = false;
  bool compressionEnabled = true;
  bool postProcessing = false;
  // The "Intel Hex Output" group. The offset is the text as typed: hex digits.
  int hexBytesPerLine = 16;
  int addressDigits = 4;
  std::string addressOffset = "0000";
};

}  // namespace rm
