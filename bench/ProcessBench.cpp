// Speed of the rastermill program as a build runs it: a 1024 x 768 photograph in JPEG, imported,
// Floyd-Steinberg dithered to black and white and written as C text, one process per run.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
// After <cstdio> and <cstddef>: the library's header uses FILE and size_t without including them.
#include <jpeglib.h>
#include <filesystem>
#include <string>
#include <vector>

extern char** environ;

namespace {

// A picture with what makes photographs hard for a dither: smooth gradients, fine texture and
// hard edges, all in colour.
void WritePhotoJpeg(const std::string& path, int w, int h) {
  std::vector<unsigned char> rgb(static_cast<std::size_t>(w) * h * 3);
  std::uint32_t seed = 99;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1664525u + 1013904223u;
      const double fx = x / static_cast<double>(w), fy = y / static_cast<double>(h);
      const double disc = std::hypot(fx - 0.6, fy - 0.4) < 0.2 ? 60.0 : 0.0;
      const int noise = static_cast<int>(seed >> 28) - 8;
      unsigned char* p = &rgb[(static_cast<std::size_t>(y) * w + x) * 3];
      p[0] = static_cast<unsigned char>(std::clamp(255.0 * fx + noise - disc, 0.0, 255.0));
      p[1] = static_cast<unsigned char>(std::clamp(127.5 + 127.5 * std::sin(fx * 9 + fy * 5) + noise, 0.0, 255.0));
      p[2] = static_cast<unsigned char>(std::clamp(255.0 * fy + disc + noise, 0.0, 255.0));
    }
  jpeg_compress_struct c{};
  jpeg_error_mgr err{};
  c.err = jpeg_std_error(&err);
  jpeg_create_compress(&c);
  std::FILE* f = std::fopen(path.c_str(), "wb");
  jpeg_stdio_dest(&c, f);
  c.image_width = static_cast<JDIMENSION>(w);
  c.image_height = static_cast<JDIMENSION>(h);
  c.input_components = 3;
  c.in_color_space = JCS_RGB;
  jpeg_set_defaults(&c);
  jpeg_set_quality(&c, 90, TRUE);
  jpeg_start_compress(&c, TRUE);
  while (c.next_scanline < c.image_height) {
    JSAMPROW row = &rgb[static_cast<std::size_t>(c.next_scanline) * w * 3];
    jpeg_write_scanlines(&c, &row, 1);
  }
  jpeg_finish_compress(&c);
  jpeg_destroy_compress(&c);
  std::fclose(f);
}

int Run(const std::vector<std::string>& args) {
  std::vector<char*> argv;
  for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void BM_ProcessJpegDitherMonoText(benchmark::State& state) {
  const auto dir = std::filesystem::temp_directory_path() / "rm-process-bench";
  std::filesystem::create_directories(dir);
  const std::string picture = (dir / "photo.jpg").string();
  const std::string out = (dir / "photo.h").string();
  WritePhotoJpeg(picture, 1024, 768);
  // A home of its own, so the bench neither reads nor changes the user's project.
  setenv("RASTERMILL_HOME", (dir / "home").c_str(), 1);
  const std::vector<std::string> args = {RM_CLI_PATH, "convert",  picture, "--mode", "mono", "--preset",
                                         "1024x768",  "--dither", "floyd", "-o",     out,    "--no-info"};
  if (Run(args) != 0) {
    state.SkipWithError("rastermill convert failed");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(Run(args));
  state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(out));
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_ProcessJpegDitherMonoText)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
