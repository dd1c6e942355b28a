#include "engine/ProgramVersion.h"

namespace rm {

const char* ProgramVersion() { return RASTERMILL_VERSION_TEXT; }

}  // namespace rm
