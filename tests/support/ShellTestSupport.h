#pragma once
#include <memory>
#include <string>

#include "engine/Bitmap.h"
#include "shell/Application.h"
#include "support/TestSupport.h"

namespace rmtest {

// A fresh program with a scripted user and a pinned clock.
struct TestProgram {
  ScriptedUi ui;
  rm::FixedClock clock{1700000000};
  rm::Application app{ui, clock};

  // Mode first (on the blank canvas, so no question), then the picture.
  void Setup(int mode, const rm::Bitmap& picture) {
    app.mainForm.SetColourMode(mode, true);
    app.pixelForm.SetCanvas(picture);
  }
  bool Convert() {
    app.globals.EditorUnsaved = false;
    return app.imageForm.EncodeButtonClick();
  }
  std::string Text() const { return app.mainText.Text(); }
  // The data lines: everything between the begin and the end of data.
  std::vector<std::string> DataLines() const {
    const auto& l = app.mainText.Lines();
    if (l.size() < 2) return {};
    return std::vector<std::string>(l.begin() + 1, l.end() - 1);
  }
};

// A picture whose pixels cycle through `colours` in a fixed pseudo-random order.
rm::Bitmap PatternPicture(int w, int h, const std::vector<rm::Colour>& colours, std::uint32_t seed = 7);

}  // namespace rmtest
