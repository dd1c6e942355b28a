// Output file names, the parameter file beside the table and the save at the end of the Convert
// command. The parameter files are compared with reviewed files in tests/golden/infofile.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <tuple>

#include "engine/OutputNaming.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rm::OutputKind;
using rmtest::ReadFile;
using rmtest::TestProgram;
using Names = std::vector<std::string>;

void Set(TestProgram& p, const char* key, const std::string& value) {
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(p.app, key, value, error)) << error;
}

Names NamesIn(const std::string& folder) {
  Names names;
  for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// The texts of the messages shown, each with its title.
Names Shown(const TestProgram& p) {
  Names out;
  for (const auto& m : p.ui.messages) out.push_back(m.text + "|" + m.title);
  return out;
}

void SetArea(rm::ConversionSession& s, int x1, int y1, int x2, int y2) {
  std::tie(s.ExportAreaX1, s.ExportAreaY1, s.ExportAreaX2, s.ExportAreaY2) = std::make_tuple(x1, y1, x2, y2);
}

TEST(OutputNaming, ExtensionByOutputKindAndLanguage) {
  struct Case {
    OutputKind kind;
    std::vector<const char*> switches;  // language keys turned on
    const char* libraryExtension;       // fexts; nullptr keeps the default
    const char* expected;
  } cases[] = {
      {OutputKind::Bits8, {}, nullptr, "NewBitmap.h"},
      {OutputKind::Bits16, {"cfil"}, nullptr, "NewBitmap.c"},
      {OutputKind::Bits8, {"libf"}, nullptr, "NewBitmap.lib"},
      // Several switches on: assembler, library, BASIC, C is the order of precedence.
      {OutputKind::Bits8, {"cfil", "Asmf"}, nullptr, "NewBitmap.asm"},
      {OutputKind::Bits8, {"libf", "Asmf"}, nullptr, "NewBitmap.asm"},
      {OutputKind::Bits8, {"cfil", "basf", "libf"}, "x", "NewBitmap.x"},
      {OutputKind::Bits8, {"cfil", "basf"}, nullptr, "NewBitmap.bas"},
      // The machine outputs win over any language.
      {OutputKind::BinaryFile, {"Asmf", "cfil"}, nullptr, "NewBitmap.bin"},
      {OutputKind::IntelHex, {"libf"}, nullptr, "NewBitmap.hex"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    for (const char* key : c.switches) Set(p, key, "1");
    if (c.libraryExtension) Set(p, "fexts", c.libraryExtension);
    p.app.mainForm.SetOutputKind(c.kind);  // the output kind commands rename the output at once
    EXPECT_EQ(p.app.session.OutputFileName, c.expected);
    EXPECT_EQ(p.app.mainForm.defineOutputFileName(), c.expected);
  }
}

TEST(OutputNaming, OutputNameFromTheLastPicture) {
  const std::pair<const char*, const char*> cases[] = {
      {"/pictures/logo.png", "logo.h"},
      {"a.b.bmp", "a.b.h"},
      {"dir.d/noext", "noext.h"},
      {".hidden", ".hidden.h"},
  };
  for (const auto& [picture, expected] : cases) {
    TestProgram p;
    Set(p, "nbmfn", picture);
    EXPECT_EQ(p.app.mainForm.defineOutputFileName(), expected) << picture;
  }
}

// The name itself comes from the file name as the header template names it (brackets and dashes
// dropped); the half or the frame is added.
TEST(OutputNaming, TableNameMarksTheHalfOrTheFrame) {
  const std::tuple<const char*, int, int, const char*, const char*> cases[] = {
      // file, half (1 upper, 2 lower), frame, underscore, name
      {"logo.h", 1, 0, "_", "logo_U"},
      {"lo-go.h", 2, 0, "_", "logo_L"},
      {"walk[3].h", 0, 12, "__", "walk__12"},
      {"walk.h", 2, 1, "_", "walk_1"},  // a frame carries its number, no half mark
  };
  for (const auto& [file, half, frame, underscore, expected] : cases) {
    rm::ConversionSession s;
    s.OutputFileName = file;
    s.HalfExport = half != 0;
    s.LowerHalf = half == 2;
    s.Underscore = underscore;
    EXPECT_EQ(rm::OutputTableName(s, frame), expected) << file << " half " << half << " frame " << frame;
  }
}

TEST(OutputNaming, OutputAndParameterFilePaths) {
  const std::array<const char*, 4> cases[] = {
      // folder, file, output, parameter file
      {"", "NewBitmap.h", "NewBitmap.h", "NewBitmap.rtf"},
      {"/out", "x.y.bin", "/out/x.y.bin", "/out/x.y.rtf"},
      {"/", "x.h", "/x.h", "/x.rtf"},
      {"rel/dir", "noext", "rel/dir/noext", "rel/dir/noext.rtf"},
  };
  for (const auto& [folder, file, output, info] : cases) {
    rm::ConversionSession s;
    s.OutputFolder = folder;
    s.OutputFileName = file;
    EXPECT_EQ(rm::OutputPath(s), output);
    EXPECT_EQ(rm::InfoFileName(s), info);
  }
}

TEST(OutputNaming, TrueOriginMirrorsFromTheOriginCorner) {
  // The area x 8..39, y 16..31 of a 128 x 64 canvas, as reported from each corner.
  using C = rm::OriginCorner;
  const std::tuple<C, bool, std::array<int, 4>> cases[] = {
      {C::TR, true, {88, 16, 119, 31}},
      {C::BL, true, {8, 32, 39, 47}},
      {C::BR, false, {8, 16, 39, 31}},
  };
  for (const auto& [origin, trueOrigin, expected] : cases) {
    rm::ConversionSession s;
    s.CanvasWidth = 128;
    s.CanvasHeight = 64;
    SetArea(s, 8, 16, 40, 32);
    s.Origin = origin;
    s.TrueOrigin = trueOrigin;
    const rm::AreaCorners a = rm::ReportedArea(s);
    EXPECT_EQ((std::array<int, 4>{a.x, a.y, a.x2, a.y2}), expected) << static_cast<int>(origin) << " " << trueOrigin;
  }
}

// Holds a file the way another program would, while it lives.
struct Held {
  int fd;
  explicit Held(const std::string& path) : fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    EXPECT_EQ(flock(fd, LOCK_EX | LOCK_NB), 0) << path;
  }
  ~Held() { close(fd); }
};

// A fresh output folder, removed with the test.
class OutputFolder : public ::testing::Test {
 public:
  // Empties the folder; prepares a program with a monochrome canvas whose results go into it.
  void Prepare(TestProgram& p, const Bitmap& picture = Bitmap(128, 64), bool wholeFile = false) {
    for (const auto& e : fs::directory_iterator(dir_)) fs::remove_all(e.path());
    p.Setup(1, picture, wholeFile);
    p.app.session.OutputFolder = dir_;
  }

  rmtest::TempDir tmp_;
  const std::string dir_ = tmp_.path;
};

TEST_F(OutputFolder, GoldenParameterFiles) {
  // To Left All from the bottom right corner, so the true origin mirrors both axes. The default
  // header template asks for the true origin; a template without [&TRUEORG] does not.
  const auto area = [this](bool trueOrigin) {
    return [this, trueOrigin](TestProgram& p) {
      auto& s = p.app.session;
      if (!trueOrigin) {
        s.HeaderIncludeFile = dir_ + "/plain.txt";
        std::ofstream(s.HeaderIncludeFile) << "const uint8_t [&NAME][] = {\n";
      }
      ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::ToLeftAll));
      p.app.mainForm.ToggleOriginCorner();
      ASSERT_EQ(s.Origin, rm::OriginCorner::BR);
      s.SelectionActive = true;
      SetArea(s, 8, 16, 40, 32);
      p.app.globals.ExportEntry = 3;
    };
  };
  const std::string areaQuestion = " Export Selected Area to Data Array ? |Confirm";
  const std::tuple<const char*, std::function<void(TestProgram&)>, Names> cases[] = {
      {"default.rtf", nullptr, {}},
      {"16bit.rtf", [](TestProgram& p) { p.app.mainForm.data16bitClick(); }, {}},
      {"msb-last.rtf", [](TestProgram& p) { p.app.mainForm.MsbLast(); }, {}},
      {"binary.rtf", [](TestProgram& p) { p.app.mainForm.HexOutput1Click(); }, {}},
      {"compressed.rtf",
       [](TestProgram& p) {
         Bitmap picture(128, 64);  // mostly white: long runs, so the compression pays
         for (int x = 0; x < 40; ++x) picture.SetPixel(x, 10 + x % 7, rm::kBlack);
         p.app.pixelForm.SetCanvas(picture);
         p.app.session.Compression = true;
       },
       {}},
      {"gray16-nibble-swap.rtf",
       [](TestProgram& p) {
         p.app.pixelForm.SetCanvas(Bitmap(16, 16));  // blank, so the mode change asks nothing
         p.app.mainForm.SetColourMode(26, true);
         p.app.pixelForm.SetCanvas(rmtest::PatternPicture(16, 16, p.app.session.ModeColours));
         Set(p, "snib", "1");
         Set(p, "cfil", "1");
         Set(p, "nbmfn", "/art/gray-ramp.png");
         p.app.session.SourceFileName = "gray-ramp.png";
       },
       {}},
      {"area-true-origin-on.rtf", area(true), {areaQuestion}},
      {"area-true-origin-off.rtf", area(false), {areaQuestion}},
  };
  for (const auto& [golden, setup, messages] : cases) {
    SCOPED_TRACE(golden);
    TestProgram p;
    Prepare(p, rmtest::PatternPicture(128, 64, {rm::kWhite, rm::kBlack}));
    if (setup) setup(p);
    ASSERT_TRUE(p.Convert());
    EXPECT_EQ(Shown(p), messages);
    const std::string info = ReadFile(p.app.mainForm.InfoFileName());
    const std::string diff = rmtest::CompareGolden(std::string("infofile/") + golden, info);
    EXPECT_TRUE(diff.empty()) << diff;
    EXPECT_EQ(p.app.infoText.Text(), info);  // the editors show what was written
  }
}

