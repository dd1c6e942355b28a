// The encoder's side of an animation: a sequence of frames, each its own table and file.
#include <filesystem>

#include "engine/HeaderTemplate.h"
#include "engine/OutputNaming.h"
#include "shell/Application.h"

namespace rm {

bool AnimationEncoding::ConvertAnimation(const std::vector<Bitmap>& frames, const std::vector<int>& delaysMs,
                                         const std::function<void(int)>& afterFrame) {
  ConversionSession& s = app_.session;
  Globals& g = app_.globals;
  UiPort& ui = app_.ui;
  const int n = static_cast<int>(frames.size());
  if (n == 0) {
    ui.MessageDlg(" Animation is empty ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  if (ui.MessageDlg(" Encode and save animation sequence to files ? ", "Confirm", DlgType::Confirmation,
                    {"Yes", "No"}) != "Yes")
    return false;

  const std::string baseFile = DefineOutputFileName(s);
  const std::string stem = StripExtension(baseFile);
  const std::string extension = OutputExtension(s);
  const std::string tableName = TableNameFromFile(baseFile);
  const auto frameFile = [&](int f) { return stem + s.Underscore + std::to_string(f) + extension; };
  // Files are written only where a folder was chosen, as for a single table.
  const bool toFiles = !s.OutputFolder.empty();
  std::error_code ec;
  if (toFiles && std::filesystem::exists(s.OutputFolder + "/" + frameFile(1), ec) &&
      ui.MessageDlg(" File in animated sequence exists ! Overwrite it ? ", "Confirm", DlgType::Confirmation,
                    {"Yes", "No"}) != "Yes")
    return false;

  const std::string infoFile = rm::InfoFileName(s);
  const Bitmap original = app_.pixelForm.WorkBitmap;
  const bool wasActive = g.AnimationMode;
  const int wasCount = g.FrameCount;
  g.AnimationMode = true;
  g.FrameCount = n;
  g.AnimationFrameRecords.clear();
  g.AnimationBytes = 0;
  std::vector<int> refused;
  std::vector<ClipFrame> clip;
  bool ok = true;
  for (int f = 1; f <= n; ++f) {
    app_.mainForm.StatusBarAndLog("Encoding image # " + std::to_string(f));
    app_.pixelForm.SetCanvas(frames[static_cast<std::size_t>(f - 1)]);
    s.PreviousFrame = f > 1 ? &frames[static_cast<std::size_t>(f - 2)] : nullptr;
    s.AnimationFrame = f;
    s.AnimationFrames = n;
    s.OutputFileName = frameFile(f);
    s.TableName = tableName;
    s.InfoFilePath = infoFile;  // every frame names the one parameter file of the run
    const bool done = app_.mainForm.TranslateCanvas();
    ClipFrame shown;
    shown.file = frameFile(f);
    shown.table = tableName + s.Underscore + std::to_string(f);
    shown.x = s.ExportAreaX1;
    shown.y = s.ExportAreaY1;
    shown.width = s.EncodeWidth;
    shown.height = s.EncodeHeight;
    shown.delayMs =
        static_cast<std::size_t>(f - 1) < delaysMs.size() ? delaysMs[static_cast<std::size_t>(f - 1)] : g.FrameDelayMs;
    // The changed area belongs to this frame only.
    s.SelectionActive = false;
    app_.encoder.Canvas().area = CanvasState::Area::None;
    if (!done || s.Abort) {
      ok = false;
      break;
    }

    InfoFrameRecord record;
    record.frame = f;
    record.file = frameFile(f);
    if (app_.encoder.CompressionRefused()) refused.push_back(f);
    if (CompressesBytes(s) && !app_.encoder.CompressionRefused()) {
      shown.pointerTable = "x" + s.Underscore + shown.table;
      const CompressionState& c = app_.encoder.Compression();
      record.bytes = c.DataBytes() + c.Pointers();
      record.compressionRatio = CompressionState::RatioText(
          s.TotalBytesPlus > 0 ? static_cast<long double>(c.Saved()) * 100 / s.TotalBytesPlus : 0);
    } else {
      record.bytes = s.TotalBytes;
      record.compressionRatio = "0";
    }
    if (afterFrame) afterFrame(f);
    g.AnimationBytes += record.bytes;
    g.AnimationFrameRecords.push_back(record);
    clip.push_back(shown);
    if (toFiles && !app_.mainForm.SaveOutputFile(true)) {
      ok = false;
      break;
    }
  }

  if (!refused.empty()) {
    std::string list;
    for (int f : refused) list += (list.empty() ? "" : ", ") + std::to_string(f);
    ui.MessageDlg("No efficient data compression was possible on frame(s) : \r" + list, "Warning", DlgType::Warning,
                  {"OK"});
  }
  s.PreviousFrame = nullptr;
  s.AnimationFrame = 0;
  s.AnimationFrames = 0;
  s.OutputFileName = baseFile;
  s.TableName = tableName;
  s.InfoFilePath = rm::InfoFileName(s);
  g.ClipUnitFile.clear();
  if (toFiles && ok && g.Clip.enabled) {
    const std::string clipFile = "clip_" + baseFile;
    TextLines lines;
    for (auto& l : ClipUnitLines(g.Clip, tableName, clip, app_.encoder.Formatter().CommentPrefix(), infoFile))
      lines.Add(std::move(l));
    std::string error;
    if (lines.SaveToFile(s.OutputFolder + "/" + clipFile, &error))
      g.ClipUnitFile = clipFile;
    else
      ui.MessageDlg(" File could not be saved to disk, access denied ! \r Reason = " + error, "Error", DlgType::Error,
                    {"OK"});
  }
  if (toFiles && !g.AnimationFrameRecords.empty()) app_.mainForm.WriteInfoFile();
  g.AnimationMode = wasActive;
  g.FrameCount = wasCount;
  app_.pixelForm.SetCanvas(original);
  return ok;
}

}  // namespace rm
