// The size of the target display: the presets of the size menu, a size typed by the user, and
// Picture Mode, where the canvas is not tied to a display.
#include <algorithm>
#include <charconv>

#include "engine/ColourModes.h"
#include "shell/Application.h"

namespace rm {

namespace {

struct MatrixSize {
  int width, height;
};

// The LCD Matrix presets: one list for the size menu, the tool bar's combo and --preset.
constexpr MatrixSize kMatrixPresets[] = {
    {96, 40},   {96, 64},   {100, 32},  {112, 64},  {120, 32},  {122, 32},  {128, 32},   {128, 64},
    {128, 96},  {128, 128}, {132, 32},  {132, 64},  {132, 128}, {144, 32},  {160, 32},   {160, 80},
    {160, 100}, {160, 128}, {160, 160}, {192, 32},  {192, 64},  {192, 128}, {240, 64},   {240, 128},
    {256, 128}, {320, 240}, {480, 128}, {480, 272}, {800, 480}, {864, 480}, {1024, 600}, {1024, 768},
};

// The largest preset bounds every size the user types.
constexpr int kMaxUserWidth = kMaxCustomWidth;
constexpr int kMaxUserHeight = kMaxCustomHeight;

bool ReadSize(const std::string& text, int& value) {
  const char* end = text.data() + text.size();
  const auto r = std::from_chars(text.data(), end, value);
  return !text.empty() && r.ec == std::errc() && r.ptr == end;
}

}  // namespace

bool DisplaySize::IsMatrixPreset(int width, int height) {
  return std::any_of(std::begin(kMatrixPresets), std::end(kMatrixPresets),
                     [&](const MatrixSize& p) { return p.width == width && p.height == height; });
}

std::vector<std::pair<int, int>> DisplaySize::MatrixPresets() {
  std::vector<std::pair<int, int>> sizes;
  for (const MatrixSize& p : kMatrixPresets) sizes.emplace_back(p.width, p.height);
  return sizes;
}

bool DisplaySize::MatrixPresetClick(int width, int height) {
  Globals& g = app_.globals;
  if (!IsMatrixPreset(width, height)) return false;
  if (app_.mainForm.IsSelectionActive()) return false;
  // These two widths cannot be packed in bytes across a row.
  const bool rowsUnfit = height == 32 && (width == 100 || width == 122);
  if (rowsUnfit && IsHorizontal(app_.session.Direction)) {
    app_.ui.MessageDlg(
        "This dot matrix size not compatible with horizontal paging scheme !\r Scheme will be changed "
        "to vertical ! ",
        "Warning", DlgType::Warning, {"OK"});
    app_.mainForm.SetDirection(PagingDirection::Down);
  }
  // The menu's tick follows MatrixWidth, MatrixHeight and UserMatrix; the front end draws it.
  if (g.MatrixWidth == width && g.MatrixHeight == height && !g.NoMatrixMode) return false;
  g.MatrixWidth = width;
  g.MatrixHeight = height;
  CHLCDMatrix();
  if (rowsUnfit) g.RedrawFullMatrix = true;
  return true;
}

void DisplaySize::CHLCDMatrix() {
  Globals& g = app_.globals;
  g.UserMatrix = false;
  LCDMatrix();
  CanvasRedraw();
  g.UserMatrix = false;
}

void DisplaySize::LCDMatrix() {
  Globals& g = app_.globals;
  if (g.NoMatrixMode) {
    g.NoMatrixMode = false;
    g.ColourMenuEnabled = true;
    g.ExplorerNoMatrixMode = false;
    app_.mainForm.SetColourMode(1, true);
    negativeOFf();
    CanvasRedraw();
    g.UserMatrix = true;
  }
  app_.mainForm.StatusBarAndLog("LCD Matrix H:" + std::to_string(g.MatrixHeight) +
                                " W:" + std::to_string(g.MatrixWidth));
}

void DisplaySize::negativeOFf() {
  ConversionSession& s = app_.session;
  s.NegativeOutput = false;
  if (ModeRow(s.ModeNumber).Has(ModeFlag::Negative)) s.ModeNumber = MonochromeMode(false);
}

// The canvas takes the display size. The picture is kept where it fits, not scaled or cleared:
// trying a few display sizes on a drawing must not lose it (TPixelForm::FormRedraw).
void DisplaySize::CanvasRedraw() {
  const Globals& g = app_.globals;
  TPixelForm& canvas = app_.pixelForm;
  canvas.DiscardSelection();
  app_.session.SelectionActive = false;
  canvas.ScreenWidth = g.ScreenWidth;
  canvas.ScreenHeight = g.ScreenHeight;
  canvas.NoMatrixMode = g.NoMatrixMode;
  canvas.FormRedraw(g.MatrixWidth, g.MatrixHeight);
  canvas.CopyBitmapToCanvas();
  app_.session.CanvasWidth = g.MatrixWidth;
  app_.session.CanvasHeight = g.MatrixHeight;
}

void DisplaySize::NoMatrix1Click() {
  Globals& g = app_.globals;
  if (app_.mainForm.IsSelectionActive()) return;
  g.MatrixWidth = g.ScreenWidth / 2;
  g.MatrixHeight = g.ScreenHeight / 2;
  g.NoMatrixMode = true;
  g.ColourMenuEnabled = false;
  app_.mainForm.SetColourMode(62, true);
  CanvasRedraw();
  g.ExplorerNoMatrixMode = true;
}

bool DisplaySize::UserMatrixClick(const std::string& widthText, const std::string& heightText) {
  Globals& g = app_.globals;
  ConversionSession& s = app_.session;
  int width = 0, height = 0;
  if (!ReadSize(widthText, width) || !ReadSize(heightText, height)) return false;
  if (app_.pixelForm.FloatingSelection) {
    app_.ui.MessageDlg(" A selection is still active in Work Canvas  \r Please first Paste selection layer or Cancel",
                       "Warning", DlgType::Warning, {"OK"});
    return false;
  }
  app_.mainForm.StatusBarAndLog("H:=" + std::to_string(height) + " W:=" + std::to_string(width));
  app_.mainForm.StatusBarAndLog("Dot matrix size = User defined");
  width = std::clamp(width, 1, kMaxUserWidth);
  height = std::clamp(height, 1, kMaxUserHeight);
  // A size not yet in the custom list takes its first free entry (none when all sixteen are
  // taken: the size is still used, only not remembered).
  bool known = false;
  for (int i = 0; i < 16; ++i) known = known || (g.CustomWidths[i] == width && g.CustomHeights[i] == height);
  if (!known) {
    for (int i = 0; i < 16; ++i)
      if (g.CustomWidths[i] == 0) {
        g.CustomWidths[i] = width;
        g.CustomHeights[i] = height;
        break;
      }
    app_.ui.MessageDlg(" User Dot Matrix Size has been defined ! ", "Information", DlgType::Information, {"OK"});
  }

  const int previousWidth = g.MatrixWidth, previousHeight = g.MatrixHeight;
  const bool previousUser = g.UserMatrix;
  const Bitmap previousCanvas = app_.pixelForm.WorkBitmap;
  g.MatrixWidth = width;
  g.MatrixHeight = height;
  g.UserMatrix = true;
  CanvasRedraw();

  // A size that the scheme cannot pack asks to turn the scheme; the canvas already has the new
  // size, so the scheme command checks it against the size it will work on. A scheme that
  // refuses as well leaves no way to pack the size.
  const int divisor = PagingMultiple(s.ModeNumber);
  for (;;) {
    const bool widthUnfit = divisor > 1 && g.MatrixWidth % divisor != 0 &&
                            (s.Direction == PagingDirection::ToLeft || s.Direction == PagingDirection::ToRight);
    const bool heightUnfit = divisor > 1 && g.MatrixHeight % divisor != 0 &&
                             (s.Direction == PagingDirection::Down || s.Direction == PagingDirection::Up);
    if (!widthUnfit && !heightUnfit) return true;
    const std::string question =
        widthUnfit ? "Dot matrix size not compatible with horizontal paging scheme !\rDo you want to change paging "
                     "scheme orientation to vertical ?"
                   : "Dot matrix size not compatible with vertical paging scheme !\rDo you want to change paging "
                     "scheme orientation to horizontal ?";
    if (app_.ui.MessageDlg(question, "Confirm", DlgType::Confirmation, {"Yes", "No"}) != "Yes" ||
        !app_.mainForm.SetDirection(widthUnfit ? PagingDirection::Down : PagingDirection::ToRight))
      break;
  }
  g.MatrixWidth = previousWidth;
  g.MatrixHeight = previousHeight;
  g.UserMatrix = previousUser;
  app_.pixelForm.WorkBitmap = previousCanvas;
  app_.pixelForm.FormRedraw();
  app_.pixelForm.CopyBitmapToCanvas();
  s.CanvasWidth = previousCanvas.Width();
  s.CanvasHeight = previousCanvas.Height();
  return false;
}

// ---- the size combo and the custom sizes -----------------------------------------------------

bool DisplaySize::FitCanvasToPicture(int width, int height) {
  Globals& g = app_.globals;
  if (!g.NoMatrixMode || width <= 0 || height <= 0) return false;
  g.MatrixWidth = width;
  g.MatrixHeight = height;
  CanvasRedraw();
  return true;
}

std::vector<std::string> DisplaySize::MatrixComboItems() {
  std::vector<std::string> items;
  for (const auto& [w, h] : MatrixPresets()) items.push_back(std::to_string(w) + "X" + std::to_string(h));
  return items;
}

bool DisplaySize::MatrixComboChange(const std::string& text) {
  for (const auto& [w, h] : MatrixPresets())
    if (text == std::to_string(w) + "X" + std::to_string(h)) return MatrixPresetClick(w, h);
  return false;
}

std::vector<std::string> DisplaySize::CustomSizeMenuItems() const {
  const Globals& g = app_.globals;
  std::vector<std::string> items;
  for (int i = 0; i < 16; ++i)
    if (g.CustomWidths[i] != 0)
      items.push_back("Custom " + std::to_string(g.CustomWidths[i]) + " x " + std::to_string(g.CustomHeights[i]));
  return items;
}

bool DisplaySize::CustomSizeMenuClick(int index) {
  const Globals& g = app_.globals;
  int seen = 0;
  for (int i = 0; i < 16; ++i) {
    if (g.CustomWidths[i] == 0) continue;
    if (seen++ == index) return UserMatrixClick(std::to_string(g.CustomWidths[i]), std::to_string(g.CustomHeights[i]));
  }
  return false;
}

SizeKeyResult DisplaySize::CustomSizeKeyPress(const std::string& typed, int pending, bool isWidth) {
  const ConversionSession& s = app_.session;
  // The multiple binds the width in a horizontal scheme and the height in a vertical one.
  const bool bound = isWidth == IsHorizontal(s.Direction);
  const SizeKeyResult r = CustomSizeKey(typed, pending, isWidth, bound ? PagingMultiple(s.ModeNumber) : 1);
  if (r.beep) app_.ui.Beep();
  if (!r.message.empty()) app_.ui.MessageDlg(r.message, "Error", DlgType::Error, {"OK"});
  return r;
}

void DisplaySize::WorkCanvasSizeClick() {
  app_.ui.MessageDlg(" Use the LCD Matrix Item in the Main Menu to define \r Work Canvas Height and Width ",
                     "Information", DlgType::Information, {"OK"});
}

}  // namespace rm
