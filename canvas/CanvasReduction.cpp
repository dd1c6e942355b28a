// Reduction of the floating selection to the colours of the current mode: the monochrome check
// and threshold slider, dithering, and the gray and palette reductions.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "canvas/CanvasReduction.h"
#include "canvas/TPixelForm.h"
#include "engine/ColourModes.h"
#include "engine/NearestColour.h"

namespace rm {

namespace {

// The question's own words leave a user guessing which answer keeps what.
constexpr const char* kConvertOrReduceHelp =
    "Convert: each pixel takes the nearest palette colour.\n"
    "Reduce: each colour of the picture takes one palette colour of its own.";

// The gray modes: the ramps of 4 to 32 levels and the 256 gray shades.
bool IsGrayMode(const ColourModeInfo& mode) { return mode.Has(ModeFlag::Grayscale | ModeFlag::Gray256); }

bool OnlyBlackAndWhite(const Bitmap& b) {
  for (int y = 0; y < b.Height(); ++y) {
    const std::uint32_t* row = b.Row(y);
    for (int x = 0; x < b.Width(); ++x)
      if (row[x] != 0u && row[x] != 0xFFFFFFu) return false;
  }
  return true;
}

// The first pixel of [x0, x1) x [y0, y1) that is neither black nor white.
bool FindColour(const Bitmap& b, int x0, int y0, int x1, int y1, Colour& found) {
  x0 = std::max(x0, 0);
  y0 = std::max(y0, 0);
  x1 = std::min(x1, b.Width());
  y1 = std::min(y1, b.Height());
  for (int y = y0; y < y1; ++y) {
    const std::uint32_t* row = b.Row(y);
    for (int x = x0; x < x1; ++x)
      if (row[x] != 0u && row[x] != 0xFFFFFFu) {
        found = static_cast<Colour>(row[x]);
        return true;
      }
  }
  return false;
}

}  // namespace

std::vector<Colour> CanvasReduction::ReductionTable() const {
  switch (ModeRow(session_.ModeNumber).Table()) {
    case ColourTable::ModeColours: return session_.ModeColours;
    case ColourTable::PaletteTable: return session_.PaletteTable;
    case ColourTable::None: break;
  }
  return {};
}

int CanvasReduction::ReductionModeColours() const {
  // The 16 bit mode counts 65535 colours but its table holds 65536.
  return session_.NumberOfColors == 65535 ? 65536 : session_.NumberOfColors;
}

void CanvasReduction::CheckColorsSelection(bool showMessages) {
  ThresholdPending = false;
  DitherDone = false;
  ThresholdApplied = false;
  SelectionOriginalGray = false;
  if (!canvas_.FloatingSelection) return;
  if (session_.Monochrome) {
    CheckMonochrome();
    return;
  }
  CheckGrayOrPalette(showMessages);
}

void CanvasReduction::CheckMonochrome() {
  // The part over the canvas first; a picture larger than the canvas can be dragged, so the rest
  // of it counts as well.
  Colour found = kWhite;
  const bool colour =
      FindColour(canvas_.SelectionBitmap, -canvas_.SelectionLeft, -canvas_.SelectionTop,
                 canvas_.MatrixWidth() - canvas_.SelectionLeft, canvas_.MatrixHeight() - canvas_.SelectionTop, found) ||
      FindColour(canvas_.SelectionBitmap, 0, 0, canvas_.SelectionBitmap.Width(), canvas_.SelectionBitmap.Height(),
                 found);
  canvas_.SelectionReducedToBW = !colour;
  if (!colour) return;
  ThresholdPending = true;
  PendingColour = found;
  ThresholdON();
  ui_.Status("Use trackbar, move and then paste selection...");
}

void CanvasReduction::CheckGrayOrPalette(bool showMessages) {
  const ColourModeInfo& mode = ModeRow(session_.ModeNumber);
  if (session_.Colours16M || mode.Has(ModeFlag::Colours16M)) return;
  const std::vector<Colour> table = ReductionTable();
  const int size = static_cast<int>(table.size());
  if (size < 3) return;
  Bitmap& sel = canvas_.SelectionBitmap;

  if (IsGrayMode(mode)) {
    if (OnlyBlackAndWhite(sel)) return;
    DoGrayscale(sel, false);
    const int count = CountColors(sel);
    bool reduce = false;
    if (count <= size && showMessages) {
      ui_.ExplainNextQuestion(kConvertOrReduceHelp);
      reduce = ui_.MessageDlg("Convert or Reduce to Grayscale Palette \r" + std::to_string(count) + " gray levels",
                              "Confirmation", DlgType::Confirmation, {"Convert", "Reduce"}) == "Reduce";
    }
    ReduceToPalette(sel, reduce);
    ui_.Status(" Picture has been converted to " + std::to_string(CountColors(sel)) + " grey levels");
    return;
  }

  const Bitmap before = sel;
  const int colours = CountColors(sel);
  // First stage: every colour onto the palette. A picture of many colours in the 256 colours
  // mode is diffused onto it, so that gradients do not break into bands.
  if (mode.Has(ModeFlag::Colours256) && colours >= 256) {
    NearestColour nearest;
    nearest.Configure(session_);
    ConvertTo256Colors(sel, nearest);
  } else if (!ReduceToPalette(sel, false)) {
    return;
  }
  // Second stage: a picture with no more colours than the palette may be mapped one to one
  // instead; the question is not worth asking for a handful of colours.
  const int remaining = CountColors(sel);
  bool mapped = false;
  if (remaining > size) {
    mapped = ConvertToMyColor(sel, table, ReductionModeColours(), ui_);
  } else if (showMessages && colours >= 17 && colours <= size) {
    ui_.ExplainNextQuestion(kConvertOrReduceHelp);
    const std::string answer =
        ui_.MessageDlg("Convert or Reduce to Color Palette \r" + std::to_string(colours) + " colors", "Confirmation",
                       DlgType::Confirmation, {"Convert", "Reduce"});
    if (answer == "Reduce") {
      sel = before;
      mapped = ReduceToPalette(sel, true);
    }
  }
  const int after = CountColors(sel);
  if (mapped)
    ui_.Status(" Picture has been converted from " + std::to_string(colours) + " to " + std::to_string(after) +
               " colors");
  else if (sel == before)
    ui_.Status(" Picture has " + std::to_string(after) + " colors");
  else
    ui_.Status(" Picture has been converted to " + std::to_string(after) + " colors");
  canvas_.CopyBitmapToCanvas();
}

bool CanvasReduction::ReduceToPalette(Bitmap& bitmap, bool reduce) {
  const std::vector<Colour> table = ReductionTable();
  if (table.size() < 3) return false;
  if (reduce) return ConvertToMyColor(bitmap, table, ReductionModeColours(), ui_);
  if (ModeRow(session_.ModeNumber).grayLevels > 0) {
    // The colour search passes colours unchanged in the gray ramp modes; a gray picture is
    // brought onto the ramp by the nearest level, the first entry winning a tie.
    std::array<Colour, 256> level{};
    for (int g = 0; g < 256; ++g) {
      int best = 1 << 30;
      for (Colour c : table) {
        const int d = std::abs(GrayLevel(c) - g);
        if (d < best) {
          best = d;
          level[static_cast<std::size_t>(g)] = c;
        }
      }
    }
    for (int y = 0; y < bitmap.Height(); ++y) {
      std::uint32_t* row = bitmap.Row(y);
      for (int x = 0; x < bitmap.Width(); ++x)
        row[x] = static_cast<std::uint32_t>(level[static_cast<std::size_t>(GrayLevel(static_cast<Colour>(row[x])))]);
    }
    return true;
  }
  NearestColour nearest;
  nearest.Configure(session_);
  return ConvertToNearestColor(bitmap, nearest, ui_);
}

bool CanvasReduction::ThresholdON() {
  if (canvas_.TransferLayerVisible) return false;
  ThresholdVisible = true;
  return true;
}

void CanvasReduction::ThresholdOFF() { ThresholdVisible = false; }

void CanvasReduction::DoGrayscale(Bitmap& bitmap, bool partial) {
  if (partial)
    MakeGray(bitmap, -canvas_.SelectionLeft, -canvas_.SelectionTop, canvas_.MatrixWidth() - canvas_.SelectionLeft,
             canvas_.MatrixHeight() - canvas_.SelectionTop);
  else
    MakeGray(bitmap);
}

void CanvasReduction::BalanceGreyScale() {
  if (!canvas_.FloatingSelection) return;
  if (!SelectionOriginalGray) {
    DoGrayscale(canvas_.SelectionOriginal, false);
    SelectionOriginalGray = true;
  }
  if (!session_.Monochrome) {
    canvas_.SelectionBitmap = canvas_.SelectionOriginal;
    canvas_.CopyBitmapToCanvas();
    return;
  }
  canvas_.SelectionBitmap = Bitmap(canvas_.SelectionOriginal.Width(), canvas_.SelectionOriginal.Height(), kWhite);
  // A selection standing off the top or left edge is read from its first pixel over the canvas.
  const int offsetX = canvas_.SelectionLeft < 0 ? -canvas_.SelectionLeft : 0;
  const int offsetY = canvas_.SelectionTop < 0 ? -canvas_.SelectionTop : 0;
  ThresholdBlackPixels = ApplyThreshold(canvas_.SelectionOriginal, canvas_.SelectionBitmap, ThresholdLevel, offsetX,
                                        offsetY, canvas_.MatrixWidth(), canvas_.MatrixHeight());
  ThresholdApplied = true;
  canvas_.SelectionReducedToBW = true;
  canvas_.CopyBitmapToCanvas();
}

void CanvasReduction::SelectionIsFullImage() {
  canvas_.FloatSelection(canvas_.WorkBitmap, 0, 0);
  SelectionOriginalGray = false;
  ThresholdApplied = false;
  DitherDone = false;
}

void CanvasReduction::DitherSelectionBitmap() {
  if (!canvas_.FloatingSelection) return;
  ui_.Status("Perform Dithering");
  Dither(canvas_.SelectionBitmap, ColorReductionChoice, DitherChoice);
  canvas_.CopyBitmapToCanvas();
  if (ColorReductionChoice == ColorReduction::Monochrome) {
    DitherDone = true;
    canvas_.SelectionReducedToBW = true;
  }
}

CanvasReduction::PasteOutcome CanvasReduction::PasteLayerButtonClick() {
  if (!canvas_.FloatingSelection) return PasteOutcome::NothingToPaste;
  if (session_.Monochrome && ThresholdPending && !DitherDone && !ThresholdApplied) {
    const std::string answer = ui_.MessageDlg(
        " Image conversion to monochrome has not been done !\r  \rPerform Dithering (AUTO-Conversion to Black and "
        "White)\ror for MANUAL Conversion, move Threshold Slider located on top of Work Canvas ",
        "Pending Image conversion", DlgType::Warning, {"Ok", "Cancel", "Dithering"});
    if (answer == "Cancel") {
      canvas_.DiscardSelection();
      ThresholdPending = false;
      ThresholdApplied = false;
      SelectionOriginalGray = false;
      ThresholdOFF();
      canvas_.CopyBitmapToCanvas();
      return PasteOutcome::Cancelled;
    }
    if (answer == "Dithering") {
      DitherSelectionBitmap();
      return PasteOutcome::Dithered;
    }
  }
  canvas_.PasteSelection();
  ThresholdPending = false;
  DitherDone = false;
  ThresholdApplied = false;
  SelectionOriginalGray = false;
  canvas_.SelectionReducedToBW = true;
  ThresholdOFF();
  canvas_.CopyBitmapToCanvas();
  return PasteOutcome::Pasted;
}

}  // namespace rm
