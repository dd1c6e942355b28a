#include "shell/Application.h"

#include <cstdlib>

#include "shell/ConsoleUi.h"
#include "shell/SettingsTable.h"

namespace rm {

Application::Application(UiPort& u, Clock& c)
    : frontUi(u),
      programUi(*this, u),
      ui(programUi),
      clock(c),
      pixelForm(programUi, session),
      encoder(session, mainText, auxLines, hex, programUi),
      mainForm(*this),
      imageForm(*this),
      exploForm2(*this),
      exploForm(*this) {
  globals.HeldSettings = FactoryHeldSettings();
  globals.DataFolders.push_back(ProgramDataFolder() + "/palettes");
  mainForm.RebuildColourTables();
}

std::string ProgramUi::MessageDlg(const std::string& text, const std::string& title, DlgType type,
                                  const std::vector<std::string>& buttons) {
  app_.logWindow.Add("Message :" + text);
  if (app_.globals.ConsoleMode) {
    app_.logWindow.Add(">> Message Dialog :" + text);
    return ConsoleUi::SafeButton(buttons);
  }
  return front_.MessageDlg(text, title, type, buttons);
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
