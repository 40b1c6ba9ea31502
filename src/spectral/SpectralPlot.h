#pragma once
#include <algorithm>
#include <string>

#include "base/Arithmetic.h"
#include "ui/Picture.h"

namespace parlowen {

/// How curves over 256 frequency points lie in a picture: point k at `left` + k·perPoint, a level at `base` −
/// level·perUnit, clamped to 9999 rows on either side.
struct SpectralPlot {
  int left = 100, base = 0;
  double perPoint = 2, perUnit = 2;
  int points = 256;  ///< that are drawn
  int sampleRate = 0;

  int XOf(double point) const { return left + TruncateToInt32(point * perPoint); }
  int YOf(double level) const { return base - TruncateToInt32(std::clamp(level * perUnit, -9999.0, 9999.0)); }
  int Right() const { return XOf(points); }
  /// The point under a column; outside of the curve −1.
  int PointAt(int x) const {
    const int point = TruncateToInt32((x - left) / perPoint);
    return x >= left && point < points ? point : -1;
  }
};

PolylineMark CurveOf(const SpectralPlot& plot, const double* levels, Colour colour);

/// Both axes: a tick every 1000 Hz up to `kiloHertz` with its number, "F(KHz)"; a line every `step` dB up to
/// `top`, a dB being `unitsPerDecibel` units high, "P(db)".
void AddAxes(Picture& picture, const SpectralPlot& plot, int kiloHertz, int step, int top,
             double unitsPerDecibel);

/// A line of text, 13 pixels high.
void AddLine(Picture& picture, int x, int y, std::string text, Colour colour = colours::kText);

}  // namespace parlowen
