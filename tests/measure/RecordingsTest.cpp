// All measures of all recordings of sounds/, cut into quarters of a second, as they are kept.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/Format.h"
#include "dsp/SignalTables.h"
#include "measure/MeasuredSound.h"
#include "support/Kept.h"
#include "support/Recordings.h"

namespace parlowen {
namespace {

TEST(MeasuredRecordings, HaveTheMeasuresThatAreKept) {
  InitSignalTables();
  std::string seen;
  for (const testing::LoadedRecording& recording : testing::Recordings()) {
    const auto document = recording.Document();
    const MeasuredSound sound(*document, std::nullopt, PitchRange::Automatic, {});
    ASSERT_TRUE(sound.Ready());
    const int step = recording.rate / 4, analysisStep = AnalysisRateOf(recording.rate) / 4;
    std::vector<Measures> all;
    for (int i = 0; (i + 1) * step <= document->sampleCount; ++i)
      all.push_back(sound.Measure({i * step, (i + 1) * step, i * analysisStep, (i + 1) * analysisStep}));
    seen += Format("%s, %zu intervals\n", recording.name.c_str(), all.size());
    for (const MeasureColumn& column : kMeasureColumns) {
      std::string values;
      for (const Measures& measures : all) values += Format("%.*f ", column.decimals, measures.*column.value);
      seen += Format("  %s %s, the third %.*f\n", column.name, testing::SizeAndDigest(values).c_str(),
                     column.decimals, all.at(2).*column.value);
    }
    std::string contours;
    for (const Measures& measures : all)
      for (const double hertz : measures.contour) contours += Format("%.2f ", hertz);
    seen += "  contour " + testing::SizeAndDigest(contours) + "\n";
  }
  testing::ExpectKept(PARLOWEN_SOURCE_DIR "/tests/measure/recordings.kept", seen);
}

}  // namespace
}  // namespace parlowen
