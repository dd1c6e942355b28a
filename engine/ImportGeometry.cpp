#include "engine/ImportGeometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace rm {

namespace {

// Round half to even, the rounding of every size computed here.
int RoundEven(double v) { return static_cast<int>(std::nearbyint(v)); }

Colour Background(Colour c) { return c == kDefaultBackground ? kWhite : (c & 0xFFFFFF); }

// cos and sin of an angle in degrees, exact for the quarter turns so that a picture turned by
// 90, 180 or 270 degrees keeps every pixel.
void CosSin(double degrees, double& c, double& s) {
  double r = std::fmod(degrees, 360.0);
  if (r < 0) r += 360.0;
  if (r == 0.0) {
    c = 1, s = 0;
  } else if (r == 90.0) {
    c = 0, s = 1;
  } else if (r == 180.0) {
    c = -1, s = 0;
  } else if (r == 270.0) {
    c = 0, s = -1;
  } else {
    const double a = degrees * std::numbers::pi / 180.0;
    c = std::cos(a);
    s = std::sin(a);
  }
}

Matrix3 RotationFromCosSin(double c, double s) {
  Matrix3 m = IdentityMatrix();
  m[0] = static_cast<float>(c);
  m[1] = static_cast<float>(s);
  m[3] = static_cast<float>(-s);
  m[4] = static_cast<float>(c);
  return m;
}

// Fills `target` from `source` through `inverse`, which maps a target pixel's centre (shifted by
// targetX0, targetY0) to a point of the source shifted by (sourceX0, sourceY0). Pixels whose
// centre falls outside the source keep what `target` holds.
void SampleInto(Bitmap& target, int targetX0, int targetY0, const Bitmap& source, int sourceX0, int sourceY0,
                const Matrix3& inverse) {
  const int sw = source.Width(), sh = source.Height();
  for (int y = 0; y < target.Height(); ++y) {
    std::uint32_t* row = target.Row(y);
    const float cy = static_cast<float>(targetY0 + y) + 0.5f;
    for (int x = 0; x < target.Width(); ++x) {
      float sx = 0, sy = 0;
      TransformPoint(inverse, static_cast<float>(targetX0 + x) + 0.5f, cy, sx, sy);
      const int ix = static_cast<int>(std::floor(sx)) - sourceX0;
      const int iy = static_cast<int>(std::floor(sy)) - sourceY0;
      if (ix >= 0 && iy >= 0 && ix < sw && iy < sh) row[x] = source.Row(iy)[ix];
    }
  }
}

// The rectangle of the pixels different from `back`; false when there is none.
bool UsedRect(const Bitmap& bitmap, Colour back, PictureRect& rect) {
  const std::uint32_t b = static_cast<std::uint32_t>(back) & 0xFFFFFFu;
  int left = bitmap.Width(), top = bitmap.Height(), right = 0, bottom = 0;
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* row = bitmap.Row(y);
    int first = -1, last = -1;
    for (int x = 0; x < bitmap.Width(); ++x)
      if (row[x] != b) {
        if (first < 0) first = x;
        last = x;
      }
    if (first < 0) continue;
    left = std::min(left, first);
    right = std::max(right, last + 1);
    top = std::min(top, y);
    bottom = y + 1;
  }
  if (right == 0) return false;
  rect = {left, top, right, bottom};
  return true;
}

}  // namespace

Matrix3 IdentityMatrix() { return {1, 0, 0, 0, 1, 0, 0, 0, 1}; }

Matrix3 TranslationMatrix(float dx, float dy) {
  Matrix3 m = IdentityMatrix();
  m[6] = dx;
  m[7] = dy;
  return m;
}

Matrix3 RotationMatrix(float degrees) {
  double c = 0, s = 0;
  CosSin(degrees, c, s);
  return RotationFromCosSin(c, s);
}

Matrix3 MultiplyMatrices(const Matrix3& a, const Matrix3& b) {
  Matrix3 r{};
  for (int col = 0; col < 3; ++col)
    for (int row = 0; row < 3; ++row) {
      float sum = 0;
      for (int k = 0; k < 3; ++k) sum += a[k * 3 + row] * b[col * 3 + k];
      r[col * 3 + row] = sum;
    }
  return r;
}

