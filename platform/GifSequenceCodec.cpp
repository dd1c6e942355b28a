#include "platform/GifSequenceCodec.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

#include "engine/TextLines.h"
#include "platform/GifInput.h"
#include "platform/PictureLimits.h"

namespace rm {
namespace {

std::string Describe(int code) { return DescribeGifError(code, "animation"); }

std::vector<Colour> MapColours(const ColorMapObject* map) {
  std::vector<Colour> colours;
  if (map == nullptr || map->Colors == nullptr) return colours;
  for (int i = 0; i < map->ColorCount; ++i)
    colours.push_back(MakeColour(map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue));
  return colours;
}

class SequenceReader {
 public:
  SequenceReader(const std::uint8_t* data, std::size_t size, std::int64_t maxPixels)
      : input_{data, size, 0, false}, maxPixels_(maxPixels) {}
  ~SequenceReader() {
    if (gif_ != nullptr) DGifCloseFile(gif_, nullptr);
  }
  SequenceReader(const SequenceReader&) = delete;
  SequenceReader& operator=(const SequenceReader&) = delete;

  bool Run(GifSequence& out, std::string& error) {
    int code = 0;
    gif_ = DGifOpen(&input_, ReadGifFromMemory, &code);
    if (gif_ == nullptr) return Fail(error, Describe(code));
    GifSequence result;
    result.screenWidth = gif_->SWidth;
    result.screenHeight = gif_->SHeight;
    result.globalMap = MapColours(gif_->SColorMap);
    result.backgroundIndex = gif_->SBackGroundColor;
    GifFrame pending;  // the control extension waiting for its frame
    std::int64_t pixels = 0;
    for (;;) {
      // Many files end without their trailer; what came whole until then is kept.
      if (input_.pos == input_.size && !result.frames.empty()) break;
      GifRecordType record = UNDEFINED_RECORD_TYPE;
      if (DGifGetRecordType(gif_, &record) == GIF_ERROR) return Fail(error, Describe(gif_->Error));
      if (record == TERMINATE_RECORD_TYPE) break;
      if (record == EXTENSION_RECORD_TYPE) {
        if (!ReadExtension(pending)) return Fail(error, Describe(gif_->Error));
        continue;
      }
      if (record != IMAGE_DESC_RECORD_TYPE) return Fail(error, Describe(D_GIF_ERR_WRONG_RECORD));
      if (DGifGetImageDesc(gif_) == GIF_ERROR) return Fail(error, Describe(gif_->Error));
      GifFrame frame = pending;
      pending = GifFrame{};
      const std::string number = "frame " + std::to_string(result.frames.size() + 1) + ": ";
      const GifImageDesc& d = gif_->Image;
      frame.left = d.Left;
      frame.top = d.Top;
      frame.width = d.Width;
      frame.height = d.Height;
      frame.colourMap = MapColours(d.ColorMap);
      pixels += std::int64_t{d.Width} * d.Height;
      if (pixels > maxPixels_)
        return Fail(error, number + "the frames hold more than " + std::to_string(maxPixels_) + " pixels in all");
      if (!ReadPixels(frame)) return Fail(error, number + Describe(gif_->Error));
      // giflib keeps a record of every frame descriptor it has read, grown by one each time;
      // dropped at once, a file of many frames costs no more than one of few.
      GifFreeSavedImages(gif_);
      gif_->ImageCount = 0;
      result.frames.push_back(std::move(frame));
    }
    if (result.frames.empty()) return Fail(error, "the GIF file holds no frame");
    out = std::move(result);
    return true;
  }

 private:
  bool Fail(std::string& error, std::string reason) const {
    error = input_.readPastEnd ? std::string(kTruncatedMessage) : std::move(reason);
    return false;
  }

  bool ReadExtension(GifFrame& frame) {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif_, &code, &block) == GIF_ERROR) return false;
    if (code == GRAPHICS_EXT_FUNC_CODE && block != nullptr) {
      GraphicsControlBlock control{};
      if (DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
        frame.hasControl = true;
        frame.delayHundredths = control.DelayTime;
        frame.transparent = control.TransparentColor != NO_TRANSPARENT_COLOR;
        frame.transparentIndex = frame.transparent ? control.TransparentColor : 0;
        frame.disposal = control.DisposalMode;
      }
    }
    while (block != nullptr)
      if (DGifGetExtensionNext(gif_, &block) == GIF_ERROR) return false;
    return true;
  }

