#pragma once

namespace rm {

class Application;

// The Work Canvas view's commands; here the Convert button.
class TImageForm {
 public:
  explicit TImageForm(Application& app) : app_(app) {}
  // The Convert command. False when it stopped before or during the conversion.
  bool EncodeButtonClick();

  // ---- Canvas view commands: zoom, history, Image Collection ----

  // ---- end of the canvas view commands ----

  // ---- Threshold slider and dithering commands ----

  // ---- end of the threshold and dithering commands ----

 private:
  Application& app_;
};

}  // namespace rm
