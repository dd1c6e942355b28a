#include "postpro/BatchParser.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace rm {

namespace {

struct Phrase {
  std::string_view text;    // searched in the upper-case keyword part
  std::string_view stored;  // what the runner dispatches on and the report shows
};

constexpr Phrase kConditions[] = {
    {"IF NOT FLAG", "if not flag"},
    {"IF FLAG", "if flag"},
    {"IF UNCONDITIONAL", "if unconditional"},
    {"IF HEX IN LINE", "if hex in line"},
    {"WHILE HEX IN LINE", "while hex in line"},
    {"IF LAST LINE", "if last line"},
    {"IF LINE NUMBER", "if line"},
    {"IF BIT IS SET", "bit is set"},
    {"IF BIT IS CLEARED", "bit is cleared"},
    {"IF NOT INPUT", "if not input"},
    {"IF INPUT", "if input"},
    {"AND NOT INPUT", "and not input"},
    {"AND INPUT", "and input"},
    {"OR NOT INPUT", "or not input"},
    {"OR INPUT", "or input"},
    {"WHILE NOT INPUT", "while not input"},
    {"WHILE INPUT", "while input"},
    {"IF NOT", "if not"},
    {"IF", "if"},
    {"WHILE NOT", "while not"},
    {"WHILE", "while"},
    {"AND NOT FLAG", "and not flag"},
    {"AND FLAG", "and flag"},
    {"AND NOT", "and not"},
    {"AND", "and"},
    {"OR NOT FLAG", "or not flag"},
    {"OR FLAG", "or flag"},
    {"OR NOT", "or not"},
    {"OR ", "or"},
};

constexpr Phrase kSetups[] = {
    {"SEARCH BACK FROM LINE END", "search from end"},
    {"SEARCH FROM LINE BEGIN", "search from begin"},
    {"CASE SENSITIVE ON", "case sensitive"},
    {"CASE SENSITIVE OFF", "case sensitive off"},
    {"SET HEX PREFIX AS", "set hex prefix"},
    {"SET HEX SUFFIX AS", "set hex suffix"},
    {"BEGIN OF LOOP", "begin of loop"},
    {"END OF LOOP", "end of loop"},
    {"LOAD GRAPHIC", "load graphic"},
    {"CONVERT GRAPHIC TO DATA", "convert graphic"},
    {"OVERWRITE DATA FILE", "overwrite data file"},
};

constexpr Phrase kActions[] = {
    {"THEN SET FLAG", "set flag"},
    {"THEN RESET FLAG", "reset flag"},
    {"THEN NEXT LINE", "next line"},
    {"THEN DELETE LINE", "Delete Line"},
    {"THEN DELETE UNTIL", "delete until"},
    {"THEN INSERT LINE", "Insert line"},
    {"THEN INSERT HEX", "insert hex"},
    {"THEN INSERT FLOAT", "insert float"},
    {"THEN INSERT STRING", "insert string"},
    {"THEN INSERT", "Insert"},
    {"THEN OVERWRITE HEX", "Overwrite hex"},
    {"THEN OVERWRITE", "Overwrite"},
    {"THEN REMOVE", "Remove"},
    {"THEN SEARCH", "search text"},
    {"THEN GET INTEGER", "get integer"},
    {"THEN GET FLOAT", "get float"},
    {"THEN GET HEX", "get hex"},
    {"THEN GET STRING", "get string"},
    {"SHIFT LEFT", "shift left"},
    {"SHIFT RIGHT", "shift right"},
    {"ROTATE BITS TO LEFT", "rotate bits to left"},
    {"ROTATE BITS TO RIGHT", "rotate bits to right"},
    {"SET BIT", "set bit"},
    {"CLEAR BIT", "clear bit"},
    {"TOGGLE BIT", "toggle bit"},
    {"THEN START COPY", "Start Copy"},
    {"THEN STOP COPY", "Stop Copy"},
    {"THEN SAVE COPY AS", "Save Copy"},
    {"THEN SAVE AS", "Save As"},
    {"THEN START DELETE", "Start Delete"},
    {"THEN STOP DELETE", "Stop Delete"},
    {"THEN LOAD AND INSERT", "Load File"},
    // Recognised and reported, reserved for an I/O device.
    {"TYPE OF BATCH", "batch type"},
    {"SCREEN MESSAGE", "screen message"},
    {"SET OUTPUT", "set output"},
    {"RESET OUTPUT", "reset output"},
    {"GET ANALOG INPUT", "get analog"},
    {"SET ANALOG OUTPUT", "set analog"},
    {"THEN GET INPUT", "get input"},
    {"THEN GET ANALOG INPUT", "then get analog"},
    {"THEN SET ANALOG OUTPUT", "then set analog"},
    {"THEN SET OUTPUT", "then set output"},
    {"THEN RESET OUTPUT", "then reset output"},
    {"[U] RUN", "run"},
    {"THEN RUN", "then run"},
    {"LOG ", "log"},
    {"PROCESS NAME", "process name"},
    {"SET TIMEOUT", "set timeout"},
    {"PAUSE ", "pause"},
    {"TICK ", "tick"},
};

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

std::string Trim(const std::string& s) {
  const auto b = s.find_first_not_of(' ');
  if (b == std::string::npos) return "";
  return s.substr(b, s.find_last_not_of(' ') - b + 1);
}

// The phrases of `table` found in `part`. A longer phrase wins over the shorter ones it holds:
// "IF NOT FLAG" is not also an "IF NOT" and an "IF"; "THEN INSERT HEX" is not a plain insert.
std::vector<const Phrase*> Find(const std::string& part, const Phrase* begin, const Phrase* end) {
  std::vector<const Phrase*> found;
  for (const Phrase* p = begin; p != end; ++p)
    if (part.find(p->text) != std::string::npos) found.push_back(p);
  std::vector<const Phrase*> kept;
  for (const Phrase* p : found) {
    const bool held = std::any_of(found.begin(), found.end(), [&](const Phrase* q) {
      return q != p && q->text.size() > p->text.size() && q->text.find(p->text) != std::string_view::npos;
    });
    if (!held) kept.push_back(p);
  }
  return kept;
}

std::vector<const Phrase*> FindActions(const std::string& line, const BatchLineScan& scan) {
  const std::string& part = scan.keywordPart;
  auto found = Find(part, std::begin(kActions), std::end(kActions));
  // "overwrite data file" is the graphic batch's setup, not an overwrite of the line; "analog"
  // holds "LOG ".
  std::erase_if(found, [&](const Phrase* p) {
    return (p->stored == "Overwrite" && part.find("OVERWRITE DATA FILE") != std::string::npos) ||
           (p->stored == "log" && part.find("ANALOG") != std::string::npos);
  });
  // The bit operations stand alone, before an argument: "AND (FF)", "NOT". The same words begin
  // the conditions "and 'x'", "if not 'x'".
  const std::string words = Trim(part.substr(part.rfind("THEN ", 0) == 0 ? 5 : 0));
  const auto quote = line.find('\''), paren = line.find('(');
  const bool numberFirst = paren != std::string::npos && (quote == std::string::npos || paren < quote);
  static constexpr Phrase kBitwise[] = {{"AND", "AND"}, {"OR", "OR"}, {"XOR", "XOR"}, {"NOT", "NOT"}};
  for (const Phrase& p : kBitwise)
    if (words == p.text && (numberFirst || p.text == "NOT")) found.push_back(&p);
  return found;
}

}  // namespace

