#include "pitch/PitchRepair.h"

#include <algorithm>
#include <cmath>

namespace parlowen {
namespace {

/// Sets the frames of a span to what `valueOf(frame, present value)` says and keeps the values before as a
/// step.
template <typename ValueOf>
bool Change(SoundDocument& document, PitchRepair& repair, FrameSpan span, ValueOf valueOf) {
  span.first = std::max(span.first, 1);  // frame 0 is unvoiced by definition
  span.last = std::min(span.last, document.ContourLength() - 1);
  if (span.last < span.first) return false;
  RepairStep step{span.first, {document.pitch.begin() + span.first, document.pitch.begin() + span.last + 1}};
  bool allowed = false, changed = false;
  for (int frame = span.first; frame <= span.last; ++frame) {
    float& value = document.pitch[static_cast<std::size_t>(frame)];
    if (!(value > 0) && !repair.IsMarked(frame)) continue;
    const float next = valueOf(frame, value);
    allowed = true;
    changed = changed || next != value;
    value = next;
  }
  if (!changed) return allowed;
  if (repair.undo.size() == kRepairSteps) repair.undo.erase(repair.undo.begin());
  repair.undo.push_back(std::move(step));
  return true;
}

}  // namespace

void PitchRepair::KeepTo(const SoundDocument& document) {
  if (contour == document.contourKeeper.version()) return;
  contour = document.contourKeeper.version();
  lastPoint.reset();
  markStart.reset();
  marked = {0, -1};
  undo.clear();
}

bool TracePoint(SoundDocument& document, PitchRepair& repair, RepairPoint point) {
  if (!(point.frequency > 0)) return false;
  const double rate = document.sampleRate;
  const RepairPoint from = repair.lastPoint.value_or(point);
  repair.lastPoint = point;
  const double fromLog = std::log(from.frequency), toLog = std::log(point.frequency);
  const int length = point.frame - from.frame;
  const FrameSpan span{std::min(from.frame, point.frame), std::max(from.frame, point.frame)};
  return Change(document, repair, span, [&](int frame, float value) {
    const double share = length == 0 ? 1.0 : static_cast<double>(frame - from.frame) / length;
    const double frequency = std::exp(fromLog + (toLog - fromLog) * share) / repair.harmonic;
    if (frequency < kLowestRepair || frequency > kHighestRepair) return value;
    return static_cast<float>(rate / frequency);
  });
}

void MarkRepairFrame(PitchRepair& repair, int frame) {
  if (!repair.markStart) {
    repair.markStart = frame;
    repair.marked = {frame, frame};
    return;
  }
  repair.marked = {std::min(*repair.markStart, frame), std::max(*repair.markStart, frame)};
  repair.markStart.reset();
}

bool UnvoiceMarked(SoundDocument& document, PitchRepair& repair) {
  return Change(document, repair, repair.marked, [](int, float) { return kUnvoiced; });
}

bool ScaleMarked(SoundDocument& document, PitchRepair& repair, double factor) {
  const double rate = document.sampleRate;
  return Change(document, repair, repair.marked, [&](int, float value) {
    if (!(value > 0)) return value;
    const double frequency = rate / static_cast<double>(value) * factor;
    if (frequency < kLowestRepair || frequency > kHighestRepair) return value;
    return static_cast<float>(static_cast<double>(value) / factor);
  });
}

bool RestoreMarked(SoundDocument& document, PitchRepair& repair) {
  return Change(document, repair, repair.marked,
                [&](int frame, float) { return document.pitchBackup[static_cast<std::size_t>(frame)]; });
}

bool UndoRepair(SoundDocument& document, PitchRepair& repair) {
  if (repair.undo.empty()) return false;
  const RepairStep step = std::move(repair.undo.back());
  repair.undo.pop_back();
  std::copy(step.values.begin(), step.values.end(), document.pitch.begin() + step.first);
  repair.lastPoint.reset();
  return true;
}

}  // namespace parlowen
