#pragma once
#include <string>
#include <vector>

namespace rm {

// Everything the program keeps beside the conversion session: folders, special modes, flags.
struct Globals {
  // Folders.
  std::string InitsFolder;
  std::string ActiveProject;            // full path of the active .LCD
  std::string OutputFolder;
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
  std::string StatusText;
  std::vector<std::string> Log;
  bool EditorUnsaved = false;
  // "Allways Overwrite": the Convert command saves its output at once, over an existing file.
  bool AlwaysOverwrite = false;
  std::string OutputName = "NewBitmap.h";
  std::string BitmapSourceFile = "Newfile.bmp";
  int ExportEntry = 0;  // the Export dialog's Full / Partial choice
  std::string LastAction;
};

}  // namespace rm
