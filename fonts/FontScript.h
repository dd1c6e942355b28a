#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "engine/ConversionSession.h"
#include "fonts/FontJob.h"

namespace rm {

// A font job as a Font Script (".FSC") holds it: one item a line, each value between "[" and "]".
// Lines are addressed by their index from 0:
//   0 file name        5 Underlined      10 endian ("First"/"Last")
//   1 font name        6 Striked Out     11 Fixed/Variable, height and width limits, x and y shifts
//   2 size             7 Outline         12 prefix
//   3 Bold             8 source kind     13 suffix
//   4 Italic           9 orientation     14 the selected characters
// Nothing else of the job is in the script: the data syntax, descriptors and headers are
// settings of the program.
struct FontScriptFields {
  std::string fileName;
  std::string fontName = "Arial";
  int fontSize = 10;
  bool sizeListed = true;  // false: the panel's font has no size entry, written "[SIZE]"
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  bool outline = false;
  FontSource source = FontSource::Ansi;  // Ansi, Unicode or Vector (any other is written as ANSI)
  std::string codePage = "1252";
  std::string blockName = "Basic Latin";
  int subblock = 1;       // the subblock on show, from 1
  int subblockCount = 1;  // more than 1: the subblock is written behind the block name
  PagingDirection direction = PagingDirection::ToRightAll;
  OriginCorner corner = OriginCorner::TL;
  bool msbFirst = true;
  bool fixed = false;
  int maxHeight = 0;
  int maxWidth = 0;
  int shiftX = 0;
  int shiftY = 0;
  std::string prefix;
  std::string suffix;
  std::string list;  // the selection in its script form
};

// The lines of a new script, as creating one writes them. Creation names the directions
// "To Right", "To Left", "To Right All", "To Left All", "Up", "Down", "Up All" for the paging
// flags tr, tl, tra, tla, tu, td, tua and writes no orientation line at all for tda: the lines
// after it then stand one higher. Scripts in use were made so and are read back so.
std::vector<std::string> WriteNewFontScript(const FontScriptFields& f);

// Each line on its own, for the panel's controls that rewrite one line of an open script.
std::string FileNameLine(const std::string& name, bool afterChange);  // line 0
std::string FontNameLine(const std::string& name);                   // line 1
std::string FontSizeLine(int size, bool sizeListed);                 // line 2
std::string StyleLine(int index, bool on);                           // lines 3 to 7
std::string FontTypeLine(const FontScriptFields& f);                 // line 8
// Line 9 as the direction buttons rewrite it, with the corner. The buttons pair the horizontal
// flags the other way round from creation: tr "To Right All", tl "To Left All", tra "To Right",
// tla "To Left"; so such a script reads back with the other flag of the pair.
std::string OrientationButtonLine(PagingDirection d, OriginCorner corner);
std::string EndianLine(bool msbFirst);                                              // line 10
std::string CharsLengthLine(bool fixed, int maxHeight, int maxWidth, int sx, int sy);  // line 11
std::string PrefixLine(const std::string& prefix);                                  // line 12
std::string SuffixLine(const std::string& suffix);                                  // line 13
std::string SelectedCharsLine(const std::string& list);                             // line 14

// What reading a script found beyond its fields.
struct FontScriptReadNotes {
  bool addressRange = false;  // the list is "RANGE=" + first + " " + last
  std::string rangeFirst, rangeLast;
  bool starRange = false;  // the list is a range across subblocks ("*" twice)
  int rangeFirstSubblock = 1, rangeFirstLow = 0, rangeLastSubblock = 1, rangeLastLow = 0;
  bool outlineLineAdded = false;  // an older script without the Outline line got one
};

// Reads a script into `f`, line by line as the program always has, so that scripts in the field
// read as they always did:
// - line 0 is ignored; a size that is no whole number gives 8 ("[SIZE]" too);
// - a style is on when its value, upper case, is "TRUE"; a script without the Outline line gets
//   "Font style Outline :[False]" put in at line 7 and reads on from there;
// - the orientation's first bracket pair is the direction word, the second the corner ("TL",
//   "TR", "BR", "BL"); an unknown word changes nothing. A script created with tda has no
//   orientation line, so its endian line is read for the orientation, the Fixed/Variable line
//   for the endian, and so on down: the fields keep the values they had where a line does not fit;
// - a value needs both its brackets: a line or bracket that is missing leaves its field as it was;
// - prefix, suffix and list run from the first "[" to the last "]", so they may hold "]";
// - when the line after the suffix does not hold "Selected", it and the next line are read as
//   one more prefix and suffix, and the list comes after them.
// `lines` may gain the Outline line; the rest is not changed.
void ReadFontScript(std::vector<std::string>& lines, FontScriptFields& f, FontScriptReadNotes* notes = nullptr);

// The text between the first "[" and the first "]" after it; false when either is missing.
bool FirstBracketValue(std::string_view line, std::string& value);
// Splits a range across subblocks, "*" first subblock "/" first low byte "*" last subblock "/"
// last low byte (subblocks in decimal, low bytes in hexadecimal): a subblock that does not parse
// gives 1, a low byte 0.
void ExtractList(std::string_view list, int& firstSubblock, int& firstLow, int& lastSubblock, int& lastLow);

}  // namespace rm
