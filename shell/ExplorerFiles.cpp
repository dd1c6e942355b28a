// The explorer's file side: the type column, the file list with its filters, the folder roles
// and the dispatch of a chosen file to the part of the program that takes its kind.
#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>

#include "shell/Application.h"
#include "shell/FileKinds.h"
#include "shell/Folders.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace fs = std::filesystem;

namespace {

std::tm LocalTime(std::time_t t) {
  std::tm tm{};
  localtime_r(&t, &tm);
  return tm;
}

std::time_t WriteTime(const fs::directory_entry& entry) {
  std::error_code ec;
  const auto ft = entry.last_write_time(ec);
  if (ec) return 0;
  return std::chrono::system_clock::to_time_t(std::chrono::file_clock::to_sys(ft));
}

// Folder paths compare without their trailing separators.
std::string FolderKey(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

bool LessByName(const std::string& a, const std::string& b) {
  const std::string ua = UpperText(a), ub = UpperText(b);
  return ua != ub ? ua < ub : a < b;
}

}  // namespace

std::string ExplorerFiles::FileTypeText(const std::string& fileName, bool isDirectory) {
  if (isDirectory) return "DIRECTORY";
  static constexpr std::pair<const char*, const char*> kKinds[] = {
      {".RMV", "Rastermill Vectors"},   {".BAK", "Source File Backup"},
      {".BIN", "Binary File"},          {".HEX", "HEX File"},
      {".TIF", "TIF Graphic"},          {".TIFF", "TIFF Graphic"},
      {".TSC", "Touch Panel Script"},   {".FSC", "Font Script"},
      {".EFF", "Editable Font Script"}, {".SPP", "Batch Processing File"},
      {".RTF", "RTF Document"},         {".LCD", "Rastermill Project"},
      {".PAL", "Color Palette"}};
  const std::string ext = UpperExt(fileName);
  for (const auto& [kind, text] : kKinds)
    if (ext == kind) return text;
  // Other kinds are named the way this desktop's file managers name a kind they do not know.
  if (ext.size() <= 1) return "File";
  return ext.substr(1) + " File";
}

bool ExplorerFiles::FilterAccepts(const std::string& filter, const std::string& fileName) {
  if (filter.empty()) return true;
  const std::string ext = UpperExt(fileName);
  if (filter == "ALL GRAPHICS")
    return OneOf(ext, {".BMP", ".JPG", ".JPEG", ".EMF", ".SVG", ".GIF", ".PNG", ".ICO", ".TIFF", ".TIF", ".RMV"});
  if (filter == "VIDEO") return OneOf(ext, {".AVI", ".WMV", ".MPG"});
  if (filter == "FONTS") return OneOf(ext, {".FSC", ".EFF"});
  if (filter == "EFONTS") return OneOf(ext, {".EFF", ".GIF_OLD"});
  if (filter == "TOUCH") return ext == ".TSC";
  if (filter == "BATCH") return ext == ".SPP";
  if (filter == "SOURCES") return OneOf(ext, {".C", ".H", ".ASM", ".BAS", "", ".", ".PAS", ".HEX", ".BIN"});
  const std::string single = UpperText(filter);
  if (ext == single) return true;
  return (single == ".JPG" && ext == ".JPEG") || (single == ".TIFF" && ext == ".TIF");
}

std::string ExplorerFiles::SizeText(unsigned long long bytes) {
  const unsigned long long kb = (bytes + 1023) / 1024;
  std::string digits = std::to_string(kb);
  for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3) digits.insert(static_cast<std::size_t>(at), ",");
  // Our own unit text in plain English; nothing reads the listing back.
  return digits + " KB";
}

std::string ExplorerFiles::DateText(std::time_t when) {
  const std::tm tm = LocalTime(when);
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.2d/%.2d/%.4d %.2d:%.2d", tm.tm_mday, tm.tm_mon + 1, tm.tm_year + 1900, tm.tm_hour,
                tm.tm_min);
  return buf;
}

