#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <set>

#include "articulation/ArticulationPicture.h"
#include "articulation/TractEstimate.h"
#include "document/SoundDocument.h"
#include "document/WavFile.h"
#include "dsp/SignalTables.h"
#include "spectral/Formants.h"
#include "support/Kept.h"
#include "support/Recordings.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

const MandarinSound& SoundOf(const std::string& key) {
  for (const MandarinSound& sound : MandarinSounds())
    if (sound.key == key) return sound;
  throw std::out_of_range(key);
}

TEST(Articulation, EverySoundHasItsTargetsAndARecordingOfItsOwnName) {
  std::set<std::string> keys, files;
  int recorded[2] = {};
  for (int i = 0; i < kMandarinSounds; ++i) {
    const MandarinSound& sound = MandarinSounds()[static_cast<std::size_t>(i)];
    EXPECT_TRUE(keys.insert(sound.key).second && files.insert(sound.file).second) << sound.key;
    for (const char* target : sound.targets) {
      EXPECT_TRUE(target == nullptr || FindTarget(target) != nullptr) << sound.key;
    }
    for (int step = 0; step <= LastStepOf(sound); ++step)
      for (const double height : ArticulationAt(sound, step).tongue) EXPECT_TRUE(height >= 1 && height <= 9);
    const std::string path = std::string(PARLOWEN_SOURCE_DIR "/data/pinyin/") + sound.file + ".wav";
    recorded[i < kInitials ? 0 : 1] += std::ifstream(path).good();
  }
  EXPECT_EQ(recorded[0], 19);
  EXPECT_EQ(recorded[1], 21);
}

/// Head, lips and words of every sound at every step of its movement.
TEST(Articulation, EveryDrawingStaysAsItIsKept) {
  std::string seen;
  ArticulationState state;
  for (state.sound = 0; state.sound < kMandarinSounds; ++state.sound)
    for (state.step = 0; state.step <= LastStepOf(state.Sound()); ++state.step)
      seen += Format("%s %d ", state.Sound().key, state.step) +
              testing::SizeAndDigest(testing::WithoutDecimals(ToSvg(ArticulationPicture(state, 1000, 640)))) +
              "\n";
  testing::ExpectKept(PARLOWEN_SOURCE_DIR "/tests/articulation/drawings.kept", seen);
}

TEST(Articulation, AMovementIsLinearAndTheVelumChangesInItsMiddle) {
  const MandarinSound& ian = SoundOf("ian");  // i ê n
  ASSERT_EQ(LastStepOf(ian), 8);
  EXPECT_EQ(LastStepOf(SoundOf("a")), 0);
  const Articulation i = ArticulationOf(*FindTarget("i")), eh = ArticulationOf(*FindTarget("ê"));
  EXPECT_EQ(ArticulationAt(ian, 0).tongue, i.tongue);
  EXPECT_EQ(ArticulationAt(ian, 4).tongue, eh.tongue);
  EXPECT_EQ(ArticulationAt(ian, 1).tongue[3], 4 + 0.25 * (5 - 4));
  EXPECT_EQ(ArticulationAt(ian, 3).lips.opening, 2 + 0.75 * (5 - 2));
  const bool down[] = {false, false, false, false, false, false, true, true, true};
  for (int step = 0; step <= 8; ++step) EXPECT_EQ(ArticulationAt(ian, step).velumDown, down[step]) << step;
}

TEST(Articulation, TheTongueTouchesTheWallWhereItsHeightIsNine) {
  // Through its nine points, six steps a span: number 6·i is a point itself, cut to whole pixels.
  const std::vector<Point> d = TongueContour(ArticulationOf(*FindTarget("d")).tongue);
  ASSERT_EQ(d.size(), 49u);
  EXPECT_EQ(d[36], (Point{196 - 30 * 6 / 9, 180})) << "height 6 between 196, 246 and 166, 148";
  EXPECT_EQ(d[42], (Point{140, 176})) << "the ridge";
  const std::vector<Point> g = TongueContour(ArticulationOf(*FindTarget("g")).tongue);
  EXPECT_EQ(g[18], (Point{298, 163})) << "the velum";
  // Between two points on the wall's line the curve of equal points is flat: end points are doubled.
  const std::vector<Point> flat = TongueContour({0, 0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(flat.front(), (Point{266, 322}));
  EXPECT_EQ(flat.back(), (Point{160, 260}));
}

TEST(TractEstimate, TakesMediansOfWhatTheFramesHave) {
  const auto frame = [](std::initializer_list<double> formants) {
    FormantFrame made;
    for (const double f : formants) made.frequency[static_cast<std::size_t>(made.count++)] = f;
    return made;
  };
  EXPECT_FALSE(MedianFormants({}));
  EXPECT_FALSE(MedianFormants(std::vector{frame({500, 1500})}));
  EXPECT_EQ(*MedianFormants(std::vector{frame({500, 1500}), frame({600, 1400, 2000})}),
            (FourFormants{600, 1400, 2000, 2800}));
  EXPECT_EQ(*MedianFormants(std::vector{frame({400, 1600, 2600, 3500}), frame({600, 1400, 2000})}),
            (FourFormants{500, 1500, 2300, 3500}));
  EXPECT_EQ(TractLength(3500), 17.5);
  EXPECT_EQ(TractLength(2000), 20);
  EXPECT_EQ(TractLength(9000), 12);
  for (const FourFormants& wrong : {FourFormants{500, 500, 2500, 3500}, FourFormants{500, 1500, 2500, 4000},
                                    FourFormants{0, 1500, 2500, 3500}})
    EXPECT_FALSE(AreasOf(wrong));
}

TEST(TractEstimate, AUniformTubeIsUniformAndItsEndsAreNotTurnedRound) {
  const TubeAreas uniform = *AreasOf({500, 1500, 2500, 3500});
  for (std::size_t i = 1; i < 7; ++i) EXPECT_NEAR(uniform[i], 1, 0.15) << "only the ends feel the losses";
  // A tube narrow at the glottis and four times as wide at the lips, 8.75 cm each: F = c/(2πl)·acos(±√(A1/(A1+A2))).
  const TubeAreas horn = *AreasOf({705, 1295, 2705, 3295});
  EXPECT_GT(horn[6], 2 * horn[1]);
}

TEST(TractEstimate, TheVowelsOfTheSampleAreNearestToThemselves) {
  InitSignalTables();
  const std::vector<std::int16_t> samples =
      testing::LoadRecording("synthetic_vowels_two_channels_16000.wav").samples;
  const int count = static_cast<int>(samples.size());
  const char* expected[] = {"a", "o", "e", "i", "u", "ü", "ê", "er", "i1"};
  for (int i = 0; i < 9; ++i) {
    LpcAnalyser analyser;
    const auto formants = MedianFormants(
        FormantTrack({samples.data(), count}, 16000, i * 7200 + 800, i * 7200 + 5600, analyser));
    ASSERT_TRUE(formants) << expected[i];
    EXPECT_EQ(EstimateTract(*formants).nearest, expected[i]);
  }
}

}  // namespace
}  // namespace parlowen
