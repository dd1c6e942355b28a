#include "shell/CommandJobs.h"

#include <filesystem>

#include "engine/ColourModes.h"
#include "shell/Application.h"
#include "shell/CommandNames.h"
#include "shell/ProjectContext.h"
#include "shell/ProjectLock.h"

namespace rm {

namespace fs = std::filesystem;

JobOutcome ExportClut(Application& app, const ClutRequest& r) {
  const ColourModeInfo* info = FindColourModeByCliName(r.mode);
  if (!info) return JobOutcome::Failed("unknown mode: " + r.mode, 2);
  std::string error;
  // The project's syntax, palettes and template; read only.
  if (!OpenProject(app, r.project, error)) return JobOutcome::Failed(error);
  app.mainForm.SetColourMode(info->modeNumber, true);
  if (JobOutcome set = ApplySettingOverrides(app, r.settings); !set.Done()) return set;
  if (!r.templateFile.empty()) app.session.HeaderIncludeFile = r.templateFile;
  if (app.session.PaletteTable.empty()) return JobOutcome::Failed("the " + r.mode + " palette could not be loaded");
  if (!app.mainForm.ExportColorPaletteAsArray3Click()) return JobOutcome::Failed("no colour table was written");
  JobOutcome done;
  done.output = app.mainText.Text();
  return done;
}

JobOutcome RestoreFactorySettings(Application& app) {
  if (!app.mainForm.RestoreDefaultSettings1Click()) return JobOutcome::Failed("the factory settings were not restored");
  JobOutcome done;
  done.output = app.globals.FactoryBackupFolder;
  return done;
}

JobOutcome SaveProjectSettings(Application& app) {
  if (!app.mainForm.SaveConfigurationX())
    return JobOutcome::Failed("the project was not saved: " + app.globals.ActiveProject);
  return {};
}

namespace {

// "board" names the project file "board.LCD", as the list shows it.
std::string ProjectFileName(const std::string& name) {
  if (name.empty() || TExploForm::HasProjectExtension(name)) return name;
  return name + ".LCD";
}

const char* OutputName(OutputKind k) {
  switch (k) {
    case OutputKind::Bits8: return "8 bit text";
    case OutputKind::Bits16: return "16 bit text";
    case OutputKind::Bits32: return "32 bit text";
    case OutputKind::BinaryFile: return "binary";
    case OutputKind::IntelHex: return "Intel HEX";
  }
  return "?";
}

std::string Summary(Application& app) {
  const ConversionSession& s = app.session;
  const ColourModeInfo* mode = FindColourMode(s.ModeNumber);
  std::error_code ec;
  const std::string shortName = mode ? std::string(mode->shortName) : "?";
  const std::string cliName = mode ? std::string(mode->cliName) : "?";
  return "project: " + app.globals.ActiveProject + "\n" +                                          //
         "folder: " + app.exploForm.ProjectsFolder() + "\n" +                                      //
         "projects in folder: " + std::to_string(app.exploForm.ListAllProjects().size()) + "\n" +  //
         "header template: " + s.HeaderIncludeFile + (fs::exists(s.HeaderIncludeFile, ec) ? "" : " (missing)") + "\n" +
         "colour mode: " + shortName + " (" + cliName + ")\n" +  //
         "paging: " + NameOf(s.Direction) + ", origin " + NameOf(s.Origin) + ", " +
         (s.BigEndian ? "MSB first" : "MSB last") + "\n" +                                   //
         "output: " + OutputName(s.Output) + (s.Compression ? ", compressed" : "") + "\n" +  //
         "output folder: " + s.OutputFolder + "\n";
}

JobOutcome Refused() { return JobOutcome::Failed("", 1); }

}  // namespace

JobOutcome RunProjectJob(Application& app, const ProjectRequest& r) {
  std::string error;
  const bool changes = r.action != "list" && r.action != "show";
  if (!OpenProject(app, r.project, error, changes)) return JobOutcome::Failed(error);
  // The default project always exists: on the first run it is written here, as the desktop
  // program writes it at its first quit. Looked for again under the lock: another process may
  // have made it, with settings of its own, since it was read.
  std::error_code ec;
  if (!fs::exists(app.globals.ActiveProject, ec)) {
    ProjectLock lock = ProjectLock::ForFile(app.globals.ActiveProject, ProjectLock::Mode::Exclusive);
    if (!lock.Held()) return JobOutcome::Failed(lock.Error());
    if (!fs::exists(app.globals.ActiveProject, ec) && !app.mainForm.SaveConfigurationX(&error))
      return JobOutcome::Failed("project file could not be written: " + app.globals.ActiveProject + ": " + error);
  }

  TExploForm& explorer = app.exploForm;
  const std::string name = ProjectFileName(r.name);
  // The program offers only the projects of its list; a name typed on the command line is
  // checked against it first.
  if ((r.action == "activate" || r.action == "rename" || r.action == "delete") && !name.empty() &&
      !fs::is_regular_file(explorer.ProjectsFolder() + name, ec))
    return JobOutcome::Failed("no project named \"" + name + "\" in " + explorer.ProjectsFolder());

  JobOutcome done;
  if (r.action == "list") {
    for (const auto& n : explorer.ListAllProjects())
      done.output += (explorer.ProjectsFolder() + n == app.globals.ActiveProject ? "* " : "  ") + n + "\n";
    return done;
  }
  if (r.action == "show") {
    done.output = Summary(app);
    return done;
  }
  if (r.action == "new") {
    const std::string made = explorer.SaveAsNewProject();
    if (made.empty()) return Refused();
    done.output = made + "\n";
    return done;
  }
  if (r.action == "activate") return explorer.ActivateProject(name) ? done : Refused();
  if (r.action == "rename") return explorer.ProjectViewEdited(name, r.newName) ? done : Refused();
  if (r.action == "delete") return explorer.MenuItem6Click(name) ? done : Refused();
  return JobOutcome::Failed("", 2);
}

}  // namespace rm
