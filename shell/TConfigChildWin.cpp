#include "shell/TConfigChildWin.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <climits>
#include <filesystem>
#include <optional>

#include "engine/Palette.h"
#include "engine/TextLines.h"
#include "shell/Application.h"
#include "shell/SettingsTable.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

using A = Application;
using CA = const Application;
using K = ConfigFieldKind;

constexpr std::string_view kDataArrayGroup = "Data Array Settings ( Images and Fonts )";
constexpr std::string_view kRearrangeGroup = "Rearrange Settings";
constexpr std::string_view kSourceHeaderGroup = "Source File Header";
constexpr std::string_view kPaletteGroup = "Color Palette";

std::optional<int> WholeNumber(const std::string& text) {
  int n = 0;
  const char* b = text.data();
  const char* e = b + text.size();
  auto r = std::from_chars(b, e, n);
  if (r.ec != std::errc() || r.ptr != e || text.empty()) return std::nullopt;
  return n;
}

std::string OnOff(bool on) { return on ? "1" : "0"; }
bool IsOn(const std::string& v) {
  const auto n = WholeNumber(v);
  return n && *n != 0;
}
bool IsSwitchText(const std::string& v) { return WholeNumber(v).has_value(); }

// A choice caption and the variable value it stands for.
struct ChoiceMap {
  std::string_view caption;
  std::string_view value;
};

// The number format captions of "Data Format Options" and the format letters they select.
constexpr ChoiceMap kFormats[] = {{"0x+data", "X"},   {"data+H", "H"},    {"data+b", "B"},   {"0b+data", "0B"},
                                  {"a+HEX+b", "+H+"}, {"a+BIN+b", "+B+"}, {"a+DEC+b", "+D+"}};

constexpr std::string_view kNone = "none";
constexpr std::string_view kCustom = "custom string";

constexpr ChoiceMap kComments[] = {
    {"/* */", "C"}, {"//", "Slashes"}, {"'", "Quote"}, {";", "Semicolon"}, {kCustom, "Custom"}};
constexpr ChoiceMap kEols[] = {{",", "Comma"}, {";", "Semicolon"}, {kNone, "None"}, {kCustom, "Custom"}};

template <std::size_t N>
std::vector<std::string_view> Captions(const ChoiceMap (&map)[N]) {
  std::vector<std::string_view> c;
  for (const ChoiceMap& m : map) c.push_back(m.caption);
  return c;
}
template <std::size_t N>
const ChoiceMap* ByCaption(const ChoiceMap (&map)[N], std::string_view caption) {
  for (const ChoiceMap& m : map)
    if (m.caption == caption) return &m;
  return nullptr;
}
template <std::size_t N>
std::string CaptionOf(const ChoiceMap (&map)[N], std::string_view value) {
  for (const ChoiceMap& m : map)
    if (m.value == value) return std::string(m.caption);
  return {};
}

const char* CommentName(CommentForm f) {
  switch (f) {
    case CommentForm::C: return "C";
    case CommentForm::Slashes: return "Slashes";
    case CommentForm::Quote: return "Quote";
    case CommentForm::Semicolon: return "Semicolon";
    case CommentForm::Custom: return "Custom";
  }
  return "C";
}
const char* EolName(EndOfLine e) {
  switch (e) {
    case EndOfLine::Comma: return "Comma";
    case EndOfLine::Semicolon: return "Semicolon";
    case EndOfLine::None: return "None";
    case EndOfLine::Custom: return "Custom";
  }
  return "Comma";
}

// A field that edits one project key as it stands; its control, length and range come from the
// key's row: a switch for a boolean, a number for an integer, text for a string.
ConfigField KeyField(std::string_view tab, std::string_view group, std::string_view label, const SettingKey& key) {
  ConfigField f;
  f.id = key.key;
  f.tab = tab;
  f.group = group;
  f.label = label;
  f.key = key;
  if (const SettingDef* def = FindSetting(key)) {
    f.kind = def->type == SettingType::Boolean ? K::Switch : def->type == SettingType::Integer ? K::Number : K::Text;
    f.maxLength = static_cast<int>(def->maxLength);
    if (def->type == SettingType::Integer && (def->min != INT_MIN || def->max != INT_MAX)) {
      f.minimum = def->min;
      f.maximum = def->max;
    }
  }
  return f;
}

