#pragma once
#include <string>

namespace rm {

// The folders the program keeps its settings and projects in, found the way the desktop does:
// the user's home (or RASTERMILL_HOME, which replaces it for everything, for tests, CI and
// portable setups), the documents and pictures folders of the XDG user directories.
std::string HomeFolder();
// An XDG user directory ("XDG_DOCUMENTS_DIR", ...) as ~/.config/user-dirs.dirs names it, else
// home + "/" + `fallback`.
std::string UserDirectory(const std::string& home, const std::string& key, const std::string& fallback);

// The settings of one version of the program live in a folder of their own, so that a new version
// starts fresh and an older one is not disturbed.
std::string ProgramVersionTag();

// The five folders under the project root, in the order the folder roles use them.
inline constexpr const char* kProjectSubfolders[] = {"Output Files", "Fonts", "Touch Panel", "Documents",
                                                     "Batch Files"};

}  // namespace rm
