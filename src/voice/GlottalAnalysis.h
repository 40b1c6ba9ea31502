#pragma once
#include <optional>
#include <span>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// A voiced stretch of a sound with the pitch period of each of its frames.
struct VoicedStretch {
  int start = 0, end = 0;  ///< samples
  int firstFrame = 0;
  std::vector<double>
      periods;  ///< of the frames from firstFrame on, in samples; gaps hold the nearest frame's
};

/// The longest run of voiced frames among frames first .. last of a contour of periods, gaps up to 2 frames bridged, the
/// first of equals; cut at samples `start` .. `end`. Nothing where it has fewer than 5 frames.
std::optional<VoicedStretch> LongestVoicedStretch(std::span<const float> contour, int start, int end,
                                                  int sampleRate);

/// What one period of the glottal flow says. A measure that cannot be taken is NaN.
struct GlottalMeasures {
  double f0 = 0;    ///< Hz
  double oq = 0;    ///< open quotient from 10 % of the flow on
  double qoq = 0;   ///< quasi-open quotient: the part above 50 %
  double sq = 0;    ///< speed quotient: opening to closing
  double naq = 0;   ///< normalised amplitude quotient (Alku, Bäckström and Vilkman 2002)
  double h1h2 = 0;  ///< first less second harmonic, dB
  double hrf = 0;   ///< harmonic richness factor (Childers and Lee 1991), dB
};
inline constexpr double GlottalMeasures::*kGlottalMeasures[] = {
    &GlottalMeasures::f0,  &GlottalMeasures::oq,   &GlottalMeasures::qoq, &GlottalMeasures::sq,
    &GlottalMeasures::naq, &GlottalMeasures::h1h2, &GlottalMeasures::hrf};

struct GlottalPeriod {
  int start = 0, length = 0;  ///< samples, from one closure to the next
  GlottalMeasures measures;
};

/// The glottal wave of a stretch. Arrays over time begin at `start`.
struct GlottalWave {
  int sampleRate = 0, start = 0, end = 0;
  bool inverted = false;           ///< the recording was turned over
  std::vector<double> derivative;  ///< of the flow, in units of the samples
  std::vector<double> flow;        ///< 0 outside the periods
  std::vector<int> marks;          ///< moments of closure, samples of the sound
  std::vector<GlottalPeriod> periods;
  GlottalMeasures mean, sd;        ///< over the periods that have the measure; sd divides by n
  double jitter = 0, shimmer = 0;  ///< %; NaN with fewer than two neighbours
  std::vector<double> harmonics;   ///< H_1 .. in dB, each a mean over the periods that reach it
};

/// Periods that a wave must have at least.
inline constexpr int kLeastGlottalPeriods = 6;

/// Estimates the glottal wave by linear prediction weighted towards the closed phase (quasi closed phase analysis;
/// Airaksinen, Raitio, Story and Alku 2014) with closures from zero-frequency filtering (Murty and Yegnanarayana
/// 2008). `turned` takes the other polarity than the one that is found. 0, or −1 when there are fewer than
/// kLeastGlottalPeriods periods.
int EstimateGlottalWave(SampleSpan samples, int sampleRate, const VoicedStretch& stretch, bool turned,
                        GlottalWave& wave);

/// The measures of one period of the derivative d[0] .. d[length], from one closure to the next, both included. `flow`
/// gets length + 1 values; `moduli` H_1 .. up to 4000 Hz.
GlottalMeasures MeasureGlottalPeriod(std::span<const double> derivative, double sampleRate,
                                     std::vector<double>& flow, std::vector<double>& moduli);

}  // namespace parlowen
