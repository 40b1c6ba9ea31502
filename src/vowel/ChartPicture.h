#pragma once
#include <string>
#include <vector>

#include "ui/Picture.h"
#include "vowel/VowelChart.h"

namespace parlowen {

/// The outline of a point shape around x, y, one pixel wide.
void AddShape(Picture& picture, PointShape shape, int x, int y, Colour colour);

/// The name of a vowel or of a group, with the upper left corner of its text at x, y.
void AddName(Picture& picture, int x, int y, const std::string& name, Colour colour = colours::kText);

/// The frame of a chart, columns 19..640, from a row to the bottom of the picture.
void AddChartFrame(Picture& picture, int top);

/// The table averages of these speaker classes, always in frequency coordinates: crosses with their phonetic
/// labels.
void AddAverages(Picture& picture, const std::vector<int>& speakerClasses, const FrequencyAxes& axes);

/// Ticks and names of the frequency axes: F1 from `top` to `bottom` at column `column1`, F2 and F3 along row
/// `top`.
void AddFrequencyAxes(Picture& picture, const FrequencyAxes& axes, int column1, int top, int bottom,
                      int highestF2);

/// The point chart: axes, all points, averages. Rows count from the top of the amplitude pane; the first free
/// one is kChartTop.
Picture PointChartPicture(const VowelChart& chart, const std::vector<int>& averages, bool showNumbers,
                          int width, int height);
inline constexpr int kChartTop = 110;

/// The value of the point under the pointer; "" for none.
std::string PointChartHover(const VowelChart& chart, Point at);

/// The entry of `count` places that lies within 6 pixels of `at` and nearest to it; −1 for none.
template <typename PlaceOf>
int NearestPlace(Point at, int count, PlaceOf placeOf) {
  constexpr int kReach = 6;
  int nearest = -1;
  long long best = kReach * kReach + 1;
  for (int i = 0; i < count; ++i) {
    const Point place = placeOf(i);
    const long long dx = static_cast<long long>(place.x) - at.x, dy = static_cast<long long>(place.y) - at.y;
    if (dx * dx + dy * dy < best) {
      best = dx * dx + dy * dy;
      nearest = i;
    }
  }
  return nearest;
}

}  // namespace parlowen
