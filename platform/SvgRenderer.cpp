#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "platform/PictureDecoders.h"

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

}  // namespace

bool RenderSvg(const std::uint8_t* data, std::size_t size, int width, int height, Bitmap& out, std::string& error,
               std::int64_t maxPixels) {
  GError* gerror = nullptr;
  std::unique_ptr<RsvgHandle, HandleUnref> handle(rsvg_handle_new_from_data(data, size, &gerror));
  if (!handle) {
    error = "the SVG drawing cannot be read (" + TakeMessage(gerror) + ")";
    return false;
  }
  rsvg_handle_set_dpi(handle.get(), 96);

  double ownWidth = 0, ownHeight = 0;
  OwnSize(handle.get(), ownWidth, ownHeight);
  std::int64_t targetWidth = width, targetHeight = height;
  if (width <= 0 || height <= 0) {
    // Clamped before the conversion so that an absurd declared size cannot overflow it.
    targetWidth = std::max<std::int64_t>(1, std::llround(std::min(ownWidth, 1e9)));
    targetHeight = std::max<std::int64_t>(1, std::llround(std::min(ownHeight, 1e9)));
  }
  if (std::string reason = CheckPictureSize(targetWidth, targetHeight, maxPixels); !reason.empty()) {
    error = reason;
    return false;
  }

  std::unique_ptr<cairo_surface_t, SurfaceDestroy> surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(targetWidth), static_cast<int>(targetHeight)));
  std::unique_ptr<cairo_t, ContextDestroy> cr(cairo_create(surface.get()));
  if (cairo_status(cr.get()) != CAIRO_STATUS_SUCCESS) {
    error = "there is not enough memory to render the drawing";
    return false;
  }
  cairo_set_source_rgb(cr.get(), 1, 1, 1);
  cairo_paint(cr.get());
  // Fitted in proportion and centred: the drawing's own size scaled by the smaller ratio.
  const double scale =
      std::min(static_cast<double>(targetWidth) / ownWidth, static_cast<double>(targetHeight) / ownHeight);
  cairo_translate(cr.get(), (static_cast<double>(targetWidth) - ownWidth * scale) / 2,
                  (static_cast<double>(targetHeight) - ownHeight * scale) / 2);
  cairo_scale(cr.get(), scale, scale);
  const RsvgRectangle viewport{0, 0, ownWidth, ownHeight};
  if (!rsvg_handle_render_document(handle.get(), cr.get(), &viewport, &gerror)) {
    error = "the SVG drawing cannot be rendered (" + TakeMessage(gerror) + ")";
    return false;
  }
  cairo_surface_flush(surface.get());

  Bitmap picture(static_cast<int>(targetWidth), static_cast<int>(targetHeight));
  const unsigned char* pixels = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < picture.Height(); ++y) {
    const auto* source = reinterpret_cast<const std::uint32_t*>(pixels + static_cast<std::ptrdiff_t>(y) * stride);
    std::uint32_t* dest = picture.Row(y);
    for (int x = 0; x < picture.Width(); ++x) {
      const std::uint32_t p = source[x];  // 0xXXRRGGBB in native order
      dest[x] = static_cast<std::uint32_t>(MakeColour((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF));
    }
  }
  out = std::move(picture);
  return true;
}

}  // namespace rm
