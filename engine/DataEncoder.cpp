#include "engine/DataEncoder.h"

#include <cmath>

#include "engine/BitRearrange.h"
#include "engine/Palette.h"

namespace rm {

namespace {
int TruncDiv(long double a, long double b) { return static_cast<int>(std::trunc(a / b)); }
}  // namespace

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
    if (s_.ModeNumber == 29)
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
    if (s_.ModeNumber == 29)
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
    ui_.MessageDlg("Data compression will be disabled for 6 bit wide mode encoding! ", "Confirm",
                   DlgType::Confirmation, {"OK"});
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
    if (canvas_.area == CanvasState::Area::Subdivision) question = " Export Selected Work Canvas Subdivision to Data Array ? ";
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
  if (s_.Gray16Slices && !(s_.ModeNumber >= 26 && s_.ModeNumber <= 28)) {
    ui_.MessageDlg(" The ST7528 special Mode is only working in 4bpp Grayscale mode ! ", "Error", DlgType::Error, {"OK"});
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
  colourIndex_.Build(s_.PaletteSize > 0 ? s_.PaletteTable : s_.ModeColours);
  lastColour_ = kOutside;
  lastValue_ = -1;
  PrepareValues();
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
  std::vector<std::int32_t>().swap(values_);  // give the plane back at once
  valuesWidth_ = 0;
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

void DataEncoder::Walk() {
  switch (s_.Direction) {
    case PagingDirection::Down: WalkDown(); break;
    case PagingDirection::DownAll: WalkDownAll(); break;
    case PagingDirection::Up: WalkUp(); break;
    case PagingDirection::UpAll: WalkUpAll(); break;
    case PagingDirection::ToRight: WalkToRight(); break;
    case PagingDirection::ToRightAll: WalkToRightAll(); break;
    case PagingDirection::ToLeft: WalkToLeft(); break;
    case PagingDirection::ToLeftAll: WalkToLeftAll(); break;
  }
  if (!s_.Abort) FinishPacking();
}

void DataEncoder::FinishPacking() {
  // Packed gray 32 puts three pixels into two bytes. When the pixels are not a multiple of three
  // the last one or two would stay in the packer: the bytes that hold their bits go out, the bits
  // of the missing pixels 0.
  if (s_.Gray32 && s_.Packed && s_.Gray32Counter != 0) {
    if (!BeforeByte()) return;
    Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32Counter == 1 ? s_.Gray32A : s_.Gray32C), 8)));
    s_.Gray32Counter = 0;
  }
  // Packed 4096 colours puts two pixels into three bytes: an odd last pixel's low four bits.
  if (s_.Colours4096 && s_.Packed && s_.Packed4096Phase != 0) {
    if (!BeforeByte()) return;
    EmitWide((s_.Packed4096First << 4) & 240);
    s_.Packed4096Phase = 0;
  }
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

// ---- walkers --------------------------------------------------------------------------------

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

int DataEncoder::VerticalPages(bool all) const {
  const int w = s_.ExportAreaX2 - s_.ExportAreaX1;
  const int h = s_.ExportAreaY2 - s_.ExportAreaY1;
  int pages = TruncDiv(h, s_.PixelsPerByte);
  if (s_.Gray16Slices) return static_cast<int>(std::ceil(h / 8.0));
  if (s_.Colours8) return h / 8;
  if (s_.Gray32) return h;
  if (!all) return pages;
  if (s_.Monochrome && !s_.Not6bit) pages = h / 6 + (w % 6 != 0 ? 1 : 0);
  if (s_.Gray16) pages = s_.Gray16Horizontal ? h : h / 2;
  if (s_.Gray4 || s_.Gray4TwoPages) pages = h / 4;
  return pages;
}

