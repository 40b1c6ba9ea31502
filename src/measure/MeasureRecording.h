#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "measure/MeasureTable.h"
#include "pitch/PitchAnalysis.h"

namespace parlowen {

/// A recording and how it is measured.
struct MeasureJob {
  std::string recording;
  std::string labels{};              ///< "": those beside the recording
  std::vector<std::string> tiers{};  ///< none: all
  std::optional<PitchRange>
      range{};  ///< none: a contour that was saved with the recording, else the automatic one
  int channel = 1;
  MeasureSettings settings{};
};

/// Where a stretch of a long recording begins that is measured as a document of its own: at a whole second,
/// so that its frames are those of the recording at every rate.
struct StretchPlan {
  std::int64_t origin = 0;  ///< sample
  int count = 0;            ///< samples, before it is cut in silence
};

/// The stretch for samples start .. end − 1 and as much as possible of what follows: a whole document, from
/// at least two seconds before the interval on where it leaves them. Nothing when no document from a whole
/// second on holds the interval.
std::optional<StretchPlan> PlanStretch(std::int64_t start, std::int64_t end, std::int64_t total,
                                       int sampleRate, std::int64_t documentSamples);

/// The quietest 10 ms of samples from .. to − 1: its first sample, or `to` where there is no such stretch.
int QuietestPlace(SampleSpan samples, int sampleRate, int from, int to);

/// Measures the intervals of rows of one document, samples and contour as they are; without a contour one is
/// computed and `progress` asked during that. False, and no row changed, when it answered false.
bool MeasureRows(const SoundDocument& document, PitchRange range, const MeasureSettings& settings,
                 std::vector<MeasureRow>& rows, const PitchProgress& progress = {});

/// The rows of a recording in the order of its labels: one for the whole recording where there is no label
/// file, one with the problem where recording or labels cannot be read. `document` is overwritten. Returns
/// the problem, "" when there is none.
///
/// A recording that fits a document is analysed as one. A longer one is read in documents, each with two
/// seconds or more on either side of its intervals and cut at the quietest place of its last two seconds: on
/// the frames of the whole recording, with the levels and the register of those minutes.
std::string MeasureRecording(const MeasureJob& job, SoundDocument& document, std::vector<MeasureRow>& rows);

}  // namespace parlowen
