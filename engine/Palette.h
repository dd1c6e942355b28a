#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/ImageCodecs.h"
#include "engine/UiPort.h"

namespace rm {

// The colour tables of the modes and the palette files behind them.
//
// Two kinds of table give a pixel its value:
//  - `ModeColours` (gray ramps, 8 and 16 colours): at most 32 entries, searched from index 0,
//    kept in the order they were built or read.
//  - `PaletteTable` (256, 4096, 65536, 262144 colours): read from a .pal file and sorted
//    ascending as plain 0x00BBGGRR numbers, so that an index carries blue in its high bits.
//
// The 8 and 16 colour tables stay `ModeColours` tables even when a file replaces them, and keep
// the file's order: the value of a colour is its line in the file. The shipped default files list
// the built-in colours in the built-in order, so a default install behaves exactly like the
// built-in tables; the built-ins apply when those files are missing or unreadable.

// The built-in colours of the 8 and 16 colour modes, index = output value.
inline constexpr Colour kBuiltInColours8[8] = {0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000,
                                               0x00FFFF, 0x00FF00, 0x0000FF, 0x000000};
inline constexpr Colour kBuiltInColours16[16] = {0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000, 0xC0C0C0, 0x808080,
                                                 0x808000, 0x800080, 0x800000, 0x00FFFF, 0x00FF00, 0x008080,
                                                 0x008000, 0x0000FF, 0x000080, 0x000000};

// The palette labels shown beside the colour panel.
inline constexpr std::string_view kLabelCustomLoaded = "Custom Color Palette loaded";
inline constexpr std::string_view kLabelCurrentCustom = "Current Palette is Custom";
inline constexpr std::string_view kLabelDefaultLoaded = "Default Color Palette Loaded";
inline constexpr std::string_view kLabelDefaultGrayLoaded = "Default Grayscale Color Palette Loaded";
inline constexpr std::string_view kLabelCurrentDefault = "Current Palette is Default";

// A gray ramp from white down: 4, 16 or 32 levels (any other count gives an empty table).
std::vector<Colour> GrayRamp(int levels);

// Fills `ModeColours` for the session's mode: the gray ramps of the modes 24 to 31 (reversed when
// `InvertGrayPalette` is on) and the built-in 8 and 16 colours of the modes 54 and 55. Other
// modes have no mode table and get an empty one.
void BuildModeColours(ConversionSession& session);

// Where palette files are looked for. The custom file stands beside the active project; the
// default files are looked for in `DefaultFolders`, in order (for instance the inits folder, then
// the program's data folder).
struct PaletteFolders {
  std::string ActiveProject;  // full path of the active .LCD; empty when there is none
  std::vector<std::string> DefaultFolders;
};

enum class PaletteOrigin { None, BuiltIn, Custom, Default };

// What a load did. `LoadedLabel` is also sent to the status line when a file was loaded;
// `CurrentLabel` is the palette label of the colour panel.
struct PaletteLoadResult {
  bool Loaded = false;  // the table now holds the file's colours
  PaletteOrigin Origin = PaletteOrigin::None;
  std::string Path;  // the file read, or the one that failed
  std::string LoadedLabel;
  std::string CurrentLabel;
};

// One colour in the text form of palette files: "$00BBGGRR" or "0x..." hexadecimal, or decimal,
// with blanks around it allowed. nullopt when the text is no colour of 0..0xFFFFFF.
std::optional<Colour> ParsePaletteColour(std::string_view text);
// "$00BBGGRR", upper case, 8 digits.
std::string FormatPaletteColour(Colour c);
// Reads a .pal file: one colour per line, blank lines ignored. nullopt when the file cannot be
// read or a line is no colour.
std::optional<std::vector<Colour>> ReadPaletteFile(const std::string& path);

// The file a palette of `colours` entries comes from: the project's custom file first, then the
// default file in each default folder. `gray256` picks the grayscale default of 256 entries.
// nullopt when none exists; `custom` tells which kind was found.
std::optional<std::string> FindPaletteFile(int colours, bool gray256, const PaletteFolders& folders,
                                           bool* custom = nullptr);
// project path without its ".LCD" + "_" + colours + ".pal".
std::string CustomPaletteName(const std::string& activeProject, int colours);

// Ascending as numbers; then reversed if the session's "Revert The Color Palette on Loading
// (first<>last Color)" option is on.
void SortPalettes(ConversionSession& session);

// The loaders of `PaletteTable`. A missing file or a file whose colour count is wrong is told
// through `ui` (title "Color Palette Error") and leaves the table as it was.
PaletteLoadResult Load8bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);
PaletteLoadResult Load12bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);
PaletteLoadResult Load16bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);
PaletteLoadResult Load18bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);
// The loaders of the 8 and 16 colour `ModeColours`: the default file in file order, else the
// built-in table, silently. `Loaded` is true when the file was used.
PaletteLoadResult Load8ColorsPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);
PaletteLoadResult Load16ColorsPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);

