// One table of every data syntax option that changes the text. C tables are compiled by the
// system's C compiler with warnings as errors, linked into a program that prints the table back,
// and the values are compared with the bytes of the Binary output of the same picture. Assembler
// and BASIC tables cannot be compiled here: their values are read back from the text.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>

#include "engine/ColourModes.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::TestProgram;
using Values = std::vector<unsigned long long>;

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

Bitmap Mono(int w, int h) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if ((x * 7 + y * 3) % 5 < 2 || (x < 24 && y < 3)) b.SetPixel(x, y, rm::kBlack);
  return b;
}

struct Case {
  std::string name;
  int mode;
  Bitmap picture;
  std::function<void(TestProgram&)> setup;
  int wordBytes = 1;  // 1, 2 or 4: how the table's values are built from the packed bytes
  Values leading{};   // numbers the table holds before the picture's bytes
};

// The packed bytes of the picture under the same settings, from the Binary output, as the
// table's words (a last word filled up with zero bytes).
Values Expected(const Case& c, bool bigEndian) {
  TestProgram p;
  p.Setup(c.mode, c.picture, true);
  if (c.setup) c.setup(p);
  p.app.session.Compression = false;
  p.app.mainForm.HexOutput1Click();
  EXPECT_TRUE(p.Convert()) << c.name;
  auto bytes = p.app.hex.Bytes();
  while (bytes.size() % c.wordBytes != 0) bytes.push_back(0);
  Values values = c.leading;
  for (std::size_t i = 0; i < bytes.size(); i += c.wordBytes) {
    unsigned long long v = 0;
    for (int k = 0; k < c.wordBytes; ++k) v = (v << 8) | bytes[i + (bigEndian ? k : c.wordBytes - 1 - k)];
    values.push_back(v);
  }
  return values;
}

// A run length table back to its bytes: a pointer with bit 7 set repeats the next data byte,
// one without copies the next (pointer) data bytes.
Values Decompress(const Values& data, const Values& pointers) {
  Values out;
  std::size_t at = 0;
  for (auto p : pointers) {
    if (p & 0x80) {
      for (unsigned i = 0; i < (p & 127) && at < data.size(); ++i) out.push_back(data[at]);
      ++at;
    } else {
      for (unsigned i = 0; i < p && at < data.size(); ++i) out.push_back(data[at++]);
    }
  }
  return out;
}

class Compiler {
 public:
  Compiler() : dir_(rmtest::MakeTempDir()) {
    std::filesystem::create_directories(dir_ + "/avr");
    // The program-memory header of the AVR tool chain, reduced to what a host compiler needs.
    std::ofstream(dir_ + "/avr/pgmspace.h") << "#include <stdint.h>\n#define PROGMEM\n";
  }
  ~Compiler() { std::filesystem::remove_all(dir_); }

  // Compiles `text` with a main that prints each of `tables` (flattened, as `type`), one value a
  // line, the tables separated by a line "-". Empty on a compiler error, with the log in `log`.
  std::vector<Values> Run(const std::string& text, const std::vector<std::string>& tables, const std::string& type,
                          std::string& log) {
    std::ofstream(dir_ + "/table.h") << text;
    std::ostringstream main;
    main << "#include <stdio.h>\n#include <stdint.h>\n#include \"table.h\"\nint main(void) {\n";
    for (const auto& t : tables)
      main << "  for (unsigned i = 0; i < sizeof " << t << " / sizeof(" << type << "); ++i)\n"
           << "    printf(\"%llx\\n\", (unsigned long long)((const " << type << "*)" << t << ")[i]);\n"
           << "  printf(\"-\\n\");\n";
    main << "  return 0;\n}\n";
    std::ofstream(dir_ + "/main.c") << main.str();
    int status = 0;
    log = RunCommand("cd " + dir_ + " && gcc -std=c11 -Wall -Werror -I. main.c -o main 2>&1", status);
    if (status != 0) return {};
    std::vector<Values> out(1);
    std::istringstream in(RunCommand(dir_ + "/main", status));
    for (std::string line; std::getline(in, line);) {
      if (line == "-")
        out.emplace_back();
      else
        out.back().push_back(std::stoull(line, nullptr, 16));
    }
    out.pop_back();
    return out;
  }

 private:
  std::string dir_;
};

std::function<void(TestProgram&)> Syntax(std::function<void(rm::DataSyntax&)> f) {
  return [f](TestProgram& p) { f(p.app.session.Syntax); };
}

std::string Template(const std::string& text) {
  static int n = 0;
  const std::string path = rmtest::MakeTempDir() + "/t" + std::to_string(++n) + ".txt";
  std::ofstream(path) << text;
  return path;
}

