#pragma once
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace rm {

// One row per display controller: the colour mode, Paging Scheme and bit order that lay a picture
// out the way the controller's display memory is filled, so the bytes can be sent as they stand
// after the controller's address window is set.
//
// The picture shows on the panel as it looks on screen. `whiteIsOn` says how: on an OLED a set
// bit (or the highest gray level) is a lit, white pixel, and on the e-papers a set bit is white
// too, while on the LCDs a set bit is a dark pixel, which is the program's own rule (black sets
// the bit, white is gray level 0).
struct ControllerPreset {
  std::string_view name;         // what --controller takes, lower case
  std::string_view description;  // the panel and how its memory is filled
  std::string_view mode;         // the colour mode's command-line name
  std::string_view direction;    // Paging direction flag: "td", "tr" ...
  std::string_view origin;       // origin corner: "TL" ...
  bool msbFirst;                 // the first pixel in the high bits of its byte (colour: high byte first)
  bool swapRedBlue;              // BGR panels: red and blue fields traded in every pixel
  bool whiteIsOn;                // a white pixel sets the bit, or takes the highest gray level
};

// clang-format off
inline constexpr std::array<ControllerPreset, 17> kControllers{{
    // The page controllers: 8 rows per byte down a column, bit 0 the top row; a page's bytes run
    // left to right, the pages top to bottom.
    {"ssd1306", "monochrome OLED, 8-row pages, bit 0 at the top, columns left to right, pages top to bottom",
     "mono", "td", "TL", false, false, true},
    {"sh1106", "monochrome OLED, pages as SSD1306 (its 132 column RAM shows 128: start each page at column 2)",
     "mono", "td", "TL", false, false, true},
    {"ssd1309", "monochrome OLED, pages as SSD1306", "mono", "td", "TL", false, false, true},
    {"st7565", "monochrome LCD, 8-row pages, bit 0 at the top (normal COM direction), a set bit is dark",
     "mono", "td", "TL", false, false, false},
    {"uc1701", "monochrome LCD, pages as ST7565, a set bit is dark", "mono", "td", "TL", false, false, false},
    // Graphic RAM of 16-bit words across a row, the leftmost pixel in the top bit, sent high byte
    // first: a row is a run of bytes, MSB left. Each row follows its own address command.
    {"st7920", "monochrome LCD graphic RAM, horizontal bytes, MSB the left pixel, rows top to bottom",
     "mono", "tr", "TL", true, false, false},
    // RGB565 over SPI or an 8-bit bus: the high byte (red and the top of green) goes first.
    {"st7735", "colour TFT, RGB565, 2 bytes per pixel high byte first, rows left to right, top to bottom",
     "c65k", "tr", "TL", true, false, false},
    {"st7735-bgr", "colour TFT with a BGR panel: as st7735, blue in the top bits", "c65k", "tr", "TL", true, true,
     false},
    {"st7789", "colour TFT, RGB565 as st7735", "c65k", "tr", "TL", true, false, false},
    {"st7789-bgr", "colour TFT with a BGR panel, BGR565", "c65k", "tr", "TL", true, true, false},
    {"ili9341", "colour TFT, RGB565 as st7735", "c65k", "tr", "TL", true, false, false},
    {"ili9341-bgr", "colour TFT with a BGR panel, BGR565", "c65k", "tr", "TL", true, true, false},
    // Over SPI the ILI9488 takes 18 bits as 3 bytes, each colour in the top 6 bits of its byte and
    // the low 2 bits ignored: the 24-bit RGB bytes are exactly that.
    {"ili9488", "colour TFT, RGB666 over SPI, 3 bytes per pixel R, G, B, each in the top 6 bits", "c16m", "tr",
     "TL", true, false, false},
    // 4-bit gray OLEDs, 2 pixels per byte, the left one in the high nibble: so the SSD1322 with
    // the nibble remap its drivers enable, and the SSD1327 with the remap the common drivers set
    // (A0h 51h). A module set up the other way needs --set snib=1.
    {"ssd1322", "16-gray OLED, 2 pixels per byte, the left one in the high nibble, level 15 the brightest",
     "gray16h", "tr", "TL", true, false, true},
    {"ssd1327", "16-gray OLED, 2 pixels per byte as ssd1322 (with remap A0h 51h)", "gray16h", "tr", "TL", true,
     false, true},
    // Black and white e-paper RAM: horizontal bytes, MSB the left pixel, 1 = white. The SSD1680 has
    // it so in its B/W RAM (24h). The UC8151 follows its VCOM and data interval register: with the
    // value its drivers set (CDI 97h) the new data of DTM2 is 1 = white as well.
    {"ssd1680", "black and white e-paper, horizontal bytes, MSB the left pixel, 1 = white", "mono", "tr", "TL",
     true, false, true},
    {"uc8151", "black and white e-paper, as ssd1680 (with CDI 97h), 1 = white", "mono", "tr", "TL", true, false,
     true},
}};
// clang-format on

// nullptr when no controller has that name; the name is compared without regard to case.
const ControllerPreset* FindController(std::string_view name);

// What the user chose himself on the command line or in a dialog; empty or 0 is "not chosen".
struct ControllerChoices {
  std::string mode;
  std::string direction;
  std::string origin;
  int bitOrder = 0;  // 1 MSB first, -1 MSB last
};

// Fills what was not chosen from the preset. A chosen direction brings its own origin, so the
// preset's origin is taken only with the preset's direction. Returns one note per choice that
// differs from the preset, for the user to see that the choice won.
std::vector<std::string> MergeControllerPreset(const ControllerPreset& preset, ControllerChoices& choices);

// The preset as the options it stands for: "--mode mono --direction td --origin TL --msb-last".
std::string ControllerOptionsText(const ControllerPreset& preset);

}  // namespace rm
