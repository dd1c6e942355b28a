#include "platform/PngCodec.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/PictureLimits.h"

namespace rm {
namespace {

// libpng reports errors with longjmp. Everything a longjmp may cross (the libpng frames, our
// callbacks and the functions that call setjmp) works on these plain structs only, so no
// destructor is ever skipped; the C++ objects live in the callers, above the setjmp.
struct Failure {
  char message[256];
  bool truncated;
  int writeErrno;
};

struct ReadJob {
  Failure failure;
  png_structp png;
  png_infop info;
  const std::uint8_t* data;
  std::size_t size;
  std::size_t pos;
  png_uint_32 width;
  png_uint_32 height;
};

struct WriteJob {
  Failure failure;
  png_structp png;
  png_infop info;
  std::FILE* file;
  const Bitmap* bitmap;
  png_bytep row;
};

void OnError(png_structp png, png_const_charp message) {
  auto* failure = static_cast<Failure*>(png_get_error_ptr(png));
  std::snprintf(failure->message, sizeof failure->message, "%s", message ? message : "");
  png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp) {}

void ReadFromMemory(png_structp png, png_bytep dest, png_size_t length) {
  auto* job = static_cast<ReadJob*>(png_get_io_ptr(png));
  if (job->size - job->pos < length) {
    job->failure.truncated = true;
    png_error(png, "unexpected end of file");
  }
  std::memcpy(dest, job->data + job->pos, length);
  job->pos += length;
}

// The steps run under the setjmp of the wrapper below it; keeping the setjmp in a function with
// no other locals means no variable can be clobbered by the longjmp.
void ReadHeaderSteps(ReadJob* job) {
  png_structp png = job->png;
  png_infop info = job->info;
  png_set_read_fn(png, job, ReadFromMemory);
  png_set_user_limits(png, kMaxPictureSide, kMaxPictureSide);
  png_read_info(png, info);

  const int colourType = png_get_color_type(png, info);
  const int bitDepth = png_get_bit_depth(png, info);
  const bool transparency = png_get_valid(png, info, PNG_INFO_tRNS) != 0;
  if (bitDepth == 16) png_set_scale_16(png);
  if (colourType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
  if (colourType == PNG_COLOR_TYPE_GRAY && bitDepth < 8) png_set_expand_gray_1_2_4_to_8(png);
  if (transparency) png_set_tRNS_to_alpha(png);
  if (colourType == PNG_COLOR_TYPE_GRAY || colourType == PNG_COLOR_TYPE_GRAY_ALPHA) png_set_gray_to_rgb(png);
  if (!transparency && (colourType & PNG_COLOR_MASK_ALPHA) == 0) png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);

  job->width = png_get_image_width(png, info);
  job->height = png_get_image_height(png, info);
  if (png_get_bit_depth(png, info) != 8 || png_get_channels(png, info) != 4 ||
      png_get_rowbytes(png, info) != static_cast<png_size_t>(job->width) * 4)
    png_error(png, "unexpected pixel layout after conversion");
}

bool ReadHeader(ReadJob* job) {
  if (setjmp(png_jmpbuf(job->png))) return false;
  ReadHeaderSteps(job);
  return true;
}

bool ReadPixels(ReadJob* job, png_bytepp rows) {
  if (setjmp(png_jmpbuf(job->png))) return false;
  png_read_image(job->png, rows);
  png_read_end(job->png, nullptr);
  return true;
}

void WriteToFile(png_structp png, png_bytep data, png_size_t length) {
  auto* job = static_cast<WriteJob*>(png_get_io_ptr(png));
  if (std::fwrite(data, 1, length, job->file) != length) {
    job->failure.writeErrno = errno != 0 ? errno : EIO;
    png_error(png, "write failed");
  }
}

void FlushFile(png_structp) {}

void WriteSteps(WriteJob* job) {
  png_structp png = job->png;
  png_infop info = job->info;
  const Bitmap& bitmap = *job->bitmap;
  png_set_write_fn(png, job, WriteToFile, FlushFile);
  png_set_IHDR(png, info, static_cast<png_uint_32>(bitmap.Width()), static_cast<png_uint_32>(bitmap.Height()), 8,
               PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* source = bitmap.Row(y);
    for (int x = 0; x < bitmap.Width(); ++x) {
      const Colour c = static_cast<Colour>(source[x]);
      job->row[3 * x] = static_cast<png_byte>(RedOf(c));
      job->row[3 * x + 1] = static_cast<png_byte>(GreenOf(c));
      job->row[3 * x + 2] = static_cast<png_byte>(BlueOf(c));
    }
    png_write_row(png, job->row);
  }
  png_write_end(png, info);
}

bool WriteAll(WriteJob* job) {
  if (setjmp(png_jmpbuf(job->png))) return false;
  WriteSteps(job);
  return true;
}

std::uint32_t BigEndian32(const std::uint8_t* p) {
  return (static_cast<std::uint32_t>(p[0]) << 24) | (static_cast<std::uint32_t>(p[1]) << 16) |
         (static_cast<std::uint32_t>(p[2]) << 8) | p[3];
}

std::string DescribeReadFailure(const Failure& failure) {
  if (failure.truncated) return kTruncatedMessage;
  const std::string text = failure.message;
  if (text.find("emory") != std::string::npos) return "there is not enough memory to read the picture";
  return "the PNG data is damaged (" + text + ")";
}

}  // namespace

bool PngCodec::Decode(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error,
                      std::int64_t maxPixels) {
  // Check the declared size ourselves first: libpng's own limit message is less clear, and it
  // has no limit on the number of pixels.
  if (size >= 24 && std::memcmp(data + 12, "IHDR", 4) == 0) {
    const std::string reason = CheckPictureSize(BigEndian32(data + 16), BigEndian32(data + 20), maxPixels);
    if (!reason.empty()) {
      error = reason;
      return false;
    }
  }

  ReadJob job{};
  job.data = data;
  job.size = size;
  job.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &job.failure, OnError, OnWarning);
  if (job.png != nullptr) job.info = png_create_info_struct(job.png);
  struct Cleanup {
    ReadJob& job;
    ~Cleanup() { png_destroy_read_struct(&job.png, job.info ? &job.info : nullptr, nullptr); }
  } cleanup{job};
  if (job.png == nullptr || job.info == nullptr) {
    error = "there is not enough memory to read the picture";
    return false;
  }
  if (!ReadHeader(&job)) {
    error = DescribeReadFailure(job.failure);
    return false;
  }
  if (const std::string reason = CheckPictureSize(job.width, job.height, maxPixels); !reason.empty()) {
    error = reason;
    return false;
  }