ConfigField OwnField(std::string_view id, std::string_view tab, std::string_view group, std::string_view label, K kind,
                     std::string (*get)(const Application&), bool (*set)(Application&, const std::string&)) {
  ConfigField f;
  f.id = id;
  f.tab = tab;
  f.group = group;
  f.label = label;
  f.kind = kind;
  f.get = get;
  f.set = set;
  return f;
}

ConfigField Output(std::string_view label, const SettingKey& key) {
  return KeyField(TConfigChildWin::kTableOutputTab, kDataArrayGroup, label, key);
}
ConfigField Header(std::string_view label, const SettingKey& key) {
  return KeyField(TConfigChildWin::kIncludeHeaderTab, kSourceHeaderGroup, label, key);
}

std::vector<ConfigField> BuildFields() {
  std::vector<ConfigField> f;
  const std::string_view out = TConfigChildWin::kTableOutputTab;

  ConfigField format = OwnField(
      keys::FXHB.key, out, kDataArrayGroup, "Data Format Options", K::Choice,
      [](CA& a) { return CaptionOf(kFormats, a.session.Syntax.DataFormatKind); },
      [](A& a, const std::string& v) {
        const ChoiceMap* m = ByCaption(kFormats, v);
        if (!m) return false;
        a.session.Syntax.DataFormatKind = std::string(m->value);
        return true;
      });
  format.key = keys::FXHB;
  format.choices = Captions(kFormats);
  f.push_back(format);
  f.push_back(Output("Data Format Prefix (a)", keys::VALpref));
  f.push_back(Output("Data Format Suffix (b)", keys::VALSUF));
  f.push_back(Output("Space Between Data", keys::WithSp));

  ConfigField perLine = OwnField(
      keys::ORGC.key, out, kDataArrayGroup, "Data Bytes per line", K::Number,
      [](CA& a) { return std::to_string(a.session.Syntax.DataPerLine); },
      [](A& a, const std::string& v) {
        const auto n = WholeNumber(v);
        if (!n) return false;  // not a number: the last value stays
        // A line needs room for a datum and its separator, and must stay readable.
        a.mainForm.SetDataPerLine(*n <= 0 ? 2 : std::min(*n, 150));
        return true;
      });
  perLine.key = keys::ORGC;
  perLine.minimum = 0;
  perLine.maximum = 150;
  f.push_back(perLine);

  ConfigField separator = OwnField(
      "COMA", out, kDataArrayGroup, "Data Separator and End of Data Char", K::Choice,
      [](CA& a) {
        const DataSyntax& s = a.session.Syntax;
        return std::string(!s.SeparatorOn ? kNone : s.SeparatorCustom ? kCustom : ",");
      },
      [](A& a, const std::string& v) {
        DataSyntax& s = a.session.Syntax;
        if (v != kNone && v != kCustom && v != ",") return false;
        s.SeparatorOn = v != kNone;
        s.SeparatorCustom = v == kCustom;
        s.SeparatorComma = v == ",";
        return true;
      });
  separator.choices = {kNone, ",", kCustom};
  f.push_back(separator);
  f.push_back(Output("Custom Separator String", keys::sepst));

  ConfigField eol = OwnField(
      "Eol", out, kDataArrayGroup, "End Of Line Char", K::Choice,
      [](CA& a) { return CaptionOf(kEols, EolName(a.session.Syntax.Eol)); },
      [](A& a, const std::string& v) {
        const ChoiceMap* m = ByCaption(kEols, v);
        if (!m) return false;
        const std::string_view n = m->value;
        a.session.Syntax.Eol = n == "Comma"       ? EndOfLine::Comma
                               : n == "Semicolon" ? EndOfLine::Semicolon
                               : n == "None"      ? EndOfLine::None
                                                  : EndOfLine::Custom;
        return true;
      });
  eol.choices = Captions(kEols);
  f.push_back(eol);
  f.push_back(Output("Custom End Of Line String", keys::eolst));
  f.push_back(Output("Delete Very Last One", keys::dellas));
  f.push_back(Output("Delete All Last Ones", keys::delallas));

  ConfigField comment = OwnField(
      "COM", out, kDataArrayGroup, "Prefix of Comments", K::Choice,
      [](CA& a) { return CaptionOf(kComments, CommentName(a.session.Syntax.Comment)); },
      [](A& a, const std::string& v) {
        const ChoiceMap* m = ByCaption(kComments, v);
        if (!m) return false;
        const std::string_view n = m->value;
        a.session.Syntax.Comment = n == "C"           ? CommentForm::C
                                   : n == "Slashes"   ? CommentForm::Slashes
                                   : n == "Quote"     ? CommentForm::Quote
                                   : n == "Semicolon" ? CommentForm::Semicolon
                                                      : CommentForm::Custom;
        return true;
      });
  comment.choices = Captions(kComments);
  f.push_back(comment);
  f.push_back(Output("Custom Comment Prefix", keys::cstrt));
  f.push_back(Output("No Comments", keys::Noonts));
  f.push_back(Output("No Data Comments", keys::Nodcom));
  f.push_back(Output("No Header", keys::Noh));
  f.push_back(Output("Hex leading 0> 0A..F", keys::Addof));
  f.push_back(Output("Line Numbers", keys::LineN));
  f.push_back(Output("Data Lines Prefix", keys::CPRE));
  f.push_back(Output("Prefix End", keys::cpfr));
  f.push_back(Output("Begin of Data", keys::begds));
  f.push_back(Output("End Of Data", keys::Endst));
  f.push_back(Output("Enable Group Setings", keys::ColRx));
  f.push_back(Output("Column/Row Prefix", keys::fpar11));
  f.push_back(Output("Column/Row Suffix", keys::fpar12));
  f.push_back(Output("Array Prefix", keys::fpar13));
  f.push_back(Output("Array Suffix", keys::fpar14));
  f.push_back(Output("Compression Prefix", keys::cprx));
  f.push_back(Output("Convert uint8_t", keys::CU8));

  // Rearrangement of the data bits.
  const std::string_view re = TConfigChildWin::kRearrangeTab;
  f.push_back(KeyField(re, kRearrangeGroup, "Rearrange Data Bits", keys::dore));
  f.push_back(KeyField(re, kRearrangeGroup, "Swap First and Last Data Bytes", keys::rgb2));
  f.push_back(OwnField(
      "SwapRedGreen", re, kRearrangeGroup, "Swap RED and GREEN in Data", K::Switch,
      [](CA& a) { return OnOff(a.session.SwapRedGreen); },
      [](A& a, const std::string& v) {
        if (!IsSwitchText(v)) return false;
        a.session.SwapRedGreen = IsOn(v);
        return true;
      }));
  f.push_back(KeyField(re, kRearrangeGroup, "RGBA", keys::RGBA));
  ConfigField nibble = OwnField(
      keys::snib.key, re, kRearrangeGroup, "Swap Nibble Bits (4+4)", K::Switch,
      [](CA& a) { return OnOff(a.session.SwapNibble); },
      [](A& a, const std::string& v) {
        if (!IsSwitchText(v)) return false;
        a.session.SwapNibble = IsOn(v);
        a.mainForm.StatusBarAndLog(a.session.SwapNibble ? "Swap Nibble ON" : "Swap Nibble OFF");
        return true;
      });
  nibble.key = keys::snib;
  nibble.logsItself = true;
  f.push_back(nibble);

  // The strings of the clip unit and the other generated source around the tables.
  f.push_back(Header("Include Syntax", keys::INCSYN));
  f.push_back(Header("Include Start", keys::INCSSYN));
  f.push_back(Header("Include End", keys::INCESYN));
  f.push_back(Header("Function Prefix", keys::FPREF));
  f.push_back(Header("Function Suffix", keys::FSUFF));
  f.push_back(Header("Begin", keys::LCDBS));
  f.push_back(Header("End", keys::ENDSYN));
  f.push_back(Header("Separator", keys::SEPASY));
  f.push_back(Header("Delay Function", keys::DELSYN));
  f.push_back(Header("Delay Start", keys::DELSTA));
  f.push_back(Header("Delay End", keys::DELEND));
  f.push_back(Header("Compressed Bitmap Function", keys::LCOMPS));
  f.push_back(Header("Bitmap Function", keys::lcdUncomp));
  f.push_back(Header("Bitmap Function Start", keys::LSTAS));
  f.push_back(Header("Bitmap Function End", keys::LENDS));

  f.push_back(OwnField(
      "RevertPalette", TConfigChildWin::kPalettesTab, kPaletteGroup,
      "Revert The Color Palette on Loading (first<>last Color)", K::Switch,
      [](CA& a) { return OnOff(a.session.RevertPaletteOnLoading); },
      [](A& a, const std::string& v) {
        if (!IsSwitchText(v)) return false;
        a.session.RevertPaletteOnLoading = IsOn(v);
        // The table in force is read again, so the next conversion sees the new order.
        a.mainForm.RebuildColourTables();
        return true;
      }));
  return f;
}

