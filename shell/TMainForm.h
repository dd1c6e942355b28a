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
#include "shell/AnimationEncoding.h"
#include "shell/CanvasStatus.h"
#include "shell/DisplaySize.h"
#include "shell/ExceptionHandler.h"
#include "shell/FolderSetup.h"
#include "shell/LogWindow.h"
#include "shell/MessageDialogs.h"
#include "shell/MessageLog.h"
#include "shell/PictureImport.h"
#include "shell/ProjectConfig.h"
#include "shell/QuitSequence.h"
#include "shell/SpecialModes.h"
#include "shell/StartUp.h"

namespace rm {

class Application;

// The main window's commands, headless: colour modes, Paging Scheme, bit order, output kind, and
// the canvas preparation of the Convert command. Its other menu commands belong to its parts
// (log, dialogs, display size, import, special modes, start and quit, ...) and are forwarded.
class TMainForm {
  // The parts, one per responsibility; the commands below forward to them.
  // They come first: the names that reach their state are bound to them.
  MessageLog log_;
  MessageDialogs dialogs_;
  ExceptionHandler faults_;
  FolderSetup folders_;
  ProjectConfig config_;
  AnimationEncoding animation_;
  SpecialModes modes_;
  DisplaySize size_;
  CanvasStatus status_;
  StartUp start_;
  QuitSequence quit_;
  PictureImport import_;

 public:
  explicit TMainForm(Application& app)
      : log_(app),
        dialogs_(app),
        faults_(app),
        folders_(app),
        config_(app),
        animation_(app),
        modes_(app),
        size_(app),
        status_(app),
        start_(app),
        quit_(app),
        import_(app),
        app_(app) {}
  TMainForm(const TMainForm&) = delete;
  TMainForm& operator=(const TMainForm&) = delete;

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

  // ---- The parts' commands, forwarded ----
  // Frames (AnimationEncoding).
  bool ConvertAnimation(const std::vector<Bitmap>& frames, const std::vector<int>& delaysMs = {},
                        const std::function<void(int)>& afterFrame = {}) {
    return animation_.ConvertAnimation(frames, delaysMs, afterFrame);
  }

  // Project settings and folders (ProjectConfig, FolderSetup).
  bool LoadConfigurationX(bool testInUse = true) { return config_.LoadConfigurationX(testInUse); }
  bool SaveConfigurationX(std::string* error = nullptr) { return config_.SaveConfigurationX(error); }
  void LoadFolders() { folders_.LoadFolders(); }
  bool SaveFolders() { return folders_.SaveFolders(); }

  // Log, message dialogs and the failure handler (MessageLog, MessageDialogs, ExceptionHandler).
  void StatusBarAndLog(const std::string& text) { log_.StatusBarAndLog(text); }
  void LogError(const std::string& text) { log_.LogError(text); }
  void LogToLastLine() { log_.LogToLastLine(); }
  bool SaveLog() { return log_.SaveLog(); }
  bool SaveLogtoFile1Click(const std::string& path) { return log_.SaveLogtoFile1Click(path); }
  std::string LogFileFolder() const { return log_.LogFileFolder(); }
  void HideLogWindow1Click() { log_.HideLogWindow1Click(); }
  void ShowLogWindow1Click() { log_.ShowLogWindow1Click(); }
  void HiddenExcept(const std::string& text) { faults_.HiddenExcept(text); }
  ReportKind MyExceptionHandler(std::exception_ptr fault) noexcept { return faults_.MyExceptionHandler(fault); }
  int MessageDlgA(const std::string& text, const std::string& title, int help, int buttons, int kind) {
    return dialogs_.MessageDlgA(text, title, help, buttons, kind);
  }
  int MyMessageDialog(const std::string& text, DlgType type, int defaultButton,
                      const std::vector<std::string>& captions, int buttons = 0) {
    return dialogs_.MyMessageDialog(text, type, defaultButton, captions, buttons);
  }

  // Special modes (SpecialModes). The scripts and the front end's hooks are the parts' own; these
  // names reach them.
  using ModeScript = SpecialModes::ModeScript;
  ModeScript& FontScript = modes_.FontScript;
  ModeScript& FieldsScript = modes_.FieldsScript;
  ModeScript& TouchScript = modes_.TouchScript;
  ModeScript& EditableFont = modes_.EditableFont;
  ModeScript& VectorDesign = modes_.VectorDesign;
  void DisableModeChange() { modes_.DisableModeChange(); }
  void EnableModeChange() { modes_.EnableModeChange(); }
  bool QuitPostClick() { return modes_.QuitPostClick(); }
  bool QuitFontscriptClick() { return modes_.QuitFontscriptClick(); }
  bool QuitFieldsScriptClick() { return modes_.QuitFieldsScriptClick(); }
  bool QuitFieldsSriptClick() { return QuitFieldsScriptClick(); }
  bool QuittouchpanelscriptClick() { return modes_.QuittouchpanelscriptClick(); }
  bool QuitAnEditableFontClick() { return modes_.QuitAnEditableFontClick(); }
  bool QuitVectorDesign() { return modes_.QuitVectorDesign(); }
  bool QuitAnimationMode(bool ask = true) { return modes_.QuitAnimationMode(ask); }
  void CreatePostProClick(bool fromEdit) { modes_.CreatePostProClick(fromEdit); }
  std::string NewBatchFileName() const { return modes_.NewBatchFileName(); }
  std::string BatchFilePath() const { return modes_.BatchFilePath(); }
  bool IsSelectionActive() { return modes_.IsSelectionActive(); }

