#pragma once
#include <csignal>
#include <optional>
#include <string>
#include <vector>

#include "cli/HardwareOptions.h"

namespace CLI {
class App;
}

namespace rmcli {

struct ConvertOptions {
  std::string input;
  std::string output;  // empty or "-": standard output
  // --output: "text", "bin" or "hex"; empty keeps the project's output kind.
  std::string outputKind;
  int hexLine = 0;           // Intel HEX data bytes per record; 0 keeps the setting
  int hexAddressDigits = 0;  // 4, 6 or 8; 0 keeps the setting
  std::optional<std::string> hexOffset;  // hex digits; absent keeps the setting
  std::string mode;
  std::string direction;
  std::string origin;
  bool msbFirst = false;
  bool msbLast = false;
  int width = 0;
  int perLine = 0;
  std::vector<std::string> settings;
  bool yes = false;
  std::vector<std::string> answers;
  std::string area;
  std::string half;
  bool interleave = false;
  bool autoFrame = false;
  bool compress = false;
  bool verbose = false;
  bool noInfo = false;  // no parameter file beside the output file
  std::string templateFile;
  std::string project;  // a project file whose settings the conversion starts from
  bool saveSettings = false;  // write the settings back into the project after a good conversion
  // The display and the way the picture meets it.
  std::string size;        // "WxH", or "project" for the project's display; empty: the picture's size
  std::string preset;      // one of the display size menu's presets, "WxH"
  bool fit = false;        // resize a larger picture to fit, keeping its proportions
  std::optional<double> angle;      // turn the picture by this many degrees at import
  std::optional<int> threshold;     // black/white threshold slider position, 0 to 255
  std::string dither;               // error diffusion kernel for black and white
  std::string svgSize;              // "WxH": the size a drawing is rendered at
  bool pictureMode = false;         // the display takes the picture's size, in 16M colours
  HardwareOptions hardware;         // --controller, --swap-rb, --rearrange
};

void AddConvertOptions(CLI::App& command, ConvertOptions& options);
// Exit status: 0 done; 1 refused or failed; 2 a usage error found after parsing (a bad --set,
// --area, --origin or --hex-offset, conflicting options), the same status the parser gives its
// own usage errors.
int RunConvert(const ConvertOptions& options, const volatile std::sig_atomic_t& interrupted, bool terminal);
const char* VersionText();

}  // namespace rmcli
