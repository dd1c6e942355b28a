#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace rm {

class Application;

enum class SettingType { String, Integer, Boolean };

// One key of the project file: where it stands, its factory default and the variable it fills.
// Reading, writing, listing and `--set KEY=VALUE` all go through this table.
struct SettingDef {
  std::string_view section;
  std::string_view key;
  SettingType type;
  std::string_view defaultValue;
  std::string (*get)(const Application&);
  void (*set)(Application&, const std::string&);
};

const std::vector<SettingDef>& SettingsTable();
// Case-insensitive, as the project file compares keys. nullptr when unknown.
const SettingDef* FindSetting(std::string_view key);

// Applies a value with the project file's reading rules: a boolean is 0 (false) or any other
// number (true), an integer is a whole number. False with a message in `error` when the key is
// unknown or the value unreadable for its type.
bool ApplySetting(Application& app, std::string_view key, const std::string& value, std::string& error);
std::string GetSetting(const Application& app, const SettingDef& def);

}  // namespace rm
