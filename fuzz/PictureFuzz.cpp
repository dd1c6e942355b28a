// Feeds arbitrary bytes to the picture decoders, whatever kind the first bytes make of them, and
// checks what must hold for any file: nothing crashes or leaks, a success gives a picture of
// 24 bit colours, and a failure names the file and leaves the caller's bitmap as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/PlatformImageCodecs.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
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
  } else {
    Check(error.rfind("fuzz.bin: ", 0) == 0 && error.size() > 10);
    Check(out == before);
  }
  return 0;
}
