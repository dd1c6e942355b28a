// Speed of the way back from a Data Array to a picture: the table of a 1024 x 768 canvas in 65536
// colours (1.5 MiB of data bytes) read from its 8 bit C text (about 9 MiB) or taken as the bytes of
// its binary, and painted back on the canvas.
#include <benchmark/benchmark.h>

#include "bench/BenchSupport.h"
#include "engine/ArrayImport.h"
#include "shell/Application.h"

namespace {

void ArrayImport65536(benchmark::State& state, bool text) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  app.mainForm.SetColourMode(59, true);
  const std::vector<rm::Colour>& table = app.session.PaletteTable;
  rm::Bitmap picture(1024, 768);
  std::uint32_t seed = 12345;
  for (int y = 0; y < 768; ++y)
    for (int x = 0; x < 1024; ++x) {
      seed = seed * 1103515245u + 12345u;
      picture.SetPixel(x, y, table[(seed >> 8) % table.size()]);
    }
  app.pixelForm.SetCanvas(picture);
  if (!text) app.mainForm.HexOutput1Click();
  if (!app.imageForm.EncodeButtonClick()) state.SkipWithError("conversion refused");
  const std::string source = app.mainText.Text();
  const std::vector<std::uint8_t> binary = app.hex.Bytes();
  rm::Bitmap canvas(1024, 768);
  for (auto _ : state) {
    std::vector<std::uint8_t> bytes = binary;
    if (text) {
      const rm::ArrayText read = rm::ReadArrayText(source, {});
      std::string error;
      if (read.tables.empty() || !rm::WordsToBytes(read.tables[0], 8, true, false, bytes, error))
        state.SkipWithError("the text was not read");
    }
    const rm::ArrayImportResult r = rm::ImportArray(app.session, bytes, canvas);
    if (!r.error.empty()) state.SkipWithError(r.error.c_str());
  }
  if (!(canvas == picture)) state.SkipWithError("the picture did not come back");
  state.counters["text_MiB"] = static_cast<double>(source.size()) / (1 << 20);
}

}  // namespace

BENCHMARK_CAPTURE(ArrayImport65536, text8, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ArrayImport65536, binary, false)->Unit(benchmark::kMillisecond);
