#pragma once
#include <cstdint>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/DataFormatter.h"
#include "engine/PixelPacker.h"
#include "fonts/FontGlyph.h"

namespace rm {

// How one glyph is walked.
struct FontScanSettings {
  bool offsetsOn = false;  // void rows and columns are left out
  bool fixed = false;      // every glyph as wide as the widest (maxWidthSeen) with filler words
  int maxWidthSeen = 0;
  int maxCharHeight = 0;  // 0: no limit
  int filler = 0xAA;      // the "Font Filler" value of the words past a glyph in a fixed font
};

// What the walk of one glyph covered: the data words, and the pixels they stand for.
struct FontScanResult {
  long long words = 0;
  int wordsPerLine = 0;
  int lines = 0;
  int scanWidth = 0;   // pixel columns walked (word columns x pixels for a horizontal walk)
  int scanHeight = 0;  // pixel rows walked
  int firstColumn = 0, firstRow = 0;
};

// Turns one glyph image into data words by the session's direction, corner, mode and bit order
// (TranslateToDirection with its four scans), through the same packers as a canvas. Each row
// (horizontal directions) or column (vertical ones) is one line of the formatter; in binary
// output the words go into `bytes` instead.
class FontScan : private PackerOutput {
 public:
  FontScan(ConversionSession& session, DataFormatter& formatter) : s_(session), formatter_(formatter) {}

  // Text output when `bytes` is null.
  void SetBinarySink(std::vector<std::uint8_t>* bytes) { bytes_ = bytes; }
  // False when the packer met a colour the mode has no value for.
  bool TranslateToDirection(const Bitmap& image, const GlyphMeasure& m, const FontScanSettings& st,
                            FontScanResult& r);

 private:
  void Datum(int byte) override;
  bool Compressed(int) override { return false; }
  void NextDatumComment() override {}
  void PixelBit(int) override {}
  void ColourMissing(Colour) override { failed_ = true; }
  void Filler();
  void StartLines(int wordsPerLine);

  ConversionSession& s_;
  DataFormatter& formatter_;
  PixelPacker packer_{s_, *this};
  std::vector<std::uint8_t>* bytes_ = nullptr;
  Bitmap source_;
  int filler_ = 0;
  long long words_ = 0;
  bool failed_ = false;
};

}  // namespace rm
