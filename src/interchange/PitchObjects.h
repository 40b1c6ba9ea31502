#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/SoundDocument.h"
#include "synthesis/TargetCurve.h"

namespace parlowen {

struct PitchPoint {
  double time = 0;       ///< seconds
  double frequency = 0;  ///< Hz
  bool operator==(const PitchPoint&) const = default;
};

/// A melody as points, linear in hertz between them, constant before the first and behind the last.
struct PitchTier {
  double start = 0, end = 0;         ///< seconds
  std::vector<PitchPoint> points{};  ///< times ascending
};

/// The voiced frames of the whole contour.
PitchTier PitchTierOf(const SoundDocument& document);

/// The file in its long form.
std::string PitchTierText(const PitchTier& tier);

enum class PitchTierFault { None, NoPitchTier, Damaged, NoPoints };

/// The melody of a long, short or spreadsheet file; else `fault` says why not. Points are sorted; of several
/// at one time the first stays. Those outside 1..10000 Hz are no pitch and are left out; with none left there
/// is nothing to read.
std::optional<PitchTier> ReadPitchTier(std::string_view utf8, PitchTierFault& fault);

/// Hertz at a moment. The tier has points.
double FrequencyAt(const PitchTier& tier, double time);

/// The melody as periods of the document's frames firstFrame .. firstFrame + frameCount − 1.
TargetCurve TargetOf(const PitchTier& tier, int sampleRate, int firstFrame, int frameCount);

/// The whole contour as a text object "Pitch 1" with one candidate a frame: frequency 0 and strength 0
/// without voice, strength 1 with it. The intensity is the frame's peak amplitude over that of the sound. The
/// ceiling is `ceiling` Hz, or the next whole number above the highest value.
std::string PitchText(const SoundDocument& document, int ceiling);

}  // namespace parlowen
