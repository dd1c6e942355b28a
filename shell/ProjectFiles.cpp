// Projects: a project is the settings file <stem>.LCD in the projects folder, plus the files that
// share its stem: five header templates and up to four custom palettes. The explorer lists them,
// activates, creates, renames and deletes them.
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>

#include "engine/HeaderTemplate.h"
#include "engine/Palette.h"
#include "shell/Application.h"
#include "shell/ProjectLock.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kProjectExtension = ".LCD";
constexpr const char* kDefaultProject = "default.LCD";

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }
bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

bool SameText(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Lower(x) == Lower(y); });
}

// Users read the list of projects as words with numbers, not as bytes: case does not count,
// "New Project" comes before its copies "New Project(1)", "New Project(2)" ... and "(2)" before
// "(10)". The stems are compared (so a shorter name that starts the other comes first whatever
// follows it); equal stems fall back to byte order so that the order is the same on every run.
bool ProjectNameLess(const std::string& a, const std::string& b) {
  const std::string sa = ProjectFiles::ProjectStem(a), sb = ProjectFiles::ProjectStem(b);
  std::size_t i = 0, j = 0;
  while (i < sa.size() && j < sb.size()) {
    if (IsDigit(sa[i]) && IsDigit(sb[j])) {
      std::size_t ei = i, ej = j;
      while (ei < sa.size() && IsDigit(sa[ei])) ++ei;
      while (ej < sb.size() && IsDigit(sb[ej])) ++ej;
      std::size_t zi = i, zj = j;  // leading zeros do not make a number larger
      while (zi + 1 < ei && sa[zi] == '0') ++zi;
      while (zj + 1 < ej && sb[zj] == '0') ++zj;
      const std::string_view na(sa.data() + zi, ei - zi), nb(sb.data() + zj, ej - zj);
      if (na.size() != nb.size()) return na.size() < nb.size();
      if (na != nb) return na < nb;
      i = ei;
      j = ej;
      continue;
    }
    const char ca = Lower(sa[i]), cb = Lower(sb[j]);
    if (ca != cb) return static_cast<unsigned char>(ca) < static_cast<unsigned char>(cb);
    ++i;
    ++j;
  }
  if ((i < sa.size()) != (j < sb.size())) return j < sb.size();
  return a < b;
}

std::string Padded(std::string s, std::size_t width) {
  if (s.size() < width) s.append(width - s.size(), ' ');
  return s;
}

bool WriteLines(const std::string& path, const std::vector<std::string>& lines, std::string* error) {
  TextLines text;
  for (const auto& line : lines) text.Add(line);
  return text.SaveToFile(path, error);
}

// A name typed into the list may only name a file of the projects folder.
bool IsPlainFileName(const std::string& name) {
  return !name.empty() && name.find('/') == std::string::npos && name != "." && name != "..";
}

// A change to the projects holds the pointer file's folder and then the projects folder alone,
// in the order every change takes them in, so that two changes never wait for each other.
class ChangeLocks {
 public:
  ChangeLocks(const std::string& initsFolder, const std::string& projectsFolder) {
    if (!initsFolder.empty()) pointer_.emplace(initsFolder, ProjectLock::Mode::Exclusive);
    if (Held() && !projectsFolder.empty()) projects_.emplace(projectsFolder, ProjectLock::Mode::Exclusive);
  }
  bool Held() const { return (!pointer_ || pointer_->Held()) && (!projects_ || projects_->Held()); }
  std::string Error() const {
    if (pointer_ && !pointer_->Held()) return pointer_->Error();
    return projects_ && !projects_->Held() ? projects_->Error() : std::string();
  }

 private:
  std::optional<ProjectLock> pointer_, projects_;
};

}  // namespace

std::string ProjectFiles::ProjectStem(const std::string& projectPath) {
  if (!HasProjectExtension(projectPath)) return projectPath;
  return projectPath.substr(0, projectPath.size() - kProjectExtension.size());
}

bool ProjectFiles::HasProjectExtension(std::string_view name) {
  return name.size() >= kProjectExtension.size() &&
         SameText(name.substr(name.size() - kProjectExtension.size()), kProjectExtension);
}

