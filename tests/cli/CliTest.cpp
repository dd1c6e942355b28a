#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "engine/ProgramVersion.h"
#include "engine/TextLines.h"
#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rmtest::Args;
using rmtest::Concat;
using rmtest::Has;
using rmtest::Join;
using rmtest::Launch;
using rmtest::Names;
using rmtest::ReadFile;
using Result = rmtest::CliResult;
using Cli = rmtest::CliFixture;

Launch InFolder(std::string cwd) {
  Launch l;
  l.cwd = std::move(cwd);
  return l;
}

// Black and white, irregular enough that every walk order gives a different text.
Bitmap Pattern(int w, int h) { return rmtest::PatternPicture(w, h, {rm::kBlack, rm::kWhite}, 11); }

// One black pixel in the top left corner of a white 32 x 8 picture.
Bitmap CornerPixel() {
  Bitmap b(32, 8);
  b.SetPixel(0, 0, rm::kBlack);
  return b;
}

int SetBits(const std::string& bytes) {
  int n = 0;
  for (unsigned char c : bytes) n += __builtin_popcount(c);
  return n;
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
      // Intel HEX record options and output kinds.
      {{"convert", good, "--output", "hex", "--hex-offset", "12G4"}, 2, "--hex-offset takes 1 to 8 hex digits"},
      {{"convert", good, "--output", "hex", "--hex-offset", "123456789"}, 2, "--hex-offset takes"},
      {{"convert", good, "--output", "hex", "--hex-offset", ""}, 2, "--hex-offset takes"},
      {{"convert", good, "--output", "hex", "--hex-line", "12"}, 2, "--hex-line"},
      {{"convert", good, "--output", "hex", "--hex-address-digits", "5"}, 2, "--hex-address-digits"},
      {{"convert", good, "--output", "bin", "--width", "16"}, 2, "--width applies to text output only"},
      {{"convert", good, "--output", "binary"}, 2, "--output"},
      {{"convert", good, "-o", out_ + "/a.c", "--output", out_ + "/b.c"}, 2, "--output"},
      // Controllers and the bit rearrangement the table cannot make.
      {{"convert", good, "--controller", "hd44780"}, 2, "--controller"},
      {{"convert", good, "--swap-rb"}, 2, "it needs a colour mode of 4096 colours or more"},
      {{"convert", good, "--rearrange", "5,7,6,4,3,2,1,0"}, 2, "trades bits in pairs only"},
      // Red and blue traded, then the bytes: bit 0 would take bit 8 (green), which takes bit 11.
      {{"convert", good, "--mode", "c65k", "--swap-rb", "--rearrange", "7,6,5,4,3,2,1,0,15,14,13,12,11,10,9,8"},
       2,
       "trades bits in pairs only"},
      {{"convert", good, "--rearrange", "7,7,5,4,3,2,1,0"}, 2, "must name every bit from 0 to 7 once"},
      {{"convert", good, "--rearrange", "7,6,x"}, 2, "not \"x\""},
      {{"convert", good, "--mode", "c65k", "--rearrange", "7,6,5,4,3,2,1,0"},
       2,
       "lists 8 bits, but a value of this mode has 16"},
      // Black and white, and Picture Mode.
      {{"convert", good, "--mode", "gray256", "--dither", "floyd"}, 2, "monochrome mode"},
      {{"convert", good, "--threshold", "3", "--dither", "floyd"}, 2, "excludes"},
      {{"convert", good, "--picture-mode", "--mode", "mono"}, 2, "16M"},
  };
  for (const auto& [args, status, why] : cases) ExpectRefused(args, status, why);
  EXPECT_EQ(Names(out_), Args{});

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

// Every data option reaches the conversion: each alone changes the default text. What each one
// makes is checked in the library (ConvertJobTest, against the golden files). --auto-frame is not
// here: without coordinate descriptors a frame of the whole canvas gives the default text.
TEST_F(Cli, EveryDataOptionChangesTheText) {
  const std::string path = Png("p.png", Pattern(32, 16));
  const Args options[] = {{"--mode", "gray4"}, {"--direction", "td"}, {"--origin", "BL"}, {"--msb-last"},
                          {"--width", "16"},   {"--per-line", "3"},   {"--set", "Neg=1"}, {"--area", "8,2,16,5"},
                          {"--half", "lower"}, {"--interleave"},      {"--output", "hex"}};
  std::set<std::string> texts = {Run({"convert", path}).out};
  for (const Args& o : options) {
    const Result r = Run(Concat({"convert", path}, o));
    EXPECT_EQ(r.status, 0) << Join(o) << r.err;
    EXPECT_TRUE(texts.insert(r.out).second) << Join(o);
  }
}

TEST_F(Cli, CompressFlag) {
  // Wide white margins: the compressed table pays.
  Bitmap framed(64, 32);
  for (int x = 8; x < 40; ++x) framed.SetPixel(x, 10 + x % 7, rm::kBlack);
  const std::string path = Png("framed.png", framed);
  const Result r = Run({"convert", path, "--compress"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_TRUE(Has(r.out, "Compression statistics")) << r.out;
  EXPECT_NE(r.out, Run({"convert", path}).out);
  // Printing writes nothing of its own, not even into the project's Output files folder.
  const fs::path outputFiles = dir_ + "/home/Documents/Rastermill Project/Output Files";
  ASSERT_TRUE(fs::is_directory(outputFiles));
  EXPECT_TRUE(fs::is_empty(outputFiles));

  // Refused by name in a colour mode, where the program would quietly drop it.
  ExpectRefused({"convert", path, "--compress", "--mode", "gray4"}, 1, "monochrome");
}

TEST_F(Cli, BinaryAndIntelHexOutput) {
  const std::string corner = Png("corner.png", CornerPixel());
  const std::string bytes = '\x80' + std::string(31, '\0');
  // Binary output is the bytes themselves, chosen by the option or by the project's setting.
  EXPECT_EQ(Run({"convert", corner, "--output", "bin"}).out, bytes);
  EXPECT_EQ(Run({"convert", corner, "--set", "DHec=1"}).out, bytes);
  ASSERT_EQ(Run({"convert", corner, "--output", "bin", "-o", out_ + "/image.bin"}).status, 0);
  EXPECT_EQ(ReadFile(out_ + "/image.bin"), bytes);

  // Records of 8 bytes, 6 address digits, from 0x1230: 00 12 30 and 80 make the checksum 36.
  const Result hex = Run(
      {"convert", corner, "--output", "hex", "--hex-line", "8", "--hex-address-digits", "6", "--hex-offset", "0x1234"});
  ASSERT_EQ(hex.status, 0) << hex.err;
  EXPECT_EQ(hex.out.rfind(":0800123000800000000000000036\n:08001238", 0), 0u) << hex.out;
  EXPECT_EQ(hex.out.substr(hex.out.size() - 12), ":00000001FF\n");
  // The project's Intel HEX setting with the default records; --output text overrides it.
  EXPECT_EQ(Run({"convert", corner, "--set", "DIHec=1"}).out.rfind(":1000000080", 0), 0u);
  EXPECT_TRUE(Has(Run({"convert", corner, "--set", "DIHec=1", "--output", "text"}).out, "0x80"));
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
  // The parameter file names the picture and the file written (its whole text is the library's golden file).
  const std::string info = ReadFile(out_ + "/logo-big.rtf");
  EXPECT_TRUE(Has(info, "\nBitmap Source file : p.png\nData table created : logo-big.h\n")) << info;

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

TEST_F(Cli, Version) {
  const Result version = Run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, std::string("rastermill ") + rm::ProgramVersion() + "\n");
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
}

}  // namespace
