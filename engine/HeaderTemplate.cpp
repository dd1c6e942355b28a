#include "engine/HeaderTemplate.h"

#include <algorithm>
#include <cctype>

namespace rm {

namespace {

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

std::string Padded(std::string s) {
  if (s.size() < 43) s.append(43 - s.size(), ' ');
  return s;
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (;;) {
    const std::size_t nl = text.find('\n', start);
    lines.push_back(text.substr(start, nl == std::string::npos ? std::string::npos : nl - start));
    if (nl == std::string::npos) break;
    start = nl + 1;
  }
  return lines;
}

std::size_t FindTag(const std::string& text, const char* tag) { return Upper(text).find(tag); }

constexpr char kNumberEnd = '\x01';    // marks the end of a number put in, until the last is known
constexpr char kNameStart = '\x02';    // marks where the name went in
constexpr char kNumberStart = '\x03';  // marks the start of a number put in

// A number tag: the prefixed number when its option is on, else the tag and the separator behind
// it (not a line end: that would join two lines, and a comment line would swallow the next).
// Returns the data entries put in.
int NumberTag(std::string& text, const char* tag, bool on, long long value, const HeaderTagValues& v) {
  const std::size_t pos = FindTag(text, tag);
  if (pos == std::string::npos) return 0;
  const std::size_t len = std::char_traits<char>::length(tag);
  if (!on) {
    const bool separatorBehind = pos + len < text.size() && text[pos + len] != '\n';
    text.erase(pos, len + (separatorBehind ? 1 : 0));
    return 0;
  }
  std::string number = std::to_string(value);
  if (v.splitNumbers) {
    const long long hi = (value >> 8) & 255, lo = value & 255;
    number = std::to_string(v.bigEndian ? hi : lo) + v.numberSeparator + " " + std::to_string(v.bigEndian ? lo : hi);
  }
  text.replace(pos, len, kNumberStart + v.linePrefix + " " + number + kNumberEnd);
  return v.splitNumbers ? 2 : 1;
}

}  // namespace

std::string BaseName(const std::string& path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string TableNameFromFile(const std::string& fileName) {
  std::string name = BaseName(fileName);
  if (const std::size_t dot = name.rfind('.'); dot != std::string::npos && dot > 0) name.erase(dot);
  std::string out;
  int depth = 0;
  for (char c : name) {
    if (c == '[') {
      ++depth;
    } else if (c == ']' && depth > 0) {
      --depth;
    } else if (depth == 0 && c != '-') {
      const unsigned char u = static_cast<unsigned char>(c);
      out += (u < 128 && (std::isalnum(u) || c == '_')) ? c : '_';
    }
  }
  if (!out.empty() && std::isdigit(static_cast<unsigned char>(out[0]))) out.insert(0, "_");
  return out;
}

std::string FilledTemplate::NameLineFor(const std::string& otherName) const {
  if (!hasName || nameAt + nameLength > nameLine.size()) return nameLine;
  std::string l = nameLine;
  l.replace(nameAt, nameLength, " " + otherName + " ");
  return l;
}

std::vector<std::string> DefaultGraphicsTemplate() {
  return {Padded("// FOR GRAPHICS exported from WORK CANVAS"),
          "",
          Padded("#include <avr/pgmspace.h>"),
          "",
          Padded("const uint8_t [&NAME][&SIZE] PROGMEM = {"),
          Padded("[&TRUEORG]"),
          "",
          Padded("[&XPOS],[&YPOS],[&WIDTH],[&HEIGHT]"),
          "",
          Padded("[&COMPRESSION]"),
          Padded("const uint8_t [&CNAME][&CSIZE] PROGMEM = {"),
          ""};
}

FilledTemplate FillTemplate(const std::vector<std::string>& lines, const HeaderTagValues& v) {
  FilledTemplate out;
  out.name = v.name;
  out.pointerName = v.pointerName;
  std::string text;
  bool first = true;
  for (const std::string& l : lines) {
    if (l.find("//**") != std::string::npos) {
      out.commentLines.push_back(l);
      continue;
    }
    if (!first) text += '\n';
    text += l;
    first = false;
  }

  // The name's and the size's places both come from the text as it was before any replacement.
  const std::string original = Upper(text);
  out.trueOrigin = original.find("[&TRUEORG]") != std::string::npos;
  out.x = v.x1;
  out.y = v.y1;
  out.oppositeX = v.x2 - 1;
  out.oppositeY = v.y2 - 1;
  if (out.trueOrigin) {
    if (v.originBottom) {
      out.y = v.canvasHeight - v.y2;
      out.oppositeY = v.canvasHeight - v.y1 - 1;
    }
    if (v.originRight) {
      out.x = v.canvasWidth - v.x2;
      out.oppositeX = v.canvasWidth - v.x1 - 1;
    }
  }

  std::size_t nameLineIndex = std::string::npos;
  const std::size_t namePos = original.find("[&NAME]");
  if (namePos != std::string::npos) {
    const std::string replacement = " " + v.name + " ";
    const std::size_t lineStart = text.rfind('\n', namePos == 0 ? 0 : namePos - 1);
    const std::size_t from = (lineStart == std::string::npos || namePos == 0) ? 0 : lineStart + 1;
    out.beforeName = text.substr(from, namePos - from);
    out.hasName = true;
    out.nameLength = replacement.size();
    nameLineIndex = static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<long>(namePos), '\n'));
    // Marked until the other tags are in: they may move it.
    text.replace(namePos, 7, kNameStart + replacement);
  }