// The Raw and DMD title lines and the Raw and Bloc declaration lines are the texts users know
// from their templates and keep as they stand (the ")" of the Bloc line included). What the
// Structured and Bloc templates say in their title, the include block and the Structured
// prefixes are a minimal form of our own, made of the tags the font writer looks for.
std::vector<std::string> ProjectFiles::DefaultHeaderTemplate(std::string_view suffix) {
  if (suffix == ".txt") return DefaultGraphicsTemplate();
  const std::vector<std::string> include = {"", "[&FONT INCLUDE]", "#include <avr/pgmspace.h>", "[&/FONT INCLUDE]", ""};
  std::vector<std::string> lines;
  auto add = [&lines](std::vector<std::string> more) { lines.insert(lines.end(), more.begin(), more.end()); };
  if (suffix == "_Raw.txt") {
    lines.push_back(Padded("   // FOR RAW FONTS", 60));
    add(include);
    add({"[&FONT BITMAPS]", "const uint8_t [&FNAME][&FNUMBEROFCHARS][&FBYTESPERCHAR] PROGMEM = {",
         "[&FONT DESCRIPTORS]", "const uint8_t [&DNAME][][] PROGMEM = {", "[&FONT END]"});
  } else if (suffix == "_Struct.txt") {
    lines.push_back(Padded("   // FOR Struct FONTS", 60));
    add({"", "[&FONT INCLUDE]", "#include <stdint.h>", "[&/FONT INCLUDE]", ""});
    add({"[&FONT IMAGEDATA]static const uint8_t image_data_[&FIMAGEDATA]",
         "[&FONT TIMAGE]static const timage [&FTIMAGE]", "[&FONT TCHAR]static const tImage [&FTCHAR]",
         "[&FONT TFONT]const tfont [&FTFONT]", "[&FONT END]"});
  } else if (suffix == "_DMD.txt") {
    lines.push_back(Padded("   // FOR DMD Struct FONTS", 59));
    add(include);
    add({"[&FONT BITMAPS]", "const uint8_t [&FNAME][] PROGMEM = {", "[&FONT END]"});
  } else if (suffix == "_Bloc.txt") {
    lines.push_back(Padded("   // FOR Bloc FONTS", 60));
    add(include);
    add({"[&FONT BLOC]", "const unsigned char [&FNAME][] = {)", "[&FONT END]"});
  }
  return lines;
}

std::string ProjectFiles::ProjectsFolder() const {
  const Globals& g = app_.globals;
  if (g.ActiveProject.empty()) return g.InitsFolder;
  // The first run holds the inits folder itself until the project is read: its parent_path is
  // the folder, as the path ends with "/".
  const std::string folder = fs::path(g.ActiveProject).parent_path().string();
  return folder.empty() ? std::string() : folder + "/";
}

std::vector<std::string> ProjectFiles::ListAllProjects() const {
  std::vector<std::string> names;
  const std::string folder = ProjectsFolder();
  std::error_code ec;
  if (folder.empty() || !fs::is_directory(folder, ec)) return names;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
    const std::string name = it->path().filename().string();
    std::error_code typeEc;
    if (HasProjectExtension(name) && name.size() > kProjectExtension.size() && it->is_regular_file(typeEc))
      names.push_back(name);
  }
  std::sort(names.begin(), names.end(), ProjectNameLess);
  return names;
}

bool ProjectFiles::WriteDefaultHeaderTemplates() {
  const Globals& g = app_.globals;
  std::error_code ec;
  const fs::path folder = fs::path(g.ActiveProject).parent_path();
  if (g.ActiveProject.empty() || folder.empty() || !fs::is_directory(folder, ec)) return false;
  const std::string stem = ProjectStem(g.ActiveProject);
  bool all = true;
  for (const char* suffix : kHeaderTemplateSuffixes) {
    std::string error;
    // A start without a project on disk happens at every run of a command that saves no
    // settings: a template already there (the factory text or the user's) is left as it is.
    if (fs::exists(stem + suffix, ec)) continue;
    if (!WriteLines(stem + suffix, DefaultHeaderTemplate(suffix), &error)) {
      app_.mainForm.StatusBarAndLog("Header template " + stem + suffix + " not written : " + error);
      all = false;
    }
  }
  return all;
}

bool ProjectFiles::UseProjectHeaderTemplate() {
  const Globals& g = app_.globals;
  if (g.ActiveProject.empty()) return false;
  const std::string path = ProjectStem(g.ActiveProject) + kHeaderTemplateSuffixes[0];
  // Set even when it cannot be made: a conversion then says that the template is missing.
  app_.session.HeaderIncludeFile = path;
  std::error_code ec;
  if (fs::exists(path, ec)) return true;
  if (!fs::is_directory(fs::path(path).parent_path(), ec)) return false;
  std::string error;
  if (!WriteLines(path, DefaultGraphicsTemplate(), &error)) {
    app_.mainForm.StatusBarAndLog("Header template " + path + " not written : " + error);
    return false;
  }
  return true;
}

