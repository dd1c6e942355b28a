#pragma once

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
  int addressDigits = 4;
  unsigned long addressOffset = 0;
};

}  // namespace rm
