#pragma once
#include <functional>
#include <string>

namespace rm {

class Application;

// Holds an exclusive lock on a file for as long as it lives, so that a second desktop program
// on the same settings can tell that one is running. The lock goes with the process: a crash
// leaves no stale lock behind.
class InstanceLock {
 public:
  InstanceLock() = default;
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;
  ~InstanceLock() { Release(); }

  // False when another holder has the lock. A lock that cannot be made at all (no such folder,
  // no rights) counts as taken by us: the program must not refuse to start over it.
  bool Acquire(const std::string& path);
  void Release();
  bool Held() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

// The windows made at start, in their order after the main window. The Work Canvas (Image) comes
// up empty at the display's size; the welcome window is made only without a first parameter.
enum class StartWindow {
  ExportToData,
  Grids,
  Image,
  Adjustments,
  Pixel,
  Welcome,
  LogWin,
  Exploform2,
  Exploform,
  HideSplash,
  AboutBox,
  Presentation
};

struct StartOptions {
  bool firstParameterGiven = false;  // any first command line parameter: no splash, no welcome
  bool singleInstance = true;        // the desktop program runs once per user
  // The front end makes each window here, with the breadcrumb of its creation already set.
  std::function<void(StartWindow)> createWindow;
};

enum class StartOutcome { Started, AnotherInstance };

// The main window's creation, where the settings are read.
class StartUp {
 public:
  explicit StartUp(Application& app) : app_(app) {}
  // False when another instance of the desktop program runs; then nothing has been read.
  bool FormCreate(bool singleInstance);

 private:
  Application& app_;
};

// The start of the program, headless: the main window reads the settings, then the other
// windows are made in their fixed order. The front end shows them by the state left in Globals.
StartOutcome StartProgram(Application& app, const StartOptions& options);

// The lock file of the single-instance rule, in the inits folder.
std::string InstanceLockPath(const std::string& initsFolder);

}  // namespace rm
