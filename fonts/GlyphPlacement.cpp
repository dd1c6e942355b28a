#include "fonts/GlyphPlacement.h"

#include <charconv>

namespace rm {

void GlyphPlacement::ClearFontShiftsAndSizeLimits() {
  job_.ShiftX = job_.ShiftY = 0;
  job_.MaxCharWidth = job_.MaxCharHeight = 0;
}

bool GlyphPlacement::TakeLimit(std::string_view entry, int& limit) {
  int value = 0;
  const auto r = std::from_chars(entry.data(), entry.data() + entry.size(), value);
  if (entry.empty() || r.ec != std::errc() || r.ptr != entry.data() + entry.size()) {
    ui_.MessageDlg(" Incorrect Entry !", "Height definition", DlgType::Warning, {"OK"});
    return false;
  }
  limit = value;
  return true;
}

void GlyphPlacement::SetStretch(bool on, long double widthFactor, long double heightFactor, int heightShift) {
  job_.StretchOn = on;
  job_.StretchHeightShift = heightShift;
  if (on) {
    job_.WidthFactor = widthFactor;
    job_.HeightFactor = heightFactor;
  } else {
    ResetFactors();
  }
}

void GlyphPlacement::ResetFactors() { job_.WidthFactor = job_.HeightFactor = 1.0L; }

void GlyphPlacement::SetHorizontalCharsData(bool on) {
  job_.HorizontalCharsData = on;
  if (on) job_.FixedChars = true;
}

}  // namespace rm
