#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rm::TPixelForm;
using rmtest::TestProgram;
using Lines = std::vector<std::string>;

// A program with an 8 x 8 canvas whose history holds the blank canvas only.
void Blank(TestProgram& p) {
  p.app.globals.MatrixWidth = p.app.globals.MatrixHeight = 8;
  p.app.mainForm.CanvasRedraw();
  p.app.pixelForm.ResetHistory();
}

// One undoable edit: pixel (0, 0) takes `value`.
void Edit(TestProgram& p, rm::Colour value) {
  p.app.pixelForm.WorkBitmap.SetPixel(0, 0, value);
  p.app.pixelForm.CopyCanvasToSaveTable();
}

rm::Colour Shown(const TestProgram& p) { return p.app.pixelForm.WorkBitmap.GetPixel(0, 0); }

TEST(CanvasHistory, UndoRedoWalkTheStackAndSetTheButtons) {
  TestProgram p;
  Blank(p);
  TPixelForm& f = p.app.pixelForm;
  rm::TImageForm& v = p.app.imageForm;
  EXPECT_FALSE(f.UndoEnabled);
  for (int i = 1; i <= 3; ++i) Edit(p, i);
  EXPECT_TRUE(f.UndoEnabled);
  EXPECT_FALSE(f.RedoEnabled);
  // Each step: the button, the pixel shown after it, and the buttons' state.
  const struct {
    bool undo;
    rm::Colour shown;
    bool undoEnabled, redoEnabled;
  } steps[] = {{true, 2, true, true},           {true, 1, true, true},  {true, rm::kWhite, false, true},
               {true, rm::kWhite, false, true},  // at 0 it stays there
               {false, 1, true, true},          {false, 2, true, true}, {false, 3, true, false}};
  for (const auto& s : steps) {
    EXPECT_TRUE(s.undo ? v.UndoButtonClick() : v.RedoButtonClick());
    EXPECT_EQ(Shown(p), s.shown);
    EXPECT_EQ(f.UndoEnabled, s.undoEnabled);
    EXPECT_EQ(f.RedoEnabled, s.redoEnabled);
  }
  EXPECT_FALSE(v.RedoButtonClick());
  EXPECT_EQ(f.UndoIndex, 3);
}

TEST(CanvasHistory, ANewEditDropsTheRedoStates) {
  TestProgram p;
  Blank(p);
  TPixelForm& f = p.app.pixelForm;
  for (int i = 1; i <= 4; ++i) Edit(p, i);
  p.app.imageForm.UndoButtonClick();
  p.app.imageForm.UndoButtonClick();
  Edit(p, 9);
  EXPECT_EQ(f.UndoLength(), 4);
  EXPECT_FALSE(p.app.imageForm.RedoButtonClick());
  p.app.imageForm.UndoButtonClick();
  EXPECT_EQ(Shown(p), 2);

  // After an undo the new entry is told from the one below it, not from the one undone.
  Edit(p, 9);
  p.app.imageForm.UndoButtonClick();
  EXPECT_EQ(Shown(p), 2);
  Edit(p, 9);
  EXPECT_EQ(f.UndoEntry(f.UndoIndex).GetPixel(0, 0), 9);
  p.app.imageForm.UndoButtonClick();
  p.app.imageForm.RedoButtonClick();
  EXPECT_EQ(Shown(p), 9);
}

TEST(CanvasHistory, RedoOnAStackOfOneOnlyGreysItself) {
  TestProgram p;
  Blank(p);
  const std::size_t logged = p.app.logWindow.Lines.Lines().size();
  p.app.pixelForm.RedoEnabled = true;
  EXPECT_FALSE(p.app.imageForm.RedoButtonClick());
  EXPECT_FALSE(p.app.pixelForm.RedoEnabled);
  EXPECT_EQ(p.app.logWindow.Lines.Lines().size(), logged);
}

