#include "engine/Bitmap.h"

#include <algorithm>

namespace rm {

void Bitmap::Resize(int width, int height, Colour fill) {
  width_ = std::max(0, width);
  height_ = std::max(0, height);
  pixels_.assign(static_cast<std::size_t>(width_) * height_, static_cast<std::uint32_t>(fill) & 0xFFFFFFu);
}

void Bitmap::Fill(Colour c) { std::fill(pixels_.begin(), pixels_.end(), static_cast<std::uint32_t>(c) & 0xFFFFFFu); }

}  // namespace rm
