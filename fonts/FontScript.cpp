#include "fonts/FontScript.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace rm {

namespace {

using PD = PagingDirection;

std::string Upper(std::string_view s) {
  std::string u(s);
  for (char& c : u) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return u;
}

bool Contains(std::string_view s, std::string_view part) { return s.find(part) != std::string_view::npos; }

// A whole number with an optional sign, nothing else.
bool ParseInt(std::string_view s, int& value) {
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  const auto r = std::from_chars(s.data(), s.data() + s.size(), value);
  return !s.empty() && r.ec == std::errc() && r.ptr == s.data() + s.size();
}

bool ParseHex(std::string_view s, int& value) {
  const auto r = std::from_chars(s.data(), s.data() + s.size(), value, 16);
  return !s.empty() && r.ec == std::errc() && r.ptr == s.data() + s.size();
}

// From the first "[" to the last "]" after it.
bool OuterBracketValue(std::string_view line, std::string& value) {
  const std::size_t open = line.find('[');
  const std::size_t close = line.rfind(']');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return false;
  value = std::string(line.substr(open + 1, close - open - 1));
  return true;
}

// The bracket pairs of a line in turn: each call gives the next complete pair.
class BracketPairs {
 public:
  explicit BracketPairs(std::string_view line) : line_(line) {}
  bool Next(std::string& value) {
    const std::size_t open = line_.find('[', at_);
    if (open == std::string_view::npos) return false;
    const std::size_t close = line_.find(']', open + 1);
    if (close == std::string_view::npos) return false;
    value = std::string(line_.substr(open + 1, close - open - 1));
    at_ = close + 1;
    return true;
  }

 private:
  std::string_view line_;
  std::size_t at_ = 0;
};

constexpr std::string_view kStyleNames[] = {"Bold", "Italic", "Underlined", "Striked Out", "Outline"};

// Creation names the horizontal flags one way, the direction buttons the other way round.
std::string CreationWord(PD d) {
  switch (d) {
    case PD::ToRightAll: return "To Right";  // tr
    case PD::ToLeftAll: return "To Left";    // tl
    case PD::ToRight: return "To Right All";  // tra
    case PD::ToLeft: return "To Left All";    // tla
    case PD::Up: return "Up";
    case PD::Down: return "Down";
    case PD::UpAll: return "Up All";
    case PD::DownAll: return "";  // the flag the creation tests never reach
  }
  return "";
}

std::string ButtonWord(PD d) {
  switch (d) {
    case PD::ToRightAll: return "To Right All";  // tr
    case PD::ToLeftAll: return "To Left All";    // tl
    case PD::ToRight: return "To Right";         // tra
    case PD::ToLeft: return "To Left";           // tla
    case PD::Up: return "Up";
    case PD::Down: return "Down";
    case PD::UpAll: return "Up All";
    case PD::DownAll: return "Down All";
  }
  return "";
}

// The reader gives each word to the button of that name: "To Right" sets tr, "To Right All" tra.
bool DirectionFromWord(const std::string& upper, PD& d) {
  static constexpr std::pair<std::string_view, PD> kWords[] = {
      {"UP", PD::Up},        {"DOWN", PD::Down},         {"UP ALL", PD::UpAll},          {"DOWN ALL", PD::DownAll},
      {"TO LEFT", PD::ToLeftAll}, {"TO RIGHT", PD::ToRightAll}, {"TO LEFT ALL", PD::ToLeft}, {"TO RIGHT ALL", PD::ToRight}};
  for (const auto& [word, dir] : kWords)
    if (upper == word) {
      d = dir;
      return true;
    }
  return false;
}

constexpr std::pair<std::string_view, OriginCorner> kCorners[] = {
    {"TL", OriginCorner::TL}, {"TR", OriginCorner::TR}, {"BR", OriginCorner::BR}, {"BL", OriginCorner::BL}};

std::string CornerWord(OriginCorner c) {
  for (const auto& [word, corner] : kCorners)
    if (corner == c) return std::string(word);
  return "TL";
}

void ReadFontType(std::string_view s, FontScriptFields& f) {
  if (s.find('[') == std::string_view::npos) return;
  if (Contains(s, "UNICODE")) {
    f.source = FontSource::Unicode;
    const std::size_t start = s.find("UNICODE ");
    if (start == std::string_view::npos) return;
    const std::size_t nameAt = start + 8;
    const std::size_t brace = s.find('{', nameAt);
    const std::size_t close = s.find(']', nameAt);
    const std::size_t end = brace != std::string_view::npos ? brace : close;
    if (end == std::string_view::npos) return;
    f.blockName = std::string(s.substr(nameAt, end - nameAt));
    // A newly chosen block shows its first subblock until the bracket behind it says another.
    f.subblock = 1;
    if (close == std::string_view::npos) return;
    std::string n;
    int value = 0;
    if (BracketPairs(s.substr(close + 1)).Next(n) && ParseInt(n, value)) f.subblock = value;
  } else if (Contains(s, "VECTOR")) {
    f.source = FontSource::Vector;
  } else {
    f.source = FontSource::Ansi;
    const std::size_t at = s.find("Codepage : ");
    if (at == std::string_view::npos) return;
    const std::size_t end = s.find(']', at);
    if (end != std::string_view::npos) f.codePage = std::string(s.substr(at + 11, end - at - 11));
  }
}

void ReadOrientation(std::string_view s, FontScriptFields& f) {
  BracketPairs pairs(s);
  std::string value;
  if (!pairs.Next(value)) return;
  DirectionFromWord(Upper(value), f.direction);
  if (!pairs.Next(value)) return;
  const std::string corner = Upper(value);
  for (const auto& [word, c] : kCorners)
    if (corner == word) f.corner = c;
}

void ReadCharsLength(std::string_view s, FontScriptFields& f) {
  BracketPairs pairs(s);
  std::string value;
  if (!pairs.Next(value)) return;
  f.fixed = Upper(value) == "FIXED";
  for (int* field : {&f.maxHeight, &f.maxWidth, &f.shiftX, &f.shiftY}) {
    if (!pairs.Next(value)) return;
    int n = 0;
    if (ParseInt(value, n)) *field = n;
  }
}

}  // namespace

