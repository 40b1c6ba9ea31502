#include "prosody/ToneCurve.h"

#include <algorithm>

namespace parlowen {
namespace {

constexpr std::size_t kLevelsPerFrame = 3;

using Runs = std::vector<FrameSpan>;

int FramesIn(std::span<const FrameSpan> runs) {
  int frames = 0;
  for (const FrameSpan& run : runs) frames += run.last - run.first + 1;
  return frames;
}

/// The runs of the chain with the most voiced frames.
Runs LargestChain(const Runs& runs, int longestBreak) {
  Runs largest;
  for (std::size_t begin = 0, end = 0; begin < runs.size(); begin = end) {
    for (end = begin + 1; end < runs.size(); ++end)
      if (runs[end].first - runs[end - 1].last - 1 > longestBreak) break;
    const std::span<const FrameSpan> chain(runs.data() + begin, end - begin);
    if (FramesIn(chain) > FramesIn(largest)) largest.assign(chain.begin(), chain.end());
  }
  return largest;
}

double LevelOf(std::span<const double> levels, int frame) {
  const std::size_t at = kLevelsPerFrame * static_cast<std::size_t>(frame);
  return at < levels.size() ? levels[at] : 0.0;
}

/// Takes the weak frames off both ends; runs that are weak altogether go.
void DropWeakEnds(Runs& chain, std::span<const double> levels, double weakness) {
  double strongest = LevelOf(levels, chain.front().first);
  for (const FrameSpan& run : chain)
    for (int frame = run.first; frame <= run.last; ++frame)
      strongest = std::max(strongest, LevelOf(levels, frame));
  const auto isWeak = [&](int frame) { return LevelOf(levels, frame) < strongest - weakness; };
  // The strongest frame ends both loops.
  for (FrameSpan* run = &chain.front(); isWeak(run->first); run = &chain.front())
    if (++run->first > run->last) chain.erase(chain.begin());
  for (FrameSpan* run = &chain.back(); isWeak(run->last); run = &chain.back())
    if (--run->last < run->first) chain.pop_back();
}

template <typename Value>
TonePoints PointsOf(std::span<const Value> hertz) {
  const auto semitonesAt = [&](int i) {
    return SemitonesOf(static_cast<double>(hertz[static_cast<std::size_t>(i)]));
  };
  const auto isGap = [&](int i) { return !(hertz[static_cast<std::size_t>(i)] > 0); };
  const int steps = kTonePoints - 1, lastFrame = static_cast<int>(hertz.size()) - 1;
  TonePoints points{};
  for (int p = 0; p < kTonePoints; ++p) {
    const double place = p * lastFrame / static_cast<double>(steps);
    int before = p * lastFrame / steps;
    int behind = before + (p * lastFrame % steps != 0 ? 1 : 0);
    while (before > 0 && isGap(before)) --before;
    while (behind < lastFrame && isGap(behind)) ++behind;
    const double left = semitonesAt(before);
    points[static_cast<std::size_t>(p)] =
        before == behind ? left : left + (semitonesAt(behind) - left) * (place - before) / (behind - before);
  }
  return points;
}

}  // namespace

std::vector<FrameSpan> VoicedRuns(std::span<const float> periods, FrameSpan span, int shortest) {
  std::vector<FrameSpan> runs;
  for (int frame = span.first; frame <= span.last; ++frame) {
    const int begin = frame;
    while (frame <= span.last && periods[static_cast<std::size_t>(frame)] > 0) ++frame;
    if (frame - begin >= shortest) runs.push_back({begin, frame - 1});
  }
  return runs;
}

FrameSpan ToneFrames(const SoundDocument& document, int start, int end) {
  return {std::max(0, FrameOfSample(start, document.sampleRate)),
          std::min(FrameOfSample(end, document.sampleRate), document.ContourLength() - 1)};
}

std::optional<ToneCurve> FindToneCurve(std::span<const float> periods, FrameSpan span, int sampleRate,
                                       std::span<const double> levels, const ToneCurveOptions& options) {
  Runs chain = LargestChain(VoicedRuns(periods, span, options.shortestRun), options.longestBreak);
  if (chain.empty()) return {};
  if (options.dropWeakEnds) DropWeakEnds(chain, levels, options.weakness);
  const int first = chain.front().first, count = chain.back().last - first + 1;
  if (count < options.shortestCurve) return {};
  ToneCurve curve{first, std::vector<double>(static_cast<std::size_t>(count))};
  for (const FrameSpan& run : chain)
    for (int frame = run.first; frame <= run.last; ++frame)
      curve.hertz[static_cast<std::size_t>(frame - first)] =
          sampleRate / static_cast<double>(periods[static_cast<std::size_t>(frame)]);
  return curve;
}

std::optional<ToneCurve> FindToneCurve(const SoundDocument& document, int start, int end,
                                       const ToneCurveOptions& options) {
  return FindToneCurve(document.pitch, ToneFrames(document, start, end), document.sampleRate,
                       document.Levels().values, options);
}

TonePoints TonePointsOf(std::span<const double> hertz) { return PointsOf(hertz); }
TonePoints TonePointsOf(std::span<const float> hertz) { return PointsOf(hertz); }

}  // namespace parlowen
