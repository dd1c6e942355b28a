#pragma once
#include <ctime>
#include <string>
#include <vector>

#include "engine/ClipUnit.h"
#include "engine/InfoFile.h"

namespace rm {

// Everything the program keeps beside the conversion session: folders, special modes, flags.
// The output folder and file names are in the session, whose comments quote them.
struct Globals {
  // Folders.
  std::string MyDocuments;
  std::string MyPictures;
  std::string InitsFolder;              // ends with "/"
  std::string ProjectRoot;              // ends with "/"
  std::string ActiveProject;            // full path of the active .LCD
  std::string DocumentsRole, GraphicsRole, OutputRole, FontsRole, TouchRole, BatchRole;
  bool FirstRun = false;
  bool ProjectFellBack = false;
  bool QuitBlocked = false;
  std::vector<std::string> DataFolders; // where the shipped default palettes are found

  // Special modes; they are mutually exclusive.
  bool AnimationActive = false;
  bool BatchCreationActive = false;
  bool FontCreationActive = false;
  bool TouchPanelActive = false;
  int FrameCount = 0;

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
  int FrameDelayMs = 100;    // the delay of a frame that brings none of its own

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
  std::string ActiveFormName, ActiveControlName;  // kept current by the front end
  std::string ExceptionFormName, ExceptionControlName;  // the two above at the last fault
};

}  // namespace rm
