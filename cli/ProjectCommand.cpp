#include "cli/ProjectCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "cli/StdoutCheck.h"
#include "shell/Application.h"
#include "shell/CommandJobs.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;

void AddProjectCommands(CLI::App& c, ProjectOptions& o) {
  c.add_option("--project", o.project,
               "Work from this project file (.LCD) and its folder instead of the active project");
  c.add_flag("--yes", o.yes, "Answer Yes to the program's questions (the delete confirmation)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
  c.require_subcommand(1);
  c.fallthrough();
  c.add_subcommand("list", "The projects of the folder, one a line; '* ' marks the active one")->callback([&o] {
    o.action = "list";
  });
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
  c.add_subcommand("show", "The active project's path and a summary of its settings")->callback([&o] {
    o.action = "show";
  });
}

int RunProject(const ProjectOptions& o) {
  ConsoleUi ui(stderr, nullptr);
  ui.SetYes(o.yes);
  ui.SetVerbose(o.verbose);
  SystemClock clock;
  Application app(ui, clock);
  const JobOutcome outcome = RunProjectJob(app, {o.project, o.action, o.name, o.newName});
  if (!outcome.Done() || outcome.output.empty()) return Report(outcome);
  std::fputs(outcome.output.c_str(), stdout);
  return FinishStdout();
}

}  // namespace rmcli
