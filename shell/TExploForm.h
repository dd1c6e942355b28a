#pragma once
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/EditorFiles.h"
#include "shell/ExplorerFiles.h"
#include "shell/ModeGuard.h"
#include "shell/ProjectFiles.h"

namespace rm {

class Application;

// The explorer's commands, headless: the projects list, the file list, the editors' files and
// the special modes' way out.
class TExploForm {
  // The parts, one per responsibility; the commands below forward to them. They come first: the
  // names that reach their state are bound to them.
  ProjectFiles projects_;
  ExplorerFiles files_;
  EditorFiles editors_;
  ModeGuard guard_;

 public:
  explicit TExploForm(Application& app) : projects_(app), files_(app), editors_(app), guard_(app) {}
  TExploForm(const TExploForm&) = delete;
  TExploForm& operator=(const TExploForm&) = delete;

  // ---- Projects (ProjectFiles) ----
  static constexpr auto& kHeaderTemplateSuffixes = ProjectFiles::kHeaderTemplateSuffixes;
  static constexpr auto& kProjectPaletteSizes = ProjectFiles::kProjectPaletteSizes;
  static std::string ProjectStem(const std::string& projectPath) { return ProjectFiles::ProjectStem(projectPath); }
  static bool HasProjectExtension(std::string_view name) { return ProjectFiles::HasProjectExtension(name); }
  static std::vector<std::string> DefaultHeaderTemplate(std::string_view suffix) {
    return ProjectFiles::DefaultHeaderTemplate(suffix);
  }
  std::string ProjectsFolder() const { return projects_.ProjectsFolder(); }
  std::vector<std::string> ListAllProjects() const { return projects_.ListAllProjects(); }
  bool ActivateProject(const std::string& name) { return projects_.ActivateProject(name); }
  std::string SaveAsNewProject() { return projects_.SaveAsNewProject(); }
  bool ProjectViewEdited(const std::string& oldName, const std::string& newName) {
    return projects_.ProjectViewEdited(oldName, newName);
  }
  bool MenuItem6Click(const std::string& name) { return projects_.MenuItem6Click(name); }
  bool WriteDefaultHeaderTemplates() { return projects_.WriteDefaultHeaderTemplates(); }
  bool UseProjectHeaderTemplate() { return projects_.UseProjectHeaderTemplate(); }

  // ---- Special modes (ModeGuard) ----
  bool CheckMode(int caller) { return guard_.CheckMode(caller); }
  bool QuitModeButtonClick() { return guard_.QuitModeButtonClick(); }
  std::function<void()>& LeadTheEye = guard_.LeadTheEye;

  // ---- Explorer: folder roles, file list, opening (ExplorerFiles) ----
  static std::string FileTypeText(const std::string& fileName, bool isDirectory = false) {
    return ExplorerFiles::FileTypeText(fileName, isDirectory);
  }
  using FileRow = ExplorerFiles::FileRow;
  using FileListing = ExplorerFiles::FileListing;
  static bool FilterAccepts(const std::string& filter, const std::string& fileName) {
    return ExplorerFiles::FilterAccepts(filter, fileName);
  }
  static std::string SizeText(unsigned long long bytes) { return ExplorerFiles::SizeText(bytes); }
  static std::string DateText(std::time_t when) { return ExplorerFiles::DateText(when); }
  FileListing ListeLesFichiers(const std::string& folder, const std::string& filter) const {
    return files_.ListeLesFichiers(folder, filter);
  }
  using FilterMenuItem = ExplorerFiles::FilterMenuItem;
  static const std::vector<FilterMenuItem>& FilterMenu() { return ExplorerFiles::FilterMenu(); }
  std::string FilterLabel() const { return files_.FilterLabel(); }
  bool FilterMenuClick(const std::string& menuText) { return files_.FilterMenuClick(menuText); }
  using FolderRole = ExplorerFiles::FolderRole;
  std::vector<FolderRole> FolderRoles() const { return files_.FolderRoles(); }
  std::vector<std::pair<std::string, std::string>> UserFolders() const { return files_.UserFolders(); }
  bool EnterFolder(const std::string& folder) { return files_.EnterFolder(folder); }
  bool Loadfile(const std::string& path) { return files_.Loadfile(path); }

  // ---- Editors: loading and saving (EditorFiles) ----
  bool LoadSyneditor(const std::string& path) { return editors_.LoadSyneditor(path); }
  bool LoadSource(const std::string& path) { return editors_.LoadSource(path); }
  bool LoadHex(const std::string& path) { return editors_.LoadHex(path); }
  bool SaveEditor(const std::string& path) { return editors_.SaveEditor(path); }
  bool SaveFN(const std::string& path, bool hexTab) { return editors_.SaveFN(path, hexTab); }
};

}  // namespace rm
