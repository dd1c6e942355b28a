#pragma once
#include <ctime>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rm {

class Application;

// The explorer's file side: the type column, the file list with its filters, the folder roles
// and the dispatch of a chosen file to the part of the program that takes its kind.
class ExplorerFiles {
 public:
  explicit ExplorerFiles(Application& app) : app_(app) {}

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
  // "#,### KB" of a size in bytes, in kilobytes rounded up.
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

 private:
  Application& app_;
};

}  // namespace rm
