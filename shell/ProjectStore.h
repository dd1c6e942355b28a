#pragma once
#include "shell/IniFile.h"

namespace rm {

class Application;

// Reads every key of the settings table from the project file into the program. A key the file
// lacks, or whose value cannot be read for its type, takes its factory default.
void ProjectRead(Application& app, const IniFile& project);

// Writes every key of the settings table, in the table's order, into the project file. Keys
// already there keep their place; keys the program does not know are left as they stand.
void ProjectWrite(const Application& app, IniFile& project);

}  // namespace rm
