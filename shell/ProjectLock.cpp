#include "shell/ProjectLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <thread>

namespace rm {

namespace fs = std::filesystem;

namespace {

struct HeldLock {
  int fd = -1;
  ProjectLock::Mode mode = ProjectLock::Mode::Shared;
  int count = 0;
};

// The locks this process holds, by folder. flock belongs to an open file, so a second open of
// the same lock file in this process would wait for the first: nested locks go through here.
std::mutex& TableMutex() {
  static std::mutex m;
  return m;
}
std::map<std::string, HeldLock>& Table() {
  static std::map<std::string, HeldLock> table;
  return table;
}

std::chrono::milliseconds& PatienceValue() {
  // A build may start dozens of our commands on one project at once (make -j); each holds the
  // lock for a moment, but on a loaded machine the queue can take minutes, and every command must
  // still succeed. Only a holder stuck for ten minutes makes a waiter give up.
  static std::chrono::milliseconds patience{10 * 60 * 1000};
  return patience;
}

std::string FolderKey(const std::string& folder) {
  std::error_code ec;
  const fs::path p = fs::weakly_canonical(folder.empty() ? fs::path(".") : fs::path(folder), ec);
  std::string key = ec ? folder : p.string();
  while (key.size() > 1 && key.back() == '/') key.pop_back();
  return key;
}

}  // namespace

ProjectLock::ProjectLock(const std::string& folder, Mode mode) : key_(FolderKey(folder)) {
  std::lock_guard<std::mutex> guard(TableMutex());
  auto& table = Table();
  if (auto it = table.find(key_); it != table.end()) {
    if (it->second.mode == Mode::Exclusive || mode == Mode::Shared) {
      ++it->second.count;
      held_ = counted_ = true;
    } else {
      error_ = "the settings folder " + key_ + " is already held for reading by this process";
    }
    return;
  }
  const std::string path = key_ + "/" + kFileName;
  int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    held_ = true;  // no lock file possible: no writer of ours can work there either
    return;
  }
  const auto deadline = std::chrono::steady_clock::now() + PatienceValue();
  auto pause = std::chrono::milliseconds(1);
  const int op = (mode == Mode::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
  for (;;) {
    if (::flock(fd, op) == 0) break;
    if (errno != EWOULDBLOCK && errno != EINTR) {
      error_ = "the settings folder " + key_ + " cannot be locked: " + std::strerror(errno);
      ::close(fd);
      return;
    }
    if (std::chrono::steady_clock::now() >= deadline) {
      error_ = "another Rastermill process keeps the settings folder " + key_ + " busy";
      ::close(fd);
      return;
    }
    std::this_thread::sleep_for(pause);
    pause = std::min(pause * 2, std::chrono::milliseconds(16));
  }
  table[key_] = HeldLock{fd, mode, 1};
  held_ = counted_ = true;
}

ProjectLock ProjectLock::ForFile(const std::string& file, Mode mode) {
  const std::string folder = fs::path(file).parent_path().string();
  return ProjectLock(folder.empty() ? "." : folder, mode);
}

ProjectLock::ProjectLock(ProjectLock&& other) noexcept
    : key_(std::move(other.key_)), held_(other.held_), counted_(other.counted_), error_(std::move(other.error_)) {
  other.held_ = other.counted_ = false;
}

ProjectLock::~ProjectLock() {
  if (!counted_) return;
  std::lock_guard<std::mutex> guard(TableMutex());
  auto& table = Table();
  auto it = table.find(key_);
  if (it == table.end() || --it->second.count > 0) return;
  ::flock(it->second.fd, LOCK_UN);
  ::close(it->second.fd);
  table.erase(it);
}

std::chrono::milliseconds ProjectLock::Patience() { return PatienceValue(); }
void ProjectLock::SetPatience(std::chrono::milliseconds patience) { PatienceValue() = patience; }

}  // namespace rm