Matrix3 CalcRotationMatrix(float degrees, float cx, float cy) {
  return MultiplyMatrices(TranslationMatrix(cx, cy),
                          MultiplyMatrices(RotationMatrix(degrees), TranslationMatrix(-cx, -cy)));
}

void TransformPoint(const Matrix3& m, float x, float y, float& outX, float& outY) {
  outX = m[0] * x + m[3] * y + m[6];
  outY = m[1] * x + m[4] * y + m[7];
}

PictureSize NewBitmapSize(int width, int height, double degrees) {
  const double a = degrees * std::numbers::pi / 180.0;
  const double c = std::cos(a), s = std::sin(a);
  const double w = width, h = height;
  const int xs[] = {0, RoundEven(-h * s), RoundEven(w * c - h * s), RoundEven(w * c)};
  const int ys[] = {0, RoundEven(h * c), RoundEven(h * c + w * s), RoundEven(w * s)};
  return {*std::max_element(std::begin(xs), std::end(xs)) - *std::min_element(std::begin(xs), std::end(xs)),
          *std::max_element(std::begin(ys), std::end(ys)) - *std::min_element(std::begin(ys), std::end(ys))};
}

Bitmap RotateBitmap(const Bitmap& bitmap, double degrees, Colour backColor, bool resizeToFit) {
  const int w = bitmap.Width(), h = bitmap.Height();
  double c = 0, s = 0;
  CosSin(degrees, c, s);
  int nw = w, nh = h;
  if (resizeToFit) {
    nw = RoundEven(std::fabs(w * c) + std::fabs(h * s));
    nh = RoundEven(std::fabs(w * s) + std::fabs(h * c));
  }
  Bitmap out(nw, nh, Background(backColor));
  if (bitmap.Empty() || out.Empty()) return out;
  // Target to source: from the new centre, turn back, to the old centre.
  const float scx = static_cast<float>(w) / 2, scy = static_cast<float>(h) / 2;
  const float tcx = static_cast<float>(nw) / 2, tcy = static_cast<float>(nh) / 2;
  const Matrix3 inverse = MultiplyMatrices(TranslationMatrix(scx - tcx, scy - tcy),
                                           CalcRotationMatrix(static_cast<float>(-degrees), tcx, tcy));
  SampleInto(out, 0, 0, bitmap, 0, 0, inverse);
  return out;
}

bool CalcCloseCrop(const Bitmap& bitmap, Colour backColor, const std::string& angleText, PictureRect& rect) {
  if (angleText == "0") return false;
  if (!UsedRect(bitmap, Background(backColor), rect)) rect = {0, 0, bitmap.Width(), bitmap.Height()};
  return true;
}

Bitmap CropBitmap(const Bitmap& bitmap, const PictureRect& rect) {
  Bitmap out(std::max(0, rect.Width()), std::max(0, rect.Height()), kWhite);
  for (int y = 0; y < out.Height(); ++y) {
    const int sy = rect.top + y;
    if (sy < 0 || sy >= bitmap.Height()) continue;
    for (int x = 0; x < out.Width(); ++x) {
      const int sx = rect.left + x;
      if (sx >= 0 && sx < bitmap.Width()) out.Row(y)[x] = bitmap.Row(sy)[sx];
    }
  }
  return out;
}

