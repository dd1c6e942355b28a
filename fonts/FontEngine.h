#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rm {

// The text machinery the font jobs need: installed fonts and font files opened at a size, their
// metrics, one character measured and drawn, kerning pairs, the installed families and the code
// pages of ANSI mode. The platform layer implements it (FreeType, fontconfig, HarfBuzz, iconv);
// the headless code only sees these classes.
//
// Units are pixels at 96 dpi: a point size p becomes a pixel height of MulDiv(p, 96, 72), the em
// height of the face. Y grows downwards; y = 0 is the top of the character cell, the baseline is
// at y = Ascent.

// What to open: an installed family by name, or a file. Styles a face does not have are made up
// (slanted, emboldened) where the outline allows it.
struct FontRequest {
  std::string family;  // installed family name ("DejaVu Sans"); used when `file` is empty
  std::string file;    // a font file: TTF, OTF, TTC, BDF or PCF; wins over `family`
  int faceIndex = 0;   // the face inside a collection (TTC)
  int pointSize = 10;  // at 96 dpi; 1..300 is what the Font Panel allows, the engine takes any >= 1
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  // The glyph's path stroked with a one-pixel pen on top of its fill: the letters grow by half a
  // pixel all round. Raster fonts have no path and are drawn as usual.
  bool outline = false;
  // Grey-level coverage from the smoothing rasteriser; otherwise the hinted 1-bit rasteriser.
  bool antialiased = false;
};

// Which face was really opened. When fontconfig substitutes another family for a name that is
// not installed, `substituted` is set and `family` names the one in use.
struct FontIdentity {
  std::string requestedFamily;  // as asked (empty when opened from a file)
  std::string family;           // the family in use
  std::string style;            // the face's style name ("Bold Oblique")
  std::string file;             // the file the face came from
  bool substituted = false;
  bool syntheticBold = false;    // emboldened by the engine, the face has no bold
  bool syntheticItalic = false;  // slanted by the engine, the face has no italic
};

// The text metrics of an opened font, in pixels.
struct FontMetrics {
  int pixelSize = 0;        // em height in pixels
  int height = 0;           // Ascent + Descent: the text height of every character
  int ascent = 0;           // cell top to baseline (OS/2 win ascent where the face has it)
  int descent = 0;          // baseline to cell bottom (OS/2 win descent where the face has it)
  int internalLeading = 0;  // height - em height
  int externalLeading = 0;
  int averageCharWidth = 0;
  int maxCharWidth = 0;
  int underlineTop = 0;  // first row of the underline, from the cell top
  int underlineThickness = 1;
  int strikeOutTop = 0;  // first row of the strike-out line, from the cell top
  int strikeOutThickness = 1;
  bool fixedPitch = false;
  bool trueType = false;  // a scalable outline face (TrueType or OpenType)
  bool raster = false;    // a bitmap face (BDF, PCF, bitmap-only sfnt)
  int firstChar = 0;      // lowest and highest character code the face maps
  int lastChar = 0;
};

// The measure of one character. The ink box is the smallest rectangle holding every inked pixel
// as the character is drawn (styles included); it is empty for a blank character.
struct GlyphMetrics {
  bool hasGlyph = false;  // the face maps the character (false: the face's missing-glyph box is used)
  int advance = 0;        // the cell width: pen movement, what a text extent adds up
  int inkLeft = 0, inkTop = 0, inkRight = 0, inkBottom = 0;  // right and bottom exclusive
  bool InkEmpty() const { return inkRight <= inkLeft || inkBottom <= inkTop; }
};

// A drawn text, as coverage: 0 is background, 255 full ink. The 1-bit rasteriser gives only 0
// and 255. The picture covers [x, x + width) by [y, y + height) in cell coordinates, which may
// reach left of 0 or right of the advance when ink overhangs the cell.
struct GlyphImage {
  int x = 0, y = 0;
  int width = 0, height = 0;
  int advance = 0;     // the text's width: what the pen moved
  int cellHeight = 0;  // the font's height
  std::vector<std::uint8_t> coverage;  // row-major, width x height

