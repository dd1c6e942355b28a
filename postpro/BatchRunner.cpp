#include "postpro/BatchRunner.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "engine/Clock.h"

namespace rm {

namespace {

// A "while" that never lets go of its line (its actions keep the match) would run for ever; the
// repeats on one line stop here, with a word in the report.
constexpr int kMaxRepeatsOnLine = 1000;

bool WholeNumber(const std::string& s, long long& value) {
  if (s.empty() || s.size() > 18) return false;
  std::size_t i = s[0] == '-' ? 1 : 0;
  if (i == s.size()) return false;
  for (std::size_t k = i; k < s.size(); ++k)
    if (!std::isdigit(static_cast<unsigned char>(s[k]))) return false;
  value = std::stoll(s);
  return true;
}

}  // namespace

BatchRunResult BatchRunner::RunBatch(const BatchSource& source) {
  if (source.name.empty() || source.name == kNoBatchSelected) {
    ui_.MessageDlg(" No Processing Batch has been selected !", "No Processing batch Active!", DlgType::Warning,
                   {"OK"});
    ui_.Beep();
    return {};
  }
  const std::string path = source.folder.empty() ? source.name : source.folder + "/" + source.name;
  TextLines batch;
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec) || !batch.LoadFromFile(path)) {
    ui_.MessageDlg(" No Processing Batch File has been activated\ror Batch File not longer exists !\r" + source.name,
                   "SPP file not found !", DlgType::Warning, {"OK"});
    return {};
  }
  return Run(batch.Lines(), path);
}

void BatchRunner::StartRun(const std::string& title) {
  report_.Clear();
  if (!reportOff) {
    Report("/* " + FormatDateTime(now) + " */");
    Report("/* " + title + " Batch Report      */");
    Report("");
  }
  result_ = {};
  searchForward_ = true;
  caseSensitive_ = false;
  hex_ = {};
  hex_.prefix = memory_.hexPrefix;
  hex_.suffix = memory_.hexSuffix;
  intValue_ = 9999;
  floatValue_ = 0;
  stringValue_.clear();
  foundPos_ = foundLen_ = 0;
  copyBuffer_.clear();
  copying_ = collectingLines_ = deleteArmed_ = false;
  copyStartLine_ = deleteStartLine_ = 0;
  hexLoopIndex_ = 0;
  abort_ = false;
  ui_.Status("Run Postprocessor Batch");
}

BatchRunResult BatchRunner::Run(const std::vector<std::string>& batchLines, const std::string& title) {
  StartRun(title);
  const std::vector<std::string> lines = NormalizeBatch(batchLines);
  for (const std::string& line : lines) ui_.Status(line);
  std::size_t blockStart = 0;
  CompiledBlock block;
  std::vector<BatchLineProblem> problems;
  while (!abort_ && CompileBlock(lines, blockStart, block, problems)) {
    for (const BatchLineProblem& p : problems)
      Report("Batch line " + std::to_string(p.line + 1) + " : " + p.text + " : " + lines[p.line]);
    problems.clear();
    RunBlock(block);
  }
  for (const BatchLineProblem& p : problems)
    Report("Batch line " + std::to_string(p.line + 1) + " : " + p.text + " : " + lines[p.line]);
  memory_.hexPrefix = hex_.prefix;
  memory_.hexSuffix = hex_.suffix;
  result_.ran = true;
  if (abort_) {
    Report("Processing Aborted by escape !");
    result_.aborted = true;
    return result_;
  }
  ui_.Status("Postprocessor Batch End Reached");
  return result_;
}

