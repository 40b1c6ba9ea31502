#pragma once
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// Frequencies that the pitch pane shows, in hertz; the lowest is below the highest.
struct PitchSpan {
  double lowest = 64, highest = 512;
  bool operator==(const PitchSpan&) const = default;
};

/// How they are chosen.
struct PitchSpanChoice {
  enum class Kind { Speaker, Fixed, Own };
  Kind kind = Kind::Fixed;  ///< Fixed: 64–512 Hz
  PitchSpan own{};
  bool operator==(const PitchSpanChoice&) const = default;
};

/// Limits of one's own, whole hertz, and their least ratio.
inline constexpr int kLowestPitchLimit = 20, kHighestPitchLimit = 2000;
inline constexpr double kLeastPitchRatio = 1.25;

/// What is shown: for the speaker the contour's 2nd to 98th percentile and two semitones on either side, in whole
/// semitones and at least an octave; without a contour 64–512 Hz.
PitchSpan ShownPitchSpan(const PitchSpanChoice& choice, const SoundDocument& document);

/// 41055: asks for the choice; limits that are none keep the question open. False when it was cancelled.
bool AskPitchSpan(Window& window, PitchSpanChoice& choice);

}  // namespace parlowen
