#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "postpro/BatchRunner.h"

namespace rm {

namespace {

// No source line is this long; a larger position pads no further.
constexpr long long kMaxPosition = 65536;

bool WholeDecimal(const std::string& s, long long& value) {
  if (s.empty() || s.size() > 18) return false;
  for (std::size_t k = s[0] == '-' ? 1 : 0; k < s.size(); ++k)
    if (!std::isdigit(static_cast<unsigned char>(s[k]))) return false;
  if (s == "-") return false;
  value = std::stoll(s);
  return true;
}

long long HexNumber(const std::string& s) {
  const std::string digits = s.substr(0, s.find_first_not_of("0123456789abcdefABCDEF"));
  if (digits.empty() || digits.size() > 8) return 0;
  return static_cast<long long>(std::stoull(digits, nullptr, 16));
}

// The decimal numbers of a line: runs of digits, with one "." or "," between two runs when
// `fractions`.
std::vector<std::string> Numbers(const std::string& line, bool fractions) {
  std::vector<std::string> found;
  auto digit = [&](std::size_t i) { return i < line.size() && std::isdigit(static_cast<unsigned char>(line[i])); };
  for (std::size_t i = 0; i < line.size();) {
    if (!digit(i)) {
      ++i;
      continue;
    }
    std::size_t end = i;
    while (digit(end)) ++end;
    if (fractions && end < line.size() && (line[end] == '.' || line[end] == ',') && digit(end + 1)) {
      ++end;
      while (digit(end)) ++end;
    }
    found.push_back(line.substr(i, end - i));
    i = end;
  }
  return found;
}

bool IsReserved(const std::string& key) {
  static constexpr std::string_view kReserved[] = {
      "batch type", "screen message", "set output",      "reset output",      "get analog", "set analog",
      "get input",  "then get analog", "then set analog", "then set output", "then reset output", "run",
      "then run",   "log",             "process name",    "set timeout",     "pause",             "tick"};
  return std::find(std::begin(kReserved), std::end(kReserved), key) != std::end(kReserved);
}

std::string FloatText(long double v) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.8LG", v);
  return buffer;
}

}  // namespace

void BatchRunner::InsertLine(long long at, std::string text) {
  at = std::clamp<long long>(at, 0, static_cast<long long>(target_.Count()));
  target_.Insert(static_cast<std::size_t>(at), std::move(text));
}

// The line is first padded with blanks to one beyond the longer of itself and the end of the new
// text (at least one blank is always added). Positions count from 1; a position before the first
// character puts the text behind the padding.
void BatchRunner::InsertAt(long long position, const std::string& text) {
  position = std::clamp<long long>(position, -1, kMaxPosition);
  std::string& line = Line();
  const long long target = std::max<long long>(position + static_cast<long long>(text.size()),
                                               static_cast<long long>(line.size()));
  line.append(static_cast<std::size_t>(target + 1) - line.size(), ' ');
  if (position < 1 || position > static_cast<long long>(line.size()))
    line += text;
  else
    line.insert(static_cast<std::size_t>(position - 1), text);
}

void BatchRunner::OverwriteAt(long long position, const std::string& text) {
  position = std::clamp<long long>(position, -1, kMaxPosition);
  std::string& line = Line();
  const long long target = std::max<long long>(position + static_cast<long long>(text.size()),
                                               static_cast<long long>(line.size()));
  line.append(static_cast<std::size_t>(target + 1) - line.size(), ' ');
  if (position >= 1 && position <= static_cast<long long>(line.size()))
    line.erase(static_cast<std::size_t>(position - 1), text.size());
  if (position < 1 || position > static_cast<long long>(line.size()))
    line += text;
  else
    line.insert(static_cast<std::size_t>(position - 1), text);
}

std::string BatchRunner::ReadHex(int ordinal, std::string& words) {
  const HexRead read = ReadHexValue(lineText_, hex_.prefix, hex_.suffix, ordinal);
  hex_.value = read.value;
  hex_.digits = static_cast<int>(read.value.size());
  if (read.noMarks) {
    words += "  >> Error : No hex Prefix AND No hex Suffix defined";
  } else if (read.tooLong) {
    words += " ERROR_32_bit_max ";
  } else if (read.value.empty()) {
    words += " No_Hex_Value";
  } else {
    foundPos_ = read.foundPos;
    words += " " + read.value;
  }
  return read.value;
}

