#pragma once
#include <chrono>
#include <string>

namespace rm {

// Keeps the program's own processes from reading the projects or the pointer file of a folder
// while another one rewrites them, and makes a read-change-write of them one step. The lock is a
// file of its own in that folder, held with flock: shared by readers, exclusive for a writer.
// Processes of the program wait for each other for a while (the patience) instead of telling
// the user that the file is in use; a lock another program keeps on a settings file itself is
// still told (IsFileInUse), as the program's processes never lock those files.
//
// Locks of one process nest: taking a folder's lock that the process already holds in a mode at
// least as strong costs nothing, so a command may hold the lock from its first read to its last
// write while the routines it calls take it again. Taking an exclusive lock over a shared one
// of the same process is refused (flock would drop the shared one while it waits). Locks of
// several folders are taken in one order: the pointer file's folder first, then the project's.
class ProjectLock {
 public:
  enum class Mode { Shared, Exclusive };

  // Locks `folder`, waiting for the program's other processes up to the patience. A folder
  // where the lock file can be neither made nor opened (a read-only folder) is taken as locked:
  // nothing of the program can write there either.
  ProjectLock(const std::string& folder, Mode mode);
  // Locks the folder that holds `file`.
  static ProjectLock ForFile(const std::string& file, Mode mode);
  ~ProjectLock();
  ProjectLock(ProjectLock&& other) noexcept;
  ProjectLock(const ProjectLock&) = delete;
  ProjectLock& operator=(const ProjectLock&) = delete;
  ProjectLock& operator=(ProjectLock&&) = delete;

  bool Held() const { return held_; }
  // Why the lock is not held.
  const std::string& Error() const { return error_; }

  // The name of the lock file in each folder; a dot file, which the explorer does not list.
  static constexpr const char* kFileName = ".rastermill-settings.lock";
  static std::chrono::milliseconds Patience();
  static void SetPatience(std::chrono::milliseconds patience);

 private:
  std::string key_;  // the folder as the process's table of held locks knows it
  bool held_ = false;
  bool counted_ = false;  // false for a folder that has no lock file
  std::string error_;
};

// The folder of the pointer file and of the projects, as LoadFolders finds it.
std::string ProgramInitsFolder();

}  // namespace rm
