#include "gui/ExplorerWindow.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "shell/FileKinds.h"
#include "shell/Folders.h"

namespace rmgui {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

QPushButton* Button(const QString& text, const QString& name) {
  auto* b = new QPushButton(text);
  b->setObjectName(name);
  return b;
}

}  // namespace

ExplorerWindow::ExplorerWindow(rm::Application& app, QWidget* parent) : QWidget(parent), app_(app) {
  setObjectName("explorerWindow");

  tree_ = new QTreeWidget;
  tree_->setObjectName("folderTree");
  tree_->setHeaderHidden(true);
  connect(tree_, &QTreeWidget::itemClicked, this,
          [this](QTreeWidgetItem* item) { EnterFolder(item->data(0, kPathRole).toString()); });

  list_ = new QTreeWidget;
  list_->setObjectName("fileList");
  list_->setRootIsDecorated(false);
  list_->setHeaderLabels({"Name", "Type", "Date", "Size"});
  list_->setSortingEnabled(false);
  list_->header()->setSectionResizeMode(QHeaderView::Interactive);
  connect(list_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) { OpenItem(item); });
  connect(list_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (filling_ || item == nullptr) return;
    const std::string path = item->data(0, kPathRole).toString().toStdString();
    // Pictures the decoders read; drawings of our own (.RMV) and metafiles have no preview.
    const std::string ext = rm::UpperExt(path);
    if (rm::TExploForm::FilterAccepts("ALL GRAPHICS", path) && ext != ".RMV" && ext != ".EMF" &&
        !QFileInfo(Q(path)).isDir())
      emit pictureSelected(Q(path));
  });

  folderLabel_ = new QLabel;
  folderLabel_->setObjectName("folderLabel");
  folderLabel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a long path must not widen the panel
  filterLabel_ = new QLabel;
  filterLabel_->setObjectName("filterLabel");
  footer_ = new QLabel;
  footer_->setObjectName("footerLabel");

  filterMenu_ = new QMenu("Filter", this);
  filterMenu_->setObjectName("filterMenu");
  filterGroup_ = new QActionGroup(this);
  for (const auto& item : rm::TExploForm::FilterMenu()) {
    QAction* action = filterMenu_->addAction(item.text);
    action->setCheckable(true);
    action->setData(QString(item.text));
    filterGroup_->addAction(action);
    connect(action, &QAction::triggered, this, [this, text = std::string(item.text)] {
      app_.exploForm.FilterMenuClick(text);
      FillList();
    });
  }
  filterMenu_->addSeparator();
  autoFilters_ = filterMenu_->addAction("Enable automatic project folder filters");
  autoFilters_->setObjectName("autoFiltersAction");
  autoFilters_->setCheckable(true);
  connect(autoFilters_, &QAction::toggled, this, [this](bool on) { app_.globals.AutoFolderFilters = on; });
  auto* filterButton = new QToolButton;
  filterButton->setObjectName("filterButton");
  filterButton->setText("Filter");
  filterButton->setMenu(filterMenu_);
  filterButton->setPopupMode(QToolButton::InstantPopup);

  folders_ = new QCheckBox("Folders");
  folders_->setObjectName("foldersCheck");
  connect(folders_, &QCheckBox::toggled, this, [this](bool on) {
    if (filling_) return;
    app_.globals.ExplorerShowFolders = on;
    FillList();
  });
  today_ = new QCheckBox("Today");
  today_->setObjectName("todayCheck");
  today_->setToolTip("Only the files changed today");
  connect(today_, &QCheckBox::toggled, this, [this](bool on) {
    if (filling_) return;
    app_.globals.ExplorerTodayOnly = on;
    FillList();
  });
  auto* up = Button("Up", "upButton");
  connect(up, &QPushButton::clicked, this, &ExplorerWindow::FolderUp);
  auto* refresh = Button("Refresh", "refreshButton");
  connect(refresh, &QPushButton::clicked, this, &ExplorerWindow::FillList);

  projects_ = new QListWidget;
  projects_->setObjectName("projectList");
  projects_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  connect(projects_, &QListWidget::itemDoubleClicked, this, [this] { ActivateSelectedProject(); });
  connect(projects_, &QListWidget::itemChanged, this, &ExplorerWindow::ProjectEdited);
  auto* newProject = Button("Save As New Project", "newProjectButton");
  auto* activate = Button("Activate", "activateProjectButton");
  auto* rename = Button("Rename", "renameProjectButton");
  auto* remove = Button("Delete", "deleteProjectButton");
  connect(newProject, &QPushButton::clicked, this, &ExplorerWindow::NewProject);
  connect(activate, &QPushButton::clicked, this, &ExplorerWindow::ActivateSelectedProject);
  connect(rename, &QPushButton::clicked, this, &ExplorerWindow::RenameSelectedProject);
  connect(remove, &QPushButton::clicked, this, &ExplorerWindow::DeleteSelectedProject);

  // One column, so that the panel fits a narrow dock beside the canvas.
  auto* listBar = new QHBoxLayout;
  listBar->addWidget(up);
  listBar->addStretch(1);
  listBar->addWidget(folders_);
  listBar->addWidget(today_);
  listBar->addWidget(filterButton);
  listBar->addWidget(refresh);
  auto* listPane = new QWidget;
  auto* listLayout = new QVBoxLayout(listPane);
  listLayout->setContentsMargins(0, 0, 0, 0);
  listLayout->addLayout(listBar);
  listLayout->addWidget(folderLabel_);
  listLayout->addWidget(list_, 1);
  auto* footerBar = new QHBoxLayout;
  footerBar->addWidget(footer_, 1);
  footerBar->addWidget(filterLabel_);
  listLayout->addLayout(footerBar);

  auto* projectPane = new QWidget;
  auto* projectLayout = new QVBoxLayout(projectPane);
  projectLayout->setContentsMargins(0, 0, 0, 0);
  projectLayout->addWidget(new QLabel("Projects"));
  projectLayout->addWidget(projects_, 1);
  auto* projectButtons = new QGridLayout;
  projectButtons->addWidget(newProject, 0, 0);
  projectButtons->addWidget(activate, 0, 1);
  projectButtons->addWidget(rename, 1, 0);
  projectButtons->addWidget(remove, 1, 1);
  projectLayout->addLayout(projectButtons);

  auto* split = new QSplitter(Qt::Vertical);
  split->addWidget(tree_);
  split->addWidget(listPane);
  split->addWidget(projectPane);
  split->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(split);

  rm::Globals& g = app_.globals;
  if (g.ExplorerFolder.empty()) {
    std::string start = g.GraphicsRole.empty() ? g.MyPictures : g.GraphicsRole;
    if (start.empty() || !QDir(Q(start)).exists()) start = rm::HomeFolder();
    g.ExplorerFolder = start;
  }
  SyncFromModel();
}

