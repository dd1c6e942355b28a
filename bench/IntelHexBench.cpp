// Speed of a whole Intel HEX conversion of a 1024 x 768 canvas in 65536 colours: 1.5 MiB of data
// bytes cut into records, with the default 16 bytes per record and 4 digit addresses (so segment
// records too), and with 32 bytes per record and 8 digits.
#include <benchmark/benchmark.h>

#include "bench/BenchSupport.h"
#include "shell/Application.h"

namespace {

// Colours of the mode's own table, so no reduction runs: the walk and the records are measured.
rm::Bitmap PictureOf(const rm::ConversionSession& s, int w, int h) {
  rm::Bitmap b(w, h);
  const std::vector<rm::Colour>& table = s.PaletteTable;
  std::uint32_t seed = 12345;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1103515245u + 12345u;
      b.SetPixel(x, y, table[(seed >> 8) % table.size()]);
    }
  return b;
}

void IntelHex65536(benchmark::State& state, int perLine, int digits) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  app.mainForm.SetColourMode(59, true);
  app.pixelForm.SetCanvas(PictureOf(app.session, 1024, 768));
  app.mainForm.IntelHexOutputClick();
  app.session.HexBytesPerLine = perLine;
  app.session.HexAddressDigits = digits;
  std::size_t records = 0;
  for (auto _ : state) {
    app.globals.EditorUnsaved = false;
    if (!app.imageForm.EncodeButtonClick()) state.SkipWithError("conversion refused");
    records = app.mainText.Count();
  }
  state.counters["records"] = static_cast<double>(records);
}

}  // namespace

BENCHMARK_CAPTURE(IntelHex65536, per16_addr4, 16, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(IntelHex65536, per32_addr8, 32, 8)->Unit(benchmark::kMillisecond);
