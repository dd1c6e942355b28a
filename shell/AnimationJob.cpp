#include "shell/AnimationJob.h"

#include <cstdio>

#include "animation/AnimationSequence.h"
#include "animation/GifSequence.h"
#include "engine/HeaderTemplate.h"
#include "engine/NearestColour.h"
#include "engine/OutputNaming.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"
#include "shell/ConvertSteps.h"

namespace rm {

namespace {

constexpr const char* kEncodeQuestion = " Encode and save animation sequence to files ? ";
constexpr const char* kOverwriteQuestion = " File in animated sequence exists ! Overwrite it ? ";

struct LoadedFrames {
  std::vector<Bitmap> pictures;
  std::vector<int> delaysMs;
};

JobOutcome ReadGif(Application& app, GifExchange& gifs, const std::string& path, LoadedFrames& out) {
  GifSequence file;
  ComposedGif composed;
  std::string error;
  if (!gifs.Read(path, file, error)) return JobOutcome::Failed(error);
  if (!ComposeGif(file, composed, error)) return JobOutcome::Failed(BaseName(path) + ": " + error);
  if (composed.frames.size() == 1) return JobOutcome::Failed(" Single layered GIF loaded, no animation ! ");
  app.mainForm.StatusBarAndLog(std::to_string(composed.frames.size()) + " layers in loaded GIF, animation mode ! ");
  out.pictures = std::move(composed.frames);
  out.delaysMs = std::move(composed.delaysMs);
  return {};
}

JobOutcome ReadPictures(Application& app, const AnimationRequest& r, LoadedFrames& out) {
  if (app.codecs == nullptr) return JobOutcome::Failed("this program has no picture decoders");
  for (const std::string& path : r.frameFiles) {
    Bitmap picture;
    std::string error;
    if (!app.codecs->Load(path, picture, error)) return JobOutcome::Failed(error);
    out.pictures.push_back(std::move(picture));
    out.delaysMs.push_back(r.delayMs);
  }
  return {};
}

// Each frame through the import of a picture: fitted to the display (or setting it), floated
// over a cleared canvas, reduced with the treatment chosen for all, and pasted.
JobOutcome ImportFrames(Application& app, const ConvertRequest& r, const std::string& source,
                        std::vector<Bitmap>& pictures) {
  Globals& g = app.globals;
  // The frames of a GIF are not turned.
  g.ImportFileName = source;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    app.pixelForm.ClearCanvas();
    if (!app.mainForm.ImportBitmap(std::move(pictures[i])))
      return ImportRefusal(app, source + " (frame " + std::to_string(i + 1) + ")");
    g.CanvasTakesPictureSize = false;
    if (JobOutcome reduced = ReduceAndPaste(app, r, i == 0); !reduced.Done()) return reduced;
    pictures[i] = app.pixelForm.WorkBitmap;
  }
  return {};
}

JobOutcome SaveGif(Application& app, GifExchange& gifs, const AnimationSequence& sequence, const std::string& path) {
  std::vector<Bitmap> frames = sequence.Frames();
  if (!app.session.Monochrome) {
    NearestColour nearest;
    nearest.Configure(app.session);
    for (Bitmap& frame : frames)
      for (int y = 0; y < frame.Height(); ++y) {
        std::uint32_t* row = frame.Row(y);
        for (int x = 0; x < frame.Width(); ++x)
          row[x] = static_cast<std::uint32_t>(nearest.NearestColor(static_cast<Colour>(row[x])));
      }
  }
  GifSequence file;
  std::string error;
  if (!MakeGifSequence(frames, sequence.Delays(), app.session.Monochrome, file, error) ||
      !gifs.Write(file, path, error))
    return JobOutcome::Failed(error);
  app.mainForm.StatusBarAndLog("Animation saved to " + path);
  JobOutcome outcome;
  outcome.filesWritten.push_back(path);
  return outcome;
}

JobOutcome WriteTables(Application& app, const ConvertRequest& r, std::uint32_t hexOffset,
                       const AnimationSequence& sequence, const ConvertPrinter& print) {
  if (JobOutcome hardware = ApplyHardware(app, r); !hardware.Done()) return hardware;
  if (JobOutcome options = ApplyDataOptions(app, r, hexOffset); !options.Done()) return options;
  ConversionSession& s = app.session;
  if (s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex)
    return JobOutcome::Failed("binary and Intel HEX output are not available for animations", 2);

  const bool toFile = r.target == ConvertTarget::File;
  const std::string projectFolder = s.OutputFolder, projectSource = s.LastBitmapName;
  JobOutcome outcome;
  if (toFile) {
    s.OutputFolder = FolderPart(r.outputFile).empty() ? "." : FolderPart(r.outputFile);
    s.LastBitmapName = FileNamePart(r.outputFile);
  } else {
    s.OutputFolder.clear();
  }
  const bool ok = app.mainForm.ConvertAnimation(sequence.Frames(), sequence.Delays(),
                                                [&](int) { outcome.output += app.mainText.Text(); });
  const std::string folder = s.OutputFolder;
  s.OutputFolder = projectFolder;
  s.LastBitmapName = projectSource;
  if (app.ui.EscapePressed()) return JobOutcome::Failed("interrupted: the frames written until then stay");
  if (!ok) return JobOutcome::Failed("the animation was not converted to its end");
  if (toFile) {
    const std::string stem = StripExtension(s.OutputFileName), extension = OutputExtension(s);
    for (int f = 1; f <= sequence.FrameCount(); ++f)
      outcome.filesWritten.push_back(folder + "/" + stem + s.Underscore + std::to_string(f) + extension);
    if (!app.globals.ClipUnitFile.empty()) outcome.filesWritten.push_back(folder + "/" + app.globals.ClipUnitFile);
    outcome.filesWritten.push_back(folder + "/" + stem + ".rtf");
    outcome.output.clear();
  } else if (print) {
    std::string error;
    if (!print(outcome.output, error)) return JobOutcome::Failed("standard output: " + error);
  }
  return outcome;
}

std::string DisposalText(int disposal) {
  switch (disposal) {
    case 0: return "none";
    case 1: return "leave";
    case 2: return "background";
    case 3: return "previous";
    default: return std::to_string(disposal);
  }
}

}  // namespace

