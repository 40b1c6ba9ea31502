#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "document/SoundDocument.h"
#include "measure/Measures.h"
#include "pitch/FastPitch.h"
#include "pitch/PitchAnalysis.h"

namespace parlowen {

/// Formants, voice and consonants are measured at most at this rate.
inline constexpr int kAnalysisRate = 16000;

/// The rate at which they are measured in a sound: its own, at most kAnalysisRate.
constexpr int AnalysisRateOf(int sampleRate) {
  return sampleRate < kAnalysisRate ? sampleRate : kAnalysisRate;
}

/// An interval in samples of the document, and in those of the copy at the analysis rate (the same at the
/// same rate); start < end.
struct MeasuredInterval {
  int start = 0, end = 0;
  int analysisStart = 0, analysisEnd = 0;
};

/// A document made ready for measuring. It keeps spans of the document: samples and contour must stay as they
/// are.
class MeasuredSound {
 public:
  /// With a contour: periods in samples a frame, below or at 0 unvoiced; it stays the caller's. Without: the
  /// contour of 220 is computed where a measure needs it. `progress` is asked during that; answered false,
  /// Ready() is false and nothing can be measured. Needs InitSignalTables().
  MeasuredSound(const SoundDocument& document, std::optional<std::span<const float>> contour,
                PitchRange range, const MeasureSettings& settings, const PitchProgress& progress = {});

  bool Ready() const { return ready_; }
  /// The measures of an interval. A frame of 10 ms belongs to the one in which it begins.
  Measures Measure(const MeasuredInterval& interval) const;
  /// False where no frame begins.
  bool HasFrame(const MeasuredInterval& interval) const {
    const Frames frames = FramesOf(interval.start, interval.end);
    return frames.first < frames.end;
  }

 private:
  struct Frames {
    int first = 0, end = 0;
  };
  bool Wants(MeasureGroup group) const { return (settings_.measures & SetOf(group)) != 0; }
  bool WantsContour() const {
    return Wants(MeasureGroup::Pitch) || Wants(MeasureGroup::Formants) || Wants(MeasureGroup::Voice);
  }
  bool WantsAnalysis() const {
    return Wants(MeasureGroup::Formants) || Wants(MeasureGroup::Voice) || Wants(MeasureGroup::Consonant);
  }
  void Convert(const SoundDocument& document);
  Frames FramesOf(int start, int end) const;
  bool Voiced(int frame) const {
    return frame >= 0 && frame < std::ssize(contour_) && contour_[static_cast<std::size_t>(frame)] > 0;
  }

  void MeasureLevel(Frames frames, Measures& measures) const;
  void MeasurePitch(Frames frames, Measures& measures) const;
  std::vector<double> Contour(const std::vector<int>& voiced) const;
  void MeasureFormants(int start, int end, Measures& measures) const;
  void MeasurePeriods(int start, int end, Measures& measures) const;
  void MeasureVoice(Frames frames, Measures& measures) const;
  void MeasureConsonant(int start, int end, Measures& measures) const;

  const MeasureSettings settings_;
  const PitchRange range_;
  const SampleSpan samples_;
  const int sampleRate_, analysisRate_;
  bool ready_ = true;
  std::vector<float> computed_;
  std::span<const float> contour_;  ///< periods in document samples
  std::vector<double> levels_;      ///< dB, one a frame
  std::vector<std::int16_t> converted_;
  SampleSpan analysis_;                 ///< the document's samples, or those converted
  std::vector<float> analysisContour_;  ///< periods in samples of `analysis_`
};

}  // namespace parlowen
