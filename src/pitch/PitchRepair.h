#pragma once
#include <cstdint>
#include <optional>
#include <vector>

#include "document/SoundDocument.h"
#include "pitch/SemitoneScale.h"

namespace parlowen {

/// Frequencies that a repair may give a frame, in Hz.
inline constexpr double kLowestRepair = 30.0, kHighestRepair = 1000.0;

/// Values of the contour before one step of the repair.
struct RepairStep {
  int first = 0;
  std::vector<float> values;
};

/// A place in the picture that the repair is done over.
struct RepairPoint {
  int frame = 0;
  double frequency = 0;  ///< Hz, of the harmonic that is traced
};

/// What the rows of the picture below stand for.
enum class RepairRows { Frequencies, Quefrencies };

/// The repair of the contour over a picture, while `activity` is 9.
struct PitchRepair {
  RepairRows rows = RepairRows::Frequencies;
  int harmonic = 1;                      ///< which harmonic the clicks follow, 1..9; 1 over quefrencies
  std::optional<RepairPoint> lastPoint;  ///< of the trace that is being drawn
  std::optional<int> markStart;          ///< frame where a marked stretch began
  FrameSpan marked{0, -1};               ///< first..last; empty when last < first
  std::optional<RepairPoint> pointer;    ///< where the comb stands
  std::vector<RepairStep> undo;          ///< the last steps, oldest first, at most kRepairSteps

  std::uint64_t contour = 0;  ///< version of the contour that trace, marks and steps were made on

  bool IsMarked(int frame) const { return frame >= marked.first && frame <= marked.last; }
  /// Puts away trace, marks and steps of another contour than the document's present one: after an edit, a
  /// change of the rate or an analysis they would bring values to sounds that they never were of. To be
  /// called before the repair is used or shown.
  void KeepTo(const SoundDocument& document);
};
inline constexpr std::size_t kRepairSteps = 200;

// Only frames with a pitch, and marked ones, are changed; every function tells whether there was such a
// frame.

/// Continues the trace: the frames between the last point and this one get F0 = frequency/harmonic, linear in
/// the logarithm; the first point sets its own frame.
bool TracePoint(SoundDocument& document, PitchRepair& repair, RepairPoint point);

/// A first call begins a marked stretch, a second one ends it.
void MarkRepairFrame(PitchRepair& repair, int frame);

bool UnvoiceMarked(SoundDocument& document, PitchRepair& repair);
/// Multiplies the marked frequencies; frames that would leave 30..1000 Hz stay.
bool ScaleMarked(SoundDocument& document, PitchRepair& repair, double factor);
/// The marked frames as the last analysis found them.
bool RestoreMarked(SoundDocument& document, PitchRepair& repair);
bool UndoRepair(SoundDocument& document, PitchRepair& repair);

}  // namespace parlowen
