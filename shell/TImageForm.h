#pragma once

namespace rm {

class Application;

// The Work Canvas view's commands; here the Convert button.
class TImageForm {
 public:
  explicit TImageForm(Application& app) : app_(app) {}
  // The Convert command. False when it stopped before or during the conversion.
  bool EncodeButtonClick();

 private:
  Application& app_;
};

}  // namespace rm
