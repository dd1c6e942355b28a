#pragma once
#include <string>
#include <vector>

#include "shell/ConvertJob.h"

namespace rm {

class GifExchange;

// An animation as a user asks for it: the frames of a GIF (or of pictures, one per frame) fitted
// to the display and reduced like a picture, then written as one table per frame or as a GIF.
struct AnimationRequest {
  // `input` is the GIF; the display, reduction, data and output options are those of a picture.
  // With ConvertTarget::File the frames go beside `outputFile`, named after it with the
  // underscore setting and the frame number.
  ConvertRequest convert;
  std::vector<std::string> frameFiles;  // pictures, one per frame, in place of a GIF
  int delayMs = 300;                    // each frame's delay when the frames are pictures
  std::string saveGif;                  // write the sequence as this GIF (no tables unless a file is named too)
};

// Loads the frames into a sequence in a fresh program (`app.codecs` must be set for pictures)
// and writes it. A GIF of one frame is refused: it is a picture, not an animation.
JobOutcome ConvertSequence(Application& app, GifExchange& gifs, const AnimationRequest& request,
                           const ConvertPrinter& print = {});

// What a GIF file holds, one line per frame: place, size, delay, disposal, transparency and
// colour map.
JobOutcome DescribeGif(GifExchange& gifs, const std::string& path);

// The command line's user interface for `request`: that of a conversion, and yes to writing the
// frames' files, which is what the request asks.
void PrepareConsole(ConsoleUi& ui, const AnimationRequest& request);

}  // namespace rm
