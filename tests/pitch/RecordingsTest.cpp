// Both stages over all recordings of sounds/, told other rates, other levels and other bounds than their own, as they are
// kept: what a change of the arithmetic moves, a small slip among them, is seen here.

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "pitch/FastPitch.h"
#include "pitch/PitchAnalysis.h"
#include "support/Kept.h"
#include "support/Recordings.h"

namespace parlowen {
namespace {

using namespace testing;

/// A recording's first channel, divided and with noise of up to so much added.
std::vector<std::int16_t> Quieter(const std::vector<std::int16_t>& recording, int divisor, int noise) {
  std::vector<std::int16_t> quieter;
  std::uint32_t seed = 1;
  for (const std::int16_t sample : recording) {
    seed = seed * 1664525u + 1013904223u;
    const int added = noise > 0 ? static_cast<int>(seed >> 16) % (2 * noise + 1) - noise : 0;
    quieter.push_back(SaturateInt16(sample / divisor + added));
  }
  return quieter;
}

std::string Listed(std::span<const float> periods) {
  int voiced = 0;
  double sum = 0;
  std::string all;
  for (const float period : periods) {
    voiced += period > 0;
    sum += period;
    all += Format("%.3f ", static_cast<double>(period));
  }
  return Format("%zu frames, %d voiced, %.1f samples, %s", periods.size(), voiced,
                voiced > 0 ? sum / voiced : 0, SizeAndDigest(all).c_str());
}

std::string FirstStage(const LoadedRecording& recording, PitchRange range) {
  const int count = static_cast<int>(recording.samples.size());
  const FastPitchRequest request{{recording.samples.data(), count}, recording.rate, 0, count, range, 1004};
  FastPitch result;
  ExtractPitchFast(request, result);
  std::string frames;
  for (const FastPitchFrame& frame : result.frames)
    frames += Format("%d %d %d %d%d %d %d ", frame.zeroCrossings, frame.level, frame.magnitude, frame.leveled,
                     frame.voiced, frame.polarity, frame.choice);
  return Listed(result.periods) + ", " + SizeAndDigest(frames);
}

std::string BothStages(const LoadedRecording& recording, PitchRange range) {
  const auto document = recording.Document();
  PitchAnalysisRequest request;
  request.range = range;
  std::vector<float> periods;
  EXPECT_TRUE(RunPitchAnalysis(*document, 0, document->sampleCount, request,
                               {0, document->ContourLength() - 1}, periods));
  return Listed(periods);
}

TEST(Recordings, HaveTheContoursThatAreKept) {
  std::string seen;
  for (LoadedRecording& recording : Recordings()) {
    const int own = recording.rate;
    const struct {
      int rate, divisor, noise;
      PitchRange range;
    } ways[] = {{own, 1, 0, PitchRange::Automatic},   {own, 1, 0, PitchRange::High},
                {own, 1, 0, PitchRange::Middle},      {own, 1, 0, PitchRange::Low},
                {own, 20, 40, PitchRange::Automatic}, {own * 3 / 4, 1, 300, PitchRange::Automatic},
                {44100, 3, 5, PitchRange::Low}};
    seen += recording.name + "\n";
    const std::vector<std::int16_t> whole = recording.samples;
    for (const auto& way : ways) {
      recording.samples = Quieter(whole, way.divisor, way.noise);
      recording.rate = way.rate;
      seen += Format("%d Hz, range %d, / %d + %d: ", way.rate, static_cast<int>(way.range), way.divisor,
                     way.noise) +
              FirstStage(recording, way.range) + "; " + BothStages(recording, way.range) + "\n";
    }
  }
  ExpectKept(PARLOWEN_SOURCE_DIR "/tests/pitch/contours.kept", seen);
}

}  // namespace
}  // namespace parlowen
