#include "prosody/ToneScales.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "pitch/SemitoneScale.h"

namespace parlowen {
namespace {

constexpr double kReference = 64.0;  // Hz
constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();
constexpr double kTurn = 0.5;  // degrees outside of beginning and end that make a turning point

/// Where a pitch lies in the range: 0 at its lower, 1 at its upper limit.
double ShareOf(double semitones, const ToneRange& range) {
  return range.Spans() ? (semitones - range.low) / (range.high - range.low) : kUnknown;
}

}  // namespace

double ToneHertz(double semitones) { return kReference * std::exp2(semitones / 12.0); }

ToneRange::ToneRange() : lowHertz(kUnknown), highHertz(kUnknown), low(kUnknown), high(kUnknown) {}

ToneRange ToneRange::OfHertz(double low, double high) {
  ToneRange range;
  range.lowHertz = low;
  range.highHertz = high;
  range.low = SemitonesOf(low);
  range.high = SemitonesOf(high);
  return range;
}

ToneRange ToneRange::OfSemitones(double low, double high) {
  ToneRange range;
  range.lowHertz = ToneHertz(low);
  range.highHertz = ToneHertz(high);
  range.low = low;
  range.high = high;
  return range;
}

ToneSpread::ToneSpread() : mean(kUnknown), deviation(kUnknown) {}

double ToneT(double semitones, const ToneRange& range) { return 5.0 * ShareOf(semitones, range); }

double ToneD(double semitones, const ToneRange& range) { return 1.0 + 4.0 * ShareOf(semitones, range); }

double ToneLz(double semitones, const ToneSpread& spread) {
  return spread.deviation > 0 ? (semitones - spread.mean) / spread.deviation : kUnknown;
}

int ToneDegree(double t) { return static_cast<int>(std::clamp(std::floor(t) + 1, 1.0, 5.0)); }

std::string ToneDigits(const TonePoints& t) {
  if (!std::all_of(t.begin(), t.end(), [](double value) { return std::isfinite(value); })) return {};
  const double begin = (t[0] + t[1]) / 2, end = (t[9] + t[10]) / 2;
  const double lowest = std::min(begin, end), highest = std::max(begin, end);
  double farthest = 0, turn = 0;
  for (std::size_t p = 2; p <= 8; ++p) {
    const double outside = std::max(lowest - t[p], t[p] - highest);
    if (outside <= farthest) continue;
    farthest = outside;
    turn = t[p];
  }
  std::string digits = std::to_string(ToneDegree(begin));
  if (farthest > kTurn) digits += std::to_string(ToneDegree(turn));
  return digits + std::to_string(ToneDegree(end));
}

double ToneScale::Of(double semitones) const {
  switch (axis) {
    case ToneAxis::T: return ToneT(semitones, range);
    case ToneAxis::D: return ToneD(semitones, range);
    case ToneAxis::Semitones: return semitones;
    case ToneAxis::Hertz: return ToneHertz(semitones);
    case ToneAxis::Lz: return ToneLz(semitones, spread);
  }
  return kUnknown;
}

TonePoints ToneScale::Of(const TonePoints& semitones) const {
  TonePoints values;
  std::transform(semitones.begin(), semitones.end(), values.begin(), [this](double st) { return Of(st); });
  return values;
}

bool ToneScale::IsDefined() const { return std::isfinite(Of(0.0)); }

TonePoints ToneTs(const TonePoints& semitones, const ToneRange& range) {
  return ToneScale{ToneAxis::T, range, {}}.Of(semitones);
}

}  // namespace parlowen
