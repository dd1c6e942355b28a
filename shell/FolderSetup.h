#pragma once

namespace rm {

class Application;

// The inits folder, the pointer file and the project root: found or made at start, the active
// project written back at quit.
class FolderSetup {
 public:
  explicit FolderSetup(Application& app) : app_(app) {}

  // Finds or creates the inits folder, the pointer file and the project root, and sets the active
  // project (falling back to the default project when the pointer names none that exists).
  void LoadFolders();
  // Writes the active project into the pointer file; false (and the quit blocked) when the
  // pointer file is held by another program or was deleted.
  bool SaveFolders();

 private:
  Application& app_;
};

}  // namespace rm
