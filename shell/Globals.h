#pragma once
#include <ctime>
#include <string>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ClipUnit.h"
#include "engine/InfoFile.h"

namespace rm {

// Everything the program keeps beside the conversion session: folders, special modes, flags.
// The output folder and file names are in the session, whose comments quote them.
struct Globals {
  // Folders.
  std::string MyDocuments;
  std::string MyPictures;
  std::string InitsFolder;    // ends with "/"
  std::string ProjectRoot;    // ends with "/"
  std::string ActiveProject;  // full path of the active .LCD
  std::string DocumentsRole, GraphicsRole, OutputRole, FontsRole, TouchRole, BatchRole;
  bool FirstRun = false;
  bool ProjectFellBack = false;
  bool QuitBlocked = false;
  std::vector<std::string> DataFolders;  // where the shipped default palettes are found

  int FrameCount = 0;  // frames of the animation sequence

  // State shown in the front ends.
  std::string PaletteLabel = "Current Palette is Default";
  std::string CurrentSchemeName = "Monochrome";
  std::string StatusText;  // the status field; the log's lines are in TLogWindowForm
  bool EditorUnsaved = false;
  int ExportEntry = 0;  // the Export dialog's Full / Partial choice
  std::string LastAction;
  // Saving at the end of the Convert command: overwrite an existing output without asking, and
  // save a binary output as well.
  bool AlwaysOverwrite = true;

  // What the post-processing of the last conversion did (the switch is the session's
  // PostProcessing); the batch runner fills these.
  std::string PostProcessingFile;
  int PostProcessingCount = 0;

  // The frames of the last animation conversion, for its parameter file.
  std::vector<InfoFrameRecord> AnimationFrameRecords;
  long long AnimationBytes = 0;
  std::string ClipUnitFile;  // empty when no clip unit was written
  ClipSyntax Clip;
  int FrameDelayMs = 100;  // the delay of a frame that brings none of its own

  // Settings kept for features that do not use them yet, by their place in the settings table,
  // so that a project is written back as it was read.
  std::vector<std::string> HeldSettings;
  // The search and replace grid's sections as the project had them: (section, [(key, value)]).
  std::vector<std::pair<std::string, std::vector<std::pair<std::string, std::string>>>> SearchReplaceSections;
  // On while a project's colour mode is being applied: the mode command then asks nothing.
  bool ApplyingSettings = false;
  // Usage counters: their file (empty: the user's), the start of this session, the first two
  // launches of this version, and the backup folder of the last factory restore.
  std::string UsageFile;
  std::time_t SessionStart = 0;
  bool FirstLaunches = false;
  std::string FactoryBackupFolder;
  // Log, messages and faults.
  bool ConsoleMode = false;  // a text session: messages are logged, nobody is asked
  bool RepeatGuard = false;  // a message already standing in the status field is not shown again
  int ErrorCount = 0;        // faults seen by the failure handler
  bool ExceptionSeen = false;
  std::string ActiveFormName, ActiveControlName;        // kept current by the front end
  std::string ExceptionFormName, ExceptionControlName;  // the two above at the last fault
  // ---- Special modes, display size, quit and start ----
  // A special mode turns the program into the editor of one kind of script or sequence; at most
  // one is meant to be on. TExploForm::CheckMode and ResetAndCheckColorMode stand guard.
  bool BatchEditMode = false;
  bool FontScriptMode = false;
  bool FieldsScriptMode = false;
  bool TouchScriptMode = false;
  bool EditableFontMode = false;
  bool HeaderEditMode = false;
  bool AnimationMode = false;
  bool VectorMode = false;
  bool SegmentedFontMode = false;       // nothing sets it; the guard still knows it
  bool SpecialModeActive = false;       // what "Exit Special Mode" tests
  bool NoSaveOnQuit = false;            // "No Saves": leave the mode without saving its script
  bool ModeMenuEnabled = true;          // the colour mode and output format items
  bool ExitSpecialModeEnabled = false;  // the menu item "Exit Special Mode"
  bool ExitModeButtonVisible = false;   // the explorer's way out of a mode
  // The batch being edited (in the Batch folder role) and the active text batch.
  std::string BatchFileName;
  bool BatchChanged = false;
  bool BatchEditorEditable = false;
  std::string BatchEditorLabel = "View Mode";
  std::string ActiveBatch = "< No batch file selected >";
  int EditorsPage = 0;  // the tab shown in the editors window; 4 is the batch

