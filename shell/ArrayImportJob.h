#pragma once
#include <string>

#include "engine/ArrayImport.h"
#include "shell/ConvertJob.h"
#include "shell/JobOutcome.h"

namespace rm {

class Application;

// The way back from a Data Array to a picture: a table the program wrote (text, or the bytes of a
// binary) read with the settings it was written with and painted on a canvas of their display
// size, which is then written as a PNG file.
struct ArrayImportRequest {
  std::string input;  // a binary when its name ends in ".bin", Intel HEX records in ".hex", text otherwise
  // The settings the table was written with: the project, `size` (required), mode, direction,
  // origin, bit order, data width (of a text; of a binary, the words its length must fill), the
  // controller and the rearrangement. The picture and output fields are not used.
  ConvertRequest scheme;
  ArrayTextSyntax syntax;  // how a datum stands in the text
  int table = 1;           // which table of the text, from 1; the two page mode takes it and the next
  std::string outputFile;  // the PNG written, whole or not at all
};

// Fails (status 1, nothing written) on a file that cannot be read, a text with bad digits or no
// table, data that do not fill the canvas exactly, a binary that is not a whole number of words.
// Usage errors (a bad size or option) have status 2. On success the canvas of the program holds
// the picture too.
JobOutcome ImportArrayFile(Application& app, const ArrayImportRequest& request);

}  // namespace rm
