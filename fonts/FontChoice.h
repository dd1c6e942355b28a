#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "engine/UiPort.h"
#include "fonts/FontJob.h"

namespace rm {

// The font of a job: its name, size and styles, and the list of recently used fonts.
class FontChoice {
 public:
  static constexpr int kMinSize = 1;
  static constexpr int kMaxSize = 300;
  static constexpr std::size_t kRecentFonts = 16;
  // What the preview paints in the current font.
  static constexpr std::string_view kLazyDog = "The quick brown fox jumps over the lazy dog 1234567890";

  FontChoice(FontJob& job, UiPort& ui) : job_(job), ui_(ui) {}

  // The size typed or chosen in the size box (FontSizeChange). A size outside 1..300 is refused
  // with a message and the box falls back: to 8 below 1 (text that is no number counts as below),
  // to 300 above. False when the entry was refused; the job's size is set either way.
  bool FontSizeChange(std::string_view text);
  const std::string& SizeBoxText() const { return sizeBoxText_; }
  // After measuring the font: a character height or "W" width of 256 pixels or more is more than
  // the font data can describe. False, with a message, then.
  bool CheckMeasuredSize(int charHeight, int widthOfW);

  // A font chosen by name (FontNameChange). `sizeListed` false: the font has no entry in the size
  // list, so the script's size line reads "[SIZE]".
  void FontNameChange(const std::string& name, bool sizeListed = true);
  bool SizeListed() const { return sizeListed_; }

  // The style buttons: 0 Bold, 1 Italic, 2 Underline, 3 Strike Out, 4 Outline.
  void SetStyle(int style, bool on);
  bool Style(int style) const;

  // Puts the job's font at the top of the recent fonts (AddFontsMRUF), with "Unicode" or
  // "ANSI    " before its name, once.
  void AddFontsMRUF();
  const std::vector<std::string>& RecentFonts() const { return recent_; }
  // Restores a font of the list (RecentFontsComboboxClick): its name and whether it was Unicode.
  // False for an index outside the list.
  bool RecentFontsComboboxClick(std::size_t index);

  // The panel's tooltip: "Font Panel", the current font and the size, one a line.
  std::string Tooltip() const;

 private:
  FontJob& job_;
  UiPort& ui_;
  std::string sizeBoxText_ = "10";
  bool sizeListed_ = true;
  std::vector<std::string> recent_;
};

}  // namespace rm
