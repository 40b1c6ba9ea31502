// The stages, in order:
//
//   Prepare            high-pass at 40 Hz (x), pre-emphasis (y), the period T(n) of every sample
//   FirstEstimate      derivative d by autocorrelation prediction in frames of 4 periods
//   FindPolarity       the skewness of d against its own difference
//   FilterAtZero       zero-frequency filter: one upward crossing a period
//   MarkClosures       the lowest d about each crossing
//   EstimateByWeights  closed-phase weights, weighted prediction in frames of 6 periods; twice, marks set anew each time
//   MeasurePeriods     flow and measures between neighbouring marks, jitter, shimmer

#include "voice/GlottalAnalysis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Arithmetic.h"
#include "document/Frames.h"
#include "dsp/Fir.h"
#include "voice/LinearPrediction.h"

namespace parlowen {
namespace {

using Samples = std::vector<double>;

constexpr double kPi = 3.14159265358979323846;
constexpr int kLeastFrames = 5, kBridgedGap = 2;
constexpr int kHighPass = 40;  // Hz
constexpr double kHamming = 0.54;
constexpr double kPreEmphasis = 0.99, kSkewEmphasis = 0.97;
constexpr double kLeastFrameWeight = 0.001;
constexpr double kOutsideWeight = 0.01;  // of samples outside the closed phase
constexpr int kRounds = 2;
constexpr double kLargestHarmonic = 4000;          // Hz
constexpr double kShortest = 0.6, kLongest = 1.6;  // of T(n): what counts as one period
constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

constexpr std::size_t At(int i) { return static_cast<std::size_t>(i); }
int Round(double value) { return TruncateToInt32(value + 0.5); }

/// The signals of one analysis. Index 0 is sample `origin` of the sound; the stretch lies at first .. last − 1.
struct Work {
  int sampleRate = 0, order = 0, origin = 0, first = 0, last = 0, count = 0;
  double medianPeriod = 0;
  const VoicedStretch* stretch = nullptr;
  Samples x, y, d;

  /// T(n): the period at an index.
  double PeriodAt(int index) const {
    const int frame = FrameOfSample(std::int64_t{origin} + index, sampleRate) - stretch->firstFrame;
    const auto lastFrame = static_cast<int>(stretch->periods.size()) - 1;
    return stretch->periods[static_cast<std::size_t>(std::clamp(frame, 0, lastFrame))];
  }
};

double MedianOf(std::vector<double> values) {
  const std::size_t middle = values.size() / 2;
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(middle), values.end());
  const double upper = values[middle];
  if (values.size() % 2 == 1) return upper;
  return (upper + *std::max_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(middle))) /
         2;
}

Work Prepare(SampleSpan samples, int sampleRate, const VoicedStretch& stretch) {
  Work work;
  work.sampleRate = sampleRate;
  work.order = std::clamp(sampleRate / 1000 + 2, 1, kLargestTractOrder);
  work.stretch = &stretch;
  // Contours that were read from a file may hold anything: frames of fewer samples than 1000 Hz asks for say nothing.
  work.medianPeriod = std::max(MedianOf(stretch.periods), sampleRate / 1000.0);
  const int margin = TruncateToInt32(4 * work.medianPeriod);
  work.origin = stretch.start - margin;
  work.first = margin;
  work.last = margin + stretch.end - stretch.start;
  work.count = work.last + margin;

  const int half = sampleRate / 30;
  Samples taps(At(2 * half + 1));
  DesignFirFilter(kHighPass, kHamming, half, 1, taps.data(), sampleRate);
  Samples source(At(work.count + 2 * half));
  for (int i = 0; i < std::ssize(source); ++i)
    source[At(i)] = samples.At(std::int64_t{work.origin} - half + i);
  work.x.assign(At(work.count), 0.0);
  // Tap by tap, so that the compiler can take several samples at once.
  for (int k = 0; k <= 2 * half; ++k) {
    const double tap = taps[At(k)];
    const double* from = source.data() + k;
    for (int n = 0; n < work.count; ++n) work.x[At(n)] += tap * from[n];
  }
  work.y.assign(At(work.count), 0.0);
  for (int n = 0; n < work.count; ++n)
    work.y[At(n)] = work.x[At(n)] - (n > 0 ? kPreEmphasis * work.x[At(n - 1)] : 0.0);
  work.d.assign(At(work.count), 0.0);
  return work;
}

