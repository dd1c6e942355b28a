#include "cli/ControllersCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "engine/Controllers.h"
#include "shell/ConvertJob.h"

namespace rmcli {

using namespace rm;

void AddHardwareOptions(CLI::App& c, ConvertRequest& o) {
  std::vector<std::string> names;
  for (const auto& p : kControllers) names.emplace_back(p.name);
  c.add_option("--controller", o.controller,
               "Lay the data out as this display controller fills its memory: sets the mode, direction, origin, "
               "bit order and 8 bit text data, and the picture shows on the panel as on screen (see 'rastermill "
               "controllers'); --mode, --direction, --origin, --msb-first/--msb-last, --width given as well "
               "override it")
      ->check(CLI::IsMember(names, CLI::ignore_case));
  c.add_flag("--swap-rb", o.swapRedBlue,
             "Trade the red and blue fields of every pixel, for BGR panels (modes of 4096 colours and up; "
             "through the bit rearrangement table)");
  c.add_option("--rearrange", o.rearrange,
               "Rewire the bits of each packed value through the bit rearrangement table: for every bit from the "
               "highest down to bit 0, the bit it takes, e.g. 0,1,2,3,4,5,6,7 reverses a byte and 7,6,5,4,3,2,1,0 "
               "leaves it. A value is a pixel of 12, 16, 18 or 24 bits from 4096 colours up, a data byte "
               "otherwise; bits can only trade places in pairs. With --swap-rb it applies to the swapped pixel");
}

CLI::App* AddControllersCommand(CLI::App& app) {
  return app.add_subcommand("controllers", "List the display controllers --controller knows and what each sets");
}

int RunControllers() {
  for (const auto& p : kControllers) {
    const bool mono = p.mode == "mono";
    const char* ink = mono ? (p.whiteIsOn ? "a white pixel sets its bit" : "a black pixel sets its bit")
                           : (p.whiteIsOn ? "white is the brightest level" : "colours as they are");
    std::printf("%-12s %s\n             %s; %s\n", std::string(p.name).c_str(), std::string(p.description).c_str(),
                ControllerOptionsText(p).c_str(), ink);
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace rmcli
