#include "shell/UsageCounters.h"

#include <cstdlib>
#include <filesystem>

#include "shell/Folders.h"

namespace rm {

namespace {
constexpr const char* kSection = "usage";
}

std::string UsageCounters::DefaultPath() {
  std::string config;
  const char* xdg = std::getenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("RASTERMILL_HOME");
  if (xdg && *xdg && !(home && *home))
    config = xdg;
  else
    config = HomeFolder() + "/.config";
  return config + "/rastermill/usage " + ProgramVersionTag() + ".ini";
}

void UsageCounters::Load(const std::string& path) {
  std::error_code ec;
  exists_ = std::filesystem::is_regular_file(path, ec);
  if (!file_.Load(path)) {
    // Unreadable counters are worth nothing: start again rather than refuse to count.
    file_.SetText("");
    file_.SetPath(path);
    exists_ = false;
  }
}

bool UsageCounters::Save(std::string* error) const {
  std::error_code ec;
  std::filesystem::create_directories(std::filesystem::path(file_.Path()).parent_path(), ec);
  return file_.Save(error);
}

int UsageCounters::Get(std::string_view name) const { return file_.ReadInteger(kSection, name, 0); }

void UsageCounters::Set(std::string_view name, int value) { file_.WriteInteger(kSection, name, value); }

std::string UsageCounters::Created() const { return file_.ReadString(kSection, "idt", ""); }

void UsageCounters::SetCreated(const std::string& text) { file_.WriteString(kSection, "idt", text); }

}  // namespace rm
