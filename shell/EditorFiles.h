#pragma once
#include <string>

namespace rm {

class Application;

// The editors' files: loading the main text and the hex editor, and saving what the active tab
// holds.
class EditorFiles {
 public:
  explicit EditorFiles(Application& app) : app_(app) {}

  // The main text from a file, with the log line; the editors switch to the main text unless a
  // mode holds their tab. False when the file is missing or unreadable.
  bool LoadSyneditor(const std::string& path);
  // A source file into the main text as the file in hand: highlighter, name, saved state.
  bool LoadSource(const std::string& path);
  // The bytes of a file into the hex editor, as they are.
  bool LoadHex(const std::string& path);
  // Saves what the active editor tab holds under `path` (the name the user chose): the main text
  // or the hex editor's bytes. False when refused or not written; the user has been told.
  bool SaveEditor(const std::string& path);
  // The save of the file name panel, for the main text or (`hexTab`) the hex editor's bytes:
  // checks the extension, keeps a ".bak" copy of a file it replaces after the user agrees,
  // writes atomically.
  bool SaveFN(const std::string& path, bool hexTab);

 private:
  Application& app_;
};

}  // namespace rm
