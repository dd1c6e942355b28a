#pragma once
#include <cstdint>
#include <vector>

namespace rm {

// Colour values are 0x00BBGGRR (red in the low byte); -1 means "outside the bitmap".
using Colour = std::int32_t;
constexpr Colour kOutside = -1;
constexpr Colour kBlack = 0x000000;
constexpr Colour kWhite = 0xFFFFFF;

constexpr int RedOf(Colour c) { return c & 0xFF; }
constexpr int GreenOf(Colour c) { return (c >> 8) & 0xFF; }
constexpr int BlueOf(Colour c) { return (c >> 16) & 0xFF; }
constexpr Colour MakeColour(int r, int g, int b) { return (b << 16) | (g << 8) | r; }

// A 24 bit per pixel picture. Pixels are held as packed 0x00BBGGRR words so that a read is one
// load; Row() gives direct access for the code that walks whole lines.
class Bitmap {
 public:
  Bitmap() = default;
  Bitmap(int width, int height, Colour fill = kWhite) { Resize(width, height, fill); }

  void Resize(int width, int height, Colour fill = kWhite);
  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Empty() const { return width_ == 0 || height_ == 0; }

  Colour GetPixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return kOutside;
    return static_cast<Colour>(pixels_[static_cast<std::size_t>(y) * width_ + x]);
  }
  void SetPixel(int x, int y, Colour c) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    pixels_[static_cast<std::size_t>(y) * width_ + x] = static_cast<std::uint32_t>(c) & 0xFFFFFFu;
  }
  std::uint32_t* Row(int y) { return pixels_.data() + static_cast<std::size_t>(y) * width_; }
  const std::uint32_t* Row(int y) const { return pixels_.data() + static_cast<std::size_t>(y) * width_; }
  void Fill(Colour c);

  bool operator==(const Bitmap& other) const = default;

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace rm
