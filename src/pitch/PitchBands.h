#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// Samples between 50 Hz and a frequency of their own.
struct Band {
  std::vector<float> samples;

  const float* At(std::size_t n) const { return samples.data() + n; }
  /// Mean square of the 2·half samples about `centre`.
  double Power(std::size_t centre, int half) const;
};

/// What the second stage looks at: the document's samples about a run of frames in three bands at the working
/// rate, and the lowest of them once more at a coarse one for the search over all lags. A tenth of a second on
/// either side is there too; what lies outside the document is silence. The hum of the mains is taken out.
class PitchBands {
 public:
  /// The working rate is sampleRate / decimation: from 8000 Hz on as near above 8000 Hz as it can be (below
  /// 16000 Hz always), else the document's.
  static int DecimationOf(int sampleRate);

  PitchBands(SampleSpan document, int sampleRate, int firstFrame, std::size_t frameCount);

  int decimation() const { return decimation_; }     ///< document samples a working sample
  double rate() const { return rate_; }              ///< Hz, sampleRate/decimation
  double coarseRate() const { return coarseRate_; }  ///< Hz, 3600 or more where the working rate allows it
  /// The working sample at the centre of element f of the run, and the coarse one.
  std::size_t Centre(std::size_t frame) const {
    return static_cast<std::size_t>((DocumentCentre(frame) - origin_) / decimation_);
  }
  std::size_t CoarseCentre(std::size_t frame) const { return Centre(frame) / coarseStep_; }

  Band low;                          ///< up to 900 Hz
  Band wide;                         ///< up to 2000 Hz
  Band full;                         ///< up to 3400 Hz
  Band coarse;                       ///< up to 900 Hz at the coarse rate
  std::vector<double> coarseEnergy;  ///< Σ of the squares before a sample of `coarse`; one more than these

 private:
  std::int64_t DocumentCentre(std::size_t frame) const {
    return (firstFrame_ + static_cast<std::int64_t>(frame)) * sampleRate_ / 100 + sampleRate_ / 100;
  }
  void MakeFull(SampleSpan document, std::size_t count);
  void RemoveHum(std::int64_t documentCount);
  void MakeCoarse();

  const std::int64_t sampleRate_, firstFrame_;
  const int decimation_;
  const double rate_;
  const std::size_t coarseStep_;
  const double coarseRate_;
  std::int64_t origin_ = 0;  ///< document sample of the bands' first
};

/// Longest lag that CorrelateCoarse() takes.
inline constexpr int kMostCoarseLags = 160;

/// r of two windows of a band, `lag` apart, that of the first `width` samples from `first` on: their product under
/// the mean of √(E₁E₂) and (E₁ + E₂)/2; the latter falls where the voice dies away and only the tract rings on.
/// `floor` is added to the energy of every sample.
float Correlation(const Band& band, std::size_t first, int lag, int width, double floor);

/// The same of two windows that lie symmetrically about `centre`.
inline float CentredCorrelation(const Band& band, std::size_t centre, int lag, int width, double floor) {
  return Correlation(band, centre - static_cast<std::size_t>((width + lag) / 2), lag, width, floor);
}

/// r of the lags lowest .. highest of the coarse band (at most kMostCoarseLags of them), with windows of `window`
/// samples and half a lag about coarse sample `centre`.
void CorrelateCoarse(const PitchBands& bands, std::size_t centre, double floor, int window, int lowest,
                     int highest, float* r);

/// The length of both windows at a lag: `window` and half a lag, in whole blocks of 8.
int CorrelationWidth(int window, int lag);

/// Where the products of two such windows about `centre` have their own, in samples from there.
double CentreOfProducts(const Band& band, std::size_t centre, int lag, int width);

/// Where the parabola through the three values about a maximum has its own, −0.5..0.5 from the middle one.
inline float PeakShift(const float* r) {
  const float curve = r[-1] - 2 * r[0] + r[1];
  return curve < 0 ? 0.5f * (r[-1] - r[1]) / curve : 0.0f;
}

/// log₂ x of a positive normal number to 1e-8, from additions, products and one quotient, so that every machine
/// has the same digits.
double Log2(double x);

/// 10·log₁₀ of a power.
inline double Decibels(double power) { return 3.0102999566398120 * Log2(power); }

}  // namespace parlowen
