#include "engine/InfoFile.h"

#include "engine/ColourModes.h"
#include "engine/OutputNaming.h"
#include "engine/ProgramVersion.h"

namespace rm {

const char* DirectionInfoText(PagingDirection d) {
  switch (d) {
    case PagingDirection::Down: return "Paging Scheme vertical downwards";
    case PagingDirection::DownAll: return "Paging Scheme All vertical downwards";
    case PagingDirection::Up: return "Paging Scheme vertical upwards";
    case PagingDirection::UpAll: return "Paging Scheme All vertical upwards";
    case PagingDirection::ToRight: return "Paging Scheme horizontal From left to right";
    case PagingDirection::ToRightAll: return "Paging Scheme All horizontal From left to right";
    case PagingDirection::ToLeft: return "Paging Scheme horizontal from right to left";
    case PagingDirection::ToLeftAll: return "Paging Scheme All horizontal from right to left";
  }
  return "";
}

// The row's texts are literals, so their data ends with a NUL.
const char* ModeInfoText(int modeNumber) { return ModeRow(modeNumber).infoText.data(); }

namespace {

const char* OutputKindText(OutputKind k) {
  switch (k) {
    case OutputKind::BinaryFile: return "Hex File output format";
    case OutputKind::IntelHex: return "Intel Hex output format";
    case OutputKind::Bits8: return "8 bit output format";
    case OutputKind::Bits16: return "16 bit output format";
    case OutputKind::Bits32: return "32 bit output format";
  }
  return "";
}

const char* OriginText(OriginCorner o) {
  switch (o) {
    case OriginCorner::TL: return "Origin corner top left";
    case OriginCorner::BR: return "Origin corner bottom right";
    case OriginCorner::TR: return "Origin corner top right";
    case OriginCorner::BL: return "Origin corner bottom left";
  }
  return "";
}

// The same order of precedence as the extension of the output file.
const char* FileKindText(const ConversionSession& s) {
  if (s.AsmFile) return "Assembler File : ";
  if (s.LibraryFile) return "Library File : ";
  if (s.BasicFile) return "Basic File : ";
  if (s.CFile) return "C File : ";
  return "C Header File : ";
}

}  // namespace

std::vector<std::string> InfoFileLines(const ConversionSession& s, const InfoFileFacts& f) {
  std::vector<std::string> out;
  auto add = [&out](std::string line) { out.push_back(std::move(line)); };
  const bool machine = s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex;

  add(std::string(f.animation ? "LCD animation parameters" : "LCD graphic parameters") +
      " // generated with rastermill " + ProgramVersion());
  add(f.dateText);
  add(std::string(57, '-'));
  add("");
  if (f.postProcessing) {
    add("Text processing filename : " + f.postProcessingFile);
    add("Post-Processing : " + std::to_string(f.postProcessingCount) + " occurences found");
  }

  add(DirectionInfoText(s.Direction));
  add(s.BigEndian ? "Big Endian / MSB first" : "Little Endian / MSB last");
  if (!s.Not6bit) add("6 bit T6963 Mode ");
  if (s.Monochrome) add(s.NegativeOutput ? "Inverted Data Output" : "Not Inverted Data Output");
  if (s.Colours65536 && s.SwapRedGreen) add("Red and Blue Swapped !");
  if (s.Colours16M && s.SwapFirstLast) add("1st and last bytes Swapped !");
  if (s.Gray16 || s.Colours16) add(s.SwapNibble ? "Nibble Swapping ON" : "Nibble Swapping OFF");
  if (s.Gray16Slices) add("ST7528 Mode ON");
  add(OutputKindText(s.Output));
  add(s.Packed ? "Packed Data" : "Unpacked Data");
  add(ModeInfoText(s.ModeNumber));
  add(OriginText(s.Origin));
  add("");
  if (f.postProcessing) add("Postprocessing is ENABLED ");

  // Binary and Intel HEX files are bytes, not source text: no language to name.
  if (!machine) add(FileKindText(s) + s.OutputFileName);
  const bool noSource = s.SourceFileName == "Newfile.bmp" || s.SourceFileName.empty();
  add(std::string(f.animation ? "Animation Source file : " : "Bitmap Source file : ") +
      (noSource ? "<none>" : s.SourceFileName));
  if (!f.animation) {
    add((machine ? "Data file created : " : "Data table created : ") + s.OutputFileName);
  } else {
    for (const auto& fr : f.frames) {
      add("Data table for frame : " + std::to_string(fr.frame) + " : " + fr.file);
      add("Size in Bytes : " + std::to_string(fr.bytes) + "  compression ratio : " + fr.compressionRatio);
    }
    add("Animation size in bytes : " + std::to_string(f.animationBytes));
    if (!f.clipUnitFile.empty()) add("Clip Unit : " + f.clipUnitFile);
  }

  const bool fullCanvas =
      s.ExportAreaX1 == 0 && s.ExportAreaY1 == 0 && s.ExportAreaX2 == s.CanvasWidth && s.ExportAreaY2 == s.CanvasHeight;
  if (fullCanvas) {
    add("Full screen pattern " + std::to_string(s.EncodeWidth) + "x" + std::to_string(s.EncodeHeight));
  } else {
    const AreaCorners a = ReportedArea(s);
    const std::string first = " Y =" + std::to_string(a.y), second = " Y =" + std::to_string(a.y2);
    add("Original X and Y coordinates");
    if (s.TrueOrigin) {
      add("True origin enabled");
      add("Origin  X =" + std::to_string(a.x) + first);
      add("Opposite corner X =" + std::to_string(a.x2) + second);
    } else {
      add("True origin disabled");
      add("Top Left  X =" + std::to_string(a.x) + first);
      add("Bot Right X =" + std::to_string(a.x2) + second);
    }
    add("Width = " + std::to_string(s.EncodeWidth));
    add("Height = " + std::to_string(s.EncodeHeight));
  }

  if (f.compressed) {
    add("Compressed data");
    add(std::to_string(f.compressedBytes) + " Bytes");
    for (const auto& l : f.compressionStatistics) add(l);
  } else if (s.Output == OutputKind::Bits16) {
    add(std::to_string(s.TotalBytes / 2) + " Words");
  } else if (s.Output == OutputKind::Bits32) {
    add(std::to_string(s.TotalBytes / 4) + " Words");
  } else {
    add(std::to_string(s.TotalBytes) + " Bytes");
  }
  return out;
}

}  // namespace rm
