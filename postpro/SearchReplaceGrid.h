#pragma once
#include <string>
#include <utility>
#include <vector>

#include "engine/TextLines.h"

namespace rm {

// One row of the grid: what to find, what to put instead, what to do.
struct SearchReplaceRow {
  std::string search, replace, function;
};

// The table-driven clean-up of a text: up to 50 rows run from the top; an empty row ends the
// table. The last line of the text is never touched.
class SearchReplaceGrid {
 public:
  static constexpr int kRows = 50;
  static constexpr const char* kHead = "Search String        Replace With string ";
  // The functions a row can have; an empty cell acts as "No Function" where a replace is asked.
  static const std::vector<std::string>& Functions();

  std::vector<SearchReplaceRow> rows;

  // The rows as the project keeps them: the section's keys "s" + row + column (rows from 1,
  // columns 1 to 3: search, replace, function).
  static SearchReplaceGrid FromKeys(const std::vector<std::pair<std::string, std::string>>& keys);
  // The same keys, for the project's section.
  std::vector<std::pair<std::string, std::string>> ToKeys() const;
  void Clear() { rows.clear(); }

  // Runs the rows over `text`; with `singleOccurrence` each row acts on its first hit only.
  // Returns the Occurences Counter.
  int Run(TextLines& text, bool singleOccurrence) const;
};

// "Occurences Counter = " and the number, as the grid's label shows it.
std::string OccurrencesLabel(int counter);

// Drops the repeated lines of `text`, keeping the first of each.
void RemoveDuplicateLines(TextLines& text);

}  // namespace rm
