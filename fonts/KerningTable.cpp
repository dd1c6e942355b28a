#include "fonts/KerningTable.h"

#include <algorithm>
#include <cctype>

#include "fonts/CharSelection.h"

namespace rm {

namespace {

std::string LineComment(const ConversionSettings& s) {
  switch (s.Syntax.Comment) {
    case CommentForm::C:
    case CommentForm::Slashes: return "//";
    case CommentForm::Quote: return " '";
    case CommentForm::Semicolon: return " ;";
    case CommentForm::Custom: return s.Syntax.CustomComment;
  }
  return "//";
}

}  // namespace

std::vector<std::string> KerningTable(const std::vector<KerningPair>& pairs, const std::string& tableName,
                                      const std::string& fontDescription, const KerningSyntax& k,
                                      const ConversionSettings& s, const std::string& version,
                                      const std::string& dateText) {
  std::vector<std::string> out;
  const bool c = s.Syntax.Comment == CommentForm::C;
  const std::string comment = LineComment(s);
  // In C each line of the head is a comment of its own: one left open would hide the table.
  const auto head = [&](const std::string& text) { out.push_back(c ? "/* " + text + " */" : comment + " " + text); };
  if (!s.Syntax.NoComments) {
    head("Kerning Pairs Table exported with rastermill " + version);
    head(dateText);
  }
  head(std::string(c ? "Font name, size and style  = " : "Font name, size and style = ") + fontDescription);
  out.push_back("");
  // A table sized in the suffix is sized by the pairs it holds: more than the size would not
  // compile, fewer would leave zero pairs behind the real ones.
  std::string suffix = k.suffix;
  if (suffix.size() > 2 && suffix[0] == '[' && std::isdigit(static_cast<unsigned char>(suffix[1]))) {
    const std::size_t close = suffix.find(']');
    if (close != std::string::npos) suffix.replace(1, close - 1, std::to_string(std::max<std::size_t>(pairs.size(), 1)));
  }
  out.push_back(k.prefix + " " + tableName + " " + suffix);
  out.push_back("");
  out.push_back(k.tableBegin);
  const std::string sep = s.Syntax.SeparatorOn       ? ","
                          : s.Syntax.SeparatorCustom ? s.Syntax.SeparatorString
                                                     : " ";
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const KerningPair& p = pairs[i];
    std::string end = k.lineEnd;
    if (i + 1 == pairs.size() && s.Syntax.DeleteVeryLastOne) {
      const std::size_t comma = end.rfind(',');
      if (comma != std::string::npos) end.erase(comma, 1);
    }
    const std::string data =
        k.lineBegin + std::to_string(p.first) + sep + std::to_string(p.second) + sep + std::to_string(p.amount) + end;
    std::string line = data + std::string(9, ' ');
    if (!s.Syntax.NoDataComments) {
      std::string text = comment + "  " + Utf8(p.first) + " " + Utf8(p.second);
      // A backslash at the end of a line comment would carry the next line into it.
      if (text.back() == '\\') text += " (backslash)";
      // At position 20, but never inside the data of a long line.
      const std::size_t at = std::max<std::size_t>(20, data.size() + 1);
      if (line.size() < at) line.append(at - line.size(), ' ');
      line.insert(at, text);
      // What stood behind position 20 were the trailing blanks: they go.
      while (!line.empty() && line.back() == ' ') line.pop_back();
    }
    out.push_back(line);
  }
  out.push_back(k.tableEnd);
  return out;
}

}  // namespace rm
