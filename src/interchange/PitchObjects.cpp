#include "interchange/PitchObjects.h"

#include <algorithm>
#include <cmath>

#include "document/LevelMeasures.h"
#include "interchange/FrameGrid.h"
#include "interchange/TextObject.h"

namespace parlowen {
namespace {

constexpr std::string_view kTierClass = "PitchTier", kPitchClass = "Pitch 1";
constexpr double kLowest = 1.0, kHighest = 10000.0;  // Hz

double FrequencyOfFrame(const SoundDocument& document, int frame) {
  return FrequencyOf(document.pitch[static_cast<std::size_t>(frame)], document.sampleRate);
}

/// The rules of the format, whatever the file says.
void PutInOrder(std::vector<PitchPoint>& points) {
  std::erase_if(points, [](const PitchPoint& point) {
    return !(point.frequency >= kLowest && point.frequency <= kHighest);
  });
  std::stable_sort(points.begin(), points.end(),
                   [](const PitchPoint& a, const PitchPoint& b) { return a.time < b.time; });
  const auto sameTime = [](const PitchPoint& a, const PitchPoint& b) { return a.time == b.time; };
  points.erase(std::unique(points.begin(), points.end(), sameTime), points.end());
}

}  // namespace

PitchTier PitchTierOf(const SoundDocument& document) {
  PitchTier tier;
  tier.end = SecondsOf(document.sampleCount, document.sampleRate);
  for (int frame = 0; frame < document.ContourLength(); ++frame)
    if (const double frequency = FrequencyOfFrame(document, frame); frequency > 0)
      tier.points.push_back({TimeOfFrame(frame), frequency});
  return tier;
}

std::string PitchTierText(const PitchTier& tier) {
  TextObjectWriter out(kTierClass);
  out.PutNumber(0, "xmin", tier.start);
  out.PutNumber(0, "xmax", tier.end);
  out.PutCount(0, "points: size", tier.points.size());
  for (std::size_t i = 0; i < tier.points.size(); ++i) {
    out.PutItem(0, "points", i + 1);
    out.PutNumber(1, "number", tier.points[i].time);
    out.PutNumber(1, "value", tier.points[i].frequency);
  }
  return out.text();
}

std::optional<PitchTier> ReadPitchTier(std::string_view utf8, PitchTierFault& fault) {
  TokenReader reader(utf8);
  fault = PitchTierFault::NoPitchTier;
  if (!TakeObjectHead(reader, kTierClass)) return {};
  fault = PitchTierFault::Damaged;
  PitchTier tier;
  tier.start = reader.TakeNumber();
  tier.end = reader.TakeNumber();
  for (std::int64_t count = reader.TakeCount(); count > 0 && !reader.failed(); --count) {
    PitchPoint& point = tier.points.emplace_back();
    point.time = reader.TakeNumber();
    point.frequency = reader.TakeNumber();
  }
  if (reader.failed()) return {};
  PutInOrder(tier.points);
  fault = PitchTierFault::NoPoints;
  if (tier.points.empty()) return {};
  fault = PitchTierFault::None;
  return tier;
}

double FrequencyAt(const PitchTier& tier, double time) {
  const auto& points = tier.points;
  const auto right = std::lower_bound(points.begin(), points.end(), time,
                                      [](const PitchPoint& point, double t) { return point.time < t; });
  if (right == points.begin()) return points.front().frequency;
  if (right == points.end()) return points.back().frequency;
  const PitchPoint& left = right[-1];
  return left.frequency +
         (time - left.time) / (right->time - left.time) * (right->frequency - left.frequency);
}

TargetCurve TargetOf(const PitchTier& tier, int sampleRate, int firstFrame, int frameCount) {
  TargetCurve target;
  for (int i = 0; i < frameCount; ++i)
    target.push_back(static_cast<float>(sampleRate / FrequencyAt(tier, TimeOfFrame(firstFrame + i))));
  return target;
}

std::string PitchText(const SoundDocument& document, int ceiling) {
  const int frames = document.ContourLength(), rate = document.sampleRate;
  const double peak = SegmentPeakLevel(document.Samples(), 0, document.sampleCount);
  double highest = 0;
  for (int frame = 0; frame < frames; ++frame) highest = std::max(highest, FrequencyOfFrame(document, frame));
  TextObjectWriter out(kPitchClass);
  out.PutNumber(0, "xmin", 0);
  out.PutNumber(0, "xmax", SecondsOf(document.sampleCount, rate));
  out.PutCount(0, "nx", static_cast<std::size_t>(frames));
  out.PutNumber(0, "dx", 0.01);
  out.PutNumber(0, "x1", TimeOfFrame(0));
  out.PutNumber(0, "ceiling", std::max<double>(ceiling, std::floor(highest) + 1));
  out.PutNumber(0, "maxnCandidates", 1);
  out.PutLine(0, "frames []: ");
  for (int frame = 0; frame < frames; ++frame) {
    const double frequency = FrequencyOfFrame(document, frame);
    const int start = SampleOfFrame(frame, rate);
    out.PutItem(1, "frames", static_cast<std::size_t>(frame) + 1);
    out.PutNumber(2, "intensity", PeakAmplitude(document.Samples(), start, start + rate / 100) / peak);
    out.PutNumber(2, "nCandidates", 1);
    out.PutLine(2, "candidates []: ");
    out.PutItem(3, "candidates", 1);
    out.PutNumber(4, "frequency", frequency);
    out.PutNumber(4, "strength", frequency > 0 ? 1 : 0);
  }
  return out.text();
}

}  // namespace parlowen
