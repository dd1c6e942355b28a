// The main window's menus, tool bars, status bar and Image Collection strip. Each entry calls one
// command of the library through MainWindow::Run.
#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QIntValidator>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "engine/ColourModes.h"
#include "engine/InfoFile.h"
#include "engine/Reduction.h"
#include "gui/CanvasWidget.h"
#include "gui/HelpMenu.h"
#include "gui/DrawToolBar.h"
#include "gui/MainWindow.h"
#include "shell/Application.h"
#include "shell/ConvertJob.h"

namespace rmgui {

namespace {

constexpr const char* kPictureFilter =
    "All graphic files (*.bmp *.jpg *.jpeg *.png *.gif *.tif *.tiff *.ico *.svg *.emf);;"
    "Bitmaps (*.bmp);;JPEG Pictures (*.jpg *.jpeg);;Portable Network Graphics (*.png);;"
    "Tagged Image file format (*.tif *.tiff);;Scalable Vector Graphics (*.svg);;Animations (*.gif);;"
    "Icon (*.ico);;All files (*)";

QString Text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

}  // namespace

void MainWindow::BuildMenus() {
  BuildFileMenu();
  BuildCanvasMenu();
  BuildDisplayMenu();
  BuildModeMenu();
  BuildOutputMenu();
  BuildReductionMenu();
  BuildWindowMenu();
  HelpMenu::Build(menuBar(), this);
}

void MainWindow::OpenPicture(bool directly) {
  const QString start = QString::fromStdString(app_.globals.LastArtworkPath);
  const QString path =
      QFileDialog::getOpenFileName(this, directly ? "Load Graphic Directly" : "Open Graphic", start, kPictureFilter);
  if (path.isEmpty()) return;
  Run([&] {
    if (directly)
      app_.mainForm.LoadGraphicDirectly(path.toStdString());
    else
      app_.mainForm.OpenPic(path.toStdString());
  });
  canvas_->FitToWindow();
}

void MainWindow::BuildFileMenu() {
  QMenu* m = menuBar()->addMenu("&File");
  QAction* open = m->addAction("Open Graphic...");
  open->setShortcut(QKeySequence::Open);
  connect(open, &QAction::triggered, this, [this] { OpenPicture(false); });
  QAction* direct = m->addAction("Load Graphic Directly...");
  connect(direct, &QAction::triggered, this, [this] { OpenPicture(true); });
  recentMenu_ = m->addMenu("Recent Files");
  recentMenu_->setObjectName("recentMenu");
  connect(recentMenu_, &QMenu::aboutToShow, this, &MainWindow::RebuildRecentMenu);
  Add(m, "Reload Last Work Canvas Bitmap", [this] { app_.imageForm.ReloadLastWorkCanvasBitmapClick(); });
  QAction* save = m->addAction("Save Artwork As...");
  // Ctrl+S is the data array's, the thing a user saves most; the artwork has Ctrl+Shift+S.
  save->setShortcut(QKeySequence("Ctrl+Shift+S"));
  connect(save, &QAction::triggered, this, [this] { Run([this] { app_.mainForm.SavebitmapClick(); }); });
  m->addSeparator();
  QAction* saveLog = m->addAction("Save Log to File");
  connect(saveLog, &QAction::triggered, this, [this] {
    const QString path = QFileDialog::getSaveFileName(
        this, "Save Log to File", QString::fromStdString(app_.mainForm.LogFileFolder()), "Log files (*.LOG)");
    Run([&] { app_.mainForm.SaveLogtoFile1Click(path.toStdString()); });
  });
  m->addSeparator();
  QAction* quit = m->addAction("Quit Rastermill");
  quit->setShortcut(QKeySequence("Alt+F4"));
  connect(quit, &QAction::triggered, this, [this] { close(); });
}

void MainWindow::RebuildRecentMenu() {
  recentMenu_->clear();
  const auto& files = app_.globals.RecentFiles;
  for (std::size_t i = 0; i < files.size() && i < 20; ++i) {
    const std::string path = files[i];
    QAction* a = recentMenu_->addAction(QString("&%1 %2").arg(i).arg(QString::fromStdString(path)));
    connect(a, &QAction::triggered, this, [this, path] {
      Run([&] { app_.mainForm.OpenPic(path); });
      canvas_->FitToWindow();
    });
  }
}

void MainWindow::BuildCanvasMenu() {
  QMenu* m = menuBar()->addMenu("&Canvas");
  undo_ = Add(
      m, "Undo", [this] { app_.imageForm.UndoButtonClick(); }, QKeySequence::Undo);
  redo_ = Add(
      m, "Redo", [this] { app_.imageForm.RedoButtonClick(); }, QKeySequence::Redo);
  Add(
      m, "OK Paste Layer", [this] { app_.imageForm.OKPasteLayerClick(); }, QKeySequence("Ctrl+Return"));
  Add(m, "Reload Original Image", [this] { app_.imageForm.ReloadOriginalImageClick(); });
  m->addSeparator();
  Add(
      m, "Zoom In", [this] { app_.imageForm.ZoomInButtonClick(); }, QKeySequence::ZoomIn);
  Add(
      m, "Zoom Out", [this] { app_.imageForm.ZoomOutButtonClick(); }, QKeySequence::ZoomOut);
  Add(m, "No Zoom", [this] { app_.imageForm.ZoomOffButtonClick(); });
  Add(
      m, "Inflate Canvas", [this] { app_.imageForm.BiggerButtonClick(); }, QKeySequence("Ctrl+Up"));
  Add(
      m, "Deflate Canvas", [this] { app_.imageForm.SmallerButtonClick(); }, QKeySequence("Ctrl+Down"));
  QMenu* factor = m->addMenu("Inflate by");
  for (int steps : {15, 10, 5, 1})
    Add(factor, QString("x%1").arg(steps), [this, steps] { app_.imageForm.InflatefactorButtonClick(steps); });
  Add(m, "Normal Size", [this] { app_.imageForm.NormalSizeButtonClick(); });
  QAction* fit = m->addAction("Fit to Window");
  fit->setObjectName("fitToWindow");
  fit->setShortcut(QKeySequence("Ctrl+0"));
  fit->setToolTip("Show the whole display as large as the window allows");
  connect(fit, &QAction::triggered, canvas_, &CanvasWidget::FitToWindow);
  m->addSeparator();
  gridAction_ = Add(m, "Show Pixel Grid", [this] {
    app_.pixelForm.GridVisible = !app_.pixelForm.GridVisible;
    app_.pixelForm.CopyBitmapToCanvas();
  });
  gridAction_->setCheckable(true);
  pagingLinesAction_ = Add(m, "Show Paging Scheme Lines", [this] {
    app_.pixelForm.PagingSchemeVisible = !app_.pixelForm.PagingSchemeVisible;
    app_.pixelForm.CopyBitmapToCanvas();
  });
  pagingLinesAction_->setCheckable(true);
  m->addSeparator();
  QMenu* store = m->addMenu("Copy Work Canvas to Image Collection");
  QMenu* take = m->addMenu("Take from Image Collection");
  for (int slot = 1; slot <= rm::TPixelForm::kCollectionSlots; ++slot) {
    Add(store, QString("Image Collection %1").arg(slot), [this, slot] { app_.imageForm.StoreImageCollection(slot); });
    Add(take, QString("Image Collection %1").arg(slot), [this, slot] { app_.imageForm.TakeImageCollection(slot); });
  }
  Add(m, "Undo Image Collection", [this] { app_.imageForm.UndoIMCClick(); });
  Add(m, "Delete Image Collection", [this] { app_.imageForm.DeleteImageCollection(); });
}

void MainWindow::ChooseCustomSize() {
  QDialog dialog(this);
  dialog.setObjectName("customSizeDialog");
  dialog.setWindowTitle("User Dot Matrix Size");
  auto* form = new QFormLayout(&dialog);
  // The fields come up with the largest size the user may type.
  auto* width = new QLineEdit("1024", &dialog);
  width->setObjectName("customWidth");
  auto* height = new QLineEdit("768", &dialog);
  height->setObjectName("customHeight");
  form->addRow("Width", width);
  form->addRow("Height", height);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  form->addRow(buttons);
  if (dialog.exec() != QDialog::Accepted) return;
  Run([&] { app_.mainForm.UserMatrixClick(width->text().toStdString(), height->text().toStdString()); });
}

void MainWindow::RebuildCustomSizeMenu() {
  customSizeMenu_->clear();
  const auto items = app_.mainForm.CustomSizeMenuItems();
  for (std::size_t i = 0; i < items.size(); ++i) {
    const int index = static_cast<int>(i);
    QAction* a = customSizeMenu_->addAction(QString::fromStdString(items[i]));
    connect(a, &QAction::triggered, this, [this, index] { Run([&] { app_.mainForm.CustomSizeMenuClick(index); }); });
  }
}

void MainWindow::BuildDisplayMenu() {
  QMenu* m = menuBar()->addMenu("&Display");
  QMenu* presets = m->addMenu("LCD Matrix");
  auto* group = new QActionGroup(this);
  for (const auto& [w, h] : rm::TMainForm::MatrixPresets()) {
    const int width = w, height = h;
    QAction* a = Add(presets, QString("%1 x %2").arg(width).arg(height),
                     [this, width, height] { app_.mainForm.MatrixPresetClick(width, height); });
    a->setCheckable(true);
    group->addAction(a);
    presetActions_.push_back({a, {width, height}});
  }
  QAction* custom = m->addAction("User Defined Size...");
  connect(custom, &QAction::triggered, this, &MainWindow::ChooseCustomSize);
  customSizeMenu_ = m->addMenu("Custom Sizes");
  connect(customSizeMenu_, &QMenu::aboutToShow, this, &MainWindow::RebuildCustomSizeMenu);
  pictureMode_ = Add(m, "Picture Mode", [this] { app_.mainForm.NoMatrix1Click(); });
  pictureMode_->setCheckable(true);
}

void MainWindow::BuildModeMenu() {
  modeMenu_ = menuBar()->addMenu("Color &Mode");
  auto* group = new QActionGroup(this);
  for (const rm::ColourModeInfo& mode : rm::kColourModes) {
    const int number = mode.modeNumber;
    QAction* a = Add(modeMenu_, Text(mode.menuText), [this, number] { app_.mainForm.SetColourMode(number); });
    a->setCheckable(true);
    group->addAction(a);
    modeActions_.push_back({a, number});
  }
}

void MainWindow::BuildOutputMenu() {
  QMenu* m = menuBar()->addMenu("&Output");
  QMenu* paging = m->addMenu("Paging Scheme");
  auto* directions = new QActionGroup(this);
  using D = rm::PagingDirection;
  for (D d : {D::Down, D::DownAll, D::Up, D::UpAll, D::ToRight, D::ToRightAll, D::ToLeft, D::ToLeftAll}) {
    QString text = QString::fromUtf8(rm::DirectionInfoText(d));
    text.remove("Paging Scheme ");
    QAction* a = Add(paging, text, [this, d] { app_.mainForm.SetDirection(d); });
    a->setCheckable(true);
    directions->addAction(a);
    directionActions_.push_back({a, static_cast<int>(d)});
  }
  paging->addSeparator();
  Add(paging, "Change Origin Corner", [this] { app_.mainForm.ToggleOriginCorner(); });
  auto* order = new QActionGroup(this);
  msbFirst_ = Add(paging, "MSB first", [this] { app_.mainForm.MsbFirst(); });
  msbLast_ = Add(paging, "MSB last", [this] { app_.mainForm.MsbLast(); });
  for (QAction* a : {msbFirst_, msbLast_}) {
    a->setCheckable(true);
    order->addAction(a);
  }
  QMenu* kind = m->addMenu("Output Format");
  auto* kinds = new QActionGroup(this);
  using K = rm::OutputKind;
  for (const K chosen : {K::Bits8, K::Bits16, K::Bits32, K::BinaryFile, K::IntelHex}) {
    QAction* a =
        Add(kind, rm::CanvasStatus::OutputKindText(chosen), [this, chosen] { app_.mainForm.SetOutputKind(chosen); });
    a->setCheckable(true);
    kinds->addAction(a);
    outputActions_.push_back({a, static_cast<int>(chosen)});
  }
  m->addSeparator();
  // The same conversion as the command line's, of the canvas as it stands; the program shows
  // what it made, or why it stopped, itself.
  Add(
      m, "Convert Work Canvas to Data",
      [this] {
        rm::ConvertRequest canvas;
        canvas.currentCanvas = true;
        canvas.target = rm::ConvertTarget::Editors;
        rm::Convert(app_, canvas);
        // The result must be seen: the editors come to the front of the dock they share.
        if (QDockWidget* editors = Dock("editorsDock")) {
          editors->show();
          editors->raise();
        }
      },
      QKeySequence("F9"));
  // The converted data under the name the settings make, in the Output files folder.
  Add(
      m, "Save Data Array", [this] { app_.mainForm.SaveOutputFile(false); }, QKeySequence::Save);
  Add(m, "Export Work Canvas to Binary", [this] { app_.mainForm.ExportToBinaryClick(); });
  Add(m, "Export RGB Palette to Color Look-up Table (CLUT)",
      [this] { app_.mainForm.ExportColorPaletteAsArray3Click(); });
}

void MainWindow::BuildReductionMenu() {
  QMenu* m = menuBar()->addMenu("&Threshold");
  QMenu* dither = m->addMenu("Dithering");
  auto* kernels = new QActionGroup(this);
  for (int i = 0; i < static_cast<int>(std::size(rm::kDitherCaptions)); ++i) {
    const auto mode = static_cast<rm::DitherMode>(i);
    QAction* a = Add(dither, Text(rm::kDitherCaptions[i]), [this, mode] { app_.pixelForm.DitherChoice = mode; });
    a->setCheckable(true);
    kernels->addAction(a);
    ditherActions_.push_back({a, i});
  }
  dither->addSeparator();
  auto* reductions = new QActionGroup(this);
  reduceMono_ = Add(dither, Text(rm::kReductionCaptionMonochrome),
                    [this] { app_.pixelForm.ColorReductionChoice = rm::ColorReduction::Monochrome; });
  reduceGray_ = Add(dither, Text(rm::kReductionCaptionGray),
                    [this] { app_.pixelForm.ColorReductionChoice = rm::ColorReduction::GrayScale; });
  for (QAction* a : {reduceMono_, reduceGray_}) {
    a->setCheckable(true);
    reductions->addAction(a);
  }
  Add(m, "Perform Dithering", [this] { app_.imageForm.PerformDitheringParametersbelow1Click(); });
  Add(m, "Convert Work Canvas to Black and White by Dithering",
      [this] { app_.imageForm.ConvertWorkCanvasToBWByDithering(); });
  Add(m, "Convert Canvas to Black and White", [this] { app_.mainForm.ConvertCanvastoBlackandWhite1Click(); });
  Add(m, ">MID", [this] { app_.imageForm.BWThresholdZeroButtonClick(); });
}

void MainWindow::BuildWindowMenu() {
  QMenu* m = menuBar()->addMenu("&Windows");
  m->setObjectName("windowsMenu");
  Add(m, "Exit Special Mode", [this] { app_.exploForm.QuitModeButtonClick(); });
  m->addSeparator();
  // The docks' own show/hide actions, added as the panels are docked.
  connect(m, &QMenu::aboutToShow, this, [this, m] {
    for (QAction* a : m->actions())
      if (a->property("dockToggle").toBool()) m->removeAction(a);
    for (QDockWidget* dock : findChildren<QDockWidget*>()) {
      QAction* toggle = dock->toggleViewAction();
      toggle->setProperty("dockToggle", true);
      m->addAction(toggle);
    }
  });
}

void MainWindow::BuildToolBars() {
  QToolBar* main = addToolBar("Main");
  main->setObjectName("mainToolBar");
  for (const char* text :
       {"Open Graphic...", "Convert Work Canvas to Data", "Save Data Array", "Undo", "Redo", "OK Paste Layer",
        "Fit to Window", "Zoom In", "Zoom Out", "No Zoom", "Inflate Canvas", "Deflate Canvas"})
    if (QAction* a = FindAction(text)) main->addAction(a);
  HelpMenu::AddShortcutToolTips(findChildren<QAction*>());
  main->addSeparator();
  sizeCombo_ = new QComboBox(main);
  sizeCombo_->setObjectName("sizeCombo");
  for (const std::string& item : rm::TMainForm::MatrixComboItems()) sizeCombo_->addItem(QString::fromStdString(item));
  connect(sizeCombo_, &QComboBox::activated, this, [this](int index) {
    const std::string text = sizeCombo_->itemText(index).toStdString();
    Run([&] { app_.mainForm.MatrixComboChange(text); });
  });
  main->addWidget(sizeCombo_);

  addToolBar(Qt::LeftToolBarArea, new DrawToolBar(app_, this));

  QToolBar* bw = addToolBar("Threshold");
  bw->setObjectName("thresholdToolBar");
  threshold_ = new QSlider(Qt::Horizontal, bw);
  threshold_->setObjectName("thresholdSlider");
  threshold_->setRange(0, 255);
  threshold_->setMinimumWidth(160);
  // The number beside the slider can be typed too: Enter applies it as a release of the slider.
  thresholdValue_ = new QLineEdit(bw);
  thresholdValue_->setObjectName("thresholdEdit");
  thresholdValue_->setMaximumWidth(40);
  thresholdValue_->setValidator(new QIntValidator(0, 255, thresholdValue_));
  connect(thresholdValue_, &QLineEdit::returnPressed, this, [this] {
    const int value = thresholdValue_->text().toInt();
    Run([&] { app_.imageForm.BWAdjustementTool1BWTrackBarChange(value, false); });
  });
  // While the button is held only the number follows; the release applies the threshold.
  connect(threshold_, &QSlider::valueChanged, this, [this](int value) {
    Run([&] { app_.imageForm.BWAdjustementTool1BWTrackBarChange(value, threshold_->isSliderDown()); });
  });
  connect(threshold_, &QSlider::sliderReleased, this,
          [this] { Run([&] { app_.imageForm.BWAdjustementTool1BWTrackBarChange(threshold_->value(), false); }); });
  bw->addWidget(new QLabel("Threshold ", bw));
  bw->addWidget(threshold_);
  bw->addWidget(thresholdValue_);
  for (const char* text : {">MID", "Perform Dithering", "OK Paste Layer"})
    if (QAction* a = FindAction(text)) bw->addAction(a);
}

void MainWindow::BuildStatusBar() {
  panel1_ = new QLabel(this);
  panel2_ = new QLabel(this);
  statusText_ = new QLabel(this);
  statusText_->setObjectName("statusText");
  panel4_ = new QLabel(this);
  panel4_->setObjectName("selectionPanel");
  pixelInfo_ = new QLabel(this);
  pixelInfo_->setObjectName("pixelInfo");
  inForce_ = new QLabel(this);
  inForce_->setObjectName("inForce");
  cellSize_ = new QLabel(this);
  cellSize_->setObjectName("cellSize");
  connect(canvas_, &CanvasWidget::scaleChanged, this, [this] {
    cellSize_->setText(QString("Cell %1 px%2")
                           .arg(canvas_->CellSize(), 0, 'g', 3)
                           .arg(canvas_->Fitted() ? QStringLiteral(" (fit)") : QString()));
  });
  progress_ = new QProgressBar(this);
  progress_->setObjectName("progressBar");
  progress_->setMaximumWidth(200);
  progress_->hide();
  statusBar()->addWidget(panel1_);
  statusBar()->addWidget(panel2_);
  statusBar()->addWidget(statusText_, 1);
  statusBar()->addWidget(panel4_);
  statusBar()->addPermanentWidget(inForce_);
  statusBar()->addPermanentWidget(pixelInfo_);
  statusBar()->addPermanentWidget(cellSize_);
  statusBar()->addPermanentWidget(progress_);
}

void MainWindow::BuildCollectionDock() {
  auto* strip = new QWidget(this);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(2, 2, 2, 2);
  for (int slot = 1; slot <= rm::TPixelForm::kCollectionSlots; ++slot) {
    auto* b = new QToolButton(strip);
    b->setObjectName(QString("collectionSlot%1").arg(slot));
    b->setIconSize(QSize(64, 48));
    b->setMinimumSize(70, 54);
    b->setToolTip(QString("Image Collection %1: click to take, right click to store the Work Canvas").arg(slot));
    b->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(b, &QToolButton::clicked, this, [this, slot] { Run([&] { app_.imageForm.TakeImageCollection(slot); }); });
    connect(b, &QToolButton::customContextMenuRequested, this,
            [this, slot] { Run([&] { app_.imageForm.StoreImageCollection(slot); }); });
    row->addWidget(b);
    collectionButtons_.push_back(b);
  }
  row->addStretch();
  AddPanel(strip, "Image Collection", "collectionDock", Qt::BottomDockWidgetArea);
}

}  // namespace rmgui
