#include "measure/MeasureRecording.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "dsp/LevelCurve.h"
#include "measure/MeasuredSound.h"
#include "measure/Recording.h"

namespace parlowen {
namespace {

constexpr const char* kReadFault = "the recording cannot be read to its end";
constexpr const char* kOutside = "the interval lies outside the recording";
constexpr const char* kReachesBeyond = "the interval reaches beyond the recording";
constexpr const char* kTooShort = "the interval is shorter than a sample";
constexpr const char* kNoFrame = "no 10 ms frame begins in the interval";

constexpr int kContextSeconds = 2;
constexpr int kCutSeconds = 2;            // at the end of a stretch among which its cut is looked for
constexpr double kRoundedSeconds = 0.01;  // that a last label may reach beyond the recording

/// Samples of the recording, and of a copy of all of it at the analysis rate.
struct SampleInterval {
  std::size_t row = 0;
  std::int64_t start = 0, end = 0;
  std::int64_t analysisStart = 0, analysisEnd = 0;
};

/// The interval of a row in the samples of its sound, as far as it lies in it; what is wrong with it becomes
/// the row's problem. Nothing when there is nothing to measure.
std::optional<SampleInterval> PlaceOf(MeasureRow& row, std::size_t number, std::int64_t sampleCount) {
  const double rate = row.sampleRate, seconds = static_cast<double>(sampleCount) / rate;
  const double start = row.interval.start, end = row.interval.end;
  const auto sample = [&](double time, int at) {
    return TruncateToInt64(std::round(std::clamp(time, 0.0, seconds) * at));
  };
  const int analysisRate = AnalysisRateOf(row.sampleRate);
  const SampleInterval place{number, sample(start, row.sampleRate), sample(end, row.sampleRate),
                             sample(start, analysisRate), sample(end, analysisRate)};
  if (!(start < seconds) || !(end > 0)) {
    row.problem = kOutside;
  } else if (place.end <= place.start) {
    row.problem = kTooShort;
  } else {
    if (start < -kRoundedSeconds || end > seconds + kRoundedSeconds) row.problem = kReachesBeyond;
    return place;
  }
  return {};
}

std::vector<SampleInterval> PlacesOf(std::vector<MeasureRow>& rows, std::int64_t sampleCount) {
  std::vector<SampleInterval> places;
  for (std::size_t row = 0; row < rows.size(); ++row)
    if (const auto place = PlaceOf(rows[row], row, sampleCount)) places.push_back(*place);
  return places;
}

/// `origin` is the second at which the sound begins in what the intervals count in.
void MeasureIntervals(const MeasuredSound& sound, const std::vector<SampleInterval>& intervals,
                      std::int64_t origin, std::vector<MeasureRow>& rows) {
  for (const SampleInterval& interval : intervals) {
    MeasureRow& row = rows[interval.row];
    const std::int64_t before = origin * row.sampleRate,
                       analysisBefore = origin * AnalysisRateOf(row.sampleRate);
    const MeasuredInterval measured{static_cast<int>(interval.start - before),
                                    static_cast<int>(interval.end - before),
                                    static_cast<int>(interval.analysisStart - analysisBefore),
                                    static_cast<int>(interval.analysisEnd - analysisBefore)};
    row.measures = sound.Measure(measured);
    if (row.problem.empty() && !sound.HasFrame(measured)) row.problem = kNoFrame;
  }
}

/// A recording longer than a document, document by document.
class LongMeasurer {
 public:
  LongMeasurer(const MeasureJob& job, const Recording& recording, SoundDocument& document,
               std::vector<MeasureRow>& rows)
      : job_(job), recording_(recording), document_(document), rows_(rows) {}

  /// False when the recording cannot be read.
  bool Run(std::vector<SampleInterval> intervals) {
    std::stable_sort(intervals.begin(), intervals.end(),
                     [](const SampleInterval& a, const SampleInterval& b) { return a.start < b.start; });
    const std::int64_t context = std::int64_t{kContextSeconds} * recording_.SampleRate();
    const std::int64_t total = recording_.SampleCount(), most = recording_.DocumentSamples();
    for (auto head = intervals.begin(); head != intervals.end();) {
      const auto plan = PlanStretch(head->start, head->end, total, recording_.SampleRate(), most);
      if (!plan) {
        const double seconds = static_cast<double>(most) / recording_.SampleRate();
        rows_[head->row].problem = Format("the interval is longer than a document (%.1f s)", seconds);
        ++head;
        continue;
      }
      // Those that have their context, and the first in any case; the others wait for the next stretch.
      const std::int64_t limit = plan->origin + plan->count,
                         latest = limit == total ? total : limit - context;
      const std::size_t first = head->row;
      const auto reached =
          std::find_if(head, intervals.end(), [limit](const auto& i) { return i.start >= limit; });
      const auto waiting = std::stable_partition(
          head, reached, [&](const SampleInterval& i) { return i.row == first || i.end <= latest; });
      if (!MeasureStretch(*plan, {head, waiting})) return false;
      head = waiting;
    }
    return true;
  }

