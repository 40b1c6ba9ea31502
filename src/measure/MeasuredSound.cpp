#include "measure/MeasuredSound.h"

#include <algorithm>
#include <cmath>

#include "document/LevelMeasures.h"
#include "document/RateConversion.h"
#include "interchange/FrameGrid.h"
#include "spectral/ConsonantFrame.h"
#include "spectral/Formants.h"
#include "synthesis/Resynthesis.h"
#include "voice/VoiceMeasures.h"

namespace parlowen {
namespace {

constexpr int kZerosBehind = 32;  // samples that the conversion reads behind the last one
constexpr int kLongestGap = 5;    // frames: a contour is drawn through unvoiced 50 ms
constexpr int kLongestJob = 10;   // seconds that marks are placed in at a time
constexpr int kPolarity = 1;      // the first mark stands on a positive peak, as all others do
// A contour that was drawn by hand may hold anything: voices are measured at 40..1000 Hz.
constexpr double kLowestVoice = 40, kHighestVoice = 1000;
constexpr double kPeriodFactor = 1.3;  // an interval of marks that differs more from the contour is no period

double MeanOf(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return values.empty() ? kNoMeasure : sum / static_cast<double>(values.size());
}

double MedianOf(std::vector<double> values) {
  if (values.empty()) return kNoMeasure;
  const auto middle = values.begin() + std::ssize(values) / 2;
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 != 0) return *middle;
  return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

/// A period at a rate.
bool IsVoice(double period, int rate) {
  return period * kLowestVoice <= rate && period * kHighestVoice >= rate;
}

/// Standard deviation with n − 1.
double DeviationOf(const std::vector<double>& values, double mean) {
  double sum = 0;
  for (const double value : values) sum += (value - mean) * (value - mean);
  return values.size() < 2 ? kNoMeasure : std::sqrt(sum / static_cast<double>(values.size() - 1));
}

}  // namespace

MeasuredSound::MeasuredSound(const SoundDocument& document, std::optional<std::span<const float>> contour,
                             PitchRange range, const MeasureSettings& settings, const PitchProgress& progress)
    : settings_(settings),
      range_(range),
      samples_(document.Samples()),
      sampleRate_(document.sampleRate),
      analysisRate_(AnalysisRateOf(document.sampleRate)) {
  if (contour) {
    contour_ = *contour;
  } else if (const int frames = document.ContourLength(); frames > 0 && WantsContour()) {
    ready_ =
        RunPitchAnalysis(document, 0, document.sampleCount, {range}, {0, frames - 1}, computed_, progress);
    if (!ready_) return;
    contour_ = computed_;
  }
  if (Wants(MeasureGroup::Level))
    levels_ = MakeLevelCurve(samples_, sampleRate_, 100, 0, document.frameCount()).values;
  if (WantsAnalysis()) Convert(document);
}

/// The contour follows a conversion as it does in the document: the frames stay, the periods count in new
/// samples.
void MeasuredSound::Convert(const SoundDocument& document) {
  analysis_ = samples_;
  if (analysisRate_ != sampleRate_) {
    converted_.resize(static_cast<std::size_t>(document.sampleCount + kZerosBehind));
    std::copy_n(samples_.data, document.sampleCount, converted_.begin());
    const int count = ConvertSamples(converted_.data(), document.sampleCount, sampleRate_, analysisRate_);
    analysis_ = {converted_.data(), count};
  }
  const float ratio = static_cast<float>(analysisRate_) / static_cast<float>(sampleRate_);
  for (const float period : contour_) analysisContour_.push_back(period > 0 ? period * ratio : 0.0f);
}

MeasuredSound::Frames MeasuredSound::FramesOf(int start, int end) const {
  const auto from = [this](int sample) {
    int frame = FrameOfSample(sample, sampleRate_);
    while (SampleOfFrame(frame, sampleRate_) < sample) ++frame;
    return frame;
  };
  return {from(start), std::min(from(end), FrameOfSample(samples_.count, sampleRate_))};
}

Measures MeasuredSound::Measure(const MeasuredInterval& interval) const {
  Measures measures;
  const Frames frames = FramesOf(interval.start, interval.end);
  const int start = interval.analysisStart, end = interval.analysisEnd;
  if (Wants(MeasureGroup::Level)) MeasureLevel(frames, measures);
  if (Wants(MeasureGroup::Pitch)) MeasurePitch(frames, measures);
  if (Wants(MeasureGroup::Formants)) MeasureFormants(start, end, measures);
  if (Wants(MeasureGroup::Voice)) MeasurePeriods(start, end, measures);
  if (Wants(MeasureGroup::Voice)) MeasureVoice(frames, measures);
  if (Wants(MeasureGroup::Consonant)) MeasureConsonant(start, end, measures);
  return measures;
}

void MeasuredSound::MeasureLevel(Frames frames, Measures& measures) const {
  if (frames.end <= frames.first) return;
  const std::vector<double> levels(levels_.begin() + frames.first, levels_.begin() + frames.end);
  measures.levelMean = MeanOf(levels);
  measures.levelMax = *std::max_element(levels.begin(), levels.end());
}

void MeasuredSound::MeasurePitch(Frames frames, Measures& measures) const {
  measures.contour.assign(static_cast<std::size_t>(settings_.points), kNoMeasure);
  if (frames.end <= frames.first) return;
  std::vector<int> voiced;
  std::vector<double> hertz, semitones;
  for (int frame = frames.first; frame < frames.end; ++frame) {
    if (!Voiced(frame)) continue;
    voiced.push_back(frame);
    hertz.push_back(FrequencyOf(contour_[static_cast<std::size_t>(frame)], sampleRate_));
    semitones.push_back(SemitonesOf(hertz.back()));
  }
  measures.voiced = static_cast<double>(voiced.size()) / (frames.end - frames.first);
  if (voiced.empty()) return;
  measures.f0Mean = MeanOf(hertz);
  measures.f0Sd = DeviationOf(hertz, measures.f0Mean);
  measures.f0Median = MedianOf(hertz);
  const auto [lowest, highest] = std::minmax_element(hertz.begin(), hertz.end());
  measures.f0Min = *lowest;
  measures.f0Max = *highest;
  measures.stMean = MeanOf(semitones);
  measures.stRange = SemitonesOf(*highest) - SemitonesOf(*lowest);
  measures.contour = Contour(voiced);
}

/// `points` values from the first to the last of the voiced frames, between two of them on a straight line in
/// log f.
std::vector<double> MeasuredSound::Contour(const std::vector<int>& voiced) const {
  std::vector<double> values;
  const auto hertz = [this](int frame) {
    return FrequencyOf(contour_[static_cast<std::size_t>(frame)], sampleRate_);
  };
  const double length = voiced.back() - voiced.front();
  std::size_t next = 0;  // the first voiced frame at or behind the point
  for (int point = 0; point < settings_.points; ++point) {
    const double place = voiced.front() + length * point / (settings_.points - 1);
    while (voiced[next] < place && next + 1 < voiced.size()) ++next;
    if (voiced[next] <= place) {
      values.push_back(hertz(voiced[next]));
      continue;
    }
    const int before = voiced[next - 1], behind = voiced[next];
    const double share = (place - before) / (behind - before);
    const double f = hertz(before);
    values.push_back(behind - before - 1 > kLongestGap ? kNoMeasure : f * std::pow(hertz(behind) / f, share));
  }
  return values;
}

/// The frames of the formant file, but with the order that the rate asks for; those of the middle third that
/// begin in a voiced frame of the contour.
void MeasuredSound::MeasureFormants(int start, int end, Measures& measures) const {
  const int step = analysisRate_ / 100, count = (end - start) / step;
  const int frameLength = std::min(analysisRate_ / 50, kLongestFrame), order = analysisRate_ / 1000 + 2;
  const LpcContext context{analysisRate_, SegmentPeakLevel(analysis_, start, end)};
  LpcAnalyser analyser;
  double levels[kEnvelopePoints];
  std::vector<double> found[6];
  for (int k = count / 3; k < count - count / 3; ++k) {
    const int from = start + k * step;
    if (!Voiced(FrameOfSample(from, analysisRate_))) continue;
    LpcEnvelope(analysis_, from, frameLength, true, order, context, analyser, levels);
    const FormantFrame formants = PickFormants(levels, kEnvelopePoints, analysisRate_);
    for (std::size_t i = 0; i < std::min<std::size_t>(static_cast<std::size_t>(formants.count), 3); ++i) {
      found[i].push_back(formants.frequency[i]);
      found[3 + i].push_back(formants.bandwidth[i]);
    }
  }
  double Measures::*const columns[] = {&Measures::f1, &Measures::f2, &Measures::f3,
                                       &Measures::b1, &Measures::b2, &Measures::b3};
  for (std::size_t i = 0; i < 6; ++i) measures.*columns[i] = MedianOf(std::move(found[i]));
}

/// A cycle at each mark of the resynthesis; a run ends where two of them are no period apart.
void MeasuredSound::MeasurePeriods(int start, int end, Measures& measures) const {
  std::vector<std::vector<VoiceCycle>> runs;
  int last = 0;  // the mark before, if it has a run
  for (int from = start; from < end;) {
    const int to =
        static_cast<int>(std::min<std::int64_t>(end, from + std::int64_t{kLongestJob} * analysisRate_));
    SynthesisJob job = MakeSynthesisJob(analysis_, analysisRate_, from, to);
    FindPitchMarks(job, analysisContour_, kPolarity);
    bool follows = false;
    for (const std::int32_t offset : job.marks) {
      const int mark = from + offset;
      int frame = FrameOfSample(mark, analysisRate_);
      if (!Voiced(frame) && Voiced(frame + 1)) ++frame;
      const double period =
          Voiced(frame) ? static_cast<double>(analysisContour_[static_cast<std::size_t>(frame)]) : 0.0;
      if (mark >= to || !IsVoice(period, analysisRate_)) {
        follows = false;
        continue;
      }
      const double apart = mark - last;
      if (!follows || apart > kPeriodFactor * period || apart * kPeriodFactor < period) runs.emplace_back();
      runs.back().push_back(MeasureCycle(analysis_, mark, period));
      last = mark;
      follows = true;
    }
    from = to;
  }
  for (auto& run : runs)
    run.back().period = kNoMeasure;  // behind the last mark there is no voice of this run
  const Perturbation perturbation = LocalPerturbation(runs);
  measures.jitter = perturbation.jitter;
  measures.shimmer = perturbation.shimmer;
}

/// The voiced frames, each about its own moment, 10 ms behind its first sample.
void MeasuredSound::MeasureVoice(Frames frames, Measures& measures) const {
  const PitchBounds bounds = BoundsOf(range_);
  VoiceSpectrum spectrum(analysisRate_);
  std::vector<double> ratios, prominences, differences;
  for (int frame = frames.first; frame < frames.end; ++frame) {
    if (!Voiced(frame)) continue;
    const double period = static_cast<double>(analysisContour_[static_cast<std::size_t>(frame)]);
    if (!IsVoice(period, analysisRate_)) continue;
    const int centre = SampleOfFrame(frame + 1, analysisRate_);
    ratios.push_back(HarmonicsToNoise(PeriodCorrelation(analysis_, centre, period)));
    spectrum.Take(analysis_, centre);
    prominences.push_back(spectrum.Prominence(bounds.lowest, bounds.highest));
    const double difference = spectrum.HarmonicDifference(analysisRate_ / period);
    if (std::isfinite(difference)) differences.push_back(difference);
  }
  measures.hnr = MeanOf(ratios);
  measures.cpp = MeanOf(prominences);
  measures.h1h2 = MedianOf(std::move(differences));
}

/// Those of 40096, which asks for 16000 Hz. Too near the end of the sound nothing is analysed.
void MeasuredSound::MeasureConsonant(int start, int end, Measures& measures) const {
  if (analysisRate_ < kLowestConsonantRate || start + kConsonantEndMargin >= analysis_.count) return;
  const std::vector<ConsonantFrame> frames = AnalyseConsonant(analysis_, analysisRate_, start, end, {});
  std::vector<double> gravity, dispersion, intensity;
  for (const ConsonantFrame& frame : frames) {
    gravity.push_back(frame.gravity);
    dispersion.push_back(frame.dispersion);
    intensity.push_back(frame.intensity);
  }
  measures.gravity = MeanOf(gravity);
  measures.dispersion = MeanOf(dispersion);
  measures.intensity = MeanOf(intensity);
}

}  // namespace parlowen
