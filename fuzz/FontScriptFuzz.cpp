// Feeds arbitrary text to the Font Script reader and checks what must hold for any script:
// nothing crashes; a script the reader has read once (its Outline line put in) reads the same
// again and is not changed further; and a new script written from what was read reads back as
// those fields, wherever the script's format can carry them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fonts/FontScript.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at <= text.size()) {
    const std::size_t end = text.find('\n', at);
    lines.push_back(text.substr(at, end == std::string::npos ? std::string::npos : end - at));
    if (end == std::string::npos) break;
    at = end + 1;
  }
  return lines;
}

bool Same(const rm::FontScriptFields& a, const rm::FontScriptFields& b) {
  return a.fontName == b.fontName && a.fontSize == b.fontSize && a.bold == b.bold && a.italic == b.italic &&
         a.underline == b.underline && a.strikeOut == b.strikeOut && a.outline == b.outline && a.source == b.source &&
         a.codePage == b.codePage && a.blockName == b.blockName && a.subblock == b.subblock &&
         a.direction == b.direction && a.corner == b.corner && a.msbFirst == b.msbFirst && a.fixed == b.fixed &&
         a.maxHeight == b.maxHeight && a.maxWidth == b.maxWidth && a.shiftX == b.shiftX && a.shiftY == b.shiftY &&
         a.prefix == b.prefix && a.suffix == b.suffix && a.list == b.list;
}

bool Holds(const std::string& s, const char* part) { return s.find(part) != std::string::npos; }

// Values the format cannot carry back: the source words inside a code page or block name, and
// a block name that ran past its bracket (the reader stops it at a "{" found anywhere after it).
bool Carried(const rm::FontScriptFields& f) {
  for (const std::string* s : {&f.codePage, &f.blockName})
    if (Holds(*s, "UNICODE") || Holds(*s, "VECTOR") || Holds(*s, "]") || Holds(*s, "{")) return false;
  return f.direction != rm::PagingDirection::DownAll;  // a new script has no line for it
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> lines = Lines(std::string(reinterpret_cast<const char*>(data), size));
  rm::FontScriptFields first;
  rm::ReadFontScript(lines, first);

  // Read once, the script is in the reader's own form: reading again changes nothing.
  const std::vector<std::string> normalised = lines;
  rm::FontScriptFields again;
  rm::ReadFontScript(lines, again);
  Check(lines == normalised);
  Check(Same(first, again));

  // Written as a new script and read back into the same job, every field comes back.
  rm::FontScriptFields written = first;
  written.subblockCount = 2;  // so the subblock is written
  std::vector<std::string> script = rm::WriteNewFontScript(written);
  Check(script.size() == (written.direction == rm::PagingDirection::DownAll ? 14u : 15u));
  if (Carried(written)) {
    rm::FontScriptFields back = written;
    back.fontName += "x";
    back.prefix += "x";
    back.list += "x";
    if (back.source == rm::FontSource::Unicode) back.subblock += 1;
    rm::ReadFontScript(script, back);
    Check(Same(written, back));
  }
  return 0;
}