TEST(CanvasHistory, UndoIsRefusedWhilePlayingAndDropsASelection) {
  TestProgram p;
  Blank(p);
  Edit(p, 1);
  p.app.globals.AnimationPlaying = true;
  EXPECT_FALSE(p.app.imageForm.UndoButtonClick());
  EXPECT_EQ(Shown(p), 1);
  p.app.globals.AnimationPlaying = false;
  p.app.pixelForm.FloatSelection(Bitmap(2, 2, rm::kBlack), 0, 0);
  EXPECT_TRUE(p.app.imageForm.UndoButtonClick());
  EXPECT_FALSE(p.app.pixelForm.FloatingSelection);
  EXPECT_EQ(Shown(p), rm::kWhite);
}

TEST(CanvasHistory, TheStackKeepsTenThousandEntries) {
  TestProgram p;
  p.app.globals.MatrixWidth = p.app.globals.MatrixHeight = 2;
  p.app.mainForm.CanvasRedraw();
  TPixelForm& f = p.app.pixelForm;
  for (int i = 0; i < TPixelForm::kMaxUndo + 5; ++i) Edit(p, i);
  EXPECT_EQ(f.UndoLength(), TPixelForm::kMaxUndo);
  // The oldest went first.
  EXPECT_EQ(f.UndoEntry(0).GetPixel(0, 0), 5);
  EXPECT_EQ(f.UndoEntry(TPixelForm::kMaxUndo - 1).GetPixel(0, 0), TPixelForm::kMaxUndo + 4);
}

// Rows 0-15 of one colour, 16-31 a pattern with no runs, 32-39 short stripes.
Bitmap MixedPicture() {
  Bitmap b = rmtest::PatternPicture(16, 40, {rm::kBlack, rm::kWhite, 0x00FF00});
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) b.SetPixel(x, y, 0x336699);
  for (int y = 32; y < 40; ++y)
    for (int x = 0; x < 16; ++x) b.SetPixel(x, y, (x / 4) % 2 ? rm::kBlack : rm::kWhite);
  return b;
}

TEST(CanvasHistory, EntriesReadBackWholeWhateverTheyShareOrPack) {
  TestProgram p;
  p.app.globals.MatrixWidth = 16;
  p.app.globals.MatrixHeight = 40;
  p.app.mainForm.CanvasRedraw();
  TPixelForm& f = p.app.pixelForm;
  f.ResetHistory();
  const Bitmap first = MixedPicture();
  f.WorkBitmap = first;
  f.CopyCanvasToSaveTable();
  // One pixel in each band changes, in turn: each entry shares the other bands with the last.
  std::vector<Bitmap> states{first};
  for (const int y : {3, 20, 39}) {
    f.WorkBitmap.SetPixel(5, y, 0x123456);
    states.push_back(f.WorkBitmap);
    f.CopyCanvasToSaveTable();
  }
  f.CopyCanvasToSaveTable();  // nothing changed
  states.push_back(f.WorkBitmap);
  for (std::size_t i = 0; i < states.size(); ++i) EXPECT_EQ(f.UndoEntry(static_cast<int>(i) + 1), states[i]) << i;
  // A restore writes into the canvas, never into an entry another one shares.
  for (int k = 0; k < 4; ++k) {
    p.app.imageForm.UndoButtonClick();
    f.WorkBitmap.SetPixel(0, 0, 0x777777);
  }
  p.app.imageForm.UndoButtonClick();
  EXPECT_EQ(f.UndoIndex, 0);
  p.app.imageForm.RedoButtonClick();
  EXPECT_EQ(f.WorkBitmap, first);
  for (std::size_t i = 0; i < states.size(); ++i) EXPECT_EQ(f.UndoEntry(static_cast<int>(i) + 1), states[i]) << i;

  // An entry from another display size lies at the top left of the canvas as it is now.
  p.app.globals.MatrixWidth = 8;
  p.app.mainForm.CanvasRedraw();
  p.app.imageForm.RedoButtonClick();
  EXPECT_EQ(f.WorkBitmap.Width(), 8);
  EXPECT_EQ(f.WorkBitmap.GetPixel(5, 3), 0x123456);
  EXPECT_EQ(f.WorkBitmap.GetPixel(5, 20), first.GetPixel(5, 20));
}

