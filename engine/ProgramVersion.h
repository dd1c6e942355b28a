#pragma once

namespace rm {

// The program's version text, as the generated files and the parameter file name it.
const char* ProgramVersion();

}  // namespace rm
