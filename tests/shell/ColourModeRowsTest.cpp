#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>

#include "canvas/PixelGrid.h"
#include "engine/ColourModes.h"
#include "engine/InfoFile.h"
#include "engine/NearestColour.h"
#include "support/ShellTestSupport.h"

namespace {

using rmtest::TestProgram;

// The "Nbpp" a text names; empty when it names none.
std::string Depth(std::string_view text) {
  static const std::regex bpp("[0-9]+bpp");
  std::match_results<std::string_view::const_iterator> m;
  return std::regex_search(text.begin(), text.end(), m, bpp) ? m.str() : "";
}

bool Told(const TestProgram& p, const std::string& text) {
  return std::any_of(p.ui.messages.begin(), p.ui.messages.end(), [&](const auto& m) { return m.text == text; });
}

// A mode is one row: chosen by its command, it must load as many colours as it claims into the
// table the rest of the program reads, search that table for a stray colour, tell one depth in
// the parameter file and the caption, and pair with its twins through the session's switches.
TEST(ColourModeRows, EachModeLoadsSearchesTellsAndToggles) {
  const std::string st7528Refused = " The ST7528 special Mode is only working in 4bpp Grayscale mode ! ";
  for (const rm::ColourModeInfo& mode : rm::kColourModes) {
    SCOPED_TRACE(std::string(mode.command));
    const int n = mode.modeNumber;
    TestProgram p;
    ASSERT_TRUE(p.app.mainForm.SetColourMode(n, true));
    const rm::ConversionSession& s = p.app.session;
    // Switches no other mode has: reading a project and the twins below find the mode by them.
    EXPECT_EQ(rm::FindColourModeByFlags(mode.flags), &mode);

    const std::vector<rm::Colour>* table = nullptr;
    if (mode.Table() == rm::ColourTable::ModeColours) {
      table = &s.ModeColours;
      EXPECT_EQ(table->size(), static_cast<std::size_t>(mode.colours));
    } else if (mode.Table() == rm::ColourTable::PaletteTable) {
      table = &s.PaletteTable;
      EXPECT_EQ(table->size(), static_cast<std::size_t>(mode.paletteSize));
    } else {
      EXPECT_TRUE(s.ModeColours.empty() && s.PaletteTable.empty());
    }
    rm::NearestColour nearest;
    nearest.Configure(s);
    const rm::Colour stray = 0x123457, found = nearest.NearestColor(stray);
    if (table && mode.grayLevels == 0) {
      EXPECT_NE(std::find(table->begin(), table->end(), found), table->end());
    } else {
      EXPECT_EQ(found, stray);  // no table, or a gray ramp: reached by gray level instead
    }

    const std::string info = rm::ModeInfoText(n);
    EXPECT_FALSE(info.empty());
    if (!Depth(info).empty()) {
      EXPECT_EQ(Depth(info), Depth(rm::DepthTag(n)));
    }

    // The ST7528 switch turns the 16 gray levels mode into its slices and back; elsewhere the
    // mode stays and a conversion refuses the switch.
    p.app.mainForm.ToggleST7528Mode();
    EXPECT_EQ(s.ModeNumber, n == 26 ? 28 : n == 28 ? 26 : n);
    p.app.pixelForm.SetCanvas(rm::Bitmap(16, 16, rm::kWhite));
    p.Convert();
    EXPECT_EQ(Told(p, st7528Refused), !(n >= 26 && n <= 28));

    TestProgram q;
    ASSERT_TRUE(q.app.mainForm.SetColourMode(n, true));
    q.app.mainForm.ToggleNegativeOutput();
    EXPECT_EQ(q.app.session.ModeNumber, n == 1 ? 2 : n == 2 ? 1 : n);
  }
}

}  // namespace
