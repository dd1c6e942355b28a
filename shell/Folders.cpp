#include "shell/Folders.h"

#include <cstdlib>
#include <fstream>

#include "engine/ProgramVersion.h"

namespace rm {

std::string HomeFolder() {
  if (const char* h = std::getenv("RASTERMILL_HOME"); h && *h) return h;
  if (const char* h = std::getenv("HOME"); h && *h) return h;
  return "/tmp";
}

std::string UserDirectory(const std::string& home, const std::string& key, const std::string& fallback) {
  // Lines look like: XDG_DOCUMENTS_DIR="$HOME/Documents"
  std::ifstream in(home + "/.config/user-dirs.dirs");
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(key + "=", 0) != 0) continue;
    std::string value = line.substr(key.size() + 1);
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
    if (value.rfind("$HOME", 0) == 0) value = home + value.substr(5);
    // A user directory set to the home folder itself means "none": keep the usual name.
    if (!value.empty() && value != home && value != home + "/") return value;
  }
  return home + "/" + fallback;
}

std::string ProgramVersionTag() {
  std::string tag = "V";
  for (const char* p = ProgramVersion(); *p; ++p)
    if (*p != '.') tag += *p;
  return tag;
}

}  // namespace rm
