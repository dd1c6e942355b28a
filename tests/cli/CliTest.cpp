#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "engine/ColourModes.h"
#include "engine/HeaderTemplate.h"
#include "engine/ProgramVersion.h"
#include "engine/TextLines.h"
#include "platform/PlatformImageCodecs.h"
#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rm::PagingDirection;
using rmtest::ReadFile;
using rmtest::TestProgram;

using Result = rmtest::CliResult;
using rmtest::Launch;

Launch InFolder(std::string cwd) {
  Launch l;
  l.cwd = std::move(cwd);
  return l;
}
Launch StdoutTo(std::string file) {
  Launch l;
  l.stdoutFile = std::move(file);
  return l;
}
Launch FileSizeLimit(rlim_t bytes) {
  Launch l;
  l.maxFileSize = bytes;
  return l;
}

std::vector<std::string> Names(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string JoinArgs(const std::vector<std::string>& args) {
  std::string s;
  for (const auto& a : args) s += (s.empty() ? "" : " ") + a;
  return s;
}

class Cli : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
    in_ = dir_ + "/in";
    out_ = dir_ + "/out";
    fs::create_directories(in_);
    fs::create_directories(out_);
    fs::create_directories(dir_ + "/home");
  }
  void TearDown() override {
    std::error_code ec;
    fs::permissions(out_, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(dir_, ec);
  }

  std::string Png(const std::string& name, const Bitmap& picture) {
    const std::string path = in_ + "/" + name;
    std::string error;
    EXPECT_TRUE(rm::PlatformImageCodecs().SavePng(picture, path, error)) << error;
    return path;
  }
  std::string Raw(const std::string& name, const std::string& bytes) {
    const std::string path = in_ + "/" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  // The built program in the test's own home folder, with the clock TestProgram uses.
  Result Run(const std::vector<std::string>& args, const Launch& how = {}) {
    return rmtest::RunCli(args, dir_ + "/home", how);
  }

  std::string dir_, in_, out_;
};

// Black and white, irregular enough that every walk order gives a different text.
Bitmap Pattern(int w, int h) { return rmtest::PatternPicture(w, h, {rm::kBlack, rm::kWhite}, 11); }

// One black pixel in the top left corner of a white 32 x 8 picture.
Bitmap CornerPixel() {
  Bitmap b(32, 8);
  b.SetPixel(0, 0, rm::kBlack);
  return b;
}

// The whole file the library makes of `picture`, named as the command line names it after `file`.
std::string LibraryText(const std::string& file, int mode, const Bitmap& picture,
                        const std::function<void(TestProgram&)>& setup) {
  TestProgram p;
  p.Setup(mode, picture, true);
  p.app.session.SourceFileName = rm::BaseName(file);
  p.app.session.LastBitmapName = file;  // the Convert command names the table after it
  if (setup) setup(p);
  EXPECT_TRUE(p.Convert());
  return p.app.mainText.Text();
}

TEST_F(Cli, ExitStatusStdoutAndStderr) {
  const std::string good = Png("good.png", Pattern(32, 16));
  const std::string png = ReadFile(good);
  const std::string truncated = Raw("truncated.png", png.substr(0, png.size() / 2));
  const std::string text = Raw("notes.png", "these are no pixels\n");
  const std::string empty = Raw("empty.bmp", "");
  const std::string bmpHeader = Raw("header.bmp", std::string("BM\x46\0\0\0", 6));
  const std::string rows12 = Png("rows12.png", Bitmap(16, 12));
  const std::string missing = in_ + "/missing.png";

  struct Case {
    const char* name;
    std::vector<std::string> args;
    int status;
    std::string stderrHas;  // a fragment of the message that says what went wrong
  } cases[] = {
      {"success", {"convert", good}, 0, ""},
      {"input file missing", {"convert", missing}, 1, "missing.png"},
      {"truncated PNG", {"convert", truncated}, 1, "truncated.png"},
      {"text file", {"convert", text}, 1, "notes.png"},
      {"empty file", {"convert", empty}, 1, "empty.bmp"},
      {"BMP header only", {"convert", bmpHeader}, 1, "header.bmp"},
      {"direction the canvas refuses", {"convert", rows12, "--direction", "td"}, 1, "does not fit"},
      {"area outside the canvas", {"convert", good, "--area", "0,0,64,8"}, 1, "nothing was written"},
      {"unknown mode", {"convert", good, "--mode", "c17"}, 2, "--mode"},
      {"unknown direction", {"convert", good, "--direction", "sideways"}, 2, "--direction"},
      {"both bit orders", {"convert", good, "--msb-first", "--msb-last"}, 2, "excludes"},
      {"width not 8, 16 or 32", {"convert", good, "--width", "12"}, 2, "--width"},
      {"per line out of range", {"convert", good, "--per-line", "151"}, 2, "--per-line"},
      {"no input", {"convert"}, 2, "INPUT"},
      {"no subcommand", {}, 2, "subcommand"},
      {"unknown option", {"convert", good, "--colour", "red"}, 2, "--colour"},
      {"origin off the direction", {"convert", good, "--direction", "td", "--origin", "BL"}, 2, "origin BL"},
      {"--set without a value", {"convert", good, "--set", "Neg"}, 2, "KEY=VALUE"},
      {"--set unknown key", {"convert", good, "--set", "NoSuchKey=1"}, 2, "NoSuchKey"},
      {"--set number expected", {"convert", good, "--set", "ORGC=many"}, 2, "ORGC"},
      {"--area with three numbers", {"convert", good, "--area", "1,2,3"}, 2, "--area"},
      {"--area with zero width", {"convert", good, "--area", "0,0,0,8"}, 2, "--area"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + ": " + JoinArgs(c.args));
    const Result r = Run(c.args);
    EXPECT_EQ(r.status, c.status) << r.err;
    if (c.status == 0) {
      EXPECT_FALSE(r.out.empty());
      EXPECT_EQ(r.err, "");
    } else {
      EXPECT_EQ(r.out, "");
      EXPECT_NE(r.err.find(c.stderrHas), std::string::npos) << r.err;
    }
  }
}

// The front end only maps options onto library commands: for the same picture and settings its
// output must be the library's text byte for byte (TextLines ends every line, the last included,
// with "\n", and the program writes that text unchanged).
TEST_F(Cli, PrintsTheLibrarysText) {
  const Bitmap mono = Pattern(32, 16);
  const Bitmap colour = rmtest::PatternPicture(
      8, 8, {rm::kBlack, rm::kWhite, rm::MakeColour(200, 30, 60), rm::MakeColour(10, 160, 250)}, 5);
  const std::string monoPath = Png("mono.png", mono);
  const std::string colourPath = Png("colour.png", colour);
  using Setup = std::function<void(TestProgram&)>;
  struct Case {
    const char* name;
    std::vector<std::string> args;
    int mode;
    bool colourPicture;
    Setup setup;
  } cases[] = {
      {"defaults", {}, 1, false, nullptr},
      {"inverted monochrome", {"--mode", "mono-inv"}, 2, false, nullptr},
      {"gray 4", {"--mode", "gray4"}, 24, false, nullptr},
      {"65536 colours", {"--mode", "c65k"}, 59, true, nullptr},
      {"16M colours", {"--mode", "c16m"}, 62, true, nullptr},
      {"16 bit, msb last", {"--width", "16", "--msb-last"}, 1, false,
       [](TestProgram& p) { p.app.mainForm.data16bitClick(); p.app.mainForm.MsbLast(); }},
      {"32 bit", {"--width", "32"}, 1, false, [](TestProgram& p) { p.app.mainForm.data32bitClick(); }},
      {"one per line", {"--per-line", "1"}, 1, false, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(1); }},
      {"syntax keys", {"--set", "FXHB=H", "--set", "VALSUF=h", "--set", "LineN=1"}, 1, false,
       [](TestProgram& p) {
         p.app.session.Syntax.DataFormatKind = "H";
         p.app.session.Syntax.DataSuffix = "h";
         p.app.session.Syntax.LineNumbers = true;
       }},
      {"area", {"--area", "8,2,16,5"}, 1, false,
       [](TestProgram& p) {
         auto& s = p.app.session;
         s.SelectionActive = true;
         s.ExportAreaX1 = 8;
         s.ExportAreaY1 = 2;
         s.ExportAreaX2 = 24;
         s.ExportAreaY2 = 7;
         p.app.globals.ExportEntry = 3;
       }},
      {"lower half", {"--half", "lower"}, 1, false, [](TestProgram& p) { p.app.globals.ExportEntry = 2; }},
      {"interleave", {"--interleave"}, 1, false, [](TestProgram& p) { p.app.session.Interleaved = true; }},
      {"auto frame", {"--auto-frame"}, 1, false, [](TestProgram& p) { p.app.session.AutoFraming = true; }},
  };
  std::set<std::string> distinct;
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + ": " + JoinArgs(c.args));
    std::vector<std::string> args{"convert", c.colourPicture ? colourPath : monoPath};
    args.insert(args.end(), c.args.begin(), c.args.end());
    const Result r = Run(args);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, LibraryText(c.colourPicture ? colourPath : monoPath, c.mode, c.colourPicture ? colour : mono, c.setup));
    distinct.insert(r.out);
  }
  // Only "auto frame" may equal the defaults: the pattern touches every edge.
  EXPECT_GE(distinct.size(), std::size(cases) - 1);
}

