#pragma once
// What the GIF picture decoder and the GIF sequence reader share of giflib: reading from memory
// and our own texts for its error numbers.
#include <gif_lib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/PictureLimits.h"

namespace rm {

// The file in memory. A read cut short by the end of the data is remembered: giflib reports
// some of those under other error codes.
struct GifMemoryInput {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t pos;
  bool readPastEnd;
};

inline int ReadGifFromMemory(GifFileType* gif, GifByteType* dest, int length) {
  auto* input = static_cast<GifMemoryInput*>(gif->UserData);
  const std::size_t wanted = static_cast<std::size_t>(std::max(length, 0));
  const std::size_t count = std::min(wanted, input->size - input->pos);
  if (count < wanted) input->readPastEnd = true;
  std::memcpy(dest, input->data + input->pos, count);
  input->pos += count;
  return static_cast<int>(count);
}

// giflib reports failures by number; its own texts are terse, so the user gets ours. `noun` is
// what was being read: "picture" or "animation".
inline std::string DescribeGifError(int code, const std::string& noun) {
  switch (code) {
    case D_GIF_ERR_READ_FAILED:
    case D_GIF_ERR_EOF_TOO_SOON: return kTruncatedMessage;
    case D_GIF_ERR_NOT_GIF_FILE: return "the file is not a GIF picture";
    case D_GIF_ERR_NO_SCRN_DSCR: return "the GIF screen descriptor is missing";
    case D_GIF_ERR_NO_IMAG_DSCR: return "the GIF image descriptor is missing";
    case D_GIF_ERR_NO_COLOR_MAP: return "the GIF " + noun + " has no colour table";
    case D_GIF_ERR_WRONG_RECORD: return "the GIF data holds a record of unknown type";
    case D_GIF_ERR_DATA_TOO_BIG: return "the GIF " + noun + " holds more pixels than its size allows";
    case D_GIF_ERR_NOT_ENOUGH_MEM: return "there is not enough memory to read the " + noun;
    case D_GIF_ERR_IMAGE_DEFECT: return "the GIF " + noun + " data is damaged";
    default: {
      const char* text = GifErrorString(code);
      return "the GIF " + noun + " cannot be read (" + (text ? text : "unknown error") + ")";
    }
  }
}

}  // namespace rm
