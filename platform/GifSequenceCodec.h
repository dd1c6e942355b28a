#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "animation/GifSequence.h"

namespace rm {

// The GifExchange port on top of giflib.
class PlatformGifExchange : public GifExchange {
 public:
  PlatformGifExchange() = default;
  // A smaller budget of frame pixels than kMaxAnimationPixels (the fuzz target).
  explicit PlatformGifExchange(std::int64_t maxPixels) : maxPixels_(maxPixels) {}

  bool Read(const std::string& path, GifSequence& out, std::string& error) override;
  bool Write(const GifSequence& sequence, const std::string& path, std::string& error) override;

  // Reads a whole file held in memory; `name` starts the message as the file's name would.
  bool ReadFromMemory(const std::uint8_t* data, std::size_t size, const std::string& name, GifSequence& out,
                      std::string& error) const;
  // The bytes of the GIF file of `sequence`; false with the reason when it cannot be made.
  static bool Encode(const GifSequence& sequence, std::string& bytes, std::string& error);

 private:
  std::int64_t maxPixels_ = kMaxAnimationPixels;
};

}  // namespace rm
