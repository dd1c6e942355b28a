#pragma once
#include <string>

namespace rm {
class Application;
}

namespace rmcli {

// Brings `app` to the state the desktop program starts in: the program's folders found or made,
// and the settings of the active project read (or of `projectFile` when one is given), with the
// project's graphics header template (made when missing) as the session's template. Nothing
// is written to the project. False with a message in `error` when the given project file cannot
// be read.
bool OpenProject(rm::Application& app, const std::string& projectFile, std::string& error);

}  // namespace rmcli