void BatchRunner::RunBlock(const CompiledBlock& block) {
  cursor_ = -1;
  deletedLines_ = 0;
  passEnded_ = false;
  bool setupsDone = false;
  int repeats = 0;
  ui_.Progress(0, static_cast<long long>(target_.Count()));
  // A block that drives the canvas runs its setups before the pass, also over an empty text (a
  // graphic batch starts with none): its conversion makes the text the rest of the block reads.
  if (graphic && std::any_of(block.SetupKeys.begin(), block.SetupKeys.end(), IsGraphicCommand)) {
    RunSetups(block);
    setupsDone = true;
    const bool conditions = std::any_of(block.CondKeys.begin(), block.CondKeys.end(),
                                        [](const std::string& key) { return key != "none"; });
    // Made of setups only, the block ends when they are spent.
    if (!conditions && block.ActionKeys.empty()) return;
  }
  for (bool again = false; !passEnded_;) {
    if (!again) ++cursor_;
    if (cursor_ < 0 || cursor_ >= static_cast<long long>(target_.Count())) break;
    ui_.Progress(cursor_ + deletedLines_, static_cast<long long>(target_.Count()));
    hex_.value.clear();
    hex_.digits = 0;
    intValue_ = 9999;
    if (ui_.EscapePressed()) {
      abort_ = true;
      return;
    }
    lineText_ = Line();
    if (collectingLines_) copyBuffer_.push_back(lineText_);
    if (!setupsDone) {
      RunSetups(block);
      setupsDone = true;
    }
    RunConditions(block);
    if (condResult_) RunActions(block);
    again = loopAgain_ && ++repeats < kMaxRepeatsOnLine;
    if (loopAgain_ && !again) Report(" Loop_Limit " + std::to_string(kMaxRepeatsOnLine));
    if (!loopAgain_) repeats = 0;
  }
}

void BatchRunner::RunSetups(const CompiledBlock& block) {
  for (std::size_t i = 0; i < block.SetupKeys.size(); ++i) {
    const std::string& key = block.SetupKeys[i];
    if (key == "none") continue;
    const std::string& text = block.SetupStrings[i];
    std::string line = "Batch task : " + key + " " + block.SetupNumbers[i] + " " + text;
    bool failed = false;
    if (key == "search from end") {
      searchForward_ = false;
    } else if (key == "search from begin") {
      searchForward_ = true;
    } else if (key == "case sensitive") {
      caseSensitive_ = true;
    } else if (key == "case sensitive off") {
      caseSensitive_ = false;
    } else if (key == "set hex prefix") {
      hex_.prefix = text;
      line += "  >> " + text;
    } else if (key == "set hex suffix") {
      hex_.suffix = text;
      line += "  >> " + text;
    } else if (IsGraphicCommand(key)) {
      failed = RunGraphicSetup(key, text, line);
    }
    // A failure of the canvas stands in the report also when the report is off.
    if (!reportOff || failed) Report(line);
    for (std::string& l : extraReport_) Report(std::move(l));
    extraReport_.clear();
  }
}

bool BatchRunner::RunGraphicSetup(const std::string& key, const std::string& text, std::string& line) {
  if (!graphic) {
    line += "  >> a graphic batch command: not run on a text";
    return false;
  }
  std::vector<std::string> more;
  std::string words;
  if (key == "load graphic") {
    more = graphic->LoadGraphic(text);
    if (!more.empty()) {
      words = more.front();
      more.erase(more.begin());
    }
  } else if (key == "convert graphic") {
    words = graphic->ConvertGraphic();
    ui_.Progress(0, static_cast<long long>(target_.Count()));
    ++result_.occurrences;
  } else {
    words = graphic->OverwriteDataFile();
  }
  line += words;
  if (!reportOff)
    for (std::string& l : more) extraReport_.push_back(std::move(l));
  const bool failed = words.find("ERROR") != std::string::npos || words.find("Error") != std::string::npos;
  if (failed) result_.graphicFailures.push_back(key + " " + text + words);
  return failed;
}

void BatchRunner::RunConditions(const CompiledBlock& block) {
  condResult_ = false;
  loopAgain_ = false;
  std::size_t first = 0;
  if (block.CondKeys.size() > 1 && block.CondKeys[0] == block.CondKeys[1] &&
      block.CondStrings[0] == block.CondStrings[1] && block.CondNumbers[0] == block.CondNumbers[1])
    first = 1;  // the same condition twice in a row counts once
  condText_.clear();
  for (const std::string& text : block.CondStrings)
    if (condText_.empty()) condText_ = text;
  bool loadsFile = false;
  for (const std::string& key : block.ActionKeys) loadsFile = loadsFile || key == "Load File";
  for (std::size_t i = first; i < block.CondKeys.size(); ++i) {
    const std::string& key = block.CondKeys[i];
    if (key == "none") continue;
    std::string words;
    const bool result = RunCondition(key, block.CondNumbers[i], block.CondStrings[i], words);
    if (!reportOff) {
      std::string line = std::to_string(cursor_) + ": " + key + block.CondNumbers[i] + " '" + block.CondStrings[i] + "'";
      line += words + (result ? " = True " : " = False ");
      // The word of a missing file stands where the file was not loaded.
      if (!result && loadsFile) line += " File_Not_Found";
      Report(line);
    }
  }
}