bool ProjectFiles::ActivateProject(const std::string& name) {
  Globals& g = app_.globals;
  if (name.empty()) {
    app_.ui.MessageDlg("Please select a project first ", "Warning", DlgType::Warning, {"OK"});
    return false;
  }
  std::optional<ChangeLocks> locks(std::in_place, g.InitsFolder, ProjectsFolder());
  std::string why;
  if (!locks->Held()) why = locks->Error();
  // The present project is written first. When it cannot be, nothing changes: leaving it would
  // lose its settings. A refusal was told by the writer as well.
  if (why.empty() && !app_.mainForm.SaveConfigurationX(&why) && why.empty()) why = "not saved";
  if (!why.empty()) {
    locks.reset();
    app_.ui.MessageDlg("Project " + name + " was not activated : the present project could not be saved : " + why,
                       "Error", DlgType::Error, {"OK"});
    return false;
  }
  g.ActiveProject = ProjectsFolder() + name;
  app_.mainForm.StatusBarAndLog("Project " + name + " Activated");
  const bool read = app_.mainForm.LoadConfigurationX();
  UseProjectHeaderTemplate();
  // The text and the bytes in hand belong to the project that was left; they go without a question.
  app_.mainText.Clear();
  app_.hex.Clear();
  g.EditorUnsaved = false;
  g.EditorFileName.clear();
  g.HexFileName.clear();
  app_.mainForm.RebuildColourTables();
  // The canvas takes the project's display size.
  app_.mainForm.CHLCDMatrix();
  if (!read) return false;
  // The pointer is written now rather than at quit, so that a crash, or a command line run that
  // has no quit, still starts in the project chosen. A failure was told by SaveFolders.
  return app_.mainForm.SaveFolders();
}

std::string ProjectFiles::SaveAsNewProject() {
  Globals& g = app_.globals;
  const std::string folder = ProjectsFolder();
  const std::string oldTemplate = app_.session.HeaderIncludeFile.empty()
                                      ? ProjectStem(g.ActiveProject) + kHeaderTemplateSuffixes[0]
                                      : app_.session.HeaderIncludeFile;
  int n = 0;
  std::string name = "New Project.LCD";
  std::string error;
  std::optional<ChangeLocks> locks;  // let go before any message: the user may take a while
  auto refuse = [this, &name, &locks](const std::string& why) {
    locks.reset();
    app_.ui.MessageDlg("Project " + name + " could not be created : " + why, "Error", DlgType::Error, {"OK"});
    return std::string();
  };
  if (folder.empty()) return refuse("no projects folder");
  locks.emplace(g.InitsFolder, folder);
  if (!locks->Held()) return refuse(locks->Error());
  // The name is taken by making the file, which fails when it exists: two programs saving a new
  // project at once get two names.
  std::error_code ec;
  while (!CreateNewFile(folder + name, &error)) {
    if (!fs::exists(folder + name, ec)) return refuse(error);
    name = "New Project(" + std::to_string(++n) + ").LCD";
  }
  const std::string path = folder + name;
  const std::string previousProject = g.ActiveProject, previousTemplate = app_.session.HeaderIncludeFile;
  const std::string newTemplate = ProjectStem(path) + kHeaderTemplateSuffixes[0];
  const bool templateExisted = fs::exists(newTemplate, ec);
  // A project is made whole or not at all: on any failure its files go again and the program
  // stays in the project it was in.
  auto undo = [&](const std::string& why) {
    fs::remove(path, ec);
    if (!templateExisted) fs::remove(newTemplate, ec);
    g.ActiveProject = previousProject;
    app_.session.HeaderIncludeFile = previousTemplate;
    return refuse(why);
  };
  g.ActiveProject = path;

  // The new project starts with the graphics template of the one it copies; when that one has
  // none, with the factory template, so that its conversions do not lose their header.
  TextLines templateLines;
  const bool copied = templateLines.LoadFromFile(oldTemplate) && templateLines.SaveToFile(newTemplate, &error);
  if (!copied && !WriteLines(newTemplate, DefaultGraphicsTemplate(), &error))
    return undo("header template " + newTemplate + " not written : " + error);
  app_.session.HeaderIncludeFile = newTemplate;

  if (!app_.mainForm.SaveConfigurationX(&error)) return undo(error);
  if (!app_.mainForm.SaveFolders()) return undo("the pointer file was not written");
  locks.reset();
  // The file is "New Project(1).LCD"; the message spells the name with a blank before the number.
  const std::string text = n == 0 ? "Project named \"New Project\" was created !"
                                  : " Project named \"New Project (" + std::to_string(n) + ")\" was created !";
  app_.ui.MessageDlg(text, "Warning", DlgType::Warning, {"OK"});
  app_.mainForm.StatusBarAndLog(" PROJECT: " + name);
  return name;
}

