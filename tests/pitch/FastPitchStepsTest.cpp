// The steps of the time-domain stage, each on arrays whose outcome is counted by hand.

#include <gtest/gtest.h>

#include <cmath>

#include "dsp/Fir.h"
#include "pitch/FastPitchSteps.h"

namespace parlowen {
namespace {

using Periods = std::vector<float>;
constexpr float kOpen = kUndeterminedPeriod;

/// Voiced frames of these magnitudes; 0 is an unvoiced one.
FastPitchFrames Frames(const std::vector<int>& magnitudes) {
  FastPitchFrames frames(magnitudes.size());
  for (std::size_t f = 0; f < frames.size(); ++f) {
    frames[f].magnitude = magnitudes[f];
    frames[f].voiced = magnitudes[f] > 0;
  }
  return frames;
}

FastPitchFrames Voiced(std::size_t count, int magnitude = 200) {
  return Frames(std::vector<int>(count, magnitude));
}

std::vector<int> VoicedPlaces(const FastPitchFrames& frames) {
  std::vector<int> places;
  for (std::size_t f = 0; f < frames.size(); ++f)
    if (frames[f].voiced) places.push_back(static_cast<int>(f));
  return places;
}

WorkingSamples Filled(int frameCount, int step, const std::vector<std::int32_t>& values) {
  WorkingSamples samples(frameCount, step);
  for (std::size_t n = 0; n < values.size(); ++n) *samples.From(static_cast<int>(n)) = values[n];
  return samples;
}

TEST(FastPitchSteps, DecimationKeepsTheExtremeOfTheFirstOnesSign) {
  const std::int16_t document[] = {3, 9, -5, -1, -7, 8, 0, -2, 4};
  WorkingSamples samples(1, 3);
  Decimate({document, 9}, 0, 3, samples);
  EXPECT_EQ(samples[-1], 0);
  EXPECT_EQ(samples[0], 9);   // first is ≥ 0: the largest
  EXPECT_EQ(samples[1], -7);  // first is < 0: the least
  EXPECT_EQ(samples[2], 4);
  Decimate({document, 9}, 3, 3, samples);
  EXPECT_EQ(samples[-1], 9);  // the margin holds what lies before
}

TEST(FastPitchSteps, TheMeanOfTwoFramesIsTakenOffThem) {
  WorkingSamples samples = Filled(3, 2, {1, 2, 3, 5, -4, -9});
  *samples.From(-1) = 100;
  RemoveDc(0, 6, samples);
  const std::int32_t expected[] = {100, -1, 0, 1, 3, 2, -3};  // 11/4 → 2, −13/2 → −6; −1 lies outside
  for (int n = -1; n < 6; ++n) EXPECT_EQ(samples[n], expected[n + 1]) << n;
}

TEST(FastPitchSteps, AFrameCountsSignChangesAndTenths) {
  FastPitchFrames frames(2);
  MeasureFrames(Filled(2, 4, {19, -10, 0, -1, -99, -9, 25, 30}), frames);
  EXPECT_EQ(frames[0].zeroCrossings, 3);  // 0 is positive
  EXPECT_EQ(frames[0].level, 2);          // 1 + 1 + 0 + 0
  EXPECT_EQ(frames[1].zeroCrossings, 1);
  EXPECT_EQ(frames[1].level, 14);
}

TEST(FastPitchSteps, SixRoughSoftFramesAreNoiseAndFiveAreNot) {
  for (const int length : {5, 6}) {
    // One loud smooth frame, then frames that change sign twice in three samples.
    std::vector<std::int32_t> values(80, 4000);
    for (int n = 0; n < length * 80; ++n) values.push_back(n % 3 == 0 ? 300 : -150);
    const WorkingSamples samples = Filled(length + 1, 80, values);
    FastPitchFrames frames(static_cast<std::size_t>(length) + 1);
    MeasureFrames(samples, frames);
    FindNoiseRuns(samples, 8000, frames);
    EXPECT_EQ(frames[1].zeroCrossings == kNoiseCrossings, length == 6) << length;
    EXPECT_EQ(frames[0].zeroCrossings, 0);
    frames[2].zeroCrossings = 20;  // not above 20: the run is cut in two
    frames[1].zeroCrossings = frames[3].zeroCrossings = 39;
    FindNoiseRuns(samples, 8000, frames);
    EXPECT_EQ(frames[1].zeroCrossings, 39);
  }
}

TEST(FastPitchSteps, MagnitudesDecide) {
  // Frames of 20: halves of ten samples; 24 each is just enough, magnitude 23 is the least.
  std::vector<std::int32_t> values;
  for (const auto& [first, second] : {std::pair{24, 24}, {23, 90}, {90, 23}, {24, -24}})
    for (int n = 0; n < 20; ++n) values.push_back(n < 10 ? first : second);
  FastPitchFrames frames(4);
  frames[3].zeroCrossings = kNoiseCrossings;
  DecideByMagnitude(Filled(4, 20, values), frames);
  EXPECT_EQ(frames[0].magnitude, 24);
  EXPECT_EQ(frames[1].magnitude + frames[2].magnitude, 0);
  EXPECT_EQ(frames[3].magnitude, 24);
  EXPECT_EQ(VoicedPlaces(frames), std::vector<int>{0});
  // With halves of fifteen the halves are loud enough, and the mean decides.
  for (const int magnitude : {22, 23}) {
    FastPitchFrames one(1);
    DecideByMagnitude(Filled(1, 30, std::vector<std::int32_t>(30, magnitude)), one);
    EXPECT_EQ(one[0].voiced, magnitude == 23);
  }
}

TEST(FastPitchSteps, FourFramesAtTheStartGoAndFiveStay) {
  for (const std::size_t length : {4u, 5u}) {
    FastPitchFrames frames = Voiced(8);
    frames[length].voiced = false;
    DropShortLeadIn(frames);
    EXPECT_EQ(frames[0].voiced, length == 5);
    EXPECT_TRUE(frames[7].voiced);
  }
}

TEST(FastPitchSteps, SoftFramesNeedALowBandAndSoftStartsALoudRun) {
  constexpr int kStep = 80, kRate = 8000, kCount = 8;
  // 50 alternating is above the 500 Hz low-pass, 50 steady below it.
  std::vector<std::int32_t> rough;
  for (int n = 0; n < kCount * kStep; ++n) rough.push_back(n % 2 == 0 ? 50 : -50);
  const WorkingSamples high = Filled(kCount, kStep, rough);
  const WorkingSamples low = Filled(kCount, kStep, std::vector<std::int32_t>(kCount * kStep, 50));
  for (const int magnitude : {79, 80}) {
    FastPitchFrames frames = Voiced(kCount, magnitude);
    CleanUpVoicing(high, kRate, frames);
    EXPECT_EQ(VoicedPlaces(frames).size(), magnitude == 80 ? 8u : 0u);
    CleanUpVoicing(low, kRate, frames = Voiced(kCount, magnitude));
    EXPECT_EQ(VoicedPlaces(frames).size(), 8u);
  }
  // The low band passes at a mean of 19; the filter's gain at 0 Hz is the sum of its taps.
  double taps[9], gain = 0;
  DesignFirFilter(500, 0.98, 4, 0, taps, kRate);
  for (const double tap : taps) gain += tap;
  const int least = static_cast<int>(std::ceil(19 / gain));
  for (const int level : {least - 1, least}) {
    FastPitchFrames frames = Voiced(kCount, 60);
    CleanUpVoicing(Filled(kCount, kStep, std::vector<std::int32_t>(kCount * kStep, level)), kRate, frames);
    EXPECT_EQ(frames[4].voiced, level == least);
  }
  const struct {
    std::vector<int> magnitudes;
    std::vector<int> kept;
  } cases[] = {
      {{24, 24, 40, 55, 55, 55, 55}, {2, 3, 4, 5, 6}},        // up to the last soft one of the first six
      {{24, 24, 40, 55, 55, 56, 55}, {0, 1, 2, 3, 4, 5, 6}},  // loud enough
      {{40, 40, 40, 40, 40, 24, 40}, {6}},
      {{40, 40, 40, 40, 40, 40, 24}, {0, 1, 2, 3, 4, 5, 6}},  // the seventh does not count
      {{25, 25, 40, 40, 40, 40, 40}, {0, 1, 2, 3, 4, 5, 6}},
      {{200, 200, 200, 200, 0, 200, 200}, {}},
  };
  for (const auto& c : cases) {
    FastPitchFrames frames = Frames(c.magnitudes);
    CleanUpVoicing(low, kRate, frames);
    EXPECT_EQ(VoicedPlaces(frames), c.kept);
  }
}

TEST(FastPitchSteps, LongRunsAreSplitAtTheirQuietestFrame) {
  FastPitchFrames frames = Voiced(101);
  frames[30].magnitude = 150;
  frames[29].magnitude = frames[71].magnitude = 90;  // too near to the ends
  SplitLongRuns(frames);
  EXPECT_FALSE(frames[30].voiced);
  EXPECT_EQ(VoicedPlaces(frames).size(), 100u);
  WorkingSamples samples = Filled(4, 1, {7, 7, 7, 7});
  SilenceUnvoiced(Frames({0, 0, 9, 0}), samples);
  EXPECT_EQ(std::vector<std::int32_t>(samples.From(0), samples.From(4)),
            (std::vector<std::int32_t>{0, 7, 7, 0}));

  const struct {
    std::size_t length;
    int quietest;
    bool splits;
  } cases[] = {{30, 1, false},  {31, 34, true}, {31, 35, false},
               {45, 35, false}, {46, 54, true}, {46, 55, false}};
  for (const auto& c : cases) {
    FastPitchFrames run = Voiced(c.length);
    Periods periods(c.length, 50.0f);
    run[15].magnitude = c.quietest;
    run[14].magnitude = 1;
    SplitWeakRuns(run, periods);
    EXPECT_EQ(run[15].voiced, !c.splits) << c.length << " " << c.quietest;
    EXPECT_EQ(periods[15], c.splits ? 0.0f : 50.0f);
  }
}

TEST(FastPitchSteps, PolarityIsThatOfTheLargerPeakOfAFrameAndAHalf) {
  FastPitchFrames frames = Voiced(3);
  FindPolarity(Filled(3, 4, {1, -2, 0, 0, 0, 3, -3, 0, 0, 0, 0, 9}), frames);
  EXPECT_EQ(frames[0].polarity, +1);  // 3 at the frame's end and a half
  EXPECT_EQ(frames[1].polarity, -1);  // equal
  EXPECT_EQ(frames[2].polarity, +1);
}

/// A pulse of `height` at every multiple of `period`.
WorkingSamples PulseTrain(int frameCount, int period, int height = 1000) {
  WorkingSamples samples(frameCount, 80);
  for (int n = period; n < samples.count() - 1; n += period) *samples.From(n) = height;
  return samples;
}

TEST(FastPitchSteps, ARunsEstimateIsTheMeanIntervalOfItsStrongPeaks) {
  WorkingSamples samples = PulseTrain(12, 40);
  for (const int place : {100, 260}) *samples.From(place) = 740;  // under three quarters
  *samples.From(203) = 900;                                       // too close to 200, smaller
  EXPECT_DOUBLE_EQ(EstimateRun(samples, 8000, Voiced(12), {0, 11}), 40.0);
  EXPECT_DOUBLE_EQ(EstimateRun(PulseTrain(12, 125), 8000, Voiced(12), {0, 11}),
                   0.0);  // 64 Hz itself is outside
  EXPECT_DOUBLE_EQ(EstimateRun(PulseTrain(12, 124), 8000, Voiced(12), {0, 11}), 124.0);
  // Only the eight loudest frames are looked at.
  FastPitchFrames frames = Voiced(12, 100);
  for (std::size_t f = 4; f < 12; ++f) frames[f].magnitude = 101;
  WorkingSamples changing = PulseTrain(12, 40);
  for (int n = 0; n < 320; ++n) *changing.From(n) = n % 30 == 0 ? 1000 : 0;
  EXPECT_DOUBLE_EQ(EstimateRun(changing, 8000, frames, {0, 11}), 40.0);
}

TEST(FastPitchSteps, BoundsFollowTheSettingAndTheEstimates) {
  const struct {
    PitchRange range;
    std::vector<double> estimates;
    bool single;
    int shortest, longest;
  } cases[] = {
      {PitchRange::High, {50}, false, 13, 55},
      {PitchRange::Middle, {50}, false, 20, 83},
      {PitchRange::Low, {50}, false, 28, 125},
      {PitchRange::Automatic, {}, false, 16, 125},
      {PitchRange::Automatic, {40, 60}, false, 28, 114},  // 40·5/7, 60·1.9
      {PitchRange::Automatic, {45}, true, 30, 108},       // 45·2/3, 45·2.4
      {PitchRange::Automatic, {40}, false, 28, 98},       // at least 28·7/2
      {PitchRange::Automatic, {20, 400}, false, 16, 125},
      {PitchRange::Automatic, {400}, true, 16, 125},
  };
  for (const auto& c : cases) {
    const PeriodBounds bounds = BoundPeriods(c.range, 8000, c.estimates, c.single);
    EXPECT_EQ(bounds.shortest, c.shortest);
    EXPECT_EQ(bounds.longest, c.longest);
  }
  EXPECT_DOUBLE_EQ(StartPeriod(std::vector<double>{27, 28, 98, 99}, {28, 98}), 63.0);
  EXPECT_DOUBLE_EQ(StartPeriod({}, {28, 99}), 63.5);
}

TEST(FastPitchSteps, MarksStandOnThePositivePeaks) {
  WorkingSamples samples = PulseTrain(8, 60);
  for (int n = 60; n < 600; n += 60) *samples.From(n + 30) = 349;  // under 0.35 of the largest
  std::vector<int> expected;
  for (int n = 60; n < samples.count() - 1; n += 60) expected.push_back(n);
  EXPECT_EQ(TrackMarks(samples, {20, 100}, 60), expected);
  // Of two peaks that could follow, the one at the expected interval, not the first nor the last.
  for (int n = 60; n < 540; n += 60) *samples.From(n + 25) = *samples.From(n + 85) = 800;
  EXPECT_EQ(TrackMarks(samples, {20, 100}, 60), expected);
  EXPECT_TRUE(TrackMarks(PulseTrain(8, 60, 9), {20, 100}, 60).empty());
  EXPECT_TRUE(TrackMarks(samples.Negated(), {20, 100}, 60).empty());
}

TEST(FastPitchSteps, AFramesPeriodIsTheMeanIntervalOfItsMarks) {
  const FastPitchFrames frames = Frames({9, 9, 0, 9});
  const std::vector<int> marks = {0, 50, 110, 160, 179, 250};
  // Frame 0 sees 0..159: 50, 60. Frame 1 sees 80..239: 50; 19 is too short. Frame 3 sees only 250.
  EXPECT_EQ(PeriodsOfTrack(frames, 80, 160, marks, {19, 71}), (std::vector<double>{55, 50, 0, 0}));
  EXPECT_EQ(PeriodsOfTrack(frames, 80, 160, marks, {18, 60}), (std::vector<double>{50, 34.5, 0, 0}));

  const TrackPeriods tracks{{95, 105, 94, 100, 0, 0, 50}, {100, 100, 100, 0, 100, 0, 50}};
  FastPitchFrames seven = Voiced(7);
  seven[6].voiced = false;
  EXPECT_EQ(JoinTracks(seven, tracks), (Periods{97.5f, kOpen, kOpen, kOpen, kOpen, kOpen, 0}));
}

TEST(FastPitchSteps, LongGapsGoByTheVotesAndShortOnesByTheirNeighbours) {
  for (const std::size_t gap : {5u, 6u}) {
    FastPitchFrames frames = Voiced(gap + 2);
    for (std::size_t f = 0; f < frames.size(); ++f) frames[f].polarity = f % 2 == 0 ? -1 : +1;
    frames[1].polarity = -1;  // the negative ones are more
    TrackPeriods tracks{std::vector<double>(gap + 2, 40), std::vector<double>(gap + 2, 80)};
    tracks.negative[3] = 0;
    Periods periods(gap + 2, kOpen);
    periods.front() = periods.back() = 42;
    FillLongGaps(tracks, frames, periods);
    EXPECT_EQ(periods[2], gap == 6 ? 80.0f : kOpen);
    EXPECT_EQ(periods[3], kOpen);
    EXPECT_EQ(frames[2].choice, gap == 6 ? 255 : 0);
    SpreadNeighbours(tracks, frames, periods);
    EXPECT_EQ(periods[2], gap == 6 ? 80.0f : 40.0f);
    EXPECT_EQ(frames[3].choice, 1);
  }
  // A frame without periods stops the passes; the backward one reaches over up to four such frames.
  for (const std::size_t bare : {4u, 5u}) {
    FastPitchFrames frames = Voiced(bare + 2);
    TrackPeriods tracks{std::vector<double>(bare + 2, 0), std::vector<double>(bare + 2, 0)};
    tracks.positive[0] = 30;
    tracks.negative[0] = 61;
    Periods periods(bare + 2, kOpen);
    periods.back() = 60;
    SpreadNeighbours(tracks, frames, periods);
    EXPECT_EQ(periods[0], bare == 4 ? 61.0f : kOpen);
  }
}

TEST(FastPitchSteps, DocumentSamplesAreWorkingSamplesTimesTheFactor) {
  Periods periods = {0, kOpen, 40};
  PeriodBounds bounds{20, 90};
  ToDocumentSamples(3, periods, bounds);
  EXPECT_EQ(periods, (Periods{0, kOpen, 120}));
  EXPECT_EQ(bounds.shortest, 60);
  EXPECT_EQ(bounds.longest, 270);
}

TEST(FastPitchSteps, WhatIsOutOfRangeGoesAndSinglesAreBridged) {
  const FastPitchFrames frames = Frames({0, 9, 9, 9, 9, 9, 9, 9});
  Periods periods = {70, 60, 20, 70, 90, kOpen, 89, 20};
  DropOutOfRange(frames, {20, 90}, periods);
  EXPECT_EQ(periods, (Periods{70, 60, kOpen, 70, kOpen, kOpen, 89, kOpen}));
  BridgeSingles(frames, {20, 90}, periods);
  EXPECT_EQ(periods, (Periods{70, 60, 65, 70, kOpen, kOpen, 89, kOpen}));
}

TEST(FastPitchSteps, StretchesOfMoreThanFiveFramesBetweenJumpsStay) {
  const Periods none(6, kOpen);
  const struct {
    Periods before, after;
  } cases[] = {
      {{100, 100, 100, 100, 100, 200, 200, 200, 200, 200, 200},
       {kOpen, kOpen, kOpen, kOpen, kOpen, 200, 200, 200, 200, 200, 200}},
      {{100, 114, 130, 148, 168, 191}, {100, 114, 130, 148, 168, 191}},  // under 0.15 each
      {{100, 100, 100, 115, 115, 115}, none},
      // Larger jumps that go on with a slope: the differences' ratio is 0.75 and more, under 1.33.
      {{100, 86, 72, 58, 47.5f, 41}, {100, 86, 72, 58, 47.5f, 41}},
      {{100, 86, 72, 58, 47.75f, 41}, none},
      {{100, 86, 67.5f, 58, 50, 43}, {100, 86, 67.5f, 58, 50, 43}},
      {{100, 86, 67, 58, 50, 43}, none},
  };
  for (const auto& c : cases) {
    Periods periods = c.before;
    KeepSteadyStretches(Voiced(periods.size()), periods);
    EXPECT_EQ(periods, c.after);
  }
}

}  // namespace
}  // namespace parlowen
