#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace rm {

// One block of a batch compiled into parallel lists: conditions, actions and the setup commands
// that run once before the block's pass. A condition entry has "none" in the setup lists at its
// place and the other way round, so the two keep step.
struct CompiledBlock {
  std::vector<std::string> CondKeys, CondStrings, CondNumbers;
  std::vector<std::string> ActionKeys, ActionStrings, ActionNumbers;
  std::vector<std::string> SetupKeys, SetupStrings, SetupNumbers;

  void Clear() { *this = CompiledBlock{}; }
  std::size_t Entries() const { return CondKeys.size() + ActionKeys.size(); }
};

enum class ParsePass { Condition, Action };

// What a line of a batch is, as the parser sees it, without running it.
struct BatchLineScan {
  std::string keywordPart;  // the line in upper case, its arguments and comment cut away
  bool unclosedQuote = false;
  bool unclosedParen = false;
};
BatchLineScan ScanBatchLine(const std::string& line);

// Reads one batch line into `block`. The condition pass takes the condition and setup phrases,
// the action pass the actions; a line that holds an action phrase is an action line, so the words
// inside it ("shIFt", "AND (FF)") never count as conditions. True when the line holds a phrase of
// any table, whichever the pass: false ends a block as an empty line does.
bool ParseBatchLine(const std::string& line, ParsePass pass, CompiledBlock& block);

// Two adjacent conditions cannot stand (the chain is written with "and" and "or"): the second
// is dropped, as is a first line that is an action. Returns the lines that survive.
std::vector<std::string> NormalizeBatch(std::vector<std::string> lines);

// Something the compiler of a block noticed in a line it could not take as it stands.
struct BatchLineProblem {
  std::size_t line;  // from 0
  std::string text;  // the report's words
};

// Compiles the block starting at `blockStart` (one empty or unknown line before it is skipped;
// two end the batch) and moves `blockStart` past it. False when no block is left.
bool CompileBlock(const std::vector<std::string>& lines, std::size_t& blockStart, CompiledBlock& block,
                  std::vector<BatchLineProblem>& problems);

}  // namespace rm
