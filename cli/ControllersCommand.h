#pragma once
#include "cli/ConvertCommand.h"
#include "cli/HardwareOptions.h"

namespace CLI {
class App;
}
namespace rm {
class Application;
}

namespace rmcli {

// --controller, --swap-rb and --rearrange of the convert command.
void AddHardwareOptions(CLI::App& convert, HardwareOptions& options);

// First of all: the preset fills the mode, direction, origin and bit order the user did not give
// and a note on stderr tells of every option given that differs from it. Exit status, 0 to go on.
int ResolveController(ConvertOptions& options);

// With the picture on the canvas, before the other settings: the preset's ink and data width and
// the rearrangement (shell's ApplyControllerRequest). Exit status, 0 to go on.
int ApplyHardwareOptions(rm::Application& app, const ConvertOptions& options);

// `rastermill controllers`: the table, one controller a line with the options it stands for.
CLI::App* AddControllersCommand(CLI::App& app);
int RunControllers();

}  // namespace rmcli