TEST(CanvasHistory, AModeChangeLeavesOneEntry) {
  TestProgram p;
  Blank(p);
  for (int i = 1; i <= 3; ++i) Edit(p, rm::kBlack);
  EXPECT_TRUE(p.app.mainForm.SetColourMode(62));
  EXPECT_EQ(p.app.pixelForm.UndoLength(), 1);
  EXPECT_FALSE(p.app.pixelForm.UndoEnabled);
  EXPECT_EQ(p.app.pixelForm.UndoEntry(0).GetPixel(0, 0), rm::kBlack);
}

TEST(CanvasHistory, ReloadOriginalImage) {
  TestProgram p;
  Blank(p);
  EXPECT_FALSE(p.app.imageForm.ReloadOriginalImageClick());  // nothing imported yet
  const Bitmap picture = rmtest::PatternPicture(8, 8, {rm::kBlack, rm::kWhite});
  p.app.pixelForm.StoreOriginalImage(picture);
  p.app.pixelForm.WorkBitmap.Fill(0x00FF00);
  EXPECT_TRUE(p.app.imageForm.ReloadOriginalImageClick());
  EXPECT_EQ(p.app.pixelForm.WorkBitmap, picture);
  EXPECT_EQ(p.app.pixelForm.UndoIndex, 1);  // undoable
}

TEST(ImageCollection, StoreTakeAndUndo) {
  TestProgram p;
  Blank(p);
  TPixelForm& f = p.app.pixelForm;
  rm::TImageForm& v = p.app.imageForm;
  EXPECT_FALSE(v.TakeImageCollection(3));  // empty slot: nothing happens
  EXPECT_EQ(Shown(p), rm::kWhite);

  f.WorkBitmap.SetPixel(0, 0, 1);
  v.StoreImageCollection(3);
  EXPECT_EQ(f.UndoIndex, 1);  // storing pushes history
  EXPECT_EQ(f.CollectionSlots[2].Picture.GetPixel(0, 0), 1);
  f.WorkBitmap.SetPixel(0, 0, 2);
  v.StoreImageCollection(3);
  EXPECT_EQ(f.CollectionPrevious[2].GetPixel(0, 0), 1);

  f.WorkBitmap.SetPixel(0, 0, 5);
  EXPECT_TRUE(v.TakeImageCollection(3));
  EXPECT_EQ(Shown(p), 2);
  f.WorkBitmap.SetPixel(0, 0, 7);
  p.app.globals.AnimationMode = true;
  EXPECT_FALSE(v.TakeImageCollection(3));
  EXPECT_EQ(Shown(p), 7);
  p.app.globals.AnimationMode = false;

  EXPECT_TRUE(v.UndoIMCClick());
  EXPECT_EQ(f.CollectionSlots[2].Picture.GetPixel(0, 0), 1);
  EXPECT_EQ(f.LastCollectionSlot, 8);
  EXPECT_FALSE(v.UndoIMCClick());

  // Undoing the first store into a free slot frees it again.
  v.StoreImageCollection(8);
  EXPECT_TRUE(v.UndoIMCClick());
  EXPECT_TRUE(f.CollectionSlots[7].Picture.Empty());
  EXPECT_FALSE(v.TakeImageCollection(8));
}

TEST(ImageCollection, DeleteLeavesGraySlotsAndEmptyMemos) {
  TestProgram p;
  Blank(p);
  TPixelForm& f = p.app.pixelForm;
  p.app.imageForm.StoreImageCollection(1);
  f.CollectionSlots[4].Actions = {"Actions=", "Invert"};
  p.app.imageForm.DeleteImageCollection();
  for (const auto& s : f.CollectionSlots) {
    EXPECT_TRUE(s.Picture.Empty());
    EXPECT_EQ(s.Thumbnail, Bitmap(8, 8, 0xC0C0C0));
    EXPECT_EQ(s.Actions, Lines{"Actions="});
  }
  EXPECT_FALSE(p.app.imageForm.TakeImageCollection(1));
}

