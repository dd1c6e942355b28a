// What each key of the project file takes from a user, and the keys a user may not set by name.
// A user's value is refused with the reason rather than taken and lost: a key is either applied
// (and, for `settings set`, kept) or refused with a message that names the option that does it.
#include <charconv>
#include <string>

#include "shell/Application.h"
#include "shell/IniFile.h"
#include "shell/SettingsTable.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace {

// The colour mode is chosen as a whole; its switches are written from the mode in force.
constexpr std::pair<SettingKey, std::string_view> kColourSwitches[] = {
    {keys::Monc, "is the colour mode: use --mode mono"},
    {keys::Moni, "is the colour mode: use --mode mono-inv"},
    {keys::G4, "is the colour mode: use --mode gray4"},
    {keys::G42, "is the colour mode: use --mode gray4-2p"},
    {keys::G16, "is the colour mode: use --mode gray16, gray16h or gray16-st7528"},
    {keys::RGRA, "is part of the colour mode: use --mode gray16h"},
    {keys::ST7, "is part of the colour mode: use --mode gray16-st7528"},
    {keys::G32, "is the colour mode: use --mode gray32 or gray32r"},
    {keys::GRL32, "is the colour mode: use --mode gray32l"},
    {keys::G256, "is the colour mode: use --mode gray256"},
    {keys::C8, "is the colour mode: use --mode c8"},
    {keys::C16, "is the colour mode: use --mode c16"},
    {keys::C256, "is the colour mode: use --mode c256"},
    {keys::C256NP, "is the colour mode: use --mode c256"},
    {keys::C4096, "is the colour mode: use --mode c4096 or c4096u"},
    {keys::C65535, "is the colour mode: use --mode c65k"},
    {keys::C18, "is the colour mode: use --mode c262k"},
    {keys::C18u, "is the colour mode: use --mode c262ku"},
    {keys::C16M, "is the colour mode: use --mode c16m or c16m-alpha"},
    {keys::PM,
     "is part of the colour mode: use --mode c4096, gray32 or c16m (packed) or c4096u, gray32r, "
     "c16m-alpha"},
    {keys::Hpixels, "records the canvas height and is never read: set GHI"},
    {keys::Wpixels, "records the canvas width and is never read: set GWI"},
};

bool SameKey(const SettingDef& d, const SettingKey& key) {
  return IniFile::SameName(d.section, key.section) && IniFile::SameName(d.key, key.key);
}

bool ReadWhole(const std::string& v, long long& n) {
  const char* e = v.data() + v.size();
  const auto r = std::from_chars(v.data(), e, n);
  return !v.empty() && r.ec == std::errc() && r.ptr == e;
}

// Why a value set by name would not come back from the project file; empty when it would.
std::string NotKept(const SettingDef& d) {
  const std::string key(d.key);
  if (!d.read) return key + " is written for the record and never read back";
  if (d.writeKey.empty()) return key + " is read but never saved: it takes its default at each start";
  if (d.writeKey != d.key)
    return key + " is saved as " + std::string(d.writeKey) +
           ", which is not read back: it takes its default at each start";
  // Another key saved under the same name after it (the font's end string over the graphic one).
  bool after = false;
  for (const SettingDef* w : SettingsWriteOrder()) {
    if (w == &d)
      after = true;
    else if (after && IniFile::SameName(w->section, d.section) && IniFile::SameName(w->writeKey, d.writeKey) &&
             !IniFile::SameName(w->key, d.key))
      return key + " is saved over by " + std::string(w->key) + ": it comes back as that one";
  }
  return {};
}

}  // namespace

void AddSettingRules(std::vector<SettingDef>& table) {
  for (SettingDef& d : table) {
    for (const auto& [key, why] : kColourSwitches)
      if (SameKey(d, key)) d.refusal = why;
  }
}

std::string CheckSettingValue(const SettingDef& d, const std::string& value) {
  const std::string key(d.key);
  long long n = 0;
  switch (d.type) {
    case SettingType::Boolean:
      if (value != "0" && value != "1") return key + " takes 0 or 1, not \"" + value + "\"";
      break;
    case SettingType::Integer:
      if (!ReadWhole(value, n)) return key + " takes a whole number, not \"" + value + "\"";
      if (n < d.min || n > d.max)
        return key + " takes " + std::to_string(d.min) + " to " + std::to_string(d.max) + ", not " + value;
      break;
    case SettingType::String:
      if (!d.words.empty()) {
        bool found = false;
        std::string list;
        for (std::string_view w : d.words) {
          found = found || w == value;
          list += (list.empty() ? "" : ", ") + std::string(w);
        }
        if (!found) return key + " takes one of " + list + ", not \"" + value + "\"";
      }
      if (d.maxLength > 0 && value.size() > d.maxLength)
        return key + " takes at most " + std::to_string(d.maxLength) + " characters, not \"" + value + "\"";
      break;
  }
  return {};
}

bool ApplySetting(Application& app, std::string_view key, const std::string& value, std::string& error,
                  SettingUse use) {
  const SettingDef* def = FindSetting(key);
  if (!def) {
    error = "unknown setting key: " + std::string(key);
    return false;
  }
  const std::string name(def->key);
  if (!def->refusal.empty()) {
    error = name + " " + std::string(def->refusal);
    return false;
  }
  if (error = CheckSettingValue(*def, value); !error.empty()) return false;
  // The inverted output belongs to the monochrome modes: there it is the inverted mode.
  if (def->monoInverts && value == "1" && !app.session.Monochrome) {
    error = "Neg inverts monochrome output only: use --mode mono-inv";
    return false;
  }
  if (!def->radioGroup.empty() && value == "0" && GetSetting(app, *def) == "1") {
    error = name + " is the choice in force of " + std::string(def->radioGroup) + ": set the choice wanted to 1";
    return false;
  }
  if (use == SettingUse::Run && !def->Bound()) {
    error = name + " has no effect on a run; it is only kept in the project file (rastermill settings set " + name +
            " VALUE)";
    return false;
  }
  if (use == SettingUse::Store) {
    if (error = NotKept(*def); !error.empty()) return false;
    // A key read into several places holds one value in the file.
    for (const SettingDef& d : SettingsTable())
      if (&d != def && IniFile::SameName(d.section, def->section) && IniFile::SameName(d.key, def->key))
        SetSetting(app, d, value);
  }
  SetSetting(app, *def, value);
  return true;
}

std::vector<std::string> ListSettings(const Application& app) {
  std::vector<std::string> lines;
  // A key read into several places (formp7) is listed once: the file holds one value.
  for (const SettingDef& def : SettingsTable())
    if (def.read && FindSetting(std::string(def.section) + "/" + std::string(def.key)) == &def)
      lines.push_back("[" + std::string(def.section) + "] " + std::string(def.key) + "=" + GetSetting(app, def));
  return lines;
}

std::vector<std::string> DiffSettings(const Application& app, const Application& factory) {
  std::vector<std::string> lines;
  for (const SettingDef& def : SettingsTable()) {
    if (!def.read || def.computed || FindSetting(std::string(def.section) + "/" + std::string(def.key)) != &def)
      continue;
    const std::string value = GetSetting(app, def), was = GetSetting(factory, def);
    if (value != was)
      lines.push_back("[" + std::string(def.section) + "] " + std::string(def.key) + "=" + value + " (factory: " + was +
                      ")");
  }
  return lines;
}

}  // namespace rm