  // Each number put into the data is one more entry of the table: the size counts them, so that
  // the declaration holds what is written. Only the tags that are there and on count.
  const std::string afterName = Upper(text);
  auto present = [&](const char* tag, bool on) { return on && afterName.find(tag) != std::string::npos; };
  const int perNumber = v.splitNumbers ? 2 : 1;
  const long long numbers = perNumber * (present("[&WIDTH]", v.sizeInData) + present("[&HEIGHT]", v.sizeInData) +
                                         present("[&XPOS]", v.positionInData) + present("[&YPOS]", v.positionInData));
  // The size goes where its tag is, whether it stands before or after the name.
  if (const std::size_t sizePos = afterName.find("[&SIZE]"); sizePos != std::string::npos) {
    const std::string size = v.dataSize >= 0 ? std::to_string(v.dataSize + numbers) : v.size;
    text.replace(sizePos + 1, 5, size);
  }

  NumberTag(text, "[&WIDTH]", v.sizeInData, v.width, v);
  NumberTag(text, "[&HEIGHT]", v.sizeInData, v.height, v);
  if (const std::size_t pos = FindTag(text, "[&TRUEORG]"); pos != std::string::npos) text.erase(pos, 10);
  NumberTag(text, "[&XPOS]", v.positionInData, out.x, v);
  NumberTag(text, "[&YPOS]", v.positionInData, out.y, v);
  // The data follow the last number: on a line of its own below the declaration it takes the end
  // of line, or the first datum would run into it.
  // Numbers inside a line of other text (a comment, the declaration) are the user's own affair.
  if (const std::size_t last = text.rfind(kNumberEnd); last != std::string::npos) {
    const std::size_t lineEnd = std::min(text.find('\n', last), text.size());
    const std::size_t lineStart =
        last == 0 ? 0 : (text.rfind('\n', last) == std::string::npos ? 0 : text.rfind('\n', last) + 1);
    const std::size_t firstNumber = text.find(kNumberStart, lineStart);
    const bool restBlank = text.find_first_not_of(" \t\r", last + 1) >= lineEnd;
    const bool ownLine = text.find_first_not_of(" \t", lineStart) == firstNumber;
    const auto lineIndex =
        static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<long>(last), '\n'));
    if (restBlank && ownLine && (!out.hasName || lineIndex > nameLineIndex)) text.insert(last + 1, v.numbersLineEnd);
  }
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == kNumberEnd || c == kNumberStart; }),
             text.end());

  if (const std::size_t b = FindTag(text, "[&FONT INCLUDE]"); b != std::string::npos) {
    const std::size_t e = FindTag(text, "[&/FONT INCLUDE]");
    const std::size_t end = (e == std::string::npos || e < b) ? text.size() : e + 16;
    text.erase(b, end - b);
  }

  std::string pointer;
  if (const std::size_t c = FindTag(text, "[&COMPRESSION]"); c != std::string::npos) {
    out.hasCompressionTag = true;
    pointer = text.substr(c + 14);
    text.erase(c);
    pointer.erase(std::remove(pointer.begin(), pointer.end(), kNameStart), pointer.end());
    if (const std::size_t f = FindTag(pointer, "[&FONT BITMAPS]"); f != std::string::npos) pointer.erase(f);
    if (const std::size_t n = FindTag(pointer, "[&CNAME]"); n != std::string::npos)
      pointer.replace(n, 8, v.pointerName);
    if (const std::size_t s = FindTag(pointer, "&CSIZE"); s != std::string::npos) pointer.erase(s, 6);
    out.pointerHeader = SplitLines(pointer);
  }

  out.header = SplitLines(text);
  for (std::string& l : out.header) {
    if (const std::size_t at = l.find(kNameStart); at != std::string::npos) {
      l.erase(at, 1);
      out.nameLine = l;
      out.nameAt = at;
    }
  }
  return out;
}

}  // namespace rm
