#pragma once
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "shell/JobOutcome.h"

namespace rm {

class Application;
class ConsoleUi;

// Where a conversion's output goes.
enum class ConvertTarget {
  Editors,         // stays in the program's editors, as the desktop's Convert leaves it
  StandardOutput,  // handed to the caller's printer
  File,            // written to `ConvertRequest::outputFile`, with its parameter file beside it
};

// One conversion as a user asks for it: a picture (or the canvas as it stands), the display it
// is fitted to, the data options that override the project's, and where the output goes. The
// words are the command line's (modes by their short names, directions tr ... tua, corners TL
// ... BL); an empty text or a zero keeps what the project says.
struct ConvertRequest {
  std::string input;           // the picture file
  bool currentCanvas = false;  // instead of a picture, the canvas as it stands in the open project
  std::string project;         // the project file whose settings a picture starts from; empty: the active one
  bool saveSettings = false;   // keep the settings used in the project after a good conversion

  // The display and the way the picture meets it.
  std::string size;              // "WxH", or "project" for the project's display; empty: the picture's size
  std::string preset;            // one of the display size menu's presets, "WxH"
  bool fit = false;              // resize a larger picture to fit, keeping its proportions
  bool pictureMode = false;      // the display takes the picture's size, in 16M colours
  std::optional<double> angle;   // turn the picture by this many degrees at import
  std::string svgSize;           // "WxH": the size a drawing is rendered at
  std::optional<int> threshold;  // black/white threshold slider position, 0 to 255
  std::string dither;            // error diffusion kernel for black and white

  // The data.
  std::string mode;
  std::string direction;
  std::string origin;
  bool msbFirst = false;
  bool msbLast = false;
  int width = 0;                      // 8, 16 or 32 bit text
  int perLine = 0;                    // data per line
  std::vector<std::string> settings;  // KEY=VALUE of any project setting
  std::string templateFile;           // another Header Include template
  std::string controller;             // a name of the controller table
  bool swapRedBlue = false;
  std::string rearrange;  // "7,6,5,4,3,2,1,0": the bit each bit takes, highest first
  std::string area;       // "X,Y,W,H" of the canvas
  std::string half;       // "upper" or "lower"
  bool interleave = false;
  bool autoFrame = false;
  bool compress = false;

  // The output.
  std::string outputKind;                // "text", "bin" or "hex"; empty keeps the project's
  int hexLine = 0;                       // Intel HEX data bytes per record
  int hexAddressDigits = 0;              // 4, 6 or 8
  std::optional<std::string> hexOffset;  // hex digits
  ConvertTarget target = ConvertTarget::StandardOutput;
  std::string outputFile;  // for ConvertTarget::File
  bool noInfo = false;     // no parameter file beside the output file
  std::string postpro;     // a text batch (.SPP) that rewrites the output text before it goes out

  // The user's answers to the program's questions, in the order they come.
  bool yes = false;
  std::vector<std::string> answers;
};

// Prints the output for ConvertTarget::StandardOutput; false with the reason when it could not
// be written whole.
using ConvertPrinter = std::function<bool(const std::string& data, std::string& error)>;

// Runs the conversion on `app`. A picture is converted in a fresh program: the project is opened
// first (for writing only with saveSettings) and `app.codecs` must be set; the canvas is
// converted in the program as it stands, and the options of the picture's import (the display,
// the mode, the reduction to black and white) do not apply to it. The notes on what the program chose on its own go to
// the user interface's notices. The outcome holds the output (for every target) and the files
// written, or the reason and exit status of a refusal: nothing is written then, and the settings
// are saved only once the output is whole.
JobOutcome Convert(Application& app, const ConvertRequest& request, const ConvertPrinter& print = {});

// The first half of a conversion of a picture: the project opened, the picture imported on the
// canvas as `Convert` would import it. A batch then converts the canvas as it stands.
JobOutcome LoadPictureToCanvas(Application& app, const ConvertRequest& request);
// The settings a conversion of `request` runs with (the project's, the mode, the controller's
// preset, the rearrangement and the data options), on a blank canvas of `request.size`: what the
// way back from a table to a picture needs to know of the table. No picture is read.
JobOutcome PrepareBlankCanvas(Application& app, const ConvertRequest& request);

// The command line's user interface for `request`: its answers, and the questions the request
// answers by itself (an export area is meant to be exported).
void PrepareConsole(ConsoleUi& ui, const ConvertRequest& request);

// The display size menu's presets, as "WxH" texts.
std::vector<std::string> DisplayPresetNames();

}  // namespace rm
