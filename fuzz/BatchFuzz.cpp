// Feeds arbitrary bytes to the text batch interpreter: the bytes up to the first NUL are the
// batch, the rest the text it rewrites. Nothing may crash or run away, and a batch with no file
// folder writes nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "postpro/Postpro.h"

namespace {

class QuietUi : public rm::UiPort {
 public:
  std::string MessageDlg(const std::string&, const std::string&, rm::DlgType,
                         const std::vector<std::string>& buttons) override {
    return buttons.empty() ? "" : buttons.front();
  }
  void Status(const std::string&) override {}
  void Progress(long long, long long) override {}
  bool EscapePressed() override { return false; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 1024) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t split = bytes.find('\0');
  rm::TextLines batch, target, report;
  batch.SetText(bytes.substr(0, split));
  target.SetText(split == std::string::npos ? "" : bytes.substr(split + 1));
  for (const std::string& line : batch.Lines()) {
    rm::CompiledBlock block;
    rm::ParseBatchLine(line, rm::ParsePass::Condition, block);
    rm::ParseBatchLine(line, rm::ParsePass::Action, block);
    if (block.CondKeys.size() != block.SetupKeys.size() || block.ActionKeys.size() != block.ActionNumbers.size())
      std::abort();
  }
  QuietUi ui;
  rm::BatchMemory memory;
  rm::BatchRunner runner(target, report, ui, rm::BatchFolders{""}, memory);
  const rm::BatchRunResult result = runner.Run(batch.Lines(), "fuzz");
  if (!result.filesWritten.empty()) std::abort();
  return 0;
}
