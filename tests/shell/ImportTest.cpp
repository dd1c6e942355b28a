#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

constexpr rm::Colour kGray = 0x808080;
constexpr rm::Colour kRed = 0x0000FF;

const std::string kResizeQuestionStart = " Image size larger than Work Canvas   \r";

// A picture with a coloured frame and a gray inside, so that every resize shows.
Bitmap Framed(int w, int h) {
  Bitmap b(w, h, kGray);
  for (int x = 0; x < w; ++x) b.SetPixel(x, 0, kRed), b.SetPixel(x, h - 1, kRed);
  for (int y = 0; y < h; ++y) b.SetPixel(0, y, kRed), b.SetPixel(w - 1, y, kRed);
  return b;
}

// Left half red, right half gray: what a resize keeps of it is easy to tell.
Bitmap Halves(int w, int h) {
  Bitmap b(w, h, kGray);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w / 2; ++x) b.SetPixel(x, y, kRed);
  return b;
}

class Import : public rmtest::HomeTest {
 protected:
  void SetUp() override {
    HomeTest::SetUp();
    SetCanvas(32, 16);
  }
  void SetCanvas(int w, int h) {
    p.app.globals.MatrixWidth = w;
    p.app.globals.MatrixHeight = h;
    p.app.mainForm.CanvasRedraw();
    p.ui.messages.clear();
  }
  std::string Png(const std::string& name, const Bitmap& b) {
    const std::string path = dir_ + "/" + name;
    std::string error;
    EXPECT_TRUE(p.codecs.SavePng(b, path, error)) << error;
    return path;
  }
  std::string Raw(const std::string& name, const std::string& bytes) {
    rmtest::WriteText(dir_ + "/" + name, bytes);
    return dir_ + "/" + name;
  }
  const Bitmap& Floating() const { return p.app.pixelForm.SelectionBitmap; }

  TestProgram p;
  rmtest::TempDir tmp_;
  const std::string dir_ = tmp_.path;
};

TEST_F(Import, RefusedFilesSayWhyAndLeaveTheCanvas) {
  const std::string pngBytes = rmtest::ReadFile(Png("a.png", Framed(8, 8)));
  const std::string missing = dir_ + "/none.png";
  const std::string fakeJpeg = Raw("photo.jpg", pngBytes);
  const std::string fakeBmp = Raw("pic.bmp", "BM this is no header at all");
  const std::string text = Raw("notes.txt", "hello");
  const std::string truncated = Raw("cut.png", pngBytes.substr(0, pngBytes.size() / 2));
  const struct {
    std::string file, said;
  } cases[] = {
      {missing, "Error: File " + missing + " not found !\rFile not found"},
      {fakeJpeg, "Error: This is not a valid Jpeg file !\r" + fakeJpeg + "\rJPG file format check failed"},
      {fakeBmp, "Error: This is not a valid bitmap file !\r" + fakeBmp + "\rBitmap file format check failed"},
      {text, "Loading a Graphic Error: notes.txt is is not a valid graphic file ! "},
      {truncated, ""},  // the decoder's own words, checked below
  };
  p.app.pixelForm.WorkBitmap.SetPixel(3, 3, kRed);
  const Bitmap before = p.app.pixelForm.WorkBitmap;
  for (const auto& c : cases) {
    p.ui.messages.clear();
    EXPECT_FALSE(p.app.mainForm.OpenPic(c.file)) << c.file;
    ASSERT_EQ(p.ui.messages.size(), 1u) << c.file;
    if (!c.said.empty()) {
      EXPECT_EQ(ShownMessages(p.ui)[0], c.said);
    }
    EXPECT_FALSE(p.app.pixelForm.FloatingSelection) << c.file;
    EXPECT_EQ(p.app.pixelForm.WorkBitmap, before) << c.file;
  }
  EXPECT_NE(p.ui.messages[0].text.find("cut.png"), std::string::npos);
  EXPECT_TRUE(p.app.pixelForm.InputBitmap.Empty());  // nothing of a failed picture is kept
}