/// d of all samples, frame by frame: x through each frame's filter, joined with sin² weights. `predict` gives the filter
/// of the frame that begins at an index.
template <typename Predict>
Samples FilterByFrames(const Work& work, int length, Predict predict) {
  Samples sum(At(work.count)), weight(At(work.count)), fade(At(length));
  for (int i = 0; i < length; ++i) fade[At(i)] = std::pow(std::sin(kPi * (i + 0.5) / length), 2);
  const int hop = std::max(1, length / 2);
  for (int start = work.order; start + length <= work.count; start += hop) {
    const TractFilter filter = predict(start);
    for (int i = 0; i < length; ++i) {
      const int n = start + i;
      double value = 0;
      for (int k = 0; k <= filter.order; ++k) value += filter.a[At(k)] * work.x[At(n - k)];
      sum[At(n)] += fade[At(i)] * value;
      weight[At(n)] += fade[At(i)];
    }
  }
  for (int n = 0; n < work.count; ++n)
    if (weight[At(n)] > kLeastFrameWeight) sum[At(n)] /= weight[At(n)];
  return sum;
}

void FirstEstimate(Work& work) {
  const int length = std::max(TruncateToInt32(4 * work.medianPeriod), 2);
  Samples hann(At(length));
  for (int i = 0; i < length; ++i) hann[At(i)] = 0.5 - 0.5 * std::cos(2 * kPi * (i + 0.5) / length);
  work.d = FilterByFrames(work, length, [&](int start) {
    return PredictByAutocorrelation(work.y.data() + start, hann.data(), length, work.order);
  });
}

double SkewnessOf(const Samples& values) {
  double mean = 0, second = 0, third = 0;
  for (const double v : values) mean += v;
  mean /= static_cast<double>(values.size());
  for (const double v : values) {
    second += (v - mean) * (v - mean);
    third += (v - mean) * (v - mean) * (v - mean);
  }
  second /= static_cast<double>(values.size());
  third /= static_cast<double>(values.size());
  return second > 0 ? third / std::pow(second, 1.5) : 0.0;
}

/// True when the recording stands on its head: closures would be peaks of d.
bool FindPolarity(const Work& work) {
  Samples plain, differenced;
  for (int n = work.first; n < work.last; ++n) {
    plain.push_back(work.d[At(n)]);
    differenced.push_back(work.d[At(n)] - kSkewEmphasis * work.d[At(n - 1)]);
  }
  return SkewnessOf(differenced) - SkewnessOf(plain) < 0;
}

void TurnOver(Work& work) {
  for (Samples* signal : {&work.x, &work.y, &work.d})
    for (double& value : *signal) value = -value;
}

void RunningSum(Samples& values) {
  double sum = 0;
  for (double& value : values) value = sum += value;
}

/// Takes from every value the mean of those up to `reach` away; at the ends, of those that there are.
void RemoveLocalMean(Samples& values, int reach) {
  Samples sums(values.size() + 1);
  for (std::size_t i = 0; i < values.size(); ++i) sums[i + 1] = sums[i] + values[i];
  const int count = static_cast<int>(values.size());
  for (int i = 0; i < count; ++i) {
    const int from = std::max(0, i - reach), to = std::min(count, i + reach + 1);
    values[At(i)] -= (sums[At(to)] - sums[At(from)]) / (to - from);
  }
}

/// Where the zero-frequency filtered x crosses zero upwards, as fractions of an index.
Samples CrossingsAtZeroFrequency(const Work& work) {
  Samples z(At(work.count));
  for (int n = 1; n < work.count; ++n) z[At(n)] = work.x[At(n)] - work.x[At(n - 1)];
  const int reach = Round(0.75 * work.medianPeriod);
  RunningSum(z);
  RunningSum(z);
  RemoveLocalMean(z, reach);
  RunningSum(z);
  RunningSum(z);
  RemoveLocalMean(z, reach);
  RemoveLocalMean(z, reach);
  Samples crossings;
  for (int n = 1; n < work.count; ++n)
    if (z[At(n - 1)] < 0 && z[At(n)] >= 0)
      crossings.push_back(n - 1 + z[At(n - 1)] / (z[At(n - 1)] - z[At(n)]));
  return crossings;
}

