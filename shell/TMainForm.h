#pragma once
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "canvas/PixelGrid.h"
#include "engine/ColourModes.h"
#include "engine/ConversionSession.h"
#include "engine/Palette.h"
#include "engine/InfoFile.h"
#include "engine/UiPort.h"
#include "shell/LogWindow.h"

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
  // `testInUse` off is for readers that never write the project, such as conversions run side
  // by side: the file is only ever replaced whole, so a reader cannot see half of it, and the
  // test itself would make such readers refuse one another.
  bool LoadConfigurationX(bool testInUse = true);
  // Writes the program's settings into the active project. False when it is held by another
  // program or cannot be written, with the reason in `error`; the file on disk then stays as it
  // was.
  bool SaveConfigurationX(std::string* error = nullptr);

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

  // ---- Log, message dialogs and the failure handler (LogWindow.cpp, MessageDialogs.cpp,
  // ExceptionHandler.cpp)
  // Adds `text` and the form and control of the last fault to the log; nothing before the log
  // window exists.
  void LogError(const std::string& text);
  // Scrolls the log to its last line.
  void LogToLastLine();
  // A fault the user is not shown: counted, and ">> " + text in the log.
  void HiddenExcept(const std::string& text);
  // Sorts a fault that reached the top of a command into the known cases, tells the user or
  // not, counts and logs it, and says how it is to be reported. Never throws. Call it from the
  // front end's catch block with std::current_exception(), which keeps the fault's own type.
  ReportKind MyExceptionHandler(std::exception_ptr fault) noexcept;
  // At quit: the whole log as "L.LOG" in the inits folder, when that folder exists.
  bool SaveLog();
  // "Save Log to File": `path` is the name the user chose (empty when cancelled); a name without
  // a folder goes to the Documents role, one without an extension gets ".LOG".
  bool SaveLogtoFile1Click(const std::string& path);
  // The folder the front end's file dialog starts in for "Save Log to File".
  std::string LogFileFolder() const;
  void HideLogWindow1Click();
  void ShowLogWindow1Click();
  // A message with standard buttons. `buttons` is a mask: 1 Yes, 2 No, 4 OK, 8 Cancel; `kind`
  // 0 warning, 1 error, 2 information, 3 confirmation. Returns 1 OK, 2 Cancel, 6 Yes, 7 No.
  // `help` is unused and always 0.
  int MessageDlgA(const std::string& text, const std::string& title, int help, int buttons, int kind);
  // A message with up to three buttons of the caller's captions; `buttons` chooses which of
  // them are shown (1 first, 2 second, 4 third; 0 all). Returns 1, 2 or 4 for the button
  // pressed; `defaultButton` is the one Enter presses and the answer when nobody is asked.
  int MyMessageDialog(const std::string& text, DlgType type, int defaultButton,
                      const std::vector<std::string>& captions, int buttons = 0);
  // ---- Special modes, display size, quit and start ----
  // A script that a special mode edits. The mode's editor fills it in when the mode is entered;
  // `Save` writes the script and returns false when it was not saved. Without an editor nothing
  // can be saved, and a leave that was told to save stays in the mode.
  struct ModeScript {
    std::string Path;
    bool Changed = false;
    std::function<bool()> Save;
  };
  ModeScript FontScript, FieldsScript, TouchScript, EditableFont, VectorDesign;
  // Collects the places of the windows into the settings at quit, before the project is written;
  // set by the front end that has windows.
  std::function<void()> FormPositions;
  // Saves the Work Canvas picture; set by the owner of the picture files. False when not saved.
  std::function<bool()> ArtworkSaver;

  // Lock and unlock the colour mode and output format items while a special mode runs.
  void DisableModeChange();
  void EnableModeChange();
  // The leaving commands of the special modes. Each returns false when the user chose to stay.
  bool QuitPostClick();
  bool QuitFontscriptClick();
  bool QuitFieldsScriptClick();
  bool QuitFieldsSriptClick() { return QuitFieldsScriptClick(); }
  bool QuittouchpanelscriptClick();
  bool QuitAnEditableFontClick();
  bool QuitVectorDesign();
  // Leaves the animation mode; asks first unless `ask` is false.
  bool QuitAnimationMode(bool ask = true);
  // Enters the batch editor on a new or existing .SPP in the Batch folder role. `fromEdit`: the
  // command came from "edit", which names a new batch after the current picture.
  void CreatePostProClick(bool fromEdit);
  // The first "NewTextPro[n].SPP" that is not in the Batch folder role.
  std::string NewBatchFileName() const;
  std::string BatchFilePath() const;

  // True when a floating selection is there and the user cancels; else it is pasted or dropped.
  bool IsSelectionActive();

  // Display size. A preset of the size menu; false when (W, H) is none or nothing changed.
  bool MatrixPresetClick(int width, int height);
  static bool IsMatrixPreset(int width, int height);
  // The presets of the size menu, width by height, in menu order.
  static std::vector<std::pair<int, int>> MatrixPresets();
  void CHLCDMatrix();
  void LCDMatrix();
  void CanvasRedraw();
  void NoMatrix1Click();
  void negativeOFf();
  // A size typed by the user; empty or unreadable numbers end the command. False when the size
  // was not taken.
  bool UserMatrixClick(const std::string& widthText, const std::string& heightText);

  // Quit. `Quit`: the program ends now; `Refused`: the user said no; `StaysOpen`: something was
  // put right (a floating selection dropped) and the user must quit again.
  enum class QuitOutcome { Quit, Refused, StaysOpen };
  QuitOutcome FormCloseQuery();
  QuitOutcome FileExit1Execute();
  QuitOutcome PMSys_Quitter();
  void FormClose();
  bool SavebitmapClick();

  // ---- Graphics import (Import.cpp) ----
  // Checks a picture file and imports it as a floating selection over the Work Canvas. False
  // when the file was refused or the import cancelled; the canvas is then as it was.
  bool OpenPic(const std::string& fileName);
  // The common road of a file import: recent list, tools, decoding and fitting.
  bool ImportPic();
  // Decodes `fileName` by the kind its extension names and fits it (AssignInPutBitmap).
  bool ImportImageMDIChild(const std::string& fileName);
  // Turns the imported picture by ImportAngle (not drawings, not GIF).
  void RotateImport();
  // Renders a drawing at ImportWidth x ImportHeight (the canvas size when either is 0), turned
  // by ImportAngle and closely cropped. False, with `error` set, when it cannot be rendered.
  bool SVGPaint(const std::string& fileName, Bitmap& target, std::string& error);
  // Fits the imported picture to the canvas (or the chosen area) and floats it as the selection.
  // False when the user cancelled.
  bool AssignInPutBitmap();
  // Puts `path` first in the recent files, unless it is one of the program's own temporaries.
  void AddMRUF(const std::string& path);
  // Loads a picture straight into the Work Canvas: resized when too large, pasted at 0,0.
  bool LoadGraphicDirectly(const std::string& fileName);
  // The canvas becomes a floating picture under the threshold tool of the monochrome mode.
  bool ConvertCanvastoBlackandWhite1Click();
  // The first bytes of a JPEG file (FF D8 FF) and of a Windows bitmap ("BM" and a header of a
  // known size).
  static bool IsJpegFile(const std::string& path);
  static bool IsBitmapFile(const std::string& path);
  // ---- end of graphics import ----

  // ---- Work Canvas size, caption and status words (CanvasCommands.cpp) ----
  // Picture Mode: the canvas takes the size of each imported picture. False outside Picture Mode
  // (the import then fits the picture to the display) or for an empty size.
  bool FitCanvasToPicture(int width, int height);
  // The 32 sizes of the size combo, as "WXH".
  static std::vector<std::string> MatrixComboItems();
  // A size chosen in the combo; works as a preset. False when the text is none of the list or
  // nothing changed.
  bool MatrixComboChange(const std::string& text);
  // The custom size entries as menu items "Custom W x H", in entry order.
  std::vector<std::string> CustomSizeMenuItems() const;
  // The custom size menu item `index` (entry order, from 0): the size is typed again for the
  // user. False when there is no such entry or the size was not taken.
  bool CustomSizeMenuClick(int index);
  // One keystroke in a custom size field: beeps and shows the message the rule asks for and
  // returns what the field now holds.
  SizeKeyResult CustomSizeKeyPress(const std::string& typed, int pending, bool isWidth);
  // "Work Canvas Size" in the canvas menu only tells where sizes are made.
  void WorkCanvasSizeClick();
  // The Work Canvas caption and the two status panel words.
  std::string CanvasCaption() const;
  std::string StatusPanel1() const;
  std::string StatusPanel2() const;
  // The pixel under the mouse for the status panels: its colour as "(RGB=R-G-B) (Dec=code)(RGB
  // Hex=RRGGBB)  0x.." with its data value in the palette modes, "   RGB Hex=#RRGGBB" in the
  // others; empty outside the canvas.
  std::string PixelStatusText(int x, int y) const;
  // The cell's position for the status bar: "X = x  Y = y".
  static std::string PixelPositionText(int x, int y);
  // The size rule panel of the current mode and scheme.
  PagingPanel PagingPanelNow() const;
  // ---- end of the Work Canvas size ----

  // The main window's creation: settings are read here. False when another instance of the
  // desktop program runs; then nothing has been read.
  bool FormCreate(bool singleInstance);

 private:
  ConversionSession& app_session();
  bool InterleaveRows();

  Application& app_;
  mutable ColourIndex strayIndex_;
};

}  // namespace rm