int DataEncoder::HorizontalPages(bool sliced) const {
  const int w = s_.ExportAreaX2 - s_.ExportAreaX1;
  int pages = TruncDiv(w, s_.PixelsPerByte);
  if (s_.Monochrome && !s_.Not6bit) pages = w / 6 + (w % 6 != 0 ? 1 : 0);
  if (s_.Colours8) pages = w / 8;
  if (s_.Gray16) pages = w / 2;
  if (sliced && (s_.Gray4 || s_.Gray4TwoPages)) pages = w / 4;
  if (s_.Gray32) pages = w;
  return pages;
}

void DataEncoder::ApplyLowerHalf(int& y1, int& y2) const {
  if (s_.HalfExport && s_.LowerHalf) {
    y1 = s_.CanvasHeight;
    y2 = 2 * s_.CanvasHeight;
  }
}

void DataEncoder::WalkDown() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  const long double savedPpb = s_.PixelsPerByte;
  if (s_.Gray4TwoPages) s_.PixelsPerByte = 8;
  const int x1 = s_.ExportAreaX1, x2 = s_.ExportAreaX2;
  const int w = x2 - x1;
  const int pages = VerticalPages(false);
  const bool tl = s_.Origin == OriginCorner::TL;
  int top = s_.ExportAreaY1;
  for (int page = 0; page < pages && !s_.Abort; ++page) {
    if (!tl) formatter_.GroupStart();
    int x = tl ? x1 : x2 - 1;
    for (int col = 0; col < w && x < x2 && x >= x1; ++col, x += tl ? 1 : -1) {
      if (!BeforeByte()) break;
      s_.CurX = x;
      s_.CurY = top;
      PackDown();
    }
    if (s_.Abort) break;
    if (!tl) formatter_.GroupEnd();
    if (s_.Gray16Slices)
      s_.CurY = s_.CurY - 1;
    else
      s_.CurY = top + static_cast<int>(std::trunc(s_.PixelsPerByte));
    top = s_.CurY;
    if (top >= s_.ExportAreaY2) break;
  }
  if (!tl && s_.Source) {
    s_.CanvasWidth = s_.Source->Width();
    s_.CanvasHeight = s_.Source->Height();
  }
  s_.PixelsPerByte = savedPpb;
}

void DataEncoder::WalkDownAll() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  const int y1 = s_.ExportAreaY1;
  int w = s_.ExportAreaX2 - s_.ExportAreaX1;
  const int step = s_.Gray16Horizontal ? 2 : 1;
  if (s_.Gray16Horizontal) w /= 2;
  const int pages = VerticalPages(true);
  const bool tl = s_.Origin == OriginCorner::TL;
  // With the top left origin the columns start at the area's top edge value, not its left edge;
  // for a full canvas both are 0.
  int x = tl ? s_.ExportAreaY1 : s_.ExportAreaX2 - 1;
  for (int col = 0; col < w && !s_.Abort; ++col, x += tl ? step : -step) {
    formatter_.GroupStart();
    s_.CurY = y1;
    for (int page = 0; page < pages; ++page) {
      if (!BeforeByte()) break;
      s_.CurX = x;
      PackDown();
    }
    if (s_.Abort) break;
    formatter_.GroupEnd();
    s_.CurY = y1;
  }
}

void DataEncoder::WalkUp() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  const int x1 = s_.ExportAreaX1, x2 = s_.ExportAreaX2;
  const int w = x2 - x1;
  const int h = s_.ExportAreaY2 - s_.ExportAreaY1;
  const int bands = TruncDiv(h, s_.PixelsPerByte);
  const bool bl = s_.Origin == OriginCorner::BL;
  int bottom = s_.ExportAreaY2 - 1;
  for (int band = s_.Colours8 ? 2 : 1; band <= bands && !s_.Abort; ++band) {
    if (!bl) formatter_.GroupStart();
    int x = bl ? x1 : x2 - 1;
    for (int col = 0; col < w && x >= 0 && x < x2; ++col, x += bl ? 1 : -1) {
      if (!BeforeByte()) break;
      s_.CurX = x;
      s_.CurY = bottom;
      PackUp();
    }
    if (s_.Abort) break;
    if (!bl) formatter_.GroupEnd();
    s_.CurY = static_cast<int>(bottom - std::trunc(s_.PixelsPerByte));
    bottom = s_.CurY;
    if (bottom <= -1) break;
  }
}