TEST_F(Import, GoodSignaturesPass) {
  const std::string png = rmtest::ReadFile(Png("a.png", Framed(8, 8)));
  std::string error;
  const std::string bmp = dir_ + "/a.bmp";
  ASSERT_TRUE(p.codecs.SaveBmp(Framed(8, 8), bmp, error)) << error;
  EXPECT_TRUE(rm::TMainForm::IsBitmapFile(bmp));
  EXPECT_TRUE(rm::TMainForm::IsJpegFile(Raw("b.jpg", std::string("\xFF\xD8\xFF\xE0", 4))));
  EXPECT_FALSE(rm::TMainForm::IsJpegFile(Raw("c.jpg", std::string("\xFF\xD8", 2))));
  // A PNG named .jpeg is not tested for JPEG: the decoder tells the kind by its bytes.
  EXPECT_TRUE(p.app.mainForm.OpenPic(Raw("d.jpeg", png)));
  EXPECT_EQ(Floating(), Framed(8, 8));
}

TEST_F(Import, PictureOfTheCanvasSizeFloatsAtTheCornerWithoutQuestion) {
  p.app.pixelForm.WorkBitmap.SetPixel(1, 1, kRed);
  const Bitmap before = p.app.pixelForm.WorkBitmap;
  ASSERT_TRUE(p.app.mainForm.OpenPic(Png("same.png", Framed(32, 16))));
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(Floating(), Framed(32, 16));
  EXPECT_EQ(p.app.pixelForm.SelectionLeft, 0);
  EXPECT_EQ(p.app.pixelForm.WorkBitmap, before);  // an import never writes the canvas
  EXPECT_TRUE(p.app.pixelForm.ThresholdPending);  // gray and red in monochrome
  EXPECT_EQ(p.app.globals.RecentFiles, Lines{dir_ + "/same.png"});
}

TEST_F(Import, LargerPictureAsksAndFollowsTheAnswer) {
  const std::string file = Png("big.png", Framed(64, 48));
  const std::string question = kResizeQuestionStart +
                               " Work Canvas Size = H : 16 W : 32\r Image Size = H : 48 W : 64\r"
                               " Resize graphic to fit Work Canvas ? ";
  struct Case {
    std::string answer;
    bool imported;
    int w, h;
  };
  for (const Case& c : {Case{"Yes", true, 21, 16}, Case{"No", true, 64, 48}, Case{"Cancel", false, 0, 0}}) {
    p.app.pixelForm.DiscardSelection();
    p.app.globals.ImageAdjustmentsEnabled = true;
    p.ui.messages.clear();
    p.ui.answers = {c.answer};
    EXPECT_EQ(p.app.mainForm.OpenPic(file), c.imported) << c.answer;
    ASSERT_EQ(p.ui.messages.size(), 1u);
    EXPECT_EQ(p.ui.messages[0].text, question);
    EXPECT_EQ(Floating().Width(), c.w) << c.answer;
    EXPECT_EQ(Floating().Height(), c.h) << c.answer;
    EXPECT_EQ(p.app.globals.ImageAdjustmentsEnabled, c.answer != "No");
  }
  // Resized: the picture is stretched, not cut.
  p.ui.answers = {"Yes"};
  ASSERT_TRUE(p.app.mainForm.OpenPic(Png("halves.png", Halves(64, 48))));
  EXPECT_EQ(Floating().GetPixel(9, 15), kRed);
  EXPECT_EQ(Floating().GetPixel(11, 0), kGray);

  // Always resize answers for the user.
  p.app.pixelForm.DiscardSelection();
  p.ui.messages.clear();
  p.app.globals.AlwaysResizeToFit = true;
  ASSERT_TRUE(p.app.mainForm.OpenPic(file));
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(Floating().Width(), 21);
}

