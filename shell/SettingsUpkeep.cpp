// The settings around the project file: the usage counters, the factory restore and the two
// reports of the settings for humans.
#include <filesystem>
#include <optional>

#include "engine/InfoFile.h"
#include "shell/Application.h"
#include "shell/Folders.h"
#include "shell/ProjectLock.h"
#include "shell/SettingsTable.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

std::string Setting(const Application& app, const SettingKey& key) { return GetSetting(app, *FindSetting(key)); }

std::string LocalStamp(std::time_t t, const char* format) {
  std::tm tm{};
  localtime_r(&t, &tm);
  char text[32];
  std::strftime(text, sizeof text, format, &tm);
  return text;
}

}  // namespace

void TMainForm::ReadInfoFromRegistry() {
  Globals& g = app_.globals;
  UsageCounters& u = app_.usage;
  if (g.UsageFile.empty()) g.UsageFile = UsageCounters::DefaultPath();
  u.Load(g.UsageFile);
  if (!u.Exists()) u.SetCreated(FormatDateTime(app_.clock.Now()));
  // Every counter is present from the first start on, at 0 when new.
  for (std::string_view name : UsageCounters::kSessionCounters) u.Set(name, u.Get(name));
  for (std::string_view name : UsageCounters::kFeatureCounters) u.Set(name, u.Get(name));
  u.Add("la");
  g.FirstLaunches = u.Get("la") <= 2;
  // A session still marked running: the last one did not end through the quit sequence.
  if (u.Get("st") != 0) u.Add("sc");
  u.Set("st", 1);
  g.SessionStart = app_.clock.Now();
  std::string error;
  if (!u.Save(&error)) StatusBarAndLog(error);
}

void TMainForm::WriteDurationInRegistry() {
  UsageCounters& u = app_.usage;
  long long total = 86400LL * u.Get("dud") + 3600LL * u.Get("duh") + 60LL * u.Get("dum") + u.Get("dus");
  const std::time_t now = app_.clock.Now();
  if (now > app_.globals.SessionStart) total += now - app_.globals.SessionStart;
  app_.globals.SessionStart = now;
  u.Set("dud", static_cast<int>(total / 86400));
  u.Set("duh", static_cast<int>(total / 3600 % 24));
  u.Set("dum", static_cast<int>(total / 60 % 60));
  u.Set("dus", static_cast<int>(total % 60));
}

void TMainForm::WriteQuitInRegistry() {
  UsageCounters& u = app_.usage;
  WriteDurationInRegistry();
  u.Add("nq");
  u.Set("st", 0);
  u.Set("xc", app_.globals.ErrorCount);
  std::string error;
  if (!u.Save(&error)) StatusBarAndLog(error);
}

