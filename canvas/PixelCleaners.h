#pragma once
#include <string_view>
#include <vector>

#include "canvas/DrawingTools.h"
#include "engine/Bitmap.h"

namespace rm {

// The Special Effects menu's corrections of isolated pixels.
enum class PixelCleaner { Neighbours, NeighboursUntilStable, Horizontal, Vertical, Orthogonal, LinesUntilStable };

struct PixelCleanerInfo {
  PixelCleaner cleaner;
  std::string_view menuText;
  std::string_view logName;
};
const PixelCleanerInfo& CleanerInfo(PixelCleaner cleaner);

struct CleanResult {
  long long changed = 0;
  int coloursBefore = 0;
  int coloursAfter = 0;
};

// Runs one cleaner over the whole bitmap.
// - Neighbours: an inner pixel (the outermost rows and columns are left) takes the colour that
//   at least 5 of its 8 neighbours have; white pixels stay, and white never spreads.
// - Horizontal / Vertical: a pixel between two equal neighbours on the row / column takes their
//   colour; Orthogonal is Horizontal then Vertical.
// - The "until stable" forms repeat theirs until a pass changes nothing.
// A pass walks the rows from the top, each from the left, and corrects in place: a pixel sees its
// corrected neighbours above and to its left.
CleanResult CleanPixels(Bitmap& bitmap, PixelCleaner cleaner);

// Contour tracing over the marked pixels, row by row: a marked pixel whose four neighbours are
// all marked and that does not follow an edge in its row gets `fill`; the others get `pen`.
void TraceContour(Bitmap& bitmap, const FloodArea& marks, Colour pen, Colour fill);

}  // namespace rm
