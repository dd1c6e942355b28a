// `rastermill font`: a Font Script read into the font job and the job written back as a new one.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST_F(FontCli, FontDataGoToStandardOutputOrAFileWrittenWhole) {
  const std::vector<std::string> job = {"font",    "--font", "DejaVu Sans", "--size", "8",
                                        "--chars", "AB",     "--structure", "raw"};
  const rmtest::CliResult printed = Run(job);
  ASSERT_EQ(printed.status, 0) << printed.err;
  EXPECT_NE(printed.out.find("const uint8_t DejaVu_Sans_8_1252_Bitmaps[2]["), std::string::npos) << printed.out;
  const std::string out = out_ + "/font.h";
  const rmtest::CliResult written = Run(rmtest::Concat(job, {"-o", out}));
  ASSERT_EQ(written.status, 0) << written.err;
  EXPECT_EQ(written.out, "");
  EXPECT_EQ(rmtest::ReadFile(out), printed.out);
}

TEST_F(FontCli, ScriptMakesTheDataWithTheCommandLineOverIt) {
  const std::string in = in_ + "/in.FSC";
  rmtest::WriteText(in, UnicodeScript());
  const rmtest::CliResult r = Run({"font", "--script", in, "--range", "41-42", "--structure", "bloc"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("/* Font Name :[DejaVu Sans Mono] "), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("/* Character Count = 2 "), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("/* Raw Block Output "), std::string::npos) << r.out;
}

TEST_F(FontCli, BadFontOptionsAreUsageErrors) {
  EXPECT_EQ(Run({"font", "--font", "DejaVu Sans", "--range", "7E-20"}).status, 2);
  EXPECT_EQ(Run({"font", "--font", "DejaVu Sans", "--range", "zz"}).status, 2);
  EXPECT_EQ(Run({"font", "--font", "DejaVu Sans", "--unicode-block", "No Such Block"}).status, 2);
  EXPECT_EQ(Run({"font", "--font", "DejaVu Sans", "--chars", "A", "--stretch", "2"}).status, 2);
  const rmtest::CliResult refused = Run({"font", "--font", "DejaVu Sans", "--chars", "A", "--direction", "td"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("Current direction only available for Work Canvas graphics"), std::string::npos)
      << refused.err;
}

}  // namespace
