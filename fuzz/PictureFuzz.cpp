// Feeds arbitrary bytes to the picture decoders, whatever kind the first bytes make of them, and
// checks what must hold for any file: nothing crashes or leaks, a success gives a picture of
// 24 bit colours, and a failure names the file and leaves the caller's bitmap as it was.
#include <cstddef>
#include <cstdint>
#include <algorithm>
#include <cstdlib>
#include <string>

#include "animation/GifSequence.h"
#include "engine/ImportGeometry.h"
#include "platform/GifSequenceCodec.h"
#include "platform/PlatformImageCodecs.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

// The whole GIF sequence: every frame read, then composed into whole pictures of one size, one
// delay each; written back, the composed frames read again as they were.
void CheckGifSequence(const std::uint8_t* data, std::size_t size) {
  const rm::PlatformGifExchange gifs(std::int64_t{1} << 20);
  rm::GifSequence file;
  std::string error;
  if (!gifs.ReadFromMemory(data, size, "fuzz.gif", file, error)) {
    Check(error.rfind("fuzz.gif: ", 0) == 0 && error.size() > 10);
    return;
  }
  Check(!file.frames.empty());
  for (const rm::GifFrame& f : file.frames)
    Check(f.pixels.size() == static_cast<std::size_t>(f.width) * static_cast<std::size_t>(f.height));
  rm::ComposedGif composed;
  if (!rm::ComposeGif(file, composed, error, std::int64_t{1} << 20)) {
    Check(!error.empty());
    return;
  }
  Check(!composed.frames.empty() && composed.frames.size() <= file.frames.size());
  Check(composed.delaysMs.size() == composed.frames.size());
  for (const rm::Bitmap& b : composed.frames) Check(b.Width() == composed.width && b.Height() == composed.height);
  if (composed.frames.size() > 8 || static_cast<std::int64_t>(composed.width) * composed.height > 4096) return;
  rm::GifSequence again;
  std::string bytes;
  if (!rm::MakeGifSequence(composed.frames, composed.delaysMs, false, again, error)) return;  // past 256 colours
  Check(rm::PlatformGifExchange::Encode(again, bytes, error));
  rm::GifSequence back;
  Check(
      gifs.ReadFromMemory(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), "again.gif", back, error));
  rm::ComposedGif recomposed;
  Check(rm::ComposeGif(back, recomposed, error));
  Check(recomposed.frames == composed.frames);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size >= 6 && data[0] == 'G' && data[1] == 'I' && data[2] == 'F') CheckGifSequence(data, size);
  // A budget of 4 million pixels keeps each input within the fuzzer's memory limit; the size
  // checks themselves are the same as with the full limits.
  const rm::PlatformImageCodecs codecs(std::int64_t{1} << 22);
  // Drawings are rendered at their own size or, for every other input length, fitted into a
  // small frame.
  rm::LoadOptions options;
  if (size % 2 == 1) options = {40, 24};

  const rm::Bitmap before(3, 2, 0x123456);
  rm::Bitmap out = before;
  std::string error;
  if (codecs.LoadFromMemory(data, size, "fuzz.bin", options, out, error)) {
    Check(!out.Empty());
    Check(error.empty());
    for (int y = 0; y < out.Height(); ++y)
      for (int x = 0; x < out.Width(); ++x) Check((out.Row(y)[x] & 0xFF000000u) == 0);
    // What an import does next: the turn (small pictures, to keep the runs fast) and the fit
    // into a display, which must land inside it.
    if (static_cast<std::int64_t>(out.Width()) * out.Height() <= 65536) {
      const rm::Bitmap turned = rm::RotateOnSquare(out, static_cast<double>(size % 361));
      // Turned, a picture gains its margin of one pixel; one that is all white stays as it was.
      Check((turned.Width() >= 2 && turned.Height() >= 2) || turned == out);
    }
    const rm::PictureSize fit = rm::PropotionalResizeSize(out.Width(), out.Height(), 128, 64);
    Check(fit.width >= 0 && fit.width <= std::max(128, out.Width()) && fit.height >= 0 &&
          fit.height <= std::max(64, out.Height()));
    const rm::Bitmap fitted = rm::StretchBitmap(out, std::min(fit.width, 128), std::min(fit.height, 64));
    Check(fitted.Width() <= 128 && fitted.Height() <= 64);
  } else {
    Check(error.rfind("fuzz.bin: ", 0) == 0 && error.size() > 10);
    Check(out == before);
  }
  return 0;
}