bool ProjectFiles::ProjectViewEdited(const std::string& oldName, const std::string& newEdit) {
  Globals& g = app_.globals;
  std::optional<ChangeLocks> locks;  // let go before any message: the user may take a while
  auto say = [this, &locks](const std::string& text, const char* title, DlgType type) {
    locks.reset();
    app_.ui.MessageDlg(text, title, type, {"OK"});
    return false;
  };
  if (oldName.empty())
    return say("Please select the project to rename in the list !", "Selection error", DlgType::Error);
  if (SameText(oldName, kDefaultProject))
    return say("This default project can not be renamed !", "Error", DlgType::Error);
  // An edit left empty or unchanged is no rename.
  if (newEdit.empty()) return false;
  const std::string newName = HasProjectExtension(newEdit) ? newEdit : newEdit + std::string(kProjectExtension);
  if (newName == oldName) return false;

  const std::string folder = ProjectsFolder();
  const std::string oldPath = folder + oldName, newPath = folder + newName;
  locks.emplace(g.InitsFolder, folder);
  if (!locks->Held()) return say(locks->Error(), "Error", DlgType::Error);
  std::error_code ec;
  if (IsPlainFileName(newEdit) && fs::exists(newPath, ec))
    return say("There is already another project named like this !", "Error", DlgType::Error);
  if (IsFileInUse(oldPath))
    return say("File is in use (or acess was denied) and can not be renamed !", "Error", DlgType::Error);

  bool renamed = IsPlainFileName(newEdit) && IsPlainFileName(oldName) && fs::is_regular_file(oldPath, ec);
  if (renamed) {
    fs::rename(oldPath, newPath, ec);
    renamed = !ec;
  }
  if (!renamed) return say("Error while trying to rename project !", "Error", DlgType::Error);

  // The graphics template goes with the project; the font templates and the palettes keep the
  // old stem and are left behind.
  const std::string oldTemplate = ProjectStem(oldPath) + kHeaderTemplateSuffixes[0];
  const std::string newTemplate = ProjectStem(newPath) + kHeaderTemplateSuffixes[0];
  if (fs::exists(oldTemplate, ec)) fs::rename(oldTemplate, newTemplate, ec);
  if (ec) return say("Error while trying to rename project !", "Error", DlgType::Error);

  // Renaming the active project moves the program with it; otherwise the next save would make
  // the old name again.
  if (g.ActiveProject == oldPath) {
    g.ActiveProject = newPath;
    if (app_.session.HeaderIncludeFile == oldTemplate) app_.session.HeaderIncludeFile = newTemplate;
    app_.mainForm.SaveFolders();
  }
  locks.reset();
  app_.ui.MessageDlg("Project has been renamed", "Information", DlgType::Information, {"OK"});
  app_.mainForm.StatusBarAndLog("Project " + oldName + " renamed " + newName);
  return true;
}

bool ProjectFiles::MenuItem6Click(const std::string& name) {
  Globals& g = app_.globals;
  std::optional<ChangeLocks> locks;  // taken after the question, let go before any message
  auto say = [this, &locks](const std::string& text, const char* title, DlgType type) {
    locks.reset();
    app_.ui.MessageDlg(text, title, type, {"OK"});
    return false;
  };
  // The refusals come before the question: nobody is asked to confirm what cannot be done.
  if (name.empty()) return say("Select a project to delete first!", "Selection error", DlgType::Error);
  if (SameText(name, kDefaultProject)) return say("This project can not be deleted !", "Error", DlgType::Error);
  const std::string path = ProjectsFolder() + name;
  if (path == g.ActiveProject) return say("Active project can not be deleted !", "Error", DlgType::Error);
  std::error_code ec;
  if (!IsPlainFileName(name) || !fs::is_regular_file(path, ec))
    return say("Select a project to delete first!", "Selection error", DlgType::Error);
  if (IsFileInUse(path))
    return say("Project file is in use by another program and can not be deleted !", "Error", DlgType::Error);
  if (app_.ui.MessageDlg("Please confirm to delete this project  !", "Confirm", DlgType::Confirmation, {"Yes", "No"}) !=
      "Yes")
    return false;

  locks.emplace(g.InitsFolder, ProjectsFolder());
  if (!locks->Held()) return say(locks->Error(), "Error", DlgType::Error);
  // Another process of the program may have made it the active one meanwhile.
  TextLines pointer;
  if (pointer.LoadFromFile(g.InitsFolder + "Rastermill.ini") && !pointer.Empty() && pointer[0] == path)
    return say("Active project can not be deleted !", "Error", DlgType::Error);
  if (!fs::remove(path, ec) || ec) return say("Error while trying to delete project !", "Error", DlgType::Error);
  // Only the graphics template goes with the project; the font templates stay, as they do when
  // a project is renamed.
  fs::remove(ProjectStem(path) + kHeaderTemplateSuffixes[0], ec);
  for (int colours : kProjectPaletteSizes) fs::remove(CustomPaletteName(path, colours), ec);
  locks.reset();
  app_.ui.MessageDlg("Project has been deleted !", "Project Deleted", DlgType::Information, {"OK"});
  app_.mainForm.StatusBarAndLog("Project " + name + " deleted");
  return true;
}

}  // namespace rm
