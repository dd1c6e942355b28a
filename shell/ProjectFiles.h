#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace rm {

class Application;

// Projects: a project is the settings file <stem>.LCD in the projects folder, plus the files that
// share its stem: five header templates and up to four custom palettes. The explorer lists them,
// activates, creates, renames and deletes them.
class ProjectFiles {
 public:
  explicit ProjectFiles(Application& app) : app_(app) {}

  // The header templates of a project, in the order they are written: the graphics one, then
  // the font structures Raw, Structured, DMD and Bloc.
  static constexpr const char* kHeaderTemplateSuffixes[] = {".txt", "_Raw.txt", "_Struct.txt", "_DMD.txt", "_Bloc.txt"};
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
  // Writes the five factory header templates beside the active project where they are missing;
  // one that is there is kept. False (and logged) when one could not be written; nothing is
  // written when the project's folder does not exist.
  bool WriteDefaultHeaderTemplates();
  // Points the session's header template at the active project's graphics template, creating
  // it with the factory text when it is missing. False when it is missing and cannot be made.
  bool UseProjectHeaderTemplate();

 private:
  Application& app_;
};

}  // namespace rm
