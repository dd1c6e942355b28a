// Speed of the font job's data run (every character drawn, measured, walked and written as
// text): DejaVu Sans 12 pt, the 95 printable ASCII characters in monochrome Raw Data; and
// 24 pt, 0x20-0x7E and 0xA0-0x24F, in 16 gray levels antialiased.
#include <benchmark/benchmark.h>

#include "bench/BenchSupport.h"
#include "engine/ColourModes.h"
#include "fonts/FontDataMaker.h"
#include "platform/FreeTypeFontEngine.h"
#include "shell/Application.h"
#include "shell/ProjectFiles.h"

namespace {

void FontData(benchmark::State& state, int pointSize, const char* mode, std::vector<std::pair<int, int>> ranges) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  app.mainForm.SetColourMode(rm::FindColourModeByCliName(mode)->modeNumber, true);
  rm::FontJob& job = app.asciiChild.job;
  job.FontSize = pointSize;
  job.Antialiased = !app.session.Monochrome;
  rm::FontRequest r;
  r.file = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
  r.pointSize = pointSize;
  r.antialiased = job.Antialiased;
  const rm::FreeTypeFontEngine engine;
  std::string error;
  const auto font = engine.Open(r, error);
  if (!font) {
    state.SkipWithError(error.c_str());
    return;
  }
  rm::FontDataInput in;
  in.structure = rm::FontStructure::RawData;
  in.templateLines = rm::ProjectFiles::DefaultHeaderTemplate("_Raw.txt");
  in.name = "DejaVu_Sans";
  in.unicode = true;
  for (auto [first, last] : ranges)
    for (int c = first; c <= last; ++c) in.chars.push_back({c, static_cast<char32_t>(c)});
  rm::TextLines text;
  std::vector<std::uint8_t> bytes;
  std::size_t chars = 0;
  for (auto _ : state) {
    rm::FontDataMaker maker(*font, job, app.session, ui);
    if (!maker.Check(in) || !maker.Make(in, text, bytes)) state.SkipWithError("font data refused");
    chars = text.Text().size();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long long>(in.chars.size()));
  state.counters["text_KiB"] = static_cast<double>(chars) / 1024.0;
}
BENCHMARK_CAPTURE(FontData, ascii_12pt_mono_raw, 12, "mono", {{0x20, 0x7E}})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FontData, latin_24pt_gray16_raw, 24, "gray16", {{0x20, 0x7E}, {0xA0, 0x24F}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
