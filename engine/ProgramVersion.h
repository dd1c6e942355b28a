#pragma once

namespace rm {

// The program's version text, as the generated files quote it ("0.1.0").
const char* ProgramVersion();

}  // namespace rm
