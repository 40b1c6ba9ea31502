#pragma once
#include <array>
#include <cstdint>

namespace parlowen {

/// Bark(f) = 7·asinh(f/650), f in Hz, written as 7·ln(f/650 + √(f²/422500 + 1)).
double Bark(double frequency);

/// Where a vowel stands on a chart, in pixels.
struct ChartPlace {
  std::int16_t x = 0;   ///< F2, or B2 − B1
  std::int16_t y = 0;   ///< F1, or B1 − B0
  std::int16_t x3 = 0;  ///< F3; 0 where it has no mark
};

/// The axes of a chart in frequency coordinates. F1 grows downwards, 4 Hz a pixel; F2 runs to the left and F3
/// to the right, 100 pixels an octave.
struct FrequencyAxes {
  int base;                             ///< F1 = 200 Hz is row base + 20
  int column2;                          ///< of F2 = 500 Hz
  static constexpr int kColumn3 = 380;  ///< of F3 = 1500 Hz
};
inline constexpr FrequencyAxes kPointAxes{200, 300}, kSegmentAxes{150, 330};

/// y = trunc(F1 − 200)/4 + base + 20, x = trunc(column2 − 100·log2(F2/500)), x3 = trunc(380 +
/// 100·log2(F3/1500)); only an F3 above F2 has a mark. Truncation is toward zero; places beyond 16 bits are
/// clamped.
ChartPlace FrequencyPlace(double f1, double f2, double f3, const FrequencyAxes& axes);

/// y = trunc((B1 − B0 + 1)·40 + 200), x = trunc(330 − (B2 − B1)·25) with B0 the Bark of the speaker's
/// reference pitch.
ChartPlace BarkPlace(double f1, double f2, int referenceF0);

/// Point shapes as they are stored; the cross is for table averages. A file may hold any other number: it is
/// drawn as a circle and written back as it was.
enum class PointShape : std::int16_t { Circle, Square, Diamond, Triangle, InvertedTriangle, Cross };

struct VowelPoint {
  std::int16_t x = 0, y = 0, x3 = 0;
  PointShape shape = PointShape::Circle;
  float f1 = 0, f2 = 0, f3 = 0;  ///< Hz; F3 is 0 where there is none
  bool operator==(const VowelPoint&) const = default;
};

/// The points that are collected, over as many sounds as the user likes, in the order they were added.
struct VowelChart {
  static constexpr int kCapacity = 200;
  static constexpr int kMostClicked = 199;  ///< clicks stop here; a typed point may be the last

  int count = 0;
  PointShape shape = PointShape::Circle;  ///< of every new point
  std::int16_t referenceF0 = 0;           ///< Hz; 0 = not yet entered
  bool loadedFromFile = false;            ///< the next drawing does not ask for the coordinates
  bool barkMode = false;
  bool connectPoints = false;  ///< in segment charts
  std::array<VowelPoint, kCapacity> points{};

  ChartPlace PlaceOf(double f1, double f2, double f3) const;
  /// Places a point and stores it behind the others; false when there is no room.
  bool Add(double f1, double f2, double f3);
  /// Places all points anew, after a change of the coordinates.
  void PlaceAgain();
};

}  // namespace parlowen
