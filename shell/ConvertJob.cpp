#include "shell/ConvertJob.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>

#include "engine/ColourModes.h"
#include "engine/IntelHex.h"
#include "engine/OutputNaming.h"
#include "engine/Reduction.h"
#include "engine/TextLines.h"
#include "shell/Application.h"
#include "shell/BatchJob.h"
#include "shell/CommandNames.h"
#include "shell/ConsoleUi.h"
#include "shell/ControllerSetup.h"
#include "shell/ConvertSteps.h"
#include "shell/GraphicBatchJob.h"
#include "shell/ProjectContext.h"

namespace rm {

namespace {

constexpr const char* kExportAreaQuestion = " Export Selected Area to Data Array ? ";

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

// Reads "WxH" with two positive numbers.
bool ParseSize(const std::string& text, int& w, int& h) {
  char x = 0, extra = 0;
  return std::sscanf(text.c_str(), "%d%c%d%c", &w, &x, &h, &extra) == 3 && (x == 'x' || x == 'X') && w > 0 && h > 0;
}

std::string SizeText(int w, int h) { return std::to_string(w) + "x" + std::to_string(h); }

}  // namespace

JobOutcome ResolveController(Application& app, ConvertRequest& r) {
  if (r.controller.empty()) return {};
  const ControllerPreset* p = FindController(r.controller);
  if (!p) return JobOutcome::Failed("unknown controller: " + r.controller, 2);
  ControllerChoices c{r.mode, r.direction, r.origin, r.msbFirst ? 1 : r.msbLast ? -1 : 0};
  for (const std::string& note : MergeControllerPreset(*p, c)) app.ui.Notice(note);
  r.mode = c.mode;
  r.direction = c.direction;
  r.origin = c.origin;
  r.msbFirst = c.bitOrder > 0;
  r.msbLast = c.bitOrder < 0;
  if (p->swapRedBlue) r.swapRedBlue = true;
  return {};
}

JobOutcome ApplyHardware(Application& app, const ConvertRequest& r) {
  ControllerRequest request;
  if (!r.controller.empty()) {
    request.preset = FindController(r.controller);
    request.modeChosen = r.mode != request.preset->mode;
  }
  request.widthChosen = r.width != 0;
  request.rearrange.swapRedBlue = r.swapRedBlue;
  request.rearrange.permutation = r.rearrange;
  std::string error;
  if (!ApplyControllerRequest(app, request, error)) return JobOutcome::Failed(error, 2);
  return {};
}

JobOutcome ChooseDisplay(Application& app, const ConvertRequest& r) {
  Globals& g = app.globals;
  TMainForm& main = app.mainForm;
  int w = 0, h = 0;
  // The canvas takes the project's display first, so that a preset equal to it is in force too.
  main.CanvasRedraw();
  if (r.pictureMode) {
    if (!r.mode.empty()) return JobOutcome::Failed("--picture-mode converts in 16M colours; it takes no --mode", 2);
    if (!r.preset.empty()) return JobOutcome::Failed("--picture-mode and --preset both choose the display", 2);
    main.NoMatrix1Click();
  } else if (!r.preset.empty()) {
    if (!ParseSize(r.preset, w, h) || !TMainForm::IsMatrixPreset(w, h))
      return JobOutcome::Failed("--preset takes one of the size menu's presets as WxH, not \"" + r.preset + "\"", 2);
    main.MatrixPresetClick(w, h);
  } else if (r.size == "project") {
    // The project's display, taken above.
  } else if (!r.size.empty()) {
    if (!ParseSize(r.size, w, h)) return JobOutcome::Failed("--size takes WxH or 'project', not \"" + r.size + "\"", 2);
    if (w > 1024 || h > 768) return JobOutcome::Failed("a display is at most 1024x768; " + r.size + " is larger", 2);
    if (!main.UserMatrixClick(std::to_string(w), std::to_string(h)))
      return JobOutcome::Failed("the display size " + r.size +
                                " does not fit the paging scheme of the mode (--yes turns the scheme)");
  } else {
    // Without a display size the picture sets it, as it stands after its turn.
    g.CanvasTakesPictureSize = true;
  }
  if (r.angle) {
    std::ostringstream angle;
    angle << *r.angle;
    g.ImportAngle = angle.str();
  }
  if (!r.svgSize.empty() && !ParseSize(r.svgSize, g.ImportWidth, g.ImportHeight))
    return JobOutcome::Failed("--svg-size takes WxH, not \"" + r.svgSize + "\"", 2);
  if (r.fit) g.AlwaysResizeToFit = true;
  return {};
}

namespace {

// The display, then the picture through the program's own import: turned, fitted (or refused
// when too large), floated over the canvas, reduced to the mode's colours as the desktop program
// does, and pasted.
JobOutcome ImportPicture(Application& app, const ConvertRequest& r) {
  if (JobOutcome display = ChooseDisplay(app, r); !display.Done()) return display;
  if (!app.mainForm.OpenPic(r.input)) return ImportRefusal(app, r.input);
  app.globals.CanvasTakesPictureSize = false;
  return ReduceAndPaste(app, r, true);
}

}  // namespace

JobOutcome ImportRefusal(Application& app, const std::string& input) {
  const Globals& g = app.globals;
  const TPixelForm& canvas = app.pixelForm;
  if (!g.ImportTargetSizeText.empty() && g.ImportedBitmap.Width() > 0)
    return JobOutcome::Failed("the picture (" + SizeText(g.ImportedBitmap.Width(), g.ImportedBitmap.Height()) +
                              ") is larger than the display (" + SizeText(canvas.MatrixWidth(), canvas.MatrixHeight()) +
                              "); --fit resizes it");
  return JobOutcome::Failed(input + ": the picture was not imported");
}

JobOutcome ReduceAndPaste(Application& app, const ConvertRequest& r, bool tellAutoReduction) {
  TPixelForm& canvas = app.pixelForm;
  const bool reduceToBW = r.threshold || !r.dither.empty();
  if (reduceToBW && !app.session.Monochrome)
    return JobOutcome::Failed("--threshold and --dither make black and white: they need a monochrome mode", 2);
  if (r.threshold) app.imageForm.BWAdjustementTool1BWTrackBarChange(*r.threshold, false);
  if (!r.dither.empty()) {
    static const std::map<std::string, DitherMode> kinds = {
        {"nearest", DitherMode::Nearest}, {"floyd", DitherMode::FloydSteinberg}, {"stucki", DitherMode::Stucki},
        {"sierra", DitherMode::Sierra},   {"jajuni", DitherMode::JaJuNi},        {"stevearche", DitherMode::SteveArche},
        {"burkes", DitherMode::Burkes}};
    const auto kind = kinds.find(r.dither);
    if (kind == kinds.end()) return JobOutcome::Failed("unknown dither kind: " + r.dither, 2);
    canvas.DitherChoice = kind->second;
    canvas.ColorReductionChoice = ColorReduction::Monochrome;
    canvas.DitherSelectionBitmap();
  }
  // Without a threshold or a dither a picture of other colours would be pasted as it stands and
  // only its pure black pixels would set bits: a photograph would come out empty. A careful user
  // answers the paste question with the auto conversion, so a conversion does that, with the
  // project's dithering kind, and says so.
  if (app.session.Monochrome && canvas.ThresholdPending && !reduceToBW) {
    canvas.ColorReductionChoice = ColorReduction::Monochrome;
    canvas.DitherSelectionBitmap();
    if (tellAutoReduction)
      app.ui.Notice("the picture has colours other than black and white: reduced to black and white by " +
                    std::string(kDitherCaptions[static_cast<int>(canvas.DitherChoice)]) +
                    " dithering (--threshold N or --dither KIND chooses otherwise)");
  }
  canvas.PasteSelection();
  return {};
}

namespace {

// Only the part of the canvas at X,Y,W,H is exported; an area reaching past the canvas is
// clipped to it, with a note.
JobOutcome ChooseArea(Application& app, const std::string& area) {
  int x = 0, y = 0, w = 0, h = 0;
  char extra = 0;
  if (std::sscanf(area.c_str(), "%d,%d,%d,%d%c", &x, &y, &w, &h, &extra) != 4 || w <= 0 || h <= 0 || x < 0 || y < 0)
    return JobOutcome::Failed("--area takes X,Y,W,H with a positive width and height", 2);
  const int cw = app.pixelForm.MatrixWidth(), ch = app.pixelForm.MatrixHeight();
  const std::string canvasSize = SizeText(cw, ch);
  if (x >= cw || y >= ch) return JobOutcome::Failed("--area " + area + " lies outside the " + canvasSize + " canvas");
  if (x + w > cw || y + h > ch) {
    w = std::min(w, cw - x);
    h = std::min(h, ch - y);
    app.ui.Notice("--area " + area + " clipped to the " + canvasSize + " canvas: " + std::to_string(x) + "," +
                  std::to_string(y) + "," + std::to_string(w) + "," + std::to_string(h));
  }
  ConversionSession& s = app.session;
  s.SelectionActive = true;
  s.ExportAreaX1 = x;
  s.ExportAreaY1 = y;
  s.ExportAreaX2 = x + w;
  s.ExportAreaY2 = y + h;
  app.globals.ExportEntry = 3;
  return {};
}

}  // namespace

JobOutcome ApplyDataOptions(Application& app, const ConvertRequest& r, std::uint32_t hexOffset) {
  if (JobOutcome set = ApplySettingOverrides(app, r.settings); !set.Done()) return set;
  ConversionSession& s = app.session;
  TMainForm& main = app.mainForm;
  if (!r.direction.empty()) {
    const auto d = Directions().find(r.direction);
    if (d == Directions().end()) return JobOutcome::Failed("unknown direction: " + r.direction, 2);
    if (!main.SetDirection(d->second))
      return JobOutcome::Failed("the direction " + r.direction + " does not fit this canvas and mode");
  }
  if (!r.origin.empty()) {
    const auto corner = Origins().find(r.origin);
    if (corner == Origins().end() || !OriginFits(s.Direction, corner->second))
      return JobOutcome::Failed("the origin " + r.origin + " does not fit the direction", 2);
    s.Origin = corner->second;
  }
  if (r.perLine > 0) main.SetDataPerLine(r.perLine);
  if (r.msbFirst) main.MsbFirst();
  if (r.msbLast) main.MsbLast();
  if (r.outputKind == "text" && (s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex))
    main.Data8bitClick();
  if (r.outputKind == "bin") main.HexOutput1Click();
  if (r.outputKind == "hex") main.IntelHexOutputClick();
  if (r.width == 8) main.Data8bitClick();
  if (r.width == 16) main.data16bitClick();
  if (r.width == 32) main.data32bitClick();
  if (r.hexLine != 0) s.HexBytesPerLine = r.hexLine;
  if (r.hexAddressDigits != 0) s.HexAddressDigits = r.hexAddressDigits;
  if (r.hexOffset) s.HexAddressOffset = hexOffset;
  if (!r.area.empty())
    if (JobOutcome area = ChooseArea(app, r.area); !area.Done()) return area;
  if (r.half == "upper") app.globals.ExportEntry = 1;
  if (r.half == "lower") app.globals.ExportEntry = 2;
  if (r.interleave) s.Interleaved = true;
  if (r.autoFrame) s.AutoFraming = true;
  if (r.compress) {
    // The program would quietly drop compression for a colour mode; asked for by name, it is refused.
    if (!s.Monochrome) return JobOutcome::Failed("data compression works in the monochrome modes only");
    s.Compression = true;
  }
  return {};
}

JobOutcome OpenRequestProject(Application& app, const ConvertRequest& r) {
  app.pixelForm.ViewShown = false;  // no window: nothing to compose or enlarge
  {
    // Read only unless the settings are to be saved: so many conversions can run side by side.
    std::string error;
    if (!OpenProject(app, r.project, error, r.saveSettings)) return JobOutcome::Failed(error);
  }
  if (!r.mode.empty()) {
    const ColourModeInfo* info = FindColourModeByCliName(r.mode);
    if (!info) return JobOutcome::Failed("unknown mode: " + r.mode, 2);
    app.mainForm.SetColourMode(info->modeNumber, true);
  }
  return {};
}

namespace {

// The picture on a fresh canvas, in the settings of the project (or the one named) with the
// request's own over them.
JobOutcome LoadPicture(Application& app, const ConvertRequest& r) {
  if (JobOutcome opened = OpenRequestProject(app, r); !opened.Done()) return opened;
  if (JobOutcome imported = ImportPicture(app, r); !imported.Done()) return imported;
  app.session.SourceFileName = BaseName(r.input);
  app.session.LastBitmapName = r.input;
  return {};
}

}  // namespace

JobOutcome PrepareBlankCanvas(Application& app, const ConvertRequest& request) {
  ConvertRequest r = request;
  if (JobOutcome resolved = ResolveController(app, r); !resolved.Done()) return resolved;
  if (JobOutcome opened = OpenRequestProject(app, r); !opened.Done()) return opened;
  int w = 0, h = 0;
  if (!ParseSize(r.size, w, h)) return JobOutcome::Failed("--size takes WxH, not \"" + r.size + "\"", 2);
  if (w > 1024 || h > 768) return JobOutcome::Failed("a display is at most 1024x768; " + r.size + " is larger", 2);
  app.mainForm.CanvasRedraw();
  if (!app.mainForm.UserMatrixClick(std::to_string(w), std::to_string(h)))
    return JobOutcome::Failed("the display size " + r.size + " does not fit the paging scheme of the mode");
  app.pixelForm.SetCanvas(Bitmap(w, h));
  if (JobOutcome hardware = ApplyHardware(app, r); !hardware.Done()) return hardware;
  return ApplyDataOptions(app, r, 0);
}

JobOutcome LoadPictureToCanvas(Application& app, const ConvertRequest& request) {
  ConvertRequest r = request;
  if (JobOutcome resolved = ResolveController(app, r); !resolved.Done()) return resolved;
  if (JobOutcome loaded = LoadPicture(app, r); !loaded.Done()) return loaded;
  return ApplyHardware(app, r);
}

JobOutcome CheckRequest(Application& app, ConvertRequest& r, std::uint32_t& hexOffset) {
  if (JobOutcome resolved = ResolveController(app, r); !resolved.Done()) return resolved;
  if ((r.outputKind == "bin" || r.outputKind == "hex") && r.width != 0)
    return JobOutcome::Failed("--width applies to text output only, not to --output " + r.outputKind, 2);
  if (r.hexOffset && !IntelHexRecords::ParseOffset(*r.hexOffset, hexOffset))
    return JobOutcome::Failed("--hex-offset takes 1 to 8 hex digits (0x may lead), not \"" + *r.hexOffset + "\"", 2);
  return {};
}

JobOutcome Convert(Application& app, const ConvertRequest& request, const ConvertPrinter& print) {
  ConvertRequest r = request;
  std::uint32_t hexOffset = 0;
  if (JobOutcome checked = CheckRequest(app, r, hexOffset); !checked.Done()) return checked;

  const bool fromPicture = !r.currentCanvas;
  if (fromPicture)
    if (JobOutcome loaded = LoadPicture(app, r); !loaded.Done()) return loaded;
  // The project's own template unless another is named.
  if (!r.templateFile.empty()) app.session.HeaderIncludeFile = r.templateFile;
  if (fromPicture || !r.controller.empty() || r.swapRedBlue || !r.rearrange.empty())
    if (JobOutcome hardware = ApplyHardware(app, r); !hardware.Done()) return hardware;
  if (JobOutcome options = ApplyDataOptions(app, r, hexOffset); !options.Done()) return options;

  ConversionSession& s = app.session;
  std::string postproBatch;
  if (!r.postpro.empty()) {
    postproBatch = FindBatchFile(r.postpro, app.globals.BatchRole);
    if (postproBatch.empty()) return JobOutcome::Failed(r.postpro + ": " + kBatchNotFound);
    s.PostProcessing = true;
  }
  // Nothing goes into the project's Output files folder on its own (the desktop saves a finished
  // table there): only what the target says is written. The closing comment names the parameter
  // file only where one is written: beside a regular file.
  const bool toFile = r.target == ConvertTarget::File;
  if (toFile && !r.noInfo && IsRegularTarget(r.outputFile)) s.InfoFileTarget = InfoFileNameFor(r.outputFile);
  const std::string projectOutputFolder = s.OutputFolder;
  if (r.target != ConvertTarget::Editors) s.OutputFolder.clear();
  const bool ok = app.imageForm.EncodeButtonClick();
  // An interrupted run keeps what it made in the editors, but writes nothing anywhere else.
  if (r.target != ConvertTarget::Editors && app.ui.EscapePressed())
    return JobOutcome::Failed("interrupted: nothing was written");
  if (!ok) return JobOutcome::Failed("the conversion did not run to its end: nothing was written");
  s.OutputFolder = projectOutputFolder;  // a project saved with the settings keeps its own

  JobOutcome outcome;
  // The batch rewrites the text; a binary output has none.
  if (!postproBatch.empty() && s.Output != OutputKind::BinaryFile) {
    JobOutcome post = PostprocessText(app, postproBatch);
    if (!post.Done()) return post;
    outcome.filesWritten = post.filesWritten;
  }
  // Binary output is the hex editor's bytes; Intel HEX records stand in the main text like any
  // other output text.
  if (s.Output == OutputKind::BinaryFile) {
    const auto& bytes = app.hex.Bytes();
    outcome.output.assign(bytes.begin(), bytes.end());
  } else {
    outcome.output = app.mainText.Text();
  }
  std::string error;
  if (r.target == ConvertTarget::StandardOutput && print && !print(outcome.output, error))
    return JobOutcome::Failed("standard output: " + error);
  if (toFile) {
    if (!WriteFileAtomically(r.outputFile, outcome.output, &error))
      return JobOutcome::Failed(r.outputFile + ": " + error);
    outcome.filesWritten.push_back(r.outputFile);
    // The parameter file goes beside the file written, under its name, never into the working
    // folder unasked; none beside a device or a FIFO.
    if (!r.noInfo && IsRegularTarget(r.outputFile)) {
      const std::string outputFileName = s.OutputFileName;
      s.OutputFolder = FolderPart(r.outputFile).empty() ? "." : FolderPart(r.outputFile);
      s.OutputFileName = FileNamePart(r.outputFile);
      if (!app.mainForm.WriteInfoFile())
        return JobOutcome::Failed(app.mainForm.InfoFileName() + ": the parameter file was not written");
      outcome.filesWritten.push_back(app.mainForm.InfoFileName());
      // The project keeps its own folder and name, not those of the parameter file.
      s.OutputFolder = projectOutputFolder;
      s.OutputFileName = outputFileName;
    }
  }
  // The settings are kept only once the output is whole: a failed write leaves the project as it was.
  if (r.saveSettings && !app.mainForm.SaveConfigurationX(&error))
    return JobOutcome::Failed("the settings were not saved in " + app.globals.ActiveProject + ": " + error);
  return outcome;
}

void PrepareConsole(ConsoleUi& ui, const ConvertRequest& request) {
  ui.SetYes(request.yes);
  for (const auto& a : request.answers) ui.QueueAnswer(a);
  if (!request.area.empty()) ui.PresetAnswer(kExportAreaQuestion, "Yes");
}

std::vector<std::string> DisplayPresetNames() {
  std::vector<std::string> names;
  for (const auto& [w, h] : TMainForm::MatrixPresets()) names.push_back(SizeText(w, h));
  return names;
}

}  // namespace rm
