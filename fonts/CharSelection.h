#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/UiPort.h"
#include "fonts/FontJob.h"

namespace rm {

// The characters a job takes, as the Font Panel's two 16 by 16 grids choose them.
//
// The character grid: the cell at column c, row r stands for code 16 r + c of the subblock on
// show (Unicode), or for the byte 16 r + c + 32 (ANSI: the codes below 32 are not in the grid).
// The subblock grid: the cell at (col, row) stands for the subblock whose high byte is
// 16 row + col; only those of the block in use can be chosen.
//
// The selection (FontJob::SelectedChars) has one of these forms:
// - ANSI: the chosen characters themselves (UTF-8 here), sorted by code, each once;
// - Unicode: each character as the two hexadecimal digits of its low byte and "/", sorted, each
//   once; the list belongs to the subblock on show;
// - address range: "RANGE=" first " " last, four hexadecimal digits each;
// - range across subblocks: "*" first subblock "/" first low byte "*" last subblock "/" last low
//   byte, subblocks counted from 1 in decimal, low bytes in two hexadecimal digits.
class CharSelection {
 public:
  // The character of one byte in the job's code page; nullopt where the page leaves it undefined.
  using CodePageMap = std::function<std::optional<char32_t>(std::uint8_t)>;
  // Whether the job's font has a glyph for a character.
  using GlyphTest = std::function<bool(char32_t)>;

  CharSelection(FontJob& job, UiPort& ui) : job_(job), ui_(ui) {}

  // Without a map, a byte is its own character (ISO 8859-1); without a test every glyph is there.
  void SetCodePageMap(CodePageMap map) { codePage_ = std::move(map); }
  void SetGlyphTest(GlyphTest test) { hasGlyph_ = std::move(test); }

  // The code a cell stands for; -1 for a cell outside the grid or past the byte range in ANSI.
  int CellCode(int col, int row) const;
  // The character of a cell (AsciiGridGetChar). A character the font lacks reads as 0 unless it
  // is the real "?". With `store`, outside Unicode mode, it becomes the current character.
  char32_t AsciiGridGetChar(int col, int row, bool store);
  char32_t CurrentChar() const { return current_; }

  // A click in the character grid: toggles the cell's character, or plays its part in a range
  // being chosen, or, in address range mode, fills the next hexadecimal field.
  void GridClick(int col, int row);
  // The "Click here + First + Last Char in Grid" button: the next two clicks give a range.
  void StartRange();
  bool RangeInProgress() const { return rangeStep_ != 0; }
  // Empties the selection.
  void Clear();
  // Sorts the selection by code and drops repeated entries.
  void MakeTheList();
  // ANSI: the list as typed or pasted below the grid, whose duplicates are ignored.
  void SetAnsiList(std::string_view text);
  // The selection's codes in order: ANSI characters, Unicode low bytes of the list.
  std::vector<int> Codes() const;

  // Address range mode: two hexadecimal fields, which take hexadecimal digits only (anything else
  // typed is dropped, as is a fifth digit).
  void SetAddressRangeMode(bool on);
  void SetFirstAddress(std::string_view text) { firstAddress_ = HexField(text); }
  void SetLastAddress(std::string_view text) { lastAddress_ = HexField(text); }
  const std::string& FirstAddress() const { return firstAddress_; }
  const std::string& LastAddress() const { return lastAddress_; }
  // Takes the two fields into the selection (ValidAdress); false, and nothing changed, while a
  // field is empty.
  bool ValidAdress();
  // "Selected = " and the count of codes of the range (0 when last is before first).
  std::string SelectedCountLabel() const;

  // The Unicode block in use, by its name as the block list spells it; false for no such block.
  bool SelectBlock(std::string_view name);
  void FirstSubblock() { ShowSubblock(FirstHigh()); }
  void LastSubblock() { ShowSubblock(LastHigh()); }
  void NextSubblock() { ShowSubblock(job_.SubblockHigh + 1); }
  void PreviousSubblock() { ShowSubblock(job_.SubblockHigh - 1); }
  // Shows the subblock `n` (from 1) of the block; false when the block has none such.
  bool ShowSubblockNumber(int n) { return ShowSubblock(FirstHigh() + n - 1); }
  // A click in the subblock grid; false for a cell outside the block.
  bool SubblockGridClick(int col, int row) { return ShowSubblock(16 * row + col); }
  int SubblockNumber() const { return job_.SubblockHigh - FirstHigh() + 1; }
  // "Subblock n of m".
  std::string SubblockLabel() const;
  // "Number of subblocks (max 256)  = " m.
  std::string SubblockCountLabel() const;

 private:
  static std::string HexField(std::string_view text);
  int FirstHigh() const { return job_.UnicodeBlockFirst >> 8; }
  int LastHigh() const { return job_.UnicodeBlockLast >> 8; }
  bool ShowSubblock(int high);
  char32_t CharOfCode(int code) const;
  void Toggle(int code);
  void AddRange(int firstCode, int lastCode);

  FontJob& job_;
  UiPort& ui_;
  CodePageMap codePage_;
  GlyphTest hasGlyph_;
  char32_t current_ = U'A';
  int rangeStep_ = 0;  // 1: the first click is awaited, 2: the last
  int rangeFirstCode_ = 0, rangeFirstSubblock_ = 1;
  std::string firstAddress_, lastAddress_;
  bool nextFieldIsLast_ = false;
};

// A character as UTF-8 and back; the selection and the script are UTF-8 text.
std::string Utf8(char32_t c);
std::u32string FromUtf8(std::string_view s);

}  // namespace rm
