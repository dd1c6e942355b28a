#pragma once
#include <QDialog>

#include "engine/ExportDialog.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;

namespace rmgui {

// The Export dialog of the Convert command: which part of the canvas, compression,
// post-processing and the Intel HEX group. Its fields are the settings they show; the library
// has already enabled, disabled and cleared them for the mode and output kind.
class ExportDialogBox : public QDialog {
  Q_OBJECT
 public:
  ExportDialogBox(const rm::ExportDialogState& state, QWidget* parent = nullptr);
  rm::ExportDialogState State() const;

 private:
  rm::ExportDialogState state_;
  QButtonGroup* entries_ = nullptr;
  QCheckBox* compression_ = nullptr;
  QCheckBox* postProcessing_ = nullptr;
  QComboBox* bytesPerLine_ = nullptr;
  QComboBox* addressDigits_ = nullptr;
  QLineEdit* offset_ = nullptr;
};

}  // namespace rmgui
