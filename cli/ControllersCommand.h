#pragma once

namespace CLI {
class App;
}
namespace rm {
struct ConvertRequest;
}

namespace rmcli {

// --controller, --swap-rb and --rearrange of the convert command.
void AddHardwareOptions(CLI::App& convert, rm::ConvertRequest& request);

// `rastermill controllers`: the table, one controller a line with the options it stands for.
CLI::App* AddControllersCommand(CLI::App& app);
int RunControllers();

}  // namespace rmcli
