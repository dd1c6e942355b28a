// Whole generated files: comments, header template, table, descriptors and closing comment,
// compared with reviewed files in tests/golden/file. UPDATE_GOLDEN=1 rewrites them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <tuple>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::TestProgram;

// A small picture with a recognisable pattern: a frame and a diagonal.
Bitmap Picture(int w, int h) {
  Bitmap b(w, h);
  for (int x = 0; x < w; ++x) {
    b.SetPixel(x, 0, rm::kBlack);
    b.SetPixel(x, h - 1, rm::kBlack);
  }
  for (int y = 0; y < h; ++y) {
    b.SetPixel(0, y, rm::kBlack);
    b.SetPixel(w - 1, y, rm::kBlack);
    b.SetPixel(y * w / h, y, rm::kBlack);
  }
  return b;
}

struct FileCase {
  const char* file;
  int mode;
  Bitmap picture;
  std::function<void(TestProgram&)> setup;
};

void Check(const FileCase& c) {
  TestProgram p;
  p.Setup(c.mode, c.picture, true);
  if (c.setup) c.setup(p);
  ASSERT_TRUE(p.Convert()) << c.file;
  const std::string diff = rmtest::CompareGolden(std::string("file/") + c.file + ".txt", p.Text());
  EXPECT_TRUE(diff.empty()) << diff;
}

TEST(GoldenFile, Variants) {
  const FileCase cases[] = {
      // The blank 128 x 64 canvas of a new project, as a new user first converts it.
      {"default.h", 1, Bitmap(128, 64), nullptr},
      {"word16.h", 1, Picture(32, 8), [](TestProgram& p) { p.app.mainForm.data16bitClick(); }},
      {"word32-le.h", 1, Picture(32, 4),
       [](TestProgram& p) {
         p.app.mainForm.data32bitClick();
         p.app.mainForm.MsbLast();
       }},
      {"slashes.h", 1, Picture(16, 8), [](TestProgram& p) { p.app.session.Syntax.Comment = rm::CommentForm::Slashes; }},
      {"semicolon-asm.h", 1, Picture(16, 8),
       [](TestProgram& p) {
         auto& s = p.app.session.Syntax;
         s.Comment = rm::CommentForm::Semicolon;
         s.DataFormatKind = "H";
         s.LinePrefix = "  .db";
       }},
      {"no-header.h", 1, Picture(16, 8), [](TestProgram& p) { p.app.session.Syntax.NoHeader = true; }},
      {"no-comments.h", 1, Picture(16, 8), [](TestProgram& p) { p.app.session.Syntax.NoComments = true; }},
      {"groups.h", 1, Picture(16, 4),
       [](TestProgram& p) {
         p.app.mainForm.SetDataPerLine(2);
         p.app.session.Syntax.Groups = true;
       }},
      {"vertical-descriptors.h", 1, Picture(16, 16),
       [](TestProgram& p) {
         ASSERT_TRUE(p.app.mainForm.SetDirection(rm::PagingDirection::Down));
         p.app.session.CoordinatesDescriptors = true;
         p.app.session.DescriptorsEol = "; // set by the project";
       }},
      {"size-and-position-in-data.h", 1, Picture(16, 8),
       [](TestProgram& p) {
         p.app.session.GraphicSizeInData = true;
         p.app.session.GraphicPositionInData = true;
       }},
      {"gray4-two-pages.h", 25, Bitmap(16, 8), nullptr},
      {"c65k-uint16.h", 59, Bitmap(4, 2), [](TestProgram& p) { p.app.mainForm.data16bitClick(); }},
      // The pointer table under the template's own declaration, with the statistics after it.
      {"compressed.h", 1, Picture(64, 16), [](TestProgram& p) { p.app.session.Compression = true; }},
  };
  for (const auto& c : cases) Check(c);
}

TEST(GoldenFile, TemplateFromTheProject) {
  const std::string dir = rmtest::MakeTempDir();
  const std::string path = dir + "/project.txt";
  std::ofstream(path) << "//** kept above everything\n"
                         "; [&NAME] for the assembler\n"
                         "[&TRUEORG][&NAME]:  ; [&XPOS] [&YPOS] [&WIDTH] [&HEIGHT]\n"
                         "[&COMPRESSION]\n"
                         "x [&CNAME]\n";
  Check({"project-template.asm", 1, Picture(16, 4), [&](TestProgram& p) {
           p.app.session.HeaderIncludeFile = path;
           p.app.session.GraphicPositionInData = true;
           p.app.session.Syntax.Comment = rm::CommentForm::Semicolon;
           p.app.session.Syntax.DataFormatKind = "H";
           p.app.session.Syntax.BeginOfData = "";
           p.app.session.Syntax.EndOfData = "";
         }});
}

