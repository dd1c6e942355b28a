#include "animation/GifSequence.h"

#include <algorithm>
#include <unordered_map>

namespace rm {

namespace {

std::string SizeText(std::int64_t w, std::int64_t h) { return std::to_string(w) + " x " + std::to_string(h); }

// Draws `frame` on `target` at its place. Indices beyond the map show black. With `keyed`, a
// pixel of `key` colour is left out, so the picture under it shows.
void DrawFrame(const GifFrame& frame, const std::vector<Colour>& map, bool keyed, Colour key, Bitmap& target) {
  for (int row = 0; row < frame.height; ++row) {
    const int y = frame.top + row;
    if (y < 0 || y >= target.Height()) continue;
    std::uint32_t* dest = target.Row(y);
    const std::uint8_t* src = frame.pixels.data() + static_cast<std::size_t>(row) * frame.width;
    const int first = std::max(0, -frame.left), last = std::min(frame.width, target.Width() - frame.left);
    for (int i = first; i < last; ++i) {
      const Colour c = src[i] < map.size() ? map[src[i]] : kBlack;
      if (keyed && c == key) continue;
      dest[frame.left + i] = static_cast<std::uint32_t>(c);
    }
  }
}

}  // namespace

bool ComposeGif(const GifSequence& file, ComposedGif& out, std::string& error, std::int64_t maxPixels) {
  ComposedGif result;
  result.fileFrames = static_cast<int>(file.frames.size());
  if (!file.globalMap.empty() && file.backgroundIndex >= 0 &&
      static_cast<std::size_t>(file.backgroundIndex) < file.globalMap.size())
    result.background = file.globalMap[static_cast<std::size_t>(file.backgroundIndex)];

  std::vector<const GifFrame*> kept;
  std::int64_t right = 0, bottom = 0;
  for (const GifFrame& f : file.frames) {
    if (f.width <= 0 || f.height <= 0) continue;
    kept.push_back(&f);
    right = std::max(right, std::int64_t{f.left} + f.width);
    bottom = std::max(bottom, std::int64_t{f.top} + f.height);
  }
  if (kept.empty()) {
    error = "the GIF file holds no frame with pixels";
    return false;
  }
  const std::int64_t total = right * bottom * static_cast<std::int64_t>(kept.size());
  if (right > 32768 || bottom > 32768 || total > maxPixels) {
    error = "the animation is too large: " + std::to_string(kept.size()) + " frames of " + SizeText(right, bottom) +
            " pixels (at most " + std::to_string(maxPixels) + " pixels in all, 32768 on a side)";
    return false;
  }
  result.width = static_cast<int>(right);
  result.height = static_cast<int>(bottom);

  for (std::size_t i = 0; i < kept.size(); ++i) {
    const GifFrame& f = *kept[i];
    result.delaysMs.push_back(f.hasControl ? f.delayHundredths * 10 : 0);
    result.disposals.push_back(f.disposal);
  }
  if (kept.size() >= 2) result.disposals.back() = result.disposals[kept.size() - 2];

  result.frames.reserve(kept.size());
  for (std::size_t i = 0; i < kept.size(); ++i) {
    const GifFrame& f = *kept[i];
    const std::vector<Colour>& map = f.colourMap.empty() ? file.globalMap : f.colourMap;
    if (map.empty()) {
      error = "frame " + std::to_string(i + 1) + " of the GIF file has no colour table";
      return false;
    }
    const int disposal = result.disposals[i];
    if (i == 0) {
      Bitmap first(result.width, result.height, result.background);
      DrawFrame(f, map, false, 0, first);
      result.frames.push_back(std::move(first));
      continue;
    }
    Colour key = kBlack;
    if (f.transparent && f.transparentIndex >= 0 && static_cast<std::size_t>(f.transparentIndex) < map.size())
      key = map[static_cast<std::size_t>(f.transparentIndex)];
    Bitmap frame = disposal == 0 || disposal == 1 ? result.frames.back()
                                                  : Bitmap(result.width, result.height, result.background);
    DrawFrame(f, map, f.transparent, key, frame);
    result.frames.push_back(std::move(frame));
  }
  out = std::move(result);
  return true;
}

int GifDelayHundredths(int delayMs) {
  if (delayMs <= 0) delayMs = 30;
  int q = delayMs / 10;
  const int r = delayMs % 10;
  if (r > 5 || (r == 5 && q % 2 == 1)) ++q;
  return std::min(q, 65535);
}

bool MakeGifSequence(const std::vector<Bitmap>& frames, const std::vector<int>& delaysMs, bool monochrome,
                     GifSequence& out, std::string& error) {
  if (frames.empty()) {
    error = "Cannot save empty GIF";
    return false;
  }
  GifSequence result;
  result.screenWidth = frames.front().Width();
  result.screenHeight = frames.front().Height();

  // Each frame's pixels as colours, then the colours of all frames in the order they first come.
  std::vector<std::vector<Colour>> colours(frames.size());
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const Bitmap& b = frames[i];
    if (b.Width() != result.screenWidth || b.Height() != result.screenHeight) {
      error = "frame " + std::to_string(i + 1) + " is not the size of the first";
      return false;
    }
    auto& px = colours[i];
    px.reserve(static_cast<std::size_t>(b.Width()) * b.Height());
    for (int y = 0; y < b.Height(); ++y) {
      const std::uint32_t* row = b.Row(y);
      for (int x = 0; x < b.Width(); ++x) {
        Colour c = static_cast<Colour>(row[x]);
        if (monochrome) c = RedOf(c) * 299 + GreenOf(c) * 587 + BlueOf(c) * 114 >= 128000 ? kWhite : kBlack;
        px.push_back(c);
      }
    }
  }
  // The map of a list of pixels, with the index of each colour; false past 256 colours.
  const auto collect = [](const std::vector<Colour>& px, std::vector<Colour>& map,
                          std::unordered_map<Colour, std::uint8_t>& index) {
    for (Colour c : px) {
      if (index.count(c) != 0) continue;
      if (map.size() == 256) return false;
      index.emplace(c, static_cast<std::uint8_t>(map.size()));
      map.push_back(c);
    }
    return true;
  };
  std::vector<Colour> global;
  std::unordered_map<Colour, std::uint8_t> globalIndex;
  bool oneMap = true;
  for (const auto& px : colours)
    if (!collect(px, global, globalIndex)) {
      oneMap = false;
      break;
    }
  if (oneMap) result.globalMap = global;

  for (std::size_t i = 0; i < frames.size(); ++i) {
    GifFrame f;
    f.width = result.screenWidth;
    f.height = result.screenHeight;
    f.hasControl = true;
    f.delayHundredths = GifDelayHundredths(i < delaysMs.size() ? delaysMs[i] : 0);
    f.disposal = 2;
    std::unordered_map<Colour, std::uint8_t> localIndex;
    if (!oneMap && !collect(colours[i], f.colourMap, localIndex)) {
      error = "frame " + std::to_string(i + 1) + " holds more than 256 colours";
      return false;
    }
    const auto& index = oneMap ? globalIndex : localIndex;
    f.pixels.reserve(colours[i].size());
    for (Colour c : colours[i]) f.pixels.push_back(index.at(c));
    result.frames.push_back(std::move(f));
  }
  out = std::move(result);
  return true;
}

}  // namespace rm
