#pragma once
#include <string>

namespace rm {

// The folder roles a batch may touch: its files are named relative to the Output role and it
// reads and writes nowhere else.
struct BatchFolders {
  std::string output;
};

// The full path of `name` in `folder`, or an empty text when the name leads out of the folder
// (an absolute path, "..", or a link that points elsewhere).
std::string PathInFolder(const std::string& folder, const std::string& name);

}  // namespace rm