TEST_F(Cli, EveryDirectionAndOriginMatchesTheLibrary) {
  const Bitmap picture = Pattern(16, 16);
  const std::string path = Png("p.png", picture);
  struct Case {
    const char* flag;
    PagingDirection direction;
    const char* otherCorner;  // the second corner the direction allows
    rm::OriginCorner other;
  } cases[] = {
      {"tr", PagingDirection::ToRightAll, "BL", rm::OriginCorner::BL},
      {"tl", PagingDirection::ToLeftAll, "BR", rm::OriginCorner::BR},
      {"tra", PagingDirection::ToRight, "BL", rm::OriginCorner::BL},
      {"tla", PagingDirection::ToLeft, "BR", rm::OriginCorner::BR},
      {"td", PagingDirection::Down, "TR", rm::OriginCorner::TR},
      {"tu", PagingDirection::Up, "BR", rm::OriginCorner::BR},
      {"tda", PagingDirection::DownAll, "TR", rm::OriginCorner::TR},
      {"tua", PagingDirection::UpAll, "BR", rm::OriginCorner::BR},
  };
  std::set<std::string> texts;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.flag);
    const Result plain = Run({"convert", path, "--direction", c.flag});
    ASSERT_EQ(plain.status, 0) << plain.err;
    EXPECT_EQ(plain.out, LibraryText(path, 1, picture, [&](TestProgram& p) {
                ASSERT_TRUE(p.app.mainForm.SetDirection(c.direction));
              }));
    const Result turned = Run({"convert", path, "--direction", c.flag, "--origin", c.otherCorner});
    ASSERT_EQ(turned.status, 0) << turned.err;
    EXPECT_EQ(turned.out, LibraryText(path, 1, picture, [&](TestProgram& p) {
                ASSERT_TRUE(p.app.mainForm.SetDirection(c.direction));
                p.app.session.Origin = c.other;
              }));
    texts.insert(plain.out);
    texts.insert(turned.out);
  }
  // A flag mapped onto the wrong walk would make two of these equal.
  EXPECT_EQ(texts.size(), 2 * std::size(cases));
}

