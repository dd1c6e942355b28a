#include "engine/TextLines.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace rm {

std::string TextLines::TakeLast() {
  std::string s = std::move(lines_.back());
  lines_.pop_back();
  return s;
}

std::string TextLines::Text() const {
  std::string out;
  std::size_t n = 0;
  for (const auto& l : lines_) n += l.size() + 1;
  out.reserve(n);
  for (const auto& l : lines_) {
    out += l;
    out += '\n';
  }
  return out;
}

void TextLines::SetText(const std::string& text) {
  lines_.clear();
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string::npos) {
      lines_.push_back(text.substr(start));
      break;
    }
    lines_.push_back(text.substr(start, end - start));
    if (text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ++end;
    start = end + 1;
  }
}

bool TextLines::LoadFromFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream ss;
  ss << in.rdbuf();
  if (in.bad()) return false;
  SetText(ss.str());
  return true;
}

namespace {

// Writes through a temporary file beside `path` and renames it into place, so a failed write
// leaves the old file. `write` puts the content into the stream and says whether all went in.
template <typename Write>
bool WriteAtomically(const std::string& path, std::string* error, Write write) {
  std::string tmp = path + ".tmp" + std::to_string(::getpid());
  FILE* f = std::fopen(tmp.c_str(), "wb");
  if (!f) {
    if (error) *error = std::strerror(errno);
    return false;
  }
  bool ok = write(f);
  ok = (std::fflush(f) == 0) && ok;
  int saved = errno;
  ok = (std::fclose(f) == 0) && ok;
  if (ok && std::rename(tmp.c_str(), path.c_str()) != 0) {
    saved = errno;
    ok = false;
  }
  if (!ok) {
    std::remove(tmp.c_str());
    if (error) *error = std::strerror(saved ? saved : EIO);
  }
  return ok;
}

}  // namespace

// Streams the lines: a table of many megabytes is not joined into one string first.
bool TextLines::SaveToFile(const std::string& path, std::string* error) const {
  return WriteAtomically(path, error, [this](FILE* f) {
    std::string chunk;
    chunk.reserve(1 << 20);
    for (const auto& l : lines_) {
      chunk += l;
      chunk += '\n';
      if (chunk.size() >= (1u << 20)) {
        if (std::fwrite(chunk.data(), 1, chunk.size(), f) != chunk.size()) return false;
        chunk.clear();
      }
    }
    return std::fwrite(chunk.data(), 1, chunk.size(), f) == chunk.size();
  });
}

bool WriteFileAtomically(const std::string& path, const std::string& data, std::string* error) {
  return WriteAtomically(path, error,
                         [&data](FILE* f) { return std::fwrite(data.data(), 1, data.size(), f) == data.size(); });
}

bool IsFileInUse(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return errno != ENOENT && errno != ENOTDIR;
  bool inUse = false;
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    inUse = errno == EWOULDBLOCK;
  } else {
    ::flock(fd, LOCK_UN);
  }
  // Editors and office programs lock with record locks rather than flock; ask for those too.
  // (Closing fd drops record locks this process holds on the file; it holds none.)
  struct flock probe {};
  probe.l_type = F_WRLCK;
  probe.l_whence = SEEK_SET;
  if (!inUse && ::fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK) inUse = true;
  ::close(fd);
  return inUse;
}

}  // namespace rm