// Builds the colour table of the session's mode: `ModeColours` for the gray and 8/16 colour
// modes, `PaletteTable` from the files for the palette modes. Monochrome and 16M have no table.
PaletteLoadResult SelectionPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui);

// The value of a colour in a table loaded by the loaders above (ascending, or descending after
// the revert option): the lowest index holding `c`, -1 when none. A binary search that gives the
// same answer as a linear search from index 0.
int PaletteIndexOf(const std::vector<Colour>& sortedTable, Colour c);
// The same for `ModeColours`, which is short and in no particular order.
int ModeColourIndexOf(const std::vector<Colour>& modeColours, Colour c);

// A hash index over a colour table, for the per-pixel lookups of a conversion: `IndexOf` gives
// exactly what a linear search from index 0 gives (the lowest index holding the colour, -1 when
// none), in constant time. Open addressing keeps a 262144 colour table within 2 MiB.
class ColourIndex {
 public:
  void Build(const std::vector<Colour>& table);
  int IndexOf(Colour c) const {
    if (lattice_) {
      const std::int32_t v = levels_[0][c & 0xFF] + levels_[1][(c >> 8) & 0xFF] + levels_[2][(c >> 16) & 0xFF];
      return (c & ~0xFFFFFF) == 0 && v >= 0 ? v : -1;
    }
    if (slots_.empty()) return -1;
    for (std::size_t i = Hash(c);; i = (i + 1) & mask_) {
      const Slot& s = slots_[i];
      if (s.index < 0) return -1;
      if (s.colour == c) return s.index;
    }
  }
  // IndexOf for a run of pixels (the low 24 bits of each), with the table's memory fetched a few
  // pixels ahead: a large palette does not fit the cache, and waiting for each slot in turn
  // would cost a memory round trip per pixel.
  void IndexOfRun(const std::uint32_t* pixels, std::int32_t* out, std::size_t n) const;

 private:
  struct Slot {
    Colour colour = 0;
    std::int32_t index = -1;
  };
  // Fibonacci hashing: the top bits of the 32 bit product, which depend on every bit of the
  // colour (palettes are lattices whose low bits repeat the high ones).
  std::size_t Hash(Colour c) const { return (static_cast<std::uint32_t>(c) * 0x9E3779B1u) >> shift_; }
  // An ascending table that is a whole red x green x blue lattice (the default palettes) needs no
  // slots: a colour's index is the sum of what its three components add, each component value
  // not on the lattice adding enough below zero to make any sum negative.
  bool BuildLattice(const std::vector<Colour>& table);
  static constexpr std::int32_t kOffLattice = -(1 << 28);
  bool lattice_ = false;
  std::int32_t levels_[3][256] = {};  // red, green, blue: value -> its part of the index
  std::vector<Slot> slots_;
  std::vector<Colour> source_;  // the table the slots were built from
  bool built_ = false;
  std::size_t mask_ = 0;
  int shift_ = 32;
};

// The number of distinct colours of `bitmap`; `list`, if given, receives them in order of first
// appearance, rows walked from top to bottom.
int CountandListColors(const Bitmap& bitmap, std::vector<Colour>* list);

// Each pixel becomes the gray round(0.3 R + 0.59 G + 0.11 B), computed in long double and
// rounded half to even.
void Get24bitGrayscale(Bitmap& bitmap);

// "Export RGB Palette to Text File": the table as a .pal file, one "$00BBGGRR" line per colour,
// written through a temporary file. On failure returns false with the reason in `error`.
bool ExportPaletteToText(const std::vector<Colour>& table, const std::string& path, std::string& error);

// Makes the active project's custom palette from the colours of a picture. The picture must hold
// exactly 256, 4096, 65536 or 262144 colours; they are written in order of first appearance to
// the project's custom palette file. Refused in the project "default". Returns the path written,
// or nullopt when refused or failed (the user has been told why).
std::optional<std::string> LoadColorPalette(const std::string& picturePath, const std::string& activeProject,
                                            ImageCodecs& codecs, UiPort& ui);

}  // namespace rm
