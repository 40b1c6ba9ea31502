#include "articulation/TractEstimate.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace parlowen {
namespace {

constexpr double kSoundSpeed = 35000;                                     // cm/s
constexpr double kShortest = 12, kLongest = 20, kCustomaryLength = 17.5;  // cm
constexpr double kSmallest = 0.01;                                        // Bark², keeps a weight finite
constexpr double kTubeRate = 8000;                                        // Hz
constexpr int kOrder = 8;

struct VowelTarget {
  const char* name;
  double f1, f2, f3;  ///< Hz
};
constexpr VowelTarget kVowels[] = {{"a", 760, 1280, 2500}, {"o", 480, 850, 2450},   {"e", 500, 1250, 2450},
                                   {"ê", 560, 1750, 2500}, {"i", 290, 2300, 3000},  {"u", 330, 720, 2350},
                                   {"ü", 290, 1950, 2350}, {"i1", 370, 1400, 2650}, {"i2", 390, 1650, 2600},
                                   {"er", 520, 1350, 1750}};

double BarkOf(double frequency) { return 7 * std::asinh(frequency / 650); }

/// Of an even number of values the mean of the middle two.
double MedianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

}  // namespace

std::optional<FourFormants> MedianFormants(std::span<const FormantFrame> frames) {
  std::array<std::vector<double>, 4> found;
  for (const FormantFrame& frame : frames) {
    if (frame.count < 3) continue;
    for (std::size_t i = 0; i < 4 && static_cast<int>(i) < frame.count; ++i)
      found[i].push_back(frame.frequency[i]);
  }
  if (found[0].empty()) return {};
  FourFormants formants;
  for (std::size_t i = 0; i < 3; ++i) formants[i] = MedianOf(found[i]);
  formants[3] = found[3].empty() ? 1.4 * formants[2] : MedianOf(found[3]);
  return formants;
}

double TractLength(double f4) { return std::clamp(7 * kSoundSpeed / (4 * f4), kShortest, kLongest); }

std::optional<TubeAreas> AreasOf(const FourFormants& formants) {
  double before = 0;
  for (const double formant : formants) {
    if (!(formant > before) || formant >= kTubeRate / 2) return {};
    before = formant;
  }
  // A(z), one pair of poles after the other; a[0] is 1.
  std::array<double, kOrder + 1> a{1};
  int order = 0;
  for (const double formant : formants) {
    const double bandwidth = 50 * (1 + formant * formant / 6000000);
    const double radius = std::exp(-std::numbers::pi * bandwidth / kTubeRate);
    const double first = -2 * radius * std::cos(2 * std::numbers::pi * formant / kTubeRate);
    const double second = radius * radius;
    order += 2;
    for (int i = order; i > 0; --i) {
      const auto at = static_cast<std::size_t>(i);
      a[at] += first * a[at - 1] + (i > 1 ? second * a[at - 2] : 0);
    }
  }
  // Down to the reflection coefficients; the poles lie inside the circle, so no k reaches 1.
  std::array<double, kOrder + 1> k{};
  for (; order > 0; --order) {
    const auto m = static_cast<std::size_t>(order);
    k[m] = a[m];
    const auto higher = a;
    for (std::size_t i = 1; i < m; ++i) a[i] = (higher[i] - k[m] * higher[m - i]) / (1 - k[m] * k[m]);
  }
  TubeAreas areas;
  double area = 1;
  for (std::size_t section = 0; section < kTubeSections; ++section) {
    areas[kTubeSections - 1 - section] = area;  // the first one ends at the lips
    area *= (1 - k[section + 1]) / (1 + k[section + 1]);
  }
  const double largest = *std::max_element(areas.begin(), areas.end());
  for (double& one : areas) one /= largest;
  return areas;
}

TractEstimate EstimateTract(const FourFormants& formants) {
  TractEstimate estimate;
  estimate.formants = formants;
  estimate.length = TractLength(formants[3]);
  FourFormants normal;
  for (std::size_t i = 0; i < normal.size(); ++i)
    normal[i] = formants[i] * estimate.length / kCustomaryLength;
  double sum = 0, largest = 0;
  for (const VowelTarget& vowel : kVowels) {
    const double d1 = BarkOf(normal[0]) - BarkOf(vowel.f1), d2 = BarkOf(normal[1]) - BarkOf(vowel.f2),
                 d3 = BarkOf(normal[2]) - BarkOf(vowel.f3);
    const double weight = 1 / (d1 * d1 + d2 * d2 + d3 * d3 / 4 + kSmallest);
    const Articulation target = ArticulationOf(*FindTarget(vowel.name));
    for (std::size_t i = 0; i < kTongueLines; ++i) estimate.tongue[i] += weight * target.tongue[i];
    estimate.lips.opening += weight * target.lips.opening;
    estimate.lips.width += weight * target.lips.width;
    estimate.lips.protrusion += weight * target.lips.protrusion;
    sum += weight;
    if (weight > largest) {
      largest = weight;
      estimate.nearest = vowel.name;
    }
  }
  for (double& height : estimate.tongue) height /= sum;
  estimate.lips.opening /= sum;
  estimate.lips.width /= sum;
  estimate.lips.protrusion /= sum;
  estimate.areas = AreasOf(normal);
  return estimate;
}

}  // namespace parlowen