TEST(ImageCollection, ActionMemosComeFromTheProjectsFolder) {
  namespace fs = std::filesystem;
  const fs::path dir = rmtest::MakeTempDir();
  fs::create_directories(dir / "Lab");
  std::ofstream(dir / "Lab" / "Image0.act", std::ios::binary) << "Actions=\r\nThreshold 128\r\n";
  std::ofstream(dir / "Lab" / "Image7.act", std::ios::binary) << "Actions=\nMirror\n";
  std::ofstream(dir / "Lab" / "Image8.act", std::ios::binary) << "not a slot\n";
  std::ofstream(dir / "Lab.LCD", std::ios::binary) << "[B2]\nGWI=128\n";
  TestProgram p;
  p.app.globals.ActiveProject = (dir / "Lab.LCD").string();
  ASSERT_TRUE(p.app.mainForm.LoadConfigurationX());
  const TPixelForm& f = p.app.pixelForm;
  EXPECT_EQ(f.CollectionSlots[0].Actions, (Lines{"Actions=", "Threshold 128"}));
  EXPECT_EQ(f.CollectionSlots[3].Actions, Lines{"Actions="});
  fs::remove_all(dir);
}

TEST(CanvasHistory, ReloadLastArtworkAsksFirst) {
  namespace fs = std::filesystem;
  TestProgram p;
  Blank(p);
  p.app.globals.LastArtworkPath = "/no/such/picture.png";
  EXPECT_FALSE(p.app.imageForm.ReloadLastWorkCanvasBitmapClick());
  EXPECT_EQ(p.ui.messages.back().text, "No Recent Artwork to load ");

  const fs::path dir = rmtest::MakeTempDir();
  const std::string path = (dir / "last.png").string();
  std::string error;
  ASSERT_TRUE(p.codecs.SavePng(Bitmap(4, 4, rm::kBlack), path, error)) << error;
  p.app.globals.LastArtworkPath = path;
  p.ui.answers.push_back("No");
  EXPECT_FALSE(p.app.imageForm.ReloadLastWorkCanvasBitmapClick());
  EXPECT_FALSE(p.app.pixelForm.FloatingSelection);
  p.ui.answers.push_back("Yes");
  EXPECT_TRUE(p.app.imageForm.ReloadLastWorkCanvasBitmapClick());
  EXPECT_TRUE(p.app.pixelForm.FloatingSelection);  // the import lays it over the canvas
  fs::remove_all(dir);
}

}  // namespace

// A mode change that clears the canvas keeps the artwork one Undo away, whichever way it asked.
TEST(CanvasHistory, AModeChangeThatClearsTheCanvasIsUndone) {
  const struct {
    int to;
    Lines answers;
  } cases[] = {{1, {"OK"}}, {55, {"Yes"}}};
  for (const auto& c : cases) {
    TestProgram p;
    Blank(p);
    ASSERT_TRUE(p.app.mainForm.SetColourMode(59));
    Edit(p, 0x0000FF);
    p.ui.answers = {c.answers.begin(), c.answers.end()};
    ASSERT_TRUE(p.app.mainForm.SetColourMode(c.to)) << c.to;
    EXPECT_EQ(Shown(p), rm::kWhite) << c.to;
    EXPECT_TRUE(p.app.imageForm.UndoButtonClick());
    EXPECT_EQ(Shown(p), 0x0000FF) << c.to;
    EXPECT_TRUE(p.app.imageForm.RedoButtonClick());
    EXPECT_EQ(Shown(p), rm::kWhite) << c.to;
  }
}
