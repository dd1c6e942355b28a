#pragma once
// Helpers for the decoder tests: picture files written byte by byte into a temporary folder and
// their decoded pixels compared with what the test expects.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "engine/Bitmap.h"
#include "support/TestSupport.h"

namespace rmtest {

using Bytes = std::vector<std::uint8_t>;
using ColourFn = std::function<rm::Colour(int x, int y)>;

inline void Put16(Bytes& b, std::uint32_t v) {
  b.push_back(v & 0xFF);
  b.push_back((v >> 8) & 0xFF);
}
inline void Put32(Bytes& b, std::uint32_t v) {
  Put16(b, v & 0xFFFF);
  Put16(b, v >> 16);
}

// A folder for the whole test program, removed at its end.
inline const std::string& SharedTemp() {
  static const TempDir dir;
  return dir.path;
}

inline std::string WriteTemp(const std::string& name, const Bytes& bytes) {
  const std::string path = SharedTemp() + "/" + name;
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return path;
}

inline Bytes ReadBytes(const std::string& path) {
  const std::string text = ReadFile(path);
  return Bytes(text.begin(), text.end());
}

// Colour c with alpha a laid on white, rounded.
inline int OnWhite(int c, int a) { return (c * a + 255 * (255 - a) + 127) / 255; }

// Every pixel within `tolerance` of `expect` in each channel; reports the first few that are not.
inline void ExpectPixels(const rm::Bitmap& picture, int width, int height, const ColourFn& expect, int tolerance = 0) {
  ASSERT_EQ(picture.Width(), width);
  ASSERT_EQ(picture.Height(), height);
  int wrong = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const rm::Colour got = picture.GetPixel(x, y), want = expect(x, y);
      const bool near = std::abs(rm::RedOf(got) - rm::RedOf(want)) <= tolerance &&
                        std::abs(rm::GreenOf(got) - rm::GreenOf(want)) <= tolerance &&
                        std::abs(rm::BlueOf(got) - rm::BlueOf(want)) <= tolerance;
      if (!near && ++wrong <= 3)
        ADD_FAILURE() << "pixel " << x << "," << y << std::hex << ": got " << got << ", want " << want;
    }
}

}  // namespace rmtest