  // Display size (DisplaySize).
  bool MatrixPresetClick(int width, int height) { return size_.MatrixPresetClick(width, height); }
  static bool IsMatrixPreset(int width, int height) { return DisplaySize::IsMatrixPreset(width, height); }
  static std::vector<std::pair<int, int>> MatrixPresets() { return DisplaySize::MatrixPresets(); }
  void CHLCDMatrix() { size_.CHLCDMatrix(); }
  void LCDMatrix() { size_.LCDMatrix(); }
  void CanvasRedraw() { size_.CanvasRedraw(); }
  void NoMatrix1Click() { size_.NoMatrix1Click(); }
  void negativeOFf() { size_.negativeOFf(); }
  bool UserMatrixClick(const std::string& widthText, const std::string& heightText) {
    return size_.UserMatrixClick(widthText, heightText);
  }
  bool FitCanvasToPicture(int width, int height) { return size_.FitCanvasToPicture(width, height); }
  static std::vector<std::string> MatrixComboItems() { return DisplaySize::MatrixComboItems(); }
  bool MatrixComboChange(const std::string& text) { return size_.MatrixComboChange(text); }
  std::vector<std::string> CustomSizeMenuItems() const { return size_.CustomSizeMenuItems(); }
  bool CustomSizeMenuClick(int index) { return size_.CustomSizeMenuClick(index); }
  SizeKeyResult CustomSizeKeyPress(const std::string& typed, int pending, bool isWidth) {
    return size_.CustomSizeKeyPress(typed, pending, isWidth);
  }
  void WorkCanvasSizeClick() { size_.WorkCanvasSizeClick(); }

  // The canvas caption and status words (CanvasStatus).
  std::string CanvasCaption() const { return status_.CanvasCaption(); }
  std::string StatusPanel1() const { return status_.StatusPanel1(); }
  std::string StatusPanel2() const { return status_.StatusPanel2(); }
  std::string InForceText() const { return status_.InForceText(); }
  std::string PixelStatusText(int x, int y) const { return status_.PixelStatusText(x, y); }
  static std::string PixelPositionText(int x, int y) { return CanvasStatus::PixelPositionText(x, y); }
  PagingPanel PagingPanelNow() const { return status_.PagingPanelNow(); }

  // Start and quit (StartUp, QuitSequence).
  bool FormCreate(bool singleInstance) { return start_.FormCreate(singleInstance); }
  using QuitOutcome = QuitSequence::QuitOutcome;
  std::function<void()>& FormPositions = quit_.FormPositions;
  std::function<bool()>& ArtworkSaver = quit_.ArtworkSaver;
  QuitOutcome FormCloseQuery() { return quit_.FormCloseQuery(); }
  QuitOutcome FileExit1Execute() { return quit_.FileExit1Execute(); }
  QuitOutcome PMSys_Quitter() { return quit_.PMSys_Quitter(); }
  void FormClose() { quit_.FormClose(); }
  bool SavebitmapClick() { return quit_.SavebitmapClick(); }

  // Graphics import (PictureImport).
  bool OpenPic(const std::string& fileName) { return import_.OpenPic(fileName); }
  bool ImportBitmap(Bitmap picture) { return import_.ImportBitmap(std::move(picture)); }
  bool ImportPic() { return import_.ImportPic(); }
  bool ImportImageMDIChild(const std::string& fileName) { return import_.ImportImageMDIChild(fileName); }
  void RotateImport() { import_.RotateImport(); }
  bool SVGPaint(const std::string& fileName, Bitmap& target, std::string& error) {
    return import_.SVGPaint(fileName, target, error);
  }
  bool AssignInPutBitmap() { return import_.AssignInPutBitmap(); }
  void AddMRUF(const std::string& path) { import_.AddMRUF(path); }
  bool LoadGraphicDirectly(const std::string& fileName) { return import_.LoadGraphicDirectly(fileName); }
  bool ConvertCanvastoBlackandWhite1Click() { return import_.ConvertCanvastoBlackandWhite1Click(); }
  static bool IsJpegFile(const std::string& path) { return PictureImport::IsJpegFile(path); }
  static bool IsBitmapFile(const std::string& path) { return PictureImport::IsBitmapFile(path); }

 private:
  ConversionSession& app_session();
  bool InterleaveRows();

  Application& app_;
  mutable ColourIndex strayIndex_;
};

}  // namespace rm
