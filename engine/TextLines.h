#pragma once
#include <string>
#include <vector>

namespace rm {

// The lines of a text editor as the engine sees them. Views mirror this model; the engine only
// appends, takes back and replaces lines.
class TextLines {
 public:
  void Add(std::string line) { lines_.push_back(std::move(line)); }
  void Insert(std::size_t index, std::string line) {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(index), std::move(line));
  }
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
  // Writes the lines as WriteFileAtomically does: whole or not at all.
  bool SaveToFile(const std::string& path, std::string* error = nullptr) const;

  // Kept for views that batch their repaints; the model itself needs no bracketing.
  void BeginUpdate() { ++updating_; }
  void EndUpdate() {
    if (updating_ > 0) --updating_;
  }
  bool Updating() const { return updating_ > 0; }

 private:
  std::vector<std::string> lines_;
  int updating_ = 0;
};

// Writes `data` to `path`, the one way every file of the program is written. A regular file (or a
// new name) is replaced whole or not at all: the data goes into a nameless file in the same folder,
// which takes the name only once it is complete and on disk, with the permissions of the file it
// replaces. A symbolic link is followed and its target replaced in the target's own folder; the
// link stays. A device, a FIFO or "-" (standard output) is written straight into. A read-only file
// is refused and left as it is. False with the reason in `error` when nothing was written.
bool WriteFileAtomically(const std::string& path, const std::string& data, std::string* error = nullptr);

namespace detail {
// WriteFileAtomically as it goes on a file system without nameless files: through a temporary
// name beside the file. For the tests of that road.
bool WriteFileThroughTemporaryName(const std::string& path, const std::string& data, std::string* error = nullptr);
}  // namespace detail

// True when `path` (its links followed) is a regular file or names nothing yet: a name beside
// which companion files (the parameter file of an output) belong. False for "-", devices,
// FIFOs, sockets and folders.
bool IsRegularTarget(const std::string& path);

// Makes an empty file at `path` only when nothing is there: two programs making the same name at
// once cannot both succeed, and nothing is ever replaced. False with the reason otherwise ("File
// exists" when the name is taken).
bool CreateNewFile(const std::string& path, std::string* error = nullptr);

// Temporary names left by writes that were killed before they ended: `path` + ".tmp" + the id of
// a process that is gone, untouched for a minute. Writes remove them; exposed for the tests.
std::vector<std::string> StaleTemporaries(const std::string& path);

// What the caller is about to do with a file whose use is tested.
enum class FileUse { Read, Write };

// True when another program holds the file: it keeps a lock on it (whole-file or record lock)
// that conflicts with `use` (any lock for a write, an exclusive one for a read), or the file
// exists and cannot be opened at all. A missing file is not in use. Nothing is held after the
// test, so the answer may change before the caller goes on. The program's own processes never
// lock the settings files themselves (they meet at ProjectLock), and a reading test takes a
// shared probe, so that two readers testing at once do not see each other.
bool IsFileInUse(const std::string& path, FileUse use = FileUse::Write);

}  // namespace rm
