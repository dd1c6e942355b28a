// Intel HEX and Binary File output through the Convert command: record text against reviewed
// files in tests/golden/intelhex, the records read back by objcopy, the Export dialog's fields,
// the one-off binary export and the save of the binary file.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/HexRecordReader.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rm::OutputKind;
using rmtest::TestProgram;

constexpr int k65536Colours = 59;  // two bytes a pixel

// Colours of the current mode's table, so the picture needs no reduction.
Bitmap Picture(const rm::ConversionSession& s, int w, int h) {
  std::vector<rm::Colour> colours;
  const auto& table = s.PaletteTable.empty() ? s.ModeColours : s.PaletteTable;
  const std::size_t step = std::max<std::size_t>(1, table.size() / 40);
  for (std::size_t i = 0; i < table.size(); i += step) colours.push_back(table[i]);
  if (colours.empty()) colours = {rm::kBlack, rm::kWhite};
  return rmtest::PatternPicture(w, h, colours, 5);
}

struct Settings {
  int perLine = 16;
  int digits = 4;
  std::string offset = "0000";
};

// Converts with the output kind and, for Intel HEX, the record settings typed into the dialog.
void ConvertWith(TestProgram& p, int mode, int w, int h, OutputKind kind, const Settings& hex = {}) {
  p.app.mainForm.SetColourMode(mode, true);
  p.app.pixelForm.SetCanvas(Picture(p.app.session, w, h));
  p.app.mainForm.SetOutputKind(kind);
  p.ui.exportDialog = [hex](rm::ExportDialogState& d) {
    d.hexBytesPerLine = hex.perLine;
    d.addressDigits = hex.digits;
    d.addressOffset = hex.offset;
    return true;
  };
  ASSERT_TRUE(p.Convert()) << (p.ui.messages.empty() ? "" : p.ui.messages.back().text);
}

std::vector<std::uint8_t> BinaryOf(int mode, int w, int h) {
  TestProgram p;
  ConvertWith(p, mode, w, h, OutputKind::BinaryFile);
  return p.app.hex.Bytes();
}

TEST(IntelHexOutput, GoldenRecordsForEachAddressWidth) {
  struct Case {
    const char* golden;
    Settings hex;
    std::uint64_t firstAddress;
  } cases[] = {
      {"intelhex/addr4-16.hex", {16, 4, "0000"}, 0},
      {"intelhex/addr6-8.hex", {8, 6, "1234"}, 0x1230},
      {"intelhex/addr8-32.hex", {32, 8, "00ff001f"}, 0x00FF0010},
  };
  // 20 x 13 pixels of two bytes: 520 bytes, a short last record at 16 and 32 per line.
  const std::vector<std::uint8_t> binary = BinaryOf(k65536Colours, 20, 13);
  ASSERT_EQ(binary.size(), 520u);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.golden);
    TestProgram p;
    ConvertWith(p, k65536Colours, 20, 13, OutputKind::IntelHex, c.hex);
    const std::string diff = rmtest::CompareGolden(c.golden, p.Text());
    EXPECT_TRUE(diff.empty()) << diff;

    // Read back, the records hold the Binary output's bytes at consecutive addresses.
    const auto& lines = p.app.mainText.Lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), ":00000001FF");
    std::vector<std::uint8_t> data;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
      const rmtest::HexRecord r = rmtest::ParseHexRecord(lines[i], c.hex.digits);
      ASSERT_EQ(r.type, 0) << lines[i];
      EXPECT_EQ(r.address, c.firstAddress + data.size()) << lines[i];
      EXPECT_EQ(r.byteSum % 256, 0) << lines[i];
      data.insert(data.end(), r.data.begin(), r.data.end());
    }
    EXPECT_EQ(data, binary);
    EXPECT_TRUE(p.app.hex.Bytes().empty()) << "Intel HEX goes to the text only";
  }
}

