#pragma once
#include <string>
#include <utility>
#include <vector>

#include "canvas/PixelGrid.h"

namespace rm {

class Application;

// The size of the target display: the presets of the size menu and the combo, a size typed by
// the user, the custom sizes, and Picture Mode, where the canvas is not tied to a display.
class DisplaySize {
 public:
  explicit DisplaySize(Application& app) : app_(app) {}

  // A preset of the size menu; false when (W, H) is none or nothing changed.
  bool MatrixPresetClick(int width, int height);
  static bool IsMatrixPreset(int width, int height);
  // The presets of the size menu, width by height, in menu order.
  static std::vector<std::pair<int, int>> MatrixPresets();
  void CHLCDMatrix();
  void LCDMatrix();
  void CanvasRedraw();
  void NoMatrix1Click();
  void negativeOFf();
  // A size typed by the user; empty or unreadable numbers end the command. False when the size
  // was not taken.
  bool UserMatrixClick(const std::string& widthText, const std::string& heightText);

  // Picture Mode: the canvas takes the size of each imported picture. False outside Picture Mode
  // (the import then fits the picture to the display) or for an empty size.
  bool FitCanvasToPicture(int width, int height);
  // The 32 sizes of the size combo, as "WXH".
  static std::vector<std::string> MatrixComboItems();
  // A size chosen in the combo; works as a preset. False when the text is none of the list or
  // nothing changed.
  bool MatrixComboChange(const std::string& text);
  // The custom size entries as menu items "Custom W x H", in entry order.
  std::vector<std::string> CustomSizeMenuItems() const;
  // The custom size menu item `index` (entry order, from 0): the size is typed again for the
  // user. False when there is no such entry or the size was not taken.
  bool CustomSizeMenuClick(int index);
  // One keystroke in a custom size field: beeps and shows the message the rule asks for and
  // returns what the field now holds.
  SizeKeyResult CustomSizeKeyPress(const std::string& typed, int pending, bool isWidth);
  // "Work Canvas Size" in the canvas menu only tells where sizes are made.
  void WorkCanvasSizeClick();

 private:
  Application& app_;
};

}  // namespace rm