BatchLineScan ScanBatchLine(const std::string& line) {
  BatchLineScan scan;
  std::string part = line;
  const auto quote = part.find('\''), paren = part.find('(');
  const auto cut = std::min(quote, paren);
  if (cut != std::string::npos) part.erase(cut, 100);
  if (const auto comment = part.find("//"); comment != std::string::npos) part.erase(comment, 100);
  scan.keywordPart = Upper(part);
  const std::string code = line.substr(0, line.find("//"));
  scan.unclosedQuote = std::count(code.begin(), code.end(), '\'') == 1;
  const auto close = line.find(')');
  scan.unclosedParen = paren != std::string::npos && (close == std::string::npos || close < paren) &&
                       (quote == std::string::npos || paren < quote);
  return scan;
}

bool ParseBatchLine(const std::string& line, ParsePass pass, CompiledBlock& block) {
  const BatchLineScan scan = ScanBatchLine(line);
  if (Trim(scan.keywordPart).empty()) return false;
  const auto actions = FindActions(line, scan);
  std::vector<const Phrase*> conditions, setups;
  if (actions.empty()) {
    conditions = Find(scan.keywordPart, std::begin(kConditions), std::end(kConditions));
    setups = Find(scan.keywordPart, std::begin(kSetups), std::end(kSetups));
  }
  if (actions.empty() && conditions.empty() && setups.empty()) return false;

  std::string number, text;
  const auto open = line.find('('), close = line.find(')');
  if (open != std::string::npos && close != std::string::npos && open < close)
    number = line.substr(open + 1, close - open - 1);
  const auto first = line.find('\''), last = line.rfind('\'');
  if (first != std::string::npos && last > first) text = line.substr(first + 1, last - first - 1);

  if (pass == ParsePass::Action) {
    for (const Phrase* p : actions) {
      block.ActionKeys.emplace_back(p->stored);
      const bool index = Upper(Trim(number)) == "INDEX" && p->stored == "Overwrite";
      block.ActionNumbers.push_back(index ? "INDEX" : number);
      block.ActionStrings.push_back(text);
    }
    return true;
  }
  for (const Phrase* p : setups) {
    block.SetupKeys.emplace_back(p->stored);
    block.SetupNumbers.push_back(number);
    block.SetupStrings.push_back(text);
    block.CondKeys.emplace_back("none");
    block.CondNumbers.emplace_back();
    block.CondStrings.emplace_back();
  }
  for (const Phrase* p : conditions) {
    block.CondKeys.emplace_back(p->stored);
    block.CondNumbers.push_back(number);
    block.CondStrings.push_back(text);
    block.SetupKeys.emplace_back("none");
    block.SetupNumbers.emplace_back();
    block.SetupStrings.emplace_back();
  }
  return true;
}

