// How well areas from formants fit tubes whose areas are known: eight sections, closed at the glottis, open at the lips,
// without losses. Their resonances are the zeros of the chain matrix's last element. Printed per tube: F1..F4, the length
// estimated, and the rms of log2(estimated/known) in octaves with both means removed.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "articulation/TractEstimate.h"

namespace parlowen {
namespace {

constexpr double kSoundSpeed = 35000;  // cm/s

/// The pressure at closed glottis end over flow at the lips: zero at a resonance. Areas from the glottis.
double Response(const TubeAreas& areas, double length, double frequency) {
  const double angle = 2 * std::acos(-1.0) * frequency / kSoundSpeed * length / kTubeSections;
  double pressure = 0, flow = 1;  // at the lips; the flow is real, the pressure imaginary
  for (std::size_t i = kTubeSections; i-- > 0;) {
    const double before = pressure * std::cos(angle) + flow * std::sin(angle) / areas[i];
    flow = flow * std::cos(angle) - pressure * areas[i] * std::sin(angle);
    pressure = before;
  }
  return flow;
}

FourFormants ResonancesOf(const TubeAreas& areas, double length) {
  FourFormants found{};
  std::size_t count = 0;
  constexpr double kStep = 2;  // Hz
  for (double f = kStep; f < 8000 && count < found.size(); f += kStep) {
    double low = f, high = f + kStep;
    if (Response(areas, length, low) * Response(areas, length, high) > 0) continue;
    for (int i = 0; i < 40; ++i) {
      const double middle = (low + high) / 2;
      (Response(areas, length, low) * Response(areas, length, middle) <= 0 ? high : low) = middle;
    }
    found[count++] = low;
  }
  return found;
}

double Octaves(const TubeAreas& estimated, const TubeAreas& known) {
  double sum = 0, squares = 0;
  for (std::size_t i = 0; i < kTubeSections; ++i) {
    const double d = std::log2(estimated[i] / known[i]);
    sum += d;
    squares += d * d;
  }
  const double mean = sum / kTubeSections;
  return std::sqrt(squares / kTubeSections - mean * mean);
}

struct Tube {
  std::string name;
  TubeAreas areas;  ///< cm², from the glottis
  double length = 17.5;
};

std::vector<Tube> Tubes() {
  std::vector<Tube> tubes = {
      {"uniform", {4, 4, 4, 4, 4, 4, 4, 4}},
      {"a-like", {1, 1, 1.3, 2.5, 5, 7, 8, 6}},
      {"e-like", {2.5, 3, 3.5, 4, 4.5, 5, 5, 4}},
      {"i-like", {5, 9, 10, 8, 2, 0.8, 1, 2.5}},
      {"u-like", {3, 6, 5, 1, 2, 8, 9, 0.8}},
      {"narrow, wide", {1, 1, 1, 1, 4, 4, 4, 4}},
      {"wide, narrow", {4, 4, 4, 4, 1, 1, 1, 1}},
      {"neck", {4, 4, 4, 1, 4, 4, 4, 4}},
      {"a-like, short", {1, 1, 1.3, 2.5, 5, 7, 8, 6}, 14.5},
      {"i-like, short", {5, 9, 10, 8, 2, 0.8, 1, 2.5}, 14.5},
  };
  // Smooth ones: neighbours differ by half an octave at most.
  std::mt19937 random(20261121);
  for (int number = 1; number <= 10; ++number) {
    Tube tube{"smooth " + std::to_string(number), {}};
    double octave = 1.5;
    for (double& area : tube.areas) {
      octave = std::clamp(octave + (static_cast<double>(random() % 1001) / 1000 - 0.5), 0.0, 3.0);
      area = std::exp2(octave);
    }
    tubes.push_back(tube);
  }
  return tubes;
}

}  // namespace
}  // namespace parlowen

int main() {
  using namespace parlowen;
  std::printf("%-16s %6s %6s %6s %6s  %6s  %s\n", "tube", "F1", "F2", "F3", "F4", "cm", "octaves off");
  double sum = 0, worst = 0;
  const std::vector<Tube> tubes = Tubes();
  for (const Tube& tube : tubes) {
    const FourFormants f = ResonancesOf(tube.areas, tube.length);
    const TractEstimate estimate = EstimateTract(f);
    std::printf("%-16s %6.0f %6.0f %6.0f %6.0f  %6.1f  ", tube.name.c_str(), f[0], f[1], f[2], f[3],
                estimate.length);
    if (!estimate.areas) {
      std::printf("no areas\n");
      continue;
    }
    const double off = Octaves(*estimate.areas, tube.areas);
    sum += off;
    worst = std::max(worst, off);
    std::printf("%.2f\n", off);
  }
  std::printf("mean %.2f, worst %.2f octaves (aim: 0.75)\n", sum / static_cast<double>(tubes.size()), worst);
  return 0;
}