  // libpng writes R, G, B, A bytes straight into the bitmap's 32 bit words; each word is then
  // replaced by its colour composed on white.
  Bitmap picture(static_cast<int>(job.width), static_cast<int>(job.height));
  std::vector<png_bytep> rows(job.height);
  for (png_uint_32 y = 0; y < job.height; ++y) rows[y] = reinterpret_cast<png_bytep>(picture.Row(static_cast<int>(y)));
  if (!ReadPixels(&job, rows.data())) {
    error = DescribeReadFailure(job.failure);
    return false;
  }
  for (png_uint_32 y = 0; y < job.height; ++y) {
    std::uint32_t* word = picture.Row(static_cast<int>(y));
    const png_byte* bytes = rows[y];
    for (png_uint_32 x = 0; x < job.width; ++x, bytes += 4) {
      const int a = bytes[3];
      int r = bytes[0], g = bytes[1], b = bytes[2];
      if (a != 255) {
        r = (r * a + 255 * (255 - a) + 127) / 255;
        g = (g * a + 255 * (255 - a) + 127) / 255;
        b = (b * a + 255 * (255 - a) + 127) / 255;
      }
      word[x] = static_cast<std::uint32_t>(MakeColour(r, g, b));
    }
  }
  out = std::move(picture);
  return true;
}

bool PngCodec::Encode(const Bitmap& bitmap, std::FILE* file, std::string& error) {
  if (bitmap.Empty()) {
    error = "an empty picture cannot be saved";
    return false;
  }
  std::vector<png_byte> row(static_cast<std::size_t>(bitmap.Width()) * 3);
  WriteJob job{};
  job.file = file;
  job.bitmap = &bitmap;
  job.row = row.data();
  job.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &job.failure, OnError, OnWarning);
  if (job.png != nullptr) job.info = png_create_info_struct(job.png);
  struct Cleanup {
    WriteJob& job;
    ~Cleanup() { png_destroy_write_struct(&job.png, job.info ? &job.info : nullptr); }
  } cleanup{job};
  if (job.png == nullptr || job.info == nullptr) {
    error = "there is not enough memory to write the picture";
    return false;
  }
  if (!WriteAll(&job)) {
    if (job.failure.writeErrno != 0)
      error = std::string("the file cannot be written (") + std::strerror(job.failure.writeErrno) + ")";
    else
      error = std::string("the picture cannot be written as PNG (") + job.failure.message + ")";
    return false;
  }
  return true;
}

}  // namespace rm
