#pragma once
#include <string>
#include <vector>

namespace rm {

// The lines of a text editor as the engine sees them. Views mirror this model; the engine only
// appends, takes back and replaces lines.
class TextLines {
 public:
  void Add(std::string line) { lines_.push_back(std::move(line)); }
  void Delete(std::size_t index) { lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index)); }
  std::size_t Count() const { return lines_.size(); }
  void Clear() { lines_.clear(); }
  bool Empty() const { return lines_.empty(); }
  const std::string& operator[](std::size_t i) const { return lines_[i]; }
  std::string& operator[](std::size_t i) { return lines_[i]; }
  const std::string& Last() const { return lines_.back(); }
  std::string TakeLast();
  const std::vector<std::string>& Lines() const { return lines_; }

  // All lines joined, each ended by "\n".
  std::string Text() const;
  void SetText(const std::string& text);
  // Reads either line ending; false when the file cannot be read.
  bool LoadFromFile(const std::string& path);
  // Writes to a temporary name and renames it into place, so a failed write leaves the old file.
  bool SaveToFile(const std::string& path, std::string* error = nullptr) const;

  // Kept for views that batch their repaints; the model itself needs no bracketing.
  void BeginUpdate() { ++updating_; }
  void EndUpdate() { if (updating_ > 0) --updating_; }
  bool Updating() const { return updating_ > 0; }

 private:
  std::vector<std::string> lines_;
  int updating_ = 0;
};

// Writes `data` to `path` through a temporary file in the same folder and a rename.
bool WriteFileAtomically(const std::string& path, const std::string& data, std::string* error = nullptr);

// True when another program holds the file: it keeps a lock on it (whole-file or record lock),
// or the file exists and cannot be opened at all. A missing file is not in use. Nothing is held
// after the test, so the answer may change before the caller writes.
bool IsFileInUse(const std::string& path);

}  // namespace rm
