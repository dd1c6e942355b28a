#include "gui/LogView.h"

#include "shell/Application.h"

namespace rmgui {

LogView::LogView(rm::Application& app, QWidget* parent) : QListWidget(parent), app_(app) {
  setObjectName("logList");
  setUniformItemSizes(true);
}

void LogView::SyncFromModel() {
  const rm::TextLines& lines = app_.logWindow.Lines;
  const int have = count();
  const int want = static_cast<int>(lines.Count());
  // The model only ever grows, except when it is cleared or replaced as a whole.
  if (want < have || (have > 0 && item(have - 1)->text().toStdString() != lines[static_cast<std::size_t>(have - 1)])) {
    clear();
  }
  for (int i = count(); i < want; ++i) addItem(QString::fromStdString(lines[static_cast<std::size_t>(i)]));
  if (app_.logWindow.ItemIndex >= 0 && app_.logWindow.ItemIndex < count()) {
    setCurrentRow(static_cast<int>(app_.logWindow.ItemIndex));
    scrollToItem(currentItem());
  }
}

}  // namespace rmgui