TEST_F(OutputFolder, ParameterFileHeldByAnotherProgram) {
  TestProgram p;
  Prepare(p);
  const std::string info = dir_ + "/NewBitmap.rtf";
  std::ofstream(info, std::ios::binary) << "old\n";
  {
    const Held held(info);
    ASSERT_TRUE(p.Convert());
  }
  EXPECT_EQ(Shown(p), Names{" RTF file was opened by another application ! |Error"});
  EXPECT_EQ(ReadFile(info), "old\n");
  EXPECT_EQ(ReadFile(dir_ + "/NewBitmap.h"), p.Text());  // the table is saved all the same
}

TEST_F(OutputFolder, SavesTableAndParameterFile) {
  TestProgram p;
  Prepare(p, Bitmap(128, 64), true);
  Set(p, "nbmfn", "/art/my-logo.png");
  p.app.globals.ExportEntry = 1;  // the upper half
  auto has = [&p](const std::string& line) {
    const auto& l = p.app.mainText.Lines();
    return std::find(l.begin(), l.end(), line) != l.end();
  };
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(NamesIn(dir_), (Names{"my-logo.h", "my-logo.rtf"}));
  EXPECT_EQ(ReadFile(dir_ + "/my-logo.h"), p.Text());
  EXPECT_FALSE(p.app.globals.EditorUnsaved);
  // The table is named after the file, the closing comment names the parameter file, and the
  // date comment is this conversion's, from the first one on.
  EXPECT_TRUE(has("const uint8_t  mylogo_U [512] PROGMEM = {")) << p.Text();
  EXPECT_TRUE(has("/* Save table and see info file " + dir_ + "/my-logo.rtf */")) << p.Text();
  EXPECT_TRUE(has("/* 14/11/2023 22:13:20 */")) << p.Text();

  // The next table has the next conversion's date, not the one before.
  p.clock = rm::FixedClock(1700000060);
  ASSERT_TRUE(p.Convert());
  EXPECT_TRUE(has("/* 14/11/2023 22:14:20 */")) << p.Text();
  EXPECT_NE(ReadFile(dir_ + "/my-logo.rtf").find("14/11/2023 22:14:20"), std::string::npos);
}

