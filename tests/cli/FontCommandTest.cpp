// `rastermill font`: a Font Script read into the font job and the job written back as a new one.
#include <gtest/gtest.h>

#include <string>

#include "support/CliRunner.h"
#include "support/TestSupport.h"

namespace {

using FontCli = rmtest::CliFixture;

// The first script of the golden file: a Unicode script of subblock 2 made with tr.
std::string UnicodeScript() {
  const std::string all = rmtest::ReadFile(std::string(RM_GOLDEN_DIR) + "/fontscript/new-scripts.txt");
  return all.substr(0, all.find("----\n"));
}

std::string WithoutFirstLine(const std::string& text) { return text.substr(text.find('\n') + 1); }

TEST_F(FontCli, ScriptReadsIntoTheJobAndWritesBackUnderTheJobsName) {
  const std::string in = in_ + "/in.FSC", out = out_ + "/out.FSC";
  rmtest::WriteText(in, UnicodeScript());
  const rmtest::CliResult r = Run({"font", "--script", in, "--save-script", out});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "");
  const std::string written = rmtest::ReadFile(out);
  EXPECT_EQ(written.substr(0, written.find('\n')),
            "Font script filename :[DejaVu Sans Mono_12_BSULatin_Extended-B_2.FSC]");
  EXPECT_EQ(WithoutFirstLine(written), WithoutFirstLine(UnicodeScript()));

  const rmtest::CliResult printed = Run({"font", "--script", in, "--save-script", "-"});
  ASSERT_EQ(printed.status, 0) << printed.err;
  EXPECT_EQ(printed.out, written);
}

TEST_F(FontCli, MissingOrUnreadableScriptIsRefused) {
  EXPECT_EQ(Run({"font"}).status, 2);
  EXPECT_EQ(Run({"font", "--script", in_ + "/none.FSC"}).status, 2);
  const std::string in = in_ + "/in.FSC";
  rmtest::WriteText(in, UnicodeScript());
  const rmtest::CliResult r = Run({"font", "--script", in, "--set", "SFONS=0"});
  EXPECT_EQ(r.status, 2) << "a size the font job does not take";
}

}  // namespace
