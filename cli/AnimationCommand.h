#pragma once
#include <csignal>
#include <string>
#include <vector>

#include "cli/ConvertCommand.h"

namespace CLI {
class App;
}

namespace rmcli {

struct AnimationOptions {
  ConvertOptions convert;  // the GIF is convert.request.input
  std::vector<std::string> frames;
  int delayMs = 300;
  std::string saveGif;
  std::string infoInput;
  CLI::App* info = nullptr;
};

CLI::App* AddAnimationCommand(CLI::App& app, AnimationOptions& options);
int RunAnimation(const AnimationOptions& options, const volatile std::sig_atomic_t& interrupted, bool terminal);

}  // namespace rmcli