/// The lowest d within share·T(n) of each place; one nearer than least·T(n) to the last that was kept is dropped.
std::vector<int> MarkClosures(const Work& work, const std::vector<int>& places, double share, double least) {
  std::vector<int> marks;
  for (const int place : places) {
    const int reach = TruncateToInt32(share * work.PeriodAt(place));
    const int from = std::max(0, place - reach), to = std::min(work.count - 1, place + reach);
    if (from > to) continue;
    const int mark =
        static_cast<int>(std::min_element(work.d.begin() + from, work.d.begin() + to + 1) - work.d.begin());
    if (marks.empty() || mark - marks.back() >= least * work.PeriodAt(mark)) marks.push_back(mark);
  }
  return marks;
}

/// Near 1 in the half period behind each closure, where the vocal tract rings alone; 0.01 elsewhere.
Samples ClosedPhaseWeights(const Work& work, const std::vector<int>& marks) {
  Samples weights(At(work.count), kOutsideWeight);
  const int ramp = 7 * work.sampleRate / 8000;
  for (std::size_t m = 0; m + 1 < marks.size(); ++m) {
    const int period = marks[m + 1] - marks[m];
    if (period > 2 * work.PeriodAt(marks[m])) continue;
    const int from = marks[m] + Round(0.05 * period), length = Round(0.5 * period);
    for (int i = 0; i < length && from + i < work.count; ++i) {
      const int distance = std::min(i + 1, length - i);
      weights[At(from + i)] =
          kOutsideWeight + (1 - kOutsideWeight) * std::min(1.0, static_cast<double>(distance) / (ramp + 1));
    }
  }
  return weights;
}

void EstimateByWeights(Work& work, std::vector<int>& marks) {
  const int length = std::max(TruncateToInt32(6 * work.medianPeriod), 2);
  for (int round = 0; round < kRounds; ++round) {
    const Samples weights = ClosedPhaseWeights(work, marks);
    work.d = FilterByFrames(work, length, [&](int start) {
      return KeepResonances(
          PredictWeighted(work.y.data() + start, weights.data() + start, length, work.order));
    });
    marks = MarkClosures(work, marks, 0.15, 0.3);
  }
}

bool IsOnePeriod(const Work& work, double length, double at) {
  const double period = work.PeriodAt(TruncateToInt32(at));
  return length >= kShortest * period && length <= kLongest * period;
}

/// Mean absolute difference of neighbours over their mean, in %. Neighbours stand in one run; a NaN parts two runs.
double Perturbation(const Samples& values) {
  double differences = 0, sum = 0;
  int pairs = 0, count = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (std::isnan(values[i])) continue;
    sum += values[i];
    ++count;
    if (i == 0 || std::isnan(values[i - 1])) continue;
    differences += std::fabs(values[i] - values[i - 1]);
    ++pairs;
  }
  return pairs > 0 && sum > 0 ? 100 * (differences / pairs) / (sum / count) : kUndefined;
}

double JitterOf(const Work& work, const Samples& crossings) {
  Samples distances;
  for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
    if (crossings[i] < work.first || crossings[i + 1] >= work.last) continue;
    const double distance = crossings[i + 1] - crossings[i];
    distances.push_back(IsOnePeriod(work, distance, crossings[i]) ? distance : kUndefined);
  }
  return Perturbation(distances);
}

double PeakToPeak(const Work& work, int from, int to) {
  const auto [low, high] = std::minmax_element(work.x.begin() + from, work.x.begin() + to);
  return *high - *low;
}

void AddMeans(GlottalWave& wave) {
  for (double GlottalMeasures::*measure : kGlottalMeasures) {
    double sum = 0, squares = 0;
    int count = 0;
    for (const GlottalPeriod& period : wave.periods) {
      const double value = period.measures.*measure;
      if (std::isnan(value)) continue;
      sum += value;
      ++count;
    }
    const double mean = count > 0 ? sum / count : kUndefined;
    for (const GlottalPeriod& period : wave.periods) {
      const double value = period.measures.*measure;
      if (!std::isnan(value)) squares += (value - mean) * (value - mean);
    }
    wave.mean.*measure = mean;
    wave.sd.*measure = count > 0 ? std::sqrt(squares / count) : kUndefined;
  }
}

