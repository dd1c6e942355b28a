#pragma once
#include <climits>
#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "engine/ConversionSession.h"
#include "fonts/FontJob.h"
#include "shell/Globals.h"

namespace rm {

class Application;

enum class SettingType { String, Integer, Boolean };

// The variable a key fills, named as a member of the record that holds it; the value is read and
// written by the key's type. Empty: the key is held, or is a choice of a radio group.
using SettingField =
    std::variant<std::monostate, bool ConversionSettings::*, int ConversionSettings::*,
                 std::string ConversionSettings::*, bool DataSyntax::*, int DataSyntax::*, std::string DataSyntax::*,
                 bool Globals::*, int Globals::*, std::string Globals::*, bool ClipSyntax::*, std::string ClipSyntax::*,
                 int (Globals::*)[16], bool FontJob::*, int FontJob::*, std::string FontJob::*>;

// Where a key stands in the project file. The few keys the program reaches by name are spelled
// once, as constants (SettingsTableKeys.h), which the table's rows use too.
struct SettingKey {
  std::string_view section;
  std::string_view key;
};

// A radio group the program holds as one value, stored in the file as one switch per choice:
// "1" selects that choice; "0" on the choice in force falls back to the factory choice (when the
// group has one), so a file with none on still gives a choice. One row for the whole group,
// with its choices' keys and values in reading order.
struct RadioGroup {
  std::string_view name;
  std::string_view section;
  int (*get)(const Application&);
  void (*set)(Application&, int);
  int factory;                                            // -1: "0" changes nothing
  int defaultChoice;                                      // the choice whose switch is on in a new project
  std::vector<std::pair<std::string_view, int>> choices;  // each choice's key and value
};

// One key of the project file: where it stands, its type, its factory default, the variable it
// fills and how the file's reader and writer treat it.
// Reading, writing, listing and `--set KEY=VALUE` all go through this table. A key that no
// feature of the program uses yet is still read, held (Globals::HeldSettings) and written back,
// so a project made by a fuller version of the program loses nothing here.
struct SettingDef {
  std::string_view section;
  std::string_view key;  // the name it is read under (or, for a key only written, written)
  SettingType type = SettingType::String;
  std::string_view defaultValue;  // the factory default, unless `computed`
  // The default is whatever the program holds before reading: a folder or a text the program
  // builds at start. So a project that lacks the key keeps the value already in force.
  bool computed = false;
  bool read = true;           // false: written for the record, never read back
  std::string_view writeKey;  // the name it is written under; empty: never written
  int writes = 1;             // how often the writer writes it (a second write changes nothing)
  std::size_t held = 0;       // its place in Globals::HeldSettings when no variable is bound
  SettingField field;
  // One choice of a radio group: the group and the value this key's switch stands for.
  const RadioGroup* radio = nullptr;
  int choice = 0;
  // Reader and writer quirks, each named where the row sets it (SettingsTable.cpp):
  // `index`: the entry of an array field (the sixteen custom sizes).
  int index = 0;
  // `onFor`: a switch written as "1" when its (number) field is one of these, "0" otherwise.
  std::vector<int> onFor;
  // `heldOnRead`: what is read is held, not put into the field, until the whole file is read
  // (the colour mode's switches); the field is what is written.
  bool heldOnRead = false;
  // `canvasSide`: 'w' or 'h', the work canvas's side, written for the record.
  char canvasSide = 0;
  // `monoInverts`: on only in monochrome, where turning it on or off is the inverted mode.
  bool monoInverts = false;
  // `mirror`: a second variable that takes the same value.
  SettingField mirror;
  // False: no variable of the program stands behind the key; its value is only held.
  bool Bound() const { return radio || (field.index() != 0 && !heldOnRead); }
  bool Readable() const { return radio || canvasSide || field.index() != 0; }
  // What the key takes. A value from the file outside these gives the default; a value given by
  // the user outside them is refused.
  int min = INT_MIN, max = INT_MAX;     // integers
  std::size_t maxLength = 0;            // strings: the field's length; 0 for no limit
  std::vector<std::string_view> words;  // strings: the only words it takes, when not empty
  // One choice of a radio group stored as one switch per choice: the group's name. Turning the
  // chosen one off chooses nothing, so only turning another on changes the group.
  std::string_view radioGroup;
  // Not to be changed by a user: why, and which option does it instead.
  std::string_view refusal;
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
const SettingDef* FindSetting(const SettingKey& key);
// The paging scheme's radio group: its choices' keys are also the command line's direction names.
const RadioGroup& PagingRadioGroup();

// A value the user gives for one run (`--set KEY=VALUE`, a settings panel field): a boolean is 0
// or 1, an integer a whole number within the key's range, a string no longer than its field and,
// for a key of words, one of them. False with a message in `error` when the key is unknown, the
// value is not one the key takes, the key is part of the colour mode (its option sets it), or no
// feature reads it (it is only kept in the project file).
//
// `use` says what the value is for. Run: this run only, so a key that nothing in a run reads is
// refused. Session: the program's state until the project is next saved (the settings panel), so
// such a key is taken. Store: kept in the project file (`settings set`), so a key whose value
// would not come back from the file is refused, and a key read into several places sets them all.
enum class SettingUse { Run, Session, Store };
bool ApplySetting(Application& app, std::string_view key, const std::string& value, std::string& error,
                  SettingUse use = SettingUse::Run);
inline bool StoreSetting(Application& app, std::string_view key, const std::string& value, std::string& error) {
  return ApplySetting(app, key, value, error, SettingUse::Store);
}
// Empty when `value` is one `def` takes from a user, else why not.
std::string CheckSettingValue(const SettingDef& def, const std::string& value);
// Every key read from the project file, once, as "[SECTION] KEY=VALUE", in reading order: what
// `settings list` shows.
std::vector<std::string> ListSettings(const Application& app);
// The keys whose value differs from the factory's, as "[SECTION] KEY=VALUE (factory: X)", in
// reading order: what `settings diff` shows. `factory` is a program that read an empty project
// (the factory state, switches the colour mode implies included). Keys whose default the program
// builds at start (the folders, window places) have no factory value of their own and are left out.
std::vector<std::string> DiffSettings(const Application& app, const Application& factory);
// Marks the keys a user may not set by name: the colour mode's switches (SettingRules.cpp).
void AddSettingRules(std::vector<SettingDef>& table);
std::string GetSetting(const Application& app, const SettingDef& def);
void SetSetting(Application& app, const SettingDef& def, const std::string& value);

// The colour mode that the colour mode switches just read select, in the order the program tests
// them; 0 when none applies (then the mode in force stays).
int ColourModeFromSwitches(const Application& app);

}  // namespace rm
