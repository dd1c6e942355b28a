#include "cli/ConvertCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>

#include "cli/CliNames.h"
#include "cli/ControllersCommand.h"
#include "cli/ProjectContext.h"
#include "engine/ColourModes.h"
#include "engine/HeaderTemplate.h"
#include "engine/IntelHex.h"
#include "engine/OutputNaming.h"
#include "engine/Reduction.h"
#include "engine/TextLines.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"
#include "shell/ProjectStore.h"
#include "shell/SettingsTable.h"

namespace rmcli {

using namespace rm;

const char* VersionText() { return RASTERMILL_VERSION_TEXT; }

namespace {

// The two corners the origin button moves between for a direction.
bool OriginFits(PagingDirection d, OriginCorner o) {
  switch (d) {
    case PagingDirection::Down:
    case PagingDirection::DownAll: return o == OriginCorner::TL || o == OriginCorner::TR;
    case PagingDirection::Up:
    case PagingDirection::UpAll: return o == OriginCorner::BL || o == OriginCorner::BR;
    case PagingDirection::ToRight:
    case PagingDirection::ToRightAll: return o == OriginCorner::TL || o == OriginCorner::BL;
    case PagingDirection::ToLeft:
    case PagingDirection::ToLeftAll: return o == OriginCorner::TR || o == OriginCorner::BR;
  }
  return false;
}

int Fail(const std::string& text, int status = 1) {
  std::fprintf(stderr, "rastermill: %s\n", text.c_str());
  return status;
}

}  // namespace

void AddConvertOptions(CLI::App& c, ConvertOptions& o) {
  std::vector<std::string> modeNames;
  for (const auto& m : kColourModes) modeNames.emplace_back(m.cliName);
  c.add_option("INPUT", o.input, "Picture to convert: PNG, BMP, JPEG, GIF (first frame), TIFF, ICO or SVG")
      ->required();
  c.add_option("-o", o.output, "Write the Data Array to this file; '-' or no option prints it");
  // Only the three kinds: a misspelt kind taken as a file name would write C text where a build
  // expects bytes.
  c.add_option("--output", o.outputKind,
               "Output kind: text (default), bin (the bytes themselves) or hex (Intel HEX records)")
      ->check(CLI::IsMember({"text", "bin", "hex"}));
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
  auto* first = c.add_flag("--msb-first", o.msbFirst,
                           "First pixel in the most significant bit; colour pixels high byte first");
  auto* last = c.add_flag("--msb-last", o.msbLast,
                          "First pixel in the least significant bit (monochrome, gray, 8 and 16 colours); for "
                          "65536 colours and up it is no byte order: --set rgb2=1 puts the low byte first");
  first->excludes(last);
  c.add_option("--width", o.width, "Data width in bits")->check(CLI::IsMember({8, 16, 32}));
  c.add_option("--per-line", o.perLine, "Data per line, 1 to 150 (1 also drops the separator, as in the settings panel)")
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
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
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
  for (const auto& [w, h] : TMainForm::MatrixPresets())
    presets += (presets.empty() ? "" : ", ") + std::to_string(w) + "x" + std::to_string(h);
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

  AddHardwareOptions(c, o.hardware);
}

namespace {

// Reads "WxH" with two positive numbers.
bool ParseSize(const std::string& text, int& w, int& h) {
  char x = 0, extra = 0;
  return std::sscanf(text.c_str(), "%d%c%d%c", &w, &x, &h, &extra) == 3 && (x == 'x' || x == 'X') && w > 0 && h > 0;
}

// The display, then the picture through the program's own import: turned, fitted (or refused
// when too large), floated over the canvas, reduced to the mode's colours as the desktop program
// does, and pasted.
int ImportPicture(Application& app, const ConvertOptions& o) {
  Globals& g = app.globals;
  TMainForm& main = app.mainForm;
  int w = 0, h = 0;
  // The canvas takes the project's display first, so that a preset equal to it is in force too.
  main.CanvasRedraw();
  if (o.pictureMode) {
    if (!o.mode.empty()) return Fail("--picture-mode converts in 16M colours; it takes no --mode", 2);
    if (!o.preset.empty()) return Fail("--picture-mode and --preset both choose the display", 2);
    main.NoMatrix1Click();
  } else if (!o.preset.empty()) {
    if (!ParseSize(o.preset, w, h) || !TMainForm::IsMatrixPreset(w, h))
      return Fail("--preset takes one of the size menu's presets as WxH, not \"" + o.preset + "\"", 2);
    main.MatrixPresetClick(w, h);
  } else if (o.size == "project") {
    // The project's display, taken above.
  } else if (!o.size.empty()) {
    if (!ParseSize(o.size, w, h)) return Fail("--size takes WxH or 'project', not \"" + o.size + "\"", 2);
    if (w > 1024 || h > 768) return Fail("a display is at most 1024x768; " + o.size + " is larger", 2);
    if (!main.UserMatrixClick(std::to_string(w), std::to_string(h)))
      return Fail("the display size " + o.size + " does not fit the paging scheme of the mode (--yes turns the scheme)");
  } else {
    // Without a display size the picture sets it, as it stands after its turn.
    g.CanvasTakesPictureSize = true;
  }
  if (o.angle) {
    std::ostringstream angle;
    angle << *o.angle;
    g.ImportAngle = angle.str();
  }
  if (!o.svgSize.empty() && !ParseSize(o.svgSize, g.ImportWidth, g.ImportHeight))
    return Fail("--svg-size takes WxH, not \"" + o.svgSize + "\"", 2);
  if (o.fit) g.AlwaysResizeToFit = true;

  TPixelForm& canvas = app.pixelForm;
  if (!main.OpenPic(o.input)) {
    if (!g.ImportTargetSizeText.empty() && g.ImportedBitmap.Width() > 0)
      return Fail("the picture (" + std::to_string(g.ImportedBitmap.Width()) + "x" +
                  std::to_string(g.ImportedBitmap.Height()) + ") is larger than the display (" +
                  std::to_string(canvas.MatrixWidth()) + "x" + std::to_string(canvas.MatrixHeight()) +
                  "); --fit resizes it");
    return Fail(o.input + ": the picture was not imported");
  }
  g.CanvasTakesPictureSize = false;

  const bool reduceToBW = o.threshold || !o.dither.empty();
  if (reduceToBW && !app.session.Monochrome)
    return Fail("--threshold and --dither make black and white: they need a monochrome mode", 2);
  if (o.threshold) app.imageForm.BWAdjustementTool1BWTrackBarChange(*o.threshold, false);
  if (!o.dither.empty()) {
    static const std::map<std::string, DitherMode> kinds = {
        {"nearest", DitherMode::Nearest}, {"floyd", DitherMode::FloydSteinberg}, {"stucki", DitherMode::Stucki},
        {"sierra", DitherMode::Sierra},   {"jajuni", DitherMode::JaJuNi},         {"stevearche", DitherMode::SteveArche},
        {"burkes", DitherMode::Burkes}};
    canvas.DitherChoice = kinds.at(o.dither);
    canvas.ColorReductionChoice = ColorReduction::Monochrome;
    canvas.DitherSelectionBitmap();
  }
  // Without a threshold or a dither a picture of other colours would be pasted as it stands and
  // only its pure black pixels would set bits: a photograph would come out empty. A careful user
  // answers the paste question with the auto conversion, so the command line does that, with the
  // project's dithering kind, and says so.
  if (app.session.Monochrome && canvas.ThresholdPending && !reduceToBW) {
    canvas.ColorReductionChoice = ColorReduction::Monochrome;
    canvas.DitherSelectionBitmap();
    std::fprintf(stderr,
                 "rastermill: note: the picture has colours other than black and white: reduced to black and white "
                 "by %s dithering (--threshold N or --dither KIND chooses otherwise)\n",
                 std::string(kDitherCaptions[static_cast<int>(canvas.DitherChoice)]).c_str());
  }
  canvas.PasteSelection();
  return 0;
}

}  // namespace

int RunConvert(const ConvertOptions& options, const volatile std::sig_atomic_t& interrupted, bool terminal) {
  ConvertOptions o = options;

  if (const int status = ResolveController(o); status != 0) return status;

  if ((o.outputKind == "bin" || o.outputKind == "hex") && o.width != 0)
    return Fail("--width applies to text output only, not to --output " + o.outputKind, 2);
  std::uint32_t hexOffset = 0;
  if (o.hexOffset && !IntelHexRecords::ParseOffset(*o.hexOffset, hexOffset))
    return Fail("--hex-offset takes 1 to 8 hex digits (0x may lead), not \"" + *o.hexOffset + "\"", 2);

  ConsoleUi ui(stderr, &interrupted);
  ui.SetYes(o.yes);
  ui.SetVerbose(o.verbose);
  ui.SetShowProgress(terminal);
  for (const auto& a : o.answers) ui.QueueAnswer(a);
  SystemClock clock;
  Application app(ui, clock);
  app.pixelForm.ViewShown = false;  // no window: nothing to compose or enlarge
  {
    // The settings of the active project (or the one named), read only unless --save-settings:
    // so many conversions can run side by side.
    std::string error;
    if (!OpenProject(app, o.project, error, o.saveSettings)) return Fail(error);
  }

  if (!o.mode.empty()) {
    const ColourModeInfo* info = FindColourModeByCliName(o.mode);
    if (!info) return Fail("unknown mode: " + o.mode, 2);
    app.mainForm.SetColourMode(info->modeNumber, true);
  }

  PlatformImageCodecs codecs;
  app.codecs = &codecs;
  std::string error;
  if (const int status = ImportPicture(app, o); status != 0) return status;
  app.session.SourceFileName = BaseName(o.input);
  app.session.LastBitmapName = o.input;
  // The project's own template unless another is named.
  if (!o.templateFile.empty()) app.session.HeaderIncludeFile = o.templateFile;

  if (const int status = ApplyHardwareOptions(app, o); status != 0) return status;

  for (const auto& kv : o.settings) {
    const std::size_t eq = kv.find('=');
    if (eq == std::string::npos || eq == 0) return Fail("--set takes KEY=VALUE, not \"" + kv + "\"", 2);
    if (!ApplySetting(app, kv.substr(0, eq), kv.substr(eq + 1), error)) return Fail(error, 2);
  }

  ConversionSession& s = app.session;
  if (!o.direction.empty() && !app.mainForm.SetDirection(Directions().at(o.direction)))
    return Fail("the direction " + o.direction + " does not fit this canvas and mode");
  if (!o.origin.empty()) {
    const OriginCorner corner = Origins().at(o.origin);
    if (!OriginFits(s.Direction, corner)) return Fail("the origin " + o.origin + " does not fit the direction", 2);
    s.Origin = corner;
  }
  if (o.perLine > 0) app.mainForm.SetDataPerLine(o.perLine);
  if (o.msbFirst) app.mainForm.MsbFirst();
  if (o.msbLast) app.mainForm.MsbLast();
  if (o.outputKind == "text" && (s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex))
    app.mainForm.Data8bitClick();
  if (o.outputKind == "bin") app.mainForm.HexOutput1Click();
  if (o.outputKind == "hex") app.mainForm.IntelHexOutputClick();
  if (o.width == 8) app.mainForm.Data8bitClick();
  if (o.width == 16) app.mainForm.data16bitClick();
  if (o.width == 32) app.mainForm.data32bitClick();
  if (o.hexLine != 0) s.HexBytesPerLine = o.hexLine;
  if (o.hexAddressDigits != 0) s.HexAddressDigits = o.hexAddressDigits;
  if (o.hexOffset) s.HexAddressOffset = hexOffset;
  if (!o.area.empty()) {
    int x = 0, y = 0, w = 0, h = 0;
    char extra = 0;
    if (std::sscanf(o.area.c_str(), "%d,%d,%d,%d%c", &x, &y, &w, &h, &extra) != 4 || w <= 0 || h <= 0 || x < 0 ||
        y < 0)
      return Fail("--area takes X,Y,W,H with a positive width and height", 2);
    const int cw = app.pixelForm.MatrixWidth(), ch = app.pixelForm.MatrixHeight();
    const std::string canvasSize = std::to_string(cw) + "x" + std::to_string(ch);
    if (x >= cw || y >= ch) return Fail("--area " + o.area + " lies outside the " + canvasSize + " canvas");
    if (x + w > cw || y + h > ch) {
      w = std::min(w, cw - x);
      h = std::min(h, ch - y);
      std::fprintf(stderr, "rastermill: note: --area %s clipped to the %s canvas: %d,%d,%d,%d\n", o.area.c_str(),
                   canvasSize.c_str(), x, y, w, h);
    }
    s.SelectionActive = true;
    s.ExportAreaX1 = x;
    s.ExportAreaY1 = y;
    s.ExportAreaX2 = x + w;
    s.ExportAreaY2 = y + h;
    app.globals.ExportEntry = 3;
    ui.PresetAnswer(" Export Selected Area to Data Array ? ", "Yes");
  }
  if (o.half == "upper") app.globals.ExportEntry = 1;
  if (o.half == "lower") app.globals.ExportEntry = 2;
  if (o.interleave) s.Interleaved = true;
  if (o.autoFrame) s.AutoFraming = true;
  if (o.compress) {
    // The program would quietly drop compression for a colour mode; asked for by name, it is refused.
    if (!s.Monochrome) return Fail("data compression works in the monochrome modes only");
    s.Compression = true;
  }

  // The command line writes only what it is told to, below: nothing goes into the project's
  // Output files folder on its own (the desktop saves a finished table there).
  // The closing comment names the parameter file only where one is written: beside a regular file.
  if (!o.noInfo && IsRegularTarget(o.output)) s.InfoFileTarget = InfoFileNameFor(o.output);
  const std::string projectOutputFolder = s.OutputFolder;
  s.OutputFolder.clear();
  const bool ok = app.imageForm.EncodeButtonClick();
  ui.FinishProgress();
  if (interrupted) return Fail("interrupted: nothing was written");
  if (!ok) return Fail("the conversion did not run to its end: nothing was written");
  s.OutputFolder = projectOutputFolder;  // a project saved with the settings keeps its own
  // The settings are kept only once the output is whole: a failed write leaves the project as it was.
  auto saveSettings = [&, outputFileName = s.OutputFileName] {
    s.OutputFolder = projectOutputFolder;  // not the folder of the parameter file
    s.OutputFileName = outputFileName;
    std::string why;
    if (!o.saveSettings || app.mainForm.SaveConfigurationX(&why)) return 0;
    return Fail("the settings were not saved in " + app.globals.ActiveProject + ": " + why);
  };

  // Binary output is the hex editor's bytes; Intel HEX records stand in the main text like any
  // other output text.
  std::string data;
  if (s.Output == OutputKind::BinaryFile) {
    const auto& bytes = app.hex.Bytes();
    data.assign(bytes.begin(), bytes.end());
  } else {
    data = app.mainText.Text();
  }
  if (o.output.empty() || o.output == "-") {
    // A failed write can empty the stream's buffer, after which fflush succeeds: the error flag
    // is the only trace left of a full disk, so it must be asked for there.
    const bool whole = std::fwrite(data.data(), 1, data.size(), stdout) == data.size();
    if (std::fflush(stdout) != 0 || !whole || std::ferror(stdout))
      return Fail(std::string("standard output: ") + std::strerror(errno ? errno : EIO));
    return saveSettings();
  }
  if (!WriteFileAtomically(o.output, data, &error)) return Fail(o.output + ": " + error);
  // A parameter file belongs beside a file, not beside a device or a FIFO.
  if (o.noInfo || !IsRegularTarget(o.output)) return saveSettings();
  // The parameter file goes beside the file written, under its name, never into the working
  // folder unasked: printing to standard output writes none.
  s.OutputFolder = FolderPart(o.output).empty() ? "." : FolderPart(o.output);
  s.OutputFileName = FileNamePart(o.output);
  if (!app.mainForm.WriteInfoFile()) return Fail(app.mainForm.InfoFileName() + ": the parameter file was not written");
  return saveSettings();
}

}  // namespace rmcli
