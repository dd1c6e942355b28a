#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "engine/Bitmap.h"
#include "platform/SvgPlugin.h"

namespace rm {
namespace {

// A drawing that gives neither a size nor a view box is rendered at this size.
constexpr double kDefaultSide = 256;

struct HandleUnref {
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
};
struct SurfaceDestroy {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDestroy {
  void operator()(cairo_t* cr) const { cairo_destroy(cr); }
};

std::string TakeMessage(GError* gerror) {
  std::string text = gerror != nullptr && gerror->message != nullptr ? gerror->message : "unknown error";
  if (gerror != nullptr) g_error_free(gerror);
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  return text;
}

// The drawing's own size in pixels: its width and height when they are absolute, else its view
// box, else the default.
void OwnSize(RsvgHandle* handle, double& width, double& height) {
  if (rsvg_handle_get_intrinsic_size_in_pixels(handle, &width, &height) && width > 0 && height > 0) return;
  gboolean hasWidth = FALSE, hasHeight = FALSE, hasViewBox = FALSE;
  RsvgLength w{}, h{};
  RsvgRectangle box{};
  rsvg_handle_get_intrinsic_dimensions(handle, &hasWidth, &w, &hasHeight, &h, &hasViewBox, &box);
  if (hasViewBox && box.width > 0 && box.height > 0) {
    width = box.width;
    height = box.height;
    return;
  }
  width = height = kDefaultSide;
}

// Renders the request's drawing through librsvg, fitted in proportion and centred when the
// request gives a size.
bool Render(const RmSvgRequest& request) {
  auto fail = [&request](const std::string& reason) {
    request.fail(request.context, reason.c_str());
    return false;
  };
  GError* gerror = nullptr;
  std::unique_ptr<RsvgHandle, HandleUnref> handle(rsvg_handle_new_from_data(request.data, request.size, &gerror));
  if (!handle) return fail("the SVG drawing cannot be read (" + TakeMessage(gerror) + ")");
  rsvg_handle_set_dpi(handle.get(), 96);

  double ownWidth = 0, ownHeight = 0;
  OwnSize(handle.get(), ownWidth, ownHeight);
  std::int64_t targetWidth = request.width, targetHeight = request.height;
  if (request.width <= 0 || request.height <= 0) {
    // Clamped before the conversion so that an absurd declared size cannot overflow it.
    targetWidth = std::max<std::int64_t>(1, std::llround(std::min(ownWidth, 1e9)));
    targetHeight = std::max<std::int64_t>(1, std::llround(std::min(ownHeight, 1e9)));
  }
  std::uint32_t* dest = request.pixels(request.context, targetWidth, targetHeight);
  if (dest == nullptr) return false;  // the program refused the size and knows why

  std::unique_ptr<cairo_surface_t, SurfaceDestroy> surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(targetWidth), static_cast<int>(targetHeight)));
  std::unique_ptr<cairo_t, ContextDestroy> cr(cairo_create(surface.get()));
  if (cairo_status(cr.get()) != CAIRO_STATUS_SUCCESS) return fail("there is not enough memory to render the drawing");
  cairo_set_source_rgb(cr.get(), 1, 1, 1);
  cairo_paint(cr.get());
  // Fitted in proportion and centred: the drawing's own size scaled by the smaller ratio.
  const double scale =
      std::min(static_cast<double>(targetWidth) / ownWidth, static_cast<double>(targetHeight) / ownHeight);
  cairo_translate(cr.get(), (static_cast<double>(targetWidth) - ownWidth * scale) / 2,
                  (static_cast<double>(targetHeight) - ownHeight * scale) / 2);
  cairo_scale(cr.get(), scale, scale);
  const RsvgRectangle viewport{0, 0, ownWidth, ownHeight};
  if (!rsvg_handle_render_document(handle.get(), cr.get(), &viewport, &gerror))
    return fail("the SVG drawing cannot be rendered (" + TakeMessage(gerror) + ")");
  cairo_surface_flush(surface.get());

  const unsigned char* pixels = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (std::int64_t y = 0; y < targetHeight; ++y) {
    const auto* source = reinterpret_cast<const std::uint32_t*>(pixels + static_cast<std::ptrdiff_t>(y) * stride);
    for (std::int64_t x = 0; x < targetWidth; ++x) {
      const std::uint32_t p = source[x];  // 0xXXRRGGBB in native order
      *dest++ = static_cast<std::uint32_t>(MakeColour((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF));
    }
  }
  return true;
}

}  // namespace
}  // namespace rm

extern "C" __attribute__((visibility("default"))) bool rm_svg_render(const RmSvgRequest* request) {
  return rm::Render(*request);
}