bool FirstBracketValue(std::string_view line, std::string& value) { return BracketPairs(line).Next(value); }

std::string FileNameLine(const std::string& name, bool afterChange) {
  return (afterChange ? "Font Script Filename :[" : "Font script filename :[") + name + "]";
}
std::string FontNameLine(const std::string& name) { return "Font Name :[" + name + "]"; }
std::string FontSizeLine(int size, bool sizeListed) {
  return sizeListed ? "Font Size :[" + std::to_string(size) + "]" : "Font Size :[SIZE]";
}
std::string StyleLine(int index, bool on) {
  return "Font style " + std::string(kStyleNames[index - 3]) + " :[" + (on ? "True" : "False") + "]";
}

std::string FontTypeLine(const FontScriptFields& f) {
  switch (f.source) {
    case FontSource::Unicode:
    case FontSource::ExcelList: {
      std::string line = "Font Type :[UNICODE " + f.blockName + "]";
      if (f.subblockCount > 1) line += "[" + std::to_string(f.subblock) + "]";
      return line;
    }
    case FontSource::Vector: return "Font Type :[VECTOR] ";
    default: return "Font Type :[ANSI] [Codepage : " + f.codePage + "]";
  }
}

std::string OrientationButtonLine(PagingDirection d, OriginCorner corner) {
  return "Font Orientation :[" + ButtonWord(d) + "][" + CornerWord(corner) + "]";
}
std::string EndianLine(bool msbFirst) {
  return std::string("Font Endian : Most Significant Bit [") + (msbFirst ? "First" : "Last") + "]";
}
std::string CharsLengthLine(bool fixed, int maxHeight, int maxWidth, int sx, int sy) {
  return std::string("Font Size :[") + (fixed ? "FIXED" : "VARIABLE") + "][" + std::to_string(maxHeight) + "][" +
         std::to_string(maxWidth) + "][" + std::to_string(sx) + "][" + std::to_string(sy) + "]";
}
std::string PrefixLine(const std::string& prefix) { return "Font Prefix :[" + prefix + "]"; }
std::string SuffixLine(const std::string& suffix) { return "Font Suffix :[" + suffix + "]"; }
std::string SelectedCharsLine(const std::string& list) { return "Selected Chars List :[" + list + "]"; }

