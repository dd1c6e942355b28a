#include "fonts/CharSelection.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "fonts/UnicodeBlocks.h"

namespace rm {

namespace {

std::string Hex(int value, int digits) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string s;
  do {
    s.insert(s.begin(), kDigits[value & 15]);
    value >>= 4;
  } while (value > 0);
  if (static_cast<int>(s.size()) < digits) s.insert(0, digits - s.size(), '0');
  return s;
}

int HexValue(std::string_view s) {
  int v = 0;
  const auto r = std::from_chars(s.data(), s.data() + s.size(), v, 16);
  return r.ec == std::errc() ? v : 0;
}

bool IsUnicode(const FontJob& job) {
  return job.Source == FontSource::Unicode || job.Source == FontSource::ExcelList;
}

}  // namespace

std::string Utf8(char32_t c) {
  std::string s;
  if (c < 0x80) {
    s += static_cast<char>(c);
  } else if (c < 0x800) {
    s += static_cast<char>(0xC0 | (c >> 6));
    s += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    s += static_cast<char>(0xE0 | (c >> 12));
    s += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    s += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    s += static_cast<char>(0xF0 | (c >> 18));
    s += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    s += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    s += static_cast<char>(0x80 | (c & 0x3F));
  }
  return s;
}

std::u32string FromUtf8(std::string_view s) {
  std::u32string out;
  for (std::size_t i = 0; i < s.size();) {
    const auto b = static_cast<unsigned char>(s[i]);
    const int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
    char32_t c = extra == 0 ? b : b & (0x3F >> extra);
    std::size_t j = 1;
    for (; j <= static_cast<std::size_t>(extra) && i + j < s.size(); ++j) {
      const auto next = static_cast<unsigned char>(s[i + j]);
      if ((next & 0xC0) != 0x80) break;
      c = (c << 6) | (next & 0x3F);
    }
    // A broken sequence stands for its first byte as a Latin-1 character.
    if (j != static_cast<std::size_t>(extra) + 1) {
      c = b;
      j = 1;
    }
    out += c;
    i += j;
  }
  return out;
}

int CharSelection::CellCode(int col, int row) const {
  if (col < 0 || col > 15 || row < 0 || row > 15) return -1;
  if (IsUnicode(job_)) return job_.SubblockHigh * 256 + 16 * row + col;
  const int code = 16 * row + col + 32;
  return code <= 255 ? code : -1;
}

char32_t CharSelection::CharOfCode(int code) const {
  if (code < 0) return 0;
  char32_t c = static_cast<char32_t>(code);
  if (!IsUnicode(job_) && codePage_) c = codePage_(static_cast<std::uint8_t>(code)).value_or(0);
  if (c != 0 && c != U'?' && hasGlyph_ && !hasGlyph_(c)) return 0;
  return c;
}

char32_t CharSelection::AsciiGridGetChar(int col, int row, bool store) {
  const char32_t c = CharOfCode(CellCode(col, row));
  if (store && !IsUnicode(job_)) current_ = c;
  return c;
}

std::vector<int> CharSelection::Codes() const {
  std::vector<int> codes;
  const std::string& list = job_.SelectedChars;
  if (IsUnicode(job_)) {
    // Groups of "hh/"; a group that is no hexadecimal number counts as 0.
    for (std::size_t i = 0; i < list.size();) {
      std::size_t slash = list.find('/', i);
      if (slash == std::string::npos) slash = list.size();
      if (slash > i) codes.push_back(HexValue(std::string_view(list).substr(i, slash - i)));
      i = slash + 1;
    }
  } else {
    for (char32_t c : FromUtf8(list)) codes.push_back(static_cast<int>(c));
  }
  return codes;
}

void CharSelection::MakeTheList() {
  std::vector<int> codes = Codes();
  std::sort(codes.begin(), codes.end());
  codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
  std::string list;
  for (int code : codes) list += IsUnicode(job_) ? Hex(code, 2) + "/" : Utf8(static_cast<char32_t>(code));
  job_.SelectedChars = list;
  job_.SelectedCharsScriptForm = list;
}

void CharSelection::Toggle(int code) {
  // A click after a range starts a list of its own.
  if (job_.SelectedChars.starts_with('*') || job_.SelectedChars.starts_with("RANGE=")) job_.SelectedChars.clear();
  std::vector<int> codes = Codes();
  const int key = IsUnicode(job_) ? code & 0xFF : static_cast<int>(CharOfCode(code));
  if (key == 0 && !IsUnicode(job_)) return;  // an unmapped character is not chosen
  const auto at = std::find(codes.begin(), codes.end(), key);
  if (at != codes.end())
    codes.erase(at);
  else
    codes.push_back(key);
  std::string list;
  for (int c : codes) list += IsUnicode(job_) ? Hex(c, 2) + "/" : Utf8(static_cast<char32_t>(c));
  job_.SelectedChars = list;
  MakeTheList();
}

