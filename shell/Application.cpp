#include "shell/Application.h"

#include <cstdlib>

#include "shell/SettingsTable.h"

namespace rm {

Application::Application(UiPort& u, Clock& c)
    : ui(u),
      clock(c),
      encoder(session, mainText, auxLines, hex, u),
      mainForm(*this),
      imageForm(*this),
      exploForm2(*this),
      exploForm(*this) {
  globals.HeldSettings = FactoryHeldSettings();
  globals.DataFolders.push_back(ProgramDataFolder() + "/palettes");
  mainForm.RebuildColourTables();
}

PaletteFolders Application::Folders() const {
  PaletteFolders f;
  f.ActiveProject = globals.ActiveProject;
  if (!globals.InitsFolder.empty()) f.DefaultFolders.push_back(globals.InitsFolder);
  for (const auto& d : globals.DataFolders) f.DefaultFolders.push_back(d);
  return f;
}

std::string ProgramDataFolder() {
  if (const char* d = std::getenv("RASTERMILL_DATA"); d && *d) return d;
  return RASTERMILL_DATA_DIR;
}

}  // namespace rm
