// Output file names, the parameter file beside the table and the save at the end of the Convert
// command. The parameter files are compared with reviewed files in tests/golden/infofile.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>

#include "engine/OutputNaming.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::Bitmap;
using rm::OutputKind;
using rm::PagingDirection;
using rmtest::TestProgram;

void Set(TestProgram& p, const char* key, const std::string& value) {
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(p.app, key, value, error)) << error;
}

std::vector<std::string> Names(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// A fresh output folder, removed with the test.
class OutputFolder : public ::testing::Test {
 public:
  void SetUp() override {
    dir_ = rmtest::MakeTempDir();
    ASSERT_FALSE(dir_.empty());
  }
  void TearDown() override {
    std::error_code ec;
    fs::permissions(dir_, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(dir_, ec);
  }
  // A program with a 128 x 64 monochrome canvas whose results go into the folder.
  void Prepare(TestProgram& p, const Bitmap& picture = Bitmap(128, 64)) {
    p.Setup(1, picture);
    p.app.session.OutputFolder = dir_;
  }
  // Holds `path` the way another program would, until Release.
  void Hold(const std::string& path) {
    held_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(held_, 0);
    ASSERT_EQ(flock(held_, LOCK_EX | LOCK_NB), 0);
  }
  void Release() {
    if (held_ >= 0) close(held_);
    held_ = -1;
  }
  std::vector<std::string> MessagesTitled(const TestProgram& p, const std::string& title) const {
    std::vector<std::string> out;
    for (const auto& m : p.ui.messages)
      if (m.title == title) out.push_back(m.text);
    return out;
  }

  std::string dir_;
  int held_ = -1;
};

TEST(OutputNaming, ExtensionByOutputKindAndLanguage) {
  struct Case {
    OutputKind kind;
    std::vector<const char*> switches;  // language keys turned on
    const char* libraryExtension;       // fexts; nullptr keeps the default
    const char* expected;
  } cases[] = {
      {OutputKind::Bits8, {}, nullptr, "NewBitmap.h"},
      {OutputKind::Bits16, {"cfil"}, nullptr, "NewBitmap.c"},
      {OutputKind::Bits32, {"basf"}, nullptr, "NewBitmap.bas"},
      {OutputKind::Bits8, {"libf"}, nullptr, "NewBitmap.lib"},
      {OutputKind::Bits8, {"libf"}, "inc", "NewBitmap.inc"},
      {OutputKind::Bits8, {"Asmf"}, nullptr, "NewBitmap.asm"},
      // Several switches on: assembler, library, BASIC, C is the order of precedence.
      {OutputKind::Bits8, {"cfil", "Asmf"}, nullptr, "NewBitmap.asm"},
      {OutputKind::Bits8, {"cfil", "basf", "libf"}, "x", "NewBitmap.x"},
      {OutputKind::Bits8, {"cfil", "basf"}, nullptr, "NewBitmap.bas"},
      // The machine outputs win over any language.
      {OutputKind::BinaryFile, {"Asmf", "cfil"}, nullptr, "NewBitmap.bin"},
      {OutputKind::IntelHex, {"libf"}, nullptr, "NewBitmap.hex"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    EXPECT_EQ(p.app.session.OutputFileName, "NewBitmap.h");
    for (const char* key : c.switches) Set(p, key, "1");
    if (c.libraryExtension) Set(p, "fexts", c.libraryExtension);
    p.app.mainForm.SetOutputKind(c.kind);  // the output kind commands rename the output at once
    EXPECT_EQ(p.app.session.OutputFileName, c.expected);
    EXPECT_EQ(p.app.mainForm.defineOutputFileName(), c.expected);
  }
}

TEST(OutputNaming, OutputNameFromTheLastPicture) {
  const std::pair<const char*, const char*> cases[] = {
      {"NewBitmap.bmp", "NewBitmap.h"}, {"/pictures/logo.png", "logo.h"}, {"a.b.bmp", "a.b.h"},
      {"noext", "noext.h"},             {"dir.d/noext", "noext.h"},        {".hidden", ".hidden.h"},
      {"walk[3]-x.gif", "walk[3]-x.h"},
  };
  for (const auto& [picture, expected] : cases) {
    TestProgram p;
    Set(p, "nbmfn", picture);
    EXPECT_EQ(p.app.mainForm.defineOutputFileName(), expected) << picture;
  }
}

TEST(OutputNaming, TableNameRules) {
  struct Case {
    const char* file;
    int half;  // 0 whole canvas, 1 upper half, 2 lower half
    int frame;
    const char* underscore;
    const char* expected;
  } cases[] = {
      {"NewBitmap.h", 0, 0, "_", "NewBitmap"},
      {"my-logo.h", 0, 0, "_", "mylogo"},
      {"a-b-c.c", 0, 0, "_", "abc"},
      {"walk[3].h", 0, 0, "_", "walk"},
      {"walk[3]-x[12].asm", 0, 0, "_", "walkx"},
      {"[all].h", 0, 0, "_", ""},
      {"name.with.dots.h", 0, 0, "_", "name.with.dots"},
      {"logo.h", 1, 0, "_", "logo_U"},
      {"lo-go.h", 2, 0, "_", "logo_L"},
      {"walk[3].h", 0, 3, "_", "walk_3"},
      {"walk[3].h", 0, 12, "__", "walk__12"},
      {"walk.h", 2, 1, "_", "walk_1"},  // a frame carries its number, no half mark
  };
  for (const auto& c : cases) {
    rm::ConversionSession s;
    s.OutputFileName = c.file;
    s.HalfExport = c.half != 0;
    s.LowerHalf = c.half == 2;
    s.Underscore = c.underscore;
    EXPECT_EQ(rm::OutputTableName(s, c.frame), c.expected) << c.file << " half " << c.half << " frame " << c.frame;
  }
}

TEST(OutputNaming, OutputAndParameterFilePaths) {
  struct Case {
    const char* folder;
    const char* file;
    const char* output;
    const char* info;
  } cases[] = {
      {"", "NewBitmap.h", "NewBitmap.h", "NewBitmap.rtf"},
      {"/out", "x.c", "/out/x.c", "/out/x.rtf"},
      {"/out", "x.y.bin", "/out/x.y.bin", "/out/x.y.rtf"},
      {"rel/dir", "noext", "rel/dir/noext", "rel/dir/noext.rtf"},
      {"/", "x.h", "/x.h", "/x.rtf"},
  };
  for (const auto& c : cases) {
    rm::ConversionSession s;
    s.OutputFolder = c.folder;
    s.OutputFileName = c.file;
    EXPECT_EQ(rm::OutputPath(s), c.output);
    EXPECT_EQ(rm::InfoFileName(s), c.info);
  }
}

TEST(OutputNaming, TrueOriginMirrorsFromTheOriginCorner) {
  // The area x 8..39, y 16..31 of a 128 x 64 canvas, as reported from each corner.
  struct Case {
    rm::OriginCorner origin;
    bool trueOrigin;
    rm::AreaCorners expected;
  } cases[] = {
      {rm::OriginCorner::TL, true, {8, 16, 39, 31}},  {rm::OriginCorner::TR, true, {88, 16, 119, 31}},
      {rm::OriginCorner::BL, true, {8, 32, 39, 47}},  {rm::OriginCorner::BR, true, {88, 32, 119, 47}},
      {rm::OriginCorner::BR, false, {8, 16, 39, 31}},
  };
  for (const auto& c : cases) {
    rm::ConversionSession s;
    s.CanvasWidth = 128;
    s.CanvasHeight = 64;
    s.ExportAreaX1 = 8;
    s.ExportAreaY1 = 16;
    s.ExportAreaX2 = 40;
    s.ExportAreaY2 = 32;
    s.Origin = c.origin;
    s.TrueOrigin = c.trueOrigin;
    const rm::AreaCorners a = rm::ReportedArea(s);
    EXPECT_EQ((std::vector<int>{a.x, a.y, a.x2, a.y2}),
              (std::vector<int>{c.expected.x, c.expected.y, c.expected.x2, c.expected.y2}))
        << static_cast<int>(c.origin) << " " << c.trueOrigin;
  }
}

TEST(OutputNaming, NewKeysKeepTheirFactoryDefaults) {
  TestProgram p;
  const std::pair<const char*, const char*> keys[] = {
      {"OFP", ""},      {"Asmf", "0"},  {"libf", "0"}, {"basf", "0"}, {"cfil", "0"},
      {"nbmfn", "NewBitmap.bmp"}, {"fexts", "lib"}, {"Dnask", "1"},
  };
  for (const auto& [key, value] : keys) {
    const rm::SettingDef* def = rm::FindSetting(key);
    ASSERT_NE(def, nullptr) << key;
    EXPECT_EQ(def->defaultValue, value) << key;
    EXPECT_EQ(rm::GetSetting(p.app, *def), value) << key;
  }
}

// ---- the parameter file -------------------------------------------------------------------------

struct InfoCase {
  const char* golden;
  std::function<void(TestProgram&)> setup;
};

class InfoFile : public OutputFolder {
 protected:
  void Check(const InfoCase& c) {
    SCOPED_TRACE(c.golden);
    for (const auto& e : fs::directory_iterator(dir_)) fs::remove_all(e.path());
    TestProgram p;
    Prepare(p, rmtest::PatternPicture(128, 64, {rm::kWhite, rm::kBlack}));
    if (c.setup) c.setup(p);
    ASSERT_TRUE(p.Convert()) << (p.ui.messages.empty() ? "" : p.ui.messages.back().text);
    EXPECT_TRUE(p.ui.messages.empty()) << p.ui.messages.front().text;
    const std::string info = rmtest::ReadFile(p.app.mainForm.InfoFileName());
    const std::string diff = rmtest::CompareGolden(std::string("infofile/") + c.golden, info);
    EXPECT_TRUE(diff.empty()) << diff;
    // The editors show what was written, and the next top comment quotes its date.
    EXPECT_EQ(p.app.infoText.Text(), info);
    EXPECT_EQ(p.app.session.LastInfoDateText, "14/11/2023 22:13:20");
  }
};

TEST_F(InfoFile, GoldenParameterFiles) {
  const InfoCase cases[] = {
      {"default.rtf", nullptr},
      {"16bit.rtf", [](TestProgram& p) { p.app.mainForm.data16bitClick(); }},
      {"msb-last.rtf", [](TestProgram& p) { p.app.mainForm.MsbLast(); }},
      {"binary.rtf", [](TestProgram& p) { p.app.mainForm.HexOutput1Click(); }},
      {"compressed.rtf",
       [](TestProgram& p) {
         Bitmap picture(128, 64);  // mostly white: long runs, so the compression pays
         for (int x = 0; x < 40; ++x) picture.SetPixel(x, 10 + x % 7, rm::kBlack);
         p.app.pixelForm.SetCanvas(picture);
         p.app.session.Compression = true;
       }},
      {"gray16-nibble-swap.rtf",
       [](TestProgram& p) {
         p.app.pixelForm.SetCanvas(Bitmap(16, 16));  // blank, so the mode change asks nothing
         p.app.mainForm.SetColourMode(26, true);
         p.app.pixelForm.SetCanvas(rmtest::PatternPicture(16, 16, p.app.session.ModeColours));
         Set(p, "snib", "1");
         Set(p, "cfil", "1");
         Set(p, "nbmfn", "/art/gray-ramp.png");
         p.app.session.SourceFileName = "gray-ramp.png";
       }},
  };
  for (const auto& c : cases) Check(c);
}

TEST_F(InfoFile, AreaExportWithAndWithoutTrueOrigin) {
  // To Left All from the bottom right corner, so the true origin mirrors both axes. The default
  // header template asks for the true origin; a template without [&TRUEORG] does not.
  for (bool trueOrigin : {false, true}) {
    SCOPED_TRACE(trueOrigin);
    for (const auto& e : fs::directory_iterator(dir_)) fs::remove_all(e.path());
    TestProgram p;
    Prepare(p, rmtest::PatternPicture(128, 64, {rm::kWhite, rm::kBlack}));
    auto& s = p.app.session;
    if (!trueOrigin) {
      s.HeaderIncludeFile = dir_ + "/plain.txt";
      std::ofstream(s.HeaderIncludeFile) << "const uint8_t [&NAME][] = {\n";
    }
    ASSERT_TRUE(p.app.mainForm.SetDirection(PagingDirection::ToLeftAll));
    p.app.mainForm.ToggleOriginCorner();
    ASSERT_EQ(s.Origin, rm::OriginCorner::BR);
    s.SelectionActive = true;
    s.ExportAreaX1 = 8;
    s.ExportAreaY1 = 16;
    s.ExportAreaX2 = 40;
    s.ExportAreaY2 = 32;
    p.app.globals.ExportEntry = 3;
    ASSERT_TRUE(p.Convert());
    // The question of the area export is the one message of these runs.
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(p.ui.messages[0].text, " Export Selected Area to Data Array ? ");
    const std::string golden = trueOrigin ? "infofile/area-true-origin-on.rtf" : "infofile/area-true-origin-off.rtf";
    const std::string diff = rmtest::CompareGolden(golden, rmtest::ReadFile(p.app.mainForm.InfoFileName()));
    EXPECT_TRUE(diff.empty()) << diff;
  }
}

TEST_F(InfoFile, HeldByAnotherProgram) {
  TestProgram p;
  Prepare(p);
  const std::string info = dir_ + "/NewBitmap.rtf";
  std::ofstream(info, std::ios::binary) << "old\n";
  Hold(info);
  ASSERT_TRUE(p.Convert());
  Release();
  EXPECT_EQ(MessagesTitled(p, "Error"), std::vector<std::string>{" RTF file was opened by another application ! "});
  EXPECT_EQ(rmtest::ReadFile(info), "old\n");
  EXPECT_EQ(p.app.session.LastInfoDateText, "");  // no parameter file written, no date to quote
  // The table is saved all the same.
  EXPECT_EQ(rmtest::ReadFile(dir_ + "/NewBitmap.h"), p.Text());
  EXPECT_EQ(Names(dir_), (std::vector<std::string>{"NewBitmap.h", "NewBitmap.rtf"}));
}

// ---- the save at the end of the Convert command ------------------------------------------------

TEST_F(OutputFolder, SavesTableAndParameterFile) {
  TestProgram p;
  p.Setup(1, Bitmap(128, 64), true);
  p.app.session.OutputFolder = dir_;
  Set(p, "nbmfn", "/art/my-logo.png");
  p.app.globals.ExportEntry = 1;  // the upper half
  auto has = [&p](const std::string& line) {
    const auto& l = p.app.mainText.Lines();
    return std::find(l.begin(), l.end(), line) != l.end();
  };
  ASSERT_TRUE(p.Convert());
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(Names(dir_), (std::vector<std::string>{"my-logo.h", "my-logo.rtf"}));
  EXPECT_EQ(rmtest::ReadFile(dir_ + "/my-logo.h"), p.Text());
  EXPECT_FALSE(p.app.globals.EditorUnsaved);
  // The table is named after the file, the closing comment names the parameter file, and the
  // date comment stays empty until a parameter file has been written.
  EXPECT_TRUE(has("const uint8_t  mylogo_U [512] PROGMEM = {")) << p.Text();
  EXPECT_TRUE(has("/* Save table and see info file " + dir_ + "/my-logo.rtf */")) << p.Text();
  EXPECT_TRUE(has("/*  */")) << p.Text();

  // The next table quotes the date of the parameter file before it.
  ASSERT_TRUE(p.Convert());
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_TRUE(has("/* 14/11/2023 22:13:20 */")) << p.Text();
  EXPECT_EQ(rmtest::ReadFile(dir_ + "/my-logo.h"), p.Text());
}

TEST_F(OutputFolder, NoFolderNoFiles) {
  // Without an output folder the table stays in the editor, unsaved, and nothing is written
  // into the working folder.
  TestProgram p;
  p.Setup(1, Bitmap(128, 64));
  const fs::path before = fs::current_path();
  fs::current_path(dir_);
  const bool ok = p.Convert();
  fs::current_path(before);
  ASSERT_TRUE(ok);
  EXPECT_TRUE(fs::is_empty(dir_));
  EXPECT_TRUE(p.app.globals.EditorUnsaved);
  EXPECT_EQ(p.app.session.LastInfoDateText, "");
}

TEST_F(OutputFolder, ExistingFileAsksUnlessAlwaysOverwrite) {
  struct Case {
    const char* alwaysOverwrite;
    const char* answer;  // to " File already exits,  Overwrite ?"; nullptr: no question expected
    bool replaced;
  } cases[] = {{"0", "No", false}, {"0", "Yes", true}, {"1", nullptr, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.alwaysOverwrite) + " " + (c.answer ? c.answer : "-"));
    const std::string path = dir_ + "/NewBitmap.h";
    std::ofstream(path, std::ios::binary) << "old\n";
    TestProgram p;
    Prepare(p);
    Set(p, "Dnask", c.alwaysOverwrite);
    if (c.answer) p.ui.answers.push_back(c.answer);
    ASSERT_TRUE(p.Convert());
    std::vector<std::string> asked;
    for (const auto& m : p.ui.messages) asked.push_back(m.text + "|" + m.title);
    EXPECT_EQ(asked, c.answer ? std::vector<std::string>{" File already exits,  Overwrite ?|Confirm"}
                              : std::vector<std::string>{});
    EXPECT_EQ(rmtest::ReadFile(path), c.replaced ? p.Text() : "old\n");
    EXPECT_EQ(p.app.globals.EditorUnsaved, !c.replaced);
    EXPECT_FALSE(p.app.mainText.Empty());
  }
}

TEST_F(OutputFolder, BinaryOutputSavedOnlyWithAlwaysOverwrite) {
  Bitmap picture(128, 64);
  picture.SetPixel(0, 0, rm::kBlack);
  for (const char* always : {"1", "0"}) {
    SCOPED_TRACE(always);
    for (const auto& e : fs::directory_iterator(dir_)) fs::remove_all(e.path());
    TestProgram p;
    Prepare(p, picture);
    Set(p, "Dnask", always);
    p.app.mainForm.HexOutput1Click();
    ASSERT_TRUE(p.Convert());
    EXPECT_TRUE(p.ui.messages.empty());
    if (std::string(always) == "1") {
      std::string expected(1024, '\0');
      expected[0] = '\x80';
      EXPECT_EQ(rmtest::ReadFile(dir_ + "/NewBitmap.bin"), expected);
      EXPECT_EQ(Names(dir_), (std::vector<std::string>{"NewBitmap.bin", "NewBitmap.rtf"}));
    } else {
      EXPECT_EQ(Names(dir_), std::vector<std::string>{"NewBitmap.rtf"});
    }
  }
}

TEST_F(OutputFolder, RefusedSavesKeepTheTextInTheEditor) {
  const std::string denied = " File could not be saved to disk, access denied ! \r Reason = Folder or File is ";
  const std::string rtfHeld = " RTF file was opened by another application ! ";
  struct Case {
    const char* name;
    bool needsNonRoot;
    std::function<std::string(const std::string& dir)> prepare;  // returns the output folder
    std::vector<std::string> errors;
    std::function<void(OutputFolder&, const std::string& dir)> hold;
  } cases[] = {
      {"output held by another program", false,
       [](const std::string& dir) {
         std::ofstream(dir + "/NewBitmap.h", std::ios::binary) << "old\n";
         return dir;
       },
       {denied + "in use"},
       [](OutputFolder& t, const std::string& dir) { t.Hold(dir + "/NewBitmap.h"); }},
      {"folder missing", false, [](const std::string& dir) { return dir + "/no/such"; },
       {rtfHeld, denied + "missing"}, nullptr},
      {"folder read only", true,
       [](const std::string& dir) {
         fs::permissions(dir, fs::perms::owner_read | fs::perms::owner_exec, fs::perm_options::replace);
         return dir;
       },
       {rtfHeld, denied + "read only"}, nullptr},
      {"output read only", true,
       [](const std::string& dir) {
         std::ofstream(dir + "/NewBitmap.h", std::ios::binary) << "old\n";
         fs::permissions(dir + "/NewBitmap.h", fs::perms::owner_read, fs::perm_options::replace);
         return dir;
       },
       {denied + "read only"}, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    if (c.needsNonRoot && geteuid() == 0) continue;  // root writes anywhere
    for (const auto& e : fs::directory_iterator(dir_)) fs::remove_all(e.path());
    TestProgram p;
    Prepare(p);
    p.app.session.OutputFolder = c.prepare(dir_);
    if (c.hold) c.hold(*this, dir_);
    ASSERT_TRUE(p.Convert());
    Release();
    fs::permissions(dir_, fs::perms::owner_all, fs::perm_options::add);
    EXPECT_EQ(MessagesTitled(p, "Error"), c.errors);
    EXPECT_TRUE(p.app.globals.EditorUnsaved);
    EXPECT_GT(p.app.mainText.Count(), 64u);
    // Nothing half-written: an old file is whole, and no temporary is left beside it.
    for (const auto& name : Names(dir_)) {
      EXPECT_EQ(name.find(".tmp"), std::string::npos) << name;
      if (name == "NewBitmap.h") {
        EXPECT_EQ(rmtest::ReadFile(dir_ + "/" + name), "old\n");
      }
    }
  }
}

}  // namespace