TEST_F(Import, VeryThinPictureResizesToNothing) {
  SetCanvas(128, 64);
  p.app.globals.AlwaysResizeToFit = true;
  ASSERT_TRUE(p.app.mainForm.OpenPic(Png("thin.png", Framed(10, 1000))));
  EXPECT_TRUE(Floating().Empty());
}

TEST_F(Import, InsideTheChosenAreaWhenAllowed) {
  rm::ConversionSession& s = p.app.session;
  s.SelectionActive = true;
  s.ExportAreaX1 = 4, s.ExportAreaY1 = 2, s.ExportAreaX2 = 12, s.ExportAreaY2 = 10;
  p.app.globals.AllowImportInsideSelection = true;
  p.ui.answers = {"Yes"};
  ASSERT_TRUE(p.app.mainForm.OpenPic(Png("sq.png", Framed(16, 12))));
  ASSERT_EQ(p.ui.messages.size(), 1u);
  EXPECT_EQ(p.ui.messages[0].text, kResizeQuestionStart +
                                       " Selection Frame Size = H : 8 W : 8\r Image Size = H : 12 W : 16\r"
                                       " Resize graphic to fit Work Canvas ? ");
  EXPECT_EQ(Floating().Height(), 6);
  EXPECT_EQ(p.app.pixelForm.SelectionLeft, 4);
  EXPECT_EQ(p.app.pixelForm.SelectionTop, 2);
}

TEST_F(Import, OrientationAngleTurnsTheImport) {
  SetCanvas(128, 64);
  p.app.globals.ImportAngle = "90";
  ASSERT_TRUE(p.app.mainForm.OpenPic(Png("turn.png", Framed(20, 6))));
  EXPECT_EQ(Floating().Height(), 20 + 2);
  EXPECT_EQ(Floating().GetPixel(0, 0), rm::kWhite);
  EXPECT_EQ(Floating().GetPixel(1, 1), kRed);
  EXPECT_EQ(p.app.pixelForm.InputBitmap, Framed(20, 6));  // the original stays as decoded

  // A GIF is never turned here.
  p.app.pixelForm.DiscardSelection();
  p.app.globals.ImportFileName = "anim.GIF";
  p.app.globals.ImportedBitmap = Framed(20, 6);
  p.app.mainForm.RotateImport();
  EXPECT_EQ(p.app.globals.ImportedBitmap, Framed(20, 6));
}

TEST_F(Import, RotationSizeLimit) {
  rm::Globals& g = p.app.globals;
  g.ImportAngle = "90";
  g.ImportFileName = "x.png";
  g.ImportedBitmap = Bitmap(3001, 10, kGray);
  p.app.mainForm.RotateImport();
  EXPECT_EQ(ShownMessages(p.ui), Lines{"Warning:  Picture too large for rotation \r "});
  EXPECT_EQ(g.ImportedBitmap.Width(), 3001);

  for (const auto& [w, h] : {std::pair{3000, 10}, {10, 3000}}) {
    g.ImportedBitmap = Bitmap(w, h, kGray);
    p.app.mainForm.RotateImport();
    EXPECT_EQ(g.ImportedBitmap.Width(), h + 2);
  }
  EXPECT_EQ(ShownMessages(p.ui).size(), 1u);
}

TEST_F(Import, PictureModeCanvasTakesThePictureSize) {
  p.app.mainForm.NoMatrix1Click();
  p.ui.messages.clear();
  ASSERT_TRUE(p.app.mainForm.OpenPic(Png("wide.png", Framed(1200, 700))));
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(p.app.pixelForm.WorkBitmap.Height(), 700);
  EXPECT_EQ(Floating(), Framed(1200, 700));
}