JobOutcome ConvertSequence(Application& app, GifExchange& gifs, const AnimationRequest& request,
                           const ConvertPrinter& print) {
  ConvertRequest r = request.convert;
  if (r.input.empty() == request.frameFiles.empty())
    return JobOutcome::Failed("give either a GIF animation or --frames with the pictures", 2);
  if (r.currentCanvas) return JobOutcome::Failed("an animation is made of files, not of the canvas", 2);
  std::uint32_t hexOffset = 0;
  if (JobOutcome checked = CheckRequest(app, r, hexOffset); !checked.Done()) return checked;
  app.pixelForm.ViewShown = false;
  if (JobOutcome opened = OpenRequestProject(app, r); !opened.Done()) return opened;
  const ColourModeInfo* mode = FindColourMode(app.session.ModeNumber);
  if (mode != nullptr && mode->colours > 256) return JobOutcome::Failed(" GIF animation limit is 256 colors ! ");

  LoadedFrames loaded;
  const std::string source = r.input.empty() ? request.frameFiles.front() : r.input;
  if (JobOutcome read = r.input.empty() ? ReadPictures(app, request, loaded) : ReadGif(app, gifs, r.input, loaded);
      !read.Done())
    return read;
  if (JobOutcome display = ChooseDisplay(app, r); !display.Done()) return display;
  if (JobOutcome imported = ImportFrames(app, r, source, loaded.pictures); !imported.Done()) return imported;
  app.session.SourceFileName = BaseName(source);
  app.session.LastBitmapName = source;
  const AnimationSequence sequence(std::move(loaded.pictures), loaded.delaysMs);

  JobOutcome outcome;
  if (!request.saveGif.empty()) {
    outcome = SaveGif(app, gifs, sequence, request.saveGif);
    if (!outcome.Done() || r.target != ConvertTarget::File) return outcome;
  }
  JobOutcome tables = WriteTables(app, r, hexOffset, sequence, print);
  if (!tables.Done()) return tables;
  tables.filesWritten.insert(tables.filesWritten.begin(), outcome.filesWritten.begin(), outcome.filesWritten.end());
  return tables;
}

JobOutcome DescribeGif(GifExchange& gifs, const std::string& path) {
  GifSequence file;
  std::string error;
  if (!gifs.Read(path, file, error)) return JobOutcome::Failed(error);
  ComposedGif composed;
  const bool whole = ComposeGif(file, composed, error);
  JobOutcome outcome;
  std::string& t = outcome.output;
  char line[160];
  std::snprintf(line, sizeof line, "%s: logical screen %d x %d, %zu frames in the file\n", BaseName(path).c_str(),
                file.screenWidth, file.screenHeight, file.frames.size());
  t += line;
  if (file.globalMap.empty())
    t += "global colour map: none\n";
  else {
    std::snprintf(line, sizeof line, "global colour map: %zu colours, background index %d\n", file.globalMap.size(),
                  file.backgroundIndex);
    t += line;
  }
  if (whole) {
    std::snprintf(line, sizeof line, "sequence: %zu frames of %d x %d, background 0x%06X\n", composed.frames.size(),
                  composed.width, composed.height, static_cast<unsigned>(composed.background));
    t += line;
  } else {
    t += "sequence: none (" + error + ")\n";
  }
  t += "frame  left   top  width height  delay_ms  disposal    transparent  colour map\n";
  for (std::size_t i = 0; i < file.frames.size(); ++i) {
    const GifFrame& f = file.frames[i];
    const std::string delay = f.hasControl ? std::to_string(f.delayHundredths * 10) : "-";
    const std::string transparent = f.transparent ? "index " + std::to_string(f.transparentIndex) : "no";
    const std::string map = !f.colourMap.empty()     ? "local " + std::to_string(f.colourMap.size())
                            : file.globalMap.empty() ? "none"
                                                     : "global";
    std::snprintf(line, sizeof line, "%5zu %5d %5d %6d %6d %9s  %-10s  %-11s  %s%s\n", i + 1, f.left, f.top, f.width,
                  f.height, delay.c_str(), DisposalText(f.disposal).c_str(), transparent.c_str(), map.c_str(),
                  f.width <= 0 || f.height <= 0 ? " (empty: dropped)" : "");
    t += line;
  }
  return outcome;
}

void PrepareConsole(ConsoleUi& ui, const AnimationRequest& request) {
  PrepareConsole(ui, request.convert);
  ui.PresetAnswer(kEncodeQuestion, "Yes");
  ui.PresetAnswer(kOverwriteQuestion, "Yes");
}

}  // namespace rm
