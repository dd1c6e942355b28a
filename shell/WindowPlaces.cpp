#include "shell/WindowPlaces.h"

#include <charconv>

#include "shell/Application.h"
#include "shell/SettingsTable.h"

namespace rm {

namespace {

// The keys of one window; empty where the project has none for it.
struct PlaceKeys {
  const char* left;
  const char* top;
  const char* width;
  const char* height;
  const char* tab;
  const char* shown;
};

PlaceKeys KeysOf(DesktopWindow window) {
  switch (window) {
    case DesktopWindow::Explorer: return {"formp2", "formp1", "ew1", "", "", "ExploWs"};
    case DesktopWindow::Editors: return {"etl2", "et2", "ew2", "eh2", "eta2", "Expws2"};
    case DesktopWindow::WorkCanvas: return {"formp4", "formp3", "formW3", "formW4", "", "ImageWs"};
    case DesktopWindow::PixelPanel: return {"formp6", "formp5", "", "", "", "PixelWs"};
    case DesktopWindow::Log: return {"", "", "", "", "", "Logws"};
    case DesktopWindow::Settings: return {"", "", "", "", "", "ConfWs"};
    case DesktopWindow::Main: return {"", "", "", "", "", "MainWs"};
  }
  return {"", "", "", "", "", ""};
}

int ReadNumber(const Application& app, const char* key) {
  if (!*key) return -1;
  const SettingDef* def = FindSetting(key);
  if (!def) return -1;
  const std::string text = GetSetting(app, *def);
  int value = -1;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size() ? value : -1;
}

void WriteNumber(Application& app, const char* key, int value) {
  if (!*key || value < 0) return;
  if (const SettingDef* def = FindSetting(key)) SetSetting(app, *def, std::to_string(value));
}

}  // namespace

WindowPlace ReadWindowPlace(const Application& app, DesktopWindow window) {
  const PlaceKeys k = KeysOf(window);
  WindowPlace p;
  p.left = ReadNumber(app, k.left);
  p.top = ReadNumber(app, k.top);
  p.width = ReadNumber(app, k.width);
  p.height = ReadNumber(app, k.height);
  p.tab = ReadNumber(app, k.tab);
  if (const SettingDef* def = FindSetting(k.shown)) p.shown = GetSetting(app, *def) != "0";
  return p;
}

void StoreWindowPlace(Application& app, DesktopWindow window, const WindowPlace& place) {
  const PlaceKeys k = KeysOf(window);
  if (const SettingDef* def = FindSetting(k.shown)) SetSetting(app, *def, place.shown ? "1" : "0");
  if (!place.shown) return;
  WriteNumber(app, k.left, place.left);
  WriteNumber(app, k.top, place.top);
  WriteNumber(app, k.width, place.width);
  WriteNumber(app, k.height, place.height);
  WriteNumber(app, k.tab, place.tab);
}

}  // namespace rm
