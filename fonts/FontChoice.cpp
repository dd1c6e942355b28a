#include "fonts/FontChoice.h"

#include <algorithm>
#include <charconv>

namespace rm {

namespace {

constexpr std::string_view kUnicodeTag = "Unicode";
constexpr std::string_view kAnsiTag = "ANSI    ";

bool* StyleFlag(FontJob& job, int style) {
  bool* flags[] = {&job.FontStyleBold, &job.FontStyleItalic, &job.FontStyleUnderline, &job.FontStyleStrikeOut,
                   &job.FontStyleOutline};
  return style >= 0 && style < 5 ? flags[style] : nullptr;
}

}  // namespace

bool FontChoice::FontSizeChange(std::string_view text) {
  int size = 0;
  const auto r = std::from_chars(text.data(), text.data() + text.size(), size);
  if (r.ec != std::errc() || r.ptr != text.data() + text.size()) size = 0;
  if (size < kMinSize || size > kMaxSize) {
    ui_.MessageDlg(" Incorrect Size (1-300) !", "Font Size", DlgType::Warning, {"OK"});
    job_.FontSize = size < kMinSize ? 8 : kMaxSize;
    sizeBoxText_ = std::to_string(job_.FontSize);
    return false;
  }
  job_.FontSize = size;
  sizeBoxText_ = std::to_string(size);
  return true;
}

bool FontChoice::CheckMeasuredSize(int charHeight, int widthOfW) {
  if (charHeight < 256 && widthOfW < 256) return true;
  ui_.MessageDlg(" Font Size To Large ! ", "Font Size", DlgType::Warning, {"OK"});
  return false;
}

void FontChoice::FontNameChange(const std::string& name, bool sizeListed) {
  job_.FontName = name;
  sizeListed_ = sizeListed;
}

void FontChoice::SetStyle(int style, bool on) {
  if (bool* flag = StyleFlag(job_, style)) *flag = on;
}

bool FontChoice::Style(int style) const {
  const bool* flag = StyleFlag(job_, style);
  return flag && *flag;
}

void FontChoice::AddFontsMRUF() {
  const bool unicode = job_.Source == FontSource::Unicode || job_.Source == FontSource::ExcelList;
  const std::string entry = std::string(unicode ? kUnicodeTag : kAnsiTag) + job_.FontName;
  recent_.erase(std::remove(recent_.begin(), recent_.end(), entry), recent_.end());
  recent_.insert(recent_.begin(), entry);
  if (recent_.size() > kRecentFonts) recent_.resize(kRecentFonts);
}

bool FontChoice::RecentFontsComboboxClick(std::size_t index) {
  if (index >= recent_.size()) return false;
  const std::string entry = recent_[index];
  const bool unicode = entry.starts_with(kUnicodeTag);
  job_.Source = unicode ? FontSource::Unicode : FontSource::Ansi;
  job_.FontName = entry.substr(unicode ? kUnicodeTag.size() : kAnsiTag.size());
  return true;
}

std::string FontChoice::Tooltip() const {
  return "Font Panel\r\n Current font: " + job_.FontName + "\r\n" + "Size : " + std::to_string(job_.FontSize);
}

}  // namespace rm
