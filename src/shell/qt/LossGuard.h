#pragma once
#include <cstdint>
#include <optional>
#include <vector>

#include "base/Files.h"
#include "document/SoundStamp.h"
#include "shell/CommandTable.h"
#include "vowel/VowelChart.h"

namespace parlowen {

struct AnnotationState;
struct MarkerState;
class SoundDocument;

/// What a user can have made and not saved, in the order in which it is asked about. What was computed is no
/// work: it can be computed again.
enum class Work { Sound, Contour, Markers, Annotations, Chart };
inline constexpr Work kWorks[] = {Work::Sound, Work::Contour, Work::Markers, Work::Annotations, Work::Chart};

/// Knows what was changed after it was opened or saved, and what a save would destroy.
class LossGuard {
 public:
  LossGuard(const SoundDocument& document, const VowelChart& chart, const MarkerState& markers,
            const AnnotationState& annotations);

  /// - The sound: an empty one without a file is none.
  /// - The contour: repaired by hand, and in no sound or annotation file so.
  /// - Markers: a set without any cannot be saved, so nothing is lost with it.
  /// - The chart: without points there is nothing to lose. Coordinates do not count: they are chosen anew at
  ///   will.
  bool Unsaved(Work work) const;
  bool AnythingUnsaved() const;

  /// What a save under the sound's own name would take from the file there.
  enum class SavingLoss {
    None,
    RestOfFile,    ///< the sound is only a part of its file
    LaterChanges,  ///< somebody wrote it after it was opened or saved here
    AnotherSound,  ///< a file that was never opened: the sound came from one of another kind
  };
  SavingLoss LossBySaving() const;

  /// To be called before and after every command, with the failures and cancelled file dialogs so far and the
  /// files written. A command that opens a sound leaves it unchanged when a new one is there; one that saves
  /// a sound or chart when it wrote a file; one that opens a chart when nothing failed or was cancelled. True
  /// when a sound or chart was opened.
  void CommandBegins(int setbacks, int filesSaved);
  bool CommandEnded(const CommandRow& command, int setbacks, int filesSaved);

  /// Whether a command puts something else in the place of that work.
  static bool Replaces(const CommandRow& command, Work work);

 private:
  void TakeSoundAsUnchanged();
  void TakeChartAsUnchanged();

  const SoundDocument& document_;
  const VowelChart& chart_;
  const MarkerState& markers_;
  const AnnotationState& annotations_;
  std::uint64_t unchangedVersion_ = 0;
  std::optional<FileStamp> stamp_;  ///< of the sound's file as it was read or written here
  std::vector<VowelPoint> unchangedPoints_;
  SoundStamp soundBefore_;
  int setbacksBefore_ = 0, filesSavedBefore_ = 0;
};

}  // namespace parlowen
