// Speed of animations: a GIF of 100 frames of 128 x 64 turned into one monochrome table per frame
// by the rastermill program (one process per run), and a sequence of 100 frames saved as a GIF.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>
#include <vector>

#include "animation/GifSequence.h"
#include "platform/GifSequenceCodec.h"

extern char** environ;

namespace {

// A ball crossing a striped ground: every frame differs, in black and white.
std::vector<rm::Bitmap> BallFrames(int count) {
  std::vector<rm::Bitmap> frames;
  for (int f = 0; f < count; ++f) {
    rm::Bitmap b(128, 64, rm::kWhite);
    for (int y = 0; y < 64; ++y)
      for (int x = 0; x < 128; ++x) {
        const int dx = x - f * 128 / count, dy = y - 32;
        if (dx * dx + dy * dy < 100 || (y > 56 && (x + f) % 8 < 4)) b.SetPixel(x, y, rm::kBlack);
      }
    frames.push_back(b);
  }
  return frames;
}

// Runs the program with what it prints and its messages thrown away.
int RunQuietly(const std::vector<std::string>& args) {
  std::vector<char*> argv;
  for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  const int started = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (started != 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The tables printed (argument 0) or written one file per frame (argument 1); each file is
// flushed to the disk before the next, so the second measures the disk as much as the program.
void BM_ProcessGif100FramesToMonoTables(benchmark::State& state) {
  const auto dir = std::filesystem::temp_directory_path() / "rm-animation-bench";
  std::filesystem::create_directories(dir / "out");
  const std::string gif = (dir / "ball.gif").string();
  rm::GifSequence file;
  std::string error;
  if (!rm::MakeGifSequence(BallFrames(100), std::vector<int>(100, 40), true, file, error) ||
      !rm::PlatformGifExchange().Write(file, gif, error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  setenv("RASTERMILL_HOME", (dir / "home").c_str(), 1);
  std::vector<std::string> args = {RM_CLI_PATH, "animation", gif, "--mode", "mono", "--size", "128x64"};
  if (state.range(0) == 1) args.insert(args.end(), {"-o", (dir / "out" / "ball.h").string()});
  if (RunQuietly(args) != 0) {
    state.SkipWithError("rastermill animation failed");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(RunQuietly(args));
}
BENCHMARK(BM_ProcessGif100FramesToMonoTables)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_SaveGif100Frames(benchmark::State& state) {
  const auto dir = std::filesystem::temp_directory_path() / "rm-animation-bench";
  std::filesystem::create_directories(dir);
  const std::string path = (dir / "saved.gif").string();
  const std::vector<rm::Bitmap> frames = BallFrames(100);
  const std::vector<int> delays(100, 40);
  rm::PlatformGifExchange gifs;
  for (auto _ : state) {
    rm::GifSequence file;
    std::string error;
    if (!rm::MakeGifSequence(frames, delays, true, file, error) || !gifs.Write(file, path, error)) {
      state.SkipWithError(error.c_str());
      return;
    }
  }
}
BENCHMARK(BM_SaveGif100Frames)->Unit(benchmark::kMillisecond);

}  // namespace
