#include <gtest/gtest.h>

#include <set>

#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::TPixelForm;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

// The program's display at W x H on a screen of SW x SH, rebuilt.
void Display(TestProgram& p, int w, int h, int sw = 1920, int sh = 1080, int inflate = 0) {
  p.app.globals.ScreenWidth = sw;
  p.app.globals.ScreenHeight = sh;
  p.app.globals.MatrixWidth = w;
  p.app.globals.MatrixHeight = h;
  p.app.pixelForm.InflateSteps = inflate;
  p.app.mainForm.CanvasRedraw();
}

TEST(CanvasView, ZoomFollowsScreenAndMatrix) {
  const struct {
    int sw, sh, w, h, inflate;
    int zoom, normal;
  } cases[] = {
      {1920, 1080, 128, 64, 0, 6, 6},   // capped at 6
      {1920, 1080, 320, 240, 0, 3, 3},  // height brings 6 down to 3
      {1920, 1080, 1, 200, 0, 4, 4},    // width 1, but the height does not allow 6
      {1024, 768, 160, 160, 0, 3, 3},   //
      {800, 600, 1024, 768, 0, 1, 1},   // wider than the screen, still 1
      {1024, 768, 240, 128, 0, 3, 4},   // the window frame takes one step off, NormalZoom keeps it
      {1920, 1080, 128, 64, 2, 8, 8},   // inflate steps add
      {1024, 768, 240, 128, 1, 4, 5},   //
  };
  for (const auto& c : cases) {
    TestProgram p;
    Display(p, c.w, c.h, c.sw, c.sh, c.inflate);
    const TPixelForm& f = p.app.pixelForm;
    const std::string at = std::to_string(c.w) + "x" + std::to_string(c.h) + " on " + std::to_string(c.sw);
    EXPECT_EQ(f.Zoom, c.zoom) << at;
    EXPECT_EQ(f.NormalZoom, c.normal) << at;
    EXPECT_EQ(f.ViewBitmap.Height(), c.h * c.zoom) << at;
  }
}

TEST(CanvasView, PictureModeHasZoomOneAndAScaleInTheCaption) {
  TestProgram p;
  p.app.mainForm.NoMatrix1Click();  // 960 x 540 on 1920 x 1080
  TPixelForm& f = p.app.pixelForm;
  EXPECT_EQ(f.Zoom, 1);
  EXPECT_EQ(f.ScaleText(), " Scale = x 1.722");  // (1080 - 150) / 540
  EXPECT_TRUE(p.app.imageForm.ZoomOutButtonClick());
  EXPECT_EQ(f.ScaleText(), " Scale = x 1.685");  // a margin of 10 all round
  EXPECT_TRUE(p.app.imageForm.ZoomInButtonClick());
  EXPECT_FALSE(p.app.imageForm.ZoomInButtonClick());  // no margin left

  EXPECT_TRUE(p.app.mainForm.FitCanvasToPicture(300, 200));
  EXPECT_EQ(f.MatrixHeight(), 200);
  p.app.mainForm.MatrixPresetClick(128, 64);
  EXPECT_FALSE(p.app.mainForm.FitCanvasToPicture(300, 200));
  EXPECT_EQ(f.MatrixWidth(), 128);
}

TEST(CanvasView, InflateStepsAndTheirLimits) {
  TestProgram p;
  Display(p, 128, 64);
  TPixelForm& f = p.app.pixelForm;
  rm::TImageForm& v = p.app.imageForm;
  EXPECT_FALSE(v.SmallerButtonClick());  // nothing to take off
  EXPECT_TRUE(v.NormalSizeButtonClick());
  EXPECT_EQ(f.Zoom, 6);
  for (int i = 1; i <= 15; ++i) ASSERT_TRUE(v.BiggerButtonClick()) << i;
  EXPECT_FALSE(v.BiggerButtonClick());
  // 21 x 128 + 70 is wider than the screen: the view takes one step off, "No Zoom" keeps 21.
  EXPECT_EQ(f.NormalZoom, 21);
  EXPECT_EQ(f.Zoom, 20);
  EXPECT_TRUE(v.SmallerButtonClick());
  EXPECT_EQ(f.Zoom, 19);
  EXPECT_TRUE(v.NormalSizeButtonClick());
  EXPECT_EQ(f.Zoom, 6);

  EXPECT_FALSE(v.InflatefactorButtonClick(7));
  EXPECT_TRUE(v.InflatefactorButtonClick(10));
  EXPECT_EQ(f.Zoom, 15);
  EXPECT_TRUE(v.InflatefactorButtonClick(1));
  EXPECT_EQ(f.Zoom, 7);

  // A floating selection or a moving one stops them all.
  f.FloatSelection(Bitmap(4, 4), 0, 0);
  EXPECT_FALSE(v.BiggerButtonClick());
  EXPECT_FALSE(v.InflatefactorButtonClick(5));
  f.DiscardSelection();
  f.SelectionAnimated = true;
  EXPECT_FALSE(v.BiggerButtonClick());
  EXPECT_EQ(f.InflateSteps, 1);
}