  // The target display. 128 by 128 until the project is read.
  int MatrixWidth = 128;
  int MatrixHeight = 128;
  bool NoMatrixMode = false;  // Picture Mode: the canvas is not tied to a display size
  bool UserMatrix = false;    // the size was typed by the user, no preset applies
  bool RedrawFullMatrix = false;
  bool ColourMenuEnabled = true;  // the whole colour mode menu; off in Picture Mode
  bool ExplorerNoMatrixMode = false;
  // The screen, told by the front end; half of it makes the Picture Mode canvas.
  int ScreenWidth = 1920;
  int ScreenHeight = 1080;

  // Quit.
  bool QuitInProgress = false;  // the windows are closing: their close handlers ask nothing
  bool ArtworkSaved = true;     // false after drawing or pasting on the canvas

  // Start. The two step counters place a fault during the start.
  int StartStep = 0;          // 1 to 14 through the main window's creation
  int StartRegistryStep = 0;  // 13, then 14 around the read of the usage counters
  bool StartComplete = false;
  bool ExplorerExists = false;
  // What a first command line parameter changes; the front end shows the windows accordingly.
  bool ShowSplash = true;
  bool ShowWelcome = true;
  bool LogWindowVisible = true;
  int AnimationSpeed = 200;
  std::string FillerText = "0AA";  // the filler byte, in hexadecimal
  int FillerValue = 0;

  // ---- Work Canvas view ----
  // The sixteen custom display sizes; width 0 marks a free entry.
  int CustomWidths[16] = {};
  int CustomHeights[16] = {};
  std::string LastArtworkPath;    // the picture "Reload Last Work Canvas Bitmap" opens
  bool AnimationPlaying = false;  // the animation is being played: no undo

  // ---- end of the Work Canvas view ----

  // ---- Graphics import ----
  // The import settings.
  std::string ImportAngle = "0";  // "Orientation Angle", 0 to 360
  int ImportWidth = 0;            // the size a drawing (SVG) is rendered at; 0: the canvas size
  int ImportHeight = 0;
  bool AllowImportInsideSelection = false;  // fit into the chosen area rather than the canvas
  bool UseFileNameAsArtworkName = false;
  bool AlwaysResizeToFit = false;  // a picture too large is resized without asking
  // The import in hand: the file and the working copy that is turned and fitted. The picture as
  // decoded is kept by the canvas for "Reload Original Image".
  std::string ImportFileName;
  Bitmap ImportedBitmap;
  // Where the picture floats. Reset by each file import; a caller that places the picture
  // itself sets ImportKeepsOffsets.
  bool ImportKeepsOffsets = false;
  int ImportOffsetX = 0;
  int ImportOffsetY = 0;
  bool DirectLoad = false;              // the picture is resized without asking and pasted at once
  bool ImageAdjustmentsEnabled = true;  // off while a picture larger than the canvas floats
  std::string ImportTargetSizeText;     // " Work Canvas Size = H : ..." of the last fit
  // Recently opened files, newest first.
  std::vector<std::string> RecentFiles;
  // The display takes the size of each imported picture, as it stands after its turn, and keeps
  // the colour mode: the command line's conversion of a picture "at its own size".
  bool CanvasTakesPictureSize = false;
  // ---- end of graphics import ----

  // ---- Threshold and dithering ----

  // ---- end of threshold and dithering ----

  // ---- Explorer and editors ----
  std::string ExplorerFolder;       // the folder the file list shows
  std::string ExplorerFilter;       // a filter word or ".EXT"; empty: all files
  std::string ExplorerFilterText;   // the menu text of that filter
  bool ExplorerShowFolders = true;  // the folders switch
  bool ExplorerTodayOnly = false;   // only files changed today
  bool AutoFolderFilters = false;   // "Enable automatic project folder filters"
  bool BatchSelectWait = false;     // the next file chosen activates a batch instead of opening
  std::string EditorFileName;       // the file the main text was loaded from or saved to
  std::string HexFileName;          // the same for the hex editor
  std::string DocumentFileName;     // the file the document tab shows

  // ---- end of explorer and editors ----

  // ---- Settings panel ----

  // ---- end of settings panel ----

  // ---- Desktop windows ----

  // ---- end of desktop windows ----
};

}  // namespace rm
