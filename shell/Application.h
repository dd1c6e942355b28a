#pragma once
#include "canvas/PixelGrid.h"
#include "engine/Clock.h"
#include "engine/ConversionSession.h"
#include "engine/DataEncoder.h"
#include "engine/HexBuffer.h"
#include "engine/ImageCodecs.h"
#include "engine/Palette.h"
#include "engine/TextLines.h"
#include "engine/UiPort.h"
#include "shell/Globals.h"
#include "shell/LogWindow.h"
#include "shell/StartUp.h"
#include "shell/TExploForm.h"
#include "shell/TExploForm2.h"
#include "shell/TImageForm.h"
#include "shell/TMainForm.h"
#include "shell/UsageCounters.h"

namespace rm {

// One whole program, headless: the state and one instance of each form. Tests build a fresh one
// in a line; the front ends build one and drive it.
class Application {
 public:
  Application(UiPort& ui, Clock& clock);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  PaletteFolders Folders() const;

  UiPort& ui;
  Clock& clock;
  Globals globals;
  ConversionSession session;
  TextLines mainText;
  TextLines auxLines;
  TextLines infoText;  // the last parameter file, shown beside the data in the editors
  HexBuffer hex;
  TPixelForm pixelForm;
  DataEncoder encoder;
  TMainForm mainForm;
  TImageForm imageForm;
  TExploForm2 exploForm2;
  TExploForm exploForm;
  UsageCounters usage;

  // The log window.
  TLogWindowForm logWindow;

  // ---- Special modes and start ----
  TextLines batchText;        // the batch editor's lines, saved as Globals::BatchFileName
  InstanceLock instanceLock;  // held from the start to the quit of the desktop program
};

// The folder of the program's shipped data (default palettes): RASTERMILL_DATA when set,
// else the build's data folder.
std::string ProgramDataFolder();

}  // namespace rm
