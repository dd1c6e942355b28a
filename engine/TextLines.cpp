#include "engine/TextLines.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <sstream>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
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

constexpr int kMaxLinkHops = 40;
// A temporary name untouched this long belongs to no write in progress.
constexpr std::time_t kStaleAfterSeconds = 60;

std::string Reason(int err) { return std::strerror(err ? err : EIO); }

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string BaseName(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The name a write finally lands on: symbolic links followed one by one (a relative link from
// the folder of the link). A link to nothing gives the name it points at, which the write makes.
bool FollowLinks(std::string path, std::string& target, int& err) {
  for (int hop = 0; hop < kMaxLinkHops; ++hop) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) {
      target = path;
      return true;
    }
    std::string link(static_cast<std::size_t>(st.st_size > 0 ? st.st_size : 255) + 1, '\0');
    const ssize_t n = ::readlink(path.c_str(), link.data(), link.size());
    if (n < 0) {
      err = errno;
      return false;
    }
    link.resize(static_cast<std::size_t>(n));
    path = (!link.empty() && link[0] == '/') ? link : FolderOf(path) + "/" + link;
  }
  err = ELOOP;
  return false;
}

// Puts bytes into a descriptor, all of them or an error.
class FdSink {
 public:
  explicit FdSink(int fd) : fd_(fd) {}
  bool Put(const char* data, std::size_t size) {
    while (size > 0) {
      const ssize_t n = ::write(fd_, data, size);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        error_ = n < 0 ? errno : EIO;
        return false;
      }
      data += n;
      size -= static_cast<std::size_t>(n);
    }
    return true;
  }
  int Error() const { return error_; }

 private:
  int fd_;
  int error_ = 0;
};

// False only for a process id that cannot be running: no process has it now.
bool IsAlive(long long pid) {
  if (pid <= 0) return true;  // no id of a writer: not ours to remove
  if (pid > std::numeric_limits<pid_t>::max()) return false;
  return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno != ESRCH;
}

// Gives the nameless file `fd` the name `name` in its folder.
bool LinkNameless(int fd, const std::string& name) {
  const std::string self = "/proc/self/fd/" + std::to_string(fd);
  if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) return true;
  // Without /proc, a process allowed to may name the descriptor itself.
  if (errno != ENOENT) return false;
  return ::linkat(fd, "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0;
}

// Writes into a device, a FIFO or standard output as they are: there is nothing to replace.
template <typename Write>
bool WriteInPlace(int fd, std::string* error, Write write) {
  FdSink sink(fd);
  if (!write(sink)) {
    if (error) *error = Reason(sink.Error());
    return false;
  }
  return true;
}

// Replaces the regular file (or new name) `target` whole: the data goes into a nameless file of
// the same folder (or, where the file system has none, a temporary name), is synced, and takes
// the name by a rename, so a write that fails or is killed leaves the old file as it was.
template <typename Write>
bool ReplaceFile(const std::string& target, const struct stat* old, std::string* error, Write write,
                 bool allowNameless) {
  auto fail = [error](int err) {
    if (error) *error = Reason(err);
    return false;
  };
  const std::string folder = FolderOf(target);
  const std::string passing = target + ".tmp" + std::to_string(::getpid());
  for (const std::string& stale : StaleTemporaries(target)) ::unlink(stale.c_str());

  int fd = allowNameless ? ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666) : -1;
  const bool nameless = fd >= 0;
  if (!nameless) {
    if (allowNameless && errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return fail(errno);
    fd = ::open(passing.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) return fail(errno);
  }
  FdSink sink(fd);
  int err = 0;
  bool ok = write(sink);
  if (!ok) err = sink.Error();
  // The new file keeps what the old one allowed, and its owner where we may give it.
  if (ok && old) {
    if (::fchmod(fd, old->st_mode & 07777) != 0) {
      ok = false;
      err = errno;
    } else if (::geteuid() == 0 && (old->st_uid != ::geteuid() || old->st_gid != ::getegid())) {
      [[maybe_unused]] const int ignored = ::fchown(fd, old->st_uid, old->st_gid);
    }
  }
  if (ok && ::fsync(fd) != 0) {
    ok = false;
    err = errno;
  }
  // A rename replaces a name in one step, a link never does: the nameless file takes a passing
  // name first (gone again at once), or the final name directly when that is still free.
  bool linked = !nameless;
  if (ok && nameless) {
    linked = (old == nullptr && LinkNameless(fd, target));
    if (!linked) {
      linked = LinkNameless(fd, passing);
      if (!linked && errno == EEXIST && ::unlink(passing.c_str()) == 0) linked = LinkNameless(fd, passing);
      if (!linked) {
        ok = false;
        err = errno;
      } else if (::rename(passing.c_str(), target.c_str()) != 0) {
        ok = false;
        err = errno;
      }
    }
  } else if (ok && ::rename(passing.c_str(), target.c_str()) != 0) {
    ok = false;
    err = errno;
  }
  if (::close(fd) != 0 && ok) {
    ok = false;
    err = errno;
  }
  if (!ok && linked) ::unlink(passing.c_str());
  return ok || fail(err);
}

