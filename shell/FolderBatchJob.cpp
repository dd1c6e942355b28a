#include "shell/FolderBatchJob.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <filesystem>
#include <mutex>
#include <thread>

#include "engine/Clock.h"
#include "engine/ImageCodecs.h"
#include "engine/OutputNaming.h"
#include "postpro/BatchFolders.h"
#include "shell/Application.h"
#include "shell/BatchJob.h"
#include "shell/GraphicBatchJob.h"
#include "shell/ProjectContext.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace fs = std::filesystem;

// The files of a folder run are worked on by threads of this process, each file in a program
// (Application) of its own, built and dropped in its worker: a canvas, a session and editors are
// never shared. What the library keeps process-wide is read-only after its first use (the
// settings table, built under the guard of a function-local static) or guarded (the project
// locks). The one exception is the picture decoders: some image libraries set process-wide
// handlers or load a plugin on first use, so the decoding of a picture, a small part of a file's
// work, is done by one worker at a time (SerialCodecs). Threads rather than processes: a program
// costs a few hundred microseconds to build, a process several milliseconds to start.
namespace {

class SerialCodecs : public ImageCodecs {
 public:
  explicit SerialCodecs(ImageCodecs& inner) : inner_(inner) {}
  bool Load(const std::string& path, Bitmap& out, std::string& error) override {
    std::lock_guard lock(mutex_);
    return inner_.Load(path, out, error);
  }
  bool Load(const std::string& path, const LoadOptions& options, Bitmap& out, std::string& error) override {
    std::lock_guard lock(mutex_);
    return inner_.Load(path, options, out, error);
  }
  bool SavePng(const Bitmap& bitmap, const std::string& path, std::string& error) override {
    std::lock_guard lock(mutex_);
    return inner_.SavePng(bitmap, path, error);
  }
  bool SaveBmp(const Bitmap& bitmap, const std::string& path, std::string& error) override {
    std::lock_guard lock(mutex_);
    return inner_.SaveBmp(bitmap, path, error);
  }

 private:
  ImageCodecs& inner_;
  std::mutex mutex_;
};

// The user of one file's run: nobody is asked (the careful answer is taken) and what the program
// says is kept, to be shown with the file's result in the order of the files.
class CollectingUi : public UiPort {
 public:
  CollectingUi(std::vector<std::string>& messages, const volatile std::sig_atomic_t* interrupted)
      : messages_(messages), interrupted_(interrupted) {}
  std::string MessageDlg(const std::string& text, const std::string& title, DlgType,
                         const std::vector<std::string>& buttons) override {
    messages_.push_back(title + ": " + text);
    if (buttons.empty()) return "";
    for (const char* safe : {"Cancel", "No", "Abort", "OK"})
      if (std::find(buttons.begin(), buttons.end(), safe) != buttons.end()) return safe;
    return buttons.front();
  }
  void Status(const std::string&) override {}
  void Notice(const std::string& text) override { messages_.push_back(text); }
  void Progress(long long, long long) override {}
  bool EscapePressed() override { return interrupted_ && *interrupted_ != 0; }

 private:
  std::vector<std::string>& messages_;
  const volatile std::sig_atomic_t* interrupted_;
};

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// A text batch over one text of the folder: the text rewritten goes to the output folder under
// its own name.
JobOutcome RewriteText(Application& app, const FolderBatchRequest& r, const std::string& path,
                       const std::string& output) {
  JobOutcome done = RunTextBatch(app, {r.batchFile, path, r.project, r.outputDir});
  if (!done.Done()) return done;
  const std::string target = PathInFolder(output, FileNamePart(path));
  std::string error;
  std::error_code ec;
  fs::create_directories(output, ec);
  if (target.empty() || !WriteFileAtomically(target, done.output, &error))
    return JobOutcome::Failed(output + "/" + FileNamePart(path) + ": not written " + error);
  done.filesWritten.push_back(target);
  return done;
}

}  // namespace

FolderBatchResult RunBatchOverFolder(const FolderBatchRequest& r, ImageCodecs& codecs, Clock& clock,
                                     const volatile std::sig_atomic_t* interrupted, const FolderProgress& progress) {
  FolderBatchResult result;
  std::string extension = r.extension;
  bool graphic = true;
  std::string output = r.outputDir;
  {
    // The batch and the extension as the project has them, checked once for every file.
    std::vector<std::string> said;
    CollectingUi ui(said, interrupted);
    Application app(ui, clock);
    std::string error;
    if (!OpenProject(app, r.project, error)) {
      result.outcome = JobOutcome::Failed(error);
      return result;
    }
    const std::string batch = FindBatchFile(r.batchFile, app.globals.BatchRole);
    if (batch.empty()) {
      result.outcome = JobOutcome::Failed(kBatchNotFound);
      return result;
    }
    graphic = BatchDrivesCanvas(batch);
    if (extension.empty()) extension = GetSetting(app, *FindSetting(graphic ? keys::mgex : keys::mext));
    if (output.empty()) output = app.globals.OutputRole;
  }
  if (!extension.empty() && extension.front() != '.') extension.insert(extension.begin(), '.');
  std::error_code ec;
  if (!fs::is_directory(r.folder, ec)) {
    result.outcome = JobOutcome::Failed("not a folder: " + r.folder);
    return result;
  }
  std::vector<std::string> names;
  for (const fs::directory_entry& e : fs::directory_iterator(r.folder, ec))
    if (e.is_regular_file(ec) && Lower(e.path().extension().string()) == Lower(extension))
      names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  if (names.empty()) {
    result.outcome = JobOutcome::Failed("no " + extension + " file in " + r.folder);
    return result;
  }

  SerialCodecs serial(codecs);
  std::vector<FolderFileResult> files(names.size());
  std::vector<bool> ran(names.size(), false);
  std::atomic<std::size_t> next{0};
  std::mutex doneMutex;
  int done = 0;
  auto work = [&] {
    for (std::size_t i; (i = next++) < names.size();) {
      if (interrupted && *interrupted) return;
      FolderFileResult& file = files[i];
      file.name = names[i];
      {
        CollectingUi ui(file.messages, interrupted);
        Application app(ui, clock);
        app.codecs = &serial;
        app.globals.ConsoleMode = true;
        const std::string path = (fs::path(r.folder) / names[i]).generic_string();
        file.outcome = graphic ? RunGraphicBatch(app, {r.batchFile, path, r.project, r.outputDir})
                               : RewriteText(app, r, path, output);
      }
      std::lock_guard lock(doneMutex);
      ran[i] = true;
      ++done;
      if (progress) progress(done, static_cast<int>(names.size()), file);
    }
  };
  const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
  const std::size_t jobs = std::min<std::size_t>(r.jobs > 0 ? static_cast<std::size_t>(r.jobs) : cores, names.size());
  if (jobs <= 1) {
    work();
  } else {
    std::vector<std::thread> workers;
    for (std::size_t k = 0; k < jobs; ++k) workers.emplace_back(work);
    for (std::thread& t : workers) t.join();
  }
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (!ran[i]) {
      result.interrupted = true;
      continue;
    }
    if (!files[i].outcome.Done()) ++result.failed;
    result.files.push_back(std::move(files[i]));
  }
  return result;
}

}  // namespace rm
