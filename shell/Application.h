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
#include "fonts/AsciiChildWin.h"
#include "shell/Globals.h"
#include "shell/LogWindow.h"
#include "shell/StartUp.h"
#include "shell/TConfigChildWin.h"
#include "shell/TExploForm.h"
#include "shell/TExploForm2.h"
#include "shell/TImageForm.h"
#include "shell/TMainForm.h"
#include "shell/UsageCounters.h"

namespace rm {

class Application;

// The user as the program's code sees it: every question is written to the log before it is
// asked, and in a console session nobody is asked at all (the answer is the one Esc would give),
// so an unattended run never blocks. The rest goes straight to the front end.
class ProgramUi : public UiPort {
 public:
  ProgramUi(Application& app, UiPort& front) : app_(app), front_(front) {}
  std::string MessageDlg(const std::string& text, const std::string& title, DlgType type,
                         const std::vector<std::string>& buttons) override;
  void ExplainNextQuestion(const std::string& text) override { front_.ExplainNextQuestion(text); }
  void Status(const std::string& text) override { front_.Status(text); }
  void Notice(const std::string& text) override { front_.Notice(text); }
  void Progress(long long position, long long max) override { front_.Progress(position, max); }
  bool EscapePressed() override { return front_.EscapePressed(); }
  void Beep() override { front_.Beep(); }
  bool ExportDialog(ExportDialogState& state) override { return front_.ExportDialog(state); }

 private:
  Application& app_;
  UiPort& front_;
};

// One whole program, headless: the state and one instance of each form. Tests build a fresh one
// in a line; the front ends build one and drive it.
class Application {
 public:
  Application(UiPort& ui, Clock& clock);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  PaletteFolders Folders() const;

  UiPort& frontUi;  // the front end itself, for the dialogs that log in their own way
  ProgramUi programUi;
  UiPort& ui;  // programUi
  Clock& clock;
  Globals globals;
  ConversionSession session;
  TasciiChild asciiChild{ui, session};  // the Font Panel and its one font job
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
  // The picture decoders, given by the front end (the platform layer); none in a bare program.
  ImageCodecs* codecs = nullptr;

  // ---- Explorer and editors ----
  TextLines reportText;  // the editors' second text: the report of a batch run
  // ---- end of explorer and editors ----

  // ---- Settings panel ----
  TConfigChildWin configWin{*this};
  // ---- end of settings panel ----

  TextLines batchText;        // the batch editor's lines, saved as Globals::BatchFileName
  InstanceLock instanceLock;  // held from the start to the quit of the desktop program
};

// The folder of the program's shipped data (default palettes): RASTERMILL_DATA when set,
// else the build's data folder.
std::string ProgramDataFolder();

}  // namespace rm
