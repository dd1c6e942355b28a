#pragma once
#include <array>
#include <string>

#include "engine/Bitmap.h"

namespace rm {

// The geometry of a picture on its way in: rotation, the close crop after it, proportional
// fitting and the stretch. Pure functions on bitmaps; the import commands of the shell call them.

// The colour a rotation gives the room the picture leaves: the program's default background,
// which is white.
constexpr Colour kDefaultBackground = 0x1FFFFFFF;

struct PictureSize {
  int width = 0;
  int height = 0;
  bool operator==(const PictureSize&) const = default;
};

// A rectangle with right and bottom exclusive.
struct PictureRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool operator==(const PictureRect&) const = default;
};

// A 3x3 affine matrix of single floats in column-major order: element (row r, column c) is at
// [c * 3 + r]. A point (x, y) is the column (x, y, 1).
using Matrix3 = std::array<float, 9>;

Matrix3 IdentityMatrix();
Matrix3 TranslationMatrix(float dx, float dy);
// Turns by `degrees` about the origin; with y pointing down a positive angle turns clockwise.
Matrix3 RotationMatrix(float degrees);
// a * b: b is applied to a point first.
Matrix3 MultiplyMatrices(const Matrix3& a, const Matrix3& b);
// Turns by `degrees` about (cx, cy): to the origin, turn, back.
Matrix3 CalcRotationMatrix(float degrees, float cx, float cy);
// The point (x, y) through `m`.
void TransformPoint(const Matrix3& m, float x, float y, float& outX, float& outY);

// The bounding box of a w x h picture turned by `degrees` about its top left corner: the
// corners are rounded one by one (half to even) and the box always holds the origin.
PictureSize NewBitmapSize(int width, int height, double degrees);

// Turns `bitmap` by `degrees` about its centre (width / 2, height / 2). With `resizeToFit` the
// result is round(|w cos a| + |h sin a|) by round(|w sin a| + |h cos a|) with the centre moved to
// the new centre; without it the result keeps the size and what turns out of it is lost. Room
// the picture leaves takes `backColor`; kDefaultBackground means white.
// Every target pixel takes the source pixel under its centre, found through the inverse turn
// (nearest neighbour): a picture for a small display must not gain blended colours.
Bitmap RotateBitmap(const Bitmap& bitmap, double degrees, Colour backColor, bool resizeToFit);

// The smallest rectangle that holds every pixel different from `backColor`, the whole bitmap
// when there is none. Does nothing and returns false when `angleText` is "0": the crop only
// follows a turn. Our bitmaps are always 24 bit, so there is no depth to refuse.
bool CalcCloseCrop(const Bitmap& bitmap, Colour backColor, const std::string& angleText, PictureRect& rect);

// A copy of the part `rect` of `bitmap`; parts of `rect` beyond the bitmap are white.
Bitmap CropBitmap(const Bitmap& bitmap, const PictureRect& rect);

// The turn of an import: the picture is laid in the centre of a white square of side
// max(width * 4, height), turned about the square's centre, closely cropped to what is not white,
// and given one white pixel all round (the result is the used rectangle + 2 each way).
// Only the part of the square the turned picture can reach is ever allocated.
Bitmap RotateOnSquare(const Bitmap& picture, double degrees);

// The size a w x h picture takes to fit in W x H, keeping its proportion in integer arithmetic
// as the import always has: a picture that fits keeps its size; a very thin picture may get a
// side of 0.
PictureSize PropotionalResizeSize(int w, int h, int targetWidth, int targetHeight);
// The same for a selection frame selW x selH on a canvas canvasWidth wide: when a tall picture
// is too wide for the frame, its width becomes the canvas width, not the frame's.
PictureSize PropotionalResizeToSelectionSize(int w, int h, int selWidth, int selHeight, int canvasWidth);

// Draws `bitmap` into a width x height bitmap, nearest neighbour, no smoothing. A side of 0 or
// less gives an empty bitmap.
Bitmap StretchBitmap(const Bitmap& bitmap, int width, int height);

// Parses an angle text ("0" to "360", blanks allowed around it). False when it is no number.
bool ParseAngle(const std::string& text, double& degrees);

}  // namespace rm