std::string BatchRunner::SaveLines(const std::vector<std::string>& lines, const std::string& name) {
  const std::string path = PathInFolder(folders_.output, name);
  if (path.empty()) {
    result_.refused.push_back(name);
    return "  >> refused: " + name + " is outside the output folder " + folders_.output;
  }
  TextLines out;
  for (const std::string& l : lines) out.Add(l);
  std::string error;
  if (!out.SaveToFile(path, &error)) return "  >> " + path + " not written: " + error;
  result_.filesWritten.push_back(path);
  ++result_.occurrences;
  return "  >> " + path;
}

std::string BatchRunner::LoadAndInsert(const std::string& name) {
  const std::string path = PathInFolder(folders_.output, name);
  if (path.empty()) {
    result_.refused.push_back(name);
    return "  >> refused: " + name + " is outside the output folder " + folders_.output;
  }
  TextLines loaded;
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return "";
  // A text is a few hundred kilobytes; a file past this is not one a batch means to paste.
  constexpr std::uintmax_t kMaxInsertBytes = 16u << 20;
  if (const std::uintmax_t size = std::filesystem::file_size(path, ec); ec || size > kMaxInsertBytes)
    return "  >> refused: " + path + " is larger than " + std::to_string(kMaxInsertBytes >> 20) + " MiB";
  if (!loaded.LoadFromFile(path)) return "";
  if (cursor_ < 0) cursor_ = 0;
  for (std::size_t i = loaded.Count(); i-- > 0;) InsertLine(cursor_, loaded[i]);
  passEnded_ = true;
  ++result_.occurrences;
  return " << " + path + " " + std::to_string(loaded.Count()) + " lines";
}