TEST(CanvasView, InflateCanvasFillsTheScreenHeightInStepsOfTwo) {
  const struct {
    int w, h, steps;
  } cases[] = {
      {128, 64, 6},    // (6 + 6) * 64 = 768 is no longer under 680
      {128, 128, 0},   // 6 * 128 = 768 is over 680 from the start
      {1024, 768, 0},  // already over
      {16, 8, 14},     // the 15 step limit stops it
  };
  for (const auto& c : cases) {
    TestProgram p;
    Display(p, c.w, c.h);
    const int before = p.app.pixelForm.Zoom;
    p.app.pixelForm.InflateCanvas();
    EXPECT_EQ(p.app.pixelForm.InflateSteps, c.steps) << c.w << "x" << c.h;
    EXPECT_EQ(p.app.pixelForm.Zoom, before + c.steps) << c.w << "x" << c.h;
  }
}

TEST(CanvasView, ZoomInCutsAFixedWindowThatScrolls) {
  TestProgram p;
  Display(p, 128, 64);  // Zoom 6, surface 768 x 384
  TPixelForm& f = p.app.pixelForm;
  rm::TImageForm& v = p.app.imageForm;
  EXPECT_FALSE(v.ZoomOutButtonClick());
  for (int i = 2; i <= 7; ++i) ASSERT_TRUE(v.ZoomInButtonClick()) << i;
  EXPECT_FALSE(v.ZoomInButtonClick());
  EXPECT_EQ(f.Zoom, 12);
  EXPECT_EQ(f.VisibleColumns, 64);  // the window stays 768 wide

  EXPECT_TRUE(v.ZoomOutButtonClick());  // Zoom 11: 768 / 11 = 69.8 -> 70 cells, 384 / 11 -> 35
  EXPECT_EQ(f.VisibleColumns, 70);
  EXPECT_EQ(f.VisibleRows, 35);
  f.ScrollTo(100, 100);
  EXPECT_EQ(f.ScrollX, 128 - 70 + 1);
  EXPECT_EQ(f.ScrollY, 64 - 35 + 1);
  // The view shows the cut: its top left cell is canvas pixel (58, 29).
  f.WorkBitmap.SetPixel(58, 29, 0x123456);
  f.CopyBitmapToCanvas();
  EXPECT_EQ(f.ViewBitmap.GetPixel(10, 10), 0x123456);
  EXPECT_EQ(f.ViewBitmap.GetPixel(11, 0), rm::kWhite);

  v.ZoomOffButtonClick();
  EXPECT_EQ(f.Zoom, 6);
  EXPECT_EQ(f.ScrollX, 1);
}

TEST(CanvasView, MousePositionTakesTheCellThatHoldsThePoint) {
  TestProgram p;
  Display(p, 128, 64);  // Zoom 6
  TPixelForm& f = p.app.pixelForm;
  const struct {
    int sx, sy, x, y;
  } cases[] = {
      {0, 0, 0, 0}, {5, 11, 0, 1}, {6, 6, 1, 1}, {767, 383, 127, 63}, {-1, -6, -1, -1}, {-7, -12, -2, -2},
  };
  for (const auto& c : cases) {
    const auto pt = f.CanvasMousePos(c.sx, c.sy);
    EXPECT_EQ(pt.x, c.x) << c.sx;
    EXPECT_EQ(pt.y, c.y) << c.sy;
  }
  // Zoomed and scrolled, the scroll offset is added.
  p.app.imageForm.ZoomInButtonClick();  // Zoom 7, 110 x 55 cells
  f.ScrollTo(19, 10);
  const auto pt = f.CanvasMousePos(14, 6);
  EXPECT_EQ(pt.x, 2 + 18);
  EXPECT_EQ(pt.y, 0 + 9);
}