// Hand-worked values for one black pixel at (0, 0) of a white 32 x 8 picture: 32 bytes, 16 a line.
TEST_F(Cli, OptionsChangeTheBytes) {
  const std::string path = Png("corner.png", CornerPixel());
  struct Case {
    std::vector<std::string> args;
    std::size_t line;  // 0 is the begin of data "{"
    std::string starts;
    std::size_t lineCount;  // with "{" and "};"
  } cases[] = {
      {{}, 1, " 0x80 , 0x00 ,", 4},
      {{"--msb-first"}, 1, " 0x80 ,", 4},
      {{"--msb-last"}, 1, " 0x01 , 0x00 ,", 4},
      // The pixel is the top of the first column: still the first pixel of the first byte.
      {{"--direction", "td"}, 1, " 0x80 , 0x00 ,", 4},
      // Walked from the bottom row up, the top row's first byte is the 29th.
      {{"--origin", "BL"}, 1, " 0x00 , 0x00 ,", 4},
      {{"--width", "16"}, 1, " 0x8000 , 0x0000 ,", 3},
      {{"--width", "16", "--msb-last"}, 1, " 0x0001 ,", 3},
      // Without the picture comment the end of line follows the padded datum.
      {{"--width", "32"}, 1, " 0x80000000   ,", 10},
      {{"--per-line", "4"}, 1, " 0x80 , 0x00 , 0x00 , 0x00,", 10},
      {{"--set", "ORGC=8"}, 1, " 0x80 , 0x00 ,", 6},
      {{"--set", "Neg=1"}, 1, " 0x7F , 0xFF ,", 4},
      {{"--set", "FXHB=+D+", "--set", "VALpref=(", "--set", "VALSUF=)"}, 1, "(128) ,(0) ,", 4},
      {{"--mode", "gray4"}, 1, " 0xC0 , 0x00 ,", 6},
      {{"--mode", "c16m"}, 1, " 0x00 , 0x00 , 0x00 , 0xFF ,", 50},
  };
  // The bare table: no header, no comments around it, no descriptors.
  const std::vector<std::string> bare{"--set", "Noh=1", "--set", "Noonts=1", "--set", "BSD=0"};
  for (const auto& c : cases) {
    std::vector<std::string> args{"convert", path};
    args.insert(args.end(), bare.begin(), bare.end());
    args.insert(args.end(), c.args.begin(), c.args.end());
    SCOPED_TRACE(JoinArgs(c.args));
    const Result r = Run(args);
    ASSERT_EQ(r.status, 0) << r.err;
    rm::TextLines lines;
    lines.SetText(r.out);
    ASSERT_EQ(lines.Count(), c.lineCount) << r.out;
    EXPECT_EQ(lines[c.line].substr(0, c.starts.size()), c.starts) << lines[c.line];
  }

  // The origin case above only says the first line lost the pixel; here is where it went.
  const Result bl = Run({"convert", path, "--origin", "BL", "--set", "Noh=1", "--set", "Noonts=1", "--set", "BSD=0"});
  rm::TextLines lines;
  lines.SetText(bl.out);
  ASSERT_EQ(lines.Count(), 4u);
  EXPECT_EQ(lines[2].substr(12 * 7, 7), " 0x80 ,");  // the 13th datum of the second line

  // Binary output is the bytes themselves.
  const Result bin = Run({"convert", path, "--set", "DHec=1"});
  ASSERT_EQ(bin.status, 0) << bin.err;
  std::string expected(32, '\0');
  expected[0] = '\x80';
  EXPECT_EQ(bin.out, expected);
}

