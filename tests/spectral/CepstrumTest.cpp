#include "spectral/Cepstrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "document/LevelMeasures.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/Complex.h"
#include "dsp/Decibel.h"
#include "dsp/PlainTransforms.h"
#include "dsp/SignalTables.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

using Bins = std::vector<Complex>;

/// Every step on all 512 bins, with the plain transforms.
std::vector<double> Expected(const std::vector<std::int16_t>& sound, int start, int length, CepstralMode mode,
                             int rate, int level) {
  const bool cepstrum = mode == CepstralMode::Cepstrum;
  const int step = cepstrum && rate >= 22051 ? 2 : 1;
  const auto at = [&](int n) {
    return n >= 0 && n < static_cast<int>(sound.size())
               ? static_cast<double>(sound[static_cast<std::size_t>(n)])
               : 0.0;
  };
  Bins packed(256);
  for (int n = 0; n < length; ++n) {
    const double value = (at(start + step * n + 1) - 0.95 * at(start + step * n)) * 1500 / level *
                         AnalysisWindow[static_cast<std::size_t>(n)];
    (n % 2 == 0 ? packed[static_cast<std::size_t>(n / 2)].re : packed[static_cast<std::size_t>(n / 2)].im) =
        value;
  }
  packed = PlainFft(packed);
  Bins bins = PlainSplit(packed);
  bins.push_back(packed[0].re - packed[0].im);
  Bins logs;
  for (std::size_t k = 0; k < 512; ++k) {
    const Complex bin = bins[std::min(k, 512 - k)];
    logs.push_back(
        PowerToDb(bin.re * bin.re + bin.im * bin.im, (cepstrum ? 20 : 30) + (rate < 10000 ? 8 : 0)) *
        (cepstrum ? 10 : 2));
  }
  Bins next = PlainFft(logs);
  std::vector<double> output(cepstrum ? 512 : 256);
  if (cepstrum) {
    for (std::size_t k = 0; k < 256; ++k)
      output[k] = output[511 - k] = 0.4 * ApproxMagnitude({next[k].re / 512, -next[k].im / 512});
    output[0] /= 2;
    return output;
  }
  std::fill(next.begin() + 16, next.end(), Complex());
  next[0] = 0.5 * next[0];
  next = PlainFft(next);
  for (std::size_t k = 0; k < 256; ++k) output[k] = 1.25 * std::hypot(next[k].re, next[k].im);
  return output;
}

TEST(Cepstrum, BothModesFollowTheirStepsAtEveryRate) {
  InitSignalTables();
  const struct {
    int rate, start, length;
  } cases[] = {{8000, 900, 266},   {9999, 900, 333},   {10000, 900, 333},  {16000, 2000, 512},
               {22050, 3000, 512}, {22051, 3000, 512}, {44100, 9000, 512}, {16000, -100, 400},
               {16000, 5700, 400}, {16000, 5990, 512}, {44100, 17000, 512}};
  for (const auto& c : cases)
    for (const CepstralMode mode : {CepstralMode::Cepstrum, CepstralMode::Homomorphic}) {
      SCOPED_TRACE(std::to_string(c.rate) + " from " + std::to_string(c.start));
      const auto sound = testing::MakeVowel(testing::kNineVowels[2], c.rate, 140, c.rate * 3 / 8);
      MakeAnalysisWindow(c.length, 0.0);
      const auto expected = Expected(sound, c.start, c.length, mode, c.rate, 7000);
      std::vector<double> output(514, -7.0);
      CepstralAnalysis({sound.data(), static_cast<int>(sound.size())}, c.start, c.length, mode,
                       {c.rate, 7000}, output.data());
      for (std::size_t k = 0; k < expected.size(); ++k) ASSERT_NEAR(output[k], expected[k], 1e-9) << k;
      EXPECT_EQ(output[expected.size()], -7.0) << "nothing behind the output";
      if (mode == CepstralMode::Homomorphic) {
        double levels[256];
        HomomorphicLevels({sound.data(), static_cast<int>(sound.size())}, c.start, c.length, {c.rate, 7000},
                          levels);
        for (std::size_t k = 0; k < 256; ++k) ASSERT_EQ(levels[k], output[k] / 512);
      }
    }
}

}  // namespace
}  // namespace parlowen
