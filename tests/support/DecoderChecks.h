#pragma once
// What the decoder tests of every format share: loading a made file, and files that must be refused.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/PictureLimits.h"
#include "platform/PlatformImageCodecs.h"
#include "support/PictureFiles.h"

namespace rmtest {

// Loads `bytes` written to a file called `name`; a failure to load fails the test.
inline rm::Bitmap LoadPicture(const std::string& name, const Bytes& bytes, rm::LoadOptions options = {}) {
  rm::Bitmap out;
  std::string error;
  EXPECT_TRUE(rm::PlatformImageCodecs().Load(WriteTemp(name, bytes), options, out, error)) << error;
  EXPECT_EQ(error, "");
  return out;
}

struct RefusedPicture {
  std::string name;  // also the file's name
  Bytes bytes;
  std::string message;  // after "<name>: "; the message must start with it
};

// The files cut after each of `sizes` bytes (those shorter than the whole) as truncated ones.
inline void AddCuts(std::vector<RefusedPicture>& cases, const std::string& kind, const Bytes& bytes,
                    const std::vector<std::size_t>& sizes) {
  for (std::size_t size : sizes)
    if (size < bytes.size())
      cases.push_back({"cut-" + std::to_string(size) + "." + kind, Bytes(bytes.begin(), bytes.begin() + size),
                       rm::kTruncatedMessage});
}

// Every file fails with its name and the message, and leaves the bitmap it was to fill alone.
inline void ExpectRefused(const std::vector<RefusedPicture>& cases) {
  rm::PlatformImageCodecs codecs;
  for (const RefusedPicture& c : cases) {
    SCOPED_TRACE(c.name);
    rm::Bitmap out(2, 2, 0x123456);
    out.SetPixel(1, 1, 0x654321);
    const rm::Bitmap before = out;
    std::string error;
    EXPECT_FALSE(codecs.Load(WriteTemp(c.name, c.bytes), out, error));
    const std::string want = c.name + ": " + c.message;
    EXPECT_EQ(error.substr(0, want.size()), want) << error;
    EXPECT_EQ(out, before);
  }
}

}  // namespace rmtest
