#include "spectral/Formants.h"

#include <algorithm>
#include <cmath>

#include "document/LevelMeasures.h"

namespace parlowen {
namespace {

constexpr double kLowestFormant = 100.0;  // Hz

void TakeCandidate(FormantFrame& formants, double frequency, double bandwidth) {
  if (formants.count > 0) {
    const auto last = static_cast<std::size_t>(formants.count) - 1;
    if (frequency - formants.frequency[last] < (bandwidth + formants.bandwidth[last]) / 3) {
      if (bandwidth < formants.bandwidth[last]) {
        formants.frequency[last] = frequency;
        formants.bandwidth[last] = bandwidth;
      }
      return;
    }
  }
  const auto next = static_cast<std::size_t>(formants.count++);
  formants.frequency[next] = frequency;
  formants.bandwidth[next] = bandwidth;
}

}  // namespace

FormantFrame PickFormants(const double* levels, int points, int sampleRate) {
  FormantFrame formants;
  const double spacing = sampleRate / 2.0 / points;
  const double widest = sampleRate / 20;
  bool inside = false;
  double largest = 0.0;
  int place = 0;
  for (int k = 1; k <= points - 2 && formants.count < kMostFormants; ++k) {
    const double curvature = 2 * levels[k] - levels[k - 1] - levels[k + 1];
    if (curvature > 0 || (levels[k] < levels[k - 1] && levels[k] < levels[k + 1])) {
      inside = true;
      if (curvature > largest) {
        largest = curvature;
        place = k;
      }
    } else if (inside) {
      inside = false;
      const double bandwidth = 2 * spacing * std::sqrt(6 / largest);  // infinite without curvature
      const double frequency = place * spacing;
      if (frequency >= kLowestFormant && bandwidth <= widest) TakeCandidate(formants, frequency, bandwidth);
      largest = 0.0;
    }
  }
  return formants;
}

std::vector<FormantFrame> FormantTrack(SampleSpan samples, int sampleRate, int start, int end,
                                       LpcAnalyser& analyser) {
  std::vector<FormantFrame> frames;
  const int step = sampleRate / 100;
  if (step <= 0 || end <= start) return frames;
  const int frameLength = std::min(sampleRate / 50, kLongestFrame);
  const LpcContext context{sampleRate, SegmentPeakLevel(samples, start, end)};
  double levels[kEnvelopePoints];
  const int count = (end - start) / step;
  frames.reserve(static_cast<std::size_t>(count));
  for (int frame = 0; frame < count; ++frame) {
    LpcEnvelope(samples, start + frame * step, frameLength, true, kLargestLpcOrder, context, analyser,
                levels);
    frames.push_back(PickFormants(levels, kEnvelopePoints, sampleRate));
  }
  return frames;
}

}  // namespace parlowen