void DataEncoder::WalkUpAll() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  int w = s_.ExportAreaX2 - s_.ExportAreaX1;
  const int step = s_.Gray16Horizontal ? 2 : 1;
  if (s_.Gray16Horizontal) w /= 2;
  const int pages = VerticalPages(true);
  const bool bl = s_.Origin == OriginCorner::BL;
  int x = bl ? s_.ExportAreaX1 : s_.ExportAreaX2 - 1;
  for (int col = 0; col < w && !s_.Abort; ++col, x += bl ? step : -step) {
    formatter_.GroupStart();
    s_.CurY = s_.ExportAreaY2 - 1;
    for (int page = 0; page < pages; ++page) {
      if (!BeforeByte()) break;
      s_.CurX = x;
      PackUp();
    }
    if (s_.Abort) break;
    formatter_.GroupEnd();
    s_.CurY = s_.ExportAreaY2 - 1;
  }
}

void DataEncoder::WalkToRightAll() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  int y1 = s_.ExportAreaY1, y2 = s_.ExportAreaY2;
  ApplyLowerHalf(y1, y2);
  const int h = y2 - y1;
  const int pages = HorizontalPages(false);
  const bool tl = s_.Origin == OriginCorner::TL;
  for (int r = 0; r < h && !s_.Abort; ++r) {
    const int row = tl ? y1 + r : y2 - 1 - r;
    formatter_.GroupStart();
    s_.CurX = s_.ExportAreaX1;
    for (int page = 0; page < pages; ++page) {
      if (!BeforeByte()) break;
      s_.CurY = row;
      PackRight();
    }
    if (s_.Abort) break;
    formatter_.GroupEnd();
  }
}

void DataEncoder::WalkToLeftAll() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  int y1 = s_.ExportAreaY1, y2 = s_.ExportAreaY2;
  ApplyLowerHalf(y1, y2);
  const int h = y2 - y1;
  const int pages = HorizontalPages(false);
  const bool tr = s_.Origin == OriginCorner::TR;
  for (int r = 0; r < h && !s_.Abort; ++r) {
    const int row = tr ? y1 + r : y2 - 1 - r;
    // Without the top right origin a row opens with its prefix only: the suffix waits to the end.
    formatter_.GroupStart(tr);
    s_.CurX = s_.ExportAreaX2 - 1;
    for (int page = 0; page < pages; ++page) {
      if (!BeforeByte()) break;
      s_.CurY = row;
      PackLeft();
    }
    if (s_.Abort) break;
    formatter_.GroupEnd();
  }
}

namespace {
int BandWidth(const ConversionSession& s) {
  if (s.Monochrome) return s.Not6bit ? 8 : 6;
  if (s.Gray16 || s.Colours16) return 2;
  if (s.Gray4 || s.Gray4TwoPages) return 4;
  return 1;  // gray 32 and the modes from 256 colours up
}
}  // namespace

void DataEncoder::WalkToRight() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  int y1 = s_.ExportAreaY1, y2 = s_.ExportAreaY2;
  ApplyLowerHalf(y1, y2);
  const int h = y2 - y1;
  const int band = BandWidth(s_);
  const int pages = HorizontalPages(true);
  const bool tl = s_.Origin == OriginCorner::TL;
  int x = s_.ExportAreaX1;
  for (int page = 0; page < pages && !s_.Abort; ++page) {
    formatter_.GroupStart();
    for (int r = 0; r < h; ++r) {
      const int row = tl ? y1 + r : y2 - 1 - r;
      if (row >= y2 || x >= s_.ExportAreaX2) break;
      if (!BeforeByte()) break;
      s_.CurX = x;
      s_.CurY = row;
      PackRight();
    }
    if (s_.Abort) break;
    if (tl)
      formatter_.GroupEnd();
    else
      formatter_.GroupSuffixNow();
    x += band;
    if (!tl && x > s_.ExportAreaX2) break;
  }
  if (!tl && s_.Source) {
    s_.CanvasWidth = s_.Source->Width();
    s_.CanvasHeight = s_.Source->Height();
  }
}

