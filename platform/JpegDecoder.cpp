#include <cstdio>
// jpeglib.h needs FILE and size_t declared before it.
#include <jpeglib.h>
#include <jerror.h>

#include <csetjmp>
#include <cstring>
#include <utility>

#include "platform/PictureDecoders.h"

namespace rm {
namespace {

// libjpeg reports errors by calling error_exit, which must not return. We leave through
// longjmp. Everything a longjmp may cross (the library's frames, our callbacks and the function
// that calls setjmp) works on this plain struct only, so no destructor is ever skipped; the C++
// objects live in the caller, above the setjmp.
struct JpegJob {
  jpeg_error_mgr errors;  // first, so the library's error pointer is also the job's
  std::jmp_buf escape;
  char message[JMSG_LENGTH_MAX];
  bool truncated;
  jpeg_decompress_struct info;
  const std::uint8_t* data;
  std::size_t size;
  std::int64_t maxPixels;
  bool sizeRefused;
  Bitmap* picture;  // allocated by the caller once the size is known and accepted
  JSAMPARRAY row;
  bool invertedCmyk;
};

void OnErrorExit(j_common_ptr info) {
  auto* job = reinterpret_cast<JpegJob*>(info->err);
  info->err->format_message(info, job->message);
  std::longjmp(job->escape, 1);
}

// The library's default prints warnings on stderr. Most are harmless (junk between markers), but
// running out of data means the file was cut short: the library would pad the picture with grey
// and go on, and we would rather say so.
void OnMessage(j_common_ptr info, int level) {
  auto* job = reinterpret_cast<JpegJob*>(info->err);
  if (level < 0 && info->err->msg_code == JWRN_JPEG_EOF) {
    job->truncated = true;
    std::longjmp(job->escape, 1);
  }
}

void OnOutput(j_common_ptr) {}

// Reads the header and checks the size. Returns false when the picture should not be decoded;
// the job then says why.
bool ReadHeader(JpegJob* job) {
  if (setjmp(job->escape) != 0) return false;
  jpeg_mem_src(&job->info, job->data, static_cast<unsigned long>(job->size));
  jpeg_read_header(&job->info, TRUE);
  if (!CheckPictureSize(job->info.image_width, job->info.image_height, job->maxPixels).empty()) {
    job->sizeRefused = true;
    return false;
  }
  // Adobe writes CMYK with every sample inverted and says so with its marker; files without it
  // are taken to hold plain ink amounts.
  const J_COLOR_SPACE space = job->info.jpeg_color_space;
  const bool cmyk = space == JCS_CMYK || space == JCS_YCCK;
  job->info.out_color_space = cmyk ? JCS_CMYK : JCS_RGB;
  job->invertedCmyk = cmyk && job->info.saw_Adobe_marker;
  return true;
}

bool ReadPixels(JpegJob* job) {
  if (setjmp(job->escape) != 0) return false;
  jpeg_decompress_struct& info = job->info;
  jpeg_start_decompress(&info);
  job->row = (*info.mem->alloc_sarray)(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE,
                                       info.output_width * static_cast<JDIMENSION>(info.output_components), 1);
  const bool cmyk = info.out_color_space == JCS_CMYK;
  while (info.output_scanline < info.output_height) {
    const int y = static_cast<int>(info.output_scanline);
    jpeg_read_scanlines(&info, job->row, 1);
    const JSAMPLE* s = job->row[0];
    std::uint32_t* dest = job->picture->Row(y);
    for (JDIMENSION x = 0; x < info.output_width; ++x) {
      int r, g, b;
      if (cmyk) {
        int c = s[0], m = s[1], ye = s[2], k = s[3];
        if (!job->invertedCmyk) c = 255 - c, m = 255 - m, ye = 255 - ye, k = 255 - k;
        // c..k are now the amounts of paper left uncovered; the colour is their product.
        r = (c * k + 127) / 255;
        g = (m * k + 127) / 255;
        b = (ye * k + 127) / 255;
        s += 4;
      } else {
        r = s[0], g = s[1], b = s[2];
        s += 3;
      }
      dest[x] = static_cast<std::uint32_t>(MakeColour(r, g, b));
    }
  }
  jpeg_finish_decompress(&info);
  return true;
}

}  // namespace

bool DecodeJpeg(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error, std::int64_t maxPixels) {
  JpegJob job{};
  job.data = data;
  job.size = size;
  job.maxPixels = maxPixels;
  job.info.err = jpeg_std_error(&job.errors);
  job.errors.error_exit = OnErrorExit;
  job.errors.emit_message = OnMessage;
  job.errors.output_message = OnOutput;
  jpeg_create_decompress(&job.info);
  struct Cleanup {
    JpegJob& job;
    ~Cleanup() { jpeg_destroy_decompress(&job.info); }
  } cleanup{job};
  // Progressive pictures keep all their coefficients in memory; tell the library what it may use
  // so that a lying header gives an error instead of an allocation we cannot afford.
  job.info.mem->max_memory_to_use = static_cast<long>(maxPixels) * 8;

  auto fail = [&] {
    error =
        job.truncated ? std::string(kTruncatedMessage) : std::string("the JPEG data is damaged (") + job.message + ")";
    return false;
  };
  if (!ReadHeader(&job)) {
    if (job.sizeRefused) {
      error = CheckPictureSize(job.info.image_width, job.info.image_height, maxPixels);
      return false;
    }
    return fail();
  }
  Bitmap picture(static_cast<int>(job.info.image_width), static_cast<int>(job.info.image_height));
  job.picture = &picture;
  if (!ReadPixels(&job)) return fail();
  out = std::move(picture);
  return true;
}

}  // namespace rm