TEST(GoldenFile, MissingTemplateWarnsAndGoesOn) {
  TestProgram p;
  p.Setup(1, Bitmap(8, 2), true);
  p.app.session.HeaderIncludeFile = "/nonexistent/folder/project.txt";
  ASSERT_TRUE(p.Convert());
  EXPECT_EQ(rmtest::ShownMessages(p.ui),
            std::vector<std::string>{
                "Warning:  File /nonexistent/folder/project.txt not found ! No table header will be add... "});
  // An empty template: the data follow the comments with no declaration of their own.
  EXPECT_NE(p.Text().find("Big endian */\n\n 0x00 , 0x00 \n};\n"), std::string::npos) << p.Text();
}

TEST(GoldenFile, ColourLookUpTables) {
  struct Case {
    const char* file;
    int mode;
    void (*setup)(TestProgram&);
  } cases[] = {
      {"clut-c256.h", 56, nullptr},
      {"clut-gray256-decimal-slashes.h", 32,
       [](TestProgram& p) {
         p.app.session.Syntax.DataFormatKind = "+D+";
         p.app.session.Syntax.DataPrefix = "";
         p.app.session.Syntax.Comment = rm::CommentForm::Slashes;
       }},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.Setup(c.mode, Bitmap(8, 8), true);
    p.app.mainForm.IntelHexOutputClick();  // the table is text whatever the output kind
    if (c.setup) c.setup(p);
    ASSERT_TRUE(p.app.mainForm.ExportColorPaletteAsArray3Click()) << c.file;
    const std::string diff = rmtest::CompareGolden(std::string("file/") + c.file + ".txt", p.Text());
    EXPECT_TRUE(diff.empty()) << diff;
  }

  TestProgram mono;
  mono.Setup(1, Bitmap(8, 8), true);
  EXPECT_FALSE(mono.app.mainForm.ExportColorPaletteAsArray3Click());
  EXPECT_TRUE(mono.app.mainText.Empty());

  // With an output folder the table is saved there under "COLORLUT" + the output file's name.
  TestProgram saved;
  saved.Setup(57, Bitmap(8, 8), true);
  saved.app.session.OutputFolder = rmtest::MakeTempDir();
  saved.app.session.LastBitmapName = "sprite.png";
  ASSERT_TRUE(saved.app.mainForm.ExportColorPaletteAsArray3Click());
  EXPECT_EQ(rmtest::ReadFile(saved.app.session.OutputFolder + "/COLORLUTsprite.h"), saved.Text());
  std::filesystem::remove_all(saved.app.session.OutputFolder);

  TestProgram compressed;
  compressed.Setup(56, Bitmap(8, 8), true);
  compressed.app.session.Compression = true;
  EXPECT_TRUE(compressed.app.mainForm.ExportColorPaletteAsArray3Click());
  EXPECT_FALSE(compressed.app.session.Compression);
}

TEST(GoldenFile, ATableWithoutDataIsRefused) {
  // An area narrower than one byte of the scheme: the walk writes no byte, and a declaration of
  // data that never come is no success.
  TestProgram p;
  p.Setup(1, Bitmap(8, 8), true);
  auto& s = p.app.session;
  s.SelectionActive = true;
  std::tie(s.ExportAreaX1, s.ExportAreaY1, s.ExportAreaX2, s.ExportAreaY2) = std::make_tuple(0, 0, 4, 8);
  p.app.globals.ExportEntry = 3;
  p.ui.answers = {"Yes"};
  EXPECT_FALSE(p.Convert());
  EXPECT_EQ(p.Text().find("PROGMEM"), std::string::npos) << p.Text();
}

TEST(GoldenFile, ClosingCommentNamesTheParameterFileToBeWritten) {
  TestProgram p;
  p.Setup(1, Bitmap(8, 8), true);
  p.app.session.InfoFileTarget = "out/other.rtf";
  ASSERT_TRUE(p.Convert());
  EXPECT_NE(p.Text().find("/* Save table and see info file out/other.rtf */"), std::string::npos) << p.Text();
}

TEST(GoldenFile, EveryDatumButTheLastHasItsSeparator) {
  // Modes whose bytes are no whole number per pixel, and affix kinds that take the separator only
  // while more data follow: the separators must not stop before the data do.
  struct Case {
    int mode, w, h;
    const char* kind;
  } cases[] = {{57, 5, 3, "+D+"}, {29, 7, 5, "+H+"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.mode) + " " + c.kind);
    TestProgram p;
    p.Setup(c.mode, Bitmap(1, 1));
    p.app.pixelForm.SetCanvas(rmtest::PatternPicture(
        c.w, c.h, p.app.session.ModeColours.empty() ? std::vector<rm::Colour>{rm::kWhite} : p.app.session.ModeColours));
    p.app.session.Syntax.DataFormatKind = c.kind;
    p.app.session.Syntax.DataPrefix = "0x";
    p.app.session.Syntax.DataSuffix = "";
    ASSERT_TRUE(p.Convert());
    std::string data;
    for (const auto& l : p.DataLines()) data += l + " ";
    const auto commas = std::count(data.begin(), data.end(), ',');
    const auto values = std::count(data.begin(), data.end(), 'x');
    EXPECT_EQ(commas + 1, values) << data;
    EXPECT_EQ(static_cast<long long>(values), p.app.session.TotalBytes) << data;
  }
}

}  // namespace
