// Speed of the Work Canvas at its largest display size, 1024 x 768: one history push, and one
// redraw (composition of the layers and enlargement into the view).
#include <benchmark/benchmark.h>

#include "bench/BenchSupport.h"
#include "canvas/DrawingTools.h"
#include "shell/Application.h"

namespace {

constexpr int kW = 1024, kH = 768;

// A canvas at 1024 x 768 on a screen that gives it `zoom` (1 or 2): random colours (the worst
// case for the history), or `drawn`: black shapes on white, as display artwork mostly is.
void Setup(rm::Application& app, int zoom, bool drawn = false) {
  app.mainForm.SetColourMode(62, true);
  app.globals.ScreenWidth = zoom == 2 ? 2200 : 1920;
  app.globals.ScreenHeight = zoom == 2 ? 1800 : 1080;
  app.globals.MatrixWidth = kW;
  app.globals.MatrixHeight = kH;
  app.mainForm.CanvasRedraw();
  rm::Bitmap& b = app.pixelForm.WorkBitmap;
  std::uint32_t seed = 99;
  for (int y = 0; y < kH; ++y)
    for (int x = 0; x < kW; ++x) {
      seed = seed * 1103515245u + 12345u;
      b.Row(y)[x] = drawn ? (((x / 37 + y / 23) % 3 == 0) ? 0u : 0xFFFFFFu) : (seed >> 8) & 0xFFFFFFu;
    }
  app.pixelForm.ResetHistory();
}

// `everyRow`: the edit touches every row (a vertical line across the canvas), so no row of the
// entry below can be shared.
void CanvasUndoPush(benchmark::State& state, bool everyRow, bool drawn) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  Setup(app, 1, drawn);
  rm::TPixelForm& f = app.pixelForm;
  const rm::Bitmap start = f.WorkBitmap;
  std::uint32_t n = 0;
  for (auto _ : state) {
    ++n;
    if (everyRow)
      for (int y = 0; y < kH; ++y) f.WorkBitmap.Row(y)[n % kW] = drawn ? (n & 1u) * 0xFFFFFFu : n & 0xFFFFFFu;
    else
      f.WorkBitmap.Row(static_cast<int>(n % kH))[n % kW] = n & 0xFFFFFFu;
    f.CopyCanvasToSaveTable();
    if (f.UndoIndex >= 64) {
      // Keeps the memory of the full-change case bounded, and the drawn picture from turning
      // into one-pixel stripes under the edits; not part of a push.
      state.PauseTiming();
      f.WorkBitmap = start;
      f.ResetHistory();
      state.ResumeTiming();
    }
  }
  state.counters["entries"] = f.UndoLength();
}

// `layers`: a visible transfer layer and a floating transparent selection over half the canvas.
void CanvasRedraw(benchmark::State& state, int zoom, bool layers) {
  rmbench::QuietUi ui;
  rm::FixedClock clock(0);
  rm::Application app(ui, clock);
  Setup(app, zoom);
  rm::TPixelForm& f = app.pixelForm;
  if (f.Zoom != zoom) {
    state.SkipWithError("the screen did not give the zoom asked for");
    return;
  }
  if (layers) {
    f.TransferLayerExists = f.TransferLayerVisible = true;
    f.TransferLayerBitmap = rm::Bitmap(kW, kH, 0xF0F0F0);
    f.FloatSelection(rm::Bitmap(kW / 2, kH / 2, 0x0F0F0F), 100, 100);
    f.CopyTransparent = true;
  }
  for (auto _ : state) {
    f.CopyBitmapToCanvas();
    benchmark::DoNotOptimize(f.ViewBitmap.Row(0));
  }
  state.counters["view_Mpx"] = static_cast<double>(f.ViewBitmap.Width()) * f.ViewBitmap.Height() / 1e6;
}

}  // namespace

// A flood fill of the whole 1024 x 768 canvas of one colour, and of the black of drawn shapes.
void FloodFillWholeCanvas(benchmark::State& state, bool drawn) {
  rm::Bitmap b(kW, kH);
  if (drawn)
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x)
        if ((x / 37 + y / 23) % 3 == 0 && x % 37 > 2) b.SetPixel(x, y, rm::kBlack);
  rm::Colour colour = 0x0000FF;
  for (auto _ : state) {
    colour ^= 0x00FF00;  // a new colour each time, so every run fills the same area again
    benchmark::DoNotOptimize(rm::FloodFill(b, {kW - 1, kH - 1}, colour).count);
  }
}

BENCHMARK_CAPTURE(FloodFillWholeCanvas, one_colour, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FloodFillWholeCanvas, drawn_shapes, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CanvasUndoPush, one_pixel, false, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CanvasUndoPush, every_row_random_colours, true, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CanvasUndoPush, every_row_drawn, true, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CanvasRedraw, zoom1, 1, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CanvasRedraw, zoom2, 2, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CanvasRedraw, zoom1_layers, 1, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CanvasRedraw, zoom2_layers, 2, true)->Unit(benchmark::kMicrosecond);
