#pragma once
#include <string_view>

#include "shell/IniFile.h"

namespace rm {

class Application;

// The sections of the search and replace grid. The project reader leaves them to the editors
// window (LoadSearchReplaceData); the writer writes them in their place among the others.
inline constexpr std::string_view kSearchReplaceSections[] = {"b50", "b50s", "S0", "BS0"};

// Reads every key of the settings table from the project file into the program, in reading
// order, then selects the colour mode the file names. A key the file lacks, or whose value
// cannot be read for its type, takes its factory default (or, for a default the program builds,
// keeps the value in force).
void ProjectRead(Application& app, const IniFile& project);

// The search and replace grid's sections, as they stand in the file, held for the next write.
void LoadSearchReplaceData(Application& app, const IniFile& project);

// Writes every key of the settings table section by section in the writer's order. Keys already
// there keep their place; keys the program does not know are left as they stand.
void ProjectWrite(const Application& app, IniFile& project);

}  // namespace rm
