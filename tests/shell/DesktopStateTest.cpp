// What the desktop program keeps of its windows, and the status text of the pixel under the mouse.
#include <gtest/gtest.h>

#include <tuple>

#include "shell/WindowPlaces.h"
#include "support/ShellTestSupport.h"

namespace {

using rm::DesktopWindow;

TEST(WindowPlaces, StoredPlacesComeBackThroughTheProjectKeys) {
  rmtest::TestProgram p;
  struct Case {
    DesktopWindow window;
    rm::WindowPlace stored;
    rm::WindowPlace read;  // what the project's keys can hold of it
  };
  const Case cases[] = {
      {DesktopWindow::Editors, {10, 20, 300, 400, 2, true}, {10, 20, 300, 400, 2, true}},
      {DesktopWindow::WorkCanvas, {5, 6, 700, 500, -1, true}, {5, 6, 700, 500, -1, true}},
      // The explorer keeps no height, the pixel panel only its corner, the log only its switch.
      {DesktopWindow::Explorer, {1, 2, 250, 999, -1, true}, {1, 2, 250, -1, -1, true}},
      {DesktopWindow::PixelPanel, {7, 8, 90, 90, -1, true}, {7, 8, -1, -1, -1, true}},
      {DesktopWindow::Log, {7, 8, 90, 90, -1, true}, {-1, -1, -1, -1, -1, true}},
  };
  for (const Case& c : cases) {
    rm::StoreWindowPlace(p.app, c.window, c.stored);
    const rm::WindowPlace r = rm::ReadWindowPlace(p.app, c.window);
    EXPECT_EQ(std::tie(r.left, r.top, r.width, r.height, r.tab, r.shown),
              std::tie(c.read.left, c.read.top, c.read.width, c.read.height, c.read.tab, c.read.shown));
  }
}

TEST(WindowPlaces, AHiddenWindowKeepsItsLastPlaceAndAFirstRunHasNone) {
  rmtest::TestProgram p;
  EXPECT_EQ(rm::ReadWindowPlace(p.app, DesktopWindow::WorkCanvas).left, -1);  // nothing stored yet
  rm::StoreWindowPlace(p.app, DesktopWindow::Editors, {10, 20, 300, 400, 1, true});
  rm::StoreWindowPlace(p.app, DesktopWindow::Editors, {0, 0, 0, 0, 3, false});
  const rm::WindowPlace r = rm::ReadWindowPlace(p.app, DesktopWindow::Editors);
  EXPECT_FALSE(r.shown);
  EXPECT_EQ(r.height, 400);
}

TEST(PixelStatus, ColourTextByMode) {
  rmtest::TestProgram p;
  struct Case {
    int mode;
    rm::Colour colour;
    std::string text;
  };
  const Case cases[] = {
      {1, rm::kBlack, "   RGB Hex=#000000"},
      {55, 0x0000FF, "   RGB Hex=#FF0000"},  // 16 colours: no palette, red shown as RRGGBB
      {32, 0x808080, " (RGB=128-128-128) (Dec=128)(RGB Hex=808080)  0x80"},
      {32, 0x0000FF, " (RGB=255-0-0) (Dec=-)(RGB Hex=FF0000)"},  // not a gray: no data value
  };
  for (const Case& c : cases) {
    p.app.mainForm.SetColourMode(c.mode, true);
    p.app.pixelForm.ClearCanvas();
    p.app.pixelForm.WorkBitmap.SetPixel(2, 1, c.colour);
    EXPECT_EQ(p.app.mainForm.PixelStatusText(2, 1), c.text) << "mode " << c.mode;
  }
  EXPECT_EQ(p.app.mainForm.PixelStatusText(-1, 0), "");
  EXPECT_EQ(p.app.mainForm.PixelStatusText(0, p.app.pixelForm.MatrixHeight()), "");
}

// The status line names every choice that decides the next conversion's bytes, and follows each.
TEST(InForceStatus, NamesWhatDecidesTheBytes) {
  rmtest::TestProgram p;
  p.app.mainForm.MatrixComboChange("320X240");
  p.app.mainForm.SetColourMode(26, true);
  p.app.mainForm.MsbLast();
  p.app.mainForm.SetOutputKind(rm::OutputKind::IntelHex);
  const std::string text = p.app.mainForm.InForceText();
  for (const char* part :
       {"320 x 240 | ", "| 16 gray levels bitmap (4bpp) |", "| MSB last |", "| Intel Hex output |", "| project: "})
    EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
  p.app.mainForm.SetColourMode(1, true);
  p.app.mainForm.MsbFirst();
  EXPECT_NE(p.app.mainForm.InForceText().find("| Monochrome bitmap (1bpp) | "), std::string::npos);
  EXPECT_NE(p.app.mainForm.InForceText().find("| MSB first |"), std::string::npos);
}

}  // namespace
