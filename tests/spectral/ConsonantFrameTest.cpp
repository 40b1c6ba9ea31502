#include "spectral/ConsonantFrame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "dsp/SignalTables.h"
#include "support/Samples.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

TEST(ConsonantFrame, MeasuresFollowTheSlowTransform) {
  InitSignalTables();
  const auto sound = testing::Noise(4000, 8000);
  for (const int rate : {16000, 18000, 22050}) {
    const int length = rate / 100;
    long double powers[256];
    for (int k = 0; k < 256; ++k) {
      std::complex<long double> sum = 0;
      for (int n = 0; n < length; ++n) {
        const long double window = 0.54L - 0.46L * std::cos(2 * std::numbers::pi_v<long double> * n / length);
        const auto i = static_cast<std::size_t>(1000 + n);
        sum += (sound[i + 1] - 0.95L * sound[i]) * window *
               std::polar(1.0L, -2 * std::numbers::pi_v<long double> * k * n / 512);
      }
      powers[k] = std::norm(sum);
    }
    // Bins of each band: the first begins at bin 2, every other behind the one before.
    long double energy[25] = {}, sum = 0, moment = 0, spread = 0;
    int bin = 2;
    for (int band = 2; band <= 24; ++band) {
      // 650·sinh(band/7), but for the sixteenth edge, which is 26 Hz lower.
      const int edge = band == 16 ? 3136 : static_cast<int>(650.0 * std::sinh(band / 7.0) + 0.5);
      const int last = std::max(bin, edge * 512 / rate);
      for (int k = bin; k <= last; ++k) energy[band] += k < 256 ? powers[k] / (last - bin + 1) : 0;
      bin = last + 1;
      sum += energy[band];
      moment += band * energy[band];
    }
    for (int band = 2; band <= 24; ++band) spread += std::pow(band - moment / sum, 2) * energy[band];
    const ConsonantFrame frame = AnalyseConsonantFrame(SpanOf(sound), rate, 1000);
    for (int band = 2; band <= 24; ++band)
      EXPECT_NEAR(frame.bands[static_cast<std::size_t>(band - 2)], static_cast<double>(energy[band]),
                  static_cast<double>(sum) * 1e-9)
          << band;
    EXPECT_NEAR(frame.gravity, static_cast<double>(moment / sum), 1e-6);
    EXPECT_NEAR(frame.dispersion, static_cast<double>(std::sqrt(spread / sum)), 1e-6);
    EXPECT_NEAR(frame.intensity, static_cast<double>(10 * std::log10(sum / 23) - 50), 1e-6);
  }
}

TEST(ConsonantFrame, SilenceIsAtItsFloor) {
  InitSignalTables();
  const ConsonantFrame frame = AnalyseConsonantFrame({nullptr, 0}, 16000, -50);
  EXPECT_EQ(frame.gravity, 0);
  EXPECT_EQ(frame.dispersion, 0);
  EXPECT_EQ(frame.intensity, -50);
}

TEST(ConsonantFrame, AStretchKeepsItsLastFrameNearTheEnd) {
  InitSignalTables();
  const auto sound = testing::Noise(3000, 8000);
  const auto frames = AnalyseConsonant(SpanOf(sound), 16000, 1500, 2500, {});
  ASSERT_EQ(frames.size(), 6u);  // 1000 / 160
  // 1500, 1660, 1820, 1980 start more than 1000 samples before the end; 2140 does not.
  for (std::size_t i = 1; i < 4; ++i) EXPECT_NE(frames[i].gravity, frames[i - 1].gravity);
  EXPECT_EQ(frames[3].gravity, AnalyseConsonantFrame(SpanOf(sound), 16000, 1980).gravity);
  EXPECT_EQ(frames[4].gravity, frames[3].gravity);
  EXPECT_EQ(frames[5].bands, frames[3].bands);
  ConsonantFrame before;
  before.gravity = 7;
  EXPECT_NE(AnalyseConsonant(SpanOf(sound), 16000, 1999, 2100, before)[0].gravity, 7);
  EXPECT_EQ(AnalyseConsonant(SpanOf(sound), 16000, 2000, 2100, before)[0].gravity, 7);
}

}  // namespace
}  // namespace parlowen
