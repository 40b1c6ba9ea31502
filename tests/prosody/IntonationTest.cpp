#include "prosody/Intonation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "dsp/SignalTables.h"
#include "prosody/IntonationFile.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000, kStep = 160;

float PeriodOf(double semitones) { return static_cast<float>(kRate / (64 * std::exp2(semitones / 12))); }

/// A sentence of four syllables of 30 frames, 10 frames apart: each a hat under a line that falls by 4 semitones
/// a second from 20, over one that falls by 2 from 12. The samples are 1000 in the first, then 2000.
std::unique_ptr<SoundDocument> Sentence() {
  auto document = std::make_unique<SoundDocument>();
  document->sampleRate = kRate;
  document->sampleCount = 160 * kStep;
  for (int i = 0; i < document->sampleCount; ++i) document->samples[i] = i < 35 * kStep ? 1000 : 2000;
  document->SamplesChanged();
  document->pitch.fill(kUnvoiced);
  for (int syllable = 0; syllable < 4; ++syllable)
    for (int i = 0; i < 30; ++i) {
      const int frame = 40 * syllable + i, top = 40 * syllable + 10, base = 40 * syllable + 29;
      const double high = 20 - 4 * top * 0.01, low = 12 - 2 * base * 0.01;
      // Two equal frames at the top and the base: the median leaves them alone.
      const double share = std::clamp((std::abs(i - 10.5) - 0.5) / 17.0, 0.0, 1.0);
      document->pitch[static_cast<std::size_t>(frame)] = PeriodOf(i > 27 ? low : high + share * (low - high));
    }
  document->pitchPresent = true;
  return document;
}

TEST(Intonation, FindsUnitsLinesAndRatiosOfAMadeSentence) {
  const auto document = Sentence();
  const int end = document->sampleCount;
  auto result = AnalyseIntonation(*document, 0, end, {});
  ASSERT_TRUE(result);
  // Gaps of 10 frames between 29 and 40: boundaries at frame (29 + 40 + 1)/2 = 35 and so on.
  EXPECT_EQ(result->boundaries, (std::vector{35 * kStep, 75 * kStep, 115 * kStep}));
  ASSERT_TRUE(result->topLine && result->baseLine);
  EXPECT_NEAR(result->topLine->slope, -4, 0.05);
  EXPECT_NEAR(result->topLine->atStart, 20, 0.05);
  // The lowest frame of a syllable is its first one of two.
  EXPECT_NEAR(result->baseLine->slope, -2, 0.05);
  EXPECT_NEAR(result->baseLine->atStart, 12 - 2 * 0.01, 0.05);
  const IntonationUnit& first = result->units[0];
  EXPECT_EQ(first.frames, 30);
  EXPECT_NEAR(first.qTop, 100, 1e-6);
  // Durations 35, 40, 40, 45 frames: mean 40; energies 35·1, 40·4, 40·4, 45·4 units: mean 133.75.
  EXPECT_NEAR(first.durationRatio, 35.0 / 40, 1e-12);
  EXPECT_NEAR(result->units[3].energyRatio, 180 / 133.75, 1e-12);

  // A unit in a gap is a pause, and counts nowhere.
  EXPECT_TRUE(AddBoundary(*result, 31 * kStep));
  EXPECT_FALSE(AddBoundary(*result, 31 * kStep));
  EXPECT_FALSE(AddBoundary(*result, 0));
  document->samples[40 * kStep] = 20000;  // an edit: the figures stay those of the sound that was analysed
  MeasureIntonation(*result);
  EXPECT_NEAR(result->units[4].energyRatio, 180 / (531.0 / 4), 1e-12);
  EXPECT_TRUE(result->units[1].IsPause());
  EXPECT_TRUE(std::isnan(result->units[1].top) && std::isnan(result->units[1].durationRatio));
  EXPECT_EQ(result->units[1].name, "2");
  EXPECT_NEAR(result->units[0].durationRatio, 31.0 / 39, 1e-12);
  EXPECT_EQ(SpeakerRecordOf(*result)->units, 4);
}

TEST(Intonation, MarkersInsideTakeThePlaceOfGapsAndLabelsName) {
  const auto document = Sentence();
  const FirstBand band{{0, 1600, 9000, 30000}, {{1600, 9000, "短语"}, {0, 9000, "x"}}};
  const auto result = AnalyseIntonation(*document, 0, 20000, band);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->boundaries, (std::vector{1600, 9000}));
  EXPECT_EQ(result->units[1].name, "短语");
  EXPECT_EQ(result->units[2].name, "3");
  EXPECT_EQ(result->units[0].frames, 10) << "the frames that begin before sample 1600";
  const auto bytes = WriteIntonation(*result).bytes();
  ASSERT_EQ(bytes.size(), 40u + 3 * 104);
  const auto saved = ParseIntonation(bytes);
  ASSERT_TRUE(saved);
  EXPECT_EQ(saved->units[1].name, "短语");
  EXPECT_EQ(saved->units[2].energyRatio, result->units[2].energyRatio);
}

TEST(Intonation, TheMelodyIsSmoothedInsideRunsOnly) {
  std::vector<float> periods = {PeriodOf(5), PeriodOf(9), PeriodOf(6), 0, PeriodOf(7), PeriodOf(8), 0};
  const auto melody = MelodyOf(periods, {0, 6}, kRate);
  ASSERT_EQ(melody.size(), 3u) << "a run of two frames is none";
  EXPECT_NEAR(melody[0].semitones, 5, 1e-5);
  EXPECT_NEAR(melody[1].semitones, 6, 1e-5);
}

TEST(Intonation, TheCloseCopyTurnsWhereTheMelodyDoes) {
  std::vector<MelodyPoint> hat;
  for (int frame = 0; frame <= 40; ++frame) {
    // 0 → 10 → 0 semitones, half a semitone of ripple on the way.
    const double line = frame <= 20 ? frame * 0.5 : 20 - frame * 0.5;
    hat.push_back({frame, line + (frame % 4 == 1 ? 0.4 : 0)});
  }
  const auto copy = CloseCopyOf(hat);
  ASSERT_EQ(copy.size(), 3u);
  EXPECT_EQ(copy[1].frame, 20);
  hat[30].semitones += 0.6;
  EXPECT_EQ(CloseCopyOf(hat).size(), 5u) << "the peak, and the foot beside it";
}

TEST(Intonation, ASpeakersRangeSpansItsSentences) {
  ByteWriter file = WriteSpeakerRecord({3, 8, 20, 12});
  file.PutBytes(WriteSpeakerRecord({2, 10, 25, 14}).bytes());
  file.PutBytes(WriteSpeakerRecord({1, 9, 9, 9}).bytes());  // a sentence on one pitch
  const auto range = ParseSpeakerRange(file);
  ASSERT_TRUE(range);
  EXPECT_EQ(range->low, 8);
  EXPECT_EQ(range->high, 25);
  EXPECT_FALSE(ParseSpeakerRange({})) << "a file without a sentence is no range";
  EXPECT_FALSE(ParseSpeakerRange(ByteSpan(file).first(79)));
}

}  // namespace
}  // namespace parlowen
