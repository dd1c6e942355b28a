// The start of the program: the main window reads the settings, then the other windows are made
// in their fixed order. What only a desktop does (minimising the other windows, the mouse in the
// middle of the screen, the splash painted, window styles and captions) is the front end's.
#include "shell/StartUp.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>

#include "engine/ColourModes.h"
#include "shell/Application.h"
#include "shell/Folders.h"

namespace rm {

namespace fs = std::filesystem;

bool InstanceLock::Acquire(const std::string& path) {
  Release();
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) return true;
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    ::close(fd);
    return false;
  }
  fd_ = fd;
  return true;
}

void InstanceLock::Release() {
  if (fd_ < 0) return;
  ::flock(fd_, LOCK_UN);
  ::close(fd_);
  fd_ = -1;
}

std::string InstanceLockPath(const std::string& initsFolder) { return initsFolder + "Rastermill.lock"; }

namespace {

// The inits folder as LoadFolders will find it. The single-instance test runs before any
// settings are read, so it looks the folder up itself.
std::string InitsFolderBeforeSettings() {
  return UserDirectory(HomeFolder(), "XDG_DOCUMENTS_DIR", "Documents") + "/Rastermill inits " + ProgramVersionTag() +
         "/";
}

// The filler byte's hexadecimal text as a number; text that is not hexadecimal gives 0.
int HexValue(const std::string& text) {
  int value = 0;
  const char* end = text.data() + text.size();
  const auto r = std::from_chars(text.data(), end, value, 16);
  return r.ec == std::errc() && r.ptr == end ? value : 0;
}

}  // namespace

bool StartUp::FormCreate(bool singleInstance) {
  Globals& g = app_.globals;
  ConversionSession& s = app_.session;
  g.StartStep = 4;
  g.LastAction = "Main Form Create";

  g.StartStep = 5;
  if (singleInstance) {
    const std::string inits = InitsFolderBeforeSettings();
    std::error_code ec;
    fs::create_directories(inits, ec);
    if (!app_.instanceLock.Acquire(InstanceLockPath(inits))) {
      app_.ui.MessageDlg(" Another instance of Rastermill is already running !", "Message", DlgType::Information,
                         {"OK"});
      app_.mainForm.StatusBarAndLog("Another instance of Rastermill is already running !");
      // No quit record: the counters belong to the instance that runs, whose session is not over.
      return false;
    }
  }

  g.StartStep = 6;
  g.StartRegistryStep = 13;
  app_.mainForm.ReadInfoFromRegistry();
  g.StartRegistryStep = 14;

  g.StartStep = 7;
  s.LastBitmapName = "NewBitmap.bmp";
  g.AnimationSpeed = 200;
  g.MatrixWidth = 128;
  g.MatrixHeight = 128;

  g.StartStep = 8;
  app_.mainForm.LoadFolders();
  app_.mainForm.LoadConfigurationX();

  g.StartStep = 9;
  s.CanvasWidth = g.MatrixWidth;
  s.CanvasHeight = g.MatrixHeight;
  if (g.NoMatrixMode) app_.mainForm.NoMatrix1Click();

  g.StartStep = 10;
  g.FillerValue = HexValue(g.FillerText);

  g.StartStep = 11;
  // The menus are reset and the mode in force ticked again; a project that names no mode
  // starts in monochrome. Picture Mode keeps the true colour it has just set.
  if (!g.NoMatrixMode) app_.mainForm.SetColourMode(FindColourMode(s.ModeNumber) ? s.ModeNumber : 1, true);

  g.StartStep = 14;
  return true;
}

StartOutcome StartProgram(Application& app, const StartOptions& options) {
  Globals& g = app.globals;
  // Any first parameter at all, whatever it says: no splash, no welcome, a hidden log.
  g.ShowSplash = !options.firstParameterGiven;
  g.ShowWelcome = !options.firstParameterGiven;
  g.LogWindowVisible = !options.firstParameterGiven;

  if (!app.mainForm.FormCreate(options.singleInstance)) return StartOutcome::AnotherInstance;
  struct Creation {
    StartWindow window;
    const char* breadcrumb;
  };
  static constexpr Creation kCreations[] = {
      {StartWindow::ExportToData, "Create Export To Data Form"},
      {StartWindow::Grids, "Create Grids Form"},
      {StartWindow::Image, "Create Image Form"},
      {StartWindow::Adjustments, "Create Adjustments Form"},
      {StartWindow::Pixel, "Create Pixel Form"},
      {StartWindow::Welcome, "Create Welcome Form"},
      {StartWindow::LogWin, "Create LogWin Form"},
      {StartWindow::Exploform2, "Create Exploform2 Form"},
      {StartWindow::Exploform, "Create Exploform Form"},
      {StartWindow::HideSplash, "Create SplashScreen"},
      {StartWindow::AboutBox, "Create About Box"},
      {StartWindow::Presentation, "Create Presentation Form"},
  };
  for (const Creation& c : kCreations) {
    if (c.window == StartWindow::Welcome && !g.ShowWelcome) continue;
    g.LastAction = c.breadcrumb;
    if (c.window == StartWindow::Image)
      app.pixelForm.WorkBitmap = Bitmap(g.MatrixWidth, g.MatrixHeight, app.pixelForm.BackgroundColour);
    if (c.window == StartWindow::Exploform) g.ExplorerExists = true;
    // The log model lives from the start, so the lines of the start are there when its window
    // is made; only whether it shows is decided here.
    if (c.window == StartWindow::LogWin) app.logWindow.Visible = g.LogWindowVisible;
    if (options.createWindow) options.createWindow(c.window);
  }
  g.LastAction = "Application has started";
  g.StartComplete = true;
  return StartOutcome::Started;
}

}  // namespace rm
