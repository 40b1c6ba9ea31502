// The voice measures on waves whose jitter, shimmer, noise and harmonics are known.

#include "voice/VoiceMeasures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "dsp/SignalTables.h"
#include "support/Samples.h"

namespace parlowen {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

/// A second of Σ amplitude·sin(2πkf0t) at 16000 Hz with white noise of a standard deviation.
std::vector<std::int16_t> Wave(double f0, const std::vector<double>& amplitudes, double noise = 0) {
  std::mt19937 random(1);
  std::normal_distribution<double> normal;
  std::vector<std::int16_t> samples;
  for (int n = 0; n < 16000; ++n) {
    double sum = noise * normal(random);
    for (std::size_t k = 0; k < amplitudes.size(); ++k)
      sum += amplitudes[k] * std::sin(2 * std::numbers::pi * static_cast<double>(k + 1) * f0 * n / 16000);
    samples.push_back(static_cast<std::int16_t>(std::lround(sum)));
  }
  return samples;
}

TEST(VoiceMeasures, PerturbationIsTheMeanStepOverTheMean) {
  using Runs = std::vector<std::vector<VoiceCycle>>;
  const struct {
    Runs runs;
    double jitter, shimmer;
  } cases[] = {
      {{{{100, 10}, {102, 11}, {100, 10}, {102, 11}}}, 100 * 2 / 101.0, 100 * 1 / 10.5},
      {{{{100, 10}, {100, 10}}, {{120, 12}, {120, 12}}}, 0, 0},                  // runs are not compared
      {{{{100, 10}, {130, 16}, {100, 10}}}, 100 * 30 / 110.0, 100 * 6 / 12.0},   // just neighbours
      {{{{100, 10}, {131, 17}, {100, 10}}}, kNone, kNone},                       // none
      {{{{100, 10}, {kNone, 10}, {100, 10}, {101, 10}}}, 100 / (301 / 3.0), 0},  // an unclear cycle
      {{{{100, 10}}}, kNone, kNone},
  };
  for (const auto& c : cases) {
    const Perturbation found = LocalPerturbation(c.runs);
    EXPECT_TRUE(std::isnan(c.jitter) ? std::isnan(found.jitter) : std::fabs(found.jitter - c.jitter) < 1e-9);
    EXPECT_TRUE(std::isnan(c.shimmer) ? std::isnan(found.shimmer)
                                      : std::fabs(found.shimmer - c.shimmer) < 1e-9);
  }
}

/// Three seconds of cycles that have died away before the next begins: A·e^(−400πt)·sin(1400πt) from moments between
/// samples on.
TEST(VoiceMeasures, TheCyclesOfAMadeVoiceHaveItsJitterAndShimmer) {
  for (const int rate : {8000, 16000})
    for (const double percent : {0.0, 0.2, 1.0, 3.0}) {
      std::mt19937 random(3);
      std::uniform_real_distribution<double> draw(-1.5, 1.5);  // a mean step of 1
      std::vector<std::int16_t> samples(static_cast<std::size_t>(3 * rate));
      std::vector<std::vector<VoiceCycle>> truth(1), found(1);
      for (double at = 100; at < 2.9 * rate;) {
        const double period = rate / 121.3 * (1 + percent / 100 * draw(random));
        const double peak = 20000 * (1 + 2 * percent / 100 * draw(random));
        for (auto n = static_cast<int>(std::ceil(at)); n < at + period; ++n) {
          const double t = (n - at) / rate;
          samples[static_cast<std::size_t>(n)] = static_cast<std::int16_t>(std::lround(
              peak * std::exp(-400 * std::numbers::pi * t) * std::sin(1400 * std::numbers::pi * t)));
        }
        truth[0].push_back({period, peak});
        found[0].push_back({at + rate / 3500.0, 0});  // about the peak of the sine
        at += period;
      }
      found[0].resize(found[0].size() - 2);
      for (VoiceCycle& cycle : found[0])
        cycle = MeasureCycle(SpanOf(samples), static_cast<int>(cycle.period), rate / 121.3);
      const Perturbation made = LocalPerturbation(truth), measured = LocalPerturbation(found);
      EXPECT_NEAR(measured.jitter, made.jitter, 0.02 + 0.05 * made.jitter) << rate << " " << percent;
      EXPECT_NEAR(measured.shimmer, made.shimmer, 0.5 + 0.05 * made.shimmer) << rate << " " << percent;
    }
}

TEST(VoiceMeasures, WhatHasNoPeriodHasNoCycle) {
  const auto samples = Wave(161.7, {3000, 2000});
  EXPECT_FALSE(std::isnan(MeasureCycle(SpanOf(samples), 4000, 99).peak));
  for (const double period : {std::nan(""), 0.0, -99.0, 1e9})
    for (const SampleSpan span : {SpanOf(samples), SampleSpan{samples.data(), 50}}) {
      const VoiceCycle cycle = MeasureCycle(span, 20, period);
      EXPECT_TRUE(std::isnan(cycle.period) && std::isnan(cycle.peak)) << period;
    }
  EXPECT_TRUE(std::isnan(MeasureCycle({samples.data(), 50}, 20, 99).peak));
}

TEST(VoiceMeasures, TheCorrelationAtThePeriodTellsTheNoise) {
  const std::vector<double> amplitudes = {3000, 2000, 1500, 1000, 800, 600, 400, 400, 300, 300};
  double power = 0;
  for (const double a : amplitudes) power += a * a / 2;
  for (const double f0 : {97.3, 161.7, 312.1})  // no whole number of samples
    for (const double ratio : {0.0, 10.0, 20.0, 30.0}) {
      const auto samples = Wave(f0, amplitudes, std::sqrt(power / std::pow(10, ratio / 10)));
      double sum = 0;
      int count = 0;
      for (int centre = 1000; centre < 15000; centre += 160, ++count)
        sum += HarmonicsToNoise(PeriodCorrelation(SpanOf(samples), centre, 16000 / f0));
      EXPECT_NEAR(sum / count, ratio, 1.6) << f0;
    }
  const auto pure = Wave(161.7, amplitudes);
  EXPECT_GT(HarmonicsToNoise(PeriodCorrelation(SpanOf(pure), 8000, 16000 / 161.7)), 40);
  EXPECT_EQ(PeriodCorrelation({pure.data(), 0}, 0, 100), 0);
}

TEST(VoiceMeasures, TheFirstHarmonicsAreToldApart) {
  InitSignalTables();
  for (const double f0 : {80.0, 123.4, 250.0, 430.0}) {
    VoiceSpectrum spectrum(16000);
    const auto samples = Wave(f0, {1000, 4000, 500, 2000});
    spectrum.Take(SpanOf(samples), 8000);
    EXPECT_NEAR(spectrum.HarmonicDifference(f0 * 1.01), 20 * std::log10(1000.0 / 4000), 0.4) << f0;
  }
  VoiceSpectrum slow(1000);
  EXPECT_TRUE(std::isnan(slow.HarmonicDifference(240)));
}

/// The definition, term by term.
double SlowProminence(const std::vector<std::int16_t>& samples, int centre, double lowest, double highest) {
  constexpr int kLength = 819, kSize = 1024;
  const double pi = std::numbers::pi;
  std::vector<double> frame, levels, line;
  double mean = 0;
  for (int n = 0; n < kLength; ++n)
    mean += samples[static_cast<std::size_t>(centre - kLength / 2 + n)] / double{kLength};
  for (int n = 0; n < kLength; ++n)
    frame.push_back((samples[static_cast<std::size_t>(centre - kLength / 2 + n)] - mean) *
                    (0.54 - 0.46 * std::cos(2 * pi * (n + 0.5) / kLength)));
  for (int k = 0; k <= kSize / 2; ++k) {
    double re = 0, im = 0;
    for (int n = 0; n < kLength; ++n) {
      re += frame[static_cast<std::size_t>(n)] * std::cos(2 * pi * k * n / kSize);
      im += frame[static_cast<std::size_t>(n)] * std::sin(2 * pi * k * n / kSize);
    }
    levels.push_back(10 * std::log10(re * re + im * im));
  }
  double n = 0, x = 0, y = 0, xx = 0, xy = 0, peak = -1e9, place = 0;
  for (int q = 16; q < kSize / 2; ++q) {
    double sum = 0;
    for (int k = 0; k < kSize; ++k)
      sum +=
          levels[static_cast<std::size_t>(std::min(k, kSize - k))] * std::cos(2 * pi * k * q / kSize) / kSize;
    const double level = 20 * std::log10(std::fabs(sum));
    n += 1, x += q, y += level, xx += q * q, xy += q * level;
    if (q * lowest <= 16000 && q * highest >= 16000 && level > peak) peak = level, place = q;
  }
  const double slope = (n * xy - x * y) / (n * xx - x * x);
  return peak - (y - slope * x) / n - slope * place;
}

TEST(VoiceMeasures, ThePeakOfTheCepstrumStandsOutAsDefined) {
  InitSignalTables();
  const std::vector<double> pulses(60, 150);  // 125 Hz: a period of whole samples
  double last = 100;
  for (const double noise : {5.0, 50.0, 500.0, 5000.0}) {
    const auto samples = Wave(125, pulses, noise);
    VoiceSpectrum spectrum(16000);
    spectrum.Take(SpanOf(samples), 8000);
    const double found = spectrum.Prominence(64, 500);
    EXPECT_NEAR(found, SlowProminence(samples, 8000, 64, 500), 0.6);  // less the parabola
    EXPECT_LT(found, last);
    last = found;
  }
}

}  // namespace
}  // namespace parlowen
