#pragma once
#include <string>
#include <vector>

namespace rm {

// What a batch asks of the Work Canvas: load a picture, convert it, write the data file. The
// program that owns the canvas and the conversion implements it; without one a batch is a text
// batch and these commands are only reported.
class GraphicBatchPort {
 public:
  virtual ~GraphicBatchPort() = default;
  // Loads the picture the batch names (or the one the run was started on) into the canvas.
  // Returns the report's words for the command's line, then any further report lines.
  virtual std::vector<std::string> LoadGraphic(const std::string& name) = 0;
  // Converts the canvas; the new text replaces the batch's target text. Returns the words.
  virtual std::string ConvertGraphic() = 0;
  // Writes the target text as the data file of the last picture. Returns the words.
  virtual std::string OverwriteDataFile() = 0;
};

// True when the block holds one of the commands that drive the canvas.
inline bool IsGraphicCommand(const std::string& key) {
  return key == "load graphic" || key == "convert graphic" || key == "overwrite data file";
}

}  // namespace rm
