#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <filesystem>

#include "gui/DesktopProgram.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "gui/ProgramApplication.h"
#include "support/TestSupport.h"

namespace rmtest {

std::vector<GuiTestEntry>& GuiTests() {
  static std::vector<GuiTestEntry> tests;
  return tests;
}

GuiHome::GuiHome() : path_(MakeTempDir()) { setenv("RASTERMILL_HOME", path_.c_str(), 1); }

GuiHome::~GuiHome() {
  unsetenv("RASTERMILL_HOME");
  std::error_code ec;
  std::filesystem::remove_all(path_, ec);
}

void StartShown(rmgui::DesktopProgram& program, QSize size) {
  rmgui::DesktopProgram::Options o;
  o.singleInstance = false;
  if (!program.Start(o)) qFatal("the program did not start");
  if (!size.isEmpty()) program.Window().resize(size);
  program.Show();
  if (!QTest::qWaitForWindowExposed(&program.Window())) qFatal("the main window was not shown");
}

namespace {

// The box is modal: it is looked for from a timer while its own event loop runs.
void TryAnswer(const QString& caption, QString* seenText, int triesLeft) {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (!box) {
    if (triesLeft > 0)
      QTimer::singleShot(10, [caption, seenText, triesLeft] { TryAnswer(caption, seenText, triesLeft - 1); });
    return;
  }
  if (seenText) *seenText = box->text();
  for (QAbstractButton* b : box->buttons())
    if (b->text() == caption) {
      b->click();
      return;
    }
  QFAIL(qPrintable("no button " + caption + " in the message: " + box->text()));
}

}  // namespace

void AnswerNextMessage(const QString& caption, QString* seenText) {
  QTimer::singleShot(0, [caption, seenText] { TryAnswer(caption, seenText, 200); });
}

}  // namespace rmtest

int main(int argc, char** argv) {
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  rmgui::ProgramApplication app(argc, argv);
  std::vector<std::string> only;
  std::vector<char*> qtArgs{argv[0]};
  bool passOn = false;
  for (int i = 1; i < argc; ++i) {
    if (passOn)
      qtArgs.push_back(argv[i]);
    else if (std::string(argv[i]) == "--")
      passOn = true;
    else
      only.emplace_back(argv[i]);
  }
  int failures = 0;
  for (const rmtest::GuiTestEntry& entry : rmtest::GuiTests()) {
    if (!only.empty() && std::find(only.begin(), only.end(), entry.name) == only.end()) continue;
    std::unique_ptr<QObject> test = entry.make();
    failures += QTest::qExec(test.get(), static_cast<int>(qtArgs.size()), qtArgs.data());
  }
  return failures == 0 ? 0 : 1;
}