TEST(GeneratedC, EverySyntaxOptionCompilesAndHoldsThePicture) {
  if (!HaveCompiler()) GTEST_SKIP() << "gcc is not installed";
  const Bitmap mono = Mono(32, 16), odd = Mono(13, 11);
  Bitmap colour(8, 4);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x) colour.SetPixel(x, y, rm::MakeColour(x * 36, y * 80, 255 - x * 20));
  Bitmap wide = Mono(264, 8);

  std::vector<Case> cases = {
      {"defaults", 1, mono, nullptr},
      {"1 per line, separator left on (ORGC=1)", 1, mono, Syntax([](rm::DataSyntax& s) { s.DataPerLine = 1; })},
      {"1 per line, slashes", 1, mono, Syntax([](rm::DataSyntax& s) {
         s.DataPerLine = 1;
         s.Comment = rm::CommentForm::Slashes;
       })},
      {"1 per line, no end of line", 1, mono, Syntax([](rm::DataSyntax& s) {
         s.DataPerLine = 1;
         s.Eol = rm::EndOfLine::None;
       })},
      {"150 per line", 1, mono, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(150); }},
      {"custom separator and 4 per line", 1, mono, Syntax([](rm::DataSyntax& s) {
         s.DataPerLine = 4;
         s.SeparatorCustom = true;
         s.SeparatorComma = false;
         s.SeparatorString = " ,";
       })},
      {"H with leading zero, 1 per line", 1, mono, Syntax([](rm::DataSyntax& s) {
         s.DataFormatKind = "+H+";
         s.DataPrefix = "0x";
         s.DataSuffix = "";
         s.LeadingZero = true;
         s.DataPerLine = 1;
       })},
      {"decimal, slashes", 1, mono, Syntax([](rm::DataSyntax& s) {
         s.Comment = rm::CommentForm::Slashes;
         s.DataFormatKind = "+D+";
         s.DataPrefix = "";
       })},
      {"binary literals, vertical", 1, mono,
       [](TestProgram& p) {
         p.app.session.Syntax.DataFormatKind = "0B";
         ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::Down));
       }},
      {"16 bit words, little endian, 1 per line", 1, mono,
       [](TestProgram& p) {
         p.app.mainForm.data16bitClick();
         p.app.mainForm.MsbLast();
         p.app.mainForm.SetDataPerLine(1);
       },
       2},
      {"16 bit words that do not fill the last word", 1, Mono(24, 1),
       [](TestProgram& p) { p.app.mainForm.data16bitClick(); }, 2},
      {"32 bit words", 1, mono, [](TestProgram& p) { p.app.mainForm.data32bitClick(); }, 4},
      {"size above 255 in data",
       1,
       wide,
       [](TestProgram& p) { p.app.session.GraphicSizeInData = true; },
       1,
       {1, 8, 0, 8}},
      {"an area that does not fit the byte direction", 1, mono,
       [](TestProgram& p) {
         p.app.session.SelectionActive = true;
         p.app.session.ExportAreaX1 = 3;
         p.app.session.ExportAreaX2 = 13;
         p.app.session.ExportAreaY1 = 0;
         p.app.session.ExportAreaY2 = 8;
       }},
      {"coordinates descriptors, vertical, wide", 1, Mono(8, 264),
       [](TestProgram& p) {
         ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::DownAll));
         p.app.session.CoordinatesDescriptors = true;
       }},
      {"groups under a two-dimensional declaration", 1, Mono(16, 4),
       [](TestProgram& p) {
         p.app.session.HeaderIncludeFile = Template("const uint8_t [&NAME][4][2] = ");
         p.app.session.SizeDescriptors = false;
         p.app.mainForm.SetDataPerLine(2);
         auto& s = p.app.session.Syntax;
         s.SeparatorOn = true;
         s.Groups = true;
         s.ColRowPrefix = "{";
         s.ColRowSuffix = "},";
         s.ArrayPrefix = "{";
         s.ArraySuffix = "};";
       }},
      {"template without a name", 1, mono,
       [](TestProgram& p) { p.app.session.HeaderIncludeFile = Template("const uint8_t NewBitmap[] = {\n"); }},
      {"template without a size, with the true origin and the font block",
       1,
       mono,
       [](TestProgram& p) {
         p.app.session.HeaderIncludeFile = Template(
             "[&FONT INCLUDE]\n#include <font.h>\n[&/FONT INCLUDE]\n[&TRUEORG]\nconst uint8_t [&NAME][] = {\n"
             "[&XPOS],[&YPOS],[&WIDTH],[&HEIGHT]\n");
         p.app.session.GraphicPositionInData = true;
       },
       1,
       {0, 0}},
      {"a name that is no identifier", 1, mono, [](TestProgram& p) { p.app.session.LastBitmapName = "1 my-logo.png"; }},
  };
  for (const auto& m : rm::kColourModes) {
    if (m.modeNumber == 1 || m.modeNumber == 25) continue;
    const bool two = m.modeNumber == 59 || m.modeNumber == 58;
    // A picture of the mode's own colours; packed gray 32 with a pixel count that is no multiple
    // of three.
    const int w = m.modeNumber == 29 ? 7 : 8, h = m.modeNumber == 29 ? 5 : 4;
    cases.push_back({std::string("mode ") + std::string(m.cliName), m.modeNumber, colour,
                     [two, w, h](TestProgram& p) {
                       const auto& s = p.app.session;
                       std::vector<rm::Colour> colours = s.PaletteSize > 0 ? s.PaletteTable : s.ModeColours;
                       if (colours.size() > 64) colours.resize(64);
                       if (!colours.empty()) p.app.pixelForm.SetCanvas(rmtest::PatternPicture(w, h, colours));
                       if (two) p.app.mainForm.data16bitClick();
                     },
                     two ? 2 : 1});
  }

  Compiler cc;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TestProgram p;
    p.Setup(c.mode, c.picture, true);
    if (c.setup) c.setup(p);
    ASSERT_TRUE(p.Convert()) << (p.ui.messages.empty() ? "" : p.ui.messages.back().text);
    const std::string name = p.app.session.TableName;
    const std::string type = c.wordBytes == 4 ? "uint32_t" : c.wordBytes == 2 ? "uint16_t" : "uint8_t";
    std::string log;
    const auto tables = cc.Run(p.Text(), {name}, type, log);
    EXPECT_EQ(tables.size(), 1u) << log << "\n" << p.Text();
    if (tables.size() == 1) {
      EXPECT_EQ(tables[0], Expected(c, p.app.session.BigEndian)) << p.Text();
    }
  }
}

