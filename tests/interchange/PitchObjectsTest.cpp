// Melodies out and in.

#include "interchange/PitchObjects.h"

#include <gtest/gtest.h>

#include "interchange/FormantObject.h"
#include "pitch/Voices.h"

namespace parlowen {
namespace {

/// 0.05 s: frames −1, 125 Hz, unvoiced, 200 Hz, 100 Hz at 16000 Hz.
std::unique_ptr<SoundDocument> FiveFrames(CommandStates& states) {
  auto document = testing::Document(testing::Silence(16000, 0.05), 16000, states);
  document->samples[170] = -4096;
  document->samples[500] = 8192;
  const float periods[] = {kNoValue, 128.0f, kUnvoiced,
                           80.0f,    160.0f, 100.0f};  // the last is behind the sound
  std::copy(std::begin(periods), std::end(periods), document->pitch.begin());
  document->pitchPresent = true;
  return document;
}

const char* const kHead = "File type = \"ooTextFile\"\nObject class = ";

TEST(PitchTierFile, HoldsTheVoicedFramesInTheLongForm) {
  CommandStates states;
  EXPECT_EQ(
      PitchTierText(PitchTierOf(*FiveFrames(states))),
      std::string(kHead) +
          "\"PitchTier\"\n\nxmin = 0 \nxmax = 0.05 \npoints: size = 3 \npoints [1]:\n    number = 0.02 \n    value = 125 \n"
          "points [2]:\n    number = 0.04 \n    value = 200 \npoints [3]:\n    number = 0.05 \n    value = 100 \n");
}

TEST(PitchTierFile, ItsThreeFormsReadAlike) {
  const std::vector<PitchPoint> points = {{0.02, 125}, {0.5, 200.25}};
  for (
      const char* text :
      {"File type = \"ooTextFile\"\nObject class = \"PitchTier\"\n\nxmin = 0 \nxmax = 1 \npoints: size = 2 \npoints [1]:\n    number = 0.02 \n"
       "    value = 125 \npoints [2]:\n    number = 0.5 \n    value = 200.25",
       "File type = \"ooTextFile\"\nObject class = \"PitchTier\"\n\n0\n1\n2\n0.02\n125\n0.5\n200.25\n",
       "\"ooTextFile\"\n\"PitchTier\"\n0 1 2\n0.02\t125\n0.5\t200.25\n",
       "\"ooTextFile\"\r\n\"PitchTier\"\r\n0 1 5 ! disorder, twice the same time, no pitch\r\n0.5\t200.25\r\n0.02\t125\r\n0.02\t99\r\n0.3\t0\r\n0.4\t-5\r\n"}) {
    PitchTierFault fault = PitchTierFault::Damaged;
    const auto tier = ReadPitchTier(text, fault);
    ASSERT_TRUE(tier) << text;
    EXPECT_EQ(tier->points, points);
    EXPECT_EQ(tier->end, 1);
  }
}

TEST(PitchTierFile, RefusesWhatIsNone) {
  const std::pair<const char*, PitchTierFault> cases[] = {
      {"", PitchTierFault::NoPitchTier},
      {"\"ooTextFile\" \"Pitch 1\" 0 1 1 0 1", PitchTierFault::NoPitchTier},
      {"\"ooTextFile\" \"PitchTier\" 0 1 2 0.5 100 0.6", PitchTierFault::Damaged},
      {"\"ooTextFile\" \"PitchTier\" 0 1 999999999 0.5 100", PitchTierFault::Damaged},
      {"\"ooTextFile\" \"PitchTier\" 0 1 1 0.5 1e999", PitchTierFault::Damaged},
      {"\"ooTextFile\" \"PitchTier\" 0 1 0", PitchTierFault::NoPoints},
      {"\"ooTextFile\" \"PitchTier\" 0 1 2 0.1 0.5 0.2 10001", PitchTierFault::NoPoints}};
  for (const auto& [text, expected] : cases) {
    PitchTierFault fault = PitchTierFault::None;
    EXPECT_FALSE(ReadPitchTier(text, fault)) << text;
    EXPECT_EQ(fault, expected) << text;
  }
}

TEST(PitchTierFile, BecomesATargetThatIsLinearInHertz) {
  const PitchTier tier{0, 1, {{0.02, 100}, {0.06, 200}}};
  const TargetCurve target = TargetOf(tier, 16000, 0, 8);
  const double hertz[] = {100, 100, 125, 150, 175, 200, 200, 200};  // frame f at f/100 + 0.01 s
  ASSERT_EQ(target.size(), 8u);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_FLOAT_EQ(target[i], static_cast<float>(16000 / hertz[i])) << i;
  EXPECT_EQ(TargetOf(tier, 16000, 3, 1), TargetCurve{target[3]});
}

TEST(PitchFile, HasOneCandidateAFrame) {
  CommandStates states;
  const std::string text = PitchText(*FiveFrames(states), 150);
  EXPECT_EQ(
      text.substr(0, text.find("    frames [2]:")),
      std::string(kHead) +
          "\"Pitch 1\"\n\nxmin = 0 \nxmax = 0.05 \nnx = 5 \ndx = 0.01 \nx1 = 0.01 \nceiling = 201 \nmaxnCandidates = 1 \nframes []: \n"
          "    frames [1]:\n        intensity = 0 \n        nCandidates = 1 \n        candidates []: \n            candidates [1]:\n"
          "                frequency = 0 \n                strength = 0 \n");
  EXPECT_NE(text.find("    frames [2]:\n        intensity = 0.5 \n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("frequency = 100 \n                strength = 1 \n"));
}

TEST(FormantFile, LeavesOutFormantsWithoutABandwidth) {
  CommandStates states;
  const auto document = FiveFrames(states);
  VowelTrack track;
  track.start = 160;
  track.step = 160;
  track.frames.resize(2);
  track.frames[1] = {3, {500, 1500, 2500}, {50, 0, 120}};
  EXPECT_EQ(
      FormantText(*document, track),
      std::string(kHead) +
          "\"Formant 2\"\n\nxmin = 0 \nxmax = 0.05 \nnx = 2 \ndx = 0.01 \nx1 = 0.02 \nmaxnFormants = 6 \nframes []: \n"
          // (4096/32768)²/320 of the one sample, then (8192/32768)²/320
          "    frames [1]:\n        intensity = 4.8828125e-05 \n        nFormants = 0 \n        formant []: \n"
          "    frames [2]:\n        intensity = 0.0001953125 \n        nFormants = 2 \n        formant []: \n"
          "            formant [1]:\n                frequency = 500 \n                bandwidth = 50 \n"
          "            formant [2]:\n                frequency = 2500 \n                bandwidth = 120 \n");
}

}  // namespace
}  // namespace parlowen
