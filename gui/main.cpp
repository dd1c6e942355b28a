// rastermill-gui: the desktop program.
#include <QApplication>
#include <QPixmap>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "engine/ProgramVersion.h"
#include "gui/DesktopProgram.h"
#include "gui/MainWindow.h"
#include "gui/ProgramApplication.h"

namespace {

constexpr const char* kHelp =
    "Usage: rastermill-gui [OPTION]... [ANY]\n"
    "The Rastermill desktop program: draw, import and convert display artwork.\n"
    "\n"
    "  --screenshot FILE.png [PICTURE]\n"
    "                 start without showing a window, open PICTURE (if given) as a\n"
    "                 floating selection, render the main window into FILE.png and\n"
    "                 exit; questions are answered with their first button, and\n"
    "                 the project is neither changed nor written\n"
    "  --help         show this help and exit\n"
    "  --version      show the version and exit\n"
    "\n"
    "Any other first argument starts the program without the welcome window and\n"
    "with the log window hidden; it is not otherwise read.\n"
    "Environment: RASTERMILL_HOME replaces the home folder the settings live under.\n"
    "Exit status: 0 done; 1 the picture could not be opened or the screenshot not\n"
    "written, or another Rastermill runs on these settings; 2 bad arguments.\n";

}  // namespace

int main(int argc, char** argv) {
  std::string screenshot, picture;
  bool firstParameter = argc > 1 && argv[1][0] != '\0';
  if (argc > 1 && std::strcmp(argv[1], "--help") == 0) {
    std::fputs(kHelp, stdout);
    return 0;
  }
  if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
    std::printf("rastermill-gui %s\n", rm::ProgramVersion());
    return 0;
  }
  if (argc > 1 && std::strcmp(argv[1], "--screenshot") == 0) {
    if (argc < 3 || argc > 4) {
      std::fputs("rastermill-gui: --screenshot needs FILE.png and at most one PICTURE\n", stderr);
      return 2;
    }
    screenshot = argv[2];
    if (argc == 4) picture = argv[3];
    // Nobody is there to look: draw into memory unless a platform was asked for.
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  }
  rmgui::ProgramApplication qapp(argc, argv);
  QApplication::setApplicationName("Rastermill");
  rmgui::DesktopProgram program;
  rmgui::DesktopProgram::Options options;
  options.firstParameterGiven = firstParameter;
  if (!screenshot.empty()) {
    // A picture of the window may be taken while the program runs for real.
    options.singleInstance = false;
    program.Ui().SetUnattended(true);
  }
  if (!program.Start(options)) return 1;
  if (screenshot.empty()) {
    program.Show();
    return QApplication::exec();
  }
  int status = 0;
  program.Window().resize(1280, 860);
  program.Show();
  QApplication::processEvents();
  if (!picture.empty()) {
    bool opened = false;
    program.Window().Run([&] { opened = program.App().mainForm.OpenPic(picture); });
    if (!opened) {
      std::fprintf(stderr, "rastermill-gui: %s was not opened\n", picture.c_str());
      status = 1;
    }
  }
  QApplication::processEvents();
  if (!program.Window().grab().save(QString::fromStdString(screenshot), "PNG")) {
    std::fprintf(stderr, "rastermill-gui: cannot write %s\n", screenshot.c_str());
    return 1;
  }
  return status;
}