void DataEncoder::WalkToLeft() {
  s_.ByteCount = 0;
  s_.CurrentByte = 0;
  int y1 = s_.ExportAreaY1, y2 = s_.ExportAreaY2;
  ApplyLowerHalf(y1, y2);
  const int h = y2 - y1;
  const int band = BandWidth(s_);
  const int pages = HorizontalPages(true);
  const bool tr = s_.Origin == OriginCorner::TR;
  int x = s_.ExportAreaX2 - 1;
  for (int page = 0; page < pages && !s_.Abort; ++page) {
    formatter_.GroupStart();
    for (int r = 0; r < h; ++r) {
      const int row = tr ? y1 + r : y2 - 1 - r;
      if (row >= y2 || x < s_.ExportAreaX1) break;
      if (!BeforeByte()) break;
      s_.CurX = x;
      s_.CurY = row;
      PackLeft();
    }
    if (s_.Abort) break;
    if (tr)
      formatter_.GroupEnd();
    else
      formatter_.GroupSuffixNow();
    x -= band;
  }
  if (!tr && s_.Source) {
    s_.CanvasWidth = s_.Source->Width();
    s_.CanvasHeight = s_.Source->Height();
  }
}

// ---- packers --------------------------------------------------------------------------------

void DataEncoder::PackDown() { Pack(Step::Down); }
void DataEncoder::PackUp() { Pack(Step::Up); }
void DataEncoder::PackRight() { Pack(Step::Right); }
void DataEncoder::PackLeft() { Pack(Step::Left); }

void DataEncoder::Advance(Step step) {
  switch (step) {
    case Step::Down: ++s_.CurY; break;
    case Step::Up: --s_.CurY; break;
    case Step::Right: ++s_.CurX; break;
    case Step::Left: --s_.CurX; break;
  }
}

Colour DataEncoder::ReadPixel(Step step) {
  const Colour c = s_.Source ? s_.Source->GetPixel(s_.CurX, s_.CurY) : kOutside;
  Advance(step);
  return c;
}

void DataEncoder::PrepareValues() {
  values_.clear();
  valuesWidth_ = 0;
  // Worth it for the large palettes only, and only while the plane stays small beside the canvas.
  const Bitmap* src = s_.Source;
  if (!src || s_.Colours16M || s_.PaletteSize <= 0) return;
  const std::size_t w = static_cast<std::size_t>(src->Width()), h = static_cast<std::size_t>(src->Height());
  if (w * h == 0 || w * h > (std::size_t{1} << 22)) return;
  values_.resize(w * h);
  for (std::size_t y = 0; y < h; ++y) colourIndex_.IndexOfRun(src->Row(static_cast<int>(y)), &values_[y * w], w);
  valuesWidth_ = static_cast<int>(w);
}

bool DataEncoder::ValueAt(int x, int y, int& value) {
  const Bitmap* src = s_.Source;
  if (valuesWidth_ > 0 && x >= 0 && y >= 0 && x < src->Width() && y < src->Height()) {
    const int v = values_[static_cast<std::size_t>(y) * static_cast<std::size_t>(valuesWidth_) + static_cast<std::size_t>(x)];
    if (v >= 0) {
      value = v;
      return true;
    }
  }
  return ValueOf(src ? src->GetPixel(x, y) : kOutside, value);
}

bool DataEncoder::ReadValue(Step step, int& value) {
  const int x = s_.CurX, y = s_.CurY;
  Advance(step);
  return ValueAt(x, y, value);
}

void DataEncoder::ReportColourNotFound(Colour c) {
  if (counting_) {
    s_.Abort = true;
    return;
  }
  ui_.MessageDlg(std::string(" Color not found in Palette! \r") +
                     (c == kOutside ? " Check if Heigth or Width matches with pixels per byte format " : " "),
                 "Error Message", DlgType::Error, {"OK"});
  s_.Abort = true;
}

