#pragma once
#include <cstdint>
#include <vector>

#include "engine/ConversionSession.h"
#include "engine/Palette.h"
#include "engine/ScanOrder.h"

namespace rm {

// Where the packer's data go. `Datum` is the one call per byte made: everything that writes or
// counts data sits behind it.
class PackerOutput {
 public:
  // A finished byte of the data.
  virtual void Datum(int byte) = 0;
  // A monochrome byte as read, before its cut and rearrangement, offered to the compression;
  // true when the compression takes it, so it is not written as data.
  virtual bool Compressed(int byte) = 0;
  // The next byte belongs to the same pixels: with one datum a line it gets a comment of its own.
  virtual void NextDatumComment() = 0;
  // A black monochrome pixel, by the weight of its bit, for the data comment's picture.
  virtual void PixelBit(int weight) = 0;
  // A pixel of a colour no table of the mode holds; the output stops the walk.
  virtual void ColourMissing(Colour c) = 0;

 protected:
  ~PackerOutput() = default;
};

// Packs the pixels of the session's source into bytes by colour mode and bit order: monochrome
// bits (8 or 6 a byte), gray levels and colour indexes (2 to 8 a byte), and pixels of 12 to 32
// bits in 2 to 4 bytes. The position (CurX, CurY) and what a mode keeps between pixels (the packed
// gray 32 and 4096 colour pairs) live in the session, so a walk can be run twice from the same
// state.
class PixelPacker {
 public:
  PixelPacker(ConversionSession& session, PackerOutput& out) : s_(session), out_(out) {}

  // Before a walk: indexes the mode's colours and, where it pays, the values of the whole picture.
  void Prepare();
  // Gives the plane of values back.
  void Release();

  // One datum: the pixels from (CurX, CurY) on in `step`, leaving the position after the last read.
  void Pack(PixelStep step);
  // Whether a packer that puts several pixels into a run of bytes holds bits not yet written, and
  // the byte that writes them (the bits of the missing pixels 0).
  bool Holding() const;
  void Flush();

 private:
  void PackMonochrome(PixelStep step);
  void PackGray4(PixelStep step);
  void PackGray32(PixelStep step);
  void PackColours8(PixelStep step);
  void PackNibbles(PixelStep step);
  void PackWide(PixelStep step);

  // The mode's value of a colour; false after reporting a colour that no table holds.
  bool ValueOf(Colour c, int& value);
  // The value of the pixel at (x, y), from the plane Prepare made when there is one.
  bool ValueAt(int x, int y, int& value);
  // Reads the current pixel's value and steps on.
  bool ReadValue(PixelStep step, int& value);
  void Advance(PixelStep step);
  // A byte value (width 8) in the output's bit order, or a pixel value of 12 to 24 bits with its
  // outer colour fields swapped; then the user's rearrangement.
  std::uint32_t Transform(std::uint32_t v, int width) const;
  // A byte of a pixel of 12 bits and more, in the output's bit order.
  void DatumOfWide(int byte);

  ConversionSession& s_;
  PackerOutput& out_;
  ColourIndex colourIndex_;  // the mode's table, indexed once per walk
  Colour lastColour_ = kOutside;
  int lastValue_ = -1;
  std::vector<std::int32_t> values_;
  int valuesWidth_ = 0;
};

}  // namespace rm
