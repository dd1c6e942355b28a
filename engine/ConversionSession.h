#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/Bitmap.h"

namespace rm {

enum class PagingDirection { Down, DownAll, Up, UpAll, ToRight, ToRightAll, ToLeft, ToLeftAll };
enum class OriginCorner { TL, TR, BR, BL };
enum class OutputKind { Bits8, Bits16, Bits32, BinaryFile, IntelHex };
// The comment forms: "/* " ... " */", " //", " '", " ;" and a custom string.
enum class CommentForm { C, Slashes, Quote, Semicolon, Custom };
enum class EndOfLine { Comma, Semicolon, None, Custom };

constexpr bool IsHorizontal(PagingDirection d) {
  return d == PagingDirection::ToRight || d == PagingDirection::ToRightAll || d == PagingDirection::ToLeft ||
         d == PagingDirection::ToLeftAll;
}

// One row of the bit rearrangement grid.
struct ReorderRow {
  std::string function;  // "swap bits", "swap bytes 16 bits" or empty
  std::string bitA;
  std::string bitB;
};

// The Data Syntax settings: how bytes become text.
struct DataSyntax {
  std::string DataFormatKind = "X";  // "X", "H", "B", "0B", "+H+", "+B+", "+D+"
  // The value prefix and suffix of the a+...+b kinds; a new project starts with C's hex prefix.
  std::string DataPrefix = "0x";
  std::string DataSuffix;
  bool SpaceBetweenData = true;
  int DataPerLine = 16;          // the stored value (ORGC)
  bool SeparatorOn = true;       // COMAh
  bool SeparatorComma = true;    // COMAv
  bool SeparatorCustom = false;  // COMAS
  std::string SeparatorString = ",";
  EndOfLine Eol = EndOfLine::Comma;
  std::string EolString = ",";  // custom end of line, at most 5 characters
  bool DeleteVeryLastOne = true;
  bool DeleteAllLastOnes = false;
  CommentForm Comment = CommentForm::C;
  std::string CustomComment = " #";
  bool NoComments = false;
  bool NoDataComments = false;
  bool NoHeader = false;
  bool LeadingZero = false;
  bool LineNumbers = false;
  std::string LinePrefix;
  std::string LinePrefix2;
  std::string BeginOfData = "{";
  std::string EndOfData = "};";
  bool Groups = false;
  std::string ColRowPrefix = "{";
  std::string ColRowSuffix = "},";
  std::string ArrayPrefix = "{";
  std::string ArraySuffix = "};";
  std::string PointerPrefix;
  bool ConvertUint8 = true;
};

// What a user chooses: the project file's settings (the settings table's rows fill these) and the
// other choices of the panels and the command line, with the state the mode in force derives from
// them (the mode's flags and colour tables). Nothing here belongs to one run.
struct ConversionSettings {
  // Mode group.
  int ModeNumber = 1;
  long double PixelsPerByte = 8;
  int NumberOfColors = 2;
  int PaletteSize = 0;
  int CanvasBits = 8;
  int ByteClass = 0;
  bool Monochrome = true;
  bool Grayscale = false;
  bool Gray4 = false;
  bool Gray4TwoPages = false;
  bool Gray16 = false;
  bool Gray16Horizontal = false;
  bool Gray16Slices = false;
  bool Gray32 = false;
  bool Gray32Left = false;
  bool Colours256 = false;
  bool Colours256NoPalette = false;
  bool Gray256 = false;
  bool Colours8 = false;
  bool Colours16 = false;
  bool Colours4096 = false;
  bool Colours65536 = false;
  bool Colours262kPacked = false;
  bool Colours262kUnpacked = false;
  bool Colours16M = false;
  bool Packed = true;
  bool Not6bit = true;
  bool NegativeOutput = false;

  // Direction group.
  PagingDirection Direction = PagingDirection::ToRightAll;
  bool Horizontal = true;
  OriginCorner Origin = OriginCorner::TL;
  bool OriginLocked = false;
  bool BigEndian = true;  // set together with MSB first

  // Width group.
  OutputKind Output = OutputKind::Bits8;
  // Intel HEX records: data bytes per record (8, 16, 32), digits of the address field (4, 6, 8)
  // and the first address, which the records round down to a multiple of 16.
  int HexBytesPerLine = 16;
  int HexAddressDigits = 4;
  std::uint32_t HexAddressOffset = 0;

  // Options of the packers and rearrangement.
  bool SwapFirstLast = false;  // rgb2
  bool SwapRedGreen = false;   // reported as "Red and Blue Swapped !"
  bool Rgba = false;
  bool SwapNibble = false;  // snib
  bool ReorderOn = false;   // dore
  std::array<ReorderRow, 32> ReorderTable{};
  int PixelsPerByteSetting = 8;  // PPB, the cut of horizontal monochrome bytes
  bool Compression = false;
  bool Interleaved = false;
  bool AutoFraming = false;
  bool CoordinatesDescriptors = false;
  bool SizeCheckOffForFonts = false;
  bool FontScaleOption = false;