int BatchRunner::Find(const std::string& line, const std::string& x, bool forward, bool fold) const {
  if (x.empty()) return 0;
  std::string l = line, s = x;
  if (fold) {
    for (char& c : l) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  std::size_t at = l.find(s);
  if (at == std::string::npos) return 0;
  if (!forward)
    for (std::size_t next; (next = l.find(s, at + s.size())) != std::string::npos;) at = next;
  return static_cast<int>(at) + 1;
}

bool BatchRunner::RunCondition(const std::string& key, const std::string& number, const std::string& text,
                               std::string& words) {
  const bool fold = !caseSensitive_;
  auto search = [&] {
    const int at = Find(lineText_, text, searchForward_, fold);
    if (at > 0) {
      foundPos_ = at;
      foundLen_ = static_cast<int>(text.size());
    }
    return at > 0;
  };
  auto absent = [&] { return Find(lineText_, text, true, true) == 0; };
  long long n = 0;
  if (!WholeNumber(number, n)) n = 0;
  if (key == "if") {
    if (search()) condResult_ = true;
  } else if (key == "and") {
    if (condResult_ && !search()) condResult_ = false;
  } else if (key == "or") {
    if (!condResult_ && search()) condResult_ = true;
  } else if (key == "if not") {
    if (absent()) condResult_ = true;
  } else if (key == "and not") {
    condResult_ = Find(lineText_, text, true, false) == 0;
  } else if (key == "or not") {
    if (!condResult_ && absent()) condResult_ = true;
  } else if (key == "while") {
    if (search()) condResult_ = loopAgain_ = true;
  } else if (key == "while not") {
    if (absent()) condResult_ = loopAgain_ = true;
  } else if (key == "if flag") {
    if (memory_.userFlag) condResult_ = true;
  } else if (key == "if not flag") {
    if (!memory_.userFlag) condResult_ = true;
  } else if (key == "and flag") {
    if (condResult_ && !memory_.userFlag) condResult_ = false;
  } else if (key == "and not flag") {
    condResult_ = !memory_.userFlag;
  } else if (key == "or flag") {
    if (!condResult_) condResult_ = memory_.userFlag;
  } else if (key == "or not flag") {
    if (!condResult_) condResult_ = !memory_.userFlag;
  } else if (key == "if line") {
    std::string word = number;
    for (char& c : word) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (word == "INDEX") n = 1;
    if (n == cursor_ + 1) condResult_ = true;
  } else if (key == "if last line") {
    if (cursor_ == static_cast<long long>(target_.Count()) - 1) condResult_ = true;
  } else if (key == "if unconditional") {
    condResult_ = true;
  } else if (key == "if hex in line" || key == "while hex in line") {
    condResult_ = false;
    if (hex_.prefix.empty() && hex_.suffix.empty()) {
      words += "  >> Error : No hex Prefix AND No hex Suffix defined";
      return false;
    }
    condResult_ = HexInLine(lineText_, hex_.prefix, hex_.suffix);
    words += condResult_ ? "  >> True" : "  >> False";
    if (key == "while hex in line") {
      if (condResult_) {
        const std::string value = ReadHex(hexLoopIndex_++, words);
        condResult_ = !value.empty();
        const HexRead next = ReadHexValue(lineText_, hex_.prefix, hex_.suffix, hexLoopIndex_);
        loopAgain_ = condResult_ && (!next.value.empty() || next.tooLong);
      }
      if (!loopAgain_) hexLoopIndex_ = 0;
    }
  } else if (key == "bit is set" || key == "bit is cleared") {
    bool result = false;
    words += TestBit(hex_, n, key == "bit is set", result);
    condResult_ = result;
  }
  // The input conditions are reserved for an I/O device and change nothing.
  return condResult_;
}

void BatchRunner::RunActions(const CompiledBlock& block) {
  for (std::size_t i = 0; i < block.ActionKeys.size() && condResult_ && !passEnded_; ++i) {
    const std::string& key = block.ActionKeys[i];
    std::string words;
    RunAction(key, block.ActionNumbers[i], block.ActionStrings[i], words);
    if (!reportOff) Report(std::string(16, ' ') + key + block.ActionNumbers[i] + block.ActionStrings[i] + words);
    if (LineAt()) lineText_ = Line();
  }
}

}  // namespace rm
