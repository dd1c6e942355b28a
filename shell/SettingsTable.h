#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rm {

class Application;

enum class SettingType { String, Integer, Boolean };

// One key of the project file: where it stands, its factory default and the variable it fills.
// Reading, writing, listing and `--set KEY=VALUE` all go through this table. A key that no
// feature of the program uses yet is still read, held (Globals::HeldSettings) and written back,
// so a project made by a fuller version of the program loses nothing here.
struct SettingDef {
  std::string_view section;
  std::string_view key;           // the name it is read under (or, for a key only written, written)
  SettingType type = SettingType::String;
  std::string_view defaultValue;  // the factory default, unless `computed`
  // The default is whatever the program holds before reading: a folder or a text the program
  // builds at start. So a project that lacks the key keeps the value already in force.
  bool computed = false;
  bool read = true;               // false: written for the record, never read back
  std::string_view writeKey;      // the name it is written under; empty: never written
  int writes = 1;                 // how often the writer writes it (a second write changes nothing)
  std::size_t held = 0;           // its place in Globals::HeldSettings when no variable is bound
  std::string (*get)(const Application&) = nullptr;
  void (*set)(Application&, const std::string&) = nullptr;
};

// Every key in the order the program reads them.
const std::vector<SettingDef>& SettingsTable();
// The table's entries in the order the program writes them: section by section, each section's
// keys in reading order.
const std::vector<const SettingDef*>& SettingsWriteOrder();
// The sections in the order the writer puts them, the search and replace grid's among them.
const std::vector<std::string_view>& SectionWriteOrder();
// The number of held values (the size Globals::HeldSettings starts with) and their defaults.
std::vector<std::string> FactoryHeldSettings();

// Case-insensitive, as the project file compares keys. `key` may name its section as in
// "B10/HCO" (a few names stand in two sections); a bare name finds the first in reading order.
// nullptr when unknown.
const SettingDef* FindSetting(std::string_view key);

// Applies a value with the project file's reading rules: a boolean is 0 (false) or any other
// number (true), an integer is a whole number. False with a message in `error` when the key is
// unknown or the value unreadable for its type.
bool ApplySetting(Application& app, std::string_view key, const std::string& value, std::string& error);
std::string GetSetting(const Application& app, const SettingDef& def);
void SetSetting(Application& app, const SettingDef& def, const std::string& value);

// The colour mode that the colour mode switches just read select, in the order the program tests
// them; 0 when none applies (then the mode in force stays).
int ColourModeFromSwitches(const Application& app);

}  // namespace rm
