#pragma once
#include <string>

#include "engine/ColourModes.h"
#include "engine/ConversionSession.h"
#include "engine/Palette.h"

namespace rm {

class Application;

// The main window's commands, headless: colour modes, Paging Scheme, bit order, output kind, and
// the canvas preparation of the Convert command.
class TMainForm {
 public:
  explicit TMainForm(Application& app) : app_(app) {}

  // The colour mode commands. Returns true when the mode was changed.
  bool SetColourMode(int modeNumber, bool forcedReload = false);
  // True when the mode change is refused.
  bool ResetAndCheckColorMode();
  void ResetMenus();
  void ToggleNegativeOutput();
  void ToggleST7528Mode();
  void Toggle6BitMode();
  void InvertGrayscalePalette();
  void RebuildColourTables();

  // The eight direction commands; true when the direction was set as asked.
  bool SetDirection(PagingDirection direction);
  void ToggleOriginCorner();
  void MsbFirst();
  void MsbLast();
  void Data8bitClick() { SetOutputKind(OutputKind::Bits8); }
  void data16bitClick() { SetOutputKind(OutputKind::Bits16); }
  void data32bitClick() { SetOutputKind(OutputKind::Bits32); }
  void HexOutput1Click() { SetOutputKind(OutputKind::BinaryFile); }
  void IntelHexOutputClick() { SetOutputKind(OutputKind::IntelHex); }
  void SetOutputKind(OutputKind kind);
  // Exports the Work Canvas as a binary data array: Binary File output without compression for
  // this one conversion, then the word width and compression as they were. With Intel Hex chosen
  // it converts to Intel HEX as usual.
  bool ExportToBinaryClick();
  // The settings panel's Data per line command (1 also selects no separator).
  void SetDataPerLine(int n);
  void SetInterleaved(bool on) { app_session().Interleaved = on; }

  // Prepares the canvas and runs the conversion. False when refused or aborted.
  bool TranslateCanvas();
  // "Export RGB Palette to Color Look-up Table (CLUT)": the mode's palette as a table in the
  // main text. Only the modes with a palette file have one.
  bool ExportColorPaletteAsArray3Click();
  // True when the canvas holds a colour that the mode's table lacks.
  bool HasStrayColours() const;

  void StatusBarAndLog(const std::string& text);

 private:
  ConversionSession& app_session();
  bool InterleaveRows();

  Application& app_;
  mutable ColourIndex strayIndex_;
};

const char* DirectionInfoText(PagingDirection d);

}  // namespace rm
