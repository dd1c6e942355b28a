// Speed of the font machinery a font job leans on: one character measured and drawn, as
// BigCharDisplay does for each of the 224 characters of an ANSI font (DejaVu Sans 12 pt, 1-bit
// and grey), and the 600 kerning pairs asked for, from the kern table and from OpenType
// positioning alone.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/FreeTypeFontEngine.h"

namespace {

const std::string kDejaVuSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// DejaVu Sans with its kern table's tag renamed: only its OpenType positioning is left.
std::string WithoutKernTable() {
  std::ifstream in(kDejaVuSans, std::ios::binary);
  std::stringstream whole;
  whole << in.rdbuf();
  std::string bytes = whole.str();
  const int tables = (static_cast<unsigned char>(bytes[4]) << 8) | static_cast<unsigned char>(bytes[5]);
  for (int i = 0; i < tables; ++i)
    if (bytes.compare(12 + 16 * i, 4, "kern") == 0) bytes.replace(12 + 16 * i, 4, "xern");
  const std::string path = (std::filesystem::temp_directory_path() / "rm-bench-nokern.ttf").string();
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

std::unique_ptr<rm::Font> Open(benchmark::State& state, bool antialiased, const std::string& file = kDejaVuSans) {
  static const rm::FreeTypeFontEngine engine;
  rm::FontRequest r;
  r.file = file;
  r.pointSize = 12;
  r.antialiased = antialiased;
  std::string error;
  auto font = engine.Open(r, error);
  if (!font) state.SkipWithError(error.c_str());
  return font;
}

void AnsiFontGlyphs(benchmark::State& state, bool antialiased) {
  const auto font = Open(state, antialiased);
  if (!font) return;
  for (auto _ : state)
    for (char32_t c = 0x20; c <= 0xFF; ++c) {
      benchmark::DoNotOptimize(font->Measure(c));
      benchmark::DoNotOptimize(font->Render(std::u32string(1, c)));
    }
  state.SetItemsProcessed(state.iterations() * 224);
}
BENCHMARK_CAPTURE(AnsiFontGlyphs, mono, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AnsiFontGlyphs, grey, true)->Unit(benchmark::kMillisecond);

void KerningFromKernTable(benchmark::State& state) {
  const auto font = Open(state, false);
  if (!font) return;
  for (auto _ : state) benchmark::DoNotOptimize(font->KerningPairs(600));
}
BENCHMARK(KerningFromKernTable)->Unit(benchmark::kMillisecond);

// Every pair of the printable Windows-1252 characters shaped: a face without a kern table.
void KerningFromPositioning(benchmark::State& state) {
  const std::string file = WithoutKernTable();
  const auto font = Open(state, false, file);
  if (!font) return;
  std::u32string candidates;
  for (char32_t c = 0x20; c < 0x7F; ++c) candidates += c;
  for (char32_t c = 0xA0; c <= 0xFF; ++c) candidates += c;
  std::size_t pairs = 0;
  for (auto _ : state) pairs = font->KerningPairs(1 << 20, candidates).size();
  state.counters["pairs"] = static_cast<double>(pairs);
  std::filesystem::remove(file);
}
BENCHMARK(KerningFromPositioning)->Unit(benchmark::kMillisecond);

}  // namespace