 private:
  bool MeasureStretch(const StretchPlan& plan, const std::vector<SampleInterval>& intervals) {
    if (!recording_.Load(plan.origin, plan.count, document_)) return false;
    if (plan.origin + plan.count < recording_.SampleCount()) CutInSilence(plan, intervals);
    const MeasuredSound sound(document_, {}, job_.range.value_or(PitchRange::Automatic), job_.settings);
    MeasureIntervals(sound, intervals, plan.origin / recording_.SampleRate(), rows_);
    return true;
  }

  void CutInSilence(const StretchPlan& plan, const std::vector<SampleInterval>& intervals) {
    const std::int64_t second = recording_.SampleRate();
    std::int64_t from = plan.count - kCutSeconds * second;
    for (const SampleInterval& interval : intervals)
      from = std::max(from, interval.end - plan.origin + kContextSeconds * second);
    if (from >= plan.count) return;
    document_.sampleCount =
        QuietestPlace(document_.Samples(), recording_.SampleRate(), static_cast<int>(from), plan.count);
    document_.SamplesChanged();
  }

  const MeasureJob& job_;
  const Recording& recording_;
  SoundDocument& document_;
  std::vector<MeasureRow>& rows_;
};

/// The rows of a recording without their measures.
std::string ListIntervals(const MeasureJob& job, const Recording& recording, std::vector<MeasureRow>& rows) {
  const auto path = job.labels.empty() ? LabelFileBeside(job.recording) : std::optional(job.labels);
  LabelFile labels;
  if (path) {
    labels = ReadLabelFile(*path, recording.SampleCount(), recording.SampleRate(), job.tiers);
  } else {
    const double seconds = static_cast<double>(recording.SampleCount()) / recording.SampleRate();
    labels.intervals.push_back({"", 1, "", 0, seconds});
  }
  if (!labels.problem.empty()) return labels.problem;
  for (LabelInterval& interval : labels.intervals)
    rows.push_back({job.recording, true, std::move(interval), recording.SampleRate()});
  return {};
}

}  // namespace

std::optional<StretchPlan> PlanStretch(std::int64_t start, std::int64_t end, std::int64_t total,
                                       int sampleRate, std::int64_t documentSamples) {
  const std::int64_t second = sampleRate;
  // What a document leaves beside the interval, at most the context, and as much of it before as behind.
  const std::int64_t spare = std::max<std::int64_t>(0, documentSamples - (end - start));
  const std::int64_t before = std::min(kContextSeconds * second, spare / 2);
  std::int64_t origin = std::max<std::int64_t>(0, start - before) / second * second;
  // The last document of a recording ends with it.
  const std::int64_t last =
      (std::max<std::int64_t>(0, total - documentSamples) + second - 1) / second * second;
  origin = std::min(origin, last);
  if (end > origin + documentSamples) origin = start / second * second;
  if (end > origin + documentSamples) return {};
  return StretchPlan{origin, static_cast<int>(std::min(documentSamples, total - origin))};
}

int QuietestPlace(SampleSpan samples, int sampleRate, int from, int to) {
  const int length = std::max(1, sampleRate / 100), count = (to - from) / length;
  if (count < 1) return to;
  const std::vector<double> levels = MakeColumnLevels(samples, sampleRate, sampleRate / length, from,
                                                      std::int64_t{count} * length, count, count)
                                         .values;
  return from + length * static_cast<int>(std::min_element(levels.begin(), levels.end()) - levels.begin());
}

bool MeasureRows(const SoundDocument& document, PitchRange range, const MeasureSettings& settings,
                 std::vector<MeasureRow>& rows, const PitchProgress& progress) {
  const std::vector<SampleInterval> places = PlacesOf(rows, document.sampleCount);
  if (places.empty()) return true;
  std::optional<std::span<const float>> contour;
  if (document.pitchPresent)
    contour = std::span(document.pitch).first(static_cast<std::size_t>(document.ContourLength()));
  const MeasuredSound sound(document, contour, range, settings, progress);
  if (sound.Ready()) MeasureIntervals(sound, places, 0, rows);
  return sound.Ready();
}

std::string MeasureRecording(const MeasureJob& job, SoundDocument& document, std::vector<MeasureRow>& rows) {
  rows.clear();
  const Recording recording(job.recording, job.channel);
  std::string problem = recording.Problem();
  if (problem.empty()) problem = ListIntervals(job, recording, rows);
  if (problem.empty() && !rows.empty()) {
    bool read = true;
    if (recording.FitsDocument()) {
      read = recording.Load(0, static_cast<int>(recording.SampleCount()), document);
      if (read && !job.range) recording.LoadContour(document);
      if (read) MeasureRows(document, job.range.value_or(PitchRange::Automatic), job.settings, rows);
    } else {
      read = LongMeasurer(job, recording, document, rows).Run(PlacesOf(rows, recording.SampleCount()));
    }
    if (!read) problem = kReadFault;
  }
  if (problem.empty()) return problem;
  rows.assign(1, {job.recording, false});  // never half a table
  rows[0].problem = problem;
  return problem;
}

}  // namespace parlowen