  DataSyntax Syntax;

  // Colour tables: ModeColours (up to 32, searched linearly) and the sorted PaletteTable.
  std::vector<Colour> ModeColours;
  std::vector<Colour> PaletteTable;
  bool InvertGrayPalette = false;       // reverses the gray ramps of the modes 24 to 31
  bool RevertPaletteOnLoading = false;  // reverses PaletteTable after its sort

  // Output assembly: the header template and the texts around the table.
  std::string HeaderIncludeFile;       // empty: the default template, held in memory
  bool GraphicSizeInData = false;      // width and height as the table's first data
  bool GraphicPositionInData = false;  // X and Y likewise
  bool SizeDescriptors = true;         // the WidthPages/HeightPixels lines after the table
  std::string DescriptorsEol = ";";
  bool PostProcessing = false;
  std::string Underscore = "_";
  bool AutoChangeFraming = false;  // an animation frame exports only what changed

  // Output files. The output name comes from the last picture's name (TableName, the name in
  // the source, follows from it); the parameter file lies beside the output.
  // The Output files folder. Empty until a project or a front end chooses one; without it the
  // Convert command leaves its results in the editors and writes no file.
  std::string OutputFolder;
  std::string OutputFileName = "NewBitmap.h";    // the table's file, extension by output kind
  std::string LastBitmapName = "NewBitmap.bmp";  // the picture the output name is made from
  // Source language of the text output; when several are on, the first in this order wins.
  bool AsmFile = false;
  bool LibraryFile = false;
  bool BasicFile = false;
  bool CFile = false;
  std::string LibraryExtension = "lib";  // without its point
};

// One run's working state: the picture it converts and its limits, the area, the names of this
// table, the encoder's and packers' counters. A run built from settings alone starts from these
// defaults, so it never inherits what the last run left behind.
struct ConversionRun {
  // Pixel source and its limits.
  const Bitmap* Source = nullptr;
  int CanvasWidth = 0;
  int CanvasHeight = 0;

  // Work group.
  int EncodeWidth = 0;
  int EncodeHeight = 0;
  int ExportAreaX1 = 0;
  int ExportAreaY1 = 0;
  int ExportAreaX2 = 0;  // exclusive
  int ExportAreaY2 = 0;  // exclusive
  std::string TextX = "0";
  std::string TextY = "0";
  std::string TextX2 = "0";
  std::string TextY2 = "0";
  int CurX = 0;
  int CurY = 0;
  int CurrentByte = 0;
  long double ByteCount = 0;
  long long TotalBytes = 0;
  long long TotalBytesPlus = 0;
  bool Abort = false;
  bool UnderDevelopment = false;
  bool HalfExport = false;
  bool LowerHalf = false;
  bool SelectionActive = false;  // an area chosen for export
  bool FontMode = false;

  // Packer state, reset per table.
  int Gray32Counter = 0;
  int Gray32A = 0;
  int Gray32C = 0;
  int Packed4096Phase = 0;
  int Packed4096First = 0;

  // This table's names and texts.
  std::string TableName = "NewBitmap";  // the output name the tags and descriptors use
  std::string SourceFileName = "Newfile.bmp";
  std::string InfoFilePath;      // named by the closing comment
  std::string LastInfoDateText;  // date and time of the conversion: top comment, parameter file
  // Where the front end will write the parameter file, when not beside the output in the output
  // folder (the command line's -o FILE): the closing comment names it.
  std::string InfoFileTarget;
  const Bitmap* PreviousFrame = nullptr;  // the frame before, while an animation is encoded
  int AnimationFrame = 0;                 // 1-based frame of an animation run, 0 outside one
  int AnimationFrames = 0;

  // Working copies of the end of line settings, taken at the start of each conversion.
  EndOfLine WorkEol = EndOfLine::Comma;
  std::string WorkEolString = ",";
  int WorkDataPerLine = 16;

  // On when the header template asks for coordinates measured from the origin corner.
  bool TrueOrigin = false;
};

// The record the engine's routines work on (they take no arguments): the settings and one run.
// A batch or a test starts a run from settings with `ConversionSession run(settings)`.
struct ConversionSession : ConversionSettings, ConversionRun {
  ConversionSession() = default;
  explicit ConversionSession(const ConversionSettings& settings) : ConversionSettings(settings) {}
  ConversionSettings& Settings() { return *this; }
  const ConversionSettings& Settings() const { return *this; }
};

}  // namespace rm