TEST_F(Import, DrawingRendersAtTheImportSize) {
  const std::string svg = Raw("d.svg",
                              "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                              "<rect x='0' y='0' width='10' height='10' fill='black'/></svg>");
  SetCanvas(128, 64);
  p.app.globals.ImportWidth = 40;
  p.app.globals.ImportHeight = 40;
  ASSERT_TRUE(p.app.mainForm.OpenPic(svg));
  EXPECT_EQ(Floating().Width(), 40);
  EXPECT_EQ(Floating().GetPixel(20, 20), rm::kBlack);

  // Without a size: the canvas's, the square drawing centred on it.
  p.app.pixelForm.DiscardSelection();
  p.app.globals.ImportWidth = 0;
  ASSERT_TRUE(p.app.mainForm.OpenPic(svg));
  EXPECT_EQ(Floating().Width(), 128);

  // Turned: cut to what the turn leaves, without the margin of the picture import.
  p.app.pixelForm.DiscardSelection();
  p.app.globals.ImportAngle = "90";
  ASSERT_TRUE(p.app.mainForm.OpenPic(svg));
  EXPECT_EQ(Floating().Width(), 64);
  EXPECT_EQ(Floating().GetPixel(0, 0), rm::kBlack);
}

TEST_F(Import, DirectLoadPastesWithoutAsking) {
  p.app.pixelForm.ResetHistory();  // the history begins with the blank canvas, as after a mode change
  ASSERT_TRUE(p.app.mainForm.LoadGraphicDirectly(Png("big.png", Halves(64, 32))));
  EXPECT_TRUE(p.ui.messages.empty());
  EXPECT_EQ(p.app.pixelForm.WorkBitmap, Halves(32, 16));
  // The paste is an edit like any other: Undo brings the blank canvas back.
  ASSERT_TRUE(p.app.imageForm.UndoButtonClick());
  EXPECT_EQ(p.app.pixelForm.WorkBitmap, Bitmap(32, 16));
}

TEST_F(Import, CanvasToBlackAndWhiteFloatsTheCanvasUnderTheThreshold) {
  p.app.mainForm.SetColourMode(62, true);
  p.app.pixelForm.SetCanvas(Framed(32, 16));
  p.app.globals.MyDocuments = dir_;
  ASSERT_TRUE(p.app.mainForm.ConvertCanvastoBlackandWhite1Click());
  EXPECT_TRUE(p.ui.messages.empty());  // the mode change does not offer to clear
  EXPECT_EQ(p.app.session.ModeNumber, 1);
  EXPECT_EQ(Floating(), Framed(32, 16));
  EXPECT_TRUE(p.app.pixelForm.ThresholdPending);
  EXPECT_FALSE(std::filesystem::exists(dir_ + "/temp1298621.bmp"));
  EXPECT_TRUE(p.app.globals.RecentFiles.empty());  // the program's own temporary is not recent

  // A second time, with the picture still floating: refused.
  EXPECT_FALSE(p.app.mainForm.ConvertCanvastoBlackandWhite1Click());
  EXPECT_EQ(p.ui.messages.size(), 1u);
}

TEST_F(Import, RecentFiles) {
  rm::TMainForm& m = p.app.mainForm;
  for (const char* f :
       {"/a.png", "/b.png", "/a.png", "/x/resized_image.bmp", "/d/original_image_1_1.bmp", "/d/temp1298621.bmp"})
    m.AddMRUF(f);
  EXPECT_EQ(p.app.globals.RecentFiles, (Lines{"/b.png", "/a.png"}));
  for (int i = 0; i < 30; ++i) m.AddMRUF("/f" + std::to_string(i));
  EXPECT_EQ(p.app.globals.RecentFiles.size(), 21u);
  EXPECT_EQ(p.app.globals.RecentFiles.front(), "/f29");
}

TEST_F(Import, PreviewTurnsCropsAndExports) {
  rm::TExploForm2& x = p.app.exploForm2;
  Bitmap picture = Framed(12, 8);
  picture.SetPixel(1, 1, rm::kBlack);
  ASSERT_TRUE(x.LoadPreview(Png("pv.png", picture)));
  x.PreviewTurnRight();  // 8 x 12, the black pixel now near the top right corner
  EXPECT_EQ(x.PreviewBitmap.GetPixel(6, 1), rm::kBlack);
  ASSERT_TRUE(x.SelectPreviewArea(9, 4, 4, 0));  // dragged from right to left
  ASSERT_TRUE(x.ExportGraphic());
  ASSERT_EQ(Floating().Width(), 4);  // clipped to the picture
  ASSERT_EQ(Floating().Height(), 4);
  EXPECT_EQ(Floating().GetPixel(2, 1), rm::kBlack);

  x.PreviewHalfTurn();
  x.PreviewTurnRight();
  EXPECT_EQ(x.PreviewBitmap, picture);  // a whole turn in all
  EXPECT_FALSE(x.SelectPreviewArea(20, 20, 30, 30));
  x.PreviewTurnLeft();
  ASSERT_TRUE(x.ReloadOriginalPreview());
  EXPECT_EQ(x.PreviewBitmap, picture);

  x.PreviewBitmap = Halves(64, 64);
  ASSERT_TRUE(x.ResizePreviewToFit());
  EXPECT_EQ(x.PreviewBitmap, Halves(16, 16));
}

TEST_F(Import, BmpWriterRoundTrip) {
  // Odd widths need row padding; colours must keep their channel order.
  for (const auto& [w, h] : {std::pair{3, 2}, {1, 1}, {5, 7}}) {
    Bitmap b = rmtest::PatternPicture(w, h, {kRed, 0x00FF00, 0xFF0000, kGray, rm::kBlack});
    const std::string path = dir_ + "/rt.bmp";
    std::string error;
    ASSERT_TRUE(p.codecs.SaveBmp(b, path, error)) << error;
    Bitmap back;
    ASSERT_TRUE(p.codecs.Load(path, back, error)) << error;
    EXPECT_EQ(back, b) << w << "x" << h;
    EXPECT_EQ(rmtest::ReadFile(path).size(), 54u + ((w * 3 + 3) / 4 * 4) * h);
  }
  std::string error;
  EXPECT_FALSE(p.codecs.SaveBmp(Bitmap(), dir_ + "/empty.bmp", error));
}

}  // namespace

