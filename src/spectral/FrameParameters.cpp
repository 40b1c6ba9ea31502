#include "spectral/FrameParameters.h"

#include <algorithm>

#include "document/Frames.h"
#include "document/LevelMeasures.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/Decibel.h"
#include "dsp/Fir.h"
#include "spectral/Cepstrum.h"

namespace parlowen {
namespace {

constexpr double kFrameScale = 1.2, kComparisonScale = 1.5;
constexpr int kFirstAligned = 15;  // below, the level is that of the fundamental
constexpr int kLastCompared = 245;
constexpr int kLowestF0 = 64, kHighestF0 = 500;  // Hz
constexpr int kVoicedOrder = 14, kVoicedCutoff = 3000;
constexpr int kFilterHalf = 7, kFilterTaps = 2 * kFilterHalf + 1, kFilterStart = 8;

/// P of the stretch between two marks, in either order; of the frame where they are one.
int PeakBetween(const SoundDocument& document, int a, int b, int position, int length) {
  if (a == b) return SegmentPeakLevel(document.Samples(), position, position + length);
  return SegmentPeakLevel(document.Samples(), std::min(a, b), std::max(a, b));
}

/// P of the frame display: of the selection as it stands, of the view where nothing is marked.
int PeakAround(const SoundDocument& document, int position, int length) {
  const int start = document.selectionStart, end = document.selectionEnd, view = document.viewStart;
  if (start >= 0 && end >= 0) return PeakBetween(document, start, end, position, length);
  if (start < 0 && end < 0) return PeakBetween(document, view, view + document.viewLength, position, length);
  return PeakBetween(document, position, position, position, length);
}

double LevelOfFrame(const SoundDocument& document, int position, int length) {
  double sum = 0.0;
  for (int n = 0; n < length; ++n) {
    const double sample = document.Samples().At(std::int64_t{position} + n);
    sum += sample * sample;
  }
  return PowerToDb(sum / std::max(1, length), 0);
}

double ContourF0(const SoundDocument& document, int position) {
  const int frame = FrameOfSample(position, document.sampleRate);
  if (frame < 0 || frame >= document.ContourLength()) return 0.0;
  const double period = document.pitch[static_cast<std::size_t>(frame)];
  return period > 0 ? document.sampleRate / period : 0.0;
}

/// Quefrencies are samples, every second one where the cepstrum steps by two.
int CepstralF0(const SoundDocument& document, int position, int length, int peakLevel) {
  double cepstrum[kCepstrumPoints];
  CepstralAnalysis(document.Samples(), position, length, CepstralMode::Cepstrum,
                   {document.sampleRate, peakLevel}, cepstrum);
  const int rate =
      document.sampleRate >= kSteppedCepstrumRate ? document.sampleRate / 2 : document.sampleRate;
  const int shortest = std::max(1, (rate + kHighestF0 - 1) / kHighestF0);
  const int longest = std::min(rate / kLowestF0, kCepstrumPoints / 2 - 1);
  int best = 0;
  for (int k = shortest; k <= longest; ++k)
    if (cepstrum[k] > (best > 0 ? cepstrum[best] : 0.0)) best = k;
  return best > 0 ? rate / best : 0;
}

double MaximumOf(const FrameSpectrum& curve, int first, int last) {
  return *std::max_element(curve.begin() + first, curve.begin() + last + 1);
}

/// The mean of the five points about the largest one; the outermost stands for points beyond the spectrum.
double LevelAboutMaximum(const FrameSpectrum& curve) {
  const int largest =
      static_cast<int>(std::max_element(curve.begin() + kFirstAligned, curve.end()) - curve.begin());
  double sum = 0.0;
  for (int k = largest - 2; k <= largest + 2; ++k) sum += curve[static_cast<std::size_t>(std::min(k, 255))];
  return sum * 0.2;
}

ComparedFrame AnalyseCompared(const SoundDocument& document, int position, int other, bool voiced,
                              LpcAnalyser& analyser) {
  ComparedFrame frame;
  const int rate = document.sampleRate;
  const int length = ComparedFrameLength(rate);
  const int peak = PeakBetween(document, position, other, position, length);
  frame.time = FrameTime(position, rate);
  if (voiced) {
    std::int16_t copy[kLongestFrame + 40];
    const int count = length + 40;
    for (int n = 0; n < count; ++n) copy[n] = document.Samples().At(std::int64_t{position} + n);
    double taps[kFilterTaps];
    DesignFirFilter(kVoicedCutoff, 0.92, kFilterHalf, 0, taps, rate);
    ApplyFirFilter(kFilterTaps, length + 20, kFilterStart, taps, copy, count);
    LpcEnvelope({copy, count}, 0, length, true, kVoicedOrder, {rate, peak}, analyser, frame.curve.data());
  } else {
    MakeAnalysisWindow(length, 0.0);
    HomomorphicLevels(document.Samples(), position, length, {rate, peak}, frame.curve.data());
  }
  const FormantFrame formants = PickFormants(frame.curve.data(), kEnvelopePoints, rate);
  for (std::size_t i = 0; i < frame.frequency.size() && static_cast<int>(i) < formants.count; ++i) {
    frame.frequency[i] = formants.frequency[i];
    frame.bandwidth[i] = formants.bandwidth[i];
  }
  for (double& level : frame.curve) level *= kComparisonScale;
  return frame;
}

}  // namespace

double FrameTime(int position, int sampleRate) { return FrameOfSample(position, sampleRate) * 0.01; }

int FrameDisplayLength(int sampleRate) { return std::min(sampleRate / 39, kLongestFrame); }

int ComparedFrameLength(int sampleRate) { return std::min(sampleRate / 40, kLongestFrame); }

FrameParameters AnalyseFrame(const SoundDocument& document, int position, LpcAnalyser& analyser) {
  FrameParameters frame;
  const int rate = document.sampleRate;
  if (rate <= 0) return frame;
  const int length = FrameDisplayLength(rate);
  const int peak = PeakAround(document, position, length);
  MakeAnalysisWindow(length, 0.0);
  ComputeFrameSpectrum(document.Samples(), position, length, 0, peak, frame.narrow, {rate, 1.0});
  LpcEnvelope(document.Samples(), position, length, false, kLargestLpcOrder, {rate, peak}, analyser,
              frame.lpc.data());
  frame.formants = PickFormants(frame.lpc.data(), kEnvelopePoints, rate);
  for (double& level : frame.narrow) level *= kFrameScale;
  for (double& level : frame.lpc) level *= kFrameScale;
  const double shift = LevelAboutMaximum(frame.narrow) - MaximumOf(frame.lpc, kFirstAligned, 255);
  for (double& level : frame.lpc) level = std::max(0.0, level + shift);
  frame.time = FrameTime(position, rate);
  frame.level = LevelOfFrame(document, position, length);
  frame.f0 = ContourF0(document, position);
  frame.f0Cepstral = CepstralF0(document, position, length, peak);
  return frame;
}

FrameComparison CompareFrames(const SoundDocument& document, int positionA, int positionB, bool voiced,
                              LpcAnalyser& analyser) {
  FrameComparison comparison;
  comparison.voiced = voiced;
  if (document.sampleRate <= 0) return comparison;
  comparison.a = AnalyseCompared(document, positionA, positionB, voiced, analyser);
  comparison.b = AnalyseCompared(document, positionB, positionA, voiced, analyser);
  const double difference =
      MaximumOf(comparison.a.curve, 0, kLastCompared) - MaximumOf(comparison.b.curve, 0, kLastCompared);
  ComparedFrame& lower = difference < 0 ? comparison.a : comparison.b;
  for (double& level : lower.curve) level += difference < 0 ? -difference : difference;
  return comparison;
}

}  // namespace parlowen
