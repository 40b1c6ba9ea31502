#include "vowel/VowelChart.h"

#include <cmath>

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

std::int16_t Pixel(double value) { return SaturateInt16(TruncateToInt64(value)); }

}  // namespace

double Bark(double frequency) {
  return 7.0 *
         std::log(frequency * (1.0 / 650.0) + std::sqrt(frequency * frequency * (1.0 / 422500.0) + 1.0));
}

ChartPlace FrequencyPlace(double f1, double f2, double f3, const FrequencyAxes& axes) {
  ChartPlace place;
  place.y = SaturateInt16(LowInt16(TruncateToInt64(f1 - 200.0)) / 4 + axes.base + 20);
  place.x = Pixel(axes.column2 - 100.0 * std::log2(f2 / 500.0));
  if (f3 > f2) place.x3 = Pixel(FrequencyAxes::kColumn3 + 100.0 * std::log2(f3 / 1500.0));
  return place;
}

ChartPlace BarkPlace(double f1, double f2, int referenceF0) {
  const double b0 = Bark(referenceF0), b1 = Bark(f1), b2 = Bark(f2);
  return {Pixel(330.0 - (b2 - b1) * 25.0), Pixel((b1 - b0 + 1.0) * 40.0 + 200.0), 0};
}

ChartPlace VowelChart::PlaceOf(double f1, double f2, double f3) const {
  return barkMode ? BarkPlace(f1, f2, referenceF0) : FrequencyPlace(f1, f2, f3, kPointAxes);
}

bool VowelChart::Add(double f1, double f2, double f3) {
  if (count >= kCapacity) return false;
  const ChartPlace place = PlaceOf(f1, f2, f3);
  points[static_cast<std::size_t>(count++)] = {place.x,
                                               place.y,
                                               place.x3,
                                               shape,
                                               static_cast<float>(f1),
                                               static_cast<float>(f2),
                                               static_cast<float>(f3)};
  return true;
}

void VowelChart::PlaceAgain() {
  for (int i = 0; i < count; ++i) {
    VowelPoint& point = points[static_cast<std::size_t>(i)];
    const ChartPlace place = PlaceOf(point.f1, point.f2, point.f3);
    point.x = place.x;
    point.y = place.y;
    point.x3 = place.x3;
  }
}

}  // namespace parlowen