ExplorerFiles::FileListing ExplorerFiles::ListeLesFichiers(const std::string& folder, const std::string& filter) const {
  const Globals& g = app_.globals;
  FileListing listing;
  std::vector<FileRow> folders, files;
  const std::tm today = LocalTime(app_.clock.Now());
  std::error_code ec;
  fs::directory_iterator it(folder, fs::directory_options::skip_permission_denied, ec);
  if (ec) listing.ok = false;
  for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
    const fs::directory_entry& entry = *it;
    const std::string name = entry.path().filename().string();
    // "." and ".." never come from the iterator; names starting with "." are this platform's
    // hidden files.
    if (name.empty() || name[0] == '.') continue;
    std::error_code kindError;
    const bool directory = entry.is_directory(kindError);
    FileRow row;
    row.name = name;
    row.path = entry.path().string();
    row.directory = directory;
    row.type = FileTypeText(name, directory);
    const std::time_t when = WriteTime(entry);
    row.date = DateText(when);
    if (directory) {
      if (g.ExplorerShowFolders) folders.push_back(std::move(row));
      continue;
    }
    if (!FilterAccepts(filter, name)) continue;
    if (g.ExplorerTodayOnly) {
      const std::tm changed = LocalTime(when);
      if (changed.tm_year != today.tm_year || changed.tm_yday != today.tm_yday) continue;
    }
    std::error_code sizeError;
    const auto size = entry.file_size(sizeError);
    row.size = SizeText(sizeError ? 0 : size);
    files.push_back(std::move(row));
  }
  const auto byName = [](const FileRow& a, const FileRow& b) { return LessByName(a.name, b.name); };
  std::sort(folders.begin(), folders.end(), byName);
  std::sort(files.begin(), files.end(), byName);
  listing.rows = std::move(folders);
  listing.rows.insert(listing.rows.end(), std::make_move_iterator(files.begin()), std::make_move_iterator(files.end()));
  listing.footer = std::to_string(listing.rows.size()) +
                   (filter.empty() && !g.ExplorerTodayOnly ? " element(s)" : " NOT FILTERED OUT element(s)");
  if (!g.ExplorerShowFolders) listing.footer += " [No Folders]";
  return listing;
}

const std::vector<ExplorerFiles::FilterMenuItem>& ExplorerFiles::FilterMenu() {
  static const std::vector<FilterMenuItem> kMenu = {
      {"All files (*.*)", ""},
      {"All graphic files", "ALL GRAPHICS"},
      {"Rastermill vectors (RMV)", ".RMV"},
      {"Bitmaps (BMP)", ".BMP"},
      {"JPEG Pictures (JPG,JPEG)", ".JPG"},
      {"Portable Network Graphics (PNG)", ".PNG"},
      {"Tagged Image file format (TIFF)", ".TIFF"},
      {"Windows Metafile (EMF)", ".EMF"},
      {"Scalable Vector Graphics (SVG)", ".SVG"},
      {"Animations (GIF)", ".GIF"},
      {"Icon (ICO)", ".ICO"},
      {"Output files (h,c,asm,lib,bas,hex)", "SOURCES"},
      {"Project document (RTF)", ".RTF"},
      {"Batch Processing (SPP)", "BATCH"},
      {"Touch Panel Regions Script Files (TSC)", "TOUCH"},
      // The fonts folder holds both scripts and editable fonts; the script entry shows both.
      {"Font Script Files  (FSC)", "FONTS"},
      {"Editable Font Files (EFF)", "EFONTS"},
  };
  return kMenu;
}

std::string ExplorerFiles::FilterLabel() const {
  const Globals& g = app_.globals;
  if (g.ExplorerFilter.empty()) return "Filter = All files *.*";
  return "Filter = " + (g.ExplorerFilterText.empty() ? g.ExplorerFilter : g.ExplorerFilterText);
}

bool ExplorerFiles::FilterMenuClick(const std::string& menuText) {
  for (const FilterMenuItem& item : FilterMenu()) {
    if (menuText != item.text) continue;
    app_.globals.ExplorerFilter = item.filter;
    app_.globals.ExplorerFilterText = item.text;
    return true;
  }
  return false;
}

std::vector<ExplorerFiles::FolderRole> ExplorerFiles::FolderRoles() const {
  const Globals& g = app_.globals;
  return {
      {keys::BFP.key, "Graphics Library", "In Graphics Library", g.GraphicsRole, "ALL GRAPHICS"},
      {keys::FontFP.key, "Fonts", "In Fonts", g.FontsRole, "FONTS"},
      {keys::tfp1.key, "Touch Panel", "In Touch Panel", g.TouchRole, "TOUCH"},
      {keys::PFP.key, "Documents", "In Documents", g.DocumentsRole, ".RTF"},
      {keys::OFP.key, "Output files", "In Output Files", g.OutputRole, "SOURCES"},
      {keys::bfpa.key, "Batch Processings", "", g.BatchRole, "BATCH"},
  };
}

std::vector<std::pair<std::string, std::string>> ExplorerFiles::UserFolders() const {
  const Globals& g = app_.globals;
  const std::string home = HomeFolder();
  return {
      {"My Pictures", g.MyPictures.empty() ? UserDirectory(home, "XDG_PICTURES_DIR", "Pictures") : g.MyPictures},
      {"My Videos", UserDirectory(home, "XDG_VIDEOS_DIR", "Videos")},
      {"Current User Folder", home},
      {"My Documents", g.MyDocuments.empty() ? UserDirectory(home, "XDG_DOCUMENTS_DIR", "Documents") : g.MyDocuments},
  };
}