TEST_F(Cli, CompressFlag) {
  // Wide white margins: the compressed table pays.
  Bitmap framed(64, 32);
  for (int x = 8; x < 40; ++x) framed.SetPixel(x, 10 + x % 7, rm::kBlack);
  const std::string path = Png("framed.png", framed);
  const Result r = Run({"convert", path, "--compress"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(r.out, LibraryText(path, 1, framed, [](TestProgram& p) { p.app.session.Compression = true; }));
  EXPECT_NE(r.out.find("Compression statistics"), std::string::npos) << r.out;

  // A table that does not pay comes out plain, with the warning on stderr.
  const std::string noisy = Png("noisy.png", Pattern(32, 16));
  const Result plain = Run({"convert", noisy, "--compress"});
  ASSERT_EQ(plain.status, 0) << plain.err;
  EXPECT_EQ(plain.out, Run({"convert", noisy}).out);
  EXPECT_NE(plain.err.find("No efficient data compression possible"), std::string::npos) << plain.err;

  struct Case {
    std::vector<std::string> args;
    std::string stderrHas;
  } refusals[] = {
      {{"--width", "16"}, "Data compression only works in the 8 bit output mode"},
      {{"--width", "32"}, "Data compression only works in the 8 bit output mode"},
      {{"--set", "DHec=1"}, "not available for animations or data compression"},
      {{"--mode", "gray4"}, "monochrome"},
  };
  for (const auto& c : refusals) {
    std::vector<std::string> args{"convert", path, "--compress"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    SCOPED_TRACE(JoinArgs(args));
    const Result refused = Run(args);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_NE(refused.err.find(c.stderrHas), std::string::npos) << refused.err;
  }
}

TEST_F(Cli, StdoutAndFileCarryTheSameText) {
  const std::string path = Png("p.png", Pattern(32, 16));
  const Result none = Run({"convert", path}, InFolder(out_));
  const Result dash = Run({"convert", path, "-o", "-"}, InFolder(out_));
  ASSERT_EQ(none.status, 0) << none.err;
  ASSERT_EQ(dash.status, 0) << dash.err;
  EXPECT_EQ(dash.out, none.out);
  // Printing leaves no file behind, not even a parameter file in the working folder.
  EXPECT_TRUE(fs::is_empty(out_));

  // An existing, longer file is replaced whole, not overwritten from the front.
  const std::string target = out_ + "/image.c";
  std::ofstream(target, std::ios::binary) << std::string(20000, 'x');
  const Result file = Run({"convert", path, "-o", target});
  ASSERT_EQ(file.status, 0) << file.err;
  EXPECT_EQ(file.out, "");
  EXPECT_EQ(ReadFile(target), none.out);

  // A name without a folder lands in the working folder.
  const Result relative = Run({"convert", path, "--output", "second.c"}, InFolder(out_));
  ASSERT_EQ(relative.status, 0) << relative.err;
  EXPECT_EQ(ReadFile(out_ + "/second.c"), none.out);
  // Each output file has its parameter file beside it, and nothing else is left there.
  EXPECT_EQ(Names(out_), (std::vector<std::string>{"image.c", "image.rtf", "second.c", "second.rtf"}));
}

TEST_F(Cli, ParameterFileBesideTheOutput) {
  const std::string path = Png("p.png", Pattern(32, 16));
  const Result r = Run({"convert", path, "-o", out_ + "/logo-big.h"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::string info = ReadFile(out_ + "/logo-big.rtf");
  EXPECT_EQ(info.rfind(std::string("LCD graphic parameters // generated with rastermill ") + rm::ProgramVersion() +
                           "\n14/11/2023 22:13:20\n",
                       0),
            0u)
      << info;
  const std::vector<std::string> lines = {"C Header File : logo-big.h", "Bitmap Source file : p.png",
                                          "Data table created : logo-big.h", "Full screen pattern 32x16", "64 Bytes"};
  for (const auto& line : lines)
    EXPECT_NE(info.find("\n" + line + "\n"), std::string::npos) << line << " missing from\n" << info;

  const Result quiet = Run({"convert", path, "-o", out_ + "/plain.h", "--no-info"});
  ASSERT_EQ(quiet.status, 0) << quiet.err;
  EXPECT_EQ(Names(out_), (std::vector<std::string>{"logo-big.h", "logo-big.rtf", "plain.h"}));

  // A parameter file another program holds is left alone; the data file is written all the same.
  const std::string held = out_ + "/held.rtf";
  std::ofstream(held, std::ios::binary) << "old\n";
  const int fd = open(held.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(flock(fd, LOCK_EX | LOCK_NB), 0);
  const Result busy = Run({"convert", path, "-o", out_ + "/held.h"});
  close(fd);
  EXPECT_EQ(busy.status, 1);
  EXPECT_NE(busy.err.find(" RTF file was opened by another application ! "), std::string::npos) << busy.err;
  EXPECT_EQ(ReadFile(held), "old\n");
  EXPECT_EQ(ReadFile(out_ + "/held.h"), ReadFile(out_ + "/logo-big.h"));
}

TEST_F(Cli, FailedWriteKeepsTheOldFileAndLeavesNoTemporary) {
  const std::string path = Png("p.png", Pattern(32, 16));
  const std::string old = "old contents\n";
  std::ofstream(out_ + "/image.c", std::ios::binary) << old;
  fs::create_directories(out_ + "/folder.c");

  struct Case {
    const char* name;
    std::string target;
    Launch how;
    std::string stderrHas;
  } cases[] = {
      // The data is written in full before the rename fails.
      {"target is a folder", out_ + "/folder.c", {}, "folder.c"},
      // The write itself fails half way, as on a full disk.
      {"file size limit", out_ + "/image.c", FileSizeLimit(64), "image.c"},
      {"folder missing", out_ + "/no/such/folder/image.c", {}, "No such file or directory"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Result r = Run({"convert", path, "-o", c.target}, c.how);
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find(c.stderrHas), std::string::npos) << r.err;
    EXPECT_EQ(Names(out_), (std::vector<std::string>{"folder.c", "image.c"}));
    EXPECT_EQ(ReadFile(out_ + "/image.c"), old);
    EXPECT_TRUE(fs::is_empty(out_ + "/folder.c"));
  }
}

TEST_F(Cli, UnwritableFolderFailsCleanly) {
  if (geteuid() == 0) GTEST_SKIP() << "root writes into any folder";
  const std::string path = Png("p.png", Pattern(32, 16));
  fs::permissions(out_, fs::perms::owner_read | fs::perms::owner_exec, fs::perm_options::replace);
  const Result r = Run({"convert", path, "-o", out_ + "/image.c"});
  fs::permissions(out_, fs::perms::owner_all, fs::perm_options::replace);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_NE(r.err.find("image.c"), std::string::npos) << r.err;
  EXPECT_EQ(Names(out_), std::vector<std::string>{});
}

TEST_F(Cli, WriteErrorOnStdoutIsAFailure) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  // Large enough that the stream's buffer fills and the error appears during fwrite, not at
  // the final flush.
  const std::string path = Png("p.png", Pattern(256, 128));
  const Result r = Run({"convert", path}, StdoutTo("/dev/full"));
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("standard output"), std::string::npos) << r.err;

  const std::string small = Png("small.png", Bitmap(8, 1));
  const Result s = Run({"convert", small}, StdoutTo("/dev/full"));
  EXPECT_EQ(s.status, 1);
  EXPECT_NE(s.err.find("standard output"), std::string::npos) << s.err;
}

TEST_F(Cli, VerboseLogGoesToStderrOnly) {
  const std::string path = Png("p.png", Pattern(16, 8));
  const Result quiet = Run({"convert", path, "--direction", "td"});
  const Result verbose = Run({"convert", path, "--direction", "td", "-v"});
  ASSERT_EQ(quiet.status, 0);
  ASSERT_EQ(verbose.status, 0);
  EXPECT_EQ(verbose.out, quiet.out);
  EXPECT_EQ(quiet.err, "");
  EXPECT_NE(verbose.err.find("Paging Scheme vertical downwards"), std::string::npos) << verbose.err;

  // A question the program asks is shown with the button chosen, on stderr.
  const Result area = Run({"convert", path, "--area", "0,0,8,8"});
  ASSERT_EQ(area.status, 0) << area.err;
  EXPECT_NE(area.err.find(" Export Selected Area to Data Array ? "), std::string::npos) << area.err;
  EXPECT_EQ(area.out.find("Export"), std::string::npos);
}

TEST_F(Cli, HelpListsEveryOption) {
  const Result help = Run({"convert", "--help"});
  ASSERT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  std::set<std::string> listed;
  const std::regex option("--[a-z][a-z0-9-]*");
  for (auto it = std::sregex_iterator(help.out.begin(), help.out.end(), option); it != std::sregex_iterator(); ++it)
    listed.insert(it->str());
  for (const char* name : {"--output", "--mode", "--direction", "--origin", "--msb-first", "--msb-last", "--width",
                           "--per-line", "--set", "--yes", "--answer", "--area", "--half", "--interleave",
                           "--auto-frame", "--compress"})
    EXPECT_TRUE(listed.count(name)) << name << " missing from\n" << help.out;
  // Every mode name the program accepts is shown.
  for (const auto& m : rm::kColourModes)
    EXPECT_NE(help.out.find(std::string(m.cliName)), std::string::npos) << m.cliName;

  const Result top = Run({"--help"});
  EXPECT_EQ(top.status, 0);
  EXPECT_NE(top.out.find("convert"), std::string::npos);

  const Result version = Run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.err, "");
  EXPECT_TRUE(std::regex_match(version.out, std::regex("rastermill [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << version.out;
}

}  // namespace

namespace {

TEST_F(Cli, ClutWritesThePaletteTable) {
  const Result c256 = Run({"clut", "--mode", "c256"});
  ASSERT_EQ(c256.status, 0) << c256.err;
  EXPECT_EQ(c256.out.rfind("/* Color Look-Up Table generated with rastermill ", 0), 0u);
  EXPECT_NE(c256.out.find("const uint32_t  COLORLUT [256] PROGMEM = {\n"), std::string::npos);
  EXPECT_NE(c256.out.find("\n0xFFFFFF   //255\n};\n"), std::string::npos);

  const std::string file = out_ + "/lut.h";
  const Result toFile = Run({"clut", "--mode", "c4096", "-o", file, "--set", "Nodcom=1"});
  ASSERT_EQ(toFile.status, 0) << toFile.err;
  EXPECT_EQ(toFile.out, "");
  EXPECT_NE(ReadFile(file).find("[4096]"), std::string::npos);
  EXPECT_EQ(ReadFile(file).find("   //0"), std::string::npos);  // no index comments

  EXPECT_EQ(Run({"clut", "--mode", "mono"}).status, 2);  // monochrome has no palette
}

}  // namespace

namespace {

TEST_F(Cli, SettingsCommandsAndConvertFromAProject) {
  const std::string project = out_ + "/board.LCD";
  ASSERT_EQ(Run({"settings", "--project", project, "set", "orgc", "8"}).status, 0);
  ASSERT_EQ(Run({"settings", "--project", project, "set", "FXHB", "H"}).status, 0);
  const Result got = Run({"settings", "--project", project, "get", "ORGC"});
  EXPECT_EQ(got.status, 0);
  EXPECT_EQ(got.out, "8\n");
  const Result list = Run({"settings", "--project", project, "list"});
  EXPECT_NE(list.out.find("[I11] ORGC=8\n"), std::string::npos) << list.out;
  EXPECT_NE(list.out.find("[S] FXHB=H\n"), std::string::npos);
  EXPECT_NE(ReadFile(project).find("ORGC=8"), std::string::npos);

  // Refusals leave the project as it was.
  const std::string before = ReadFile(project);
  EXPECT_EQ(Run({"settings", "--project", project, "set", "ORGC", "many"}).status, 2);
  EXPECT_EQ(Run({"settings", "--project", project, "get", "NoSuchKey"}).status, 2);
  EXPECT_EQ(ReadFile(project), before);

  // A conversion starts from the project and does not write it; options still override it.
  const std::string picture = Png("pic.png", CornerPixel());
  const Result converted = Run({"convert", picture, "--project", project});
  ASSERT_EQ(converted.status, 0) << converted.err;
  EXPECT_NE(converted.out.find("\n 80h, 00h , 00h , 00h , 00h , 00h , 00h , 00h ,\n"), std::string::npos)
      << converted.out;
  const Result overridden = Run({"convert", picture, "--project", project, "--per-line", "2"});
  EXPECT_NE(overridden.out.find("\n 80h, 00h ,\n"), std::string::npos) << overridden.out;
  EXPECT_EQ(ReadFile(project), before);
  EXPECT_EQ(Run({"convert", picture, "--project", out_ + "/missing.LCD"}).status, 2);
}

}  // namespace

namespace {

TEST_F(Cli, TemplateOptionFillsTheGivenTemplate) {
  const std::string picture = Png("sprite.png", CornerPixel());
  const std::string tpl = in_ + "/asm.txt";
  rm::WriteFileAtomically(tpl, "; table [&NAME], [&SIZE] bytes\n[&NAME]:\n");
  const Result r = Run({"convert", picture, "--template", tpl, "--set", "begds=", "--set", "Endst="});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("\n; table  sprite , [32] bytes\n[&NAME]:\n"), std::string::npos) << r.out;
  const Result missing = Run({"convert", picture, "--template", in_ + "/none.txt"});
  EXPECT_EQ(missing.status, 0);  // the table still comes, without a header
  EXPECT_NE(missing.err.find("none.txt not found ! No table header will be add..."), std::string::npos) << missing.err;
}

}  // namespace
