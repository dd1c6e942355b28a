#pragma once
#include <string>
#include <vector>

#include "engine/Bitmap.h"

namespace rm {

// The frames of an animation and their delays, numbered from 1 as the user sees them. Each
// command that changes the sequence takes the canvas as it stands (the frame being edited) and
// stores it first; the frame to show afterwards is Frame(CurrentFrame()).
class AnimationSequence {
 public:
  static constexpr int kNewFrameDelayMs = 300;

  // Entering the mode: one frame of the canvas size, white.
  AnimationSequence(int width, int height);
  // A loaded sequence; missing delays take kNewFrameDelayMs. At least one frame.
  AnimationSequence(std::vector<Bitmap> frames, const std::vector<int>& delaysMs);

  int FrameCount() const { return static_cast<int>(frames_.size()) - 1; }
  int CurrentFrame() const { return current_; }
  int Width() const { return frames_[1].Width(); }
  int Height() const { return frames_[1].Height(); }
  const Bitmap& Frame(int n) const { return frames_.at(static_cast<std::size_t>(n)); }
  int Delay(int n) const { return delays_.at(static_cast<std::size_t>(n)); }
  void SetDelay(int n, int ms) { delays_.at(static_cast<std::size_t>(n)) = ms; }
  // The frames and delays from frame 1 on, as the encoder and the GIF writer take them.
  std::vector<Bitmap> Frames() const { return {frames_.begin() + 1, frames_.end()}; }
  std::vector<int> Delays() const { return {delays_.begin() + 1, delays_.end()}; }

  // "Save Current Frame": the canvas becomes the current frame.
  void UpdateCurrentFrame(const Bitmap& canvas);
  // Stepping stores the canvas, then moves. Next past the last frame comes back to the first,
  // Previous before the first goes to the last.
  void Next(const Bitmap& canvas);
  void Previous(const Bitmap& canvas);
  void First(const Bitmap& canvas);
  void Last(const Bitmap& canvas);
  // A frame number out of range selects frame 1.
  void Select(const Bitmap& canvas, int n);

  // Stores the canvas and puts a frame after the current one: white with `clearFrame`, else a
  // copy of the canvas. Every frame that moves up takes the delay of a new frame. The new frame
  // becomes current. Returns the log line.
  std::string Insert(const Bitmap& canvas, bool clearFrame);
  // Stores the canvas and puts a copy of it at the end, which becomes current.
  std::string Append(const Bitmap& canvas);
  // Deletes the current frame; the only frame is cleared instead. Returns the log line.
  std::string DeleteCurrent();

  // Lays `piece` with its top left corner at (left, top) on every frame from the current one to
  // the last; `transparent` leaves out its white pixels. The canvas is stored first.
  void PasteOnAllFrames(const Bitmap& canvas, const Bitmap& piece, int left, int top, bool transparent);
  // Moves `piece` from the centre (fromX, fromY) to (toX, toY) over `frames` frames, the current
  // one (which keeps the piece where the user left it) and those after it, new white frames
  // being added at the end. The step is the distance divided by frames - 1, truncated.
  // False with `error` set when `frames` is below 2.
  bool PasteLinearMotion(const Bitmap& canvas, const Bitmap& piece, int fromX, int fromY, int toX, int toY,
                         int frames, std::string& error);

  // Pastes `piece` centred on (centreX, centreY) on nine frames from the current one: the piece,
  // its seven turns by 45 to 315 degrees (the other way round when not `clockwise`) and the piece
  // again. New white frames are added at the end as needed; the ninth frame becomes current.
  void PasteCircularMotion(const Bitmap& canvas, const Bitmap& piece, int centreX, int centreY, bool clockwise);

  // The faint copy of the frame before the current one that the editor lays over the canvas:
  // its non-white pixels in `ghostColour`, white elsewhere, to be laid in by AND. White for frame 1.
  Bitmap Ghost(Colour ghostColour) const;

  // A copy of all frames to come back to, and the way back.
  void SaveAnimation();
  void RestoreAnimation();

 private:
  // Moves to the next frame, adding a white one after the last.
  void StepOrAppend();

  std::vector<Bitmap> frames_;  // entry 0 unused
  std::vector<int> delays_;     // entry 0 unused
  int current_ = 1;
  std::vector<Bitmap> backupFrames_;
  std::vector<int> backupDelays_;
  int backupCurrent_ = 1;
};

// Lays `piece` on `target` at (left, top), clipped to it; `transparent` leaves out white.
void PastePiece(Bitmap& target, const Bitmap& piece, int left, int top, bool transparent);

}  // namespace rm