  // Coverage at a cell position; 0 outside the picture.
  std::uint8_t At(int cellX, int cellY) const {
    const int px = cellX - x, py = cellY - y;
    if (px < 0 || py < 0 || px >= width || py >= height) return 0;
    return coverage[static_cast<std::size_t>(py) * width + px];
  }
};

// A kerning pair: the amount is added to the pen between `first` and `second`, in pixels at the
// font's size (negative brings them together).
struct KerningPair {
  char32_t first = 0;
  char32_t second = 0;
  int amount = 0;
};

// An opened font at one size and style.
class Font {
 public:
  virtual ~Font() = default;
  virtual const FontIdentity& Identity() const = 0;
  virtual const FontMetrics& Metrics() const = 0;
  virtual bool HasGlyph(char32_t c) const = 0;
  virtual GlyphMetrics Measure(char32_t c) const = 0;
  // Sum of the advances, without kerning: the text extent's width. Its height is Metrics().height.
  virtual int TextWidth(const std::u32string& text) const = 0;
  // Draws `text` from pen position 0 on one line, underline and strike-out included.
  virtual GlyphImage Render(const std::u32string& text) const = 0;
  // The face's kerning pairs at this size, at most `maxPairs`: its kern table's pairs in the
  // table's order (characters of the Basic Multilingual Plane only), or, for a face with only
  // OpenType positioning, the pairs among `candidates` that move apart or together by at least
  // half a pixel at this size (every pair of them, first character outer; empty means the
  // printable characters of Windows-1252).
  virtual std::vector<KerningPair> KerningPairs(int maxPairs = 600, const std::u32string& candidates = {}) const = 0;
};

// An installed family, as the Font Panel's list and its filters see it.
struct FontFamilyInfo {
  std::string family;
  bool trueType = false;        // scalable outline (TrueType or OpenType)
  bool fixedPitch = false;      // every face of it has one advance
  bool raster = false;          // bitmap faces only
  bool device = false;          // a printer's own font; never set on this platform
  std::vector<int> pointSizes;  // a raster family's sizes in points at 96 dpi, ascending
};

// The kind label of a family: "TrueType Font", "Fixed TrueType", "Raster Font", "Fixed Font",
// "Device Font" or "Vectorized Font".
std::string FontKindLabel(const FontFamilyInfo& family);

// The Font Panel's type filters, in the order of its list.
enum class FontFilter { None, FixedPitch, NotTrueType, VariablePitch, TrueType, Device, Raster };
// "no filter", "Fixed Pitch Only", "No True Type Only", "Variable Pitch Only", "True Type Only",
// "Device Type Only", "Raster Type Only".
std::string FontFilterLabel(FontFilter filter);
// A filter from its label or a short word (none, fixed, not-truetype, variable, truetype, device,
// raster), any case; nullopt for anything else.
std::optional<FontFilter> ParseFontFilter(const std::string& text);
bool PassesFontFilter(const FontFamilyInfo& family, FontFilter filter);

// A Windows code page number with the name the user sees ("1252  (ANSI - Latin I)").
struct CodePageInfo {
  int number = 0;
  std::string name;
};

class FontEngine {
 public:
  virtual ~FontEngine() = default;
  // Opens a font. On failure returns nullptr and puts a message for the user into `error` (a
  // file that is not a font, a damaged file, no font installed at all). A family name that is not
  // installed is not a failure: another is used and Identity() says which.
  virtual std::unique_ptr<Font> Open(const FontRequest& request, std::string& error) const = 0;
  // The installed families, sorted by name without regard to case.
  virtual std::vector<FontFamilyInfo> Families() const = 0;
  // The single-byte code pages this system can convert, ascending.
  virtual std::vector<CodePageInfo> CodePages() const = 0;
  // One byte of `codePage` as a Unicode character; nullopt when the code page leaves the byte
  // undefined or is not installed.
  virtual std::optional<char32_t> ToUnicode(int codePage, std::uint8_t byte) const = 0;
};

}  // namespace rm
