#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "shell/SettingsTable.h"

namespace rm {

class Application;

// What kind of control shows a field of the settings panel.
//  Text:   free text, cut to `maxLength` characters when that is above 0.
//  Number: a whole number; the control offers `minimum` to `maximum`.
//  Switch: "1" on, "0" off.
//  Choice: one of `choices`, by its caption.
enum class ConfigFieldKind { Text, Number, Switch, Choice };

// One control of the settings panel. The panel keeps no value of its own: `Value` reads the
// program's variable and `SetValue` writes it at once.
struct ConfigField {
  std::string_view id;     // a stable name, for the front end's controls
  std::string_view tab;    // the tab it stands on
  std::string_view group;  // the group box inside the tab
  std::string_view label;  // its caption, as the panel shows it
  ConfigFieldKind kind = ConfigFieldKind::Text;
  // The project key it edits as it stands; empty when the field goes through its own getter and
  // setter (a radio group stored as several keys, or a variable with no key).
  SettingKey key;
  int maxLength = 0;
  int minimum = 0;
  int maximum = 0;
  std::vector<std::string_view> choices;
  // Both null: the key's value through the settings table. A setter returns false when the
  // value cannot be taken; nothing changes then.
  std::string (*get)(const Application&) = nullptr;
  bool (*set)(Application&, const std::string&) = nullptr;
  // The setter logs a text of its own; the panel's generic log line is left out.
  bool logsItself = false;
};

// The settings panel, headless: its tabs of fields built from one table, the bit rearrangement
// grid, the header template editor and the palette commands. Every change is applied to the
// program at once and logged through TMainForm::StatusBarAndLog.
class TConfigChildWin {
 public:
  explicit TConfigChildWin(Application& app) : app_(app) {}

  // Tab captions, as the panel shows them; each is also what entering it logs.
  static constexpr std::string_view kTableOutputTab = "Table Output Settings";
  static constexpr std::string_view kRearrangeTab = "Rearrange Tab";
  static constexpr std::string_view kIncludeHeaderTab = "Edit Include Header Tab";
  static constexpr std::string_view kHeaderTemplateTab = "Header Template";
  static constexpr std::string_view kPalettesTab = "Color Palettes";

  // The tabs in the order the panel shows them.
  static const std::vector<std::string_view>& Tabs();
  // Every field, tab by tab, in the order the panel shows them.
  static const std::vector<ConfigField>& Fields();
  static const ConfigField* FindField(std::string_view id);

  std::string Value(const ConfigField& field) const;
  // Applies a control's value and logs the change. False (nothing changed, nothing logged) when
  // the value cannot be taken: a number that is no number, a choice that is none of the list,
  // or an unknown field id.
  bool SetValue(const ConfigField& field, const std::string& value);
  bool SetValue(std::string_view id, const std::string& value);
  // The panel shows another tab: the tab's caption goes to the log.
  void TabEntered(std::string_view tab);

  // ---- Rearrange grid: 32 rows of Function, Bit Number, Bit Number ----
  static constexpr int kReorderRows = 32;
  // The project keeps the first rows only, in its "BS0" section.
  static constexpr int kStoredReorderRows = 17;
  // The Function column's choices; the empty one ends the table.
  static const std::vector<std::string>& ReorderFunctions();
  // The Bit Number columns' choices: 0 up to the mode's bit width.
  std::vector<std::string> ReorderBitNumbers() const;
  std::string ReorderCell(int row, int column) const;  // column 0 Function, 1 and 2 the bits
  void SetReorderCell(int row, int column, const std::string& text);
  // "[ON]" or "[OFF]", as the switch is shown.
  std::string ReorderStateText() const;
  // Reads the grid from the project's stored rows (after a project is read).
  void Reloadreorder();

  // ---- Header template editor ----
  // The five templates of a project: graphics, then the font structures.
  static const std::vector<std::string_view>& HeaderTemplateNames();
  std::string HeaderTemplatePath(int index) const;  // empty when no project is active
  // The file's lines; the factory text when the file is missing or unreadable.
  std::vector<std::string> LoadHeaderTemplate(int index) const;
  static std::vector<std::string> FactoryHeaderTemplate(int index);
  // Writes the lines through a temporary file and leaves the edit mode. A saved graphics
  // template is the one the next conversion uses. False, after telling the user, when the file
  // is held by another program or cannot be written.
  bool SaveHeaderTemplate(int index, const std::vector<std::string>& lines);
  // The editor's Edit button: enters the header edit mode (when no other special mode is in the
  // way) or leaves it. Returns whether the mode is on afterwards.
  bool EditHeaderButtonClick();
  bool HeaderEditMode() const;

  // ---- Palettes ----
  std::string PaletteLabel() const;
  // Colours in the table of the mode in force (0 for modes without one).
  int PaletteColourCount() const;
  // Makes the project's custom palette from a picture's colours and loads it.
  bool LoadCustomPalette(const std::string& picturePath);
  // The table in force as a .pal text file.
  bool ExportPaletteText(const std::string& path);
  // Drops the project's custom palette of the mode's colour count (after the user agrees), so
  // the default palette applies again.
  bool UseDefaultPalette();
  // "Export RGB Palette to Color Look-up Table (CLUT)".
  bool ExportClut();

 private:
  void StoreReorder();
  Application& app_;
};

}  // namespace rm
