#include "shell/IniFile.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>

#include "engine/TextLines.h"

namespace rm {

namespace {

constexpr std::string_view kBom = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string Fold(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

// [begin, end) of `s` without the blanks at its ends.
void Trim(std::string_view s, std::size_t& begin, std::size_t& end) {
  while (begin < end && IsBlank(s[begin])) ++begin;
  while (end > begin && IsBlank(s[end - 1])) --end;
}

std::string_view Trimmed(std::string_view s) {
  std::size_t b = 0, e = s.size();
  Trim(s, b, e);
  return s.substr(b, e - b);
}

bool WrappedInQuotes(std::string_view v) {
  return v.size() >= 2 && v.front() == v.back() && (v.front() == '"' || v.front() == '\'');
}

std::string_view Unquote(std::string_view v) { return WrappedInQuotes(v) ? v.substr(1, v.size() - 2) : v; }

// The value as it must stand in the file to read back as `value`.
std::string EncodeValue(std::string_view value) {
  std::string v(value);
  for (char& c : v)
    if (c == '\r' || c == '\n') c = ' ';
  if (!v.empty() && (IsBlank(v.front()) || IsBlank(v.back()) || WrappedInQuotes(v))) return '"' + v + '"';
  return v;
}

bool HasLineBreak(std::string_view s) { return s.find_first_of("\r\n") != std::string_view::npos; }

bool StorableSection(std::string_view s) {
  return !HasLineBreak(s) && s.find(']') == std::string_view::npos && Trimmed(s).size() == s.size();
}

bool StorableKey(std::string_view k) {
  return !k.empty() && !HasLineBreak(k) && k.find('=') == std::string_view::npos && k.front() != '[' &&
         k.front() != ';' && Trimmed(k).size() == k.size();
}

struct Number {
  bool found = false;  // at least one digit
  bool nonZero = false;
  bool overflow = false;  // magnitude beyond what an int can hold
  long long value = 0;
};

// The number that `v` starts with: optional sign, then decimal digits or "0x" and hex digits.
Number LeadingNumber(std::string_view v) {
  Number n;
  std::size_t i = 0;
  bool negative = false;
  if (i < v.size() && (v[i] == '+' || v[i] == '-')) negative = v[i++] == '-';
  unsigned base = 10;
  auto digit = [&](char c) -> int {
    if (c >= '0' && c <= '9') return c - '0';
    if (base == 16 && c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (base == 16 && c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
  };
  if (i + 2 < v.size() && v[i] == '0' && (v[i + 1] == 'x' || v[i + 1] == 'X')) {
    base = 16;
    if (digit(v[i + 2]) >= 0)
      i += 2;
    else
      base = 10;  // "0x" with nothing after it is the number 0 followed by text
  }
  // One past the largest magnitude an int can take (for the negative end).
  constexpr unsigned long long kLimit = static_cast<unsigned long long>(INT_MAX) + 1;
  unsigned long long magnitude = 0;
  for (; i < v.size(); ++i) {
    int d = digit(v[i]);
    if (d < 0) break;
    n.found = true;
    if (d != 0) n.nonZero = true;
    if (!n.overflow) {
      magnitude = magnitude * base + static_cast<unsigned>(d);
      if (magnitude > kLimit) n.overflow = true;
    }
  }
  if (!n.overflow && !negative && magnitude == kLimit) n.overflow = true;
  if (!n.overflow) n.value = negative ? -static_cast<long long>(magnitude) : static_cast<long long>(magnitude);
  return n;
}

}  // namespace

IniFile::Line IniFile::ParseLine(std::string text) {
  Line line;
  line.text = std::move(text);
  std::string_view s = line.text;
  std::size_t b = 0, e = s.size();
  Trim(s, b, e);
  if (b == e || s[b] == ';' || s[b] == '[') return line;
  std::size_t eq = s.find('=', b);
  if (eq == std::string_view::npos || eq == b || eq >= e) return line;  // "=x" has no name
  std::size_t nb = b, ne = eq, vb = eq + 1, ve = e;
  Trim(s, nb, ne);
  Trim(s, vb, ve);
  line.isKey = true;
  line.nameBegin = nb;
  line.nameLen = ne - nb;
  line.valueBegin = vb;
  line.valueLen = ve - vb;
  return line;
}

void IniFile::AddSection(Section s) {
  if (s.hasHeader) sectionIndex_.emplace(Fold(s.name), sections_.size());
  sections_.push_back(std::move(s));
}

void IniFile::SetText(const std::string& text) {
  sections_.clear();
  sectionIndex_.clear();
  modified_ = false;
  std::string_view body = text;
  hadBom_ = body.substr(0, kBom.size()) == kBom;
  if (hadBom_) body.remove_prefix(kBom.size());
  TextLines lines;
  lines.SetText(std::string(body));

  Section current;  // the lines above the first header
  for (std::size_t i = 0; i < lines.Count(); ++i) {
    std::string& raw = lines[i];
    std::string_view t = Trimmed(raw);
    if (!t.empty() && t.front() == '[') {
      std::size_t close = t.find(']');
      if (close != std::string_view::npos) {
        AddSection(std::move(current));
        current = Section{};
        current.hasHeader = true;
        current.name = std::string(Trimmed(t.substr(1, close - 1)));
        current.header = std::move(raw);
        continue;
      }
    }
    Line line = ParseLine(std::move(raw));
    if (line.isKey) {
      current.keyIndex.emplace(Fold(line.Name()), current.lines.size());
      current.lastKey = current.lines.size() + 1;
    }
    current.lines.push_back(std::move(line));
  }
  AddSection(std::move(current));
}

std::string IniFile::Text() const {
  std::size_t size = hadBom_ ? kBom.size() : 0;
  for (const Section& s : sections_) {
    if (s.hasHeader) size += s.header.size() + 1;
    for (const Line& l : s.lines) size += l.text.size() + 1;
  }
  std::string out;
  out.reserve(size);
  if (hadBom_) out += kBom;
  for (const Section& s : sections_) {
    if (s.hasHeader) (out += s.header) += '\n';
    for (const Line& l : s.lines) (out += l.text) += '\n';
  }
  return out;
}

bool IniFile::Load(const std::string& path, std::string* error) {
  SetText("");
  path_.clear();
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) {
    if (errno == ENOENT) {
      path_ = path;
      return true;
    }
    if (error) *error = "Cannot read " + path + ": " + std::strerror(errno);
    return false;
  }
  std::string data;
  char buffer[65536];
  std::size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) data.append(buffer, n);
  bool failed = std::ferror(f) != 0;
  int saved = errno;
  std::fclose(f);
  if (failed) {
    // The path stays empty, so that a Save() after this cannot replace a file we never read.
    if (error) *error = "Cannot read " + path + ": " + std::strerror(saved ? saved : EIO);
    return false;
  }
  SetText(data);
  path_ = path;
  return true;
}

bool IniFile::Save(std::string* error) const {
  if (path_.empty()) {
    if (error) *error = "Cannot save: the settings file has no name";
    return false;
  }
  std::string why;
  if (WriteFileAtomically(path_, Text(), &why)) return true;
  if (error) *error = "Cannot write " + path_ + ": " + why;
  return false;
}

const IniFile::Section* IniFile::Find(std::string_view section) const {
  auto it = sectionIndex_.find(Fold(section));
  return it == sectionIndex_.end() ? nullptr : &sections_[it->second];
}

const IniFile::Line* IniFile::FindKey(std::string_view section, std::string_view key) const {
  const Section* s = Find(section);
  if (!s) return nullptr;
  auto it = s->keyIndex.find(Fold(key));
  return it == s->keyIndex.end() ? nullptr : &s->lines[it->second];
}

std::string IniFile::ReadString(std::string_view section, std::string_view key, const std::string& def) const {
  const Line* l = FindKey(section, key);
  return l ? std::string(Unquote(l->Value())) : def;
}

int IniFile::ReadInteger(std::string_view section, std::string_view key, int def) const {
  const Line* l = FindKey(section, key);
  if (!l) return def;
  Number n = LeadingNumber(Unquote(l->Value()));
  return n.found && !n.overflow ? static_cast<int>(n.value) : def;
}

bool IniFile::ReadBool(std::string_view section, std::string_view key, bool def) const {
  const Line* l = FindKey(section, key);
  if (!l) return def;
  Number n = LeadingNumber(Unquote(l->Value()));
  return n.found ? n.nonZero : def;
}

bool IniFile::WriteString(std::string_view section, std::string_view key, std::string_view value) {
  if (!StorableSection(section) || !StorableKey(key)) return false;
  std::string encoded = EncodeValue(value);
  std::string folded = Fold(section);
  auto found = sectionIndex_.find(folded);
  if (found == sectionIndex_.end()) {
    // Keep one blank line between the old end of the file and the new section.
    Section& last = sections_.back();
    std::string_view lastLine = !last.lines.empty() ? std::string_view(last.lines.back().text)
                                : last.hasHeader    ? std::string_view(last.header)
                                                    : std::string_view();
    if (!Trimmed(lastLine).empty()) last.lines.push_back(ParseLine(""));
    Section s;
    s.hasHeader = true;
    s.name = std::string(section);
    s.header = '[' + s.name + ']';
    AddSection(std::move(s));
    found = sectionIndex_.find(folded);
  }
  Section& s = sections_[found->second];
  auto k = s.keyIndex.find(Fold(key));
  if (k != s.keyIndex.end()) {
    Line& line = s.lines[k->second];
    std::string text = std::string(line.Name()) + '=' + encoded;
    if (text != line.text) {
      line = ParseLine(std::move(text));
      modified_ = true;
    }
    return true;
  }
  // Every key line lies before lastKey, so inserting there moves no indexed key.
  s.lines.insert(s.lines.begin() + static_cast<std::ptrdiff_t>(s.lastKey), ParseLine(std::string(key) + '=' + encoded));
  s.keyIndex.emplace(Fold(key), s.lastKey);
  ++s.lastKey;
  modified_ = true;
  return true;
}

bool IniFile::WriteInteger(std::string_view section, std::string_view key, int value) {
  return WriteString(section, key, std::to_string(value));
}

bool IniFile::WriteBool(std::string_view section, std::string_view key, bool value) {
  return WriteString(section, key, value ? "1" : "0");
}

bool IniFile::SameName(std::string_view a, std::string_view b) { return Fold(a) == Fold(b); }

bool IniFile::HasSection(std::string_view section) const { return Find(section) != nullptr; }

bool IniFile::HasKey(std::string_view section, std::string_view key) const { return FindKey(section, key) != nullptr; }

std::vector<std::string> IniFile::Sections() const {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    const Section& s = sections_[i];
    auto it = s.hasHeader ? sectionIndex_.find(Fold(s.name)) : sectionIndex_.end();
    if (it != sectionIndex_.end() && it->second == i) out.push_back(s.name);
  }
  return out;
}

std::vector<std::string> IniFile::Keys(std::string_view section) const {
  std::vector<std::string> out;
  const Section* s = Find(section);
  if (!s) return out;
  for (std::size_t i = 0; i < s->lines.size(); ++i) {
    const Line& l = s->lines[i];
    if (!l.isKey) continue;
    auto it = s->keyIndex.find(Fold(l.Name()));
    if (it != s->keyIndex.end() && it->second == i) out.emplace_back(l.Name());
  }
  return out;
}

}  // namespace rm
