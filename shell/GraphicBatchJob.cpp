#include "shell/GraphicBatchJob.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>

#include "engine/OutputNaming.h"
#include "postpro/BatchRunner.h"
#include "shell/Application.h"
#include "shell/ConvertJob.h"
#include "shell/ProjectContext.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

std::size_t CountColours(const Bitmap& b) {
  std::unordered_set<std::uint32_t> seen;
  for (int y = 0; y < b.Height(); ++y) seen.insert(b.Row(y), b.Row(y) + b.Width());
  return seen.size();
}

// The canvas of one program as a batch drives it.
class CanvasBatch : public GraphicBatchPort {
 public:
  CanvasBatch(Application& app, const GraphicBatchRequest& r, std::string outputFolder)
      : app_(app), request_(r), output_(std::move(outputFolder)) {}

  std::vector<std::string> LoadGraphic(const std::string& name) override {
    std::string path = request_.picture;
    if (path.empty()) {
      path = PathInFolder(app_.globals.GraphicsRole, name);
      if (path.empty()) return {" >> ERROR : " + name + " : not in the Graphics folder " + app_.globals.GraphicsRole};
    }
    lastGraphic_ = path;
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) return {" >> ERROR : " + path + " : File_Not_Found  "};
    ConvertRequest load;
    load.input = path;
    load.project = request_.project;
    // The picture meets the project's display, fitted when larger, as a file loaded in the
    // explorer does.
    load.size = "project";
    load.fit = true;
    const JobOutcome loaded = LoadPictureToCanvas(app_, load);
    if (!loaded.Done()) return {" >> ERROR : " + path + " : " + loaded.error};
    return {" >> " + path + " = Graphic File loaded ",
            std::string(26, ' ') + std::to_string(CountColours(app_.globals.ImportedBitmap)) + " colors image >> " +
                std::to_string(CountColours(app_.pixelForm.WorkBitmap)) + " colors"};
  }

  std::string ConvertGraphic() override {
    ConvertRequest convert;
    convert.currentCanvas = true;
    // Kept in the editors and handed to nobody: the batch's commands write the files.
    convert.target = ConvertTarget::StandardOutput;
    const JobOutcome done = Convert(app_, convert);
    if (!done.Done()) return " >>  = Convert Graphic To Data : ERROR : " + done.error;
    return " >>  = Convert Graphic To Data : Done  ";
  }

  std::string OverwriteDataFile() override {
    const ConversionSession& s = app_.session;
    std::string name = FileNamePart(lastGraphic_.empty() ? s.LastBitmapName : lastGraphic_);
    if (const auto dot = name.rfind('.'); dot != std::string::npos) name.erase(dot);
    name += s.AsmFile ? ".asm" : s.LibraryFile ? ".lib" : s.BasicFile ? ".bas" : s.CFile ? ".c" : ".h";
    const std::string path = PathInFolder(output_, name);
    std::string error;
    std::error_code ec;
    if (!path.empty()) fs::create_directories(output_, ec);
    if (path.empty() || !WriteFileAtomically(path, app_.mainText.Text(), &error))
      return " " + name + " >>  = Error  " + error;
    written.push_back(path);
    return " " + path + " >>  = OK ";
  }

  std::vector<std::string> written;

 private:
  Application& app_;
  const GraphicBatchRequest& request_;
  std::string output_;
  std::string lastGraphic_;
};

bool HasExtension(const std::string& name) { return !fs::path(name).extension().empty(); }

}  // namespace

std::string FindBatchFile(const std::string& name, const std::string& batchFolder) {
  if (name.empty()) return "";
  std::vector<std::string> names{name};
  if (!HasExtension(name)) names = {name + ".sip", name + ".SIP", name + ".spp", name + ".SPP"};
  std::error_code ec;
  for (const std::string& n : names) {
    if (fs::is_regular_file(n, ec)) return n;
    if (!batchFolder.empty() && fs::path(n).is_relative() && fs::is_regular_file(fs::path(batchFolder) / n, ec))
      return (fs::path(batchFolder) / n).generic_string();
  }
  return "";
}

bool BatchDrivesCanvas(const std::string& batchFile) {
  TextLines lines;
  if (!lines.LoadFromFile(batchFile)) return false;
  CompiledBlock block;
  return std::any_of(lines.Lines().begin(), lines.Lines().end(), [&](const std::string& line) {
    block.Clear();
    ParseBatchLine(line, ParsePass::Condition, block);
    return std::any_of(block.SetupKeys.begin(), block.SetupKeys.end(), IsGraphicCommand);
  });
}

JobOutcome RunGraphicBatch(Application& app, const GraphicBatchRequest& r) {
  std::string error;
  if (!OpenProject(app, r.project, error)) return JobOutcome::Failed(error);
  const std::string batchFile = FindBatchFile(r.batchFile, app.globals.BatchRole);
  if (batchFile.empty()) return JobOutcome::Failed(kBatchNotFound);
  std::error_code ec;
  if (!r.picture.empty() && !fs::is_regular_file(r.picture, ec)) return JobOutcome::Failed(kPictureNotFound);
  TextLines batch;
  if (!batch.LoadFromFile(batchFile)) return JobOutcome::Failed(kBatchNotFound);

  const std::string output = r.outputDir.empty() ? app.globals.OutputRole : r.outputDir;
  CanvasBatch canvas(app, r, output);
  BatchMemory memory;
  app.mainText.Clear();
  BatchRunner runner(app.mainText, app.reportText, app.ui, BatchFolders{output}, memory);
  runner.now = app.clock.Now();
  runner.graphic = &canvas;
  const BatchRunResult result = runner.Run(batch.Lines(), batchFile);

  JobOutcome outcome;
  outcome.output = app.mainText.Text();
  outcome.filesWritten = canvas.written;
  outcome.filesWritten.insert(outcome.filesWritten.end(), result.filesWritten.begin(), result.filesWritten.end());
  for (const std::string& name : result.refused)
    app.ui.Notice("Batch file refused, it lies outside the Output folder " + output + ": " + name);
  if (result.aborted) {
    outcome.status = 1;
    outcome.error = "the batch was stopped";
  } else if (!result.graphicFailures.empty()) {
    outcome.status = 1;
    for (const std::string& f : result.graphicFailures) outcome.error += (outcome.error.empty() ? "" : "\n") + f;
  }
  return outcome;
}

}  // namespace rm