Bitmap RotateOnSquare(const Bitmap& picture, double degrees) {
  const int w = picture.Width(), h = picture.Height();
  if (picture.Empty()) return picture;
  const int side = std::max(w * 4, h);
  const int ox = (side - w) / 2, oy = (side - h) / 2;
  const float centre = static_cast<float>(side) / 2;
  const Matrix3 forward = CalcRotationMatrix(static_cast<float>(degrees), centre, centre);
  const Matrix3 inverse = CalcRotationMatrix(static_cast<float>(-degrees), centre, centre);

  // Everything the turned picture can cover, one pixel more for rounding, inside the square.
  float minX = 1e30f, minY = 1e30f, maxX = -1e30f, maxY = -1e30f;
  for (const auto& [px, py] : {std::pair{ox, oy}, {ox + w, oy}, {ox, oy + h}, {ox + w, oy + h}}) {
    float tx = 0, ty = 0;
    TransformPoint(forward, static_cast<float>(px), static_cast<float>(py), tx, ty);
    minX = std::min(minX, tx), maxX = std::max(maxX, tx);
    minY = std::min(minY, ty), maxY = std::max(maxY, ty);
  }
  const int x0 = std::clamp(static_cast<int>(std::floor(minX)) - 1, 0, side);
  const int y0 = std::clamp(static_cast<int>(std::floor(minY)) - 1, 0, side);
  const int x1 = std::clamp(static_cast<int>(std::ceil(maxX)) + 1, 0, side);
  const int y1 = std::clamp(static_cast<int>(std::ceil(maxY)) + 1, 0, side);
  Bitmap region(x1 - x0, y1 - y0, kWhite);
  SampleInto(region, x0, y0, picture, ox, oy, inverse);

  PictureRect used;
  // A picture that is all white shows nothing turned; it is kept as it is rather than grown to
  // the whole white square.
  if (!UsedRect(region, kWhite, used)) return picture;
  Bitmap out(used.Width() + 2, used.Height() + 2, kWhite);
  for (int y = 0; y < used.Height(); ++y) {
    const std::uint32_t* from = region.Row(used.top + y) + used.left;
    std::copy(from, from + used.Width(), out.Row(y + 1) + 1);
  }
  return out;
}

PictureSize PropotionalResizeSize(int w, int h, int targetWidth, int targetHeight) {
  if (w <= targetWidth && h <= targetHeight) return {w, h};
  if (w <= 0 || h <= 0) return {0, 0};
  const long double ratioHW = static_cast<long double>(h) / w;
  const long double ratioWH = static_cast<long double>(w) / h;
  PictureSize r;
  if (h >= w) {
    r.height = targetHeight;
    r.width = static_cast<int>(static_cast<long long>(targetHeight) * w / h);
    if (r.width > targetWidth) {
      r.width = targetWidth;
      r.height = static_cast<int>(std::trunc(targetWidth * ratioHW));
    }
  } else {
    r.width = targetWidth;
    r.height = static_cast<int>(static_cast<long long>(targetWidth) * h / w);
    if (r.height > targetHeight) {
      r.height = targetHeight;
      r.width = static_cast<int>(std::trunc(targetHeight * ratioWH));
    }
  }
  return r;
}

PictureSize PropotionalResizeToSelectionSize(int w, int h, int selWidth, int selHeight, int canvasWidth) {
  if (w <= selWidth && h <= selHeight) return {w, h};
  if (w <= 0 || h <= 0) return {0, 0};
  PictureSize r = PropotionalResizeSize(w, h, selWidth, selHeight);
  if (h >= w && static_cast<long long>(selHeight) * w / h > selWidth) {
    r.width = canvasWidth;
    r.height = static_cast<int>(std::trunc(canvasWidth * (static_cast<long double>(h) / w)));
  }
  return r;
}

Bitmap StretchBitmap(const Bitmap& bitmap, int width, int height) {
  if (width <= 0 || height <= 0 || bitmap.Empty()) return Bitmap();
  Bitmap out(width, height);
  const long long sw = bitmap.Width(), sh = bitmap.Height();
  std::vector<int> column(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x)
    column[static_cast<std::size_t>(x)] = static_cast<int>((2LL * x + 1) * sw / (2LL * width));
  for (int y = 0; y < height; ++y) {
    const std::uint32_t* from = bitmap.Row(static_cast<int>((2LL * y + 1) * sh / (2LL * height)));
    std::uint32_t* to = out.Row(y);
    for (int x = 0; x < width; ++x) to[x] = from[column[static_cast<std::size_t>(x)]];
  }
  return out;
}

bool ParseAngle(const std::string& text, double& degrees) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return false;
  const std::size_t last = text.find_last_not_of(' ');
  const char* begin = text.data() + first;
  const char* end = text.data() + last + 1;
  const auto r = std::from_chars(begin, end, degrees);
  return r.ec == std::errc() && r.ptr == end;
}

}  // namespace rm
