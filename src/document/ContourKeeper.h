#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "document/Edit.h"
#include "document/PitchContour.h"

namespace parlowen {

/// Keeps the contour and its backup at their sound while the sound is edited, by whole frames.
///
/// Rounding to frames leaves a value up to half a frame beside its sound. That rest is kept with the frame, so
/// that the next edit rounds the true place and not the rounded one: the sound of frame f's value is centred
/// at ((f + 1)·Fs + rest)/100 samples, |rest| <= Fs/2. A value that a repair puts into a frame takes its rest
/// over; computed values have none.
class ContourKeeper {
 public:
  /// Another contour, or none: nothing of the one before is known any more.
  void Restart();
  /// The values of `count` frames from `first` on, in contour and backup, were computed for these frames.
  void Computed(int first, int count);

  /// Moves both with a cut or paste and remembers what it takes away.
  /// - Frames behind the edit move by the number of frames nearest to their true place; exactly half a frame
  ///   goes outwards. Nothing else of them changes.
  /// - Frames of a removed stretch, frames of 20 ms that reach over a seam of the new sound, and frames that
  ///   were behind the old sound's last one or without a value are 0 (unvoiced), as inserted ones are.
  void Follow(const Edit& edit, PitchContour& pitch, PitchContour& backup);
  /// Takes the last Follow back, bit for bit where nothing has been written since. Repaired values return to
  /// where their frame came from, computed ones move with their sound; those over a seam that is torn open
  /// give way to the values before the edit.
  void Undo(const Edit& edit, PitchContour& pitch, PitchContour& backup);
  /// 10 ms are 10 ms at any rate: the frames stay, periods are multiplied by newRate/oldRate in double.
  void Convert(const Edit& edit, PitchContour& pitch, PitchContour& backup);

  /// Moves whenever a frame may hold another value or the value of another moment, but not with repairs.
  std::uint64_t version() const { return version_; }

 private:
  /// The frames that an edit touched, up to the longer one of both contours.
  struct Before {
    std::vector<float> pitch, backup;
    std::vector<std::int32_t> rest;
    std::vector<float> after;          ///< the contour that the edit left
    std::vector<std::int32_t> source;  ///< of each frame of it, the frame it came from; −1 for none
    std::vector<bool> computed;        ///< since the edit
  };

  std::array<std::int32_t, kContourFrames> rest_{};  ///< hundredths of a sample
  std::optional<Before> before_;
  std::uint64_t version_ = 0;
};

}  // namespace parlowen
