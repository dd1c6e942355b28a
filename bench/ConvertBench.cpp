// Speed of a whole conversion of a 1024 x 768 canvas to C text, per colour mode.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>

#include "engine/Palette.h"
#include "bench/BenchSupport.h"
#include "shell/Application.h"

namespace {

long PeakRssKiB() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_maxrss;
}

// A picture made of the mode's own colours, so no reduction runs: the engine alone is measured.
// `sparse`: monochrome stripes on the top quarter only, the rest white, as compression likes it.
rm::Bitmap PictureOf(const rm::ConversionSession& s, int w, int h, bool sparse = false) {
  rm::Bitmap b(w, h);
  const std::vector<rm::Colour>& table = s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours;
  std::uint32_t seed = 12345;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1103515245u + 12345u;
      rm::Colour c;
      if (s.Monochrome)
        c = ((x / 7 + y / 5) % 3 == 0 && (!sparse || y < h / 4)) ? rm::kBlack : rm::kWhite;
      else if (s.Colours16M || table.empty())
        c = static_cast<rm::Colour>(seed >> 8);
      else
        c = table[(seed >> 8) % table.size()];
      b.SetPixel(x, y, c);
    }
  return b;
}

// With `compress` on a dense picture the compressed table does not pay and is made again plain.
void ConvertMode(benchmark::State& state, int mode, bool compress = false, bool sparse = false) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  app.mainForm.SetColourMode(mode, true);
  app.session.Compression = compress;
  app.pixelForm.SetCanvas(PictureOf(app.session, 1024, 768, sparse));
  const long before = PeakRssKiB();
  std::size_t chars = 0;
  for (auto _ : state) {
    app.globals.EditorUnsaved = false;
    if (!app.imageForm.EncodeButtonClick()) state.SkipWithError("conversion refused");
    chars = app.mainText.Text().size();
  }
  state.counters["text_MiB"] = static_cast<double>(chars) / (1024.0 * 1024.0);
  state.counters["peak_growth_MiB"] = static_cast<double>(PeakRssKiB() - before) / 1024.0;
}

// The whole job as a user runs it: the table written to the output folder with its parameter
// file beside it, on every conversion.
void ConvertModeToFiles(benchmark::State& state, int mode) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  app.mainForm.SetColourMode(mode, true);
  app.pixelForm.SetCanvas(PictureOf(app.session, 1024, 768, false));
  char folder[] = "/tmp/rmbenchXXXXXX";
  if (!mkdtemp(folder)) {
    state.SkipWithError("no temporary folder");
    return;
  }
  app.session.OutputFolder = folder;
  app.globals.AlwaysOverwrite = true;
  for (auto _ : state) {
    app.globals.EditorUnsaved = false;
    if (!app.imageForm.EncodeButtonClick()) state.SkipWithError("conversion refused");
  }
  std::filesystem::remove_all(folder);
}

}  // namespace

BENCHMARK_CAPTURE(ConvertModeToFiles, monochrome, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertModeToFiles, colours65536, 59)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertModeToFiles, colours16M, 62)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, monochrome, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, monochrome_compressed, 1, true, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, monochrome_compression_refused, 1, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, gray16, 26)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, colours256, 56)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, colours65536, 59)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, colours262k, 60)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ConvertMode, colours16M, 62)->Unit(benchmark::kMillisecond);
