// The desktop program's speed: the Work Canvas repaint while a selection is dragged, and the
// start-up to a usable window. Runs on Qt's offscreen platform.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTest>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include "gui/CanvasWidget.h"
#include "gui/DesktopProgram.h"
#include "gui/MainWindow.h"
#include "gui/ProgramApplication.h"

namespace {

constexpr int kW = 1024, kH = 768;

std::string FreshHome() {
  const auto dir = std::filesystem::temp_directory_path() / ("rm-gui-bench-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  setenv("RASTERMILL_HOME", dir.c_str(), 1);
  return dir.string();
}

// One step of a drag: the selection moves one cell, the model composes and enlarges the view, and
// the window paints it (repaint() paints at once rather than at the next event loop turn).
void GuiSelectionDrag(benchmark::State& state, int zoom) {
  FreshHome();
  rmgui::DesktopProgram program;
  program.Ui().SetUnattended(true);  // the size change says so in a message
  rmgui::DesktopProgram::Options o;
  o.singleInstance = false;
  if (!program.Start(o)) {
    state.SkipWithError("the program did not start");
    return;
  }
  rm::Application& app = program.App();
  program.Window().resize(1600, 1000);
  program.Show();
  // Zoom 2 on a 4K screen; the offscreen platform's small screen gives zoom 1.
  if (zoom > 1) {
    app.globals.ScreenWidth = 3840;
    app.globals.ScreenHeight = 2160;
  }
  app.mainForm.UserMatrixClick(std::to_string(kW), std::to_string(kH));
  while (app.pixelForm.Zoom > zoom && app.imageForm.SmallerButtonClick()) {}
  while (app.pixelForm.Zoom < zoom && app.imageForm.BiggerButtonClick()) {}
  if (app.pixelForm.Zoom != zoom) {
    state.SkipWithError("the canvas does not take that zoom");
    return;
  }
  rm::Bitmap& b = app.pixelForm.WorkBitmap;
  for (int y = 0; y < kH; ++y)
    for (int x = 0; x < kW; ++x) b.Row(y)[x] = ((x / 37 + y / 23) % 3 == 0) ? 0u : 0xFFFFFFu;
  app.pixelForm.FloatSelection(rm::Bitmap(kW / 2, kH / 2, 0x000000), 100, 100);
  program.Window().SyncAll();
  QApplication::processEvents();
  rmgui::CanvasWidget* canvas = program.Window().Canvas();
  int step = 0;
  for (auto _ : state) {
    ++step;
    app.pixelForm.MoveSelection(100 + (step & 1), 100);
    canvas->viewport()->repaint();
  }
  state.counters["zoom"] = app.pixelForm.Zoom;
  state.counters["view_Mpx"] =
      static_cast<double>(app.pixelForm.ViewBitmap.Width()) * app.pixelForm.ViewBitmap.Height() / 1e6;
}
BENCHMARK_CAPTURE(GuiSelectionDrag, zoom_1, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(GuiSelectionDrag, zoom_2, 2)->Unit(benchmark::kMillisecond);

// From nothing to the main window shown and painted, settings read, the canvas made.
void GuiStartUp(benchmark::State& state) {
  FreshHome();
  for (auto _ : state) {
    rmgui::DesktopProgram program;
    program.Ui().SetUnattended(true);
    rmgui::DesktopProgram::Options o;
    o.singleInstance = false;
    if (!program.Start(o)) {
      state.SkipWithError("the program did not start");
      return;
    }
    program.Show();
    if (!QTest::qWaitForWindowExposed(&program.Window())) state.SkipWithError("not shown");
    program.Window().repaint();
  }
}
BENCHMARK(GuiStartUp)->Unit(benchmark::kMillisecond);

// The same as a user meets it: the program started as a process, Qt and its platform plugin
// loaded, the window made and painted (into a picture, which adds the PNG's writing).
void GuiProcessStartUp(benchmark::State& state) {
  const std::string home = FreshHome();
  const std::string command =
      std::string("QT_QPA_PLATFORM=offscreen '") + RM_GUI_PATH + "' --screenshot '" + home + "/window.png' 2>/dev/null";
  for (auto _ : state)
    if (std::system(command.c_str()) != 0) state.SkipWithError("rastermill-gui failed");
}
BENCHMARK(GuiProcessStartUp)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  rmgui::ProgramApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
