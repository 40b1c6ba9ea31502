#include "dsp/FrameSpectrum.h"

#include <gtest/gtest.h>

#include <cmath>

#include "dsp/AnalysisWindow.h"
#include "dsp/Decibel.h"
#include "dsp/PlainTransforms.h"
#include "support/Samples.h"

namespace parlowen {
namespace {

struct Frame {
  int start = 0;
  int length = 410;
  int emphasisMode = 1;
  int level = 8000;
  FrameContext context{16000, 1.0};
};

FrameSpectrum SpectrumOf(const std::vector<std::int16_t>& samples, const Frame& f) {
  FrameSpectrum spectrum;
  spectrum.fill(-1.0);
  EXPECT_EQ(
      ComputeFrameSpectrum(SpanOf(samples), f.start, f.length, f.emphasisMode, f.level, spectrum, f.context),
      0);
  return spectrum;
}

struct Expected {
  FrameSpectrum spectrum;
  int halvings = 0;
};

// One operation after the other as the header lists them, the transform in 64 bits.
Expected PlainSpectrumOf(const std::vector<std::int16_t>& samples, const Frame& f) {
  const SampleSpan x = SpanOf(samples);
  const double c = f.emphasisMode == 1 ? 0.95 : 0.9;
  const double s = f.context.rise * 1500.0 / (static_cast<double>(f.level) * f.context.sampleRate * 0.0001);
  std::vector<double> y(512, 0.0);
  for (int n = 0; n < std::min(f.length, 512); ++n) {
    const double difference = x.At(f.start + n + 1) - c * x.At(f.start + n);
    y[static_cast<std::size_t>(n)] = difference * s * AnalysisWindow[static_cast<std::size_t>(n)];
  }
  Expected expected;
  IntegerFft z;
  for (;; ++expected.halvings) {
    std::vector<IntegerComplex> packed;
    for (std::size_t k = 0; k < 512; k += 2) {
      packed.push_back({static_cast<std::int64_t>(y[k]), static_cast<std::int64_t>(y[k + 1])});
    }
    z = PlainFixedFft(packed, false);
    if (!z.wrapped) break;
    for (double& value : y) value *= 0.5;
  }
  int reference = 26;
  if (f.emphasisMode != 0) reference = (f.length <= 150 ? 26 : 30) + (f.context.sampleRate < 10000 ? 8 : 0);
  const auto bins = PlainSplit(z.bins);
  for (std::size_t k = 0; k < 256; ++k) {
    const double power = bins[k].re * bins[k].re + bins[k].im * bins[k].im;
    expected.spectrum[k] = PowerToDb(power * std::pow(4.0, expected.halvings), reference);
  }
  return expected;
}

TEST(FrameSpectrum, EqualsThePlainComputationAtEveryLengthModeAndEdge) {
  const auto samples = NoiseSamples(3000, 2500.0, 31);
  int checked = 0;
  for (const int length : {0, 1, 2, 31, 32, 45, 150, 151, 205, 410, 511, 512}) {
    for (const double shape : {0.0, 0.04, 1.0}) {
      MakeAnalysisWindow(length, shape);
      for (const int sampleRate : {8000, 9999, 10000, 16000, 44100}) {
        for (const int mode : {0, 1, 2}) {
          for (const int start :
               {-600, -200, 0, 1234, 2999 - length, 3000 - length, 2900, 4000, 2147483647 - 600}) {
            const Frame frame{start, length, mode, 9000, {sampleRate, checked % 3 == 0 ? 2.75 : 1.0}};
            ASSERT_EQ(SpectrumOf(samples, frame), PlainSpectrumOf(samples, frame).spectrum)
                << length << " " << shape << " " << sampleRate << " " << mode << " " << start;
            ++checked;
          }
        }
      }
    }
  }
}

TEST(FrameSpectrum, OnlyFramesThatWouldWrapAreHalved) {
  std::vector<std::int16_t> square;
  for (int n = 0; n < 700; ++n)
    square.push_back(n / 20 % 2 == 0 ? std::int16_t{32767} : std::int16_t{-32768});
  std::vector<std::int16_t> alternating;
  for (int n = 0; n < 700; ++n)
    alternating.push_back(n % 2 == 0 ? std::int16_t{32767} : std::int16_t{-32768});
  const auto tone = ToneSamples(700, 32767.0, 0.39);
  const auto noise = NoiseSamples(700, 16000.0, 32);
  MakeAnalysisWindow(410, 0.0);
  struct {
    const std::vector<std::int16_t>& samples;
    int level, halvings;
  } const cases[] = {// Every other packed value, 102 of them, of up to 1.835·1500/1.6 (1.95·1500/1.6) in
                     // phase under a sine window:
                     // about 10^5 turned in the last stage: one halving.
                     {tone, 32767, 1},
                     {alternating, 32767, 1},
                     {square, 32767, 0},
                     {noise, 32767, 0},
                     // 2^15 times as much: |y·w| up to 6·10^7.
                     {tone, 1, 16},
                     {noise, 100, 7}};
  for (const auto& c : cases) {
    const Frame frame{0, 410, 1, c.level, {16000, 1.0}};
    const auto expected = PlainSpectrumOf(c.samples, frame);
    EXPECT_EQ(SpectrumOf(c.samples, frame), expected.spectrum) << c.level;
    EXPECT_EQ(expected.halvings, c.halvings) << c.level;
  }
  // Around the first wrap, where a coarse bound and the exact check may disagree.
  int halved = 0;
  for (int level = 25000; level < 45000; level += 250) {
    const Frame frame{0, 410, 1, level, {16000, 1.0}};
    const auto expected = PlainSpectrumOf(tone, frame);
    halved += expected.halvings;
    ASSERT_EQ(SpectrumOf(tone, frame), expected.spectrum) << level;
  }
  EXPECT_GT(halved, 10);
  EXPECT_LT(halved, 70);
}

TEST(FrameSpectrum, SilenceIsZeroAndAnyLevelAndLengthAreTaken) {
  const std::vector<std::int16_t> silence(1000, 0);
  const auto noise = NoiseSamples(3000, 12000.0, 33);
  MakeAnalysisWindow(512, 0.0);
  for (const double value : SpectrumOf(silence, {})) EXPECT_EQ(value, 0.0);
  EXPECT_EQ(SpectrumOf(noise, {0, 512, 1, 0, {16000, 1.0}}), SpectrumOf(noise, {0, 512, 1, 1, {16000, 1.0}}));
  EXPECT_EQ(SpectrumOf(noise, {0, 512, 1, -5, {16000, 1.0}}),
            SpectrumOf(noise, {0, 512, 1, 1, {16000, 1.0}}));
  EXPECT_EQ(SpectrumOf(noise, {0, 545, 1, 9000, {192000, 1.0}}),
            SpectrumOf(noise, {0, 512, 1, 9000, {192000, 1.0}}));
  for (const double value : SpectrumOf(noise, {0, -1, 1, 9000, {16000, 1.0}})) EXPECT_EQ(value, 0.0);
  for (const double value : SpectrumOf(noise, {0, 512, 1, 0, {0, 4.0}}))
    EXPECT_TRUE(value >= 0.0 && value <= 140.0);
}

}  // namespace
}  // namespace parlowen
