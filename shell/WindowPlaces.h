#pragma once
#include <string>

namespace rm {

class Application;

// The desktop windows whose places the project keeps.
enum class DesktopWindow { Explorer, Editors, WorkCanvas, PixelPanel, Log, Settings, Main };

// A window's place as the project stores it: decimal texts of its keys, -1 where the project
// holds none (a first run), so the front end keeps its own default there.
struct WindowPlace {
  int left = -1, top = -1, width = -1, height = -1;
  int tab = -1;        // the editors' tab
  bool shown = false;  // not minimised (or hidden) at quit
};

WindowPlace ReadWindowPlace(const Application& app, DesktopWindow window);
// Stores a window's place for the next quit's project write. A window that is not shown keeps
// the coordinates it had: only its shown switch changes.
void StoreWindowPlace(Application& app, DesktopWindow window, const WindowPlace& place);

}  // namespace rm
