// The font job's data: every structure in monochrome and 16 gray levels against golden text, the
// generated C compiled and read back against the binary records, a BDF font's own bitmaps, the
// refusals in their order and the filler of fixed fonts.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/FreeTypeFontEngine.h"
#include "shell/FontDataJob.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::FontDataRequest;
using Bytes = std::vector<unsigned>;

class FontData : public rmtest::HomeTest {
 protected:
  rm::JobOutcome Make(const FontDataRequest& r) {
    program_ = std::make_unique<rmtest::TestProgram>();
    return rm::MakeFontData(program_->app, engine_, r);
  }
  static FontDataRequest DejaVu(const std::string& structure, const std::string& mode, const std::string& direction) {
    FontDataRequest r;
    r.font = "DejaVu Sans";
    r.size = 8;
    r.chars = "Ag!";
    r.structure = structure;
    r.mode = mode;
    r.direction = direction;
    r.antialias = mode != "mono";
    return r;
  }
  // The records of a binary output: each character's data bytes, with its header checked.
  static std::vector<Bytes> Records(const std::string& bin) {
    std::vector<Bytes> out;
    EXPECT_EQ(bin.substr(0, 6), "HEADER");
    std::size_t at = 16;
    while (at + 16 <= bin.size()) {
      const auto b = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(bin[at + i])); };
      EXPECT_EQ(b(0), 0x55u);
      EXPECT_EQ(b(1), 0xAAu);
      EXPECT_EQ(b(14), 0xAAu);
      EXPECT_EQ(b(15), 0x55u);
      // The count's decimal digits stand as hexadecimal digits.
      unsigned count = 0;
      for (int i : {4, 5}) count = count * 100 + (b(i) >> 4) * 10 + (b(i) & 15);
      const std::size_t next = b(12) * 256 + b(13);
      Bytes data;
      for (unsigned i = 0; i < count; ++i) data.push_back(b(16 + i));
      out.push_back(data);
      EXPECT_EQ(next, at + 16 + (count + 15) / 16 * 16);
      at = next;
    }
    EXPECT_EQ(at, bin.size());
    return out;
  }

  rm::FreeTypeFontEngine engine_;
  std::unique_ptr<rmtest::TestProgram> program_;
};

TEST_F(FontData, EveryStructureInMonochromeAnd16GrayMatchesItsGoldenText) {
  for (const std::string structure : {"raw", "bloc", "struct", "dmd"})
    for (const std::string mode : {"mono", "gray16"})
      for (const std::string direction : {"tr", "tl"}) {
        const std::string name = structure + "-" + mode + "-" + direction;
        const rm::JobOutcome out = Make(DejaVu(structure, mode, direction));
        ASSERT_TRUE(out.Done()) << name << ": " << out.error;
        EXPECT_EQ(rmtest::CompareGolden("fontdata/" + name + ".txt", out.output), "") << name;
      }
}

TEST_F(FontData, VerticalDirectionsWalkColumnsFromTheirCorner) {
  // Down all and up all: column by column, the pages of one column one after the other.
  for (const std::string direction : {"tda", "tua"}) {
    const rm::JobOutcome out = Make(DejaVu("raw", "mono", direction));
    ASSERT_TRUE(out.Done()) << out.error;
    EXPECT_EQ(rmtest::CompareGolden("fontdata/raw-mono-" + direction + ".txt", out.output), "") << direction;
  }
}

