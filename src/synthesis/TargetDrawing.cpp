#include "synthesis/TargetDrawing.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kFrequency = "频率=%03dHz ";
constexpr UiText kNoFrequency = "无效频率区  ";

constexpr double kTopFrequency = 512.0, kRowsPerOctave = 64.0;
constexpr double kLowestFrequency = 15.0;  // Hz
constexpr float kVoicedFrom = 0.5f;

}  // namespace

double TargetFrequencyOfRow(double row) {
  if (row < kHighestTargetRow || row > kLowestTargetRow) return 0;
  return kTopFrequency * std::exp2((kHighestTargetRow - row) / kRowsPerOctave);
}

int RowOfTargetFrequency(double frequency) {
  const double row = kHighestTargetRow - kRowsPerOctave * std::log2(frequency / kTopFrequency);
  return TruncateToInt32(std::floor(row + 0.5));
}

std::string TargetReadout(int row) {
  const double frequency = TargetFrequencyOfRow(row);
  return frequency > 0 ? Format(kFrequency.Get(), TruncateToInt32(frequency)) : kNoFrequency;
}

float TargetPeriod(double period, int sampleRate) {
  const bool valid = period >= 1 && sampleRate / period >= kLowestFrequency;
  return valid ? static_cast<float>(period) : 0.0f;
}

TargetCurve OnVoicedFrames(std::span<const float> curve, std::span<const float> present, int sampleRate) {
  TargetCurve target(present.size(), 0.0f);
  for (std::size_t i = 0; i < std::min(curve.size(), present.size()); ++i)
    if (present[i] >= kVoicedFrom) target[i] = TargetPeriod(static_cast<double>(curve[i]), sampleRate);
  return target;
}

TargetCurve ScaledTarget(std::span<const float> present, double factor, int sampleRate) {
  TargetCurve target(present.size(), 0.0f);
  for (std::size_t i = 0; i < present.size(); ++i)
    if (present[i] >= kVoicedFrom)
      target[i] = TargetPeriod(static_cast<double>(present[i]) / factor, sampleRate);
  return target;
}

TargetDrawing::Result TargetDrawing::AddPoint(TargetCurve& target, Point point, int sampleRate) {
  if (point.x < 0 || point.x >= std::ssize(target) || point.y < 0 || point.y >= kTargetRows)
    return Result::Ignored;
  if (!points_.empty() && point.x < points_.back().x) return Result::Ignored;
  if (std::ssize(points_) >= kMostTargetPoints) return Result::Full;
  strokeFrom_ = 0;
  if (!points_.empty()) {
    const Point from = points_.back();
    for (int frame = from.x; frame <= point.x; ++frame) {
      const double share = point.x > from.x ? (frame - from.x) / static_cast<double>(point.x - from.x) : 1.0;
      const double frequency = TargetFrequencyOfRow(from.y + (point.y - from.y) * share);
      target[static_cast<std::size_t>(frame)] =
          frequency > 0 ? TargetPeriod(sampleRate / frequency, sampleRate) : 0.0f;
    }
  }
  points_.push_back(point);
  return Result::Added;
}

void TargetDrawing::DrawTo(TargetCurve& target, Point point, int sampleRate) {
  if (points_.empty()) return;
  const std::size_t kept = strokeFrom_ > 0 ? strokeFrom_ : points_.size();
  TargetDrawing stroke;
  stroke.points_ = {points_.back()};
  if (stroke.AddPoint(target, point, sampleRate) != Result::Added) return;
  // The end of the stroke before goes; where there is no room for another point, so does its start.
  points_.resize(std::min<std::size_t>(kept, kMostTargetPoints - 1));
  points_.push_back(point);
  strokeFrom_ = kept;
}

void TargetDrawing::End(TargetCurve& target, std::span<const float> present) {
  if (!points_.empty())
    for (int frame = points_.front().x; frame <= points_.back().x; ++frame)
      if (!(present[static_cast<std::size_t>(frame)] >= kVoicedFrom))
        target[static_cast<std::size_t>(frame)] = 0;
  Drop();
}

}  // namespace parlowen
