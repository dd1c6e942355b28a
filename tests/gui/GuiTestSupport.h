#pragma once
#include <QObject>
#include <QSize>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// The desktop program's tests are QtTest classes. Each file registers its classes with
// RM_GUI_TEST(ClassName); the runner (GuiTestMain.cpp) makes one QApplication on the offscreen
// platform and runs every class, or only those named on the command line:
//   gui_tests [ClassName...] [-- QtTest arguments such as a test function's name]
namespace rmgui {
class DesktopProgram;
}

namespace rmtest {

struct GuiTestEntry {
  const char* name;
  std::function<std::unique_ptr<QObject>()> make;
};
std::vector<GuiTestEntry>& GuiTests();

struct GuiTestRegistrar {
  GuiTestRegistrar(const char* name, std::function<std::unique_ptr<QObject>()> make) {
    GuiTests().push_back({name, std::move(make)});
  }
};

// A fresh home folder for the program's settings, set as RASTERMILL_HOME while it lives and
// removed after.
class GuiHome {
 public:
  GuiHome();
  ~GuiHome();
  GuiHome(const GuiHome&) = delete;
  GuiHome& operator=(const GuiHome&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// Starts `program` (the single-instance rule off: tests start several) and shows its main window,
// at `size` unless that is empty (the saved place then stays). Fails the test run when it cannot.
void StartShown(rmgui::DesktopProgram& program, QSize size = QSize(1600, 1000));

// Presses, in the next modal message box, the button whose caption is `caption`; records the box's
// text in `seenText` when given. Call it before the action that will ask.
void AnswerNextMessage(const QString& caption, QString* seenText = nullptr);

}  // namespace rmtest

#define RM_GUI_TEST(Class) \
  static const ::rmtest::GuiTestRegistrar rmGuiTestRegistrar##Class(#Class, [] { return std::make_unique<Class>(); })
