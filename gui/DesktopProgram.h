#pragma once
#include <memory>
#include <string>

#include "engine/Clock.h"
#include "gui/QtUi.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/Application.h"

namespace rmgui {

class MainWindow;

// One desktop program: the headless program, its Qt user, the picture codecs and the main
// window with its panels. main() makes one; tests make one per case.
class DesktopProgram {
 public:
  struct Options {
    bool firstParameterGiven = false;  // no splash, no welcome, a hidden log
    bool singleInstance = true;
  };
  DesktopProgram();
  ~DesktopProgram();
  DesktopProgram(const DesktopProgram&) = delete;
  DesktopProgram& operator=(const DesktopProgram&) = delete;

  // Reads the settings and makes the windows in their order. False when another desktop program
  // runs on these settings (the user has been told).
  bool Start(const Options& options);
  // Shows the windows by their saved places and states.
  void Show();

  rm::Application& App() { return app_; }
  QtUi& Ui() { return ui_; }
  MainWindow& Window() { return *window_; }

 private:
  void RestorePlaces();
  void StorePlaces();
  bool SaveArtwork();

  rm::SystemClock clock_;
  QtUi ui_;
  rm::Application app_;
  rm::PlatformImageCodecs codecs_;
  std::unique_ptr<MainWindow> window_;
};

}  // namespace rmgui