void CharSelection::AddRange(int firstCode, int lastCode) {
  if (IsUnicode(job_)) {
    // The two clicks may lie in different subblocks: the range is kept as subblock and low byte.
    std::pair<int, int> first{rangeFirstSubblock_, firstCode & 0xFF}, last{SubblockNumber(), lastCode & 0xFF};
    if (last < first) std::swap(first, last);
    job_.SelectedChars = "*" + std::to_string(first.first) + "/" + Hex(first.second, 2) + "*" +
                         std::to_string(last.first) + "/" + Hex(last.second, 2);
    job_.SelectedCharsScriptForm = job_.SelectedChars;
    return;
  }
  if (firstCode > lastCode) std::swap(firstCode, lastCode);
  for (int code = firstCode; code <= lastCode; ++code)
    if (const char32_t c = CharOfCode(code); c != 0) job_.SelectedChars += Utf8(c);
  MakeTheList();
}

void CharSelection::StartRange() {
  rangeStep_ = 1;
  ui_.Status("Select First Char");
}

void CharSelection::GridClick(int col, int row) {
  const int code = CellCode(col, row);
  if (code < 0) return;
  if (job_.AddressRangeMode) {
    (nextFieldIsLast_ ? lastAddress_ : firstAddress_) = Hex(code, 4);
    nextFieldIsLast_ = !nextFieldIsLast_;
    return;
  }
  if (rangeStep_ == 1) {
    rangeFirstCode_ = code;
    rangeFirstSubblock_ = SubblockNumber();
    rangeStep_ = 2;
    ui_.Status("Select Last Char");
    return;
  }
  if (rangeStep_ == 2) {
    rangeStep_ = 0;
    AddRange(rangeFirstCode_, code);
    return;
  }
  Toggle(code);
}

void CharSelection::Clear() {
  job_.SelectedChars.clear();
  job_.SelectedCharsScriptForm.clear();
  rangeStep_ = 0;
}

void CharSelection::SetAnsiList(std::string_view text) {
  job_.SelectedChars = std::string(text);
  MakeTheList();
}

void CharSelection::SetAddressRangeMode(bool on) {
  job_.AddressRangeMode = on;
  nextFieldIsLast_ = false;
}

std::string CharSelection::HexField(std::string_view text) {
  std::string digits;
  for (char c : text)
    if (std::isxdigit(static_cast<unsigned char>(c)) && digits.size() < 4)
      digits += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return digits;
}

bool CharSelection::ValidAdress() {
  if (firstAddress_.empty() || lastAddress_.empty()) return false;
  job_.SelectedChars = "RANGE=" + Hex(HexValue(firstAddress_), 4) + " " + Hex(HexValue(lastAddress_), 4);
  job_.SelectedCharsScriptForm = job_.SelectedChars;
  return true;
}

std::string CharSelection::SelectedCountLabel() const {
  const int count = firstAddress_.empty() || lastAddress_.empty()
                        ? 0
                        : std::max(0, HexValue(lastAddress_) - HexValue(firstAddress_) + 1);
  return "Selected = " + std::to_string(count);
}

bool CharSelection::SelectBlock(std::string_view name) {
  const UnicodeBlock* block = FindUnicodeBlock(name);
  if (!block || block->last > 0xFFFF) return false;
  job_.UnicodeBlockName = std::string(block->name);
  job_.UnicodeBlockFirst = static_cast<int>(block->first);
  job_.UnicodeBlockLast = static_cast<int>(block->last);
  job_.SubblockCount = LastHigh() - FirstHigh() + 1;
  job_.SubblockHigh = FirstHigh();
  return true;
}

bool CharSelection::ShowSubblock(int high) {
  if (high < FirstHigh() || high > LastHigh()) return false;
  job_.SubblockHigh = high;
  return true;
}

std::string CharSelection::SubblockLabel() const {
  return "Subblock " + std::to_string(SubblockNumber()) + " of " + std::to_string(job_.SubblockCount);
}

std::string CharSelection::SubblockCountLabel() const {
  return "Number of subblocks (max 256)  = " + std::to_string(job_.SubblockCount);
}

}  // namespace rm