TEST_F(OutputFolder, NoFolderNoFiles) {
  // Without an output folder the table stays in the editor, unsaved, and nothing is written
  // into the working folder.
  TestProgram p;
  Prepare(p);
  p.app.session.OutputFolder = "";
  const fs::path before = fs::current_path();
  fs::current_path(dir_);
  const bool ok = p.Convert();
  fs::current_path(before);
  ASSERT_TRUE(ok);
  EXPECT_TRUE(fs::is_empty(dir_));
  EXPECT_TRUE(p.app.globals.EditorUnsaved);
}

TEST_F(OutputFolder, ExistingFileAsksUnlessAlwaysOverwrite) {
  struct Case {
    const char* alwaysOverwrite;  // nullptr: the factory setting
    const char* answer;           // nullptr: no question expected
    bool replaced;
  } cases[] = {{"0", "No", false}, {"0", "Yes", true}, {"1", nullptr, true}, {nullptr, nullptr, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.alwaysOverwrite ? c.alwaysOverwrite : "factory") + " " + (c.answer ? c.answer : "-"));
    TestProgram p;
    Prepare(p);
    const std::string path = dir_ + "/NewBitmap.h";
    std::ofstream(path, std::ios::binary) << "old\n";
    if (c.alwaysOverwrite) Set(p, "Dnask", c.alwaysOverwrite);
    if (c.answer) p.ui.answers.push_back(c.answer);
    ASSERT_TRUE(p.Convert());
    EXPECT_EQ(Shown(p), c.answer ? Names{" File already exits,  Overwrite ?|Confirm"} : Names{});
    EXPECT_EQ(ReadFile(path), c.replaced ? p.Text() : "old\n");
    EXPECT_EQ(p.app.globals.EditorUnsaved, !c.replaced);
  }
}

