#pragma once
#include <span>
#include <vector>

#include "synthesis/TargetCurve.h"
#include "ui/Picture.h"

namespace parlowen {

/// Rows of the drawing area, low frequencies at the bottom. Rows 32..224 stand for 512..64 Hz.
inline constexpr int kTargetRows = 256, kHighestTargetRow = 32, kLowestTargetRow = 224;
/// Points of one setting.
inline constexpr int kMostTargetPoints = 50;

/// Hz of a row: 512·2^((32 − row)/64); 0 outside of rows 32..224.
double TargetFrequencyOfRow(double row);
/// Nearest row of a frequency above 0, also beyond the rows that there are.
int RowOfTargetFrequency(double frequency);

/// The readout of a row.
std::string TargetReadout(int row);

/// One period as the target holds it: 0 for what is no period of at least one sample and at least 15 Hz.
float TargetPeriod(double period, int sampleRate);

/// The curve on as many frames as `present` has, 0 where `present` is unvoiced (below 0.5) and behind the
/// curve's end.
TargetCurve OnVoicedFrames(std::span<const float> curve, std::span<const float> present, int sampleRate);

/// The melody of `present` with all its frequencies multiplied by `factor`.
TargetCurve ScaledTarget(std::span<const float> present, double factor, int sampleRate);

/// One setting: a curve drawn from left to right. The points are {frame, row}.
class TargetDrawing {
 public:
  enum class Result { Added, Ignored, Full };

  /// Adds a point; between two of them the row goes linearly, in fractions, and each frame of the target,
  /// both ends included, takes its row's period. A point on the last one's frame moves that frame. Points
  /// outside of the target or left of the last one are ignored.
  Result AddPoint(TargetCurve& target, Point point, int sampleRate);

  /// Goes on from the last point to this one, freehand: the target follows, and only the stroke's end is kept as a
  /// point, so that a stroke is no more than two of them. What AddPoint ignores is ignored.
  void DrawTo(TargetCurve& target, Point point, int sampleRate);

  /// Ends the setting: its frames whose present value is below 0.5 lose their target.
  void End(TargetCurve& target, std::span<const float> present);

  /// Forgets the points; the target stays.
  void Drop() {
    points_.clear();
    strokeFrom_ = 0;
  }

  const std::vector<Point>& points() const { return points_; }

 private:
  std::vector<Point> points_;
  std::size_t strokeFrom_ = 0;  ///< points there were when the stroke in work began; 0 for none
};

}  // namespace parlowen
