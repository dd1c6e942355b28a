#include "support/ShellTestSupport.h"

#include <cstdlib>
#include <filesystem>

#include "shell/Folders.h"

namespace rmtest {

std::vector<std::string> TestProgram::TableLines() const {
  const auto& syn = app.session.Syntax;
  const std::string& begin = syn.Groups ? syn.ArrayPrefix : syn.BeginOfData;
  const std::string& end = syn.Groups ? syn.ArraySuffix : syn.EndOfData;
  const auto& l = app.mainText.Lines();
  std::size_t b = 0;
  while (b < l.size() && l[b] != begin) ++b;
  if (b == l.size()) return {};
  // The last end string: a two page table holds two tables, and both belong to it.
  std::size_t e = l.size();
  while (e > b + 1 && l[e - 1] != end) --e;
  if (e <= b + 1) return {};
  return std::vector<std::string>(l.begin() + static_cast<long>(b), l.begin() + static_cast<long>(e));
}

std::string TestProgram::TableText() const {
  std::string out;
  for (const auto& line : TableLines()) out += line + "\n";
  return out;
}

rm::Bitmap PatternPicture(int w, int h, const std::vector<rm::Colour>& colours, std::uint32_t seed) {
  rm::Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1664525u + 1013904223u;
      b.SetPixel(x, y, colours[(seed >> 16) % colours.size()]);
    }
  return b;
}

void HomeTest::SetUp() {
  home_ = MakeTempDir();
  setenv("RASTERMILL_HOME", home_.c_str(), 1);
}

void HomeTest::TearDown() {
  unsetenv("RASTERMILL_HOME");
  std::filesystem::remove_all(home_);
}

std::string HomeTest::Inits() const { return home_ + "/Documents/Rastermill inits " + rm::ProgramVersionTag() + "/"; }

}  // namespace rmtest