bool DataEncoder::ValueOf(Colour c, int& value) {
  if (c == kOutside) {
    const int m = s_.ModeNumber;
    if ((m >= 26 && m <= 28) || m == 54 || m == 55) {
      value = 0;
      return true;
    }
  }
  int v;
  if (s_.Colours16M)
    v = c;
  else if (c == lastColour_)
    v = lastValue_;  // neighbours mostly share a colour
  else {
    v = colourIndex_.IndexOf(c);
    lastColour_ = c;
    lastValue_ = v;
  }
  if (v < 0) {
    if (s_.Gray16Slices) {
      value = -1;
      return true;
    }
    ReportColourNotFound(c);
    return false;
  }
  value = v;
  return true;
}

std::uint32_t DataEncoder::Transform(std::uint32_t v, int width) const {
  // A byte's bits are mirrored here, before the rearrangement; a wide value keeps its bits and
  // has each of its bytes mirrored as it goes out (EmitWide).
  if (!s_.BigEndian && width == 8) v = static_cast<std::uint32_t>(ReverseByteBits(static_cast<int>(v)));
  switch (width) {
    case 12: v = Reorder4096Output(v, s_.CanvasBits); break;
    case 16: v = Reorder65kOutput(v, s_.CanvasBits); break;
    case 18: v = Reorder262kOutput(v, s_.CanvasBits); break;
    case 24: v = Reorder16MOutput(v, s_.CanvasBits); break;
    default: break;
  }
  if (s_.ReorderOn) v = ReorderOutput(v, s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits);
  return v;
}

void DataEncoder::Emit(int byte) {
  if (counting_) {
    ++counted_;
    return;
  }
  s_.CurrentByte = byte & 0xFF;
  formatter_.EmitDataByte();
}

void DataEncoder::EmitWide(int byte) {
  // MSB last is a bit order, the same for every byte: each byte of a pixel of 12 bits and more is
  // the byte of MSB first with its bits reversed. Mirroring the whole value as a byte would keep
  // its low 8 bits only and drop the rest of the colour.
  Emit(s_.BigEndian ? byte : ReverseByteBits(byte));
}

void DataEncoder::PackMonochrome(Step step) {
  // Bit weights in the order the pixels are read.
  static constexpr int kMsbFirst8[] = {128, 64, 32, 16, 8, 4, 2, 1};
  static constexpr int kMsbLast8[] = {1, 2, 4, 8, 16, 32, 64, 128};
  static constexpr int kMsbFirst6[] = {32, 16, 8, 4, 2, 1};
  static constexpr int kMsbLast6[] = {1, 2, 4, 8, 16, 32};
  const bool six = !s_.Not6bit && (step == Step::Right || step == Step::Left);
  const int* order = six ? (s_.BigEndian ? kMsbFirst6 : kMsbLast6) : (s_.BigEndian ? kMsbFirst8 : kMsbLast8);
  const int count = six ? 6 : 8;
  int byte = 0;
  for (int i = 0; i < count; ++i) {
    bool within = true;
    if (step == Step::Down || step == Step::Up) within = s_.CurY <= s_.CanvasHeight;
    if (step == Step::Right) within = s_.CurX <= s_.CanvasWidth;
    const Colour c = ReadPixel(step);
    if (within && c == kBlack) {
      byte += order[i];
      formatter_.MarkBit(order[i]);
    }
  }
  // The byte is compared as read: the cut below and the rearrangement come after.
  s_.CurrentByte = byte;
  if (CompressStep()) return;
  if (step == Step::Right || step == Step::Left) {
    switch (s_.PixelsPerByteSetting) {
      case 4: byte &= 240; break;
      case 5: byte &= 248; break;
      case 6: byte &= 252; break;
      case 7: byte &= 254; break;
      default: break;
    }
  }
  if (s_.ReorderOn) byte = static_cast<int>(ReorderOutput(static_cast<std::uint32_t>(byte), s_.ReorderTable,
                                                          s_.SwapFirstLast, s_.CanvasBits));
  Emit(byte);
}

