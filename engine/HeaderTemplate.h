#pragma once
#include <string>
#include <vector>

namespace rm {

// The Header Include template: the text written above a table, with tags that a conversion
// fills in ([&NAME], [&SIZE], [&WIDTH], [&HEIGHT], [&XPOS], [&YPOS], [&TRUEORG], the font
// include block, [&COMPRESSION] with [&CNAME] and &CSIZE for the pointer table).

// The table's name from a picture's file name: the name without folder and extension, without
// "-" and without any part in square brackets, so that it can stand as an identifier.
std::string TableNameFromFile(const std::string& fileName);
// The file name without its folder.
std::string BaseName(const std::string& path);

// The lines a new project's graphics template starts with, each padded to 43 characters.
std::vector<std::string> DefaultGraphicsTemplate();

// What the tags are replaced by.
struct HeaderTagValues {
  std::string name;           // the output name
  // How much longer than " " + name + " " the name's text counts for the size's position. The
  // animation name carries an underscore that the position arithmetic leaves out.
  int nameLengthSkew = 0;
  std::string size;           // the text put between the size's brackets (empty with compression)
  bool sizeInData = false;     // "Graphic Size In Data"
  bool positionInData = false; // "Graphic Position in Data"
  std::string linePrefix;     // LinePrefix + LinePrefix2, in front of the numbers
  long long width = 0, height = 0;
  // The area's corners; the true origin option moves them to the walk's origin corner.
  long long x1 = 0, y1 = 0, x2 = 0, y2 = 0;  // x2, y2 exclusive
  long long canvasWidth = 0, canvasHeight = 0;
  bool originRight = false;   // origin TR or BR
  bool originBottom = false;  // origin BL or BR
  std::string pointerName;    // [&CNAME]
};

struct FilledTemplate {
  std::vector<std::string> commentLines;  // "//**" lines, written before everything else
  std::vector<std::string> header;        // the lines before [&COMPRESSION]
  // What follows [&COMPRESSION] up to [&FONT BITMAPS]: the pointer table's header. Its first
  // line is the rest of the tag's own line.
  std::vector<std::string> pointerHeader;
  bool hasCompressionTag = false;
  bool trueOrigin = false;
  long long x = 0, y = 0;                 // the coordinates written, after the true origin
  long long oppositeX = 0, oppositeY = 0;
  std::string nameLine;    // the header line that held [&NAME], tags replaced
  std::string beforeName;  // the text in front of [&NAME] on that line (the type words)
};

// Fills the template. Tags are found without regard to case and each is replaced once, in the
// order NAME, SIZE, WIDTH, HEIGHT, TRUEORG, XPOS, YPOS, FONT INCLUDE, COMPRESSION, CNAME, CSIZE.
FilledTemplate FillTemplate(const std::vector<std::string>& lines, const HeaderTagValues& values);

}  // namespace rm
