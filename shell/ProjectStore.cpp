#include "shell/ProjectStore.h"

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

}  // namespace

void ProjectRead(Application& app, const IniFile& project) {
  for (const SettingDef& def : SettingsTable()) {
    std::string value;
    switch (def.type) {
      case SettingType::String:
        value = project.ReadString(def.section, def.key, std::string(def.defaultValue));
        break;
      case SettingType::Integer:
        value = std::to_string(project.ReadInteger(def.section, def.key, IntegerDefault(def.defaultValue)));
        break;
      case SettingType::Boolean:
        value = project.ReadBool(def.section, def.key, IntegerDefault(def.defaultValue) != 0) ? "1" : "0";
        break;
    }
    def.set(app, value);
  }
}

void ProjectWrite(const Application& app, IniFile& project) {
  for (const SettingDef& def : SettingsTable()) {
    const std::string value = def.get(app);
    switch (def.type) {
      case SettingType::String: project.WriteString(def.section, def.key, value); break;
      case SettingType::Integer: project.WriteInteger(def.section, def.key, IntegerDefault(value)); break;
      case SettingType::Boolean: project.WriteBool(def.section, def.key, IntegerDefault(value) != 0); break;
    }
  }
}

}  // namespace rm
