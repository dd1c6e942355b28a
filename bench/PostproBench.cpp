// Speed of a text batch: ten blocks of rules over a megabyte of generated data text, as the
// post-processing of a large conversion meets it.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/BenchSupport.h"
#include "postpro/BatchRunner.h"

namespace {

// About 1 MiB of C data lines ("  0x3C, 0xA1, ...") with a header and a closing line.
std::string DataText() {
  std::string text = "const uint8_t Bitmap [65536] PROGMEM = {\n";
  std::uint32_t seed = 7;
  static constexpr char kHex[] = "0123456789ABCDEF";
  while (text.size() < (1u << 20)) {
    std::string line = " ";
    for (int i = 0; i < 16; ++i) {
      seed = seed * 1103515245u + 12345u;
      const unsigned v = (seed >> 16) & 0xFF;
      line += std::string(" 0x") + kHex[v >> 4] + kHex[v & 15] + ",";
    }
    text += line + "\n";
  }
  return text + "};\n";
}

const char* const kBatch =
    "if 'const'\nthen insert (1)'static '\n\n"
    "if 'PROGMEM'\nthen remove 'PROGMEM'\n\n"
    "if '0xFF'\nthen set flag\n\n"
    "if flag\nand '0x00'\nthen reset flag\n\n"
    "if 'uint8_t'\nthen overwrite (INDEX)'uint8_t'\n\n"
    "set hex prefix as '0x'\nif hex in line\nthen get hex (2)\n\n"
    "if '0xAB'\nor '0xCD'\nthen get integer (0)\n\n"
    "if not '0x'\nand not '}'\nthen insert (1)'// '\n\n"
    "if last line\nthen insert line\n\n"
    "if '};'\nthen insert (1)'  '\n";

void BM_TextBatchTenRulesOneMiB(benchmark::State& state) {
  const std::string input = DataText();
  rm::TextLines batch;
  batch.SetText(kBatch);
  rmbench::QuietUi ui;
  for (auto _ : state) {
    state.PauseTiming();
    rm::TextLines target, report;
    target.SetText(input);
    rm::BatchMemory memory;
    state.ResumeTiming();
    rm::BatchRunner runner(target, report, ui, rm::BatchFolders{"/nonexistent"}, memory);
    // Argument 1: with the report, whose lines a megabyte run makes by the ten thousand.
    runner.reportOff = state.range(0) == 0;
    const rm::BatchRunResult result = runner.Run(batch.Lines(), "bench.SPP");
    benchmark::DoNotOptimize(result.occurrences);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * input.size()));
}
BENCHMARK(BM_TextBatchTenRulesOneMiB)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
