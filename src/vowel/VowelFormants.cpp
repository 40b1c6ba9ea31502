#include "vowel/VowelFormants.h"

#include <algorithm>

#include "document/LevelMeasures.h"
#include "dsp/Fir.h"

namespace parlowen {
namespace {

constexpr int kHalfFilter = 7, kFilterTaps = 2 * kHalfFilter + 1;
constexpr int kVowelCutoff = 3000;  // Hz
constexpr double kFilterShape = 0.92;
constexpr int kReach = kLongestFrame + 64;  // samples that a frame's analysis and the filter may read beyond

FormantFrame Analyse(SampleSpan samples, int start, int frameLength, const LpcContext& context) {
  LpcAnalyser analyser;
  double levels[kEnvelopePoints];
  LpcEnvelope(samples, start, frameLength, true, kLargestLpcOrder, context, analyser, levels);
  return PickFormants(levels, kEnvelopePoints, context.sampleRate);
}

int PointFrameLength(int sampleRate) { return std::min(kLongestFrame, sampleRate / 40); }

}  // namespace

VowelFormants ChooseFormants(const FormantFrame& frame, int sampleRate) {
  VowelFormants formants;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(frame.count) && kept < 4; ++i) {
    if (frame.bandwidth[i] >= sampleRate / 10) continue;
    formants.f[kept] = frame.frequency[i];
    formants.b[kept++] = frame.bandwidth[i];
  }
  if (frame.count < 4) formants.f[3] = formants.f[2] + 1000.0;
  return formants;
}

void SplitFirst(VowelFormants& formants) {
  formants.f[2] = formants.f[1];
  formants.f[1] = 1.4 * formants.f[0];
  formants.f[0] = 0.9 * formants.f[0];
}

void MergeFirstTwo(VowelFormants& formants) {
  auto& [f, b] = formants;
  f[0] = (b[1] * f[0] + b[0] * f[1]) / (b[0] + b[1]);
  f[1] = f[2];
  f[2] = f[3];
}

void DeleteFirst(VowelFormants& formants) {
  std::copy(formants.f.begin() + 1, formants.f.end(), formants.f.begin());
}

bool IsVowel(const VowelFormants& formants) {
  return formants.f[0] >= 150 && formants.f[0] <= 1600 && formants.f[1] >= 400 && formants.f[1] <= 4000;
}

FormantFrame FormantsAt(const SoundDocument& document, int sample) {
  const int length = PointFrameLength(document.sampleRate);
  const int level = SegmentPeakLevel(document.Samples(), sample, sample + length);
  return Analyse(document.Samples(), sample, length, {document.sampleRate, level});
}

VowelTrack SelectionTrack(const SoundDocument& document) {
  VowelTrack track;
  if (!document.selectionDefined() || document.sampleRate < 100) return track;
  track.start = document.selectionStart;
  track.step = document.sampleRate / 100;
  LpcAnalyser analyser;
  track.frames = FormantTrack(document.Samples(), document.sampleRate, document.selectionStart,
                              document.selectionEnd, analyser);
  return track;
}

VowelTrack SegmentTrack(const SoundDocument& document) {
  VowelTrack track;
  if (!document.selectionDefined() || document.sampleRate < 100) return track;
  const int start = document.selectionStart, length = document.SelectionLength(), rate = document.sampleRate;
  track.start = start;
  track.step = rate / 100;
  const LpcContext context{rate, SegmentPeakLevel(document.Samples(), start, document.selectionEnd)};

  // The last frames end behind the selection: they see what follows it, filtered alike.
  std::vector<std::int16_t> block(static_cast<std::size_t>(length + kReach));
  for (int i = 0; i < length + kReach; ++i)
    block[static_cast<std::size_t>(i)] = document.Samples().At(start + i);
  double coefficients[kFilterTaps];
  DesignFirFilter(kVowelCutoff, kFilterShape, kHalfFilter, 0, coefficients, rate);
  const int total = static_cast<int>(block.size());
  ApplyFirFilter(kFilterTaps, total - 2 * kHalfFilter - 1, kHalfFilter + 1, coefficients, block.data(),
                 total);

  const SampleSpan samples{block.data(), total};
  for (int offset = 0; offset < length; offset += track.step)
    track.frames.push_back(Analyse(samples, offset, PointFrameLength(rate), context));
  return track;
}

}  // namespace parlowen
