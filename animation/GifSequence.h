#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/Bitmap.h"

namespace rm {

// One frame of a GIF file as the file stores it: a rectangle of colour indices somewhere on the
// logical screen, with the graphic control extension that came before it.
struct GifFrame {
  int left = 0, top = 0, width = 0, height = 0;
  std::vector<Colour> colourMap;     // the frame's own colour map; empty: the file's global one
  std::vector<std::uint8_t> pixels;  // width * height indices, row by row, interlacing undone
  bool hasControl = false;           // a graphic control extension stood before the frame
  int delayHundredths = 0;
  bool transparent = false;
  int transparentIndex = 0;
  int disposal = 0;  // 0 none, 1 leave in place, 2 restore to background, 3 restore to previous
};

// A whole GIF file: the logical screen and its frames in file order.
struct GifSequence {
  int screenWidth = 0, screenHeight = 0;
  std::vector<Colour> globalMap;  // empty when the file has none
  int backgroundIndex = 0;
  std::vector<GifFrame> frames;
};

// The reading and writing of GIF files, implemented by the platform with the GIF library.
class GifExchange {
 public:
  virtual ~GifExchange() = default;
  // Reads every frame of the file. On failure returns false and puts the reason, starting with
  // the file's name, into `error`.
  virtual bool Read(const std::string& path, GifSequence& out, std::string& error) = 0;
  // Writes `sequence` (every colour map at most 256 entries, every index inside its map) through
  // a temporary file and a rename.
  virtual bool Write(const GifSequence& sequence, const std::string& path, std::string& error) = 0;
};

// The frames of a file made whole, as the sequence takes them (LoadGif).
struct ComposedGif {
  int fileFrames = 0;         // GifFrameCount: the frames in the file, empty ones included
  int width = 0, height = 0;  // GifWidthMax, GifHeightMax: the largest right and bottom edges
  Colour background = kWhite;
  std::vector<Bitmap> frames;  // every frame width x height
  std::vector<int> delaysMs;   // the file's delay * 10; 0 without an extension
  std::vector<int> disposals;  // as used for the composition
};

// How many composed pixels, over all frames, a load may make (a quarter of a gigabyte).
constexpr std::int64_t kMaxAnimationPixels = std::int64_t{64} * 1024 * 1024;

// Turns the frames of a file into whole pictures (AnimationPictureToBitmap for each frame).
// Frames of no width or height are dropped. The last frame takes the disposal of the one before.
// Each frame starts from the background colour; one whose disposal is 0 or 1 starts from the
// composed frame before. After the first, a frame with a transparent index is drawn by colour:
// its pixels of the colour at that index (black when the index lies beyond the map) let the base
// show. False, with the reason in `error`, when a frame has no colour map or the pictures would
// pass `maxPixels` in all.
bool ComposeGif(const GifSequence& file, ComposedGif& out, std::string& error,
                std::int64_t maxPixels = kMaxAnimationPixels);

// A GIF of the frames (all the size of the first) with one colour map of the colours they use,
// or one per frame when together they use more than 256 (SaveGif). Each frame has a graphic
// control extension: its delay in hundredths (a delay of 0 ms stands for 30 ms), no transparency,
// disposal 2. `monochrome` maps every pixel to black or white by its brightness. False when a
// frame holds more than 256 colours or there is no frame.
bool MakeGifSequence(const std::vector<Bitmap>& frames, const std::vector<int>& delaysMs, bool monochrome,
                     GifSequence& out, std::string& error);

// A frame delay in milliseconds as the file keeps it, in hundredths of a second, rounded half to
// even; 0 ms is written as 30 ms.
int GifDelayHundredths(int delayMs);

}  // namespace rm
