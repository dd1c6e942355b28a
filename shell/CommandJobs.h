#pragma once
#include <string>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Application;

// The jobs of the command line beside the conversion, each on a fresh program `app`.

// The colour mode's palette as a Color Look-up Table, in the syntax and template of the project.
struct ClutRequest {
  std::string mode = "c256";          // the command line's name of a colour mode with a palette
  std::string project;                // another project file than the active one
  std::vector<std::string> settings;  // KEY=VALUE over the project's settings
  std::string templateFile;           // another Header Include template
};
// The table's text as output.
JobOutcome ExportClut(Application& app, const ClutRequest& request);

// Backs up the active project's folder and forgets the active project; the output is the backup
// folder.
JobOutcome RestoreFactorySettings(Application& app);
// Saves the settings as they stand into the active project.
JobOutcome SaveProjectSettings(Application& app);

// The projects of the active project's folder.
struct ProjectRequest {
  std::string project;  // work from this project file instead of the active one
  std::string action;   // list, new, activate, rename, delete or show
  std::string name, newName;
};
// The output is the list, the summary or the new project's name, a line each; a refusal the
// program explained itself has status 1 and no reason.
JobOutcome RunProjectJob(Application& app, const ProjectRequest& request);

}  // namespace rm