void ExplorerWindow::SyncFromModel() {
  FillTree();
  FillList();
  FillProjects();
}

void ExplorerWindow::FillTree() {
  std::vector<std::pair<std::string, std::string>> entries;
  for (const auto& role : app_.exploForm.FolderRoles())
    if (!role.path.empty()) entries.emplace_back(role.treeLabel, role.path);
  for (const auto& entry : app_.exploForm.UserFolders()) entries.push_back(entry);
  entries.emplace_back("File System", "/");
  // Every command syncs the panels: an unchanged tree keeps its selection and scroll.
  if (entries == treeShown_) return;
  treeShown_ = entries;
  tree_->clear();
  for (const auto& [label, path] : entries) {
    auto* item = new QTreeWidgetItem(tree_, {Q(label)});
    item->setData(0, kPathRole, Q(path));
    item->setToolTip(0, Q(path));
  }
}

void ExplorerWindow::FillList() {
  filling_ = true;
  const rm::Globals& g = app_.globals;
  const auto listing = app_.exploForm.ListeLesFichiers(g.ExplorerFolder, g.ExplorerFilter);
  // An unchanged listing keeps the user's selection and scroll.
  QString signature = Q(g.ExplorerFolder + "\n" + listing.footer);
  for (const auto& row : listing.rows) signature += Q("\n" + row.path + "|" + row.date + "|" + row.size);
  if (signature != listShown_) {
    listShown_ = signature;
    FillListRows(listing);
  }
  folderLabel_->setText(Q(g.ExplorerFolder));
  footer_->setText(Q(listing.footer));
  filterLabel_->setText(Q(app_.exploForm.FilterLabel()));
  for (QAction* action : filterGroup_->actions())
    action->setChecked(action->data().toString().toStdString() ==
                       (g.ExplorerFilterText.empty() && g.ExplorerFilter.empty() ? std::string("All files (*.*)")
                                                                                 : g.ExplorerFilterText));
  autoFilters_->setChecked(g.AutoFolderFilters);
  folders_->setChecked(g.ExplorerShowFolders);
  today_->setChecked(g.ExplorerTodayOnly);
  filling_ = false;
}

