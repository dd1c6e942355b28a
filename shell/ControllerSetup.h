#pragma once
#include <string>

#include "engine/BitRearrange.h"
#include "engine/Controllers.h"

namespace rm {

class Application;

// What a conversion asks of the controller and the data bits beyond the Paging Scheme.
struct ControllerRequest {
  const ControllerPreset* preset = nullptr;  // none: only the rearrangement below
  bool modeChosen = false;                   // the user chose the colour mode himself: the ink of the picture is his
  bool widthChosen = false;                  // the user chose the data width himself
  RearrangeRequest rearrange;
};

// Run with the picture on the canvas and the mode, direction and bit order already set (by
// MergeControllerPreset and the usual commands), before the conversion:
// - a preset's panel that shows a white pixel as a set bit gets the picture in that sense: in
//   monochrome the canvas is turned negative for the conversion (black pixels become white and
//   every other pixel black: a binary image takes the bytes as packed, so the negative output
//   setting could not do it), in the gray modes the gray ramp is reversed so white is the
//   highest level; the negative output setting is cleared so text and binary agree;
// - text output in 16 or 32 bit words goes back to bytes: the controllers take bytes in the
//   order they are packed, and words would come out in the order of the processor's memory;
// - the rearrangement (red and blue, a permutation) goes into the table.
// The canvas is changed in place: the caller converts a copy it does not keep. False with the
// reason when the rearrangement is refused.
bool ApplyControllerRequest(Application& app, const ControllerRequest& request, std::string& error);

}  // namespace rm
