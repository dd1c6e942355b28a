#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace rm {

// The project file: an INI text of "[section]" headers and "key=value" lines, read the way the
// desktop profile functions read it, and updated in place so that a file the user edited by hand
// keeps its comments, its order and its odd lines.
//
// Reading rules:
// - A line is trimmed of blanks (space, tab) at both ends before it is looked at.
// - "[name]" starts a section; text after the first "]" is ignored and the name is trimmed.
//   A line that opens a bracket and never closes it is not a section header: it is kept as an
//   ordinary line of the section before it and is not a key either.
// - A line whose first character is ";" is a comment. Any other line with "=" after at least one
//   character of name is a key; the name and the value are trimmed. Lines without "=" are kept
//   as they are and mean nothing.
// - Keys above the first section header belong to no section and cannot be read.
// - Section and key names compare without regard to ASCII case.
// - When a section name occurs twice, the first occurrence is the section: reads, writes and
//   the key list use it, and the later ones are kept in the file but never looked at. Likewise
//   the first of two equal keys in a section wins.
// - A value wrapped in one pair of matching quotes (" or ') loses that pair, so a value may
//   carry blanks at its ends: `key=" x "` reads " x ".
//
// Writing rules:
// - An existing key keeps its line and position; the line becomes "key=value" with the spelling
//   of the name it already had.
// - A new key goes after the last key of its section (after the header when there is none), so
//   comments and blank lines that lead into the next section stay where they are.
// - A new section goes at the end of the file, after one blank line.
// - A value that would not read back as written (blanks at its ends, or wrapped in matching
//   quotes) is written in double quotes. A value is one line: line breaks become blanks.
// - Everything else (comments, odd lines, later duplicates) is written back byte for byte;
//   lines end with "\n" whatever the file had.
class IniFile {
 public:
  IniFile() { SetText(""); }
  // Reads `path` with either line ending. A file that does not exist is an empty project and not
  // an error; the path is kept so that Save() creates it. False with a message when the file
  // exists but cannot be read; the model is then empty and has no path, so a Save() that follows
  // refuses rather than replace a file it never read.
  bool Load(const std::string& path, std::string* error = nullptr);
  // Replaces the whole model by `text` (for tests and for files that came by other ways).
  void SetText(const std::string& text);
  // The file as Save() would write it.
  std::string Text() const;
  // Writes the file through a temporary name and a rename, so a failed or interrupted write
  // leaves the old file whole. False with a message naming the file when it fails.
  bool Save(std::string* error = nullptr) const;
  const std::string& Path() const { return path_; }
  void SetPath(std::string path) { path_ = std::move(path); }
  // True once a write changed something since Load() or SetText().
  bool Modified() const { return modified_; }

  // Present-but-empty gives "", a missing key gives `def`.
  std::string ReadString(std::string_view section, std::string_view key, const std::string& def) const;
  // A value reads as a whole number when it starts (after an optional "+" or "-") with a decimal
  // digit, or with "0x" and a hexadecimal digit; reading stops at the first other character, so
  // "12abc" is 12 and "7.9" is 7. A missing key, a value without leading digits and a number
  // outside the range of int give `def`.
  int ReadInteger(std::string_view section, std::string_view key, int def) const;
  // 0 is false, any other number (however large) is true, a value without leading digits gives
  // `def`; so do words like "true".
  bool ReadBool(std::string_view section, std::string_view key, bool def) const;

  // False, and nothing changes, when the names cannot be stored so that they read back: an empty
  // key, a name with a line break or blanks at its ends, a key with "=" or starting with "[" or
  // ";", a section name with "]".
  bool WriteString(std::string_view section, std::string_view key, std::string_view value);
  bool WriteInteger(std::string_view section, std::string_view key, int value);
  bool WriteBool(std::string_view section, std::string_view key, bool value);

  // Section and key names compare this way: without regard to ASCII case.
  static bool SameName(std::string_view a, std::string_view b);

  bool HasSection(std::string_view section) const;
  bool HasKey(std::string_view section, std::string_view key) const;
  // Section names in file order, each once, spelled as at its first occurrence.
  std::vector<std::string> Sections() const;
  // Key names of a section in file order, each once, spelled as at its first occurrence.
  std::vector<std::string> Keys(std::string_view section) const;

 private:
  struct Line {
    std::string text;  // as read, or as last written
    bool isKey = false;
    std::size_t nameBegin = 0, nameLen = 0;    // trimmed name within `text`
    std::size_t valueBegin = 0, valueLen = 0;  // trimmed value within `text`
    std::string_view Name() const { return std::string_view(text).substr(nameBegin, nameLen); }
    std::string_view Value() const { return std::string_view(text).substr(valueBegin, valueLen); }
  };
  struct Section {
    bool hasHeader = false;  // false only for the lines above the first header
    std::string name;
    std::string header;  // the header line as read
    std::vector<Line> lines;
    std::unordered_map<std::string, std::size_t> keyIndex;  // folded name -> first key line
    std::size_t lastKey = 0;                                // 1 + index of the last key line; 0 if none
  };

  static Line ParseLine(std::string text);
  const Section* Find(std::string_view section) const;
  const Line* FindKey(std::string_view section, std::string_view key) const;
  void AddSection(Section s);

  std::string path_;
  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t> sectionIndex_;  // folded name -> first section
  bool hadBom_ = false;
  bool modified_ = false;
};

}  // namespace rm