std::string Trimmed(std::string_view s) {
  const auto b = s.find_first_not_of(' ');
  if (b == std::string_view::npos) return {};
  return std::string(s.substr(b, s.find_last_not_of(' ') - b + 1));
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string t;
  for (const auto& l : lines) t += l + "\n";
  return t;
}

// The grid's cells are kept as "s" + row + column (1 to 3).
std::string ReorderKey(int row, int column) { return "s" + std::to_string(row) + std::to_string(column + 1); }

constexpr std::string_view kReorderSection = "BS0";

}  // namespace

const std::vector<std::string_view>& TConfigChildWin::Tabs() {
  static const std::vector<std::string_view> tabs = {kTableOutputTab, kRearrangeTab, kIncludeHeaderTab,
                                                     kHeaderTemplateTab, kPalettesTab};
  return tabs;
}

const std::vector<ConfigField>& TConfigChildWin::Fields() {
  static const std::vector<ConfigField> fields = BuildFields();
  return fields;
}

const ConfigField* TConfigChildWin::FindField(std::string_view id) {
  for (const ConfigField& f : Fields())
    if (f.id == id) return &f;
  return nullptr;
}

std::string TConfigChildWin::Value(const ConfigField& field) const {
  if (field.get) return field.get(app_);
  const SettingDef* def = FindSetting(field.key);
  return def ? GetSetting(app_, *def) : std::string();
}

