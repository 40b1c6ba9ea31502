#include "pitch/PitchAnalysis.h"

#include <algorithm>
#include <cmath>

#include "dsp/AnalysisWindow.h"

namespace parlowen {
namespace {

constexpr int kLastSecond = 100;  // frames at the end of a stretch among which the cut is looked for
constexpr double kFirstStageShare = 0.2;
constexpr float kVoicedByLevel = 1.0f;  // voiced, with no period known

/// How many frames of a full stretch are kept: up to the quietest of its last second.
int CutOf(const FastPitch& stretch) {
  const int count = static_cast<int>(stretch.frames.size());
  int quietest = count - 1;
  for (int f = count - 2; f >= std::max(1, count - kLastSecond); --f)
    if (stretch.frames[static_cast<std::size_t>(f)].level <
        stretch.frames[static_cast<std::size_t>(quietest)].level)
      quietest = f;
  return std::max(1, quietest);
}

/// The time-domain stage over the whole range, brought to document frames.
bool TimeDomainStage(const SoundDocument& document, int start, int count, const PitchAnalysisRequest& request,
                     FrameSpan frames, std::vector<float>& hints, const PitchProgress& progress) {
  FastPitch stretch;
  const int end = start + count, maxFrames = std::max(1, request.paneWidth - kPaneMargin);
  int frame = frames.first;
  for (int from = start; from < end && frame <= frames.last;) {
    if (progress && !progress(kFirstStageShare * (from - start) / count)) return false;
    const FastPitchRequest part{document.Samples(), document.sampleRate, from, end - from, request.range,
                                maxFrames,          request.timeDomain};
    const int found = ExtractPitchFast(part, stretch);
    if (found == 0) return true;
    const bool more = end - from - found * stretch.stepSamples >= stretch.stepSamples;
    const int kept = more ? CutOf(stretch) : found;
    for (; frame <= frames.last; ++frame) {
      // Counted from the document's own frames, so that steps of whole working samples do not drift away.
      const double place =
          static_cast<double>(SampleOfFrame(frame, document.sampleRate) - from) / stretch.stepSamples;
      const auto f = static_cast<std::int64_t>(std::lround(place));
      if (f >= kept) break;
      if (f < 0) continue;
      const auto i = static_cast<std::size_t>(f);
      hints[static_cast<std::size_t>(frame - frames.first)] = request.timeDomain          ? stretch.periods[i]
                                                              : stretch.frames[i].leveled ? kVoicedByLevel
                                                                                          : kUnvoiced;
    }
    from += kept * stretch.stepSamples;
  }
  return true;
}

}  // namespace

bool RunPitchAnalysis(const SoundDocument& document, int start, int count,
                      const PitchAnalysisRequest& request, FrameSpan frames, std::vector<float>& periods,
                      const PitchProgress& progress) {
  const auto length = static_cast<std::size_t>(std::max(0, frames.last - frames.first + 1));
  periods.assign(length, kUnvoiced);
  if (length == 0 || document.sampleRate <= 0) return true;
  std::vector<float> hints(length, kUnvoiced);
  if (!TimeDomainStage(document, start, count, request, frames, hints, progress)) return false;
  MakeAnalysisWindow(std::min(document.sampleRate / 30, 512), 0.0);
  if (!request.tracking) {
    for (std::size_t i = 0; i < length; ++i) periods[i] = hints[i] > kVoicedByLevel ? hints[i] : kUnvoiced;
    return true;
  }
  const PitchTrackingRequest tracking{
      document.Samples(), document.sampleRate, request.range, frames.first, hints, request.study};
  const auto rest = [&progress](double share) {
    return !progress || progress(kFirstStageShare + (1 - kFirstStageShare) * share);
  };
  if (!TrackPitch(tracking, periods, rest)) return false;
  if (frames.first == 0) periods[0] = kUnvoiced;
  return true;
}

}  // namespace parlowen
