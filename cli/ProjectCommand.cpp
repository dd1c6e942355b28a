#include "cli/ProjectCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

#include "cli/CliNames.h"
#include "cli/ProjectContext.h"
#include "cli/StdoutCheck.h"
#include "shell/ProjectLock.h"
#include "engine/ColourModes.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;
namespace fs = std::filesystem;

namespace {

int Fail(const std::string& text, int status = 1) {
  std::fprintf(stderr, "rastermill: %s\n", text.c_str());
  return status;
}

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

void Show(const Application& app) {
  const ConversionSession& s = app.session;
  const ColourModeInfo* mode = FindColourMode(s.ModeNumber);
  std::error_code ec;
  std::printf("project: %s\n", app.globals.ActiveProject.c_str());
  std::printf("folder: %s\n", app.exploForm.ProjectsFolder().c_str());
  std::printf("projects in folder: %zu\n", app.exploForm.ListAllProjects().size());
  std::printf("header template: %s%s\n", s.HeaderIncludeFile.c_str(),
              fs::exists(s.HeaderIncludeFile, ec) ? "" : " (missing)");
  std::printf("colour mode: %s (%s)\n", mode ? std::string(mode->shortName).c_str() : "?",
              mode ? std::string(mode->cliName).c_str() : "?");
  std::printf("paging: %s, origin %s, %s\n", NameOf(s.Direction).c_str(), NameOf(s.Origin).c_str(),
              s.BigEndian ? "MSB first" : "MSB last");
  std::printf("output: %s%s\n", OutputName(s.Output), s.Compression ? ", compressed" : "");
  std::printf("output folder: %s\n", s.OutputFolder.c_str());
}

}  // namespace

void AddProjectCommands(CLI::App& c, ProjectOptions& o) {
  c.add_option("--project", o.project,
               "Work from this project file (.LCD) and its folder instead of the active project");
  c.add_flag("--yes", o.yes, "Answer Yes to the program's questions (the delete confirmation)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
  c.require_subcommand(1);
  c.fallthrough();
  c.add_subcommand("list", "The projects of the folder, one a line; '* ' marks the active one")
      ->callback([&o] { o.action = "list"; });
  c.add_subcommand("new",
                   "Save the present settings as a new project (\"New Project.LCD\", \"New Project(1).LCD\" "
                   "...) and make it the active one; prints its name")
      ->callback([&o] { o.action = "new"; });
  auto* activate = c.add_subcommand("activate", "Save the active project, then make NAME the active one");
  activate->add_option("NAME", o.name, "Project name, with or without .LCD")->required();
  activate->callback([&o] { o.action = "activate"; });
  auto* rename = c.add_subcommand("rename", "Rename a project and its graphics template");
  rename->add_option("OLD", o.name, "Project to rename")->required();
  rename->add_option("NEW", o.newName, "New name; .LCD is added when missing")->required();
  rename->callback([&o] { o.action = "rename"; });
  auto* remove =
      c.add_subcommand("delete", "Delete a project, its graphics template and its palettes (asks; see --yes)");
  remove->add_option("NAME", o.name, "Project to delete")->required();
  remove->callback([&o] { o.action = "delete"; });
  c.add_subcommand("show", "The active project's path and a summary of its settings")
      ->callback([&o] { o.action = "show"; });
}

int RunProject(const ProjectOptions& o) {
  ConsoleUi ui(stderr, nullptr);
  ui.SetYes(o.yes);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  std::string error;
  const bool changes = o.action != "list" && o.action != "show";
  if (!OpenProject(app, o.project, error, changes)) return Fail(error);
  // The default project always exists: on the first run it is written here, as the desktop
  // program writes it at its first quit. Looked for again under the lock: another process may
  // have made it, with settings of its own, since it was read.
  std::error_code ec;
  if (!fs::exists(app.globals.ActiveProject, ec)) {
    ProjectLock lock = ProjectLock::ForFile(app.globals.ActiveProject, ProjectLock::Mode::Exclusive);
    if (!lock.Held()) return Fail(lock.Error());
    if (!fs::exists(app.globals.ActiveProject, ec) && !app.mainForm.SaveConfigurationX(&error))
      return Fail("project file could not be written: " + app.globals.ActiveProject + ": " + error);
  }

  TExploForm& explorer = app.exploForm;
  const std::string name = ProjectFileName(o.name);
  // The program offers only the projects of its list; a name typed on the command line is
  // checked against it first.
  if ((o.action == "activate" || o.action == "rename" || o.action == "delete") && !name.empty() &&
      !fs::is_regular_file(explorer.ProjectsFolder() + name, ec))
    return Fail("no project named \"" + name + "\" in " + explorer.ProjectsFolder());

  if (o.action == "list") {
    for (const auto& n : explorer.ListAllProjects())
      std::printf("%s%s\n", explorer.ProjectsFolder() + n == app.globals.ActiveProject ? "* " : "  ", n.c_str());
    return FinishStdout();
  }
  if (o.action == "show") {
    Show(app);
    return FinishStdout();
  }
  if (o.action == "new") {
    const std::string made = explorer.SaveAsNewProject();
    if (made.empty()) return 1;
    std::printf("%s\n", made.c_str());
    return FinishStdout();
  }
  if (o.action == "activate") return explorer.ActivateProject(name) ? 0 : 1;
  if (o.action == "rename") return explorer.ProjectViewEdited(name, o.newName) ? 0 : 1;
  if (o.action == "delete") return explorer.MenuItem6Click(name) ? 0 : 1;
  return 2;
}

}  // namespace rmcli
