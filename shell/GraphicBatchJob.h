#pragma once
#include <string>

#include "shell/JobOutcome.h"

namespace rm {

class Application;

// A batch run on the Work Canvas. The picture named here is the file of the run: every
// `load graphic` of the batch imports it, as a run over the files of a folder does; without one,
// `load graphic 'name'` imports the name from the project's Graphics folder. `convert graphic to
// data` converts the canvas as the Convert command does, and `overwrite data file` writes the
// text as the picture's data file (its extension by the output language) into the Output folder.
// The text commands of the batch work on the converted text.
struct GraphicBatchRequest {
  std::string batchFile;  // the .SIP or .SPP file, found by FindBatchFile
  std::string picture;    // the file of the run; must exist when given
  std::string project;    // another project file than the active one
  std::string outputDir;  // the Output folder of this run; empty: the project's
};
// The output is the text after the batch; the files written are listed. A graphic command that
// failed (a picture missing or not imported, a conversion refused, a data file not written)
// makes the outcome a failure (status 1) with the report's words, after the batch ran to its end.
// `app.codecs` must be set.
JobOutcome RunGraphicBatch(Application& app, const GraphicBatchRequest& request);

// The batch file a user names: the name as given; without an extension, the name with ".sip",
// then with ".spp" (either case); each first as it stands, then in `batchFolder`. Empty when
// none exists.
std::string FindBatchFile(const std::string& name, const std::string& batchFolder);

// True when the batch holds a command that drives the canvas: a graphic batch, run on pictures.
bool BatchDrivesCanvas(const std::string& batchFile);

// The words the console and the command line say when a batch or its file is missing.
inline constexpr const char* kBatchNotFound = "Processing File not found !";
inline constexpr const char* kPictureNotFound = "Specified File not found !";

}  // namespace rm
