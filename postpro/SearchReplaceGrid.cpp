#include "postpro/SearchReplaceGrid.h"

#include <set>

namespace rm {

namespace {

std::string ReplaceAll(std::string line, const std::string& s, const std::string& r) {
  if (s.empty()) return line;
  for (std::size_t at = 0; (at = line.find(s, at)) != std::string::npos; at += r.size()) line.replace(at, s.size(), r);
  return line;
}

bool Contains(const std::string& line, const std::string& s) { return !s.empty() && line.find(s) != std::string::npos; }

}  // namespace

const std::vector<std::string>& SearchReplaceGrid::Functions() {
  static const std::vector<std::string> functions = {"No Function",          "Single Occurence Line",
                                                     "Single Occurence File", "Delete Search String",
                                                     "Delete Line",           "Delete Void Lines",
                                                     "Remove Duplicates"};
  return functions;
}

SearchReplaceGrid SearchReplaceGrid::FromKeys(const std::vector<std::pair<std::string, std::string>>& keys) {
  SearchReplaceGrid grid;
  grid.rows.resize(kRows);
  bool any = false;
  for (const auto& [key, value] : keys) {
    // "s" + row + column; the row has one or two digits, the column one.
    if (key.size() < 3 || key.size() > 4 || (key[0] != 's' && key[0] != 'S')) continue;
    const std::string rowText = key.substr(1, key.size() - 2);
    const char column = key.back();
    if (rowText.find_first_not_of("0123456789") != std::string::npos) continue;
    const int row = std::stoi(rowText);
    if (row < 1 || row > kRows || column < '1' || column > '3') continue;
    SearchReplaceRow& r = grid.rows[static_cast<std::size_t>(row - 1)];
    (column == '1' ? r.search : column == '2' ? r.replace : r.function) = value;
    any = true;
  }
  while (!grid.rows.empty() && grid.rows.back().search.empty() && grid.rows.back().replace.empty() &&
         grid.rows.back().function.empty())
    grid.rows.pop_back();
  if (!any) grid.rows.clear();
  return grid;
}

std::vector<std::pair<std::string, std::string>> SearchReplaceGrid::ToKeys() const {
  std::vector<std::pair<std::string, std::string>> keys;
  for (std::size_t i = 0; i < rows.size() && i < static_cast<std::size_t>(kRows); ++i) {
    const std::string stem = "s" + std::to_string(i + 1);
    keys.emplace_back(stem + "1", rows[i].search);
    keys.emplace_back(stem + "2", rows[i].replace);
    keys.emplace_back(stem + "3", rows[i].function);
  }
  return keys;
}

int SearchReplaceGrid::Run(TextLines& text, bool singleOccurrence) const {
  int counter = 0;
  for (std::size_t r = 0; r < rows.size() && r < static_cast<std::size_t>(kRows); ++r) {
    const std::string& s = rows[r].search;
    const std::string& f = rows[r].function;
    if (s.empty() && f.empty()) break;  // an empty row ends the table
    const std::string& rep = rows[r].replace;
    bool oneDone = false;
    // The last line is never touched.
    for (long long i = 0; i < static_cast<long long>(text.Count()) - 1; ++i) {
      const std::string line = text[static_cast<std::size_t>(i)];
      std::string& stored = text[static_cast<std::size_t>(i)];
      if (!rep.empty() && Contains(line, s)) {
        if (f.empty()) {
          stored = ReplaceAll(line, s, rep);
          ++counter;
        } else if (f == "Single Occurence Line" || f == "Single Occurence File") {
          stored.replace(line.find(s), s.size(), rep);
          ++counter;
          oneDone = oneDone || f == "Single Occurence File";
        }
      }
      if (f == "Delete Line" && Contains(line, s)) {
        text.Delete(static_cast<std::size_t>(i--));
        ++counter;
      } else if (f == "Delete Search String" && Contains(line, s)) {
        text[static_cast<std::size_t>(i)] = ReplaceAll(text[static_cast<std::size_t>(i)], s, "");
        ++counter;
      } else if (f == "Delete Void Lines" && line.find_first_not_of(' ') == std::string::npos) {
        text.Delete(static_cast<std::size_t>(i--));
        ++counter;
      } else if (f == "Remove Duplicates") {
        RemoveDuplicateLines(text);
        ++counter;
      }
      if (Contains(line, s) && (singleOccurrence || oneDone)) break;
    }
  }
  return counter;
}

std::string OccurrencesLabel(int counter) { return "Occurences Counter = " + std::to_string(counter); }

void RemoveDuplicateLines(TextLines& text) {
  std::set<std::string> seen;
  for (std::size_t i = 0; i < text.Count();) {
    if (seen.insert(text[i]).second)
      ++i;
    else
      text.Delete(i);
  }
}

}  // namespace rm