TEST(IntelHexOutput, ObjcopyReadsBackTheBinaryOutput) {
  if (std::system("command -v objcopy >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "objcopy (binutils) is not installed, so there is no independent Intel HEX reader to check with";
  const rmtest::TempDir tmp;
  const std::string& dir = tmp.path;
  struct Case {
    const char* name;
    int w, h;
    Settings hex;
  } cases[] = {
      // 68000 bytes: past 64 KiB, where 4 digit addresses need segment records.
      {"large", 200, 170, {16, 4, "0000"}},
      // 420 bytes from FFF0: a segment record after the first record, a short last one.
      {"offset, 32 per line", 30, 7, {32, 4, "FFF0"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TestProgram p;
    ConvertWith(p, k65536Colours, c.w, c.h, OutputKind::IntelHex, c.hex);
    const std::string in = dir + "/in.hex", out = dir + "/out.bin";
    std::ofstream(in, std::ios::binary) << p.Text();
    fs::remove(out);
    const std::string command = "objcopy -I ihex -O binary '" + in + "' '" + out + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    const std::string read = rmtest::ReadFile(out);
    const std::vector<std::uint8_t> binary = BinaryOf(k65536Colours, c.w, c.h);
    ASSERT_EQ(read.size(), binary.size());
    EXPECT_TRUE(std::equal(binary.begin(), binary.end(), read.begin(),
                           [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); }));
  }
}

TEST(IntelHexOutput, ExportDialogCarriesTheRecordSettings) {
  TestProgram p;
  p.Setup(1, Bitmap(32, 8));
  p.app.mainForm.IntelHexOutputClick();
  p.app.session.HexBytesPerLine = 32;
  p.app.session.HexAddressDigits = 6;
  p.app.session.HexAddressOffset = 0x1A0;
  rm::ExportDialogState shown;
  p.ui.exportDialog = [&shown](rm::ExportDialogState& d) {
    shown = d;
    d.addressOffset = "12G";
    return true;
  };
  EXPECT_FALSE(p.Convert());
  EXPECT_EQ(shown.addressDigits, 6);
  EXPECT_EQ(shown.addressOffset, "01A0");
  EXPECT_EQ(p.ui.messages.size(), 1u);
  EXPECT_TRUE(p.app.mainText.Empty());
  EXPECT_EQ(p.app.session.HexAddressOffset, 0x1A0u);

  // Other output kinds leave the record settings as they were.
  TestProgram text;
  text.Setup(1, Bitmap(32, 8));
  text.ui.exportDialog = [](rm::ExportDialogState& d) {
    d.addressDigits = 8;
    d.addressOffset = "12G";
    return true;
  };
  EXPECT_TRUE(text.Convert());
  EXPECT_EQ(text.app.session.HexAddressDigits, 4);
}

TEST(IntelHexOutput, OnlyAFinishedTableIsClosed) {
  TestProgram p;
  p.Setup(1, Bitmap(32, 16));  // 64 bytes
  p.app.mainForm.IntelHexOutputClick();
  p.ui.escapeAfterPolls = 40;
  EXPECT_FALSE(p.Convert());
  // Two full records stand; the eight pending bytes and the end record are not written.
  ASSERT_EQ(p.app.mainText.Count(), 2u);
  EXPECT_EQ(p.app.mainText[1].substr(0, 9), ":10001000");
}

TEST(IntelHexOutput, ExportToBinaryKeepsTheUsersOutputSettings) {
  const Bitmap picture = rmtest::PatternPicture(32, 8, {rm::kBlack, rm::kWhite});
  TestProgram plain;
  plain.Setup(1, picture);
  plain.app.mainForm.HexOutput1Click();
  ASSERT_TRUE(plain.Convert());

  TestProgram p;
  p.Setup(1, picture);
  p.app.mainForm.data16bitClick();
  p.app.session.Compression = true;
  ASSERT_TRUE(p.app.mainForm.ExportToBinaryClick());
  EXPECT_EQ(p.app.hex.Bytes(), plain.app.hex.Bytes());
  EXPECT_EQ(p.app.session.Output, OutputKind::Bits16);

  // With Intel Hex chosen it is an ordinary Intel HEX conversion.
  TestProgram hex;
  hex.Setup(1, picture);
  hex.app.mainForm.IntelHexOutputClick();
  ASSERT_TRUE(hex.app.mainForm.ExportToBinaryClick());
  EXPECT_EQ(hex.app.mainText.Last(), ":00000001FF");
}

TEST(IntelHexOutput, BinaryFileIsSavedOnlyWithAlwaysOverwrite) {
  const rmtest::TempDir tmp;
  const std::string& dir = tmp.path;
  const std::string target = dir + "/NewBitmap.bin";
  auto convert = [&](OutputKind kind, bool always, const std::string& folder) {
    TestProgram p;
    p.Setup(1, rmtest::PatternPicture(32, 8, {rm::kBlack, rm::kWhite}));
    p.app.mainForm.SetOutputKind(kind);
    p.app.session.OutputFolder = folder;
    p.app.globals.AlwaysOverwrite = always;
    const bool ok = p.Convert();
    return std::make_tuple(ok, p.app.hex.Bytes(), p.ui.messages);
  };

  auto [ok, bytes, messages] = convert(OutputKind::BinaryFile, false, dir);
  EXPECT_FALSE(fs::exists(target));
  std::tie(ok, bytes, messages) = convert(OutputKind::IntelHex, true, dir);
  EXPECT_FALSE(fs::exists(target));

  std::ofstream(target, std::ios::binary) << std::string(100, 'x');  // replaced whole
  std::tie(ok, bytes, messages) = convert(OutputKind::BinaryFile, true, dir);
  EXPECT_EQ(rmtest::ReadFile(target), std::string(bytes.begin(), bytes.end()));
  EXPECT_EQ(bytes.size(), 32u);

  // A failed save says why; the conversion itself stands and its bytes stay in the editor. The
  // parameter file is refused first (its folder is missing too), then the data file.
  std::tie(ok, bytes, messages) = convert(OutputKind::BinaryFile, true, dir + "/missing");
  EXPECT_TRUE(ok);
  EXPECT_EQ(bytes.size(), 32u);
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[1].text.rfind(" File could not be saved to disk, access denied ! \r", 0), 0u);
}

}  // namespace