  // The frame's indices; a frame of no pixels only has its coded data passed over.
  bool ReadPixels(GifFrame& frame) {
    if (frame.width <= 0 || frame.height <= 0) {
      int codeSize = 0;
      GifByteType* block = nullptr;
      if (DGifGetCode(gif_, &codeSize, &block) == GIF_ERROR) return false;
      while (block != nullptr)
        if (DGifGetCodeNext(gif_, &block) == GIF_ERROR) return false;
      frame.width = std::max(frame.width, 0);
      frame.height = std::max(frame.height, 0);
      return true;
    }
    frame.pixels.resize(static_cast<std::size_t>(frame.width) * frame.height);
    static constexpr int kStart[] = {0, 4, 2, 1};
    static constexpr int kStep[] = {8, 8, 4, 2};
    const bool interlaced = gif_->Image.Interlace;
    for (int pass = 0; pass < (interlaced ? 4 : 1); ++pass) {
      const int start = interlaced ? kStart[pass] : 0, step = interlaced ? kStep[pass] : 1;
      for (int row = start; row < frame.height; row += step)
        if (DGifGetLine(gif_, frame.pixels.data() + static_cast<std::size_t>(row) * frame.width, frame.width) ==
            GIF_ERROR)
          return false;
    }
    return true;
  }

  GifMemoryInput input_;
  std::int64_t maxPixels_;
  GifFileType* gif_ = nullptr;
};

int WriteToString(GifFileType* gif, const GifByteType* data, int length) {
  static_cast<std::string*>(gif->UserData)
      ->append(reinterpret_cast<const char*>(data), static_cast<std::size_t>(length));
  return length;
}

// giflib wants maps of a power of two entries; the rest is filled with black.
ColorMapObject* MakeMap(const std::vector<Colour>& colours) {
  const int count = std::max(2, static_cast<int>(colours.size()));
  ColorMapObject* map = GifMakeMapObject(1 << GifBitSize(count), nullptr);
  if (map == nullptr) return nullptr;
  for (int i = 0; i < map->ColorCount; ++i) {
    const Colour c = static_cast<std::size_t>(i) < colours.size() ? colours[static_cast<std::size_t>(i)] : kBlack;
    map->Colors[i] = {static_cast<GifByteType>(RedOf(c)), static_cast<GifByteType>(GreenOf(c)),
                      static_cast<GifByteType>(BlueOf(c))};
  }
  return map;
}

struct MapOwner {
  ColorMapObject* map = nullptr;
  ~MapOwner() { GifFreeMapObject(map); }
};

std::string Check(const GifSequence& s) {
  if (s.frames.empty()) return "Cannot save empty GIF";
  if (s.screenWidth <= 0 || s.screenHeight <= 0 || s.screenWidth > 65535 || s.screenHeight > 65535)
    return "the animation has an invalid size";
  if (s.globalMap.size() > 256) return "the colour map has more than 256 entries";
  for (std::size_t i = 0; i < s.frames.size(); ++i) {
    const GifFrame& f = s.frames[i];
    const std::string number = "frame " + std::to_string(i + 1);
    const auto& map = f.colourMap.empty() ? s.globalMap : f.colourMap;
    if (map.empty() || map.size() > 256) return number + " has no colour map of 1 to 256 entries";
    if (f.width <= 0 || f.height <= 0 || f.left < 0 || f.top < 0 || f.left + f.width > 65535 ||
        f.top + f.height > 65535 || f.pixels.size() != static_cast<std::size_t>(f.width) * f.height)
      return number + " has an invalid place or size";
    for (std::uint8_t p : f.pixels)
      if (p >= map.size()) return number + " uses a colour beyond its map";
  }
  return {};
}

}  // namespace

bool PlatformGifExchange::ReadFromMemory(const std::uint8_t* data, std::size_t size, const std::string& name,
                                         GifSequence& out, std::string& error) const {
  std::string reason;
  if (!SequenceReader(data, size, maxPixels_).Run(out, reason)) {
    error = name + ": " + reason;
    return false;
  }
  return true;
}