void ExplorerWindow::FillListRows(const rm::TExploForm::FileListing& listing) {
  list_->clear();
  QList<QTreeWidgetItem*> items;
  items.reserve(static_cast<qsizetype>(listing.rows.size()));
  for (const auto& row : listing.rows) {
    auto* item = new QTreeWidgetItem({Q(row.name), Q(row.type), Q(row.date), Q(row.size)});
    item->setData(0, kPathRole, Q(row.path));
    item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    if (row.directory) {
      QFont bold = item->font(0);
      bold.setBold(true);
      item->setFont(0, bold);
    }
    items.push_back(item);
  }
  list_->addTopLevelItems(items);
}

void ExplorerWindow::FillProjects() {
  filling_ = true;
  const QString selected = projects_->currentItem() ? projects_->currentItem()->data(Qt::UserRole).toString() : "";
  projects_->clear();
  const QString active = QString::fromStdString(app_.globals.ActiveProject).section('/', -1);
  for (const auto& name : app_.exploForm.ListAllProjects()) {
    auto* item = new QListWidgetItem(Q(name), projects_);
    item->setData(Qt::UserRole, Q(name));  // the name before an edit in place
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    if (Q(name) == active) {
      QFont bold = item->font();
      bold.setBold(true);
      item->setFont(bold);
    }
    if (Q(name) == selected) projects_->setCurrentItem(item);
  }
  filling_ = false;
}

void ExplorerWindow::EnterFolder(const QString& folder) {
  app_.exploForm.EnterFolder(folder.toStdString());
  FillList();
}

void ExplorerWindow::FolderUp() {
  QDir dir(Q(app_.globals.ExplorerFolder));
  if (dir.cdUp()) EnterFolder(dir.absolutePath());
}

void ExplorerWindow::OpenItem(QTreeWidgetItem* item) {
  if (item == nullptr) return;
  const std::string path = item->data(0, kPathRole).toString().toStdString();
  const std::string before = app_.globals.ExplorerFolder;
  app_.exploForm.Loadfile(path);
  if (app_.globals.ExplorerFolder != before) {
    FillList();
    return;
  }
  ChangedModel();
}

void ExplorerWindow::ChangedModel() {
  SyncFromModel();
  emit modelChanged();
}

void ExplorerWindow::NewProject() {
  app_.exploForm.SaveAsNewProject();
  ChangedModel();
}

void ExplorerWindow::ActivateSelectedProject() {
  QListWidgetItem* item = projects_->currentItem();
  app_.exploForm.ActivateProject(item ? item->data(Qt::UserRole).toString().toStdString() : std::string());
  ChangedModel();
}

void ExplorerWindow::RenameSelectedProject() {
  QListWidgetItem* item = projects_->currentItem();
  if (item == nullptr) {
    // The library says what is missing.
    app_.exploForm.ProjectViewEdited("", "");
    return;
  }
  projects_->editItem(item);
}

void ExplorerWindow::ProjectEdited(QListWidgetItem* item) {
  if (filling_ || item == nullptr) return;
  const std::string oldName = item->data(Qt::UserRole).toString().toStdString();
  const std::string newName = item->text().toStdString();
  if (newName == oldName) return;
  app_.exploForm.ProjectViewEdited(oldName, newName);
  // Refilled after the edit has closed: the list must not be cleared under its own editor.
  QMetaObject::invokeMethod(
      this, [this] { ChangedModel(); }, Qt::QueuedConnection);
}

void ExplorerWindow::DeleteSelectedProject() {
  QListWidgetItem* item = projects_->currentItem();
  app_.exploForm.MenuItem6Click(item ? item->data(Qt::UserRole).toString().toStdString() : std::string());
  ChangedModel();
}

}  // namespace rmgui
