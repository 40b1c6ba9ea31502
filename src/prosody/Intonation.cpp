#include "prosody/Intonation.h"

#include <algorithm>
#include <cmath>

#include "prosody/ToneCurve.h"

namespace parlowen {
namespace {

constexpr int kShortestRun = 3, kShortestGap = 5;  // frames

double MedianOf(double a, double b, double c) {
  return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

/// Frames in the middle of the gaps.
std::vector<int> GapBoundaries(const std::vector<MelodyPoint>& melody, int sampleRate) {
  std::vector<int> boundaries;
  for (std::size_t i = 1; i < melody.size(); ++i) {
    const int a = melody[i - 1].frame, b = melody[i].frame;
    if (b - a - 1 >= kShortestGap) boundaries.push_back(SampleOfFrame((a + b + 1) / 2, sampleRate));
  }
  return boundaries;
}

std::span<const MelodyPoint> MelodyIn(const Intonation& intonation, int start, int end) {
  const auto beginsBefore = [&](const MelodyPoint& point, int sample) {
    return SampleOfFrame(point.frame, intonation.sampleRate) < sample;
  };
  const auto& melody = intonation.melody;
  const auto first = std::lower_bound(melody.begin(), melody.end(), start, beginsBefore);
  const auto last = std::lower_bound(first, melody.end(), end, beginsBefore);
  return {first, last};
}

/// Sums of squares up to each sample of start .. end; what lies outside of the sound counts as silence.
std::vector<std::int64_t> EnergySums(SampleSpan samples, int start, int end) {
  std::vector<std::int64_t> sums{0};
  sums.reserve(static_cast<std::size_t>(std::max(0, end - start)) + 1);
  for (int i = start; i < end; ++i) {
    const std::int64_t value = samples.At(i);
    sums.push_back(sums.back() + value * value);
  }
  return sums;
}

double EnergyOf(const Intonation& intonation, const IntonationUnit& unit) {
  const auto& sums = intonation.energySums;
  if (sums.empty()) return 0;
  const auto sumTo = [&](int sample) {
    const std::int64_t place = std::int64_t{sample} - intonation.start;
    return sums[static_cast<std::size_t>(std::clamp<std::int64_t>(place, 0, std::ssize(sums) - 1))];
  };
  return static_cast<double>(sumTo(unit.end) - sumTo(unit.start));
}

std::string NameOf(const Intonation& intonation, int start, int end, std::size_t index) {
  for (const LabelledStretch& label : intonation.labels)
    if (label.start == start && label.end == end && !label.text.empty()) return label.text;
  return std::to_string(index + 1);
}

void MeasurePitch(IntonationUnit& unit, std::span<const MelodyPoint> melody) {
  unit.frames = static_cast<int>(melody.size());
  if (melody.empty()) return;
  const auto [base, top] = std::minmax_element(
      melody.begin(), melody.end(),
      [](const MelodyPoint& a, const MelodyPoint& b) { return a.semitones < b.semitones; });
  unit.base = base->semitones;
  unit.baseFrame = base->frame;
  unit.top = top->semitones;
  double sum = 0;
  for (const MelodyPoint& point : melody) sum += point.semitones;
  unit.mean = sum / unit.frames;
  unit.range = unit.top - unit.base;
  // Of equal tops the first.
  unit.topFrame = std::find_if(melody.begin(), melody.end(), [&](const MelodyPoint& point) {
                    return point.semitones == unit.top;
                  })->frame;
}

std::vector<IntonationUnit> MakeUnits(const Intonation& intonation) {
  std::vector<int> ends = intonation.boundaries;
  ends.push_back(intonation.end);
  std::vector<IntonationUnit> units;
  int start = intonation.start;
  for (const int end : ends) {
    IntonationUnit unit;
    unit.name = NameOf(intonation, start, end, units.size());
    unit.start = start;
    unit.end = end;
    unit.time = (static_cast<double>(start) + end) / 2 / intonation.sampleRate;
    unit.duration = (static_cast<double>(end) - start) / intonation.sampleRate;
    MeasurePitch(unit, MelodyIn(intonation, start, end));
    units.push_back(std::move(unit));
    start = end;
  }
  return units;
}

SemitoneSpan SpanOf(const std::vector<IntonationUnit>& units) {
  SemitoneSpan span;
  for (const IntonationUnit& unit : units) {
    // A comparison with NaN is false: pauses change nothing, the first unit sets both.
    if (!(span.low <= unit.base) && !unit.IsPause()) span.low = unit.base;
    if (!(span.high >= unit.top) && !unit.IsPause()) span.high = unit.top;
  }
  return span;
}

double Ratio(double value, double mean) { return mean > 0 ? value / mean : kNoFigure; }

void MeasureRelations(Intonation& intonation) {
  const SemitoneSpan domain = intonation.Domain();
  const double width = domain.high - domain.low;
  std::vector<IntonationUnit*> spoken;
  std::vector<double> energies;
  double duration = 0, energy = 0;
  for (IntonationUnit& unit : intonation.units) {
    if (unit.IsPause()) continue;
    spoken.push_back(&unit);
    energies.push_back(EnergyOf(intonation, unit));
    duration += unit.duration;
    energy += energies.back();
    if (width > 0) {
      unit.qTop = 100 * (unit.top - domain.low) / width;
      unit.qBase = 100 * (unit.base - domain.low) / width;
    }
  }
  const auto count = static_cast<double>(spoken.size());
  for (std::size_t i = 0; i < spoken.size(); ++i) {
    spoken[i]->durationRatio = Ratio(spoken[i]->duration, duration / count);
    spoken[i]->energyRatio = Ratio(energies[i], energy / count);
  }
}

void MeasureLines(Intonation& intonation) {
  std::vector<std::pair<double, double>> tops, bases;
  for (const IntonationUnit& unit : intonation.units) {
    if (unit.IsPause()) continue;
    tops.emplace_back(unit.topFrame * 0.01, unit.top);
    bases.emplace_back(unit.baseFrame * 0.01, unit.base);
  }
  intonation.topLine = LineThrough(tops, intonation.StartSeconds());
  intonation.baseLine = LineThrough(bases, intonation.StartSeconds());
}

}  // namespace

std::vector<MelodyPoint> MelodyOf(std::span<const float> periods, FrameSpan span, int sampleRate) {
  std::vector<MelodyPoint> melody;
  for (const FrameSpan& run : VoicedRuns(periods, span, kShortestRun)) {
    const auto semitones = [&](int frame) {
      return SemitonesOf(sampleRate / static_cast<double>(periods[static_cast<std::size_t>(frame)]));
    };
    for (int frame = run.first; frame <= run.last; ++frame) {
      const bool inner = frame > run.first && frame < run.last;
      melody.push_back({frame, inner ? MedianOf(semitones(frame - 1), semitones(frame), semitones(frame + 1))
                                     : semitones(frame)});
    }
  }
  return melody;
}

std::optional<Intonation> AnalyseIntonation(const SoundDocument& document, int start, int end,
                                            const FirstBand& band) {
  Intonation intonation;
  intonation.sampleRate = document.sampleRate;
  intonation.start = start;
  intonation.end = end;
  intonation.melody = MelodyOf(document.pitch, ToneFrames(document, start, end), document.sampleRate);
  if (intonation.melody.empty()) return {};
  intonation.labels = band.labels;
  for (const int marker : band.markers) AddBoundary(intonation, marker);
  if (intonation.boundaries.empty())
    for (const int boundary : GapBoundaries(intonation.melody, document.sampleRate))
      AddBoundary(intonation, boundary);
  intonation.energySums = EnergySums(document.Samples(), start, end);
  MeasureIntonation(intonation);
  return intonation;
}

void MeasureIntonation(Intonation& intonation) {
  intonation.units = MakeUnits(intonation);
  intonation.sentence = SpanOf(intonation.units);
  MeasureRelations(intonation);
  MeasureLines(intonation);
  intonation.closeCopy.clear();
  for (const IntonationUnit& unit : intonation.units) {
    const auto copy = CloseCopyOf(MelodyIn(intonation, unit.start, unit.end));
    intonation.closeCopy.insert(intonation.closeCopy.end(), copy.begin(), copy.end());
  }
}

bool AddBoundary(Intonation& intonation, int sample) {
  auto& boundaries = intonation.boundaries;
  if (sample <= intonation.start || sample >= intonation.end ||
      boundaries.size() + 1 >= static_cast<std::size_t>(kMostIntonationUnits))
    return false;
  const auto place = std::lower_bound(boundaries.begin(), boundaries.end(), sample);
  if (place != boundaries.end() && *place == sample) return false;
  boundaries.insert(place, sample);
  return true;
}

std::optional<IntonationLine> LineThrough(std::span<const std::pair<double, double>> points,
                                          double startSeconds) {
  if (points.size() < 2) return {};
  const auto count = static_cast<double>(points.size());
  double time = 0, level = 0;
  for (const auto& [t, st] : points) {
    time += t / count;
    level += st / count;
  }
  double products = 0, squares = 0;
  for (const auto& [t, st] : points) {
    products += (t - time) * (st - level);
    squares += (t - time) * (t - time);
  }
  if (!(squares > 0)) return {};
  const double slope = products / squares;
  return IntonationLine{slope, level - slope * (time - startSeconds)};
}

std::vector<MelodyPoint> CloseCopyOf(std::span<const MelodyPoint> melody, double tolerance) {
  std::vector<MelodyPoint> copy;
  if (melody.empty()) return copy;
  std::vector<std::size_t> ahead;  // points behind the last one that was taken, the nearest at the end
  std::size_t from = 0;
  copy.push_back(melody.front());
  if (melody.size() > 1) ahead.push_back(melody.size() - 1);
  while (!ahead.empty()) {
    const MelodyPoint &left = melody[from], &right = melody[ahead.back()];
    const double slope = (right.semitones - left.semitones) / (right.frame - left.frame);
    double farthest = tolerance;
    std::size_t turn = 0;
    for (std::size_t i = from + 1; i < ahead.back(); ++i) {
      const double line = left.semitones + slope * (melody[i].frame - left.frame);
      const double distance = std::abs(melody[i].semitones - line);
      if (distance <= farthest) continue;
      farthest = distance;
      turn = i;
    }
    if (turn > 0) {
      ahead.push_back(turn);
      continue;
    }
    from = ahead.back();
    ahead.pop_back();
    copy.push_back(melody[from]);
  }
  return copy;
}

}  // namespace parlowen
