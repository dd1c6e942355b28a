// The geometry of an import on pictures of the sizes users bring: a photo fitted to a display,
// and the turn of the orientation angle on its work square.
#include <benchmark/benchmark.h>

#include "engine/ImportGeometry.h"

namespace {

rm::Bitmap Photo(int w, int h) {
  rm::Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) b.SetPixel(x, y, (x * 7 + y * 13) & 0xFFFFFF);
  return b;
}

void BM_StretchPhotoToDisplay(benchmark::State& state) {
  const rm::Bitmap photo = Photo(3000, 2000);
  for (auto _ : state) benchmark::DoNotOptimize(rm::StretchBitmap(photo, 800, 480));
}
BENCHMARK(BM_StretchPhotoToDisplay);

void BM_TurnOnSquare(benchmark::State& state) {
  const int side = static_cast<int>(state.range(0));
  const rm::Bitmap photo = Photo(side, side);
  for (auto _ : state) benchmark::DoNotOptimize(rm::RotateOnSquare(photo, 30));
}
BENCHMARK(BM_TurnOnSquare)->Arg(256)->Arg(1024)->Unit(benchmark::kMillisecond);

}  // namespace
