#include "postpro/BatchFolders.h"

#include <algorithm>
#include <filesystem>

namespace rm {

namespace fs = std::filesystem;

std::string PathInFolder(const std::string& folder, const std::string& name) {
  if (folder.empty() || name.empty()) return "";
  const fs::path relative(name);
  if (relative.is_absolute() || relative.has_root_name()) return "";
  std::error_code ec;
  const fs::path root = fs::weakly_canonical(fs::absolute(folder, ec), ec);
  if (ec) return "";
  const fs::path full = fs::weakly_canonical(root / relative, ec);
  if (ec) return "";
  const auto [end, rest] = std::mismatch(root.begin(), root.end(), full.begin(), full.end());
  if (end != root.end() || rest == full.end()) return "";
  return (fs::path(folder) / relative).lexically_normal().generic_string();
}

}  // namespace rm
