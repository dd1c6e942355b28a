#pragma once
#include <string>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Application;

// Brings `app` to the state the desktop program starts in: the program's folders found or made,
// and the settings of the active project read (or of `projectFile` when one is given), with the
// project's graphics header template (made when missing) as the session's template. Nothing
// is written to the project here. `forWriting` says the command will save the project: it then
// refuses a project held by another program, as the desktop does, and holds the settings folders
// alone until the process ends, so that the program's other processes neither read a half-done
// change nor lose theirs to it. False with a message in `error` when the project cannot be read.
bool OpenProject(Application& app, const std::string& projectFile, std::string& error, bool forWriting = false);

// Sets each "KEY=VALUE" of `settings` as the settings panel would, in order; a malformed one or
// a refused value stops with status 2.
JobOutcome ApplySettingOverrides(Application& app, const std::vector<std::string>& settings);

}  // namespace rm