bool TConfigChildWin::SetValue(std::string_view id, const std::string& value) {
  const ConfigField* f = FindField(id);
  return f && SetValue(*f, value);
}

bool TConfigChildWin::SetValue(const ConfigField& field, const std::string& value) {
  std::string v = value;
  if (field.kind == K::Text && field.maxLength > 0 && v.size() > static_cast<std::size_t>(field.maxLength))
    v.resize(static_cast<std::size_t>(field.maxLength));
  if (field.kind == K::Choice &&
      std::find(field.choices.begin(), field.choices.end(), std::string_view(v)) == field.choices.end())
    return false;
  if (field.set) {
    if (!field.set(app_, v)) return false;
  } else {
    std::string error;
    const std::string key = std::string(field.key.section) + "/" + std::string(field.key.key);
    if (!ApplySetting(app_, key, v, error, SettingUse::Session)) return false;
  }
  app_.globals.LastAction = std::string(field.label);
  if (!field.logsItself) {
    const std::string shown = field.kind == K::Switch ? (IsOn(v) ? "ON" : "OFF") : Value(field);
    app_.mainForm.StatusBarAndLog(Trimmed(field.label) + " : " + shown);
  }
  return true;
}

void TConfigChildWin::TabEntered(std::string_view tab) { app_.mainForm.StatusBarAndLog(std::string(tab)); }

// ---- Rearrange grid ---------------------------------------------------------------------------

const std::vector<std::string>& TConfigChildWin::ReorderFunctions() {
  static const std::vector<std::string> functions = {"", "swap bits", "swap bytes 16 bits"};
  return functions;
}

std::vector<std::string> TConfigChildWin::ReorderBitNumbers() const {
  std::vector<std::string> n;
  for (int i = 0; i < std::max(app_.session.CanvasBits, 1); ++i) n.push_back(std::to_string(i));
  return n;
}

std::string TConfigChildWin::ReorderCell(int row, int column) const {
  if (row < 0 || row >= kReorderRows) return {};
  const ReorderRow& r = app_.session.ReorderTable[static_cast<std::size_t>(row)];
  return column == 0 ? r.function : column == 1 ? r.bitA : column == 2 ? r.bitB : std::string();
}