namespace {

// Interleaving sends row r to the output row that follows the pattern 0, H/2, 1, H/2 + 1, ...
// Every direction takes it but a sliced horizontal one with an odd height, which fails the run.
TEST(Interleave, EveryDirectionButSlicedHorizontalWithAnOddHeight) {
  struct Case {
    rm::PagingDirection direction;
    int height;
    bool refused;
  };
  const Case cases[] = {
      {rm::PagingDirection::ToLeftAll, 5, false}, {rm::PagingDirection::ToRight, 4, false},
      {rm::PagingDirection::ToRight, 5, true},    {rm::PagingDirection::ToLeft, 3, true},
      {rm::PagingDirection::Down, 8, false},
  };
  for (const Case& c : cases) {
    TestProgram p;
    Bitmap picture(8, c.height);
    for (int x = 0; x < 8; ++x) picture.SetPixel(x, 1, rm::kBlack);  // row 1 lands on output row 2
    p.Setup(1, picture);
    p.app.mainForm.SetDirection(c.direction);
    p.app.session.Interleaved = true;
    p.ui.messages.clear();
    EXPECT_EQ(p.Convert(), !c.refused) << static_cast<int>(c.direction) << " height " << c.height;
    const bool refused = !p.ui.messages.empty() &&
                         p.ui.messages.back().text.rfind(" Interlaced only with not sliced horizontal", 0) == 0;
    EXPECT_EQ(refused, c.refused) << static_cast<int>(c.direction) << " height " << c.height;
    EXPECT_EQ(p.app.pixelForm.WorkBitmap, picture);  // the canvas itself is never reordered
  }
}

}  // namespace