bool TMainForm::RestoreDefaultSettings1Click() {
  Globals& g = app_.globals;
  StatusBarAndLog("Quit and Restore Factory Settings Main Menu Item");
  if (app_.ui.MessageDlg(" Are you sure to want to quit and restore the factory settings ? ",
                         "Quit and Restore Default Settings ?", DlgType::Confirmation, {"Yes", "No"}) != "Yes")
    return false;
  // Before the program's folders are known there is nothing to restore (and no pointer to remove).
  if (g.InitsFolder.empty() || g.ActiveProject.empty()) return false;
  // No process of the program reads or writes the project and the pointer while they go.
  std::optional<ProjectLock> pointerLock(std::in_place, g.InitsFolder, ProjectLock::Mode::Exclusive);
  std::optional<ProjectLock> projectLock;
  if (pointerLock->Held()) projectLock.emplace(ProjectLock::ForFile(g.ActiveProject, ProjectLock::Mode::Exclusive));
  std::error_code ec;
  if (!pointerLock->Held() || !projectLock->Held() ||
      (fs::exists(g.ActiveProject, ec) && IsFileInUse(g.ActiveProject))) {
    projectLock.reset();
    pointerLock.reset();
    app_.ui.MessageDlg(" Settings file is opened by another application ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  // The user's only way back: the whole folder of the project, stamped with the local time.
  const std::time_t now = app_.clock.Now();
  const std::string versionSuffix = " " + ProgramVersionTag();
  g.FactoryBackupFolder = g.MyDocuments + "/Rastermill inits " + versionSuffix + " " + LocalStamp(now, "%d-%m-%y") +
                          " " + LocalStamp(now, "%H-%M-%S");
  const fs::path projectFolder = fs::path(g.ActiveProject).parent_path();
  fs::create_directories(g.FactoryBackupFolder, ec);
  fs::copy(projectFolder, g.FactoryBackupFolder, fs::copy_options::recursive | fs::copy_options::overwrite_existing,
           ec);
  // The factory state must outlast a run that ends without the quit that writes default.LCD (a
  // command line run): the old one goes, now that the backup holds it.
  const std::string defaultProject = g.InitsFolder + "default.LCD";
  if (fs::exists(fs::path(g.FactoryBackupFolder) / "default.LCD", ec)) fs::remove(defaultProject, ec);
  // The next start finds no pointer and starts as a first run: every key at its default.
  if (!fs::remove(g.InitsFolder + "Rastermill.ini", ec) || ec) {
    projectLock.reset();
    pointerLock.reset();
    app_.ui.MessageDlg(" Restoring factory settings has failed ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  return true;
}

std::vector<std::string> TMainForm::ConfChildSettings() const {
  std::vector<std::string> r = {" *** Config Strings ***"};
  // The settings panel's fields in the order it shows them. "Edit1" and "Edit3" are its two
  // unnamed line prefix fields.
  const std::pair<const char*, SettingKey> fields[] = {
      {"IncludeEdit=", keys::INCSYN},
      {"IncStartEdit=", keys::INCSSYN},
      {"IncEndEdit=", keys::INCESYN},
      {"FunctionPrefixEdit=", keys::FPREF},
      {"FunctionSuffixEdit=", keys::FSUFF},
      {"TouchPrefixEdit=", keys::tfp8},
      {"TouchSuffixEdit=", keys::tfp9},
      {"BeginEdit=", keys::LCDBS},
      {"EndEdit=", keys::ENDSYN},
      {"FillerEdit=", keys::tfp14},
      {"TouchEndEdit=", keys::tfp11},
      {"TouchBeginEdit=", keys::tfp10},
      {"SeparatorEdit=", keys::SEPASY},
      {"DelaySyntaxEdit=", keys::DELSYN},
      {"DelayStartEdit=", keys::DELSTA},
      {"DelayEndEdit=", keys::DELEND},
      {"LCDCompFunctionEdit=", keys::LCOMPS},
      {"LCDUnCompFunctionEdit=", keys::lcdUncomp},
      {"LCDStartEdit=", keys::LSTAS},
      {"LCDEndEdit=", keys::LENDS},
      {"Edit1=", keys::CPRE},
      {"Edit3=", keys::cpfr},
      {"SuffixEdit=", keys::VALSUF},
      {"PrefixEdit=", keys::VALpref},
      {"Underscore=", keys::usco},
      {"Col/Row Prefix= ", keys::fpar11},
      {"Col/Row Sufffix= ", keys::fpar12},
      {"Array Prefix= ", keys::fpar13},
      {"Array Sufffix= ", keys::fpar14},
      {"EOL string= ", keys::eolst},
      {"EOF Block string= ", keys::eofbl},
      {"Comment string= ", keys::cstrt},
      {"Separator string= ", keys::sepst},
  };
  for (const auto& [label, key] : fields) r.push_back(label + Setting(app_, key));
  r.push_back(" *** Postpro Config ***");
  r.push_back("PostProFile=" + Setting(app_, keys::pprof));
  r.push_back(" *** Config boolean ***");
  const std::pair<const char*, SettingKey> checks[] = {{"LCDsize Checked", keys::LCDSI},
                                                       {"Delay Checked", keys::DELAY},
                                                       {"Delay after last frame Checked", keys::DElas},
                                                       {"Clip unit Checked", keys::Ecli},
                                                       {"Size in data Checked", keys::WSIZE},
                                                       {"Position in data Checked", keys::WORIG}};
  for (const auto& [label, key] : checks)
    if (Setting(app_, key) != "0") r.push_back(label);
  r.push_back(" *** Config settings ***");
  for (const std::string& line : ReadConfig()) r.push_back(line);
  r.push_back(" *** end ***");
  return r;
}

std::vector<std::string> TMainForm::ReadConfig() const {
  const ConversionSession& s = app_.session;
  const Globals& g = app_.globals;
  std::vector<std::string> r;
  r.push_back(ModeInfoText(s.ModeNumber));
  r.push_back("Project = " + g.ActiveProject);
  r.push_back("H x W =" + std::to_string(app_.pixelForm.MatrixHeight()) + " x " +
              std::to_string(app_.pixelForm.MatrixWidth()));
  r.push_back(Setting(app_, keys::UMATB) != "0" ? "User defined Matrix" : "Predefined Matrix");
  r.push_back(DirectionInfoText(s.Direction));
  r.push_back("COM Baud : " + Setting(app_, keys::COMB));
  r.push_back(std::string("Rs485 : ") + (Setting(app_, keys::rs48) != "0" ? "Yes" : "No"));
  return r;
}

}  // namespace rm
