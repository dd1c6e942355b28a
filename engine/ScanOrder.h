#pragma once
#include <climits>

#include "engine/ConversionSession.h"

namespace rm {

// The way the pixels of one datum follow each other: down or up a column, right or left along a row.
enum class PixelStep { Down, Up, Right, Left };

// The order in which a walk visits the export area, as one value: the walk takes `groups` groups
// (the bands of a sliced direction, the lines of a whole-line one) of at most `data` data each,
// and a datum's pixels run in `step` from where it starts.
//
// Sliced: each datum of a band starts at its own pixel, `datumDx`/`datumDy` on from the one before;
// a datum that would start outside [x1, x2) x [y1, y2) ends the band. Whole lines: only a line's
// first pixel is set, the packer carries the position along the line. Either way `groupDx`/`groupDy`
// move the start of one group to the next, and a band that would start outside [nextFrom, nextTo)
// (its coordinate along the step) is not taken.
//
// The output marks groups as it is told: a prefix line at each start (which first writes the
// suffix the group before left pending, unless `flushSuffixAtOpen` is off), and at the end a pending
// suffix (Lines) or one written at once (LinesSuffixNow).
struct ScanOrder {
  enum class Marks { None, Lines, LinesSuffixNow };

  PixelStep step = PixelStep::Right;
  bool sliced = false;
  int groups = 0;
  int data = 0;
  int x = 0, y = 0;
  int groupDx = 0, groupDy = 0;
  int datumDx = 0, datumDy = 0;
  int x1 = INT_MIN, y1 = INT_MIN, x2 = INT_MAX, y2 = INT_MAX;
  int nextFrom = INT_MIN, nextTo = INT_MAX;
  Marks marks = Marks::Lines;
  bool flushSuffixAtOpen = true;
  // The canvas size goes back to the picture's after the walk (the walks from some corners have
  // always done so; a half export is then the whole picture's height again).
  bool resetCanvasSize = false;

  bool Vertical() const { return step == PixelStep::Down || step == PixelStep::Up; }
  bool StartsInside(int px, int py) const { return px >= x1 && px < x2 && py >= y1 && py < y2; }
  // Whether a band starting at (px, py) is taken.
  bool BandTaken(int px, int py) const {
    const int along = Vertical() ? py : px;
    return along >= nextFrom && along < nextTo;
  }
};

// The order of the session's Paging direction, origin corner, mode and export area (the lower half
// of a half export included).
ScanOrder ScanOrderOf(const ConversionSession& s);

// Runs the walk of `o` on the session's position, for the writer and the reader alike: at each
// datum, with (CurX, CurY) on its first pixel, `v.Datum(step)`, which moves the position on as it
// reads (whole lines) or not (sliced). `v.BeforeDatum()` false ends the group; the session's Abort
// ends the walk. `v.GroupStart(o)` and `v.GroupEnd(o)` frame each group.
template <class Visitor>
void RunScanOrder(ConversionSession& s, const ScanOrder& o, Visitor& v) {
  int groupX = o.x, groupY = o.y;
  for (int g = 0; g < o.groups && !s.Abort; ++g) {
    v.GroupStart(o);
    s.CurX = groupX;
    s.CurY = groupY;
    int x = groupX, y = groupY;
    for (int i = 0; i < o.data; ++i, x += o.datumDx, y += o.datumDy) {
      if (o.sliced && !o.StartsInside(x, y)) break;
      if (!v.BeforeDatum()) break;
      if (o.sliced) {
        s.CurX = x;
        s.CurY = y;
      }
      v.Datum(o.step);
    }
    if (s.Abort) break;
    v.GroupEnd(o);
    groupX += o.groupDx;
    groupY += o.groupDy;
    if (o.sliced && !o.BandTaken(groupX, groupY)) break;
  }
}

}  // namespace rm
