#pragma once
#include <string>
#include <vector>

#include "engine/ColourModes.h"
#include "engine/ConversionSession.h"
#include "engine/Palette.h"
#include "engine/InfoFile.h"

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

  // The output file name from the last picture's name and the output kind; stored in the session.
  std::string defineOutputFileName();
  // The parameter file of the last conversion: output folder + "/" + output name + ".rtf".
  std::string InfoFileName() const;
  // Writes the parameter file and keeps its date and time for the next table's top comment
  // (session LastInfoDateText). False, after telling the user, when the file is held by another
  // program or cannot be written; the old file then stays as it was.
  bool WriteInfoFile();
  // Saves the Data Array (the text, or the hex editor's bytes for a binary output) under the
  // output path. Asks before replacing an existing file unless `overwrite` is set. False when
  // not saved; the data then stays in the editor, still marked unsaved.
  bool SaveOutputFile(bool overwrite);
  // Finds or creates the inits folder, the pointer file and the project root, and sets the active
  // project (falling back to the default project when the pointer names none that exists).
  void LoadFolders();
  // Writes the active project into the pointer file; false (and the quit blocked) when the
  // pointer file is held by another program or was deleted.
  bool SaveFolders();
  // Reads the active project into the program: the factory state when there is no such file
  // (ActiveProject then names the default project). False, after telling the user, when the file
  // is held by another program; nothing is read then.
  bool LoadConfigurationX();
  // Writes the program's settings into the active project. False when it is held by another
  // program or cannot be written; the file on disk then stays as it was.
  bool SaveConfigurationX();

  // Usage counters (see UsageCounters): read and counted up at start, the session's time and a
  // normal quit added at quit.
  void ReadInfoFromRegistry();
  void WriteQuitInRegistry();
  void WriteDurationInRegistry();
  // "Exit Program and Restore Factory Settings": after the user's yes, copies the project's folder
  // to a dated backup beside it and removes the pointer file, so the next start is a first run.
  // True when the program must now end at once, without the quit sequence and without saving.
  bool RestoreDefaultSettings1Click();
  // Two reports of the settings for humans: the settings section of an error report, and the
  // summary of the settings panel.
  std::vector<std::string> ConfChildSettings() const;
  std::vector<std::string> ReadConfig() const;
  // Encodes a sequence of frames, one file per frame named after the output with an underscore
  // and the frame number, then the parameter file of the whole run. False when the user said no
  // or a frame stopped the series; the frames written until then stay.
  // `delaysMs` gives each frame's delay for the clip unit; missing ones take FrameDelayMs.
  bool ConvertAnimation(const std::vector<Bitmap>& frames, const std::vector<int>& delaysMs = {});

 private:
  ConversionSession& app_session();
  bool InterleaveRows();

  Application& app_;
  mutable ColourIndex strayIndex_;
};

}  // namespace rm