TEST_F(OutputFolder, RefusedSavesKeepTheTextInTheEditor) {
  const std::string denied = " File could not be saved to disk, access denied ! \r Reason = Folder or File is ";
  const std::string rtfHeld = " RTF file was opened by another application ! ";
  const fs::perms keep = fs::perms::unknown, readOnly = fs::perms::owner_read | fs::perms::owner_exec;
  struct Case {
    const char* name;
    bool oldOutput, held;
    const char* folder;                // under the test's folder
    fs::perms folderMode, outputMode;  // `keep` leaves them as they are
    Names errors;
  } cases[] = {
      {"output held by another program", true, true, "", keep, keep, {denied + "in use"}},
      {"folder missing", false, false, "/no/such", keep, keep, {rtfHeld, denied + "missing"}},
      {"folder read only", false, false, "", readOnly, keep, {rtfHeld, denied + "read only"}},
      {"output read only", true, false, "", keep, fs::perms::owner_read, {denied + "read only"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    if ((c.folderMode != keep || c.outputMode != keep) && geteuid() == 0) continue;  // root writes anywhere
    TestProgram p;
    Prepare(p);
    const std::string output = dir_ + "/NewBitmap.h";
    if (c.oldOutput) std::ofstream(output, std::ios::binary) << "old\n";
    std::optional<Held> held;
    if (c.held) held.emplace(output);
    if (c.outputMode != keep) fs::permissions(output, c.outputMode, fs::perm_options::replace);
    if (c.folderMode != keep) fs::permissions(dir_, c.folderMode, fs::perm_options::replace);
    p.app.session.OutputFolder = dir_ + c.folder;
    ASSERT_TRUE(p.Convert());
    held.reset();
    fs::permissions(dir_, fs::perms::owner_all, fs::perm_options::add);
    Names errors;
    for (const auto& m : p.ui.messages)
      if (m.title == "Error") errors.push_back(m.text);
    EXPECT_EQ(errors, c.errors);
    EXPECT_GT(p.app.mainText.Count(), 64u);
    // Nothing half-written: an old file is whole, and no temporary is left beside it.
    for (const auto& name : NamesIn(dir_)) EXPECT_EQ(name.find(".tmp"), std::string::npos) << name;
    EXPECT_EQ(fs::exists(output), c.oldOutput);
    if (c.oldOutput) {
      EXPECT_EQ(ReadFile(output), "old\n");
    }
  }
}

}  // namespace