// The compiler of the host with the AVR program memory header reduced to nothing.
class Compiler {
 public:
  Compiler() : dir_(rmtest::MakeTempDir()) {
    std::filesystem::create_directories(dir_ + "/avr");
    std::ofstream(dir_ + "/avr/pgmspace.h") << "#include <stdint.h>\n#define PROGMEM\n";
  }
  ~Compiler() { std::filesystem::remove_all(dir_); }
  static bool Available() { return std::system("gcc --version >/dev/null 2>&1") == 0; }
  // Compiles `prelude` + `text` + `body` (a main printing values in hex, one a line, "-" between
  // characters); the values per character, or empty with the log on an error.
  std::vector<Bytes> Run(const std::string& prelude, const std::string& text, const std::string& body,
                         std::string& log) {
    std::ofstream(dir_ + "/main.c") << "#include <stdio.h>\n#include <stdint.h>\n"
                                    << prelude << text << "\nint main(void) {\n"
                                    << body << "  return 0;\n}\n";
    // The Description Header is one comment whose every line begins with "/*": C takes it,
    // and only -Wcomment would call it a mistake.
    log = Shell("cd " + dir_ + " && gcc -std=c11 -Wall -Werror -Wno-comment -I. main.c -o main 2>&1");
    if (log.find("error") != std::string::npos || !std::filesystem::exists(dir_ + "/main")) return {};
    std::vector<Bytes> out(1);
    std::istringstream in(Shell(dir_ + "/main"));
    for (std::string line; std::getline(in, line);) {
      if (line == "-")
        out.emplace_back();
      else
        out.back().push_back(static_cast<unsigned>(std::stoul(line, nullptr, 16)));
    }
    out.pop_back();
    return out;
  }

 private:
  static std::string Shell(const std::string& command) {
    std::string out;
    FILE* p = popen(command.c_str(), "r");
    char buf[4096];
    while (std::size_t n = std::fread(buf, 1, sizeof buf, p)) out.append(buf, n);
    pclose(p);
    return out;
  }
  std::string dir_;
};

TEST_F(FontData, RawAndStructuredCCompileAndHoldTheBinaryRecordsData) {
  if (!Compiler::Available()) GTEST_SKIP() << "gcc is not installed";
  for (const std::string mode : {"mono", "gray16"}) {
    FontDataRequest r = DejaVu("raw", mode, "tr");
    r.chars = "!Ag~";
    // The binary records carry whole cells: the text does too, for the comparison.
    r.settings = {"uoffs=0"};
    r.outputKind = "bin";
    const rm::JobOutcome bin = Make(r);
    ASSERT_TRUE(bin.Done()) << bin.error;
    const std::vector<Bytes> expected = Records(bin.output);
    ASSERT_EQ(expected.size(), 4u);

    r.outputKind = "text";
    const rm::JobOutcome raw = Make(r);
    ASSERT_TRUE(raw.Done()) << raw.error;
    Compiler c;
    std::string log;
    // Each row of the table is a character, filled up with zeros past its own bytes.
    const std::vector<Bytes> rows = c.Run("", raw.output,
                                          "  for (unsigned c = 0; c < 4; ++c) {\n"
                                          "    for (unsigned i = 0; i < sizeof DejaVu_Sans_8_1252_Bitmaps[0]; ++i)\n"
                                          "      printf(\"%x\\n\", DejaVu_Sans_8_1252_Bitmaps[c][i]);\n"
                                          "    printf(\"-\\n\");\n  }\n"
                                          "  printf(\"%x\\n-\\n\", (unsigned)DejaVu_Sans_8_1252_Descriptors[3][0]);\n",
                                          log);
    ASSERT_EQ(rows.size(), 5u) << mode << " raw:\n" << log << raw.output;
    for (std::size_t i = 0; i < 4; ++i) {
      Bytes own(rows[i].begin(), rows[i].begin() + static_cast<long>(expected[i].size()));
      EXPECT_EQ(own, expected[i]) << mode << " character " << i;
      for (std::size_t k = expected[i].size(); k < rows[i].size(); ++k) EXPECT_EQ(rows[i][k], 0u);
    }
    EXPECT_EQ(rows[4], Bytes{0x7E}) << "the last descriptor's address";

    r.structure = "struct";
    const rm::JobOutcome st = Make(r);
    ASSERT_TRUE(st.Done()) << st.error;
    // The firmware's own types, as the default template's include leaves them to it: the
    // descriptor values (nine fields) and the image.
    const std::string types =
        "typedef struct { const uint8_t *data; uint16_t width; uint16_t height; } timage;\n"
        "typedef struct { long address, start, width, height, bytes, bits, x, y, spacing; const timage *image; } "
        "tImage;\n"
        "typedef struct { long length; const tImage *chars; } tfont;\n";
    const std::vector<Bytes> images =
        c.Run(types, st.output,
              "  for (long c = 0; c < DejaVu_Sans_8_1252.length; ++c) {\n"
              "    const timage *im = DejaVu_Sans_8_1252.chars[c].image;\n"
              "    for (unsigned i = 0; i < (unsigned)im->width * im->height; ++i) printf(\"%x\\n\", im->data[i]);\n"
              "    printf(\"-\\n\");\n  }\n",
              log);
    ASSERT_EQ(images, expected) << mode << " struct:\n" << log << st.output;
  }
}

