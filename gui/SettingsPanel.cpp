#include "gui/SettingsPanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace rmgui {

namespace {

QString Q(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }
std::string S(const QString& s) { return s.toStdString(); }

}  // namespace

SettingsPanel::SettingsPanel(rm::Application& app, QWidget* parent)
    : QWidget(parent), app_(app), model_(app.configWin) {
  setObjectName("settingsPanel");
  setWindowTitle(tr("Settings"));
  tabs_ = new QTabWidget(this);
  tabs_->setObjectName("settingsTabs");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(tabs_);

  using W = rm::TConfigChildWin;
  for (std::string_view tab : W::Tabs()) {
    QWidget* page = nullptr;
    if (tab == W::kRearrangeTab)
      page = buildFieldsPage(tab, buildRearrangeGrid());
    else if (tab == W::kHeaderTemplateTab)
      page = buildHeaderTemplatePage();
    else if (tab == W::kPalettesTab)
      page = buildFieldsPage(tab, buildPalettePage());
    else
      page = buildFieldsPage(tab);
    tabs_->addTab(page, Q(tab));
  }
  connect(tabs_, &QTabWidget::currentChanged, this, [this](int index) {
    if (!syncing_ && index >= 0) model_.TabEntered(S(tabs_->tabText(index)));
  });
  SyncFromModel();
}

// ---- Pages -------------------------------------------------------------------------------------

QWidget* SettingsPanel::buildFieldsPage(std::string_view tab, QWidget* extra) {
  auto* inner = new QWidget;
  auto* column = new QVBoxLayout(inner);
  QGroupBox* box = nullptr;
  QFormLayout* form = nullptr;
  std::string_view group;
  for (const rm::ConfigField& f : rm::TConfigChildWin::Fields()) {
    if (f.tab != tab) continue;
    if (!box || f.group != group) {
      group = f.group;
      box = new QGroupBox(Q(group));
      form = new QFormLayout(box);
      column->addWidget(box);
    }
    QWidget* control = buildControl(f);
    if (f.kind == rm::ConfigFieldKind::Switch)
      form->addRow(control);  // a check box carries its own caption
    else
      form->addRow(Q(f.label), control);
  }
  if (extra) column->addWidget(extra);
  column->addStretch(1);
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setWidget(inner);
  return scroll;
}

QWidget* SettingsPanel::buildControl(const rm::ConfigField& f) {
  const QString name = "field_" + Q(f.id);
  QWidget* w = nullptr;
  switch (f.kind) {
    case rm::ConfigFieldKind::Text: {
      auto* edit = new QLineEdit;
      if (f.maxLength > 0) edit->setMaxLength(f.maxLength);
      connect(edit, &QLineEdit::textEdited, this, [this, &f](const QString& t) { applyField(f, S(t)); });
      w = edit;
      break;
    }
    case rm::ConfigFieldKind::Number: {
      auto* spin = new QSpinBox;
      spin->setRange(f.minimum, f.maximum);
      connect(spin, &QSpinBox::valueChanged, this, [this, &f](int v) {
        if (!syncing_) applyField(f, std::to_string(v));
      });
      w = spin;
      break;
    }
    case rm::ConfigFieldKind::Switch: {
      auto* box = new QCheckBox(Q(f.label));
      connect(box, &QCheckBox::toggled, this, [this, &f](bool on) {
        if (!syncing_) applyField(f, on ? "1" : "0");
      });
      w = box;
      break;
    }
    case rm::ConfigFieldKind::Choice: {
      auto* combo = new QComboBox;
      for (std::string_view c : f.choices) combo->addItem(Q(c));
      connect(combo, &QComboBox::activated, this, [this, &f, combo](int i) { applyField(f, S(combo->itemText(i))); });
      w = combo;
      break;
    }
  }
  w->setObjectName(name);
  controls_.push_back({&f, w});
  return w;
}

