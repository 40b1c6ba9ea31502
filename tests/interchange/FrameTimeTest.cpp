// The moment that a contour value speaks of, measured on glides whose frequency is known at every moment.

#include <gtest/gtest.h>

#include <cstdio>

#include "interchange/FrameGrid.h"
#include "pitch/PitchAnalysis.h"
#include "pitch/Voices.h"

namespace parlowen {
namespace {

using namespace testing;

/// Mean over the inner frames of (the moment at which the glide has the value of the frame) − (the frame's
/// beginning), in ms. Rising and falling glides weigh the same, so that an analysis that reads a little high
/// or low is no shift.
double OffsetAt(int rate, double low, double high) {
  constexpr double kSeconds = 1.0;
  double sum = 0;
  int count = 0;
  for (const auto& [from, to] : {std::pair{low, high}, std::pair{high, low}}) {
    CommandStates states;
    const auto document = Document(Vowel(rate, from, kSeconds, 8000, to), rate, states);
    std::vector<float> periods;
    RunPitchAnalysis(*document, 0, document->sampleCount, {}, {0, document->ContourLength() - 1}, periods);
    for (int frame = 10; frame < 90; ++frame) {
      const double frequency = FrequencyOf(periods[static_cast<std::size_t>(frame)], rate);
      if (frequency <= 0) continue;
      sum += (frequency - from) / (to - from) * kSeconds - SecondsOf(SampleOfFrame(frame, rate), rate);
      ++count;
    }
  }
  EXPECT_GT(count, 150) << rate;
  return 1000 * sum / count;
}

TEST(FrameTime, IsThatOfTheMeasuredGlide) {
  for (const auto& [low, high] : {std::pair{90.0, 180.0}, std::pair{180.0, 360.0}})
    for (const int rate : {8000, 11025, 16000, 22050, 44100}) {
      const double offset = OffsetAt(rate, low, high);
      std::printf("%5d Hz, %.0f-%.0f Hz: %.2f ms\n", rate, low, high, offset);
      EXPECT_NEAR(offset, kFrameOffsetMs, 0.5) << rate;
    }
}

TEST(FrameTime, IsTheDecimalNumberThatAReaderExpects) {
  EXPECT_EQ(TimeOfFrame(0), 0.01);
  EXPECT_EQ(TimeOfFrame(14), 0.15);  // 14·0.01 + 0.01 would be 0.15000000000000002
  EXPECT_EQ(TimeOfFrame(12496), 124.97);
}

TEST(FrameTime, TheFramesOfASelectionBeginInIt) {
  const struct {
    int rate, start, end, first, last;
  } cases[] = {
      {16000, kNoSelection, kNoSelection, 0, 99},
      {16000, 0, 16000, 0, 99},
      {16000, 160, 320, 1, 1},
      {16000, 161, 320, 2, 1},
      {16000, 159, 321, 1, 2},
      // Frame 1 begins at 110, frame 2 at 220, frame 3 at 330.
      {11025, 110, 330, 1, 2},
      {11025, 111, 331, 2, 3},
  };
  for (const auto& c : cases) {
    SoundDocument document;
    document.sampleCount = document.sampleRate = c.rate;
    document.selectionStart = c.start;
    document.selectionEnd = c.end;
    const FrameSpan frames = FramesToExport(document);
    EXPECT_EQ(frames.first, c.first) << c.rate << ' ' << c.start;
    EXPECT_EQ(frames.last, c.last) << c.rate << ' ' << c.start;
  }
}

}  // namespace
}  // namespace parlowen
