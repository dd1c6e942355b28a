#include "shell/TMainForm.h"

#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <optional>
#include <sstream>

#include "engine/ColourModes.h"
#include "engine/InfoFile.h"
#include "engine/NearestColour.h"
#include "engine/OutputNaming.h"
#include "engine/Palette.h"
#include "shell/Application.h"

namespace rm {

ConversionSession& TMainForm::app_session() { return app_.session; }

// ---- colour modes ---------------------------------------------------------------------------

bool TMainForm::ResetAndCheckColorMode() {
  Globals& g = app_.globals;
  app_.pixelForm.ColourPickerActive = false;
  g.PaletteLabel = "Current Palette is Default";
  struct Refusal {
    const bool& active;
    const char* text;
    std::function<bool()> leave;
  };
  const Refusal refusals[] = {
      {g.AnimationMode,
       "Mode change not possible while an animation is active, first save artwork, quit animation mode ",
       [this] { return QuitAnimationMode(); }},
      {g.BatchEditMode, " Mode change not possible while Processing batch creation is active, first quit this mode ",
       [this] { return QuitPostClick(); }},
      {g.FontScriptMode, " Mode change not possible while Font creation is active, first quit Font Creation mode  ",
       [this] { return QuitFontscriptClick(); }},
      {g.TouchScriptMode,
       " Mode change not possible while touch panel creation is active, first quit touch panel mode ",
       [this] { return QuittouchpanelscriptClick(); }},
  };
  for (const auto& r : refusals) {
    if (!r.active) continue;
    if (app_.ui.MessageDlg(r.text, "Warning", DlgType::Warning, {"OK", "Quit Mode"}) != "Quit Mode") return true;
    // A mode that the user did not leave after all still stands in the way.
    if (!r.leave() || r.active) return true;
  }
  if (app_.pixelForm.FloatingSelection) {
    const std::string a = app_.ui.MessageDlg(
        " Floating Selection layer has not been pasted to Work Canvas !\r Paste now, Discard selection or Cancel ? ",
        "Confirm", DlgType::Confirmation, {"No Action", "Discard", "Cancel"});
    if (a == "Discard") app_.pixelForm.DiscardSelection();
    return true;
  }
  g.ExplorerNoMatrixMode = false;
  ResetMenus();
  return false;
}

namespace {

// The session's mode switches by the bit that turns them on.
constexpr std::pair<ModeFlags, bool ConversionSession::*> kModeSwitches[] = {
    {ModeFlag::Monochrome, &ConversionSession::Monochrome},
    {ModeFlag::Grayscale, &ConversionSession::Grayscale},
    {ModeFlag::Gray4, &ConversionSession::Gray4},
    {ModeFlag::Gray4TwoPages, &ConversionSession::Gray4TwoPages},
    {ModeFlag::Gray16, &ConversionSession::Gray16},
    {ModeFlag::Gray16Horizontal, &ConversionSession::Gray16Horizontal},
    {ModeFlag::Gray16Slices, &ConversionSession::Gray16Slices},
    {ModeFlag::Gray32, &ConversionSession::Gray32},
    {ModeFlag::Gray32Left, &ConversionSession::Gray32Left},
    {ModeFlag::Gray256, &ConversionSession::Gray256},
    {ModeFlag::Colours8, &ConversionSession::Colours8},
    {ModeFlag::Colours16, &ConversionSession::Colours16},
    {ModeFlag::Colours256, &ConversionSession::Colours256},
    {ModeFlag::Colours256NoPalette, &ConversionSession::Colours256NoPalette},
    {ModeFlag::Colours4096, &ConversionSession::Colours4096},
    {ModeFlag::Colours65536, &ConversionSession::Colours65536},
    {ModeFlag::Colours262kPacked, &ConversionSession::Colours262kPacked},
    {ModeFlag::Colours262kUnpacked, &ConversionSession::Colours262kUnpacked},
    {ModeFlag::Colours16M, &ConversionSession::Colours16M},
};

// Turns on the switches of the mode; ResetMenus has turned every one off before.
void SetModeBooleans(ConversionSession& s, const ColourModeInfo& mode) {
  for (const auto& [flag, field] : kModeSwitches)
    if (mode.Has(flag)) s.*field = true;
  if (mode.Has(ModeFlag::Unpacked)) s.Packed = false;
}

}  // namespace

void TMainForm::ResetMenus() {
  ConversionSession& s = app_.session;
  for (const auto& [flag, field] : kModeSwitches) s.*field = false;
  s.Packed = true;
}

bool TMainForm::SetColourMode(int modeNumber, bool forcedReload) {
  const ColourModeInfo* info = FindColourMode(modeNumber);
  if (!info) return false;
  ConversionSession& s = app_.session;
  TPixelForm& canvas = app_.pixelForm;
  if (s.ModeNumber == modeNumber && !forcedReload) return false;

  const bool mono = info->Has(ModeFlag::Monochrome);
  const bool trueColour = info->Has(ModeFlag::Colours16M);
  // The artwork a mode change clears stays one Undo away: it is kept here and becomes the entry
  // below the cleared canvas when the history starts anew for the new mode.
  std::optional<Bitmap> cleared;
  if (app_.globals.ApplyingSettings) {
    // A project being read: its canvas is rebuilt at the project's size right after.
  } else if (mono) {
    if (!canvas.IsBlackAndWhite()) {
      app_.ui.MessageDlg(" Work Canvas will be cleared ! ", "Warning", DlgType::Warning, {"OK"});
      cleared = canvas.WorkBitmap;
      canvas.ClearCanvas();
    }
  } else if (!trueColour && canvas.HasArtwork()) {
    const std::string q = " Clear the work canvas before to change to " + std::string(info->clearName) + " mode ? ";
    if (app_.ui.MessageDlg(q, "Canvas not cleared", DlgType::Confirmation, {"Yes", "No"}) != "Yes") return false;
    cleared = canvas.WorkBitmap;
    canvas.ClearCanvas();
  }
  if (ResetAndCheckColorMode()) {
    if (cleared) canvas.WorkBitmap = *cleared;  // the mode stays, and so does its artwork
    return false;
  }

  s.PixelsPerByte = info->pixelsPerByte;
  s.ModeNumber = modeNumber;
  s.CanvasBits = info->canvasBits;
  s.ByteClass = info->byteClass;
  if (info->colours >= 0) s.NumberOfColors = info->colours;
  if (info->paletteSize >= 0) s.PaletteSize = info->paletteSize;
  SetModeBooleans(s, *info);
  // A mode chosen by name sets every switch it implies: monochrome is positive, its inverted twin
  // negative, whatever an earlier project or run left.
  if (mono) s.NegativeOutput = info->Has(ModeFlag::Negative);
  if (!mono) {
    s.NegativeOutput = false;
    s.Not6bit = true;
    s.Compression = false;
  }
  RebuildColourTables();
  StatusBarAndLog(std::string(info->logText));
  app_.globals.CurrentSchemeName = std::string(info->shortName);
  // The history of one mode does not hold in another.
  if (cleared) {
    const Bitmap blank = canvas.WorkBitmap;
    canvas.WorkBitmap = *cleared;
    canvas.ResetHistory();
    canvas.WorkBitmap = blank;
    canvas.CopyCanvasToSaveTable();
  } else {
    canvas.ResetHistory();
  }
  return true;
}

void TMainForm::RebuildColourTables() {
  ConversionSession& s = app_.session;
  s.ModeColours.clear();
  s.PaletteTable.clear();
  if (s.Monochrome || s.Colours16M) return;
  const PaletteLoadResult r = SelectionPalette(s, app_.Folders(), app_.ui);
  if (!r.CurrentLabel.empty()) app_.globals.PaletteLabel = r.CurrentLabel;
}

void TMainForm::ToggleNegativeOutput() {
  ConversionSession& s = app_.session;
  if (!s.Monochrome) {
    app_.ui.MessageDlg("This function is only accessible for monochrome mode !", "Information", DlgType::Information,
                       {"OK"});
    return;
  }
  s.NegativeOutput = !s.NegativeOutput;
  s.ModeNumber = MonochromeMode(s.NegativeOutput);
  StatusBarAndLog(s.NegativeOutput ? "Negative output mode" : "Positive output mode ");
}

void TMainForm::ToggleST7528Mode() {
  ConversionSession& s = app_.session;
  s.Gray16Slices = !s.Gray16Slices;
  // The 16 gray levels mode and its slices of 8 pixels are one mode with the switch on or off.
  if (const ColourModeInfo* twin = ModeWithFlag(ModeRow(s.ModeNumber), ModeFlag::Gray16Slices, s.Gray16Slices))
    s.ModeNumber = twin->modeNumber;
  StatusBarAndLog(s.Gray16Slices ? "ST7528 mode ON" : "ST7528 mode OFF");
}

void TMainForm::Toggle6BitMode() {
  ConversionSession& s = app_.session;
  if (!s.Horizontal) {
    app_.ui.MessageDlg(" T6963 6 bits mode only in a Horizontal Data Direction ", "6 bits mode error", DlgType::Error,
                       {"OK"});
    return;
  }
  if (!s.Monochrome) {
    app_.ui.MessageDlg("Operation allowed in monochrome mode only !", "6 bits mode error", DlgType::Error, {"OK"});
    return;
  }
  s.Not6bit = !s.Not6bit;
  StatusBarAndLog(s.Not6bit ? "8 bit format enabled" : "6 bit format enabled");
}

void TMainForm::InvertGrayscalePalette() {
  ConversionSession& s = app_.session;
  s.InvertGrayPalette = !s.InvertGrayPalette;
  if (ModeRow(s.ModeNumber).grayLevels > 0) BuildModeColours(s);
}

// ---- Paging Scheme --------------------------------------------------------------------------

namespace {

// The pixels one run of bytes takes along the byte direction. The 8 colour mode packs 8 pixels
// into 3 bytes: its lines must hold whole groups of 8 (the walkers count W div 8 or H div 8 of
// them), and its `PixelsPerByte` of 2.66666666 divides no size evenly.
long double PagingUnit(const ConversionSession& s) { return s.Colours8 ? 8.0L : s.PixelsPerByte; }

}  // namespace

bool TMainForm::SetDirection(PagingDirection d) {
  ConversionSession& s = app_.session;
  if (s.Gray16Slices && d != PagingDirection::Down) {
    app_.ui.MessageDlg(
        " In grayscale 16 gray levels slices of 8 vertical pixels    \r mode , only then downwards slice mode is "
        "allowed     \r ",
        "Warning", DlgType::Warning, {"OK"});
    SetDirection(PagingDirection::Down);
    return false;
  }
  if (s.Gray32) {
    switch (d) {
      case PagingDirection::Down: d = PagingDirection::DownAll; break;
      case PagingDirection::Up: d = PagingDirection::UpAll; break;
      case PagingDirection::ToRight: d = PagingDirection::ToRightAll; break;
      case PagingDirection::ToLeft: d = PagingDirection::ToLeftAll; break;
      default: break;
    }
  }
  const bool horizontal = IsHorizontal(d);
  if (!horizontal) s.Not6bit = true;
  if (!s.SizeCheckOffForFonts) {
    const TPixelForm& c = app_.pixelForm;
    // The messages name the multiple the mode really needs (8 in monochrome, 4 in 4 gray levels,
    // 2 in 16 ...): a fixed 8 sent users of the gray modes the wrong way.
    auto multiple = [](long double by) {
      std::ostringstream t;
      t << static_cast<double>(by);
      return t.str();
    };
    if (!horizontal && std::fmod(static_cast<long double>(c.MatrixHeight()), PagingUnit(s)) != 0) {
      app_.ui.MessageDlg(
          "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Vertical size should be a multiple "
          "of " +
              multiple(PagingUnit(s)) + " for vertical conversion  \r Use a horizontal conversion direction",
          "Warning", DlgType::Warning, {"OK"});
      return false;
    }
    const long double by = s.Not6bit ? PagingUnit(s) : 6.0L;
    if (horizontal && std::fmod(static_cast<long double>(c.MatrixWidth()), by) != 0) {
      app_.ui.MessageDlg(
          "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Horizontal size should be a multiple "
          "of " +
              multiple(by) + " for horizontal conversion \r Use a vertical conversion direction",
          "Warning", DlgType::Warning, {"OK"});
      return false;
    }
  }
  s.Direction = d;
  s.Horizontal = horizontal;
  if (!s.OriginLocked) {
    switch (d) {
      case PagingDirection::Up:
      case PagingDirection::UpAll: s.Origin = OriginCorner::BL; break;
      case PagingDirection::ToLeft:
      case PagingDirection::ToLeftAll: s.Origin = OriginCorner::TR; break;
      default: s.Origin = OriginCorner::TL; break;
    }
  }
  StatusBarAndLog(DirectionInfoText(d));
  return true;
}

void TMainForm::ToggleOriginCorner() {
  ConversionSession& s = app_.session;
  // Vertical directions move the origin between left and right, horizontal ones between top and
  // bottom, keeping the other coordinate.
  if (s.Horizontal) {
    switch (s.Origin) {
      case OriginCorner::TL: s.Origin = OriginCorner::BL; break;
      case OriginCorner::BL: s.Origin = OriginCorner::TL; break;
      case OriginCorner::TR: s.Origin = OriginCorner::BR; break;
      case OriginCorner::BR: s.Origin = OriginCorner::TR; break;
    }
  } else {
    switch (s.Origin) {
      case OriginCorner::TL: s.Origin = OriginCorner::TR; break;
      case OriginCorner::TR: s.Origin = OriginCorner::TL; break;
      case OriginCorner::BL: s.Origin = OriginCorner::BR; break;
      case OriginCorner::BR: s.Origin = OriginCorner::BL; break;
    }
  }
}

void TMainForm::MsbFirst() {
  app_.session.BigEndian = true;
  StatusBarAndLog("MSB first");
}

void TMainForm::MsbLast() {
  app_.session.BigEndian = false;
  StatusBarAndLog("MSB last");
}

void TMainForm::SetOutputKind(OutputKind kind) {
  app_.session.Output = kind;
  defineOutputFileName();
  switch (kind) {
    case OutputKind::Bits8: StatusBarAndLog("8 bit output format"); break;
    case OutputKind::Bits16: StatusBarAndLog("16 bit output format"); break;
    case OutputKind::Bits32: StatusBarAndLog("32 bit output format"); break;
    case OutputKind::BinaryFile: StatusBarAndLog("Binary output mode"); break;
    case OutputKind::IntelHex: StatusBarAndLog("Hex File output mode"); break;
  }
}

bool TMainForm::ExportToBinaryClick() {
  ConversionSession& s = app_.session;
  if (s.Output == OutputKind::IntelHex) return app_.imageForm.EncodeButtonClick();
  // A one-off binary image of the canvas: the user's word width and compression come back after.
  const OutputKind kind = s.Output;
  const bool compression = s.Compression;
  s.Compression = false;
  HexOutput1Click();
  const bool ok = app_.imageForm.EncodeButtonClick();
  SetOutputKind(kind);
  s.Compression = compression;
  return ok;
}

void TMainForm::SetDataPerLine(int n) {
  DataSyntax& syn = app_.session.Syntax;
  syn.DataPerLine = n;
  if (n == 1) {
    syn.SeparatorOn = false;
    StatusBarAndLog("1 data per line is set !");
  }
}

// ---- Convert --------------------------------------------------------------------------------

bool TMainForm::InterleaveRows() {
  ConversionSession& s = app_.session;
  Bitmap& b = app_.pixelForm.WorkBitmap;
  // The rows are reordered before any walk, so every direction can take them, but a sliced
  // horizontal walk runs down bands of rows and needs them to pair up: an even height.
  const bool slicedHorizontal = s.Direction == PagingDirection::ToRight || s.Direction == PagingDirection::ToLeft;
  if (slicedHorizontal && b.Height() % 2 != 0) {
    app_.ui.MessageDlg(
        " Interlaced only with not sliced horizontal data direction scheme  \r and even number of vertical pixels",
        "Warning", DlgType::Warning, {"OK"});
    return false;
  }
  Bitmap out(b.Width(), b.Height());
  const int h = b.Height();
  // The odd rows come from the second half. With an odd height the first half has the extra row
  // (H/2 rounded up): taken as H/2 rounded down, the last row would be lost and a middle one
  // written twice.
  const int half = (h + 1) / 2;
  for (int r = 0; r < h; ++r) {
    const int src = (r % 2 == 0) ? r / 2 : half + r / 2;
    std::copy(b.Row(src), b.Row(src) + b.Width(), out.Row(r));
  }
  b = std::move(out);
  return true;
}

bool TMainForm::ExportColorPaletteAsArray3Click() {
  ConversionSession& s = app_.session;
  if (ModeRow(s.ModeNumber).Table() != ColourTable::PaletteTable) {
    // The menu item is only offered in these modes; the command line can still ask for it.
    app_.ui.MessageDlg(" A Color Look-up Table exists only in the 256 gray, 256, 4096, 65536 and 262k colors modes ! ",
                       "Information", DlgType::Information, {"OK"});
    return false;
  }
  if (s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex) SetOutputKind(OutputKind::Bits8);
  s.WorkEol = s.Syntax.Eol;
  s.WorkEolString = s.Syntax.EolString;
  app_.encoder.Canvas().floatingSelection = app_.pixelForm.FloatingSelection;
  app_.encoder.Canvas().animationActive = app_.globals.AnimationMode;
  const bool ok = app_.encoder.ConvertPalette();
  if (!ok) return false;
  app_.globals.EditorUnsaved = true;
  app_.globals.EditorFileName.clear();
  // The table is saved beside the picture's tables as "COLORLUT" + the output file's name, where
  // an output folder was chosen; otherwise it waits in the editor like any table.
  if (!s.OutputFolder.empty()) {
    const std::string path = s.OutputFolder + "/COLORLUT" + DefineOutputFileName(s);
    std::string error;
    if (app_.mainText.SaveToFile(path, &error)) {
      app_.globals.EditorUnsaved = false;
      StatusBarAndLog("Data Array saved to file : " + path);
    } else {
      app_.ui.MessageDlg(" File could not be saved to disk, access denied ! \r Reason = " + error, "Error",
                         DlgType::Error, {"OK"});
    }
  }
  return true;
}

bool TMainForm::HasStrayColours() const {
  const ConversionSession& s = app_.session;
  // Kept between conversions: the index is rebuilt only when the table has changed.
  strayIndex_.Build(s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours);
  const Bitmap& b = app_.pixelForm.WorkBitmap;
  // Row by row through the run lookup, which fetches a large palette's slots ahead of use.
  std::vector<std::int32_t> values(static_cast<std::size_t>(b.Width()));
  for (int y = 0; y < b.Height(); ++y) {
    strayIndex_.IndexOfRun(b.Row(y), values.data(), values.size());
    for (const std::int32_t v : values)
      if (v < 0) return true;
  }
  return false;
}

bool TMainForm::TranslateCanvas() {
  ConversionSession& s = app_.session;
  Globals& g = app_.globals;
  TPixelForm& canvas = app_.pixelForm;
  const PagingDirection d = s.Direction;
  const bool sliced = d == PagingDirection::Up || d == PagingDirection::Down || d == PagingDirection::ToLeft ||
                      d == PagingDirection::ToRight;
  s.UnderDevelopment = false;
  // The date in the table's top comment and in its parameter file is this conversion's.
  s.LastInfoDateText = FormatDateTime(app_.clock.Now());
  if (s.Colours8 && sliced) {
    app_.ui.MessageDlg(" Sorry, this 3bpp color conversion scheme \r is under development ", "Under Dev !",
                       DlgType::Information, {"OK"});
    s.UnderDevelopment = true;
    return false;
  }
  if (s.Gray4TwoPages) {
    const std::string& k = s.Syntax.DataFormatKind;
    const bool hexKind = k == "X" || k == "H" || k == "+H+";
    if (s.Output != OutputKind::Bits8 || !hexKind || s.NegativeOutput || g.AnimationMode) {
      app_.ui.MessageDlg(
          "Sorry, the 2 pages 4bpp grayscale conversion is only allowed when :  \r8 bit mode, Hex data and no "
          "animation",
          "Error", DlgType::Error, {"OK"});
      return false;
    }
  }
  if (!FindColourMode(s.ModeNumber)) SetColourMode(1, true);
  if (s.FontScaleOption) s.PixelsPerByte = 1;
  s.WorkEol = s.Syntax.Eol;
  s.WorkEolString = s.Syntax.EolString;

  s.CanvasWidth = canvas.MatrixWidth();
  s.CanvasHeight = canvas.MatrixHeight();
  if (s.HalfExport) s.CanvasHeight /= 2;

  const long double r1 = std::fmod(static_cast<long double>(s.CanvasHeight), PagingUnit(s));
  const long double r2 = std::fmod(static_cast<long double>(s.CanvasWidth), PagingUnit(s));
  if (((r1 != 0 && !s.Horizontal) || (r2 != 0 && s.Horizontal)) && s.Not6bit) {
    const PagingDirection before = s.Direction;
    if (r1 != 0) SetDirection(PagingDirection::ToRightAll);
    if (r2 != 0) SetDirection(PagingDirection::DownAll);
    if (s.Direction != before) {
      const bool high = !IsHorizontal(before);
      std::ostringstream why;
      why << "the canvas " << (high ? "height " : "width ") << (high ? s.CanvasHeight : s.CanvasWidth)
          << " is not a multiple of " << static_cast<double>(PagingUnit(s)) << " for the " << DirectionInfoText(before)
          << ": turned to the " << DirectionInfoText(s.Direction);
      app_.ui.Notice(why.str());
    }
    // Where neither side fits, the walk would drop the pixels of the last partial byte of every
    // line, or make no byte at all: the direction commands have said why, and no table is made.
    // Packed gray 32 and the slices of 16 gray levels are the exceptions: their walks take every
    // pixel whatever the size (gray 32 packs across lines, a last incomplete group included; the
    // slices round the height up to whole slices).
    const bool walkTakesEveryPixel = ModeRow(s.ModeNumber).Has(ModeFlag::ThreeInTwo) || s.Gray16Slices;
    if (!walkTakesEveryPixel && ((r1 != 0 && !s.Horizontal) || (r2 != 0 && s.Horizontal))) {
      s.CanvasWidth = canvas.MatrixWidth();
      s.CanvasHeight = canvas.MatrixHeight();
      return false;
    }
  }

  // The canvas comes back as it was after the conversion; a copy is only needed when the
  // reduction or the interleave below change it.
  std::optional<Bitmap> saved;
  if (!s.Monochrome && !s.Colours16M && HasStrayColours()) {
    saved = canvas.WorkBitmap;
    NearestColour nearest;
    nearest.Configure(s);
    ConvertToNearestColor(canvas.WorkBitmap, nearest, app_.ui);
  }
  if (s.Output == OutputKind::Bits32) SetDataPerLine(1);
  if (s.Interleaved) {
    if (!saved) saved = canvas.WorkBitmap;
    // A refused interleave fails the run: a table without it would not be what was asked for.
    if (!InterleaveRows()) {
      canvas.WorkBitmap = std::move(*saved);
      s.CanvasWidth = canvas.MatrixWidth();
      s.CanvasHeight = canvas.MatrixHeight();
      return false;
    }
  }

  s.Source = &canvas.WorkBitmap;
  CanvasState& cs = app_.encoder.Canvas();
  cs.floatingSelection = canvas.FloatingSelection;
  cs.selectionReducedToBW = canvas.SelectionReducedToBW;
  cs.animationActive = g.AnimationMode;
  cs.frameCount = g.FrameCount;
  if (!s.SelectionActive) cs.area = CanvasState::Area::None;

  ConvertResult result = app_.encoder.ConvertWorkCanvas();
  if (result == ConvertResult::PasteRequested) {
    // The paste belongs to the picture the user keeps as well as to the copy being converted.
    if (saved) {
      const Bitmap layer = canvas.SelectionBitmap;
      const int left = canvas.SelectionLeft, top = canvas.SelectionTop;
      std::swap(canvas.WorkBitmap, *saved);
      canvas.PasteSelection();
      std::swap(canvas.WorkBitmap, *saved);
      canvas.FloatSelection(layer, left, top);
    }
    canvas.PasteSelection();
    g.ArtworkSaved = false;
    cs.floatingSelection = false;
    result = app_.encoder.ConvertWorkCanvas();
  }
  const bool ok = result == ConvertResult::Done && !s.Abort;
  // Files are written only where a folder was chosen; the command line writes its own.
  const bool toFiles = ok && !s.OutputFolder.empty();
  // An animation writes its frames and one parameter file for the whole run itself.
  if (toFiles && !g.AnimationMode) WriteInfoFile();
  if (result != ConvertResult::Stopped || !app_.mainText.Empty()) g.EditorUnsaved = true;
  // The text is the new table now, no longer the file the editor had loaded.
  g.EditorFileName.clear();
  if (s.AutoFraming && cs.area == CanvasState::Area::AutoFrame) {
    s.SelectionActive = false;
    cs.area = CanvasState::Area::None;
  }
  // A finished table gets its short last record and the end of file record; a stopped one is
  // left as it stands, like the text of a stopped table.
  if (s.Output == OutputKind::IntelHex && ok) {
    app_.exploForm2.EndIntelHex();
    app_.encoder.Formatter().IntelHex().AddEndOfFile();
  }
  if (toFiles && g.AlwaysOverwrite && s.Output != OutputKind::BinaryFile && !g.AnimationMode) SaveOutputFile(true);
  if (saved) canvas.WorkBitmap = std::move(*saved);
  s.Source = &canvas.WorkBitmap;
  s.CanvasWidth = canvas.MatrixWidth();
  s.CanvasHeight = canvas.MatrixHeight();
  return ok;
}

// ---- output files ---------------------------------------------------------------------------

std::string TMainForm::defineOutputFileName() { return DefineOutputFileName(app_.session); }

std::string TMainForm::InfoFileName() const { return rm::InfoFileName(app_.session); }

bool TMainForm::WriteInfoFile() {
  ConversionSession& s = app_.session;
  Globals& g = app_.globals;
  const std::string path = InfoFileName();
  auto refuse = [&] {
    app_.ui.MessageDlg(" RTF file was opened by another application ! ", "Error", DlgType::Error, {"OK"});
    return false;
  };
  if (IsFileInUse(path)) return refuse();

  InfoFileFacts facts;
  // Day first and seconds shown, in UTC: readable, and the same text wherever the table is
  // made, so a pinned clock gives the same bytes on every machine.
  facts.dateText = s.LastInfoDateText.empty() ? FormatDateTime(app_.clock.Now()) : s.LastInfoDateText;
  facts.animation = g.AnimationMode;
  facts.frames = g.AnimationFrameRecords;
  facts.animationBytes = g.AnimationBytes;
  facts.clipUnitFile = g.ClipUnitFile;
  facts.postProcessing = s.PostProcessing;
  facts.postProcessingFile = g.PostProcessingFile;
  facts.postProcessingCount = g.PostProcessingCount;
  // A table whose compression did not pay was made again plainly: report it as plain.
  facts.compressed = CompressesBytes(s) && !app_.encoder.CompressionRefused();
  if (facts.compressed) {
    const CompressionState& c = app_.encoder.Compression();
    facts.compressedBytes = c.DataBytes() + c.Pointers();
    facts.compressionStatistics = c.StatisticsLines();
  }

  TextLines lines;
  for (auto& l : InfoFileLines(s, facts)) lines.Add(std::move(l));
  std::string error;
  if (!lines.SaveToFile(path, &error)) {
    StatusBarAndLog("Parameter file not written : " + path + " : " + error);
    return refuse();
  }
  app_.infoText = std::move(lines);
  StatusBarAndLog("Parameter file written : " + path);
  return true;
}

namespace {

// Why a file cannot be written there, in the words of the save message; empty when it can.
std::string WriteRefusal(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ec;
  const std::string folder = FolderPart(path).empty() ? "." : FolderPart(path);
  if (!fs::is_directory(folder, ec)) return "missing";
  if (::access(folder.c_str(), W_OK) != 0) return "read only";
  if (fs::exists(path, ec)) {
    if (IsFileInUse(path)) return "in use";
    // The file would be replaced by a rename, which its own mode does not stop; a read-only
    // output is the user's way of saying "keep this one".
    if (::access(path.c_str(), W_OK) != 0) return "read only";
  }
  return "";
}

}  // namespace

bool TMainForm::SaveOutputFile(bool overwrite) {
  ConversionSession& s = app_.session;
  Globals& g = app_.globals;
  const std::string path = OutputPath(s);
  const bool binary = s.Output == OutputKind::BinaryFile;
  auto denied = [&](const std::string& why) {
    app_.ui.MessageDlg(" File could not be saved to disk, access denied ! \r Reason = Folder or File is " + why,
                       "Error", DlgType::Error, {"OK"});
    StatusBarAndLog("File not saved");
    return false;
  };

  const std::string refusal = WriteRefusal(path);
  if (!refusal.empty()) return denied(refusal);
  std::error_code ec;
  // An animation writes its frames one after the other without a question.
  if (!overwrite && !g.AnimationMode && std::filesystem::exists(path, ec)) {
    if (app_.ui.MessageDlg(" File already exits,  Overwrite ?", "Confirm", DlgType::Confirmation, {"Yes", "No"}) !=
        "Yes") {
      StatusBarAndLog("File not saved");
      return false;
    }
  }

  std::string error;
  const bool written = binary ? app_.hex.SaveToFile(path, &error) : app_.mainText.SaveToFile(path, &error);
  if (!written) return denied("not writable (" + error + ")");
  if (!binary) g.EditorUnsaved = false;
  StatusBarAndLog("Data Array saved to file : " + path);
  return true;
}

}  // namespace rm