// A 4 x 1 canvas and the layers a case lays over it; the composite as the result.
TEST(CanvasView, LayersComposeByCopyOrAnd) {
  constexpr rm::Colour W = 0x0F0F0F, T = 0x00FF00, S = 0x3300CC;
  const struct {
    const char* name;
    bool transfer, visible, lowest, selection, transparent;
    std::vector<rm::Colour> expected;
  } cases[] = {
      {"work alone", false, false, true, false, false, {W, W, W, W}},
      {"hidden transfer layer", true, false, true, false, false, {W, W, W, W}},
      {"transfer layer under", true, true, true, false, false, {W, W & T, W & T, W}},
      {"transfer layer over", true, true, false, false, false, {W, W & T, W & T, W}},
      {"selection", false, false, true, true, false, {W, W, S, S}},
      {"transparent selection", false, false, true, true, true, {W, W, W & S, W & S}},
      {"transfer and selection", true, true, true, true, false, {W, W & T, S, S}},
      {"transfer and transparent selection", true, true, true, true, true, {W, W & T, W & T & S, W & S}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    Display(p, 4, 1);
    TPixelForm& f = p.app.pixelForm;
    f.WorkBitmap.Fill(W);
    if (c.transfer) {
      f.TransferLayerExists = true;
      f.TransferLayerBitmap = Bitmap(2, 1, T);
      f.TransferLeft = 1;
    }
    f.TransferLayerVisible = c.visible;
    f.TransferLayerLowest = c.lowest;
    if (c.selection) f.FloatSelection(Bitmap(3, 1, S), 2, 0);  // one pixel beyond the right edge
    f.CopyTransparent = c.transparent;
    f.CopyBitmapToCanvas();
    std::vector<rm::Colour> got;
    for (int x = 0; x < 4; ++x) got.push_back(f.CompositeBitmap.GetPixel(x, 0));
    EXPECT_EQ(got, c.expected) << c.name;
    // The view is the composite enlarged.
    for (int x = 0; x < 4; ++x) EXPECT_EQ(f.ViewBitmap.GetPixel(x * f.Zoom + f.Zoom - 1, f.Zoom - 1), got[x]) << c.name;
    if (c.selection) {
      EXPECT_EQ(f.StatusPanel4, "2,0,4,0") << c.name;
    }
    EXPECT_EQ(f.WorkBitmap.GetPixel(2, 0), W) << c.name;  // composition never writes the picture
  }
}

TEST(CanvasView, CommitHidesAVisibleTransferLayer) {
  TestProgram p;
  Display(p, 4, 1);
  TPixelForm& f = p.app.pixelForm;
  f.TransferLayerExists = f.TransferLayerVisible = true;
  f.TransferLayerBitmap = Bitmap(4, 1, rm::kBlack);
  f.FloatSelection(Bitmap(1, 1, 0x00FF00), 1, 0);
  f.CopyCanvasToBitmap();
  EXPECT_EQ(f.WorkBitmap.GetPixel(0, 0), rm::kWhite);
  EXPECT_EQ(f.WorkBitmap.GetPixel(1, 0), 0x00FF00);
  EXPECT_EQ(f.CompositeBitmap.GetPixel(0, 0), rm::kBlack);  // shown again
  f.MotionPreparing = true;
  f.WorkBitmap.Fill(rm::kWhite);
  f.CopyCanvasToBitmap();
  EXPECT_EQ(f.WorkBitmap.GetPixel(1, 0), rm::kWhite);
}

TEST(CanvasView, SelectedCellsArePaintedWhole) {
  TestProgram p;
  Display(p, 8, 8);
  TPixelForm& f = p.app.pixelForm;
  f.TableCell(f.ItemSelectionTable, 2, 3) = 1;
  f.CopyBitmapToCanvas();
  const int z = f.Zoom;
  EXPECT_EQ(f.ViewBitmap.GetPixel(3 * z - 1, 4 * z - 1), TPixelForm::kItemSelectionColour);
  EXPECT_EQ(f.ViewBitmap.GetPixel(3 * z, 3 * z), rm::kWhite);
  EXPECT_EQ(f.CompositeBitmap.GetPixel(2, 3), rm::kWhite);
}

// The view columns of screen row 1 that hold `colour`.
std::set<int> ColumnsOf(const TPixelForm& f, rm::Colour colour) {
  std::set<int> cols;
  for (int x = 0; x < f.ViewBitmap.Width(); ++x)
    if (f.ViewBitmap.GetPixel(x, 1) == colour) cols.insert(x);
  return cols;
}
std::set<int> RowsOf(const TPixelForm& f, rm::Colour colour) {
  std::set<int> rows;
  for (int y = 0; y < f.ViewBitmap.Height(); ++y)
    if (f.ViewBitmap.GetPixel(1, y) == colour) rows.insert(y);
  return rows;
}

TEST(CanvasView, GridAndPageLines) {
  using Dir = rm::PagingDirection;
  const struct {
    const char* name;
    int w, mode;
    Dir dir;
    bool sixBit, grid, paging;
    std::set<int> gridCols, pageCols, pageRows;
  } cases[] = {
      {"grid", 8, 1, Dir::ToRightAll, false, true, false, {6, 12, 18, 24, 30, 36, 42}, {}, {}},
      {"no grid at zoom 1", 1024, 1, Dir::ToRightAll, false, true, false, {}, {}, {}},
      {"mono horizontal pages", 24, 1, Dir::ToRightAll, false, false, true, {}, {48, 96}, {}},
      {"mono vertical pages", 24, 1, Dir::Down, false, false, true, {}, {}, {48, 96}},
      {"6-bit pages", 24, 1, Dir::ToRightAll, true, false, true, {}, {36, 72, 108}, {}},
      {"4 gray pages", 12, 24, Dir::ToRightAll, false, false, true, {}, {24, 48}, {}},
      {"true colour has none", 24, 62, Dir::ToRightAll, false, false, true, {}, {}, {}},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.mainForm.SetColourMode(c.mode, true);
    Display(p, c.w, 24);
    ASSERT_TRUE(p.app.mainForm.SetDirection(c.dir)) << c.name;
    p.app.session.Not6bit = !c.sixBit;
    TPixelForm& f = p.app.pixelForm;
    f.GridVisible = c.grid;
    f.PagingSchemeVisible = c.paging;
    f.CopyBitmapToCanvas();
    std::set<int> grid = ColumnsOf(f, TPixelForm::kGridColour);
    EXPECT_EQ(grid, c.gridCols) << c.name;
    const std::size_t gridRows = c.grid && c.w != 1024 ? 23 : 0;
    EXPECT_EQ(RowsOf(f, TPixelForm::kGridColour).size(), gridRows) << c.name;
    EXPECT_EQ(ColumnsOf(f, TPixelForm::kPagingLineColour), c.pageCols) << c.name;
    EXPECT_EQ(RowsOf(f, TPixelForm::kPagingLineColour), c.pageRows) << c.name;
  }
}

TEST(CanvasSize, PagingMultipleAndItsPanel) {
  const std::pair<int, std::vector<int>> multiples[] = {
      {8, {1, 2}}, {4, {24, 25, 29, 30, 31}}, {2, {26, 27, 28, 54, 55}}, {1, {32, 56, 59, 62, 63}}};
  for (const auto& [multiple, modes] : multiples)
    for (int mode : modes) EXPECT_EQ(rm::PagingMultiple(mode), multiple) << mode;

  const struct {
    int multiple;
    bool horizontal;
    const char *scheme, *rule;
  } panels[] = {
      {8, false, "Vertical paging scheme", "( Height = multiple of 8 , Width = free )"},
      {1, true, "Horizontal paging scheme", "( Width = free , Height = free )"},
  };
  for (const auto& c : panels) {
    const rm::PagingPanel p = rm::PagingPanelText(c.multiple, c.horizontal);
    EXPECT_EQ(p.scheme, c.scheme);
    EXPECT_EQ(p.rule, c.rule);
  }
}

TEST(CanvasSize, CaptionTable) {
  const struct {
    int mode;
    bool vector, animation;
    const char* tail;
  } cases[] = {
      {25, false, false, "[ Grayscale 2bpp 2P ] [ 4 Gray ] Logo.bmp"},
      {61, false, false, "[ Color 18bpp ] [ 262144 Colors ] Logo.bmp"},
      {1, true, false, "[ Monochrome 1bpp ] [ Black & White ]  - Vector Output -    Vector Design Mode "},
      {1, false, true, "[ Monochrome 1bpp ] [ Black & White ] Logo.bmp   Animation Mode "},
  };
  for (const auto& c : cases) {
    TestProgram p;
    p.app.mainForm.SetColourMode(c.mode, true);
    Display(p, 128, 64);
    p.app.session.LastBitmapName = "Logo.bmp";
    p.app.globals.VectorMode = c.vector;
    p.app.globals.AnimationMode = c.animation;
    EXPECT_EQ(p.app.mainForm.CanvasCaption(),
              std::string("Work Canvas > Graphic LCD Size > W x H = 128 x 64 ") + c.tail);
    EXPECT_EQ(p.app.mainForm.StatusPanel2(), c.animation ? "animation" : "static");
  }
}

TEST(CanvasSize, CustomSizeKeystrokes) {
  const struct {
    const char* typed;
    int pending;
    bool width;
    int multiple;
    int value;
    const char* field;
    bool beep;
    const char* message;
  } cases[] = {
      {"96", 128, true, 8, 96, "96", false, ""},
      {"12a", 128, true, 8, 128, "128", false, ""},
      {"", 5, false, 1, 5, "5", false, ""},
      {"-3", 5, true, 1, -3, "-3", false, ""},
      {"769", 64, false, 1, 768, "768", true, ""},
      {"1025", 64, true, 1, 1024, "1024", true, ""},
      {"1025", 64, true, 8, 1024, "1024", true, " In horizontal mode, width must be a multiple of 8 and <= 1024 !"},
      {"1032", 64, true, 8, 1024, "1024", true, ""},
      {"801", 64, false, 4, 768, "768", true, " In vertical mode, height must be a multiple of 4 and <= 768 !"},
      {"99999999999999", 64, false, 1, 768, "768", true, ""},
  };
  for (const auto& c : cases) {
    const rm::SizeKeyResult r = rm::CustomSizeKey(c.typed, c.pending, c.width, c.multiple);
    EXPECT_EQ(r.value, c.value) << c.typed;
    EXPECT_EQ(r.fieldText, c.field) << c.typed;
    EXPECT_EQ(r.beep, c.beep) << c.typed;
    EXPECT_EQ(r.message, c.message) << c.typed;
  }

  // The multiple binds the width in a horizontal scheme only; one beep per keystroke.
  TestProgram p;
  p.app.mainForm.CustomSizeKeyPress("1025", 128, true);
  p.app.mainForm.CustomSizeKeyPress("769", 64, false);
  EXPECT_EQ(p.ui.beeps, 2);
  EXPECT_EQ(ShownMessages(p.ui), Lines{"Error:  In horizontal mode, width must be a multiple of 8 and <= 1024 !"});
}

TEST(CanvasSize, CustomSizesAreRememberedOnceInSixteenEntries) {
  TestProgram p;
  rm::TMainForm& m = p.app.mainForm;
  ASSERT_TRUE(m.SetDirection(rm::PagingDirection::ToRightAll));
  EXPECT_TRUE(m.UserMatrixClick("96", "40"));
  EXPECT_TRUE(m.UserMatrixClick("96", "40"));
  EXPECT_EQ(m.CustomSizeMenuItems(), Lines{"Custom 96 x 40"});
  int told = 0;
  for (const auto& msg : p.ui.messages) told += msg.text == " User Dot Matrix Size has been defined ! ";
  EXPECT_EQ(told, 1);
  for (int i = 1; i <= 20; ++i) EXPECT_TRUE(m.UserMatrixClick(std::to_string(8 * i), "16"));
  const Lines items = m.CustomSizeMenuItems();
  ASSERT_EQ(items.size(), 16u);
  EXPECT_EQ(items[15], "Custom 120 x 16");

  // A menu item sets its size again, without a new entry.
  EXPECT_TRUE(m.CustomSizeMenuClick(0));
  EXPECT_EQ(p.app.pixelForm.MatrixHeight(), 40);
  EXPECT_FALSE(m.CustomSizeMenuClick(16));
  EXPECT_EQ(m.CustomSizeMenuItems().size(), 16u);
  // The entries are the project's keys cs0w .. cs15h.
  EXPECT_EQ(rm::GetSetting(p.app, *rm::FindSetting("cs15h")), "16");
}

TEST(CanvasSize, ComboWorksAsAPreset) {
  TestProgram p;
  Display(p, 128, 64);
  EXPECT_FALSE(p.app.mainForm.MatrixComboChange("128X64"));  // already in force
  EXPECT_TRUE(p.app.mainForm.MatrixComboChange("160X80"));   // not in the menu
  EXPECT_EQ(p.app.pixelForm.CompositeBitmap.Height(), 80);
  EXPECT_TRUE(p.app.mainForm.MatrixComboChange("132X32"));
  EXPECT_FALSE(p.app.mainForm.MatrixComboChange("999X1"));

  p.app.pixelForm.FloatSelection(Bitmap(2, 2), 0, 0);
  p.ui.answers.push_back("Cancel");
  EXPECT_FALSE(p.app.mainForm.MatrixComboChange("160X80"));
  EXPECT_EQ(p.app.pixelForm.MatrixWidth(), 132);
}

}  // namespace