void DataEncoder::Pack(Step step) {
  if (s_.Monochrome) {
    PackMonochrome(step);
    return;
  }
  const bool vertical = step == Step::Down || step == Step::Up;
  int p[8] = {0};

  if (s_.Gray4 || s_.Gray4TwoPages) {
    if (s_.Gray4TwoPages && s_.Direction == PagingDirection::Down) {
      // Both planes' source bytes at once: eight pixels down the column.
      for (int i = 0; i < 8; ++i)
        if (!ReadValue(step, p[i])) return;
      int first = (p[0] << 6) + (p[1] << 4) + (p[2] << 2) + p[3];
      int second = (p[4] << 6) + (p[5] << 4) + (p[6] << 2) + p[7];
      if (s_.ReorderOn) {
        first = static_cast<int>(ReorderOutput(static_cast<std::uint32_t>(first), s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits));
        second = static_cast<int>(ReorderOutput(static_cast<std::uint32_t>(second), s_.ReorderTable, s_.SwapFirstLast, s_.CanvasBits));
      }
      Emit(first);
      Emit(second);
      return;
    }
    for (int i = 0; i < 4; ++i) {
      if (i > 0 && step == Step::Up && s_.CurY < 0) break;
      if (!ReadValue(step, p[i])) return;
    }
    Emit(static_cast<int>(Transform(static_cast<std::uint32_t>((p[0] << 6) + (p[1] << 4) + (p[2] << 2) + p[3]), 8)));
    return;
  }

  if (s_.Gray32) {
    if (!ReadValue(step, p[0])) return;
    if (!s_.Packed) {
      Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32Left ? p[0] << 3 : p[0]), 8)));
      return;
    }
    const int g = p[0] * 8;
    s_.Gray32Counter = s_.Gray32Counter % 3 + 1;
    if (s_.Gray32Counter == 1) {
      s_.Gray32A = g;
    } else if (s_.Gray32Counter == 2) {
      Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32A + (g >> 6)), 8)));
      s_.Gray32C = (g * 4) & 224;
    } else {
      Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(s_.Gray32C + (g >> 3)), 8)));
      s_.Gray32Counter = 0;
    }
    return;
  }

  if (s_.Colours8) {
    for (int i = 0; i < 8; ++i)
      if (!ReadValue(step, p[i])) return;
    const int bytes[3] = {(p[0] << 5) + (p[1] << 2) + (p[2] >> 1),
                          ((p[2] << 7) & 255) + (p[3] << 4) + (p[4] << 1) + (p[5] >> 2),
                          ((p[5] << 6) & 255) + (p[6] << 3) + p[7]};
    for (int i = 0; i < 3; ++i) {
      if (i > 0) formatter_.StartDataComment();
      Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(bytes[i]), 8)));
    }
    return;
  }

  if (s_.Gray16 || s_.Colours16) {
    if (s_.Gray16Slices && step == Step::Down) {
      if (s_.ExportAreaY2 % 8 != 0) ++s_.ExportAreaY2;
      for (int b = 0; b < 4; ++b) {
        int v0 = 0, v1 = 0;
        ReadValue(step, v0);
        ReadValue(step, v1);
        int byte = 0;
        if (v0 >= 0 && v1 >= 0) byte = s_.SwapNibble ? (v1 << 4) + v0 : (v0 << 4) + v1;
        Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(byte), 8)));
        formatter_.StartDataComment();
      }
      ++s_.CurY;
      return;
    }
    if (s_.Gray16Horizontal && vertical) {
      const int x = s_.CurX;
      const bool forward = step == Step::Down ? s_.Origin == OriginCorner::TL : s_.Origin == OriginCorner::BL;
      if (!ValueAt(x, s_.CurY, p[0])) return;
      if (!ValueAt(forward ? x + 1 : x - 1, s_.CurY, p[1])) return;
      Advance(step);
    } else {
      if (!ReadValue(step, p[0])) return;
      if (!(step == Step::Up && s_.CurY < 0))
        if (!ReadValue(step, p[1])) return;
    }
    const int byte = s_.SwapNibble ? (p[1] << 4) + p[0] : (p[0] << 4) + p[1];
    Emit(static_cast<int>(Transform(static_cast<std::uint32_t>(byte), 8)));
    return;
  }

  // One pixel per call from here on.
  if (!ReadValue(step, p[0])) return;
  const std::uint32_t raw = static_cast<std::uint32_t>(p[0]);

  if (s_.Colours256 || s_.Gray256 || s_.Colours256NoPalette) {
    Emit(static_cast<int>(Transform(raw, 8)));
    return;
  }
  if (s_.Colours4096) {
    const std::uint32_t v = Transform(raw, 12);
    if (!s_.Packed) {
      if (s_.SwapFirstLast) {
        EmitWide(static_cast<int>(v & 255));
        formatter_.StartDataComment();
        EmitWide(static_cast<int>((v >> 8) & 15));
      } else {
        EmitWide(static_cast<int>((v >> 8) & 15));
        formatter_.StartDataComment();
        EmitWide(static_cast<int>(v & 255));
      }
      return;
    }
    if (s_.Packed4096Phase == 0) {
      s_.Packed4096First = static_cast<int>(v);
      EmitWide((s_.Packed4096First >> 4) & 255);
      s_.Packed4096Phase = 1;
    } else {
      EmitWide(((s_.Packed4096First << 4) & 240) + static_cast<int>((v >> 8) & 15));
      formatter_.StartDataComment();
      EmitWide(static_cast<int>(v & 255));
      s_.Packed4096Phase = 0;
    }
    return;
  }
  if (s_.Colours65536) {
    const std::uint32_t v = Transform(raw, 16);
    int hi = static_cast<int>((v >> 8) & 255), lo = static_cast<int>(v & 255);
    if (s_.SwapRedGreen) {
      hi = static_cast<int>((((v << 11) & 0xF800) + (v & 0x7E0)) >> 8) & 255;
      lo = static_cast<int>(((v >> 11) & 31) + (v & 0x7E0)) & 255;
    }
    if (s_.SwapFirstLast) std::swap(hi, lo);
    EmitWide(hi);
    formatter_.StartDataComment();
    EmitWide(lo);
    return;
  }
  if (s_.Colours262kPacked || s_.Colours262kUnpacked) {
    const std::uint32_t v = Transform(raw, 18);
    int b[3];
    if (s_.Colours262kUnpacked) {
      b[0] = static_cast<int>((v >> 12) & 63);
      b[1] = static_cast<int>((v >> 6) & 63);
      b[2] = static_cast<int>(v & 63);
    } else {
      b[0] = static_cast<int>((v >> 16) & 3);
      b[1] = static_cast<int>((v >> 8) & 255);
      b[2] = static_cast<int>(v & 255);
    }
    if (s_.SwapFirstLast) std::swap(b[0], b[2]);
    for (int i = 0; i < 3; ++i) {
      if (i > 0) formatter_.StartDataComment();
      EmitWide(b[i]);
    }
    return;
  }
  if (s_.Colours16M) {
    const std::uint32_t v = Transform(raw, 24);
    int b[3] = {static_cast<int>((v >> 16) & 255), static_cast<int>((v >> 8) & 255), static_cast<int>(v & 255)};
    if (s_.SwapFirstLast) std::swap(b[0], b[2]);
    const bool alpha = !s_.Packed;
    const bool zeroFirst = alpha && !s_.Rgba;
    const bool zeroLast = alpha && s_.Rgba && !s_.SwapFirstLast;
    if (zeroFirst) {
      EmitWide(0);
      formatter_.StartDataComment();
    }
    for (int i = 0; i < 3; ++i) {
      if (i > 0) formatter_.StartDataComment();
      EmitWide(b[i]);
    }
    if (zeroLast) {
      formatter_.StartDataComment();
      EmitWide(0);
    }
  }
}

}  // namespace rm
