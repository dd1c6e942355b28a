#pragma once
#include <string>
#include <vector>

namespace rm {

// How the clip unit of an animation is written: a source file that includes every frame's file
// and plays them one after the other through the firmware's drawing functions.
struct ClipSyntax {
  std::string include = "#include ";
  std::string includeStart = "<";
  std::string includeEnd = ">";
  std::string functionPrefix = "void";
  std::string functionSuffix = "(void)";
  std::string begin = "{";
  std::string end = "};";
  std::string separator = ",";
  std::string delay = "delay";
  std::string delayStart = "(";
  std::string delayEnd = ")";
  std::string compressedCall = "GLCD_xBitmap";
  std::string call = "GLCD_Bitmap";
  std::string callStart = "(";
  std::string callEnd = ")";
  bool enabled = true;              // "Enable clip unit output"
  bool withPositionAndSize = true;  // the frame's area as arguments
  bool withDelay = false;
  bool delayAfterLastFrame = false;
};

struct ClipFrame {
  std::string file;          // the frame's file, as the include names it
  std::string table;         // the frame's table name
  std::string pointerTable;  // the pointer table's name when the frame is compressed, else empty
  long long x = 0, y = 0, width = 0, height = 0;
  int delayMs = 0;
};

// The clip unit's lines. `functionName` names the playing function; the last line points to the
// parameter file, after `commentPrefix`.
std::vector<std::string> ClipUnitLines(const ClipSyntax& syntax, const std::string& functionName,
                                       const std::vector<ClipFrame>& frames, const std::string& commentPrefix,
                                       const std::string& infoFile);

}  // namespace rm