/// Adds the moduli of a period, in dB over its first harmonic, to sums and counts that grow with them.
void AddHarmonics(const Samples& moduli, Samples& sums, std::vector<int>& counts) {
  if (moduli.empty() || !(moduli[0] > 0)) return;
  sums.resize(std::max(sums.size(), moduli.size()));
  counts.resize(sums.size());
  for (std::size_t k = 0; k < moduli.size(); ++k) {
    if (!(moduli[k] > 0)) continue;
    sums[k] += 20 * std::log10(moduli[k] / moduli[0]);
    ++counts[k];
  }
}

void MeasurePeriods(const Work& work, const std::vector<int>& marks, const Samples& crossings,
                    GlottalWave& wave) {
  wave.derivative.assign(work.d.begin() + work.first, work.d.begin() + work.last);
  wave.flow.assign(wave.derivative.size(), 0.0);
  for (const int mark : marks)
    if (mark >= work.first && mark < work.last) wave.marks.push_back(work.origin + mark);
  Samples flow, moduli, sums, heights;
  std::vector<int> counts;
  for (std::size_t m = 0; m + 1 < marks.size(); ++m) {
    if (marks[m] < work.first || marks[m + 1] >= work.last) continue;
    const int length = marks[m + 1] - marks[m];
    if (!IsOnePeriod(work, length, marks[m])) {
      heights.push_back(kUndefined);
      continue;
    }
    GlottalPeriod& period = wave.periods.emplace_back();
    period.start = work.origin + marks[m];
    period.length = length;
    period.measures = MeasureGlottalPeriod(std::span(work.d).subspan(At(marks[m]), At(length + 1)),
                                           work.sampleRate, flow, moduli);
    std::copy(flow.begin(), flow.end() - 1, wave.flow.begin() + (marks[m] - work.first));
    heights.push_back(PeakToPeak(work, marks[m], marks[m + 1]));
    AddHarmonics(moduli, sums, counts);
  }
  for (std::size_t k = 0; k < sums.size() && counts[k] > 0; ++k)
    wave.harmonics.push_back(sums[k] / counts[k]);
  AddMeans(wave);
  wave.jitter = JitterOf(work, crossings);
  wave.shimmer = Perturbation(heights);
}

/// The last place before `peak` where u rises through `level`, interpolated; NaN where it does not.
double LastRiseBefore(const Samples& u, int peak, double level) {
  for (int n = peak; n >= 1; --n)
    if (u[At(n - 1)] < level && u[At(n)] >= level)
      return n - 1 + (level - u[At(n - 1)]) / (u[At(n)] - u[At(n - 1)]);
  return kUndefined;
}

/// The first place behind `peak` where u falls through `level`.
double FirstFallBehind(const Samples& u, int peak, double level) {
  for (int n = peak + 1; n < std::ssize(u); ++n)
    if (u[At(n - 1)] >= level && u[At(n)] < level)
      return n - 1 + (u[At(n - 1)] - level) / (u[At(n - 1)] - u[At(n)]);
  return kUndefined;
}

/// Moduli of harmonics 1 .. of one period of u (length values), as far as they count.
void HarmonicsOf(const Samples& u, int length, double sampleRate, Samples& moduli) {
  moduli.clear();
  Samples cosine(At(length)), sine(At(length));
  for (int i = 0; i < length; ++i) {
    cosine[At(i)] = std::cos(2 * kPi * i / length);
    sine[At(i)] = std::sin(2 * kPi * i / length);
  }
  for (int k = 1; k <= length / 2 && k * sampleRate / length <= kLargestHarmonic; ++k) {
    double re = 0, im = 0;
    int phase = 0;
    for (int n = 0; n < length; ++n) {
      re += u[At(n)] * cosine[At(phase)];
      im -= u[At(n)] * sine[At(phase)];
      phase = phase + k < length ? phase + k : phase + k - length;
    }
    moduli.push_back(std::hypot(re, im));
  }
}

}  // namespace

