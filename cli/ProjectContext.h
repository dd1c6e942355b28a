#pragma once
#include <string>

namespace rm {
class Application;
}

namespace rmcli {

// Brings `app` to the state the desktop program starts in: the program's folders found or made,
// and the settings of the active project read (or of `projectFile` when one is given), with the
// project's graphics header template (made when missing) as the session's template. Nothing
// is written to the project here. `forWriting` says the command will save the project: it then
// refuses a project held by another program, as the desktop does, and holds the settings folders
// alone until the process ends, so that the program's other processes neither read a half-done
// change nor lose theirs to it. False with a message in `error` when the project cannot be read.
bool OpenProject(rm::Application& app, const std::string& projectFile, std::string& error, bool forWriting = false);

}  // namespace rmcli
