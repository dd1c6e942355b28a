// `rastermill batch` and `rastermill grid run`: the text rewritten, the report written, the files a
// batch names kept in the project's Output folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/CliRunner.h"
#include "support/TestSupport.h"

namespace {

using rmtest::Has;

class BatchCommand : public rmtest::CliFixture {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = in_ + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
};

TEST_F(BatchCommand, RewritesTheTextAndKeepsItsFilesInTheOutputFolder) {
  const std::string batch =
      Write("t.SPP",
            "set hex prefix as '0x'\nwhile hex in line\nthen XOR (0F)\n"
            "then overwrite hex\n\nif last line\nthen save as 'copy.txt'\nthen save as '../x.txt'\n");
  const std::string text = Write("in.txt", "db 0x10, 0x20\nend\n");
  const rmtest::CliResult printed = Run({"batch", batch, text, "--report", out_ + "/report.txt"});
  ASSERT_EQ(printed.status, 0) << printed.err;
  EXPECT_EQ(printed.out, "db 0x1F, 0x2F\nend\n");
  EXPECT_TRUE(Has(printed.err, " Source file Processing done !\r 5 successful occurences found") ||
              Has(printed.err, " Source file Processing done !\n 5 successful occurences found"))
      << printed.err;
  EXPECT_TRUE(Has(printed.err, "lies outside the Output folder")) << printed.err;
  const std::string report = rmtest::ReadFile(out_ + "/report.txt");
  EXPECT_TRUE(Has(report, "                XOR0F  >> 00010000 >> 00011111 0x1F\n")) << report;
  EXPECT_FALSE(std::filesystem::exists(dir_ + "/home/Documents/Rastermill Project/x.txt"));

  const rmtest::CliResult written = Run({"batch", batch, text, "-o", out_ + "/out.txt"});
  ASSERT_EQ(written.status, 0) << written.err;
  EXPECT_EQ(written.out, "");
  EXPECT_EQ(rmtest::ReadFile(out_ + "/out.txt"), "db 0x1F, 0x2F\nend\n");

  const rmtest::CliResult missing = Run({"batch", in_ + "/none.SPP", text, "-o", out_ + "/none.txt"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(Has(missing.err, "SPP file not found !")) << missing.err;
  EXPECT_FALSE(std::filesystem::exists(out_ + "/none.txt"));

  const rmtest::CliResult grid = Run({"grid", "run", text});
  EXPECT_EQ(grid.status, 0);
  EXPECT_EQ(grid.out, "db 0x10, 0x20\nend\n");
  EXPECT_TRUE(Has(grid.err, "Occurences Counter = 0")) << grid.err;
}

}  // namespace
