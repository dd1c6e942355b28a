#include "shell/WindowPlaces.h"

#include <charconv>

#include "shell/Application.h"
#include "shell/SettingsTable.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace {

// The keys of one window; empty where the project has none for it.
struct PlaceKeys {
  SettingKey left;
  SettingKey top;
  SettingKey width;
  SettingKey height;
  SettingKey tab;
  SettingKey shown;
};

PlaceKeys KeysOf(DesktopWindow window) {
  constexpr SettingKey none;
  switch (window) {
    case DesktopWindow::Explorer: return {keys::formp2, keys::formp1, keys::ew1, none, none, keys::ExploWs};
    case DesktopWindow::Editors: return {keys::etl2, keys::et2, keys::ew2, keys::eh2, keys::eta2, keys::Expws2};
    case DesktopWindow::WorkCanvas:
      return {keys::formp4, keys::formp3, keys::formW3, keys::formW4, none, keys::ImageWs};
    case DesktopWindow::PixelPanel: return {keys::formp6, keys::formp5, none, none, none, keys::PixelWs};
    case DesktopWindow::Log: return {none, none, none, none, none, keys::Logws};
    case DesktopWindow::Settings: return {none, none, none, none, none, keys::ConfWs};
    case DesktopWindow::Main: return {none, none, none, none, none, keys::MainWs};
  }
  return {};
}

int ReadNumber(const Application& app, const SettingKey& key) {
  if (key.key.empty()) return -1;
  const SettingDef* def = FindSetting(key);
  if (!def) return -1;
  const std::string text = GetSetting(app, *def);
  int value = -1;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size() ? value : -1;
}

void WriteNumber(Application& app, const SettingKey& key, int value) {
  if (key.key.empty() || value < 0) return;
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
