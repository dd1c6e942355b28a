#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>

#include "platform/PictureDecoders.h"
#include "platform/SvgPlugin.h"

// Present when the renderer is compiled into the program itself (the fuzz targets): then nothing
// is loaded.
extern "C" __attribute__((weak)) bool rm_svg_render(const RmSvgRequest* request);

#ifndef RM_SVG_PLUGIN_PATH
#define RM_SVG_PLUGIN_PATH ""  // built without a build tree to look in
#endif

namespace rm {
namespace {

struct Renderer {
  RmSvgRenderFunction render = nullptr;
  std::string error;  // why there is none
};

std::string ProgramFolder() {
  std::error_code ec;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : self.parent_path().string();
}

// The renderer library beside the program (an installed copy), else the one of the build tree the
// program was built in.
Renderer LoadRenderer() {
  if (rm_svg_render != nullptr) return {rm_svg_render, {}};
  std::string tried;
  std::string reason;
  const std::string beside = ProgramFolder().empty() ? std::string() : ProgramFolder() + "/" + kRmSvgPluginName;
  for (const std::string& path : {beside, std::string(RM_SVG_PLUGIN_PATH)}) {
    if (path.empty() || tried.find(path) != std::string::npos) continue;
    tried += (tried.empty() ? "" : ", ") + path;
    if (access(path.c_str(), F_OK) != 0) continue;
    // Kept for the rest of the run: a drawing seldom comes alone.
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
      const char* why = dlerror();
      reason = why != nullptr ? why : "unknown error";
      continue;
    }
    if (auto render = reinterpret_cast<RmSvgRenderFunction>(dlsym(library, kRmSvgRenderSymbol))) return {render, {}};
    reason = path + " has no " + kRmSvgRenderSymbol;
  }
  if (reason.empty()) reason = std::string(kRmSvgPluginName) + " was not found (looked for " + tried + ")";
  return {nullptr, "the SVG renderer cannot be loaded: " + reason};
}

struct Canvas {
  Bitmap picture;
  std::string reason;
  std::int64_t maxPixels = kMaxPicturePixels;
};

}  // namespace

bool RenderSvg(const std::uint8_t* data, std::size_t size, int width, int height, Bitmap& out, std::string& error,
               std::int64_t maxPixels) {
  static const Renderer renderer = LoadRenderer();
  if (renderer.render == nullptr) {
    error = renderer.error;
    return false;
  }
  Canvas canvas;
  canvas.maxPixels = maxPixels;
  RmSvgRequest request{};
  request.data = data;
  request.size = size;
  request.width = width;
  request.height = height;
  request.context = &canvas;
  request.pixels = [](void* context, std::int64_t w, std::int64_t h) -> std::uint32_t* {
    Canvas& c = *static_cast<Canvas*>(context);
    c.reason = CheckPictureSize(w, h, c.maxPixels);
    if (!c.reason.empty()) return nullptr;
    c.picture = Bitmap(static_cast<int>(w), static_cast<int>(h));
    return c.picture.Row(0);
  };
  request.fail = [](void* context, const char* reason) { static_cast<Canvas*>(context)->reason = reason; };
  if (!renderer.render(&request)) {
    error = canvas.reason;
    return false;
  }
  out = std::move(canvas.picture);
  return true;
}

}  // namespace rm
