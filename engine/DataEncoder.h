#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/Compression.h"
#include "engine/ConversionSession.h"
#include "engine/DataFormatter.h"
#include "engine/HeaderTemplate.h"
#include "engine/Palette.h"
#include "engine/PixelPacker.h"
#include "engine/ScanOrder.h"
#include "engine/HexBuffer.h"
#include "engine/TextLines.h"
#include "engine/UiPort.h"

namespace rm {

enum class ConvertResult { Done, Stopped, PasteRequested };

// What the canvas tells the encoder about itself for one conversion.
struct CanvasState {
  bool floatingSelection = false;    // a selection layer not yet pasted
  bool selectionReducedToBW = true;  // in monochrome: the floating selection is black and white
  enum class Area { None, Selected, Subdivision, Animation, AutoFrame } area = Area::None;
  bool animationActive = false;
  int frameCount = 0;
};

// Walks the export area of the pixel source in the order of the Paging Scheme (ScanOrder), has the
// packer make bytes of the pixels by colour mode (PixelPacker) and hands them to the formatter.
class DataEncoder : private PackerOutput {
 public:
  DataEncoder(ConversionSession& session, TextLines& text, TextLines& aux, HexBuffer& hex, UiPort& ui);

  DataFormatter& Formatter() { return formatter_; }
  CanvasState& Canvas() { return canvas_; }

  ConvertResult ConvertWorkCanvas();
  bool EncodeCanvasTable();
  // The palette of the mode as a table of 24 bit colours, under the name "COLORLUT".
  bool EncodeColorLutTable();
  // The CLUT's run of the Convert command: its refusals, the buffers emptied, the table written.
  bool ConvertPalette();

  void ComputeTotalBytesPlus();
  void ComputeTotalBytes();
  // The bytes `pixels` take in the modes of more than one byte per pixel (1.5 for 4096 packed).
  long long BytesOfPixels(long long pixels) const;
  void ResetWorkState();
  // Cuts the export area to the part that differs from the pixel at (0, 0), rounded to pages.
  // Cuts the export area to the painted part: the pixels that differ from the pixel at (0, 0),
  // or, with `before`, from the same pixel of the frame before.
  void AutoFrame(const Bitmap* before = nullptr);

  // Compression of monochrome text tables. The packer offers every monochrome byte, with
  // the byte in `CurrentByte`: it advances `ByteCount` and returns true when the byte is
  // swallowed, so it never reaches the data table. Without compression (and in font mode) it
  // does nothing and the formatter counts the bytes.
  bool CompressStep();
  // Closes a compressed table after the last line of its data: the end string, the pointer
  // table (AuxLines from its line 1 on: line 0 is the rest of the template line that held the
  // pointer table's tag), the end string again and the statistics. Returns false, writing
  // nothing, when the two tables would not be smaller than the plain one: alone, the user is
  // told; in an animation the frame is only marked (CompressionRefused). The caller must then
  // make the table again without compression.
  bool FinishCompressedTable(const std::string& endString);
  // Makes the table again with compression off, and turns it back on.
  bool RedoTableUncompressed();
  // True when the last compressed table did not pay and was made again without compression.
  bool CompressionRefused() const { return compressionRefused_; }
  void WriteCompressionStatistics();
  // The statistics of the last compressed table without comment marks, for the parameter file.
  std::vector<std::string> CompressionStatisticsLines() const { return compression_.StatisticsLines(); }
  const CompressionState& Compression() const { return compression_; }

 private:
  bool BeforeByte();
  // The packer's output: a byte to the formatter, or only counted while CountWalkBytes runs.
  void Datum(int byte) override;
  bool Compressed(int byte) override;
  void NextDatumComment() override;
  void PixelBit(int weight) override;
  void ColourMissing(Colour c) override;
  // The table's surroundings: the header template filled in, the comments above the table,
  // the second plane, the descriptors and the closing comment below it.
  // `fixedName` and `fixedSize` replace the table's own name and size (the colour table's).
  FilledTemplate LoadHeaderTemplate(const std::string* fixedName = nullptr, const std::string* fixedSize = nullptr);
  void WriteTableHead(const FilledTemplate& head, bool clut = false);
  void WriteTopComments(bool clut);
  void WriteTableTail(const FilledTemplate& head, const std::string& endString);
  // The entries of the table's data as declared: the bytes written, in words of the output.
  long long DataSize() const;
  // The text that separates two data in a line: the separator, or "," when it is off.
  std::string DataSeparatorText() const;
  // The title line of a pointer table that its template does not declare.
  std::string CompressionTitle() const;
  // A comment line of the chosen form: the prefix, the text and, for C comments, " */".
  std::string Comment(const std::string& text) const;

  void RunWalker();
  // The one walk of every direction: the groups and data of the session's ScanOrder, each datum
  // packed by the packer, then the bytes a packer still holds when the pixels run out.
  void Walk();
  // The bytes the walk of the current settings writes, found by running it without output. The
  // size a table declares and the separators it sets follow from it, so that they agree with
  // what is written whatever the area, the mode and the direction. -1 when a colour is missing
  // (the real walk reports it).
  long long CountWalkBytes();

  ConversionSession& s_;
  TextLines& text_;
  TextLines& aux_;
  HexBuffer& hex_;
  UiPort& ui_;
  DataFormatter formatter_;
  CompressionState compression_{s_, formatter_};
  bool compressionRefused_ = false;
  // The canvas limits as the last compressing walk found them: some walks change them at their
  // end, and a table made again must start from the same ones.
  int walkCanvasWidth_ = 0;
  int walkCanvasHeight_ = 0;
  CanvasState canvas_;
  PixelPacker packer_{s_, *this};
  long long progressTick_ = 0;
  bool counting_ = false;  // CountWalkBytes runs: bytes are counted, nothing is written
  long long counted_ = 0;
  bool redoneAfterRefusal_ = false;  // the plain table made when compression did not pay
};

}  // namespace rm