void TConfigChildWin::SetReorderCell(int row, int column, const std::string& text) {
  if (row < 0 || row >= kReorderRows || column < 0 || column > 2) return;
  ReorderRow& r = app_.session.ReorderTable[static_cast<std::size_t>(row)];
  std::string& cell = column == 0 ? r.function : column == 1 ? r.bitA : r.bitB;
  if (cell == text) return;
  cell = text;
  StoreReorder();
  app_.mainForm.StatusBarAndLog("Rearrange row " + std::to_string(row) + " : " + r.function + " " + r.bitA + " " +
                                r.bitB);
}

std::string TConfigChildWin::ReorderStateText() const { return app_.session.ReorderOn ? "[ON]" : "[OFF]"; }

void TConfigChildWin::StoreReorder() {
  auto& sections = app_.globals.SearchReplaceSections;
  auto it = std::find_if(sections.begin(), sections.end(), [](const auto& s) { return s.first == kReorderSection; });
  if (it == sections.end()) {
    sections.emplace_back(std::string(kReorderSection), std::vector<std::pair<std::string, std::string>>{});
    it = sections.end() - 1;
  }
  auto& keys = it->second;
  keys.clear();
  for (int row = 0; row < kStoredReorderRows; ++row)
    for (int column = 0; column < 3; ++column) keys.emplace_back(ReorderKey(row, column), ReorderCell(row, column));
}

void TConfigChildWin::Reloadreorder() {
  auto& table = app_.session.ReorderTable;
  table.fill(ReorderRow{});
  for (const auto& [section, keys] : app_.globals.SearchReplaceSections) {
    if (section.size() != kReorderSection.size() ||
        !std::equal(section.begin(), section.end(), kReorderSection.begin(),
                    [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; }))
      continue;
    for (const auto& [key, value] : keys) {
      // "s" + row + column, the column being the last digit.
      if (key.size() < 3 || (key[0] != 's' && key[0] != 'S')) continue;
      const auto row = WholeNumber(key.substr(1, key.size() - 2));
      const int column = key.back() - '1';
      if (!row || *row < 0 || *row >= kStoredReorderRows || column < 0 || column > 2) continue;
      ReorderRow& r = table[static_cast<std::size_t>(*row)];
      (column == 0 ? r.function : column == 1 ? r.bitA : r.bitB) = value;
    }
  }
}

// ---- Header template editor --------------------------------------------------------------------

const std::vector<std::string_view>& TConfigChildWin::HeaderTemplateNames() {
  static const std::vector<std::string_view> names = {"Graphics", "Font Raw", "Font Structured", "Font DMD",
                                                      "Font Bloc"};
  return names;
}

std::string TConfigChildWin::HeaderTemplatePath(int index) const {
  if (index < 0 || index >= static_cast<int>(HeaderTemplateNames().size()) || app_.globals.ActiveProject.empty())
    return {};
  return TExploForm::ProjectStem(app_.globals.ActiveProject) +
         TExploForm::kHeaderTemplateSuffixes[static_cast<std::size_t>(index)];
}

std::vector<std::string> TConfigChildWin::FactoryHeaderTemplate(int index) {
  if (index < 0 || index >= static_cast<int>(HeaderTemplateNames().size())) return {};
  return TExploForm::DefaultHeaderTemplate(TExploForm::kHeaderTemplateSuffixes[static_cast<std::size_t>(index)]);
}

std::vector<std::string> TConfigChildWin::LoadHeaderTemplate(int index) const {
  const std::string path = HeaderTemplatePath(index);
  TextLines lines;
  if (!path.empty() && lines.LoadFromFile(path)) return lines.Lines();
  return FactoryHeaderTemplate(index);
}

bool TConfigChildWin::HeaderEditMode() const { return app_.globals.HeaderEditMode; }

bool TConfigChildWin::EditHeaderButtonClick() {
  Globals& g = app_.globals;
  g.LastAction = "Edit header template";
  if (!g.HeaderEditMode) {
    if (app_.exploForm.CheckMode(0)) return false;
    app_.exploForm2.EditHeaderButtonClick();
    app_.mainForm.StatusBarAndLog("Header template edit mode");
  } else {
    app_.exploForm2.EditHeaderButtonClick();
    app_.mainForm.StatusBarAndLog("Header template edit mode left");
  }
  return g.HeaderEditMode;
}

