// The glottal wave of every voiced stretch in the half seconds of all recordings of sounds/, as it is kept.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/Format.h"
#include "dsp/SignalTables.h"
#include "pitch/PitchAnalysis.h"
#include "support/Kept.h"
#include "support/Recordings.h"
#include "voice/GlottalAnalysis.h"

namespace parlowen {
namespace {

std::string Told(const GlottalWave& wave) {
  std::string measures, marks;
  for (const auto measure : kGlottalMeasures)
    measures += Format(" %.2f±%.2f", wave.mean.*measure, wave.sd.*measure);
  for (const GlottalPeriod& period : wave.periods) {
    marks += Format("%d %d", period.start, period.length);
    for (const auto measure : kGlottalMeasures) marks += Format(" %.2f", period.measures.*measure);
  }
  for (const double harmonic : wave.harmonics) marks += Format(" %.2f", harmonic);
  return Format("%s%zu periods,", wave.inverted ? "inverted, " : "", wave.periods.size()) + measures +
         Format(", jitter %.2f shimmer %.2f, ", wave.jitter, wave.shimmer) + testing::SizeAndDigest(marks);
}

TEST(GlottalRecordings, HaveTheWavesThatAreKept) {
  InitSignalTables();
  std::string seen;
  for (const testing::LoadedRecording& recording : testing::Recordings()) {
    seen += recording.name + "\n";
    const auto document = recording.Document();
    const int count = document->sampleCount;
    std::vector<float> contour;
    ASSERT_TRUE(RunPitchAnalysis(*document, 0, count, {}, {0, document->ContourLength() - 1}, contour));
    const SampleSpan samples{recording.samples.data(), count};
    for (int start = 0; start + recording.rate / 2 <= count; start += recording.rate / 2) {
      const auto stretch = LongestVoicedStretch(contour, start, start + recording.rate / 2, recording.rate);
      if (!stretch) continue;
      for (const bool turned : {false, true}) {
        GlottalWave wave;
        const int status = EstimateGlottalWave(samples, recording.rate, *stretch, turned, wave);
        seen += Format("%d..%d ", stretch->start, stretch->end) + (status == 0 ? Told(wave) : "none") + "\n";
      }
    }
  }
  testing::ExpectKept(PARLOWEN_SOURCE_DIR "/tests/voice/recordings.kept", seen);
}

}  // namespace
}  // namespace parlowen
