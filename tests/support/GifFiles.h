#pragma once
// Animated GIF files made with giflib itself, for the tests of the reader and the composition.
#include <gif_lib.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace rmtest {

struct GifFrameSpec {
  int left = 0, top = 0, width = 1, height = 1;
  std::vector<std::uint8_t> pixels;  // width * height indices
  bool control = true;               // write a graphic control extension
  int delay = 0;                     // hundredths of a second
  int transparent = NO_TRANSPARENT_COLOR;
  int disposal = 0;
  std::vector<GifColorType> localMap;  // a power of two entries, or none
};

inline GifFrameSpec Frame(int left, int top, int width, int height, std::vector<std::uint8_t> pixels, int delay = 0,
                          int transparent = NO_TRANSPARENT_COLOR, int disposal = 0) {
  GifFrameSpec f;
  f.left = left, f.top = top, f.width = width, f.height = height;
  f.pixels = std::move(pixels);
  f.delay = delay, f.transparent = transparent, f.disposal = disposal;
  return f;
}

struct GifBytes {
  std::vector<std::uint8_t> bytes;
  std::vector<std::size_t> frameAt;  // where each frame's image descriptor (0x2C) starts
};

inline int AppendGifBytes(GifFileType* gif, const GifByteType* data, int length) {
  auto* out = static_cast<std::vector<std::uint8_t>*>(gif->UserData);
  out->insert(out->end(), data, data + length);
  return length;
}

// A power-of-two `globalMap` (or none) and the frames in order.
inline GifBytes MakeAnimatedGif(int screenWidth, int screenHeight, const std::vector<GifColorType>& globalMap,
                                const std::vector<GifFrameSpec>& frames, int background = 0) {
  GifBytes out;
  int error = 0;
  GifFileType* gif = EGifOpen(&out.bytes, AppendGifBytes, &error);
  EGifSetGifVersion(gif, true);
  ColorMapObject* global =
      globalMap.empty() ? nullptr : GifMakeMapObject(static_cast<int>(globalMap.size()), globalMap.data());
  EGifPutScreenDesc(gif, screenWidth, screenHeight, 8, background, global);
  for (const GifFrameSpec& f : frames) {
    if (f.control) {
      GraphicsControlBlock control{};
      control.DisposalMode = f.disposal;
      control.DelayTime = f.delay;
      control.TransparentColor = f.transparent;
      GifByteType extension[4];
      const std::size_t length = EGifGCBToExtension(&control, extension);
      EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(length), extension);
    }
    ColorMapObject* local =
        f.localMap.empty() ? nullptr : GifMakeMapObject(static_cast<int>(f.localMap.size()), f.localMap.data());
    if (local == nullptr && gif->Image.ColorMap != nullptr) {
      // giflib would drop the map of the frame before without freeing it.
      GifFreeMapObject(gif->Image.ColorMap);
      gif->Image.ColorMap = nullptr;
    }
    out.frameAt.push_back(out.bytes.size());
    EGifPutImageDesc(gif, f.left, f.top, f.width, f.height, false, local);
    std::vector<GifPixelType> line(static_cast<std::size_t>(f.width));
    for (int y = 0; y < f.height; ++y) {
      for (int x = 0; x < f.width; ++x) line[x] = f.pixels[static_cast<std::size_t>(y * f.width + x)];
      EGifPutLine(gif, line.data(), f.width);
    }
    GifFreeMapObject(local);
  }
  EGifCloseFile(gif, &error);
  GifFreeMapObject(global);
  return out;
}

}  // namespace rmtest