template <typename Write>
bool WriteWhole(const std::string& path, std::string* error, Write write, bool allowNameless = true) {
  if (path == "-") {
    if (std::fflush(stdout) != 0) {
      if (error) *error = Reason(errno);
      return false;
    }
    return WriteInPlace(STDOUT_FILENO, error, write);
  }
  std::string target;
  int err = 0;
  if (path.empty() || !FollowLinks(path, target, err)) {
    if (error) *error = Reason(path.empty() ? ENOENT : err);
    return false;
  }
  struct stat st {};
  if (::stat(target.c_str(), &st) != 0) {
    if (errno != ENOENT) {
      if (error) *error = Reason(errno);
      return false;
    }
    return ReplaceFile(target, nullptr, error, write, allowNameless);
  }
  if (S_ISDIR(st.st_mode)) {
    if (error) *error = Reason(EISDIR);
    return false;
  }
  if (!S_ISREG(st.st_mode)) {
    const int fd = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
      if (error) *error = Reason(errno);
      return false;
    }
    const bool ok = WriteInPlace(fd, error, write);
    ::close(fd);
    return ok;
  }
  // A file its owner made read-only is left alone, also by a user whom the system would let
  // write it (the administrator): the desktop refuses it the same way.
  if ((st.st_mode & 0222) == 0 || ::access(target.c_str(), W_OK) != 0) {
    if (error) *error = "the file is read-only";
    return false;
  }
  return ReplaceFile(target, &st, error, write, allowNameless);
}

}  // namespace

std::vector<std::string> StaleTemporaries(const std::string& path) {
  std::vector<std::string> stale;
  const std::string folder = FolderOf(path);
  const std::string prefix = BaseName(path) + ".tmp";
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return stale;
  const std::time_t now = std::time(nullptr);
  while (const dirent* entry = ::readdir(dir)) {
    const std::string name = entry->d_name;
    if (name.size() <= prefix.size() || name.compare(0, prefix.size(), prefix) != 0) continue;
    const std::string digits = name.substr(prefix.size());
    if (digits.size() > 10 || digits.find_first_not_of("0123456789") != std::string::npos) continue;
    const long long pid = std::stoll(digits);
    const std::string full = folder + "/" + name;
    struct stat st {};
    if (pid == ::getpid() || IsAlive(pid) || ::lstat(full.c_str(), &st) != 0 || !S_ISREG(st.st_mode) ||
        now - st.st_mtime < kStaleAfterSeconds)
      continue;
    stale.push_back(full);
  }
  ::closedir(dir);
  return stale;
}

// Streams the lines: a table of many megabytes is not joined into one string first.
bool TextLines::SaveToFile(const std::string& path, std::string* error) const {
  return WriteWhole(path, error, [this](FdSink& sink) {
    std::string chunk;
    chunk.reserve(1 << 20);
    for (const auto& l : lines_) {
      chunk += l;
      chunk += '\n';
      if (chunk.size() >= (1u << 20)) {
        if (!sink.Put(chunk.data(), chunk.size())) return false;
        chunk.clear();
      }
    }
    return sink.Put(chunk.data(), chunk.size());
  });
}

bool WriteFileAtomically(const std::string& path, const std::string& data, std::string* error) {
  return WriteWhole(path, error, [&data](FdSink& sink) { return sink.Put(data.data(), data.size()); });
}

namespace detail {

// The write of file systems that have no nameless files, for the tests of that road.
bool WriteFileThroughTemporaryName(const std::string& path, const std::string& data, std::string* error) {
  return WriteWhole(
      path, error, [&data](FdSink& sink) { return sink.Put(data.data(), data.size()); }, false);
}

}  // namespace detail

bool IsRegularTarget(const std::string& path) {
  std::string target;
  int err = 0;
  if (path.empty() || path == "-" || !FollowLinks(path, target, err)) return false;
  struct stat st {};
  if (::stat(target.c_str(), &st) != 0) return errno == ENOENT;
  return S_ISREG(st.st_mode);
}

bool CreateNewFile(const std::string& path, std::string* error) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) {
    if (error) *error = Reason(errno);
    return false;
  }
  ::close(fd);
  return true;
}

bool IsFileInUse(const std::string& path, FileUse use) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return errno != ENOENT && errno != ENOTDIR;
  bool inUse = false;
  if (::flock(fd, (use == FileUse::Read ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0) {
    inUse = errno == EWOULDBLOCK;
  } else {
    ::flock(fd, LOCK_UN);
  }
  // Editors and office programs lock with record locks rather than flock; ask for those too.
  // (Closing fd drops record locks this process holds on the file; it holds none.)
  struct flock probe {};
  probe.l_type = use == FileUse::Read ? F_RDLCK : F_WRLCK;
  probe.l_whence = SEEK_SET;
  if (!inUse && ::fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK) inUse = true;
  ::close(fd);
  return inUse;
}

}  // namespace rm
