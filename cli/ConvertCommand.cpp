#include "cli/ConvertCommand.h"

#include <CLI/CLI.hpp>

#include "cli/ControllersCommand.h"
#include "cli/StdoutCheck.h"
#include "engine/ColourModes.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/Application.h"
#include "shell/CommandNames.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;

const char* VersionText() { return RASTERMILL_VERSION_TEXT; }

void AddSchemeOptions(CLI::App& c, rm::ConvertRequest& o) {
  std::vector<std::string> modeNames;
  for (const auto& m : kColourModes) modeNames.emplace_back(m.cliName);
  c.add_option("--mode", o.mode, "Colour mode")->check(CLI::IsMember(modeNames));
  c.add_option("--direction", o.direction,
               "Paging direction: the pixels of a byte lie along a row (tr, tl, tra, tla) or down a column (td, "
               "tu, tda, tua).\n"
               "  tr  rows top to bottom, each whole row left to right (the default)\n"
               "  tl  rows top to bottom, each whole row right to left\n"
               "  tra bands one byte wide, left to right; in a band, row by row\n"
               "  tla bands one byte wide, right to left; in a band, row by row\n"
               "  td  pages a byte high (8 rows in monochrome), top to bottom; in a page, column by column "
               "(OLED/LCD pages)\n"
               "  tu  pages a byte high, bottom to top; in a page, column by column\n"
               "  tda whole columns left to right, each top to bottom\n"
               "  tua whole columns left to right, each bottom to top\n"
               "--origin turns the walk to start from another corner")
      ->check(CLI::IsMember(DirectionNames()));
  c.add_option("--origin", o.origin, "Origin corner of the walk")->check(CLI::IsMember({"TL", "TR", "BR", "BL"}));
  auto* first =
      c.add_flag("--msb-first", o.msbFirst, "First pixel in the most significant bit; colour pixels high byte first");
  auto* last = c.add_flag("--msb-last", o.msbLast,
                          "First pixel in the least significant bit (monochrome, gray, 8 and 16 colours); from "
                          "4096 colours up, each byte of --msb-first with its bits reversed (no byte order: "
                          "--set rgb2=1 puts the low byte first)");
  first->excludes(last);
  c.add_option("--width", o.width, "Data width in bits")->check(CLI::IsMember({8, 16, 32}));
}

void AddConvertOptions(CLI::App& c, ConvertOptions& options) {
  c.add_option("INPUT", options.request.input,
               "Picture to convert: PNG, BMP, JPEG, GIF (first frame), TIFF, ICO or SVG")
      ->required();
  AddPictureOptions(c, options);
}