QWidget* SettingsPanel::buildRearrangeGrid() {
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  reorderState_ = new QLabel;
  reorderState_->setObjectName("reorderState");
  layout->addWidget(reorderState_);
  reorderGrid_ = new QTableWidget(rm::TConfigChildWin::kReorderRows, 3);
  reorderGrid_->setObjectName("reorderGrid");
  reorderGrid_->setHorizontalHeaderLabels({tr("Function"), tr("Bit Number"), tr("Bit Number")});
  reorderGrid_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  reorderGrid_->setMinimumHeight(240);
  QStringList tip;
  for (const std::string& fn : rm::TConfigChildWin::ReorderFunctions())
    if (!fn.empty()) tip << Q(fn);
  reorderGrid_->setToolTip(tr("Function: %1").arg(tip.join(", ")));
  for (int r = 0; r < rm::TConfigChildWin::kReorderRows; ++r)
    for (int c = 0; c < 3; ++c) reorderGrid_->setItem(r, c, new QTableWidgetItem);
  connect(reorderGrid_, &QTableWidget::cellChanged, this, [this](int row, int column) {
    if (syncing_) return;
    model_.SetReorderCell(row, column, S(reorderGrid_->item(row, column)->text()));
    changed();
  });
  layout->addWidget(reorderGrid_);
  return box;
}

QWidget* SettingsPanel::buildHeaderTemplatePage() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  templateChoice_ = new QComboBox;
  templateChoice_->setObjectName("templateChoice");
  for (std::string_view n : rm::TConfigChildWin::HeaderTemplateNames()) templateChoice_->addItem(Q(n));
  layout->addWidget(templateChoice_);
  templateText_ = new QPlainTextEdit;
  templateText_->setObjectName("templateText");
  templateText_->setLineWrapMode(QPlainTextEdit::NoWrap);
  layout->addWidget(templateText_, 1);
  auto* buttons = new QHBoxLayout;
  editHeaderButton_ = new QPushButton(tr("Edit"));
  editHeaderButton_->setObjectName("editHeaderButton");
  saveHeaderButton_ = new QPushButton(tr("Save"));
  saveHeaderButton_->setObjectName("saveHeaderButton");
  factoryHeaderButton_ = new QPushButton(tr("Factory Text"));
  factoryHeaderButton_->setObjectName("factoryHeaderButton");
  buttons->addWidget(editHeaderButton_);
  buttons->addWidget(saveHeaderButton_);
  buttons->addWidget(factoryHeaderButton_);
  buttons->addStretch(1);
  layout->addLayout(buttons);

  connect(templateChoice_, &QComboBox::currentIndexChanged, this, [this] {
    if (!syncing_) loadTemplateText();
  });
  connect(editHeaderButton_, &QPushButton::clicked, this, [this] {
    const bool wasOn = model_.HeaderEditMode();
    // Leaving without saving drops the edits: the file's text comes back.
    model_.EditHeaderButtonClick();
    if (wasOn) loadTemplateText();
    changed();
  });
  connect(saveHeaderButton_, &QPushButton::clicked, this, [this] {
    std::vector<std::string> lines;
    for (const QString& l : templateText_->toPlainText().split('\n')) lines.push_back(S(l));
    // The editor's last line break gives no line of its own.
    if (!lines.empty() && lines.back().empty()) lines.pop_back();
    if (model_.SaveHeaderTemplate(templateChoice_->currentIndex(), lines)) loadTemplateText();
    changed();
  });
  connect(factoryHeaderButton_, &QPushButton::clicked, this, [this] {
    QStringList l;
    for (const std::string& s : rm::TConfigChildWin::FactoryHeaderTemplate(templateChoice_->currentIndex())) l << Q(s);
    templateText_->setPlainText(l.join('\n'));
  });
  return page;
}

