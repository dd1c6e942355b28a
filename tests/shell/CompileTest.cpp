// The generated C text is compiled by the system's C compiler with warnings as errors, linked
// into a program that prints the table back, and the values are compared with the bytes of the
// Binary output of the same picture.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::TestProgram;

std::string RunCommand(const std::string& command, int& status) {
  std::string out;
  FILE* p = popen(command.c_str(), "r");
  if (!p) {
    status = -1;
    return out;
  }
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, p)) out.append(buf, n);
  status = pclose(p);
  return out;
}

bool HaveCompiler() {
  int status = 0;
  RunCommand("gcc --version >/dev/null 2>&1", status);
  return status == 0;
}

struct CompileCase {
  const char* name;
  int mode;
  Bitmap picture;
  std::function<void(TestProgram&)> setup;
  int wordBytes;  // 1, 2 or 4: how the table's values are built from the packed bytes
};

// The packed bytes of the picture under the same settings, from the Binary output.
std::vector<std::uint8_t> PackedBytes(const CompileCase& c) {
  TestProgram p;
  p.Setup(c.mode, c.picture, true);
  if (c.setup) c.setup(p);
  p.app.mainForm.HexOutput1Click();
  EXPECT_TRUE(p.Convert());
  return p.app.hex.Bytes();
}

std::vector<unsigned long long> Expected(const CompileCase& c, bool bigEndian) {
  const auto bytes = PackedBytes(c);
  std::vector<unsigned long long> values;
  for (std::size_t i = 0; i + c.wordBytes <= bytes.size(); i += c.wordBytes) {
    unsigned long long v = 0;
    for (int k = 0; k < c.wordBytes; ++k) {
      const int at = bigEndian ? k : c.wordBytes - 1 - k;
      v = (v << 8) | bytes[i + at];
    }
    values.push_back(v);
  }
  return values;
}

TEST(GeneratedC, CompilesAndHoldsThePicture) {
  if (!HaveCompiler()) GTEST_SKIP() << "gcc is not installed";
  Bitmap mono(32, 16);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 32; ++x)
      if ((x * 7 + y * 3) % 5 < 2) mono.SetPixel(x, y, rm::kBlack);
  Bitmap colour(8, 4);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x) colour.SetPixel(x, y, rm::MakeColour(x * 36, y * 80, 255 - x * 20));

  const CompileCase cases[] = {
      {"defaults", 1, mono, nullptr, 1},
      {"one per line with picture comments", 1, mono, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(1); }, 1},
      {"slashes and decimal", 1, mono,
       [](TestProgram& p) {
         p.app.session.Syntax.Comment = rm::CommentForm::Slashes;
         p.app.session.Syntax.DataFormatKind = "+D+";
         p.app.session.Syntax.DataPrefix = "";
       },
       1},
      {"binary literals, vertical", 1, mono,
       [](TestProgram& p) {
         p.app.session.Syntax.DataFormatKind = "0B";
         ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::Down));
       },
       1},
      {"16 bit words", 1, mono, [](TestProgram& p) { p.app.mainForm.data16bitClick(); }, 2},
      {"16 bit words, little endian", 1, mono,
       [](TestProgram& p) {
         p.app.mainForm.data16bitClick();
         p.app.mainForm.MsbLast();
       },
       2},
      {"32 bit words", 1, mono, [](TestProgram& p) { p.app.mainForm.data32bitClick(); }, 4},
      {"65536 colours as words", 59, colour, [](TestProgram& p) { p.app.mainForm.data16bitClick(); }, 2},
      {"16M colours", 62, colour, nullptr, 1},
      {"coordinates descriptors", 1, mono,
       [](TestProgram& p) { p.app.session.CoordinatesDescriptors = true; }, 1},
  };

  const std::string dir = rmtest::MakeTempDir();
  std::filesystem::create_directories(dir + "/avr");
  // The program-memory header of the AVR tool chain, reduced to what a host compiler needs.
  std::ofstream(dir + "/avr/pgmspace.h") << "#include <stdint.h>\n#define PROGMEM\n";
  std::ofstream(dir + "/main.c") << "#include <stdio.h>\n#include \"table.h\"\n"
                                    "int main(void) {\n"
                                    "  for (unsigned i = 0; i < sizeof NewBitmap / sizeof NewBitmap[0]; ++i)\n"
                                    "    printf(\"%llx\\n\", (unsigned long long)NewBitmap[i]);\n"
                                    "  return 0;\n}\n";
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TestProgram p;
    p.Setup(c.mode, c.picture, true);
    if (c.setup) c.setup(p);
    ASSERT_TRUE(p.Convert());
    ASSERT_TRUE(p.app.mainText.SaveToFile(dir + "/table.h"));
    int status = 0;
    const std::string log = RunCommand("cd " + dir + " && gcc -std=gnu11 -Wall -Wextra -Werror -I. main.c -o main 2>&1",
                                       status);
    ASSERT_EQ(status, 0) << log << "\n" << p.Text();
    const std::string printed = RunCommand(dir + "/main", status);
    ASSERT_EQ(status, 0);
    std::vector<unsigned long long> values;
    std::istringstream in(printed);
    for (std::string line; std::getline(in, line);) values.push_back(std::stoull(line, nullptr, 16));
    EXPECT_EQ(values, Expected(c, p.app.session.BigEndian));
  }
}

}  // namespace
