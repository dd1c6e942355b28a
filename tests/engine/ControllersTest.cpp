#include <gtest/gtest.h>

#include "engine/ColourModes.h"
#include "engine/Controllers.h"

namespace {

TEST(ControllerPresets, EveryRowNamesAModeADirectionAndAnOriginOfIt) {
  const std::string directions = " tr tl tra tla td tu tda tua ";
  for (const auto& c : rm::kControllers) {
    EXPECT_NE(rm::FindColourModeByCliName(c.mode), nullptr) << c.name;
    EXPECT_NE(directions.find(" " + std::string(c.direction) + " "), std::string::npos) << c.name;
    EXPECT_EQ(rm::FindController(c.name), &c);
  }
  EXPECT_EQ(rm::FindController("ST7735-BGR"), rm::FindController("st7735-bgr"));
  EXPECT_EQ(rm::FindController("st7735x"), nullptr);
}

TEST(ControllerPresets, ChoicesWinAndAreNoted) {
  const rm::ControllerPreset& p = *rm::FindController("ssd1306");
  struct Case {
    rm::ControllerChoices in;
    rm::ControllerChoices out;
    std::size_t notes;
  } cases[] = {
      {{}, {"mono", "td", "TL", -1}, 0},
      {{"mono", "td", "TL", -1}, {"mono", "td", "TL", -1}, 0},  // agreeing choices are no news
      {{"mono-inv", "", "", 1}, {"mono-inv", "td", "TL", 1}, 2},
      // Another direction keeps its own origin: the preset's TL would not fit Up.
      {{"", "tu", "", 0}, {"mono", "tu", "", -1}, 1},
      {{"", "tu", "BR", 0}, {"mono", "tu", "BR", -1}, 1},
      {{"", "", "TR", 0}, {"mono", "td", "TR", -1}, 1},
  };
  for (auto& c : cases) {
    const auto notes = rm::MergeControllerPreset(p, c.in);
    EXPECT_EQ(c.in.mode, c.out.mode);
    EXPECT_EQ(c.in.direction, c.out.direction);
    EXPECT_EQ(c.in.origin, c.out.origin);
    EXPECT_EQ(c.in.bitOrder, c.out.bitOrder);
    EXPECT_EQ(notes.size(), c.notes) << c.in.mode << c.in.direction << c.in.origin;
  }
}

}  // namespace
