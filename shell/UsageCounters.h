#pragma once
#include <ctime>
#include <string>
#include <string_view>

#include "shell/IniFile.h"

namespace rm {

// How often the program was started, quit, and used for what: a small per-user file, one per
// version of the program. Nothing the user chose lives here, and the program works the same
// without it; only the rule on sessions that did not end (st, sc) and the first launches (la)
// have an effect.
class UsageCounters {
 public:
  // The counters of one function each, counted during a session and added at quit.
  static constexpr std::string_view kFeatureCounters[] = {
      "ic",    "vic",   "batc",   "precl",   "tco",    "pr",     "im",    "ta",    "cic",  "icm",   "icg4",
      "fcv",   "scom",  "icg16",  "icg16H",  "icg32",  "icg256", "ic256", "icc16", "icc8", "idith", "iupd",
      "icc25", "icc4k", "icc65k", "icc262k", "iccRGB", "fc",     "Sfc",   "tc",    "ec",   "svc",   "exc",
      "kec",   "pc",    "gpc",    "ac",      "imc",    "trc",    "sap",   "sapa",  "uvec", "vecIn", "un"};
  // The counters with a rule of their own.
  static constexpr std::string_view kSessionCounters[] = {"dud", "duh", "dum", "dus", "la",
                                                          "st",  "sc",  "nv",  "nq",  "xc"};

  // The file of this user and version: under $XDG_CONFIG_HOME (or ~/.config; RASTERMILL_HOME
  // replaces the home folder as everywhere) "rastermill/usage <version tag>.ini".
  static std::string DefaultPath();

  // Reads the file; a missing or unreadable one is an empty set of counters.
  void Load(const std::string& path);
  bool Save(std::string* error = nullptr) const;
  bool Exists() const { return exists_; }

  int Get(std::string_view name) const;
  void Set(std::string_view name, int value);
  void Add(std::string_view name, int n = 1) { Set(name, Get(name) + n); }
  std::string Created() const;  // the date and time the file was made, "" when unknown
  void SetCreated(const std::string& text);

 private:
  IniFile file_;
  bool exists_ = false;
};

}  // namespace rm
