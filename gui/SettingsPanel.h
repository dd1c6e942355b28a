#pragma once
#include <QWidget>
#include <vector>

#include "shell/Application.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
class QTabWidget;
class QTableWidget;

namespace rmgui {

// The settings panel: one tab per page of rm::TConfigChildWin, its controls built from the
// model's field table. Every change goes to the program at once; the panel holds no settings.
//
// Object names: each field's control is "field_" + the field's id; the rearrange grid
// "reorderGrid" with its state label "reorderState"; the header template page "templateChoice",
// "templateText", "editHeaderButton", "saveHeaderButton", "factoryHeaderButton"; the palette page
// "paletteLabel", "paletteCount", "loadPaletteButton", "exportPaletteButton",
// "defaultPaletteButton", "exportClutButton".
class SettingsPanel : public QWidget {
  Q_OBJECT
 public:
  explicit SettingsPanel(rm::Application& app, QWidget* parent = nullptr);

  QTabWidget* tabs() const { return tabs_; }

  // The commands behind the palette buttons once a file has been chosen; the buttons ask for the
  // file with a QFileDialog and then call these.
  bool loadCustomPalette(const QString& picturePath);
  bool exportPaletteText(const QString& palettePath);

 public slots:
  // Re-reads every control from the program without sending any change back.
  void SyncFromModel();

 signals:
  // One of the panel's controls or commands changed the program's state.
  void modelChanged();

 private:
  struct FieldControl {
    const rm::ConfigField* field;
    QWidget* widget;
  };

  QWidget* buildFieldsPage(std::string_view tab, QWidget* extra = nullptr);
  QWidget* buildControl(const rm::ConfigField& field);
  QWidget* buildRearrangeGrid();
  QWidget* buildHeaderTemplatePage();
  QWidget* buildPalettePage();
  void applyField(const rm::ConfigField& field, const std::string& value);
  void syncField(const FieldControl& control);
  void syncReorderGrid();
  void loadTemplateText();
  void changed();

  rm::Application& app_;
  rm::TConfigChildWin& model_;
  QTabWidget* tabs_ = nullptr;
  std::vector<FieldControl> controls_;
  QTableWidget* reorderGrid_ = nullptr;
  QLabel* reorderState_ = nullptr;
  QComboBox* templateChoice_ = nullptr;
  QPlainTextEdit* templateText_ = nullptr;
  QPushButton* editHeaderButton_ = nullptr;
  QPushButton* saveHeaderButton_ = nullptr;
  QPushButton* factoryHeaderButton_ = nullptr;
  QLabel* paletteLabel_ = nullptr;
  QLabel* paletteCount_ = nullptr;
  bool syncing_ = false;
};

}  // namespace rmgui