bool PlatformGifExchange::Read(const std::string& path, GifSequence& out, std::string& error) {
  const std::string name = path.substr(path.find_last_of('/') + 1);
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    error = name + ": the file cannot be opened (" + std::strerror(errno) + ")";
    return false;
  }
  const std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (file.bad()) {
    error = name + ": the file cannot be read";
    return false;
  }
  return ReadFromMemory(bytes.data(), bytes.size(), name, out, error);
}

bool PlatformGifExchange::Encode(const GifSequence& s, std::string& bytes, std::string& error) {
  if (std::string reason = Check(s); !reason.empty()) {
    error = reason;
    return false;
  }
  bytes.clear();
  int code = 0;
  GifFileType* gif = EGifOpen(&bytes, WriteToString, &code);
  if (gif == nullptr) {
    error = std::string("the GIF file cannot be made (") +
            (GifErrorString(code) ? GifErrorString(code) : "unknown error") + ")";
    return false;
  }
  EGifSetGifVersion(gif, true);
  const auto fail = [&]() {
    const char* text = GifErrorString(gif->Error);
    error = std::string("the GIF file cannot be made (") + (text ? text : "unknown error") + ")";
    EGifCloseFile(gif, nullptr);
    return false;
  };
  MapOwner global;
  if (!s.globalMap.empty() && (global.map = MakeMap(s.globalMap)) == nullptr) return fail();
  if (EGifPutScreenDesc(gif, s.screenWidth, s.screenHeight, 8, 0, global.map) == GIF_ERROR) return fail();
  // Players repeat the frames for ever.
  static const GifByteType kNetscape[] = {'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0'};
  static const GifByteType kLoop[] = {1, 0, 0};
  if (EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE) == GIF_ERROR ||
      EGifPutExtensionBlock(gif, sizeof kNetscape, kNetscape) == GIF_ERROR ||
      EGifPutExtensionBlock(gif, sizeof kLoop, kLoop) == GIF_ERROR || EGifPutExtensionTrailer(gif) == GIF_ERROR)
    return fail();
  for (const GifFrame& f : s.frames) {
    if (f.hasControl) {
      GraphicsControlBlock control{};
      control.DisposalMode = f.disposal;
      control.UserInputFlag = false;
      control.DelayTime = f.delayHundredths;
      control.TransparentColor = f.transparent ? f.transparentIndex : NO_TRANSPARENT_COLOR;
      GifByteType block[4];
      const std::size_t length = EGifGCBToExtension(&control, block);
      if (EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(length), block) == GIF_ERROR) return fail();
    }
    MapOwner local;
    if (!f.colourMap.empty() && (local.map = MakeMap(f.colourMap)) == nullptr) return fail();
    // giflib forgets, without freeing it, the map of the frame before when a frame has none.
    if (local.map == nullptr && gif->Image.ColorMap != nullptr) {
      GifFreeMapObject(gif->Image.ColorMap);
      gif->Image.ColorMap = nullptr;
    }
    if (EGifPutImageDesc(gif, f.left, f.top, f.width, f.height, false, local.map) == GIF_ERROR) return fail();
    std::vector<GifPixelType> line(static_cast<std::size_t>(f.width));
    for (int row = 0; row < f.height; ++row) {
      std::copy_n(f.pixels.data() + static_cast<std::size_t>(row) * f.width, f.width, line.data());
      if (EGifPutLine(gif, line.data(), f.width) == GIF_ERROR) return fail();
    }
  }
  if (EGifCloseFile(gif, &code) == GIF_ERROR) {
    error = std::string("the GIF file cannot be made (") +
            (GifErrorString(code) ? GifErrorString(code) : "unknown error") + ")";
    return false;
  }
  return true;
}

bool PlatformGifExchange::Write(const GifSequence& sequence, const std::string& path, std::string& error) {
  const std::string name = path.substr(path.find_last_of('/') + 1);
  std::string bytes, reason;
  if (!Encode(sequence, bytes, reason) || !WriteFileAtomically(path, bytes, &reason)) {
    error = name + ": " + reason;
    return false;
  }
  return true;
}

}  // namespace rm
