#pragma once
#include <functional>
#include <vector>

#include "engine/Bitmap.h"

namespace rm {

class Application;

// The conversion of a sequence of frames.
class AnimationEncoding {
 public:
  explicit AnimationEncoding(Application& app) : app_(app) {}

  // Encodes a sequence of frames, one file per frame named after the output with an underscore
  // and the frame number, then the parameter file of the whole run. False when the user said no
  // or a frame stopped the series; the frames written until then stay.
  // `delaysMs` gives each frame's delay for the clip unit; missing ones take FrameDelayMs.
  // `afterFrame` is called with the frame number once that frame's table stands in the editor.
  bool ConvertAnimation(const std::vector<Bitmap>& frames, const std::vector<int>& delaysMs = {},
                        const std::function<void(int)>& afterFrame = {});

 private:
  Application& app_;
};

}  // namespace rm
