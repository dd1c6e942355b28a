#pragma once
#include <string>

#include "engine/ConversionSession.h"

namespace rm {

// The extension of the output file, point included: ".hex" and ".bin" for the machine outputs,
// else by source language (assembler, library, BASIC, C), ".h" when none is chosen.
std::string OutputExtension(const ConversionSession& s);

// The output file name made from the last picture's name: its file part, extension replaced by
// OutputExtension. Stores it in OutputFileName and returns it.
std::string DefineOutputFileName(ConversionSession& s);

// The name a table carries in the source ([&NAME] of the header template): the output file name
// made an identifier by TableNameFromFile, then "_U" or "_L" for an upper or lower half export.
// For a frame of an animation (frame >= 1) the underscore setting and the frame number follow
// instead of the half mark.
std::string OutputTableName(const ConversionSession& s, int frame = 0);

// Output folder + "/" + output file name; the bare name when no folder is chosen.
std::string OutputPath(const ConversionSession& s);
// The parameter file beside the output: output folder + "/" + output name + ".rtf".
std::string InfoFileName(const ConversionSession& s);
// The parameter file beside an output file given by its path: its folder and name, ".rtf".
std::string InfoFileNameFor(const std::string& outputPath);

// The export area as the text reports it: top left and opposite corner, inclusive. With the true
// origin on, measured from the origin corner, so a right or bottom origin mirrors the axis.
struct AreaCorners {
  int x = 0, y = 0, x2 = 0, y2 = 0;
};
AreaCorners ReportedArea(const ConversionSession& s);

// Path helpers of the naming rules: the part after the last "/", and a name less its extension.
std::string FileNamePart(const std::string& path);
std::string FolderPart(const std::string& path);
std::string StripExtension(const std::string& name);

}  // namespace rm
