#include "cli/AnimationCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "cli/StdoutCheck.h"
#include "platform/GifSequenceCodec.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/AnimationJob.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;

CLI::App* AddAnimationCommand(CLI::App& app, AnimationOptions& options) {
  CLI::App* c = app.add_subcommand(
      "animation",
      "Convert the frames of a GIF animation (or of pictures) into one Data Array per frame, or into a GIF");
  c->add_option("INPUT", options.convert.request.input, "GIF animation of two frames or more");
  c->add_option("--frames", options.frames, "Pictures, one per frame in this order, in place of a GIF")
      ->expected(1, -1);
  c->add_option("--delay", options.delayMs, "Delay of each frame given by --frames, in milliseconds (default 300)")
      ->check(CLI::Range(0, 655350));
  c->add_option("--save-gif", options.saveGif,
                "Write the sequence, fitted and reduced, as this GIF (no Data Arrays unless -o is given too)");
  AddPictureOptions(*c, options.convert);
  options.info = c->add_subcommand("info", "List the frames of a GIF: place, size, delay, disposal and colours");
  options.info->add_option("INPUT", options.infoInput, "GIF file")->required();
  c->footer(
      "With -o FILE each frame goes to FILE's name with an underscore and its number (the data syntax gives the "
      "extension), with one parameter file and, when enabled, the clip unit; without -o the tables are printed one "
      "after the other.");
  return c;
}

int RunAnimation(const AnimationOptions& options, const volatile std::sig_atomic_t& interrupted, bool terminal) {
  PlatformGifExchange gifs;
  if (*options.info) {
    const JobOutcome described = DescribeGif(gifs, options.infoInput);
    if (!described.Done()) return Report(described);
    std::fputs(described.output.c_str(), stdout);
    return FinishStdout();
  }
  AnimationRequest request;
  request.convert = options.convert.request;
  request.frameFiles = options.frames;
  request.delayMs = options.delayMs;
  request.saveGif = options.saveGif;
  const std::string& output = options.convert.output;
  if (!output.empty() && output != "-") {
    request.convert.target = ConvertTarget::File;
    request.convert.outputFile = output;
  }
  ConsoleUi ui(stderr, &interrupted);
  PrepareConsole(ui, request);
  ui.SetVerbose(options.convert.verbose);
  ui.SetShowProgress(terminal);
  SystemClock clock;
  Application app(ui, clock);
  PlatformImageCodecs codecs;
  app.codecs = &codecs;
  const JobOutcome outcome = ConvertSequence(app, gifs, request, [&ui](const std::string& data, std::string& error) {
    ui.FinishProgress();
    return PrintWhole(data, error);
  });
  ui.FinishProgress();
  return Report(outcome);
}

}  // namespace rmcli
