// `rastermill font list` and `rastermill font blocks`: what the command line prints of the
// installed families and the Unicode blocks.
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/CliRunner.h"

namespace {

using rmtest::Has;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The listed families, each with what stands after its padded name.
std::map<std::string, std::string> Families(const std::string& out) {
  std::map<std::string, std::string> kinds;
  for (const std::string& line : Lines(out)) {
    const std::size_t gap = line.find("  ");
    kinds[line.substr(0, gap)] = gap == std::string::npos ? "" : line.substr(line.find_first_not_of(' ', gap));
  }
  return kinds;
}

class FontCommand : public rmtest::CliFixture {};

TEST_F(FontCommand, ListsFamiliesByKind) {
  struct Case {
    rmtest::Args filter;
    std::map<std::string, std::string> listed;  // family: its kind, or "" for one that is not listed
  } cases[] = {
      {{}, {{"DejaVu Sans", "TrueType Font"}, {"DejaVu Sans Mono", "Fixed TrueType"}}},
      {{"--filter", "fixed"}, {{"DejaVu Sans", ""}, {"DejaVu Sans Mono", "Fixed TrueType"}}},
      {{"--filter", "Variable Pitch Only"}, {{"DejaVu Sans", "TrueType Font"}, {"DejaVu Sans Mono", ""}}},
      {{"--filter", "raster"}, {{"DejaVu Sans", ""}, {"DejaVu Sans Mono", ""}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(rmtest::Join(c.filter));
    const rmtest::CliResult r = Run(rmtest::Concat({"font", "list"}, c.filter));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    const std::map<std::string, std::string> families = Families(r.out);
    for (const auto& [family, kind] : c.listed) {
      const auto it = families.find(family);
      EXPECT_EQ(it == families.end() ? "" : it->second, kind) << family << "\n" << r.out;
    }
  }
  ExpectRefused({"font", "list", "--filter", "bold"}, 2,
                "unknown font filter: bold (none, fixed, not-truetype, variable, truetype, device, raster)");
}

TEST_F(FontCommand, BlocksInTheFormOfTheUnicodeList) {
  const rmtest::CliResult r = Run({"font", "blocks"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::vector<std::string> lines = Lines(r.out);
  ASSERT_EQ(lines.size(), 328u);
  EXPECT_EQ(lines.front(), "0000..007F; Basic Latin");
  EXPECT_EQ(lines[1], "0080..00FF; Latin-1 Supplement");
  EXPECT_EQ(lines.back(), "100000..10FFFF; Supplementary Private Use Area-B");
}

}  // namespace