void BatchRunner::RunAction(const std::string& key, const std::string& number, const std::string& text,
                            std::string& words) {
  long long arg = 0;
  if (!WholeDecimal(number, arg)) arg = (key == "XOR" || key == "OR" || key == "AND" || key == "NOT") ? HexNumber(number) : 0;
  int& count = result_.occurrences;
  const bool line = LineAt();
  if (key == "set flag" || key == "reset flag") {
    memory_.userFlag = key == "set flag";
    ++count;
  } else if (key == "next line") {
    ++cursor_;
    ++count;
  } else if (key == "Delete Line") {
    if (!line) return;
    target_.Delete(static_cast<std::size_t>(cursor_));
    if (cursor_ >= 0) --cursor_;
    ++deletedLines_;
    ++count;
  } else if (key == "Insert line") {
    if (cursor_ < 0) cursor_ = 0;
    InsertLine(cursor_, "");
    ++cursor_;
    ++count;
  } else if (key == "Insert" && line) {
    InsertAt(arg, text);
    words = "  >> " + text;
    ++count;
  } else if (key == "Overwrite" && line) {
    OverwriteAt(number == "INDEX" ? foundPos_ : arg, text);
    words = "    " + condText_ + " >> " + text;
    ++count;
  } else if (key == "Remove" && line) {
    if (const auto at = Line().find(text); !text.empty() && at != std::string::npos) {
      Line().erase(at, text.size());
      ++count;
    }
    words = "  >> " + text;
  } else if (key == "delete until" && line) {
    std::string& l = Line();
    const std::size_t from = static_cast<std::size_t>(std::clamp<long long>(arg - 1, 0, static_cast<long long>(l.size())));
    const int at = Find(l.substr(from), text, true, !caseSensitive_);
    if (at == 0) {
      words = " Not_Found";
      return;
    }
    const long long start = arg + foundLen_;
    const long long chars = at - 1;
    if (start >= 1 && start <= static_cast<long long>(l.size())) l.erase(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(chars));
    words = "  >> " + std::to_string(chars) + " chars deleted";
    ++count;
  } else if (key == "search text") {
    // The count starts at 1: a hit on the current line moves the cursor on by one.
    for (long long i = std::max<long long>(cursor_, 0); i < static_cast<long long>(target_.Count()); ++i)
      if (Find(target_[static_cast<std::size_t>(i)], text, true, !caseSensitive_) > 0) {
        cursor_ = i + 1;
        words = "    " + text + " >> found at line " + std::to_string(i + 1);
        ++count;
        return;
      }
    condResult_ = false;
    words = "    " + text + " >> not found " + std::to_string(cursor_);
  } else if (key == "get integer" && line) {
    const auto numbers = Numbers(Line(), false);
    if (arg >= 0 && arg < static_cast<long long>(numbers.size())) {
      const std::string& n = numbers[static_cast<std::size_t>(arg)];
      intValue_ = n.size() > 18 ? 9999 : std::stoll(n);
      words = " << " + std::to_string(intValue_);
      ++count;
    } else {
      intValue_ = 9999;
      words = " Not_found ";
    }
  } else if (key == "get float" && line) {
    const auto numbers = Numbers(Line(), true);
    if (arg >= 0 && arg < static_cast<long long>(numbers.size())) {
      std::string n = numbers[static_cast<std::size_t>(arg)];
      for (char& c : n)
        if (c == ',') c = '.';
      floatValue_ = std::strtold(n.c_str(), nullptr);
      words = " << " + FloatText(floatValue_);
      ++count;
    } else {
      words = " Not_found ";
    }
  } else if (key == "get hex" && line) {
    if (!ReadHex(static_cast<int>(std::clamp<long long>(arg, 0, 1 << 20)), words).empty()) ++count;
  } else if (key == "get string" && line) {
    const std::size_t from = static_cast<std::size_t>(std::clamp<long long>(arg - 1, 0, static_cast<long long>(Line().size())));
    stringValue_ = Line().substr(from);
    words = "String is: " + stringValue_;
    ++count;
  } else if (key == "insert float" && line) {
    const std::string value = FloatText(floatValue_);
    InsertAt(arg, value);
    words = "  >> " + value;
    ++count;
  } else if ((key == "insert hex" || key == "Overwrite hex") && line) {
    if (hex_.value.empty()) {
      words = " No_Hex_Value";
      return;
    }
    const std::string value = hex_.prefix + hex_.value + hex_.suffix;
    if (key == "insert hex") {
      InsertAt(arg, value);
    } else if (foundPos_ >= 1 && foundPos_ <= static_cast<int>(Line().size())) {
      Line().erase(static_cast<std::size_t>(foundPos_ - 1), value.size());
      Line().insert(static_cast<std::size_t>(foundPos_ - 1), value);
    }
    words = "  >> " + value;
    ++count;
  } else if (key == "insert string" && line) {
    InsertAt(arg, stringValue_);
    words = "  >> " + std::to_string(intValue_);
    ++count;
  } else if (key == "AND" || key == "OR" || key == "XOR" || key == "NOT" || key.rfind("shift ", 0) == 0 ||
             key.rfind("rotate ", 0) == 0 || key == "set bit" || key == "clear bit" || key == "toggle bit") {
    bool changed = false;
    words = RunBitCommand(hex_, key, arg, changed);
    if (changed) ++count;
  } else if (key == "Start Copy") {
    if (cursor_ != 0 && !copying_) {
      copyBuffer_.clear();
      copying_ = collectingLines_ = true;
      copyStartLine_ = cursor_;
      ++count;
    }
  } else if (key == "Stop Copy") {
    if (cursor_ > copyStartLine_ && copying_) {
      copying_ = false;
      if (copyBuffer_.size() > 1) copyBuffer_.pop_back();
      collectingLines_ = false;
      ++count;
    }
  } else if (key == "Save Copy") {
    collectingLines_ = false;
    words = SaveLines(copyBuffer_, text);
  } else if (key == "Save As") {
    words = SaveLines(target_.Lines(), text);
  } else if (key == "Start Delete") {
    if (!deleteArmed_) {
      deleteStartLine_ = cursor_;
      deleteArmed_ = true;
      ++count;
    }
  } else if (key == "Stop Delete") {
    if (deleteArmed_ && cursor_ > deleteStartLine_ && line) {
      for (long long i = cursor_; i >= deleteStartLine_ && i >= 0; --i) target_.Delete(static_cast<std::size_t>(i));
      deletedLines_ += cursor_ - deleteStartLine_ + 1;
      // The pass goes on with the line that followed the range.
      cursor_ = deleteStartLine_ - 1;
      deleteArmed_ = false;
      ++count;
    }
  } else if (key == "Load File") {
    words = LoadAndInsert(text);
  } else if (IsReserved(key)) {
    words = "  >>";  // reserved for an I/O device
  }
}

}  // namespace rm
