#include "fonts/FontScan.h"

#include <algorithm>

namespace rm {

void FontScan::Datum(int byte) {
  ++words_;
  if (bytes_) {
    // The binary bytes are those of the text: inverted monochrome is inverted here too.
    bytes_->push_back(static_cast<std::uint8_t>(s_.Monochrome && s_.NegativeOutput ? 255 - byte : byte));
    return;
  }
  s_.CurrentByte = byte;
  formatter_.EmitDataByte();
}

void FontScan::Filler() {
  // The filler is written as it is given, in no bit order and never inverted: it marks words
  // that hold no pixels.
  ++words_;
  if (bytes_) {
    bytes_->push_back(static_cast<std::uint8_t>(filler_));
    return;
  }
  const bool negative = s_.NegativeOutput;
  s_.NegativeOutput = false;
  s_.CurrentByte = filler_;
  formatter_.EmitDataByte();
  s_.NegativeOutput = negative;
}

void FontScan::StartLines(int wordsPerLine) {
  if (bytes_) return;
  // One line per row or column of the glyph; no word ends the table, so every one keeps its
  // separator and the caller tidies the character's last line.
  s_.WorkDataPerLine = std::max(1, wordsPerLine);
  formatter_.Reset();
  s_.TotalBytesPlus = 1LL << 60;
}

bool FontScan::TranslateToDirection(const Bitmap& image, const GlyphMeasure& m, const FontScanSettings& st,
                                    FontScanResult& r) {
  r = {};
  failed_ = false;
  words_ = 0;
  filler_ = st.filler & 0xFF;
  const GlyphGeometry geometry(s_);
  const PagingDirection d = s_.Direction;
  const bool horizontal = IsHorizontal(d);

  // The rows: the top void and the bottom void left out with offsets, then the height limit.
  // "To Right" takes a limit equal to the height, "To Left" only a smaller one.
  const int firstRow = st.offsetsOn ? m.TopVoid : 0;
  int rowEnd = m.CharHeight - (st.offsetsOn ? m.BottomVoid : 0);
  if (horizontal && st.maxCharHeight != 0) {
    const bool limit = d == PagingDirection::ToLeftAll ? st.maxCharHeight < rowEnd : st.maxCharHeight <= rowEnd;
    if (limit) rowEnd = st.maxCharHeight + firstRow;
  }
  if (!horizontal && st.maxCharHeight != 0) rowEnd = firstRow + st.maxCharHeight;
  rowEnd = std::max(rowEnd, firstRow);

  // The columns. A fixed font keeps its whole cell, so that every glyph has the same words.
  const bool cutColumns = st.offsetsOn && !st.fixed;
  const int firstCol = cutColumns ? m.LeftVoid : 0;
  const int colEnd = std::max(firstCol, m.CharWidth - (cutColumns ? m.RightVoid : 0));
  r.firstColumn = firstCol;
  r.firstRow = firstRow;
  r.scanHeight = rowEnd - firstRow;

  // The walk reads a copy of the glyph's cell, white around it: ink that overhangs the cell is no
  // part of the character's data, and a word reaching past the cell reads white.
  const int across = geometry.PixelsPerWordAcross(), down = geometry.PixelsPerWordDown();
  const int widthNeeded = std::max(colEnd, std::max(m.CharWidth, st.maxWidthSeen)) + 2 * std::max(across, 2);
  const int heightNeeded = std::max(rowEnd, m.CharHeight) + 2 * down;
  source_.Resize(widthNeeded, heightNeeded, kWhite);
  // Only the area walked: the rows a limit or a void leaves out read white in a word that
  // reaches into them.
  for (int y = firstRow; y < std::min({rowEnd, m.CharHeight, image.Height()}); ++y)
    for (int x = firstCol; x < std::min({colEnd, m.CharWidth, image.Width()}); ++x)
      source_.SetPixel(x, y, image.GetPixel(x, y));
  s_.Source = &source_;
  s_.CanvasWidth = widthNeeded;
  s_.CanvasHeight = heightNeeded;
  s_.ExportAreaX1 = 0;
  s_.ExportAreaY1 = 0;
  s_.ExportAreaX2 = widthNeeded;
  s_.ExportAreaY2 = heightNeeded;
  packer_.Prepare();

  if (horizontal) {
    const int glyphWords = geometry.WordsWide(colEnd - firstCol, 1.0L);
    const int words = st.fixed ? std::max(geometry.WordsWide(st.maxWidthSeen, 1.0L), 1) : glyphWords;
    r.wordsPerLine = words;
    r.scanWidth = words * across;
    StartLines(words);
    const bool toLeft = d == PagingDirection::ToLeftAll;
    const bool ascending = toLeft ? s_.Origin == OriginCorner::TR : s_.Origin == OriginCorner::TL;
    for (int i = 0; i < rowEnd - firstRow && !failed_; ++i) {
      const int row = ascending ? firstRow + i : rowEnd - 1 - i;
      for (int k = 0; k < words && !failed_; ++k) {
        // Words past the glyph are the filler; to the left they come first.
        const int word = toLeft ? words - 1 - k : k;
        if (word >= glyphWords) {
          Filler();
          continue;
        }
        s_.CurY = row;
        s_.CurX = toLeft ? firstCol + word * across + across - 1 : firstCol + word * across;
        packer_.Pack(toLeft ? PixelStep::Left : PixelStep::Right);
      }
      if (packer_.Holding()) packer_.Flush();
      ++r.lines;
    }
  } else {
    // Column by column; in each column the words of `down` pixels downwards or upwards. Two
    // horizontal pixels a word take two columns at a time.
    const int colStep = s_.Gray16Horizontal ? 2 : 1;
    const int wordsDown = (r.scanHeight + down - 1) / down;
    const int glyphCols = colEnd - firstCol;
    const int cols = st.fixed ? std::max(st.maxWidthSeen, glyphCols) : glyphCols;
    r.wordsPerLine = wordsDown;
    r.scanWidth = cols;
    StartLines(wordsDown);
    const bool up = d == PagingDirection::UpAll;
    const bool forward = up ? s_.Origin != OriginCorner::BR : s_.Origin == OriginCorner::TL;
    for (int i = 0; i < cols && !failed_; i += colStep) {
      const int col = forward ? i : cols - colStep - i;
      for (int p = 0; p < wordsDown && !failed_; ++p) {
        if (col >= glyphCols) {
          Filler();
          continue;
        }
        s_.CurX = firstCol + col;
        s_.CurY = up ? rowEnd - 1 - p * down : firstRow + p * down;
        packer_.Pack(up ? PixelStep::Up : PixelStep::Down);
      }
      if (packer_.Holding()) packer_.Flush();
      ++r.lines;
    }
  }
  packer_.Release();
  s_.Source = nullptr;
  r.words = words_;
  return !failed_;
}

}  // namespace rm