bool TConfigChildWin::SaveHeaderTemplate(int index, const std::vector<std::string>& lines) {
  app_.globals.LastAction = "Save header template";
  const std::string path = HeaderTemplatePath(index);
  if (path.empty()) {
    app_.ui.MessageDlg(" No active project : the header template cannot be saved ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  if (IsFileInUse(path)) {
    app_.ui.MessageDlg(" Header template file is opened by another application ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  std::string error;
  if (!WriteFileAtomically(path, JoinLines(lines), &error)) {
    app_.ui.MessageDlg(" Header template could not be saved ! \r Reason = " + error, "Error", DlgType::Error, {"OK"});
    return false;
  }
  app_.mainForm.StatusBarAndLog("Header template saved : " + path);
  if (index == 0) app_.exploForm.UseProjectHeaderTemplate();
  if (app_.globals.HeaderEditMode) EditHeaderButtonClick();
  return true;
}

// ---- Palettes ----------------------------------------------------------------------------------

std::string TConfigChildWin::PaletteLabel() const { return app_.globals.PaletteLabel; }

int TConfigChildWin::PaletteColourCount() const {
  const ConversionSession& s = app_.session;
  return static_cast<int>(s.PaletteSize > 0 ? s.PaletteTable.size() : s.ModeColours.size());
}

bool TConfigChildWin::LoadCustomPalette(const std::string& picturePath) {
  app_.globals.LastAction = "Load custom color palette";
  if (!app_.codecs) {
    app_.ui.MessageDlg(" No picture reader is available : custom palette load aborted ",
                       "Load Custom Color Palette Error", DlgType::Error, {"OK"});
    return false;
  }
  const auto path = LoadColorPalette(picturePath, app_.globals.ActiveProject, *app_.codecs, app_.ui);
  if (!path) return false;
  app_.mainForm.RebuildColourTables();
  app_.mainForm.StatusBarAndLog("Custom color palette created : " + *path);
  return true;
}

bool TConfigChildWin::ExportPaletteText(const std::string& path) {
  app_.globals.LastAction = "Export RGB Palette to Text File";
  const ConversionSession& s = app_.session;
  const std::vector<Colour>& table = s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours;
  if (table.empty()) {
    app_.ui.MessageDlg(" The current color mode has no color palette ! ", "Information", DlgType::Information, {"OK"});
    return false;
  }
  std::string error;
  if (!ExportPaletteToText(table, path, error)) {
    app_.ui.MessageDlg(" File could not be saved to disk, access denied ! \r Reason = " + error, "Error",
                       DlgType::Error, {"OK"});
    return false;
  }
  app_.mainForm.StatusBarAndLog("Color palette exported to : " + path);
  return true;
}

bool TConfigChildWin::UseDefaultPalette() {
  app_.globals.LastAction = "Use default color palette";
  const ConversionSession& s = app_.session;
  std::error_code ec;
  const std::string custom = s.PaletteSize > 0 && !app_.globals.ActiveProject.empty()
                                 ? CustomPaletteName(app_.globals.ActiveProject, s.PaletteSize)
                                 : std::string();
  if (custom.empty() || !fs::exists(custom, ec)) {
    app_.ui.MessageDlg(" This project has no custom color palette for the current color mode ! ", "Information",
                       DlgType::Information, {"OK"});
    return false;
  }
  if (app_.ui.MessageDlg(" Delete the custom color palette " + fs::path(custom).filename().string() +
                             " \r and use the default color palette ? ",
                         "Confirm", DlgType::Confirmation, {"Yes", "No"}) != "Yes")
    return false;
  if (!fs::remove(custom, ec)) {
    app_.ui.MessageDlg(" The custom color palette could not be deleted ! \r Reason = " + ec.message(), "Error",
                       DlgType::Error, {"OK"});
    return false;
  }
  app_.mainForm.RebuildColourTables();
  app_.mainForm.StatusBarAndLog("Custom color palette deleted : " + custom);
  return true;
}

bool TConfigChildWin::ExportClut() {
  app_.globals.LastAction = "Export RGB Palette to Color Look-up Table (CLUT)";
  return app_.mainForm.ExportColorPaletteAsArray3Click();
}

}  // namespace rm
