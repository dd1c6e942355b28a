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

// A number tag: the prefixed number when its option is on, else the tag and the separator behind it.
void NumberTag(std::string& text, const char* tag, bool on, const std::string& prefix, long long value) {
  const std::size_t pos = FindTag(text, tag);
  if (pos == std::string::npos) return;
  const std::size_t len = std::char_traits<char>::length(tag);
  if (on)
    text.replace(pos, len, prefix + " " + std::to_string(value));
  else
    text.erase(pos, std::min(len + 1, text.size() - pos));
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
    if (c == '[') ++depth;
    else if (c == ']' && depth > 0) --depth;
    else if (depth == 0 && c != '-') out += c;
  }
  return out;
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

  long long nameShift = 0;
  std::size_t nameLineIndex = std::string::npos;
  const std::size_t namePos = original.find("[&NAME]");
  if (namePos != std::string::npos) {
    const std::string replacement = " " + v.name + " ";
    const std::size_t lineStart = text.rfind('\n', namePos == 0 ? 0 : namePos - 1);
    const std::size_t from = (lineStart == std::string::npos || namePos == 0) ? 0 : lineStart + 1;
    out.beforeName = text.substr(from, namePos - from);
    nameLineIndex = static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<long>(namePos), '\n'));
    text.replace(namePos, 7, replacement);
    nameShift = static_cast<long long>(replacement.size()) - 7 + v.nameLengthSkew;
  }
  // The size's place is taken from before the name went in, moved by the name's growth: right
  // when the name stands first, as in every template we ship, and shifted otherwise.
  if (const std::size_t sizePos = original.find("[&SIZE]"); sizePos != std::string::npos) {
    const long long at = std::clamp<long long>(static_cast<long long>(sizePos) + nameShift, 0,
                                               static_cast<long long>(text.size()));
    const std::size_t inner = std::min(static_cast<std::size_t>(at) + 1, text.size());
    text.erase(inner, 5);
    text.insert(inner, v.size);
  }

  NumberTag(text, "[&WIDTH]", v.sizeInData, v.linePrefix, v.width);
  NumberTag(text, "[&HEIGHT]", v.sizeInData, v.linePrefix, v.height);
  if (const std::size_t pos = FindTag(text, "[&TRUEORG]"); pos != std::string::npos) text.erase(pos, 10);
  NumberTag(text, "[&XPOS]", v.positionInData, v.linePrefix, out.x);
  NumberTag(text, "[&YPOS]", v.positionInData, v.linePrefix, out.y);

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
    if (const std::size_t f = FindTag(pointer, "[&FONT BITMAPS]"); f != std::string::npos) pointer.erase(f);
    if (const std::size_t n = FindTag(pointer, "[&CNAME]"); n != std::string::npos) pointer.replace(n, 8, v.pointerName);
    if (const std::size_t s = FindTag(pointer, "&CSIZE"); s != std::string::npos) pointer.erase(s, 6);
    out.pointerHeader = SplitLines(pointer);
  }

  out.header = SplitLines(text);
  if (nameLineIndex != std::string::npos && nameLineIndex < out.header.size())
    out.nameLine = out.header[nameLineIndex];
  return out;
}

}  // namespace rm
