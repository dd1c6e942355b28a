#pragma once
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rm {

class Application;

// The explorer's commands, headless: the projects list and the special modes' way out.
class TExploForm {
 public:
  explicit TExploForm(Application& app) : app_(app) {}

  // ---- Projects: the .LCD files and the files that share their stem ----
  // The header templates of a project, in the order they are written: the graphics one, then
  // the font structures Raw, Structured, DMD and Bloc.
  static constexpr const char* kHeaderTemplateSuffixes[] = {".txt", "_Raw.txt", "_Struct.txt", "_DMD.txt",
                                                             "_Bloc.txt"};
  // The colour counts of the custom palettes a project may own (`<stem>_<count>.pal`).
  static constexpr int kProjectPaletteSizes[] = {256, 4096, 65536, 262144};
  // A project path without its ".LCD" extension (any case); other names are returned whole.
  static std::string ProjectStem(const std::string& projectPath);
  // True when `name` ends with ".LCD" in any case.
  static bool HasProjectExtension(std::string_view name);
  // The factory text of one header template, by its suffix (one of kHeaderTemplateSuffixes).
  static std::vector<std::string> DefaultHeaderTemplate(std::string_view suffix);
  // The folder the projects are listed from: the active project's folder, ends with "/".
  std::string ProjectsFolder() const;
  // The project files (*.LCD, any case of the extension) of that folder, file names only.
  std::vector<std::string> ListAllProjects() const;
  // Saves the present project and makes `name` (a file of the projects folder) the active one.
  // False when refused (no name) or when the project could not be read.
  bool ActivateProject(const std::string& name);
  // "Save As New Project": a copy of the present settings and graphics template under the first
  // free name "New Project.LCD", "New Project(1).LCD", ... which becomes the active project.
  // Returns the new file name, empty when nothing was made.
  std::string SaveAsNewProject();
  // Renames a project and its graphics template after an edit in the list. False when refused
  // or when the rename failed.
  bool ProjectViewEdited(const std::string& oldName, const std::string& newName);
  // Deletes a project, its graphics template and its palettes, after the user confirms.
  bool MenuItem6Click(const std::string& name);
  // Writes the five factory header templates beside the active project, replacing what is
  // there. False (and logged) when one could not be written; nothing is written when the
  // project's folder does not exist.
  bool WriteDefaultHeaderTemplates();
  // Points the session's header template at the active project's graphics template, creating
  // it with the factory text when it is missing. False when it is missing and cannot be made.
  bool UseProjectHeaderTemplate();
  // ---- Special modes ----
  // True when a special mode stands in the way of the caller. `caller` names the mode that may
  // stay: 0 none, 1 touch script, 2 font script, 4 segmented font, 5 editable font, 6 vectors,
  // 7 vector programming. The user is asked to leave the mode; true is returned either way.
  bool CheckMode(int caller);
  // Leaves the first active mode in a fixed order; false when no mode was active.
  bool QuitModeButtonClick();
  // Called before CheckMode's question while the exit button shows, so that the front end can
  // lead the user's eye to it (show the explorer, flash the button).
  std::function<void()> LeadTheEye;

  // ---- Explorer: folder roles, file list, opening and saving ----
  // The type column of the file list: the program's own kinds by name, folders "DIRECTORY", and
  // any other kind named the way this desktop names it, "<EXT> File" ("File" without extension).
  static std::string FileTypeText(const std::string& fileName, bool isDirectory = false);

  // One row of the file list.
  struct FileRow {
    std::string name, type, date, size;
    bool directory = false;
    std::string path;  // full path, for opening
  };
  struct FileListing {
    std::vector<FileRow> rows;  // folders first, then files, each by name
    std::string footer;         // "<n> element(s)", " NOT FILTERED OUT" when filtered, " [No Folders]"
    bool ok = true;             // false when the folder could not be read
  };
  // The filter words, and a single extension (".BMP"); empty: all files.
  static bool FilterAccepts(const std::string& filter, const std::string& fileName);
  // "#,### Ko" of a size in bytes, in kilobytes rounded up.
  static std::string SizeText(unsigned long long bytes);
  // "%.2d/%.2d/%.4d %.2d:%.2d", day first, local time.
  static std::string DateText(std::time_t when);
  // Lists `folder` (hidden "." files left out) through `filter`; folders unless the folders switch
  // is off, files changed today only when the today switch is on.
  FileListing ListeLesFichiers(const std::string& folder, const std::string& filter) const;
  // The filter menu: its text and the filter it selects.
  struct FilterMenuItem {
    const char* text;
    const char* filter;
  };
  static const std::vector<FilterMenuItem>& FilterMenu();
  // "Filter = All files *.*" at the start, else "Filter = " and the menu text.
  std::string FilterLabel() const;
  // A choice in the filter menu (by its text); false for a text that is none of the menu's.
  bool FilterMenuClick(const std::string& menuText);

  // A folder role: its settings key, labels, folder and the filter the automatic project folder
  // filters give it. Save label empty for the batch role.
  struct FolderRole {
    std::string_view key;
    const char* treeLabel;
    const char* saveLabel;
    std::string path;
    const char* autoFilter;
  };
  std::vector<FolderRole> FolderRoles() const;
  // The user's own folders beside the roles: "My Pictures", "My Videos", "Current User Folder",
  // "My Documents" (label, path).
  std::vector<std::pair<std::string, std::string>> UserFolders() const;
  // Enters a folder of the tree or the list. With the automatic project folder filters on, a role's
  // folder sets its filter. False, after "This Disk or Folder no longer exists !", when it is gone.
  bool EnterFolder(const std::string& folder);

  // Opens a file by its kind: pictures to the Work Canvas import, sources to the main text,
  // documents to the document tab, binary and Intel HEX to the hex editor; a folder is entered.
  // False when nothing was opened.
  bool Loadfile(const std::string& path);
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

  // ---- end of explorer ----

 private:
  Application& app_;
};

}  // namespace rm