void AddPictureOptions(CLI::App& c, ConvertOptions& options) {
  rm::ConvertRequest& o = options.request;
  c.add_option("-o", options.output, "Write the Data Array to this file; '-' or no option prints it");
  // Only the three kinds: a misspelt kind taken as a file name would write C text where a build
  // expects bytes.
  c.add_option("--output", o.outputKind,
               "Output kind: text (default), bin (the bytes themselves) or hex (Intel HEX records)")
      ->check(CLI::IsMember({"text", "bin", "hex"}));
  AddSchemeOptions(c, o);
  c.add_option("--per-line", o.perLine,
               "Data per line, 1 to 150 (1 also drops the separator, as in the settings panel)")
      ->check(CLI::Range(1, 150));
  c.add_option("--set", o.settings, "Any project setting by its key, e.g. FXHB=H, ORGC=8, Neg=1 (repeatable)");
  c.add_flag("--yes", o.yes, "Answer Yes (or OK) to the program's questions");
  c.add_option("--answer", o.answers, "Answer the next question with this button (repeatable, in order)");
  c.add_option("--area", o.area, "Export only the area X,Y,W,H of the canvas");
  c.add_option("--half", o.half, "Export the upper or lower half (horizontal directions)")
      ->check(CLI::IsMember({"upper", "lower"}));
  c.add_flag("--interleave", o.interleave, "Interleave rows: 0, H/2, 1, H/2+1 ...");
  c.add_flag("--auto-frame", o.autoFrame, "Export only the painted part of the canvas, rounded to whole bytes");
  c.add_option("--template", o.templateFile, "Header Include template to fill instead of the default one");
  c.add_option("--project", o.project,
               "Start from the settings of this project file instead of the active project; the options given "
               "override them")
      ->check(CLI::ExistingFile);
  c.add_flag("--save-settings", o.saveSettings,
             "Keep the settings of this conversion (the project's with the options given) in the project");
  c.add_flag("--compress", o.compress,
             "Run length compression: a data table and a pointer table (monochrome, 8 bit text output only)");
  c.add_flag("-v,--verbose", options.verbose, "Print every step of the log");
  c.add_option("--hex-line", o.hexLine, "Intel HEX: data bytes per record (default 16)")
      ->check(CLI::IsMember({8, 16, 32}));
  c.add_option("--hex-address-digits", o.hexAddressDigits,
               "Intel HEX: digits of the record address; 6 and 8 go beyond the published format (default 4)")
      ->check(CLI::IsMember({4, 6, 8}));
  c.add_option("--hex-offset", o.hexOffset,
               "Intel HEX: address of the first byte, 1 to 8 hex digits (8000 or 0x8000), rounded down to a "
               "multiple of 16");
  auto* size = c.add_option("--size", o.size,
                            "Display size WxH (at most 1024x768), or 'project' for the project's display; "
                            "without --size or --preset the display takes the picture's size");
  std::string presets;
  for (const std::string& p : DisplayPresetNames()) presets += (presets.empty() ? "" : ", ") + p;
  c.add_option("--preset", o.preset, "Display size from the size menu's presets: " + presets)->excludes(size);
  c.add_flag("--fit", o.fit,
             "Resize a picture larger than the display to fit it, keeping its proportions; without it such a "
             "picture is refused");
  c.add_option("--angle", o.angle, "Turn the picture by this many degrees at import (0 to 360)")
      ->check(CLI::Range(0.0, 360.0));
  auto* threshold = c.add_option("--threshold", o.threshold,
                                 "Black and white by the threshold slider at this position (0 to 255; 127 is the "
                                 "middle): darker pixels become black")
                        ->check(CLI::Range(0, 255));
  c.add_option("--dither", o.dither, "Black and white by error diffusion")
      ->check(CLI::IsMember({"floyd", "stucki", "sierra", "jajuni", "stevearche", "burkes", "nearest"}))
      ->excludes(threshold);
  c.add_option("--svg-size", o.svgSize, "Render an SVG drawing at WxH (default: the display size)");
  c.add_flag("--picture-mode", o.pictureMode,
             "Picture Mode: the display takes the picture's size and the colour mode is 16M colours")
      ->excludes(size);
  c.add_flag("--no-info", o.noInfo, "With -o FILE, do not write the parameter file (FILE's name with .rtf) beside it");

  c.add_option("--postpro", o.postpro,
               "Rewrite the output text by this batch (.SPP) before it is written; the files the batch saves go "
               "to the project's Output folder");
  AddHardwareOptions(c, o);
}

int RunConvert(const ConvertOptions& options, const volatile std::sig_atomic_t& interrupted, bool terminal) {
  ConvertRequest request = options.request;
  if (!options.output.empty() && options.output != "-") {
    request.target = ConvertTarget::File;
    request.outputFile = options.output;
  }
  ConsoleUi ui(stderr, &interrupted);
  PrepareConsole(ui, request);
  ui.SetVerbose(options.verbose);
  ui.SetShowProgress(terminal);
  SystemClock clock;
  Application app(ui, clock);
  PlatformImageCodecs codecs;
  app.codecs = &codecs;
  const JobOutcome outcome = Convert(app, request, [&ui](const std::string& data, std::string& error) {
    ui.FinishProgress();
    return PrintWhole(data, error);
  });
  ui.FinishProgress();
  return Report(outcome);
}

}  // namespace rmcli