std::vector<std::string> NormalizeBatch(std::vector<std::string> lines) {
  auto has = [](const std::string& line, std::string_view word) {
    return ScanBatchLine(line).keywordPart.find(word) != std::string::npos;
  };
  auto condition = [&](const std::string& line) { return has(line, "IF") || has(line, "WHILE"); };
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i)
      if (condition(lines[i]) && condition(lines[i + 1])) {
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        changed = true;
        break;
      }
    if (!changed && !lines.empty() && has(lines.front(), "THEN")) {
      lines.erase(lines.begin());
      changed = true;
    }
  }
  return lines;
}

bool CompileBlock(const std::vector<std::string>& lines, std::size_t& blockStart, CompiledBlock& block,
                  std::vector<BatchLineProblem>& problems) {
  block.Clear();
  auto note = [&](std::size_t i) {
    const BatchLineScan scan = ScanBatchLine(lines[i]);
    if (scan.unclosedQuote) problems.push_back({i, "a text opened by ' is not closed"});
    if (scan.unclosedParen) problems.push_back({i, "a ( is not closed by )"});
  };
  auto known = [&](std::size_t i) {
    CompiledBlock scratch;
    return ParseBatchLine(lines[i], ParsePass::Condition, scratch);
  };
  for (int misses = 0;; ++misses) {
    if (blockStart >= lines.size() || misses == 2) return false;
    if (known(blockStart)) break;
    if (!Trim(ScanBatchLine(lines[blockStart]).keywordPart).empty())
      problems.push_back({blockStart, "not understood, the block ends here"});
    ++blockStart;
  }
  std::size_t i = blockStart;
  for (; i < lines.size(); ++i) {
    const std::size_t before = block.CondKeys.size();
    CompiledBlock trial = block;
    if (!ParseBatchLine(lines[i], ParsePass::Condition, trial) || trial.CondKeys.size() == before) break;
    note(i);
    block = std::move(trial);
  }
  for (; i < lines.size(); ++i) {
    const std::size_t before = block.ActionKeys.size();
    if (!ParseBatchLine(lines[i], ParsePass::Action, block) || block.ActionKeys.size() == before) break;
    note(i);
  }
  blockStart = i;
  return true;
}

}  // namespace rm
