#pragma once
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

#include "shell/Application.h"
#include "shell/TExploForm.h"

class QAction;
class QActionGroup;
class QCheckBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QMenu;
class QTreeWidget;
class QTreeWidgetItem;

namespace rmgui {

// The explorer: the folder roles and the user's folders, the file list with its filter menu and
// footer, and the projects. Opening a file and every project command go through rm::TExploForm.
class ExplorerWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ExplorerWindow(rm::Application& app, QWidget* parent = nullptr);

  // Column of the file list that holds each row's full path (Qt::UserRole of column 0).
  static constexpr int kPathRole = Qt::UserRole;

 public slots:
  void SyncFromModel();
  // Double click on a row: a folder is entered, a file opened by its kind.
  void OpenItem(QTreeWidgetItem* item);
  // The project commands, on the project selected in the list.
  void NewProject();
  void ActivateSelectedProject();
  void RenameSelectedProject();
  void DeleteSelectedProject();

 signals:
  void modelChanged();
  // A picture file became the current item of the list: for the preview.
  void pictureSelected(const QString& path);

 private:
  std::vector<std::pair<std::string, std::string>> treeShown_;  // (label, path) of the tree's entries
  QString listShown_;                                           // the listing the file list shows, as one text
  void FillTree();
  void FillList();
  void FillListRows(const rm::TExploForm::FileListing& listing);
  void FillProjects();
  void EnterFolder(const QString& folder);
  void FolderUp();
  void ProjectEdited(QListWidgetItem* item);
  void ChangedModel();

  rm::Application& app_;
  QTreeWidget* tree_;
  QTreeWidget* list_;
  QListWidget* projects_;
  QLabel* folderLabel_;
  QLabel* filterLabel_;
  QLabel* footer_;
  QMenu* filterMenu_;
  QActionGroup* filterGroup_;
  QAction* autoFilters_;
  QCheckBox* folders_;
  QCheckBox* today_;
  bool filling_ = false;
};

}  // namespace rmgui
