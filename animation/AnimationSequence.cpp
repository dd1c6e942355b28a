#include "animation/AnimationSequence.h"

#include <algorithm>
#include <stdexcept>

#include "engine/ImportGeometry.h"

namespace rm {

AnimationSequence::AnimationSequence(int width, int height)
    : frames_{Bitmap(), Bitmap(width, height, kWhite)}, delays_{0, kNewFrameDelayMs} {}

AnimationSequence::AnimationSequence(std::vector<Bitmap> frames, const std::vector<int>& delaysMs) {
  if (frames.empty()) throw std::invalid_argument("an animation sequence needs a frame");
  frames_.reserve(frames.size() + 1);
  frames_.emplace_back();
  delays_.push_back(0);
  for (std::size_t i = 0; i < frames.size(); ++i) {
    frames_.push_back(std::move(frames[i]));
    delays_.push_back(i < delaysMs.size() ? delaysMs[i] : kNewFrameDelayMs);
  }
}

void AnimationSequence::UpdateCurrentFrame(const Bitmap& canvas) {
  frames_[static_cast<std::size_t>(current_)] = canvas;
}

void AnimationSequence::Next(const Bitmap& canvas) {
  UpdateCurrentFrame(canvas);
  current_ = current_ >= FrameCount() ? 1 : current_ + 1;
}

void AnimationSequence::Previous(const Bitmap& canvas) {
  UpdateCurrentFrame(canvas);
  current_ = current_ <= 1 ? FrameCount() : current_ - 1;
}

void AnimationSequence::First(const Bitmap& canvas) { Select(canvas, 1); }

void AnimationSequence::Last(const Bitmap& canvas) { Select(canvas, FrameCount()); }

void AnimationSequence::Select(const Bitmap& canvas, int n) {
  UpdateCurrentFrame(canvas);
  current_ = n >= 1 && n <= FrameCount() ? n : 1;
}

std::string AnimationSequence::Insert(const Bitmap& canvas, bool clearFrame) {
  UpdateCurrentFrame(canvas);
  const Bitmap added = clearFrame ? Bitmap(canvas.Width(), canvas.Height(), kWhite) : canvas;
  if (current_ >= FrameCount()) {
    frames_.push_back(added);
    delays_.push_back(kNewFrameDelayMs);
    current_ = FrameCount();
  } else {
    frames_.emplace_back();
    delays_.push_back(0);
    // The frames after the current one move up; their delays are not carried with them, each
    // takes the delay of a new frame.
    for (int i = FrameCount(); i > current_ + 1; --i) {
      frames_[static_cast<std::size_t>(i)] = std::move(frames_[static_cast<std::size_t>(i - 1)]);
      delays_[static_cast<std::size_t>(i)] = kNewFrameDelayMs;
    }
    ++current_;
    frames_[static_cast<std::size_t>(current_)] = added;
    delays_[static_cast<std::size_t>(current_)] = kNewFrameDelayMs;
  }
  return "Image #" + std::to_string(current_) + " of " + std::to_string(FrameCount()) + " insertion done";
}

std::string AnimationSequence::Append(const Bitmap& canvas) {
  UpdateCurrentFrame(canvas);
  frames_.push_back(canvas);
  delays_.push_back(kNewFrameDelayMs);
  current_ = FrameCount();
  return "Image #" + std::to_string(current_) + " of " + std::to_string(FrameCount()) + " insertion done";
}

std::string AnimationSequence::DeleteCurrent() {
  if (FrameCount() == 1) {
    frames_[1].Fill(kWhite);
    return "Deletion done , animation sequence void";
  }
  if (current_ >= FrameCount()) {
    frames_.pop_back();
    delays_.pop_back();
    current_ = FrameCount();
    return "Previous image #" + std::to_string(current_) + " deletion done";
  }
  frames_.erase(frames_.begin() + current_);
  delays_.erase(delays_.begin() + current_);
  return "Image #" + std::to_string(current_) + " deletion done";
}

void PastePiece(Bitmap& target, const Bitmap& piece, int left, int top, bool transparent) {
  for (int y = std::max(0, -top); y < piece.Height() && top + y < target.Height(); ++y) {
    const std::uint32_t* src = piece.Row(y);
    std::uint32_t* dest = target.Row(top + y);
    for (int x = std::max(0, -left); x < piece.Width() && left + x < target.Width(); ++x) {
      if (transparent && src[x] == static_cast<std::uint32_t>(kWhite)) continue;
      dest[left + x] = src[x];
    }
  }
}

void AnimationSequence::PasteOnAllFrames(const Bitmap& canvas, const Bitmap& piece, int left, int top,
                                         bool transparent) {
  UpdateCurrentFrame(canvas);
  for (int i = current_; i <= FrameCount(); ++i)
    PastePiece(frames_[static_cast<std::size_t>(i)], piece, left, top, transparent);
}

bool AnimationSequence::PasteLinearMotion(const Bitmap& canvas, const Bitmap& piece, int fromX, int fromY, int toX,
                                          int toY, int frames, std::string& error) {
  if (frames < 2) {
    error = " Incorrect number of frames !";
    return false;
  }
  const int n = frames - 1;
  const int stepX = (toX - fromX) / n, stepY = (toY - fromY) / n;
  UpdateCurrentFrame(canvas);
  for (int i = 1; i <= n; ++i) {
    StepOrAppend();
    PastePiece(frames_[static_cast<std::size_t>(current_)], piece, fromX + stepX * i - (piece.Width() - 1) / 2,
               fromY + stepY * i - (piece.Height() - 1) / 2, false);
  }
  return true;
}

void AnimationSequence::StepOrAppend() {
  if (current_ == FrameCount()) {
    frames_.emplace_back(Width(), Height(), kWhite);
    delays_.push_back(kNewFrameDelayMs);
  }
  ++current_;
}

void AnimationSequence::PasteCircularMotion(const Bitmap& canvas, const Bitmap& piece, int centreX, int centreY,
                                            bool clockwise) {
  UpdateCurrentFrame(canvas);
  std::vector<Bitmap> turns{piece};
  for (int step = 1; step <= 7; ++step)
    turns.push_back(RotateBitmap(piece, 45.0 * (clockwise ? step : 8 - step), kWhite, true));
  turns.push_back(piece);
  for (std::size_t i = 0; i < turns.size(); ++i) {
    if (i > 0) StepOrAppend();
    const Bitmap& t = turns[i];
    PastePiece(frames_[static_cast<std::size_t>(current_)], t, centreX - (t.Width() - 1) / 2,
               centreY - (t.Height() - 1) / 2, false);
  }
}

Bitmap AnimationSequence::Ghost(Colour ghostColour) const {
  Bitmap ghost(Width(), Height(), kWhite);
  if (current_ <= 1) return ghost;
  const Bitmap& before = frames_[static_cast<std::size_t>(current_ - 1)];
  for (int y = 0; y < std::min(ghost.Height(), before.Height()); ++y)
    for (int x = 0; x < std::min(ghost.Width(), before.Width()); ++x)
      if (before.GetPixel(x, y) != kWhite) ghost.SetPixel(x, y, ghostColour);
  return ghost;
}

void AnimationSequence::SaveAnimation() {
  backupFrames_ = frames_;
  backupDelays_ = delays_;
  backupCurrent_ = current_;
}

void AnimationSequence::RestoreAnimation() {
  if (backupFrames_.empty()) return;
  frames_ = backupFrames_;
  delays_ = backupDelays_;
  current_ = backupCurrent_;
}

}  // namespace rm
