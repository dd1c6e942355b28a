#include "fonts/FontTemplates.h"

#include <algorithm>
#include <cctype>

namespace rm {

std::string FontTemplateSuffix(FontStructure structure) {
  switch (structure) {
    case FontStructure::RawData: return "_Raw.txt";
    case FontStructure::FontBloc: return "_Bloc.txt";
    case FontStructure::Structured: return "_Struct.txt";
    case FontStructure::DmdStruct: return "_DMD.txt";
  }
  return "_Raw.txt";
}

namespace {

std::string Upper(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return s;
}

// The text between `open` and `close` in `text` (upper case copy `upper`); false without both.
bool Between(const std::string& text, const std::string& upper, const std::string& open, const std::string& close,
             std::string& out) {
  const std::size_t a = upper.find(open);
  if (a == std::string::npos) return false;
  const std::size_t from = a + open.size();
  const std::size_t b = upper.find(close, from);
  if (b == std::string::npos) return false;
  out = text.substr(from, b - from);
  return true;
}

}  // namespace

FontTemplate ParseFontTemplate(const std::vector<std::string>& lines) {
  std::vector<std::string> kept;
  bool nameCut = false;
  for (const std::string& l : lines) {
    if (l.find("//**") != std::string::npos) continue;
    std::string line = l;
    if (!nameCut) {
      const std::size_t at = Upper(line).find("[&NAME]");
      if (at != std::string::npos) {
        line.erase(at + 7);
        nameCut = true;
      }
    }
    kept.push_back(line);
  }
  std::string text;
  for (const std::string& l : kept) text += l + "\n";
  const std::string upper = Upper(text);
  FontTemplate t;
  std::string include;
  if (Between(text, upper, "[&FONT INCLUDE]", "[&/FONT INCLUDE]", include)) {
    std::size_t from = 0;
    if (!include.empty() && include.front() == '\n') from = 1;
    while (from < include.size()) {
      const std::size_t nl = include.find('\n', from);
      t.include.push_back(include.substr(from, nl - from));
      if (nl == std::string::npos) break;
      from = nl + 1;
    }
  }
  std::string v;
  if (Between(text, upper, "[&FONT IMAGEDATA]", "[&FIMAGEDATA]", v)) t.imageDataPrefix = v;
  if (Between(text, upper, "[&FONT TIMAGE]", "[&FTIMAGE]", v)) t.timagePrefix = v;
  if (Between(text, upper, "[&FONT TCHAR]", "[&FTCHAR]", v)) t.tcharPrefix = v;
  if (Between(text, upper, "[&FONT TFONT]", "[&FTFONT]", v)) t.tfontPrefix = v;
  // A declaration runs from its tag to the next tag; its first line that holds text is it.
  const auto declaration = [&](const std::string& tag) {
    const std::size_t a = upper.find(tag);
    if (a == std::string::npos) return std::string();
    const std::size_t from = a + tag.size();
    const std::size_t b = upper.find("[&FONT", from);
    std::string body = text.substr(from, b == std::string::npos ? std::string::npos : b - from);
    std::size_t p = 0;
    while (p < body.size()) {
      const std::size_t nl = body.find('\n', p);
      std::string line = body.substr(p, nl - p);
      if (line.find_first_not_of(" \t\r") != std::string::npos) return line;
      if (nl == std::string::npos) break;
      p = nl + 1;
    }
    return std::string();
  };
  t.bitmapsLine = declaration("[&FONT BITMAPS]");
  t.blocLine = declaration("[&FONT BLOC]");
  t.descriptorsLine = declaration("[&FONT DESCRIPTORS]");
  return t;
}

}  // namespace rm
