#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/GifInput.h"
#include "platform/PictureDecoders.h"

namespace rm {
namespace {

std::string Describe(int code) { return DescribeGifError(code, "picture"); }

class GifReader {
 public:
  GifReader(const std::uint8_t* data, std::size_t size, std::int64_t maxPixels)
      : input_{data, size, 0, false}, maxPixels_(maxPixels) {}
  ~GifReader() {
    if (gif_ != nullptr) DGifCloseFile(gif_, nullptr);
  }
  GifReader(const GifReader&) = delete;
  GifReader& operator=(const GifReader&) = delete;

  bool Run(Bitmap& out, std::string& error) {
    int code = 0;
    gif_ = DGifOpen(&input_, ReadGifFromMemory, &code);
    if (gif_ == nullptr) return Fail(error, Describe(code));
    int transparent = NO_TRANSPARENT_COLOR;
    for (;;) {
      GifRecordType record = UNDEFINED_RECORD_TYPE;
      if (DGifGetRecordType(gif_, &record) == GIF_ERROR) return Fail(error, Describe(gif_->Error));
      if (record == TERMINATE_RECORD_TYPE) return Fail(error, "the GIF file holds no picture");
      if (record == EXTENSION_RECORD_TYPE) {
        if (!ReadExtension(transparent)) return Fail(error, Describe(gif_->Error));
        continue;
      }
      if (record != IMAGE_DESC_RECORD_TYPE) return Fail(error, Describe(D_GIF_ERR_WRONG_RECORD));
      if (DGifGetImageDesc(gif_) == GIF_ERROR) return Fail(error, Describe(gif_->Error));
      return ReadFirstFrame(transparent, out, error);
    }
  }

 private:
  bool Fail(std::string& error, std::string reason) const {
    error = input_.readPastEnd ? std::string(kTruncatedMessage) : std::move(reason);
    return false;
  }

  // Reads one extension; a graphic control block sets the transparent index of the next frame.
  bool ReadExtension(int& transparent) {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif_, &code, &block) == GIF_ERROR) return false;
    if (code == GRAPHICS_EXT_FUNC_CODE && block != nullptr) {
      GraphicsControlBlock control{};
      if (DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) transparent = control.TransparentColor;
    }
    while (block != nullptr)
      if (DGifGetExtensionNext(gif_, &block) == GIF_ERROR) return false;
    return true;
  }

  bool ReadFirstFrame(int transparent, Bitmap& out, std::string& error) {
    const GifImageDesc& frame = gif_->Image;
    if (std::string reason = CheckPictureSize(frame.Width, frame.Height, maxPixels_); !reason.empty())
      return Fail(error, reason);
    // A screen of no size is taken to be the frame's extent.
    std::int64_t width = gif_->SWidth, height = gif_->SHeight;
    if (width <= 0 || height <= 0) {
      width = std::int64_t{frame.Left} + frame.Width;
      height = std::int64_t{frame.Top} + frame.Height;
    }
    if (std::string reason = CheckPictureSize(width, height, maxPixels_); !reason.empty()) return Fail(error, reason);
    const ColorMapObject* map = frame.ColorMap != nullptr ? frame.ColorMap : gif_->SColorMap;
    if (map == nullptr) return Fail(error, Describe(D_GIF_ERR_NO_COLOR_MAP));

    // Pixels outside the frame and transparent ones show the white background.
    Bitmap picture(static_cast<int>(width), static_cast<int>(height), kWhite);
    std::vector<GifPixelType> line(static_cast<std::size_t>(frame.Width));
    // Interlaced frames arrive in four passes: every 8th row from 0, every 8th from 4, every
    // 4th from 2, every 2nd from 1.
    static constexpr int kStart[] = {0, 4, 2, 1};
    static constexpr int kStep[] = {8, 8, 4, 2};
    const int passes = frame.Interlace ? 4 : 1;
    for (int pass = 0; pass < passes; ++pass) {
      const int start = frame.Interlace ? kStart[pass] : 0, step = frame.Interlace ? kStep[pass] : 1;
      for (int row = start; row < frame.Height; row += step) {
        if (DGifGetLine(gif_, line.data(), frame.Width) == GIF_ERROR) return Fail(error, Describe(gif_->Error));
        const std::int64_t y = std::int64_t{frame.Top} + row;
        if (y >= height) continue;
        std::uint32_t* dest = picture.Row(static_cast<int>(y));
        for (int i = 0; i < frame.Width; ++i) {
          const std::int64_t x = std::int64_t{frame.Left} + i;
          if (x >= width || line[i] == transparent) continue;
          // Indices past the end of the colour table show black.
          if (line[i] >= map->ColorCount) {
            dest[x] = static_cast<std::uint32_t>(kBlack);
            continue;
          }
          const GifColorType& c = map->Colors[line[i]];
          dest[x] = static_cast<std::uint32_t>(MakeColour(c.Red, c.Green, c.Blue));
        }
      }
    }
    out = std::move(picture);
    return true;
  }

  GifMemoryInput input_;
  std::int64_t maxPixels_;
  GifFileType* gif_ = nullptr;
};

}  // namespace

bool DecodeGif(const std::uint8_t* data, std::size_t size, Bitmap& out, std::string& error, std::int64_t maxPixels) {
  return GifReader(data, size, maxPixels).Run(out, error);
}

}  // namespace rm
