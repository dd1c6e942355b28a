#include "engine/DataEncoder.h"

#include <cmath>
#include <functional>

#include "engine/ColourModes.h"
#include "engine/Palette.h"

namespace rm {

DataEncoder::DataEncoder(ConversionSession& session, TextLines& text, TextLines& aux, HexBuffer& hex, UiPort& ui)
    : s_(session), text_(text), aux_(aux), hex_(hex), ui_(ui), formatter_(session, text, aux, hex) {}

// ---- sizes and work state -------------------------------------------------------------------

long long DataEncoder::BytesOfPixels(long long pixels) const {
  if (s_.Colours4096 && s_.Packed) return static_cast<long long>(std::trunc(pixels * 1.5L));
  if (s_.Colours4096 || s_.Colours65536) return pixels * 2;
  if (s_.Colours262kPacked || s_.Colours262kUnpacked) return pixels * 3;
  if (s_.Colours16M) return pixels * (s_.Packed ? 3 : 4);
  return pixels;
}

void DataEncoder::ComputeTotalBytesPlus() {
  const long long w = s_.EncodeWidth, h = s_.EncodeHeight;
  long long v;
  if (s_.Monochrome) {
    v = s_.Not6bit ? (w * h) / 8 + 1 : (w / 6 + 1) * h + 1;
  } else {
    v = static_cast<long long>(std::trunc(static_cast<long double>(w * h) / s_.PixelsPerByte)) + 1;
    if (ModeRow(s_.ModeNumber).Has(ModeFlag::ThreeInTwo))
      v = static_cast<long long>(std::ceil(static_cast<float>((w * h / 3) * 2)));
    else
      v = BytesOfPixels(v);
  }
  s_.TotalBytesPlus = v;
}

void DataEncoder::ComputeTotalBytes() {
  const long long w = s_.EncodeWidth, h = s_.EncodeHeight;
  long long v;
  if (s_.Monochrome) {
    if (s_.Not6bit)
      v = static_cast<long long>(std::trunc(static_cast<long double>(w * h) / 8));
    else
      v = (w % 6 != 0) ? (w / 6 + 1) * h : w * h / 6;
  } else if (s_.Gray16Slices && (s_.Direction == PagingDirection::Down || s_.Direction == PagingDirection::DownAll)) {
    v = static_cast<long long>(std::ceil(s_.CanvasHeight / 8.0L)) * 4 * s_.CanvasWidth;
  } else {
    long double ppb = s_.PixelsPerByte;
    if (s_.Gray4TwoPages && s_.Direction == PagingDirection::Down) ppb = 8;
    v = static_cast<long long>(std::trunc(static_cast<long double>(w * h) / ppb));
    if (ModeRow(s_.ModeNumber).Has(ModeFlag::ThreeInTwo))
      v = static_cast<long long>(std::ceil(static_cast<long double>(w * h / 3))) * 2;
    else
      v = BytesOfPixels(v);
  }
  s_.TotalBytes = v;
}

void DataEncoder::ResetWorkState() {
  s_.ByteCount = 0;
  s_.Abort = false;
  s_.Gray32Counter = 0;
  s_.Packed4096Phase = 0;
  s_.EncodeWidth = s_.CanvasWidth;
  s_.EncodeHeight = s_.CanvasHeight;
  s_.TextX = s_.TextY = s_.TextX2 = s_.TextY2 = "0";
  if (!s_.SelectionActive) {
    s_.ExportAreaX1 = 0;
    s_.ExportAreaY1 = 0;
    s_.ExportAreaX2 = s_.CanvasWidth;
    s_.ExportAreaY2 = s_.CanvasHeight;
  }
  compression_.Reset();
  if (s_.Compression) aux_.Clear();
}

void DataEncoder::AutoFrame(const Bitmap* before) {
  const Bitmap& b = *s_.Source;
  const int w = std::min(b.Width(), s_.CanvasWidth), h = std::min(b.Height(), s_.CanvasHeight);
  const Colour bg = b.GetPixel(0, 0);
  int top = -1, bottom = -1, left = w, right = -1;
  for (int y = 0; y < h; ++y) {
    const std::uint32_t* row = b.Row(y);
    for (int x = 0; x < w; ++x) {
      const Colour reference = before ? before->GetPixel(x, y) : bg;
      if (static_cast<Colour>(row[x]) == reference) continue;
      if (top < 0) top = y;
      bottom = y;
      left = std::min(left, x);
      right = std::max(right, x);
    }
  }
  if (top < 0) return;  // nothing painted: the whole canvas stays the area
  const long double ppb = s_.PixelsPerByte;
  int x1 = left, x2 = right, y1 = top, y2 = bottom;
  if (s_.Horizontal) {
    x1 = static_cast<int>(std::trunc(x1 / ppb) * ppb);
    x2 = static_cast<int>(std::ceil((x2 + 1) / ppb) * ppb);
    y2 = y2 + 1;
    if (!s_.CoordinatesDescriptors) {
      x1 = 0;
      x2 = s_.CanvasWidth;
    }
  } else {
    y1 = static_cast<int>(std::trunc(y1 / ppb) * ppb);
    y2 = static_cast<int>(std::ceil((y2 + 1) / ppb) * ppb);
    x2 = x2 + 1;
    if (!s_.CoordinatesDescriptors) {
      y1 = 0;
      y2 = s_.CanvasHeight;
    }
  }
  s_.ExportAreaX1 = x1;
  s_.ExportAreaY1 = y1;
  s_.ExportAreaX2 = x2;
  s_.ExportAreaY2 = y2;
  s_.SelectionActive = true;
  canvas_.area = CanvasState::Area::AutoFrame;
}

// ---- the Convert command's engine part -------------------------------------------------------

ConvertResult DataEncoder::ConvertWorkCanvas() {
  if (s_.UnderDevelopment) return ConvertResult::Stopped;
  if (s_.Compression && s_.Syntax.Groups) {
    ui_.MessageDlg("Data compression disabled in this mode !", "Confirm", DlgType::Confirmation, {"OK"});
    s_.Compression = false;
  }
  if (s_.Compression && !s_.Not6bit) {
    ui_.MessageDlg("Data compression will be disabled for 6 bit wide mode encoding! ", "Confirm", DlgType::Confirmation,
                   {"OK"});
    s_.Compression = false;
  }
  if (s_.AutoChangeFraming && s_.PreviousFrame && !s_.SelectionActive && s_.Source)
    AutoFrame(s_.PreviousFrame);
  else if (s_.AutoFraming && !s_.SelectionActive && s_.Source)
    AutoFrame();

  text_.Clear();
  aux_.Clear();
  hex_.Clear();
  int dpl = s_.Syntax.DataPerLine;
  if (dpl <= 0) dpl = 2;
  if (dpl > 150) dpl = 150;
  s_.WorkDataPerLine = dpl;
  formatter_.Reset();
  s_.Abort = false;

  if (canvas_.animationActive && canvas_.frameCount == 0) {
    ui_.MessageDlg(" Animation is empty ! ", "Error", DlgType::Error, {"OK"});
    return ConvertResult::Stopped;
  }

  ResetWorkState();

  if (canvas_.floatingSelection) {
    if (s_.Monochrome && !canvas_.selectionReducedToBW) {
      ui_.MessageDlg(
          "Conversion to Black and White has not been done !\r\r"
          " Abort and then perform Dithering (AUTO-Conversion to Black and White)\r"
          " OR for MANUAL Conversion, move Threshold Slider located on top of Work Canvas ",
          "Confirm", DlgType::Warning, {"Abort"});
      return ConvertResult::Stopped;
    }
    const std::string a = ui_.MessageDlg(
        " Floating Selection layer has not been pasted to Work Canvas !\r Paste now or Abort Conversion ? ", "Confirm",
        DlgType::Confirmation, {"Paste Now", "Abort"});
    return a == "Paste Now" ? ConvertResult::PasteRequested : ConvertResult::Stopped;
  }

  if (s_.SelectionActive && canvas_.area != CanvasState::Area::AutoFrame) {
    const char* question = " Export Selected Area to Data Array ? ";
    if (canvas_.area == CanvasState::Area::Subdivision)
      question = " Export Selected Work Canvas Subdivision to Data Array ? ";
    if (canvas_.area == CanvasState::Area::Animation) question = " Export Selected Animation Area to Data Array ? ";
    if (ui_.MessageDlg(question, "Confirm", DlgType::Confirmation, {"Yes", "No"}) != "Yes")
      return ConvertResult::Stopped;
  }
  if (s_.SelectionActive) {
    s_.TextX = std::to_string(s_.ExportAreaX1);
    s_.TextY = std::to_string(s_.ExportAreaY1);
    s_.TextX2 = std::to_string(s_.ExportAreaX2 - 1);
    s_.TextY2 = std::to_string(s_.ExportAreaY2 - 1);
    s_.EncodeWidth = s_.ExportAreaX2 - s_.ExportAreaX1;
    s_.EncodeHeight = s_.ExportAreaY2 - s_.ExportAreaY1;
  }

  ComputeTotalBytesPlus();
  ComputeTotalBytes();

  if (s_.Gray4TwoPages) {
    const PagingDirection d = s_.Direction;
    if (d == PagingDirection::Up || d == PagingDirection::ToRight || d == PagingDirection::ToLeft ||
        (d == PagingDirection::Down && s_.Origin != OriginCorner::TL)) {
      ui_.MessageDlg(
          " The sliced paging scheme is not implemented in this mode ! \rUse all right,all left ,all up or all down "
          "direction",
          "Error", DlgType::Error, {"OK"});
      return ConvertResult::Stopped;
    }
  }

  return EncodeCanvasTable() ? ConvertResult::Done : ConvertResult::Stopped;
}

bool DataEncoder::EncodeCanvasTable() {
  formatter_.Reset();
  const std::string endString = s_.Syntax.Groups ? s_.Syntax.ArraySuffix : s_.Syntax.EndOfData;
  if (s_.Gray16Slices && !ModeRow(s_.ModeNumber).Has(ModeFlag::Gray16)) {
    ui_.MessageDlg(" The ST7528 special Mode is only working in 4bpp Grayscale mode ! ", "Error", DlgType::Error,
                   {"OK"});
    return false;
  }
  if (canvas_.floatingSelection) {
    ui_.MessageDlg(" Please paste selected area before running the encoding ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  if (s_.ExportAreaX1 < 0 || s_.ExportAreaY1 < 0 || s_.ExportAreaX2 > s_.CanvasWidth ||
      s_.ExportAreaY2 > s_.CanvasHeight || s_.ExportAreaX1 >= s_.ExportAreaX2 || s_.ExportAreaY1 >= s_.ExportAreaY2) {
    text_.Add("Area selected out of");
    text_.Add("paging sheme sectors !");
    return false;
  }
  ComputeTotalBytes();
  packer_.Prepare();
  // The sizes by formula hold only when the area fits the byte direction; the walk writes whole
  // bytes only. The count of the walk itself is what the table declares and what decides where
  // the data end.
  if (const long long written = CountWalkBytes(); written >= 0) {
    if (written == 0) {
      ui_.MessageDlg(" Nothing to encode: the area is smaller than one data byte of this paging scheme ! ", "Error",
                     DlgType::Error, {"OK"});
      return false;
    }
    s_.TotalBytes = s_.Gray4TwoPages && s_.Direction == PagingDirection::Down ? (written + 1) / 2 : written;
    s_.TotalBytesPlus = written + 1;
  }
  ui_.Progress(0, s_.TotalBytes);

  const bool machine = s_.Output == OutputKind::BinaryFile || s_.Output == OutputKind::IntelHex;
  FilledTemplate head;
  if (!machine) {
    head = LoadHeaderTemplate();
    WriteTableHead(head);
  }
  s_.TrueOrigin = head.trueOrigin;  // the parameter file reports the coordinates the same way

  RunWalker();
  packer_.Release();  // give the plane back at once
  ui_.Progress(static_cast<long long>(s_.ByteCount), s_.TotalBytes);
  if (s_.Abort) return false;

  formatter_.TreatLastLine();
  if (machine) return true;

  // A compressed table closes itself, pointer table and statistics included; one that does not
  // pay is made again without compression.
  if (s_.Compression && !FinishCompressedTable(endString)) return RedoTableUncompressed();
  if (!s_.Compression) {
    formatter_.TakePendingSuffix();
    text_.Add(endString);
    // A table whose compression did not pay still tells what the compression found; an
    // animation's frame only lists the frames in the parameter file.
    if (redoneAfterRefusal_ && !canvas_.animationActive) {
      text_.Add("");
      WriteCompressionStatistics();
    }
  }
  WriteTableTail(head, endString);
  return true;
}

bool DataEncoder::ConvertPalette() {
  if (s_.Compression) {
    ui_.MessageDlg("Data compression has been disabled !", "Confirm", DlgType::Confirmation, {"OK"});
    s_.Compression = false;
  }
  if (canvas_.animationActive) {
    ui_.MessageDlg(" Animation Mode Active ! ", "Error", DlgType::Error, {"OK"});
    return false;
  }
  text_.Clear();
  aux_.Clear();
  hex_.Clear();
  s_.Abort = false;
  s_.ByteCount = 0;
  return EncodeColorLutTable();
}

// ---- compression --------------------------------------------------------------------------

bool DataEncoder::CompressStep() {
  if (counting_ || !CompressesBytes(s_)) return false;
  s_.ByteCount += CompressionState::ByteStep(s_);
  return compression_.Take(s_.CurrentByte);
}

namespace {

bool Blank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

void RemoveDoubledBlankLines(TextLines& lines) {
  for (std::size_t i = 1; i < lines.Count();) {
    if (Blank(lines[i]) && Blank(lines[i - 1]))
      lines.Delete(i);
    else
      ++i;
  }
}

}  // namespace

bool DataEncoder::FinishCompressedTable(const std::string& endString) {
  formatter_.FinishPointerLines();
  if (compression_.Saved() < 1) {
    compressionRefused_ = true;
    if (!canvas_.animationActive)
      ui_.MessageDlg("No efficient data compression possible with this frame ! Uncompressed data generated ", "Warning",
                     DlgType::Warning, {"OK"});
    return false;
  }
  formatter_.TakePendingSuffix();
  text_.Add(endString);
  if (s_.Syntax.NoHeader) text_.Add(s_.Syntax.BeginOfData);
  RemoveDoubledBlankLines(aux_);
  text_.Add("");
  for (std::size_t i = 1; i < aux_.Count(); ++i) text_.Add(aux_[i]);
  text_.Add(endString);
  text_.Add("");
  WriteCompressionStatistics();
  return true;
}

bool DataEncoder::RedoTableUncompressed() {
  s_.CanvasWidth = walkCanvasWidth_;
  s_.CanvasHeight = walkCanvasHeight_;
  s_.Compression = false;
  redoneAfterRefusal_ = true;
  const bool done = EncodeCanvasTable();
  redoneAfterRefusal_ = false;
  s_.Compression = true;
  return done;
}

void DataEncoder::WriteCompressionStatistics() {
  const std::string prefix = formatter_.CommentPrefix(), suffix = formatter_.CommentSuffix();
  for (const auto& line : compression_.StatisticsLines()) text_.Add(prefix + line + suffix);
}

namespace {

// The encoder's side of a walk: the formatter's group lines around the packer's data.
struct EncoderWalk {
  DataFormatter& formatter;
  PixelPacker& packer;
  std::function<bool()> beforeByte;

  void GroupStart(const ScanOrder& o) {
    if (o.marks != ScanOrder::Marks::None) formatter.GroupStart(o.flushSuffixAtOpen);
  }
  bool BeforeDatum() { return beforeByte(); }
  void Datum(PixelStep step) { packer.Pack(step); }
  void GroupEnd(const ScanOrder& o) {
    if (o.marks == ScanOrder::Marks::Lines) formatter.GroupEnd();
    if (o.marks == ScanOrder::Marks::LinesSuffixNow) formatter.GroupSuffixNow();
  }
};

}  // namespace

void DataEncoder::Walk() {
  const ScanOrder o = ScanOrderOf(s_);
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  EncoderWalk walk{formatter_, packer_, [this] { return BeforeByte(); }};
  RunScanOrder(s_, o, walk);
  if (o.resetCanvasSize && s_.Source) {
    s_.CanvasWidth = s_.Source->Width();
    s_.CanvasHeight = s_.Source->Height();
  }
  // Packed gray 32 puts three pixels into two bytes, packed 4096 colours two into three. When the
  // pixels run out inside such a run, the bytes that hold the bits of the last ones still go out.
  if (!s_.Abort && packer_.Holding() && BeforeByte()) packer_.Flush();
}

void DataEncoder::RunWalker() {
  if (s_.Compression) {
    compression_.Reset();
    compressionRefused_ = false;
    walkCanvasWidth_ = s_.CanvasWidth;
    walkCanvasHeight_ = s_.CanvasHeight;
    // Without a pointer table template the table still says what it is.
    if (aux_.Empty()) {
      aux_.Add("");
      aux_.Add(CompressionTitle());
    }
  }
  Walk();
  formatter_.FinishWord();
}

// ---- the packer's output --------------------------------------------------------------------

bool DataEncoder::BeforeByte() {
  if (s_.Abort) return false;
  if (counting_) {
    s_.CurrentByte = 0;
    return true;
  }
  if (ui_.EscapePressed()) {
    s_.Abort = true;
    return false;
  }
  if ((++progressTick_ & 0xFFF) == 0) ui_.Progress(static_cast<long long>(s_.ByteCount), s_.TotalBytes);
  formatter_.StartDataComment();
  s_.CurrentByte = 0;
  return true;
}

void DataEncoder::Datum(int byte) {
  if (counting_) {
    ++counted_;
    return;
  }
  s_.CurrentByte = byte & 0xFF;
  formatter_.EmitDataByte();
}

bool DataEncoder::Compressed(int byte) {
  s_.CurrentByte = byte;
  return CompressStep();
}

void DataEncoder::NextDatumComment() { formatter_.StartDataComment(); }

void DataEncoder::PixelBit(int weight) { formatter_.MarkBit(weight); }

void DataEncoder::ColourMissing(Colour c) {
  if (counting_) {
    s_.Abort = true;
    return;
  }
  ui_.MessageDlg(std::string(" Color not found in Palette! \r") +
                     (c == kOutside ? " Check if Heigth or Width matches with pixels per byte format " : " "),
                 "Error Message", DlgType::Error, {"OK"});
  s_.Abort = true;
}

}  // namespace rm