bool ExplorerFiles::EnterFolder(const std::string& folder) {
  Globals& g = app_.globals;
  std::error_code ec;
  if (folder.empty() || !fs::is_directory(folder, ec)) {
    app_.ui.MessageDlg("This Disk or Folder no longer exists !", "Error", DlgType::Error, {"OK"});
    return false;
  }
  g.ExplorerFolder = folder;
  if (g.AutoFolderFilters) {
    for (const FolderRole& role : FolderRoles()) {
      if (role.path.empty() || FolderKey(role.path) != FolderKey(folder)) continue;
      g.ExplorerFilter = role.autoFilter;
      g.ExplorerFilterText.clear();
      for (const FilterMenuItem& item : FilterMenu())
        if (g.ExplorerFilter == item.filter) g.ExplorerFilterText = item.text;
      break;
    }
  }
  return true;
}

bool ExplorerFiles::Loadfile(const std::string& path) {
  Globals& g = app_.globals;
  TMainForm& main = app_.mainForm;
  g.LastAction = "Load file";
  const std::string name = fs::path(path).filename().string();
  const std::string ext = UpperExt(path);

  // Sent to the list to pick the active batch: the click chooses, it does not open.
  if (g.BatchSelectWait) {
    g.BatchSelectWait = false;
    if (UpperText(name).find(".SPP") == std::string::npos) {
      app_.ui.MessageDlg("Processing batch file was not selected correctly ! ", "Warning", DlgType::Warning, {"OK"});
      return false;
    }
    g.ActiveBatch = name;
    app_.ui.MessageDlg("Processing batch file has been activated ! ", "Information", DlgType::Information, {"OK"});
    return true;
  }

  std::error_code ec;
  if (fs::is_directory(path, ec)) return EnterFolder(path);
  if (!fs::exists(path, ec)) {
    app_.ui.MessageDlg("This Disk or Folder no longer exists !", "Error", DlgType::Error, {"OK"});
    return false;
  }

  // Kinds whose editors this program does not have: said plainly, nothing is opened.
  static constexpr std::pair<const char*, const char*> kNotAvailable[] = {{".FSC", "Font Scripts"},
                                                                          {".TSC", "Touch Panel Scripts"},
                                                                          {".EFF", "Editable Fonts"},
                                                                          {".SPP", "Batch Processing files"},
                                                                          {".RMV", "Rastermill Vectors scripts"}};
  for (const auto& [kind, what] : kNotAvailable) {
    if (ext != kind) continue;
    app_.ui.MessageDlg(name + " : " + what + " can not be opened in this version of the program.", "Information",
                       DlgType::Information, {"OK"});
    return false;
  }
  if (OneOf(ext, {".WMV", ".AVI", ".MPG"})) {
    app_.ui.MessageDlg(name + " : video files are not opened by this program.", "Information", DlgType::Information,
                       {"OK"});
    return false;
  }
  if (ext == ".LCD") {
    main.StatusBarAndLog("Projects are activated from the list of projects");
    return false;
  }

  if (OneOf(ext, {".BMP", ".EMF", ".JPG", ".JPEG", ".PNG", ".GIF", ".TIF", ".TIFF", ".ICO", ".SVG"})) {
    // The import checks ".JPG" files itself; their twins with the long extension get the same check.
    if (ext == ".JPEG" && !TMainForm::IsJpegFile(path)) {
      main.MessageDlgA("This is not a valid Jpeg file !\r" + path + "\r" + "JPG file format check failed", "Error", 0,
                       4, 1);
      return false;
    }
    if (ext == ".GIF")
      main.StatusBarAndLog("GIF animations are not available: " + name + " is imported as one picture");
    return main.OpenPic(path);
  }

  const std::string library = "." + UpperText(app_.session.LibraryExtension);
  const bool source = OneOf(ext, {".C", ".H", ".ASM", ".BAS", ".PAS", ".TXT", ".HTM", ".HTML", ".XML", "", "."}) ||
                      (library.size() > 1 && ext == library);
  if (source) {
    if (g.EditorUnsaved && !app_.mainText.Empty()) {
      const std::string answer = app_.ui.MessageDlg("Previous editor content not saved ! Save ? ", "Confirm",
                                                    DlgType::Confirmation, {"Yes", "No"});
      if (answer == "Yes") {
        // The text goes back to its own file, or, for a Data Array, to the output file. When it
        // cannot be saved nothing replaces it.
        bool saved = false;
        if (!g.EditorFileName.empty())
          saved = app_.exploForm.SaveFN(g.EditorFileName, false);
        else if (!app_.session.OutputFolder.empty())
          saved = main.SaveOutputFile(false);
        else
          main.StatusBarAndLog("File not saved");  // a table with no output folder has nowhere to go
        if (!saved) return false;
      }
    }
    return app_.exploForm.LoadSource(path);
  }
  if (ext == ".RTF") {
    TextLines document;
    if (!document.LoadFromFile(path)) return false;
    app_.infoText = std::move(document);
    g.DocumentFileName = path;
    g.EditorsPage = TExploForm2::kDocumentTab;
    main.StatusBarAndLog("Load Document Editor with " + path);
    return true;
  }
  if (ext == ".HEX" || ext == ".BIN") return app_.exploForm.LoadHex(path);

  main.StatusBarAndLog(name + " : no part of the program opens this kind of file");
  return false;
}

}  // namespace rm