QWidget* SettingsPanel::buildPalettePage() {
  auto* box = new QGroupBox(tr("Palette Files"));
  auto* layout = new QVBoxLayout(box);
  paletteLabel_ = new QLabel;
  paletteLabel_->setObjectName("paletteLabel");
  paletteCount_ = new QLabel;
  paletteCount_->setObjectName("paletteCount");
  layout->addWidget(paletteLabel_);
  layout->addWidget(paletteCount_);
  auto button = [this, layout](const char* name, const QString& text, auto slot) {
    auto* b = new QPushButton(text);
    b->setObjectName(name);
    connect(b, &QPushButton::clicked, this, slot);
    layout->addWidget(b);
  };
  button("loadPaletteButton", tr("Load a Custom Color Palette from a Graphic..."), [this] {
    const QString path = QFileDialog::getOpenFileName(this, tr("Load a Custom Color Palette"), QString(),
                                                      tr("Graphics (*.png *.jpg *.jpeg *.bmp)"));
    if (!path.isEmpty()) loadCustomPalette(path);
  });
  button("exportPaletteButton", tr("Export RGB Palette to Text File..."), [this] {
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Export RGB Palette to Text File"), QString(), tr("Palettes (*.pal)"));
    if (!path.isEmpty()) exportPaletteText(path);
  });
  button("defaultPaletteButton", tr("Use the Default Color Palette"), [this] {
    if (model_.UseDefaultPalette()) changed();
  });
  button("exportClutButton", tr("Export RGB Palette to Color Look-up Table (CLUT)"), [this] {
    model_.ExportClut();
    changed();
  });
  return box;
}

// ---- Commands ----------------------------------------------------------------------------------

bool SettingsPanel::loadCustomPalette(const QString& picturePath) {
  const bool ok = model_.LoadCustomPalette(S(picturePath));
  if (ok) changed();
  return ok;
}

bool SettingsPanel::exportPaletteText(const QString& palettePath) { return model_.ExportPaletteText(S(palettePath)); }

void SettingsPanel::applyField(const rm::ConfigField& f, const std::string& value) {
  if (syncing_) return;
  model_.SetValue(f, value);
  changed();
}

void SettingsPanel::changed() {
  // One field may move others (one datum per line turns the separator off): show them all.
  SyncFromModel();
  emit modelChanged();
}

// ---- Sync --------------------------------------------------------------------------------------

void SettingsPanel::syncField(const FieldControl& c) {
  const QString v = Q(model_.Value(*c.field));
  switch (c.field->kind) {
    case rm::ConfigFieldKind::Text: {
      auto* e = static_cast<QLineEdit*>(c.widget);
      // Left alone while it says the same, so the caret stays where the user types.
      if (e->text() != v) e->setText(v);
      break;
    }
    case rm::ConfigFieldKind::Number: static_cast<QSpinBox*>(c.widget)->setValue(v.toInt()); break;
    case rm::ConfigFieldKind::Switch: static_cast<QCheckBox*>(c.widget)->setChecked(v != "0" && !v.isEmpty()); break;
    case rm::ConfigFieldKind::Choice:
      static_cast<QComboBox*>(c.widget)->setCurrentIndex(static_cast<QComboBox*>(c.widget)->findText(v));
      break;
  }
}

void SettingsPanel::syncReorderGrid() {
  for (int r = 0; r < rm::TConfigChildWin::kReorderRows; ++r)
    for (int c = 0; c < 3; ++c) {
      const QString v = Q(model_.ReorderCell(r, c));
      if (reorderGrid_->item(r, c)->text() != v) reorderGrid_->item(r, c)->setText(v);
    }
  reorderState_->setText(tr("Rearrange Data Bits %1   bits 0 to %2")
                             .arg(Q(model_.ReorderStateText()))
                             .arg(static_cast<int>(model_.ReorderBitNumbers().size()) - 1));
}

void SettingsPanel::loadTemplateText() {
  QStringList l;
  for (const std::string& s : model_.LoadHeaderTemplate(templateChoice_->currentIndex())) l << Q(s);
  templateText_->setPlainText(l.join('\n'));
}

void SettingsPanel::SyncFromModel() {
  const bool was = syncing_;
  syncing_ = true;
  for (const FieldControl& c : controls_) {
    const QSignalBlocker block(c.widget);
    syncField(c);
  }
  syncReorderGrid();
  const bool editing = model_.HeaderEditMode();
  // The text is re-read only outside the edit mode: an edit in hand is never thrown away.
  if (!editing) loadTemplateText();
  templateText_->setReadOnly(!editing);
  editHeaderButton_->setText(editing ? tr("Cancel Edit") : tr("Edit"));
  saveHeaderButton_->setEnabled(editing);
  factoryHeaderButton_->setEnabled(editing);
  paletteLabel_->setText(Q(model_.PaletteLabel()));
  paletteCount_->setText(tr("Colors in the palette : %1").arg(model_.PaletteColourCount()));
  syncing_ = was;
}

}  // namespace rmgui
