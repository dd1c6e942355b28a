#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "engine/Bitmap.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/Application.h"
#include "support/TestSupport.h"

namespace rmtest {

// A fresh program with a scripted user and a pinned clock.
struct TestProgram {
  ScriptedUi ui;
  rm::FixedClock clock{1700000000};
  rm::Application app{ui, clock};
  rm::PlatformImageCodecs codecs;
  TestProgram() { app.codecs = &codecs; }

  // Mode first (on the blank canvas, so no question), then the picture. A bare table (no header,
  // comments or descriptors) unless `wholeFile`: most tests look at the data alone.
  void Setup(int mode, const rm::Bitmap& picture, bool wholeFile = false) {
    app.mainForm.SetColourMode(mode, true);
    app.pixelForm.SetCanvas(picture);
    if (!wholeFile) {
      app.session.Syntax.NoHeader = true;
      app.session.SizeDescriptors = false;
    }
  }
  bool Convert() {
    app.globals.EditorUnsaved = false;
    return app.imageForm.EncodeButtonClick();
  }
  std::string Text() const { return app.mainText.Text(); }
  // The table: from the begin of data (or the array prefix with groups) to the end string, both
  // included. Comments and descriptors around it are left out.
  std::vector<std::string> TableLines() const;
  std::string TableText() const;
  // The data lines: the table without its first and last line.
  std::vector<std::string> DataLines() const {
    auto t = TableLines();
    if (t.size() < 2) return {};
    return std::vector<std::string>(t.begin() + 1, t.end() - 1);
  }
};

// A test with a home folder of its own: RASTERMILL_HOME points at a fresh folder, removed after.
class HomeTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  // The inits folder the program finds in this home.
  std::string Inits() const;
  std::string home_;
};

// A picture whose pixels cycle through `colours` in a fixed pseudo-random order.
rm::Bitmap PatternPicture(int w, int h, const std::vector<rm::Colour>& colours, std::uint32_t seed = 7);

}  // namespace rmtest
