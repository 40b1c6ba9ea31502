#pragma once
#include <array>

#include "prosody/ToneState.h"
#include "ui/Picture.h"
#include "ui/Text.h"

namespace parlowen {

/// The button that gives all tones one duration, in both windows that draw them.
inline constexpr UiText kEqualButton = "时长归一", kEqualHelp = "按下：各调时长相同；弹起：横轴为毫秒";

/// Where the points of a tone lie in a drawing: point p at column 60 + p·(width − 200)/10, or with durations at
/// 60 + ms·(width − 200)/longest; a value at row height − 60 − (value − low)·(height − 90)/(high − low), held to
/// low..high. All quotients are truncated.
struct ToneLayout {
  int width = 0, height = 0;
  double low = -0.5, high = 5.5;
  double longest = 0;  ///< ms at the right end, a multiple of 50; 0 where durations are made equal

  Point At(int p, double milliseconds, double value) const;
  int Row(double value) const;
  int Right() const { return width - 140; }
  int Bottom() const { return height - 60; }
  int Top() const { return Bottom() - (height - 90); }
};
using ToneShape = std::array<Point, kTonePoints>;

/// The eleven points of a tone of so many ms.
ToneShape ToneShapeOf(const ToneLayout& layout, double milliseconds, const TonePoints& values);

/// The window "degree": T values of all curves in the same limits, their digits at the ends.
Picture DegreePicture(const DegreeState& degree, int width, int height);

/// The window "tones": a curve a group, or the items of one group in grey under their mean and a band of one
/// standard deviation.
Picture TonePicture(const ToneState& tones, int width, int height);

/// The item (of a group) or the group (of the pattern) whose curve is nearest to the point, within 8 pixels; −1
/// when there is none.
int ToneAt(const ToneState& tones, Point at, int width, int height);

/// The same in the window "degree".
int DegreeCurveAt(const DegreeState& degree, Point at, int width, int height);

}  // namespace parlowen
