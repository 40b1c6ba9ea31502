#pragma once
#include <array>
#include <string>

#include "ui/Text.h"

namespace parlowen {

/// What an axis in semitones is called.
inline constexpr UiText kSemitoneHead = "半音（64Hz）";

/// A tone is told by its pitch at 0, 10 .. 100 % of its duration.
inline constexpr int kTonePoints = 11;
using TonePoints = std::array<double, kTonePoints>;

/// Hertz of semitones above 64 Hz: 64·2^(st/12), the reverse of SemitonesOf.
double ToneHertz(double semitones);

/// The pitch range of a speaker. Limits that are not known are NaN.
struct ToneRange {
  double lowHertz, highHertz;
  double low, high;  ///< the same in semitones

  ToneRange();
  static ToneRange OfHertz(double low, double high);
  static ToneRange OfSemitones(double low, double high);
  /// At least one semitone wide: below that, degrees would only magnify the error of measurement.
  bool Spans() const { return high - low >= 1; }
};

/// Mean and standard deviation of all points of all group means, in semitones; NaN where unknown.
struct ToneSpread {
  double mean, deviation;
  ToneSpread();
};

/// T = 5·(st − low)/(high − low): the T value of Shi Feng (1986) with the logarithm of the frequency, which is
/// 5·(lg x − lg b)/(lg a − lg b) with a and b the range's upper and lower limit. 0..5 inside the range, and
/// degree d is the band d − 1 .. d. NaN where the range spans no semitone.
double ToneT(double semitones, const ToneRange& range);
/// D = 1 + 4·(st − low)/(high − low): the five degrees of Chao (1930) as lines, 1 at the lowest pitch and 5 at
/// the highest. NaN like T.
double ToneD(double semitones, const ToneRange& range);
/// LZ = (st − mean)/deviation: the logarithmic z-score of Rose (1987) and Zhu (1999). NaN where the deviation is
/// not above 0.
double ToneLz(double semitones, const ToneSpread& spread);

/// The degree 1..5 that a T value lies in: floor(T) + 1, held to 1..5.
int ToneDegree(double t);

/// The tone in digits ("55", "35", "214", "51"): the degrees of the beginning (mean T of points 0 and 1) and the
/// end (points 9 and 10); between them that of the point 2..8 that lies farthest outside the interval of the
/// two, if it does so by more than 0.5. "" where a T value is no number.
std::string ToneDigits(const TonePoints& t);

/// What a tone pattern is drawn in.
enum class ToneAxis { T, D, Semitones, Hertz, Lz };
inline constexpr int kToneAxes = 5;

/// Semitones in the unit of an axis.
struct ToneScale {
  ToneAxis axis = ToneAxis::T;
  ToneRange range;
  ToneSpread spread;

  /// NaN where the axis is not defined.
  double Of(double semitones) const;
  TonePoints Of(const TonePoints& semitones) const;
  bool IsDefined() const;
};

/// The T values of eleven points.
TonePoints ToneTs(const TonePoints& semitones, const ToneRange& range);

}  // namespace parlowen
