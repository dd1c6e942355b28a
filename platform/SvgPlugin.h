#pragma once
#include <cstddef>
#include <cstdint>

// The SVG renderer lives in a library of its own, librastermill-svg.so, which the program loads
// the first time a drawing comes: librsvg pulls in cairo, pango, ICU and X11, whose loading
// would otherwise cost every run of the program, SVG or not. The two sides meet through this
// plain C interface.

extern "C" {

struct RmSvgRequest {
  const std::uint8_t* data;
  std::size_t size;
  // Both above 0: the drawing is fitted into this size; otherwise it takes its own.
  int width;
  int height;
  void* context;
  // The program's side: memory for `width` x `height` pixels, rows one after the other, each
  // pixel 0x00BBGGRR. Null when the program refuses the size; it then knows the reason.
  std::uint32_t* (*pixels)(void* context, std::int64_t width, std::int64_t height);
  // The reason the drawing could not be rendered.
  void (*fail)(void* context, const char* reason);
};

// The renderer's entry point.
bool rm_svg_render(const RmSvgRequest* request);
using RmSvgRenderFunction = bool (*)(const RmSvgRequest*);
inline constexpr const char* kRmSvgRenderSymbol = "rm_svg_render";
inline constexpr const char* kRmSvgPluginName = "librastermill-svg.so";
}
