#include "shell/ProjectStore.h"

#include <algorithm>
#include <string>

#include "shell/Application.h"
#include "shell/SettingsTable.h"

namespace rm {

namespace {

int IntegerDefault(std::string_view text) {
  try {
    return std::stoi(std::string(text));
  } catch (...) {
    return 0;
  }
}

bool IsSearchReplaceSection(std::string_view s) {
  for (std::string_view g : kSearchReplaceSections)
    if (IniFile::SameName(s, g)) return true;
  return false;
}

// The writer's entries grouped by section, in the writer's section order.
const std::vector<std::pair<std::string_view, std::vector<const SettingDef*>>>& WriteGroups() {
  static const auto groups = [] {
    std::vector<std::pair<std::string_view, std::vector<const SettingDef*>>> g;
    for (std::string_view section : SectionWriteOrder()) g.push_back({section, {}});
    for (const SettingDef* d : SettingsWriteOrder())
      for (auto& [section, defs] : g)
        if (IniFile::SameName(section, d->section)) {
          defs.push_back(d);
          break;
        }
    return g;
  }();
  return groups;
}

}  // namespace

void ProjectRead(Application& app, const IniFile& project) {
  for (const SettingDef& def : SettingsTable()) {
    if (!def.read) continue;
    const std::string def_ = def.computed ? GetSetting(app, def) : std::string(def.defaultValue);
    std::string value;
    switch (def.type) {
      case SettingType::String:
        value = project.ReadString(def.section, def.key, def_);
        if (!def.words.empty() && std::find(def.words.begin(), def.words.end(), value) == def.words.end()) value = def_;
        break;
      case SettingType::Integer: {
        // A number outside what the key takes is as unreadable as a word.
        const int n = project.ReadInteger(def.section, def.key, IntegerDefault(def_));
        value = n < def.min || n > def.max ? def_ : std::to_string(n);
        break;
      }
      case SettingType::Boolean:
        value = project.ReadBool(def.section, def.key, IntegerDefault(def_) != 0) ? "1" : "0";
        break;
    }
    SetSetting(app, def, value);
  }
  app.globals.LastAction = "Config Saved";
  // The colour mode last: its command resets the fields that belong to a mode, and it must not
  // ask about the canvas while a project is being read.
  if (const int mode = ColourModeFromSwitches(app)) {
    app.globals.ApplyingSettings = true;
    app.mainForm.SetColourMode(mode, true);
    app.globals.ApplyingSettings = false;
  }
}

void LoadSearchReplaceData(Application& app, const IniFile& project) {
  auto& grid = app.globals.SearchReplaceSections;
  grid.clear();
  for (std::string_view section : kSearchReplaceSections) {
    std::vector<std::pair<std::string, std::string>> keys;
    for (const std::string& key : project.Keys(section)) keys.emplace_back(key, project.ReadString(section, key, ""));
    if (!keys.empty()) grid.emplace_back(std::string(section), std::move(keys));
  }
}

void ProjectWrite(const Application& app, IniFile& project) {
  for (const auto& [section, defs] : WriteGroups()) {
    if (IsSearchReplaceSection(section)) {
      for (const auto& [name, keys] : app.globals.SearchReplaceSections)
        if (IniFile::SameName(name, section))
          for (const auto& [key, value] : keys) project.WriteString(section, key, value);
      continue;
    }
    for (const SettingDef* def : defs) {
      const std::string value = GetSetting(app, *def);
      for (int n = 0; n < def->writes; ++n) {
        switch (def->type) {
          case SettingType::String: project.WriteString(section, def->writeKey, value); break;
          case SettingType::Integer: project.WriteInteger(section, def->writeKey, IntegerDefault(value)); break;
          case SettingType::Boolean: project.WriteBool(section, def->writeKey, IntegerDefault(value) != 0); break;
        }
      }
    }
  }
}

}  // namespace rm
