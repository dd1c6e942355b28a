#pragma once
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <initializer_list>
#include <string>

namespace rm {

// File kinds are told by the extension in upper case, as the explorer and the editors compare it.
inline std::string UpperText(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return s;
}

// The extension with its point, in upper case; "" for none.
inline std::string UpperExt(const std::string& fileName) {
  return UpperText(std::filesystem::path(fileName).extension().string());
}

inline bool OneOf(const std::string& ext, std::initializer_list<const char*> kinds) {
  return std::any_of(kinds.begin(), kinds.end(), [&](const char* k) { return ext == k; });
}

}  // namespace rm
