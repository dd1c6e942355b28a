#include "shell/ArrayImportJob.h"

#include <fstream>
#include <iterator>
#include <vector>

#include "engine/ColourModes.h"
#include "engine/ImageCodecs.h"
#include "engine/IntelHex.h"
#include "shell/Application.h"

namespace rm {

namespace {

bool ReadWholeFile(const std::string& path, std::string& data) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  data.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

bool EndsWith(const std::string& text, const std::string& end) {
  if (text.size() < end.size()) return false;
  for (std::size_t i = 0; i < end.size(); ++i) {
    char c = text[text.size() - end.size() + i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != end[i]) return false;
  }
  return true;
}

int TextWidthBits(const ConversionSession& s) {
  switch (s.Output) {
    case OutputKind::Bits16: return 16;
    case OutputKind::Bits32: return 32;
    default: return 8;
  }
}

// The data bytes of a text in the session's words, and the zero bytes a last word may add.
JobOutcome BytesOfText(const ConversionSession& s, const ArrayImportRequest& r, const std::string& text,
                       std::vector<std::uint8_t>& bytes, std::size_t& padding) {
  const ArrayText read = ReadArrayText(text, r.syntax);
  if (!read.error.empty()) return JobOutcome::Failed(r.input + ": " + read.error);
  const std::size_t tablesNeeded = s.Gray4TwoPages ? 2 : 1;
  const std::size_t first = static_cast<std::size_t>(r.table - 1);
  if (read.tables.size() < first + tablesNeeded) {
    const std::string marker = r.syntax.prefix + "..." + r.syntax.suffix;
    if (read.tables.empty())
      return JobOutcome::Failed(r.input + ": no data found (a datum is written " + marker +
                                "; --prefix, --suffix and --radix say otherwise)");
    return JobOutcome::Failed(r.input + ": " + std::to_string(read.tables.size()) + " table(s) found; table " +
                              std::to_string(r.table) + (tablesNeeded == 2 ? " and the next (the two planes)" : "") +
                              " asked for");
  }
  const int width = TextWidthBits(s);
  std::vector<std::uint8_t> planes[2];
  std::string error;
  for (std::size_t t = 0; t < tablesNeeded; ++t)
    if (!WordsToBytes(read.tables[first + t], width, s.BigEndian, r.syntax.radix == 10, planes[t], error))
      return JobOutcome::Failed(r.input + ": table " + std::to_string(first + t + 1) + ": " + error);
  // The two page mode's second table is plane A; its tables have a byte each for two of the data.
  bytes = tablesNeeded == 2 ? MergePlanes(planes[0], planes[1], s.BigEndian) : std::move(planes[0]);
  padding = static_cast<std::size_t>(width / 8 - 1) + (tablesNeeded == 2 ? 1 : 0);
  return {};
}

}  // namespace

JobOutcome ImportArrayFile(Application& app, const ArrayImportRequest& request) {
  if (request.outputFile.empty()) return JobOutcome::Failed("-o PICTURE.png is required", 2);
  if (request.table < 1) return JobOutcome::Failed("--table counts from 1", 2);
  if (!app.codecs) return JobOutcome::Failed("no picture writer is available");
  if (request.scheme.size.empty())
    return JobOutcome::Failed("--size WxH is required: the display the table was made for", 2);
  ConvertRequest scheme = request.scheme;
  const bool binary = EndsWith(request.input, ".bin"), intelHex = EndsWith(request.input, ".hex");
  // The data width is a text's; a binary is read as the bytes it holds.
  const int wordBits = scheme.width != 0 ? scheme.width : 8;
  if (binary || intelHex) {
    scheme.outputKind = "bin";
    scheme.width = 0;
  }
  if (JobOutcome prepared = PrepareBlankCanvas(app, scheme); !prepared.Done()) return prepared;
  ConversionSession& s = app.session;

  std::string file;
  if (!ReadWholeFile(request.input, file)) return JobOutcome::Failed(request.input + ": the file cannot be read");
  std::vector<std::uint8_t> bytes;
  std::size_t padding = 0;
  if (binary) {
    if (file.size() % static_cast<std::size_t>(wordBits / 8) != 0)
      return JobOutcome::Failed(request.input + ": " + std::to_string(file.size()) +
                                " bytes are not a whole number of " + std::to_string(wordBits) + " bit words");
    bytes.assign(file.begin(), file.end());
  } else if (intelHex) {
    std::string error;
    if (!IntelHexRecords::ReadData(file, bytes, error)) return JobOutcome::Failed(request.input + ": " + error);
  } else if (JobOutcome read = BytesOfText(s, request, file, bytes, padding); !read.Done()) {
    return read;
  }

  Bitmap canvas = app.pixelForm.WorkBitmap;
  const ArrayImportResult result = ImportArray(s, bytes, canvas, padding);
  if (!result.error.empty())
    return JobOutcome::Failed(request.input + ": " + result.error + " (" + std::to_string(canvas.Width()) + "x" +
                              std::to_string(canvas.Height()) + ", mode " + std::string(ModeRow(s.ModeNumber).cliName) +
                              ")");
  app.pixelForm.SetCanvas(canvas);
  std::string error;
  if (!app.codecs->SavePng(canvas, request.outputFile, error)) return JobOutcome::Failed(error);
  JobOutcome outcome;
  outcome.filesWritten.push_back(request.outputFile);
  return outcome;
}

}  // namespace rm
