#pragma once
#include <string>
#include <vector>

namespace rm {

// The Header Include template: the text written above a table, with tags that a conversion
// fills in ([&NAME], [&SIZE], [&WIDTH], [&HEIGHT], [&XPOS], [&YPOS], [&TRUEORG], the font
// include block, [&COMPRESSION] with [&CNAME] and &CSIZE for the pointer table).

// The table's name from a picture's file name: the name without folder and extension, without
// "-" and without any part in square brackets, made a C identifier: every other character that
// is not a letter, digit or "_" (blanks, points, line ends, bytes of other scripts) becomes "_",
// and a leading digit gets a "_" in front.
std::string TableNameFromFile(const std::string& fileName);
// The file name without its folder.
std::string BaseName(const std::string& path);

// The lines a new project's graphics template starts with, each padded to 43 characters.
std::vector<std::string> DefaultGraphicsTemplate();

// What the tags are replaced by.
struct HeaderTagValues {
  std::string name;  // the output name
  // The text between the size's brackets when dataSize is below 0 (the colour table's size);
  // empty with compression.
  std::string size;
  // The entries of the data; the numbers the template puts into the data are added to it.
  long long dataSize = -1;
  bool sizeInData = false;      // "Graphic Size In Data"
  bool positionInData = false;  // "Graphic Position in Data"
  std::string linePrefix;       // LinePrefix + LinePrefix2, in front of the numbers
  // Numbers in the data above 255 do not fit a byte: each number is then two data, the high
  // byte first with `bigEndian`, joined by `numberSeparator`.
  bool splitNumbers = false;
  bool bigEndian = true;
  std::string numberSeparator = ",";
  // Put behind the last number when the numbers stand on their own line after the declaration:
  // data follow them.
  std::string numbersLineEnd = ",";
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
  long long x = 0, y = 0;  // the coordinates written, after the true origin
  long long oppositeX = 0, oppositeY = 0;
  std::string nameLine;     // the header line that held [&NAME], tags replaced
  std::string beforeName;   // the text in front of [&NAME] on that line (the type words)
  bool hasName = false;     // the template has a [&NAME]
  std::string name;         // the name put in
  std::string pointerName;  // the pointer table's name
  // The declaration line with another name in the place of the table's: the second plane of the
  // two page mode and a pointer table that the template does not declare.
  std::string NameLineFor(const std::string& otherName) const;
  std::size_t nameAt = 0;  // where the name's text (" " + name + " ") starts in nameLine
  std::size_t nameLength = 0;
};

// Fills the template. Tags are found without regard to case and each is replaced once, in the
// order NAME, SIZE, WIDTH, HEIGHT, TRUEORG, XPOS, YPOS, FONT INCLUDE, COMPRESSION, CNAME, CSIZE.
// The size goes between the brackets of [&SIZE] wherever the tag stands.
FilledTemplate FillTemplate(const std::vector<std::string>& lines, const HeaderTagValues& values);

}  // namespace rm