TEST(GeneratedC, CompressedTablesRebuildThePicture) {
  if (!HaveCompiler()) GTEST_SKIP() << "gcc is not installed";
  Compiler cc;
  Bitmap logo(64, 16);
  for (int x = 10; x < 50; ++x) logo.SetPixel(x, 5, rm::kBlack);
  const std::pair<const char*, std::string> templates[] = {
      {"the template's pointer table", ""},
      {"a template without a pointer table part", "const uint8_t [&NAME][&SIZE] = {\n"},
  };
  for (const auto& [label, text] : templates) {
    SCOPED_TRACE(label);
    TestProgram p;
    p.Setup(1, logo, true);
    if (!text.empty()) p.app.session.HeaderIncludeFile = Template(text);
    p.app.session.Compression = true;
    ASSERT_TRUE(p.Convert());
    std::string log;
    const std::string name = p.app.session.TableName;
    const auto tables = cc.Run(p.Text(), {name, "x_" + name}, "uint8_t", log);
    ASSERT_EQ(tables.size(), 2u) << log << "\n" << p.Text();
    EXPECT_EQ(Decompress(tables[0], tables[1]), Expected({"", 1, logo, nullptr}, true)) << p.Text();
  }
}

// Assembler and BASIC: the values are read back from the data lines, comments left out.
TEST(GeneratedText, AssemblerAndBasicHoldThePicture) {
  const Bitmap mono = Mono(32, 8);
  struct Text {
    const char* name;
    std::function<void(rm::DataSyntax&)> setup;
    std::string comment;  // the comment mark: the rest of a line is no data
    std::regex value;
    int base;
  } cases[] = {
      {"assembler, H, line numbers",
       [](rm::DataSyntax& s) {
         s.Comment = rm::CommentForm::Semicolon;
         s.DataFormatKind = "H";
         s.LeadingZero = true;
         s.LineNumbers = true;
         s.LinePrefix = "L";
         s.LinePrefix2 = ": .db";
       },
       ";", std::regex("([0-9A-F]+)h"), 16},
      {"assembler, 1 per line",
       [](rm::DataSyntax& s) {
         s.Comment = rm::CommentForm::Semicolon;
         s.DataFormatKind = "H";
         s.DataPerLine = 1;
         s.Eol = rm::EndOfLine::Semicolon;
       },
       " ;", std::regex("([0-9A-F]+)h"), 16},
      {"BASIC, binary, 5 per line",
       [](rm::DataSyntax& s) {
         s.Comment = rm::CommentForm::Quote;
         s.DataFormatKind = "+B+";
         s.DataPrefix = "&B";
         s.DataPerLine = 5;
       },
       "'", std::regex("&B([01]+)"), 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TestProgram p;
    p.Setup(1, mono);
    c.setup(p.app.session.Syntax);
    ASSERT_TRUE(p.Convert());
    Values got;
    for (std::string line : p.DataLines()) {
      if (const std::size_t mark = line.find(c.comment); mark != std::string::npos) line.erase(mark);
      for (std::sregex_iterator m(line.begin(), line.end(), c.value), end; m != end; ++m)
        got.push_back(std::stoull((*m)[1].str(), nullptr, c.base));
    }
    EXPECT_EQ(got, Expected({"", 1, mono, [&](TestProgram& q) { c.setup(q.app.session.Syntax); }}, true)) << p.Text();
  }
}

}  // namespace
