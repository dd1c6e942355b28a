// Speed of the reductions an import runs: a photo onto the largest palette, and the dithers.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "bench/BenchSupport.h"
#include "engine/NearestColour.h"
#include "engine/Reduction.h"
#include "shell/Application.h"

namespace {

// Smooth gradients with a little noise, as a camera gives them: hundreds of thousands of
// distinct colours, neighbours alike but rarely equal.
rm::Bitmap PhotoLike(int w, int h) {
  rm::Bitmap b(w, h);
  std::uint32_t seed = 2024;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1103515245u + 12345u;
      const int noise = static_cast<int>((seed >> 16) % 17) - 8;
      const double wave = 40.0 * std::sin(x / 37.0) * std::cos(y / 23.0);
      const int r = std::clamp(x * 255 / w + noise, 0, 255);
      const int g = std::clamp(static_cast<int>(y * 255 / h + wave) + noise / 2, 0, 255);
      const int bl = std::clamp(static_cast<int>(128 + wave * 2) - noise, 0, 255);
      b.SetPixel(x, y, rm::MakeColour(r, g, bl));
    }
  return b;
}

// A program in a palette mode (60: 262144 colours), whose default palette the reductions below
// map onto.
struct Program262144 {
  rmbench::QuietUi ui;
  rm::FixedClock clock{0};
  rm::Application app{ui, clock};
  explicit Program262144(int mode = 60) { app.mainForm.SetColourMode(mode, true); }
};

// The first import of a photo in the 262144 colours mode: the answers are not cached yet.
// `tables` false keeps the quarter search, to show what the lattice tables save.
void ReductionPhotoTo262144(benchmark::State& state, bool tables) {
  Program262144 program;
  rm::Application& app = program.app;
  rmbench::QuietUi& ui = program.ui;
  const rm::Bitmap photo = PhotoLike(1024, 768);
  for (auto _ : state) {
    rm::Bitmap work = photo;
    rm::NearestColour nearest;
    nearest.SetPalette(app.session.PaletteTable, tables);
    if (!rm::ConvertToNearestColor(work, nearest, ui)) state.SkipWithError("no palette");
    benchmark::DoNotOptimize(work.Row(0));
  }
  state.counters["distinct_colours"] = rm::CountColors(photo);
  state.counters["palette"] = static_cast<double>(app.session.PaletteTable.size());
}

// Every one of the 2^24 colours against the quarter search, for the default palette of a mode:
// the lattice tables must give the search's answer everywhere. Too long for a unit test, so it
// runs here, once; a difference stops the bench with an error.
void LatticeTablesAgreeWithTheSearch(benchmark::State& state, int mode) {
  Program262144 program(mode);
  rm::NearestColour tables, search;
  tables.SetPalette(program.app.session.PaletteTable);
  search.SetPalette(program.app.session.PaletteTable, false);
  if (!tables.IsLattice()) state.SkipWithError("the default palette is not taken for a lattice");
  long long differences = 0;
  for (auto _ : state)
    for (rm::Colour c = 1; c <= 0xFFFFFF; ++c)
      if (tables.NearestColor(c) != search.Search(c)) ++differences;
  state.counters["differences"] = static_cast<double>(differences);
  if (differences != 0) state.SkipWithError("the lattice tables differ from the search");
}

void ReductionDither(benchmark::State& state, rm::ColorReduction reduction, rm::DitherMode mode) {
  const rm::Bitmap photo = PhotoLike(1024, 768);
  for (auto _ : state) {
    rm::Bitmap work = photo;
    rm::Dither(work, reduction, mode);
    benchmark::DoNotOptimize(work.Row(0));
  }
}

void ReductionMyColor(benchmark::State& state) {
  Program262144 program;
  const rm::Application& app = program.app;
  rmbench::QuietUi& ui = program.ui;
  const rm::Bitmap photo = PhotoLike(1024, 768);
  for (auto _ : state) {
    rm::Bitmap work = photo;
    rm::ConvertToMyColor(work, app.session.PaletteTable, 262144, ui);
    benchmark::DoNotOptimize(work.Row(0));
  }
}

}  // namespace

BENCHMARK_CAPTURE(ReductionPhotoTo262144, lattice_tables, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReductionPhotoTo262144, quarter_search, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LatticeTablesAgreeWithTheSearch, c256, 56)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LatticeTablesAgreeWithTheSearch, c4096, 57)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LatticeTablesAgreeWithTheSearch, c65536, 59)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LatticeTablesAgreeWithTheSearch, c262144, 60)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReductionDither, floyd_steinberg_mono, rm::ColorReduction::Monochrome, rm::DitherMode::FloydSteinberg)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReductionDither, stevenson_arce_mono, rm::ColorReduction::Monochrome, rm::DitherMode::SteveArche)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReductionDither, floyd_steinberg_gray, rm::ColorReduction::GrayScale, rm::DitherMode::FloydSteinberg)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ReductionMyColor)->Unit(benchmark::kMillisecond);
