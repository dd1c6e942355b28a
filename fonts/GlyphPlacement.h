#pragma once
#include <string_view>

#include "engine/UiPort.h"
#include "fonts/FontJob.h"

namespace rm {

// Where and how large each glyph lands in its cell: the shifts of the four shift buttons, the
// height and width limits, stretching and the two mirrors.
class GlyphPlacement {
 public:
  GlyphPlacement(FontJob& job, UiPort& ui) : job_(job), ui_(ui) {}

  // One pixel per press; up and left are negative.
  void ShiftLeft() { --job_.ShiftX; }
  void ShiftRight() { ++job_.ShiftX; }
  void ShiftUp() { --job_.ShiftY; }
  void ShiftDown() { ++job_.ShiftY; }
  // "Clear Font Shifts and Size Limits".
  void ClearFontShiftsAndSizeLimits();

  // The "Maximal Font Height" and "Maximal Font Width" dialogs: a whole number, 0 for no limit.
  // Any other entry is refused with a message (both dialogs carry the caption of the height's).
  bool MaximalFontHeight(std::string_view entry) { return TakeLimit(entry, job_.MaxCharHeight); }
  bool MaximalFontWidth(std::string_view entry) { return TakeLimit(entry, job_.MaxCharWidth); }

  // Stretching on with its factors and Y shift; off puts both factors back to 1.
  void SetStretch(bool on, long double widthFactor, long double heightFactor, int heightShift);
  void ResetFactors();

  void SetRightToLeftWriting(bool on) { job_.RightToLeftWriting = on; }
  void SetHorizontalMirror(bool on) { job_.HorizontalMirror = on; }
  // "Chars Length": Fixed or Variable. Horizontal chars data needs fixed cells, so it forces Fixed.
  void SetFixedChars(bool fixed) { job_.FixedChars = fixed || job_.HorizontalCharsData; }
  void SetHorizontalCharsData(bool on);

 private:
  bool TakeLimit(std::string_view entry, int& limit);

  FontJob& job_;
  UiPort& ui_;
};

}  // namespace rm
