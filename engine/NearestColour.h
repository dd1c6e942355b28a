#pragma once
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/UiPort.h"

namespace rm {

// Finds the palette colour that stands in for any 24 bit colour.
//
// The search looks only in one quarter of the sorted palette: the colour is compared with the
// entries n/4, n/2 and 3n/4 as a number, and the quarter it falls in is searched for the least
// squared distance on the byte components. A closer colour in another quarter is not found. That
// is the rule pictures are reduced by, so it is kept even where it is not the true nearest.
//
// Answers are remembered per colour (`NearestCache`) until the palette changes, so that a photo
// costs one search per distinct colour. The cache grows with the number of distinct colours asked
// for, not with the 2^24 possible ones.
class NearestColour {
 public:
  // No palette: every colour passes unchanged.
  NearestColour() = default;

  // Takes the table of the session's mode: `PaletteTable` in the palette modes, `ModeColours` in
  // the 8 and 16 colour modes; in monochrome, 16M and the gray ramp modes colours pass unchanged.
  void Configure(const ConversionSession& session);
  // Searches `palette` (a sorted copy is kept). An empty palette passes colours unchanged.
  // `latticeTables` false keeps the search even for a lattice, to check the tables against it.
  void SetPalette(std::vector<Colour> palette, bool latticeTables = true);

  // The sorted palette searched; empty when colours pass unchanged.
  const std::vector<Colour>& Palette() const { return palette_; }
  std::size_t PaletteSize() const { return palette_.size(); }

  // 0 gives 0 and 0x1000000 gives 0x1000000 whatever the palette; other colours get the quarter
  // search, remembered (a lattice palette answers from its tables and needs no memory).
  Colour NearestColor(Colour c);
  // The quarter search itself, without the cache and the two fixed answers.
  Colour Search(Colour c) const;
  // Whether the palette is a lattice answered from per-channel tables.
  bool IsLattice() const { return !lattice_.Empty(); }

  void ClearCache() { cache_.Clear(); }
  std::size_t CachedColours() const { return cache_.Size(); }

 private:
  // Open addressing from 24 bit colour to answer; 8 bytes a slot, at most half full.
  class Cache {
   public:
    bool Find(std::uint32_t key, Colour& value) const;
    void Insert(std::uint32_t key, Colour value);
    void Clear();
    std::size_t Size() const { return size_; }

   private:
    static constexpr std::uint32_t kEmpty = 0xFFFFFFFFu;
    struct Slot {
      std::uint32_t key;
      Colour value;
    };
    std::size_t IndexOf(std::uint32_t key) const;
    void Grow();
    std::vector<Slot> slots_;
    std::size_t size_ = 0;
    int shift_ = 0;
  };

  // A grid over one quarter of a large palette, so that a search looks at the few entries near
  // the colour instead of the whole quarter, with the same answer as a walk through it.
  class QuarterGrid {
   public:
    void Build(const std::vector<Colour>& palette, std::size_t first, std::size_t last);
    // The lowest index of least distance in [first, last], as the walk finds it.
    std::size_t Nearest(const std::vector<Colour>& palette, Colour c) const;
    bool Empty() const { return entries_.empty(); }

   private:
    int min_[3] = {0, 0, 0};
    int shift_[3] = {0, 0, 0};
    int cells_[3] = {1, 1, 1};
    std::vector<std::uint32_t> start_;    // per cell, into entries_; one more at the end
    std::vector<std::uint32_t> entries_;  // palette indices, ascending within a cell
  };
  static constexpr std::size_t kGridFrom = 512;  // smaller quarters are walked

  // The default palettes from 256 colours up are full blue x green x red lattices. The squared
  // distance is a sum over the channels, so the nearest entry is the nearest level on each channel,
  // the lower one on a tie (the lowest index, as the search takes it); the quarter rule only bounds
  // the blue level, since sorted as numbers a lattice's quarters are whole runs of blue levels.
  // Three tables of 256 levels then give the search's answer without searching.
  class Lattice {
   public:
    // False, and empty, unless `sorted` (ascending, as kept) is such a lattice with quarters that
    // start and end on a blue level.
    bool Build(const std::vector<Colour>& sorted);
    // The entry the quarter search finds for `c` in quarter 0..3.
    Colour Nearest(const std::vector<Colour>& sorted, Colour c, int quarter) const;
    bool Empty() const { return planeSize_ == 0; }

   private:
    std::array<std::array<std::uint8_t, 256>, 3> level_{};  // per channel: value to level index
    std::array<int, 3> levels_{};                           // level count per channel
    std::array<int, 4> blueLow_{}, blueHigh_{};             // blue levels of each quarter
    std::size_t planeSize_ = 0;                             // entries of one blue level
  };

  // Which of the four sorted quarters the search looks in for `c`, with its first and last index.
  int QuarterOf(Colour c, std::size_t& first, std::size_t& last) const;

  std::vector<Colour> palette_;
  std::array<QuarterGrid, 4> grids_;
  Lattice lattice_;
  Cache cache_;
};

// Replaces each pixel of `bitmap` by `map(pixel)` row by row, with progress; a run of one colour
// is mapped once, since neighbouring pixels are often alike. Esc, polled between rows, stops it
// with " Processing interrupted by escape !" and leaves the rows done. False when stopped.
template <class Map>
bool MapPixelsByRow(Bitmap& bitmap, UiPort& ui, Map&& map) {
  const int height = bitmap.Height();
  for (int y = 0; y < height; ++y) {
    if (ui.EscapePressed()) {
      ui.MessageDlg(" Processing interrupted by escape !", "Information", DlgType::Information, {"OK"});
      return false;
    }
    std::uint32_t* row = bitmap.Row(y);
    std::uint32_t lastIn = 0xFFFFFFFFu, lastOut = 0;
    for (int x = 0; x < bitmap.Width(); ++x) {
      if (row[x] != lastIn) {
        lastIn = row[x];
        lastOut = map(lastIn);
      }
      row[x] = lastOut;
    }
    ui.Progress(y + 1, height);
  }
  return true;
}

// Replaces every pixel of `bitmap` by `nearest.NearestColor(pixel)`, row by row, with progress and
// Esc polled per row. Stops at once when colours would pass unchanged or the palette has fewer
// than 3 entries. `name` "FONT" (any case) keeps the status line and log untouched, for glyphs.
// `grayFilter` is for the 8 bpp gray mode with a gray filter on: the picture is then only made
// gray. Returns false when it did not run to the end.
bool ConvertToNearestColor(Bitmap& bitmap, NearestColour& nearest, UiPort& ui, std::string_view name = {},
                           bool grayFilter = false);

}  // namespace rm
