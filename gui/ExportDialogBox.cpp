#include "gui/ExportDialogBox.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace rmgui {

namespace {
constexpr const char* kEntries[] = {"Export Full size Work Canvas", "Export Upper Half of Work Canvas",
                                    "Export Lower Half of Work Canvas", "Export Area of Work Canvas",
                                    "Export Selected Subdivision >"};
}

ExportDialogBox::ExportDialogBox(const rm::ExportDialogState& state, QWidget* parent) : QDialog(parent), state_(state) {
  setObjectName("exportDialog");
  setWindowTitle("Export to Data");
  auto* layout = new QVBoxLayout(this);

  auto* area = new QGroupBox("Full / Partial", this);
  auto* areaLayout = new QVBoxLayout(area);
  entries_ = new QButtonGroup(this);
  for (int i = 0; i < 5; ++i) {
    auto* b = new QRadioButton(kEntries[i], area);
    b->setObjectName(QString("exportEntry%1").arg(i));
    entries_->addButton(b, i);
    areaLayout->addWidget(b);
  }
  if (auto* b = entries_->button(state.entry)) b->setChecked(true);
  area->setEnabled(state.entryListEnabled);
  layout->addWidget(area);

  compression_ = new QCheckBox("Data Compression", this);
  compression_->setObjectName("exportCompression");
  compression_->setChecked(state.compression);
  compression_->setEnabled(state.compressionEnabled);
  layout->addWidget(compression_);
  postProcessing_ = new QCheckBox("Post-Processing", this);
  postProcessing_->setObjectName("exportPostProcessing");
  postProcessing_->setChecked(state.postProcessing);
  layout->addWidget(postProcessing_);

  auto* hex = new QGroupBox("Intel Hex Output", this);
  auto* hexLayout = new QFormLayout(hex);
  bytesPerLine_ = new QComboBox(hex);
  bytesPerLine_->setObjectName("exportHexBytesPerLine");
  for (int n : {32, 16, 8}) bytesPerLine_->addItem(QString::number(n), n);
  bytesPerLine_->setCurrentIndex(bytesPerLine_->findData(state.hexBytesPerLine));
  addressDigits_ = new QComboBox(hex);
  addressDigits_->setObjectName("exportHexAddressDigits");
  for (int n : {4, 6, 8}) addressDigits_->addItem(QString::number(n), n);
  addressDigits_->setCurrentIndex(addressDigits_->findData(state.addressDigits));
  offset_ = new QLineEdit(QString::fromStdString(state.addressOffset), hex);
  offset_->setObjectName("exportHexOffset");
  offset_->setMaxLength(4);
  offset_->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9A-Fa-f]{0,4}"), offset_));
  hexLayout->addRow("Bytes per line", bytesPerLine_);
  hexLayout->addRow("Address digits", addressDigits_);
  hexLayout->addRow("Address offset", offset_);
  layout->addWidget(hex);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

rm::ExportDialogState ExportDialogBox::State() const {
  rm::ExportDialogState s = state_;
  s.entry = entries_->checkedId() < 0 ? 0 : entries_->checkedId();
  s.compression = compression_->isChecked();
  s.postProcessing = postProcessing_->isChecked();
  s.hexBytesPerLine = bytesPerLine_->currentData().toInt();
  s.addressDigits = addressDigits_->currentData().toInt();
  s.addressOffset = offset_->text().isEmpty() ? std::string("0000") : offset_->text().toUpper().toStdString();
  return s;
}

}  // namespace rmgui
