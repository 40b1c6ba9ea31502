#include "document/SegmentFilter.h"

#include <algorithm>
#include <array>
#include <vector>

#include "dsp/Fir.h"

namespace parlowen {
namespace {

constexpr int kHalfLength = 40, kTaps = 2 * kHalfLength + 1;
constexpr int kMargin = 2 * kHalfLength;
constexpr double kWindow = 0.92;

}  // namespace

void FilterStretch(SoundDocument& document, int start, int end, int cutoff, FilterPass pass) {
  std::array<double, kTaps> coefficients{};
  DesignFirFilter(cutoff, kWindow, kHalfLength, pass == FilterPass::High, coefficients.data(),
                  document.sampleRate);

  const SampleSpan sound = document.Samples();
  std::vector<std::int16_t> work;
  work.reserve(static_cast<std::size_t>(end - start + 2 * kMargin));
  for (int i = start - kMargin; i < end + kMargin; ++i) work.push_back(sound.At(i));

  // Everything that has its half-length of neighbours on both sides.
  const auto length = static_cast<int>(work.size());
  ApplyFirFilter(kTaps, length - 2 * kHalfLength, kHalfLength, coefficients.data(), work.data(), length);
  std::copy(work.begin() + kMargin, work.end() - kMargin, document.samples.data() + start);
  document.SamplesChanged();
}

}  // namespace parlowen
