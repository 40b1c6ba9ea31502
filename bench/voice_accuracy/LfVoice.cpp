#include "voice_accuracy/LfVoice.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace parlowen::bench {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kFine = 16;  // source values a sample, so that its steps fold back little
constexpr int kPeakLevel = 12000;

/// Formants and bandwidths in Hz (a man's, after Fant and Peterson and Barney).
struct Tract {
  double f[5], b[5];
};
constexpr Tract kTracts[] = {{{730, 1090, 2440, 3500, 4500}, {60, 80, 110, 170, 250}},
                             {{530, 1840, 2480, 3500, 4500}, {50, 80, 110, 170, 250}},
                             {{270, 2290, 3010, 3600, 4500}, {45, 90, 130, 170, 250}},
                             {{570, 840, 2410, 3400, 4500}, {50, 70, 110, 170, 250}},
                             {{300, 870, 2240, 3400, 4500}, {45, 70, 110, 170, 250}}};

/// One LF pulse of period 1: t = 0 is the opening, te the main excitation, of height −1.
struct Pulse {
  double te = 0, omega = 0, alpha = 0, epsilon = 0, ta = 0, e0 = 0;

  explicit Pulse(double rd) {
    const double ra = (-1 + 4.8 * rd) / 100, rk = (22.4 + 11.8 * rd) / 100;
    const double rg = rk / (4 * (0.11 * rd / (0.5 + 1.2 * rk) - ra));
    const double tp = 1 / (2 * rg);
    te = tp * (1 + rk);
    omega = kPi / tp;
    ta = std::max(ra, 0.002);
    for (int i = 0; i < 200; ++i) {
      if (i == 0) epsilon = 1 / ta;
      epsilon = (1 - std::exp(-epsilon * (1 - te))) / ta;
    }
    // The growth that lets the flow end where it began.
    double low = -50, high = 200;
    for (int i = 0; i < 200; ++i) {
      alpha = (low + high) / 2;
      (Area() > 0 ? low : high) = alpha;
    }
    e0 = -1 / (std::exp(alpha * te) * std::sin(omega * te));
  }

  double Area() const {
    const double scale = -1 / (std::exp(alpha * te) * std::sin(omega * te));
    const double open =
        scale *
        (std::exp(alpha * te) * (alpha * std::sin(omega * te) - omega * std::cos(omega * te)) + omega) /
        (alpha * alpha + omega * omega);
    const double tail = std::exp(-epsilon * (1 - te));
    const double closing = -((1 - tail) / epsilon - (1 - te) * tail) / (epsilon * ta);
    return open + closing;
  }

  double At(double t) const {
    if (t <= te) return e0 * std::exp(alpha * t) * std::sin(omega * t);
    return -(std::exp(-epsilon * (t - te)) - std::exp(-epsilon * (1 - te))) / (epsilon * ta);
  }
};

GlottalMeasures TruthOf(const Pulse& pulse, double f0, int sampleRate) {
  const double fineRate = sampleRate * 64.0;
  const int length = static_cast<int>(fineRate / f0 + 0.5);
  std::vector<double> derivative, flow, moduli;
  for (int i = 0; i <= length; ++i) {
    const double t = pulse.te + static_cast<double>(i) / length;
    derivative.push_back(i == length ? -1.0 : pulse.At(t > 1 ? t - 1 : t));
  }
  return MeasureGlottalPeriod(derivative, fineRate, flow, moduli);
}

/// Through a windowed-sinc low-pass and every kFine-th value.
std::vector<double> Decimate(const std::vector<double>& fine) {
  const int half = 8 * kFine;
  std::vector<double> taps, out;
  for (int k = -half; k <= half; ++k) {
    const double x = kPi * 0.92 * k / kFine;
    taps.push_back((k == 0 ? 1.0 : std::sin(x) / x) * (0.54 + 0.46 * std::cos(kPi * k / half)) * 0.92 /
                   kFine);
  }
  for (std::size_t centre = 0; centre < fine.size(); centre += kFine) {
    double sum = 0;
    for (int k = -half; k <= half; ++k) {
      const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(centre) + k;
      if (at >= 0 && at < std::ssize(fine))
        sum += taps[static_cast<std::size_t>(k + half)] * fine[static_cast<std::size_t>(at)];
    }
    out.push_back(sum);
  }
  return out;
}

void Resonate(std::vector<double>& signal, double frequency, double bandwidth, double rate) {
  if (frequency > 0.47 * rate) return;
  const double r = std::exp(-kPi * bandwidth / rate), c = 2 * r * std::cos(2 * kPi * frequency / rate);
  const double gain = 1 - c + r * r;
  double one = 0, two = 0;
  for (double& value : signal) {
    value = gain * value + c * one - r * r * two;
    two = one;
    one = value;
  }
}

}  // namespace

LfVoice MakeLfVoice(const LfSettings& settings) {
  const Pulse pulse(settings.rd);
  LfVoice voice;
  voice.truth = TruthOf(pulse, settings.f0, settings.sampleRate);
  const double fineRate = static_cast<double>(settings.sampleRate) * kFine;
  std::vector<double> fine(static_cast<std::size_t>(settings.seconds * fineRate));
  std::mt19937 random(7);
  // A uniform draw of ± a changes by 2a/3 on average from one to the next.
  std::uniform_real_distribution<double> draw(-1.5, 1.5);
  std::vector<double> periods, heights;
  for (double at = 0; at < static_cast<double>(fine.size());) {
    const double period = fineRate / settings.f0 * (1 + settings.jitter / 100 * draw(random));
    const double height = 1 + settings.shimmer / 100 * draw(random);
    for (std::int64_t i = static_cast<std::int64_t>(std::ceil(at)); static_cast<double>(i) < at + period; ++i)
      if (i < std::ssize(fine))
        fine[static_cast<std::size_t>(i)] = height * pulse.At((static_cast<double>(i) - at) / period);
    voice.closures.push_back((at + pulse.te * period) / kFine);
    periods.push_back(period);
    heights.push_back(height);
    at += period;
  }
  const auto perturbation = [](const std::vector<double>& values) {
    double differences = 0, sum = values[0];
    for (std::size_t i = 1; i < values.size(); ++i) {
      differences += std::fabs(values[i] - values[i - 1]);
      sum += values[i];
    }
    return 100 * differences / static_cast<double>(values.size() - 1) /
           (sum / static_cast<double>(values.size()));
  };
  voice.jitter = perturbation(periods);
  voice.shimmer = perturbation(heights);

  std::vector<double> speech = Decimate(fine);
  const Tract& tract = kTracts[settings.vowel];
  for (int i = 0; i < 5; ++i) Resonate(speech, tract.f[i], tract.b[i], settings.sampleRate);
  double power = 0, peak = 0;
  for (const double value : speech) {
    power += value * value;
    peak = std::max(peak, std::fabs(value));
  }
  if (settings.noise >= 0) {
    std::normal_distribution<double> hiss(
        0, std::sqrt(power / static_cast<double>(speech.size())) * std::pow(10, -settings.noise / 20));
    for (double& value : speech) value += hiss(random);
  }
  for (const double value : speech)
    voice.samples.push_back(static_cast<std::int16_t>(
        std::clamp(std::lround((settings.inverted ? -1 : 1) * value / peak * kPeakLevel), -32768L, 32767L)));
  return voice;
}

}  // namespace parlowen::bench