std::optional<VoicedStretch> LongestVoicedStretch(std::span<const float> contour, int start, int end,
                                                  int sampleRate) {
  if (sampleRate <= 0 || end <= start) return std::nullopt;
  const int frames = static_cast<int>(contour.size());
  const int first = FrameOfSample(start, sampleRate);
  const int last = std::min(FrameOfSample(end, sampleRate), frames - 1);
  int bestFirst = 0, bestLast = -1, runFirst = -1, runLast = -1;
  for (int f = first; f <= last; ++f) {
    if (!(contour[At(f)] > 0)) continue;
    if (runFirst < 0 || f - runLast - 1 > kBridgedGap) runFirst = f;
    runLast = f;
    if (runLast - runFirst > bestLast - bestFirst) {
      bestFirst = runFirst;
      bestLast = runLast;
    }
  }
  if (bestLast - bestFirst + 1 < kLeastFrames) return std::nullopt;
  VoicedStretch stretch;
  stretch.firstFrame = bestFirst;
  stretch.start = std::max(start, static_cast<int>(std::int64_t{bestFirst} * sampleRate / 100));
  stretch.end = std::min(end, static_cast<int>((std::int64_t{bestLast} + 1) * sampleRate / 100));
  for (int f = bestFirst; f <= bestLast; ++f) {
    int nearest = f;
    for (int away = 1; !(contour[At(nearest)] > 0); ++away)
      nearest = contour[At(f - away)] > 0 ? f - away : f + away;  // both ends of the run are voiced
    stretch.periods.push_back(static_cast<double>(contour[At(nearest)]));
  }
  return stretch;
}

int EstimateGlottalWave(SampleSpan samples, int sampleRate, const VoicedStretch& stretch, bool turned,
                        GlottalWave& wave) {
  Work work = Prepare(samples, sampleRate, stretch);
  FirstEstimate(work);
  const bool inverted = FindPolarity(work) != turned;
  if (inverted) TurnOver(work);
  const Samples crossings = CrossingsAtZeroFrequency(work);
  std::vector<int> places;
  for (const double crossing : crossings) places.push_back(Round(crossing));
  std::vector<int> marks = MarkClosures(work, places, 0.25, 0.5);
  EstimateByWeights(work, marks);

  GlottalWave made;
  made.sampleRate = sampleRate;
  made.start = stretch.start;
  made.end = stretch.end;
  made.inverted = inverted;
  MeasurePeriods(work, marks, crossings, made);
  if (std::ssize(made.periods) < kLeastGlottalPeriods) return -1;
  wave = std::move(made);
  return 0;
}

GlottalMeasures MeasureGlottalPeriod(std::span<const double> derivative, double sampleRate,
                                     std::vector<double>& flow, std::vector<double>& moduli) {
  const int length = static_cast<int>(derivative.size()) - 1;
  flow.assign(derivative.begin(), derivative.end());
  RunningSum(flow);
  const double from = flow.front(), to = flow.back();
  for (int n = 0; n <= length; ++n) flow[At(n)] -= from + (to - from) * n / length;

  const auto highest = std::max_element(flow.begin(), flow.end());
  const int peak = static_cast<int>(highest - flow.begin());
  const double low = *std::min_element(flow.begin(), flow.end()), height = *highest - low;
  const double n10 = LastRiseBefore(flow, peak, low + 0.1 * height),
               n50 = LastRiseBefore(flow, peak, low + 0.5 * height);
  const double excitation = std::fabs(derivative.back());
  HarmonicsOf(flow, length, sampleRate, moduli);
  double higher = 0;
  for (std::size_t k = 1; k < moduli.size(); ++k) higher += moduli[k];
  const bool first = !moduli.empty() && moduli[0] > 0;

  GlottalMeasures m;
  m.f0 = sampleRate / length;
  m.oq = (length - n10) / length;
  m.qoq = (FirstFallBehind(flow, peak, low + 0.5 * height) - n50) / length;
  m.sq = peak < length ? (peak - n10) / (length - peak) : kUndefined;
  m.naq = excitation > 0 ? height / (length * excitation) : kUndefined;
  m.h1h2 = first && moduli.size() > 1 && moduli[1] > 0 ? 20 * std::log10(moduli[0] / moduli[1]) : kUndefined;
  m.hrf = first && higher > 0 ? 20 * std::log10(higher / moduli[0]) : kUndefined;
  return m;
}

}  // namespace parlowen