std::vector<std::string> WriteNewFontScript(const FontScriptFields& f) {
  std::vector<std::string> lines = {FileNameLine(f.fileName, false), FontNameLine(f.fontName),
                                    FontSizeLine(f.fontSize, f.sizeListed)};
  const bool styles[] = {f.bold, f.italic, f.underline, f.strikeOut, f.outline};
  for (int i = 0; i < 5; ++i) lines.push_back(StyleLine(i + 3, styles[i]));
  lines.push_back(FontTypeLine(f));
  if (const std::string word = CreationWord(f.direction); !word.empty())
    lines.push_back("Font Orientation :[" + word + "]");
  lines.push_back(EndianLine(f.msbFirst));
  lines.push_back(CharsLengthLine(f.fixed, f.maxHeight, f.maxWidth, f.shiftX, f.shiftY));
  lines.push_back(PrefixLine(f.prefix));
  lines.push_back(SuffixLine(f.suffix));
  lines.push_back(SelectedCharsLine(f.list));
  return lines;
}

void ExtractList(std::string_view list, int& firstSubblock, int& firstLow, int& lastSubblock, int& lastLow) {
  const std::size_t star1 = list.find('*');
  const std::size_t star2 = star1 == std::string_view::npos ? star1 : list.find('*', star1 + 1);
  auto part = [&list](std::size_t from, std::size_t to, int& subblock, int& low) {
    const std::string_view p = list.substr(from, to == std::string_view::npos ? to : to - from);
    const std::size_t slash = p.find('/');
    if (!ParseInt(p.substr(0, slash), subblock)) subblock = 1;
    if (slash == std::string_view::npos || !ParseHex(p.substr(slash + 1), low)) low = 0;
  };
  firstSubblock = lastSubblock = 1;
  firstLow = lastLow = 0;
  if (star2 == std::string_view::npos) return;
  part(star1 + 1, star2, firstSubblock, firstLow);
  part(star2 + 1, std::string_view::npos, lastSubblock, lastLow);
}

void ReadFontScript(std::vector<std::string>& lines, FontScriptFields& f, FontScriptReadNotes* notes) {
  FontScriptReadNotes scratch;
  FontScriptReadNotes& n = notes ? *notes : scratch;
  auto line = [&lines](std::size_t i) -> std::string_view { return i < lines.size() ? lines[i] : std::string_view(); };
  std::string v;

  if (FirstBracketValue(line(1), v)) f.fontName = v;
  if (FirstBracketValue(line(2), v) && !ParseInt(v, f.fontSize)) f.fontSize = 8;
  bool* styles[] = {&f.bold, &f.italic, &f.underline, &f.strikeOut};
  for (int i = 0; i < 4; ++i)
    if (FirstBracketValue(line(3 + i), v)) *styles[i] = Upper(v) == "TRUE";

  // Scripts older than the Outline style get its line, off, and read on from the line it pushed.
  if (Contains(line(7), "Outline")) {
    if (FirstBracketValue(line(7), v)) f.outline = Upper(v) == "TRUE";
    lines[7] = StyleLine(7, f.outline);
  } else if (lines.size() >= 7) {
    lines.insert(lines.begin() + 7, StyleLine(7, false));
    f.outline = false;
    n.outlineLineAdded = true;
  }
  std::size_t i = 8;
  ReadFontType(line(i++), f);
  ReadOrientation(line(i++), f);
  if (FirstBracketValue(line(i++), v)) {
    const std::string endian = Upper(v);
    if (endian == "FIRST") f.msbFirst = true;
    if (endian == "LAST") f.msbFirst = false;
  }
  ReadCharsLength(line(i++), f);
  if (OuterBracketValue(line(i++), v)) f.prefix = v;
  if (OuterBracketValue(line(i++), v)) f.suffix = v;
  if (!Contains(line(i), "Selected")) {
    if (OuterBracketValue(line(i++), v)) f.prefix = v;
    if (OuterBracketValue(line(i++), v)) f.suffix = v;
  }
  if (!OuterBracketValue(line(i), v)) return;
  f.list = v;
  if (std::count(v.begin(), v.end(), '*') == 2) {
    n.starRange = true;
    ExtractList(v, n.rangeFirstSubblock, n.rangeFirstLow, n.rangeLastSubblock, n.rangeLastLow);
  }
  if (const std::size_t at = v.find("RANGE="); at != std::string::npos) {
    n.addressRange = true;
    n.rangeFirst = v.substr(at + 6, 4);
    n.rangeLast = at + 11 < v.size() ? v.substr(at + 11, 4) : std::string();
  }
}

}  // namespace rm
