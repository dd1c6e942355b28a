#include "gui/PreviewPanel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/Application.h"

namespace rmgui {

namespace {

struct PreviewCommand {
  const char* text;
  const char* objectName;
  bool (*run)(rm::Application&);
};

const PreviewCommand kCommands[] = {
    {"Turn Right", "previewTurnRight",
     [](rm::Application& a) {
       a.exploForm2.PreviewTurnRight();
       return true;
     }},
    {"Turn Left", "previewTurnLeft",
     [](rm::Application& a) {
       a.exploForm2.PreviewTurnLeft();
       return true;
     }},
    {"Half Turn", "previewHalfTurn",
     [](rm::Application& a) {
       a.exploForm2.PreviewHalfTurn();
       return true;
     }},
    {"Reload Original Image", "previewReload", [](rm::Application& a) { return a.exploForm2.ReloadOriginalPreview(); }},
    {"Resize to fit in Work Canvas", "previewFit",
     [](rm::Application& a) { return a.exploForm2.ResizePreviewToFit(); }},
    {"Export Previewed Graphic to Work Canvas", "previewExport",
     [](rm::Application& a) { return a.exploForm2.ExportGraphic(); }},
};

}  // namespace

PreviewPanel::PreviewPanel(rm::Application& app, QWidget* parent) : QWidget(parent), app_(app) {
  setObjectName("previewPanel");
  picture_ = new QLabel(this);
  picture_->setObjectName("previewPicture");
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setMinimumSize(120, 90);
  picture_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  size_ = new QLabel(this);
  size_->setObjectName("previewSize");
  auto* buttons = new QGridLayout;
  // Short commands two to a row, long ones a row each, so the dock can stay narrow beside the
  // canvas without cutting a caption.
  int row = 0, column = 0;
  for (const PreviewCommand& c : kCommands) {
    auto* b = new QPushButton(c.text, this);
    b->setObjectName(c.objectName);
    connect(b, &QPushButton::clicked, this, [this, run = c.run] { Command(run); });
    const bool wide = QString(c.text).size() > 16;
    if (wide && column == 1) ++row, column = 0;
    buttons->addWidget(b, row, column, 1, wide ? 2 : 1);
    column = wide ? 2 : column + 1;
    if (column == 2) ++row, column = 0;
  }
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(picture_, 1);
  layout->addWidget(size_);
  layout->addLayout(buttons);
  SyncFromModel();
}

void PreviewPanel::Command(bool (*run)(rm::Application&)) {
  if (app_.exploForm2.PreviewBitmap.Width() <= 0) return;
  run(app_);
  SyncFromModel();
  emit modelChanged();
}

void PreviewPanel::ShowPicture(const QString& path) {
  app_.exploForm2.LoadPreview(path.toStdString());
  SyncFromModel();
  emit modelChanged();
}

void PreviewPanel::SyncFromModel() {
  const rm::Bitmap& b = app_.exploForm2.PreviewBitmap;
  for (QPushButton* button : findChildren<QPushButton*>()) button->setEnabled(b.Width() > 0);
  if (b.Width() <= 0 || b.Height() <= 0) {
    picture_->clear();
    size_->clear();
    return;
  }
  const QImage image(reinterpret_cast<const uchar*>(b.Row(0)), b.Width(), b.Height(), b.Width() * 4,
                     QImage::Format_RGBX8888);
  // Display pictures are small: enlarged by whole pixels they stay sharp.
  const QSize room = picture_->size().boundedTo(QSize(4096, 4096));
  picture_->setPixmap(QPixmap::fromImage(image.scaled(room, Qt::KeepAspectRatio, Qt::FastTransformation)));
  size_->setText(QString("W : %1  H : %2").arg(b.Width()).arg(b.Height()));
}

void PreviewPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  SyncFromModel();
}

}  // namespace rmgui