TEST_F(FontData, BdfGlyphsComeOutAsTheFilesOwnBitmaps) {
  FontDataRequest r;
  r.font = std::string(RM_TEST_DATA_DIR) + "/fonts/Tiny8.bdf";
  r.size = 6;  // the file's 8 pixels at 96 dpi
  r.chars = "Ag";
  r.mode = "mono";
  r.direction = "tr";
  r.outputKind = "bin";
  const rm::JobOutcome out = Make(r);
  ASSERT_TRUE(out.Done()) << out.error;
  const std::vector<Bytes> records = Records(out.output);
  // The cell is 8 rows, 6 above the baseline; a row is one byte, its pixels from bit 7 on.
  EXPECT_EQ(records, (std::vector<Bytes>{{0x20, 0x50, 0x88, 0xF8, 0x88, 0x88, 0x00, 0x00},
                                         {0x00, 0x00, 0x70, 0x90, 0x90, 0x70, 0x10, 0xE0}}));
  // Width (advance 5 + 1), height and code of the first record.
  EXPECT_EQ(out.output.substr(16 + 6, 6), std::string("\x00\x06\x00\x08\x00\x41", 6));
}

TEST_F(FontData, FixedFontsFillTheWordsPastANarrowGlyph) {
  FontDataRequest r = DejaVu("raw", "mono", "tr");
  r.chars = "iW";
  r.fixed = true;
  r.outputKind = "bin";
  const rm::JobOutcome out = Make(r);
  ASSERT_TRUE(out.Done()) << out.error;
  const std::vector<Bytes> records = Records(out.output);
  ASSERT_EQ(records.size(), 2u);
  ASSERT_EQ(records[0].size(), records[1].size()) << "every character as wide as the widest";
  ASSERT_EQ(records[0].size() % 2, 0u);
  // "W" comes first, by its code; the second word of each row of "i" is the filler.
  for (std::size_t i = 1; i < records[1].size(); i += 2) EXPECT_EQ(records[1][i], 0xAAu) << "row " << i / 2;
}

TEST_F(FontData, RefusalsComeInTheirOrderAndStopTheJob) {
  struct Case {
    std::string name;
    std::function<void(FontDataRequest&)> change;
    std::string title;
  } cases[] = {
      {"a sliced direction", [](FontDataRequest& r) { r.direction = "tra"; }, " Font data output direction error"},
      {"16 gray down the columns", [](FontDataRequest& r) { r.mode = "gray16", r.direction = "tda"; }, "Error "},
      {"no character", [](FontDataRequest& r) { r.chars.clear(), r.ranges = {}; }, "Font Export Error"},
      {"a mode without font data", [](FontDataRequest& r) { r.mode = "gray32"; }, "Project error"},
  };
  for (const Case& c : cases) {
    FontDataRequest r = DejaVu("raw", "mono", "tr");
    c.change(r);
    const rm::JobOutcome out = Make(r);
    EXPECT_FALSE(out.Done()) << c.name;
    ASSERT_EQ(program_->ui.messages.size(), 1u) << c.name;
    EXPECT_EQ(program_->ui.messages[0].title, c.title) << c.name;
  }
}

}  // namespace
