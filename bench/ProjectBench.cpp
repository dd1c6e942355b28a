// Reading and writing the whole project file, as at a project activation and at quit: the file
// from disk into every setting (colour mode applied), and every setting into the file on disk.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

#include "bench/BenchSupport.h"
#include "engine/Clock.h"
#include "shell/Application.h"
#include "shell/ProjectStore.h"
#include "shell/SettingsTable.h"

namespace {

// A project far from the factory state, in a colour mode with a palette, saved to a file.
std::string SavedProject(rm::Application& app) {
  static const std::string path = std::filesystem::temp_directory_path() / "rastermill-bench.LCD";
  std::string error;
  for (const char* kv : {"FXHB=+D+", "ORGC=12", "mru0=/tmp/one.h", "DPR=Laser", "vew1=777", "tda=1"}) {
    const std::string s = kv;
    rm::ApplySetting(app, s.substr(0, s.find('=')), s.substr(s.find('=') + 1), error, rm::SettingUse::Session);
  }
  app.mainForm.SetColourMode(59, true);
  rm::IniFile file;
  file.SetPath(path);
  rm::ProjectWrite(app, file);
  file.Save(&error);
  return path;
}

struct BenchProgram {
  rmbench::QuietUi ui;
  rm::FixedClock clock{1700000000};
  rm::Application app{ui, clock};
  std::string path = SavedProject(app);
};

void ProjectReadWhole(benchmark::State& state) {
  BenchProgram p;
  rm::Application& app = p.app;
  const std::string& path = p.path;
  for (auto _ : state) {
    rm::IniFile file;
    file.Load(path);
    rm::ProjectRead(app, file);
    rm::LoadSearchReplaceData(app, file);
    benchmark::DoNotOptimize(app.session.ModeNumber);
  }
  state.counters["keys"] = static_cast<double>(rm::SettingsTable().size());
}

void ProjectWriteWhole(benchmark::State& state) {
  BenchProgram p;
  rm::Application& app = p.app;
  const std::string& path = p.path;
  for (auto _ : state) {
    // As SaveConfigurationX does it: the file as it stands, updated in place, replaced whole.
    rm::IniFile file;
    file.Load(path);
    rm::ProjectWrite(app, file);
    std::string error;
    if (!file.Save(&error)) state.SkipWithError(error.c_str());
  }
}

}  // namespace

BENCHMARK(ProjectReadWhole)->Unit(benchmark::kMillisecond);
BENCHMARK(ProjectWriteWhole)->Unit(benchmark::kMillisecond);
