#pragma once
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "engine/TextLines.h"
#include "engine/UiPort.h"
#include "postpro/BatchFolders.h"
#include "postpro/BatchParser.h"
#include "postpro/GraphicBatch.h"
#include "postpro/HexValue.h"

namespace rm {

// What a batch keeps from one run to the next.
struct BatchMemory {
  bool userFlag = false;
  std::string hexPrefix, hexSuffix;
};

// The chosen batch file; `name` may be the word of no batch selected.
struct BatchSource {
  std::string folder;  // the Batch role
  std::string name;
};
inline constexpr const char* kNoBatchSelected = "< No batch file selected >";

struct BatchRunResult {
  bool ran = false;  // the batch file existed and was run
  bool aborted = false;
  int occurrences = 0;
  std::vector<std::string> filesWritten;
  std::vector<std::string> refused;  // files the batch named outside its folder
  std::vector<std::string> graphicFailures;  // graphic commands that failed, with their words
};

// The interpreter of text batches: rewrites `target` (the main editor's lines) in place, block by
// block, and writes its account into `report`.
class BatchRunner {
 public:
  BatchRunner(TextLines& target, TextLines& report, UiPort& ui, BatchFolders folders, BatchMemory& memory)
      : target_(target), report_(report), ui_(ui), folders_(std::move(folders)), memory_(memory) {}

  bool reportOff = false;  // BatchReportOff: only the failures of the run are reported
  std::time_t now = 0;     // for the report's head
  // The canvas the graphic commands drive; none in a text batch.
  GraphicBatchPort* graphic = nullptr;

  // Chooses and loads the batch file, then runs it; messages for a missing batch.
  BatchRunResult RunBatch(const BatchSource& source);
  // Runs the lines of a batch; `title` names it in the report's head.
  BatchRunResult Run(const std::vector<std::string>& batchLines, const std::string& title);

 private:
  void StartRun(const std::string& title);
  void RunBlock(const CompiledBlock& block);
  void RunSetups(const CompiledBlock& block);
  // Runs a command of the canvas; true when it failed.
  bool RunGraphicSetup(const std::string& key, const std::string& text, std::string& line);
  void RunConditions(const CompiledBlock& block);
  void RunActions(const CompiledBlock& block);
  bool RunCondition(const std::string& key, const std::string& number, const std::string& text, std::string& words);
  void RunAction(const std::string& key, const std::string& number, const std::string& text, std::string& words);
  // Line edits (BatchActions.cpp).
  bool LineAt() const { return cursor_ >= 0 && cursor_ < static_cast<long long>(target_.Count()); }
  std::string& Line() { return target_[static_cast<std::size_t>(cursor_)]; }
  void InsertLine(long long at, std::string text);
  void InsertAt(long long position, const std::string& text);
  void OverwriteAt(long long position, const std::string& text);
  int Find(const std::string& line, const std::string& x, bool forward, bool fold) const;
  std::string ReadHex(int ordinal, std::string& words);
  std::string SaveLines(const std::vector<std::string>& lines, const std::string& name);
  std::string LoadAndInsert(const std::string& name);
  void Report(std::string line) { report_.Add(std::move(line)); }

  TextLines& target_;
  TextLines& report_;
  UiPort& ui_;
  BatchFolders folders_;
  BatchMemory& memory_;
  BatchRunResult result_;

  // The state of one run.
  long long cursor_ = -1;
  std::string lineText_;
  bool condResult_ = false, loopAgain_ = false;
  bool caseSensitive_ = false, searchForward_ = true;
  HexValueState hex_;
  long long intValue_ = 9999;
  long double floatValue_ = 0;
  std::string stringValue_;
  int foundPos_ = 0, foundLen_ = 0;
  std::string condText_;  // the searched text of the block's conditions, for the overwrite's report
  long long deletedLines_ = 0;
  std::vector<std::string> copyBuffer_;
  bool copying_ = false, collectingLines_ = false;
  long long copyStartLine_ = 0;
  bool deleteArmed_ = false;
  long long deleteStartLine_ = 0;
  int hexLoopIndex_ = 0;
  bool passEnded_ = false;  // a file was loaded into the text: the block's pass is over
  bool abort_ = false;
  std::vector<std::string> extraReport_;  // lines a graphic command adds below its own
};

}  // namespace rm
