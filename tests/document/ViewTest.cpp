#include <gtest/gtest.h>

#include <random>

#include "document/Desk.h"
#include "document/LevelMeasures.h"
#include "document/WavePyramid.h"

namespace parlowen {
namespace {

using namespace testing;

TEST(View, TheStartScaleIsTenMillisecondsAColumn) {
  const struct {
    int rate, samplesPerPixel, full;
  } cases[] = {{1000, 10, 10040},    {8000, 80, 80320},    {11025, 110, 110691},
               {16000, 160, 160640}, {22050, 220, 221382}, {384000, 3840, 3855360}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.rate);
    Desk desk;
    desk.Load(Ramp(300000), static_cast<std::uint32_t>(c.rate));
    EXPECT_EQ(desk.document.samplesPerPixel, c.samplesPerPixel);
    EXPECT_EQ(desk.document.FullViewLength(), c.full) << "1004 columns";
    EXPECT_EQ(desk.document.viewLength, std::min(300000, c.full));
    EXPECT_EQ(desk.states.Holds(Need::LongSound), c.full < 300000);
    desk.document.samplesPerPixel *= 2;
    desk.document.setView(desk.states);
    EXPECT_EQ(desk.document.viewLength, std::min(300000, 1004 * 2 * c.samplesPerPixel));
  }
}

TEST(View, ItStaysInsideTheSoundAndDrawsItsCopy) {
  Desk desk;
  desk.Load(Ramp(20000), 1000);
  SoundDocument& d = desk.document;
  for (const auto& [wanted, start] :
       {std::pair{-5, 0}, {0, 0}, {19990, 19990}, {19999, 19999}, {20000, 19999}, {2000000000, 19999}}) {
    d.viewStart = wanted;
    d.setView(desk.states);
    EXPECT_EQ(d.viewStart, start);
    EXPECT_EQ(d.viewLength, std::min(20000 - start, 10040));
    EXPECT_EQ(d.viewSamples[0], d.samples[start]);
    EXPECT_EQ(d.viewSamples[d.viewLength - 1], d.samples[start + d.viewLength - 1]);
  }
  desk.Mark(100, 20000);  // the view begins behind what is left
  CutCommand(desk.window, d, desk.states);
  EXPECT_EQ(d.viewStart, 99);
  EXPECT_EQ(d.viewLength, 1);
  EXPECT_FALSE(desk.states.Holds(Need::LongSound)) << "a pane holds all that is left";
}

TEST(View, FramesAreCountedInIntegers) {
  SoundDocument document;
  const struct {
    int count, rate, frames, contour;
  } cases[] = {{15999, 16000, 99, 99},
               {16000, 16000, 100, 100},
               {0, 16000, 0, 0},
               {5, 0, 0, 0},
               {kMaxSamples, 8000, 19660, 12498},
               {kMaxSamples, 1000, 157286, 12498},
               {124989, 1000, 12498, 12498},
               {124979, 1000, 12497, 12497}};
  for (const auto& c : cases) {
    document.sampleCount = c.count;
    document.sampleRate = c.rate;
    EXPECT_EQ(document.frameCount(), c.frames) << c.count;
    EXPECT_EQ(document.ContourLength(), c.contour) << c.count;
  }
}

TEST(LevelMeasures, ThePeakIsTheLargestMagnitudeCappedAt32767) {
  const std::int16_t samples[] = {0, 5, -7, -32768, 9};
  const SampleSpan span{samples, 5};
  EXPECT_EQ(PeakAmplitude(span, 0, 3), 7);
  EXPECT_EQ(PeakAmplitude(span, -10, 100), 32767);
  EXPECT_EQ(PeakAmplitude(span, 4, 4), 0);
  EXPECT_EQ(SegmentPeakLevel(span, 0, 1), 1) << "never a divisor of 0";
}

TEST(WavePyramid, AnyStretchHasItsTrueExtremes) {
  std::mt19937 random(5);
  std::vector<std::int16_t> samples(100003);
  for (std::int16_t& sample : samples) sample = static_cast<std::int16_t>(random());
  const SampleSpan span{samples.data(), 100003};
  WavePyramid pyramid;
  pyramid.Update(span, 1);
  for (int i = 0; i < 300; ++i) {
    int start = static_cast<int>(random() % 100003), end = static_cast<int>(random() % 100003);
    if (i % 3 == 0) {
      start &= ~255;
      end &= ~255;
    }
    if (start >= end) std::swap(start, end);
    const auto [low, high] =
        std::minmax_element(samples.begin() + start, samples.begin() + std::max(end, start + 1));
    const MinMax found = pyramid.Extremes(span, start, std::max(end, start + 1));
    EXPECT_EQ(found.min, *low) << start << ' ' << end;
    EXPECT_EQ(found.max, *high) << start << ' ' << end;
  }
  EXPECT_EQ(pyramid.Extremes(span, 7, 7).max, 0);
  EXPECT_EQ(pyramid.Extremes(span, 100002, 200000).min, samples.back()) << "the end is clamped";
}

}  // namespace
}  // namespace parlowen
