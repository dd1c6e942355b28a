#pragma once
#include <iosfwd>
#include <string>

namespace rm {

class Clock;
class ImageCodecs;
class UiPort;

// The console session: a text tool on standard input and output. Each line is a command, read in
// upper case: "?" shows the help, "RASTERMILL <batch> <file>" (or "RASTERMILL.EXE ...") runs the
// batch on the file, "EXIT" (or the end of the input) ends the session, anything else shows the
// help again. A batch named without an extension is looked for as .sip, then .spp, in the Batch
// folder; the file as given, else in the Graphics folder. A batch that drives the canvas
// converts the file as a picture; a text batch rewrites the file's text, which stays in the
// program (only the files the batch saves are written). Every run is a fresh program on the
// active project; nobody is asked a question. `ui` hears what the program says.
struct ConsoleSessionRequest {
  std::string project;    // another project file than the active one
  std::string outputDir;  // the Output folder of the runs; empty: the project's
};
// Returns the number of runs that failed.
int RunConsoleSession(std::istream& in, std::ostream& out, UiPort& ui, Clock& clock, ImageCodecs& codecs,
                      const ConsoleSessionRequest& request);

}  // namespace rm
