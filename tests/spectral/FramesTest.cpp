#include <gtest/gtest.h>

#include <numeric>

#include "document/Desk.h"
#include "document/LevelMeasures.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/SignalTables.h"
#include "spectral/Cepstrum.h"
#include "spectral/FrameParameters.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

struct Sound : testing::Desk {
  Sound(const std::vector<std::int16_t>& samples, int rate) {
    InitSignalTables();
    Take(samples, rate);
  }
  LpcAnalyser analyser;
};

TEST(FrameParameters, CurvesAreScaledAndMovedTogether) {
  // The peak level is that of what is marked, of the view where nothing is, of the frame where the marks are one.
  constexpr int kNone = kNoSelection;
  const struct {
    int rate, start, end, peakStart, peakEnd;
  } cases[] = {{8000, kNone, kNone, 0, 8000},
               {11025, 3675, 9000, 3675, 9000},
               {16000, 5333, 900, 900, 5333},
               {22050, 7350, 7350, 7350, 7862},
               {22050, 7350, kNone, 7350, 7862}};
  for (const auto& c : cases) {
    const int rate = c.rate;
    SCOPED_TRACE(std::to_string(rate) + " " + std::to_string(c.end));
    auto samples = testing::MakeVowel(testing::kNineVowels[6], rate, 118, rate);
    samples[950] = samples[8500 % samples.size()] = 20000;
    Sound sound(samples, rate);
    sound.Select(c.start, c.end);
    const int at = rate / 3, length = std::min(512, rate / 39);
    const FrameParameters frame = AnalyseFrame(sound.document, at, sound.analyser);
    const int peak = SegmentPeakLevel(sound.document.Samples(), c.peakStart, c.peakEnd);
    FrameSpectrum narrow, lpc;
    MakeAnalysisWindow(length, 0);
    ComputeFrameSpectrum(sound.document.Samples(), at, length, 0, peak, narrow, {rate, 1});
    LpcEnvelope(sound.document.Samples(), at, length, false, 16, {rate, peak}, sound.analyser, lpc.data());
    const auto top =
        static_cast<std::size_t>(std::max_element(narrow.begin() + 15, narrow.end()) - narrow.begin());
    const double mean = std::accumulate(narrow.begin() + static_cast<std::ptrdiff_t>(top) - 2,
                                        narrow.begin() + static_cast<std::ptrdiff_t>(top) + 3, 0.0) /
                        5;
    const double shift = 1.2 * (mean - *std::max_element(lpc.begin() + 15, lpc.end()));
    for (std::size_t k = 0; k < 256; ++k) {
      EXPECT_DOUBLE_EQ(frame.narrow[k], 1.2 * narrow[k]);
      EXPECT_NEAR(frame.lpc[k], std::max(0.0, 1.2 * lpc[k] + shift), 1e-9);
    }
    EXPECT_EQ(frame.formants.frequency, PickFormants(lpc.data(), 256, rate).frequency)
        << "of the unscaled envelope";
    EXPECT_NEAR(frame.f0Cepstral, 118, 3);
  }
}

TEST(FrameParameters, TimesLevelsAndF0) {
  Sound sound(std::vector<std::int16_t>(32000, 1000), 16000);
  sound.document.pitch[49] = 160;
  sound.document.pitch[50] = 0;
  FrameParameters frame = AnalyseFrame(sound.document, 7999, sound.analyser);
  EXPECT_DOUBLE_EQ(frame.time, 49 * 0.01);
  EXPECT_NEAR(frame.level, 60, 0.011);
  EXPECT_DOUBLE_EQ(frame.f0, 100);
  frame = AnalyseFrame(sound.document, 8000, sound.analyser);
  EXPECT_DOUBLE_EQ(frame.time, 0.5);
  EXPECT_EQ(frame.f0, 0);
  EXPECT_EQ(AnalyseFrame(sound.document, 16000, sound.analyser).f0, 0) << "no value: −1";
  EXPECT_DOUBLE_EQ(FrameTime(110, 11025), 0.0);
  EXPECT_DOUBLE_EQ(FrameTime(111, 11025), 0.01);
  // Silence, and positions that leave the sound.
  Sound silence(std::vector<std::int16_t>(1000), 22050);
  for (const int at : {0, 900, 1000}) {
    frame = AnalyseFrame(silence.document, at, silence.analyser);
    EXPECT_EQ(frame.level, 0);
    EXPECT_EQ(frame.formants.count, 0);
    EXPECT_EQ(frame.f0Cepstral, 0);
    EXPECT_EQ(*std::max_element(frame.lpc.begin(), frame.lpc.end()), 0);
  }
}

TEST(FrameComparison, PeaksCoincideAndFormantsAreOfEachFrame) {
  // The first half an [a], the second an [i].
  for (const int rate : {8000, 16000, 22050})
    for (const bool voiced : {true, false}) {
      SCOPED_TRACE(std::to_string(rate) + (voiced ? " voiced" : " unvoiced"));
      auto samples = testing::MakeVowel(testing::kNineVowels[0], rate, 110, rate / 2);
      for (auto& sample : samples) sample = static_cast<std::int16_t>(sample / 5);
      const auto second = testing::MakeVowel(testing::kNineVowels[3], rate, 110, rate / 2);
      samples.insert(samples.end(), second.begin(), second.end());
      Sound sound(samples, rate);
      const FrameComparison both =
          CompareFrames(sound.document, rate / 4, rate * 3 / 4, voiced, sound.analyser);
      const auto top = [](const FrameSpectrum& curve) {
        return *std::max_element(curve.begin(), curve.begin() + 246);
      };
      EXPECT_NEAR(top(both.a.curve), top(both.b.curve), 1e-9);
      EXPECT_GT(top(both.a.curve), 20);
      EXPECT_NEAR(both.a.time, 0.245, 0.0051);  // cut to hundredths
      EXPECT_NEAR(both.b.time, 0.745, 0.0051);
      if (voiced) {
        EXPECT_NEAR(both.a.frequency[0], 760, 60);
        EXPECT_NEAR(both.a.frequency[1], 1280, 60);
        EXPECT_NEAR(both.b.frequency[0], 290, 60);
        EXPECT_NEAR(both.b.frequency[1], 2300, 120);
      }
      const FrameComparison same = CompareFrames(sound.document, rate / 4, rate / 4, voiced, sound.analyser);
      EXPECT_EQ(same.a.curve, same.b.curve);
      EXPECT_EQ(same.a.frequency, same.b.frequency);
      const FrameComparison turned =
          CompareFrames(sound.document, rate * 3 / 4, rate / 4, voiced, sound.analyser);
      EXPECT_EQ(turned.a.curve, both.b.curve);
    }
}

TEST(FrameComparison, SilenceAndTheEndOfTheSoundAreStood) {
  Sound silence(std::vector<std::int16_t>(1000), 8000);
  for (const bool voiced : {true, false}) {
    const FrameComparison both = CompareFrames(silence.document, 0, 1000, voiced, silence.analyser);
    EXPECT_EQ(both.a.frequency, (std::array<double, 3>{}));
    EXPECT_EQ(both.b.curve, FrameSpectrum{});
  }
}

}  // namespace
}  // namespace parlowen
