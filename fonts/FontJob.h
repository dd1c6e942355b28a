#pragma once
#include <string>

namespace rm {

// Where the glyphs of a job come from. Exactly one is active at a time.
enum class FontSource {
  Ansi,       // an installed font, one 8-bit code per character read through a code page
  Unicode,    // an installed font, 16-bit codes inside a Unicode block, 256 at a time
  Vector,     // text placed in an SVG template; characters are addressed as in ANSI
  Editable,   // per-character bitmaps of an Editable Font; code = index + AsciiOffset
  ExcelList,  // an installed font, the codes taken from a list of hexadecimal addresses
};

// One font export: which font, which characters, at which size and with which data settings.
// There is one job at a time. The data settings are stored in the project file, each under the
// key named beside it; the rest lives for the session and in the Font Script.
struct FontJob {
  FontSource Source = FontSource::Ansi;
  std::string FontName = "Arial";  // SFONT; an Editable Font's name in that mode
  int FontSize = 10;               // SFONS, points, 1..300
  bool FontStyleBold = false;
  bool FontStyleItalic = false;
  bool FontStyleUnderline = false;
  bool FontStyleStrikeOut = false;
  // Outline is no style of the font: the text's path is stroked and filled.
  bool FontStyleOutline = false;       // OUTLF
  bool Antialiased = false;            // Antia
  bool AntialiasHighQuality = true;    // ANTALQ: quality 4 instead of 3
  std::string CodePage = "1252";       // of ANSI mode; the platform's default page at start
  bool FixedChars = false;             // "Chars Length": Fixed or Variable
  int MaxCharWidth = 0;                // 0: no limit
  int MaxCharHeight = 0;               // 0: no limit
  int ShiftX = 0;                      // glyph origin shift in pixels
  int ShiftY = 0;
  long double WidthFactor = 1.0L;      // stretch factors, 1.0 with stretching off
  long double HeightFactor = 1.0L;
  int StretchHeightShift = 0;          // "Height Shift Factor"
  bool StretchOn = false;
  bool KerningOn = true;               // "Kerning (spacing)" of the canvas text tool
  bool RightToLeftWriting = false;     // mirror the output in the vertical axis
  bool HorizontalMirror = false;

  // The selection, in the forms CharSelection describes, and as script line 14 holds it.
  std::string SelectedChars;
  std::string SelectedCharsScriptForm;
  bool AddressRangeMode = false;  // the selection is a hexadecimal range (Font Script Mode only)

  // The Unicode block in use and the subblock (256 codes sharing a high byte) on show.
  std::string UnicodeBlockName = "Basic Latin";
  int UnicodeBlockFirst = 0x0000;
  int UnicodeBlockLast = 0x007F;
  int SubblockCount = 1;  // high byte of last - high byte of first + 1
  int SubblockHigh = 0;   // high byte of the subblock on show

  // "Data Parameters".
  bool HorizontalCharsData = false;  // HCO: all data of a character on one line; forces Fixed
  bool UseOffsets = true;            // uoffs: remove void pixel lines in code
  std::string DataSeparator = ",";   // feolst
  std::string FontPrefix;            // fonpr
  std::string FontSuffix;            // fonsu
  std::string EndOfData = "};";      // EndstF
  // The end of line of font data, which stands in for the canvas's while the job runs.
  bool FontEolNone = false;       // FEoln
  bool FontEolComma = false;      // FEolcom
  bool FontEolString = true;      // FEolStr: the data separator (feolst)
  bool FontEolSemicolon = false;  // FEolSem
  // In 16 gray levels, whether the walk down the columns is offered (gsch).
  bool Gray16ColumnScheme = false;
  std::string CharsSeparator;        // eofbl
  bool WithCharComment = true;       // rdcc
  int AsciiOffset = 0;               // AOF, Editable Font only

  // "Structure Parameters". The four data structures are three switches: Raw Data is Rawd,
  // Font Bloc Rawd2, DMD Struct DMDs with Rawd, Structured all three off.
  bool RawData = false;               // Rawd
  bool FontBloc = true;               // Rawd2
  bool DmdStruct = false;             // DMDs
  bool NoDescriptorBloc = false;      // nde: "Descriptor Bloc" inverted
  bool NoDescriptorCodepage = true;   // ndcp: "Descriptor Codepage" inverted
  bool CharAddress = true;            // wua
  bool StartAddress = true;           // wsta
  bool StartAddress2Bytes = false;    // wsta2b
  bool CharWidthBits = true;          // wiw
  bool CharHeightBits = true;         // wih
  bool CharSizeBytes = true;          // descsz
  bool CharSizeBytes2Bytes = false;   // descsz2b
  bool CharSizeBits = true;           // csbits
  bool CharSizeBits2Bytes = false;    // csbits2b
  bool XOffset = true;                // wxof
  bool YOffset = true;                // wyof
  bool CharSpacing = true;            // wcsp
  int AddressFormat = 0;              // DEA: 0 "0x", 1 "$", 2 "+H", 3 "None"
  bool WithBraces = true;             // Wrack: "With {}"
  // The rank of each descriptor entry, 1..9, as text.
  std::string CharAddressRank = "1";  // CARK
  std::string CharWidthRank = "2";    // CWBRK
  std::string CharHeightRank = "8";   // CHBRK
  std::string XOffsetRank = "6";      // XOFSRK
  std::string YOffsetRank = "7";      // YOFSRK
  std::string StartAddressRank = "3"; // SARK
  std::string CharSizeBytesRank = "5";// CHARSBRK
  std::string CharSizeBitsRank = "4"; // CSBRK
  std::string CharSpacingRank = "9";  // CSPBRK

  // "Headers Parameters". Three are stored inverted.
  bool NoDescriptionHeaders = false;  // nodesch
  bool NoCodeHeader = false;          // ncodeh
  bool NoCodeHeaderComment = false;   // ncodehc
  bool WithFontHeader = true;         // wfhe
  std::string FontHeader1;            // FHE1..FHE6
  std::string FontHeader2 = "Font Size (2)";
  std::string FontHeader3 = "Chars Width";
  std::string FontHeader4 = "Chars Height";
  std::string FontHeader5 = "First Char";
  std::string FontHeader6 = "n Chars";

  // The kerning table's texts.
  std::string KerningPrefix = "int ";         // KERPREF
  std::string KerningSuffix = "[120][3]= ";   // KERSUF
  std::string KerningTableBegin = "{";        // KERTBEG
  std::string KerningTableEnd = "};";         // KERTEND
  std::string KerningLineBegin = "{";         // KERLBEG
  std::string KerningLineEnd = "},";          // KERLEND
};

}  // namespace rm
