#include "dsp/Fft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "dsp/PlainTransforms.h"

namespace parlowen {
namespace {

const int kSizes[] = {2, 4, 8, 16, 32, 64, 128, 256, 512, 1024};
constexpr Complex kGuard(-7.25, 3.5);

std::vector<Complex> NoiseInput(int size, std::mt19937& random, double scale) {
  std::normal_distribution<double> noise(0.0, scale);
  std::vector<Complex> input;
  for (int n = 0; n < size; ++n) {
    const double re = noise(random);
    input.emplace_back(re, noise(random));
  }
  return input;
}

void ExpectSame(const std::vector<Complex>& expected, const std::vector<Complex>& actual) {
  for (std::size_t k = 0; k < expected.size(); ++k) {
    ASSERT_EQ(expected[k].re, actual[k].re) << "size " << expected.size() << " bin " << k;
    ASSERT_EQ(expected[k].im, actual[k].im) << "size " << expected.size() << " bin " << k;
  }
  ASSERT_EQ(actual.size(), expected.size() + 1);
  EXPECT_EQ(actual.back().re, kGuard.re) << "written past the end";
}

std::vector<Complex> GuardedOutput(int count) {
  return std::vector<Complex>(static_cast<std::size_t>(count) + 1, kGuard);
}

TEST(Fft, EveryBitIsThatOfThePlainOrderOfOperations) {
  std::mt19937 random(11);
  for (const int size : kSizes) {
    for (int round = 0; round < 60; ++round) {
      const auto input = NoiseInput(size, random, round % 2 == 0 ? 1.0 : 20000.0);
      auto output = GuardedOutput(size);
      ASSERT_EQ(ComplexFft(input.data(), size, output.data()), 0);
      ExpectSame(PlainFft(input), output);

      std::vector<double> samples;
      for (const Complex z : input) samples.push_back(z.re);
      if (size == 512) {
        std::vector<double> powers(256);
        PowersOfReal512(samples.data(), powers.data());
        const auto plain = PlainFft({samples.begin(), samples.end()});
        for (std::size_t k = 0; k < powers.size(); ++k)
          ASSERT_EQ(powers[k], plain[k].re * plain[k].re + plain[k].im * plain[k].im) << k;
      }
      std::vector<Complex> packed;
      for (std::size_t k = 0; k < samples.size(); k += 2) packed.emplace_back(samples[k], samples[k + 1]);
      auto bins = GuardedOutput(size / 2);
      ASSERT_EQ(RealFft(samples.data(), size, bins.data()), 0);
      ExpectSame(PlainSplit(PlainFft(packed)), bins);
    }
  }
}

TEST(Fft, FixedPointWrapsLikeThirtyTwoBitArithmetic) {
  std::mt19937 random(12);
  int wrapped = 0;
  int clean = 0;
  for (const int size : kSizes) {
    for (const int limit : {100, 3000, 32768, 2000000, INT32_MAX}) {
      std::uniform_int_distribution<std::int32_t> value(-limit, limit - (limit == INT32_MAX ? 1 : 0));
      for (int round = 0; round < 12; ++round) {
        const auto count = static_cast<std::size_t>(size);
        std::vector<IntegerComplex> input(count);
        std::vector<std::int32_t> re(count);
        std::vector<std::int32_t> im(count);
        for (std::size_t n = 0; n < count; ++n) {
          re[n] = value(random);
          im[n] = value(random);
          if (round == 0 && limit == INT32_MAX) re[n] = INT32_MIN;
          input[n] = {re[n], im[n]};
        }
        std::vector<std::int32_t> outRe(count + 1, 77);
        std::vector<std::int32_t> outIm(count + 1, 77);
        ASSERT_EQ(FixedFft(re.data(), im.data(), size, outRe.data(), outIm.data()), 0);
        const auto expected = PlainFixedFft(input, true);
        expected.wrapped ? ++wrapped : ++clean;
        for (std::size_t k = 0; k < count; ++k) {
          ASSERT_EQ(outRe[k], expected.bins[k].re) << size << " " << limit;
          ASSERT_EQ(outIm[k], expected.bins[k].im) << size << " " << limit;
        }
        EXPECT_EQ(outRe[count], 77);
        EXPECT_EQ(outIm[count], 77);
      }
    }
  }
  EXPECT_GT(wrapped, 100);
  EXPECT_GT(clean, 100);
}

TEST(Fft, RealFixedTruncatesItsSamplesAndHalvesTowardZero) {
  std::mt19937 random(13);
  std::normal_distribution<double> noise(0.0, 60.0);
  for (const int size : kSizes) {
    for (int round = 0; round < 40; ++round) {
      std::vector<double> samples;
      std::vector<IntegerComplex> packed(static_cast<std::size_t>(size / 2));
      for (int n = 0; n < size; ++n) samples.push_back(noise(random));
      for (std::size_t k = 0; k < packed.size(); ++k) {
        packed[k] = {static_cast<std::int64_t>(samples[2 * k]),
                     static_cast<std::int64_t>(samples[2 * k + 1])};
      }
      auto bins = GuardedOutput(size / 2);
      ASSERT_EQ(RealFftFixed(samples.data(), size, bins.data()), 0);
      ExpectSame(PlainSplit(PlainFixedFft(packed, true).bins), bins);
    }
  }
}

TEST(Fft, SamplesNoIntegerHoldsBecomeTheNearestOne) {
  const double inf = std::numeric_limits<double>::infinity();
  // Bin 0 of two samples is their sum, wrapped, halved and doubled: x0 + x1 with x1 = 0.
  struct {
    double sample;
    double bin;
  } const cases[] = {
      {std::nan(""), 0.0}, {-7.9, -7.0}, {1073741823.9, 1073741823.0}, {-1073741824.0, -1073741824.0}};
  for (const auto& c : cases) {
    const double samples[] = {c.sample, 0.0};
    Complex bin;
    RealFftFixed(samples, 2, &bin);
    EXPECT_EQ(bin.re, c.bin);
  }
  for (const double wild : {inf, 1e300, 2147483648.0}) {
    const double samples[] = {wild, 0.0, -wild, 0.0};
    const double nearest[] = {2147483647.0, 0.0, wild == 2147483648.0 ? -wild : -2147483648.0, 0.0};
    Complex bins[2];
    Complex expected[2];
    RealFftFixed(samples, 4, bins);
    RealFftFixed(nearest, 4, expected);
    for (int k = 0; k < 2; ++k) EXPECT_EQ(bins[k].re, expected[k].re);
  }
}

TEST(Fft, TheInverseGivesTheInputBackAndLeavesItsOwnConjugated) {
  std::mt19937 random(15);
  for (const int size : kSizes) {
    const auto input = NoiseInput(size, random, 100.0);
    std::vector<Complex> spectrum(input.size());
    ComplexFft(input.data(), size, spectrum.data());
    const auto before = spectrum;
    auto back = GuardedOutput(size);
    ASSERT_EQ(InverseComplexFft(spectrum.data(), size, back.data()), 0);
    EXPECT_EQ(back.back().re, kGuard.re);
    for (std::size_t n = 0; n < input.size(); ++n) {
      EXPECT_NEAR(back[n].re, input[n].re, 1e-5);
      EXPECT_NEAR(back[n].im, input[n].im, 1e-5);
      EXPECT_EQ(spectrum[n].re, before[n].re);
      EXPECT_EQ(spectrum[n].im, -before[n].im);
    }
  }
}

TEST(Fft, TheFixedInverseTruncatesBeforeAndAfter) {
  std::mt19937 random(16);
  for (const int size : kSizes) {
    const auto input = NoiseInput(size, random, 300.0);
    std::vector<IntegerComplex> conjugate;
    for (const Complex z : input) {
      conjugate.push_back({static_cast<std::int64_t>(z.re), -static_cast<std::int64_t>(z.im)});
    }
    std::vector<Complex> expected;
    for (const auto& z : PlainFixedFft(conjugate, true).bins) {
      expected.emplace_back(static_cast<double>(z.re / size), static_cast<double>(-(z.im / size)));
    }
    auto output = GuardedOutput(size);
    ASSERT_EQ(InverseFixedFft(input.data(), size, output.data()), 0);
    ExpectSame(expected, output);
  }
  // Values no integer holds end at the nearest one, NaN at 0. The sums wrap: (2^31 − 1) + (−1) halves to 2^30
  // − 1.
  const Complex wild[] = {Complex(1e300, std::nan("")), Complex(-1.9, -1e300)};
  Complex output[2];
  InverseFixedFft(wild, 2, output);
  EXPECT_EQ(output[0].re, 1073741823.0);
}

TEST(Fft, OtherSizesAreRefusedAndNothingIsWritten) {
  std::vector<Complex> data(2048, Complex(1.0, 1.0));
  std::vector<double> samples(2048, 1.0);
  std::vector<std::int32_t> integers(2048, 1);
  for (const int size : {-1024, -2, -1, 0, 1, 3, 6, 1000, 1023, 1025, 2048}) {
    Complex output = kGuard;
    std::int32_t re = 77;
    std::int32_t im = 77;
    EXPECT_EQ(ComplexFft(data.data(), size, &output), -1) << size;
    EXPECT_EQ(InverseComplexFft(data.data(), size, &output), -1) << size;
    EXPECT_EQ(InverseFixedFft(data.data(), size, &output), -1) << size;
    EXPECT_EQ(RealFft(samples.data(), size, &output), -1) << size;
    EXPECT_EQ(RealFftFixed(samples.data(), size, &output), -1) << size;
    EXPECT_EQ(FixedFft(integers.data(), integers.data(), size, &re, &im), -1) << size;
    EXPECT_EQ(output.re, kGuard.re);
    EXPECT_EQ(re, 77);
    EXPECT_EQ(im, 77);
    EXPECT_EQ(data[0].im, 1.0) << "conjugated";
  }
}

}  // namespace
}  // namespace parlowen
