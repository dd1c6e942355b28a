#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ColourModes.h"
#include "engine/ProgramVersion.h"
#include "engine/TextLines.h"
#include "platform/PlatformImageCodecs.h"
#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rm::PagingDirection;
using rmtest::Launch;
using rmtest::ReadFile;
using rmtest::TestProgram;
using Result = rmtest::CliResult;
using Args = std::vector<std::string>;

Args Names(const std::string& folder) {
  Args names;
  for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string Join(const Args& args) {
  std::string s;
  for (const auto& a : args) s += (s.empty() ? "" : " ") + a;
  return s;
}

Args Concat(Args a, const Args& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

bool Has(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

Launch InFolder(std::string cwd) {
  Launch l;
  l.cwd = std::move(cwd);
  return l;
}

class Cli : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
    in_ = dir_ + "/in";
    out_ = dir_ + "/out";
    for (const auto& d : {in_, out_, dir_ + "/home"}) fs::create_directories(d);
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string Png(const std::string& name, const Bitmap& picture) {
    const std::string path = in_ + "/" + name;
    std::string error;
    EXPECT_TRUE(rm::PlatformImageCodecs().SavePng(picture, path, error)) << error;
    return path;
  }

  // The built program in the test's own home folder, with the clock TestProgram uses.
  Result Run(const Args& args, const Launch& how = {}) { return rmtest::RunCli(args, dir_ + "/home", how); }
  // A run that must fail with `status`, print nothing and say `why` on stderr.
  void ExpectRefused(const Args& args, int status, const std::string& why, const Launch& how = {}) {
    SCOPED_TRACE(Join(args));
    const Result r = Run(args, how);
    EXPECT_EQ(r.status, status) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(Has(r.err, why)) << r.err;
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

TEST_F(Cli, ExitStatusAndMessages) {
  const std::string good = Png("good.png", Pattern(32, 16));
  const std::string rows12 = Png("rows12.png", Bitmap(16, 12));

  const Result ok = Run({"convert", good});
  EXPECT_EQ(ok.status, 0);
  EXPECT_FALSE(ok.out.empty());
  EXPECT_EQ(ok.err, "");

  // Each with a fragment of the message that says what went wrong.
  const std::tuple<Args, int, std::string> cases[] = {
      {{"convert", in_ + "/missing.png"}, 1, "missing.png"},
      {{"convert", rows12, "--direction", "td"}, 1, "does not fit"},
      {{"convert", good, "--area", "200,0,8,8"}, 1, "--area 200,0,8,8 lies outside the 32x16 canvas"},
      {{"convert", good, "--mode", "c17"}, 2, "--mode"},
      {{"convert", good, "--direction", "sideways"}, 2, "--direction"},
      {{"convert", good, "--msb-first", "--msb-last"}, 2, "excludes"},
      {{"convert", good, "--width", "12"}, 2, "--width"},
      {{"convert", good, "--per-line", "151"}, 2, "--per-line"},
      {{"convert"}, 2, "INPUT"},
      {{}, 2, "subcommand"},
      {{"convert", good, "--colour", "red"}, 2, "--colour"},
      {{"convert", good, "--direction", "td", "--origin", "BL"}, 2, "origin BL"},
      {{"convert", good, "--set", "Neg"}, 2, "KEY=VALUE"},
      {{"convert", good, "--set", "NoSuchKey=1"}, 2, "NoSuchKey"},
      {{"convert", good, "--set", "ORGC=many"}, 2, "ORGC"},
      {{"convert", good, "--area", "1,2,3"}, 2, "--area"},
      {{"convert", good, "--area", "0,0,0,8"}, 2, "--area"},
  };
  for (const auto& [args, status, why] : cases) ExpectRefused(args, status, why);

  // An area reaching past the canvas is cut to it, and the user is told.
  const Result clipped = Run({"convert", good, "--area", "0,0,64,8"});
  EXPECT_EQ(clipped.status, 0) << clipped.err;
  EXPECT_EQ(clipped.err.rfind("rastermill: note: --area 0,0,64,8 clipped to the 32x16 canvas: 0,0,32,8\n", 0), 0u)
      << clipped.err;
  // An option the scheme cannot take is not dropped in silence either.
  const Result half = Run({"convert", good, "--direction", "td", "--half", "upper"});
  EXPECT_EQ(half.status, 0) << half.err;
  EXPECT_EQ(half.err,
            "rastermill: note: the upper or lower half is exported only with a horizontal Paging direction: the full "
            "canvas is exported\n");
}

// The front end only maps options onto library commands: for the same picture and settings its
// output must be the library's text byte for byte (TextLines ends every line, the last included,
// with "\n", and the program writes that text unchanged). A setting the library ignores, or a
// direction or an origin mapped onto the wrong walk, would make two texts equal.
TEST_F(Cli, OptionsDirectionsAndOriginsReachTheLibrary) {
  const Bitmap mono = Pattern(32, 16);
  const Bitmap colour = rmtest::PatternPicture(
      8, 8, {rm::kBlack, rm::kWhite, rm::MakeColour(200, 30, 60), rm::MakeColour(10, 160, 250)}, 5);
  const std::string monoPath = Png("mono.png", mono);
  const std::string colourPath = Png("colour.png", colour);
  struct Case {
    Args args;
    int mode;
    std::function<void(TestProgram&)> setup;
  };
  std::vector<Case> cases = {
      {{}, 1, nullptr},
      {{"--mode", "gray4"}, 24, nullptr},
      {{"--mode", "c65k"}, 59, nullptr},
      {{"--width", "16", "--msb-last"}, 1,
       [](TestProgram& p) { p.app.mainForm.data16bitClick(); p.app.mainForm.MsbLast(); }},
      // The project says MSB last; the option turns it back.
      {{"--set", "MSBF=0", "--msb-first"}, 1, nullptr},
      {{"--width", "32"}, 1, [](TestProgram& p) { p.app.mainForm.data32bitClick(); }},
      {{"--per-line", "1"}, 1, [](TestProgram& p) { p.app.mainForm.SetDataPerLine(1); }},
      {{"--set", "FXHB=H", "--set", "VALSUF=h", "--set", "LineN=1", "--set", "Neg=1"}, 1,
       [](TestProgram& p) {
         p.app.session.Syntax.DataFormatKind = "H";
         p.app.session.Syntax.DataSuffix = "h";
         p.app.session.Syntax.LineNumbers = true;
         p.app.session.NegativeOutput = true;
       }},
      {{"--area", "8,2,16,5"}, 1,
       [](TestProgram& p) {
         auto& s = p.app.session;
         s.SelectionActive = true;
         std::tie(s.ExportAreaX1, s.ExportAreaY1, s.ExportAreaX2, s.ExportAreaY2) = std::make_tuple(8, 2, 24, 7);
         p.app.globals.ExportEntry = 3;
       }},
      {{"--half", "lower"}, 1, [](TestProgram& p) { p.app.globals.ExportEntry = 2; }},
      {{"--interleave"}, 1, [](TestProgram& p) { p.app.session.Interleaved = true; }},
      {{"--auto-frame"}, 1, [](TestProgram& p) { p.app.session.AutoFraming = true; }},
  };
  // Each direction flag, alone and with the second corner the direction allows.
  const std::tuple<const char*, PagingDirection, const char*, rm::OriginCorner> directions[] = {
      {"tr", PagingDirection::ToRightAll, "BL", rm::OriginCorner::BL},
      {"tl", PagingDirection::ToLeftAll, "BR", rm::OriginCorner::BR},
      {"tra", PagingDirection::ToRight, "BL", rm::OriginCorner::BL},
      {"tla", PagingDirection::ToLeft, "BR", rm::OriginCorner::BR},
      {"td", PagingDirection::Down, "TR", rm::OriginCorner::TR},
      {"tu", PagingDirection::Up, "BR", rm::OriginCorner::BR},
      {"tda", PagingDirection::DownAll, "TR", rm::OriginCorner::TR},
      {"tua", PagingDirection::UpAll, "BR", rm::OriginCorner::BR},
  };
  for (const auto& [flag, direction, corner, other] : directions) {
    const auto d = direction;
    cases.push_back({{"--direction", flag}, 1, [d](TestProgram& p) { ASSERT_TRUE(p.app.mainForm.SetDirection(d)); }});
    cases.push_back({{"--direction", flag, "--origin", corner}, 1, [d, o = other](TestProgram& p) {
                       ASSERT_TRUE(p.app.mainForm.SetDirection(d));
                       p.app.session.Origin = o;
                     }});
  }
  std::set<std::string> distinct;
  for (const auto& c : cases) {
    SCOPED_TRACE(Join(c.args));
    const bool inColour = c.mode > 50;
    const std::string& path = inColour ? colourPath : monoPath;
    const Result r = Run(Concat({"convert", path}, c.args));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, LibraryText(path, c.mode, inColour ? colour : mono, c.setup));
    distinct.insert(r.out);
  }
  // Four runs make the default text: no option, MSB first, auto frame and the default direction.
  EXPECT_EQ(distinct.size(), cases.size() - 3);

  // Binary output is the bytes themselves.
  const Result bin = Run({"convert", Png("corner.png", CornerPixel()), "--set", "DHec=1"});
  ASSERT_EQ(bin.status, 0) << bin.err;
  EXPECT_EQ(bin.out, '\x80' + std::string(31, '\0'));
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
  EXPECT_TRUE(Has(r.out, "Compression statistics")) << r.out;
  // Printing writes nothing of its own, not even into the project's Output files folder.
  const fs::path outputFiles = dir_ + "/home/Documents/Rastermill Project/Output Files";
  ASSERT_TRUE(fs::is_directory(outputFiles));
  EXPECT_TRUE(fs::is_empty(outputFiles));

  // A table that does not pay comes out plain, with the warning on stderr.
  const std::string noisy = Png("noisy.png", Pattern(32, 16));
  const Result plain = Run({"convert", noisy, "--compress"});
  ASSERT_EQ(plain.status, 0) << plain.err;
  // The plain table, with the statistics of the attempt after it.
  const std::string plainTable = Run({"convert", noisy}).out;
  EXPECT_EQ(plain.out.substr(0, plain.out.find("};")), plainTable.substr(0, plainTable.find("};")));
  EXPECT_TRUE(Has(plain.out, "Compression statistics")) << plain.out;
  EXPECT_TRUE(Has(plain.err, "No efficient data compression possible")) << plain.err;

  // Refused by name in a colour mode, where the program would quietly drop it; the library's own
  // refusals (16 bit, binary output) end the run as any refused conversion does.
  ExpectRefused({"convert", path, "--compress", "--mode", "gray4"}, 1, "monochrome");
  ExpectRefused({"convert", path, "--compress", "--width", "16"}, 1, "Data compression only works in the 8 bit");
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
  // The same text, but for the parameter file its closing comment names: the one beside it.
  const auto naming = [&none](const std::string& info) {
    std::string t = none.out;
    const std::string printed = "see info file p.rtf";
    return t.replace(t.find(printed), printed.size(), "see info file " + info);
  };
  EXPECT_EQ(ReadFile(target), naming(out_ + "/image.rtf"));

  // A name without a folder lands in the working folder.
  ASSERT_EQ(Run({"convert", path, "-o", "second.c"}, InFolder(out_)).status, 0);
  EXPECT_EQ(ReadFile(out_ + "/second.c"), naming("second.rtf"));
  // Each output file has its parameter file beside it, and nothing else is left there.
  EXPECT_EQ(Names(out_), (Args{"image.c", "image.rtf", "second.c", "second.rtf"}));
}

TEST_F(Cli, ParameterFileBesideTheOutput) {
  const std::string path = Png("p.png", Pattern(32, 16));
  ASSERT_EQ(Run({"convert", path, "-o", out_ + "/logo-big.h"}).status, 0);
  const std::string info = ReadFile(out_ + "/logo-big.rtf");
  EXPECT_EQ(info.rfind(std::string("LCD graphic parameters // generated with rastermill ") + rm::ProgramVersion() +
                           "\n14/11/2023 22:13:20\n",
                       0),
            0u)
      << info;
  for (const char* line :
       {"C Header File : logo-big.h", "Bitmap Source file : p.png", "Data table created : logo-big.h"})
    EXPECT_TRUE(Has(info, std::string("\n") + line + "\n")) << line << " missing from\n" << info;

  ASSERT_EQ(Run({"convert", path, "-o", out_ + "/plain.h", "--no-info"}).status, 0);
  EXPECT_EQ(Names(out_), (Args{"logo-big.h", "logo-big.rtf", "plain.h"}));

  // A parameter file another program holds is left alone; the data file is written all the same.
  const std::string held = out_ + "/held.rtf";
  std::ofstream(held, std::ios::binary) << "old\n";
  const int fd = open(held.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(flock(fd, LOCK_EX | LOCK_NB), 0);
  const Result busy = Run({"convert", path, "-o", out_ + "/held.h"});
  close(fd);
  EXPECT_EQ(busy.status, 1);
  EXPECT_TRUE(Has(busy.err, " RTF file was opened by another application ! ")) << busy.err;
  EXPECT_EQ(ReadFile(held), "old\n");
  std::string expected = ReadFile(out_ + "/logo-big.h");
  expected.replace(expected.find("logo-big.rtf"), 12, "held.rtf");
  EXPECT_EQ(ReadFile(out_ + "/held.h"), expected);
}

TEST_F(Cli, FailedWriteKeepsTheOldFileAndLeavesNoTemporary) {
  const std::string path = Png("p.png", Pattern(32, 16));
  std::ofstream(out_ + "/image.c", std::ios::binary) << "old contents\n";
  fs::create_directories(out_ + "/folder.c");
  Launch sizeLimit;
  sizeLimit.maxFileSize = 64;
  const std::tuple<std::string, Launch, std::string> cases[] = {
      // The data is written in full before the rename fails.
      {out_ + "/folder.c", {}, "folder.c"},
      // The write itself fails half way, as on a full disk.
      {out_ + "/image.c", sizeLimit, "image.c"},
      {out_ + "/no/such/folder/image.c", {}, "No such file or directory"},
  };
  for (const auto& [target, how, why] : cases) {
    ExpectRefused({"convert", path, "-o", target}, 1, why, how);
    EXPECT_EQ(Names(out_), (Args{"folder.c", "image.c"}));
    EXPECT_EQ(ReadFile(out_ + "/image.c"), "old contents\n");
    EXPECT_TRUE(fs::is_empty(out_ + "/folder.c"));
  }
}

TEST_F(Cli, WriteErrorOnStdoutIsAFailure) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  // The large one fills the stream's buffer, so the error appears during fwrite, not at the
  // final flush.
  Launch full;
  full.stdoutFile = "/dev/full";
  for (const Bitmap& picture : {Pattern(256, 128), Bitmap(8, 1)}) {
    const Result r = Run({"convert", Png("p.png", picture)}, full);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(Has(r.err, "standard output")) << r.err;
  }
}

TEST_F(Cli, VerboseLogGoesToStderrOnly) {
  const std::string path = Png("p.png", Pattern(16, 8));
  const Result quiet = Run({"convert", path, "--direction", "td"});
  const Result verbose = Run({"convert", path, "--direction", "td", "-v"});
  ASSERT_EQ(quiet.status, 0);
  ASSERT_EQ(verbose.status, 0);
  EXPECT_EQ(verbose.out, quiet.out);
  EXPECT_EQ(quiet.err, "");
  EXPECT_TRUE(Has(verbose.err, "Paging Scheme vertical downwards")) << verbose.err;

  // A question the program asks is shown with the button chosen, on stderr.
  const Result area = Run({"convert", path, "--area", "0,0,8,8"});
  ASSERT_EQ(area.status, 0) << area.err;
  EXPECT_TRUE(Has(area.err, " Export Selected Area to Data Array ? ")) << area.err;
  EXPECT_FALSE(Has(area.out, "Export"));
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
  for (const auto& m : rm::kColourModes) EXPECT_TRUE(Has(help.out, m.cliName)) << m.cliName;

  const Result top = Run({"--help"});
  EXPECT_EQ(top.status, 0);
  EXPECT_TRUE(Has(top.out, "convert"));
  const Result version = Run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.err, "");
  EXPECT_TRUE(std::regex_match(version.out, std::regex("rastermill [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << version.out;
}

TEST_F(Cli, ClutWritesThePaletteTable) {
  const Result c256 = Run({"clut", "--mode", "c256"});
  ASSERT_EQ(c256.status, 0) << c256.err;
  EXPECT_EQ(c256.out.rfind("/* Color Look-Up Table generated with rastermill ", 0), 0u);
  EXPECT_TRUE(Has(c256.out, "const uint32_t  COLORLUT [256] PROGMEM = {\n"));
  EXPECT_TRUE(Has(c256.out, "\n0xFFFFFF   //255\n};\n"));

  const std::string file = out_ + "/lut.h";
  const Result toFile = Run({"clut", "--mode", "c4096", "-o", file, "--set", "Nodcom=1"});
  ASSERT_EQ(toFile.status, 0) << toFile.err;
  EXPECT_EQ(toFile.out, "");
  EXPECT_TRUE(Has(ReadFile(file), "[4096]"));
  EXPECT_FALSE(Has(ReadFile(file), "   //0"));  // no index comments

  EXPECT_EQ(Run({"clut", "--mode", "mono"}).status, 2);  // monochrome has no palette
}

TEST_F(Cli, SettingsCommandsAndConvertFromAProject) {
  const std::string project = out_ + "/board.LCD";
  const auto settings = [&](const Args& args) { return Run(Concat({"settings", "--project", project}, args)); };
  ASSERT_EQ(settings({"set", "orgc", "8"}).status, 0);
  ASSERT_EQ(settings({"set", "FXHB", "H"}).status, 0);
  const Result got = settings({"get", "ORGC"});
  EXPECT_EQ(got.status, 0);
  EXPECT_EQ(got.out, "8\n");
  const Result list = settings({"list"});
  EXPECT_TRUE(Has(list.out, "[I11] ORGC=8\n")) << list.out;
  EXPECT_TRUE(Has(list.out, "[S] FXHB=H\n"));
  EXPECT_TRUE(Has(ReadFile(project), "ORGC=8"));

  // Refusals leave the project as it was.
  const std::string before = ReadFile(project);
  EXPECT_EQ(settings({"set", "ORGC", "many"}).status, 2);
  EXPECT_EQ(ReadFile(project), before);

  // A conversion starts from the project and does not write it; options still override it.
  const std::string picture = Png("pic.png", CornerPixel());
  const Result converted = Run({"convert", picture, "--project", project});
  ASSERT_EQ(converted.status, 0) << converted.err;
  EXPECT_TRUE(Has(converted.out, "\n 80h, 00h , 00h , 00h , 00h , 00h , 00h , 00h ,\n")) << converted.out;
  const Result overridden = Run({"convert", picture, "--project", project, "--per-line", "2"});
  EXPECT_TRUE(Has(overridden.out, "\n 80h, 00h ,\n")) << overridden.out;
  EXPECT_EQ(ReadFile(project), before);
  EXPECT_EQ(Run({"convert", picture, "--project", out_ + "/missing.LCD"}).status, 2);
}

TEST_F(Cli, TemplateOptionFillsTheGivenTemplate) {
  const std::string picture = Png("sprite.png", CornerPixel());
  const std::string tpl = in_ + "/asm.txt";
  rm::WriteFileAtomically(tpl, "; table [&NAME], [&SIZE] bytes\n[&NAME]:\n");
  const Result r = Run({"convert", picture, "--template", tpl, "--set", "begds=", "--set", "Endst="});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Has(r.out, "\n; table  sprite , [32] bytes\n[&NAME]:\n")) << r.out;
  const Result missing = Run({"convert", picture, "--template", in_ + "/none.txt"});
  EXPECT_EQ(missing.status, 0);  // the table still comes, without a header
  EXPECT_TRUE(Has(missing.err, "none.txt not found ! No table header will be add...")) << missing.err;
}

}  // namespace

namespace {

int SetBits(const std::string& bytes) {
  int n = 0;
  for (unsigned char c : bytes) n += __builtin_popcount(c);
  return n;
}

}  // namespace

TEST_F(Cli, DisplaySizeAndFitting) {
  const std::string big = Png("big.png", Bitmap(256, 128, rm::kBlack));
  const std::string small = Png("small.png", Bitmap(32, 16, rm::kBlack));
  const std::string wide = Png("wide.png", Bitmap(2000, 100, rm::kBlack));
  struct Case {
    Args args;
    int status;
    std::size_t bytes;  // of the binary output; when refused, the text stderr names
    int black;
    std::string why;
  };
  const Case cases[] = {
      // Without a size the display is the picture.
      {{small}, 0, 64, 512, ""},
      // A larger display: the picture lies at the top left, the rest stays white.
      {{small, "--size", "64x32"}, 0, 256, 512, ""},
      {{small, "--preset", "128x64"}, 0, 1024, 512, ""},
      // A picture larger than the display is refused unless it may be resized (to 128 x 64).
      {{big, "--preset", "128x64"}, 1, 0, 0, "--fit resizes it"},
      {{big, "--preset", "128x64", "--fit"}, 0, 1024, 128 * 64, ""},
      {{big, "--preset", "128x64", "--yes"}, 0, 1024, 128 * 64, ""},
      {{small, "--preset", "100x100"}, 2, 0, 0, "presets"},
      // The combo's sizes that the menu once lacked.
      {{small, "--preset", "320x240"}, 0, 320 * 240 / 8, 512, ""},
      {{small, "--preset", "160x128"}, 0, 160 * 128 / 8, 512, ""},
      {{small, "--size", "2000x10"}, 2, 0, 0, "at most 1024x768"},
      // Without a size the display follows the picture only up to the largest display.
      {{wide}, 1, 0, 0, "(1024x100); --fit resizes it"},
      {{wide, "--fit"}, 0, 1024 * 51 / 8, 1024 * 51, ""},
      {{small, "--size", "64"}, 2, 0, 0, "--size takes WxH"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Join(c.args));
    const Result r = Run(Concat({"convert", "--mode", "mono", "--output", "bin"}, c.args));
    EXPECT_EQ(r.status, c.status) << r.err;
    if (c.status != 0) {
      EXPECT_TRUE(Has(r.err, c.why)) << r.err;
      continue;
    }
    EXPECT_EQ(r.out.size(), c.bytes);
    EXPECT_EQ(SetBits(r.out), c.black);
  }
  // The project's display, whether named by --size project or by a preset that equals it.
  ASSERT_EQ(Run({"settings", "set", "GHI", "128"}).status, 0);
  for (const Args& display : {Args{"--size", "project"}, Args{"--preset", "128x128"}}) {
    const Result r = Run(Concat({"convert", small, "--mode", "mono", "--output", "bin"}, display));
    EXPECT_EQ(r.out.size(), 128u * 128 / 8) << Join(display) << r.err;
  }
}

TEST_F(Cli, ThresholdAndDitherMakeBlackAndWhite) {
  // A uniform gray of 100: the slider at 100 leaves it white, at 101 makes it black.
  const std::string gray = Png("gray.png", Bitmap(16, 8, rm::MakeColour(100, 100, 100)));
  const std::string half = Png("half.png", Bitmap(64, 64, rm::MakeColour(128, 128, 128)));
  struct Case {
    Args args;
    int black;  // -1: about half of the pixels
  };
  const Case cases[] = {
      {{gray, "--threshold", "100"}, 0},
      {{gray, "--threshold", "101"}, 128},
      {{gray, "--threshold", "0"}, 0},
      {{gray, "--dither", "nearest"}, 128},
      // Without either the picture is dithered as the project's menu says, not left to its pure
      // black pixels (a photograph would come out empty).
      {{half}, -1},
      {{half, "--dither", "floyd"}, -1},
      {{half, "--dither", "burkes"}, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Join(c.args));
    const Result r = Run(Concat({"convert", "--mode", "mono", "--output", "bin"}, c.args));
    ASSERT_EQ(r.status, 0) << r.err;
    if (c.black >= 0)
      EXPECT_EQ(SetBits(r.out), c.black);
    else
      EXPECT_NEAR(SetBits(r.out), 64 * 64 / 2, 64);
    EXPECT_EQ(Has(r.err, "reduced to black and white by Floyd Steinberg dithering"), c.args.size() == 1) << r.err;
  }
  ExpectRefused({"convert", gray, "--mode", "gray256", "--dither", "floyd"}, 2, "monochrome mode");
  ExpectRefused({"convert", gray, "--threshold", "3", "--dither", "floyd"}, 2, "excludes");
}

TEST_F(Cli, AngleDrawingSizeAndPictureMode) {
  const std::string bar = Png("bar.png", Bitmap(16, 8, rm::kBlack));
  const auto bytesOf = [&](const Args& args) {
    const Result r = Run(Concat({"convert", "--output", "bin"}, args));
    EXPECT_EQ(r.status, 0) << Join(args) << r.err;
    return r.out.size();
  };
  // Picture Mode converts in 16M colours at the picture's size; a quarter turn makes the picture
  // 8 x 16 inside a margin of one pixel, and the display follows it.
  const std::size_t plain = bytesOf({bar, "--picture-mode"});
  ASSERT_EQ(plain % (16 * 8), 0u);
  const std::size_t perPixel = plain / (16 * 8);
  EXPECT_EQ(bytesOf({bar, "--mode", "c16m", "--angle", "90"}), perPixel * 10 * 18);
  // A drawing renders at the size asked for.
  const std::string svg = in_ + "/d.svg";
  ASSERT_TRUE(rm::WriteFileAtomically(
      svg, "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'><rect width='10' height='10'/></svg>",
      nullptr));
  EXPECT_EQ(bytesOf({svg, "--mode", "mono", "--svg-size", "32x16"}), 32u * 16 / 8);
  ExpectRefused({"convert", bar, "--picture-mode", "--mode", "mono"}, 2, "16M");
}
