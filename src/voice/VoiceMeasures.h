#pragma once
#include <array>
#include <span>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

// What a voice sounds like, from its samples and periods. A measure that cannot be taken is NaN.

/// One cycle of a voice.
struct VoiceCycle {
  double period = 0;  ///< samples, with a fraction; NaN where it has no clear one
  double peak = 0;    ///< amplitude of the wave
};

/// The cycle about a mark. Its peak: the largest of the samples of one `period` about the mark, under a
/// raised cosine of 7 and with the parabola, above their mean: hum moves it little. Its period by waveform
/// matching (Boersma 2009, "Should jitter be measured by peak picking or by waveform matching?"): the lag,
/// within a factor of 1.2 of `period`, at which one period of the wave about the mark is most like what
/// follows.
VoiceCycle MeasureCycle(SampleSpan samples, int mark, double period);

struct Perturbation {
  double jitter = 0;   ///< %
  double shimmer = 0;  ///< %
};

/// Local jitter and shimmer: the mean absolute difference of successive periods (peaks) of a run over the
/// mean period (peak) of all, in %. Two periods that differ by a factor above 1.3, or two peaks by one above
/// 1.6, are no neighbours of one voice and are not compared.
Perturbation LocalPerturbation(std::span<const std::vector<VoiceCycle>> runs);

/// r of two windows of the wave one period apart and two periods long, about sample `centre`: their
/// normalised cross-correlation without their mean, at its maximum within a fiftieth of the period, at least
/// a sample; between samples by a windowed sinc. −1..1; 0 for a period below 4 samples and in silence.
double PeriodCorrelation(SampleSpan samples, double centre, double period);

/// Harmonics-to-noise ratio, 10·log10(r/(1 − r)) dB (Boersma 1993); r counts as within 1e-5 .. 1 − 1e-5: ±50
/// dB.
double HarmonicsToNoise(double r);

/// The spectrum of one frame of 51.2 ms, Hamming window, and what is read from it. Frames of 16 to 1024
/// samples: rates up to 20000 Hz have the whole length. Needs InitSignalTables().
class VoiceSpectrum {
 public:
  explicit VoiceSpectrum(int sampleRate);

  /// Takes the frame about a sample; silence outside the span.
  void Take(SampleSpan samples, int centre);

  /// Cepstral peak prominence, dB (Hillenbrand and Houde 1996): the cepstrum is the transform of the power
  /// spectrum in dB, itself in dB; a straight line is fitted to it from 1 ms on; the prominence is how far
  /// its largest value at periods of highest .. lowest Hz, with the parabola through its neighbours, lies
  /// above that line.
  double Prominence(double lowest, double highest) const;

  /// The level of the first less that of the second harmonic, dB: the maxima within a tenth of f0, at least a
  /// bin, of f0 and 2·f0, with the parabola. NaN where the second lies beyond half the rate.
  double HarmonicDifference(double f0) const;

 private:
  static constexpr int kLargest = 1024;
  double LevelNear(double frequency, double reach) const;

  const int sampleRate_;
  int length_ = 0, size_ = 0;  ///< samples of the frame, of the transform
  std::array<double, kLargest> window_{};
  std::array<double, kLargest / 2 + 1> levels_{};  ///< dB, of the bins 0 .. size/2
};

}  // namespace parlowen
