// The command line's Binary and Intel HEX output: the same bytes and records as the library
// makes, written whole, and the record options checked before anything runs.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/PlatformImageCodecs.h"
#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rm::OutputKind;
using rmtest::ReadFile;
using rmtest::TestProgram;

using Result = rmtest::CliResult;

class MachineOutput : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
    fs::create_directories(dir_ + "/home");
  }
  void TearDown() override { fs::remove_all(dir_); }

  Result Run(const std::vector<std::string>& args) { return rmtest::RunCli(args, dir_ + "/home"); }

  std::string Png(const Bitmap& picture) {
    const std::string path = dir_ + "/p.png";
    std::string error;
    EXPECT_TRUE(rm::PlatformImageCodecs().SavePng(picture, path, error)) << error;
    return path;
  }

  std::string dir_;
};

// A 65536-colour picture and what the library makes of it with the given output settings.
struct Library {
  Bitmap picture;
  std::string bytes, text;
};

Library Convert(OutputKind kind, int perLine = 16, int digits = 4, std::uint32_t offset = 0) {
  TestProgram p;
  p.app.mainForm.SetColourMode(59, true);
  std::vector<rm::Colour> colours;
  for (std::size_t i = 0; i < p.app.session.PaletteTable.size(); i += 1777) colours.push_back(p.app.session.PaletteTable[i]);
  Library l;
  l.picture = rmtest::PatternPicture(24, 20, colours, 3);  // 960 bytes
  p.app.pixelForm.SetCanvas(l.picture);
  p.app.mainForm.SetOutputKind(kind);
  p.app.session.HexBytesPerLine = perLine;
  p.app.session.HexAddressDigits = digits;
  p.app.session.HexAddressOffset = offset;
  // Named as the command line names its output after the picture "p.png".
  p.app.session.SourceFileName = "p.png";
  p.app.session.LastBitmapName = "p.png";
  EXPECT_TRUE(p.Convert());
  l.bytes.assign(p.app.hex.Bytes().begin(), p.app.hex.Bytes().end());
  l.text = p.Text();
  return l;
}

TEST_F(MachineOutput, SameBytesAndRecordsAsTheLibrary) {
  const Library bin = Convert(OutputKind::BinaryFile);
  ASSERT_EQ(bin.bytes.size(), 960u);
  const std::string png = Png(bin.picture);

  const Result toStdout = Run({"convert", png, "--mode", "c65k", "--output", "bin"});
  ASSERT_EQ(toStdout.status, 0) << toStdout.err;
  EXPECT_EQ(toStdout.out, bin.bytes);

  // An existing, longer file is replaced whole.
  const std::string target = dir_ + "/image.bin";
  std::ofstream(target, std::ios::binary) << std::string(5000, 'x');
  const Result toFile = Run({"convert", png, "--mode", "c65k", "--output", "bin", "-o", target});
  ASSERT_EQ(toFile.status, 0) << toFile.err;
  EXPECT_EQ(toFile.out, "");
  EXPECT_EQ(ReadFile(target), bin.bytes);

  const Library hex = Convert(OutputKind::IntelHex, 8, 6, 0x1234);
  const Result records = Run({"convert", png, "--mode", "c65k", "--output", "hex", "--hex-line", "8",
                              "--hex-address-digits", "6", "--hex-offset", "1234", "-o", "-"});
  ASSERT_EQ(records.status, 0) << records.err;
  EXPECT_EQ(records.out, hex.text);
  EXPECT_EQ(records.out.substr(0, 9), ":08001230");
  EXPECT_EQ(records.out.substr(records.out.size() - 12), ":00000001FF\n");

  // The defaults: 16 per line, 4 digits, from 0. --output text overrides an output kind setting.
  const Result defaults = Run({"convert", png, "--mode", "c65k", "--set", "DIHec=1"});
  ASSERT_EQ(defaults.status, 0) << defaults.err;
  EXPECT_EQ(defaults.out, Convert(OutputKind::IntelHex).text);
  const Result text = Run({"convert", png, "--mode", "c65k", "--set", "DIHec=1", "--output", "text"});
  ASSERT_EQ(text.status, 0) << text.err;
  EXPECT_EQ(text.out, Convert(OutputKind::Bits8).text);
}

TEST_F(MachineOutput, BadRecordOptionsAreUsageErrors) {
  const std::string png = Png(Bitmap(16, 8));
  const std::vector<std::vector<std::string>> cases = {
      {"--output", "hex", "--hex-offset", "12G4"},
      {"--output", "hex", "--hex-offset", "123456789"},
      {"--output", "hex", "--hex-offset", ""},
      {"--output", "hex", "--hex-offset", "0x"},
      {"--output", "hex", "--hex-line", "12"},
      {"--output", "hex", "--hex-address-digits", "5"},
      {"--output", "bin", "--width", "16"},
      {"--output", "binary"},
      {"-o", dir_ + "/a.c", "--output", dir_ + "/b.c"},
  };
  for (auto args : cases) {
    args.insert(args.begin(), {"convert", png});
    const Result r = Run(args);
    std::string shown;
    for (const auto& a : args) shown += a + " ";
    EXPECT_EQ(r.status, 2) << shown << r.err;
    EXPECT_EQ(r.out, "") << shown;
    EXPECT_NE(r.err, "") << shown;
  }
  EXPECT_FALSE(fs::exists(dir_ + "/a.c"));
  EXPECT_FALSE(fs::exists(dir_ + "/b.c"));
}

}  // namespace
