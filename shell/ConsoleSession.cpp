#include "shell/ConsoleSession.h"

#include <cctype>
#include <filesystem>
#include <istream>
#include <ostream>

#include "engine/Clock.h"
#include "shell/Application.h"
#include "shell/BatchJob.h"
#include "shell/GraphicBatchJob.h"
#include "shell/ProjectContext.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

void Help(std::ostream& out) {
  out << "\"Rastermill < Graphic Processing Batch Filename > < Filename >\" \n"
      << "\"Exit\" to go back to GUI mode\n"
      << "\"?\" for Help\n";
}

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

// One "RASTERMILL <batch> <file>" line; false when it failed.
bool RunLine(const std::string& batchName, const std::string& fileName, std::ostream& out, UiPort& ui, Clock& clock,
             ImageCodecs& codecs, const ConsoleSessionRequest& r) {
  Application app(ui, clock);
  app.codecs = &codecs;
  app.globals.ConsoleMode = true;
  std::string error;
  if (!OpenProject(app, r.project, error)) {
    ui.Notice(error);
    return false;
  }
  const std::string batch = FindBatchFile(batchName, app.globals.BatchRole);
  if (batch.empty()) {
    out << kBatchNotFound << "\n";
    return false;
  }
  std::string file = fileName;
  std::error_code ec;
  if (!fs::is_regular_file(file, ec) && fs::path(file).is_relative())
    file = (fs::path(app.globals.GraphicsRole) / fileName).generic_string();
  if (fileName.empty() || !fs::is_regular_file(file, ec)) {
    out << kPictureNotFound << "\n";
    return false;
  }
  out << "Processing... \n" << std::flush;
  JobOutcome outcome;
  if (BatchDrivesCanvas(batch)) {
    outcome = RunGraphicBatch(app, {batch, file, r.project, r.outputDir});
  } else {
    outcome = RunTextBatch(app, {batch, file, r.project, r.outputDir});
  }
  out << "Processing Done !\n" << std::flush;
  if (!outcome.Done() && !outcome.error.empty()) ui.Notice(outcome.error);
  return outcome.Done();
}

}  // namespace

int RunConsoleSession(std::istream& in, std::ostream& out, UiPort& ui, Clock& clock, ImageCodecs& codecs,
                      const ConsoleSessionRequest& request) {
  int failed = 0;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::string upper = Upper(line);
    if (upper == "EXIT") break;
    std::size_t cut = 0;
    if (upper.rfind("RASTERMILL.EXE ", 0) == 0)
      cut = 15;
    else if (upper.rfind("RASTERMILL ", 0) == 0)
      cut = 11;
    if (cut == 0) {
      Help(out);
      continue;
    }
    const std::string rest = line.substr(cut);
    const std::size_t blank = rest.find(' ');
    const std::string batch = rest.substr(0, blank);
    const std::string file = blank == std::string::npos ? "" : rest.substr(blank + 1);
    if (!RunLine(batch, file, out, ui, clock, codecs, request)) ++failed;
  }
  return failed;
}

}  // namespace rm
