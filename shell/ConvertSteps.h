#pragma once
#include <cstdint>
#include <string>

#include "shell/ConvertJob.h"

namespace rm {

// The steps of Convert, for the jobs that convert more than one picture with the same options.

// Checks the request's own values and fills in what a controller preset gives; `hexOffset`
// gets the address offset asked for.
JobOutcome CheckRequest(Application& app, ConvertRequest& r, std::uint32_t& hexOffset);
// A controller preset fills the mode, direction, origin and bit order the user did not give, and
// a note tells of every one given that differs from it.
JobOutcome ResolveController(Application& app, ConvertRequest& r);
// Opens the project the request names (or the active one) and sets its colour mode.
JobOutcome OpenRequestProject(Application& app, const ConvertRequest& r);
// The display a picture is to meet: a size, a preset, the project's, Picture Mode, or (none
// given) the size of the picture to come. Also the turn, drawing size and fitting of the import.
JobOutcome ChooseDisplay(Application& app, const ConvertRequest& r);
// The reason a picture was not imported, after the import said no.
JobOutcome ImportRefusal(Application& app, const std::string& input);
// The floating picture reduced to black and white by the threshold or dither asked for (or, in a
// monochrome mode, by the project's dithering, with a note when `tellAutoReduction`), then pasted.
JobOutcome ReduceAndPaste(Application& app, const ConvertRequest& r, bool tellAutoReduction);
// With the picture on the canvas, before the other settings: the preset's ink and data width and
// the rearrangement.
JobOutcome ApplyHardware(Application& app, const ConvertRequest& r);
// The data options of the request over the project's settings, as the settings panel and the
// Export dialog set them.
JobOutcome ApplyDataOptions(Application& app, const ConvertRequest& r, std::uint32_t hexOffset);

}  // namespace rm
