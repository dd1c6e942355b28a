// The Work Canvas caption and the words of the status panels.
#include "shell/CanvasStatus.h"

#include <cstdio>
#include <filesystem>

#include "engine/BitRearrange.h"
#include "engine/ColourModes.h"
#include "engine/InfoFile.h"
#include "shell/Application.h"

namespace rm {

std::string CanvasStatus::CanvasCaption() const {
  const Globals& g = app_.globals;
  TPixelForm::CaptionState c;
  c.modeNumber = app_.session.ModeNumber;
  c.fileName = app_.session.LastBitmapName;
  c.vectorMode = g.VectorMode;
  c.animationMode = g.AnimationMode;
  return app_.pixelForm.FormCaption(c);
}

std::string CanvasStatus::StatusPanel1() const {
  const Globals& g = app_.globals;
  if (g.FontScriptMode || g.EditableFontMode) return "Font Creation";
  if (g.TouchScriptMode) return "Touch panel creation";
  if (g.BatchEditMode) return "batch creation";
  return "";
}

std::string CanvasStatus::StatusPanel2() const { return app_.globals.AnimationMode ? "animation" : "static"; }

const char* CanvasStatus::OutputKindText(OutputKind kind) {
  switch (kind) {
    case OutputKind::Bits8: return "8 bit output";
    case OutputKind::Bits16: return "16 bit output";
    case OutputKind::Bits32: return "32 bit output";
    case OutputKind::BinaryFile: return "Binary File output";
    case OutputKind::IntelHex: return "Intel Hex output";
  }
  return "";
}

std::string CanvasStatus::InForceText() const {
  const ConversionSession& s = app_.session;
  // The menu text pads its columns with blanks; the status line wants the words up to the depth.
  std::string mode;
  for (char ch : ModeRow(s.ModeNumber).menuText) {
    if (ch == ' ' && (mode.empty() || mode.back() == ' ')) continue;
    mode += ch;
    if (ch == ')') break;
  }
  while (!mode.empty() && mode.back() == ' ') mode.pop_back();
  std::string paging = DirectionInfoText(s.Direction);
  if (paging.rfind("Paging Scheme ", 0) == 0) paging.erase(0, 14);
  const std::string& project = app_.globals.ActiveProject;
  const std::string projectName = project.empty() ? "none" : std::filesystem::path(project).stem().string();
  return std::to_string(app_.globals.MatrixWidth) + " x " + std::to_string(app_.globals.MatrixHeight) + " | " + mode +
         " | " + paging + " | " + (s.BigEndian ? "MSB first" : "MSB last") + " | " + OutputKindText(s.Output) +
         " | project: " + projectName;
}

PagingPanel CanvasStatus::PagingPanelNow() const {
  return PagingPanelText(PagingMultiple(app_.session.ModeNumber), IsHorizontal(app_.session.Direction));
}

std::string CanvasStatus::PixelStatusText(int x, int y) const {
  const Bitmap& b = app_.pixelForm.WorkBitmap;
  if (x < 0 || y < 0 || x >= b.Width() || y >= b.Height()) return {};
  const Colour c = b.GetPixel(x, y) & 0xFFFFFF;
  const unsigned r = c & 0xFF, g = (c >> 8) & 0xFF, bl = (c >> 16) & 0xFF;
  char hex[8];
  std::snprintf(hex, sizeof hex, "%02X%02X%02X", r, g, bl);
  const ConversionSession& s = app_.session;
  if (s.PaletteSize <= 0) return std::string("   RGB Hex=#") + hex;
  // The data value is the colour's place in the palette, turned by the mode's bit order the way
  // the conversion writes it; a colour the palette lacks has none.
  paletteIndex_.Build(s.PaletteTable);
  const int index = paletteIndex_.IndexOf(c);
  std::string text = " (RGB=" + std::to_string(r) + "-" + std::to_string(g) + "-" + std::to_string(bl) + ") (Dec=";
  if (index < 0) return text + "-)(RGB Hex=" + hex + ")";
  std::uint32_t value = static_cast<std::uint32_t>(index);
  switch (s.PaletteSize) {
    case 4096: value = Reorder4096Output(value, s.CanvasBits); break;
    case 65536: value = Reorder65kOutput(value, s.CanvasBits); break;
    case 262144: value = Reorder262kOutput(value, s.CanvasBits); break;
    default: value = Reorder256Output(value); break;
  }
  char code[16];
  std::snprintf(code, sizeof code, "%X", value);
  return text + std::to_string(value) + ")(RGB Hex=" + hex + ")  0x" + code;
}

std::string CanvasStatus::PixelPositionText(int x, int y) {
  return "X = " + std::to_string(x) + "  Y = " + std::to_string(y);
}

}  // namespace rm
